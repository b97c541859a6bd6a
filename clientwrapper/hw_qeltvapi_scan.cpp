#include "hw_qeltvapi_scan.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_ATSC_SCAN_PARAM_T;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_ISDB_SCAN_PARAM_T;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_NTSC_SCAN_PARAM_T;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiScan;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_scan)(client)";

// The misspelling is part of the text.
void reuturn(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s reuturn %d\n", site.function,
                      static_cast<int>(result));
}

constexpr Family<IQelTvApiScan> kScan{
        kTag, getQelTvApiScanService, -1, -1, nullptr, nullptr, nullptr, reuturn};

/** As many bytes as the answer's length, which stands beside the text. */
template <class Length>
auto storeText(char* buf) {
    return [=](const hidl_string& reply, Length length, int32_t code) {
        copy(buf, reply.c_str(), static_cast<size_t>(length));
        return code;
    };
}

static_assert(sizeof(QELTVAPI_ATSC_SCAN_PARAM_T) == 16);
static_assert(sizeof(QELTVAPI_ISDB_SCAN_PARAM_T) == 12);
static_assert(sizeof(QELTVAPI_NTSC_SCAN_PARAM_T) == 8);

HIDL_ATSC_SCAN_PARAM_T sendable(const QELTVAPI_ATSC_SCAN_PARAM_T& from) {
    return {from.ui4_first_scan_index, from.ui4_end_scan_index, from.ui4_mod_mask,
            from.ui4_freq_plan};
}

HIDL_ISDB_SCAN_PARAM_T sendable(const QELTVAPI_ISDB_SCAN_PARAM_T& from) {
    return {from.ui4_first_scan_index, from.ui4_end_scan_index, from.ui4_configFlag};
}

HIDL_NTSC_SCAN_PARAM_T sendable(const QELTVAPI_NTSC_SCAN_PARAM_T& from) {
    return {from.ui4_first_scan_index, from.ui4_end_scan_index};
}

}  // namespace

int a_qeltvapi_scan_reg_callback(qeltvapi_scan_callback_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 103, "%s", __func__);
    QelTvApiCallbackImpl::pf_scan_callback_cb.set(fn);
    return 0;
}

int a_qeltvapi_scan_select_crnt_or_first_channel(int b_skip_fake) {
    QELTVAPI_TRACE(kTag, "%s, b_skip_fake:%d\n", __func__, b_skip_fake);
    // Exactly 1: other values are false on purpose.
    return direct(kScan, HERE, &IQelTvApiScan::a_hidl_qeltvapi_scan_select_crnt_or_first_channel,
                  b_skip_fake == 1);
}

int a_qeltvapi_is_scan_active(void) {
    QELTVAPI_TRACE(kTag, "%s\n", __func__);
    return direct(kScan.withPreset(0).withMissing(0), HERE,
                  &IQelTvApiScan::a_hidl_qeltvapi_is_scan_active);
}

int a_qeltvapi_start_scan(uint64_t scan_arg, int flag) {
    return direct(kScan, HERE, &IQelTvApiScan::a_hidl_qeltvapi_start_scan, scan_arg, flag != 0);
}

int a_qeltvapi_cancel_scan(void) {
    return direct(kScan, HERE, &IQelTvApiScan::a_hidl_qeltvapi_cancel_scan);
}

int a_qeltvapi_get_market_region(void) {
    return direct(kScan, HERE, &IQelTvApiScan::a_hidl_qeltvapi_get_market_region);
}

int a_qeltvapi_set_atsc_scan_param(uint64_t scan_arg, const QELTVAPI_ATSC_SCAN_PARAM_T* param) {
    QELTVAPI_TRACE(kTag,
                   "%s:ui4_first_scan_index:%d, ui4_end_scan_index:%d, ui4_mod_mask:%d, "
                   "ui4_freq_plan:%d\n",
                   __func__, param->ui4_first_scan_index, param->ui4_end_scan_index,
                   param->ui4_mod_mask, param->ui4_freq_plan);
    Call<IQelTvApiScan> call(kScan, HERE);
    if (!call) return kScan.missing;
    return call.direct(&IQelTvApiScan::a_hidl_qeltvapi_set_atsc_scan_param, scan_arg,
                       sendable(*param));
}

