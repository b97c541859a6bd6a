/**
 * Notification of warnings.
 *
 * Asks no service, and does not ask for the callback object to be registered either
 * (see registerCallbackHandler()).
 */
#ifndef HW_QELTVAPI_WARNING_H
#define HW_QELTVAPI_WARNING_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of warnings, in place of the one before.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_warning_register_msg_callback(qeltvapi_warning_cb_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_WARNING_H */
