#include "hw_qeltvapi_event.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"
#include "rating_map.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_EVENT_FILTER_T;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_EVENT_QUERY_PARAM_T;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiEvent;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_event)(client)";

void missingLine(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Get event service fail.\n");
}

// The entry trace is refuse()'s: it comes before the test of the pointers.
constexpr Family<IQelTvApiEvent> kEvent{kTag, getQelTvApiEventService, 0, -1, nullptr, missingLine};

/**
 * The entry trace, then the test of the pointers that the function needs, before the proxy is
 * fetched. True when one is null, which is logged.
 */
template <class... T>
bool refuse(const Site& site, const T*... pointers) {
    if (tracing()) line::name(kTag, site);
    if (((pointers != nullptr) && ...)) return false;
    QELTVAPI_LOG_SITE(kTag, site, "<%s:%d> Invalid arg(null point)!!!!\n");
    return true;
}

/** A block whose size the caller gives: copied in that size, regardless of what was sent. */
auto storeBlock(void* buf, int len) {
    return [=](const hidl_vec<uint8_t>& block, int32_t code) {
        copy(buf, block.data(), static_cast<size_t>(len));
        return code;
    };
}

static_assert(offsetof(QELTVAPI_EVENT_COMMON_T, ui2_event_id) == 4);
static_assert(sizeof(QELTVAPI_EVENT_COMMON_T) == 8);
static_assert(offsetof(QELTVAPI_EVENT_FILTER_T, value) == 4);
static_assert(offsetof(QELTVAPI_EVENT_FILTER_T, block) == 8);
static_assert(offsetof(QELTVAPI_EVENT_FILTER_T, flag) == 24);
static_assert(offsetof(QELTVAPI_EVENT_FILTER_T, count) == 25);
static_assert(offsetof(QELTVAPI_EVENT_FILTER_T, list) == 26);
static_assert(offsetof(QELTVAPI_EVENT_FILTER_T, last) == 34);
static_assert(offsetof(QELTVAPI_EVENT_QUERY_PARAM_T, flag) == 12);
static_assert(sizeof(QELTVAPI_EVENT_QUERY_PARAM_T) == 16);

HIDL_EVENT_FILTER_T sendable(const QELTVAPI_EVENT_FILTER_T& from) {
    HIDL_EVENT_FILTER_T filter{};
    filter.word = from.word;
    filter.value = from.value;
    memcpy(filter.block.data(), from.block, sizeof(from.block));
    filter.flag = from.flag != 0;
    filter.count = from.count;
    // As many as the caller gives: more than eight, the capacity, is an error of the caller.
    copy(filter.list.data(), from.list, from.count);
    filter.last = from.last;
    return filter;
}

HIDL_EVENT_QUERY_PARAM_T sendable(const QELTVAPI_EVENT_QUERY_PARAM_T& from) {
    HIDL_EVENT_QUERY_PARAM_T param{};
    param.first = from.first;
    param.second = from.second;
    param.third = from.third;
    param.a1 = from.flag[0] != 0;
    param.a2 = from.flag[1] != 0;
    param.b1 = from.flag[2] != 0;
    param.b2 = from.flag[3] != 0;
    return param;
}

}  // namespace

int a_qeltvapi_event_register_callback(qeltvapi_event_nfy_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 547, "%s", __func__);
    QelTvApiCallbackImpl::pf_event_nfy_cb.set(fn);
    return 0;
}

int a_qeltvapi_event_setCurrentActiveWindow(void* list, int64_t p2, int n) {
    if (refuse(HERE, list)) return -1;
    return direct(kEvent, HERE, &IQelTvApiEvent::a_hidl_qeltvapi_event_setCurrentActiveWindow,
                  over<uint32_t>(list, static_cast<uint32_t>(n)), p2, n);
}

int a_qeltvapi_event_setCurrentActiveWindow_Ex(void* list, int64_t p2, int64_t p3, int n) {
    if (refuse(HERE, list)) return -1;
    return direct(kEvent, HERE, &IQelTvApiEvent::a_hidl_qeltvapi_event_setCurrentActiveWindow_Ex,
                  over<uint32_t>(list, static_cast<uint32_t>(n)), p2, p3, n);
}

int a_qeltvapi_event_clear_active_win(void) {
    return direct(kEvent.withEntry(line::name), HERE,
                  &IQelTvApiEvent::a_hidl_qeltvapi_event_clear_active_win);
}

