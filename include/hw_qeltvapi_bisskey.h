/**
 * BISS keys: the list of keys that the service keeps for scrambled satellite feeds.
 *
 * Results: the service's code, unless a function says otherwise; 0 without a service, with a line
 * in the log while debugging; -1 after a transport failure. Key material is neither read nor logged
 * by the library.
 *
 * The layout of records is service-defined. A record that is read has the size that the service
 * sends, one that is written has the size that is given here. Handles are tokens of the service.
 * Reference television: records as in layouts/channel_records.h, list id CHANNEL_LIST_SATELLITE.
 */
#ifndef HW_QELTVAPI_BISSKEY_H
#define HW_QELTVAPI_BISSKEY_H

#include "hw_qeltvapi_callback_types.h"
#include "hw_qeltvapi_channel_records.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for changes of the BISS keys, replacing the previous one, and requests the
 * registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_bisskey_register_callback(qeltvapi_bisskey_update_cb_t fn);

/**
 * Opens the BISS key list of an id.
 *
 * @param bsl_id BISS key list id
 * @param handle [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_bsl_handle_by_bsl_id(uint32_t bsl_id, uint32_t* handle);

/**
 * Locks the key database.
 *
 * @param bsl_id BISS key list id
 * @return the service's code
 */
int a_qeltvapi_bisskey_lock_database(uint32_t bsl_id);

/**
 * Releases the lock of the key database.
 *
 * @param bsl_id BISS key list id
 * @return the service's code
 */
int a_qeltvapi_bisskey_unlock_database(uint32_t bsl_id);

/**
 * Counts the key records.
 *
 * @param bsl_id BISS key list id
 * @param count  [out] number of records
 * @param word   [out] service-defined; reference television: number of keys in use
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_recs_number(uint32_t bsl_id, uint16_t* count, uint32_t* word);

/**
 * Reads a key record by record id.
 *
 * @param bsl_id BISS key list id
 * @param rec_id record id
 * @param rec    [out] the key record, as many bytes as the service sends; reference television: a
 *               biss_record_t
 * @param word   [out] service-defined; reference television: the record id
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id(uint32_t bsl_id, uint32_t rec_id, void* rec,
                                                 uint32_t* word);

/**
 * Reads a key record by index.
 *
 * @param bsl_id BISS key list id
 * @param index  index, from 0
 * @param rec    [out] the key record, as many bytes as the service sends; reference television: a
 *               biss_record_t
 * @param word   [out] service-defined; reference television: the record id
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_bsl_rec_by_idx(uint32_t bsl_id, uint32_t index, void* rec,
                                          uint32_t* word);

/**
 * Counts the key records that a header selects.
 *
 * @param bsl_id BISS key list id
 * @param header record header, QELTVAPI_BSL_HEADER_SIZE bytes; reference television: a
 *               biss_header_t, which selects by all its fields that are not 0
 * @param count  [out] number of records
 * @param word   [out] service-defined; reference television: number of keys in use
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_recs_number_by_header(uint32_t bsl_id, const void* header,
                                                 uint16_t* count, uint32_t* word);

/**
 * Reads one of the key records that a header selects.
 *
 * @param bsl_id BISS key list id
 * @param header record header, QELTVAPI_BSL_HEADER_SIZE bytes; reference television: a
 *               biss_header_t, which selects by all its fields that are not 0
 * @param rec    [out] the key record, as many bytes as the service sends; reference television: a
 *               biss_record_t
 * @param index  index among the selected records, from 0
 * @param word   [out] service-defined; reference television: the record id
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_bsl_rec_by_header(uint32_t bsl_id, const void* header, void* rec,
                                             uint32_t index, uint32_t* word);

/**
 * Writes a key record.
 *
 * @param bsl_id BISS key list id
 * @param arg2   service-defined; reference television: CHANNEL_BISS_WRITE or CHANNEL_BISS_DELETE
 * @param rec    key record, QELTVAPI_BSL_REC_SIZE bytes; reference television: a biss_record_t;
 *               record id 0 adds it
 * @param word   [out] service-defined; reference television: the record id
 * @return the service's code
 */
int a_qeltvapi_bisskey_set_bsl_rec_info(uint32_t bsl_id, uint32_t arg2, const void* rec,
                                        uint32_t* word);

/**
 * Empties a BISS key list.
 *
 * @param bsl_id BISS key list id
 * @return the service's code
 */
int a_qeltvapi_bisskey_clean(uint32_t bsl_id);

/**
 * Compares two key records.
 *
 * @param rec1, rec2 key record, QELTVAPI_BSL_REC_SIZE bytes
 * @return the service's answer; reference television: 1 or 0
 */
int a_qeltvapi_bisskey_is_same_record(const void* rec1, const void* rec2);

/**
 * Reads the default key record.
 *
 * @param rec [out] the key record, as many bytes as the service sends; reference television: a
 *            biss_record_t for the current channel
 * @return the service's code
 */
int a_qeltvapi_bisskey_get_default_record(void* rec);

/**
 * Applies the stored key to the current channel.
 *
 * @return the service's code
 */
int a_qeltvapi_bisskey_set_key_for_current_channel(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_BISSKEY_H */
