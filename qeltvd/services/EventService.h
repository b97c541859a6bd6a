#pragma once

#include <qeltvapi/service/IQelTvApiEvent.h>

#include "ChannelDatabase.h"
#include "Clock.h"
#include "ConfigItems.h"
#include "Guide.h"
#include "Ratings.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiEvent over the guide. */
class EventService : public Default<IQelTvApiEvent> {
  public:
    EventService(const ChannelDatabase& channels, const Clock& clock, const ConfigItems& config,
                 Guide& guide, const Ratings& ratings);

    Return<int32_t> a_hidl_qeltvapi_event_setCurrentActiveWindow(const Vector<uint32_t>& channels,
                                                                 int64_t time,
                                                                 int32_t count) override;
    Return<int32_t> a_hidl_qeltvapi_event_setCurrentActiveWindow_Ex(
            const Vector<uint32_t>& channels, int64_t start, int64_t end, int32_t count) override;
    Return<int32_t> a_hidl_qeltvapi_event_clear_active_win() override;
    Return<void> a_hidl_qeltvapi_event_query_event_id_by_range(
            int32_t channel, int64_t start, int64_t end, uint16_t capacity,
            a_hidl_qeltvapi_event_query_event_id_by_range_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_details_info(
            int32_t channel, int32_t event, int32_t room,
            a_hidl_qeltvapi_event_get_details_info_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_guidance_info(
            int32_t channel, int32_t event, int32_t room,
            a_hidl_qeltvapi_event_get_guidance_info_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_details_extend_info(
            int32_t channel, int32_t event, int32_t room,
            a_hidl_qeltvapi_event_get_details_extend_info_cb reply) override;
    Return<bool> a_hidl_qeltvapi_event_check_block(int32_t channel, int32_t event) override;
    Return<void> a_hidl_qeltvapi_event_get_active_win_channel_num(
            a_hidl_qeltvapi_event_get_active_win_channel_num_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_active_win_list(
            int32_t count, a_hidl_qeltvapi_event_get_active_win_list_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_pf_event_id(
            int32_t channel, bool present, a_hidl_qeltvapi_event_get_pf_event_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_group_info(
            int32_t channel, int32_t event, int32_t room,
            a_hidl_qeltvapi_event_get_group_info_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_series_info(
            int32_t channel, int32_t event, int32_t room,
            a_hidl_qeltvapi_event_get_series_info_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_rating_map(
            int32_t channel, int32_t event, a_hidl_qeltvapi_event_get_rating_map_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_event_set_query_parameter(
            const HIDL_EVENT_QUERY_PARAM_T& param) override;
    Return<void> a_hidl_qeltvapi_event_query_event_id_by_filter(
            int32_t channel, const HIDL_EVENT_FILTER_T& filter, uint16_t capacity,
            a_hidl_qeltvapi_event_query_event_id_by_filter_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_general_info(
            int32_t channel, int32_t event,
            a_hidl_qeltvapi_event_get_general_info_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_rating_list(
            int32_t channel, int32_t event, int32_t room,
            a_hidl_qeltvapi_event_get_rating_list_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_content_identifier(
            int32_t channel, int32_t event, int32_t room,
            a_hidl_qeltvapi_event_get_content_identifier_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_get_audio_comp_info(
            int32_t channel, int32_t event, int32_t room,
            a_hidl_qeltvapi_event_get_audio_comp_info_cb reply) override;

  private:
    std::optional<Event> find(int32_t channel, int32_t event) const;
    int32_t setWindow(const Vector<uint32_t>& channels, int64_t start, int64_t end, int32_t count);
    std::vector<QELTV_EVENT_COMMON_T> episodes(const Event& event) const;

    const ChannelDatabase& mChannels;
    const Clock& mClock;
    const ConfigItems& mConfig;
    Guide& mGuide;
    const Ratings& mRatings;
};

}  // namespace qeltvd
