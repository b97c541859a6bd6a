/**
 * The channel list: locking, records of services and of the transport streams that carry them, the
 * current channel, queries, counts, channel ids and numbers, favourite lists, snapshots.
 *
 * Every function but the register functions asks IQelTvApiChannelList and returns 0 when the
 * service is not there, with a line in the log while debugging (the two batch reads by handle and
 * by index write none). After a lost reply a function that returns the service's code gives -1, any
 * other what its comment says.
 *
 * Records are blocks of fixed sizes that only caller and service look into. Where a size is told
 * with an output, an answer of another size is not stored: the buffers are then untouched, yet the
 * service's code is returned all the same. List ids are 16 bits wide. Handles are tokens of the
 * service. The meaning of the arguments named argN, and that of masks, filters, broadcast types
 * and channel ids, is the service's.
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
 * Sets the function that is told of changes of a channel list, in place of the one before, and
 * asks for the callback object to be registered. Asks no service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_channellist_register_callback(qeltvapi_channellist_update_cb_t fn);

/**
 * Sets the function that is told of changes of the TV provider's channels, in place of the one
 * before, and asks for the callback object to be registered. Asks no service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_tvprovider_channellist_register_callback(qeltvapi_tvprovider_cb_t fn);

/**
 * Sets the function that is told of changes of watched columns of the channel list, in place of
 * the one before, and asks for the callback object to be registered. Asks no service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_concerncolumn_channellist_register_callback(qeltvapi_concern_column_cb_t fn);

/**
 * Sets the function that is told of changes of the service-list id, in place of the one before,
 * and asks for the callback object to be registered. Asks no service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_svlid_update_register_callback(qeltvapi_svlid_update_cb_t fn);

/**
 * Sets the function that is told of changes of the transport-stream-list id, in place of the one
 * before, and asks for the callback object to be registered. Asks no service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_tslid_update_register_callback(qeltvapi_tslid_update_cb_t fn);

/**
 * Sets the function that is told of changes of the list mode, in place of the one before, and asks
 * for the callback object to be registered. Asks no service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_listMode_update_register_callback(qeltvapi_listmode_update_cb_t fn);

/**
 * Sets the function that is told of scan information of the operator channel list, in place of the
 * one before, and asks for the callback object to be registered. Asks no service.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_ocl_scanInfo_register_callback(qeltvapi_ocl_scaninfo_cb_t fn);

/**
 * Locks the channel database, for a series of reads or writes. Asks method 0.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_lock_database(uint32_t arg1, uint32_t arg2);

/**
 * Releases the lock of the channel database. Asks method 1.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_unlock_database(uint32_t arg1, uint32_t arg2);

/**
 * Reads the two records of one channel. Asks method 2.
 *
 * @param svl_id     service-list id
 * @param channel_id channel id, read and not written
 * @param svl        [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl        [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_get_channel_by_id(uint32_t svl_id, const uint16_t* channel_id, void* svl,
                                             void* tsl);

/**
 * Tells the current channel. Asks method 3.
 *
 * @return the channel id; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_current_chan_id(void);

/**
 * Reads the service-list record of one channel. Asks method 4.
 *
 * @param svl_id     service-list id
 * @param channel_id channel id
 * @param svl        [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_rec_by_channel_id(uint32_t svl_id, uint32_t channel_id,
                                                     void* svl);

/**
 * Reads the two records of the current channel and the list it is in. Asks method 5.
 *
 * `*svl_id` is written on every return: 0 when the records were not stored.
 *
 * @param svl_id [out] service-list id
 * @param svl    [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl    [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_get_current_channel(uint16_t* svl_id, void* svl, void* tsl);

/**
 * Makes a channel the current one. Asks method 6.
 *
 * @param channel_id channel id
 * @return the service's code
 */
int a_qeltvapi_channellist_set_current_channel(uint32_t channel_id);

