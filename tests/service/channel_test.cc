// The channel data: qeltvctl and the library's functions against a real television.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiChannelList.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

#include "daemon.h"
#include "eventually.h"
#include "hw_iom.h"
#include "hw_qeltvapi_bisskey.h"
#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_dvbsconfig.h"
#include "hw_svl.h"
#include "hw_tsl.h"
#include "inbox.h"
#include "layouts/channel_records.h"
#include "layouts/codes.h"

using namespace wire;
using nlohmann::json;

namespace {

constexpr uint32_t kAir = CHANNEL_LIST_AIR, kSatellite = CHANNEL_LIST_SATELLITE;

struct Event {
    std::string what;
    int32_t type;
    std::vector<uint64_t> values;
    std::string data;
};

/** Notifications as they come. */
class Heard : public Inbox<Event> {
  public:
    static Heard& instance() {
        static Heard sHeard;
        return sHeard;
    }

    /** Waits for the first event of a kind, which stays. */
    Event wait(const std::string& what, int32_t type) {
        const auto found =
                find([&](const Event& event) { return event.what == what && event.type == type; });
        if (!found) ADD_FAILURE() << "no notification " << what << " " << type;
        return found.value_or(Event{});
    }
    size_t count(const std::string& what) {
        return Inbox::count([&](const Event& event) { return event.what == what; });
    }
};

int onChannels(int32_t type, uintptr_t, uintptr_t a, uintptr_t b, uintptr_t c, uintptr_t d) {
    Heard::instance().put({"channels", type, {a, b, c, d}, ""});
    return 0;
}

int onBiss(int32_t type, uintptr_t, uintptr_t a, uintptr_t b, uintptr_t c, uintptr_t d) {
    Heard::instance().put({"biss", type, {a, b, c, d}, ""});
    return 0;
}

int onSatellites(int32_t type, uintptr_t, uintptr_t a, uintptr_t b, uintptr_t, uintptr_t d) {
    Heard::instance().put({"satellites", type, {a, b, d}, ""});
    return 0;
}

int onUart(uintptr_t tag, uintptr_t handle, const void* data, uint32_t size) {
    Heard::instance().put(
            {"uart", 0, {tag, handle}, std::string(static_cast<const char*>(data), size)});
    return 0;
}

Ended ok(std::vector<std::string> arguments) {
    const Ended ended = qeltvctl(std::move(arguments));
    EXPECT_EQ(0, ended.status) << ended.err;
    return ended;
}

/** Edits through the tool, whose every command is a process of its own. */
class ChannelTool : public testing::Test {
  protected:
    static std::vector<std::string> numbersAndNames(const std::vector<std::string>& arguments) {
        std::vector<std::string> found;
        for (const json& channel : json::parse(ok(arguments).out)) {
            found.push_back(channel.at("list").get<std::string>() + "/" +
                            channel.at("number").get<std::string>() + " " +
                            channel.at("name").get<std::string>());
        }
        return found;
    }

