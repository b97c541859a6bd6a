#include "RecordService.h"

#include "Blocks.h"
#include "ChannelIds.h"
#include "Code.h"

namespace qeltvd {

using android::hardware::hidl_vec;
using android::hardware::Void;

RecordService::RecordService(Television& tv)
        : IQelTvApiRecordDefault(kUnsupported, false), mTv(tv) {}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_pvr_set_event(uint32_t event,
                                                                            uint32_t value) {
    return mTv.recorder.command(event, value);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_pvr_set_event_extra(
        uint32_t event, uint32_t value, int32_t extra, const String& text) {
    return mTv.recorder.command(event, value, extra, text);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_pvr_get_booking_count() {
    return mTv.recorder.bookings();
}

RecordService::Return<void> RecordService::a_hidl_qeltvapi_record_pvr_get_recording_file_name(
        uint32_t recording, uint32_t room,
        a_hidl_qeltvapi_record_pvr_get_recording_file_name_cb reply) {
    std::string name;
    int32_t code = mTv.recorder.fileName(recording, &name);
    // The caller takes all of it, whatever the room.
    if (code == kOk && name.size() > room) code = kBadValue;
    reply(code == kOk ? name : std::string(), code);
    return Void();
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_create_register_file(
        const String& path) {
    return mTv.recorder.registerDisk(path);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_check_register_file(
        const String& path, bool flag) {
    return mTv.recorder.checkDisk(path, flag);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_get_error_id(
        uint32_t recording) {
    return mTv.recorder.error(recording);
}

RecordService::Return<int64_t> RecordService::a_hidl_qeltvapi_record_pvr_get_disk_total_size(
        uint32_t disk) {
    return mTv.recorder.totalBytes(disk);
}

RecordService::Return<int64_t> RecordService::a_hidl_qeltvapi_record_pvr_get_disk_free_size(
        uint32_t disk) {
    return mTv.recorder.freeBytes(disk);
}

RecordService::Return<int64_t> RecordService::a_hidl_qeltvapi_record_pvr_get_recording_file_size(
        uint32_t recording) {
    return mTv.recorder.fileSize(recording);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_del_schedule_record(uint32_t index) {
    return mTv.recorder.deleteBooking(index);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_get_recording_position(
        uint32_t recording) {
    return mTv.recorder.position(recording);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_set_mode(
        uint32_t recording, uint32_t mode, int32_t value, uint32_t extra) {
    return mTv.recorder.setMode(recording, mode, value, extra);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_get_mode(
        uint32_t recording) {
    return mTv.recorder.mode(recording);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_hdd_speed_test(
        const String& path, uint32_t value) {
    return Recorder::measureDisk(path, value);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_set_recording_file_name(
        uint32_t recording, const String& name) {
    return mTv.recorder.setFileName(recording, name);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_open(uint32_t value) {
    return mTv.recorder.open(value, false);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_close(uint32_t recording) {
    return mTv.recorder.close(recording);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_start(uint32_t recording) {
    return mTv.recorder.start(recording);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_stop(uint32_t recording) {
    return mTv.recorder.stop(recording);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_get_status(
        uint32_t recording) {
    return mTv.recorder.status(recording);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_get_source_type(
        uint32_t recording) {
    return mTv.recorder.sourceType(recording);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_get_current_handle() {
    return mTv.recorder.current();
}

/** The code of a booking that is stored is its number. */
RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_set_schedule_record(
        const Bytes& record, uint32_t value) {
    const auto booking = recordOf<QELTV_SCHEDULE_RECORD_T>(record);
    return booking ? mTv.recorder.book(*booking, value) : kBadValue;
}

RecordService::Return<void> RecordService::a_hidl_qeltvapi_get_schedule_record(
        uint32_t index, a_hidl_qeltvapi_get_schedule_record_cb reply) {
    QELTV_SCHEDULE_RECORD_T record{};
    const int32_t code = mTv.recorder.booking(index, &record);
    reply(code == kOk ? bytesOf(record) : Bytes(), code);
    return Void();
}

RecordService::Return<bool> RecordService::a_hidl_qeltvapi_record_pvr_chk_src_conflict(
        const Bytes& first, const Bytes& second) {
    const auto a = recordOf<QELTV_SOURCE_RECORD_T>(first);
    const auto b = recordOf<QELTV_SOURCE_RECORD_T>(second);
    return a && b && mTv.recorder.conflict(*a, *b);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_set_disk(
        uint32_t recording, const String& path, const HIDL_PVR_DISK_T& disk) {
    const auto record = recordOf<QELTV_DISK_RECORD_T>(disk.bytes.data(), sizeof(disk.bytes));
    return record ? mTv.recorder.setDisk(recording, path, *record) : kBadValue;
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_open_ex(uint32_t value,
                                                                                 bool flag) {
    return mTv.recorder.open(value, flag);
}

RecordService::Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_select_svc(
        uint32_t recording, uint32_t list, uint32_t service) {
    if (list > channel_ids::kMaximumList) return kBadValue;
    const auto channel = mTv.channels.byRecord(static_cast<uint16_t>(list), service);
    return channel ? mTv.recorder.setChannel(recording, channel->channelId) : kNotFound;
}

}  // namespace qeltvd
