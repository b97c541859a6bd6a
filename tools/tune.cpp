#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "channel_data.h"
#include "hw_qeltvapi_apptv.h"
#include "hw_qeltvapi_audioinfo.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_inputsource.h"
#include "hw_qeltvapi_volctrl.h"
#include "hw_svctx.h"
#include "layouts/channel_ids.h"
#include "layouts/presentation.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

const char* nameOf(uint32_t status) {
    constexpr const char* kNames[] = {"stopped", "searching", "locked", "playing", "failed"};
    return status < std::size(kNames) ? kNames[status] : "?";
}

const char* errorName(uint32_t error) {
    constexpr const char* kNames[] = {"", "no signal", "scrambled", "blocked", "no such service"};
    return error < std::size(kNames) ? kNames[error] : "?";
}

const std::vector<std::string> kPaths{"main", "sub"};

/** What one path shows. */
struct Shown {
    QELTV_CONNECTION_T connection{};
    QELTV_VIDEO_SOURCE_T video{};
    /** The selected channel, also when it does not play; 0 for none. */
    uint32_t selected = 0;
    std::string source, name, language;

    std::string state() const {
        std::string text = nameOf(connection.status);
        if (connection.error != 0) text += std::string(": ") + errorName(connection.error);
        return text;
    }
};

uint32_t pathNumber(const std::string& path) {
    if (path == "main") return 0;
    if (path == "sub") return 1;
    throw Failure(kUsage, "the paths are main and sub, not \"" + path + "\"");
}

Shown read(const std::string& path) {
    Shown shown;
    const uint32_t context = QELTV_CONTEXT_OF_MAIN + pathNumber(path);
    check(c_svctx_get_conn_attr(context, 0, QELTV_CONNECTION_ALL, &shown.connection), "status");
    check(c_svctx_get_video_src_resolution(context, &shown.video), "status");
    AnswerBuffer name, source, language;
    uint32_t length = 4096;
    AnswerBuffer channel;
    check(c_svctx_get(context, QELTV_CONTEXT_CHANNEL, channel.data(), &length), "status");
    memcpy(&shown.selected, channel.data(), sizeof(shown.selected));
    length = 4096;
    check(c_svctx_get(context, QELTV_CONTEXT_NAME, name.data(), &length), "status");
    shown.name = name.text();
    check(a_qeltvapi_inputsource_get_currentsourcename_bypath(source.text(), QELTV_NAME_SHOWN,
                                                              path.c_str()),
          "status");
    shown.source = source.text();
    if (a_qeltvapi_audio_info_get_current_lanuage(path.c_str(), language.text()) == 0) {
        shown.language = language.text();
    }
    return shown;
}

Json json(const std::string& path, const Shown& shown) {
    Json all{{"path", path},
             {"source", shown.source},
             {"status", nameOf(shown.connection.status)},
             {"error", errorName(shown.connection.error)},
             {"name", shown.name},
             {"channel", shown.connection.channel}};
    if (shown.connection.source == 0) {
        all["frequency_khz"] = shown.connection.frequencyKHz;
        all["level"] = shown.connection.level;
        all["quality"] = shown.connection.quality;
        all["bit_errors"] = shown.connection.bitErrors;
    }
    all["video"] = shown.video.text;
    all["language"] = shown.language;
    return all;
}

