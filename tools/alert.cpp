#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "channel_data.h"
#include "hw_qeltvapi_eas.h"
#include "hw_qeltvapi_ews_pa.h"
#include "layouts/alert.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kTypes[] = {"none", "test", "message", "warning", "national"};
constexpr const char* kSeverities[] = {"", "test", "watch", "warning"};

template <size_t N>
const char* nameOf(const char* const (&names)[N], int32_t value) {
    return value >= 0 && static_cast<size_t>(value) < N ? names[value] : "unknown";
}

std::vector<int32_t> read(uint32_t item, uint32_t area) {
    std::vector<int32_t> words(1 + 32 * 4);
    check(a_qeltvapi_ewspa_get(item, area, words.data(), static_cast<uint32_t>(words.size())),
          "warnings");
    return words;
}

void status(uint32_t area, bool asJson) {
    requireService();
    int32_t type = 0, change = 0, channel = 0, where = 0;
    check(a_qeltvapi_eas_get_status(&type, &change, &channel, &where), "alert");
    Json json{{"alert",
               {{"type", nameOf(kTypes, type)},
                {"channel_change", change == 1},
                {"channel", channel},
                {"area", where}}},
              {"launched", a_qeltvapi_eas_get_android_launch_status() == 1},
              {"monitors", Json::array()},
              {"warnings", Json::array()}};
    const auto monitors = read(QELTV_WARNING_MONITORS, 0);
    for (int32_t i = 0; i < monitors[0]; ++i) {
        json["monitors"].push_back(monitors[static_cast<size_t>(i) + 1]);
    }
    const auto warnings = read(QELTV_WARNING_LIST, area);
    std::vector<std::vector<std::string>> rows{{"WARNING", "SEVERITY", "AREA", "SECONDS"}};
    for (int32_t i = 0; i < warnings[0]; ++i) {
        const int32_t* entry = &warnings[1 + static_cast<size_t>(i) * 4];
        rows.push_back({std::to_string(entry[0]), nameOf(kSeverities, entry[1]),
                        std::to_string(entry[2]), std::to_string(entry[3])});
        json["warnings"].push_back({{"number", entry[0]},
                                    {"severity", nameOf(kSeverities, entry[1])},
                                    {"area", entry[2]},
                                    {"seconds", entry[3]}});
    }
    if (asJson) {
        printJson(json);
        return;
    }
    printf("alert     %s\n", nameOf(kTypes, type));
    if (type != QELTV_ALERT_NONE) printf("area      %d\n", where);
    if (change == 1) printf("channel   %u\n", static_cast<uint32_t>(channel));
    printf("screen    %s\n", json["launched"].get<bool>() ? "launched" : "not launched");
    printf("monitors  %s\n", jsonText(json["monitors"]).c_str());
    if (rows.size() > 1) printTable(rows);
}

}  // namespace

void addAlert(Command& app) {
    Command* alert = app.addCommand("alert", "Emergency alerts and warnings");
    alert->requireCommand();
    struct Options {
        std::string name, channel;
        int32_t area = 0, seconds = 60;
        uint32_t number = 0;
        bool json = false, on = false;
    };
    auto options = std::make_shared<Options>();

    Command* command = alert->addCommand("status", "Alert, monitors and warnings");
    command->addOption("--area", options->number, "Only warnings that hold there");
    addJson(command, &options->json);
    command->callback([options] { status(options->number, options->json); });

    command = alert->addCommand("raise", "Begin an alert as a broadcast would");
    command->addOption("type", options->name, "test, message, warning or national")
            ->required()
            ->among({"test", "message", "warning", "national"});
    command->addOption("--area", options->area, "Where it holds, 0 everywhere");
    command->addOption("--seconds", options->seconds, "How long")->showDefault();
    command->addOption(
            "--channel", options->channel,
            std::string("Channel with details, to which the television changes. ") + kChannelHelp);
    command->callback([options] {
        requireService();
        int32_t type = 0;
        while (options->name != kTypes[type]) ++type;
        const uint32_t channel = options->channel.empty() ? 0 : channelIdOf(options->channel);
        int32_t words[] = {type, channel != 0, static_cast<int32_t>(channel), options->area,
                           options->seconds};
        check(a_qeltvapi_ewspa_set(QELTV_ALERT_RAISE, 0, words, 5), "alert");
    });

    command = alert->addCommand("end", "End the alert as a broadcast would");
    command->callback([] {
        requireService();
        int32_t words[5] = {};
        check(a_qeltvapi_ewspa_set(QELTV_ALERT_RAISE, 0, words, 5), "end");
    });

    command = alert->addCommand("leave", "Leave the alert, and stay on the channel");
    command->callback([] {
        requireService();
        check(a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(1), "leave");
    });

    command = alert->addCommand("screen", "Report whether the alert screen is launched");
    command->addOption("launched", options->on, "on or off")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_eas_set_android_launch_status(options->on), "screen");
    });

    command = alert->addCommand("monitor", "Watch for warnings in an area");
    command->addOption("area", options->number, "The area, from 1")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_ewspa_create_monitor_inst(options->number), "monitor");
    });

    command = alert->addCommand("unmonitor", "End the watch for warnings in an area");
    command->addOption("area", options->number, "The area")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_ewspa_delete_monitor_inst(options->number), "unmonitor");
    });

    command = alert->addCommand("warn", "Raise a warning as a broadcast would");
    command->addOption("severity", options->name, "test, watch or warning")
            ->required()
            ->among({"test", "watch", "warning"});
    command->addOption("--area", options->area, "Where it holds, 0 everywhere");
    command->addOption("--seconds", options->seconds, "How long")->showDefault();
    command->callback([options] {
        requireService();
        int32_t severity = 1;
        while (options->name != kSeverities[severity]) ++severity;
        int32_t words[] = {0, severity, options->area, options->seconds};
        check(a_qeltvapi_ewspa_set(QELTV_WARNING_RAISE, 0, words, 4), "warning");
        printf("warning %d\n", words[0]);
    });

    command = alert->addCommand("cancel", "End a warning");
    command->addOption("number", options->number, "The warning")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_ewspa_set(QELTV_WARNING_CANCEL, options->number, nullptr, 0), "cancel");
    });
}

}  // namespace tool
