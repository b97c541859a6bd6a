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
 * Kept for old callers: takes any arguments, closes nothing, and writes one line to the log,
 * whatever the debug switch.
 *
 * @return what the log call returned
 */
int a_rpc_close_client(QELTVAPI_ANY_ARGS);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_UTIL_H */
