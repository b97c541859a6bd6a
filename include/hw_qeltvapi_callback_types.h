/**
 * Types of the functions that an application registers for notifications, one per kind, each named
 * after the slot that holds it. The register functions stand in the headers of the families.
 *
 * A function is called on a thread of the HIDL runtime, possibly on several at once, and must be
 * reentrant. The service waits until it returns. Its result is ignored unless its comment says
 * otherwise. Texts and data are valid during the call only; texts end with a zero.
 *
 * @c tag and the pointer-wide arguments carry the application's own values back; the service holds
 * them as 64 bits and a 32-bit process receives the low halves. The kinds (@c type, @c cond) and
 * the unnamed arguments are defined by the service. Data that comes without a length has the size
 * that the kind implies.
 */
#ifndef HW_QELTVAPI_CALLBACK_TYPES_H
#define HW_QELTVAPI_CALLBACK_TYPES_H

#include <stdbool.h>
#include <stdint.h>

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Condition of a Common Interface notification: a card was inserted. */
#define QELTVAPI_CI_NFY_COND_CARD_INSERT 0

/** MMI enquiry of a CAM. */
typedef struct {
    uint8_t b_blind;          /**< 1 when the answer must not be shown while it is typed, else 0 */
    uint8_t ui1_ans_len;      /**< expected length of the answer in characters */
    const uint16_t* w2s_text; /**< text of the enquiry, UTF-16, zero-terminated */
} QELTVAPI_CI_MMI_ENQ_T;

/** MMI menu or list of a CAM. All texts are UTF-16 and zero-terminated. */
typedef struct {
    const uint16_t* w2s_title;
    const uint16_t* w2s_sub_title;
    const uint16_t* w2s_bottom;
    uint32_t ui4_choices;               /**< number of choices */
    const uint16_t* const* pw2s_choice; /**< their texts; null when there are none */
} QELTVAPI_CI_MMI_MENU_T;

/** Event of a service context. */
typedef int (*qeltvapi_svctx_listener_t)(uint32_t svctx, uint16_t arg1, uint16_t arg2,
                                         uint16_t arg3, uintptr_t tag);

/** Progress of a selection in a service context. */
typedef int (*qeltvapi_svctx_select_listener_t)(uint32_t svctx, uint32_t arg1, uint32_t arg2,
                                                uint32_t arg3, uintptr_t tag);

/** High-level event. */
typedef int (*qeltvapi_highlevel_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                       uintptr_t arg3, uintptr_t arg4);

/**
 * Question to the Android side.
 *
 * @param query the question
 * @param data  [out] block of @p size zeroed bytes that takes the answer; valid during the call
 * @param size  size of the block in bytes
 * @param tag   the application's own value
 * @return the value of the answer
 */
typedef uint32_t (*qeltvapi_highlevel_query_cb_t)(uint32_t query, void* data, uint32_t size,
                                                  uintptr_t tag);

/** Change of the 3D mode. */
typedef int (*qeltvapi_3dmode_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                    uintptr_t arg3, uintptr_t arg4);

/** Key that nobody used. */
typedef int (*qeltvapi_nousedkey_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                       uintptr_t arg3, uintptr_t arg4);

/** Change of the video source of a stream component. */
typedef int (*qeltvapi_src_detect_nfy_cb_t)(uint32_t comp, uint32_t cond, uintptr_t tag,
                                            uint32_t arg1, uint32_t arg2);

