#include "hw_qeltvapi_rating.h"

#include <vector>

#include "QelTvApiCallbackImpl.h"
#include "call.h"
#include "rating_map.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_EVCTX_ATSC_RATING_LIST_T;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_RATING_OPEN_VCHIP_SETTING_T;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_RATING_US_TV_SETTING_T;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiRating;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_rating)(client)";

void missingLine(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Get rating service fail.\n");
}

constexpr Family<IQelTvApiRating> kRating{
        kTag, getQelTvApiRatingService, 0, -1, nullptr, nullptr, missingLine};

/**
 * True, and logged, when a pointer that the function needs is null. The test comes between
 * fetching the proxy and looking at it.
 */
bool refuse(const Site& site, const void* pointer) {
    if (pointer != nullptr) return false;
    getQelTvApiRatingService();
    QELTVAPI_LOG_SITE(kTag, site, "<%s:%d> Invalid arg(null pointer).\n");
    return true;
}

/** The 8 bits that cross of a setting. */
uint8_t setting(int val) {
    return static_cast<uint8_t>(val);
}

static_assert(offsetof(QELTVAPI_RATING_US_TV_SETTING_T, extra) == 16);
static_assert(sizeof(QELTVAPI_RATING_US_TV_SETTING_T) == 20);
static_assert(sizeof(HIDL_RATING_US_TV_SETTING_T) == 20);
static_assert(offsetof(QELTVAPI_RATING_OPEN_VCHIP_SETTING_T, block) == 3);
static_assert(sizeof(QELTVAPI_RATING_OPEN_VCHIP_SETTING_T) == 258);
#if __SIZEOF_POINTER__ == 4
static_assert(offsetof(QELTVAPI_ATSC_RATING_LIST_T, name) == 4);
static_assert(offsetof(QELTVAPI_ATSC_RATING_LIST_T, values) == 8);
static_assert(offsetof(QELTVAPI_ATSC_RATING_LIST_T, next) == 12);
static_assert(sizeof(QELTVAPI_ATSC_RATING_LIST_T) == 16);
#endif

HIDL_RATING_US_TV_SETTING_T sendable(const QELTVAPI_RATING_US_TV_SETTING_T& from) {
    HIDL_RATING_US_TV_SETTING_T to{};
    for (size_t i = 0; i < 16; ++i) to.block[i] = from.block[i] != 0;
    to.extra1 = from.extra[0] != 0;
    to.extra2 = from.extra[1] != 0;
    to.extra3 = from.extra[2] != 0;
    to.extra4 = from.extra[3] != 0;
    return to;
}

HIDL_EVCTX_ATSC_RATING_LIST_T sendable(const QELTVAPI_ATSC_RATING_LIST_T& from) {
    HIDL_EVCTX_ATSC_RATING_LIST_T to;
    to.id = from.id;
    to.count = from.count;
    to.name = text(from.name);
    to.values = over(from.values, from.count);
    return to;
}

}  // namespace

int a_qeltvapi_rating_op_vchip_reg_callback(qeltvapi_rating_op_vchip_callback_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 108, "%s", __func__);
    QelTvApiCallbackImpl::pf_rating_op_vchip_callback_cb.set(fn);
    return 0;
}

int a_qeltvapi_rating_get_us_tv_setting_info(QELTVAPI_RATING_US_TV_SETTING_T* out) {
    if (refuse(HERE, out)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_us_tv_setting_info,
               [=](const HIDL_RATING_US_TV_SETTING_T& flags, int32_t code) {
                   // The bytes as they came; only the setter makes them 0 or 1.
                   memcpy(out, &flags, sizeof(*out));
                   return code;
               });
}

int a_qeltvapi_rating_set_us_tv_setting_info(const QELTVAPI_RATING_US_TV_SETTING_T* in) {
    if (refuse(HERE, in)) return -1;
    return direct(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_set_us_tv_setting_info,
                  sendable(*in));
}

int a_qeltvapi_rating_get_us_movie_setting_info(uint8_t* val) {
    if (refuse(HERE, val)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_us_movie_setting_info,
               storeValue(val));
}

int a_qeltvapi_rating_set_us_movie_setting_info(int val) {
    return direct(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_set_us_movie_setting_info,
                  setting(val));
}

int a_qeltvapi_rating_get_can_eng_setting_info(uint8_t* val) {
    if (refuse(HERE, val)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_can_eng_setting_info,
               storeValue(val));
}

int a_qeltvapi_rating_set_can_eng_setting_info(int val) {
    return direct(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_set_can_eng_setting_info,
                  setting(val));
}

int a_qeltvapi_rating_get_can_fre_setting_info(uint8_t* val) {
    if (refuse(HERE, val)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_can_fre_setting_info,
               storeValue(val));
}

int a_qeltvapi_rating_set_can_fre_setting_info(int val) {
    return direct(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_set_can_fre_setting_info,
                  setting(val));
}

int a_qeltvapi_rating_get_block_unrated(uint8_t* val) {
    if (refuse(HERE, val)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_block_unrated,
               storeValue(val));
}

int a_qeltvapi_rating_set_block_unrated(int on) {
    return direct(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_set_block_unrated,
                  on != 0);
}

int a_qeltvapi_rating_get_enable(uint8_t* val) {
    if (refuse(HERE, val)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_enable, storeValue(val));
}

