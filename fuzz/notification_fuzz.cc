// Bytes that arrive at the callback object: any bytes as any notification, with every slot taken
// but that of queries: blocks as large as the message says would be most of a run.

#include <hidl/Static.h>

#include <cstring>

#include "QelTvApiCallbackImpl.h"
#include "message.h"

namespace {

using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCallback;

volatile size_t sSeen = 0;

void look(const char* text) {
    if (text != nullptr) sSeen = sSeen + strlen(text);
}
template <class T>
void look(T) {}

/** Fills a slot with a function that looks at what it can: numbers and texts. */
template <class R, class... A>
void take(NotificationSlot<R (*)(A...)>& slot) {
    slot.set([](A... arguments) {
        (look(arguments), ...);
        return R{};
    });
}

android::sp<android::hardware::IBinder> stub() {
    using Callback = QelTvApiCallbackImpl;
    take(Callback::pf_svctx_listener);
    take(Callback::pf_svctx_select_listener);
    take(Callback::pf_highlevel_cb);
    take(Callback::pf_3dmode_cb);
    take(Callback::pf_nousedkey_cb);
    take(Callback::pf_src_detect_nfy_cb);
    take(Callback::pf_eas_callback_cb);
    take(Callback::pf_ginga_app_cb);
    take(Callback::pf_ginga_volume_cb);
    take(Callback::pf_ginga_update_cb);
    take(Callback::pf_scan_callback_cb);
    take(Callback::pf_broadcast_callback_cb);
    take(Callback::pf_screensaver_msg_cb);
    take(Callback::pf_warning_cb);
    take(Callback::pf_banner_cb);
    take(Callback::pf_rating_op_vchip_callback_cb);
    take(Callback::pf_channel_logo_data_update_callback_cb);
    take(Callback::pf_subtitle_cb);
    take(Callback::pf_pwddlg_cb);
    take(Callback::pf_event_nfy_cb);
    take(Callback::pf_timeshift_cb);
    take(Callback::pf_config_update_nfy_fct);
    take(Callback::pf_dt_cb);
    take(Callback::pf_sleep_timer_cb);
    take(Callback::pf_sync_source_cb);
    take(Callback::pf_pcl_cb);
    take(Callback::event_atsc_cb);
    take(Callback::pf_apptv_callback_cb);
    take(Callback::pf_oad_callback_fct);
    take(Callback::pf_hbbtv_msg_callback_fct);
    take(Callback::pf_audio_update_cb);
    take(Callback::pf_mheg5_msg_cb);
    take(Callback::pf_mheg5_launch_hbbtv_nfy_cb);
    take(Callback::pf_mheg5_is_mime_type_support_cb);
    take(Callback::pf_pvr_status_cb);
    take(Callback::pf_upgrade_callback_fct);
    take(Callback::pf_channellist_update_cb);
    take(Callback::pf_tvprovider_cb);
    take(Callback::pf_concern_column_cb);
    take(Callback::pf_svlid_update_cb);
    take(Callback::pf_tslid_update_cb);
    take(Callback::pf_listmode_update_cb);
    take(Callback::pf_ocl_scaninfo_cb);
    take(Callback::pf_bisskey_update_cb);
    take(Callback::pf_satllist_update_cb);
    take(Callback::pf_ewspa_msg_cb);
    take(Callback::pf_teletext_msg_cb);
    take(Callback::pf_ci_cb);
    take(Callback::pf_bml_msg_callback_fct);
    take(Callback::pf_html_agent_callback_fct);
    take(Callback::pf_video_common_nfy_fct);
    take(Callback::pf_tts_msg_callback_fct);
    take(Callback::pf_mds_msg_callback_fct);
    take(Callback::pf_ews_msg_cb);
    Callback::iom_notify_cb.set([](uintptr_t, uintptr_t, const void* data, uint32_t size) {
        for (uint32_t i = 0; i < size; ++i) {
            sSeen = sSeen + static_cast<const unsigned char*>(data)[i];
        }
        return 0;
    });
    const auto make = android::hardware::details::getBnConstructorMap().get(
            IQelTvApiCallback::descriptor, nullptr);
    return make(static_cast<IQelTvApiCallback*>(new Callback));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const android::sp<android::hardware::IBinder> sStub = stub();
    hidlhost::MessageHeader header;
    android::hardware::Parcel call;
    if (!fuzz::parse(data, size, &header, &call)) return 0;
    android::hardware::Parcel reply;
    sStub->localBinder()->onTransact(header.code, call, &reply, 0,
                                     [](android::hardware::Parcel&) {});
    return 0;
}
