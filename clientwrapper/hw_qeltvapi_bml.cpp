#include "hw_qeltvapi_bml.h"

#include "QelTvApiCallbackImpl.h"

int a_qeltvapi_bml_reg_msg_callback(qeltvapi_bml_msg_callback_fct_t fn) {
    QelTvApiCallbackImpl::pf_bml_msg_callback_fct.set(fn);
    return 0;
}
