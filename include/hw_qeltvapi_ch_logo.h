/**
 * Notification of channel logos.
 *
 * Asks no service, and does not ask for the callback object to be registered either
 * (see registerCallbackHandler()).
 */
#ifndef HW_QELTVAPI_CH_LOGO_H
#define HW_QELTVAPI_CH_LOGO_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of new data of channel logos, in place of the one before.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_ch_logo_reg_callback(qeltvapi_channel_logo_data_update_callback_cb_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CH_LOGO_H */
