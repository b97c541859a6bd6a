/**
 * Recording: opening, starting and stopping recordings, bookings, file names and disks.
 *
 * Every function but a_qeltvapi_record_pvr_register_callback() asks IQelTvApiRecord. When the
 * service is not there the result is -1, unless the function says otherwise, and that is logged
 * whatever the debug switch. A lost reply gives 0, unless the function says otherwise.
 *
 * A recording is named by the handle that opening it gave. Records are opaque here: their bytes
 * cross unchanged.
 */
#ifndef HW_QELTVAPI_RECORD_H
#define HW_QELTVAPI_RECORD_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Bytes of a schedule record as it is sent. */
#define QELTVAPI_SCHEDULE_RECORD_SIZE 248
/** Bytes of a source-conflict record. */
#define QELTVAPI_SOURCE_CONFLICT_RECORD_SIZE 72
/** Bytes of a disk record. */
#define QELTVAPI_DISK_RECORD_SIZE 20

/**
 * Sets the function that is told of the state of recordings, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_record_pvr_register_callback(qeltvapi_pvr_status_cb_t fn);

/**
 * Passes an event to the recorder. Asks method 0.
 *
 * @param a passed to the service unchanged
 * @param b passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_pvr_set_event(uint32_t a, uint32_t b);

/**
 * Passes an event with a text to the recorder. Asks method 1.
 *
 * @param a      passed to the service unchanged
 * @param b      passed to the service unchanged
 * @param c      passed to the service unchanged
 * @param string the text; null counts as ""
 * @return the service's code
 */
int a_qeltvapi_pvr_set_event_extra(uint32_t a, uint32_t b, int32_t c, const char* string);

/**
 * Counts the booked recordings. Asks method 2. A lost reply ends the process, by the HIDL
 * runtime.
 *
 * @return the number of bookings
 */
int a_qeltvapi_pvr_get_booking_count(void);

/**
 * Reads the file name of a recording. Asks method 3.
 *
 * @param handle the recording
 * @param buf    [out] the name, without a terminating zero and whatever the room
 * @param len    room in bytes, for the service
 * @return the service's code
 */
int a_qeltvapi_record_pvr_get_recording_file_name(uint32_t handle, char* buf, uint32_t len);

/**
 * Reads the file name of a recording, as a_qeltvapi_record_pvr_get_recording_file_name() does:
 * it asks method 3 as well, and tells nothing about a disk.
 *
 * @param handle the recording
 * @param buf    [out] the name, without a terminating zero and whatever the room
 * @param len    room in bytes, for the service
 * @return the service's code
 */
int a_qeltvapi_record_pvr_get_disk(uint32_t handle, char* buf, uint32_t len);

/**
 * Writes the file that marks a disk as registered. Asks method 4.
 *
 * @param path the path; null counts as ""
 * @return the service's code
 */
int a_qeltvapi_record_create_register_file(const char* path);

/**
 * Checks the file that marks a disk as registered. Asks method 5.
 *
 * @param path the path; null counts as ""
 * @param flag 0 or any other value
 * @return the service's code
 */
int a_qeltvapi_record_check_register_file(const char* path, int flag);

/**
 * Reads the last error of a recording. Asks method 6.
 *
 * @param handle the recording
 * @return the error
 */
int a_qeltvapi_record_pvr_get_error_id(uint32_t handle);

/**
 * Reads the size of a disk. Asks method 7. A lost reply ends the process, by the HIDL runtime.
 *
 * @param disk which disk
 * @return bytes
 */
int64_t a_qeltvapi_record_pvr_get_disk_total_size(uint32_t disk);

/**
 * Reads the free room of a disk. Asks method 8. A lost reply ends the process, by the HIDL
 * runtime.
 *
 * @param disk which disk
 * @return bytes
 */
int64_t a_qeltvapi_record_pvr_get_disk_free_size(uint32_t disk);

/**
 * Reads the size of the file of a recording. Asks method 9. A lost reply ends the process, by
 * the HIDL runtime.
 *
 * @param handle the recording
 * @return bytes
 */
int64_t a_qeltvapi_record_pvr_get_recording_file_size(uint32_t handle);

/**
 * Deletes a booking. Asks method 10.
 *
 * @param index which booking
 * @return the service's code
 */
int a_qeltvapi_del_schedule_record(uint32_t index);

