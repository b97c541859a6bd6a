/**
 * The Common Interface: typed reads and writes, MMI answers, the PIN of the module, key data and
 * host id.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is logged regardless of the debug switch.
 *
 * The get and set types and the meaning of the values are service-defined; the library uses the
 * type only to choose how the data crosses. Reference television: one slot, 0.
 */
#ifndef HW_QELTVAPI_CI_H
#define HW_QELTVAPI_CI_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Set type: the answer to an MMI enquiry, a ::QELTVAPI_CI_MMI_ENQ_ANS_T. */
#define QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS 2

/** Get type: the PIN of the module, a ::QELTVAPI_CI_CAM_PIN_CODE_T. */
#define QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE 29

/** Answer to an MMI enquiry. */
typedef struct {
    /** service-defined; reference television: a QELTV_CI_ENQUIRY_ANSWER */
    uint32_t ui4_first;
    /** service-defined; reference television: number of the dialogue */
    uint32_t ui4_second;
    const uint16_t* w2s_txt; /**< the answer, UTF-16 and zero-terminated; null for none */
} QELTVAPI_CI_MMI_ENQ_ANS_T;

/** Destination of the module's PIN. */
typedef struct {
    uint8_t* pui1_valid;     /**< [out] not 0 if the PIN is valid; must not be null */
    uint16_t* pw2s_pin_code; /**< [out] all UTF-16 units of the PIN; null to store none */
} QELTVAPI_CI_CAM_PIN_CODE_T;

/**
 * Registers the callback for Common Interface notifications, replacing the previous one, requests
 * the registration of the callback object with the service, and registers the caller with the
 * service. The callback stays registered if the service refuses or is missing. While debugging,
 * `*handle` is traced even after a transport failure.
 *
 * @param handle [out] the registration
 * @param a      service-defined; reference television: first value of the caller, returned in the
 *               notifications
 * @param b      service-defined; reference television: second value of the caller, returned in the
 *               notifications
 * @param nfy    the callback; null to remove it
 * @return the service's code
 */
int a_qeltvapi_ci_reg_cb(int32_t* handle, uint32_t a, uint32_t b, qeltvapi_ci_cb_t nfy);

/**
 * Ends the registration of a_qeltvapi_ci_reg_cb(): removes the callback, also without a service,
 * requests the registration of the callback object with the service, and ends the caller's
 * registration with the service.
 *
 * @param handle the registration
 * @return the service's code
 */
int a_qeltvapi_ci_unreg_cb(int32_t handle);

/**
 * Does nothing; kept for programs that link against it.
 *
 * @return 0
 */
int c_rpc_reg_qeltvapi_ci_cb_hndlrs(void);

/**
 * Reads typed data.
 *
 * Types 0, 1, 2, 7, 8, 10, 13, 15 to 20, 26 to 28 and 30 to 32 send what is in the buffer; type 29
 * reads the PIN of the module. Any other type gives -1 without a transaction. The answer is stored
 * whole, not bounded by the buffer's size; an empty one leaves the buffer as it is.
 *
 * @param e_get_type  the type; reference television: a QELTV_CI_GET, or type 29
 * @param value       argument of the type; reference television: the slot
 * @param data        [in,out] the buffer, or null for none; type 29: a QELTVAPI_CI_CAM_PIN_CODE_T;
 *                    reference television: an answer longer than the capacity in @p pz_data_len is
 *                    refused
 * @param pz_data_len [in,out] number of bytes at @p data, which are sent; then the length of the
 *                    answer in bytes, for type 15 in 16-bit units; type 29 leaves it as it is
 * @return the service's code
 */
int a_qeltvapi_ci_get(int e_get_type, uint32_t value, void* data, uint32_t* pz_data_len);

/**
 * Writes typed data.
 *
 * Type 2 answers an MMI enquiry. A type that is not named below is sent without data.
 *
 * @param e_set_type the type; reference television: a QELTV_CI_SET
 * @param value      argument of the type; reference television: the slot
 * @param data       type 2: a ::QELTVAPI_CI_MMI_ENQ_ANS_T; type 3: 8 bytes; type 34: a terminated
 *                   text, sent without its terminator; type 40: 4 bytes; type 80: the value itself,
 *                   of which the low byte is sent
 * @return the service's code
 */
int a_qeltvapi_ci_set(int e_set_type, uint32_t value, void* data);

/**
 * Reads information on a virtual channel.
 *
 * @param value ignored
 * @param info  [in,out] the query; then the information; reference television: index of a virtual
 *              channel, from 0; then its channel id
 * @return the service's code
 */
int a_qeltvapi_ci_get_virtual_channel_info(uint32_t value, uint32_t* info);

/**
 * Erases the key data.
 *
 * @return the service's code
 */
int a_qeltvapi_ci_key_erase(void);

/**
 * Reads the host id.
 *
 * @param buffer [out] the host id, as many bytes as the service sends; reference television:
 *               QELTV_CI_HOST_ID_SIZE bytes
 * @param length [in,out] capacity of @p buffer in bytes, only sent to the service; then the length
 *               of the host id in bytes
 * @return the service's code
 */
int a_qeltvapi_ci_key_get_host_id(uint8_t* buffer, uint8_t* length);

/**
 * Reads a description of the key data.
 *
 * @param text [out] UTF-16 units, all that the service sends, without a terminating zero; reference
 *             television: at most 128 units, the last one 0
 * @return the service's code
 */
int a_qeltvapi_ci_key_query(uint16_t* text);

/**
 * Reports whether key data exists.
 *
 * @param out [out] the service's truth value
 * @return the service's code
 */
int a_qeltvapi_ci_key_query_exist(uint8_t* out);

/**
 * Reports whether key data of one kind exists.
 *
 * @param value which kind; reference television: 0 to 3
 * @param out   [out] the service's truth value
 * @return the service's code
 */
int a_qeltvapi_ci_key_query_exist_ex(uint32_t value, uint8_t* out);

/**
 * Updates the key data from the device.
 *
 * @return the service's code
 */
int a_qeltvapi_ci_key_update(void);

/**
 * Updates the key data from a file.
 *
 * @param path the file in the service's file system, null counts as ""; reference television: 16
 *             bytes to 64 KiB
 * @return the service's code
 */
int a_qeltvapi_ci_key_update_with_path(const char* path);

/**
 * Updates the key data of one kind from a file.
 *
 * @param path  the file in the service's file system, null counts as ""; reference television: 16
 *              bytes to 64 KiB
 * @param value which kind; reference television: 0 to 3
 * @return the service's code
 */
int a_qeltvapi_ci_key_update_with_path_ex(const char* path, uint32_t value);

/**
 * Updates the key data of one kind from the device.
 *
 * @param value which kind; reference television: 0 to 3
 * @return the service's code
 */
int a_qeltvapi_ci_key_update_ex(uint32_t value);

/**
 * Writes key data. The key data is never logged.
 *
 * @param data   the key data; reference television: 16 bytes to 64 KiB
 * @param length size of the key data in bytes; 0 sends an empty block
 * @return the service's code
 */
int a_qeltvapi_ci_key_write(const void* data, uint32_t length);

/**
 * Activates the key data.
 *
 * @return the service's code
 */
int a_qeltvapi_ci_key_activate(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CI_H */
