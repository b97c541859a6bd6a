#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstring>
#include <fstream>
#include <sstream>

#include "hw_pcl.h"
#include "hw_qeltvapi_time.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/presentation.h"
#include "layouts/time.h"
#include "with_television.h"

using namespace wire;

namespace {

Inbox<Notified> sSleep, sDate, sPower;

int onSleep(int32_t type, uintptr_t, uintptr_t value) {
    sSleep.put({type, {value}});
    return 0;
}

int onPower(uint32_t condition, uintptr_t, uint32_t reason, uint32_t) {
    sPower.put({static_cast<int32_t>(condition), {reason}});
    return 0;
}

int onDate(int32_t type, uintptr_t, uintptr_t value) {
    sDate.put({type, {value}});
    return 0;
}

class TelevisionClock : public WithTelevision {
  protected:
    static QELTV_DTG_T fields(const QELTVAPI_DTG_T& record) {
        QELTV_DTG_T dtg;
        memcpy(&dtg, record.head, sizeof(record.head));
        dtg.flags = record.tail;
        return dtg;
    }

    static QELTVAPI_DTG_T record(uint16_t year, int month, int day, int hour, int minute,
                                 int second, uint16_t flags) {
        const QELTV_DTG_T dtg{year,
                              static_cast<uint8_t>(month),
                              static_cast<uint8_t>(day),
                              0,
                              static_cast<uint8_t>(hour),
                              static_cast<uint8_t>(minute),
                              static_cast<uint8_t>(second),
                              flags};
        QELTVAPI_DTG_T record{};
        memcpy(record.head, &dtg, sizeof(record.head));
        record.tail = flags;
        return record;
    }

    /** As date(1) is asked to print it below. */
    static std::string text(const QELTVAPI_DTG_T& record) {
        const QELTV_DTG_T dtg = fields(record);
        char text[64];
        snprintf(text, sizeof(text), "%04u-%02u-%02u %u %02u:%02u:%02u", dtg.year, dtg.month,
                 dtg.day, dtg.weekday, dtg.hour, dtg.minute, dtg.second);
        return text;
    }

    /** What date(1) says of many times at once. */
    static std::vector<std::string> dates(const std::vector<int64_t>& times, const char* zone) {
        TemporaryDirectory directory;
        const std::string path = directory.path() + "/times";
        std::ofstream file(path);
        for (const int64_t time : times) file << "@" << time << "\n";
        file.close();
        const Ended ended = runProgram({"/usr/bin/env", std::string("TZ=") + zone, "date", "-f",
                                        path, "+%Y-%m-%d %w %H:%M:%S"});
        EXPECT_EQ(0, ended.status) << ended.err;
        std::vector<std::string> lines;
        std::istringstream out(ended.out);
        for (std::string line; std::getline(out, line);) lines.push_back(line);
        return lines;
    }
};

TEST_F(TelevisionClock, DatesAreThoseOfTheDateCommandInUtcAndLocalTime) {
    std::vector<int64_t> times;
    // Every 40 days and some from 1902 to 2099, and the hours around both changes of some years.
    for (int64_t t = -2145916800; t < 4102444800; t += 40 * 86400 + 12347) times.push_back(t);
    for (const int64_t change : {1774746000, 1792890000, 1743296400, 354675600}) {
        for (int64_t t = change - 7200; t <= change + 7200; t += 1800) times.push_back(t);
    }
    const auto utc = dates(times, "UTC");
    const auto local = dates(times, "Europe/Berlin");
    ASSERT_EQ(times.size(), utc.size());
    ASSERT_EQ(times.size(), local.size());
    for (size_t i = 0; i < times.size(); ++i) {
        QELTVAPI_DTG_T dtg{};
        ASSERT_EQ(0, a_qeltvapi_utc_sec_to_dtg(times[i], &dtg));
        ASSERT_EQ(utc[i], text(dtg)) << times[i];
        ASSERT_EQ(times[i], a_qeltvapi_dtg_to_sec(&dtg));
        ASSERT_EQ(times[i], c_dt_dtg_to_sec(&dtg));

        ASSERT_EQ(0, c_dt_utc_sec_to_loc_dtg(times[i], &dtg));
        ASSERT_EQ(local[i], text(dtg)) << times[i];
        // Back, the hour that comes twice included: the record says which of both it is.
        ASSERT_EQ(times[i], a_qeltvapi_dtg_to_sec(&dtg)) << text(dtg);
        int64_t milliseconds = 0;
        a_qeltvapi_time_convert_local_time_to_millis(&dtg, &milliseconds);
        ASSERT_EQ(times[i] * 1000, milliseconds);
    }
}

TEST_F(TelevisionClock, JulianDatesAreThePublishedOnes) {
    // The example of EN 300 468 (C079 124500: 13 October 1993 12:45:00), and astronomical tables.
    const auto example = record(1993, 10, 13, 12, 45, 0, QELTV_DTG_UTC);
    uint16_t mjd = 0, bcd = 0;
    uint8_t second = 0xff;
    ASSERT_EQ(0, c_dt_dtg_to_mjd_bcd(&example, &mjd, &bcd, &second));
    EXPECT_EQ(0xc079, mjd);
    EXPECT_EQ(0x1245, bcd);
    EXPECT_EQ(0, second);
    const auto late = record(1993, 10, 13, 23, 59, 58, QELTV_DTG_UTC);
    ASSERT_EQ(0, c_dt_dtg_to_mjd_bcd(&late, nullptr, &bcd, &second));
    EXPECT_EQ(0x2359, bcd);
    EXPECT_EQ(0x58, second);

    const struct {
        uint32_t mjd;
        const char* date;
    } kTable[] = {{0, "1858-11-17 3 00:00:00"},     {15020, "1900-01-01 1 00:00:00"},
                  {40587, "1970-01-01 4 00:00:00"}, {45218, "1982-09-06 1 00:00:00"},
                  {51544, "2000-01-01 6 00:00:00"}, {53005, "2004-01-01 4 00:00:00"},
                  {65442, "2038-01-19 2 00:00:00"}};
    for (const auto& row : kTable) {
        QELTVAPI_DTG_T dtg{};
        ASSERT_EQ(0, c_dt_mjd_to_dtg(row.mjd, &dtg));
        EXPECT_EQ(row.date, text(dtg));
        if (row.mjd == 0) continue;
        ASSERT_EQ(0, c_dt_dtg_to_mjd_bcd(&dtg, &mjd, &bcd, nullptr));
        EXPECT_EQ(row.mjd, mjd);
    }
    QELTVAPI_DTG_T dtg{};
    EXPECT_EQ(QELTV_BAD_VALUE, c_dt_mjd_to_dtg(UINT32_MAX, &dtg));
    const auto nonsense = record(2025, 2, 29, 0, 0, 0, QELTV_DTG_UTC);
    EXPECT_EQ(QELTV_BAD_VALUE, c_dt_dtg_to_mjd_bcd(&nonsense, &mjd, &bcd, nullptr));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_dtg_to_sec(&nonsense));
}

