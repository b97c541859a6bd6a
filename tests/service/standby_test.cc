/** What goes on and what ends when the television goes to standby and comes back. */
#include <gtest/gtest.h>

#include "hw_pcl.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_multiview.h"
#include "hw_qeltvapi_pvr_browser.h"
#include "hw_qeltvapi_record.h"
#include "hw_qeltvapi_time.h"
#include "hw_qeltvapi_timeshift.h"
#include "hw_svctx.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/presentation.h"
#include "layouts/record.h"
#include "layouts/time.h"
#include "with_television.h"

using namespace wire;

namespace {

Inbox<Notified> sRecordings, sTimeshift;

int onRecording(int32_t type, uintptr_t, uintptr_t first, uintptr_t second) {
    sRecordings.put({type, {first, second}});
    return 0;
}
int onTimeshift(int32_t type, uintptr_t, uintptr_t first, uintptr_t second) {
    sTimeshift.put({type, {first, second}});
    return 0;
}

class Standby : public WithTelevision {
  protected:
    void SetUp() override {
        WithTelevision::SetUp();
        a_qeltvapi_record_pvr_register_callback(onRecording);
        a_qeltvapi_timeshift_register_callback(onTimeshift);
        sRecordings.clear();
        sTimeshift.clear();
        ASSERT_TRUE(eventually([] { return tuning() == QELTV_TUNING_PLAYS; }));
    }

    static int32_t tuning() {
        int32_t status = -1;
        EXPECT_EQ(0, a_qeltvapi_broadcast_get_tuning_status(&status));
        return status;
    }

    static uint32_t current() {
        QELTV_CONNECTION_T all{};
        EXPECT_EQ(0, c_svctx_get_conn_attr(1, 0, QELTV_CONNECTION_ALL, &all));
        return all.channel;
    }

    static void readyTimeshift(const TemporaryDirectory& directory) {
        ASSERT_EQ(0, a_qeltvapi_timeshift_registerDevice(directory.path().c_str(), 8 << 20));
        ASSERT_TRUE(sTimeshift.takeUntil([](const Notified& t) {
            return t.type == QELTV_TIMESHIFT_DEVICE_EVENT && t.values[0] == QELTV_DEVICE_READY;
        }));
    }

    static bool timeshiftBecomes(int32_t status) {
        return sTimeshift
                .takeUntil([status](const Notified& t) {
                    return t.type == QELTV_TIMESHIFT_STATUS_EVENT &&
                           t.values[0] == static_cast<uint64_t>(status);
                })
                .has_value();
    }

    static int32_t wake() { return a_qeltvapi_broadcast_key_handler(QELTV_KEY_POWER); }
};

TEST_F(Standby, EndsWhatTheViewerRecordsAndLetsBookingsGoOn) {
    const auto byHand = static_cast<uint32_t>(a_qeltvapi_record_pvr_open_ex(0, 1));
    ASSERT_GT(byHand, 0u);
    ASSERT_TRUE(
            eventually([&] { return a_qeltvapi_record_pvr_get_recording_file_size(byHand) > 0; }));
    QELTV_SCHEDULE_RECORD_T booking{};
    booking.channel = current();
    booking.start = a_qeltvapi_time_get_utc_time(nullptr);
    booking.seconds = 600;
    const int number = a_qeltvapi_set_schedule_record(&booking, 0);
    ASSERT_GT(number, 0);
    const auto started = sRecordings.takeUntil([&](const Notified& t) {
        return t.type == QELTV_RECORDING_STARTED_EVENT &&
               t.values[1] == static_cast<uint64_t>(number);
    });
    ASSERT_TRUE(started);
    const auto booked = static_cast<uint32_t>(started->values[0]);

    ASSERT_EQ(0, c_pcl_set_power_down());
    const auto stopped = sRecordings.takeUntil(
            [](const Notified& t) { return t.type == QELTV_RECORDING_STOPPED_EVENT; });
    ASSERT_TRUE(stopped);
    EXPECT_EQ(byHand, stopped->values[0]);
    EXPECT_EQ(uint64_t{QELTV_STOP_STANDBY}, stopped->values[1]);
    EXPECT_EQ(QELTV_RECORDING_STOPPED, a_qeltvapi_record_pvr_get_status(byHand));
    uint32_t reason = 0;
    ASSERT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index(0, &reason));
    EXPECT_EQ(QELTV_STOP_STANDBY, reason);

