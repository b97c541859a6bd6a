/**
 * The Common Interface: typed reads and writes, MMI answers, the PIN code of the module, key data
 * and host id.
 *
 * The functions ask IQelTvApiCI and return -1 when the service is not there and -1 after a lost
 * reply. The missing service is always logged.
 *
 * The get and set types and the meaning of the values are the service's; the library looks at the
 * type only to know how the data crosses.
 */
#ifndef HW_QELTVAPI_CI_H
#define HW_QELTVAPI_CI_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Set type: the answer to an MMI enquiry, a ::QELTVAPI_CI_MMI_ENQ_ANS_T. */
#define QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS 2

/** Get type: the PIN code of the module, a ::QELTVAPI_CI_CAM_PIN_CODE_T. */
#define QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE 29

/** Answer to an MMI enquiry. */
typedef struct {
    uint32_t ui4_first;      /**< passed to the service unchanged */
    uint32_t ui4_second;     /**< passed to the service unchanged */
    const uint16_t* w2s_txt; /**< the answer, UTF-16 and zero-terminated; null for none */
} QELTVAPI_CI_MMI_ENQ_ANS_T;

/** Where the PIN code of the module goes. */
typedef struct {
    uint8_t* pui1_valid;     /**< [out] not 0 when the PIN code is valid; must not be null */
    uint16_t* pw2s_pin_code; /**< [out] all UTF-16 units of the PIN code; null for none */
} QELTVAPI_CI_CAM_PIN_CODE_T;

/**
 * Registers the caller for Common Interface notifications: sets the function that is told of them,
 * in place of the one before, asks for the callback object to be registered with the service, and
 * asks method 16. The function stays set when the service refuses or is not there. While debugging,
 * `*handle` is traced even after a lost reply.
 *
 * @param handle [out] the registration
 * @param a      passed to the service unchanged
 * @param b      passed to the service unchanged
 * @param nfy    called on a thread of the HIDL runtime; null for none
 * @return the service's code
 */
int a_qeltvapi_ci_reg_cb(int32_t* handle, uint32_t a, uint32_t b, qeltvapi_ci_cb_t nfy);

/**
 * Takes back a_qeltvapi_ci_reg_cb(): clears the function, also when the service is not there, asks
 * for the callback object to be registered with the service, and asks method 17.
 *
 * @param handle the registration
 * @return the service's code
 */
int a_qeltvapi_ci_unreg_cb(int32_t handle);

/**
 * Does nothing; kept for callers that link against it.
 *
 * @return 0
 */
int c_rpc_reg_qeltvapi_ci_cb_hndlrs(void);

/**
 * Reads typed data.
 *
 * Types 0, 1, 2, 7, 8, 10, 13, 15 to 20, 26 to 28 and 30 to 32 ask method 0, which is sent what
 * stands in the buffer; type 29 asks method 1. Any other type asks nothing and gives -1. The
 * answer is stored whole, whatever the room; an empty one leaves the buffer as it is.
 *
 * @param e_get_type  the type
 * @param value       argument of the type, passed to the service unchanged
 * @param data        [in,out] the buffer, or null for none; type 29: a ::QELTVAPI_CI_CAM_PIN_CODE_T
 * @param pz_data_len [in] bytes at @p data that are sent, [out] length of the answer in bytes, for
 *                    type 15 in 16-bit units; type 29 leaves it as it is
 * @return the service's code
 */
int a_qeltvapi_ci_get(int e_get_type, uint32_t value, void* data, uint32_t* pz_data_len);

/**
 * Writes typed data.
 *
 * Type 2 asks method 3, every other type method 2. A type that is not named below is sent without
 * data.
 *
 * @param e_set_type the type
 * @param value      argument of the type, passed to the service unchanged
 * @param data       type 2: a ::QELTVAPI_CI_MMI_ENQ_ANS_T; type 3: 8 bytes; type 34: a terminated
 *                   text, sent without its terminator; type 40: 4 bytes; type 80: the value itself,
 *                   of which the low byte is sent
 * @return the service's code
 */
int a_qeltvapi_ci_set(int e_set_type, uint32_t value, void* data);

/**
 * Reads information on a virtual channel. Asks method 4.
 *
 * @param value not used
 * @param info  [in] what is asked about, [out] the information
 * @return the service's code
 */
int a_qeltvapi_ci_get_virtual_channel_info(uint32_t value, uint32_t* info);

/**
 * Erases the key data. Asks method 5.
 *
 * @return the service's code
 */
int a_qeltvapi_ci_key_erase(void);

/**
 * Reads the host id. Asks method 6.
 *
 * @param buffer [out] the host id, as many bytes as the service tells
 * @param length [in] the room at @p buffer in bytes, only told to the service, [out] length of the
 *               host id in bytes
 * @return the service's code
 */
int a_qeltvapi_ci_key_get_host_id(uint8_t* buffer, uint8_t* length);

/**
 * Reads a description of the key data. Asks method 7.
 *
 * @param text [out] UTF-16 units, all that the service sends and without a terminating zero
 * @return the service's code
 */
int a_qeltvapi_ci_key_query(uint16_t* text);

/**
 * Asks whether there is key data. Asks method 8.
 *
 * @param out [out] the service's truth value
 * @return the service's code
 */
int a_qeltvapi_ci_key_query_exist(uint8_t* out);

/**
 * Asks whether there is key data of one kind. Asks method 9.
 *
 * @param value which kind, passed to the service unchanged
 * @param out   [out] the service's truth value
 * @return the service's code
 */
int a_qeltvapi_ci_key_query_exist_ex(uint32_t value, uint8_t* out);

/**
 * Updates the key data from the device. Asks method 10.
 *
 * @return the service's code
 */
int a_qeltvapi_ci_key_update(void);

/**
 * Updates the key data from a file. Asks method 11.
 *
 * @param path the file, as the service sees it; null counts as ""
 * @return the service's code
 */
int a_qeltvapi_ci_key_update_with_path(const char* path);

/**
 * Updates the key data of one kind from a file. Asks method 12.
 *
 * @param path  the file, as the service sees it; null counts as ""
 * @param value which kind, passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_ci_key_update_with_path_ex(const char* path, uint32_t value);

/**
 * Updates the key data of one kind from the device. Asks method 13.
 *
 * @param value which kind, passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_ci_key_update_ex(uint32_t value);

/**
 * Writes key data. Asks method 14. The key data is never logged.
 *
 * @param data   the key data
 * @param length its length in bytes; 0 sends an empty block
 * @return the service's code
 */
int a_qeltvapi_ci_key_write(const void* data, uint32_t length);

/**
 * Activates the key data. Asks method 15.
 *
 * @return the service's code
 */
int a_qeltvapi_ci_key_activate(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CI_H */
