/**
 * Notification of emergency warnings. The functions make no transaction.
 */
#ifndef HW_QELTVAPI_EWS_H
#define HW_QELTVAPI_EWS_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for emergency warnings, replacing the previous one. It does not register
 * the callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_ews_reg_msg_callback(qeltvapi_ews_msg_cb_t fn);

/**
 * Writes an empty line to the log, regardless of the debug switch, and does nothing else; kept for
 * programs that link against it.
 *
 * @return 0
 */
int c_rpc_reg_qeltvapi_ews_cb_hndlrs(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_EWS_H */
