/**
 * Types of the functions that an application registers for notifications, one per kind, each named
 * after the slot that holds it. The register functions are in the headers of the families.
 *
 * Registration: a register function stores the application's callback and makes no transaction
 * unless its comment says so. Notifications arrive once the library has registered its callback
 * object with the service. These functions request that, for the callbacks of all kinds:
 * a_qeltvapi_apptv_register_callback(), a_qeltvapi_audio_info_register_callback(),
 * a_qeltvapi_bisskey_register_callback(), the seven register functions of
 * hw_qeltvapi_channellist.h, a_qeltvapi_ci_reg_cb(), a_qeltvapi_ci_unreg_cb(),
 * a_qeltvapi_eas_reg_callback(), a_qeltvapi_highlevel_register_callback(),
 * a_qeltvapi_satllist_register_callback(), a_qeltvapi_upgrade_register_callback(),
 * a_qeltvapi_upgrade_unregister_callback() and a_qeltvapi_videoinfo_reg_common_nfy(); in C++
 * registerCallbackHandler() does. The others only store.
 *
 * Calls: a callback runs on a thread of the HIDL runtime, possibly on several at once, and must be
 * reentrant. The service waits until it returns. Its result is ignored unless its comment says
 * otherwise. Texts and data are valid during the call only; texts end with a zero.
 *
 * Values: @c tag and the pointer-wide arguments return values that the application has passed to
 * the service, or are numbers; they cross as 64 bits, and a 32-bit process receives the low halves.
 * The service defines the kinds (@c type, @c cond) and the values of @c arg1, @c arg2, ... The
 * enumerators of layouts/ list the values that the reference television sends, in the order of the
 * arguments; the arguments behind them are 0, and so is @c tag, except where its comment says
 * otherwise. Data that has no length beside it has the size that its kind implies.
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
    const uint16_t* w2s_title;          /**< title */
    const uint16_t* w2s_sub_title;      /**< line below the title */
    const uint16_t* w2s_bottom;         /**< line below the choices */
    uint32_t ui4_choices;               /**< number of choices */
    const uint16_t* const* pw2s_choice; /**< their texts; null when there are none */
} QELTVAPI_CI_MMI_MENU_T;

/**
 * Event of a service context.
 *
 * @param svctx the service context
 * @param arg1  service-defined; reference television: a QELTV_BROADCAST_EVENT, 1 to 6
 * @param arg2  service-defined; reference television: a QELTV_TUNING_ERROR
 * @param arg3  service-defined; reference television: video path, 0 main, 1 sub
 * @param tag   the tag of the selection in this context; 0 before one with a tag
 * @values event:QELTV_BROADCAST_EVENT, error:QELTV_TUNING_ERROR, path
 */
typedef int (*qeltvapi_svctx_listener_t)(uint32_t svctx, uint16_t arg1, uint16_t arg2,
                                         uint16_t arg3, uintptr_t tag);

/**
 * Progress of a selection in a service context. No function of the library registers one.
 *
 * @param svctx the service context
 * @param arg1  service-defined; reference television: a QELTV_BROADCAST_EVENT
 * @param arg2  service-defined; reference television: channel id, 0 for an input
 * @param arg3  service-defined; reference television: a QELTV_TUNING_ERROR
 * @param tag   the tag of the selection in this context
 * @values event:QELTV_BROADCAST_EVENT, channel, error:QELTV_TUNING_ERROR
 */
typedef int (*qeltvapi_svctx_select_listener_t)(uint32_t svctx, uint32_t arg1, uint32_t arg2,
                                                uint32_t arg3, uintptr_t tag);

/** High-level event. The reference television sends none. */
typedef int (*qeltvapi_highlevel_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                       uintptr_t arg3, uintptr_t arg4);

/**
 * Query of the Android side. The reference television sends none.
 *
 * @param query service-defined
 * @param data  [out] the answer: a block of @p size bytes, zeros on entry, valid during the call
 * @param size  size of the block in bytes
 * @param tag   service-defined
 * @return the value of the answer, which is sent to the service
 */
