/**
 * Power control: why the set woke up or powered down, power-down and suspend, GPIO lines, the
 * wake-up setup, and notification of power events.
 *
 * The functions ask IQelTvApi, but for the two registrations, and return -1 when the service is
 * not there and -1 after a lost reply. A null output gives -1 too, without a call, but for the data
 * of a reason, of which each function tells. Both the missing service and the null output are
 * logged while debugging.
 *
 * The values of reasons, keys and setups and the length of a reason's data are the service's.
 */
#ifndef HW_PCL_H
#define HW_PCL_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Remote-control key that woke the set. */
typedef struct {
    uint32_t first;
    uint32_t second;
} qeltvapi_pcl_wakeup_key_t;

/** Switch of the monitoring of a GPIO line. */
typedef struct {
    uint32_t value; /**< passed to the service unchanged */
    uint8_t on;     /**< any value but 0 switches on */
} qeltvapi_pcl_gpio_monitor_ctrl_t;

/**
 * Sets the function that is told of power events, in place of the one before. Asks no service, and
 * does not ask for the callback object to be registered either (see registerCallbackHandler()).
 *
 * @param a  ignored
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int c_pcl_reg_nfy_fct(uint32_t a, qeltvapi_pcl_cb_t fn);

/**
 * Takes back c_pcl_reg_nfy_fct(). Asks no service.
 *
 * @return 0
 */
int c_pcl_dereg_nfy_fct(void);

/**
 * Reads why the set woke up. Asks method 119.
 *
 * @param reason [out] the reason
 * @param data   [out] optional: the reason's data, as many bytes as the service sends
 * @return the service's code
 */
int c_pcl_get_wakeup_reason(uint32_t* reason, void* data);

/**
 * Records why the set woke up. Asks method 120.
 *
 * @param reason the reason
 * @param data   the reason's data, one word; null for none
 * @return the service's code
 */
int c_pcl_set_wakeup_reason(uint32_t reason, const uint32_t* data);

/**
 * Reads why the set last powered down. Asks method 121.
 *
 * @param reason [out] the reason
 * @param data   [out] the reason's data, as many bytes as the service sends; not tested for null,
 *               so it must be there whenever the service may send any
 * @return the service's code
 */
int c_pcl_get_power_down_reason(uint32_t* reason, void* data);

/**
 * Records why the set powers down. Asks method 122.
 *
 * @param reason the reason
 * @param data   the reason's data, one word; null for none
 * @return the service's code
 */
int c_pcl_set_power_down_reason(uint32_t reason, const uint32_t* data);

/**
 * Powers the set down. Asks method 123.
 *
 * @return the service's code
 */
int c_pcl_set_power_down(void);

/**
 * Requests a suspend. Asks method 124.
 *
 * @return the service's code
 */
int c_pcl_set_request_suspend(void);

/**
 * Requests a power-down event. Asks method 125.
 *
 * @return the service's code
 */
int c_pcl_set_request_powerdown_envent(void);

/**
 * Reads a GPIO line. Asks method 126.
 *
 * @param a     passed to the service unchanged
 * @param b     passed to the service unchanged
 * @param value [out] the line's value
 * @return the service's code
 */
int c_pcl_get_gpio(uint32_t a, uint32_t b, uint32_t* value);

/**
 * Sets a GPIO line. Asks method 127.
 *
 * @param a passed to the service unchanged
 * @param b passed to the service unchanged
 * @return the service's code
 */
int c_pcl_set_gpio(uint32_t a, uint32_t b);

/**
 * Switches the monitoring of a GPIO line. Asks method 128.
 *
 * @param ctrl the switch; null gives -1 without a call and is logged whatever the debug switch
 * @return the service's code
 */
int c_pcl_set_gpio_monitor_ctrl_ex(const qeltvapi_pcl_gpio_monitor_ctrl_t* ctrl);

/**
 * Reads the remote-control key that woke the set. Asks method 129.
 *
 * @param key [out] the key
 * @return the service's code
 */
int c_pcl_get_wakeup_irkey(qeltvapi_pcl_wakeup_key_t* key);

/**
 * Reads the wake-up setup. Asks method 130.
 *
 * @param setup [out] the setup
 * @return the service's code
 */
int c_pcl_get_wakeup_setup(uint32_t* setup);

/**
 * Sets the wake-up setup. Asks method 131.
 *
 * @param setup the setup
 * @return the service's code
 */
int c_pcl_set_wakeup_setup(uint32_t setup);

/**
 * Reads why the set woke up, in the newer reasons. Asks method 132.
 *
 * @param reason [out] the reason
 * @param data   [out] the reason's data, as many bytes as the service sends; not tested for null,
 *               so it must be there whenever the service may send any
 * @return the service's code
 */
int a_qeltvapi_pcl_get_wakeup_reason(uint32_t* reason, void* data);

/**
 * Reads the wake-up setup of the newer form. Asks method 133.
 *
 * @param setup [out] the setup
 * @return the service's code
 */
int a_qeltvapi_pcl_get_wakeup_setup(uint32_t* setup);

/**
 * Sets the wake-up setup of the newer form. Asks method 134.
 *
 * @param setup the setup
 * @return the service's code
 */
int a_qeltvapi_pcl_set_wakeup_setup(uint32_t setup);

QELTVAPI_END_DECLS

#endif /* HW_PCL_H */
