#include "RecordService.h"

#include "Blocks.h"
#include "ChannelIds.h"
#include "Code.h"

namespace qeltvd {

RecordService::RecordService(const ChannelDatabase& channels, Recorder& recorder)
        : mChannels(channels), mRecorder(recorder) {}

Return<int32_t> RecordService::a_hidl_qeltvapi_pvr_set_event(uint32_t event, uint32_t value) {
    return mRecorder.command(event, value);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_pvr_set_event_extra(uint32_t event, uint32_t value,
                                                                   int32_t extra,
                                                                   const String& text) {
    return mRecorder.command(event, value, extra, text);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_pvr_get_booking_count() {
    return mRecorder.bookings();
}

Return<void> RecordService::a_hidl_qeltvapi_record_pvr_get_recording_file_name(
        uint32_t recording, uint32_t room,
        a_hidl_qeltvapi_record_pvr_get_recording_file_name_cb reply) {
    std::string name;
    int32_t code = mRecorder.fileName(recording, &name);
    // The caller copies all of it, regardless of its capacity.
    if (code == kOk && name.size() > room) code = kBadValue;
    reply(code == kOk ? name : std::string(), code);
    return Void();
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_create_register_file(const String& path) {
    return mRecorder.registerDisk(path);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_check_register_file(const String& path,
                                                                          bool flag) {
    return mRecorder.checkDisk(path, flag);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_get_error_id(uint32_t recording) {
    return mRecorder.error(recording);
}

Return<int64_t> RecordService::a_hidl_qeltvapi_record_pvr_get_disk_total_size(uint32_t disk) {
    return mRecorder.totalBytes(disk);
}

Return<int64_t> RecordService::a_hidl_qeltvapi_record_pvr_get_disk_free_size(uint32_t disk) {
    return mRecorder.freeBytes(disk);
}

Return<int64_t> RecordService::a_hidl_qeltvapi_record_pvr_get_recording_file_size(
        uint32_t recording) {
    return mRecorder.fileSize(recording);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_del_schedule_record(uint32_t index) {
    return mRecorder.deleteBooking(index);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_get_recording_position(uint32_t recording) {
    return mRecorder.position(recording);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_set_mode(uint32_t recording,
                                                                   uint32_t mode, int32_t value,
                                                                   uint32_t extra) {
    return mRecorder.setMode(recording, mode, value, extra);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_get_mode(uint32_t recording) {
    return mRecorder.mode(recording);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_hdd_speed_test(const String& path,
                                                                     uint32_t value) {
    return Recorder::measureDisk(path, value);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_set_recording_file_name(
        uint32_t recording, const String& name) {
    return mRecorder.setFileName(recording, name);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_open(uint32_t value) {
    return mRecorder.open(value, false);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_close(uint32_t recording) {
    return mRecorder.close(recording);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_start(uint32_t recording) {
    return mRecorder.start(recording);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_stop(uint32_t recording) {
    return mRecorder.stop(recording);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_get_status(uint32_t recording) {
    return mRecorder.status(recording);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_get_source_type(uint32_t recording) {
    return mRecorder.sourceType(recording);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_get_current_handle() {
    return mRecorder.current();
}

/** The code of a booking that is stored is its number. */
Return<int32_t> RecordService::a_hidl_qeltvapi_set_schedule_record(const Bytes& record,
                                                                   uint32_t value) {
    const auto booking = recordOf<QELTV_SCHEDULE_RECORD_T>(record);
    return booking ? mRecorder.book(*booking, value) : kBadValue;
}

Return<void> RecordService::a_hidl_qeltvapi_get_schedule_record(
        uint32_t index, a_hidl_qeltvapi_get_schedule_record_cb reply) {
    QELTV_SCHEDULE_RECORD_T record{};
    const int32_t code = mRecorder.booking(index, &record);
    reply(code == kOk ? bytesOf(record) : Bytes(), code);
    return Void();
}

Return<bool> RecordService::a_hidl_qeltvapi_record_pvr_chk_src_conflict(const Bytes& first,
                                                                        const Bytes& second) {
    const auto a = recordOf<QELTV_SOURCE_RECORD_T>(first);
    const auto b = recordOf<QELTV_SOURCE_RECORD_T>(second);
    return a && b && mRecorder.conflict(*a, *b);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_set_disk(uint32_t recording,
                                                                   const String& path,
                                                                   const HIDL_PVR_DISK_T& disk) {
    const auto record = recordOf<QELTV_DISK_RECORD_T>(disk.bytes.data(), sizeof(disk.bytes));
    return record ? mRecorder.setDisk(recording, path, *record) : kBadValue;
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_open_ex(uint32_t value, bool flag) {
    return mRecorder.open(value, flag);
}

Return<int32_t> RecordService::a_hidl_qeltvapi_record_pvr_select_svc(uint32_t recording,
                                                                     uint32_t list,
                                                                     uint32_t service) {
    if (list > channel_ids::kMaximumList) return kBadValue;
    const auto channel = mChannels.byRecord(static_cast<uint16_t>(list), service);
    return channel ? mRecorder.setChannel(recording, channel->channelId) : kNotFound;
}

}  // namespace qeltvd
