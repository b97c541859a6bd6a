/**
 * The emergency warning system with its monitor instances.
 *
 * The functions ask IQelTvApi and return -1 when the service is not there and -1 after a lost
 * reply, except the first two. The missing service is not logged. The meaning of the values is the
 * service's.
 */
#ifndef HW_QELTVAPI_EWS_PA_H
#define HW_QELTVAPI_EWS_PA_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of warnings, in place of the one before. Asks no service, and does
 * not ask for the callback object to be registered either (see registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_ewspa_reg_msg_callback(qeltvapi_ewspa_msg_cb_t fn);

/**
 * Does nothing; kept for callers that link against it.
 *
 * @return 0
 */
int c_rpc_reg_qeltvapi_ews_pa_cb_hndlrs(void);

/**
 * Writes an array of values. Asks method 227.
 *
 * @param a     passed to the service unchanged
 * @param b     passed to the service unchanged
 * @param data  [in] the values, [out] the service's answer, all of it, even beyond @p count
 * @param count number of values that are sent
 * @return the service's code
 */
int a_qeltvapi_ewspa_set(uint32_t a, uint32_t b, int32_t* data, uint32_t count);

/**
 * Reads an array of values. Asks method 228.
 *
 * @param a     passed to the service unchanged
 * @param b     passed to the service unchanged
 * @param data  [in] what is sent along, [out] the values, all of them, even beyond @p count
 * @param count number of values that are sent
 * @return the service's code
 */
int a_qeltvapi_ewspa_get(uint32_t a, uint32_t b, int32_t* data, uint32_t count);

/**
 * Creates a monitor instance. Asks method 229.
 *
 * @param value which instance, passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_ewspa_create_monitor_inst(uint32_t value);

/**
 * Deletes a monitor instance. Asks method 230.
 *
 * @param value which instance, passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_ewspa_delete_monitor_inst(uint32_t value);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_EWS_PA_H */
