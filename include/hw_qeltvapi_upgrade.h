/**
 * Software upgrade: start, download, reboot, information and result.
 *
 * The functions ask IQelTvApi. Those that only pass numbers or texts on return 0 when the service
 * is not there, which cannot be told from an answer of 0, and log the missing service while
 * debugging; a lost reply ends the process in the HIDL runtime's own failure handling. The three
 * readers return -1 when the service is not there and -1 after a lost reply. No pointer is tested
 * for null.
 *
 * What the texts, numbers and records mean is the service's.
 */
#ifndef HW_QELTVAPI_UPGRADE_H
#define HW_QELTVAPI_UPGRADE_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Information on the firmware. The numbers in the names are offsets in bytes. The texts are padded
 * with zeros and not terminated when they fill their field.
 */
typedef struct {
    char s_at_0[32];     /**< first text */
    char s_at_32[32];    /**< second text */
    char s_at_64[32];    /**< third text */
    char s_at_96[32];    /**< fourth text */
    char s_at_128[32];   /**< fifth text */
    char s_at_160[32];   /**< sixth text */
    char s_at_192[32];   /**< seventh text */
    uint32_t ui4_at_224; /**< integer */
} QELTVAPI_UPGRADE_FW_INFO_T;

/**
 * One upgrade item. The numbers in the names are offsets in bytes. The texts are padded with zeros
 * and not terminated when they fill their field.
 */
typedef struct {
    char s_at_0[5];      /**< first text */
    char s_at_5[5];      /**< second text */
    uint8_t unused[62];  /**< never written by the library */
    uint32_t ui4_at_72;  /**< integer */
    char s_at_76[32];    /**< third text */
    char s_at_108[32];   /**< fourth text */
    char s_at_140[32];   /**< fifth text */
    char s_at_172[32];   /**< sixth text */
    uint32_t ui4_at_204; /**< integer */
    uint32_t ui4_at_208; /**< integer */
} QELTVAPI_UPGRADE_ITEM_T;

/**
 * Sets the function that is told of the progress of an upgrade, in place of the one before, and
 * asks for the callback object to be registered with the service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0, whatever becomes of the registration
 */
int a_qeltvapi_upgrade_register_callback(qeltvapi_upgrade_callback_fct_t fn);

/**
 * Sets the function that is told of the state of recordings (see
 * a_qeltvapi_record_pvr_register_callback()), and asks for the callback object to be registered
 * with the service. The function that is told of upgrades stays as it is: to end that, pass null
 * to a_qeltvapi_upgrade_register_callback().
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0, whatever becomes of the registration
 */
int a_qeltvapi_upgrade_unregister_callback(qeltvapi_pvr_status_cb_t fn);

/**
 * Does nothing; kept for callers that link against it.
 *
 * @return 0
 */
int c_rpc_reg_qeltvapi_upgrade_cb_hndlrs(void);

/**
 * Starts an upgrade. Asks method 216.
 *
 * @param value passed to the service unchanged
 * @param flag  sent as true when not 0
 * @return the service's answer; 0 when the service is not there
 */
int a_qeltvapi_upgrade_start(uint32_t value, int flag);

/**
 * Triggers an upgrade. Asks method 217.
 *
 * @param value passed to the service unchanged
 * @return the service's answer; 0 when the service is not there
 */
int a_qeltvapi_upgrade_trigger(uint32_t value);

/**
 * Reads information on the firmware. Asks method 218.
 *
 * @param out [out] the information
 * @return the service's code
 */
int a_qeltvapi_upgrade_get_firmware_info(QELTVAPI_UPGRADE_FW_INFO_T* out);

/**
 * Reads one upgrade item. Asks method 219.
 *
 * @param out   [out] the item
 * @param index which item
 * @return the service's code
 */
int a_qeltvapi_upgrade_get_item_info(QELTVAPI_UPGRADE_ITEM_T* out, uint32_t index);

/**
 * Starts downloading firmware. Asks method 220.
 *
 * @param value passed to the service unchanged
 * @param first  first text; null counts as ""
 * @param second second text; null counts as ""
 * @return the service's answer; 0 when the service is not there
 */
int a_qeltvapi_upgrade_start_download_firmware(uint32_t value, const char* first,
                                               const char* second);

/**
 * Cancels a firmware download. Asks method 221.
 *
 * @param value passed to the service unchanged
 * @return the service's answer; 0 when the service is not there
 */
int a_qeltvapi_upgrade_cancel_download_firmware(uint32_t value);

/**
 * Reboots into the upgrade. Asks method 222.
 *
 * @param value passed to the service unchanged
 * @return the service's answer; 0 when the service is not there
 */
int a_qeltvapi_upgrade_start_reboot_upgrade(uint32_t value);

/**
 * Asks how the last upgrade ended. Asks method 223.
 *
 * @param value passed to the service unchanged
 * @return the service's answer; 0 when the service is not there
 */
int a_qeltvapi_upgrade_query_upgrade_result(uint32_t value);

/**
 * Asks whether an upgrade is supported.
 *
 * Asks method 224. While debugging, `*out` is traced on every return, so it must then be readable
 * even when the call fails.
 *
 * @param value passed to the service unchanged
 * @param out   [out] true when it is supported
 * @return the service's code
 */
int a_qeltvapi_upgrade_is_supported(uint32_t value, bool* out);

/**
 * Checks for an update. Asks method 225.
 *
 * @param value passed to the service unchanged
 * @return the service's answer; 0 when the service is not there
 */
int a_qeltvapi_upgrade_check_update(uint32_t value);

/**
 * Sets two values. Asks method 226.
 *
 * @param a       first number, passed to the service unchanged
 * @param first4  first value, 4 bytes
 * @param b       second number, passed to the service unchanged
 * @param second4 second value, 4 bytes
 * @return the service's answer; 0 when the service is not there
 */
int a_qeltvapi_upgrade_set(uint32_t a, const void* first4, uint32_t b, const void* second4);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_UPGRADE_H */
