#pragma once

#include <qeltvapi/service/IQelTvApiTimeshift.h>

#include "Code.h"
#include "ServiceTypes.h"
#include "Timeshift.h"

namespace qeltvd {

/** IQelTvApiTimeshift over the timeshift. */
class TimeshiftService : public Default<IQelTvApiTimeshift> {
  public:
    explicit TimeshiftService(Timeshift& timeshift) : mShift(timeshift) {}

    Return<int32_t> a_hidl_qeltvapi_timeshift_get_registerdevice_schedule() override {
        return mShift.progress();
    }
    Return<int64_t> a_hidl_qeltvapi_timeshift_get_duration() override { return mShift.duration(); }
    Return<int64_t> a_hidl_qeltvapi_timeshift_get_position() override { return mShift.position(); }
    Return<int32_t> a_hidl_qeltvapi_timeshift_registerDevice(const String& path,
                                                             int64_t size) override {
        return mShift.registerDevice(path, size);
    }
    Return<int32_t> a_hidl_qeltvapi_timeshift_start() override { return mShift.start(); }
    Return<int32_t> a_hidl_qeltvapi_timeshift_stop() override {
        return mShift.stop(QELTV_TIMESHIFT_STOP_DROP);
    }
    Return<int32_t> a_hidl_qeltvapi_timeshift_play() override { return mShift.play(); }
    Return<int32_t> a_hidl_qeltvapi_timeshift_pause() override { return mShift.pause(); }
    Return<int32_t> a_hidl_qeltvapi_timeshift_seek(uint32_t position) override {
        return mShift.seek(position);
    }
    Return<int32_t> a_hidl_qeltvapi_timeshift_trickplay(uint32_t speed) override {
        return mShift.trickplay(speed);
    }
    Return<int32_t> a_hidl_qeltvapi_timeshift_get_device_status() override {
        return mShift.deviceStatus();
    }
    Return<int32_t> a_hidl_qeltvapi_timeshift_get_error_id() override { return mShift.errorId(); }
    Return<int32_t> a_hidl_qeltvapi_timeshift_get_record_status() override {
        return mShift.status();
    }
    Return<int64_t> a_hidl_qeltvapi_timeshift_get_current_position() override {
        return mShift.currentPosition();
    }
    Return<int64_t> a_hidl_qeltvapi_timeshift_get_start_position() override {
        return mShift.startPosition();
    }
    Return<int32_t> a_hidl_qeltvapi_timeshift_set_auto_record(bool on) override {
        return mShift.setAutoRecord(on);
    }
    Return<int32_t> a_hidl_qeltvapi_timeshift_set_play_before_full(bool on) override {
        return mShift.setPlayBeforeFull(on);
    }
    Return<int32_t> a_hidl_qeltvapi_timeshift_stop_ex(uint32_t how) override {
        return mShift.stop(how);
    }

  private:
    Timeshift& mShift;
};

}  // namespace qeltvd
