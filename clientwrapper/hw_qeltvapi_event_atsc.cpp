#include "hw_qeltvapi_event_atsc.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_QELTVAPI_EVENT_ATSC_INFO_T;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_T_RATING_MAP_TO_G;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_event_atsc)(client)";

constexpr Family<IQelTvApi> kEventAtsc =
        Family<IQelTvApi>{kTag, getQelTvApiService}.withEntry(line::name);

using Info = QELTVAPI_EVENT_ATSC_INFO_T;
// The 64-bit fields are aligned to 4 bytes only.
static_assert(offsetof(Info, ui2_at_0) == 0 && offsetof(Info, ui4_at_4) == 4 &&
              offsetof(Info, ui2_at_8) == 8 && offsetof(Info, ui8_at_12) == 12 &&
              offsetof(Info, ui8_at_20) == 20 && offsetof(Info, ui1_at_28) == 28 &&
              offsetof(Info, ui2_at_30) == 30 && offsetof(Info, s_at_32) == 32 &&
              offsetof(Info, ui2_at_288) == 288);
#if __SIZEOF_POINTER__ == 4
static_assert(offsetof(Info, ps_at_292) == 292 && offsetof(Info, s_at_296) == 296 &&
              sizeof(Info) == 328);
#endif

/** The reply handler of the functions that answer with an event. */
auto copyInfoTo(Info* out) {
    return [=](const HIDL_QELTVAPI_EVENT_ATSC_INFO_T& info, int32_t code) {
        out->ui2_at_0 = info.ui2_at_0;
        out->ui4_at_4 = info.ui4_at_4;
        out->ui2_at_8 = info.ui2_at_8;
        out->ui8_at_12 = info.ui8_at_12;
        out->ui8_at_20 = info.ui8_at_20;
        out->ui1_at_28 = info.ui1_at_28;
        out->ui2_at_30 = info.ui2_at_30;
        copyField(out->s_at_32, info.s_text_256, sizeof(out->s_at_32));
        out->ui2_at_288 = info.ui2_at_288;
        if (out->ps_at_292 != nullptr) copyField(out->ps_at_292, info.s_text_20, 20);
        copyField(out->s_at_296, info.s_text_32, sizeof(out->s_at_296));
        return code;
    };
}

}  // namespace

int a_qeltvapi_event_atsc_register_callback(qeltvapi_event_atsc_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 373, "%s", __func__);
    QelTvApiCallbackImpl::event_atsc_cb.set(fn);
    return 0;
}

int a_qeltvapi_event_atsc_load_events(int p1, int64_t p2, int p3, int32_t* ids) {
    return ask(kEventAtsc, HERE, &IQelTvApi::a_hidl_qeltvapi_event_atsc_load_events,
               storeAll<int32_t>(ids), p1, p2, p3);
}

int a_qeltvapi_event_atsc_get_details_info(int p1, char* buf, int p3) {
    return ask(kEventAtsc, HERE, &IQelTvApi::a_hidl_qeltvapi_event_atsc_get_details_info,
               storeText(buf), p1, p3);
}

int a_qeltvapi_event_atsc_freeEvent(int p1) {
    return direct(kEventAtsc, HERE, &IQelTvApi::a_hidl_qeltvapi_event_atsc_freeEvent, p1);
}

int a_qeltvapi_event_atsc_load_events_by_EIT(int p1, int p2, uint32_t* num) {
    return ask(kEventAtsc, HERE, &IQelTvApi::a_hidl_qeltvapi_event_atsc_load_events_by_EIT,
               storeValue(num), p1, p2);
}

int a_qeltvapi_event_atsc_get_event_number_in_EIT(int p1, uint32_t* num) {
    return ask(kEventAtsc, HERE, &IQelTvApi::a_hidl_qeltvapi_event_atsc_get_event_number_in_EIT,
               storeValue(num), p1);
}

int a_qeltvapi_event_atsc_get_detail_info_by_index(int p1, int p2, char* buf, int len) {
    return ask(kEventAtsc, HERE, &IQelTvApi::a_hidl_qeltvapi_event_atsc_get_detail_info_by_index,
               storeText(buf), p1, p2, len);
}

int a_qeltvapi_event_atsc_check_EIT_status(int p1, uint32_t* list, int p3, int32_t* status) {
    return ask(
            kEventAtsc, HERE, &IQelTvApi::a_hidl_qeltvapi_event_atsc_check_EIT_status,
            [=](const hidl_vec<uint32_t>& entries, uint8_t count, int32_t eitStatus, int32_t code) {
                // The count of the answer rules, not the size of its vector.
                copy(list, entries.data(), count * sizeof(uint32_t));
                *status = eitStatus;
                return code;
            },
            p1, p3);
}

int a_qeltvapi_event_atsc_getEvent_detail_len_by_index(int p1, int p2, uint32_t* len) {
    return ask(kEventAtsc, HERE,
               &IQelTvApi::a_hidl_qeltvapi_event_atsc_getEvent_detail_len_by_index, storeValue(len),
               p1, p2);
}

int a_qeltvapi_event_atsc_getEvent_general(int p1, QELTVAPI_EVENT_ATSC_INFO_T* out) {
    return ask(kEventAtsc, HERE, &IQelTvApi::a_hidl_qeltvapi_event_atsc_getEvent_general,
               copyInfoTo(out), p1);
}

int a_qeltvapi_event_atsc_getEvent_general_by_index(int p1, int p2,
                                                    QELTVAPI_EVENT_ATSC_INFO_T* out) {
    return ask(kEventAtsc, HERE, &IQelTvApi::a_hidl_qeltvapi_event_atsc_getEvent_general_by_index,
               copyInfoTo(out), p1, p2);
}

int a_qeltvapi_event_atsc_get_rating_map_by_index(int p1, int p2, QELTVAPI_RATING_MAP_T* out) {
    return ask(
            kEventAtsc, HERE, &IQelTvApi::a_hidl_qeltvapi_event_atsc_get_rating_map_by_index,
            [=](const HIDL_T_RATING_MAP_TO_G& map, int32_t code) {
                // Each text whole: a long one runs into the next, unlike in the other families.
                char* const record = reinterpret_cast<char*>(out);
                copyAll(record, map.first);
                copyAll(record + 65, map.second);
                copyAll(record + 98, map.third);
                return code;
            },
            p1, p2);
}

int a_qeltvapi_event_atsc_getEvent_general_64(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_event_atsc_getEvent_general_by_index_64(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_event_atsc_check_block(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}