/**
 * Deletes the channels that have no logical channel number. Asks method 7.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_delete_channel_without_lcn(uint32_t arg1, uint32_t arg2);

/**
 * Slides channels to make room among the one-part channel ids. Asks method 8.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_slide_for_one_part_channel_id(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3);

/**
 * Makes a channel of one list the current one. Asks method 9.
 *
 * @param svl_id service-list id
 * @param arg2   passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_set_current_channel_by_svlId(uint32_t svl_id, uint32_t arg2);

/**
 * Makes a channel of one list the second current one. Asks method 10.
 *
 * @param svl_id service-list id
 * @param arg2   passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_set_2nd_current_channel_by_svlId(uint32_t svl_id, uint32_t arg2);

/**
 * Reads the two records of the navigator's channel and the list it is in. Asks method 11.
 *
 * `*svl_id` is written on every return: 0 when the records were not stored.
 *
 * @param arg1   passed unchanged
 * @param svl_id [out] service-list id
 * @param svl    [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl    [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_get_current_channel_from_nav(uint32_t arg1, uint16_t* svl_id, void* svl,
                                                        void* tsl);

/**
 * Tells a channel number. Asks method 12.
 *
 * @param arg1 passed unchanged
 * @return the number; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_channel_number(uint32_t arg1);

/**
 * Opens the service list of an id. Asks method 13.
 *
 * @param svl_id service-list id
 * @param handle [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_handle_by_svl_id(uint32_t svl_id, uint32_t* handle);

/**
 * Opens the transport-stream list that belongs to a service list. Asks method 14.
 *
 * @param svl_id service-list id
 * @param handle [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_channellist_get_tsl_handle_by_svl_id(uint32_t svl_id, uint32_t* handle);

/**
 * Reads a pair of records through list handles. Asks method 15.
 *
 * The two words are stored only together with the records.
 *
 * @param arg1   passed unchanged
 * @param arg2   passed unchanged
 * @param arg3   passed unchanged
 * @param value1 [out] first word of the answer
 * @param value2 [out] second word of the answer
 * @param svl    [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl    [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_tsl_rec_by_handle(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                     uint32_t* value1, uint32_t* value2, void* svl,
                                                     void* tsl);

/**
 * Reads a batch of records through list handles. Asks method 16.
 *
 * Both arrays are written in any case, with zeros when the service has stored nothing or is not
 * there, but for a lack of shared memory: then nothing is asked or written.
 *
 * @param svl_handle handle of the service list
 * @param tsl_handle handle of the transport-stream list
 * @param count      number of records of each kind
 * @param value1     [out] first word of the answer
 * @param value2     [out] second word of the answer
 * @param svl        [out] count service-list records of QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl        [out] count transport-stream records of QELTVAPI_TSL_REC_SIZE bytes
 * @return the service's code; 0 after a lost reply or without shared memory
 */
int a_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex(uint32_t svl_handle, uint32_t tsl_handle,
                                                        uint32_t count, uint32_t* value1,
                                                        uint32_t* value2, void* svl, void* tsl);

/**
 * Reads a batch of records by index. Asks method 17.
 *
 * Both arrays are written in any case, with zeros when the service has stored nothing or is not
 * there, but for a lack of shared memory: then nothing is asked or written.
 *
 * @param arg1  passed unchanged
 * @param arg2  passed unchanged
 * @param arg3  passed unchanged
 * @param arg4  passed unchanged
 * @param arg5  passed unchanged
 * @param arg6  passed unchanged
 * @param arg7  passed unchanged
 * @param count number of records of each kind
 * @param arg9  passed unchanged
 * @param svl   [out] count service-list records of QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl   [out] count transport-stream records of QELTVAPI_TSL_REC_SIZE bytes
 * @return the service's code; 0 after a lost reply or without shared memory
 */
int a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                       uint32_t arg4, uint32_t arg5, uint32_t arg6,
                                                       uint32_t arg7, uint32_t count, uint32_t arg9,
                                                       void* svl, void* tsl);

