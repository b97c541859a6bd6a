/**
 * Notification of channel logos. It makes no transaction.
 */
#ifndef HW_QELTVAPI_CH_LOGO_H
#define HW_QELTVAPI_CH_LOGO_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for new data of channel logos, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_ch_logo_reg_callback(qeltvapi_channel_logo_data_update_callback_cb_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CH_LOGO_H */
