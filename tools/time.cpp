#include "hw_qeltvapi_time.h"

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "local_time.h"
#include "tool.h"

namespace tool {
namespace {

constexpr const char* kSources[] = {"manual", "broadcast", "network"};

std::string offsetText(int64_t seconds) {
    const char sign = seconds < 0 ? '-' : '+';
    const int64_t minutes = std::abs(seconds) / 60;
    char text[32];
    snprintf(text, sizeof(text), "%c%02d:%02d", sign, static_cast<int>(minutes / 60),
             static_cast<int>(minutes % 60));
    return text;
}

/** "+01:00" or seconds. */
int64_t parseOffset(const std::string& text) {
    char sign = 0, rest = 0;
    int hours = 0, minutes = 0;
    if (sscanf(text.c_str(), "%c%2d:%2d%c", &sign, &hours, &minutes, &rest) == 3 &&
        (sign == '+' || sign == '-') && hours >= 0 && minutes >= 0 && minutes < 60) {
        return (hours * 3600 + minutes * 60) * (sign == '-' ? -1 : 1);
    }
    return parseNumber(text, "an offset", -QELTV_ZONE_MAXIMUM, QELTV_ZONE_MAXIMUM);
}

/** "90", "90s", "30m", "2h", "off". */
int32_t parseDuration(const std::string& text) {
    if (text == "off") return 0;
    std::string digits = text;
    int64_t unit = 1;
    switch (text.empty() ? 0 : text.back()) {
        case 'h':
            unit = 3600;
            break;
        case 'm':
            unit = 60;
            break;
        case 's':
            break;
        default:
            digits += 's';
            break;
    }
    digits.pop_back();
    return static_cast<int32_t>(parseNumber(digits, "a time", 0, QELTV_SLEEP_MAXIMUM / unit) *
                                unit);
}

void show(bool json) {
    requireService();
    const int64_t utc = televisionTime();
    QELTVAPI_DTG_T now{};
    check(a_qeltvapi_utc_sec_to_dtg(utc, &now), "time");
    uint32_t source = 0;
    check(a_qeltvapi_time_get_sync_source(&source), "source");
    const std::string from = source <= QELTV_SYNC_NETWORK ? kSources[source] : "?";
    // Negative west of Greenwich, so that codes cannot be distinguished from offsets.
    const int64_t zone = a_qeltvapi_time_get_time_zone();
    const int64_t offset = a_qeltvapi_time_get_time_offset();
    const int sleep = static_cast<int>(check(a_qeltvapi_time_get_sleep_timer(), "sleep timer"));
    uint32_t left = 0;
    if (sleep != 0) (void)a_qeltvapi_time_get_sleep_timer_remaining_time(&left);
    uint16_t mjd = 0, bcd = 0;
    check(c_dt_dtg_to_mjd_bcd(&now, &mjd, &bcd, nullptr), "date");
    const QELTV_DTG_T local = localFields(utc);
    if (json) {
        const nlohmann::ordered_json all{
                {"utc", utc},
                {"utc_text", timeText(fields(now))},
                {"local_text", timeText(local)},
                {"daylight_saving", (local.flags & QELTV_DTG_DAYLIGHT) != 0},
                {"zone", zone},
                {"offset", offset},
                {"source", from},
                {"mjd", mjd},
                {"sleep_left", left}};
        printJson(all);
        return;
    }
    printTable({{"utc", timeText(fields(now))},
                {"local", timeText(local)},
                {"zone", offsetText(zone) + " " + offsetText(offset)},
                {"source", from},
                {"julian date", std::to_string(mjd)},
                {"sleep timer", sleep == 0 ? "off" : std::to_string(left) + " s"}});
}

void set(const std::string& date, const std::string& time) {
    requireService();
    check(a_qeltvapi_time_update_local_time(date.c_str(), time.c_str()), "time");
}

void setSource(const std::string& name) {
    requireService();
    for (int32_t source = 0; source <= QELTV_SYNC_NETWORK; ++source) {
        if (name == kSources[source]) a_qeltvapi_time_set_sync_source(source);
    }
}

void setZone(const std::string& text) {
    requireService();
    const int64_t zone = parseOffset(text);
    if (a_qeltvapi_time_is_time_zone_editable() == 0) {
        throw Failure(kRefused, "the time zone comes from the broadcast");
    }
    a_qeltvapi_time_set_time_zone(zone);
    if (a_qeltvapi_time_get_time_zone() != zone) throw Failure(kRefused, "the zone is refused");
}

void setSleep(const std::string& text) {
    requireService();
    a_qeltvapi_time_set_sleep_timer(parseDuration(text));
}

/** A Modified Julian Date as a date, or a date as one. */
void julian(const std::string& text) {
    requireService();
    if (text.find('-', 1) == std::string::npos) {
        QELTVAPI_DTG_T dtg{};
        const auto day = static_cast<uint32_t>(parseNumber(text, "a Julian date", 0, UINT32_MAX));
        check(c_dt_mjd_to_dtg(day, &dtg), text);
        printf("%s\n", dateText(fields(dtg)).c_str());
        return;
    }
    const QELTV_DTG_T day = localFields(midnight(text));
    const QELTVAPI_DTG_T dtg = record(day);
    uint16_t mjd = 0;
    check(c_dt_dtg_to_mjd_bcd(&dtg, &mjd, nullptr, nullptr), text);
    printf("%u\n", mjd);
}

}  // namespace

void addTime(Command& app) {
    struct Options {
        std::string first, second;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    Command* time = app.addCommand("time", "Clock, time zone and sleep timer");
    time->requireCommand();

    Command* command = time->addCommand("show", "Print all of it");
    addJson(command, &options->json);
    command->callback([options] { show(options->json); });

    command = time->addCommand("set", "Set the clock, which must not follow anything");
    command->addOption("date", options->first, "As 2026-03-29")->required();
    command->addOption("time", options->second, "As 14:30 or 14:30:15")->required();
    command->callback([options] { set(options->first, options->second); });

    command = time->addCommand("source", "Choose what the clock follows");
    command->addOption("source", options->first, "manual, broadcast or network")
            ->required()
            ->among({"manual", "broadcast", "network"});
    command->callback([options] { setSource(options->first); });

    command = time->addCommand("zone", "Set the time zone");
    command->addOption("zone", options->first, "As +01:00, or seconds")->required();
    command->callback([options] { setZone(options->first); });

    command = time->addCommand("sleep", "Set the sleep timer");
    command->addOption("time", options->first, "As 30m, 90s, 2h, or off")->required();
    command->callback([options] { setSleep(options->first); });

    command = time->addCommand("julian", "Convert a Modified Julian Date, either way");
    command->addOption("date", options->first, "As 61003, or 2026-03-29")->required();
    command->callback([options] { julian(options->first); });
}

}  // namespace tool
