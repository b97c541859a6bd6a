/**
 * Satellite reception: the lists of satellites, of the transport streams found on them and of
 * networks, each with its records, and snapshots of the satellite list.
 *
 * Results: the service's code, unless a function says otherwise; 0 without a service, with a line
 * in the log while debugging; -1 after a transport failure.
 *
 * The layout of records is service-defined. A record that is read has the size that the service
 * sends, one that is written has the size that is given here. Handles are tokens of the service.
 * Reference television: records as in layouts/channel_records.h, satellite-list id
 * CHANNEL_LIST_SATELLITE, other list ids CHANNEL_LIST_.
 */
#ifndef HW_QELTVAPI_DVBSCONFIG_H
#define HW_QELTVAPI_DVBSCONFIG_H

#include "hw_qeltvapi_callback_types.h"
#include "hw_qeltvapi_channel_records.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for changes of the satellite list, replacing the previous one, and
 * requests the registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_satllist_register_callback(qeltvapi_satllist_update_cb_t fn);

/**
 * Locks the satellite database for writing.
 *
 * @param satl_id satellite-list id
 * @return the service's code
 */
int a_qeltvapi_satllist_lock_database(uint32_t satl_id);

/**
 * Releases the write lock of the satellite database.
 *
 * @param satl_id satellite-list id
 * @return the service's code
 */
int a_qeltvapi_satllist_unlock_database(uint32_t satl_id);

/**
 * Locks the satellite database for reading.
 *
 * @param satl_id satellite-list id
 * @return the service's code
 */
int a_qeltvapi_satllist_read_lock_database(uint32_t satl_id);

/**
 * Releases the read lock of the satellite database.
 *
 * @param satl_id satellite-list id
 * @return the service's code
 */
int a_qeltvapi_satllist_read_unlock_database(uint32_t satl_id);

/**
 * Empties a satellite list.
 *
 * @param satl_id satellite-list id
 * @return the service's code
 */
int a_qeltvapi_satllist_clean(uint32_t satl_id);

/**
 * Reads a satellite record by record id.
 *
 * @param satl_id satellite-list id
 * @param rec_id  record id
 * @param rec     [out] the satellite record, as many bytes as the service sends; reference
 *                television: a satellite_record_t
 * @return the service's code
 */
int a_qeltvapi_satllist_get_rec(uint32_t satl_id, uint32_t rec_id, void* rec);

/**
 * Writes a satellite record.
 *
 * @param satl_id satellite-list id
 * @param rec     satellite record, QELTVAPI_SATL_REC_SIZE bytes; reference television: a
 *                satellite_record_t; record id 0 adds it
 * @param flag    0 for false, any other value for true; reference television: true to notify the
 *                applications
 * @return the service's code
 */
int a_qeltvapi_satllist_update_rec(uint32_t satl_id, const void* rec, int flag);

/**
 * Counts the satellite records.
 *
 * @param satl_id satellite-list id
 * @param count   [out] number of records
 * @return the service's code
 */
int a_qeltvapi_satllist_get_num_recs(uint32_t satl_id, uint32_t* count);

/**
 * Finds the record id of a satellite.
 *
 * @param satl_id satellite-list id
 * @param arg2    service-defined; reference television: position of the satellite in tenths of a
 *                degree, east positive
 * @param rec_id  [out] record id
 * @return the service's code
 */
int a_qeltvapi_satllist_qry_rec_id(uint32_t satl_id, uint32_t arg2, uint32_t* rec_id);

/**
 * Deletes a satellite record.
 *
 * @param satl_id satellite-list id
 * @param rec_id  record id
 * @return the service's code
 */
int a_qeltvapi_satllist_del_rec(uint32_t satl_id, uint32_t rec_id);

/**
 * Reads a satellite record by index.
 *
 * @param satl_id satellite-list id
 * @param index   index, from 0
 * @param rec     [out] the satellite record, as many bytes as the service sends; reference
 *                television: a satellite_record_t
 * @return the service's code
 */
int a_qeltvapi_satllist_get_rec_by_rec_idx(uint32_t satl_id, uint32_t index, void* rec);

/**
 * Takes a snapshot of a satellite list; a_qeltvapi_satllist_free_snapshot() frees it.
 *
 * @param satl_id  satellite-list id
 * @param snapshot [out] handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_satllist_create_snapshot(uint32_t satl_id, uint32_t* snapshot);

/**
 * Restores a satellite list from a snapshot.
 *
 * @param snapshot handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_satllist_restore_snapshot(uint32_t snapshot);

/**
 * Frees a snapshot of a satellite list.
 *
 * @param snapshot handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_satllist_free_snapshot(uint32_t snapshot);

/**
 * Empties a transport-stream list.
 *
 * @param list_id transport-stream-list id
 * @return the service's code
 */
int a_qeltvapi_tsl_clean(uint32_t list_id);

/**
 * Deletes a transport-stream record.
 *
 * @param list_id transport-stream-list id
 * @param rec_id  record id
 * @return the service's code
 */
int a_qeltvapi_tsl_del_rec(uint32_t list_id, uint32_t rec_id);

/**
 * Finds the record id of a transport stream.
 *
 * @param list_id transport-stream-list id
 * @param arg2    service-defined; reference television: frequency in kHz
 * @param rec_id  [out] record id
 * @return the service's code
 */
