#include "local_time.h"

#include <cstdio>
#include <cstring>
#include <optional>

#include "tool.h"

namespace tool {

QELTV_DTG_T fields(const QELTVAPI_DTG_T& record) {
    QELTV_DTG_T dtg;
    memcpy(&dtg, record.head, sizeof(record.head));
    dtg.flags = record.tail;
    return dtg;
}

QELTVAPI_DTG_T record(const QELTV_DTG_T& fields) {
    QELTVAPI_DTG_T dtg{};
    memcpy(dtg.head, &fields, sizeof(dtg.head));
    dtg.tail = fields.flags;
    return dtg;
}

QELTV_DTG_T localFields(int64_t utc) {
    QELTVAPI_DTG_T dtg{};
    check(c_dt_utc_sec_to_loc_dtg(utc, &dtg), "local time");
    return fields(dtg);
}

std::string dateText(const QELTV_DTG_T& fields) {
    char text[32];
    snprintf(text, sizeof(text), "%04u-%02u-%02u", fields.year, fields.month, fields.day);
    return text;
}

std::string clockText(const QELTV_DTG_T& fields) {
    char text[32];
    snprintf(text, sizeof(text), "%02u:%02u", fields.hour, fields.minute);
    return text;
}

std::string timeText(const QELTV_DTG_T& fields) {
    char text[64];
    snprintf(text, sizeof(text), "%s %s:%02u", dateText(fields).c_str(), clockText(fields).c_str(),
             fields.second);
    return text;
}

int64_t televisionTime() {
    return check(a_qeltvapi_time_get_utc_time(nullptr), "time");
}

namespace {

/** UTC of a local time; nothing where it is none. */
std::optional<int64_t> utcOf(const QELTV_DTG_T& local) {
    const QELTVAPI_DTG_T dtg = record(local);
    int64_t milliseconds = 0;
    a_qeltvapi_time_convert_local_time_to_millis(&dtg, &milliseconds);
    // What is no date comes back as a code, which is no whole second.
    if (milliseconds % 1000 != 0) return std::nullopt;
    return milliseconds / 1000;
}

}  // namespace

int64_t midnight(const std::string& date) {
    QELTV_DTG_T day = localFields(televisionTime());
    if (!date.empty()) {
        unsigned year = 0, month = 0, number = 0;
        char rest = 0;
        if (sscanf(date.c_str(), "%4u-%2u-%2u%c", &year, &month, &number, &rest) != 3) {
            throw Failure(kUsage, "\"" + date + "\" is no date, as 2026-03-29");
        }
        day = {};
        day.year = static_cast<uint16_t>(year);
        day.month = static_cast<uint8_t>(month);
        day.day = static_cast<uint8_t>(number);
    }
    day.hour = day.minute = day.second = 0;
    day.flags = 0;
    const auto utc = utcOf(day);
    if (!utc) throw Failure(kUsage, "there is no date " + date);
    return *utc;
}

int64_t localTimeIn(const std::string& text) {
    unsigned year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    int length = -1;
    const char* const begin = text.c_str();
    const int found = sscanf(begin, "%4u-%2u-%2u %2u:%2u%n:%2u%n", &year, &month, &day, &hour,
                             &minute, &length, &second, &length);
    if (found < 5 || length != static_cast<int>(text.size())) {
        throw Failure(kUsage, "\"" + text + "\" is no time, as 2026-03-29 20:15");
    }
    QELTV_DTG_T local{};
    local.year = static_cast<uint16_t>(year);
    local.month = static_cast<uint8_t>(month);
    local.day = static_cast<uint8_t>(day);
    local.hour = static_cast<uint8_t>(hour);
    local.minute = static_cast<uint8_t>(minute);
    local.second = static_cast<uint8_t>(second);
    const auto utc = utcOf(local);
    if (!utc) throw Failure(kUsage, "there is no time " + text);
    return *utc;
}

int64_t parseNumber(const std::string& text, const std::string& what, int64_t minimum,
                    int64_t maximum) {
    size_t used = 0;
    int64_t number = 0;
    try {
        number = std::stoll(text, &used, 0);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != text.size() || number < minimum || number > maximum) {
        throw Failure(kUsage, what + " is a number from " + std::to_string(minimum) + " to " +
                                      std::to_string(maximum) + ", not \"" + text + "\"");
    }
    return number;
}

}  // namespace tool
