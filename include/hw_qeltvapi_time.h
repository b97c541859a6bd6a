/**
 * Time and date: the clock, the broadcast time, time zone and offset, the sleep timer, and
 * conversions between seconds, milliseconds, date-time records and Modified Julian Dates. The
 * service computes all of it.
 *
 * Every function but the three that register asks IQelTvApiTime. A null pointer that its @param
 * calls required gives -1 before the service is looked for. When the service is not there the
 * result is -2, unless the function says otherwise. Both are logged whatever the debug switch. A
 * lost reply gives 0 where the answer has several values or is a date-time record or its seconds;
 * where it is a single number or truth value (methods 6, 7, 9, 10, 12, 13 and 19 to 21) it ends
 * the process, by the HIDL runtime. Outputs are untouched unless the answer came.
 *
 * The functions without a result only log a missing service and a lost reply.
 */
#ifndef HW_QELTVAPI_TIME_H
#define HW_QELTVAPI_TIME_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** A date and time, 10 bytes; its fields are the service's. */
typedef struct {
    uint8_t head[8];
    uint16_t tail;
} QELTVAPI_DTG_T;

/** Raw time data of the broadcast; its meaning is the service's. */
typedef struct {
    uint8_t first;
    uint8_t second;
    uint32_t value[6]; /**< three 64-bit values, the low half before the high half */
} QELTVAPI_TIME_RAW_T;

/**
 * Sets the function that is told of changes of date and time, in place of the one before. Asks
 * no service, and does not ask for the callback object to be registered either.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_time_register_dt_event_callback(qeltvapi_dt_cb_t fn);

/**
 * Sets the function that is told of changes of the source that the clock follows, in place of
 * the one before. Asks no service, and does not ask for the callback object to be registered
 * either.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_time_register_sync_source_callback(qeltvapi_sync_source_cb_t fn);

/**
 * Sets the function that is told of the sleep timer, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_time_register_sleep_timer_callback(qeltvapi_sleep_timer_cb_t fn);

/**
 * Reads the UTC time. Asks method 0. Logs, whatever the debug switch, that the pointer is null
 * when it is not; the line means nothing.
 *
 * @param pui2_ms [out] the milliseconds; may be null
 * @return UTC seconds
 */
int64_t a_qeltvapi_time_get_utc_time(uint16_t* pui2_ms);

/**
 * Turns UTC seconds into a date-time record. Asks method 1.
 *
 * @param t      UTC seconds
 * @param pt_dtg [out] the date and time, 10 bytes; required
 * @return 0
 */
int a_qeltvapi_utc_sec_to_dtg(int64_t t, QELTVAPI_DTG_T* pt_dtg);

/**
 * Reads the broadcast time: a_qeltvapi_time_get_broadcast_time_ex() with a cleared record of its
 * own.
 *
 * @return seconds; -1 when the service is not there
 */
int64_t a_qeltvapi_time_get_broadcast_time(void);

/**
 * Reads the broadcast time. Asks method 2.
 *
 * @param pt_dtg [in, out] a record, which is sent; then the broadcast time; required
 * @return the same time in seconds; -1 when the service is not there
 */
int64_t a_qeltvapi_time_get_broadcast_time_ex(QELTVAPI_DTG_T* pt_dtg);

/**
 * Converts a date-time record. Asks method 3.
 *
 * @param type   which conversion; passed to the service unchanged
 * @param pt_in  the record to convert; required
 * @param pt_out [out] the converted record; required; may be the same
 * @return the service's code
 */
int a_qeltvapi_time_convert(uint32_t type, const QELTVAPI_DTG_T* pt_in, QELTVAPI_DTG_T* pt_out);

/**
 * Reads the raw time data of the broadcast. Asks method 4.
 *
 * @param pt_dt [out] the data; required
 * @return the service's code
 */
int a_qeltvapi_time_get_brdcst_raw_data(QELTVAPI_TIME_RAW_T* pt_dt);

/**
 * Sets the UTC time. Asks method 5.
 *
 * @param t_time UTC seconds
 */
void a_qeltvapi_time_set_utc_time(int64_t t_time);

/**
 * Tells whether the user may set the time. Asks method 6.
 *
 * @return 1 or 0; 0 also when the service is not there
 */
int a_qeltvapi_time_is_time_editable(void);

/**
 * Reads the time zone. Asks method 7.
 *
 * @return the zone in seconds
 */
int64_t a_qeltvapi_time_get_time_zone(void);

/**
 * Sets the time zone. Asks method 8.
 *
 * @param t_tz the zone in seconds
 */
void a_qeltvapi_time_set_time_zone(int64_t t_tz);

/**
 * Tells whether the user may set the time zone. Asks method 9.
 *
 * @return 1 or 0; 0 also when the service is not there
 */
int a_qeltvapi_time_is_time_zone_editable(void);

/**
 * Reads the time offset. Asks method 10.
 *
 * @return the offset in seconds
 */
int64_t a_qeltvapi_time_get_time_offset(void);

/**
 * Sets the time offset. Asks method 11.
 *
 * @param t_tz the offset in seconds
 */