/** Event of the emergency alert system. */
typedef int (*qeltvapi_eas_callback_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** Event of a Ginga application; the number of bytes at @p data is agreed with the service. */
typedef int (*qeltvapi_ginga_app_cb_t)(int32_t type, uintptr_t tag, const void* data,
                                       uintptr_t arg1, uintptr_t arg2);

/** Volume change that Ginga asks for. */
typedef int (*qeltvapi_ginga_volume_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3);

/** Change of the Ginga applications. */
typedef int (*qeltvapi_ginga_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3);

/** Progress of a channel scan. */
typedef int (*qeltvapi_scan_callback_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                           uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** Event of live television. */
typedef int (*qeltvapi_broadcast_callback_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                                uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** Screen-saver message. */
typedef int (*qeltvapi_screensaver_msg_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                             uintptr_t arg2, uintptr_t arg3);

/** Warning. */
typedef int (*qeltvapi_warning_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                     uintptr_t arg3, uintptr_t arg4);

/** Change of the channel banner. */
typedef int (*qeltvapi_banner_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                    uintptr_t arg3, uintptr_t arg4);

/** Event of the open V-chip. */
typedef int (*qeltvapi_rating_op_vchip_callback_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                                      uintptr_t arg2, uintptr_t arg3,
                                                      uintptr_t arg4);

/** New data of a channel logo. */
typedef int (*qeltvapi_channel_logo_data_update_callback_cb_t)(int32_t type, uintptr_t tag,
                                                               int32_t arg1, int32_t arg2,
                                                               int32_t arg3, int32_t arg4);

/** Event of the subtitles. */
typedef int (*qeltvapi_subtitle_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                      uintptr_t arg3, uintptr_t arg4);

/** Event of the password dialog. */
typedef int (*qeltvapi_pwddlg_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                    uintptr_t arg3, uintptr_t arg4);

/** Change of programme events. */
typedef int (*qeltvapi_event_nfy_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                       uintptr_t arg3, uintptr_t arg4);

/** Event of timeshift. */
typedef int (*qeltvapi_timeshift_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2);

/** Changed configuration item. */
typedef int (*qeltvapi_config_update_nfy_fct_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                                const char* name, uintptr_t arg2, uintptr_t arg3);

/** Change of date or time. */
typedef int (*qeltvapi_dt_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1);

/** Event of the sleep timer. */
typedef int (*qeltvapi_sleep_timer_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1);

/** Change of the time source. */
typedef int (*qeltvapi_sync_source_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1);

/** Event of power control. */
typedef int (*qeltvapi_pcl_cb_t)(uint32_t cond, uintptr_t tag, uint32_t arg1, uint32_t arg2);

/** Change of ATSC events. */
typedef int (*qeltvapi_event_atsc_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                        uintptr_t arg3, uintptr_t arg4);

/** Data that a UART received. */
typedef int (*qeltvapi_iom_notify_cb_t)(uintptr_t tag, uintptr_t arg1, const void* data,
                                        uint32_t len);

/** Event of the TV application. */
typedef int (*qeltvapi_apptv_callback_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                            uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** Event of the over-air download. */
typedef int (*qeltvapi_oad_callback_fct_t)(int32_t type, uintptr_t tag, const char* text,
                                           int32_t arg1, bool flag, int32_t arg2);

/** HbbTV message. */
typedef int (*qeltvapi_hbbtv_msg_callback_fct_t)(int32_t type, uintptr_t tag, const void* data);

/** Change of the audio information. */
typedef int (*qeltvapi_audio_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** MHEG-5 message. */
typedef int (*qeltvapi_mheg5_msg_cb_t)(int32_t type, uintptr_t tag, int32_t arg1, int32_t arg2,
                                       int32_t arg3);

/** MHEG-5 launches an HbbTV application. */
typedef int (*qeltvapi_mheg5_launch_hbbtv_nfy_cb_t)(const char* location, uintptr_t tag,
                                                    int32_t arg1);

/**
 * Question whether a MIME type is supported.
 *
 * @param mime         the MIME type; valid during the call
 * @param pb_supported [out] non-zero when it is; 0 on entry
 * @param tag          the application's own value
 * @param arg1         defined by the service
 * @return result code, handed to the service
 */
typedef int (*qeltvapi_mheg5_is_mime_type_support_cb_t)(const char* mime, uint8_t* pb_supported,
                                                        uintptr_t tag, int32_t arg1);

/** State of a recording. */
typedef int (*qeltvapi_pvr_status_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                        uintptr_t arg2);

/** Progress of a software upgrade. */
typedef int (*qeltvapi_upgrade_callback_fct_t)(int32_t type, int32_t arg1, int32_t arg2,
                                               uintptr_t tag);

/** Change of a channel list. */
typedef int (*qeltvapi_channellist_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                                uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** Change of the channels of the TV provider. */
typedef int (*qeltvapi_tvprovider_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                        const void* data, uintptr_t arg3);

/** Change of the watched columns of the channel list. */
typedef int (*qeltvapi_concern_column_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                            uintptr_t arg2, const void* data, uintptr_t arg3);

/** Change of the service-list id. */
typedef int (*qeltvapi_svlid_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** Change of the transport-stream-list id. */
typedef int (*qeltvapi_tslid_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** Change of the list mode. */
typedef int (*qeltvapi_listmode_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                             uintptr_t arg2);

/** Scan information of the operator channel list. */
typedef int (*qeltvapi_ocl_scaninfo_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2);

/** Change of the BISS keys. */
typedef int (*qeltvapi_bisskey_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                            uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** Change of the satellite list. */
typedef int (*qeltvapi_satllist_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                             uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** Event of the emergency warning system, second flavour. */
typedef int (*qeltvapi_ewspa_msg_cb_t)(int32_t type, uintptr_t tag);

/** Event of teletext. */
typedef int (*qeltvapi_teletext_msg_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3);

/**
 * Event of the Common Interface.
 *
 * @param nfy  low half of the notification's first tag
 * @param tag  low half of its second tag
 * @param cond condition of the notification
 * @param data bytes of the event, a ::QELTVAPI_CI_MMI_ENQ_T or a ::QELTVAPI_CI_MMI_MENU_T, as the
 *             condition tells; valid during the call
 */
typedef int (*qeltvapi_ci_cb_t)(uint32_t nfy, uint32_t tag, int32_t cond, const void* data);

/** BML message. */
typedef int (*qeltvapi_bml_msg_callback_fct_t)(int32_t type, uintptr_t tag, const void* data);

/** Message of the HTML agent. */
typedef int (*qeltvapi_html_agent_callback_fct_t)(int32_t type, uintptr_t tag, const void* data);

/** Change of the video information. */
typedef int (*qeltvapi_video_common_nfy_fct_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                               uintptr_t arg2, uintptr_t arg3, uintptr_t arg4,
                                               uintptr_t arg5, uintptr_t arg6);

/** Text-to-speech message. */
typedef int (*qeltvapi_tts_msg_callback_fct_t)(uintptr_t tag, const char* data, uint32_t len);

/** Message of the metadata service. */
typedef int (*qeltvapi_mds_msg_callback_fct_t)(uintptr_t tag, const char* data, uint32_t len);

/** Event of the emergency warning system. */
typedef int (*qeltvapi_ews_msg_cb_t)(int32_t type, uintptr_t tag);

QELTVAPI_END_DECLS

#endif
