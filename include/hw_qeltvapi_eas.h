/**
 * The emergency alert system: the state of the alert, and the state of the alert screen.
 *
 * The functions ask IQelTvApi and return -1 when the service is not there and -1 after a lost
 * reply, except a_qeltvapi_eas_get_android_launch_status(). The missing service is not logged.
 */
#ifndef HW_QELTVAPI_EAS_H
#define HW_QELTVAPI_EAS_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of alerts, in place of the one before, and asks for the callback
 * object to be registered with the service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0, whatever becomes of the registration
 */
int a_qeltvapi_eas_reg_callback(qeltvapi_eas_callback_cb_t fn);

/**
 * Reads the state of the alert.
 *
 * Asks method 66. While debugging, the four values are traced on every return, so they must then
 * be readable even when the call fails.
 *
 * @param pi4_eas_type           [out] alert type
 * @param pi4_eas_channel_change [out] channel-change flag
 * @param pi4_arg1               [out] first argument of the alert
 * @param pi4_arg2               [out] second argument of the alert
 * @return the service's code
 */
int a_qeltvapi_eas_get_status(int32_t* pi4_eas_type, int32_t* pi4_eas_channel_change,
                              int32_t* pi4_arg1, int32_t* pi4_arg2);

/**
 * Tells the service whether the alert screen is launched. Asks method 67.
 *
 * @param b_enter 1 when it is; every other value counts as false
 * @return the service's code
 */
int a_qeltvapi_eas_set_android_launch_status(int32_t b_enter);

/**
 * Asks whether the alert screen is launched. Asks method 68.
 *
 * @return 1 when it is, else 0; also 0 when the service is not there and after a lost reply
 */
int a_qeltvapi_eas_get_android_launch_status(void);

/**
 * Tells the service whether the alert is left without a channel change. Asks method 69.
 *
 * @param b_enter 1 when it is; every other value counts as false
 * @return the service's code
 */
int a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(int32_t b_enter);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_EAS_H */