int a_qeltvapi_event_query_event_id_by_range(int p1, int64_t p2, int64_t p3, uint16_t* num,
                                             uint16_t* ids) {
    if (refuse(HERE, ids)) return -1;
    Call<IQelTvApiEvent> call(kEvent, HERE);
    if (!call) return kEvent.missing;
    const int result = call.ask(
            &IQelTvApiEvent::a_hidl_qeltvapi_event_query_event_id_by_range,
            [=](uint16_t count, const hidl_vec<uint16_t>& found, int32_t code) {
                *num = count;
                copy(ids, found.data(), count * sizeof(uint16_t));
                return code;
            },
            p1, p2, p3, *num);
    QELTVAPI_TRACE(kTag, "event_id_num = %d\n", *num);
    for (int i = 0; tracing() && i < *num; ++i) {
        QELTVAPI_TRACE(kTag, "event_id[%d] = %d\n", i, ids[i]);
    }
    return result;
}

int a_qeltvapi_event_get_details_info(int p1, int p2, void* buf, int len) {
    if (refuse(HERE, buf)) return -1;
    Call<IQelTvApiEvent> call(kEvent, HERE);
    if (!call) return kEvent.missing;
    const int result = call.ask(&IQelTvApiEvent::a_hidl_qeltvapi_event_get_details_info,
                                storeBlock(buf, len), p1, p2, len);
    QELTVAPI_TRACE(kTag, "details:[%s] \n", static_cast<const char*>(buf));
    return result;
}

int a_qeltvapi_event_get_guidance_info(int p1, int p2, void* buf, int len) {
    if (refuse(HERE, buf)) return -1;
    Call<IQelTvApiEvent> call(kEvent, HERE);
    if (!call) return kEvent.missing;
    const int result = call.ask(&IQelTvApiEvent::a_hidl_qeltvapi_event_get_guidance_info,
                                storeBlock(buf, len), p1, p2, len);
    QELTVAPI_TRACE(kTag, "guidance:[%s] \n", static_cast<const char*>(buf));
    return result;
}

int a_qeltvapi_event_get_details_extend_info(int p1, int p2, void* buf, int len) {
    if (refuse(HERE, buf)) return -1;
    Call<IQelTvApiEvent> call(kEvent, HERE);
    if (!call) return kEvent.missing;
    const int result = call.ask(&IQelTvApiEvent::a_hidl_qeltvapi_event_get_details_extend_info,
                                storeBlock(buf, len), p1, p2, len);
    QELTVAPI_TRACE(kTag, "extend_detail:[%s] \n", static_cast<const char*>(buf));
    return result;
}

int a_qeltvapi_event_check_block(int p1, int p2) {
    const auto result = [](const char* tag, const Site& site, long long blocked) {
        QELTVAPI_LOG_SITE(tag, site, "<%s:%d> b_ret=[%d] \n", static_cast<int>(blocked));
    };
    return direct(kEvent.withMissing(0).withEntry(line::name).withExit(result), HERE,
                  &IQelTvApiEvent::a_hidl_qeltvapi_event_check_block, p1, p2);
}

int a_qeltvapi_event_get_active_win_channel_num(uint16_t* num) {
    if (refuse(HERE, num)) return -1;
    Call<IQelTvApiEvent> call(kEvent, HERE);
    if (!call) return kEvent.missing;
    const int result = call.ask(&IQelTvApiEvent::a_hidl_qeltvapi_event_get_active_win_channel_num,
                                storeValue(num));
    QELTVAPI_TRACE(kTag, "active win channel num = [%d] \n", *num);
    return result;
}

int a_qeltvapi_event_get_active_win_list(uint32_t* ids, int n, int64_t* start, int64_t* end) {
    Call<IQelTvApiEvent> call(kEvent.withEntry(line::name), HERE);
    if (!call) return kEvent.missing;
    const bool wanted = ids != nullptr && n != 0;
    const int result = call.ask(
            &IQelTvApiEvent::a_hidl_qeltvapi_event_get_active_win_list,
            [=](const hidl_vec<uint32_t>& channels, int64_t from, int64_t to, int32_t code) {
                if (wanted) copyAll(ids, channels);
                if (start != nullptr) {
                    *start = from;
                    QELTVAPI_TRACE(kTag, "t_startTime = %lld\n", static_cast<long long>(from));
                }
                if (end != nullptr) {
                    *end = to;
                    QELTVAPI_TRACE(kTag, "t_endTime = %lld\n", static_cast<long long>(to));
                }
                return code;
            },
            n);
    for (int i = 0; tracing() && wanted && i < n; ++i) {
        QELTVAPI_TRACE(kTag, "active win channel list:channel_id[%d]:[%d]\n", i, ids[i]);
    }
    return result;
}

int a_qeltvapi_event_get_pf_event_id(int p1, uint16_t* event_id, int now) {
    if (refuse(HERE, event_id)) return -1;
    Call<IQelTvApiEvent> call(kEvent, HERE);
    if (!call) return kEvent.missing;
    const int result = call.ask(&IQelTvApiEvent::a_hidl_qeltvapi_event_get_pf_event_id,
                                storeValue(event_id), p1, now != 0);
    QELTVAPI_TRACE(kTag, "[%s] event_id[%d] \n", now != 0 ? "now event" : "next event", *event_id);
    return result;
}

