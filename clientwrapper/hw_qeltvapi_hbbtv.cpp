#include "hw_qeltvapi_hbbtv.h"

#include "QelTvApiCallbackImpl.h"

int a_qeltvapi_hbbtv_reg_msg_callback(qeltvapi_hbbtv_msg_callback_fct_t fn) {
    QelTvApiCallbackImpl::pf_hbbtv_msg_callback_fct.set(fn);
    return 0;
}
