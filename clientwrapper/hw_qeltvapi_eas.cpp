#include "hw_qeltvapi_eas.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_eas)(client)";

void entry(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s\n", site.function);
}

// "reuturn" is how the line reads.
void result(const char* tag, const Site& site, long long value) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s reuturn %d\n", site.function, static_cast<int>(value));
}

constexpr Family<IQelTvApi> kEas{kTag, getQelTvApiService};

}  // namespace

int a_qeltvapi_eas_reg_callback(qeltvapi_eas_callback_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 92, "%s", __func__);
    QelTvApiCallbackImpl::pf_eas_callback_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_eas_get_status(int32_t* pi4_eas_type, int32_t* pi4_eas_channel_change,
                              int32_t* pi4_arg1, int32_t* pi4_arg2) {
    const int code = ask(
            kEas.withEntry(entry), HERE, &IQelTvApi::a_hidl_qeltvapi_eas_get_status,
            [=](int32_t type, int32_t channelChange, int32_t arg1, int32_t arg2, int32_t status) {
                *pi4_eas_type = type;
                *pi4_eas_channel_change = channelChange;
                *pi4_arg1 = arg1;
                *pi4_arg2 = arg2;
                return status;
            });
    // Also when the service is missing: the four variables must be readable while tracing.
    QELTVAPI_TRACE(kTag,
                   "%s reuturn %d, *pi4_eas_type:%d, *pi4_eas_channel_change:%d, *pi4_arg1:%d, "
                   "*pi4_arg2:%d\n",
                   __func__, code, *pi4_eas_type, *pi4_eas_channel_change, *pi4_arg1, *pi4_arg2);
    return code;
}

int a_qeltvapi_eas_set_android_launch_status(int32_t b_enter) {
    QELTVAPI_TRACE(kTag, "%s, b_enter:%d\n", __func__, b_enter);
    // Only 1 is true; kept on purpose.
    return direct(kEas.withExit(result), HERE,
                  &IQelTvApi::a_hidl_qeltvapi_eas_set_android_launch_status, b_enter == 1);
}

int a_qeltvapi_eas_get_android_launch_status(void) {
    constexpr auto family = kEas.withPreset(0).withMissing(0).withEntry(entry).withExit(result);
    return direct(family, HERE, &IQelTvApi::a_hidl_qeltvapi_eas_get_android_launch_status);
}

int a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(int32_t b_enter) {
    QELTVAPI_TRACE(kTag, "%s, b_enter:%d\n", __func__, b_enter);
    // Only 1 is true; kept on purpose.
    return direct(kEas.withExit(result), HERE,
                  &IQelTvApi::a_hidl_qeltvapi_eas_set_android_exit_eas_no_change_channel_status,
                  b_enter == 1);
}
