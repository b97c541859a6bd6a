#include "hw_qeltvapi_ews_pa.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_ews_pa)(client)";

// "reuturn" is how the line reads.
void result(const char* tag, const Site& site, long long value) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s reuturn %d\n", site.function, static_cast<int>(value));
}

constexpr Family<IQelTvApi> kEwspa =
        Family<IQelTvApi>{kTag, getQelTvApiService}.withEntry(line::name).withExit(result);

}  // namespace

int a_qeltvapi_ewspa_reg_msg_callback(qeltvapi_ewspa_msg_cb_t fn) {
    QelTvApiCallbackImpl::pf_ewspa_msg_cb.set(fn);
    return 0;
}

int c_rpc_reg_qeltvapi_ews_pa_cb_hndlrs(void) {
    QELTVAPI_TRACE_AT(kTag, 119, "%s", __func__);
    return 0;
}

int a_qeltvapi_ewspa_set(uint32_t a, uint32_t b, int32_t* data, uint32_t count) {
    return ask(kEwspa, HERE, &IQelTvApi::a_hidl_qeltvapi_ewspa_set, storeAll<int32_t>(data), a, b,
               over<int32_t>(data, count));
}

int a_qeltvapi_ewspa_get(uint32_t a, uint32_t b, int32_t* data, uint32_t count) {
    return ask(kEwspa, HERE, &IQelTvApi::a_hidl_qeltvapi_ewspa_get, storeAll<int32_t>(data), a, b,
               over<int32_t>(data, count));
}

int a_qeltvapi_ewspa_create_monitor_inst(uint32_t value) {
    return inlineChecked(kEwspa, HERE, &IQelTvApi::a_hidl_qeltvapi_ewspa_create_monitor_inst,
                         value);
}

int a_qeltvapi_ewspa_delete_monitor_inst(uint32_t value) {
    return inlineChecked(kEwspa, HERE, &IQelTvApi::a_hidl_qeltvapi_ewspa_delete_monitor_inst,
                         value);
}
