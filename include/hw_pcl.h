/**
 * Power control: wake-up and power-down reasons, power-down and suspend, GPIO lines, the wake-up
 * setup, and notification of power events.
 *
 * Results: the service's code; -1 without a service and after a transport failure. A null output
 * gives -1 too, without a transaction, except for the data of a reason, where each function says
 * what it does. The missing service and the null output are logged while debugging.
 *
 * The values of reasons, keys and setups and the size of a reason's data are service-defined.
 * Reference television: 4 bytes of data, and none before a reason was set with data.
 */
#ifndef HW_PCL_H
#define HW_PCL_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Remote-control key of a wake-up. */
typedef struct {
    /** service-defined; reference television: protocol of the remote control */
    uint32_t first;
    uint32_t second; /**< service-defined; reference television: key code */
} qeltvapi_pcl_wakeup_key_t;

/** Switch of the monitoring of a GPIO line. */
typedef struct {
    uint32_t value; /**< service-defined; reference television: the line, 0 to 63 */
    uint8_t on;     /**< 0 for off, any other value for on */
} qeltvapi_pcl_gpio_monitor_ctrl_t;

/**
 * Registers the callback for power events, replacing the previous one. It does not register the
 * callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param a  ignored
 * @param fn the callback; null to remove it
 * @return 0
 */
int c_pcl_reg_nfy_fct(uint32_t a, qeltvapi_pcl_cb_t fn);

/**
 * Removes the callback of c_pcl_reg_nfy_fct(). It makes no transaction.
 *
 * @return 0
 */
int c_pcl_dereg_nfy_fct(void);

/**
 * Reads the reason of the last wake-up.
 *
 * @param reason [out] the reason; reference television: a QELTV_WAKE_REASON
 * @param data   [out] optional: the reason's data, as many bytes as the service sends, not bounded
 *               by the buffer's size; reference television: at most 4 bytes
 * @return the service's code
 */
int c_pcl_get_wakeup_reason(uint32_t* reason, void* data);

/**
 * Stores the reason of the last wake-up.
 *
 * @param reason the reason; reference television: a QELTV_WAKE_REASON
 * @param data   the reason's data, one word; null for none
 * @return the service's code
 */
int c_pcl_set_wakeup_reason(uint32_t reason, const uint32_t* data);

/**
 * Reads the reason of the last power-down.
 *
 * @param reason [out] the reason; reference television: a QELTV_POWER_DOWN_REASON
 * @param data   [out] the reason's data, as many bytes as the service sends, not bounded by the
 *               buffer's size; not checked for null, so it must be valid whenever the service may
 *               send data; reference television: at most 4 bytes
 * @return the service's code
 */
int c_pcl_get_power_down_reason(uint32_t* reason, void* data);

/**
 * Stores the reason of the power-down.
 *
 * @param reason the reason; reference television: a QELTV_POWER_DOWN_REASON
 * @param data   the reason's data, one word; null for none
 * @return the service's code
 */
int c_pcl_set_power_down_reason(uint32_t reason, const uint32_t* data);

/**
 * Powers the television down.
 *
 * @return the service's code
 */
int c_pcl_set_power_down(void);

/**
 * Requests a suspend.
 *
 * @return the service's code
 */
int c_pcl_set_request_suspend(void);

/**
 * Requests a power-down event.
 *
 * @return the service's code
 */
int c_pcl_set_request_powerdown_envent(void);

/**
 * Reads a GPIO line.
 *
 * @param a     service-defined; reference television: the line, 0 to 63
 * @param b     service-defined; reference television: a QELTV_GPIO_READ
 * @param value [out] the line's value
 * @return the service's code
 */
int c_pcl_get_gpio(uint32_t a, uint32_t b, uint32_t* value);

/**
 * Sets a GPIO line.
 *
 * @param a service-defined; reference television: the line, QELTV_GPIO_OUTPUTS to 63
 * @param b service-defined; reference television: level, 0 or 1
 * @return the service's code
 */
int c_pcl_set_gpio(uint32_t a, uint32_t b);

/**
 * Switches the monitoring of a GPIO line on or off.
 *
 * @param ctrl the line and the switch; null gives -1 without a transaction and is logged regardless
 *             of the debug switch
 * @return the service's code
 */
int c_pcl_set_gpio_monitor_ctrl_ex(const qeltvapi_pcl_gpio_monitor_ctrl_t* ctrl);

/**
 * Reads the remote-control key of the last wake-up.
 *
 * @param key [out] the key
 * @return the service's code
 */
int c_pcl_get_wakeup_irkey(qeltvapi_pcl_wakeup_key_t* key);

/**
 * Reads the wake-up setup.
 *
 * @param setup [out] the setup; reference television: bit n allows QELTV_WAKE_REASON n
 * @return the service's code
 */
int c_pcl_get_wakeup_setup(uint32_t* setup);

/**
 * Sets the wake-up setup.
 *
 * @param setup the setup; reference television: bit n allows QELTV_WAKE_REASON n; bits in
 *              QELTV_WAKE_SETUP_MASK
 * @return the service's code
 */
int c_pcl_set_wakeup_setup(uint32_t setup);

/**
 * Reads the reason of the last wake-up, in the newer reasons.
 *
 * @param reason [out] the reason; reference television: a QELTV_WAKE_REASON
 * @param data   [out] the reason's data, as many bytes as the service sends, not bounded by the
 *               buffer's size; not checked for null, so it must be valid whenever the service may
 *               send data; reference television: at most 4 bytes
 * @return the service's code
 */
int a_qeltvapi_pcl_get_wakeup_reason(uint32_t* reason, void* data);

/**
 * Reads the wake-up setup of the newer form.
 *
 * @param setup [out] the setup; reference television: as of c_pcl_get_wakeup_setup()
 * @return the service's code
 */
int a_qeltvapi_pcl_get_wakeup_setup(uint32_t* setup);

/**
 * Sets the wake-up setup of the newer form.
 *
 * @param setup the setup; reference television: as of c_pcl_set_wakeup_setup()
 * @return the service's code
 */
int a_qeltvapi_pcl_set_wakeup_setup(uint32_t setup);

QELTVAPI_END_DECLS

#endif /* HW_PCL_H */
