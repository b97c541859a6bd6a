/**
 * Notifications of Ginga applications.
 *
 * Asks no service, and does not ask for the callback object to be registered either
 * (see registerCallbackHandler()).
 */
#ifndef HW_QELTVAPI_GINGA_H
#define HW_QELTVAPI_GINGA_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of events of the applications, in place of the one before.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_ginga_register_callback(qeltvapi_ginga_app_cb_t fn);

/**
 * Sets the function that is told of volume changes that an application asks for, in place of the
 * one before.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_ginga_volume_register_callback(qeltvapi_ginga_volume_cb_t fn);

/**
 * Sets the function that is told of changes of the list of applications, in place of the one
 * before.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_ginga_update_register_callback(qeltvapi_ginga_update_cb_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_GINGA_H */