TEST_F(TelevisionClock, ConversionsCarryOverAndGoBothWays) {
    const auto summer = record(2026, 7, 1, 22, 30, 0, QELTV_DTG_UTC);
    QELTVAPI_DTG_T out{};
    ASSERT_EQ(0, a_qeltvapi_time_convert(QELTV_TIME_UTC_TO_LOCAL, &summer, &out));
    EXPECT_EQ("2026-07-02 4 00:30:00", text(out));
    EXPECT_EQ(QELTV_DTG_DAYLIGHT, fields(out).flags);
    QELTVAPI_DTG_T back{};
    ASSERT_EQ(0, c_dt_conv_utc_local(&out, &back));
    EXPECT_EQ("2026-07-01 3 22:30:00", text(back));
    ASSERT_EQ(0, a_qeltvapi_time_convert(QELTV_TIME_LOCAL_TO_UTC, &out, &back));
    EXPECT_EQ("2026-07-01 3 22:30:00", text(back));

    const auto beyond = record(2027, 14, 31, 25, 61, 61, 0);
    ASSERT_EQ(0, a_qeltvapi_time_convert(QELTV_TIME_NORMALISE, &beyond, &out));
    EXPECT_EQ("2028-03-03 5 02:02:01", text(out));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_time_convert(77, &summer, &out));

    a_qeltvapi_time_convert_millis_to_local_time(-1, &out);
    EXPECT_EQ("1970-01-01 4 00:59:59", text(out));
}