    Daemon television;
};

TEST_F(ChannelTool, TheLineUpIsTheSameForEveryTelevisionAndOnRealTransponders) {
    television.start();
    const std::string first = ok({"channel", "list", "--all", "--json"}).out;
    Daemon other;
    television.kill();
    other.start();
    EXPECT_EQ(first, ok({"channel", "list", "--all", "--json"}).out);

    std::set<std::string> names;
    std::set<uint64_t> frequencies;
    for (const json& channel : json::parse(first)) {
        names.insert(channel.at("name").get<std::string>());
        if (channel.at("list") == "air") {
            frequencies.insert(channel.at("multiplex").at("frequency_hz").get<uint64_t>());
        }
    }
    EXPECT_GT(names.size(), 100u);
    std::ifstream table("/usr/share/dvb/dvb-t/de-Berlin");
    if (!table) GTEST_SKIP() << "no scan tables on this machine";
    std::set<uint64_t> real;
    for (std::string key, equals, value; table >> key;) {
        if (key == "FREQUENCY" && table >> equals >> value) real.insert(std::stoull(value));
    }
    EXPECT_EQ(real, frequencies);
}

TEST_F(ChannelTool, WithoutScanTablesThereAreTheBuiltInOnes) {
    setenv("QELTVD_SCAN_TABLES", "/nonexistent", 1);
    television.start();
    unsetenv("QELTVD_SCAN_TABLES");
    EXPECT_GE(numbersAndNames({"channel", "list", "air", "--json"}).size(), 10u);
    EXPECT_GE(numbersAndNames({"channel", "list", "satellite", "--json"}).size(), 5u);
}

TEST_F(ChannelTool, AnotherRegionIsThereAfterARestart) {
    television.start();
    ok({"config", "set", "channels.region", "atsc/us-ATSC-center-frequencies-8VSB"});
    television.kill();
    television.start();
    const json all = json::parse(ok({"channel", "list", "--json"}).out);
    ASSERT_FALSE(all.empty());
    for (const json& channel : all) {
        EXPECT_EQ("ATSC", channel.at("multiplex").at("system"));
        const auto rf = channel.at("multiplex").at("rf_channel").get<int>();
        EXPECT_EQ(0u, channel.at("number").get<std::string>().find(std::to_string(rf) + "."));
    }
    const std::string number = all[3].at("number");
    const json one = json::parse(ok({"channel", "show", "air/" + number, "--json"}).out);
    EXPECT_EQ(all[3], one);
    EXPECT_EQ("[]\n", ok({"satellite", "list", "--json"}).out);
}

TEST_F(ChannelTool, EditsOutliveTheTelevision) {
    television.start();
    const auto before = numbersAndNames({"channel", "list", "air", "--json"});
    ok({"channel", "set", "air/3", "--name", "Ürsprung ß", "--lock", "--skip"});
    ok({"channel", "set", "air/4", "--hide"});
    ok({"channel", "set", "air/5", "--number", "700", "--current"});
    ok({"channel", "favourite", "add", "air/2", "satellite/1", "air/3"});
    ok({"channel", "favourite", "add", "--favourites", "4", "air/2"});
    ok({"channel", "favourite", "move", "3", "1"});
    television.kill();
    television.start();

    const json third = json::parse(ok({"channel", "show", "air/3", "--json"}).out);
    EXPECT_EQ("Ürsprung ß", third.at("name"));
    EXPECT_EQ((json{"locked", "skipped", "favourite1"}), third.at("flags"));
    const json second = json::parse(ok({"channel", "show", "air/2", "--json"}).out);
    EXPECT_EQ((json{"favourite1", "favourite4"}), second.at("flags"));
    EXPECT_EQ("700", json::parse(ok({"channel", "show", "current", "--json"}).out).at("number"));
    const auto favourites = numbersAndNames({"channel", "favourite", "list", "--json"});
    ASSERT_EQ(3u, favourites.size());
    EXPECT_EQ("air/3 Ürsprung ß", favourites[0]);
    EXPECT_EQ(before[1], favourites[1]);
    EXPECT_EQ(0u, favourites[2].find("satellite/1 "));

    // The hidden one is listed only when asked for, the renumbered one is the last.
    const auto after = numbersAndNames({"channel", "list", "air", "--json"});
    EXPECT_EQ(before.size() - 1, after.size());
    EXPECT_EQ("air/700" + before[4].substr(5), after.back());
    EXPECT_EQ(before.size(), numbersAndNames({"channel", "list", "air", "--all", "--json"}).size());
    EXPECT_EQ(1u, numbersAndNames({"channel", "find", "SPRUNG", "--json"}).size());
}

TEST_F(ChannelTool, RefusesWhatCannotBeInOneLine) {
    television.start();
    const auto failed = [](std::vector<std::string> arguments, int status, const char* err) {
        const Ended ended = qeltvctl(std::move(arguments));
        EXPECT_EQ(status, ended.status);
        EXPECT_EQ(err, ended.err);
        EXPECT_EQ("", ended.out);
    };
    failed({"channel", "show", "air/9999"}, 1, "qeltvctl: there is no channel air/9999\n");
    failed({"channel", "set", "air/1", "--number", "2"}, 1, "qeltvctl: the number 2 is taken\n");
    failed({"channel", "set", "air/1"}, 2, "qeltvctl: nothing to set\n");
    failed({"channel", "list", "moon"}, 2,
           "qeltvctl: no such list: moon (air, cable, satellite)\n");
    failed({"channel", "favourite", "remove", "air/1"}, 1, "qeltvctl: air/1: no such thing (-3)\n");
    failed({"channel", "snapshot", "restore", "77"}, 1,
           "qeltvctl: snapshot 77: no such thing (-3)\n");
    failed({"satellite", "show", "5.0W"}, 1, "qeltvctl: there is no satellite 5.0W\n");
    failed({"biss", "set", "--key", "0102"}, 2,
           "qeltvctl: a new key takes --current, or --frequency, --position, --polarisation\n");
}

TEST_F(ChannelTool, SatellitesAndTheirSnapshotAndKeys) {
    television.start();
    ok({"satellite", "set", "19.2E", "--name", "Nineteen", "--port", "3", "--low", "9751000",
        "--off"});
    const json satellites = json::parse(ok({"satellite", "list", "--json"}).out);
    ASSERT_EQ(1u, satellites.size());
    EXPECT_EQ("Nineteen", satellites[0].at("name"));
    EXPECT_EQ(3, satellites[0].at("switch_port"));
    EXPECT_EQ(9751000, satellites[0].at("low_oscillator_khz"));
    EXPECT_FALSE(satellites[0].at("enabled").get<bool>());
    const json whole = json::parse(ok({"satellite", "show", "1", "--json"}).out);
    EXPECT_EQ(satellites[0].at("transponders").get<size_t>(), whole.at("transponders").size());

    const Ended added = ok({"biss", "set", "--frequency", "11954000", "--position", "19.2E",
                            "--polarisation", "H", "--key", "123456 789ABC"});
    EXPECT_EQ("1\n", added.out);
    // The television checks the sums that a whole key has in it.
    const Ended wrong = qeltvctl({"biss", "set", "1", "--key", "1234569d789abc00"});
    EXPECT_EQ(1, wrong.status);
    EXPECT_EQ("qeltvctl: key: not a value that the television takes (-4)\n", wrong.err);
    // Zeros stand for the sums.
    ok({"biss", "set", "1", "--key", "1234560078 9ABC00"});
    for (const bool asJson : {false, true}) {
        std::vector<std::string> list{"biss", "list"};
        if (asJson) list.push_back("--json");
        EXPECT_EQ(std::string::npos, ok(list).out.find("123456"));
        list.push_back("--show-keys");
        EXPECT_NE(std::string::npos, ok(list).out.find("1234569C789ABCCE"));
    }
    EXPECT_EQ(1, qeltvctl({"biss", "clear", "9"}).status);
    ok({"biss", "clear", "1"});
    EXPECT_EQ("[]\n", ok({"biss", "list", "--json"}).out);
}

/** The library's functions in this process, against one television for all tests. */
class ChannelFunctions : public testing::Test {
  protected:
    struct Pair {
        channel_record_t svl;
        multiplex_record_t tsl;
    };

    static void SetUpTestSuite() {
        sTelevision = new Daemon;
        sTelevision->start();
        a_qeltvapi_channellist_register_callback(onChannels);
        a_qeltvapi_bisskey_register_callback(onBiss);
        a_qeltvapi_satllist_register_callback(onSatellites);
        // The registration is another thread's.
        ASSERT_TRUE(eventually([] {
            raise(998);
            return Heard::instance().count("channels") > 0;
        }));
    }
    static void TearDownTestSuite() { delete sTelevision; }

    void SetUp() override { reload("dvb-t/de-Berlin dvb-s/Astra-1N-19.2E"); }

    /** The lists as they leave the factory in a region. */
    static void reload(const char* region) {
        ASSERT_EQ(0, a_qeltvapi_config_set_str_value("channels.region", region));
        const channel_request_t none{};
        const uint32_t zero = 0;
        ASSERT_EQ(0, a_qeltvapi_channellist_interface(CHANNEL_REQUEST_RELOAD, &none, 0, 0, &zero));
        for (uint32_t i = 0; i < 4; ++i) ASSERT_EQ(0, a_qeltvapi_favorite_list_del_all(i, 0, 0, 0));
        // Behind this one nothing is left of what has been raised so far.
        raise(999);
        Heard::instance().wait("channels", 999);
        Heard::instance().clear();
    }

    static void raise(int32_t type) {
        using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;
        controlTelevision(IQelTvApi::getService("default", false),
                          {"raise", "a_hidl_qeltvapi_channellist_update_callback_fct",
                           "[" + std::to_string(type) + ",0,0,0,0,0]"});
    }

    static uint32_t count(uint32_t list) {
        return static_cast<uint32_t>(a_qeltvapi_channellist_get_number_by_mask(list, 0, 0));
    }
    static channel_record_t at(uint32_t list, uint32_t index) {
        channel_record_t record{};
        EXPECT_EQ(0, a_qeltvapi_channellist_get_svl_rec_by_index(list, 0, 0, index, &record));
        return record;
    }
    static Pair read(uint32_t list, uint32_t record) {
        Pair pair{};
        EXPECT_EQ(0, a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(list, record, &pair.svl,
                                                                          &pair.tsl));
        return pair;
    }
    static std::vector<uint32_t> order(uint32_t list) {
        std::vector<uint32_t> records;
        for (uint32_t i = 0; i < count(list); ++i) records.push_back(at(list, i).record_id);
        return records;
    }

