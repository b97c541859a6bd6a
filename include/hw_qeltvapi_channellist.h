/**
 * The channel list: locking, records of services and of the transport streams that carry them, the
 * current channel, queries, counts, channel ids and numbers, favourite lists, snapshots.
 *
 * Results: the service's code, unless a function says otherwise; 0 without a service, with a line
 * in the log while debugging (the two batch reads by handle and by index write none). After a
 * transport failure a function that returns the service's code returns -1, any other what its
 * comment says.
 *
 * Records are blocks of fixed sizes whose content the application and the service define. Where the
 * comment of an output names a size, an answer of another size is not stored: the buffers are
 * untouched then, and the result is still the service's code. List ids have 16 bits. Handles are
 * tokens of the service.
 *
 * Arguments argN, masks, filters, broadcast types and channel ids are service-defined. Reference
 * television: layouts/channel_records.h and layouts/channel_ids.h; a favourite list is a number
 * from 0 to 3; where a list id is given, the low 16 bits of a channel id are enough.
 *
 * The four batch reads allocate two blocks of shared memory, which takes as long as about three
 * calls. They pay from five records on.
 */
#ifndef HW_QELTVAPI_CHANNELLIST_H
#define HW_QELTVAPI_CHANNELLIST_H

#include "hw_qeltvapi_callback_types.h"
#include "hw_qeltvapi_channel_records.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for changes of a channel list, replacing the previous one, and requests
 * the registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_channellist_register_callback(qeltvapi_channellist_update_cb_t fn);

/**
 * Registers the callback for changes of the TV provider's channels, replacing the previous one, and
 * requests the registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_tvprovider_channellist_register_callback(qeltvapi_tvprovider_cb_t fn);

/**
 * Registers the callback for changes of watched columns of the channel list, replacing the previous
 * one, and requests the registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_concerncolumn_channellist_register_callback(qeltvapi_concern_column_cb_t fn);

/**
 * Registers the callback for changes of the service-list id, replacing the previous one, and
 * requests the registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_svlid_update_register_callback(qeltvapi_svlid_update_cb_t fn);

/**
 * Registers the callback for changes of the transport-stream-list id, replacing the previous one,
 * and requests the registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_tslid_update_register_callback(qeltvapi_tslid_update_cb_t fn);

/**
 * Registers the callback for changes of the list mode, replacing the previous one, and requests the
 * registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_listMode_update_register_callback(qeltvapi_listmode_update_cb_t fn);

/**
 * Registers the callback for scan information of the operator channel list, replacing the previous
 * one, and requests the registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_ocl_scanInfo_register_callback(qeltvapi_ocl_scaninfo_cb_t fn);

/**
 * Locks the channel database, for a series of reads or writes.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: access, a CHANNEL_LOCK_ value
 * @return the service's code
 */
int a_qeltvapi_channellist_lock_database(uint32_t arg1, uint32_t arg2);

/**
 * Releases the lock of the channel database.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: access of the lock, a CHANNEL_LOCK_ value
 * @return the service's code
 */
int a_qeltvapi_channellist_unlock_database(uint32_t arg1, uint32_t arg2);

/**
 * Reads the two records of one channel.
 *
 * @param svl_id     service-list id; reference television: CHANNEL_LIST_
 * @param channel_id channel id, read and not written; reference television: the low 16 bits
 * @param svl        [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *                   channel_record_t
 * @param tsl        [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes; reference
 *                   television: a multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_get_channel_by_id(uint32_t svl_id, const uint16_t* channel_id, void* svl,
                                             void* tsl);

/**
 * Reads the channel id of the current channel.
 *
 * @return the channel id; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_current_chan_id(void);

/**
 * Reads the service-list record of one channel.
 *
 * @param svl_id     service-list id; reference television: CHANNEL_LIST_
 * @param channel_id channel id; reference television: or its low 16 bits
 * @param svl        [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *                   channel_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_rec_by_channel_id(uint32_t svl_id, uint32_t channel_id,
                                                     void* svl);

/**
 * Reads the two records of the current channel and its list.
 *
 * `*svl_id` is written on every return: 0 if the records were not stored.
 *
 * @param svl_id [out] service-list id
 * @param svl    [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *               channel_record_t
 * @param tsl    [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes; reference television: a
 *               multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_get_current_channel(uint16_t* svl_id, void* svl, void* tsl);

/**
 * Makes a channel the current one.
 *
 * @param channel_id channel id; reference television: the low 16 bits mean the current list
 * @return the service's code
 */
int a_qeltvapi_channellist_set_current_channel(uint32_t channel_id);

/**
 * Deletes the channels without a logical channel number.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: CHANNEL_BROADCAST_ type, 0 for any
 * @return the service's code
 */
int a_qeltvapi_channellist_delete_channel_without_lcn(uint32_t arg1, uint32_t arg2);

