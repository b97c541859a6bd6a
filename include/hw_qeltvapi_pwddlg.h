/**
 * The dialog that asks for the parental PIN.
 *
 * Every function but a_qeltvapi_pwddlg_register_msg_callback() asks IQelTvApi. The missing service
 * is not logged. The PIN is judged by the service; the library neither keeps nor logs it.
 */
#ifndef HW_QELTVAPI_PWDDLG_H
#define HW_QELTVAPI_PWDDLG_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of events of the dialog, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either (see
 * registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_pwddlg_register_msg_callback(qeltvapi_pwddlg_cb_t fn);

/**
 * Has a PIN judged. Asks method 117.
 *
 * @param pin the PIN as the user typed it; null counts as ""
 * @return the low 8 bits of the service's answer; 255 when the service is not there and after a
 *         lost reply
 */
uint8_t a_qeltvapi_PWDDLG_checkPWD(const char* pin);

/**
 * Shows the dialog. Asks method 118.
 *
 * @return the service's code; -1 when the service is not there and after a lost reply
 */
int a_qeltvapi_PWDDLG_show(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_PWDDLG_H */