/**
 * Writes a pair of records. Asks method 18.
 *
 * @param arg1  passed unchanged
 * @param arg2  passed unchanged
 * @param arg3  passed unchanged
 * @param arg4  passed unchanged
 * @param mask  mask of the flags to set, read and not written
 * @param value value of the flags under the mask, read and not written
 * @param svl   service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl   transport-stream record, QELTVAPI_TSL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_set_svl_tsl_rec_info(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4, const uint32_t* mask,
                                                const uint32_t* value, const void* svl,
                                                const void* tsl);

/**
 * Asks for the RF information of a channel. Asks method 19.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_get_channel_rf_info(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Tells about the service list of a broadcast medium. Asks method 20.
 *
 * @param medium broadcast medium
 * @param value1 [out] first word of the answer
 * @param value2 [out] second word of the answer
 * @param value3 [out] third word of the answer
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_info_by_brdcast_medium(uint32_t medium, uint16_t* value1,
                                                          uint16_t* value2, uint32_t* value3);

/**
 * Swaps two channels. Asks method 21.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_swap_channels(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Swaps two favourite channels. Asks method 22.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param arg4 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_swap_favorites(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                          uint32_t arg4);

/**
 * Sets favourite flags of a channel. Asks method 23.
 *
 * @param arg1  passed unchanged
 * @param arg2  passed unchanged
 * @param arg3  passed unchanged
 * @param arg4  passed unchanged
 * @param arg5  passed unchanged
 * @param flag  not 0: true
 * @param value [out] word of the answer
 * @return the service's code
 */
int a_qeltvapi_channellist_set_favorites_by_id(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                               uint32_t arg4, uint32_t arg5, int flag,
                                               uint32_t* value);

/**
 * Reads a batch of records of a broadcast type. Asks method 24.
 *
 * Both arrays are written in any case, with zeros when the service has stored nothing or is not
 * there, but for a lack of shared memory: then nothing is asked or written.
 *
 * @param arg1   passed unchanged
 * @param arg2   passed unchanged
 * @param arg3   passed unchanged
 * @param count  number of records of each kind
 * @param arg5   passed unchanged
 * @param svl    [out] count service-list records of QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl    [out] count transport-stream records of QELTVAPI_TSL_REC_SIZE bytes
 * @param value1 [out] first word of the answer
 * @param value2 [out] second word of the answer
 * @return the service's code; 0 after a lost reply or without shared memory
 */
int a_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type(uint32_t arg1, uint32_t arg2,
                                                            uint32_t arg3, uint32_t count,
                                                            uint32_t arg5, void* svl, void* tsl,
                                                            uint32_t* value1, uint32_t* value2);

/**
 * Reads a batch of records that pass a filter. Asks method 25.
 *
 * Both arrays are written in any case, with zeros when the service has stored nothing or is not
 * there, but for a lack of shared memory: then nothing is asked or written.
 *
 * @param arg1   passed unchanged
 * @param arg2   passed unchanged
 * @param arg3   passed unchanged
 * @param flag   not 0: true
 * @param arg5   passed unchanged
 * @param count1 first number of records of each kind
 * @param count2 second number of records of each kind
 * @param svl    [out] count1 + count2 service-list records of QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl    [out] count1 + count2 transport-stream records of QELTVAPI_TSL_REC_SIZE bytes
 * @param value1 [out] first word of the answer
 * @param value2 [out] second word of the answer
 * @return the service's code; 0 after a lost reply or without shared memory
 */
int a_qeltvapi_channellist_get_svl_tsl_recs_by_filter(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                      int flag, uint32_t arg5, uint32_t count1,
                                                      uint32_t count2, void* svl, void* tsl,
                                                      uint32_t* value1, uint32_t* value2);

/**
 * Counts the records that pass a filter. Asks method 26.
 *
 * @param svl_id service-list id
 * @param filter filter
 * @return the count; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_number_by_filter(uint32_t svl_id, uint32_t filter);

/**
 * Finds the channel before another one among those that pass a filter. Asks method 27.
 *
 * @param arg1       passed unchanged
 * @param arg2       passed unchanged
 * @param arg3       passed unchanged
 * @param arg4       passed unchanged
 * @param channel_id [out] channel id
 * @return the service's code
 */
int a_qeltvapi_channellist_get_prev_channel_id_by_filter(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3, uint32_t arg4,
                                                         uint32_t* channel_id);

/**
 * Reads the current favourite list. Asks method 28.
 *
 * @param list [out] favourite-list record, QELTVAPI_FAVORITE_LIST_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter(void* list);

/**
 * Adds the current channel to the current favourite list. Asks method 29.
 *
 * @return the service's code
 */
int a_qeltvapi_favoritelist_add_favoritelist_channel(void);

/**
 * Adds the current channel at a place of the current favourite list. Asks method 30.
 *
 * @param index index, from 0
 * @return the service's code
 */
