/**
 * Over-air download of software: schedule, detection, download, flashing and the user's answers.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged. Pointers are not checked for null.
 */
#ifndef HW_QELTVAPI_OAD_H
#define HW_QELTVAPI_OAD_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for events of the download, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_oad_register_callback(qeltvapi_oad_callback_fct_t fn);

/**
 * Reads the schedule as text.
 *
 * @param buf [out] the text, cut to @p len bytes, without a terminating zero; a shorter text leaves
 *            the rest as it is; reference television: at most 63 bytes
 * @param len the buffer's size at @p buf in bytes
 * @return the service's code
 */
int a_qeltvapi_oad_get_scheduleinfo(char* buf, uint32_t len);

/**
 * Reads information on the data as text.
 *
 * @param value which information; reference television: a QELTV_OAD_TEXT
 * @param buf   [out] the text, cut to @p len bytes, without a terminating zero; a shorter text
 *              leaves the rest as it is
 * @param len   the buffer's size at @p buf in bytes
 * @return the service's code
 */
int a_qeltvapi_oad_get_datainfo(uint32_t value, char* buf, uint32_t len);

/**
 * Stops the detection that the user started.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_stop_manual_detect(void);

/**
 * Starts the download.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_start_download(void);

/**
 * Stops the download.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_stop_download(void);

/**
 * Switches the automatic download on or off.
 *
 * @param flag 0 for off, any other value for on
 * @return the service's code
 */
int a_qeltvapi_oad_set_auto_download(int flag);

/**
 * Starts to flash the download.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_start_flash(void);

/**
 * Sends the user's consent to the restart.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_accept_restart(void);

/**
 * Sends the user's wish for a later reminder.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_remind_me_later(void);

/**
 * Sends the user's consent to the schedule.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_accept_schedule(void);

/**
 * Changes to the channel that carries the download.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_start_jump_channel(void);

/**
 * Reads the status of the download at power-on.
 *
 * @return the service's answer; reference television: a QELTV_OAD_POWER_ON
 */
int a_qeltvapi_oad_get_power_on_status(void);

/**
 * Sets the path of the package file.
 *
 * @param path the path, null counts as ""; reference television: absolute, at most 4096 bytes
 * @return the service's code
 */
int a_qeltvapi_set_pkg_pathname(const char* path);

/**
 * Clears the recorded version.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_clear_version(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_OAD_H */
