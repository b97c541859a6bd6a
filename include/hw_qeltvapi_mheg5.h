/**
 * Notifications of MHEG-5.
 *
 * Asks no service, and does not ask for the callback object to be registered either
 * (see registerCallbackHandler()).
 */
#ifndef HW_QELTVAPI_MHEG5_H
#define HW_QELTVAPI_MHEG5_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of MHEG-5 messages, in place of the one before.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_mheg5_register_msg_callback(qeltvapi_mheg5_msg_cb_t fn);

/**
 * Sets the function that is told of HbbTV applications that MHEG-5 launches, in place of the one
 * before.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_mheg5_reg_launch_hbbtv_nfy(qeltvapi_mheg5_launch_hbbtv_nfy_cb_t fn);

/**
 * Sets the function that answers whether a MIME type is supported, in place of the one before.
 * While there is none the service is told "not supported" and -1.
 *
 * @param a  ignored
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_mheg5_reg_is_mime_type_support_fct(uint32_t a,
                                                  qeltvapi_mheg5_is_mime_type_support_cb_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_MHEG5_H */
