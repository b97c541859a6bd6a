/**
 * Over-air download of software: schedule, detection, download, flashing and the user's answers.
 *
 * Every function but a_qeltvapi_oad_register_callback() asks IQelTvApi and returns -1 when the
 * service is not there and -1 after a lost reply. The missing service is not logged. No pointer is
 * tested for null.
 */
#ifndef HW_QELTVAPI_OAD_H
#define HW_QELTVAPI_OAD_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of events of the download, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either (see
 * registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_oad_register_callback(qeltvapi_oad_callback_fct_t fn);

/**
 * Reads the schedule as text. Asks method 192.
 *
 * @param buf [out] the text, cut to @p len bytes, without a terminating zero; a shorter one leaves
 *            the rest as it is
 * @param len the room at @p buf in bytes
 * @return the service's code
 */
int a_qeltvapi_oad_get_scheduleinfo(char* buf, uint32_t len);

/**
 * Reads information on the data as text. Asks method 193.
 *
 * @param value which information, passed to the service unchanged
 * @param buf   [out] the text, cut to @p len bytes, without a terminating zero; a shorter one
 *              leaves the rest as it is
 * @param len   the room at @p buf in bytes
 * @return the service's code
 */
int a_qeltvapi_oad_get_datainfo(uint32_t value, char* buf, uint32_t len);

/**
 * Stops the detection that the user started. Asks method 194.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_stop_manual_detect(void);

/**
 * Starts the download. Asks method 195.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_start_download(void);

/**
 * Stops the download. Asks method 196.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_stop_download(void);

/**
 * Switches the automatic download on or off. Asks method 197.
 *
 * @param flag off when 0, on otherwise
 * @return the service's code
 */
int a_qeltvapi_oad_set_auto_download(int flag);

/**
 * Starts flashing what was downloaded. Asks method 198.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_start_flash(void);

/**
 * Answers that the user accepts the restart. Asks method 199.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_accept_restart(void);

/**
 * Answers that the user wants to be reminded later. Asks method 200.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_remind_me_later(void);

/**
 * Answers that the user accepts the schedule. Asks method 201.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_accept_schedule(void);

/**
 * Jumps to the channel that carries the download. Asks method 202.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_start_jump_channel(void);

/**
 * Reads the status of the download at power-on. Asks method 203.
 *
 * @return the service's answer
 */
int a_qeltvapi_oad_get_power_on_status(void);

/**
 * Sets the path of the package file. Asks method 204.
 *
 * @param path the path; null counts as ""
 * @return the service's code
 */
int a_qeltvapi_set_pkg_pathname(const char* path);

/**
 * Clears the recorded version. Asks method 205.
 *
 * @return the service's code
 */
int a_qeltvapi_oad_clear_version(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_OAD_H */
