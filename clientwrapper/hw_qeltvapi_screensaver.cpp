#include "hw_qeltvapi_screensaver.h"

#include "QelTvApiCallbackImpl.h"
#include "hw_qeltvapi_common.h"

namespace {

constexpr char kTag[] = "(hw_qeltvapi_screensaver)(client)";

}  // namespace

int a_qeltvapi_screensaver_register_msg_callback(qeltvapi_screensaver_msg_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 93, "%s", __func__);
    QELTVAPI_TRACE_AT(kTag, 94, "");
    QelTvApiCallbackImpl::pf_screensaver_msg_cb.set(fn);
    return 0;
}