void printStatus(bool asJson) {
    requireService();
    AnswerBuffer text;
    a_qeltvapi_apptv_get_current_channel_svc_text(text.text(), 0);
    const bool standby = inStandby();
    Json all{{"standby", standby}, {"service", text.text()}, {"paths", Json::array()}};
    std::vector<std::vector<std::string>> rows{
            {"PATH", "SOURCE", "STATUS", "SERVICE", "SIGNAL", "VIDEO", "AUDIO"}};
    for (const char* path : {"main", "sub"}) {
        const Shown shown = read(path);
        all["paths"].push_back(json(path, shown));
        const bool tuner = shown.connection.source == 0 && shown.connection.status != 0;
        rows.push_back({path, shown.source, shown.state(), shown.name,
                        tuner ? std::to_string(shown.connection.level) + " / " +
                                        std::to_string(shown.connection.quality)
                              : "-",
                        shown.video.text[0] != '\0' ? shown.video.text : "-",
                        shown.language.empty() ? "-" : shown.language});
    }
    const int volume = a_qeltvapi_volctrl_getVolume();
    const bool muted = a_qeltvapi_volctrl_getMute() != 0;
    all["volume"] = volume;
    all["muted"] = muted;
    if (asJson) {
        printJson(all);
        return;
    }
    if (standby) printf("standby; wake it with qeltvctl power up\n");
    printTable(rows);
    printf("volume %d%s\n", volume, muted ? ", muted" : "");
}

/** What a client has selected. */
using Wanted = std::function<bool(const Shown&)>;

/** Waits until a selection plays; another client may select something else meanwhile. */
void waitFor(const std::string& path, double seconds, const Wanted& wanted) {
    const auto deadline = steady_clock::now() + std::chrono::duration<double>(seconds);
    for (;;) {
        const Shown shown = read(path);
        const std::string name = printable(shown.name);
        if (shown.connection.status == QELTV_TUNING_STOPPED) {
            throw Failure(kRefused, inStandby() ? "overtaken by standby" : "the path was stopped");
        }
        if (!wanted(shown)) {
            throw Failure(
                    kRefused,
                    "overtaken by " +
                            (name.empty() ? std::to_string(shown.connection.frequencyKHz) + " kHz"
                                          : name) +
                            ", which another client has selected");
        }
        switch (shown.connection.status) {
            case QELTV_TUNING_PLAYS:
                printf("%s, %s\n", name.c_str(), shown.state().c_str());
                return;
            case QELTV_TUNING_LOCKED:
                // A frequency has no service to wait for.
                if (shown.connection.channel != 0 || shown.connection.source != 0) break;
                printf("%u kHz, %s\n", shown.connection.frequencyKHz, shown.state().c_str());
                return;
            case QELTV_TUNING_FAILED:
                throw Failure(kRefused, name + ": " + errorName(shown.connection.error));
            default:
                break;
        }
        if (steady_clock::now() >= deadline) {
            throw Failure(kRefused, name + ": still " + shown.state());
        }
        std::this_thread::sleep_for(milliseconds(10));
    }
}

struct TuneOptions {
    std::string what, path = "main";
    int32_t service = -1;
    uint32_t kHz = 0;
    bool banner = false;
    double wait = 3;
};

uint16_t serviceOf(uint32_t channel) {
    channel_record_t record{};
    const uint32_t list = channel >> QELTV_CHANNEL_ID_LIST_SHIFT & QELTV_CHANNEL_ID_LIST_MASK;
    const int code = a_qeltvapi_channellist_get_svl_rec_by_channel_id(list, channel, &record);
    return code == 0 ? record.service_id : 0;
}

