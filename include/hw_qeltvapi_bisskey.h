/**
 * BISS keys: the list of keys that the service keeps for scrambled satellite feeds.
 *
 * Every function but the register function asks IQelTvApiChannelList and returns 0 when the
 * service is not there, with a line in the log while debugging, and -1 after a lost reply. Key
 * material is neither looked at nor logged.
 *
 * Records are blocks that only caller and service look into; those that are read come with
 * whatever size the service sends, those that are written have the size told. Handles are tokens
 * of the service. The meaning of the words named argN and word is the service's.
 */
#ifndef HW_QELTVAPI_BISSKEY_H
#define HW_QELTVAPI_BISSKEY_H

#include "hw_qeltvapi_callback_types.h"
#include "hw_qeltvapi_channel_records.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of changes of the BISS keys, in place of the one before, and asks
 * for the callback object to be registered. Asks no service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_bisskey_register_callback(qeltvapi_bisskey_update_cb_t fn);

/**
 * Opens the BISS key list of an id. Asks method 106.
 *
 * @param bsl_id BISS key list id
 * @param handle [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_bsl_handle_by_bsl_id(uint32_t bsl_id, uint32_t* handle);

/**
 * Locks the key database. Asks method 107.
 *
 * @param bsl_id BISS key list id
 * @return the service's code
 */
int a_qeltvapi_bisskey_lock_database(uint32_t bsl_id);

/**
 * Releases the lock of the key database. Asks method 108.
 *
 * @param bsl_id BISS key list id
 * @return the service's code
 */
int a_qeltvapi_bisskey_unlock_database(uint32_t bsl_id);

/**
 * Counts the key records. Asks method 109.
 *
 * @param bsl_id BISS key list id
 * @param count  [out] number of records
 * @param word   [out] word of the answer
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_recs_number(uint32_t bsl_id, uint16_t* count, uint32_t* word);

/**
 * Reads a key record by record id. Asks method 110.
 *
 * @param bsl_id BISS key list id
 * @param rec_id record id
 * @param rec    [out] key record, as many bytes as the service sends
 * @param word   [out] word of the answer
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id(uint32_t bsl_id, uint32_t rec_id, void* rec,
                                                 uint32_t* word);

/**
 * Reads a key record by index. Asks method 111.
 *
 * @param bsl_id BISS key list id
 * @param index  index, from 0
 * @param rec    [out] key record, as many bytes as the service sends
 * @param word   [out] word of the answer
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_bsl_rec_by_idx(uint32_t bsl_id, uint32_t index, void* rec,
                                          uint32_t* word);

/**
 * Counts the key records that a header selects. Asks method 112.
 *
 * @param bsl_id BISS key list id
 * @param header record header, QELTVAPI_BSL_HEADER_SIZE bytes
 * @param count  [out] number of records
 * @param word   [out] word of the answer
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_recs_number_by_header(uint32_t bsl_id, const void* header,
                                                 uint16_t* count, uint32_t* word);

/**
 * Reads one of the key records that a header selects. Asks method 113.
 *
 * @param bsl_id BISS key list id
 * @param header record header, QELTVAPI_BSL_HEADER_SIZE bytes
 * @param rec    [out] key record, as many bytes as the service sends
 * @param index  index among the selected, from 0
 * @param word   [out] word of the answer
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_bsl_rec_by_header(uint32_t bsl_id, const void* header, void* rec,
                                             uint32_t index, uint32_t* word);

/**
 * Writes a key record. Asks method 114.
 *
 * @param bsl_id BISS key list id
 * @param arg2   passed unchanged
 * @param rec    key record, QELTVAPI_BSL_REC_SIZE bytes
 * @param word   [out] word of the answer
 * @return the service's code
 */
int a_qeltvapi_bisskey_set_bsl_rec_info(uint32_t bsl_id, uint32_t arg2, const void* rec,
                                        uint32_t* word);

/**
 * Empties a BISS key list. Asks method 115.
 *
 * @param bsl_id BISS key list id
 * @return the service's code
 */
int a_qeltvapi_bisskey_clean(uint32_t bsl_id);

/**
 * Compares two key records. Asks method 116.
 *
 * @param rec1 key record, QELTVAPI_BSL_REC_SIZE bytes
 * @param rec2 key record, QELTVAPI_BSL_REC_SIZE bytes
 * @return the service's answer
 */
int a_qeltvapi_bisskey_is_same_record(const void* rec1, const void* rec2);

/**
 * Reads the default key record. Asks method 117.
 *
 * @param rec [out] key record, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_default_record(void* rec);

/**
 * Applies the stored key to the current channel. Asks method 118.
 *
 * @return the service's code
 */
int a_qeltvapi_bisskey_set_key_for_current_channel(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_BISSKEY_H */
