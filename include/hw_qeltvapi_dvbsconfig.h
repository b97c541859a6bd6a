/**
 * Satellite reception: the lists of satellites, of the transport streams found on them and of
 * networks, each with its records, and snapshots of the satellite list.
 *
 * Every function but the register function asks IQelTvApiChannelList and returns 0 when the
 * service is not there, with a line in the log while debugging, and -1 after a lost reply.
 *
 * Records are blocks that only caller and service look into; those that are read come with
 * whatever size the service sends, those that are written have the size told. Handles are tokens
 * of the service. The meaning of the arguments named argN and of the flags is the service's.
 */
#ifndef HW_QELTVAPI_DVBSCONFIG_H
#define HW_QELTVAPI_DVBSCONFIG_H

#include "hw_qeltvapi_callback_types.h"
#include "hw_qeltvapi_channel_records.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of changes of the satellite list, in place of the one before, and
 * asks for the callback object to be registered. Asks no service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_satllist_register_callback(qeltvapi_satllist_update_cb_t fn);

/**
 * Locks the satellite database for writing. Asks method 92.
 *
 * @param satl_id satellite-list id
 * @return the service's code
 */
int a_qeltvapi_satllist_lock_database(uint32_t satl_id);

/**
 * Releases the write lock of the satellite database. Asks method 93.
 *
 * @param satl_id satellite-list id
 * @return the service's code
 */
int a_qeltvapi_satllist_unlock_database(uint32_t satl_id);

/**
 * Locks the satellite database for reading. Asks method 94.
 *
 * @param satl_id satellite-list id
 * @return the service's code
 */
int a_qeltvapi_satllist_read_lock_database(uint32_t satl_id);

/**
 * Releases the read lock of the satellite database. Asks method 95.
 *
 * @param satl_id satellite-list id
 * @return the service's code
 */
int a_qeltvapi_satllist_read_unlock_database(uint32_t satl_id);

/**
 * Empties a satellite list. Asks method 96.
 *
 * @param satl_id satellite-list id
 * @return the service's code
 */
int a_qeltvapi_satllist_clean(uint32_t satl_id);

/**
 * Reads a satellite record by record id. Asks method 97.
 *
 * @param satl_id satellite-list id
 * @param rec_id  record id
 * @param rec     [out] satellite record, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_satllist_get_rec(uint32_t satl_id, uint32_t rec_id, void* rec);

/**
 * Writes a satellite record. Asks method 98.
 *
 * @param satl_id satellite-list id
 * @param rec     satellite record, QELTVAPI_SATL_REC_SIZE bytes
 * @param flag    not 0: true
 * @return the service's code
 */
int a_qeltvapi_satllist_update_rec(uint32_t satl_id, const void* rec, int flag);

/**
 * Counts the satellite records. Asks method 99.
 *
 * @param satl_id satellite-list id
 * @param count   [out] number of records
 * @return the service's code
 */
int a_qeltvapi_satllist_get_num_recs(uint32_t satl_id, uint32_t* count);

/**
 * Asks for the record id of a satellite. Asks method 100.
 *
 * @param satl_id satellite-list id
 * @param arg2    passed unchanged
 * @param rec_id  [out] record id
 * @return the service's code
 */
int a_qeltvapi_satllist_qry_rec_id(uint32_t satl_id, uint32_t arg2, uint32_t* rec_id);

/**
 * Deletes a satellite record. Asks method 101.
 *
 * @param satl_id satellite-list id
 * @param rec_id  record id
 * @return the service's code
 */
int a_qeltvapi_satllist_del_rec(uint32_t satl_id, uint32_t rec_id);

/**
 * Reads a satellite record by index. Asks method 102.
 *
 * @param satl_id satellite-list id
 * @param index   index, from 0
 * @param rec     [out] satellite record, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_satllist_get_rec_by_rec_idx(uint32_t satl_id, uint32_t index, void* rec);

/**
 * Takes a snapshot of a satellite list, to be given back with a_qeltvapi_satllist_free_snapshot().
 * Asks method 103.
 *
 * @param satl_id  satellite-list id
 * @param snapshot [out] handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_satllist_create_snapshot(uint32_t satl_id, uint32_t* snapshot);

/**
 * Puts a satellite list back as a snapshot has it. Asks method 104.
 *
 * @param snapshot handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_satllist_restore_snapshot(uint32_t snapshot);

/**
 * Drops a snapshot of a satellite list. Asks method 105.
 *
 * @param snapshot handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_satllist_free_snapshot(uint32_t snapshot);

/**
 * Empties a transport-stream list. Asks method 119.
 *
 * @param list_id transport-stream-list id
 * @return the service's code
 */
int a_qeltvapi_tsl_clean(uint32_t list_id);

/**
 * Deletes a transport-stream record. Asks method 120.
 *
 * @param list_id transport-stream-list id
 * @param rec_id  record id
 * @return the service's code
 */