void tune(const TuneOptions& options) {
    requireService();
    const uint32_t path = pathNumber(options.path);
    const int given = !options.what.empty() + (options.service >= 0) + (options.kHz != 0);
    if (given != 1) {
        throw Failure(kUsage, "tune takes one of a channel, --service and --frequency");
    }
    int code = 0;
    Wanted wanted;
    if (options.service >= 0) {
        code = a_qeltvapi_broadcast_select_channel_by_prog_no(options.service,
                                                              static_cast<int32_t>(path));
        wanted = [&](const Shown& shown) {
            return shown.selected != 0 && serviceOf(shown.selected) == options.service;
        };
    } else if (options.kHz != 0) {
        QELTVAPI_CHANGE_FREQ_T frequency{};
        frequency.word1 = options.kHz;
        code = a_qeltvapi_broadcast_change_freq(options.path.c_str(), &frequency);
        wanted = [&](const Shown& shown) {
            // 0 while there is no multiplex at the frequency.
            const uint32_t kHz = shown.connection.frequencyKHz;
            return shown.connection.source == 0 && shown.selected == 0 &&
                   (kHz == 0 || kHz == options.kHz);
        };
    } else if (options.what == "up" || options.what == "down" || options.what == "last") {
        if (path != 0) throw Failure(kUsage, "keys are for the main path");
        code = a_qeltvapi_broadcast_key_handler(options.what == "up"     ? QELTV_KEY_CHANNEL_UP
                                                : options.what == "down" ? QELTV_KEY_CHANNEL_DOWN
                                                                         : QELTV_KEY_LAST_CHANNEL);
        check(code, "tune");
        // A key has no answer but its effect.
        wanted = [channel = read(options.path).selected](const Shown& shown) {
            return shown.selected == channel;
        };
    } else {
        const uint32_t channel = channelIdOf(options.what);
        code = a_qeltvapi_broadcast_select_channel(0, static_cast<int32_t>(channel),
                                                   static_cast<int32_t>(path), options.banner);
        wanted = [channel](const Shown& shown) {
            return shown.connection.source == 0 && shown.selected == channel;
        };
    }
    check(code, "tune");
    if (options.wait > 0) waitFor(options.path, options.wait, wanted);
}

// Inputs

struct Input {
    int32_t id;
    QELTVAPI_INPUT_SOURCE_RECORD_T record{};
    std::string name, shown;
    uint8_t label = 0, blockSet = 0, blocked = 0, autoDetect = 0;

    bool signal() const { return (record.tail & QELTV_INPUT_HAS_SIGNAL) != 0; }
};

Input readInput(int32_t id) {
    Input input{};
    input.id = id;
    check(a_qeltvapi_inputsource_get_sourcerec_byidx(id, &input.record), "input");
    input.name.assign(input.record.name, strnlen(input.record.name, sizeof(input.record.name)));
    AnswerBuffer shown;
    check(a_qeltvapi_inputsource_get_sourcename_bysourceid(id, shown.text(), QELTV_NAME_SHOWN),
          "input");
    input.shown = shown.text();
    check(a_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid(id, &input.label), "input");
    check(a_qeltvapi_inputsource_is_source_block_bysourceid(id, &input.blockSet), "input");
    check(a_qeltvapi_inputsource_is_block_bysourceid(id, &input.blocked), "input");
    check(a_qeltvapi_inputsource_is_source_autodetect_bysourceid(id, &input.autoDetect), "input");
    return input;
}

int32_t inputCount() {
    const uint8_t count = a_qeltvapi_inputsource_get_sourcetotalnum();
    if (count == 255) throw Failure(kUnreachable, "input: the television did not answer");
    return count;
}

/** By id, or by the name beside the socket or the one that is shown. */
int32_t inputOf(const std::string& what) {
    for (int32_t id = 0; id < inputCount(); ++id) {
        const Input input = readInput(id);
        if (what == std::to_string(id) || what == input.name || what == input.shown) return id;
    }
    throw Failure(kRefused, "there is no input " + what + "; qeltvctl input list shows them");
}

void listInputs(bool asJson) {
    requireService();
    AnswerBuffer current;
    check(a_qeltvapi_inputsource_get_currentsourcename(current.text(), QELTV_NAME_PLAIN), "input");
    std::vector<std::vector<std::string>> rows{
            {"INPUT", "NAME", "SHOWN AS", "SIGNAL", "BLOCK", "DETECT", ""}};
    Json all = Json::array();
    const auto yes = [](bool on) { return std::string(on ? "yes" : "-"); };
    for (int32_t id = 0; id < inputCount(); ++id) {
        const Input input = readInput(id);
        const bool isCurrent = input.name == current.text();
        rows.push_back({std::to_string(id), input.name, input.shown, yes(input.signal()),
                        std::string(input.blocked != 0    ? "yes"
                                    : input.blockSet != 0 ? "set"
                                                          : "-"),
                        yes(input.autoDetect != 0), isCurrent ? "*" : ""});
        all.push_back({{"id", id},
                       {"name", input.name},
                       {"shown", input.shown},
                       {"type", input.record.byte1},
                       {"number", input.record.byte2},
                       {"label", input.label},
                       {"signal", input.signal()},
                       {"block_set", input.blockSet != 0},
                       {"blocked", input.blocked != 0},
                       {"auto_detect", input.autoDetect != 0},
                       {"current", isCurrent}});
    }
    if (asJson) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

}  // namespace

