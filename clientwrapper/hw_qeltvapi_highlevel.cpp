#include "hw_qeltvapi_highlevel.h"

#include "QelTvApiCallbackImpl.h"
#include "hw_qeltvapi_common.h"

int a_qeltvapi_highlevel_register_callback(qeltvapi_highlevel_cb_t fn) {
    QelTvApiCallbackImpl::pf_highlevel_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_highlevel_register_android_responser(qeltvapi_highlevel_query_cb_t fn) {
    QelTvApiCallbackImpl::pf_highlevel_query_cb.set(fn);
    return 0;
}