/**
 * Reads the position of a recording. Asks method 11.
 *
 * @param handle the recording
 * @return the position
 */
int a_qeltvapi_get_recording_position(uint32_t handle);

/**
 * Sets the mode of a recording. Asks method 12.
 *
 * @param a passed to the service unchanged
 * @param b passed to the service unchanged
 * @param c passed to the service unchanged
 * @param d passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_record_pvr_set_mode(uint32_t a, uint32_t b, int32_t c, uint32_t d);

/**
 * Reads the mode of a recording. Asks method 13.
 *
 * @param handle the recording
 * @return the mode
 */
int a_qeltvapi_record_pvr_get_mode(uint32_t handle);

/**
 * Tests the speed of a disk. Asks method 14.
 *
 * @param path  the path; null counts as ""
 * @param value passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_record_hdd_speed_test(const char* path, uint32_t value);

/**
 * Sets the file name of a recording. Asks method 15.
 *
 * @param handle the recording
 * @param name   the name; null counts as ""
 * @return the service's code
 */
int a_qeltvapi_record_pvr_set_recording_file_name(uint32_t handle, const char* name);

/**
 * Opens a recording. Asks method 16.
 *
 * @param value passed to the service unchanged
 * @return the recording; 0 when the service is not there
 */
int a_qeltvapi_record_pvr_open(uint32_t value);

/**
 * Closes a recording. Asks method 17.
 *
 * @param handle the recording
 * @return the service's code
 */
int a_qeltvapi_record_pvr_close(uint32_t handle);

/**
 * Starts a recording. Asks method 18.
 *
 * @param handle the recording
 * @return the service's code
 */
int a_qeltvapi_record_pvr_start(uint32_t handle);

/**
 * Stops a recording. Asks method 19.
 *
 * @param handle the recording
 * @return the service's code
 */
int a_qeltvapi_record_pvr_stop(uint32_t handle);

/**
 * Reads the status of a recording. Asks method 20.
 *
 * @param handle the recording
 * @return the status
 */
int a_qeltvapi_record_pvr_get_status(uint32_t handle);

/**
 * Reads the kind of source of a recording. Asks method 21.
 *
 * @param handle the recording
 * @return the kind of source
 */
int a_qeltvapi_record_pvr_get_source_type(uint32_t handle);

/**
 * Reads which recording runs. Asks method 22. A lost reply ends the process, by the HIDL
 * runtime.
 *
 * @return the recording; 0 when the service is not there
 */
int a_qeltvapi_record_pvr_get_current_handle(void);

/**
 * Books a recording. Asks method 24.
 *
 * @param rec   ::QELTVAPI_SCHEDULE_RECORD_SIZE bytes, always; null sends none
 * @param value passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_set_schedule_record(const void* rec, uint32_t value);

/**
 * Reads a booking. Asks method 25.
 *
 * @param rec   [out] the schedule record, as many bytes as the service sends
 * @param index which booking
 * @return the service's code
 */
int a_qeltvapi_get_schedule_record(void* rec, uint32_t index);

/**
 * Tells whether two sources exclude each other. Asks method 26. A lost reply ends the process,
 * by the HIDL runtime.
 *
 * @param rec_a ::QELTVAPI_SOURCE_CONFLICT_RECORD_SIZE bytes; null sends none
 * @param rec_b the same for the other source
 * @return 1 or 0; 0 also when the service is not there
 */
int a_qeltvapi_record_pvr_chk_src_conflict(const void* rec_a, const void* rec_b);

/**
 * Sets the disk of a recording. Asks method 27.
 *
 * @param value passed to the service unchanged
 * @param path  the path; null counts as ""
 * @param disk  ::QELTVAPI_DISK_RECORD_SIZE bytes; not tested for null
 * @return the service's code
 */
int a_qeltvapi_record_pvr_set_disk(uint32_t value, const char* path, const void* disk);

/**
 * Opens a recording. Asks method 28.
 *
 * @param value passed to the service unchanged
 * @param flag  0 or any other value
 * @return the recording; 0 when the service is not there
 */
int a_qeltvapi_record_pvr_open_ex(uint32_t value, int flag);

/**
 * Selects the service that is recorded. Asks method 29.
 *
 * @param a passed to the service unchanged
 * @param b passed to the service unchanged
 * @param c passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_record_pvr_select_svc(uint32_t a, uint32_t b, uint32_t c);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_RECORD_H */