void addTune(Command& app) {
    auto options = std::make_shared<TuneOptions>();
    Command* command = app.addCommand("tune", "Select a channel and wait until it plays");
    command->addOption("channel", options->what, std::string(kChannelHelp) + "; or up, down, last")
            ->offer({"up", "down", "last"});
    command->addOption("--service", options->service, "Its service id (program number)");
    command->addOption("--frequency", options->kHz, "Tune to a frequency in kHz, to no channel");
    command->addOption("--path", options->path, "main or sub")->showDefault()->offer(kPaths);
    command->addFlag("--banner", options->banner, "Show the banner");
    command->addOption("--wait", options->wait, "Seconds until it has to play; 0 does not wait")
            ->notNegative()
            ->showDefault();
    command->callback([options] { tune(*options); });

    auto asJson = std::make_shared<bool>(false);
    command = app.addCommand("status", "Show what the television shows");
    addJson(command, asJson.get());
    command->callback([asJson] { printStatus(*asJson); });
}

void addInput(Command& app) {
    Command* group = app.addCommand("input", "Inputs: the sockets and what is plugged in");
    group->requireCommand();
    struct Options {
        std::string input, path = "main", text;
        int32_t label = 0;
        bool on = false, json = false;
        double wait = 3;
    };
    auto options = std::make_shared<Options>();
    const auto add = [&](const char* name, const char* about) {
        Command* command = group->addCommand(name, about);
        command->addOption("input", options->input, "Number or name, as in \"HDMI 1\"")->required();
        return command;
    };

    Command* command = group->addCommand("list", "List the inputs");
    addJson(command, &options->json);
    command->callback([options] { listInputs(options->json); });

    command = add("select", "Show an input");
    command->addOption("--path", options->path, "main or sub")->showDefault()->offer(kPaths);
    command->addOption("--wait", options->wait, "Seconds until it has to play; 0 does not wait")
            ->notNegative()
            ->showDefault();
    command->callback([options] {
        requireService();
        pathNumber(options->path);
        const int32_t id = inputOf(options->input);
        check(a_qeltvapi_inputsource_changesource_bysourceidandpath(id, options->path.c_str()),
              options->input);
        if (options->wait <= 0) return;
        waitFor(options->path, options->wait, [id](const Shown& shown) {
            return shown.connection.source == static_cast<uint32_t>(id);
        });
    });

    command = add("label", "Give an input a label");
    command->addOption("label", options->label, "0 none, 8 the user's own name")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid(inputOf(options->input),
                                                                         options->label),
              options->input);
    });

    command = add("name", "Give an input a name of one's own");
    command->addOption("name", options->text, "The name")->required();
    command->callback([options] {
        requireService();
        const int32_t id = inputOf(options->input);
        check(a_qeltvapi_inputsource_set_userdefname_bysourceid(id, options->text.c_str()),
              options->input);
        check(a_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid(id,
                                                                         QELTV_INPUT_LABEL_USER),
              options->input);
    });

    command = add("block", "Block an input while parental.input_lock is on");
    command->addOption("on", options->on, "on or off")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_inputsource_set_source_blockstatus_bysourceid(inputOf(options->input),
                                                                       options->on),
              options->input);
    });

    command = add("detect", "Change to an input by itself when something is plugged in");
    command->addOption("on", options->on, "on or off")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid(inputOf(options->input),
                                                                            options->on),
              options->input);
    });
}

}  // namespace tool
