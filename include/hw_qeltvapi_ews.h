/**
 * Notification of emergency warnings. Asks no service, and does not ask for the callback object to
 * be registered either (see registerCallbackHandler()).
 */
#ifndef HW_QELTVAPI_EWS_H
#define HW_QELTVAPI_EWS_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of emergency warnings, in place of the one before.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_ews_reg_msg_callback(qeltvapi_ews_msg_cb_t fn);

/**
 * Writes an empty line to the log, regardless of the debug switch, and does nothing else; kept for
 * callers that link against it.
 *
 * @return 0
 */
int c_rpc_reg_qeltvapi_ews_cb_hndlrs(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_EWS_H */