typedef uint32_t (*qeltvapi_highlevel_query_cb_t)(uint32_t query, void* data, uint32_t size,
                                                  uintptr_t tag);

/** Change of the 3D mode. The reference television sends none. */
typedef int (*qeltvapi_3dmode_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                    uintptr_t arg3, uintptr_t arg4);

/**
 * Key that the television does not use itself.
 *
 * @param type service-defined; reference television: the key code, a QELTV_KEY or another code of
 *             Android
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: 0
 * @values -
 */
typedef int (*qeltvapi_nousedkey_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                       uintptr_t arg3, uintptr_t arg4);

/**
 * Change of the video source of a stream component.
 *
 * @param comp the stream component
 * @param cond service-defined; reference television: a QELTV_SOURCE_DETECT
 * @param tag  the tag of the registration
 * @param arg1 service-defined; reference television: width in pixels
 * @param arg2 service-defined; reference television: height in pixels
 */
typedef int (*qeltvapi_src_detect_nfy_cb_t)(uint32_t comp, uint32_t cond, uintptr_t tag,
                                            uint32_t arg1, uint32_t arg2);

/**
 * Event of the emergency alert system.
 *
 * @param type service-defined; reference television: a QELTV_ALERT_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_eas_callback_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/**
 * Event of a Ginga application. The reference television sends none.
 *
 * @param data bytes of the event, as many as the service and the application agree on
 * @param type service-defined
 * @param tag  service-defined
 * @param arg1, arg2 service-defined
 */
typedef int (*qeltvapi_ginga_app_cb_t)(int32_t type, uintptr_t tag, const void* data,
                                       uintptr_t arg1, uintptr_t arg2);

/** Volume change that Ginga requests. The reference television sends none. */
typedef int (*qeltvapi_ginga_volume_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3);

/** Change of the Ginga applications. The reference television sends none. */
typedef int (*qeltvapi_ginga_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3);

/**
 * Progress of a channel scan.
 *
 * @param type service-defined; reference television: a QELTV_SCAN_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_scan_callback_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                           uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/**
 * Event of live television.
 *
 * @param type service-defined; reference television: a QELTV_BROADCAST_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_broadcast_callback_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                                uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** Screen-saver message. The reference television sends none. */
typedef int (*qeltvapi_screensaver_msg_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                             uintptr_t arg2, uintptr_t arg3);

/** Warning. The reference television sends none. */
typedef int (*qeltvapi_warning_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                     uintptr_t arg3, uintptr_t arg4);

/**
 * Change of the channel banner.
 *
 * @param type service-defined; reference television: a QELTV_BANNER_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_banner_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                    uintptr_t arg3, uintptr_t arg4);

/**
 * Event of the open V-chip.
 *
 * @param type service-defined; reference television: a QELTV_OPEN_VCHIP_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_rating_op_vchip_callback_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                                      uintptr_t arg2, uintptr_t arg3,
                                                      uintptr_t arg4);

/** New data of a channel logo. The reference television sends none. */
typedef int (*qeltvapi_channel_logo_data_update_callback_cb_t)(int32_t type, uintptr_t tag,
                                                               int32_t arg1, int32_t arg2,
                                                               int32_t arg3, int32_t arg4);

/**
 * Event of the subtitles.
 *
 * @param type service-defined; reference television: a QELTV_SUBTITLE_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_subtitle_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                      uintptr_t arg3, uintptr_t arg4);

/**
 * Event of the PIN dialog.
 *
 * @param type service-defined; reference television: a QELTV_PIN_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_pwddlg_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                    uintptr_t arg3, uintptr_t arg4);

/**
 * Change of EPG events.
 *
 * @param type service-defined; reference television: a QELTV_EVENT_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_event_nfy_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                       uintptr_t arg3, uintptr_t arg4);

/**
 * Event of timeshift.
 *
 * @param type service-defined; reference television: a QELTV_TIMESHIFT_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2 service-defined; reference television: as the type's enumerator lists them
 */