TEST_F(TelevisionClock, OnlyAClockThatFollowsNothingIsSet) {
    a_qeltvapi_time_register_dt_event_callback(onDate);
    EXPECT_EQ(0, a_qeltvapi_time_is_time_editable());
    EXPECT_EQ(1, a_qeltvapi_time_has_received_tot());
    const int64_t now = time(nullptr);
    EXPECT_NEAR(static_cast<double>(now), static_cast<double>(a_qeltvapi_time_get_broadcast_time()),
                5);
    a_qeltvapi_time_set_utc_time(1000000000);
    EXPECT_NEAR(static_cast<double>(now),
                static_cast<double>(a_qeltvapi_time_get_utc_time(nullptr)), 5);
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_time_update_local_time("2026-03-29", "12:00"));

    a_qeltvapi_time_set_sync_source(QELTV_SYNC_MANUAL);
    EXPECT_EQ(1, a_qeltvapi_time_is_time_editable());
    EXPECT_EQ(0, a_qeltvapi_time_get_broadcast_time());
    a_qeltvapi_time_set_utc_time(1000000000);
    ASSERT_TRUE(sDate.takeUntil([](const Notified& t) { return t.type == QELTV_TIME_CHANGED; }));
    EXPECT_NEAR(1e9, static_cast<double>(a_qeltvapi_time_get_utc_time(nullptr)), 5);
    EXPECT_EQ(0, a_qeltvapi_time_update_local_time("2026-07-01", "12:00:05"));
    EXPECT_NEAR(1782900005, static_cast<double>(a_qeltvapi_time_get_utc_time(nullptr)), 5);
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_time_update_local_time("2026-02-30", "12:00"));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_time_update_local_time("2026-02-03", "noon"));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_time_update_local_time("2026-02-03", "12:"));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_time_update_local_time("", ""));

    a_qeltvapi_time_set_time_zone(-5 * 3600);
    a_qeltvapi_time_set_time_offset(1800);
    restart();
    EXPECT_EQ(-5 * 3600, a_qeltvapi_time_get_time_zone());
    EXPECT_EQ(1800, a_qeltvapi_time_get_time_offset());
    QELTVAPI_DTG_T dtg{};
    c_dt_utc_sec_to_loc_dtg(0, &dtg);
    EXPECT_EQ("1969-12-31 3 19:30:00", text(dtg));
    EXPECT_NEAR(1782900005, static_cast<double>(a_qeltvapi_time_get_utc_time(nullptr)), 30);
    // The place counts again.
    a_qeltvapi_time_set_sync_source(QELTV_SYNC_BROADCAST);
    EXPECT_EQ(3600, a_qeltvapi_time_get_time_zone());
}

TEST_F(TelevisionClock, TheSleepTimerFires) {
    a_qeltvapi_time_register_sleep_timer_callback(onSleep);
    c_pcl_reg_nfy_fct(0, onPower);
    sSleep.clear();
    uint32_t left = 0;
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_time_get_sleep_timer_remaining_time(&left));
    a_qeltvapi_time_set_sleep_timer(3600);
    EXPECT_EQ(3600, a_qeltvapi_time_get_sleep_timer());
    EXPECT_EQ(0, a_qeltvapi_time_get_sleep_timer_remaining_time(&left));
    EXPECT_LE(3590u, left);
    EXPECT_EQ(3600, static_cast<int>(left) + a_qeltvapi_time_get_sleep_timer_reverse());
    a_qeltvapi_time_set_sleep_timer(-1);
    EXPECT_EQ(3600, a_qeltvapi_time_get_sleep_timer());

    const auto begin = std::chrono::steady_clock::now();
    a_qeltvapi_time_set_sleep_timer(1);
    ASSERT_TRUE(sSleep.takeUntil([](const Notified& t) { return t.type == QELTV_SLEEP_EXPIRED; }));
    EXPECT_LE(std::chrono::milliseconds(990), std::chrono::steady_clock::now() - begin);
    EXPECT_EQ(0, a_qeltvapi_time_get_sleep_timer());
    const auto down = sPower.take();
    ASSERT_TRUE(down);
    EXPECT_EQ(QELTV_POWER_DOWN, static_cast<uint32_t>(down->type));
    EXPECT_EQ(QELTV_DOWN_SLEEP_TIMER, down->values[0]);

    // A timer that is set a minute before its end warns first.
    a_qeltvapi_time_set_sleep_timer(QELTV_SLEEP_WARNING_TIME + 1);
    ASSERT_TRUE(sSleep.takeUntil([](const Notified& t) {
        return t.type == QELTV_SLEEP_WARNING && t.values[0] == QELTV_SLEEP_WARNING_TIME;
    }));
    a_qeltvapi_time_set_sleep_timer(0);
    ASSERT_TRUE(
            sSleep.takeUntil([](const Notified& t) { return t.type == QELTV_SLEEP_CANCELLED; }));
}

TEST_F(TelevisionClock, TheToolTellsAndConvertsTimes) {
    EXPECT_EQ("61128\n", qeltvctl({"time", "julian", "2026-03-29"}).out);
    EXPECT_EQ("2026-03-29\n", qeltvctl({"time", "julian", "61128"}).out);
    EXPECT_EQ(2, qeltvctl({"time", "julian", "2026-02-30"}).status);
    EXPECT_EQ(1, qeltvctl({"time", "zone", "+02:00"}).status);
    EXPECT_EQ(0, qeltvctl({"time", "source", "manual"}).status);
    EXPECT_EQ(0, qeltvctl({"time", "zone", "-03:30"}).status);
    EXPECT_EQ(0, qeltvctl({"time", "set", "2026-03-29", "02:30"}).status);
    EXPECT_EQ(0, qeltvctl({"time", "sleep", "30m"}).status);
    const auto shown = nlohmann::json::parse(qeltvctl({"time", "show", "--json"}).out);
    EXPECT_EQ(-12600, shown.at("zone"));
    EXPECT_EQ("manual", shown.at("source"));
    EXPECT_EQ(0u, shown.at("local_text").get<std::string>().find("2026-03-29 02:3"));
    EXPECT_GT(shown.at("sleep_left"), 1700);
}

}  // namespace
