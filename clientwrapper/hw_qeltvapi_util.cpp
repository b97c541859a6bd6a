#include "hw_qeltvapi_util.h"

#include "QelTvApiCallbackImpl.h"
#include "hw_qeltvapi_common.h"

namespace {

constexpr char kTag[] = "(hw_qeltvapi_util)(client)";

}  // namespace

int a_qeltvapi_util_register_nousedkey_callback(qeltvapi_nousedkey_cb_t fn) {
    QelTvApiCallbackImpl::pf_nousedkey_cb.set(fn);
    return 0;
}

int a_rpc_close_client(void) {
    // The log call's value is the result on purpose.
    return QELTVAPI_LOG(kTag, "%s", __func__);
}