typedef int (*qeltvapi_timeshift_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2);

/**
 * Changed configuration item that the application watches.
 *
 * @param type service-defined; reference television: QELTV_CONFIG_VALUE_CHANGED
 * @param arg1 service-defined; reference television: group of the item
 * @param name name of the item
 * @param arg2 service-defined; reference television: new value of a numeric item, signed
 * @param arg3 service-defined; reference television: 0
 * @param tag  service-defined; reference television: 0
 * @values group, value:signed
 */
typedef int (*qeltvapi_config_update_nfy_fct_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                                const char* name, uintptr_t arg2, uintptr_t arg3);

/**
 * Change of date or time.
 *
 * @param type service-defined; reference television: a QELTV_TIME_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1 service-defined; reference television: as the type's enumerator lists them
 */
typedef int (*qeltvapi_dt_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1);

/**
 * Event of the sleep timer.
 *
 * @param type service-defined; reference television: a QELTV_SLEEP_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1 service-defined; reference television: as the type's enumerator lists them
 */
typedef int (*qeltvapi_sleep_timer_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1);

/**
 * Change of the time source.
 *
 * @param type service-defined; reference television: a QELTV_SYNC_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1 service-defined; reference television: as the type's enumerator lists them
 */
typedef int (*qeltvapi_sync_source_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1);

/**
 * Event of power control.
 *
 * @param cond service-defined; reference television: a QELTV_POWER_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2 service-defined; reference television: as the type's enumerator lists them
 */
typedef int (*qeltvapi_pcl_cb_t)(uint32_t cond, uintptr_t tag, uint32_t arg1, uint32_t arg2);

/**
 * Change of ATSC events.
 *
 * @param type service-defined; reference television: a QELTV_ATSC_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_event_atsc_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                        uintptr_t arg3, uintptr_t arg4);

/**
 * Data that a UART received.
 *
 * @param tag  the tag of the opening
 * @param arg1 service-defined; reference television: handle of the UART
 * @param data the received bytes
 * @param len  number of bytes
 * @values handle
 */
typedef int (*qeltvapi_iom_notify_cb_t)(uintptr_t tag, uintptr_t arg1, const void* data,
                                        uint32_t len);

/**
 * Event of the TV application.
 *
 * @param type service-defined; reference television: a QELTV_APP_TV_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_apptv_callback_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                            uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/**
 * Event of the over-air download.
 *
 * @param type service-defined; reference television: a QELTV_OAD_STATE
 * @param text service-defined; reference television: version of the download
 * @param arg1 service-defined; reference television: progress in percent
 * @param flag service-defined; reference television: true for an automatic download
 * @param arg2 service-defined; reference television: the state, a QELTV_OAD_STATE
 * @param tag  service-defined; reference television: 0
 */
typedef int (*qeltvapi_oad_callback_fct_t)(int32_t type, uintptr_t tag, const char* text,
                                           int32_t arg1, bool flag, int32_t arg2);

/** HbbTV message. The reference television sends none. */
typedef int (*qeltvapi_hbbtv_msg_callback_fct_t)(int32_t type, uintptr_t tag, const void* data);

/**
 * Change of the audio information.
 *
 * @param type service-defined; reference television: a QELTV_AUDIO_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_audio_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/** MHEG-5 message. The reference television sends none. */
typedef int (*qeltvapi_mheg5_msg_cb_t)(int32_t type, uintptr_t tag, int32_t arg1, int32_t arg2,
                                       int32_t arg3);

/**
 * Launch of an HbbTV application by MHEG-5. The reference television sends none.
 *
 * @param location the application's location
 * @param tag  service-defined
 * @param arg1 service-defined
 */
typedef int (*qeltvapi_mheg5_launch_hbbtv_nfy_cb_t)(const char* location, uintptr_t tag,
                                                    int32_t arg1);

/**
 * Query whether a MIME type is supported. The reference television sends none.
 *
 * @param mime         the MIME type; valid during the call
 * @param pb_supported [out] non-zero when the type is supported; 0 on entry
 * @param tag          service-defined
 * @param arg1         service-defined
 * @return result code, which is sent to the service
 */
