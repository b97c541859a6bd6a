#include "hw_qeltvapi_ginga.h"

#include "QelTvApiCallbackImpl.h"
#include "hw_qeltvapi_common.h"

namespace {

constexpr char kTag[] = "(hw_qeltvapi_ginga)(client)";

}  // namespace

int a_qeltvapi_ginga_register_callback(qeltvapi_ginga_app_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 127, "%s", __func__);
    QelTvApiCallbackImpl::pf_ginga_app_cb.set(fn);
    return 0;
}

int a_qeltvapi_ginga_volume_register_callback(qeltvapi_ginga_volume_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 136, "%s", __func__);
    QelTvApiCallbackImpl::pf_ginga_volume_cb.set(fn);
    return 0;
}

int a_qeltvapi_ginga_update_register_callback(qeltvapi_ginga_update_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 146, "%s", __func__);
    QelTvApiCallbackImpl::pf_ginga_update_cb.set(fn);
    return 0;
}