int a_qeltvapi_event_get_group_info(int p1, int p2, void* buf, int len) {
    if (refuse(HERE, buf)) return -1;
    Call<IQelTvApiEvent> call(kEvent, HERE);
    if (!call) return kEvent.missing;
    const int result = call.ask(&IQelTvApiEvent::a_hidl_qeltvapi_event_get_group_info,
                                storeBlock(buf, len), p1, p2, len);
    if (tracing() && len > 7) {
        // NOLINTNEXTLINE(bugprone-too-small-loop-variable): 16 bits are what callers rely on.
        for (uint16_t i = 0; i < len / 8; ++i) {
            // The caller's buffer need not be aligned.
            QELTVAPI_EVENT_COMMON_T entry;
            memcpy(&entry, static_cast<const char*>(buf) + i * sizeof(entry), sizeof(entry));
            QELTVAPI_TRACE(kTag, "pt_event_common[%d].ui4_channel_id:[%d] \n", i,
                           entry.ui4_channel_id);
            QELTVAPI_TRACE(kTag, "pt_event_common[%d].ui2_event_id:[%d] \n", i, entry.ui2_event_id);
        }
    }
    return result;
}

// Asks the method of the group information, on purpose: the service answers both with it.
int a_qeltvapi_event_get_series_info(int p1, int p2, void* buf, int len) {
    if (refuse(HERE, buf)) return -1;
    return ask(kEvent, HERE, &IQelTvApiEvent::a_hidl_qeltvapi_event_get_group_info,
               storeBlock(buf, len), p1, p2, len);
}

int a_qeltvapi_event_get_rating_map(int p1, int p2, QELTVAPI_RATING_MAP_T* out) {
    if (refuse(HERE, out)) return -1;
    return ask(kEvent, HERE, &IQelTvApiEvent::a_hidl_qeltvapi_event_get_rating_map,
               storeRatingMap(out), p1, p2);
}

int a_qeltvapi_event_set_query_parameter(const QELTVAPI_EVENT_QUERY_PARAM_T* r) {
    if (refuse(HERE, r)) return -1;
    return direct(kEvent, HERE, &IQelTvApiEvent::a_hidl_qeltvapi_event_set_query_parameter,
                  sendable(*r));
}

int a_qeltvapi_event_query_event_id_by_filter(int p1, const QELTVAPI_EVENT_FILTER_T* f,
                                              uint16_t* num, uint16_t* ids, uint32_t* extra) {
    // The filter is not among the tested pointers.
    if (refuse(HERE, num, ids, extra)) return -1;
    Call<IQelTvApiEvent> call(kEvent, HERE);
    if (!call) return kEvent.missing;
    return call.ask(
            &IQelTvApiEvent::a_hidl_qeltvapi_event_query_event_id_by_filter,
            [=](uint16_t count, const hidl_vec<uint16_t>& found, const hidl_vec<uint32_t>& more,
                int32_t code) {
                *num = count;
                copy(ids, found.data(), count * sizeof(uint16_t));
                copy(extra, more.data(), count * sizeof(uint32_t));
                return code;
            },
            p1, sendable(*f), *num);
}

int a_qeltvapi_event_get_general_info(int p1, int p2, void* buf) {
    if (refuse(HERE, buf)) return -1;
    return ask(kEvent, HERE, &IQelTvApiEvent::a_hidl_qeltvapi_event_get_general_info, storeAll(buf),
               p1, p2);
}

int a_qeltvapi_event_get_general_info_64(int p1, int p2, void* buf) {
    if (refuse(HERE, buf)) return -1;
    return ask(kEvent, HERE, &IQelTvApiEvent::a_hidl_qeltvapi_event_get_general_info, storeAll(buf),
               p1, p2);
}

int a_qeltvapi_event_get_rating_list(int p1, int p2, void* buf, int len) {
    if (refuse(HERE, buf)) return -1;
    return ask(kEvent, HERE, &IQelTvApiEvent::a_hidl_qeltvapi_event_get_rating_list,
               storeBlock(buf, len), p1, p2, len);
}

int a_qeltvapi_event_get_content_identifier(int p1, int p2, void* buf, int len) {
    if (refuse(HERE, buf)) return -1;
    return ask(kEvent, HERE, &IQelTvApiEvent::a_hidl_qeltvapi_event_get_content_identifier,
               storeBlock(buf, len), p1, p2, len);
}

int a_qeltvapi_event_get_audio_comp_info(int p1, int p2, void* buf, int len) {
    if (refuse(HERE, buf)) return -1;
    return ask(kEvent, HERE, &IQelTvApiEvent::a_hidl_qeltvapi_event_get_audio_comp_info,
               storeBlock(buf, len), p1, p2, len);
}

int a_qeltvapi_event_getEventInformation(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_event_getEvent_len(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}
