/**
 * Notification of HbbTV messages. It makes no transaction.
 */
#ifndef HW_QELTVAPI_HBBTV_H
#define HW_QELTVAPI_HBBTV_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for HbbTV messages, replacing the previous one. It does not register the
 * callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_hbbtv_reg_msg_callback(qeltvapi_hbbtv_msg_callback_fct_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_HBBTV_H */
