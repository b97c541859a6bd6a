/**
 * Notification of unused keys, and the closing of an earlier RPC client. The functions make no
 * transaction.
 */
#ifndef HW_QELTVAPI_UTIL_H
#define HW_QELTVAPI_UTIL_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for keys that the television does not use itself, replacing the previous
 * one. It does not register the callback object with the service;
 * a_qeltvapi_channellist_register_callback(), for example, requests that (all:
 * hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_util_register_nousedkey_callback(qeltvapi_nousedkey_cb_t fn);

/**
 * Writes one line to the log, regardless of the debug switch, and closes nothing; kept for programs
 * that link against it.
 *
 * @return the log call's result
 */
int a_rpc_close_client(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_UTIL_H */