    static Daemon* sTelevision;
};

Daemon* ChannelFunctions::sTelevision = nullptr;

TEST_F(ChannelFunctions, ReadOneChannelInEveryWay) {
    const channel_record_t second = at(kAir, 1);
    EXPECT_EQ(kAir, second.list);
    EXPECT_EQ(2u, second.number);
    Pair pair = read(kAir, second.record_id);
    EXPECT_EQ(0, memcmp(&second, &pair.svl, sizeof(second)));
    EXPECT_EQ(second.tsl_record_id, pair.tsl.record_id);

    channel_record_t svl{};
    multiplex_record_t tsl{};
    const auto shortId = static_cast<uint16_t>(second.channel_id);
    EXPECT_EQ(0, a_qeltvapi_channellist_get_channel_by_id(kAir, &shortId, &svl, &tsl));
    EXPECT_EQ(0, memcmp(&pair.svl, &svl, sizeof(svl)));
    EXPECT_EQ(0, memcmp(&pair.tsl, &tsl, sizeof(tsl)));
    svl = {};
    EXPECT_EQ(0, a_qeltvapi_channellist_get_svl_rec_by_channel_id(kAir, second.channel_id, &svl));
    EXPECT_EQ(second.record_id, svl.record_id);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_channellist_get_svl_rec_by_channel_id(
                                       kSatellite, second.channel_id, &svl));

    uint32_t word = 0, size = 0, version = 0, svlHandle = 0, tslHandle = 0;
    svl = {};
    EXPECT_EQ(0, c_svl_get_rec(kAir, second.record_id, &svl, &word));
    EXPECT_EQ(second.channel_id, svl.channel_id);
    tsl = {};
    EXPECT_EQ(0, c_tsl_get_rec(kAir, second.tsl_record_id, &tsl, &word));
    EXPECT_EQ(0, memcmp(&pair.tsl, &tsl, sizeof(tsl)));

    EXPECT_EQ(0, a_qeltvapi_channellist_get_svl_handle_by_svl_id(kAir, &svlHandle));
    EXPECT_EQ(0, a_qeltvapi_channellist_get_tsl_handle_by_svl_id(kAir, &tslHandle));
    svl = {};
    EXPECT_EQ(0, a_qeltvapi_channellist_get_svl_tsl_rec_by_handle(svlHandle, tslHandle, 1, &size,
                                                                  &version, &svl, &tsl));
    EXPECT_EQ(second.record_id, svl.record_id);
    EXPECT_EQ(count(kAir), size);
    EXPECT_EQ(word, version);
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_channellist_get_svl_tsl_rec_by_handle(
                                       svlHandle, svlHandle, 1, &size, &version, &svl, &tsl));

    svl = {};
    EXPECT_EQ(1, a_qeltvapi_channellist_get_number_by_name(kAir, 0, 0, second.name));
    EXPECT_EQ(0, a_qeltvapi_channellist_get_svl_rec_by_index_and_name(kAir, 0, 0, second.name, 0,
                                                                      &svl));
    EXPECT_EQ(second.record_id, svl.record_id);
    const channel_query_t query{CHANNEL_QUERY_SERVICE,
                                uint32_t{second.original_network_id} << 16 | second.stream_id,
                                second.service_id};
    svl = {};
    EXPECT_EQ(1, a_qeltvapi_channellist_get_channel_number_by_query_info(kAir, 0, 0, &query));
    EXPECT_EQ(0, a_qeltvapi_channellist_get_channellist_by_query_info(kAir, 0, 0, &query, &svl,
                                                                      &tsl, 0, 0));
    EXPECT_EQ(second.record_id, svl.record_id);
    uint32_t index = 99;
    EXPECT_EQ(0,
              a_qeltvapi_channellist_get_index_by_channel(kAir, 0, 0, second.channel_id, &index));
    EXPECT_EQ(1u, index);
    EXPECT_EQ(2, a_qeltvapi_channellist_get_channel_number(second.channel_id));
    EXPECT_EQ(1, a_qeltvapi_channellist_is_exist_by_channel_number(kAir, 2));
    EXPECT_EQ(0, a_qeltvapi_channellist_is_exist_by_channel_number(kAir, 4000));
}

TEST_F(ChannelFunctions, TheCurrentChannelIsToldAndFollowed) {
    const channel_record_t third = at(kAir, 2);
    ASSERT_EQ(0, a_qeltvapi_channellist_set_current_channel(third.channel_id));
    const auto notified = Heard::instance().wait("channels", CHANNEL_UPDATE_CURRENT).values;
    ASSERT_EQ(4u, notified.size());
    EXPECT_EQ(kAir, notified[0]);
    EXPECT_EQ(third.channel_id, notified[1]);
    EXPECT_EQ(static_cast<int>(third.channel_id), a_qeltvapi_channellist_get_current_chan_id());
    uint16_t list = 0;
    Pair pair{};
    EXPECT_EQ(0, a_qeltvapi_channellist_get_current_channel(&list, &pair.svl, &pair.tsl));
    EXPECT_EQ(kAir, list);
    EXPECT_EQ(third.record_id, pair.svl.record_id);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_channellist_set_current_channel(0x07ffffff));

    // It stays the current one under another number, and is none when it has gone.
    const channel_record_t first = at(kAir, 0);
    ASSERT_EQ(0, a_qeltvapi_channellist_swap_channels(kAir, first.channel_id, third.channel_id));
    EXPECT_EQ(static_cast<int>(first.channel_id), a_qeltvapi_channellist_get_current_chan_id());
    ASSERT_EQ(0, a_qeltvapi_channellist_del_tsl_svl_rec_by_tsl_rec_id(kAir, third.tsl_record_id));
    EXPECT_EQ(0, a_qeltvapi_channellist_get_current_chan_id());
    list = 7;
    EXPECT_EQ(QELTV_NOT_FOUND,
              a_qeltvapi_channellist_get_current_channel(&list, &pair.svl, &pair.tsl));
    EXPECT_EQ(0, list);

    EXPECT_EQ(QELTV_NOT_FOUND,
              a_qeltvapi_channellist_get_current_channel_from_nav(1, &list, &pair.svl, &pair.tsl));
    const channel_record_t now = at(kAir, 0);
    ASSERT_EQ(0, a_qeltvapi_channellist_set_2nd_current_channel_by_svlId(kAir, now.channel_id));
    EXPECT_EQ(0,
              a_qeltvapi_channellist_get_current_channel_from_nav(1, &list, &pair.svl, &pair.tsl));
    EXPECT_EQ(now.record_id, pair.svl.record_id);
}

