/**
 * Software upgrade: start, download, reboot, information and result.
 *
 * Results: the service's answer, and 0 without a service, which cannot be distinguished from an
 * answer of 0; the missing service is logged while debugging. A transport failure ends the process.
 * The three readers (firmware information, item information, support) return the service's code,
 * and -1 without a service and after a transport failure. Pointers are not checked for null.
 *
 * The meaning of texts, numbers and records is service-defined. Reference television: the items are
 * a QELTV_UPGRADE_ITEM, the answer is a code; only one item at a time is under way.
 */
#ifndef HW_QELTVAPI_UPGRADE_H
#define HW_QELTVAPI_UPGRADE_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Information on the firmware. The numbers in the names are offsets in bytes. The texts are padded
 * with zeros and not terminated if they fill their field.
 */
typedef struct {
    char s_at_0[32];   /**< service-defined; reference television: model */
    char s_at_32[32];  /**< service-defined; reference television: version */
    char s_at_64[32];  /**< service-defined; reference television: build date */
    char s_at_96[32];  /**< service-defined; reference television: hardware */
    char s_at_128[32]; /**< service-defined; reference television: country */
    char s_at_160[32]; /**< service-defined; reference television: serial number */
    /** service-defined; reference television: version of the bootloader */
    char s_at_192[32];
    uint32_t ui4_at_224; /**< service-defined; reference television: number of items */
} QELTVAPI_UPGRADE_FW_INFO_T;

/**
 * One upgrade item. The numbers in the names are offsets in bytes. The texts are padded with zeros
 * and not terminated if they fill their field.
 */
typedef struct {
    /** service-defined; reference television: kind, "MAIN" or "BOOT" */
    char s_at_0[5];
    char s_at_5[5];     /**< service-defined; reference television: region, "EU" */
    uint8_t unused[62]; /**< never written by the library */
    /** service-defined; reference television: size of the download in KiB */
    uint32_t ui4_at_72;
    /** service-defined; reference television: version of the download */
    char s_at_76[32];
    char s_at_108[32]; /**< service-defined; reference television: date of the download */
    char s_at_140[32]; /**< service-defined; reference television: name of the download */
    /** service-defined; reference television: MD5 sum of the download, 32 digits */
    char s_at_172[32];
    uint32_t ui4_at_204; /**< service-defined; reference television: a QELTV_UPGRADE_STATE */
    /** service-defined; reference television: 1 if the upgrade needs no consent, else 0 */
    uint32_t ui4_at_208;
} QELTVAPI_UPGRADE_ITEM_T;

/**
 * Registers the callback for the progress of an upgrade, replacing the previous one, and requests
 * the registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0, regardless of the outcome of that registration
 */
int a_qeltvapi_upgrade_register_callback(qeltvapi_upgrade_callback_fct_t fn);

/**
 * Registers the callback for the state of recordings, as a_qeltvapi_record_pvr_register_callback()
 * does, and requests the registration of the callback object with the service. The callback for
 * upgrades stays registered; pass null to a_qeltvapi_upgrade_register_callback() to remove it.
 *
 * @param fn the callback; null to remove it
 * @return 0, regardless of the outcome of that registration
 */
int a_qeltvapi_upgrade_unregister_callback(qeltvapi_pvr_status_cb_t fn);

/**
 * Does nothing; kept for programs that link against it.
 *
 * @return 0
 */
int c_rpc_reg_qeltvapi_upgrade_cb_hndlrs(void);

/**
 * Starts an upgrade.
 *
 * @param value service-defined; reference television: the item, a QELTV_UPGRADE_ITEM: checks,
 *              downloads and installs it
 * @param flag  0 for false, any other value for true; reference television: true to reboot into it,
 *              too
 * @return the service's answer; 0 without a service
 */
int a_qeltvapi_upgrade_start(uint32_t value, int flag);

/**
 * Triggers an upgrade.
 *
 * @param value service-defined; reference television: the item, a QELTV_UPGRADE_ITEM: installs its
 *              download
 * @return the service's answer; 0 without a service
 */
int a_qeltvapi_upgrade_trigger(uint32_t value);

/**
 * Reads information on the firmware.
 *
 * @param out [out] the information
 * @return the service's code
 */
int a_qeltvapi_upgrade_get_firmware_info(QELTVAPI_UPGRADE_FW_INFO_T* out);

/**
 * Reads one upgrade item.
 *
 * @param out   [out] the item
 * @param index which item; reference television: a QELTV_UPGRADE_ITEM
 * @return the service's code
 */
int a_qeltvapi_upgrade_get_item_info(QELTVAPI_UPGRADE_ITEM_T* out, uint32_t index);

/**
 * Starts downloading firmware.
 *
 * @param value  service-defined; reference television: the item, a QELTV_UPGRADE_ITEM
 * @param first  first text, null counts as ""; reference television: URL of the download
 * @param second second text, null counts as ""; reference television: where it is stored, not empty
 * @return the service's answer; 0 without a service
 */
int a_qeltvapi_upgrade_start_download_firmware(uint32_t value, const char* first,
                                               const char* second);

/**
 * Cancels a firmware download.
 *
 * @param value service-defined; reference television: the item, a QELTV_UPGRADE_ITEM
 * @return the service's answer; 0 without a service
 */
int a_qeltvapi_upgrade_cancel_download_firmware(uint32_t value);

/**
 * Reboots into the upgrade.
 *
 * @param value service-defined; reference television: the item, a QELTV_UPGRADE_ITEM, which must be
 *              installed
 * @return the service's answer; 0 without a service
 */
int a_qeltvapi_upgrade_start_reboot_upgrade(uint32_t value);

/**
 * Reads how the last upgrade ended.
 *
 * @param value service-defined; reference television: the item, a QELTV_UPGRADE_ITEM
 * @return the service's answer (reference television: a QELTV_UPGRADE_RESULT); 0 without a service
 */
int a_qeltvapi_upgrade_query_upgrade_result(uint32_t value);

/**
 * Reports whether an upgrade is supported. While debugging, `*out` is traced on every return and
 * must then be readable even if the call fails.
 *
 * @param value service-defined; reference television: the item, a QELTV_UPGRADE_ITEM
 * @param out   [out] true if it is supported
 * @return the service's code
 */
int a_qeltvapi_upgrade_is_supported(uint32_t value, bool* out);

/**
 * Checks for an update.
 *
 * @param value service-defined; reference television: the item, a QELTV_UPGRADE_ITEM
 * @return the service's answer; 0 without a service
 */
int a_qeltvapi_upgrade_check_update(uint32_t value);

/**
 * Sets two settings.
 *
 * @param a       service-defined; reference television: the first setting, a QELTV_UPGRADE_SETTING
 * @param first4  first value, 4 bytes; reference television: 0 or 1
 * @param b       service-defined; reference television: the second setting, a QELTV_UPGRADE_SETTING
 * @param second4 second value, 4 bytes; reference television: 0 or 1
 * @return the service's answer; 0 without a service
 */
int a_qeltvapi_upgrade_set(uint32_t a, const void* first4, uint32_t b, const void* second4);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_UPGRADE_H */
