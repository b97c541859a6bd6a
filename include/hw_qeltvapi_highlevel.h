/**
 * High-level notifications, and queries of the service to the Android side. The functions make no
 * transaction.
 */
#ifndef HW_QELTVAPI_HIGHLEVEL_H
#define HW_QELTVAPI_HIGHLEVEL_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for high-level events, replacing the previous one, and requests the
 * registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0, regardless of the outcome of that registration
 */
int a_qeltvapi_highlevel_register_callback(qeltvapi_highlevel_cb_t fn);

/**
 * Registers the callback that answers the service's queries to the Android side, replacing the
 * previous one. Without a callback the library answers 0 and no data. It does not register the
 * callback object with the service; a_qeltvapi_highlevel_register_callback(), for example, requests
 * that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_highlevel_register_android_responser(qeltvapi_highlevel_query_cb_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_HIGHLEVEL_H */
