/** The list of recordings, each value of it by index and by path. */
#include <gtest/gtest.h>

#include <cstring>

#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_pvr_browser.h"
#include "hw_qeltvapi_record.h"
#include "hw_qeltvapi_time.h"
#include "layouts/codes.h"
#include "layouts/record.h"
#include "layouts/time.h"
#include "with_television.h"

using namespace wire;

namespace {

constexpr uint32_t kFirstChannel = 0x04000001;

class Browser : public WithTelevision {
  protected:
    /** Records a little of a channel; its path. */
    static std::string record(uint32_t channel, const char* programme, int rating, int retention) {
        const int opened = a_qeltvapi_record_pvr_open(channel);
        EXPECT_GT(opened, 0) << channel;
        const auto handle = static_cast<uint32_t>(opened);
        EXPECT_EQ(0, a_qeltvapi_pvr_set_event_extra(QELTV_COMMAND_PROGRAMME_NAME, handle, 0,
                                                    programme));
        EXPECT_EQ(0, a_qeltvapi_pvr_set_event_extra(QELTV_COMMAND_RATING, handle, rating, ""));
        EXPECT_EQ(0,
                  a_qeltvapi_pvr_set_event_extra(QELTV_COMMAND_RETENTION, handle, retention, ""));
        EXPECT_EQ(0, a_qeltvapi_record_pvr_set_mode(handle, QELTV_RECORDING_MODE_KIB, 64, 4096));
        EXPECT_EQ(0, a_qeltvapi_record_pvr_start(handle));
        EXPECT_TRUE(eventually([&] {
            return a_qeltvapi_record_pvr_get_status(handle) == QELTV_RECORDING_STOPPED;
        }));
        a_qeltvapi_record_pvr_close(handle);
        char path[512] = "";
        uint32_t last = 0;
        EXPECT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_recording_file_num(&last));
        EXPECT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_item_path_by_index(last - 1, path));
        return path;
    }

    static QELTV_BROWSER_ITEM_T item(uint32_t index) {
        QELTV_BROWSER_ITEM_T item{};
        EXPECT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_item_by_index(index, &item)) << index;
        return item;
    }

    static uint32_t number(int (*get)(uint32_t, uint32_t*), uint32_t index) {
        uint32_t value = 0xdead;
        EXPECT_EQ(0, get(index, &value));
        return value;
    }
    static uint32_t number(int (*get)(const char*, uint32_t*), const std::string& path) {
        uint32_t value = 0xdead;
        EXPECT_EQ(0, get(path.c_str(), &value));
        return value;
    }
    template <class QELTV_KEY>
    static std::string text(int (*get)(QELTV_KEY, char*), QELTV_KEY key) {
        char value[512] = "";
        EXPECT_EQ(0, get(key, value));
        return value;
    }
};

TEST_F(Browser, TellsEveryValueByIndexAndByPath) {
    const std::string paths[] = {record(kFirstChannel, "Late film", 16, 0),
                                 record(kFirstChannel + 1, "Early news", 4, 30)};
    ASSERT_NE(paths[0], paths[1]);
    for (uint32_t i = 0; i < 2; ++i) {
        const QELTV_BROWSER_ITEM_T of = item(i);
        const std::string& path = paths[i];
        QELTV_BROWSER_ITEM_T byPath{};
        ASSERT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_item_by_path(path.c_str(), &byPath));
        EXPECT_EQ(0, memcmp(&of, &byPath, sizeof(of)));
        EXPECT_EQ(path, of.path);
        EXPECT_EQ(kFirstChannel + i, of.channel);
        EXPECT_STREQ(i == 0 ? "Late film" : "Early news", of.programme);
        EXPECT_EQ(i == 0 ? 16u : 4u, of.rating);
        EXPECT_EQ(i == 0 ? 0u : 30u, of.retention);
        EXPECT_EQ(QELTV_STOP_TIME, of.stopReason);
        EXPECT_NE(0u, of.major);

        const struct {
            const char* what;
            uint32_t expected;
            int (*byIndex)(uint32_t, uint32_t*);
            int (*byPath)(const char*, uint32_t*);
        } kNumbers[] = {
                {"channel", of.channel, a_qeltvapi_mmp_get_pvr_browser_channelid_by_index,
                 a_qeltvapi_mmp_get_pvr_browser_channelid_by_path},
                {"major", of.major, a_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_index,
                 a_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path},
                {"minor", of.minor, a_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index,
                 a_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path},
                {"seconds", of.seconds, a_qeltvapi_mmp_get_pvr_browser_duration_by_index,
                 a_qeltvapi_mmp_get_pvr_browser_duration_by_path},
                {"reason", of.stopReason, a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index,
                 a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path},
                {"start", static_cast<uint32_t>(of.start),
                 a_qeltvapi_mmp_get_pvr_browser_start_time_by_index,
                 a_qeltvapi_mmp_get_pvr_browser_start_time_by_path},
                {"rating", of.rating, a_qeltvapi_mmp_get_pvr_browser_first_rating_by_index,
                 a_qeltvapi_mmp_get_pvr_browser_first_rating_by_path},
                {"retention", of.retention, a_qeltvapi_mmp_get_pvr_browser_retention_by_index,
                 a_qeltvapi_mmp_get_pvr_browser_retention_by_path},
        };
        uint32_t none = 0;
        for (const auto& one : kNumbers) {
            EXPECT_EQ(one.expected, number(one.byIndex, i)) << one.what;
            EXPECT_EQ(one.expected, number(one.byPath, path)) << one.what;
            EXPECT_EQ(QELTV_NOT_FOUND, one.byIndex(2, &none)) << one.what;
            EXPECT_EQ(QELTV_NOT_FOUND, one.byPath("/etc/passwd", &none)) << one.what;
        }
        EXPECT_EQ(of.channelName, text(a_qeltvapi_mmp_get_pvr_browser_channelname_by_index, i));
        EXPECT_EQ(of.channelName,
                  text(a_qeltvapi_mmp_get_pvr_browser_channelname_by_path, path.c_str()));
        EXPECT_EQ(of.programme, text(a_qeltvapi_mmp_get_pvr_browser_programname_by_index, i));
        EXPECT_EQ(path.substr(path.rfind('/') + 1),
                  text(a_qeltvapi_mmp_get_pvr_browser_recording_file_name, i));
    }
    QELTV_BROWSER_INFO_T info{};
    ASSERT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_recording_file_info(&info));
    EXPECT_EQ(2u, info.items);
    EXPECT_EQ(item(0).bytes + item(1).bytes, info.bytes);
    EXPECT_EQ(a_qeltvapi_record_pvr_get_disk_free_size(0), info.free);

    // What is deleted makes the ones behind it move up; paths stay.
    ASSERT_EQ(0, a_qeltvapi_mmp_pvr_browser_delete_file_by_index(0));
    EXPECT_EQ(paths[1], item(0).path);
    uint32_t none = 0;
    EXPECT_EQ(QELTV_NOT_FOUND,
              a_qeltvapi_mmp_get_pvr_browser_duration_by_path(paths[0].c_str(), &none));
    const QELTV_BROWSER_ITEM_T before = item(0);
    restart();
    const QELTV_BROWSER_ITEM_T after = item(0);
    EXPECT_EQ(0, memcmp(&before, &after, sizeof(after)));
}

