/**
 * Notification of unused keys, and the closing of an earlier RPC client. Asks no service, and does
 * not ask for the callback object to be registered either (see registerCallbackHandler()).
 */
#ifndef HW_QELTVAPI_UTIL_H
#define HW_QELTVAPI_UTIL_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of keys that nobody used, in place of the one before.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_util_register_nousedkey_callback(qeltvapi_nousedkey_cb_t fn);

/**
 * Writes one line to the log, regardless of the debug switch, and closes nothing; kept for callers
 * that link against it.
 *
 * @return what the log call returned
 */
int a_rpc_close_client(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_UTIL_H */