int a_qeltvapi_set_isdb_scan_param(uint64_t scan_arg, const QELTVAPI_ISDB_SCAN_PARAM_T* param) {
    QELTVAPI_TRACE(kTag, "%s:ui4_first_scan_index:%d, ui4_end_scan_index:%d, ui4_configFlag:%d\n",
                   __func__, param->ui4_first_scan_index, param->ui4_end_scan_index,
                   param->ui4_configFlag);
    Call<IQelTvApiScan> call(kScan, HERE);
    if (!call) return kScan.missing;
    return call.direct(&IQelTvApiScan::a_hidl_qeltvapi_set_isdb_scan_param, scan_arg,
                       sendable(*param));
}

int a_qeltvapi_set_ntsc_scan_param(uint64_t scan_arg, const QELTVAPI_NTSC_SCAN_PARAM_T* param) {
    QELTVAPI_TRACE(kTag, "%s:ui4_first_scan_index:%d, ui4_end_scan_index:%d\n", __func__,
                   param->ui4_first_scan_index, param->ui4_end_scan_index);
    Call<IQelTvApiScan> call(kScan, HERE);
    if (!call) return kScan.missing;
    return call.direct(&IQelTvApiScan::a_hidl_qeltvapi_set_ntsc_scan_param, scan_arg,
                       sendable(*param));
}

int a_qeltvapi_atsc_exchange_data(int32_t* data, uint32_t count) {
    return ask(kScan, HERE, &IQelTvApiScan::a_hidl_qeltvapi_atsc_exchange_data,
               storeAll<int32_t>(data), over<int32_t>(data, count));
}

int a_qeltvapi_isdb_exchange_data(int32_t* data, uint32_t count) {
    return ask(kScan, HERE, &IQelTvApiScan::a_hidl_qeltvapi_isdb_exchange_data,
               storeAll<int32_t>(data), over<int32_t>(data, count));
}

int a_scan_ce_exchange_data(int32_t* data, uint32_t count) {
    return ask(kScan, HERE, &IQelTvApiScan::a_hidl_scan_ce_exchange_data, storeAll<int32_t>(data),
               over<int32_t>(data, count));
}

int a_scan_dtmb_exchange_data(int32_t* data, uint32_t count) {
    return ask(kScan, HERE, &IQelTvApiScan::a_hidl_scan_dtmb_exchange_data, storeAll<int32_t>(data),
               over<int32_t>(data, count));
}

int a_scan_pal_secam_exchange_data(int32_t* data, uint32_t count) {
    return ask(kScan, HERE, &IQelTvApiScan::a_hidl_scan_pal_secam_exchange_data,
               storeAll<int32_t>(data), over<int32_t>(data, count));
}

int a_scan_dvbs_exchange_data(int32_t* data, uint32_t count) {
    return ask(kScan, HERE, &IQelTvApiScan::a_hidl_scan_dvbs_exchange_data, storeAll<int32_t>(data),
               over<int32_t>(data, count));
}

uint32_t a_qeltvapi_get_user_message(char* buf, uint32_t len) {
    const int result =
            ask(kScan.withExit(nullptr), HERE, &IQelTvApiScan::a_hidl_qeltvapi_get_user_message,
                storeText<uint32_t>(buf), text(buf), len);
    return static_cast<uint32_t>(result);
}

int a_scan_dvbc_exchange_data(int32_t* data, uint32_t count) {
    return ask(kScan, HERE, &IQelTvApiScan::a_hidl_scan_dvbc_exchange_data, storeAll<int32_t>(data),
               over<int32_t>(data, count));
}

int a_qeltvapi_scan_dvbc_get_str_data(uint32_t id, char* buf, int32_t len) {
    return ask(kScan, HERE, &IQelTvApiScan::a_hidl_qeltvapi_scan_dvbc_get_str_data,
               storeText<int32_t>(buf), id, text(buf), len);
}

int a_scan_dvbt_exchange_data(int32_t* data, uint32_t count) {
    return ask(kScan, HERE, &IQelTvApiScan::a_hidl_scan_dvbt_exchange_data, storeAll<int32_t>(data),
               over<int32_t>(data, count));
}

int a_qeltvapi_set_dvbt_scan_param(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_set_dvbc_manual_scan_param(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_set_dvbc_scan_param(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_set_dvbs_scan_param(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_scan_maps_fct(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_dvb_scan_complete_ui_mode(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_scan_dvbc_get_country_id(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}