int a_qeltvapi_favoritelist_add_favoritelist_channel_by_index(uint32_t index);

/**
 * Removes the channel at a place of the current favourite list, without showing the icon. Asks
 * method 31.
 *
 * @param index index, from 0
 * @return the service's code
 */
int a_qeltvapi_favoritelist_remove_favoritelist_channel_by_index_without_show_fav_icon(
        uint32_t index);

/**
 * Removes a channel from the current favourite list. Asks method 32.
 *
 * @param arg1 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_favoritelist_remove_favoritelist_channel(uint32_t arg1);

/**
 * Stores the favourite list in the file system. Asks method 33.
 *
 * @return the service's code
 */
int a_qeltvapi_favoritelist_fs_store(void);

/**
 * Swaps two places of the current favourite list. Asks method 34.
 *
 * @param index1 one index, from 0
 * @param index2 the other index, from 0
 * @return the service's code
 */
int a_qeltvapi_favoritelist_swap_favoritelist_by_index(uint32_t index1, uint32_t index2);

/**
 * Writes a pair of records and raises no notification. Asks method 35.
 *
 * @param arg1  passed unchanged
 * @param arg2  passed unchanged
 * @param arg3  passed unchanged
 * @param arg4  passed unchanged
 * @param mask  mask of the flags to set, read and not written
 * @param value value of the flags under the mask, read and not written
 * @param svl   service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl   transport-stream record, QELTVAPI_TSL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_set_svl_tsl_rec_info_without_notify(uint32_t arg1, uint32_t arg2,
                                                               uint32_t arg3, uint32_t arg4,
                                                               const uint32_t* mask,
                                                               const uint32_t* value,
                                                               const void* svl, const void* tsl);

/**
 * Passes a request of the channel-list interface on. Asks method 36.
 *
 * @param arg1  passed unchanged
 * @param block block of QELTVAPI_INTERFACE_BLOCK_SIZE bytes
 * @param arg3  passed unchanged
 * @param arg4  passed unchanged
 * @param arg5  word, read and not written
 * @return the service's code
 */
int a_qeltvapi_channellist_interface(uint32_t arg1, const void* block, uint32_t arg3, uint32_t arg4,
                                     const uint32_t* arg5);

/**
 * Counts the channels that a query finds. Asks method 37.
 *
 * @param svl_id service-list id
 * @param arg2   passed unchanged
 * @param arg3   passed unchanged
 * @param info   query information, QELTVAPI_QUERY_INFO_SIZE bytes
 * @return the count; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_channel_number_by_query_info(uint32_t svl_id, uint32_t arg2,
                                                            uint32_t arg3, const void* info);

/**
 * Reads the pair of records that a query finds. Asks method 38.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param info query information, QELTVAPI_QUERY_INFO_SIZE bytes
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl  [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes
 * @param arg5 passed unchanged
 * @param arg6 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_get_channellist_by_query_info(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3, const void* info, void* svl,
                                                         void* tsl, uint32_t arg5, uint32_t arg6);

/**
 * Empties a service list with its transport-stream and logical-order lists. Asks method 39.
 *
 * @param svl_id service-list id
 * @param arg2   word, read and not written; null counts as 0
 * @param arg3   word, read and not written; null counts as 0
 * @return the service's code
 */
int a_qeltvapi_channellist_svl_tsl_lol_clean(uint32_t svl_id, const uint32_t* arg2,
                                             const uint32_t* arg3);

/**
 * Deletes the channels of a broadcast type with their transport streams and logical order. Asks
 * method 40.
 *
 * @param svl_id      service-list id
 * @param brdcst_type broadcast type
 * @return the service's code
 */
int a_qeltvapi_channellist_and_ts_lol_del_by_brdcst(uint32_t svl_id, uint32_t brdcst_type);

/**
 * Counts the records whose flags match. Asks method 41.
 *
 * @param svl_id service-list id
 * @param mask   mask of the flags to look at
 * @param value  value of the flags under the mask
 * @return the count; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_number_by_mask(uint32_t svl_id, uint32_t mask, uint32_t value);

/**
 * Reads a service-list record by index. Asks method 42.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param arg4 passed unchanged
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_rec_by_index(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4, void* svl);

/**
 * Counts the records of a name. Asks method 43.
 *
 * @param svl_id service-list id
 * @param arg2   passed unchanged
 * @param arg3   passed unchanged
 * @param name   channel name; null counts as ""
 * @return the count; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_number_by_name(uint32_t svl_id, uint32_t arg2, uint32_t arg3,
                                              const char* name);

/**
 * Finds the index of a channel. Asks method 44.
 *
 * @param arg1  passed unchanged
 * @param arg2  passed unchanged
 * @param arg3  passed unchanged
 * @param arg4  passed unchanged
 * @param index [out] index
 * @return the service's code
 */