TEST_F(ChannelFunctions, WritesTellClientsUnlessTheyAreQuiet) {
    const channel_record_t first = at(kAir, 0);
    Pair pair = read(kAir, first.record_id);
    strcpy(pair.svl.name, "Quiet");
    strcpy(pair.svl.provider, "Not written");
    const uint32_t mask = CHANNEL_FLAG_LOCKED, set = CHANNEL_FLAG_LOCKED, clear = 0;
    ASSERT_EQ(0, a_qeltvapi_channellist_set_svl_tsl_rec_info_without_notify(
                         kAir, kAir, first.record_id, CHANNEL_WRITE_NAME, &mask, &set, &pair.svl,
                         &pair.tsl));
    strcpy(pair.svl.name, "Loud");
    ASSERT_EQ(0, a_qeltvapi_channellist_set_svl_tsl_rec_info(kAir, kAir, first.record_id,
                                                             CHANNEL_WRITE_NAME, &mask, &clear,
                                                             &pair.svl, &pair.tsl));
    const auto event = Heard::instance().wait("channels", CHANNEL_UPDATE_CHANGED);
    EXPECT_EQ(kAir, event.values[0]);
    EXPECT_EQ(1u, event.values[1]);
    EXPECT_EQ(first.record_id, event.values[3]);
    EXPECT_EQ(1u, Heard::instance().count("channels"));

    const Pair now = read(kAir, first.record_id);
    EXPECT_STREQ("Loud", now.svl.name);
    EXPECT_STREQ(first.provider, now.svl.provider);
    EXPECT_EQ(0u, now.svl.flags & CHANNEL_FLAG_LOCKED);

    // A new channel on a new multiplex; a multiplex that makes no sense changes nothing.
    pair.svl = {};
    strcpy(pair.svl.name, "Added");
    pair.svl.service_type = CHANNEL_SERVICE_RADIO;
    pair.tsl.record_id = 0;
    pair.tsl.frequency_low = 834000000;
    const uint32_t before = count(kAir);
    pair.tsl.system = CHANNEL_SYSTEM_DVBS;
    EXPECT_EQ(QELTV_BAD_VALUE,
              a_qeltvapi_channellist_set_svl_tsl_rec_info(kAir, kAir, 0, CHANNEL_WRITE_ALL, &clear,
                                                          &clear, &pair.svl, &pair.tsl));
    EXPECT_EQ(before, count(kAir));
    pair.tsl.system = CHANNEL_SYSTEM_DVBT;
    ASSERT_EQ(0, a_qeltvapi_channellist_set_svl_tsl_rec_info(kAir, kAir, 0, CHANNEL_WRITE_ALL,
                                                             &clear, &clear, &pair.svl, &pair.tsl));
    ASSERT_EQ(before + 1, count(kAir));
    uint32_t stream = 0;
    EXPECT_EQ(0, a_qeltvapi_tsl_qry_rec_id(kAir, 834000, &stream));
    EXPECT_EQ(stream, at(kAir, before).tsl_record_id);
    EXPECT_EQ(before + 1, at(kAir, before).number);
}

TEST_F(ChannelFunctions, QueriesByFilterAndMaskAgree) {
    const uint32_t all = count(kSatellite);
    const auto filtered = [](uint32_t filter) {
        return static_cast<uint32_t>(
                a_qeltvapi_channellist_get_number_by_filter(kSatellite, filter));
    };
    EXPECT_EQ(all, filtered(0));
    EXPECT_EQ(all, filtered(CHANNEL_FILTER_TELEVISION) + filtered(CHANNEL_FILTER_RADIO) +
                           filtered(CHANNEL_FILTER_DATA));
    EXPECT_EQ(all, filtered(CHANNEL_FILTER_FREE) + filtered(CHANNEL_FILTER_SCRAMBLED));
    EXPECT_EQ(filtered(CHANNEL_FILTER_SCRAMBLED),
              static_cast<uint32_t>(a_qeltvapi_channellist_get_number_by_mask(
                      kSatellite, CHANNEL_FLAG_SCRAMBLED, CHANNEL_FLAG_SCRAMBLED)));
    EXPECT_EQ(0, a_qeltvapi_channellist_get_num_by_mask_and_brdcst(kSatellite, 0, 0,
                                                                   CHANNEL_BROADCAST_ATSC));
    // Backwards from the first channel comes the last one of the filter.
    uint32_t id = 0;
    ASSERT_EQ(0,
              a_qeltvapi_channellist_get_prev_channel_id_by_filter(
                      kSatellite, CHANNEL_FILTER_TELEVISION, at(kSatellite, 0).channel_id, 0, &id));
    EXPECT_EQ(filtered(CHANNEL_FILTER_TELEVISION), id & 0xffff);

    // A page around a channel, at the beginning of the list with and without going round.
    std::vector<channel_record_t> svl(5);
    std::vector<multiplex_record_t> tsl(5);
    uint32_t before = 9, from = 9;
    const uint32_t second = at(kSatellite, 1).channel_id;
    ASSERT_EQ(0,
              a_qeltvapi_channellist_get_svl_tsl_recs_by_filter(
                      kSatellite, 0, second, 0, 0, 3, 2, svl.data(), tsl.data(), &before, &from));
    EXPECT_EQ(1u, before);
    EXPECT_EQ(2u, from);
    EXPECT_EQ((std::vector<uint32_t>{1, 2, 3, 0, 0}),
              (std::vector<uint32_t>{svl[0].number, svl[1].number, svl[2].number, svl[3].number,
                                     svl[4].number}));
    ASSERT_EQ(0,
              a_qeltvapi_channellist_get_svl_tsl_recs_by_filter(
                      kSatellite, 0, second, 7, 0, 3, 2, svl.data(), tsl.data(), &before, &from));
    EXPECT_EQ(3u, before);
    EXPECT_EQ((std::vector<uint32_t>{all - 1, all, 1, 2, 3}),
              (std::vector<uint32_t>{svl[0].number, svl[1].number, svl[2].number, svl[3].number,
                                     svl[4].number}));
}

TEST_F(ChannelFunctions, SnapshotsPutListsBackWithTheirFavourites) {
    const auto before = order(kAir);
    const channel_record_t first = at(kAir, 0);
    ASSERT_EQ(0, a_qeltvapi_favorite_list_add_tail(0, kAir, first.channel_id));
    uint32_t snapshot = 0;
    ASSERT_EQ(0, a_qeltvapi_channellist_create_snapshot(kAir, &snapshot));
    ASSERT_EQ(0, a_qeltvapi_channellist_svl_tsl_lol_clean(kAir, nullptr, nullptr));
    EXPECT_EQ(0u, count(kAir));
    EXPECT_EQ(0, a_qeltvapi_favorite_list_number_by_mask(0, 0, 0, 0));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_satllist_restore_snapshot(snapshot)) << "is of channels";
    ASSERT_EQ(0, a_qeltvapi_channellist_restore_snapshot(snapshot));
    EXPECT_EQ(before, order(kAir));
    EXPECT_EQ(1, a_qeltvapi_favorite_list_number_by_mask(0, 0, 0, 0));
    EXPECT_EQ(CHANNEL_FLAG_FAVOURITE_1, at(kAir, 0).flags & CHANNEL_FLAGS_FAVOURITE);
    EXPECT_EQ(0, a_qeltvapi_channellist_free_snapshot(snapshot));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_channellist_restore_snapshot(snapshot));
}

