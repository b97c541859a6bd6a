#include "hw_qeltvapi_time.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_DTG_T;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiTime;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_time)(client)";

void missingLine(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Get time service fail .\n");
}

/** The line of the UTC readers, which need no pointer all the same. */
void missingUtcLine(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Get time service fail or pui2_ms==NULL.\n");
}

void retLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> ret=%lld", result);
}

void timeLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s t_time =%lld\n", site.function, result);
}

void timerLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s t_time =%d\n", site.function,
                      static_cast<int>(result));
}

void truthLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s b_ret =%d\n", site.function, static_cast<int>(result));
}

// The entry trace stands in each function: it comes before the test of its pointers.
constexpr Family<IQelTvApiTime> kTime{kTag, getQelTvApiTimeService, 0, -2, nullptr, missingLine};

constexpr Family<IQelTvApiTime> kUtc = kTime.withMissingAlways(missingUtcLine).withExit(retLine);

constexpr Family<IQelTvApiTime> kTruth = kTime.withMissing(0).withExit(truthLine);

static_assert(offsetof(QELTVAPI_DTG_T, tail) == 8);
static_assert(sizeof(QELTVAPI_DTG_T) == 10);
static_assert(offsetof(QELTVAPI_TIME_RAW_T, value) == 4);
static_assert(sizeof(QELTVAPI_TIME_RAW_T) == 28);

HIDL_DTG_T sendable(const QELTVAPI_DTG_T& from) {
    HIDL_DTG_T to;
    memcpy(to.head.data(), from.head, sizeof(from.head));
    to.tail = from.tail;
    return to;
}

void store(QELTVAPI_DTG_T* to, const HIDL_DTG_T& from) {
    memcpy(to->head, from.head.data(), sizeof(to->head));
    to->tail = from.tail;
}

/** An answer that is a record alone: the result stays 0. */
auto storeDtg(QELTVAPI_DTG_T* to) {
    return [=](const HIDL_DTG_T& dtg) {
        store(to, dtg);
        return 0;
    };
}

auto storeDtgAndCode(QELTVAPI_DTG_T* to) {
    return [=](const HIDL_DTG_T& dtg, int32_t code) {
        store(to, dtg);
        return code;
    };
}

auto storeNumber(uint32_t* to) {
    return [=](int32_t value, int32_t code) {
        *to = static_cast<uint32_t>(value);
        return code;
    };
}

}  // namespace

int a_qeltvapi_time_register_dt_event_callback(qeltvapi_dt_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 846, "%s", __func__);
    QelTvApiCallbackImpl::pf_dt_cb.set(fn);
    return 0;
}

int a_qeltvapi_time_register_sync_source_callback(qeltvapi_sync_source_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 854, "%s", __func__);
    QelTvApiCallbackImpl::pf_sync_source_cb.set(fn);
    return 0;
}

int a_qeltvapi_time_register_sleep_timer_callback(qeltvapi_sleep_timer_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 862, "%s", __func__);
    QelTvApiCallbackImpl::pf_sleep_timer_cb.set(fn);
    return 0;
}

int64_t a_qeltvapi_time_get_utc_time(uint16_t* pui2_ms) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return ask(
            kUtc, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_get_utc_time,
            [=](uint16_t milliseconds, int64_t seconds) {
                if (pui2_ms != nullptr) {
                    // Written when the pointer is there, not when it is null: kept on purpose.
                    QELTVAPI_LOG(kTag, " pui2_ms==NULL,return -1.\n");
                    *pui2_ms = milliseconds;
                }
                return seconds;
            },
            uint16_t{0});
}

int a_qeltvapi_utc_sec_to_dtg(int64_t t, QELTVAPI_DTG_T* pt_dtg) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_dtg == nullptr) {
        QELTVAPI_LOG(kTag, " pt_dtg==NULL,return -1.\n");
        return -1;
    }
    return ask(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_utc_sec_to_dtg, storeDtg(pt_dtg), t);
}

int64_t a_qeltvapi_time_get_broadcast_time(void) {
    QELTVAPI_DTG_T scratch{};
    return a_qeltvapi_time_get_broadcast_time_ex(&scratch);
}

int64_t a_qeltvapi_time_get_broadcast_time_ex(QELTVAPI_DTG_T* pt_dtg) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_dtg == nullptr) {
        QELTVAPI_LOG(kTag, " pt_dtg==NULL,return -1.\n");
        return -1;
    }
    return ask(
            kTime.withMissing(-1), HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_get_broadcast_time_ex,
            [=](const HIDL_DTG_T& dtg, int64_t seconds) {
                store(pt_dtg, dtg);
                return seconds;
            },
            sendable(*pt_dtg));
}