void a_qeltvapi_time_set_time_offset(int64_t t_tz);

/**
 * Tells whether the user may set the time offset. Asks method 12.
 *
 * @return 1 or 0; 0 also when the service is not there
 */
int a_qeltvapi_time_is_time_offset_editable(void);

/**
 * Tells whether a time offset table has been received. Asks method 13.
 *
 * @return 1 or 0; 0 also when the service is not there
 */
int a_qeltvapi_time_has_received_tot(void);

/**
 * Turns milliseconds into a local date-time record. Asks method 14. Failures are only logged.
 *
 * @param millis       UTC milliseconds
 * @param pt_local_dtg [out] the local date and time; required
 */
void a_qeltvapi_time_convert_millis_to_local_time(int64_t millis, QELTVAPI_DTG_T* pt_local_dtg);

/**
 * Turns a date-time record into seconds. Asks method 15.
 *
 * @param pt_dtg the date and time; required
 * @return seconds
 */
int64_t a_qeltvapi_dtg_to_sec(const QELTVAPI_DTG_T* pt_dtg);

/**
 * Turns a local date-time record into milliseconds. Asks method 16. Failures are only logged.
 *
 * @param pt_local_dtg the local date and time; required
 * @param pt_millis    [out] UTC milliseconds; required
 */
void a_qeltvapi_time_convert_local_time_to_millis(const QELTVAPI_DTG_T* pt_local_dtg,
                                                  int64_t* pt_millis);

/**
 * Reads the source that the clock follows. Asks method 17.
 *
 * @param pui4_source [out] the source; required
 * @return the service's code
 */
int a_qeltvapi_time_get_sync_source(uint32_t* pui4_source);

/**
 * Sets the source that the clock follows. Asks method 18.
 *
 * @param source the source
 */
void a_qeltvapi_time_set_sync_source(int32_t source);

/**
 * Passes two texts about the local time to the service. Asks method 19.
 *
 * @param str1 the first text; null counts as ""
 * @param str2 the second text; null counts as ""
 * @return the service's code
 */
int a_qeltvapi_time_update_local_time(const char* str1, const char* str2);

/**
 * Reads the sleep timer. Asks method 20.
 *
 * @return the sleep timer
 */
int a_qeltvapi_time_get_sleep_timer(void);

/**
 * Reads the sleep timer in reverse. Asks method 21.
 *
 * @return the sleep timer
 */
int a_qeltvapi_time_get_sleep_timer_reverse(void);

/**
 * Sets the sleep timer. Asks method 22.
 *
 * @param value the sleep timer
 */
void a_qeltvapi_time_set_sleep_timer(int32_t value);

/**
 * Reads how long the sleep timer still runs. Asks method 23.
 *
 * @param pui4_remaining_time [out] the time left; required
 * @return the service's code
 */
int a_qeltvapi_time_get_sleep_timer_remaining_time(uint32_t* pui4_remaining_time);

/**
 * Turns UTC seconds into a local date-time record. Asks method 24.
 *
 * @param t      UTC seconds
 * @param pt_dtg [out] the date and time, 10 bytes; required
 * @return 0
 */
int c_dt_utc_sec_to_loc_dtg(int64_t t, QELTVAPI_DTG_T* pt_dtg);

/**
 * Reads the UTC time. Asks method 25. Logs as a_qeltvapi_time_get_utc_time() does.
 *
 * @param pui2_ms    [out] the milliseconds; may be null
 * @param second_out [out] a 32-bit value of the service; may be null
 * @return UTC seconds
 */
int64_t c_dt_get_utc(uint16_t* pui2_ms, uint32_t* second_out);

/**
 * Converts between UTC and local date-time records. Asks method 26.
 *
 * @param pt_input_dtg  the record to convert; required
 * @param pt_output_dtg [out] the converted record; required; may be the same
 * @return 0
 */
int c_dt_conv_utc_local(const QELTVAPI_DTG_T* pt_input_dtg, QELTVAPI_DTG_T* pt_output_dtg);

/**
 * Turns a Modified Julian Date into a date-time record. Asks method 27.
 *
 * @param mjd    the date
 * @param pt_dtg [out] the date and time, 10 bytes; required
 * @return the service's code
 */
int c_dt_mjd_to_dtg(uint32_t mjd, QELTVAPI_DTG_T* pt_dtg);

/**
 * Turns a date-time record into seconds. Asks method 28.
 *
 * @param pt_dtg the date and time; required
 * @return seconds
 */
int64_t c_dt_dtg_to_sec(const QELTVAPI_DTG_T* pt_dtg);

/**
 * Turns a date-time record into a Modified Julian Date and a time in BCD. Asks method 29.
 *
 * @param pt_dtg the date and time; required
 * @param mjd    [out] the date; may be null
 * @param bcd    [out] the time; may be null
 * @param extra  [out] a further value of the service; may be null
 * @return the service's code
 */
int c_dt_dtg_to_mjd_bcd(const QELTVAPI_DTG_T* pt_dtg, uint16_t* mjd, uint16_t* bcd, uint8_t* extra);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_TIME_H */
