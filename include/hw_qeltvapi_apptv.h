/**
 * Control channel of the live-TV application: start and stop, system status, unlocking, video mute,
 * capabilities, and notification of the application's events.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure, except of a_qeltvapi_apptv_get_video_mute(). The missing service is logged
 * regardless of the debug switch.
 *
 * A path names a video path; texts are terminated and null counts as "". Statuses and capabilities
 * are service-defined. Reference television: paths "main" (also "") and "sub".
 */
#ifndef HW_QELTVAPI_APPTV_H
#define HW_QELTVAPI_APPTV_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for the application's events, replacing the previous one, and requests the
 * registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_apptv_register_callback(qeltvapi_apptv_callback_cb_t fn);

/**
 * Stores a time stamp.
 *
 * @param tag name of the time stamp; reference television: only logged
 * @return the service's code
 */
int a_qeltvapi_apptv_save_timestamp(const char* tag);

/**
 * Reports to the service whether the TV application has started.
 *
 * @param started 0 if not, any other value if it has
 * @return the service's code
 */
int a_qeltvapi_apptv_set_tv_started(int started);

/**
 * Unlocks the service of a path.
 *
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_apptv_unlock_service(const char* path);

/**
 * Finds the channel that matches a number.
 *
 * @param number channel number, of which the low 16 bits are sent as a signed number: 40000 arrives
 *               as -25536; reference television: major number
 * @param p2     0 for false, any other value for true; reference television: true for exactly this
 *               number, false for the next one above it, too
 * @param p3     service-defined; reference television: list id, CHANNEL_LIST_; 0 for the current
 *               list
 * @param p4     service-defined; reference television: minor number, 0 for a number of one part
 * @return the service's answer; reference television: the channel id
 */
int a_qeltvapi_apptv_get_matched_channel(int32_t number, int p2, int32_t p3, int32_t p4);

/**
 * Updates the system status of one path.
 *
 * @param path   video path
 * @param status service-defined; reference television: any value; the notification
 *               QELTV_APP_TV_STATUS has it
 * @return the service's code
 */
int a_qeltvapi_apptv_nav_update_sys_status_by_win(const char* path, int32_t status);

/**
 * Updates the system status.
 *
 * @param status service-defined; reference television: any value; a notification
 *               QELTV_APP_TV_STATUS for each path has it
 * @return the service's code
 */
int a_qeltvapi_apptv_update_sys_status(int32_t status);

/**
 * Starts TV.
 *
 * @return the service's code
 */
int a_qeltvapi_apptv_start_tv(void);

/**
 * Stops all video paths.
 *
 * @return the service's code
 */
int a_qeltvapi_apptv_stop_all(void);

/**
 * Reads the length of the current channel's service text.
 *
 * @return the length in bytes; reference television: at most 137
 */
int a_qeltvapi_apptv_get_current_channel_svc_text_len(void);

/**
 * Reads the current channel's service text.
 *
 * @param buf [out] the text, without a terminating zero; not bounded by the buffer's size: size it
 *            by a_qeltvapi_apptv_get_current_channel_svc_text_len() and clear it; reference
 *            television: at most @p p2 bytes, 137 at most
 * @param p2  service-defined; reference television: capacity of @p buf in bytes, 0 for the whole
 *            text
 * @return the service's code
 */
int a_qeltvapi_apptv_get_current_channel_svc_text(char* buf, int32_t p2);

/**
 * Unblocks the service of a path, or blocks it again.
 *
 * @param path video path
 * @param p2   0 for false, any other value for true; reference television: true to unblock
 * @return the service's code
 */
int a_qeltvapi_apptv_unblock_svc(const char* path, int p2);

/**
 * Swaps the temporary unlock information.
 *
 * @param p1 service-defined; reference television: ignored
 * @return the service's code
 */
int a_qeltvapi_apptv_swap_tmp_unlock_info(int32_t p1);

/**
 * Mutes or unmutes the video of a path.
 *
 * @param path video path
 * @param mute 0 to unmute, any other value to mute
 * @return the service's code
 */
int a_qeltvapi_apptv_set_video_mute(const char* path, int mute);

/**
 * Reads a capability.
 *
 * @param id    service-defined; reference television: a QELTV_CAPABILITY
 * @param value [out] its value
 * @return the service's code
 */
int a_qeltvapi_apptv_get_capability_ex(int32_t id, uint32_t* value);

/**
 * Reports whether the video of a path is muted.
 *
 * @param path video path
 * @return 1 or 0; 0 without a service and after a transport failure
 */
int a_qeltvapi_apptv_get_video_mute(const char* path);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_APPTV_H */
