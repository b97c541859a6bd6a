/**
 * The list of finished recordings, read item by item, either by index in the list or by the path of
 * the recording.
 *
 * Results: the service's code; -1 without a service and after a transport failure. The missing
 * service is not logged. A null path counts as ""; outputs are not checked for null.
 *
 * Texts and records are stored whole, not bounded by the buffer's size, and texts without a
 * terminating zero. The layout of the records and the units of times are service-defined. Reference
 * television: index 0 is the oldest recording; times are seconds since 1970, UTC, durations
 * seconds; dates, times of day and weekdays are local.
 */
#ifndef HW_QELTVAPI_PVR_BROWSER_H
#define HW_QELTVAPI_PVR_BROWSER_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Reads the channel id of an item.
 *
 * @param path path of the recording
 * @param out  [out] the channel id
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelid_by_path(const char* path, uint32_t* out);

/**
 * Reads the channel name of an item.
 *
 * @param path path of the recording
 * @param out  [out] the name, without a terminating zero; not bounded by the buffer's size;
 *             reference television: at most 127 bytes
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelname_by_path(const char* path, char* out);

/**
 * Reads the duration of an item.
 *
 * @param path path of the recording
 * @param out  [out] the duration; reference television: in seconds
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_duration_by_path(const char* path, uint32_t* out);

/**
 * Reads why the recording of an item ended.
 *
 * @param path path of the recording
 * @param out  [out] the reason; reference television: a QELTV_STOP_REASON
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path(const char* path, uint32_t* out);

/**
 * Reads the programme name of an item.
 *
 * @param path path of the recording
 * @param out  [out] the name, without a terminating zero; not bounded by the buffer's size;
 *             reference television: at most 127 bytes
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_programname_by_path(const char* path, char* out);

/**
 * Reads the start time of an item.
 *
 * @param path path of the recording
 * @param out  [out] the time; reference television: in seconds since 1970, UTC
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_start_time_by_path(const char* path, uint32_t* out);

/**
 * Reads the path of an item.
 *
 * @param index index in the list, from 0
 * @param out   [out] the path, without a terminating zero; not bounded by the buffer's size;
 *              reference television: a path of the file system, at most 4096 bytes
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_item_path_by_index(uint32_t index, char* out);

/**
 * Reads the major channel number of an item.
 *
 * @param index index in the list, from 0
 * @param out   [out] the number
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the minor channel number of an item.
 *
 * @param index index in the list, from 0
 * @param out   [out] the number; reference television: 0 for a number of one part
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the channel name of an item.
 *
 * @param index index in the list, from 0
 * @param out   [out] the name, without a terminating zero; not bounded by the buffer's size;
 *              reference television: at most 127 bytes
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelname_by_index(uint32_t index, char* out);

/**
 * Reads the duration of an item.
 *
 * @param index index in the list, from 0
 * @param out   [out] the duration; reference television: in seconds
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_duration_by_index(uint32_t index, uint32_t* out);

/**
 * Reads why the recording of an item ended.
 *
 * @param index index in the list, from 0
 * @param out   [out] the reason; reference television: a QELTV_STOP_REASON
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the start time of an item.
 *
 * @param index index in the list, from 0
 * @param out   [out] the time; reference television: in seconds since 1970, UTC
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_start_time_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the programme name of an item.
 *
 * @param index index in the list, from 0
 * @param out   [out] the name, without a terminating zero; not bounded by the buffer's size;
 *              reference television: at most 127 bytes
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_programname_by_index(uint32_t index, char* out);

/**
 * Reads the date of an item as text.
 *
 * @param index index in the list, from 0
 * @param out   [out] the date, without a terminating zero; not bounded by the buffer's size;
 *              reference television: 10 bytes, "2026-11-21"
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_date_by_index(uint32_t index, char* out);

/**
 * Reads the time of day of an item as text.
 *
 * @param index index in the list, from 0
 * @param out   [out] the time, without a terminating zero; not bounded by the buffer's size;
 *              reference television: 8 bytes, "20:15:00"
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_time_by_index(uint32_t index, char* out);

/**
 * Reads the channel id of an item.
 *
 * @param index index in the list, from 0
 * @param out   [out] the channel id
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelid_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the weekday of an item as text.
 *
 * @param index index in the list, from 0
 * @param out   [out] the weekday, without a terminating zero; not bounded by the buffer's size;
 *              reference television: 3 bytes, "Sat"
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_week_by_index(uint32_t index, char* out);

/**
 * Counts the recording files.
 *
 * @param out [out] the number of files
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_recording_file_num(uint32_t* out);

/**
 * Reads the name of a recording file.
 *
 * @param index index in the list, from 0
 * @param out   [out] the name, without a terminating zero; not bounded by the buffer's size;
 *              reference television: at most 255 bytes
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_recording_file_name(uint32_t index, char* out);

/**
 * Reads the record of an item.
 *
 * @param path path of the recording
 * @param out  [out] the record, not bounded by the buffer's size; reference television: a
 *             QELTV_BROWSER_ITEM_T
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_item_by_path(const char* path, void* out);

/**
 * Reads the record of an item.
 *
 * @param index index in the list, from 0
 * @param out   [out] the record, not bounded by the buffer's size; reference television: a
 *              QELTV_BROWSER_ITEM_T
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_item_by_index(uint32_t index, void* out);

/**
 * Counts the items.
 *
 * @param out [out] the number of items
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_item_count(uint16_t* out);

/**
 * Reads the record about the recording files.
 *
 * @param out [out] the record, not bounded by the buffer's size; reference television: a
 *            QELTV_BROWSER_INFO_T
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_recording_file_info(void* out);

/**
 * Deletes an item.
 *
 * @param index index in the list, from 0
 * @return the service's code
 */