int a_qeltvapi_tsl_del_rec(uint32_t list_id, uint32_t rec_id);

/**
 * Asks for the record id of a transport stream. Asks method 121.
 *
 * @param list_id transport-stream-list id
 * @param arg2    passed unchanged
 * @param rec_id  [out] record id
 * @return the service's code
 */
int a_qeltvapi_tsl_qry_rec_id(uint32_t list_id, uint32_t arg2, uint32_t* rec_id);

/**
 * Reads the transport-stream records of one satellite. Asks method 122.
 *
 * @param list_id     transport-stream-list id
 * @param satl_rec_id record id of the satellite
 * @param arg3        passed unchanged
 * @param arg4        passed unchanged
 * @param arg5        passed unchanged
 * @param recs        [out] transport-stream records, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                               uint32_t arg3, uint32_t arg4, uint32_t arg5,
                                               void* recs);

/**
 * Counts the transport-stream records of one satellite. Asks method 123.
 *
 * @param list_id     transport-stream-list id
 * @param satl_rec_id record id of the satellite
 * @param count       [out] number of records
 * @return the service's code
 */
int a_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                                  uint32_t* count);

/**
 * Reads a transport-stream record by record id. Asks method 124.
 *
 * @param list_id transport-stream-list id
 * @param rec_id  record id
 * @param rec     [out] transport-stream record, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_tsl_get_rec(uint32_t list_id, uint32_t rec_id, void* rec);

/**
 * Writes a transport-stream record. Asks method 125.
 *
 * @param list_id transport-stream-list id
 * @param rec     transport-stream record, QELTVAPI_TSL_REC_SIZE bytes
 * @param flag    not 0: true
 * @return the service's code
 */
int a_qeltvapi_tsl_update_rec(uint32_t list_id, const void* rec, int flag);

/**
 * Counts the transport-stream records. Asks method 126.
 *
 * @param list_id transport-stream-list id
 * @param count   [out] number of records
 * @return the service's code
 */
int a_qeltvapi_tsl_get_num_recs(uint32_t list_id, uint32_t* count);

/**
 * Reads a transport-stream record by index. Asks method 127.
 *
 * @param list_id transport-stream-list id
 * @param index   index, from 0
 * @param rec     [out] transport-stream record, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_tsl_get_rec_by_rec_idx(uint32_t list_id, uint32_t index, void* rec);

/**
 * Empties a network list. Asks method 128.
 *
 * @param list_id network-list id
 * @return the service's code
 */
int a_qeltvapi_nwl_clean(uint32_t list_id);

/**
 * Deletes a network record. Asks method 129.
 *
 * @param list_id network-list id
 * @param rec_id  record id
 * @return the service's code
 */
int a_qeltvapi_nwl_del_rec(uint32_t list_id, uint32_t rec_id);

/**
 * Asks for the record id of a network. Asks method 130.
 *
 * @param list_id network-list id
 * @param arg2    passed unchanged
 * @param rec_id  [out] record id
 * @return the service's code
 */
int a_qeltvapi_nwl_qry_rec_id(uint32_t list_id, uint32_t arg2, uint32_t* rec_id);

/**
 * Reads the network records of one satellite. Asks method 131.
 *
 * @param list_id     network-list id
 * @param satl_rec_id record id of the satellite
 * @param arg3        passed unchanged
 * @param arg4        passed unchanged
 * @param arg5        passed unchanged
 * @param recs        [out] network records, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_nwl_get_nwl_recs_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                               uint32_t arg3, uint32_t arg4, uint32_t arg5,
                                               void* recs);

/**
 * Counts the network records of one satellite. Asks method 132.
 *
 * @param list_id     network-list id
 * @param satl_rec_id record id of the satellite
 * @param count       [out] number of records
 * @return the service's code
 */
int a_qeltvapi_nwl_get_nwl_num_rec_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                                  uint32_t* count);

/**
 * Reads a network record by record id. Asks method 133.
 *
 * @param list_id network-list id
 * @param rec_id  record id
 * @param rec     [out] network record, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_nwl_get_rec(uint32_t list_id, uint32_t rec_id, void* rec);

/**
 * Writes a network record. Asks method 134.
 *
 * @param list_id network-list id
 * @param rec     network record, QELTVAPI_NWL_REC_SIZE bytes
 * @param flag    not 0: true
 * @return the service's code
 */
int a_qeltvapi_nwl_update_rec(uint32_t list_id, const void* rec, int flag);

/**
 * Counts the network records. Asks method 135.
 *
 * @param list_id network-list id
 * @param count   [out] number of records
 * @return the service's code
 */
int a_qeltvapi_nwl_get_num_recs(uint32_t list_id, uint32_t* count);

/**
 * Reads a network record by index. Asks method 136.
 *
 * @param list_id network-list id
 * @param index   index, from 0
 * @param rec     [out] network record, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_nwl_get_rec_by_rec_idx(uint32_t list_id, uint32_t index, void* rec);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_DVBSCONFIG_H */