typedef int (*qeltvapi_mheg5_is_mime_type_support_cb_t)(const char* mime, uint8_t* pb_supported,
                                                        uintptr_t tag, int32_t arg1);

/**
 * State of a recording or booking.
 *
 * @param type service-defined; reference television: a QELTV_RECORDING_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2 service-defined; reference television: as the type's enumerator lists them
 */
typedef int (*qeltvapi_pvr_status_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                        uintptr_t arg2);

/**
 * Progress of a software upgrade.
 *
 * @param type service-defined; reference television: a QELTV_UPGRADE_STATE
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2 service-defined; reference television: as the type's enumerator lists them
 */
typedef int (*qeltvapi_upgrade_callback_fct_t)(int32_t type, int32_t arg1, int32_t arg2,
                                               uintptr_t tag);

/**
 * Change of a channel list.
 *
 * @param type service-defined; reference television: a CHANNEL_UPDATE_ value
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_channellist_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                                uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/**
 * Change of the channels of the TV provider.
 *
 * @param type service-defined; reference television: CHANNEL_UPDATE_CHANGED or
 *             CHANNEL_UPDATE_REMOVED
 * @param arg1 service-defined; reference television: list id, a CHANNEL_LIST_ value
 * @param arg2 service-defined; reference television: number of channels concerned
 * @param data service-defined; reference television: their record ids, 32 bits each
 * @param arg3 service-defined; reference television: version of the list
 * @param tag  service-defined; reference television: 0
 * @values list:CHANNEL_LIST_, channels, version
 */
typedef int (*qeltvapi_tvprovider_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1, uintptr_t arg2,
                                        const void* data, uintptr_t arg3);

/**
 * Change of the watched columns of the channel list.
 *
 * @param type service-defined; reference television: CHANNEL_UPDATE_CHANGED or
 *             CHANNEL_UPDATE_REMOVED
 * @param arg1 service-defined; reference television: list id, a CHANNEL_LIST_ value
 * @param arg2 service-defined; reference television: number of channels concerned
 * @param data service-defined; reference television: their record ids, 32 bits each
 * @param arg3 service-defined; reference television: version of the list
 * @param tag  service-defined; reference television: 0
 * @values list:CHANNEL_LIST_, channels, version
 */
typedef int (*qeltvapi_concern_column_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                            uintptr_t arg2, const void* data, uintptr_t arg3);

/**
 * Change of the service-list id.
 *
 * @param type service-defined; reference television: CHANNEL_UPDATE_LIST
 * @param arg1 service-defined; reference television: list id, a CHANNEL_LIST_ value
 * @param arg2 service-defined; reference television: version of the list
 * @param arg3 service-defined; reference television: number of its channels
 * @param tag  service-defined; reference television: 0
 * @param arg4 service-defined; reference television: 0
 * @values list:CHANNEL_LIST_, version, channels
 */