int a_qeltvapi_time_convert(uint32_t type, const QELTVAPI_DTG_T* pt_in, QELTVAPI_DTG_T* pt_out) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_in == nullptr || pt_out == nullptr) {
        QELTVAPI_LOG(kTag, " pt_in==NULL or pt_out==NULL,return -1.\n");
        return -1;
    }
    return ask(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_convert, storeDtgAndCode(pt_out),
               type, sendable(*pt_in));
}

int a_qeltvapi_time_get_brdcst_raw_data(QELTVAPI_TIME_RAW_T* pt_dt) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_dt == nullptr) {
        QELTVAPI_LOG(kTag, " pt_dt==NULL,return -1.\n");
        return -1;
    }
    return ask(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_get_brdcst_raw_data,
               [=](uint8_t first, uint8_t second, int64_t value1, int64_t value2, int64_t value3,
                   int32_t code) {
                   pt_dt->first = first;
                   pt_dt->second = second;
                   uint32_t* half = pt_dt->value;
                   for (const int64_t value : {value1, value2, value3}) {
                       const uint64_t bits = static_cast<uint64_t>(value);
                       *half++ = static_cast<uint32_t>(bits);
                       *half++ = static_cast<uint32_t>(bits >> 32);
                   }
                   return code;
               });
}

void a_qeltvapi_time_set_utc_time(int64_t t_time) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    QELTVAPI_TRACE(kTag, "%s t_time=%lld", __func__, static_cast<long long>(t_time));
    send(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_set_utc_time, t_time);
}

int a_qeltvapi_time_is_time_editable(void) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return unchecked(kTruth, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_is_time_editable);
}

int64_t a_qeltvapi_time_get_time_zone(void) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return unchecked(kTime.withExit(timeLine), HERE,
                     &IQelTvApiTime::a_hidl_qeltvapi_time_get_time_zone);
}

void a_qeltvapi_time_set_time_zone(int64_t t_tz) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    QELTVAPI_TRACE(kTag, "%s t_tz=%lld\n", __func__, static_cast<long long>(t_tz));
    send(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_set_time_zone, t_tz);
}

int a_qeltvapi_time_is_time_zone_editable(void) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return unchecked(kTruth, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_is_time_zone_editable);
}

int64_t a_qeltvapi_time_get_time_offset(void) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return unchecked(kTime.withExit(timeLine), HERE,
                     &IQelTvApiTime::a_hidl_qeltvapi_time_get_time_offset);
}

// The label of the zone stands for the offset too.
void a_qeltvapi_time_set_time_offset(int64_t t_tz) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    QELTVAPI_TRACE(kTag, "%s t_tz=%lld\n", __func__, static_cast<long long>(t_tz));
    send(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_set_time_offset, t_tz);
}

int a_qeltvapi_time_is_time_offset_editable(void) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return unchecked(kTruth, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_is_time_offset_editable);
}

int a_qeltvapi_time_has_received_tot(void) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return unchecked(kTruth, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_has_received_tot);
}

void a_qeltvapi_time_convert_millis_to_local_time(int64_t millis, QELTVAPI_DTG_T* pt_local_dtg) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_local_dtg == nullptr) {
        QELTVAPI_LOG(kTag, " pt_local_dtg==NULL,return -1.\n");
        return;
    }
    ask(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_convert_millis_to_local_time,
        storeDtg(pt_local_dtg), millis);
}

int64_t a_qeltvapi_dtg_to_sec(const QELTVAPI_DTG_T* pt_dtg) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_dtg == nullptr) {
        QELTVAPI_LOG(kTag, " pt_dtg==NULL,return -1.\n");
        return -1;
    }
    return inlineChecked(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_dtg_to_sec,
                         sendable(*pt_dtg));
}

// Written out: no shape stores the one value of a direct answer, and only when it has come.
void a_qeltvapi_time_convert_local_time_to_millis(const QELTVAPI_DTG_T* pt_local_dtg,
                                                  int64_t* pt_millis) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_local_dtg == nullptr || pt_millis == nullptr) {
        QELTVAPI_LOG(kTag, " pt_local_dtg==NULL or pt_millis==NULL,return -1.\n");
        return;
    }
    const sp<IQelTvApiTime> service = getQelTvApiTimeService();
    if (service == nullptr) {
        missingLine(kTag, HERE);
        return;
    }
    const Return<int64_t> millis =
            service->a_hidl_qeltvapi_time_convert_local_time_to_millis(sendable(*pt_local_dtg));
    if (millis.isOk()) {
        *pt_millis = millis;
    } else {
        __android_log_print(ANDROID_LOG_DEBUG, kTag, "<%s:%d> .", "STATUS_CHECK", 60);
    }
}

int a_qeltvapi_time_get_sync_source(uint32_t* pui4_source) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pui4_source == nullptr) {
        QELTVAPI_LOG(kTag, " pui4_source==NULL,return -1.\n");
        return -1;
    }
    return ask(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_get_sync_source,
               storeNumber(pui4_source));
}

