#include "hw_qeltvapi_pwddlg.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_pwddlg)(client)";

constexpr Family<IQelTvApi> kPwddlg =
        Family<IQelTvApi>{kTag, getQelTvApiService}.withEntry(line::name);

}  // namespace

int a_qeltvapi_pwddlg_register_msg_callback(qeltvapi_pwddlg_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 93, "%s", __func__);
    QelTvApiCallbackImpl::pf_pwddlg_cb.set(fn);
    return 0;
}

uint8_t a_qeltvapi_PWDDLG_checkPWD(const char* pin) {
    // The cut makes 255 of the -1 of a missing service and of a lost reply.
    return static_cast<uint8_t>(
            direct(kPwddlg, HERE, &IQelTvApi::a_hidl_qeltvapi_PWDDLG_checkPWD, text(pin)));
}

int a_qeltvapi_PWDDLG_show(void) {
    return direct(kPwddlg, HERE, &IQelTvApi::a_hidl_qeltvapi_PWDDLG_show);
}
