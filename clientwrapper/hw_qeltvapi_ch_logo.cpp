#include "hw_qeltvapi_ch_logo.h"

#include "QelTvApiCallbackImpl.h"
#include "hw_qeltvapi_common.h"

namespace {

constexpr char kTag[] = "(hw_qeltvapi_ch_logo)(client)";

}  // namespace

int a_qeltvapi_ch_logo_reg_callback(qeltvapi_channel_logo_data_update_callback_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 90, "%s", __func__);
    QelTvApiCallbackImpl::pf_channel_logo_data_update_callback_cb.set(fn);
    return 0;
}
