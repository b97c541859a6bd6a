#pragma once

#include <qeltvapi/service/IQelTvApiRecord.h>

#include "ChannelDatabase.h"
#include "Recorder.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiRecord over the recorder. */
class RecordService : public Default<IQelTvApiRecord> {
  public:
    RecordService(const ChannelDatabase& channels, Recorder& recorder);

    Return<int32_t> a_hidl_qeltvapi_pvr_set_event(uint32_t event, uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_pvr_set_event_extra(uint32_t event, uint32_t value,
                                                        int32_t extra, const String& text) override;
    Return<int32_t> a_hidl_qeltvapi_pvr_get_booking_count() override;
    Return<void> a_hidl_qeltvapi_record_pvr_get_recording_file_name(
            uint32_t recording, uint32_t room,
            a_hidl_qeltvapi_record_pvr_get_recording_file_name_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_record_create_register_file(const String& path) override;
    Return<int32_t> a_hidl_qeltvapi_record_check_register_file(const String& path,
                                                               bool flag) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_get_error_id(uint32_t recording) override;
    Return<int64_t> a_hidl_qeltvapi_record_pvr_get_disk_total_size(uint32_t disk) override;
    Return<int64_t> a_hidl_qeltvapi_record_pvr_get_disk_free_size(uint32_t disk) override;
    Return<int64_t> a_hidl_qeltvapi_record_pvr_get_recording_file_size(uint32_t recording) override;
    Return<int32_t> a_hidl_qeltvapi_del_schedule_record(uint32_t index) override;
    Return<int32_t> a_hidl_qeltvapi_get_recording_position(uint32_t recording) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_set_mode(uint32_t recording, uint32_t mode,
                                                        int32_t value, uint32_t extra) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_get_mode(uint32_t recording) override;
    Return<int32_t> a_hidl_qeltvapi_record_hdd_speed_test(const String& path,
                                                          uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_set_recording_file_name(uint32_t recording,
                                                                       const String& name) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_open(uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_close(uint32_t recording) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_start(uint32_t recording) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_stop(uint32_t recording) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_get_status(uint32_t recording) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_get_source_type(uint32_t recording) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_get_current_handle() override;
    Return<int32_t> a_hidl_qeltvapi_set_schedule_record(const Bytes& record,
                                                        uint32_t value) override;
    Return<void> a_hidl_qeltvapi_get_schedule_record(
            uint32_t index, a_hidl_qeltvapi_get_schedule_record_cb reply) override;
    Return<bool> a_hidl_qeltvapi_record_pvr_chk_src_conflict(const Bytes& first,
                                                             const Bytes& second) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_set_disk(uint32_t recording, const String& path,
                                                        const HIDL_PVR_DISK_T& disk) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_open_ex(uint32_t value, bool flag) override;
    Return<int32_t> a_hidl_qeltvapi_record_pvr_select_svc(uint32_t recording, uint32_t list,
                                                          uint32_t service) override;

  private:
    const ChannelDatabase& mChannels;
    Recorder& mRecorder;
};

}  // namespace qeltvd
