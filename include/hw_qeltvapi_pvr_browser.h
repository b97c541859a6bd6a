/**
 * The list of finished recordings, read item by item, either by place in the list or by the path
 * of the recording.
 *
 * Every function asks IQelTvApiPvrbrowser and returns -1 when the service is not there and -1
 * after a lost reply. The missing service is not logged. A null path counts as ""; outputs are
 * not tested for null.
 *
 * Texts and records are stored whole, whatever the room, and texts without a terminating zero. The
 * layout of the records and the units of times are the service's.
 */
#ifndef HW_QELTVAPI_PVR_BROWSER_H
#define HW_QELTVAPI_PVR_BROWSER_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Reads the channel id of an item. Asks method 0.
 *
 * @param path the path of the recording
 * @param out  [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelid_by_path(const char* path, uint32_t* out);

/**
 * Reads the channel name of an item. Asks method 1.
 *
 * @param path the path of the recording
 * @param out  [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelname_by_path(const char* path, char* out);

/**
 * Reads the length of an item. Asks method 2.
 *
 * @param path the path of the recording
 * @param out  [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_duration_by_path(const char* path, uint32_t* out);

/**
 * Reads why the recording of an item ended. Asks method 3.
 *
 * @param path the path of the recording
 * @param out  [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path(const char* path, uint32_t* out);

/**
 * Reads the programme name of an item. Asks method 4.
 *
 * @param path the path of the recording
 * @param out  [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_programname_by_path(const char* path, char* out);

/**
 * Reads when an item starts. Asks method 5.
 *
 * @param path the path of the recording
 * @param out  [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_start_time_by_path(const char* path, uint32_t* out);

/**
 * Reads the path of an item. Asks method 6.
 *
 * @param index place in the list
 * @param out   [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_item_path_by_index(uint32_t index, char* out);

/**
 * Reads the major channel number of an item. Asks method 7.
 *
 * @param index place in the list
 * @param out   [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the minor channel number of an item. Asks method 8.
 *
 * @param index place in the list
 * @param out   [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the channel name of an item. Asks method 9.
 *
 * @param index place in the list
 * @param out   [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelname_by_index(uint32_t index, char* out);

/**
 * Reads the length of an item. Asks method 10.
 *
 * @param index place in the list
 * @param out   [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_duration_by_index(uint32_t index, uint32_t* out);

/**
 * Reads why the recording of an item ended. Asks method 11.
 *
 * @param index place in the list
 * @param out   [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index(uint32_t index, uint32_t* out);

/**
 * Reads when an item starts. Asks method 12.
 *
 * @param index place in the list
 * @param out   [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_start_time_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the programme name of an item. Asks method 13.
 *
 * @param index place in the list
 * @param out   [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_programname_by_index(uint32_t index, char* out);

/**
 * Reads the date of an item as a text. Asks method 14.
 *
 * @param index place in the list
 * @param out   [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_date_by_index(uint32_t index, char* out);

/**
 * Reads the time of an item as a text. Asks method 15.
 *
 * @param index place in the list
 * @param out   [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_time_by_index(uint32_t index, char* out);

/**
 * Reads the channel id of an item. Asks method 16.
 *
 * @param index place in the list
 * @param out   [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelid_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the weekday of an item as a text. Asks method 17.
 *
 * @param index place in the list
 * @param out   [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_week_by_index(uint32_t index, char* out);

/**
 * Counts the recording files. Asks method 18.
 *
 * @param out [out] the number of files
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_recording_file_num(uint32_t* out);

/**
 * Reads the name of a recording file. Asks method 19.
 *
 * @param index place in the list
 * @param out   [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_recording_file_name(uint32_t index, char* out);

/**
 * Reads the record of an item. Asks method 20.
 *
 * @param path the path of the recording
 * @param out  [out] the record
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_item_by_path(const char* path, void* out);

/**
 * Reads the record of an item. Asks method 21.
 *
 * @param index place in the list
 * @param out   [out] the record
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_item_by_index(uint32_t index, void* out);

/**
 * Counts the items. Asks method 22.
 *
 * @param out [out] the number of items
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_item_count(uint16_t* out);

/**
 * Reads the record about the recording files. Asks method 23.
 *
 * @param out [out] the record
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_recording_file_info(void* out);

/**
 * Deletes an item. Asks method 24.
 *
 * @param index place in the list
 * @return the service's code
 */
int a_qeltvapi_mmp_pvr_browser_delete_file_by_index(uint32_t index);

/**
 * Reads the major channel number of an item. Asks method 25.
 *
 * @param path the path of the recording
 * @param out  [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path(const char* path, uint32_t* out);

/**
 * Reads the minor channel number of an item. Asks method 26.
 *
 * @param path the path of the recording
 * @param out  [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path(const char* path, uint32_t* out);

/**
 * Reads the date of an item as a text. Asks method 27.
 *
 * @param path the path of the recording
 * @param out  [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_date_by_path(const char* path, char* out);

/**
 * Reads the weekday of an item as a text. Asks method 28.
 *
 * @param path the path of the recording
 * @param out  [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_week_by_path(const char* path, char* out);

/**
 * Reads the time of an item as a text. Asks method 29.
 *
 * @param path the path of the recording
 * @param out  [out] the text
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_time_by_path(const char* path, char* out);

/**
 * Reads the first rating of an item. Asks method 30.
 *
 * @param index place in the list
 * @param out   [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_first_rating_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the first rating of an item. Asks method 31.
 *
 * @param path the path of the recording
 * @param out  [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_first_rating_by_path(const char* path, uint32_t* out);

/**
 * Reads how long an item is kept. Asks method 32.
 *
 * @param index place in the list
 * @param out   [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_retention_by_index(uint32_t index, uint32_t* out);

/**
 * Reads how long an item is kept. Asks method 33.
 *
 * @param path the path of the recording
 * @param out  [out] the value
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_retention_by_path(const char* path, uint32_t* out);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_PVR_BROWSER_H */
