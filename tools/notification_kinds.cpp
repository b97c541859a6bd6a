#include "notification_kinds.h"

#include <type_traits>

#include "hw_qeltvapi_common.h"
#include "qeltvapi.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

// Never destroyed: notifications arrive until the very end of the process.
NotificationReceiver& sReceive = *new NotificationReceiver;

template <class T>
Json shown(T value) {
    if constexpr (std::is_same_v<T, const char*>) {
        return value != nullptr ? Json(value) : Json(nullptr);
    } else if constexpr (std::is_pointer_v<T>) {
        return value != nullptr ? Json("(data)") : Json(nullptr);
    } else {
        return value;
    }
}

/** The name of the kind that a function of the library registers for. */
template <auto Registration>
const char* sName = nullptr;

/** One C function for each kind. */
template <auto Registration, class... A>
int onNotification(A... values) {
    Json all = Json::array();
    (all.push_back(shown(values)), ...);
    sReceive(sName<Registration>, all);
    return 0;
}

template <auto Registration, class... A>
void registerFor(int (*registration)(int (*)(A...))) {
    registration(onNotification<Registration, A...>);
}

/** The same for a function with an argument before the callback that is not used. */
template <auto Registration, class First, class... A>
void registerFor(int (*registration)(First, int (*)(A...))) {
    registration(First{}, onNotification<Registration, A...>);
}

template <auto Registration>
NotificationKind kind(const char* name) {
    sName<Registration> = name;
    return {name, [] { registerFor<Registration>(Registration); }};
}

int registerForCi(int (*fn)(uint32_t, uint32_t, int32_t, const void*)) {
    // Held for the life of the process, as the function is.
    static int32_t handle = 0;
    return a_qeltvapi_ci_reg_cb(&handle, 0, 0, fn);
}

}  // namespace

const std::vector<NotificationKind>& notificationKinds() {
    static const auto& sKinds = *new std::vector<NotificationKind>{
            kind<a_qeltvapi_3dmode_register_callback>("3dmode"),
            kind<a_qeltvapi_apptv_register_callback>("apptv"),
            kind<a_qeltvapi_audio_info_register_callback>("audio"),
            kind<a_qeltvapi_banner_register_callback>("banner"),
            kind<a_qeltvapi_bisskey_register_callback>("bisskey"),
            kind<a_qeltvapi_bml_reg_msg_callback>("bml"),
            kind<a_qeltvapi_broadcast_register_callback>("broadcast"),
            kind<a_qeltvapi_ch_logo_reg_callback>("ch_logo"),
            kind<a_qeltvapi_channellist_register_callback>("channellist"),
            kind<registerForCi>("ci"),
            kind<a_qeltvapi_concerncolumn_channellist_register_callback>("concern_column"),
            kind<a_qeltvapi_config_reg_callback>("config"),
            kind<a_qeltvapi_time_register_dt_event_callback>("dt"),
            kind<a_qeltvapi_eas_reg_callback>("eas"),
            kind<a_qeltvapi_event_register_callback>("event"),
            kind<a_qeltvapi_event_atsc_register_callback>("event_atsc"),
            kind<a_qeltvapi_ews_reg_msg_callback>("ews"),
            kind<a_qeltvapi_ewspa_reg_msg_callback>("ewspa"),
            kind<a_qeltvapi_ginga_register_callback>("ginga"),
            kind<a_qeltvapi_ginga_update_register_callback>("ginga_update"),
            kind<a_qeltvapi_ginga_volume_register_callback>("ginga_volume"),
            kind<a_qeltvapi_hbbtv_reg_msg_callback>("hbbtv"),
            kind<a_qeltvapi_highlevel_register_callback>("highlevel"),
            kind<a_qeltvapi_html_agent_reg_callback>("html_agent"),
            kind<a_qeltvapi_listMode_update_register_callback>("listmode"),
            kind<a_qeltvapi_mds_reg_msg_callback>("mds"),
            kind<a_qeltvapi_mheg5_register_msg_callback>("mheg5"),
            kind<a_qeltvapi_mheg5_reg_launch_hbbtv_nfy>("mheg5_hbbtv"),
            kind<a_qeltvapi_util_register_nousedkey_callback>("nousedkey"),
            kind<a_qeltvapi_oad_register_callback>("oad"),
            kind<a_qeltvapi_ocl_scanInfo_register_callback>("ocl_scaninfo"),
            kind<c_pcl_reg_nfy_fct>("pcl"),
            kind<a_qeltvapi_record_pvr_register_callback>("pvr_status"),
            kind<a_qeltvapi_pwddlg_register_msg_callback>("pwddlg"),
            kind<a_qeltvapi_rating_op_vchip_reg_callback>("rating"),
            kind<a_qeltvapi_satllist_register_callback>("satllist"),
            kind<a_qeltvapi_scan_reg_callback>("scan"),
            kind<a_qeltvapi_screensaver_register_msg_callback>("screensaver"),
            kind<a_qeltvapi_time_register_sleep_timer_callback>("sleep_timer"),
            kind<a_qeltvapi_subtitle_reg_callback>("subtitle"),
            kind<c_svctx_set_listener>("svctx"),
            kind<a_qeltvapi_svlid_update_register_callback>("svlid"),
            kind<a_qeltvapi_time_register_sync_source_callback>("sync_source"),
            kind<a_qeltvapi_teletext_register_msg_callback>("teletext"),
            kind<a_qeltvapi_timeshift_register_callback>("timeshift"),
            kind<a_qeltvapi_tslid_update_register_callback>("tslid"),
            kind<a_qeltvapi_tts_reg_msg_callback>("tts"),
            kind<a_qeltvapi_tvprovider_channellist_register_callback>("tvprovider"),
            kind<a_qeltvapi_upgrade_register_callback>("upgrade"),
            kind<a_qeltvapi_videoinfo_reg_common_nfy>("videoinfo"),
            kind<a_qeltvapi_warning_register_msg_callback>("warning"),
    };
    return sKinds;
}

void listen(const std::vector<NotificationKind>& kinds, NotificationReceiver receive) {
    sReceive = std::move(receive);
    for (const NotificationKind& kind : kinds) kind.listen();
    // Not all of the functions above ask for it. A request that waits already serves as well.
    registerCallbackHandler();
}

}  // namespace tool
