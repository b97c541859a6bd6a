/** Every group of commands of qeltvctl: what it does, and what it says to input that is wrong. */
#include <gtest/gtest.h>
#include <qeltvapi.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <thread>

#include "daemon.h"
#include "layouts/presentation.h"
#include "with_television.h"

using namespace wire;
using Json = nlohmann::json;

namespace {

using Words = std::vector<std::string>;

std::string noTelevision() {
    return std::string("qeltvctl: no television at ") + getenv("QELTV_RUNTIME_DIR") +
           " (QELTV_RUNTIME_DIR); start qeltvd, or set QELTV_RUNTIME_DIR to the directory of one "
           "that runs\n";
}

std::string joined(const Words& words) {
    std::string text;
    for (const std::string& word : words) text += " " + word;
    return text;
}

class ToolGroups : public testing::Test {
  protected:
    void SetUp() override { television.start(); }

    static void done(const Words& words) {
        const Ended ended = qeltvctl(words);
        EXPECT_EQ(0, ended.status) << joined(words) << ": " << ended.err;
        EXPECT_EQ("", ended.err) << joined(words);
    }

    static void prints(const Words& words, const std::string& text) {
        const Ended ended = qeltvctl(words);
        EXPECT_EQ(0, ended.status) << joined(words) << ": " << ended.err;
        EXPECT_EQ(text, ended.out) << joined(words);
    }

    static void refused(const Words& words, const std::string& message, int status = 1) {
        const Ended ended = qeltvctl(words);
        EXPECT_EQ(status, ended.status) << joined(words);
        EXPECT_EQ("qeltvctl: " + message + "\n", ended.err) << joined(words);
        EXPECT_EQ("", ended.out) << joined(words);
    }

    static Json json(Words words) {
        words.push_back("--json");
        const Ended ended = qeltvctl(words);
        EXPECT_EQ(0, ended.status) << joined(words) << ": " << ended.err;
        return Json::parse(ended.out, nullptr, false);
    }

    /** The channel id as a plain number. */
    static std::string idOf(const Json& channel) {
        return std::to_string(std::stoul(channel["id"].get<std::string>(), nullptr, 0));
    }

    static bool playing() { return json({"status"})["paths"][0]["status"] == "playing"; }

    void restart() {
        television.kill();
        television.start();
    }

