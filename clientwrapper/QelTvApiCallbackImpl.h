#ifndef CLIENTWRAPPER_QELTVAPICALLBACKIMPL_H
#define CLIENTWRAPPER_QELTVAPICALLBACKIMPL_H

#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiCallback.h>

#include <atomic>

#include "hw_qeltvapi_callback_types.h"

/**
 * The function of one kind of notification, null at first. A notification that overlaps a
 * store sees either function, and nothing else is ordered by the slot.
 */
template <class F>
class NotificationSlot {
  public:
    void set(F function) { mFunction.store(function, std::memory_order_relaxed); }
    F get() const { return mFunction.load(std::memory_order_relaxed); }

  private:
    static_assert(sizeof(std::atomic<F>) == sizeof(F), "a slot is a bare pointer");
    std::atomic<F> mFunction{nullptr};
};

/**
 * Receives the notifications of the service, on threads of the HIDL runtime, and hands each to the
 * function that the application stored in the slot of its kind. An empty slot drops it. Every
 * method answers OK.
 */
class QelTvApiCallbackImpl : public vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCallback {
  public:
    static inline NotificationSlot<qeltvapi_svctx_listener_t> pf_svctx_listener;
    static inline NotificationSlot<qeltvapi_svctx_select_listener_t> pf_svctx_select_listener;
    static inline NotificationSlot<qeltvapi_highlevel_cb_t> pf_highlevel_cb;
    static inline NotificationSlot<qeltvapi_highlevel_query_cb_t> pf_highlevel_query_cb;
    static inline NotificationSlot<qeltvapi_3dmode_cb_t> pf_3dmode_cb;
    static inline NotificationSlot<qeltvapi_nousedkey_cb_t> pf_nousedkey_cb;
    static inline NotificationSlot<qeltvapi_src_detect_nfy_cb_t> pf_src_detect_nfy_cb;
    static inline NotificationSlot<qeltvapi_eas_callback_cb_t> pf_eas_callback_cb;
    static inline NotificationSlot<qeltvapi_ginga_app_cb_t> pf_ginga_app_cb;
    static inline NotificationSlot<qeltvapi_ginga_volume_cb_t> pf_ginga_volume_cb;
    static inline NotificationSlot<qeltvapi_ginga_update_cb_t> pf_ginga_update_cb;
    static inline NotificationSlot<qeltvapi_scan_callback_cb_t> pf_scan_callback_cb;
    static inline NotificationSlot<qeltvapi_broadcast_callback_cb_t> pf_broadcast_callback_cb;
    static inline NotificationSlot<qeltvapi_screensaver_msg_cb_t> pf_screensaver_msg_cb;
    static inline NotificationSlot<qeltvapi_warning_cb_t> pf_warning_cb;
    static inline NotificationSlot<qeltvapi_banner_cb_t> pf_banner_cb;
    static inline NotificationSlot<qeltvapi_rating_op_vchip_callback_cb_t>
            pf_rating_op_vchip_callback_cb;
    static inline NotificationSlot<qeltvapi_channel_logo_data_update_callback_cb_t>
            pf_channel_logo_data_update_callback_cb;
    static inline NotificationSlot<qeltvapi_subtitle_cb_t> pf_subtitle_cb;
    static inline NotificationSlot<qeltvapi_pwddlg_cb_t> pf_pwddlg_cb;
    static inline NotificationSlot<qeltvapi_event_nfy_cb_t> pf_event_nfy_cb;
    static inline NotificationSlot<qeltvapi_timeshift_cb_t> pf_timeshift_cb;
    static inline NotificationSlot<qeltvapi_config_update_nfy_fct_t> pf_config_update_nfy_fct;
    static inline NotificationSlot<qeltvapi_dt_cb_t> pf_dt_cb;
    static inline NotificationSlot<qeltvapi_sleep_timer_cb_t> pf_sleep_timer_cb;
    static inline NotificationSlot<qeltvapi_sync_source_cb_t> pf_sync_source_cb;
    static inline NotificationSlot<qeltvapi_pcl_cb_t> pf_pcl_cb;
    static inline NotificationSlot<qeltvapi_event_atsc_cb_t> event_atsc_cb;
    static inline NotificationSlot<qeltvapi_iom_notify_cb_t> iom_notify_cb;
    static inline NotificationSlot<qeltvapi_apptv_callback_cb_t> pf_apptv_callback_cb;
    static inline NotificationSlot<qeltvapi_oad_callback_fct_t> pf_oad_callback_fct;
    static inline NotificationSlot<qeltvapi_hbbtv_msg_callback_fct_t> pf_hbbtv_msg_callback_fct;
    static inline NotificationSlot<qeltvapi_audio_update_cb_t> pf_audio_update_cb;
    static inline NotificationSlot<qeltvapi_mheg5_msg_cb_t> pf_mheg5_msg_cb;
    static inline NotificationSlot<qeltvapi_mheg5_launch_hbbtv_nfy_cb_t>
            pf_mheg5_launch_hbbtv_nfy_cb;
    static inline NotificationSlot<qeltvapi_mheg5_is_mime_type_support_cb_t>
            pf_mheg5_is_mime_type_support_cb;
    static inline NotificationSlot<qeltvapi_pvr_status_cb_t> pf_pvr_status_cb;
    static inline NotificationSlot<qeltvapi_upgrade_callback_fct_t> pf_upgrade_callback_fct;
    static inline NotificationSlot<qeltvapi_channellist_update_cb_t> pf_channellist_update_cb;
    static inline NotificationSlot<qeltvapi_tvprovider_cb_t> pf_tvprovider_cb;
    static inline NotificationSlot<qeltvapi_concern_column_cb_t> pf_concern_column_cb;
    static inline NotificationSlot<qeltvapi_svlid_update_cb_t> pf_svlid_update_cb;
    static inline NotificationSlot<qeltvapi_tslid_update_cb_t> pf_tslid_update_cb;
    static inline NotificationSlot<qeltvapi_listmode_update_cb_t> pf_listmode_update_cb;
    static inline NotificationSlot<qeltvapi_ocl_scaninfo_cb_t> pf_ocl_scaninfo_cb;
    static inline NotificationSlot<qeltvapi_bisskey_update_cb_t> pf_bisskey_update_cb;
    static inline NotificationSlot<qeltvapi_satllist_update_cb_t> pf_satllist_update_cb;
    static inline NotificationSlot<qeltvapi_ewspa_msg_cb_t> pf_ewspa_msg_cb;
    static inline NotificationSlot<qeltvapi_teletext_msg_cb_t> pf_teletext_msg_cb;
    static inline NotificationSlot<qeltvapi_ci_cb_t> pf_ci_cb;
    static inline NotificationSlot<qeltvapi_bml_msg_callback_fct_t> pf_bml_msg_callback_fct;
    static inline NotificationSlot<qeltvapi_html_agent_callback_fct_t> pf_html_agent_callback_fct;
    static inline NotificationSlot<qeltvapi_video_common_nfy_fct_t> pf_video_common_nfy_fct;
    static inline NotificationSlot<qeltvapi_tts_msg_callback_fct_t> pf_tts_msg_callback_fct;
    static inline NotificationSlot<qeltvapi_mds_msg_callback_fct_t> pf_mds_msg_callback_fct;
    static inline NotificationSlot<qeltvapi_ews_msg_cb_t> pf_ews_msg_cb;

