/**
 * Notifications of MHEG-5. The functions make no transaction and do not register the callback
 * object with the service; a_qeltvapi_channellist_register_callback(), for example, requests that
 * (all: hw_qeltvapi_callback_types.h).
 */
#ifndef HW_QELTVAPI_MHEG5_H
#define HW_QELTVAPI_MHEG5_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for MHEG-5 messages, replacing the previous one.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_mheg5_register_msg_callback(qeltvapi_mheg5_msg_cb_t fn);

/**
 * Registers the callback for HbbTV applications that MHEG-5 launches, replacing the previous one.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_mheg5_reg_launch_hbbtv_nfy(qeltvapi_mheg5_launch_hbbtv_nfy_cb_t fn);

/**
 * Registers the callback that answers whether a MIME type is supported, replacing the previous one.
 * Without a callback the library answers "not supported" and -1.
 *
 * @param a  ignored
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_mheg5_reg_is_mime_type_support_fct(uint32_t a,
                                                  qeltvapi_mheg5_is_mime_type_support_cb_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_MHEG5_H */