TEST_F(ChannelFunctions, ChannelsMoveWithinTheirList) {
    const auto before = order(kAir);
    const auto id = [](uint32_t index) { return at(kAir, index).channel_id; };
    ASSERT_EQ(0, a_qeltvapi_one_channellist_arrange_before(id(4), id(1)));
    auto expected = before;
    std::rotate(expected.begin() + 1, expected.begin() + 4, expected.begin() + 5);
    EXPECT_EQ(expected, order(kAir));
    ASSERT_EQ(0, a_qeltvapi_one_channellist_add_channel_to_max(kAir, id(0)));
    std::rotate(expected.begin(), expected.begin() + 1, expected.end());
    EXPECT_EQ(expected, order(kAir));
    // Room at 10: what was there and behind is five further on; down again it would collide.
    ASSERT_EQ(0, a_qeltvapi_channellist_slide_for_one_part_channel_id(kAir, 10, 5));
    EXPECT_EQ(0, a_qeltvapi_channellist_is_exist_by_channel_number(kAir, 10));
    EXPECT_EQ(1, a_qeltvapi_channellist_is_exist_by_channel_number(kAir, 15));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_channellist_slide_for_one_part_channel_id(
                                       kAir, 15, static_cast<uint32_t>(-6)));
    EXPECT_EQ(expected, order(kAir));
    EXPECT_EQ(QELTV_BAD_VALUE,
              a_qeltvapi_one_channellist_arrange_before(id(0), at(kSatellite, 0).channel_id));

    const uint32_t lcn = static_cast<uint32_t>(
            a_qeltvapi_channellist_get_number_by_mask(kAir, CHANNEL_FLAG_LCN, CHANNEL_FLAG_LCN));
    ASSERT_EQ(0, a_qeltvapi_channellist_delete_channel_without_lcn(kAir, 0));
    EXPECT_EQ(lcn, count(kAir));
}

TEST_F(ChannelFunctions, FavouriteListsKeepTheUsersOrder) {
    const uint32_t a = at(kAir, 0).channel_id, b = at(kSatellite, 3).channel_id,
                   c = at(kAir, 5).channel_id;
    uint32_t flags = 0;
    ASSERT_EQ(0, a_qeltvapi_channellist_set_favorites_by_id(kAir, a, 1, 0, 0, 1, &flags));
    EXPECT_EQ(CHANNEL_FLAG_FAVOURITE_2, flags & CHANNEL_FLAGS_FAVOURITE);
    ASSERT_EQ(0, a_qeltvapi_favorite_list_add_tail(1, kSatellite, b));
    ASSERT_EQ(0, a_qeltvapi_favorite_list_add_tail(1, kAir, c));
    // A request to swap arrives as one to delete: refused, with everything as it was.
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_favorite_list_swap_by_channel_id(1, kAir, a, c));
    EXPECT_EQ(3, a_qeltvapi_favorite_list_number_by_mask(1, 0, 0, 0));
    ASSERT_EQ(0, a_qeltvapi_channellist_swap_favorites(1, kAir, a, c));
    uint32_t index = 9;
    EXPECT_EQ(0, a_qeltvapi_favorite_list_get_index_by_channel(1, kAir, 0, 0, a, &index));
    EXPECT_EQ(1u, index) << "of the list's own channels";
    channel_record_t svl{};
    multiplex_record_t tsl{};
    EXPECT_EQ(0, a_qeltvapi_favorite_list_get_svl_tsl_rec_by_index(1, 0, 0, 0, 1, &svl, &tsl));
    EXPECT_EQ(b, svl.channel_id);
    EXPECT_EQ(svl.tsl_record_id, tsl.record_id);

    channel_request_t request{1, 0};
    const uint32_t zero = 0;
    ASSERT_EQ(0, a_qeltvapi_channellist_interface(CHANNEL_REQUEST_FAVOURITE_LIST, &request, 0, 0,
                                                  &zero));
    ASSERT_EQ(0, a_qeltvapi_channellist_set_current_channel(b));
    favourite_list_record_t record{};
    EXPECT_EQ(0, a_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter(&record));
    EXPECT_EQ(1u, record.list_index);
    EXPECT_EQ(3u, record.count);
    EXPECT_EQ(b, record.current_channel_id);
    EXPECT_EQ(1u, record.current_index);
    EXPECT_EQ((std::vector<uint32_t>{c, b, a}),
              std::vector<uint32_t>(record.channel_ids, record.channel_ids + 3));
    ASSERT_EQ(0, a_qeltvapi_favoritelist_add_favoritelist_channel_by_index(0));
    ASSERT_EQ(0, a_qeltvapi_favoritelist_swap_favoritelist_by_index(1, 2));
    ASSERT_EQ(0, a_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter(&record));
    EXPECT_EQ((std::vector<uint32_t>{b, a, c}),
              std::vector<uint32_t>(record.channel_ids, record.channel_ids + 3));
    EXPECT_EQ(0, a_qeltvapi_favoritelist_remove_favoritelist_channel(0));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_favoritelist_swap_favoritelist_by_index(0, 2));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_favorite_list_add_tail(4, kAir, a));

    // More than the record holds.
    ASSERT_EQ(0, a_qeltvapi_favorite_list_add_all(1, kSatellite, 0, 0));
    ASSERT_EQ(0, a_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter(&record));
    EXPECT_EQ(count(kSatellite) + 2, record.count);
    request.word0 = 0;
    a_qeltvapi_channellist_interface(CHANNEL_REQUEST_FAVOURITE_LIST, &request, 0, 0, &zero);
}

