/**
 * Recording: opening, starting and stopping recordings, bookings, file names and disks.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service, which is
 * logged regardless of the debug switch; 0 after a transport failure, except in the functions whose
 * process ends then.
 *
 * The handle of its opening names a recording. Records cross byte for byte. Reference television:
 * their fields are in layouts/record.h; a negative answer is a QELTV_CODE.
 */
#ifndef HW_QELTVAPI_RECORD_H
#define HW_QELTVAPI_RECORD_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Size of a schedule record in bytes; reference television: a QELTV_SCHEDULE_RECORD_T. */
#define QELTVAPI_SCHEDULE_RECORD_SIZE 248
/** Size of a source-conflict record in bytes; reference television: a QELTV_SOURCE_RECORD_T. */
#define QELTVAPI_SOURCE_CONFLICT_RECORD_SIZE 72
/** Size of a disk record in bytes; reference television: a QELTV_DISK_RECORD_T. */
#define QELTVAPI_DISK_RECORD_SIZE 20

/**
 * Registers the callback for the state of recordings, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_record_pvr_register_callback(qeltvapi_pvr_status_cb_t fn);

/**
 * Sends an event to the recorder.
 *
 * @param a service-defined; reference television: a QELTV_RECORDER_COMMAND below 16
 * @param b service-defined; reference television: value of the event: the disk, or 0
 * @return the service's code
 */
int a_qeltvapi_pvr_set_event(uint32_t a, uint32_t b);

/**
 * Sends an event with a text to the recorder.
 *
 * @param a      service-defined; reference television: a QELTV_RECORDER_COMMAND
 * @param b      service-defined; reference television: value of the event: the disk or the
 *               recording
 * @param c      service-defined; reference television: number of the event: the rating or the days
 *               to keep the recording
 * @param string the text, null counts as ""; reference television: name of the programme, at most
 *               120 bytes
 * @return the service's code
 */
int a_qeltvapi_pvr_set_event_extra(uint32_t a, uint32_t b, int32_t c, const char* string);

/**
 * Counts the booked recordings. A transport failure ends the process.
 *
 * @return the number of bookings
 */
int a_qeltvapi_pvr_get_booking_count(void);

/**
 * Reads the file name of a recording.
 *
 * @param handle handle of the recording
 * @param buf    [out] the name, without a terminating zero; not bounded by the buffer's size;
 *               reference television: a name longer than @p len is refused
 * @param len    capacity of @p buf in bytes, sent to the service
 * @return the service's code
 */
int a_qeltvapi_record_pvr_get_recording_file_name(uint32_t handle, char* buf, uint32_t len);

/**
 * Reads the file name of a recording, as a_qeltvapi_record_pvr_get_recording_file_name() does,
 * whose method it calls: it reports nothing about a disk.
 *
 * @param handle handle of the recording
 * @param buf    [out] the name, without a terminating zero; not bounded by the buffer's size;
 *               reference television: a name longer than @p len is refused
 * @param len    capacity of @p buf in bytes, sent to the service
 * @return the service's code
 */
int a_qeltvapi_record_pvr_get_disk(uint32_t handle, char* buf, uint32_t len);

/**
 * Writes the file that marks a disk as registered.
 *
 * @param path directory of the disk, null counts as ""
 * @return the service's code
 */
int a_qeltvapi_record_create_register_file(const char* path);

/**
 * Checks the file that marks a disk as registered.
 *
 * @param path directory of the disk, null counts as ""
 * @param flag 0 for false, any other value for true; reference television: true for a file of this
 *             television
 * @return the service's code
 */
int a_qeltvapi_record_check_register_file(const char* path, int flag);

/**
 * Reads the last error of a recording.
 *
 * @param handle handle of the recording
 * @return the error; reference television: a QELTV_RECORDING_ERROR
 */
int a_qeltvapi_record_pvr_get_error_id(uint32_t handle);

/**
 * Reads the size of a disk. A transport failure ends the process.
 *
 * @param disk which disk; reference television: 0 to 7
 * @return the size in bytes
 */
int64_t a_qeltvapi_record_pvr_get_disk_total_size(uint32_t disk);

/**
 * Reads the free space of a disk. A transport failure ends the process.
 *
 * @param disk which disk; reference television: 0 to 7
 * @return the free space in bytes
 */
int64_t a_qeltvapi_record_pvr_get_disk_free_size(uint32_t disk);

/**
 * Reads the size of the file of a recording. A transport failure ends the process.
 *
 * @param handle handle of the recording
 * @return the size in bytes
 */
int64_t a_qeltvapi_record_pvr_get_recording_file_size(uint32_t handle);

/**
 * Deletes a booking.
 *
 * @param index which booking; reference television: index in the order of start times, from 0
 * @return the service's code
 */
int a_qeltvapi_del_schedule_record(uint32_t index);

/**
 * Reads the position of a recording.
 *
 * @param handle handle of the recording
 * @return the position; reference television: in seconds
 */
int a_qeltvapi_get_recording_position(uint32_t handle);