    EXPECT_EQ(QELTV_RECORDING_RUNS, a_qeltvapi_record_pvr_get_status(booked));
    const int64_t bytes = a_qeltvapi_record_pvr_get_recording_file_size(booked);
    EXPECT_TRUE(eventually(
            [&] { return a_qeltvapi_record_pvr_get_recording_file_size(booked) > bytes; }));
    // A recording that comes due in standby starts as well.
    ASSERT_EQ(0, a_qeltvapi_record_pvr_stop(booked));
    booking.start = a_qeltvapi_time_get_utc_time(nullptr) + 1;
    ASSERT_GT(a_qeltvapi_set_schedule_record(&booking, 0), number);
    ASSERT_TRUE(sRecordings.takeUntil(
            [](const Notified& t) { return t.type == QELTV_RECORDING_STARTED_EVENT; }));
    EXPECT_EQ(QELTV_TUNING_STOPPED, tuning()) << "without showing anything";
    ASSERT_EQ(0, wake());
    EXPECT_TRUE(eventually([] { return tuning() == QELTV_TUNING_PLAYS; }));
    EXPECT_GT(a_qeltvapi_record_pvr_get_current_handle(), 0);
}

TEST_F(Standby, TimeshiftEndsAndStartsAgainByItselfWhereItIsToDoSo) {
    const TemporaryDirectory directory;
    readyTimeshift(directory);
    ASSERT_EQ(0, a_qeltvapi_timeshift_start());
    ASSERT_TRUE(timeshiftBecomes(QELTV_TIMESHIFT_RECORDS));
    ASSERT_TRUE(eventually([] { return a_qeltvapi_timeshift_get_duration() > 50; }));
    ASSERT_EQ(0, c_pcl_set_request_suspend());
    EXPECT_TRUE(timeshiftBecomes(QELTV_TIMESHIFT_IDLE));
    EXPECT_EQ(0, a_qeltvapi_timeshift_get_duration()) << "nothing is kept";
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_timeshift_start()) << "nothing is shown";
    ASSERT_EQ(0, wake());
    EXPECT_EQ(QELTV_TIMESHIFT_IDLE, a_qeltvapi_timeshift_get_record_status());

    ASSERT_EQ(0, a_qeltvapi_timeshift_set_auto_record(1));
    ASSERT_TRUE(timeshiftBecomes(QELTV_TIMESHIFT_RECORDS));
    ASSERT_EQ(0, c_pcl_set_power_down());
    ASSERT_TRUE(timeshiftBecomes(QELTV_TIMESHIFT_IDLE));
    // A device that becomes ready meanwhile waits.
    readyTimeshift(directory);
    EXPECT_EQ(QELTV_TIMESHIFT_IDLE, a_qeltvapi_timeshift_get_record_status());
    ASSERT_EQ(0, wake());
    EXPECT_TRUE(timeshiftBecomes(QELTV_TIMESHIFT_RECORDS));

    // What the user has chosen, and the device, are there again after a restart.
    restart();
    EXPECT_TRUE(eventually(
            [] { return a_qeltvapi_timeshift_get_record_status() == QELTV_TIMESHIFT_RECORDS; }));
    ASSERT_EQ(0, a_qeltvapi_timeshift_set_auto_record(0));
}

TEST_F(Standby, TheSleepTimerIsAsThoroughAsTheRemoteControl) {
    const auto byHand = static_cast<uint32_t>(a_qeltvapi_record_pvr_open_ex(0, 1));
    ASSERT_GT(byHand, 0u);
    a_qeltvapi_time_set_sleep_timer(1);
    EXPECT_TRUE(eventually([] { return tuning() == QELTV_TUNING_STOPPED; }));
    EXPECT_TRUE(eventually(
            [&] { return a_qeltvapi_record_pvr_get_status(byHand) == QELTV_RECORDING_STOPPED; }));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_broadcast_switch_input_to_tv());
    EXPECT_EQ(QELTV_RESOURCE_NONE, a_qeltvapi_multiview_getVideoResource("main"));
    uint32_t reason = 0;
    ASSERT_EQ(0, c_pcl_get_power_down_reason(&reason, nullptr));
    EXPECT_EQ(QELTV_DOWN_SLEEP_TIMER, reason);
    ASSERT_EQ(0, wake());
    EXPECT_TRUE(eventually([] { return tuning() == QELTV_TUNING_PLAYS; }));
}

}  // namespace
