#include "hw_qeltvapi_3dmode.h"

#include "QelTvApiCallbackImpl.h"

int a_qeltvapi_3dmode_register_callback(qeltvapi_3dmode_cb_t fn) {
    QelTvApiCallbackImpl::pf_3dmode_cb.set(fn);
    return 0;
}