/**
 * Sets the mode of a recording.
 *
 * @param a service-defined; reference television: handle of the recording
 * @param b service-defined; reference television: a QELTV_RECORDING_MODE
 * @param c service-defined; reference television: value of the mode in seconds or KiB
 * @param d service-defined; reference television: data rate in KiB per second; 0 leaves it
 * @return the service's code
 */
int a_qeltvapi_record_pvr_set_mode(uint32_t a, uint32_t b, int32_t c, uint32_t d);

/**
 * Reads the mode of a recording.
 *
 * @param handle handle of the recording
 * @return the mode; reference television: a QELTV_RECORDING_MODE
 */
int a_qeltvapi_record_pvr_get_mode(uint32_t handle);

/**
 * Tests the speed of a disk.
 *
 * @param path  directory of the disk, null counts as ""
 * @param value service-defined; reference television: MiB to write, at most 256; 0 for 4
 * @return the service's code; reference television: the speed in KiB per second
 */
int a_qeltvapi_record_hdd_speed_test(const char* path, uint32_t value);

/**
 * Sets the file name of a recording.
 *
 * @param handle handle of the recording, which is not started
 * @param name   the name, null counts as ""
 * @return the service's code
 */
int a_qeltvapi_record_pvr_set_recording_file_name(uint32_t handle, const char* name);

/**
 * Opens a recording.
 *
 * @param value service-defined; reference television: channel id, 0 for the current channel
 * @return handle of the recording; 0 without a service
 */
int a_qeltvapi_record_pvr_open(uint32_t value);

/**
 * Closes a recording.
 *
 * @param handle handle of the recording
 * @return the service's code
 */
int a_qeltvapi_record_pvr_close(uint32_t handle);

/**
 * Starts a recording.
 *
 * @param handle handle of the recording
 * @return the service's code
 */
int a_qeltvapi_record_pvr_start(uint32_t handle);

/**
 * Stops a recording.
 *
 * @param handle handle of the recording
 * @return the service's code
 */
int a_qeltvapi_record_pvr_stop(uint32_t handle);

/**
 * Reads the status of a recording.
 *
 * @param handle handle of the recording
 * @return the status; reference television: a QELTV_RECORDING_STATUS
 */
int a_qeltvapi_record_pvr_get_status(uint32_t handle);

/**
 * Reads the kind of source of a recording.
 *
 * @param handle handle of the recording
 * @return the kind of source; reference television: 1 air, 2 cable, 3 satellite
 */
int a_qeltvapi_record_pvr_get_source_type(uint32_t handle);

/**
 * Reads which recording is running. A transport failure ends the process.
 *
 * @return handle of the recording; 0 without a service
 */
int a_qeltvapi_record_pvr_get_current_handle(void);

/**
 * Books a recording.
 *
 * @param rec   the booking, QELTVAPI_SCHEDULE_RECORD_SIZE bytes, always; null sends none; reference
 *              television: a QELTV_SCHEDULE_RECORD_T
 * @param value service-defined; reference television: QELTV_BOOK_IN_SPITE_OF_CONFLICT or 0
 * @return the service's code; reference television: the number of the booking
 */
int a_qeltvapi_set_schedule_record(const void* rec, uint32_t value);

/**
 * Reads a booking.
 *
 * @param rec   [out] the booking, as many bytes as the service sends; reference television: a
 *              QELTV_SCHEDULE_RECORD_T
 * @param index which booking; reference television: index in the order of start times, from 0
 * @return the service's code
 */
int a_qeltvapi_get_schedule_record(void* rec, uint32_t index);

/**
 * Reports whether two sources exclude each other. A transport failure ends the process.
 *
 * @param rec_a one source, QELTVAPI_SOURCE_CONFLICT_RECORD_SIZE bytes; null sends none; reference
 *              television: a QELTV_SOURCE_RECORD_T
 * @param rec_b the other source, as @p rec_a
 * @return 1 or 0; 0 without a service
 */
int a_qeltvapi_record_pvr_chk_src_conflict(const void* rec_a, const void* rec_b);

/**
 * Sets the disk of a recording.
 *
 * @param value service-defined; reference television: handle of the recording; 0 to change the
 *              disk's limit and rate
 * @param path  directory of the disk, null counts as ""; reference television: at most 200 bytes
 * @param disk  the disk, QELTVAPI_DISK_RECORD_SIZE bytes; not checked for null; reference
 *              television: a QELTV_DISK_RECORD_T
 * @return the service's code
 */
int a_qeltvapi_record_pvr_set_disk(uint32_t value, const char* path, const void* disk);

/**
 * Opens a recording, with a switch.
 *
 * @param value service-defined; reference television: channel id, 0 for the current channel
 * @param flag  0 for false, any other value for true; reference television: true to start it, too
 * @return handle of the recording; 0 without a service
 */
int a_qeltvapi_record_pvr_open_ex(uint32_t value, int flag);

/**
 * Selects the service that is recorded.
 *
 * @param a service-defined; reference television: handle of the recording
 * @param b service-defined; reference television: list id, CHANNEL_LIST_
 * @param c service-defined; reference television: record id of the channel
 * @return the service's code
 */
int a_qeltvapi_record_pvr_select_svc(uint32_t a, uint32_t b, uint32_t c);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_RECORD_H */
