/**
 * The emergency warning system with its monitor instances.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure, except the first two functions, which make no transaction. The missing service
 * is not logged.
 */
#ifndef HW_QELTVAPI_EWS_PA_H
#define HW_QELTVAPI_EWS_PA_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for warnings, replacing the previous one. It does not register the
 * callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_ewspa_reg_msg_callback(qeltvapi_ewspa_msg_cb_t fn);

/**
 * Does nothing; kept for programs that link against it.
 *
 * @return 0
 */
int c_rpc_reg_qeltvapi_ews_pa_cb_hndlrs(void);

/**
 * Writes an array of values.
 *
 * @param a     service-defined; reference television: a QELTV_WARNING_ITEM
 * @param b     service-defined; reference television: for QELTV_WARNING_CANCEL number of the
 *              warning, else ignored
 * @param data  [in,out] the values; then the service's answer, all of it, not bounded by @p count;
 *              reference television: the values as sent, for QELTV_WARNING_RAISE with the number of
 *              the warning in front
 * @param count number of 32-bit values that are sent
 * @return the service's code
 */
int a_qeltvapi_ewspa_set(uint32_t a, uint32_t b, int32_t* data, uint32_t count);

/**
 * Reads an array of values.
 *
 * @param a     service-defined; reference television: a QELTV_WARNING_ITEM
 * @param b     service-defined; reference television: for QELTV_WARNING_LIST the monitored area, 0
 *              for every area; else ignored
 * @param data  [in,out] values that are sent; then the answer, all of it, not bounded by @p count;
 *              reference television: at most @p count values
 * @param count number of 32-bit values that are sent; reference television: the capacity of @p data
 * @return the service's code
 */
int a_qeltvapi_ewspa_get(uint32_t a, uint32_t b, int32_t* data, uint32_t count);

/**
 * Creates a monitor instance.
 *
 * @param value which instance; reference television: area to monitor; at most
 *              QELTV_WARNING_MONITOR_LIMIT areas
 * @return the service's code
 */
int a_qeltvapi_ewspa_create_monitor_inst(uint32_t value);

/**
 * Deletes a monitor instance.
 *
 * @param value which instance; reference television: area that is monitored
 * @return the service's code
 */
int a_qeltvapi_ewspa_delete_monitor_inst(uint32_t value);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_EWS_PA_H */
