#include "hw_qeltvapi_oad.h"

#include <algorithm>

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_oad)(client)";

constexpr Family<IQelTvApi> kOad{kTag, getQelTvApiService};

/** The reply handler of the two texts: as much as the caller's buffer takes, no terminator. */
auto copyTextTo(char* buf, uint32_t len) {
    return [=](const hidl_string& info, int32_t code) {
        copy(buf, info.c_str(), std::min<size_t>(info.size(), len));
        return code;
    };
}

}  // namespace

int a_qeltvapi_oad_register_callback(qeltvapi_oad_callback_fct_t fn) {
    QelTvApiCallbackImpl::pf_oad_callback_fct.set(fn);
    return 0;
}

int a_qeltvapi_oad_get_scheduleinfo(char* buf, uint32_t len) {
    return ask(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_get_scheduleinfo, copyTextTo(buf, len));
}

int a_qeltvapi_oad_get_datainfo(uint32_t value, char* buf, uint32_t len) {
    return ask(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_get_datainfo, copyTextTo(buf, len),
               value);
}

int a_qeltvapi_oad_stop_manual_detect(void) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_stop_manual_detect);
}

int a_qeltvapi_oad_start_download(void) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_start_download);
}

int a_qeltvapi_oad_stop_download(void) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_stop_download);
}

int a_qeltvapi_oad_set_auto_download(int flag) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_set_auto_download, flag != 0);
}

int a_qeltvapi_oad_start_flash(void) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_start_flash);
}

int a_qeltvapi_oad_accept_restart(void) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_accept_restart);
}

int a_qeltvapi_oad_remind_me_later(void) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_remind_me_later);
}

int a_qeltvapi_oad_accept_schedule(void) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_accept_schedule);
}

int a_qeltvapi_oad_start_jump_channel(void) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_start_jump_channel);
}

int a_qeltvapi_oad_get_power_on_status(void) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_get_power_on_status);
}

int a_qeltvapi_set_pkg_pathname(const char* path) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_set_pkg_pathname, text(path));
}

int a_qeltvapi_oad_clear_version(void) {
    return direct(kOad, HERE, &IQelTvApi::a_hidl_qeltvapi_oad_clear_version);
}