    Daemon television;
};

TEST_F(ToolGroups, WrongWordsAreNamedAndChangeNothing) {
    const std::vector<std::pair<Words, std::string>> kWrong = {
            {{"config", "set", "picture.contrast", "4294967297"},
             "picture.contrast takes an integer, not \"4294967297\""},
            {{"config", "set", "picture.contrast", ""},
             "picture.contrast takes an integer, not \"\""},
            {{"channel", "list", "nowhere"}, "no such list: nowhere (air, cable, satellite)"},
            {{"channel", "set", "air/1"}, "nothing to set"},
            {{"channel", "set", "air/1", "--number", "1x"},
             "a number is as in 5 or 7.1, not \"1x\""},
            {{"channel", "favourite", "move", "0", "1"}, "places begin at 1"},
            {{"satellite", "set", "19.2E"}, "nothing to set"},
            {{"satellite", "show", "19.2N"}, "a satellite is as in 1 or 19.2E, not \"19.2N\""},
            {{"biss", "set", "--frequency", "11000000", "--position", "19.2E", "--polarisation",
              "X"},
             "a polarisation is H, V, L or R, not \"X\""},
            {{"biss", "clear"}, "clear takes a record or --all"},
            {{"biss", "clear", "1", "--all"}, "clear takes a record or --all"},
            {{"rating", "set", "dvb-aeg", "1"},
             "there is no rating setting dvb-aeg (did you mean \"dvb-age\"?)"},
            {{"rating", "set", "lock", "x"}, "lock is a number from 0 to 255, not \"x\""},
            {{"rating", "set", "dvb-age", "256"}, "dvb-age is a number from 0 to 255, not \"256\""},
            {{"rating", "us-tv", "TV-14", "TV-XX"}, "there is no US rating TV-XX"},
            {{"time", "sleep", "90x"}, "a time is a number from 0 to 86400, not \"90x\""},
            {{"time", "zone", "east"}, "an offset is a number from -50400 to 50400, not \"east\""},
            {{"time", "julian", "4294967296"},
             "a Julian date is a number from 0 to 4294967295, not \"4294967296\""},
            {{"time", "julian", "2026-02-30"}, "there is no date 2026-02-30"},
            {{"epg", "day", "1", "29.3.2026"}, "\"29.3.2026\" is no date, as 2026-03-29"},
            {{"epg", "show", "1", "65536"}, "an event is a number from 0 to 65535, not \"65536\""},
            {{"epg", "search", "seventeen letters"}, "a text to look for has at most 16 bytes"},
            {{"epg", "search", "x", "--genre", "nonsense"}, "there is no genre nonsense"},
            {{"record", "schedule", "67108865", "tomorrow", "60"},
             "\"tomorrow\" is no time, as 2026-03-29 20:15"},
            {{"record", "schedule", "67108865", "2026-03-29 20:15x", "60"},
             "\"2026-03-29 20:15x\" is no time, as 2026-03-29 20:15"},
            {{"record", "schedule", "67108865", "2026-03-29", "60"},
             "\"2026-03-29\" is no time, as 2026-03-29 20:15"},
            {{"record", "schedule", "67108865", "2027-02-29 20:15", "60"},
             "there is no time 2027-02-29 20:15"},
            {{"volume", "loud"}, "volume takes 0 to 100, +5, -5, up or down, not \"loud\""},
            {{"volume", "5", "--type", "nose"}, "there is no volume nose"},
            {{"audio", "effect", "nonsense"}, "there is no sound effect nonsense"},
            {{"picture", "mode", "99"}, "there is no picture mode 99"},
            {{"screen", "mode", "nonsense"}, "there is no screen mode nonsense"},
            {{"power", "down", "--reason", "boredom"}, "there is no power-down reason boredom"},
            {{"tune", "1", "--service", "5"},
             "tune takes one of a channel, --service and --frequency"},
            {{"tune", "1", "--path", "third"}, "the paths are main and sub, not \"third\""},
            {{"teletext", "99"}, "\"99\" is no page; they are 100 to 899"},
            {{"watch", "config", "brodcast"},
             "there is no kind brodcast (did you mean \"broadcast\"?); qeltvctl watch --list shows "
             "them"},
            {{"watch", "--expect", "("}, "\"(\" is no regular expression"},
            {{"key", "ok", "volume_up"}, "there is no key volume_up (did you mean \"volume-up\"?)"},
            {{"service", "reception", "101"}, "a strength is a number from 0 to 100, not \"101\""},
            {{"service", "reception", "5", "x"},
             "a frequency is a number from 1 to 4294967295, not \"x\""},
            {{"service", "fault", "*", "delay", "5x"},
             "a delay in milliseconds is a number from 0 to 3600000, not \"5x\""},
            {{"service", "fault", "*", "lose", "1"}, "lose takes no number"},
            {{"service", "raise", "slep_timer", "[]"},
             "there is no notification slep_timer; qeltvctl service notifications shows them"},
    };
    for (const auto& [words, message] : kWrong) refused(words, message, 2);

    // What the parser of the command line finds out.
    const std::vector<Words> kUsage = {
            {},
            {"alert"},
            {"alert", "raise", "nonsense"},
            {"alert", "screen", "maybe"},
            {"alert", "monitor", "-5"},
            {"channel", "favourite", "list", "--favourites", "5"},
            {"channel", "set", "1", "--lock", "--unlock"},
            {"satellite", "set", "1", "--port", "17"},
            {"ci", "nonsense"},
            {"epg", "search", "--age", "19"},
            {"epg", "search", "--limit", "-1"},
            {"epg", "search", "--limit", "0"},
            {"power", "setup", "x"},
            {"record", "disk"},
            {"record", "disk", "--limit", "x"},
            {"record", "schedule", "67108865", "+5"},
            {"record", "schedule", "67108865", "+5", "60", "--repeat", "yearly"},
            {"scan"},
            {"scan", "start", "sideways"},
            {"scan", "start", "--mhz", "-5"},
            {"service", "plug", "x", "on"},
            {"session"},
            {"watch", "--seconds", "-1"},
            {"watch", "--count", "-1"},
            {"screen", "overscan", "1", "2", "3"},
            {"time", "source", "nothing"},
            {"timeshift", "device", "/tmp", "0"},
            {"timeshift", "seek", "-1"},
            {"tune", "1", "--wait", "-1"},
            {"upgrade", "run", "--item", "x"},
    };
    for (const Words& words : kUsage) {
        const Ended ended = qeltvctl(words);
        EXPECT_EQ(2, ended.status) << joined(words);
        EXPECT_NE("", ended.err) << joined(words);
        EXPECT_EQ("", ended.out) << joined(words);
    }

    EXPECT_EQ(85, json({"config", "get", "picture.contrast"})["value"]);
    EXPECT_EQ(0, json({"rating", "show"})["dvb-age"]);
    EXPECT_EQ(0u, json({"rating", "show"})["us-tv"].size());
    EXPECT_EQ(0u, json({"record", "schedule"}).size());
    EXPECT_EQ("none", json({"alert", "status"})["alert"]["type"]);
}

TEST_F(ToolGroups, TheTelevisionRefusesWhatIsNotThereOrNotNow) {
    const std::vector<std::pair<Words, std::string>> kRefused = {
            {{"alert", "end"}, "end: not now or not allowed (-5)"},
            {{"alert", "raise", "test", "--seconds", "-1"},
             "alert: not a value that the television takes (-4)"},
            {{"alert", "monitor", "0"}, "monitor: not a value that the television takes (-4)"},
            {{"alert", "unmonitor", "6"}, "unmonitor: no such thing (-3)"},
            {{"alert", "cancel", "99"}, "cancel: no such thing (-3)"},
            {{"audio", "select", "99"}, "audio: no such thing (-3)"},
            {{"audio", "language", "xyz"}, "xyz: no such thing (-3)"},
            {{"biss", "clear", "7"}, "key 7: no such thing (-3)"},
            {{"channel", "favourite", "move", "5", "9"}, "move: no such thing (-3)"},
            {{"channel", "find", "zzzzzz"}, "no channel has \"zzzzzz\" in its name"},
            {{"channel", "show", "31999"}, "there is no channel 31999"},
            {{"channel", "snapshot", "restore", "99"}, "snapshot 99: no such thing (-3)"},
            {{"ci", "pin", "12"}, "PIN: not a value that the television takes (-4)"},
            {{"ci", "key", "load", "/nonexistent"}, "/nonexistent: no such thing (-3)"},
            {{"ci", "key", "activate"}, "activate: not now or not allowed (-5)"},
            {{"epg", "now", "9999"}, "there is no channel 9999"},
            {{"input", "select", "nowhere"},
             "there is no input nowhere; qeltvctl input list shows them"},
            {{"input", "label", "HDMI 1", "99"},
             "HDMI 1: not a value that the television takes (-4)"},
            {{"power", "gpio", "64"}, "gpio: no such thing (-3)"},
            {{"power", "gpio", "3", "1"}, "gpio: not now or not allowed (-5)"},
            {{"power", "gpio", "20", "2"}, "gpio: not a value that the television takes (-4)"},
            {{"power", "setup", "0xffffff"}, "power: not a value that the television takes (-4)"},
            {{"rating", "set", "lock", "2"}, "lock: not a value that the television takes (-4)"},
            {{"record", "stop"}, "nothing is being recorded"},
            {{"record", "stop", "99"}, "recording 99: no such thing (-3)"},
            {{"record", "start", "31999"}, "there is no channel 31999"},
            {{"record", "start", "--file", "../x"},
             "../x: not a value that the television takes (-4)"},
            {{"record", "delete", "0"}, "recording 0: no such thing (-3)"},
            {{"record", "unschedule", "3"}, "there is no booking 3"},
            {{"record", "schedule", "air/31999", "+5", "60"}, "there is no channel air/31999"},
            {{"record", "schedule", "67108865", "2020-01-01 20:15", "60"},
             "booking: not a value that the television takes (-4)"},
            {{"satellite", "show", "99.9E"}, "there is no satellite 99.9E"},
            {{"scan", "cancel"}, "cancel: not now or not allowed (-5)"},
            {{"scan", "start", "--mhz", "1"}, "scan: no such thing (-3)"},
            {{"screen", "overscan", "1", "2", "3", "400"},
             "overscan: not a value that the television takes (-4)"},
            {{"subtitle", "play", "99"}, "subtitle 99: no such thing (-3)"},
            {{"teletext", "8ff"}, "page 8ff cannot be shown"},
            {{"teletext", "850"}, "page 850 is not broadcast"},
            {{"time", "set", "2026-03-29", "14:30"}, "time: not now or not allowed (-5)"},
            {{"timeshift", "play"}, "play: not now or not allowed (-5)"},
            {{"timeshift", "device", "relative", "5"},
             "relative: not a value that the television takes (-4)"},
            {{"timeshift", "device", "/nonexistent", "5"}, "/nonexistent: no such thing (-3)"},
            {{"tune", "31999"}, "there is no channel 31999"},
            {{"tune", "no such name"}, "there is no channel no such name"},
            {{"tune", "0xfc000001"}, "there is no channel 0xfc000001"},
            {{"upgrade", "cancel"}, "cancel: not now or not allowed (-5)"},
            {{"upgrade", "check", "--item", "9"}, "check: no such thing (-3)"},
            {{"upgrade", "air", "flash"}, "flash: not now or not allowed (-5)"},
            {{"service", "plug", "99", "on"}, "no input 99"},
            {{"service", "raise", "a_hidl_config_update_nfy_fct", "[1]"},
             "a_hidl_config_update_nfy_fct takes 6 values"},
    };
    ASSERT_TRUE(eventually(playing));
    for (const auto& [words, message] : kRefused) refused(words, message);
    EXPECT_EQ(0u, json({"record", "list"}).size()) << "a recording that did not start leaves none";
}

/** The commands of the tool, as it lists them for the manual. */
void leavesOf(const Json& command, const Words& path,
              const std::function<void(const Words&, const Json&)>& visit) {
    for (const Json& sub : command.at("commands")) {
        Words words = path;
        words.push_back(sub.at("name"));
        if (sub.at("commands").empty()) {
            visit(words, sub);
        } else {
            leavesOf(sub, words, visit);
        }
    }
}

TEST_F(ToolGroups, EveryCommandSaysSoWhenThereIsNoTelevision) {
    television.kill();
    const Json tree = Json::parse(qeltvctl({"--print-commands"}).out);
    // What a command wants besides, where "1" will not do.
    const std::map<std::string, std::string> kValues = {
            {"type", "test"},
            {"severity", "test"},
            {"launched", "on"},
            {"on", "on"},
            {"list", "air"},
            {"input", "HDMI 1"},
            {"path", "/tmp"},
            {"source", "manual"},
            {"date", "2026-03-29"},
            {"time", "14:30"},
            {"zone", "+01:00"},
            {"item", "picture.hue"},
            {"ratings", "TV-14"},
            {"setting", "dvb-age"},
            {"language", "eng"},
            {"fault", "lose"},
            {"method", "qeltvapi_config_get_value"},
            {"notification", "config"},
            {"key", "ok"},
            {"values", "[]"},
            {"function", "a_qeltvapi_volctrl_getVolume"},
    };
    // About the tool itself or a file, or they wait for a television or start one.
    const std::set<Words> kWithout = {{"list"},
                                      {"service", "wait"},
                                      {"describe"},
                                      {"session"},
                                      {"service", "methods"},
                                      {"service", "notifications"},
                                      {"stream", "info"},
                                      {"replay"},
                                      {"scenario"}};
    // Words of their own for what is not required but is asked for.
    const std::map<Words, Words> kMore = {
            {{"tune"}, {"1"}},
            {{"biss", "clear"}, {"--all"}},
            {{"biss", "set"}, {"--current", "--key", "0123456789ab"}},
            {{"channel", "set"}, {"--lock"}},
            {{"satellite", "set"}, {"--on"}},
            {{"time", "sleep"}, {}},
    };
    size_t seen = 0;
    leavesOf(tree, {}, [&](const Words& path, const Json& command) {
        if (kWithout.count(path) != 0) return;
        Words words = path;
        for (const Json& option : command.at("options")) {
            if (!option.at("required").get<bool>()) continue;
            const std::string name = option.at("names");
            if (!option.at("positional").get<bool>()) words.push_back(name);
            const auto value = kValues.find(name);
            words.push_back(value != kValues.end() ? value->second : "1");
        }
        const auto more = kMore.find(path);
        if (more != kMore.end())
            words.insert(words.end(), more->second.begin(), more->second.end());
        const Ended ended = qeltvctl(words);
        EXPECT_EQ(3, ended.status) << joined(words) << ": " << ended.err;
        EXPECT_EQ(noTelevision(), ended.err) << joined(words);
        EXPECT_EQ("", ended.out) << joined(words);
        ++seen;
    });
    EXPECT_GT(seen, 80u);
}

TEST_F(ToolGroups, EveryCommandThatPrintsJsonPrintsNothingElse) {
    const Json tree = Json::parse(qeltvctl({"--print-commands"}).out);
    // They go on, or print a line for each step.
    const std::set<Words> kStreams = {{"watch"}, {"monitor"}, {"scan", "start"}};
    size_t seen = 0;
    leavesOf(tree, {}, [&](const Words& path, const Json& command) {
        bool hasJson = false, takesMore = false;
        for (const Json& option : command.at("options")) {
            hasJson |= option.at("names") == "--json";
            takesMore |= option.at("required").get<bool>();
        }
        if (!hasJson || takesMore || kStreams.count(path) != 0) return;
        Words words = path;
        words.push_back("--json");
        const Ended ended = qeltvctl(words);
        EXPECT_EQ(0, ended.status) << joined(words) << ": " << ended.err;
        EXPECT_EQ("", ended.err) << joined(words);
        EXPECT_FALSE(Json::parse(ended.out, nullptr, false).is_discarded())
                << joined(words) << ": " << ended.out;
        // Without, people get text.
        words.pop_back();
        EXPECT_TRUE(Json::parse(qeltvctl(words).out, nullptr, false).is_discarded())
                << joined(words);
        ++seen;
    });
    EXPECT_GT(seen, 20u);
}

TEST_F(ToolGroups, AlertsAndWarnings) {
    done({"alert", "monitor", "5"});
    refused({"alert", "monitor", "5"}, "monitor: not now or not allowed (-5)");
    done({"alert", "raise", "warning", "--area", "3", "--seconds", "50", "--channel", "67108866"});
    Json status = json({"alert", "status"});
    EXPECT_EQ("warning", status["alert"]["type"]);
    EXPECT_EQ(3, status["alert"]["area"]);
    EXPECT_EQ(67108866, status["alert"]["channel"]);
    EXPECT_EQ(Json::array({5}), status["monitors"]);
    EXPECT_EQ(67108866, json({"status"})["paths"][0]["channel"]) << "it goes there";
    EXPECT_TRUE(eventually(playing));
    done({"alert", "screen", "on"});
    EXPECT_TRUE(json({"alert", "status"})["launched"].get<bool>());
    done({"alert", "end"});
    EXPECT_FALSE(json({"alert", "status"})["alert"]["channel_change"].get<bool>());
    EXPECT_EQ(67108865, json({"status"})["paths"][0]["channel"]) << "and back";
    done({"alert", "raise", "test", "--channel", "67108867"});
    done({"alert", "leave"});
    EXPECT_EQ(67108867, json({"status"})["paths"][0]["channel"]) << "the viewer stays";
    refused({"alert", "end"}, "end: not now or not allowed (-5)");

    prints({"alert", "warn", "watch", "--area", "5"}, "warning 1\n");
    prints({"alert", "warn", "test", "--area", "6", "--seconds", "9"}, "warning 2\n");
    status = json({"alert", "status", "--area", "5"});
    ASSERT_EQ(1u, status["warnings"].size());
    EXPECT_EQ("watch", status["warnings"][0]["severity"]);
    EXPECT_EQ(2u, json({"alert", "status"})["warnings"].size());
    done({"alert", "cancel", "1"});
    EXPECT_EQ(2, json({"alert", "status"})["warnings"][0]["number"]);
    restart();
    status = json({"alert", "status"});
    EXPECT_EQ(Json::array({5}), status["monitors"]) << "kept";
    EXPECT_EQ(0u, status["warnings"].size()) << "broadcast, not kept";
    done({"alert", "unmonitor", "5"});
}

TEST_F(ToolGroups, TuningByEveryName) {
    ASSERT_TRUE(eventually(playing));
    const Json channels = json({"channel", "list", "air", "--tv"});
    ASSERT_GT(channels.size(), 3u);
    const Json& wanted = channels[3];
    const std::string name = wanted["name"];
    const Ended tuned = qeltvctl({"tune", "--service", wanted["service"].dump()});
    EXPECT_EQ(0, tuned.status) << tuned.err;
    EXPECT_NE(std::string::npos, tuned.out.find(name)) << tuned.out;
    const Json shown = json({"status"})["paths"][0];
    EXPECT_EQ("playing", shown["status"]);
    EXPECT_EQ(idOf(wanted), shown["channel"].dump());
    EXPECT_EQ(name, json({"channel", "show", "current"})["name"]);
    refused({"tune", "--service", "1"}, "tune: no such thing (-3)");
    EXPECT_EQ(shown["channel"], json({"status"})["paths"][0]["channel"]);

    done({"tune", "up"});
    EXPECT_NE(shown["channel"], json({"status"})["paths"][0]["channel"]);
    done({"tune", "down"});
    EXPECT_EQ(shown["channel"], json({"status"})["paths"][0]["channel"]);
    done({"tune", idOf(channels[0])});
    EXPECT_EQ(channels[0]["name"], json({"channel", "show", "current"})["name"]);
    done({"tune", "last"});
    EXPECT_EQ(shown["channel"], json({"status"})["paths"][0]["channel"]);
    // The tuner is taken.
    EXPECT_EQ(1, qeltvctl({"tune", "1", "--path", "sub"}).status);
    refused({"tune", "--frequency", "1"}, "TV: no signal");
    restart();
    ASSERT_TRUE(eventually(playing));
    EXPECT_EQ(name, json({"channel", "show", "current"})["name"]);
}

TEST_F(ToolGroups, TheClockSleepTimerAndBookingsGoByTheTelevisionsTime) {
    done({"time", "source", "manual"});
    done({"config", "set", "system.time_zone", "Asia/Tokyo"});
    done({"time", "set", "2031-05-06", "23:30"});
    EXPECT_EQ(0u, json({"time", "show"})["local_text"].get<std::string>().find("2031-05-06 23:3"));
    done({"record", "schedule", "67108865", "2031-05-07 10:00", "60", "--programme", "Later"});
    done({"record", "schedule", "67108865", "+600", "60", "--programme", "Sooner", "--repeat",
          "daily"});
    const Json bookings = json({"record", "schedule"});
    ASSERT_EQ(2u, bookings.size());
    EXPECT_EQ("Sooner", bookings[0]["programme"]);
    EXPECT_EQ("daily", bookings[0]["repeat"]);
    // 10:00 in Tokyo is 01:00 UTC.
    EXPECT_EQ(1935882000, bookings[1]["start"].get<int64_t>());
    const Ended table = qeltvctl({"record", "schedule"});
    EXPECT_NE(std::string::npos, table.out.find("2031-05-07 10:00:00")) << table.out;

    // Not with one of another multiplex at that time, but for another answer.
    std::string other;
    const Json channels = json({"channel", "list", "air"});
    for (const Json& channel : channels) {
        if (channel["multiplex"]["record"] == channels[0]["multiplex"]["record"]) continue;
        other = idOf(channel);
        break;
    }
    ASSERT_NE("", other);
    refused({"record", "schedule", other, "2031-05-07 10:00:30", "60"},
            "another booking is in the way; --force books in spite of it");
    done({"record", "schedule", other, "2031-05-07 10:01", "60"});
    done({"record", "schedule", other, "2031-05-07 10:00:30", "60", "--force"});
    restart();
    EXPECT_EQ(4u, json({"record", "schedule"}).size());
    done({"record", "unschedule", bookings[1]["number"].dump()});
    refused({"record", "unschedule", bookings[1]["number"].dump()},
            "there is no booking " + bookings[1]["number"].dump());

    done({"time", "sleep", "90s"});
    EXPECT_GT(json({"time", "show"})["sleep_left"], 80);
    restart();
    const Json after = json({"time", "show"});
    EXPECT_EQ(0, after["sleep_left"].is_number() ? after["sleep_left"].get<int>() : 0);
    EXPECT_EQ(0u, after["local_text"].get<std::string>().find("2031-05-06 23:3"))
            << "a clock that was set by hand keeps its time";
    done({"time", "source", "broadcast"});
    EXPECT_NE(0u, json({"time", "show"})["local_text"].get<std::string>().find("2031-"));
}

TEST_F(ToolGroups, RecordingsFromStartToDeletion) {
    ASSERT_TRUE(eventually(playing));
    done({"config", "set", "system.time_zone", "Pacific/Auckland"});
    done({"record", "disk", "--limit", "16", "--rate", "512"});
    EXPECT_EQ(16 << 20, json({"record", "status"})["disk"]["total"]);
    const Json started = json({"record", "start", "--programme", "Late film"});
    const std::string handle = started["recording"].dump();
    // The name has the local time of the television.
    const std::string local = json({"time", "show"})["local_text"];
    const std::string day = local.substr(0, 4) + local.substr(5, 2) + local.substr(8, 2);
    EXPECT_EQ(0u, started["file"].get<std::string>().find(day)) << started["file"] << local;
    ASSERT_TRUE(eventually([] { return json({"record", "status"})["recording"]["bytes"] > 0; }));
    refused({"record", "delete", "0"}, "recording 0: no such thing (-3)");
    const Ended stopped = qeltvctl({"record", "stop", handle});
    EXPECT_EQ(0, stopped.status);
    EXPECT_EQ(0u, stopped.out.find("recording " + handle + ": ")) << stopped.out;
    refused({"record", "stop"}, "nothing is being recorded");
    const Json list = json({"record", "list"});
    ASSERT_EQ(1u, list.size());
    EXPECT_EQ("by user", list[0]["stop_reason"]);
    EXPECT_EQ("Late film", list[0]["programme"]);
    EXPECT_NE(std::string::npos, qeltvctl({"record", "list"}).out.find(local.substr(0, 13)));
    // A player needs the table that names the programmes.
    const std::string path = list[0]["path"];
    const auto playable = [] { return json({"record", "info", "0"})["playable"]; };
    std::vector<char> packet(188, '\xff');
    packet[0] = 0x47;
    const auto write = [&](char low) {
        packet[1] = 0;
        packet[2] = low;
        std::ofstream(path, std::ios::binary).write(packet.data(), 188);
    };
    write(17);
    EXPECT_EQ(false, playable());
    EXPECT_NE(std::string::npos, qeltvctl({"record", "info", "0"}).out.find("no: "));
    write(0);
    EXPECT_EQ(true, playable());
    std::filesystem::remove(path);
    EXPECT_TRUE(playable().is_null());
    restart();
    EXPECT_EQ("Late film", json({"record", "list"})[0]["programme"]);
    EXPECT_EQ(16 << 20, json({"record", "status"})["disk"]["total"]);
    done({"record", "delete", "0"});
    EXPECT_EQ(0u, json({"record", "list"}).size());
}

TEST_F(ToolGroups, TimeshiftFromDeviceToStop) {
    const TemporaryDirectory directory;
    EXPECT_EQ("none", json({"timeshift", "status"})["device"]);
    done({"timeshift", "device", directory.path(), "256"});
    ASSERT_TRUE(eventually([] { return json({"timeshift", "status"})["device"] == "ready"; }));
    done({"timeshift", "start"});
    refused({"timeshift", "start"}, "start: not now or not allowed (-5)");
    done({"timeshift", "pause"});
    const Json paused = json({"timeshift", "status"});
    EXPECT_EQ("records", paused["status"]);
    ASSERT_TRUE(eventually([] { return json({"timeshift", "status"})["duration_ms"] > 400; }));
    EXPECT_EQ(paused["position_ms"], json({"timeshift", "status"})["position_ms"]);
    done({"timeshift", "seek", "0.25"});
    EXPECT_EQ(250, json({"timeshift", "status"})["position_ms"]);
    refused({"timeshift", "seek", "1000"}, "seek: not a value that the television takes (-4)");
    refused({"timeshift", "speed", "6500"}, "speed: not a value that the television takes (-4)");
    done({"timeshift", "stop", "--keep"});
    EXPECT_EQ("kept", json({"timeshift", "status"})["status"]);
    done({"timeshift", "stop"});
    refused({"timeshift", "stop"}, "stop: not now or not allowed (-5)");
}

TEST_F(ToolGroups, PictureSoundPowerAndInputsAreKept) {
    done({"input", "select", "HDMI 1"});
    done({"volume", "33", "--type", "headphone"});
    prints({"volume", "up", "--type", "headphone"}, "34\n");
    prints({"volume", "+5", "--type", "headphone"}, "39\n");
    prints({"volume", "+90", "--type", "headphone"}, "100\n");
    prints({"volume", "-66", "--type", "headphone"}, "34\n");
    prints({"volume", "down", "--type", "headphone"}, "33\n");
    done({"mute", "on", "--type", "headphone"});
    done({"audio", "effect", "2"});
    done({"picture", "mode", "2"});
    done({"screen", "overscan", "1", "2", "3", "4", "--keep"});
    done({"input", "name", "HDMI 1", "Console"});
    done({"input", "label", "HDMI 2", "3"});
    done({"input", "block", "HDMI 3", "on"});
    done({"power", "setup", "0x2"});
    done({"power", "gpio", "20", "1"});
    prints({"power", "gpio", "20"}, "1\n");
    done({"picture", "freeze", "on"});
    const auto current = [](const Json& modes) {
        for (const Json& mode : modes) {
            if (mode.value("current", false)) return mode.dump();
        }
        return std::string("none");
    };
    const std::string effect = current(json({"audio", "effect"}));
    const std::string mode = current(json({"picture", "mode"}));
    EXPECT_NE("none", effect);
    EXPECT_NE("none", mode);
    done({"power", "down", "--reason", "2"});
    EXPECT_EQ("stopped", json({"status"})["paths"][0]["status"]);
    const std::string standby =
            ": not now or not allowed (-5): the television is in standby; wake it with qeltvctl "
            "power "
            "up";
    refused({"power", "suspend"}, "power" + standby);
    refused({"tune", "1"}, "tune" + standby);
    refused({"key", "channel-up"}, "key channel-up" + standby);
    EXPECT_TRUE(json({"status"})["standby"].get<bool>());
    EXPECT_EQ(0u, qeltvctl({"status"}).out.find("standby; "));
    refused({"power", "up"},
            "power: not now or not allowed (-5): the remote control may not wake it; see qeltvctl "
            "power setup");
    done({"power", "setup", "0x4"});
    done({"power", "up"});
    EXPECT_FALSE(json({"power", "status"})["standby"].get<bool>());
    prints({"power", "up"}, "the television is on already\n");
    EXPECT_FALSE(json({"status"})["standby"].get<bool>());
    done({"power", "setup", "0x6"});
    done({"key", "power", "power", "power"});
    EXPECT_TRUE(json({"power", "status"})["standby"].get<bool>());
    done({"power", "up"});
    done({"power", "down", "--reason", "2"});

    restart();
    const Json headphone = json({"volume"})[1];
    EXPECT_EQ(33, headphone["volume"]);
    EXPECT_FALSE(headphone["muted"].get<bool>()) << "mutes are not kept";
    EXPECT_EQ(effect, current(json({"audio", "effect"})));
    EXPECT_EQ(mode, current(json({"picture", "mode"})));
    prints({"screen", "overscan"}, "top 1, bottom 2, left 3, right 4\n");
    const Json inputs = json({"input", "list"});
    EXPECT_EQ("Console", inputs[5]["shown"]);
    EXPECT_EQ(3, inputs[6]["label"]);
    EXPECT_TRUE(inputs[7]["block_set"].get<bool>());
    EXPECT_FALSE(inputs[5]["block_set"].get<bool>());
    const Json power = json({"power", "status"});
    EXPECT_EQ(6, power["wake_setup"]);
    EXPECT_EQ(2, power["down_reason"]);
    prints({"power", "gpio", "20"}, "0\n");
}

TEST_F(ToolGroups, SubtitlesTeletextAndKeysOfTheHost) {
    const Json subtitles = json({"subtitle", "list"});
    ASSERT_GT(subtitles.size(), 1u);
    done({"subtitle", "play", "2"});
    const auto shown = [](const Json& all) {
        int number = 0;
        for (const Json& one : all) {
            if (one.value("plays", false)) number = one["number"].get<int>();
        }
        return number;
    };
    EXPECT_EQ(2, shown(json({"subtitle", "list"})));
    done({"subtitle", "next"});
    EXPECT_EQ(3, shown(json({"subtitle", "list"})));
    done({"subtitle", "play", "0"});
    EXPECT_EQ(0, shown(json({"subtitle", "list"})));

    done({"config", "set", "system.time_zone", "Asia/Tokyo"});
    const Ended page = qeltvctl({"teletext", "100", "--plain"});
    EXPECT_EQ(0, page.status);
    // The first row has the page, the date and the time, at the place of the television.
    const std::string hour = json({"time", "show"})["local_text"].get<std::string>().substr(11, 3);
    EXPECT_NE(std::string::npos, page.out.substr(0, page.out.find('\n')).find(hour)) << page.out;
    const Ended top = qeltvctl({"teletext", "--top"});
    EXPECT_EQ(0u, top.out.find("PAGE  TITLE\n100   ")) << top.out;

    const TemporaryDirectory directory;
    const std::string path = directory.path() + "/key";
    std::ofstream(path) << std::string(15, 'k');
    refused({"ci", "key", "load", path}, path + ": not a value that the television takes (-4)");
    std::ofstream(path) << std::string(16, 'k');
    done({"ci", "key", "load", path, "--kind", "1"});
    done({"ci", "key", "activate"});
    const Json before = json({"ci", "status"});
    EXPECT_EQ(std::string::npos, before.dump().find("kkkk"));
    restart();
    EXPECT_EQ(before["keys"], json({"ci", "status"})["keys"]);
    EXPECT_EQ(before["host_id"], json({"ci", "status"})["host_id"]);
    done({"ci", "key", "erase"});
    EXPECT_NE(before["keys"], json({"ci", "status"})["keys"]);
    done({"ci", "pin", "4321"});
    done({"ci", "remove"});
    EXPECT_NE("ready", json({"ci", "status"})["slot"]);
    refused({"ci", "menu"}, "there is no CAM that is ready");
    done({"ci", "insert"});
}

TEST_F(ToolGroups, WatchPrintsWhatComesAndEndsAfterACount) {
    // A line for each notification, so that a script can read on.
    std::thread raiser([] {
        for (int i = 0; i < 200; ++i) {
            qeltvctl({"service", "raise", "a_hidl_qeltvapi_sleep_timer_callback_fct", "[1,0,42]"});
            const Json dump = Json::parse(qeltvctl({"service", "dump"}).out, nullptr, false);
            if (i > 2 && dump.is_object() && dump["clients"].empty()) break;
        }
    });
    const Ended watched = qeltvctl({"watch", "sleep_timer", "--json", "--count", "2"});
    raiser.join();
    EXPECT_EQ(0, watched.status) << watched.err;
    size_t lines = 0;
    std::istringstream all(watched.out);
    for (std::string line; std::getline(all, line); ++lines) {
        const Json shown = Json::parse(line, nullptr, false);
        ASSERT_TRUE(shown.is_object()) << line;
        EXPECT_EQ("sleep_timer", shown["kind"]) << line;
        EXPECT_EQ(0u, shown["event"].get<std::string>().find("QELTV_SLEEP_")) << line;
        EXPECT_EQ(42, shown["values"]["seconds"]) << line;
    }
    EXPECT_EQ(2u, lines);
    const Ended quiet = qeltvctl({"watch", "--seconds", "0.2", "config"});
    EXPECT_EQ(0, quiet.status);
    EXPECT_EQ("", quiet.out);
    refused({"watch", "--seconds", "0.2", "--count", "1", "config"},
            "0 of 1 notifications arrived");
    refused({"watch", "--timeout", "0.2", "--expect", "volume", "config"},
            "none of 0 notifications matches \"volume\"");
}

TEST_F(ToolGroups, WatchEndsWithTheLineThatIsExpected) {
    ASSERT_TRUE(eventually(playing));
    const Json channel = json({"channel", "list", "air", "--tv", "--free"})[2];
    const std::string id = channel["id"], name = channel["name"];
    Ended watched{};
    std::thread watcher([&] {
        watched = qeltvctl({"watch", "broadcast", "--timeout", "50", "--expect",
                            "^broadcast +plays channel=" + id});
    });
    ASSERT_TRUE(eventually([] {
        return !Json::parse(qeltvctl({"service", "dump"}).out)["clients"].empty();
    }));
    done({"tune", name});
    watcher.join();
    EXPECT_EQ(0, watched.status) << watched.err;
    EXPECT_NE(std::string::npos, watched.out.find("broadcast        selecting channel=0x"))
            << watched.out;
    EXPECT_NE(std::string::npos, watched.out.find(" error=no_error")) << watched.out;
}

TEST_F(ToolGroups, EveryCommandTakesAChannelByEachOfItsNames) {
    const Json channel = json({"channel", "list", "air"})[1];
    const std::string name = channel["name"], number = channel["number"], id = channel["id"];
    for (const std::string& one : {number, "air/" + number, name, id, idOf(channel)}) {
        EXPECT_EQ(name, json({"channel", "show", one})["name"]) << one;
        EXPECT_EQ(idOf(channel), json({"epg", "now", one})[0]["channel"].dump()) << one;
        done({"tune", one});
        EXPECT_EQ(idOf(channel), json({"status"})["paths"][0]["channel"].dump()) << one;
        done({"record", "schedule", one, "+90", "60", "--force"});
        EXPECT_EQ(idOf(channel), json({"record", "schedule"})[0]["channel"].dump()) << one;
        done({"record", "unschedule", json({"record", "schedule"})[0]["number"].dump()});
    }
    const Ended ids = qeltvctl({"channel", "list", "air", "--ids"});
    EXPECT_NE(std::string::npos, ids.out.find("\n" + id + "  air"));
}

TEST_F(ToolGroups, ATuneThatAnotherClientOvertakesSaysSo) {
    ASSERT_TRUE(eventually(playing));
    const Json channels = json({"channel", "list", "air", "--tv", "--free"});
    ASSERT_GT(channels.size(), 4u);
    const std::string wanted = channels[3]["id"];
    // The first look at the result comes late enough for a second selection, which this process
    // makes itself: with an emulator another one would take too long to start.
    done({"service", "fault", "c_svctx_get_conn_attr", "delay", "1500", "--times", "1"});
    Ended first{};
    std::thread tuner([&] { first = qeltvctl({"tune", wanted}); });
    ASSERT_TRUE(eventually([&] {
        uint32_t selected[1024] = {};
        uint32_t length = sizeof(selected);
        return c_svctx_get(QELTV_CONTEXT_OF_MAIN, QELTV_CONTEXT_CHANNEL, selected, &length) == 0 &&
               selected[0] == std::stoul(wanted, nullptr, 0);
    }));
    const auto other = static_cast<int32_t>(std::stoul(idOf(channels[4])));
    EXPECT_EQ(0, a_qeltvapi_broadcast_select_channel(0, other, 0, false));
    tuner.join();
    EXPECT_EQ(1, first.status) << first.out;
    EXPECT_EQ("", first.out);
    EXPECT_NE(std::string::npos,
              first.err.find("overtaken by " + channels[4]["name"].get<std::string>()))
            << first.err;
}

}  // namespace
