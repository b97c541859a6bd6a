#include "hw_qeltvapi_mheg5.h"

#include "QelTvApiCallbackImpl.h"

int a_qeltvapi_mheg5_register_msg_callback(qeltvapi_mheg5_msg_cb_t fn) {
    QelTvApiCallbackImpl::pf_mheg5_msg_cb.set(fn);
    return 0;
}

int a_qeltvapi_mheg5_reg_launch_hbbtv_nfy(qeltvapi_mheg5_launch_hbbtv_nfy_cb_t fn) {
    QelTvApiCallbackImpl::pf_mheg5_launch_hbbtv_nfy_cb.set(fn);
    return 0;
}

int a_qeltvapi_mheg5_reg_is_mime_type_support_fct(uint32_t /* a */,
                                                  qeltvapi_mheg5_is_mime_type_support_cb_t fn) {
    QelTvApiCallbackImpl::pf_mheg5_is_mime_type_support_cb.set(fn);
    return 0;
}
