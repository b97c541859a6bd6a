#include "hw_qeltvapi_timeshift.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiTimeshift;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_timeshift)(client)";

void returnLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s return %d \n", site.function,
                      static_cast<int>(result));
}

/** Without the blank before the line end. */
void scheduleLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s return %d\n", site.function, static_cast<int>(result));
}

void positionLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s return %lld \n", site.function, result);
}

constexpr Family<IQelTvApiTimeshift> kTimeshift{
        kTag, getQelTvApiTimeshiftService, -1, -1, line::name, nullptr, nullptr, returnLine};

}  // namespace

int a_qeltvapi_timeshift_register_callback(qeltvapi_timeshift_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 272, "%s", __func__);
    QelTvApiCallbackImpl::pf_timeshift_cb.set(fn);
    return 0;
}

// The function that is registered stays so: kept on purpose.
int a_qeltvapi_timeshift_unregister_callback(void) {
    QELTVAPI_TRACE_AT(kTag, 282, "%s", __func__);
    return 0;
}

int a_qeltvapi_timeshift_get_registerdevice_schedule(void) {
    return direct(kTimeshift.withExit(scheduleLine), HERE,
                  &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_get_registerdevice_schedule);
}

int64_t a_qeltvapi_timeshift_get_duration(void) {
    return unchecked(kTimeshift.withExit(nullptr), HERE,
                     &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_get_duration);
}

int64_t a_qeltvapi_timeshift_get_position(void) {
    return unchecked(kTimeshift.withExit(nullptr), HERE,
                     &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_get_position);
}

int a_qeltvapi_timeshift_registerDevice(const char* path, int64_t size) {
    QELTVAPI_TRACE(kTag, "%s path:%s size:%lld\n", __func__, path, static_cast<long long>(size));
    return direct(kTimeshift.withEntry(nullptr), HERE,
                  &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_registerDevice, text(path), size);
}

int a_qeltvapi_timeshift_start(void) {
    return unchecked(kTimeshift, HERE, &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_start);
}

int a_qeltvapi_timeshift_stop(void) {
    return unchecked(kTimeshift, HERE, &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_stop);
}

int a_qeltvapi_timeshift_play(void) {
    return unchecked(kTimeshift, HERE, &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_play);
}

int a_qeltvapi_timeshift_pause(void) {
    return unchecked(kTimeshift, HERE, &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_pause);
}

int a_qeltvapi_timeshift_seek(uint32_t value) {
    return direct(kTimeshift, HERE, &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_seek, value);
}

int a_qeltvapi_timeshift_trickplay(uint32_t value) {
    return direct(kTimeshift, HERE, &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_trickplay,
                  value);
}

int a_qeltvapi_timeshift_get_device_status(void) {
    return unchecked(kTimeshift, HERE,
                     &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_get_device_status);
}

int a_qeltvapi_timeshift_get_error_id(void) {
    return unchecked(kTimeshift, HERE, &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_get_error_id);
}

int a_qeltvapi_timeshift_get_record_status(void) {
    return unchecked(kTimeshift, HERE,
                     &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_get_record_status);
}

// 0 where the start position gives -1: the difference is intended.
int64_t a_qeltvapi_timeshift_get_current_position(void) {
    return unchecked(kTimeshift.withMissing(0).withExit(positionLine), HERE,
                     &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_get_current_position);
}

int64_t a_qeltvapi_timeshift_get_start_position(void) {
    return unchecked(kTimeshift.withExit(positionLine), HERE,
                     &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_get_start_position);
}

int a_qeltvapi_timeshift_set_auto_record(int flag) {
    return direct(kTimeshift, HERE, &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_set_auto_record,
                  flag != 0);
}

int a_qeltvapi_timeshift_set_play_before_full(int flag) {
    return direct(kTimeshift, HERE,
                  &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_set_play_before_full, flag != 0);
}

int a_qeltvapi_timeshift_stop_ex(uint32_t value) {
    return direct(kTimeshift, HERE, &IQelTvApiTimeshift::a_hidl_qeltvapi_timeshift_stop_ex, value);
}
