#include "hw_qeltvapi_record.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_PVR_DISK_T;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiRecord;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_record)(client)";

void missingLine(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Get record service fail.\n");
}

void retLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> ret=%d\n", static_cast<int>(result));
}

void sizeLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> ret=%lld\n", result);
}

void openLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> handle is %d\n", static_cast<int>(result));
}

void currentLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> ret=handle is %d\n", static_cast<int>(result));
}

constexpr Family<IQelTvApiRecord> kRecord{
        kTag, getQelTvApiRecordService, 0, -1, line::name, missingLine, nullptr, retLine};

/** The functions that give a recording. */
constexpr Family<IQelTvApiRecord> kOpen = kRecord.withMissing(0).withExit(openLine);

}  // namespace

int a_qeltvapi_record_pvr_register_callback(qeltvapi_pvr_status_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 191, "%s", __func__);
    QelTvApiCallbackImpl::pf_pvr_status_cb.set(fn);
    return 0;
}

int a_qeltvapi_pvr_set_event(uint32_t a, uint32_t b) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_pvr_set_event, a, b);
}

int a_qeltvapi_pvr_set_event_extra(uint32_t a, uint32_t b, int32_t c, const char* string) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_pvr_set_event_extra, a, b, c,
                  text(string));
}

int a_qeltvapi_pvr_get_booking_count(void) {
    return unchecked(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_pvr_get_booking_count);
}

int a_qeltvapi_record_pvr_get_recording_file_name(uint32_t handle, char* buf, uint32_t len) {
    return ask(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_get_recording_file_name,
               storeText(buf), handle, len);
}

// Reads the file name, not the disk: kept on purpose.
int a_qeltvapi_record_pvr_get_disk(uint32_t handle, char* buf, uint32_t len) {
    return ask(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_get_recording_file_name,
               storeText(buf), handle, len);
}

int a_qeltvapi_record_create_register_file(const char* path) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_create_register_file,
                  text(path));
}

int a_qeltvapi_record_check_register_file(const char* path, int flag) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_check_register_file,
                  text(path), flag != 0);
}

int a_qeltvapi_record_pvr_get_error_id(uint32_t handle) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_get_error_id, handle);
}

int64_t a_qeltvapi_record_pvr_get_disk_total_size(uint32_t disk) {
    return unchecked(kRecord.withExit(sizeLine), HERE,
                     &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_get_disk_total_size, disk);
}

int64_t a_qeltvapi_record_pvr_get_disk_free_size(uint32_t disk) {
    return unchecked(kRecord.withExit(sizeLine), HERE,
                     &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_get_disk_free_size, disk);
}

int64_t a_qeltvapi_record_pvr_get_recording_file_size(uint32_t handle) {
    return unchecked(kRecord.withExit(sizeLine), HERE,
                     &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_get_recording_file_size, handle);
}

int a_qeltvapi_del_schedule_record(uint32_t index) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_del_schedule_record, index);
}

int a_qeltvapi_get_recording_position(uint32_t handle) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_get_recording_position, handle);
}

int a_qeltvapi_record_pvr_set_mode(uint32_t a, uint32_t b, int32_t c, uint32_t d) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_set_mode, a, b, c, d);
}

int a_qeltvapi_record_pvr_get_mode(uint32_t handle) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_get_mode, handle);
}

int a_qeltvapi_record_hdd_speed_test(const char* path, uint32_t value) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_hdd_speed_test,
                  text(path), value);
}

int a_qeltvapi_record_pvr_set_recording_file_name(uint32_t handle, const char* name) {
    return direct(kRecord, HERE,
                  &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_set_recording_file_name, handle,
                  text(name));
}

int a_qeltvapi_record_pvr_open(uint32_t value) {
    return direct(kOpen, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_open, value);
}

int a_qeltvapi_record_pvr_close(uint32_t handle) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_close, handle);
}

int a_qeltvapi_record_pvr_start(uint32_t handle) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_start, handle);
}

int a_qeltvapi_record_pvr_stop(uint32_t handle) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_stop, handle);
}

int a_qeltvapi_record_pvr_get_status(uint32_t handle) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_get_status, handle);
}

int a_qeltvapi_record_pvr_get_source_type(uint32_t handle) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_get_source_type,
                  handle);
}

int a_qeltvapi_record_pvr_get_current_handle(void) {
    return unchecked(kOpen.withExit(currentLine), HERE,
                     &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_get_current_handle);
}

int a_qeltvapi_set_schedule_record(const void* rec, uint32_t value) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_set_schedule_record,
                  over(rec, QELTVAPI_SCHEDULE_RECORD_SIZE), value);
}

int a_qeltvapi_get_schedule_record(void* rec, uint32_t index) {
    return ask(
            kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_get_schedule_record,
            [=](const hidl_vec<uint8_t>& record, int32_t code) {
                // As many bytes as come, not the size of what is sent.
                copyAll(rec, record);
                return code;
            },
            index);
}

int a_qeltvapi_record_pvr_chk_src_conflict(const void* rec_a, const void* rec_b) {
    return unchecked(kRecord.withMissing(0).withEntry(nullptr), HERE,
                     &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_chk_src_conflict,
                     over(rec_a, QELTVAPI_SOURCE_CONFLICT_RECORD_SIZE),
                     over(rec_b, QELTVAPI_SOURCE_CONFLICT_RECORD_SIZE));
}

int a_qeltvapi_record_pvr_set_disk(uint32_t value, const char* path, const void* disk) {
    Call<IQelTvApiRecord> call(kRecord, HERE);
    if (!call) return kRecord.missing;
    HIDL_PVR_DISK_T record;
    static_assert(sizeof(record.bytes) == QELTVAPI_DISK_RECORD_SIZE);
    memcpy(record.bytes.data(), disk, sizeof(record.bytes));
    return call.direct(&IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_set_disk, value, text(path),
                       record);
}

int a_qeltvapi_record_pvr_open_ex(uint32_t value, int flag) {
    return direct(kOpen, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_open_ex, value,
                  flag != 0);
}

int a_qeltvapi_record_pvr_select_svc(uint32_t a, uint32_t b, uint32_t c) {
    return direct(kRecord, HERE, &IQelTvApiRecord::a_hidl_qeltvapi_record_pvr_select_svc, a, b, c);
}
