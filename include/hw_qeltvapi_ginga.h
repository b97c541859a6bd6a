/**
 * Notifications of Ginga applications. The functions make no transaction and do not register the
 * callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 */
#ifndef HW_QELTVAPI_GINGA_H
#define HW_QELTVAPI_GINGA_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for events of the applications, replacing the previous one.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_ginga_register_callback(qeltvapi_ginga_app_cb_t fn);

/**
 * Registers the callback for volume changes that an application requests, replacing the previous
 * one.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_ginga_volume_register_callback(qeltvapi_ginga_volume_cb_t fn);

/**
 * Registers the callback for changes of the list of applications, replacing the previous one.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_ginga_update_register_callback(qeltvapi_ginga_update_cb_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_GINGA_H */