int a_qeltvapi_channellist_get_index_by_channel(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4, uint32_t* index);

/**
 * Reads a service-list record by index among those of a name. Asks method 45.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param name channel name; null counts as ""
 * @param arg5 passed unchanged
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_rec_by_index_and_name(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3, const char* name,
                                                         uint32_t arg5, void* svl);

/**
 * Reads records whose flags match. Asks method 46.
 *
 * @param arg1  passed unchanged
 * @param arg2  passed unchanged
 * @param arg3  passed unchanged
 * @param arg4  passed unchanged
 * @param arg5  passed unchanged
 * @param arg6  passed unchanged
 * @param arg7  passed unchanged
 * @param arg8  passed unchanged
 * @param arg9  passed unchanged
 * @param arg10 passed unchanged
 * @param svl   [out] service-list records, as many bytes as the service sends
 * @param tsl   [out] transport-stream records, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_tsl_recs_by_mask(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                    uint32_t arg4, uint32_t arg5, uint32_t arg6,
                                                    uint32_t arg7, uint32_t arg8, uint32_t arg9,
                                                    uint32_t arg10, void* svl, void* tsl);

/**
 * Deletes the channels of a broadcast type. Asks method 47.
 *
 * @param svl_id      service-list id
 * @param brdcst_type broadcast type
 * @return the service's code
 */
int a_qeltvapi_channellist_delete_by_brdcst(uint32_t svl_id, uint32_t brdcst_type);

/**
 * Empties a logical-order list. Asks method 48.
 *
 * @param lol_id list id, 32 bits
 * @return the service's code
 */
int a_qeltvapi_channellist_clean_lol(uint32_t lol_id);

/**
 * Deletes the channels of a broadcast type with their transport streams. Asks method 49.
 *
 * @param svl_id      service-list id
 * @param brdcst_type broadcast type
 * @return the service's code
 */
int a_qeltvapi_channellist_and_ts_del_by_brdcst(uint32_t svl_id, uint32_t brdcst_type);

/**
 * Tells whether a channel number is taken. Asks method 50.
 *
 * @param svl_id service-list id
 * @param number channel number
 * @return the service's answer, 8 bits; 0 after a lost reply
 */
int a_qeltvapi_channellist_is_exist_by_channel_number(uint32_t svl_id, uint32_t number);

/**
 * Takes a snapshot of a list, to be given back with a_qeltvapi_channellist_free_snapshot(). Asks
 * method 51.
 *
 * @param svl_id   service-list id
 * @param snapshot [out] handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_channellist_create_snapshot(uint32_t svl_id, uint32_t* snapshot);

/**
 * Puts a list back as a snapshot has it. Asks method 52.
 *
 * @param snapshot handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_channellist_restore_snapshot(uint32_t snapshot);

/**
 * Drops a snapshot. Asks method 53.
 *
 * @param snapshot handle of the snapshot
 * @return the service's code
 */
int a_qeltvapi_channellist_free_snapshot(uint32_t snapshot);

/**
 * Reads a pair of records by record id. Asks method 54.
 *
 * @param svl_id service-list id
 * @param rec_id record id of the service
 * @param svl    [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl    [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(uint32_t svl_id, uint32_t rec_id,
                                                         void* svl, void* tsl);

/**
 * Deletes a transport stream and its services. Asks method 55.
 *
 * @param svl_id service-list id
 * @param rec_id record id of the transport stream
 * @return the service's code
 */
int a_qeltvapi_channellist_del_tsl_svl_rec_by_tsl_rec_id(uint32_t svl_id, uint32_t rec_id);

