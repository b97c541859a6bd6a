#pragma once

#include <qeltvapi/service/IQelTvApiPvrbrowser.h>
#include <optional>

#include "Clock.h"
#include "Recorder.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiPvrbrowser over the list of finished recordings, the oldest first. */
class BrowserService : public Default<IQelTvApiPvrbrowser> {
  public:
    BrowserService(const Clock& clock, Recorder& recorder);

    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_path(
            const String& path,
            a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_path(
            const String& path,
            a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_path(
            const String& path,
            a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path(
            const String& path,
            a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_path(
            const String& path,
            a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_path(
            const String& path,
            a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_item_path_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_item_path_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_date_by_index(
            uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_date_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_time_by_index(
            uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_time_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_index(
            uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_num(
            a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_num_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_name(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_name_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_path(
            const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_index(
            uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_item_count(
            a_hidl_qeltvapi_mmp_get_pvr_browser_item_count_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_info(
            a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_mmp_pvr_browser_delete_file_by_index(uint32_t index) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path(
            const String& path,
            a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path(
            const String& path,
            a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_date_by_path(
            const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_date_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_path(
            const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_time_by_path(
            const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_time_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_path(
            const String& path,
            a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_path_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_index(
            uint32_t index,
            a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_path(
            const String& path,
            a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_path_cb reply) override;

  private:
    /** What a question about one item finds, or the code that answers it. */
    struct Found {
        std::optional<RecordedItem> item;
        int32_t code;
    };
    Found find(const std::string& path) const;
    Found find(uint32_t index) const;

    const Clock& mClock;
    Recorder& mRecorder;

    /** Answers with a member of the item or with what a function makes of it. */
    template <class Reply, class Value>
    static void answer(const Reply& reply, const Found& found, Value value);
    template <class Reply>
    void answerLocal(const Reply& reply, const Found& found,
                     std::string (*value)(const QELTV_DTG_T&)) const;
};

}  // namespace qeltvd