    android::hardware::Return<void> a_hidl_x_svctx_listener_nfy_fct(uint32_t svctx, uint16_t arg1,
                                                                    uint16_t arg2, uint16_t arg3,
                                                                    uint64_t tag) override;
    android::hardware::Return<void> a_hidl_x_svctx_select_nfy_fct(uint32_t svctx, uint32_t arg1,
                                                                  uint32_t arg2, uint32_t arg3,
                                                                  uint64_t tag) override;
    android::hardware::Return<void> a_hidl_x_scc_vid_src_detect_nfy_fct(uint32_t comp,
                                                                        uint32_t cond, uint64_t tag,
                                                                        uint32_t arg1,
                                                                        uint32_t arg2) override;
    android::hardware::Return<void> a_hidl_qeltvapi_highlevel_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3,
            uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_3dmode_callback_fct(int32_t type, uint64_t tag,
                                                                        uint64_t arg1,
                                                                        uint64_t arg2,
                                                                        uint64_t arg3,
                                                                        uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_osdmessage_callback_fct(bool show, uint64_t tag,
                                                                            uint64_t arg1,
                                                                            uint64_t arg2,
                                                                            uint64_t arg3,
                                                                            uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_special_mode_callback(int32_t type,
                                                                          uint64_t tag,
                                                                          uint64_t arg1) override;
    android::hardware::Return<void> a_hidl_qeltvapi_util_nousedkey_callback(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3,
            uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_highlevel_query_android_fct(
            uint32_t query, uint64_t data, uint32_t size, uint64_t tag,
            a_hidl_qeltvapi_highlevel_query_android_fct_cb _hidl_cb) override;
    android::hardware::Return<void> a_hidl_qeltvapi_eas_callback_fct(int32_t type, uint64_t tag,
                                                                     uint64_t arg1, uint64_t arg2,
                                                                     uint64_t arg3,
                                                                     uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_ginga_callback_fct(
            int32_t type, uint64_t tag, const android::hardware::hidl_vec<uint8_t>& data,
            uint64_t arg1, uint64_t arg2) override;
    android::hardware::Return<void> a_hidl_qeltvapi_ginga_volume_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3) override;
    android::hardware::Return<void> a_hidl_qeltvapi_ginga_update_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3) override;
    android::hardware::Return<void> a_hidl_qeltvapi_scan_callback_fct(int32_t type, uint64_t tag,
                                                                      uint64_t arg1, uint64_t arg2,
                                                                      uint64_t arg3,
                                                                      uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_broadcast_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3,
            uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_screensaver_msg_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3) override;
    android::hardware::Return<void> a_hidl_qeltvapi_warning_msg_callback(int32_t type, uint64_t tag,
                                                                         uint64_t arg1,
                                                                         uint64_t arg2,
                                                                         uint64_t arg3,
                                                                         uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_banner_callback(int32_t type, uint64_t tag,
                                                                    uint64_t arg1, uint64_t arg2,
                                                                    uint64_t arg3,
                                                                    uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_rating_op_vchip_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3,
            uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_channel_logo_data_update_callback_fct(
            int32_t type, uint64_t tag, int32_t arg1, int32_t arg2, int32_t arg3,
            int32_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_subtitle_callback(int32_t type, uint64_t tag,
                                                                      uint64_t arg1, uint64_t arg2,
                                                                      uint64_t arg3,
                                                                      uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_pwddlg_callback_fct(int32_t type, uint64_t tag,
                                                                        uint64_t arg1,
                                                                        uint64_t arg2,
                                                                        uint64_t arg3,
                                                                        uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_event_update_nfy_fct(int32_t type, uint64_t tag,
                                                                uint64_t arg1, uint64_t arg2,
                                                                uint64_t arg3,
                                                                uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_timeshift_jni_callback_fct(int32_t type, uint64_t tag,
                                                                      uint64_t arg1,
                                                                      uint64_t arg2) override;
    android::hardware::Return<void> a_hidl_qeltvapi_dt_callback_fct(int32_t type, uint64_t tag,
                                                                    uint64_t arg1) override;
    android::hardware::Return<void> a_hidl_qeltvapi_sleep_timer_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1) override;
    android::hardware::Return<void> a_hidl_qeltvapi_sync_source_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1) override;
    android::hardware::Return<void> a_hidl_x_pcl_nfy_fct(uint32_t cond, uint64_t tag, uint32_t arg1,
                                                         uint32_t arg2) override;
    android::hardware::Return<void> a_hidl_event_event_atsc_nfy_fct(int32_t type, uint64_t tag,
                                                                    uint64_t arg1, uint64_t arg2,
                                                                    uint64_t arg3,
                                                                    uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_config_update_nfy_fct(
            int32_t type, uint64_t tag, uint64_t arg1, const android::hardware::hidl_string& name,
            uint64_t arg2, uint64_t arg3) override;
    android::hardware::Return<void> a_hidl_iom_uart_nfy_fct(
            uint64_t tag, uint64_t arg1, const android::hardware::hidl_vec<uint8_t>& data) override;
    android::hardware::Return<void> a_hidl_qeltvapi_apptv_register_callback_fct(
            vendor::qelnova::tv::qeltvapi::V1_0::HIDL_QELTVAPI_APPTV_CALLBACK_TYPE_T type,
            uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_hbbtv_msg_callback(
            int32_t type, uint64_t tag, const android::hardware::hidl_vec<uint8_t>& data) override;
    android::hardware::Return<void> a_hidl_qeltvapi_oad_callback_fct(
            int32_t type, uint64_t tag, const android::hardware::hidl_string& text, int32_t arg1,
            bool flag, int32_t arg2) override;
    android::hardware::Return<void> a_hidl_qeltvapi_mheg5_msg_callback(int32_t type, uint64_t tag,
                                                                       int32_t arg1, int32_t arg2,
                                                                       int32_t arg3) override;
    android::hardware::Return<void> a_hidl_qeltvapi_mheg5_lanuch_hbbtv_nfy_fct(
            const android::hardware::hidl_string& location, uint64_t tag, int32_t arg1) override;
    android::hardware::Return<void> a_hidl_qeltvapi_mheg5_is_mime_type_support_fct(
            const android::hardware::hidl_string& mime, uint64_t tag, int32_t arg1,
            a_hidl_qeltvapi_mheg5_is_mime_type_support_fct_cb _hidl_cb) override;
    android::hardware::Return<void> a_hidl_record_pvr_status_nfy_fct(int32_t type, uint64_t tag,
                                                                     uint64_t arg1,
                                                                     uint64_t arg2) override;
    android::hardware::Return<void> a_hidl_qeltvapi_audio_update_nfy_fct(int32_t type, uint64_t tag,
                                                                         uint64_t arg1,
                                                                         uint64_t arg2,
                                                                         uint64_t arg3,
                                                                         uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_upgrade_callback_fct(int32_t type, int32_t arg1,
                                                                         int32_t arg2,
                                                                         uint64_t tag) override;
    android::hardware::Return<void> a_hidl_qeltvapi_channellist_update_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3,
            uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_tvprovider_channellist_update_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2,
            const android::hardware::hidl_vec<uint8_t>& data, uint64_t arg3) override;
    android::hardware::Return<void> a_hidl_qeltvapi_svlid_update_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3,
            uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_tslid_update_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3,
            uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_listMode_update_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2) override;
    android::hardware::Return<void> a_hidl_qeltvapi_ocl_scanInfo_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2) override;
    android::hardware::Return<void> a_hidl_qeltvapi_ewspa_msg_callback(int32_t type,
                                                                       uint64_t tag) override;
    android::hardware::Return<void> a_hidl_qeltvapi_teletext_register_msg_callback(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3) override;
    android::hardware::Return<void> a_hidl_qeltvapi_bisskey_update_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3,
            uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_satllist_update_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3,
            uint64_t arg4) override;
    android::hardware::Return<void> a_hidl_qeltvapi_ci_nfy_fct(
            uint64_t nfy, uint64_t tag, int32_t cond,
            const android::hardware::hidl_vec<uint8_t>& data) override;
    android::hardware::Return<void> a_hidl_qeltvapi_ci_nfy_fct_enq(
            uint64_t nfy, uint64_t tag, int32_t cond,
            const vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_MMI_ENQ_T& enq) override;
    android::hardware::Return<void> a_hidl_qeltvapi_ci_nfy_fct_menu(
            uint64_t nfy, uint64_t tag, int32_t cond,
            const vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_MMI_MENU_T& menu) override;
    android::hardware::Return<void> a_hidl_qeltvapi_concern_column_update_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2,
            const android::hardware::hidl_vec<uint8_t>& data, uint64_t arg3) override;
    android::hardware::Return<void> a_hidl_qeltvapi_bml_msg_callback(
            int32_t type, uint64_t tag, const android::hardware::hidl_vec<uint8_t>& data) override;
    android::hardware::Return<void> a_hidl_qeltvapi_html_agent_callback(
            int32_t type, uint64_t tag, const android::hardware::hidl_vec<uint8_t>& data) override;
    android::hardware::Return<void> a_hidl_qeltvapi_videoinfo_common_callback_fct(
            int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4,
            uint64_t arg5, uint64_t arg6) override;
    android::hardware::Return<void> a_hidl_x_dai_tvapi_update_fct(
            const android::hardware::hidl_string& name, uint64_t tag) override;
    android::hardware::Return<void> a_hidl_qeltvapi_tts_msg_callback(
            uint64_t tag, const android::hardware::hidl_string& data, uint32_t len) override;
    android::hardware::Return<void> a_hidl_qeltvapi_mds_msg_callback(
            uint64_t tag, const android::hardware::hidl_string& data, uint32_t len) override;
    android::hardware::Return<void> a_hidl_qeltvapi_ews_msg_callback(int32_t type,
                                                                     uint64_t tag) override;
};

#endif  // CLIENTWRAPPER_QELTVAPICALLBACKIMPL_H
