/**
 * The metadata service.
 *
 * The functions but a_qeltvapi_mds_reg_msg_callback() ask IQelTvApi and return -1 when the service
 * is not there and -1 after a lost reply. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_MDS_H
#define HW_QELTVAPI_MDS_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of messages of the metadata service, in place of the one before.
 * Asks no service, and does not ask for the callback object to be registered either (see
 * registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_mds_reg_msg_callback(qeltvapi_mds_msg_callback_fct_t fn);

/**
 * Hands an operator text to the metadata service. Asks method 250.
 *
 * @param s the text; its meaning is the service's; null counts as ""
 * @return the service's code
 */
int a_qeltvapi_mds_fvpMtdtOperator(const char* s);

/**
 * Reads a value as text.
 *
 * Asks method 251. While debugging, the text at @p out is traced after the call, so it must then
 * be terminated: clear the buffer before.
 *
 * @param key   which value; null counts as ""
 * @param out   [out] the text, without a terminating zero and whatever the room
 * @param value passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_mds_getValue(const char* key, char* out, uint32_t value);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_MDS_H */