int a_qeltvapi_rating_get_us_tv_group_by_child(uint8_t* val) {
    if (refuse(HERE, val)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_us_tv_group_by_child,
               storeValue(val));
}

int a_qeltvapi_rating_set_enable(int val) {
    return direct(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_set_enable, setting(val));
}

int a_qeltvapi_rating_get_op_vchip_avail(uint8_t* val) {
    if (refuse(HERE, val)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_op_vchip_avail,
               storeValue(val));
}

int a_qeltvapi_rating_get_op_vchip_info(void* out) {
    if (refuse(HERE, out)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_op_vchip_info,
               [=](const hidl_vec<uint8_t>& table, int32_t code) {
                   constexpr size_t expected = QELTVAPI_RATING_OPEN_VCHIP_TABLE_SIZE;
                   if (table.size() == expected) {
                       copyAll(out, table);
                   } else {
                       QELTVAPI_LOG(kTag, "GET OPEN VCHIP Error! %zu != %zu", expected,
                                    table.size());
                   }
                   return code;
               });
}

int a_qeltvapi_rating_get_op_vchip_setting_info(QELTVAPI_RATING_OPEN_VCHIP_SETTING_T* io) {
    if (refuse(HERE, io)) return -1;
    Call<IQelTvApiRating> call(kRating, HERE);
    if (!call) return kRating.missing;
    QELTVAPI_LOG(kTag, "GET OPEN VCHIP setting BEF! [%u, %u]", io->first, io->second);
    return call.ask(
            &IQelTvApiRating::a_hidl_qeltvapi_rating_get_op_vchip_setting_info,
            [=](const HIDL_RATING_OPEN_VCHIP_SETTING_T& answer, int32_t code) {
                io->first = answer.first;
                io->second = answer.second;
                io->third = answer.third;
                QELTVAPI_LOG(kTag, "GET OPEN VCHIP setting AFT! [%u, %u]", io->first, io->second);
                memcpy(io->block, answer.block.data(), sizeof(io->block));
                return code;
            },
            io->first, io->second, io->third);
}

int a_qeltvapi_rating_set_op_vchip_setting_info(const QELTVAPI_RATING_OPEN_VCHIP_SETTING_T* in) {
    if (refuse(HERE, in)) return -1;
    HIDL_RATING_OPEN_VCHIP_SETTING_T sent;
    sent.first = in->first;
    sent.second = in->second;
    sent.third = in->third;
    memcpy(sent.block.data(), in->block, sizeof(in->block));
    return direct(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_set_op_vchip_setting_info,
                  sent);
}

int a_qeltvapi_rating_get_isdb_content_setting_info(uint8_t* val) {
    if (refuse(HERE, val)) return -1;
    return ask(kRating, HERE,
               &IQelTvApiRating::a_hidl_qeltvapi_rating_get_isdb_content_setting_info,
               storeValue(val));
}

int a_qeltvapi_rating_set_isdb_content_setting_info(int val) {
    return direct(kRating, HERE,
                  &IQelTvApiRating::a_hidl_qeltvapi_rating_set_isdb_content_setting_info,
                  setting(val));
}

int a_qeltvapi_rating_get_isdb_age_setting_info(uint8_t* val) {
    if (refuse(HERE, val)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_isdb_age_setting_info,
               storeValue(val));
}

int a_qeltvapi_rating_set_isdb_age_setting_info(int val) {
    return direct(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_set_isdb_age_setting_info,
                  setting(val));
}

int a_qeltvapi_rating_get_dvb_age_setting_info(uint8_t* val) {
    if (refuse(HERE, val)) return -1;
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_dvb_age_setting_info,
               storeValue(val));
}

int a_qeltvapi_rating_set_dvb_age_setting_info(int val) {
    return direct(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_set_dvb_age_setting_info,
                  setting(val));
}

int a_qeltvapi_rating_convert_rating_info(const QELTVAPI_ATSC_RATING_LIST_T* list,
                                          QELTVAPI_RATING_MAP_T* out) {
    if (list == nullptr || out == nullptr) {
        getQelTvApiRatingService();
        // Unlike the line of the other functions: other words, and only while tracing.
        QELTVAPI_TRACE(kTag, "Invalid arg(null point)!!!!\n");
        return -1;
    }
    Call<IQelTvApiRating> call(kRating, HERE);
    if (!call) return kRating.missing;
    std::vector<HIDL_EVCTX_ATSC_RATING_LIST_T> ratings;
    for (const QELTVAPI_ATSC_RATING_LIST_T* node = list; node != nullptr; node = node->next) {
        ratings.push_back(sendable(*node));
    }
    return call.ask(&IQelTvApiRating::a_hidl_qeltvapi_rating_convert_rating_info,
                    storeRatingMap(out),
                    over<HIDL_EVCTX_ATSC_RATING_LIST_T>(ratings.data(), ratings.size()));
}

int a_qeltvapi_rating_atsc_storage(int on) {
    return direct(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_atsc_storage, on != 0);
}

// The one getter that does not test its pointer.
int a_qeltvapi_rating_get_crnt_rating_info(QELTVAPI_RATING_MAP_T* out) {
    return ask(kRating, HERE, &IQelTvApiRating::a_hidl_qeltvapi_rating_get_crnt_rating_info,
               storeRatingMap(out));
}