TEST_F(ChannelFunctions, ALockKeepsOtherProcessesFromWriting) {
    const auto lockFromTool = [](const char* function, const char* access) {
        return qeltvctl({"call", function, "1", access});
    };
    ASSERT_EQ(0, a_qeltvapi_channellist_lock_database(kAir, CHANNEL_LOCK_WRITE));
    const Ended refused = qeltvctl({"channel", "set", "air/1", "--lock"});
    EXPECT_EQ(1, refused.status);
    EXPECT_EQ("qeltvctl: air/1: not now or not allowed (-5)\n", refused.err);
    EXPECT_NE(0, lockFromTool("a_qeltvapi_channellist_lock_database", "1").status);
    EXPECT_EQ(0, qeltvctl({"channel", "show", "air/1"}).status);
    EXPECT_EQ(0, qeltvctl({"channel", "set", "satellite/1", "--lock"}).status);
    EXPECT_EQ(0, a_qeltvapi_channellist_swap_channels(kAir, at(kAir, 0).channel_id,
                                                      at(kAir, 1).channel_id));
    ASSERT_EQ(0, a_qeltvapi_channellist_unlock_database(kAir, CHANNEL_LOCK_WRITE));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_channellist_unlock_database(kAir, CHANNEL_LOCK_WRITE));
    EXPECT_EQ(0, qeltvctl({"channel", "set", "air/1", "--lock"}).status);

    // Readers go together and keep writers out; a lock goes with its process.
    ASSERT_EQ(0, a_qeltvapi_channellist_lock_database(kAir, CHANNEL_LOCK_READ));
    EXPECT_EQ(0, lockFromTool("a_qeltvapi_channellist_lock_database", "1").status);
    EXPECT_EQ(1, qeltvctl({"channel", "set", "air/1", "--unlock"}).status);
    ASSERT_EQ(0, a_qeltvapi_channellist_unlock_database(kAir, CHANNEL_LOCK_READ));
    EXPECT_EQ(0, lockFromTool("a_qeltvapi_channellist_lock_database", "0").status);
    EXPECT_EQ(0, a_qeltvapi_channellist_swap_channels(kAir, at(kAir, 0).channel_id,
                                                      at(kAir, 1).channel_id));
}

TEST_F(ChannelFunctions, ChannelIdsAreMadeAndTakenApart) {
    const auto id = static_cast<uint32_t>(a_qeltvapi_channellist_gen_one_part_channel_id(3, 40000));
    EXPECT_EQ(1, a_qeltvapi_is_one_part_channel_id(id));
    EXPECT_EQ(40000, a_qeltvapi_channellist_get_major_channel_num(id));
    EXPECT_EQ(0, a_qeltvapi_channellist_get_minor_channel_num(id));
    const auto parts = static_cast<uint32_t>(a_qeltvapi_channellist_gen_channel_id(1, 39, 1023));
    EXPECT_EQ(0, a_qeltvapi_is_one_part_channel_id(parts));
    EXPECT_EQ(39, a_qeltvapi_channellist_get_major_channel_num(parts));
    EXPECT_EQ(1023, a_qeltvapi_channellist_get_minor_channel_num(parts));
    const auto plain =
            static_cast<uint32_t>(a_qeltvapi_channellist_gen_non_psip_channel_id(2, 135, 65535));
    EXPECT_EQ(1, a_qeltvapi_is_non_psip_channel_id(plain));
    EXPECT_EQ(135, a_qeltvapi_channellist_get_major_channel_num(plain));
    EXPECT_EQ(65535, a_qeltvapi_channellist_get_minor_channel_num(plain));
    EXPECT_EQ(0, a_qeltvapi_channellist_gen_channel_id(1, 1024, 1));
    EXPECT_EQ(0, a_qeltvapi_channellist_gen_one_part_channel_id(16, 1));
    EXPECT_EQ(at(kAir, 7).channel_id,
              static_cast<uint32_t>(a_qeltvapi_channellist_gen_channel_id(kAir, 8, 0)));
    EXPECT_EQ(7, a_qeltvapi_channellist_get_channel_index(at(kAir, 7).channel_id));
}

TEST_F(ChannelFunctions, SatellitesTransportStreamsAndNetworks) {
    satellite_record_t satellite{};
    ASSERT_EQ(0, a_qeltvapi_satllist_get_rec_by_rec_idx(kSatellite, 0, &satellite));
    EXPECT_EQ(192, satellite.position);
    uint32_t snapshot = 0;
    ASSERT_EQ(0, a_qeltvapi_satllist_create_snapshot(kSatellite, &snapshot));
    strcpy(satellite.name, "Renamed");
    ASSERT_EQ(0, a_qeltvapi_satllist_update_rec(kSatellite, &satellite, 0));
    satellite.position = 193;
    ASSERT_EQ(0, a_qeltvapi_satllist_update_rec(kSatellite, &satellite, 1));
    EXPECT_EQ((std::vector<uint64_t>{kSatellite, 1, satellite.record_id}),
              Heard::instance().wait("satellites", CHANNEL_UPDATE_CHANGED).values);
    EXPECT_EQ(1u, Heard::instance().count("satellites"));
    uint32_t record = 0;
    EXPECT_EQ(0, a_qeltvapi_satllist_qry_rec_id(kSatellite, 193, &record));
    EXPECT_EQ(satellite.record_id, record);
    satellite.position = 1801;
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_satllist_update_rec(kSatellite, &satellite, 1));
    ASSERT_EQ(0, a_qeltvapi_satllist_restore_snapshot(snapshot));
    ASSERT_EQ(0, a_qeltvapi_satllist_get_rec(kSatellite, record, &satellite));
    EXPECT_EQ(192, satellite.position);
    EXPECT_EQ(0, a_qeltvapi_satllist_free_snapshot(snapshot));

    uint32_t streams = 0, ofSatellite = 0;
    ASSERT_EQ(0, a_qeltvapi_tsl_get_num_recs(kSatellite, &streams));
    ASSERT_EQ(0, a_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id(kSatellite, record, &ofSatellite));
    EXPECT_EQ(streams, ofSatellite);
    std::vector<multiplex_record_t> all(streams);
    ASSERT_EQ(0, a_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id(kSatellite, record, 0, streams, 0,
                                                            all.data()));
    for (uint32_t i = 0; i < streams; ++i) {
        multiplex_record_t one{};
        ASSERT_EQ(0, a_qeltvapi_tsl_get_rec_by_rec_idx(kSatellite, i, &one));
        EXPECT_EQ(0, memcmp(&one, &all[i], sizeof(one)));
    }
    network_record_t network{};
    ASSERT_EQ(0, a_qeltvapi_nwl_get_rec_by_rec_idx(kSatellite, 0, &network));
    EXPECT_EQ(network.record_id, all[0].network_record_id);
    ASSERT_EQ(0, a_qeltvapi_nwl_del_rec(kSatellite, network.record_id));
    ASSERT_EQ(0, a_qeltvapi_tsl_get_rec(kSatellite, all[0].record_id, &all[0]));
    EXPECT_EQ(0u, all[0].network_record_id);

    ASSERT_EQ(0, a_qeltvapi_satllist_del_rec(kSatellite, record));
    EXPECT_EQ(0u, count(kSatellite));
    ASSERT_EQ(0, a_qeltvapi_tsl_get_num_recs(kSatellite, &streams));
    EXPECT_EQ(0u, streams);
    EXPECT_LT(0u, count(kAir));
}