typedef int (*qeltvapi_svlid_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/**
 * Change of the transport-stream-list id.
 *
 * @param type service-defined; reference television: a CHANNEL_STREAM_UPDATE
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as the type's enumerator
 * lists them
 */
typedef int (*qeltvapi_tslid_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/**
 * Change of the list mode.
 *
 * @param type service-defined; reference television: CHANNEL_UPDATE_CHANGED
 * @param arg1 service-defined; reference television: list id, a CHANNEL_LIST_ value
 * @param tag  service-defined; reference television: 0
 * @param arg2 service-defined; reference television: 0
 * @values list:CHANNEL_LIST_
 */
typedef int (*qeltvapi_listmode_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                             uintptr_t arg2);

/** Scan information of the operator channel list. The reference television sends none. */
typedef int (*qeltvapi_ocl_scaninfo_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2);

/**
 * Change of the BISS keys, or use of one.
 *
 * @param type service-defined; reference television: CHANNEL_UPDATE_CHANGED (list id, records
 *             concerned, version of the list, record id when it is one) or CHANNEL_BISS_IN_USE
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4 service-defined; reference television: as listed for @p type
 * @values list:CHANNEL_LIST_, records, version, record
 */
typedef int (*qeltvapi_bisskey_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                            uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/**
 * Change of the satellite list.
 *
 * @param type service-defined; reference television: CHANNEL_UPDATE_CHANGED
 * @param arg1 service-defined; reference television: list id, a CHANNEL_LIST_ value
 * @param arg2 service-defined; reference television: number of records concerned
 * @param arg3 service-defined; reference television: version of the list
 * @param arg4 service-defined; reference television: record id when it is one record, else 0
 * @param tag  service-defined; reference television: 0
 * @values list:CHANNEL_LIST_, records, version, record
 */
typedef int (*qeltvapi_satllist_update_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                             uintptr_t arg2, uintptr_t arg3, uintptr_t arg4);

/**
 * Event of the emergency warning system, second flavour.
 *
 * @param type service-defined; reference television: a QELTV_WARNING_EVENT of a monitored area
 * @param tag  service-defined; reference television: 0
 */
typedef int (*qeltvapi_ewspa_msg_cb_t)(int32_t type, uintptr_t tag);

/**
 * Event of teletext.
 *
 * @param type service-defined; reference television: a QELTV_TELETEXT_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3 service-defined; reference television: as the type's enumerator lists
 * them
 */
typedef int (*qeltvapi_teletext_msg_cb_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                          uintptr_t arg2, uintptr_t arg3);

/**
 * Event of the Common Interface.
 *
 * @param nfy  low half of the notification's first tag; reference television: first value of the
 *             registration
 * @param tag  low half of its second tag; reference television: second value of the registration
 * @param cond service-defined; reference television: a QELTV_CI_CONDITION
 * @param data bytes of the event, a ::QELTVAPI_CI_MMI_ENQ_T or a ::QELTVAPI_CI_MMI_MENU_T, as the
 *             condition implies; valid during the call
 */
typedef int (*qeltvapi_ci_cb_t)(uint32_t nfy, uint32_t tag, int32_t cond, const void* data);

/** BML message. The reference television sends none. */
typedef int (*qeltvapi_bml_msg_callback_fct_t)(int32_t type, uintptr_t tag, const void* data);

/**
 * Message of the HTML agent.
 *
 * @param type service-defined; reference television: the kind that an application has posted
 * @param data service-defined; reference television: the posted words, 32 bits each
 * @param tag  service-defined; reference television: 0
 */
typedef int (*qeltvapi_html_agent_callback_fct_t)(int32_t type, uintptr_t tag, const void* data);

/**
 * Change of the video information.
 *
 * @param type service-defined; reference television: a QELTV_VIDEO_EVENT
 * @param tag  service-defined; reference television: 0
 * @param arg1, arg2, arg3, arg4, arg5, arg6 service-defined; reference television: as its
 * enumerator lists them
 */
typedef int (*qeltvapi_video_common_nfy_fct_t)(int32_t type, uintptr_t tag, uintptr_t arg1,
                                               uintptr_t arg2, uintptr_t arg3, uintptr_t arg4,
                                               uintptr_t arg5, uintptr_t arg6);

/** Text-to-speech message. The reference television sends none. */
typedef int (*qeltvapi_tts_msg_callback_fct_t)(uintptr_t tag, const char* data, uint32_t len);

/**
 * Message of the metadata service.
 *
 * @param data service-defined; reference television: "operator=NAME" after a change
 * @param len  length of the text in bytes, as the service sends it
 * @param tag  service-defined; reference television: 0
 */
typedef int (*qeltvapi_mds_msg_callback_fct_t)(uintptr_t tag, const char* data, uint32_t len);

/**
 * Event of the emergency warning system.
 *
 * @param type service-defined; reference television: a QELTV_WARNING_EVENT
 * @param tag  service-defined; reference television: 0
 */
typedef int (*qeltvapi_ews_msg_cb_t)(int32_t type, uintptr_t tag);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CALLBACK_TYPES_H */
