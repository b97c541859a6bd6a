#include "hw_qeltvapi_warning.h"

#include "QelTvApiCallbackImpl.h"
#include "hw_qeltvapi_common.h"

namespace {

constexpr char kTag[] = "(hw_qeltvapi_warning)(client)";

}  // namespace

int a_qeltvapi_warning_register_msg_callback(qeltvapi_warning_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 92, "%s", __func__);
    QelTvApiCallbackImpl::pf_warning_cb.set(fn);
    return 0;
}