TEST_F(ChannelFunctions, TheKeyOfTheCurrentChannelIsApplied) {
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_bisskey_set_key_for_current_channel());
    const channel_record_t channel = at(kSatellite, 0);
    ASSERT_EQ(0, a_qeltvapi_channellist_set_current_channel(channel.channel_id));
    biss_record_t record{};
    ASSERT_EQ(0, a_qeltvapi_bisskey_get_default_record(&record));
    EXPECT_EQ(channel.service_id, record.header.service_id);
    EXPECT_EQ(192, record.header.position);
    const uint8_t key[8] = {1, 2, 3, 6, 4, 5, 6, 15};
    memcpy(record.key, key, sizeof(key));
    record.key_size = 8;
    uint32_t id = 0;
    ASSERT_EQ(0, a_qeltvapi_bisskey_set_bsl_rec_info(kSatellite, CHANNEL_BISS_WRITE, &record, &id));
    ASSERT_EQ(0, a_qeltvapi_bisskey_set_key_for_current_channel());
    EXPECT_EQ((std::vector<uint64_t>{kSatellite, channel.channel_id, 0, id}),
              Heard::instance().wait("biss", CHANNEL_BISS_IN_USE).values);

    biss_record_t stored{};
    uint32_t word = 0;
    uint16_t found = 0;
    ASSERT_EQ(0, a_qeltvapi_bisskey_get_bsl_rec_by_header(kSatellite, &record.header, &stored, 0,
                                                          &word));
    EXPECT_EQ(id, word);
    EXPECT_EQ(1, a_qeltvapi_bisskey_is_same_record(&record, &stored));
    stored.key[0] ^= 1;
    EXPECT_EQ(0, a_qeltvapi_bisskey_is_same_record(&record, &stored));
    record.header.service_id ^= 1;
    ASSERT_EQ(0, a_qeltvapi_bisskey_get_recs_number_by_header(kSatellite, &record.header, &found,
                                                              &word));
    EXPECT_EQ(0, found);
    EXPECT_EQ(0, a_qeltvapi_bisskey_clean(kSatellite));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_bisskey_set_key_for_current_channel());
}

/** Every batch function reads all of a line-up of more than 20,000 channels. */
TEST_F(ChannelFunctions, ALargeLineUpIsReadWholeThroughEveryBatchFunction) {
    reload("dvb-s/E* dvb-s/A*");
    const uint32_t n = count(kSatellite);
    if (n < 20000) GTEST_SKIP() << "no scan tables on this machine";
    uint32_t svlHandle = 0, tslHandle = 0, got = 0, word = 0;
    a_qeltvapi_channellist_get_svl_handle_by_svl_id(kSatellite, &svlHandle);
    a_qeltvapi_channellist_get_tsl_handle_by_svl_id(kSatellite, &tslHandle);
    std::vector<channel_record_t> svl(n);
    std::vector<multiplex_record_t> tsl(n);
    ASSERT_EQ(0, a_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex(
                         svlHandle, tslHandle, n, &got, &word, svl.data(), tsl.data()));
    ASSERT_EQ(n, got);
    uint32_t previous = 0;
    for (uint32_t i = 0; i < n; ++i) {
        ASSERT_LT(previous, svl[i].number);
        previous = svl[i].number;
        ASSERT_EQ(svl[i].tsl_record_id, tsl[i].record_id);
        ASSERT_EQ(svl[i].stream_id, tsl[i].stream_id);
    }
    for (uint32_t i = 0; i < n; i += 997) {
        const Pair one = read(kSatellite, svl[i].record_id);
        ASSERT_EQ(0, memcmp(&one.svl, &svl[i], sizeof(one.svl)));
        ASSERT_EQ(0, memcmp(&one.tsl, &tsl[i], sizeof(one.tsl)));
    }

    using Batch = std::function<void(uint32_t, uint32_t, void*, void*)>;
    const auto expectWhole = [&](const char* name, uint32_t batch, const Batch& readBatch) {
        SCOPED_TRACE(name);
        std::vector<channel_record_t> svls(batch);
        std::vector<multiplex_record_t> tsls(batch);
        for (uint32_t first = 0; first < n; first += batch) {
            readBatch(first, batch, svls.data(), tsls.data());
            const uint32_t there = std::min(batch, n - first);
            ASSERT_EQ(0, memcmp(&svl[first], svls.data(), there * sizeof(svls[0]))) << first;
            ASSERT_EQ(0, memcmp(&tsl[first], tsls.data(), there * sizeof(tsls[0]))) << first;
            if (there < batch) {
                // By index and by filter the rest is zeros; the vector functions send what there
                // is.
                ASSERT_TRUE(svls[there].record_id == 0 || strcmp(name, "by mask") == 0);
            }
        }
    };
    for (const uint32_t batch : {n, 1000u, n + 1}) {
        expectWhole("by index", batch, [&](uint32_t first, uint32_t k, void* s, void* t) {
            ASSERT_EQ(0, a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(kSatellite, first, 0, 0,
                                                                            0, 0, 0, k, 0, s, t));
        });
        expectWhole("by broadcast type", batch, [&](uint32_t first, uint32_t k, void* s, void* t) {
            ASSERT_EQ(0,
                      a_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type(
                              kSatellite, CHANNEL_BROADCAST_DVB, first, k, 0, s, t, &got, &word));
            ASSERT_EQ(std::min(k, n - first), got);
            ASSERT_EQ(n, word);
        });
        expectWhole("by filter", batch, [&](uint32_t first, uint32_t k, void* s, void* t) {
            ASSERT_EQ(0,
                      a_qeltvapi_channellist_get_svl_tsl_recs_by_filter(
                              kSatellite, 0, svl[first].channel_id, 0, 0, 0, k, s, t, &got, &word));
            ASSERT_EQ(std::min(k, n - first), word);
        });
    }
    expectWhole("by mask", 1000, [&](uint32_t first, uint32_t k, void* s, void* t) {
        ASSERT_EQ(0, a_qeltvapi_channellist_get_svl_tsl_recs_by_mask(kSatellite, kSatellite, 0, 0,
                                                                     first, k, 0, 0, 0, 0, s, t));
    });

    // Nothing asked for, nothing written.
    channel_record_t untouched{};
    untouched.record_id = 77;
    EXPECT_EQ(0, a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(kSatellite, 0, 0, 0, 0, 0, 0, 0,
                                                                    0, &untouched, &untouched));
    EXPECT_EQ(77u, untouched.record_id);
}