/**
 * Deletes the transport streams of a satellite and their services. Asks method 56.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_channellist_del_tsl_svl_rec_by_satl_rec_id(uint32_t arg1, uint32_t arg2,
                                                          uint32_t arg3);

/**
 * Reads the ids of all service lists. Asks method 57.
 *
 * As many ids are stored as the service has, also beyond the room.
 *
 * @param svl_ids [out] service-list ids
 * @param count   room in ids; [out] number of ids
 * @return the service's code, 16 bits sign-extended; 0 after a lost reply or without shared memory
 */
int a_qeltvapi_tvprovider_get_all_svlid(uint16_t* svl_ids, uint16_t* count);

/**
 * Counts the service lists. Asks method 58.
 *
 * @return the count; 0 after a lost reply
 */
int a_qeltvapi_tvprovider_get_all_svlid_count(void);

/**
 * Opens the service list behind a favourite list. Asks method 59.
 *
 * @param arg1   passed unchanged
 * @param arg2   passed unchanged
 * @param handle [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_favorite_list_get_svl_handle_by_favorite_list_idx(uint32_t arg1, uint32_t arg2,
                                                                 uint32_t* handle);

/**
 * Adds a channel at the end of a favourite list. Asks method 60.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_favorite_list_add_tail(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Adds all channels of a kind to a favourite list. Asks method 61.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param arg4 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_favorite_list_add_all(uint32_t arg1, uint32_t arg2, uint32_t arg3, uint32_t arg4);

/**
 * Deletes a channel from a favourite list. Asks method 62.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_favorite_list_delete(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Deletes all channels of a kind from a favourite list. Asks method 63.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param arg4 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_favorite_list_del_all(uint32_t arg1, uint32_t arg2, uint32_t arg3, uint32_t arg4);

/**
 * Deletes all channels of a kind from a favourite list, as a_qeltvapi_favorite_list_del_all()
 * does: no swap reaches the service. Asks method 63.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param arg4 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_favorite_list_swap_by_channel_id(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4);

/**
 * Counts the channels of a favourite list whose flags match. Asks method 65.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param arg4 passed unchanged
 * @return the count; 0 after a lost reply
 */
int a_qeltvapi_favorite_list_number_by_mask(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                            uint32_t arg4);

/**
 * Reads a service-list record of a favourite list by index. Asks method 66.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param arg4 passed unchanged
 * @param arg5 passed unchanged
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_favorite_list_get_svl_rec_by_index(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                  uint32_t arg4, uint32_t arg5, void* svl);

/**
 * Reads a pair of records of a favourite list by index. Asks method 67.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param arg4 passed unchanged
 * @param arg5 passed unchanged
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @param tsl  [out] transport-stream record, QELTVAPI_TSL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_favorite_list_get_svl_tsl_rec_by_index(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                      uint32_t arg4, uint32_t arg5, void* svl,
                                                      void* tsl);

/**
 * Finds the index of a channel in a favourite list. Asks method 68.
 *
 * @param arg1  passed unchanged
 * @param arg2  passed unchanged
 * @param arg3  passed unchanged
 * @param arg4  passed unchanged
 * @param arg5  passed unchanged
 * @param index [out] index
 * @return the service's code
 */
int a_qeltvapi_favorite_list_get_index_by_channel(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                  uint32_t arg4, uint32_t arg5, uint32_t* index);

/**
 * Moves a channel within a favourite list. Asks method 69.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param arg4 passed unchanged
 * @param arg5 passed unchanged
 * @param arg6 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_favorite_list_insert_move(uint32_t arg1, uint32_t arg2, uint32_t arg3, uint32_t arg4,
                                         uint32_t arg5, uint32_t arg6);

/**
 * Opens the satellite list of an id. Asks method 70.
 *
 * @param satl_id satellite-list id
 * @param handle  [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_channellist_get_satl_handle_by_satl_id(uint32_t satl_id, uint32_t* handle);

/**
 * Opens the logical-order list of an id. Asks method 71.
 *
 * @param lol_id logical-order-list id
 * @param handle [out] handle of the list
 * @return the service's code
 */
int a_qeltvapi_channellist_get_lol_handle_by_lol_id(uint32_t lol_id, uint32_t* handle);

