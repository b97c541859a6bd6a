#include "hw_qeltvapi_apptv.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_apptv)(client)";

constexpr Family<IQelTvApi> kApptv{kTag, getQelTvApiService, -1,
                                   -1,   line::name,         line::mainServiceFail};

}  // namespace

int a_qeltvapi_apptv_register_callback(qeltvapi_apptv_callback_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 431, "%s", __func__);
    QelTvApiCallbackImpl::pf_apptv_callback_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_apptv_save_timestamp(const char* tag) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_save_timestamp, text(tag));
}

int a_qeltvapi_apptv_set_tv_started(int started) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_set_tv_started, started != 0);
}

int a_qeltvapi_apptv_unlock_service(const char* path) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_unlock_service, text(path));
}

int a_qeltvapi_apptv_get_matched_channel(int32_t number, int p2, int32_t p3, int32_t p4) {
    // A number above 32767 wraps, on purpose.
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_get_matched_channel,
                  static_cast<int16_t>(number), p2 != 0, p3, p4);
}

int a_qeltvapi_apptv_nav_update_sys_status_by_win(const char* path, int32_t status) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_nav_update_sys_status_by_win,
                  text(path), status);
}

int a_qeltvapi_apptv_update_sys_status(int32_t status) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_update_sys_status, status);
}

int a_qeltvapi_apptv_start_tv(void) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_start_tv);
}

int a_qeltvapi_apptv_stop_all(void) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_stop_all);
}

int a_qeltvapi_apptv_get_current_channel_svc_text_len(void) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_get_current_channel_svc_text_len);
}

int a_qeltvapi_apptv_get_current_channel_svc_text(char* buf, int32_t p2) {
    return ask(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_get_current_channel_svc_text,
               storeText(buf), p2);
}

int a_qeltvapi_apptv_unblock_svc(const char* path, int p2) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_unblock_svc, text(path), p2 != 0);
}

int a_qeltvapi_apptv_swap_tmp_unlock_info(int32_t p1) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_swap_tmp_unlock_info, p1);
}

int a_qeltvapi_apptv_set_video_mute(const char* path, int mute) {
    return direct(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_set_video_mute, text(path),
                  mute != 0);
}

int a_qeltvapi_apptv_get_capability_ex(int32_t id, uint32_t* value) {
    return ask(kApptv, HERE, &IQelTvApi::a_hidl_qeltvapi_apptv_get_capability_ex, storeValue(value),
               id);
}

int a_qeltvapi_apptv_get_video_mute(const char* path) {
    Call<IQelTvApi> call(kApptv.withPreset(0), HERE);
    if (!call) return 0;
    // The folder is spelt in two ways; both are kept.
    QELTVAPI_TRACE(kTag, "hardwre/hw_qeltvapi_apptv , %s, ps_path:%s", __func__, path);
    const bool muted = call.direct(&IQelTvApi::a_hidl_qeltvapi_apptv_get_video_mute, text(path));
    QELTVAPI_TRACE(kTag, "hardware/hw_qeltvapi_apptv , %s, ps_path:%s,b_video_mute=%d", __func__,
                   path, muted);
    return muted;
}
