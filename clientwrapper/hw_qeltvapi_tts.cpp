#include "hw_qeltvapi_tts.h"

#include "QelTvApiCallbackImpl.h"
#include "hw_qeltvapi_common.h"

namespace {

constexpr char kTag[] = "(hw_qeltvapi_tts)(client)";

}  // namespace

int a_qeltvapi_tts_reg_msg_callback(qeltvapi_tts_msg_callback_fct_t fn) {
    QELTVAPI_TRACE_AT(kTag, 97, "%s", __func__);
    QelTvApiCallbackImpl::pf_tts_msg_callback_fct.set(fn);
    return 0;
}
