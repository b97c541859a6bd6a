/**
 * Control channel of the live-TV application: start and stop, system status, unlocking, video
 * mute, capabilities, and notification of the application's events.
 *
 * The functions ask IQelTvApi, but for the registration, and return -1 when the service is not
 * there and -1 after a lost reply, except a_qeltvapi_apptv_get_video_mute(). The missing service
 * is logged whatever the debug switch.
 *
 * A path names a video path; texts end with a zero and null counts as "". The values of statuses
 * and capabilities are the service's.
 */
#ifndef HW_QELTVAPI_APPTV_H
#define HW_QELTVAPI_APPTV_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of the application's events, in place of the one before, and asks
 * for the callback object to be registered (see registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_apptv_register_callback(qeltvapi_apptv_callback_cb_t fn);

/**
 * Records a time stamp. Asks method 176.
 *
 * @param tag name of the time stamp
 * @return the service's code
 */
int a_qeltvapi_apptv_save_timestamp(const char* tag);

/**
 * Reports whether the TV application has started. Asks method 177.
 *
 * @param started any value but 0 when it has
 * @return the service's code
 */
int a_qeltvapi_apptv_set_tv_started(int started);

/**
 * Unlocks the service of a path. Asks method 178.
 *
 * @param path the path
 * @return the service's code
 */
int a_qeltvapi_apptv_unlock_service(const char* path);

/**
 * Looks for the channel that matches a number. Asks method 179.
 *
 * @param number channel number, of which the low 16 bits are sent as a signed number: 40000
 *               arrives as -25536
 * @param p2     passed to the service as a truth: any value but 0 is true
 * @param p3     passed to the service unchanged
 * @param p4     passed to the service unchanged
 * @return the service's answer
 */
int a_qeltvapi_apptv_get_matched_channel(int32_t number, int p2, int32_t p3, int32_t p4);

/**
 * Updates the system status of one path. Asks method 180.
 *
 * @param path   the path
 * @param status the status
 * @return the service's code
 */
int a_qeltvapi_apptv_nav_update_sys_status_by_win(const char* path, int32_t status);

/**
 * Updates the system status. Asks method 181.
 *
 * @param status the status
 * @return the service's code
 */
int a_qeltvapi_apptv_update_sys_status(int32_t status);

/**
 * Starts TV. Asks method 182.
 *
 * @return the service's code
 */
int a_qeltvapi_apptv_start_tv(void);

/**
 * Stops everything. Asks method 183.
 *
 * @return the service's code
 */
int a_qeltvapi_apptv_stop_all(void);

/**
 * Reads the length of the current channel's service text. Asks method 184.
 *
 * @return the length in bytes
 */
int a_qeltvapi_apptv_get_current_channel_svc_text_len(void);

/**
 * Reads the current channel's service text. Asks method 185.
 *
 * @param buf [out] the text, without a terminating zero and whatever the room: size it by
 *            a_qeltvapi_apptv_get_current_channel_svc_text_len() and clear it
 * @param p2  passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_apptv_get_current_channel_svc_text(char* buf, int32_t p2);

/**
 * Unblocks the service of a path. Asks method 186.
 *
 * @param path the path
 * @param p2   passed to the service as a truth: any value but 0 is true
 * @return the service's code
 */
int a_qeltvapi_apptv_unblock_svc(const char* path, int p2);

/**
 * Swaps the temporary unlock information. Asks method 187.
 *
 * @param p1 passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_apptv_swap_tmp_unlock_info(int32_t p1);

/**
 * Mutes or unmutes the video of a path. Asks method 188.
 *
 * @param path the path
 * @param mute any value but 0 mutes
 * @return the service's code
 */
int a_qeltvapi_apptv_set_video_mute(const char* path, int mute);

/**
 * Reads a capability. Asks method 189.
 *
 * @param id    which one
 * @param value [out] its value
 * @return the service's code
 */
int a_qeltvapi_apptv_get_capability_ex(int32_t id, uint32_t* value);

/**
 * Tells whether the video of a path is muted. Asks method 190.
 *
 * @param path the path
 * @return 1 when it is; 0 when it is not, when the service is not there and after a lost reply
 */
int a_qeltvapi_apptv_get_video_mute(const char* path);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_APPTV_H */
