/**
 * High-level notifications, and questions of the service to the Android side. Asks no service.
 */
#ifndef HW_QELTVAPI_HIGHLEVEL_H
#define HW_QELTVAPI_HIGHLEVEL_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of high-level events, in place of the one before, and asks for
 * the callback object to be registered with the service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0, whatever becomes of the registration
 */
int a_qeltvapi_highlevel_register_callback(qeltvapi_highlevel_cb_t fn);

/**
 * Sets the function that answers the service's questions to the Android side, in place of the one
 * before. While there is none they are answered with 0 and no data. Does not ask for the callback
 * object to be registered.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_highlevel_register_android_responser(qeltvapi_highlevel_query_cb_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_HIGHLEVEL_H */
