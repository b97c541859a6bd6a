#pragma once

#include <qeltvapi/service/IQelTvApiRating.h>

#include "ChannelDatabase.h"
#include "Guide.h"
#include "Ratings.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiRating over the rating lock. */
class RatingService : public Default<IQelTvApiRating> {
  public:
    RatingService(const ChannelDatabase& channels, Guide& guide, Ratings& ratings);

    Return<void> a_hidl_qeltvapi_rating_get_us_tv_setting_info(
            a_hidl_qeltvapi_rating_get_us_tv_setting_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_set_us_tv_setting_info(
            const HIDL_RATING_US_TV_SETTING_T& setting) override;
    Return<void> a_hidl_qeltvapi_rating_get_us_movie_setting_info(
            a_hidl_qeltvapi_rating_get_us_movie_setting_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_set_us_movie_setting_info(uint8_t value) override;
    Return<void> a_hidl_qeltvapi_rating_get_can_eng_setting_info(
            a_hidl_qeltvapi_rating_get_can_eng_setting_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_set_can_eng_setting_info(uint8_t value) override;
    Return<void> a_hidl_qeltvapi_rating_get_can_fre_setting_info(
            a_hidl_qeltvapi_rating_get_can_fre_setting_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_set_can_fre_setting_info(uint8_t value) override;
    Return<void> a_hidl_qeltvapi_rating_get_block_unrated(
            a_hidl_qeltvapi_rating_get_block_unrated_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_set_block_unrated(bool on) override;
    Return<void> a_hidl_qeltvapi_rating_get_enable(
            a_hidl_qeltvapi_rating_get_enable_cb reply) override;
    Return<void> a_hidl_qeltvapi_rating_get_us_tv_group_by_child(
            a_hidl_qeltvapi_rating_get_us_tv_group_by_child_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_set_enable(uint8_t value) override;
    Return<void> a_hidl_qeltvapi_rating_get_op_vchip_avail(
            a_hidl_qeltvapi_rating_get_op_vchip_avail_cb reply) override;
    Return<void> a_hidl_qeltvapi_rating_get_op_vchip_info(
            a_hidl_qeltvapi_rating_get_op_vchip_info_cb reply) override;
    Return<void> a_hidl_qeltvapi_rating_get_op_vchip_setting_info(
            uint8_t first, uint8_t second, uint8_t third,
            a_hidl_qeltvapi_rating_get_op_vchip_setting_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_set_op_vchip_setting_info(
            const HIDL_RATING_OPEN_VCHIP_SETTING_T& setting) override;
    Return<void> a_hidl_qeltvapi_rating_get_isdb_content_setting_info(
            a_hidl_qeltvapi_rating_get_isdb_content_setting_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_set_isdb_content_setting_info(uint8_t value) override;
    Return<void> a_hidl_qeltvapi_rating_get_isdb_age_setting_info(
            a_hidl_qeltvapi_rating_get_isdb_age_setting_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_set_isdb_age_setting_info(uint8_t value) override;
    Return<void> a_hidl_qeltvapi_rating_get_dvb_age_setting_info(
            a_hidl_qeltvapi_rating_get_dvb_age_setting_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_set_dvb_age_setting_info(uint8_t value) override;
    Return<void> a_hidl_qeltvapi_rating_convert_rating_info(
            const Vector<HIDL_EVCTX_ATSC_RATING_LIST_T>& ratings,
            a_hidl_qeltvapi_rating_convert_rating_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_rating_atsc_storage(bool on) override;
    Return<void> a_hidl_qeltvapi_rating_get_crnt_rating_info(
            a_hidl_qeltvapi_rating_get_crnt_rating_info_cb reply) override;

  private:
    const ChannelDatabase& mChannels;
    Guide& mGuide;
    Ratings& mRatings;
};

}  // namespace qeltvd