TEST_F(ChannelFunctions, AMemoryThatIsTooSmallOrNoneIsRefused) {
    using android::hardware::hidl_handle;
    using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiChannelList;
    const auto service = IQelTvApiChannelList::getService("default", false);
    ASSERT_NE(nullptr, service);
    const auto memory = [](uint64_t size, bool writable, int seals = F_SEAL_SHRINK) {
        const int fd = memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING);
        EXPECT_EQ(0, ftruncate64(fd, static_cast<off64_t>(size)));
        EXPECT_EQ(0, fcntl(fd, F_ADD_SEALS, seals));
        native_handle_t* native = native_handle_create(1, 0);
        native->data[0] = fd;
        if (!writable) {
            const std::string path = "/proc/self/fd/" + std::to_string(fd);
            native->data[0] = open(path.c_str(), O_RDONLY | O_CLOEXEC);
            close(fd);
        }
        hidl_handle handle;
        handle.setTo(native, true);
        return handle;
    };
    const auto readSome = [&](uint32_t count, const hidl_handle& svl, const hidl_handle& tsl) {
        return static_cast<int32_t>(
                service->a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(
                        kAir, 0, 0, 0, 0, 0, 0, count, 0, svl, tsl));
    };
    const auto readTwo = [&](const hidl_handle& svl, const hidl_handle& tsl) {
        return readSome(2, svl, tsl);
    };
    const hidl_handle svl = memory(2 * sizeof(channel_record_t), true);
    const hidl_handle tsl = memory(2 * sizeof(multiplex_record_t), true);
    EXPECT_EQ(0, readTwo(svl, tsl));
    EXPECT_EQ(QELTV_BAD_VALUE, readTwo(memory(2 * sizeof(channel_record_t) - 1, true), tsl));
    EXPECT_EQ(QELTV_BAD_VALUE, readTwo(svl, memory(2 * sizeof(multiplex_record_t) - 1, true)));
    EXPECT_EQ(QELTV_BAD_VALUE, readTwo(memory(2 * sizeof(channel_record_t), false), tsl));
    EXPECT_EQ(QELTV_BAD_VALUE, readTwo(hidl_handle(), tsl));
    // Its owner could cut it while it is written.
    EXPECT_EQ(QELTV_BAD_VALUE, readTwo(memory(2 * sizeof(channel_record_t), true, 0), tsl));
    // More than the machine has, of which only what there is to read gets memory.
    constexpr uint32_t kHuge = 0xffffffff;
    EXPECT_EQ(0, readSome(kHuge, memory(uint64_t{kHuge} * sizeof(channel_record_t), true),
                          memory(uint64_t{kHuge} * sizeof(multiplex_record_t), true)));
    int ends[2];
    ASSERT_EQ(0, pipe2(ends, O_CLOEXEC));
    native_handle_t* native = native_handle_create(1, 0);
    native->data[0] = ends[1];
    hidl_handle noMemory;
    noMemory.setTo(native, true);
    EXPECT_EQ(QELTV_BAD_VALUE, readTwo(noMemory, tsl));
    close(ends[0]);
}

TEST_F(ChannelFunctions, TheUartSendsBackWhatItIsSent) {
    uart_setting_t setting{};
    setting.baud_rate = 9600;
    qeltvapi_iom_uart_setting_t words;
    memcpy(&words, &setting, sizeof(words));
    uint32_t handle = 0, other = 0;
    void* tag = reinterpret_cast<void*>(uintptr_t{0x1234});
    ASSERT_EQ(0, c_iom_open_uart(QELTVAPI_IOM_UART, 0, "loop1", &words, tag, onUart, &handle));
    EXPECT_EQ(QELTV_REFUSED,
              c_iom_open_uart(QELTVAPI_IOM_UART, 0, "loop1", &words, tag, onUart, &other));
    EXPECT_EQ(QELTV_NOT_FOUND,
              c_iom_open_uart(QELTVAPI_IOM_UART, 0, "loop9", &words, tag, onUart, &other));

    const std::string hello("hello, \0 and \xff", 14);
    const qeltvapi_iom_buffer_t buffer{static_cast<uint32_t>(hello.size()), hello.data()};
    ASSERT_EQ(0, c_iom_output(handle, &buffer));
    const auto event = Heard::instance().wait("uart", 0);
    EXPECT_EQ((std::vector<uint64_t>{0x1234, handle}), event.values);
    EXPECT_EQ(hello, event.data);
    ASSERT_EQ(0, c_iom_set(handle, UART_OP_DATA, "more", 4));

    uart_state_t state{};
    uint64_t length = sizeof(state);
    ASSERT_EQ(0, c_iom_get(handle, UART_OP_STATE, &state, &length));
    EXPECT_EQ(sizeof(state), length);
    EXPECT_EQ(hello.size() + 4, state.sent);
    EXPECT_EQ(hello.size() + 4, state.waiting);
    // What is read is gone; the rest waits.
    char data[64] = "";
    length = hello.size();
    ASSERT_EQ(0, c_iom_get(handle, UART_OP_DATA, data, &length));
    EXPECT_EQ(hello, std::string(data, static_cast<size_t>(length)));
    length = sizeof(data);
    ASSERT_EQ(0, c_iom_get(handle, UART_OP_DATA, data, &length));
    EXPECT_EQ("more", std::string(data, static_cast<size_t>(length)));

    length = sizeof(setting);
    ASSERT_EQ(0, c_iom_get(handle, UART_OP_SETTING, &setting, &length));
    EXPECT_EQ(9600u, setting.baud_rate);
    EXPECT_EQ(8, setting.data_bits);
    setting.baud_rate = 50;
    EXPECT_EQ(QELTV_BAD_VALUE, c_iom_set(handle, UART_OP_SETTING, &setting, sizeof(setting)));
    setting.baud_rate = 0;
    setting.data_bits = 7;
    ASSERT_EQ(0, c_iom_set(handle, UART_OP_SETTING, &setting, sizeof(setting)));
    ASSERT_EQ(0, c_iom_set(handle, UART_OP_DATA, "\xc1", 1));
    length = 1;
    ASSERT_EQ(0, c_iom_get(handle, UART_OP_DATA, data, &length));
    EXPECT_EQ('A', data[0]) << "the eighth bit is not sent";

    // More than there is room for is lost, and counted.
    const std::string much(70000, 'x');
    ASSERT_EQ(0, c_iom_set(handle, UART_OP_DATA, much.data(), much.size()));
    length = sizeof(state);
    ASSERT_EQ(0, c_iom_get(handle, UART_OP_STATE, &state, &length));
    EXPECT_EQ(much.size() - 65536, state.lost);
    ASSERT_EQ(0, c_iom_set(handle, UART_OP_FLUSH, nullptr, 0));
    length = sizeof(data);
    ASSERT_EQ(0, c_iom_get(handle, UART_OP_DATA, data, &length));
    EXPECT_EQ(0u, length);

    EXPECT_EQ(0, c_iom_close(handle));
    EXPECT_EQ(QELTV_NOT_FOUND, c_iom_output(handle, &buffer));
    length = sizeof(data);
    EXPECT_EQ(QELTV_NOT_FOUND, c_iom_get(handle, UART_OP_DATA, data, &length));
    EXPECT_EQ(0u, length);
}

}  // namespace
