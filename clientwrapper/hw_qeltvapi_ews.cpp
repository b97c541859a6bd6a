#include "hw_qeltvapi_ews.h"

#include "QelTvApiCallbackImpl.h"
#include "hw_qeltvapi_common.h"

namespace {

constexpr char kTag[] = "(hw_qeltvapi_ews)(client)";

}  // namespace

int a_qeltvapi_ews_reg_msg_callback(qeltvapi_ews_msg_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 21, "%s", __func__);
    QELTVAPI_TRACE_AT(kTag, 22, "");
    QelTvApiCallbackImpl::pf_ews_msg_cb.set(fn);
    return 0;
}

int c_rpc_reg_qeltvapi_ews_cb_hndlrs(void) {
    QELTVAPI_TRACE_AT(kTag, 32, "%s", __func__);
    // Written regardless of the debug switch; kept on purpose.
    QELTVAPI_LOG_AT(kTag, 33, "");
    return 0;
}
