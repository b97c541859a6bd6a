#define LOG_TAG "qeltvd"

#include "RatingService.h"

#include <algorithm>
#include <cstring>

#include "Blocks.h"
#include "Code.h"

namespace qeltvd {

namespace {

/** Ratings of one list that are looked at, and values of one. */
constexpr size_t kListLimit = 64;
constexpr size_t kValueLimit = 256;

HIDL_T_RATING_MAP_TO_G mapOf(const RatingText& text) {
    return {text.label, text.system, text.description};
}

}  // namespace

RatingService::RatingService(const ChannelDatabase& channels, Guide& guide, Ratings& ratings)
        : mChannels(channels), mGuide(guide), mRatings(ratings) {}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_us_tv_setting_info(
        a_hidl_qeltvapi_rating_get_us_tv_setting_info_cb reply) {
    const Ratings::UsTv flags = mRatings.usTv();
    HIDL_RATING_US_TV_SETTING_T setting{};
    for (size_t i = 0; i < 16; ++i) setting.block[i] = flags[i] != 0;
    setting.extra1 = flags[16] != 0;
    setting.extra2 = flags[17] != 0;
    setting.extra3 = flags[18] != 0;
    setting.extra4 = flags[19] != 0;
    reply(setting, kOk);
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_us_tv_setting_info(
        const HIDL_RATING_US_TV_SETTING_T& setting) {
    if (!isSound(setting)) return kBadValue;
    Ratings::UsTv flags{};
    for (size_t i = 0; i < 16; ++i) flags[i] = setting.block[i];
    flags[16] = setting.extra1;
    flags[17] = setting.extra2;
    flags[18] = setting.extra3;
    flags[19] = setting.extra4;
    return mRatings.setUsTv(flags);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_us_movie_setting_info(
        a_hidl_qeltvapi_rating_get_us_movie_setting_info_cb reply) {
    reply(mRatings.get(Ratings::Setting::kUsMovie), kOk);
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_us_movie_setting_info(uint8_t value) {
    return mRatings.set(Ratings::Setting::kUsMovie, value);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_can_eng_setting_info(
        a_hidl_qeltvapi_rating_get_can_eng_setting_info_cb reply) {
    reply(mRatings.get(Ratings::Setting::kCanadaEnglish), kOk);
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_can_eng_setting_info(uint8_t value) {
    return mRatings.set(Ratings::Setting::kCanadaEnglish, value);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_can_fre_setting_info(
        a_hidl_qeltvapi_rating_get_can_fre_setting_info_cb reply) {
    reply(mRatings.get(Ratings::Setting::kCanadaFrench), kOk);
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_can_fre_setting_info(uint8_t value) {
    return mRatings.set(Ratings::Setting::kCanadaFrench, value);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_isdb_content_setting_info(
        a_hidl_qeltvapi_rating_get_isdb_content_setting_info_cb reply) {
    reply(mRatings.get(Ratings::Setting::kIsdbContent), kOk);
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_isdb_content_setting_info(uint8_t value) {
    return mRatings.set(Ratings::Setting::kIsdbContent, value);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_isdb_age_setting_info(
        a_hidl_qeltvapi_rating_get_isdb_age_setting_info_cb reply) {
    reply(mRatings.get(Ratings::Setting::kIsdbAge), kOk);
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_isdb_age_setting_info(uint8_t value) {
    return mRatings.set(Ratings::Setting::kIsdbAge, value);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_dvb_age_setting_info(
        a_hidl_qeltvapi_rating_get_dvb_age_setting_info_cb reply) {
    reply(mRatings.get(Ratings::Setting::kDvbAge), kOk);
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_dvb_age_setting_info(uint8_t value) {
    return mRatings.set(Ratings::Setting::kDvbAge, value);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_block_unrated(
        a_hidl_qeltvapi_rating_get_block_unrated_cb reply) {
    reply(mRatings.get(Ratings::Setting::kBlockUnrated), kOk);
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_block_unrated(bool on) {
    return mRatings.set(Ratings::Setting::kBlockUnrated, on);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_enable(
        a_hidl_qeltvapi_rating_get_enable_cb reply) {
    reply(mRatings.get(Ratings::Setting::kEnable), kOk);
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_enable(uint8_t value) {
    return mRatings.set(Ratings::Setting::kEnable, value);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_us_tv_group_by_child(
        a_hidl_qeltvapi_rating_get_us_tv_group_by_child_cb reply) {
    reply(mRatings.childGroup(), kOk);
    return Void();
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_op_vchip_avail(
        a_hidl_qeltvapi_rating_get_op_vchip_avail_cb reply) {
    reply(mRatings.vchipAvailable(), kOk);
    return Void();
}

/** 64 bytes also when there is no table, all zero then. */
Return<void> RatingService::a_hidl_qeltvapi_rating_get_op_vchip_info(
        a_hidl_qeltvapi_rating_get_op_vchip_info_cb reply) {
    reply(bytesOf(mRatings.vchipTable()), mRatings.vchipAvailable() ? kOk : kNotFound);
    return Void();
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_op_vchip_setting_info(
        uint8_t first, uint8_t second, uint8_t third,
        a_hidl_qeltvapi_rating_get_op_vchip_setting_info_cb reply) {
    HIDL_RATING_OPEN_VCHIP_SETTING_T setting{};
    setting.first = first;
    setting.second = second;
    setting.third = third;
    const auto found = mRatings.vchip(first, second);
    if (found) {
        setting.third = found->levels;
        memcpy(setting.block.data(), found->blocked.data(), found->blocked.size());
    }
    reply(setting, found.code());
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_op_vchip_setting_info(
        const HIDL_RATING_OPEN_VCHIP_SETTING_T& setting) {
    Ratings::Levels levels{};
    memcpy(levels.data(), setting.block.data(), levels.size());
    return mRatings.setVchip(setting.first, setting.second, levels);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_convert_rating_info(
        const Vector<HIDL_EVCTX_ATSC_RATING_LIST_T>& ratings,
        a_hidl_qeltvapi_rating_convert_rating_info_cb reply) {
    if (ratings.size() == 0 || ratings.size() > kListLimit) {
        reply({}, kBadValue);
        return Void();
    }
    std::vector<Ratings::Atsc> list;
    for (const auto& rating : ratings) {
        if (rating.values.size() > kValueLimit) {
            reply({}, kBadValue);
            return Void();
        }
        list.push_back({rating.id, rating.name, {rating.values.begin(), rating.values.end()}});
    }
    reply(mapOf(Ratings::text(list)), kOk);
    return Void();
}

Return<int32_t> RatingService::a_hidl_qeltvapi_rating_atsc_storage(bool on) {
    return mRatings.store(on);
}

Return<void> RatingService::a_hidl_qeltvapi_rating_get_crnt_rating_info(
        a_hidl_qeltvapi_rating_get_crnt_rating_info_cb reply) {
    const auto channel = mChannels.current();
    const auto event = channel ? mGuide.present(channel->channelId) : std::nullopt;
    if (event) {
        reply(mapOf(mRatings.text(event->rating)), kOk);
    } else {
        reply({}, kNotFound);
    }
    return Void();
}

}  // namespace qeltvd
