/**
 * The emergency alert system: the state of the alert, and the state of the alert screen.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_EAS_H
#define HW_QELTVAPI_EAS_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for alerts, replacing the previous one, and requests the registration of
 * the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0, regardless of the outcome of that registration
 */
int a_qeltvapi_eas_reg_callback(qeltvapi_eas_callback_cb_t fn);

/**
 * Reads the state of the alert. While debugging, the four values are traced on every return and
 * must then be readable even if the call fails.
 *
 * @param pi4_eas_type           [out] alert type; reference television: a QELTV_ALERT_TYPE
 * @param pi4_eas_channel_change [out] channel-change flag; reference television: 1 if the
 *                               television changes to the channel with details, else 0
 * @param pi4_arg1               [out] service-defined; reference television: channel id of the
 *                               channel with details, 0 for none
 * @param pi4_arg2               [out] service-defined; reference television: area in which the
 *                               alert holds, 0 for everywhere
 * @return the service's code
 */
int a_qeltvapi_eas_get_status(int32_t* pi4_eas_type, int32_t* pi4_eas_channel_change,
                              int32_t* pi4_arg1, int32_t* pi4_arg2);

/**
 * Reports to the service whether the alert screen is launched.
 *
 * @param b_enter 1 if it is; any other value counts as false
 * @return the service's code
 */
int a_qeltvapi_eas_set_android_launch_status(int32_t b_enter);

/**
 * Reports whether the alert screen is launched.
 *
 * @return 1 or 0; 0 without a service and after a transport failure
 */
int a_qeltvapi_eas_get_android_launch_status(void);

/**
 * Reports to the service whether the alert is left without a channel change.
 *
 * @param b_enter 1 if it is; any other value counts as false
 * @return the service's code
 */
int a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(int32_t b_enter);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_EAS_H */
