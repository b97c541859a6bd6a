#define LOG_TAG "qeltvd"

#include "RatingService.h"

#include <algorithm>
#include <cstring>

#include "Blocks.h"
#include "Code.h"

namespace qeltvd {

using android::hardware::hidl_vec;
using android::hardware::Void;

namespace {

/** Ratings of one list that are looked at, and values of one. */
constexpr size_t kListLimit = 64;
constexpr size_t kValueLimit = 256;

HIDL_T_RATING_MAP_TO_G mapOf(const RatingText& text) {
    return {text.label, text.system, text.description};
}

}  // namespace

RatingService::RatingService(Television& tv)
        : IQelTvApiRatingDefault(kUnsupported, false), mTv(tv) {}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_us_tv_setting_info(
        a_hidl_qeltvapi_rating_get_us_tv_setting_info_cb reply) {
    const Ratings::UsTv flags = mTv.ratings.usTv();
    HIDL_RATING_US_TV_SETTING_T setting{};
    for (size_t i = 0; i < 16; ++i) setting.block[i] = flags[i] != 0;
    setting.extra1 = flags[16] != 0;
    setting.extra2 = flags[17] != 0;
    setting.extra3 = flags[18] != 0;
    setting.extra4 = flags[19] != 0;
    reply(setting, kOk);
    return Void();
}

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_us_tv_setting_info(
        const HIDL_RATING_US_TV_SETTING_T& setting) {
    if (!isSound(setting)) return kBadValue;
    Ratings::UsTv flags{};
    for (size_t i = 0; i < 16; ++i) flags[i] = setting.block[i];
    flags[16] = setting.extra1;
    flags[17] = setting.extra2;
    flags[18] = setting.extra3;
    flags[19] = setting.extra4;
    return mTv.ratings.setUsTv(flags);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_us_movie_setting_info(
        a_hidl_qeltvapi_rating_get_us_movie_setting_info_cb reply) {
    reply(mTv.ratings.get(Ratings::kUsMovie), kOk);
    return Void();
}

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_us_movie_setting_info(
        uint8_t value) {
    return mTv.ratings.set(Ratings::kUsMovie, value);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_can_eng_setting_info(
        a_hidl_qeltvapi_rating_get_can_eng_setting_info_cb reply) {
    reply(mTv.ratings.get(Ratings::kCanadaEnglish), kOk);
    return Void();
}

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_can_eng_setting_info(
        uint8_t value) {
    return mTv.ratings.set(Ratings::kCanadaEnglish, value);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_can_fre_setting_info(
        a_hidl_qeltvapi_rating_get_can_fre_setting_info_cb reply) {
    reply(mTv.ratings.get(Ratings::kCanadaFrench), kOk);
    return Void();
}

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_can_fre_setting_info(
        uint8_t value) {
    return mTv.ratings.set(Ratings::kCanadaFrench, value);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_isdb_content_setting_info(
        a_hidl_qeltvapi_rating_get_isdb_content_setting_info_cb reply) {
    reply(mTv.ratings.get(Ratings::kIsdbContent), kOk);
    return Void();
}

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_isdb_content_setting_info(
        uint8_t value) {
    return mTv.ratings.set(Ratings::kIsdbContent, value);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_isdb_age_setting_info(
        a_hidl_qeltvapi_rating_get_isdb_age_setting_info_cb reply) {
    reply(mTv.ratings.get(Ratings::kIsdbAge), kOk);
    return Void();
}

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_isdb_age_setting_info(
        uint8_t value) {
    return mTv.ratings.set(Ratings::kIsdbAge, value);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_dvb_age_setting_info(
        a_hidl_qeltvapi_rating_get_dvb_age_setting_info_cb reply) {
    reply(mTv.ratings.get(Ratings::kDvbAge), kOk);
    return Void();
}

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_dvb_age_setting_info(
        uint8_t value) {
    return mTv.ratings.set(Ratings::kDvbAge, value);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_block_unrated(
        a_hidl_qeltvapi_rating_get_block_unrated_cb reply) {
    reply(mTv.ratings.get(Ratings::kBlockUnrated), kOk);
    return Void();
}

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_block_unrated(bool on) {
    return mTv.ratings.set(Ratings::kBlockUnrated, on);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_enable(
        a_hidl_qeltvapi_rating_get_enable_cb reply) {
    reply(mTv.ratings.get(Ratings::kEnable), kOk);
    return Void();
}

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_enable(uint8_t value) {
    return mTv.ratings.set(Ratings::kEnable, value);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_us_tv_group_by_child(
        a_hidl_qeltvapi_rating_get_us_tv_group_by_child_cb reply) {
    reply(mTv.ratings.childGroup(), kOk);
    return Void();
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_op_vchip_avail(
        a_hidl_qeltvapi_rating_get_op_vchip_avail_cb reply) {
    reply(mTv.ratings.vchipAvailable(), kOk);
    return Void();
}

/** 64 bytes also when there is no table, all zero then. */
RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_op_vchip_info(
        a_hidl_qeltvapi_rating_get_op_vchip_info_cb reply) {
    reply(bytesOf(mTv.ratings.vchipTable()), mTv.ratings.vchipAvailable() ? kOk : kNotFound);
    return Void();
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_op_vchip_setting_info(
        uint8_t first, uint8_t second, uint8_t third,
        a_hidl_qeltvapi_rating_get_op_vchip_setting_info_cb reply) {
    HIDL_RATING_OPEN_VCHIP_SETTING_T setting{};
    setting.first = first;
    setting.second = second;
    setting.third = third;
    Ratings::Levels levels{};
    const int32_t code = mTv.ratings.vchip(first, second, &setting.third, &levels);
    if (code == kOk) memcpy(setting.block.data(), levels.data(), levels.size());
    reply(setting, code);
    return Void();
}

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_set_op_vchip_setting_info(
        const HIDL_RATING_OPEN_VCHIP_SETTING_T& setting) {
    Ratings::Levels levels{};
    memcpy(levels.data(), setting.block.data(), levels.size());
    return mTv.ratings.setVchip(setting.first, setting.second, levels);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_convert_rating_info(
        const hidl_vec<HIDL_EVCTX_ATSC_RATING_LIST_T>& ratings,
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

RatingService::Return<int32_t> RatingService::a_hidl_qeltvapi_rating_atsc_storage(bool on) {
    return mTv.ratings.store(on);
}

RatingService::Return<void> RatingService::a_hidl_qeltvapi_rating_get_crnt_rating_info(
        a_hidl_qeltvapi_rating_get_crnt_rating_info_cb reply) {
    const auto channel = mTv.channels.current();
    const auto event = channel ? mTv.guide.present(channel->channelId) : std::nullopt;
    if (event) {
        reply(mapOf(mTv.ratings.text(event->rating)), kOk);
    } else {
        reply({}, kNotFound);
    }
    return Void();
}

}  // namespace qeltvd