int a_qeltvapi_tsl_qry_rec_id(uint32_t list_id, uint32_t arg2, uint32_t* rec_id);

/**
 * Reads the transport-stream records of one satellite.
 *
 * @param list_id     transport-stream-list id
 * @param satl_rec_id record id of the satellite
 * @param arg3        service-defined; reference television: index of the first record, from 0
 * @param arg4        service-defined; reference television: number of records, at most 1000
 * @param arg5        service-defined; reference television: ignored
 * @param recs        [out] the transport-stream records, as many bytes as the service sends;
 *                    reference television: at most @p arg4 records, each a multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                               uint32_t arg3, uint32_t arg4, uint32_t arg5,
                                               void* recs);

/**
 * Counts the transport-stream records of one satellite.
 *
 * @param list_id     transport-stream-list id
 * @param satl_rec_id record id of the satellite
 * @param count       [out] number of records
 * @return the service's code
 */
int a_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                                  uint32_t* count);

/**
 * Reads a transport-stream record by record id.
 *
 * @param list_id transport-stream-list id
 * @param rec_id  record id
 * @param rec     [out] the transport-stream record, as many bytes as the service sends; reference
 *                television: a multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_tsl_get_rec(uint32_t list_id, uint32_t rec_id, void* rec);

/**
 * Writes a transport-stream record.
 *
 * @param list_id transport-stream-list id
 * @param rec     transport-stream record, QELTVAPI_TSL_REC_SIZE bytes; reference television: a
 *                multiplex_record_t; record id 0 adds it
 * @param flag    0 for false, any other value for true; reference television: true to notify the
 *                applications
 * @return the service's code
 */
int a_qeltvapi_tsl_update_rec(uint32_t list_id, const void* rec, int flag);

/**
 * Counts the transport-stream records.
 *
 * @param list_id transport-stream-list id
 * @param count   [out] number of records
 * @return the service's code
 */
int a_qeltvapi_tsl_get_num_recs(uint32_t list_id, uint32_t* count);

/**
 * Reads a transport-stream record by index.
 *
 * @param list_id transport-stream-list id
 * @param index   index, from 0
 * @param rec     [out] the transport-stream record, as many bytes as the service sends; reference
 *                television: a multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_tsl_get_rec_by_rec_idx(uint32_t list_id, uint32_t index, void* rec);

/**
 * Empties a network list.
 *
 * @param list_id network-list id
 * @return the service's code
 */
int a_qeltvapi_nwl_clean(uint32_t list_id);

/**
 * Deletes a network record.
 *
 * @param list_id network-list id
 * @param rec_id  record id
 * @return the service's code
 */
int a_qeltvapi_nwl_del_rec(uint32_t list_id, uint32_t rec_id);

/**
 * Finds the record id of a network.
 *
 * @param list_id network-list id
 * @param arg2    service-defined; reference television: network id
 * @param rec_id  [out] record id
 * @return the service's code
 */
int a_qeltvapi_nwl_qry_rec_id(uint32_t list_id, uint32_t arg2, uint32_t* rec_id);

/**
 * Reads the network records of one satellite.
 *
 * @param list_id     network-list id
 * @param satl_rec_id record id of the satellite
 * @param arg3        service-defined; reference television: index of the first record, from 0
 * @param arg4        service-defined; reference television: number of records, at most 1000
 * @param arg5        service-defined; reference television: ignored
 * @param recs        [out] the network records, as many bytes as the service sends; reference
 *                    television: at most @p arg4 records, each a network_record_t
 * @return the service's code
 */
int a_qeltvapi_nwl_get_nwl_recs_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                               uint32_t arg3, uint32_t arg4, uint32_t arg5,
                                               void* recs);

/**
 * Counts the network records of one satellite.
 *
 * @param list_id     network-list id
 * @param satl_rec_id record id of the satellite
 * @param count       [out] number of records
 * @return the service's code
 */
int a_qeltvapi_nwl_get_nwl_num_rec_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                                  uint32_t* count);

/**
 * Reads a network record by record id.
 *
 * @param list_id network-list id
 * @param rec_id  record id
 * @param rec     [out] the network record, as many bytes as the service sends; reference
 *                television: a network_record_t
 * @return the service's code
 */
int a_qeltvapi_nwl_get_rec(uint32_t list_id, uint32_t rec_id, void* rec);

/**
 * Writes a network record.
 *
 * @param list_id network-list id
 * @param rec     network record, QELTVAPI_NWL_REC_SIZE bytes; reference television: a
 *                network_record_t; record id 0 adds it
 * @param flag    0 for false, any other value for true; reference television: true to notify the
 *                applications
 * @return the service's code
 */
int a_qeltvapi_nwl_update_rec(uint32_t list_id, const void* rec, int flag);

/**
 * Counts the network records.
 *
 * @param list_id network-list id
 * @param count   [out] number of records
 * @return the service's code
 */
int a_qeltvapi_nwl_get_num_recs(uint32_t list_id, uint32_t* count);

/**
 * Reads a network record by index.
 *
 * @param list_id network-list id
 * @param index   index, from 0
 * @param rec     [out] the network record, as many bytes as the service sends; reference
 *                television: a network_record_t
 * @return the service's code
 */
int a_qeltvapi_nwl_get_rec_by_rec_idx(uint32_t list_id, uint32_t index, void* rec);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_DVBSCONFIG_H */