/**
 * Shifts channels to free numbers of one-part channel ids.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: first channel number to shift
 * @param arg3 service-defined; reference television: offset of the numbers, signed
 * @return the service's code
 */
int a_qeltvapi_channellist_slide_for_one_part_channel_id(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3);

/**
 * Makes a channel of one list the current one.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param arg2   service-defined; reference television: channel id, or its low 16 bits
 * @return the service's code
 */
int a_qeltvapi_channellist_set_current_channel_by_svlId(uint32_t svl_id, uint32_t arg2);

/**
 * Makes a channel of one list the second current one.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param arg2   service-defined; reference television: channel id, or its low 16 bits; 0 for none
 * @return the service's code
 */
int a_qeltvapi_channellist_set_2nd_current_channel_by_svlId(uint32_t svl_id, uint32_t arg2);

/**
 * Reads the two records of the navigator's channel and its list.
 *
 * `*svl_id` is written on every return: 0 if the records were not stored.
 *
 * @param arg1   service-defined; reference television: 0 for the current channel, 1 for the second
 *               current one
 * @param svl_id [out] service-list id
 * @param svl    [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *               channel_record_t
 * @param tsl    [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes; reference television: a
 *               multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_get_current_channel_from_nav(uint32_t arg1, uint16_t* svl_id, void* svl,
                                                        void* tsl);

/**
 * Reads a channel number.
 *
 * @param arg1 service-defined; reference television: channel id
 * @return the number; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_channel_number(uint32_t arg1);

/**
 * Opens the service list of an id.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param handle [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_handle_by_svl_id(uint32_t svl_id, uint32_t* handle);

/**
 * Opens the transport-stream list that belongs to a service list.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param handle [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_channellist_get_tsl_handle_by_svl_id(uint32_t svl_id, uint32_t* handle);

/**
 * Reads a pair of records through list handles.
 *
 * The two words are stored only together with the records.
 *
 * @param arg1   service-defined; reference television: handle of the service list
 * @param arg2   service-defined; reference television: handle of the transport-stream list
 * @param arg3   service-defined; reference television: index, from 0
 * @param value1 [out] service-defined; reference television: number of channels
 * @param value2 [out] service-defined; reference television: version of the list
 * @param svl    [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *               channel_record_t
 * @param tsl    [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes; reference television: a
 *               multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_tsl_rec_by_handle(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                     uint32_t* value1, uint32_t* value2, void* svl,
                                                     void* tsl);

/**
 * Reads a batch of records through list handles.
 *
 * Both arrays are written in any case, with zeros if the service has stored nothing or is missing.
 * Without shared memory no transaction is made and nothing is written.
 *
 * @param svl_handle handle of the service list
 * @param tsl_handle handle of the transport-stream list
 * @param count      number of records of each kind
 * @param value1     [out] service-defined; reference television: number of records
 * @param value2     [out] service-defined; reference television: version of the list
 * @param svl        [out] @p count service-list records of QELTVAPI_SVL_REC_SIZE bytes; reference
 *                   television: each a channel_record_t
 * @param tsl        [out] @p count transport-stream records of QELTVAPI_TSL_REC_SIZE bytes;
 *                   reference television: each a multiplex_record_t
 * @return the service's code; 0 after a transport failure or without shared memory
 */
int a_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex(uint32_t svl_handle, uint32_t tsl_handle,
                                                        uint32_t count, uint32_t* value1,
                                                        uint32_t* value2, void* svl, void* tsl);

/**
 * Reads a batch of records by index.
 *
 * Both arrays are written in any case, with zeros if the service has stored nothing or is missing.
 * Without shared memory no transaction is made and nothing is written.
 *
 * @param arg1  service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2  service-defined; reference television: index of the first record, from 0
 * @param arg3  service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg4  service-defined; reference television: value of the flags under the mask,
 *              CHANNEL_FLAG_ bits
 * @param arg5  service-defined; reference television: CHANNEL_FILTER_ bits
 * @param arg6  service-defined; reference television: CHANNEL_BROADCAST_ type, 0 for any
 * @param arg7  service-defined; reference television: favourite list + 1, 1 to 4; 0 for the whole
 *              list
 * @param count number of records of each kind
 * @param arg9  service-defined; reference television: ignored
 * @param svl   [out] @p count service-list records of QELTVAPI_SVL_REC_SIZE bytes; reference
 *              television: each a channel_record_t
 * @param tsl   [out] @p count transport-stream records of QELTVAPI_TSL_REC_SIZE bytes; reference
 *              television: each a multiplex_record_t
 * @return the service's code; 0 after a transport failure or without shared memory
 */
int a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                       uint32_t arg4, uint32_t arg5, uint32_t arg6,
                                                       uint32_t arg7, uint32_t count, uint32_t arg9,
                                                       void* svl, void* tsl);