void a_qeltvapi_time_set_sync_source(int32_t source) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    QELTVAPI_TRACE(kTag, "%s t_tz=%d\n", __func__, source);
    send(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_set_sync_source, source);
}

int a_qeltvapi_time_update_local_time(const char* str1, const char* str2) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return unchecked(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_update_local_time,
                     text(str1), text(str2));
}

int a_qeltvapi_time_get_sleep_timer(void) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return unchecked(kTime.withExit(timerLine), HERE,
                     &IQelTvApiTime::a_hidl_qeltvapi_time_get_sleep_timer);
}

int a_qeltvapi_time_get_sleep_timer_reverse(void) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return unchecked(kTime.withExit(timerLine), HERE,
                     &IQelTvApiTime::a_hidl_qeltvapi_time_get_sleep_timer_reverse);
}

void a_qeltvapi_time_set_sleep_timer(int32_t value) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    QELTVAPI_TRACE(kTag, "%s t_tz=%d\n", __func__, value);
    send(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_set_sleep_timer, value);
}

int a_qeltvapi_time_get_sleep_timer_remaining_time(uint32_t* pui4_remaining_time) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pui4_remaining_time == nullptr) {
        QELTVAPI_LOG(kTag, " pui4_remaining_time==NULL,return -1.\n");
        return -1;
    }
    return ask(kTime, HERE, &IQelTvApiTime::a_hidl_qeltvapi_time_get_sleep_timer_remaining_time,
               storeNumber(pui4_remaining_time));
}

int c_dt_utc_sec_to_loc_dtg(int64_t t, QELTVAPI_DTG_T* pt_dtg) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_dtg == nullptr) {
        QELTVAPI_LOG(kTag, "pt_dtg==NULL, return -1.\n");
        return -1;
    }
    return ask(kTime, HERE, &IQelTvApiTime::a_hidl_c_dt_utc_sec_to_loc_dtg, storeDtg(pt_dtg), t);
}

int64_t c_dt_get_utc(uint16_t* pui2_ms, uint32_t* second_out) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return ask(kUtc, HERE, &IQelTvApiTime::a_hidl_c_dt_get_utc,
               [=](uint16_t milliseconds, uint32_t word, int64_t seconds) {
                   if (pui2_ms != nullptr) {
                       // Written when the pointer is there, not when it is null: on purpose.
                       QELTVAPI_LOG(kTag, " pui2_ms==NULL,return -1.\n");
                       *pui2_ms = milliseconds;
                   }
                   if (second_out != nullptr) *second_out = word;
                   return seconds;
               });
}

int c_dt_conv_utc_local(const QELTVAPI_DTG_T* pt_input_dtg, QELTVAPI_DTG_T* pt_output_dtg) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_input_dtg == nullptr || pt_output_dtg == nullptr) {
        QELTVAPI_LOG(kTag, " pt_input_dtg==NULL or pt_output_dtg==NULL,return -1.\n");
        return -1;
    }
    return ask(kTime, HERE, &IQelTvApiTime::a_hidl_c_dt_conv_utc_local, storeDtg(pt_output_dtg),
               sendable(*pt_input_dtg));
}

int c_dt_mjd_to_dtg(uint32_t mjd, QELTVAPI_DTG_T* pt_dtg) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_dtg == nullptr) {
        QELTVAPI_LOG(kTag, "pt_dtg==NULL, return -1.\n");
        return -1;
    }
    return ask(kTime, HERE, &IQelTvApiTime::a_hidl_c_dt_mjd_to_dtg, storeDtgAndCode(pt_dtg), mjd);
}

int64_t c_dt_dtg_to_sec(const QELTVAPI_DTG_T* pt_dtg) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_dtg == nullptr) {
        QELTVAPI_LOG(kTag, " pt_dtg==NULL,return -1.\n");
        return -1;
    }
    return inlineChecked(kTime, HERE, &IQelTvApiTime::a_hidl_c_dt_dtg_to_sec, sendable(*pt_dtg));
}

int c_dt_dtg_to_mjd_bcd(const QELTVAPI_DTG_T* pt_dtg, uint16_t* mjd, uint16_t* bcd,
                        uint8_t* extra) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    if (pt_dtg == nullptr) {
        QELTVAPI_LOG(kTag, "pt_dtg==NULL, return -1.\n");
        return -1;
    }
    return ask(
            kTime, HERE, &IQelTvApiTime::a_hidl_c_dt_dtg_to_mjd_bcd,
            [=](uint16_t date, uint16_t time, uint8_t more, int32_t code) {
                if (mjd != nullptr) *mjd = date;
                if (bcd != nullptr) *bcd = time;
                if (extra != nullptr) *extra = more;
                return code;
            },
            sendable(*pt_dtg));
}