int a_qeltvapi_mmp_pvr_browser_delete_file_by_index(uint32_t index);

/**
 * Reads the major channel number of an item.
 *
 * @param path path of the recording
 * @param out  [out] the number
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path(const char* path, uint32_t* out);

/**
 * Reads the minor channel number of an item.
 *
 * @param path path of the recording
 * @param out  [out] the number; reference television: 0 for a number of one part
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path(const char* path, uint32_t* out);

/**
 * Reads the date of an item as text.
 *
 * @param path path of the recording
 * @param out  [out] the date, without a terminating zero; not bounded by the buffer's size;
 *             reference television: 10 bytes, "2026-11-21"
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_date_by_path(const char* path, char* out);

/**
 * Reads the weekday of an item as text.
 *
 * @param path path of the recording
 * @param out  [out] the weekday, without a terminating zero; not bounded by the buffer's size;
 *             reference television: 3 bytes, "Sat"
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_week_by_path(const char* path, char* out);

/**
 * Reads the time of day of an item as text.
 *
 * @param path path of the recording
 * @param out  [out] the time, without a terminating zero; not bounded by the buffer's size;
 *             reference television: 8 bytes, "20:15:00"
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_time_by_path(const char* path, char* out);

/**
 * Reads the first rating of an item.
 *
 * @param index index in the list, from 0
 * @param out   [out] the rating; reference television: 0 for none
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_first_rating_by_index(uint32_t index, uint32_t* out);

/**
 * Reads the first rating of an item.
 *
 * @param path path of the recording
 * @param out  [out] the rating; reference television: 0 for none
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_first_rating_by_path(const char* path, uint32_t* out);

/**
 * Reads how long an item is kept.
 *
 * @param index index in the list, from 0
 * @param out   [out] the retention; reference television: in days, 0 for ever
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_retention_by_index(uint32_t index, uint32_t* out);

/**
 * Reads how long an item is kept.
 *
 * @param path path of the recording
 * @param out  [out] the retention; reference television: in days, 0 for ever
 * @return the service's code
 */
int a_qeltvapi_mmp_get_pvr_browser_retention_by_path(const char* path, uint32_t* out);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_PVR_BROWSER_H */