/**
 * Writes a pair of records.
 *
 * @param arg1  service-defined; reference television: id of the service list, CHANNEL_LIST_
 * @param arg2  service-defined; reference television: id of the transport-stream list, as @p arg1
 * @param arg3  service-defined; reference television: record id of the service, 0 to add it
 * @param arg4  service-defined; reference television: CHANNEL_WRITE_ bits
 * @param mask  mask of the flags to set, read and not written; reference television: CHANNEL_FLAG_
 *              bits
 * @param value value of the flags under the mask, read and not written; reference television:
 *              CHANNEL_FLAG_ bits
 * @param svl   service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *              channel_record_t
 * @param tsl   transport-stream record, QELTVAPI_TSL_REC_SIZE bytes; reference television: a
 *              multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_set_svl_tsl_rec_info(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4, const uint32_t* mask,
                                                const uint32_t* value, const void* svl,
                                                const void* tsl);

/**
 * Requests the RF information of a channel.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: channel id, or its low 16 bits; the
 *             notification CHANNEL_UPDATE_RF is the answer
 * @param arg3 service-defined; reference television: ignored
 * @return the service's code
 */
int a_qeltvapi_channellist_get_channel_rf_info(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Reads information about the service list of a broadcast medium.
 *
 * @param medium broadcast medium; reference television: CHANNEL_LIST_
 * @param value1 [out] service-defined; reference television: id of the service list
 * @param value2 [out] service-defined; reference television: id of the transport-stream list
 * @param value3 [out] service-defined; reference television: number of channels
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_info_by_brdcast_medium(uint32_t medium, uint16_t* value1,
                                                          uint16_t* value2, uint32_t* value3);

/**
 * Swaps two channels.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: channel id, or its low 16 bits
 * @param arg3 service-defined; reference television: the other channel id, as @p arg2
 * @return the service's code
 */
int a_qeltvapi_channellist_swap_channels(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Swaps two favourite channels.
 *
 * @param arg1 service-defined; reference television: favourite list, 0 to 3
 * @param arg2 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg3 service-defined; reference television: channel id, or its low 16 bits
 * @param arg4 service-defined; reference television: the other channel id, as @p arg3
 * @return the service's code
 */
int a_qeltvapi_channellist_swap_favorites(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                          uint32_t arg4);

/**
 * Sets favourite flags of a channel.
 *
 * @param arg1  service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2  service-defined; reference television: channel id, or its low 16 bits
 * @param arg3  service-defined; reference television: favourite list, 0 to 3
 * @param arg4, arg5 service-defined; reference television: ignored
 * @param flag  0 for false, any other value for true; reference television: true adds the channel
 *              to the favourite list, false removes it
 * @param value [out] service-defined; reference television: CHANNEL_FLAG_ bits of the channel
 * @return the service's code
 */
int a_qeltvapi_channellist_set_favorites_by_id(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                               uint32_t arg4, uint32_t arg5, int flag,
                                               uint32_t* value);

/**
 * Reads a batch of records of a broadcast type.
 *
 * Both arrays are written in any case, with zeros if the service has stored nothing or is missing.
 * Without shared memory no transaction is made and nothing is written.
 *
 * @param arg1   service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2   service-defined; reference television: CHANNEL_BROADCAST_ type, 0 for any
 * @param arg3   service-defined; reference television: index of the first record, from 0
 * @param count  number of records of each kind
 * @param arg5   service-defined; reference television: CHANNEL_FILTER_ bits
 * @param svl    [out] @p count service-list records of QELTVAPI_SVL_REC_SIZE bytes; reference
 *               television: each a channel_record_t
 * @param tsl    [out] @p count transport-stream records of QELTVAPI_TSL_REC_SIZE bytes; reference
 *               television: each a multiplex_record_t
 * @param value1 [out] service-defined; reference television: number of records
 * @param value2 [out] service-defined; reference television: number of records that pass in all
 * @return the service's code; 0 after a transport failure or without shared memory
 */
int a_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type(uint32_t arg1, uint32_t arg2,
                                                            uint32_t arg3, uint32_t count,
                                                            uint32_t arg5, void* svl, void* tsl,
                                                            uint32_t* value1, uint32_t* value2);

/**
 * Reads a batch of records that pass a filter.
 *
 * Both arrays are written in any case, with zeros if the service has stored nothing or is missing.
 * Without shared memory no transaction is made and nothing is written.
 *
 * @param arg1   service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2   service-defined; reference television: CHANNEL_FILTER_ bits
 * @param arg3   service-defined; reference television: channel id, or its low 16 bits; 0 for the
 *               first one
 * @param flag   0 for false, any other value for true; reference television: true continues at the
 *               other end of the list
 * @param arg5   service-defined; reference television: CHANNEL_BROADCAST_ type, 0 for any
 * @param count1 first number of records of each kind; reference television: records before the
 *               channel
 * @param count2 second number of records of each kind; reference television: records from the
 *               channel on
 * @param svl    [out] @p count1 + @p count2 service-list records of QELTVAPI_SVL_REC_SIZE bytes;
 *               reference television: each a channel_record_t
 * @param tsl    [out] @p count1 + @p count2 transport-stream records of QELTVAPI_TSL_REC_SIZE
 *               bytes; reference television: each a multiplex_record_t
 * @param value1 [out] service-defined; reference television: number of records before the channel
 * @param value2 [out] service-defined; reference television: number of records from the channel on
 * @return the service's code; 0 after a transport failure or without shared memory
 */
int a_qeltvapi_channellist_get_svl_tsl_recs_by_filter(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                      int flag, uint32_t arg5, uint32_t count1,
                                                      uint32_t count2, void* svl, void* tsl,
                                                      uint32_t* value1, uint32_t* value2);

/**
 * Counts the records that pass a filter.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param filter filter; reference television: CHANNEL_FILTER_ bits
 * @return the count; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_number_by_filter(uint32_t svl_id, uint32_t filter);

/**
 * Finds the channel before another one among those that pass a filter.
 *
 * @param arg1       service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2       service-defined; reference television: CHANNEL_FILTER_ bits
 * @param arg3       service-defined; reference television: channel id, or its low 16 bits
 * @param arg4       service-defined; reference television: CHANNEL_BROADCAST_ type, 0 for any
 * @param channel_id [out] channel id; reference television: the last one before the first
 * @return the service's code
 */
int a_qeltvapi_channellist_get_prev_channel_id_by_filter(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3, uint32_t arg4,
                                                         uint32_t* channel_id);

/**
 * Reads the current favourite list.
 *
 * @param list [out] favourite-list record, QELTVAPI_FAVORITE_LIST_REC_SIZE bytes; reference
 *             television: a favourite_list_record_t
 * @return the service's code
 */
int a_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter(void* list);

/**
 * Adds the current channel to the current favourite list.
 *
 * @return the service's code
 */
int a_qeltvapi_favoritelist_add_favoritelist_channel(void);

/**
 * Adds the current channel at a place of the current favourite list.
 *
 * @param index index, from 0
 * @return the service's code
 */
int a_qeltvapi_favoritelist_add_favoritelist_channel_by_index(uint32_t index);

/**
 * Removes the channel at a place of the current favourite list, without showing the icon.
 *
 * @param index index, from 0
 * @return the service's code
 */
int a_qeltvapi_favoritelist_remove_favoritelist_channel_by_index_without_show_fav_icon(
        uint32_t index);

/**
 * Removes a channel from the current favourite list.
 *
 * @param arg1 service-defined; reference television: channel id, 0 for the current channel
 * @return the service's code
 */
int a_qeltvapi_favoritelist_remove_favoritelist_channel(uint32_t arg1);

/**
 * Stores the favourite list in the file system.
 *
 * @return the service's code
 */
int a_qeltvapi_favoritelist_fs_store(void);

/**
 * Swaps two places of the current favourite list.
 *
 * @param index1 one index, from 0
 * @param index2 the other index, from 0
 * @return the service's code
 */
int a_qeltvapi_favoritelist_swap_favoritelist_by_index(uint32_t index1, uint32_t index2);

/**
 * Writes a pair of records without a notification.
 *
 * @param arg1  service-defined; reference television: id of the service list, CHANNEL_LIST_
 * @param arg2  service-defined; reference television: id of the transport-stream list, as @p arg1
 * @param arg3  service-defined; reference television: record id of the service, 0 to add it
 * @param arg4  service-defined; reference television: CHANNEL_WRITE_ bits
 * @param mask  mask of the flags to set, read and not written; reference television: CHANNEL_FLAG_
 *              bits
 * @param value value of the flags under the mask, read and not written; reference television:
 *              CHANNEL_FLAG_ bits
 * @param svl   service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *              channel_record_t
 * @param tsl   transport-stream record, QELTVAPI_TSL_REC_SIZE bytes; reference television: a
 *              multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_set_svl_tsl_rec_info_without_notify(uint32_t arg1, uint32_t arg2,
                                                               uint32_t arg3, uint32_t arg4,
                                                               const uint32_t* mask,
                                                               const uint32_t* value,
                                                               const void* svl, const void* tsl);

/**
 * Sends a request of the channel-list interface.
 *
 * @param arg1  service-defined; reference television: a CHANNEL_REQUEST_ value
 * @param block block of QELTVAPI_INTERFACE_BLOCK_SIZE bytes; reference television: a
 *              channel_request_t
 * @param arg3, arg4 service-defined; reference television: ignored
 * @param arg5  word, read and not written; reference television: ignored
 * @return the service's code
 */
int a_qeltvapi_channellist_interface(uint32_t arg1, const void* block, uint32_t arg3, uint32_t arg4,
                                     const uint32_t* arg5);

/**
 * Counts the channels that a query finds.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param arg2   service-defined; reference television: CHANNEL_FILTER_ bits
 * @param arg3   service-defined; reference television: CHANNEL_BROADCAST_ type, 0 for any
 * @param info   query information, QELTVAPI_QUERY_INFO_SIZE bytes; reference television: a
 *               channel_query_t
 * @return the count; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_channel_number_by_query_info(uint32_t svl_id, uint32_t arg2,
                                                            uint32_t arg3, const void* info);

/**
 * Reads the pair of records that a query finds.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: CHANNEL_FILTER_ bits
 * @param arg3 service-defined; reference television: CHANNEL_BROADCAST_ type, 0 for any
 * @param info query information, QELTVAPI_QUERY_INFO_SIZE bytes; reference television: a
 *             channel_query_t
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *             channel_record_t
 * @param tsl  [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes; reference television: a
 *             multiplex_record_t
 * @param arg5 service-defined; reference television: index among the found records, from 0
 * @param arg6 service-defined; reference television: ignored
 * @return the service's code
 */
int a_qeltvapi_channellist_get_channellist_by_query_info(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3, const void* info, void* svl,
                                                         void* tsl, uint32_t arg5, uint32_t arg6);

/**
 * Empties a service list with its transport-stream and logical-order lists.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param arg2   service-defined word, read and not written, null counts as 0; reference television:
 *               CHANNEL_BROADCAST_ type, 0 for any
 * @param arg3   service-defined word, read and not written, null counts as 0; reference television:
 *               ignored
 * @return the service's code
 */
int a_qeltvapi_channellist_svl_tsl_lol_clean(uint32_t svl_id, const uint32_t* arg2,
                                             const uint32_t* arg3);

/**
 * Deletes the channels of a broadcast type with their transport streams and logical order.
 *
 * @param svl_id      service-list id; reference television: CHANNEL_LIST_
 * @param brdcst_type broadcast type; reference television: a CHANNEL_BROADCAST_ value, 0 for any
 * @return the service's code
 */
int a_qeltvapi_channellist_and_ts_lol_del_by_brdcst(uint32_t svl_id, uint32_t brdcst_type);

/**
 * Counts the records whose flags match.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param mask   mask of the flags to compare; reference television: CHANNEL_FLAG_ bits
 * @param value  value of the flags under the mask; reference television: CHANNEL_FLAG_ bits
 * @return the count; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_number_by_mask(uint32_t svl_id, uint32_t mask, uint32_t value);

/**
 * Reads a service-list record by index.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg3 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @param arg4 service-defined; reference television: index, from 0
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *             channel_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_rec_by_index(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4, void* svl);

/**
 * Counts the records with a name.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param arg2   service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg3   service-defined; reference television: value of the flags under the mask,
 *               CHANNEL_FLAG_ bits
 * @param name   channel name; null counts as ""
 * @return the count; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_number_by_name(uint32_t svl_id, uint32_t arg2, uint32_t arg3,
                                              const char* name);

/**
 * Finds the index of a channel.
 *
 * @param arg1  service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2  service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg3  service-defined; reference television: value of the flags under the mask,
 *              CHANNEL_FLAG_ bits
 * @param arg4  service-defined; reference television: channel id, or its low 16 bits
 * @param index [out] index
 * @return the service's code
 */
int a_qeltvapi_channellist_get_index_by_channel(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4, uint32_t* index);

/**
 * Reads a service-list record by index among those with a name.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg3 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @param name channel name; null counts as ""
 * @param arg5 service-defined; reference television: index, from 0
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *             channel_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_rec_by_index_and_name(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3, const char* name,
                                                         uint32_t arg5, void* svl);

/**
 * Reads records whose flags match.
 *
 * @param arg1 service-defined; reference television: id of the service list, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: id of the transport-stream list, as @p arg1
 * @param arg3 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg4 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @param arg5 service-defined; reference television: index of the first record, from 0
 * @param arg6 service-defined; reference television: number of records, at most 1000
 * @param arg7 service-defined; reference television: CHANNEL_BROADCAST_ type, 0 for any
 * @param arg8 service-defined; reference television: CHANNEL_FILTER_ bits
 * @param arg9, arg10 service-defined; reference television: ignored
 * @param svl  [out] service-list records, as many bytes as the service sends, not bounded by the
 *             buffer's size; reference television: at most @p arg6 records, each a channel_record_t
 * @param tsl  [out] transport-stream records, as many bytes as the service sends, not bounded by
 *             the buffer's size; reference television: at most @p arg6 records, each a
 *             multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_tsl_recs_by_mask(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                    uint32_t arg4, uint32_t arg5, uint32_t arg6,
                                                    uint32_t arg7, uint32_t arg8, uint32_t arg9,
                                                    uint32_t arg10, void* svl, void* tsl);

/**
 * Deletes the channels of a broadcast type.
 *
 * @param svl_id      service-list id; reference television: CHANNEL_LIST_
 * @param brdcst_type broadcast type; reference television: a CHANNEL_BROADCAST_ value, 0 for any
 * @return the service's code
 */
int a_qeltvapi_channellist_delete_by_brdcst(uint32_t svl_id, uint32_t brdcst_type);

/**
 * Empties a logical-order list.
 *
 * @param lol_id list id, 32 bits; reference television: CHANNEL_LIST_
 * @return the service's code
 */
int a_qeltvapi_channellist_clean_lol(uint32_t lol_id);

/**
 * Deletes the channels of a broadcast type with their transport streams.
 *
 * @param svl_id      service-list id; reference television: CHANNEL_LIST_
 * @param brdcst_type broadcast type; reference television: a CHANNEL_BROADCAST_ value, 0 for any
 * @return the service's code
 */
int a_qeltvapi_channellist_and_ts_del_by_brdcst(uint32_t svl_id, uint32_t brdcst_type);

/**
 * Reports whether a channel number is in use.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param number channel number
 * @return the service's answer, 8 bits (reference television: 1 or 0); 0 after a transport failure
 */
int a_qeltvapi_channellist_is_exist_by_channel_number(uint32_t svl_id, uint32_t number);

/**
 * Takes a snapshot of a list; a_qeltvapi_channellist_free_snapshot() frees it.
 *
 * @param svl_id   service-list id; reference television: CHANNEL_LIST_
 * @param snapshot [out] handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_channellist_create_snapshot(uint32_t svl_id, uint32_t* snapshot);

/**
 * Restores a list from a snapshot.
 *
 * @param snapshot handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_channellist_restore_snapshot(uint32_t snapshot);

/**
 * Frees a snapshot.
 *
 * @param snapshot handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_channellist_free_snapshot(uint32_t snapshot);

/**
 * Reads a pair of records by record id.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param rec_id record id of the service
 * @param svl    [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *               channel_record_t
 * @param tsl    [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes; reference television: a
 *               multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(uint32_t svl_id, uint32_t rec_id,
                                                         void* svl, void* tsl);

/**
 * Deletes a transport stream and its services.
 *
 * @param svl_id service-list id; reference television: CHANNEL_LIST_
 * @param rec_id record id of the transport stream
 * @return the service's code
 */
int a_qeltvapi_channellist_del_tsl_svl_rec_by_tsl_rec_id(uint32_t svl_id, uint32_t rec_id);

/**
 * Deletes the transport streams of a satellite and their services.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: id of the satellite list,
 *             CHANNEL_LIST_SATELLITE
 * @param arg3 service-defined; reference television: record id of the satellite
 * @return the service's code
 */
int a_qeltvapi_channellist_del_tsl_svl_rec_by_satl_rec_id(uint32_t arg1, uint32_t arg2,
                                                          uint32_t arg3);

/**
 * Reads the ids of all service lists.
 *
 * All ids are stored that the service has, not bounded by the capacity.
 *
 * @param svl_ids [out] service-list ids; reference television: at most the capacity in @p count
 * @param count   [in,out] capacity of @p svl_ids in ids; then the number of ids
 * @return the service's code, 16 bits sign-extended; 0 after a transport failure or without shared
 *         memory
 */
int a_qeltvapi_tvprovider_get_all_svlid(uint16_t* svl_ids, uint16_t* count);

/**
 * Counts the service lists.
 *
 * @return the count; 0 after a transport failure
 */
int a_qeltvapi_tvprovider_get_all_svlid_count(void);

/**
 * Opens the service list behind a favourite list.
 *
 * @param arg1   service-defined; reference television: favourite list, 0 to 3
 * @param arg2   service-defined; reference television: list id, CHANNEL_LIST_
 * @param handle [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_favorite_list_get_svl_handle_by_favorite_list_idx(uint32_t arg1, uint32_t arg2,
                                                                 uint32_t* handle);

/**
 * Adds a channel at the end of a favourite list.
 *
 * @param arg1 service-defined; reference television: favourite list, 0 to 3
 * @param arg2 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg3 service-defined; reference television: channel id, or its low 16 bits
 * @return the service's code
 */
int a_qeltvapi_favorite_list_add_tail(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Adds all channels of a kind to a favourite list.
 *
 * @param arg1 service-defined; reference television: favourite list, 0 to 3
 * @param arg2 service-defined; reference television: list id, CHANNEL_LIST_; 0 for every list
 * @param arg3 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg4 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @return the service's code
 */
int a_qeltvapi_favorite_list_add_all(uint32_t arg1, uint32_t arg2, uint32_t arg3, uint32_t arg4);

/**
 * Deletes a channel from a favourite list.
 *
 * @param arg1 service-defined; reference television: favourite list, 0 to 3
 * @param arg2 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg3 service-defined; reference television: channel id, or its low 16 bits
 * @return the service's code
 */
int a_qeltvapi_favorite_list_delete(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Deletes all channels of a kind from a favourite list.
 *
 * @param arg1 service-defined; reference television: favourite list, 0 to 3
 * @param arg2 service-defined; reference television: list id, CHANNEL_LIST_; 0 for every list
 * @param arg3 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg4 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @return the service's code
 */
int a_qeltvapi_favorite_list_del_all(uint32_t arg1, uint32_t arg2, uint32_t arg3, uint32_t arg4);

/**
 * Deletes all channels of a kind from a favourite list, as a_qeltvapi_favorite_list_del_all() does,
 * whose method it calls: no swap reaches the service.
 *
 * @param arg1 service-defined; reference television: favourite list, 0 to 3
 * @param arg2 service-defined; reference television: list id, CHANNEL_LIST_; 0 for every list
 * @param arg3 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg4 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @return the service's code
 */
int a_qeltvapi_favorite_list_swap_by_channel_id(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4);

/**
 * Counts the channels of a favourite list whose flags match.
 *
 * @param arg1 service-defined; reference television: favourite list, 0 to 3
 * @param arg2 service-defined; reference television: list id, CHANNEL_LIST_; 0 for every list
 * @param arg3 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg4 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @return the count; 0 after a transport failure
 */
int a_qeltvapi_favorite_list_number_by_mask(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                            uint32_t arg4);

/**
 * Reads a service-list record of a favourite list by index.
 *
 * @param arg1 service-defined; reference television: favourite list, 0 to 3
 * @param arg2 service-defined; reference television: list id, CHANNEL_LIST_; 0 for every list
 * @param arg3 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg4 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @param arg5 service-defined; reference television: index, from 0
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *             channel_record_t
 * @return the service's code
 */
int a_qeltvapi_favorite_list_get_svl_rec_by_index(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                  uint32_t arg4, uint32_t arg5, void* svl);

/**
 * Reads a pair of records of a favourite list by index.
 *
 * @param arg1 service-defined; reference television: favourite list, 0 to 3
 * @param arg2 service-defined; reference television: list id, CHANNEL_LIST_; 0 for every list
 * @param arg3 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg4 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @param arg5 service-defined; reference television: index, from 0
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *             channel_record_t
 * @param tsl  [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes; reference television: a
 *             multiplex_record_t
 * @return the service's code
 */
int a_qeltvapi_favorite_list_get_svl_tsl_rec_by_index(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                      uint32_t arg4, uint32_t arg5, void* svl,
                                                      void* tsl);

/**
 * Finds the index of a channel in a favourite list.
 *
 * @param arg1  service-defined; reference television: favourite list, 0 to 3
 * @param arg2  service-defined; reference television: list id, CHANNEL_LIST_; 0 for every list
 * @param arg3  service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg4  service-defined; reference television: value of the flags under the mask,
 *              CHANNEL_FLAG_ bits
 * @param arg5  service-defined; reference television: channel id, or its low 16 bits
 * @param index [out] index
 * @return the service's code
 */
int a_qeltvapi_favorite_list_get_index_by_channel(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                  uint32_t arg4, uint32_t arg5, uint32_t* index);

/**
 * Moves a channel within a favourite list.
 *
 * @param arg1 service-defined; reference television: favourite list, 0 to 3
 * @param arg2 service-defined; reference television: list id, CHANNEL_LIST_; 0 for every list
 * @param arg3 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg4 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @param arg5 service-defined; reference television: index of the channel, from 0
 * @param arg6 service-defined; reference television: its new index
 * @return the service's code
 */
int a_qeltvapi_favorite_list_insert_move(uint32_t arg1, uint32_t arg2, uint32_t arg3, uint32_t arg4,
                                         uint32_t arg5, uint32_t arg6);

/**
 * Opens the satellite list of an id.
 *
 * @param satl_id satellite-list id
 * @param handle  [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_channellist_get_satl_handle_by_satl_id(uint32_t satl_id, uint32_t* handle);

/**
 * Opens the logical-order list of an id.
 *
 * @param lol_id logical-order-list id
 * @param handle [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_channellist_get_lol_handle_by_lol_id(uint32_t lol_id, uint32_t* handle);

/**
 * Counts the records of a broadcast type whose flags match.
 *
 * @param svl_id      service-list id; reference television: CHANNEL_LIST_
 * @param mask        mask of the flags to compare; reference television: CHANNEL_FLAG_ bits
 * @param value       value of the flags under the mask; reference television: CHANNEL_FLAG_ bits
 * @param brdcst_type broadcast type; reference television: a CHANNEL_BROADCAST_ value, 0 for any
 * @return the count; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_num_by_mask_and_brdcst(uint32_t svl_id, uint32_t mask,
                                                      uint32_t value, uint32_t brdcst_type);

/**
 * Reads a service-list record of a broadcast type whose flags match.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: mask, CHANNEL_FLAG_ bits
 * @param arg3 service-defined; reference television: value of the flags under the mask,
 *             CHANNEL_FLAG_ bits
 * @param arg4 service-defined; reference television: CHANNEL_BROADCAST_ type, 0 for any
 * @param arg5 service-defined; reference television: index, from 0
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes; reference television: a
 *             channel_record_t
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst(uint32_t arg1, uint32_t arg2,
                                                          uint32_t arg3, uint32_t arg4,
                                                          uint32_t arg5, void* svl);

/**
 * Moves a channel before another one.
 *
 * @param channel_id channel id
 * @param before_id  channel id of the channel behind it
 * @return the service's code
 */
int a_qeltvapi_one_channellist_arrange_before(uint32_t channel_id, uint32_t before_id);

/**
 * Reads the list mode.
 *
 * @return the list mode (reference television: a CHANNEL_LIST_MODE_ value); 0 after a transport
 *         failure
 */
int a_qeltvapi_channellist_getChannelListMode(void);

/**
 * Reads the channel pump version of a list.
 *
 * @param svl_id  service-list id; reference television: CHANNEL_LIST_
 * @param version [out] version
 * @return the service's code
 */
int a_qeltvapi_channellist_getChannelPumpVer(uint32_t svl_id, uint32_t* version);

/**
 * Sets the channel pump version of a list.
 *
 * @param svl_id  service-list id; reference television: CHANNEL_LIST_
 * @param version version
 * @return the service's code
 */
int a_qeltvapi_channellist_setChannelPumpVer(uint32_t svl_id, uint32_t version);

/**
 * Moves a channel behind the highest one.
 *
 * @param svl_id     service-list id; reference television: CHANNEL_LIST_
 * @param channel_id channel id; reference television: or its low 16 bits
 * @return the service's code
 */
int a_qeltvapi_one_channellist_add_channel_to_max(uint32_t svl_id, uint32_t channel_id);

/**
 * Makes a channel id.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: channel number, of two parts the major number
 * @param arg3 service-defined; reference television: minor number, 0 for a number of one part
 * @return the channel id; 0 after a transport failure; reference television: 0 if a part is out of
 *         range
 */
int a_qeltvapi_channellist_gen_channel_id(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Makes a one-part channel id.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: channel number
 * @return the channel id; 0 after a transport failure; reference television: 0 if a part is out of
 *         range
 */
int a_qeltvapi_channellist_gen_one_part_channel_id(uint32_t arg1, uint32_t arg2);

/**
 * Makes the id of a channel without PSIP.
 *
 * @param arg1 service-defined; reference television: list id, CHANNEL_LIST_
 * @param arg2 service-defined; reference television: RF channel
 * @param arg3 service-defined; reference television: program number
 * @return the channel id; 0 after a transport failure; reference television: 0 if a part is out of
 *         range
 */
int a_qeltvapi_channellist_gen_non_psip_channel_id(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Reports whether a channel id has one part.
 *
 * @param channel_id channel id
 * @return 1 or 0; 0 after a transport failure
 */
int a_qeltvapi_is_one_part_channel_id(uint32_t channel_id);

/**
 * Reports whether a channel id belongs to a channel without PSIP.
 *
 * @param channel_id channel id
 * @return 1 or 0; 0 after a transport failure
 */
int a_qeltvapi_is_non_psip_channel_id(uint32_t channel_id);

/**
 * Reads the major number of a channel id.
 *
 * @param channel_id channel id
 * @return the number, 0 to 65535; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_major_channel_num(uint32_t channel_id);

/**
 * Reads the minor number of a channel id.
 *
 * @param channel_id channel id
 * @return the number, 0 to 65535; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_minor_channel_num(uint32_t channel_id);

/**
 * Reads the index of a channel id.
 *
 * @param channel_id channel id
 * @return the index, from 0; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_channel_index(uint32_t channel_id);

/**
 * Reads the largest channel index.
 *
 * @return the index; 0 after a transport failure
 */
int a_qeltvapi_channellist_max_channel_index(void);

/**
 * Reads the last analogue cable channel.
 *
 * @return the channel; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_ntsc_cable_last_channel(void);

/**
 * Reads the last channel of a clear-QAM scan.
 *
 * @return the channel; 0 after a transport failure
 */
int a_qeltvapi_channellist_get_cqam_scan_last_channel(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CHANNELLIST_H */
