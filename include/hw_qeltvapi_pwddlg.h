/**
 * The dialog for the parental PIN.
 *
 * Results: each function says what it returns without a service and after a transport failure; the
 * missing service is not logged.
 *
 * The service compares the PIN; the library neither keeps nor logs it.
 */
#ifndef HW_QELTVAPI_PWDDLG_H
#define HW_QELTVAPI_PWDDLG_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for events of the dialog, replacing the previous one. It does not register
 * the callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_pwddlg_register_msg_callback(qeltvapi_pwddlg_cb_t fn);

/**
 * Checks a PIN.
 *
 * @param pin the PIN as the user entered it; null counts as ""; reference television: 4 to 8 digits
 * @return the low 8 bits of the service's answer (reference television: a QELTV_PIN_ANSWER); 255
 *         without a service and after a transport failure
 */
uint8_t a_qeltvapi_PWDDLG_checkPWD(const char* pin);

/**
 * Shows the dialog.
 *
 * @return the service's code; -1 without a service and after a transport failure
 */
int a_qeltvapi_PWDDLG_show(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_PWDDLG_H */