TEST_F(Browser, DatesAreThoseOfThePlaceWhereTheTelevisionIs) {
    a_qeltvapi_time_set_sync_source(QELTV_SYNC_MANUAL);
    // Half past eleven in the evening of a Saturday, UTC.
    a_qeltvapi_time_set_utc_time(1795908600);
    const std::string path = record(kFirstChannel, "Film", 0, 0);
    const struct {
        const char* place;
        const char* date;
        const char* time;
        const char* week;
    } kPlaces[] = {
            {"Etc/UTC", "2026-11-28", "23:30:0", "Sat"},
            {"Europe/Berlin", "2026-11-29", "00:30:0", "Sun"},
            {"Asia/Kolkata", "2026-11-29", "05:00:0", "Sun"},
            {"America/New_York", "2026-11-28", "18:30:0", "Sat"},
    };
    for (const auto& [place, date, time, week] : kPlaces) {
        ASSERT_EQ(0, a_qeltvapi_config_set_str_value("system.time_zone", place));
        EXPECT_EQ(date, text(a_qeltvapi_mmp_get_pvr_browser_date_by_index, 0u)) << place;
        EXPECT_EQ(date, text(a_qeltvapi_mmp_get_pvr_browser_date_by_path, path.c_str())) << place;
        const std::string begin = text(a_qeltvapi_mmp_get_pvr_browser_time_by_index, 0u);
        EXPECT_EQ(time, begin.substr(0, 7)) << place;
        EXPECT_EQ(begin, text(a_qeltvapi_mmp_get_pvr_browser_time_by_path, path.c_str()));
        EXPECT_EQ(week, text(a_qeltvapi_mmp_get_pvr_browser_week_by_index, 0u)) << place;
        EXPECT_EQ(week, text(a_qeltvapi_mmp_get_pvr_browser_week_by_path, path.c_str())) << place;
    }
}

TEST_F(Browser, RecordingsPastTheirTimeMakeRoomAndOthersDoNot) {
    const std::string forever = record(kFirstChannel, "For ever", 0, 0);
    const std::string week = record(kFirstChannel, "A week", 0, 7);
    const std::string day = record(kFirstChannel, "A day", 0, 1);
    a_qeltvapi_time_set_sync_source(QELTV_SYNC_MANUAL);
    a_qeltvapi_time_set_utc_time(a_qeltvapi_time_get_utc_time(nullptr) + 2 * 86400);
    const auto listed = [] {
        uint32_t count = 0;
        EXPECT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_recording_file_num(&count));
        return count;
    };
    EXPECT_EQ(3u, listed()) << "as long as there is room";
    QELTV_DISK_RECORD_T disk{};
    disk.limitLow = static_cast<uint32_t>(item(0).bytes * 3 + 1000);
    ASSERT_EQ(0, a_qeltvapi_record_pvr_set_disk(0, "", &disk));
    const std::string next = record(kFirstChannel, "Next", 0, 0);
    EXPECT_EQ(3u, listed());
    EXPECT_EQ(forever, item(0).path);
    EXPECT_EQ(week, item(1).path) << "its time has not come";
    EXPECT_EQ(next, item(2).path);
}

}  // namespace