/**
 * Counts the records of a broadcast type whose flags match. Asks method 72.
 *
 * @param svl_id      service-list id
 * @param mask        mask of the flags to look at
 * @param value       value of the flags under the mask
 * @param brdcst_type broadcast type
 * @return the count; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_num_by_mask_and_brdcst(uint32_t svl_id, uint32_t mask,
                                                      uint32_t value, uint32_t brdcst_type);

/**
 * Reads a service-list record of a broadcast type whose flags match. Asks method 73.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @param arg4 passed unchanged
 * @param arg5 passed unchanged
 * @param svl  [out] service-list record, QELTVAPI_SVL_REC_SIZE bytes
 * @return the service's code
 */
int a_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst(uint32_t arg1, uint32_t arg2,
                                                          uint32_t arg3, uint32_t arg4,
                                                          uint32_t arg5, void* svl);

/**
 * Moves a channel before another one. Asks method 74.
 *
 * @param channel_id channel id
 * @param before_id  channel id that it comes before
 * @return the service's code
 */
int a_qeltvapi_one_channellist_arrange_before(uint32_t channel_id, uint32_t before_id);

/**
 * Tells the list mode. Asks method 75.
 *
 * @return the list mode; 0 after a lost reply
 */
int a_qeltvapi_channellist_getChannelListMode(void);

/**
 * Tells the channel pump version of a list. Asks method 76.
 *
 * @param svl_id  service-list id
 * @param version [out] version
 * @return the service's code
 */
int a_qeltvapi_channellist_getChannelPumpVer(uint32_t svl_id, uint32_t* version);

/**
 * Sets the channel pump version of a list. Asks method 77.
 *
 * @param svl_id  service-list id
 * @param version version
 * @return the service's code
 */
int a_qeltvapi_channellist_setChannelPumpVer(uint32_t svl_id, uint32_t version);

/**
 * Adds a channel behind the highest one. Asks method 78.
 *
 * @param svl_id     service-list id
 * @param channel_id channel id
 * @return the service's code
 */
int a_qeltvapi_one_channellist_add_channel_to_max(uint32_t svl_id, uint32_t channel_id);

/**
 * Makes a channel id. Asks method 79.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @return the channel id; 0 after a lost reply
 */
int a_qeltvapi_channellist_gen_channel_id(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Makes a one-part channel id. Asks method 80.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @return the channel id; 0 after a lost reply
 */
int a_qeltvapi_channellist_gen_one_part_channel_id(uint32_t arg1, uint32_t arg2);

/**
 * Makes the id of a channel without PSIP. Asks method 81.
 *
 * @param arg1 passed unchanged
 * @param arg2 passed unchanged
 * @param arg3 passed unchanged
 * @return the channel id; 0 after a lost reply
 */
int a_qeltvapi_channellist_gen_non_psip_channel_id(uint32_t arg1, uint32_t arg2, uint32_t arg3);

/**
 * Tells whether a channel id has one part. Asks method 82.
 *
 * @param channel_id channel id
 * @return 1 or 0; 0 after a lost reply
 */
int a_qeltvapi_is_one_part_channel_id(uint32_t channel_id);

/**
 * Tells whether a channel id is that of a channel without PSIP. Asks method 83.
 *
 * @param channel_id channel id
 * @return 1 or 0; 0 after a lost reply
 */
int a_qeltvapi_is_non_psip_channel_id(uint32_t channel_id);

/**
 * Tells the major number of a channel id. Asks method 84.
 *
 * @param channel_id channel id
 * @return the number, 0 to 65535; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_major_channel_num(uint32_t channel_id);

/**
 * Tells the minor number of a channel id. Asks method 85.
 *
 * @param channel_id channel id
 * @return the number, 0 to 65535; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_minor_channel_num(uint32_t channel_id);

/**
 * Tells the index of a channel id. Asks method 86.
 *
 * @param channel_id channel id
 * @return the index; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_channel_index(uint32_t channel_id);

/**
 * Tells the largest channel index. Asks method 87.
 *
 * @return the index; 0 after a lost reply
 */
int a_qeltvapi_channellist_max_channel_index(void);

/**
 * Tells the last analogue cable channel. Asks method 88.
 *
 * @return the channel; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_ntsc_cable_last_channel(void);

/**
 * Tells the last channel of a clear-QAM scan. Asks method 89.
 *
 * @return the channel; 0 after a lost reply
 */
int a_qeltvapi_channellist_get_cqam_scan_last_channel(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CHANNELLIST_H */
