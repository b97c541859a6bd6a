/**
 * Time and date: the clock, the broadcast time, time zone and offset, the sleep timer, and
 * conversions between seconds, milliseconds, date-time records and Modified Julian Dates. The
 * service computes all of it.
 *
 * Results: each function says what it returns; -2 without a service, unless the function says
 * otherwise. After a transport failure 0 where the answer has several values or is a date-time
 * record or its seconds; the functions whose answer is a single number or truth value say that the
 * process ends. A null pointer where a parameter says "required" gives -1 before the service is
 * fetched. Missing service and null pointer are logged regardless of the debug switch. Outputs are
 * untouched unless the answer arrived. The functions without a result only log a missing service
 * and a transport failure.
 *
 * The fields of a date-time record are service-defined. Reference television: a QELTV_DTG_T;
 * seconds are seconds since 1970; an impossible date gives a record of zeros, or -4 in seconds.
 */
#ifndef HW_QELTVAPI_TIME_H
#define HW_QELTVAPI_TIME_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** A date and time, 10 bytes; the layout is service-defined. Reference television: a QELTV_DTG_T.
 */
typedef struct {
    uint8_t head[8]; /**< the first 8 bytes */
    /** service-defined; reference television: flags, QELTV_DTG_FLAG bits */
    uint16_t tail;
} QELTVAPI_DTG_T;

/** Raw time data of the broadcast; its meaning is service-defined. */
typedef struct {
    /** service-defined; reference television: a QELTV_RAW_TIME_TABLE */
    uint8_t first;
    uint8_t second;    /**< service-defined; reference television: 0 */
    uint32_t value[6]; /**< three 64-bit values, the low half before the high half */
} QELTVAPI_TIME_RAW_T;

/**
 * Registers the callback for changes of date and time, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_time_register_dt_event_callback(qeltvapi_dt_cb_t fn);

/**
 * Registers the callback for changes of the source that the clock follows, replacing the previous
 * one. It does not register the callback object with the service;
 * a_qeltvapi_channellist_register_callback(), for example, requests that (all:
 * hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_time_register_sync_source_callback(qeltvapi_sync_source_cb_t fn);

/**
 * Registers the callback for the sleep timer, replacing the previous one. It does not register the
 * callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_time_register_sleep_timer_callback(qeltvapi_sleep_timer_cb_t fn);

/**
 * Reads the UTC time. It logs, regardless of the debug switch, that the pointer is null if it is
 * not; the line is meaningless.
 *
 * @param pui2_ms [out] milliseconds of the second, 0 to 999; may be null
 * @return seconds since 1970, UTC
 */
int64_t a_qeltvapi_time_get_utc_time(uint16_t* pui2_ms);

/**
 * Converts UTC seconds into a date-time record.
 *
 * @param t      seconds since 1970, UTC
 * @param pt_dtg [out] the date and time, 10 bytes; required
 * @return 0
 */
int a_qeltvapi_utc_sec_to_dtg(int64_t t, QELTVAPI_DTG_T* pt_dtg);

/**
 * Reads the broadcast time, as a_qeltvapi_time_get_broadcast_time_ex() does with a cleared record
 * of its own.
 *
 * @return the time in seconds; -1 without a service
 */
int64_t a_qeltvapi_time_get_broadcast_time(void);

/**
 * Reads the broadcast time.
 *
 * @param pt_dtg [in,out] a record, which is sent; then the broadcast time; required
 * @return the same time in seconds; -1 without a service
 */
int64_t a_qeltvapi_time_get_broadcast_time_ex(QELTVAPI_DTG_T* pt_dtg);

/**
 * Converts a date-time record.
 *
 * @param type   service-defined; reference television: a QELTV_TIME_CONVERSION
 * @param pt_in  the record to convert; required
 * @param pt_out [out] the converted record; required; may be the same
 * @return the service's code
 */
int a_qeltvapi_time_convert(uint32_t type, const QELTVAPI_DTG_T* pt_in, QELTVAPI_DTG_T* pt_out);

/**
 * Reads the raw time data of the broadcast.
 *
 * @param pt_dt [out] the data; required; reference television: first a QELTV_RAW_TIME_TABLE
 * @return the service's code
 */
int a_qeltvapi_time_get_brdcst_raw_data(QELTVAPI_TIME_RAW_T* pt_dt);

/**
 * Sets the UTC time.
 *
 * @param t_time seconds since 1970, UTC; reference television: only while the clock follows nothing
 */
void a_qeltvapi_time_set_utc_time(int64_t t_time);

/**
 * Reports whether the user may set the time. A transport failure ends the process.
 *
 * @return 1 or 0; 0 without a service
 */
int a_qeltvapi_time_is_time_editable(void);

/**
 * Reads the time zone. A transport failure ends the process.
 *
 * @return the zone in seconds
 */
int64_t a_qeltvapi_time_get_time_zone(void);

/**
 * Sets the time zone.
 *
 * @param t_tz the zone in seconds; reference television: -QELTV_ZONE_MAXIMUM to QELTV_ZONE_MAXIMUM
 */
void a_qeltvapi_time_set_time_zone(int64_t t_tz);

/**
 * Reports whether the user may set the time zone. A transport failure ends the process.
 *
 * @return 1 or 0; 0 without a service
 */
int a_qeltvapi_time_is_time_zone_editable(void);

/**
 * Reads the time offset. A transport failure ends the process.
 *
 * @return the offset in seconds
 */
int64_t a_qeltvapi_time_get_time_offset(void);

/**
 * Sets the time offset.
 *
 * @param t_tz the offset in seconds; reference television: -QELTV_ZONE_MAXIMUM to
 *             QELTV_ZONE_MAXIMUM
 */
void a_qeltvapi_time_set_time_offset(int64_t t_tz);

/**
 * Reports whether the user may set the time offset. A transport failure ends the process.
 *
 * @return 1 or 0; 0 without a service
 */
int a_qeltvapi_time_is_time_offset_editable(void);

/**
 * Reports whether a time offset table has been received. A transport failure ends the process.
 *
 * @return 1 or 0; 0 without a service
 */
int a_qeltvapi_time_has_received_tot(void);

/**
 * Converts milliseconds into a local date-time record. Failures are only logged.
 *
 * @param millis       milliseconds since 1970, UTC
 * @param pt_local_dtg [out] the local date and time; required
 */
void a_qeltvapi_time_convert_millis_to_local_time(int64_t millis, QELTVAPI_DTG_T* pt_local_dtg);

/**
 * Converts a date-time record into seconds.
 *
 * @param pt_dtg the date and time; required; reference television: UTC or local time by its flag
 *               QELTV_DTG_UTC
 * @return the time in seconds
 */
int64_t a_qeltvapi_dtg_to_sec(const QELTVAPI_DTG_T* pt_dtg);

/**
 * Converts a local date-time record into milliseconds. Failures are only logged.
 *
 * @param pt_local_dtg the local date and time; required
 * @param pt_millis    [out] milliseconds since 1970, UTC; required
 */
void a_qeltvapi_time_convert_local_time_to_millis(const QELTVAPI_DTG_T* pt_local_dtg,
                                                  int64_t* pt_millis);

/**
 * Reads the source that the clock follows.
 *
 * @param pui4_source [out] the source; required; reference television: a QELTV_SYNC_SOURCE
 * @return the service's code
 */
int a_qeltvapi_time_get_sync_source(uint32_t* pui4_source);

/**
 * Sets the source that the clock follows.
 *
 * @param source service-defined; reference television: a QELTV_SYNC_SOURCE
 */
void a_qeltvapi_time_set_sync_source(int32_t source);

/**
 * Sends two texts about the local time to the service. A transport failure ends the process.
 *
 * @param str1 the first text, null counts as ""; reference television: the local date, "2026-11-21"
 * @param str2 the second text, null counts as ""; reference television: the local time, "20:15" or
 *             "20:15:00"
 * @return the service's code
 */
int a_qeltvapi_time_update_local_time(const char* str1, const char* str2);

/**
 * Reads the sleep timer. A transport failure ends the process.
 *
 * @return the sleep timer; reference television: in seconds, 0 for off
 */
int a_qeltvapi_time_get_sleep_timer(void);

/**
 * Reads the sleep timer in reverse. A transport failure ends the process.
 *
 * @return the sleep timer; reference television: seconds since it was set
 */
int a_qeltvapi_time_get_sleep_timer_reverse(void);

/**
 * Sets the sleep timer.
 *
 * @param value the sleep timer; reference television: in seconds, 0 for off to QELTV_SLEEP_MAXIMUM
 */
void a_qeltvapi_time_set_sleep_timer(int32_t value);

/**
 * Reads the remaining time of the sleep timer.
 *
 * @param pui4_remaining_time [out] the remaining time; required; reference television: in seconds
 * @return the service's code
 */
int a_qeltvapi_time_get_sleep_timer_remaining_time(uint32_t* pui4_remaining_time);

/**
 * Converts UTC seconds into a local date-time record.
 *
 * @param t      seconds since 1970, UTC
 * @param pt_dtg [out] the date and time, 10 bytes; required
 * @return 0
 */
int c_dt_utc_sec_to_loc_dtg(int64_t t, QELTVAPI_DTG_T* pt_dtg);

/**
 * Reads the UTC time. It logs as a_qeltvapi_time_get_utc_time() does.
 *
 * @param pui2_ms    [out] milliseconds of the second, 0 to 999; may be null
 * @param second_out [out] service-defined; may be null; reference television: second of the minute
 * @return seconds since 1970, UTC
 */
int64_t c_dt_get_utc(uint16_t* pui2_ms, uint32_t* second_out);

/**
 * Converts between UTC and local date-time records.
 *
 * @param pt_input_dtg  the record to convert; required; reference television: UTC or local time by
 *                      its flag QELTV_DTG_UTC
 * @param pt_output_dtg [out] the converted record; required; may be the same
 * @return 0
 */
int c_dt_conv_utc_local(const QELTVAPI_DTG_T* pt_input_dtg, QELTVAPI_DTG_T* pt_output_dtg);

/**
 * Converts a Modified Julian Date into a date-time record.
 *
 * @param mjd    the date in days
 * @param pt_dtg [out] the date and time, 10 bytes; required
 * @return the service's code
 */
int c_dt_mjd_to_dtg(uint32_t mjd, QELTVAPI_DTG_T* pt_dtg);

/**
 * Converts a date-time record into seconds.
 *
 * @param pt_dtg the date and time; required; reference television: its flags are ignored
 * @return the time in seconds
 */
int64_t c_dt_dtg_to_sec(const QELTVAPI_DTG_T* pt_dtg);

/**
 * Converts a date-time record into a Modified Julian Date and a time in BCD.
 *
 * @param pt_dtg the date and time; required
 * @param mjd    [out] the date in days; may be null
 * @param bcd    [out] the time; may be null; reference television: hour and minute, two BCD digits
 *               each
 * @param extra  [out] service-defined; may be null; reference television: the second, two BCD
 *               digits
 * @return the service's code
 */
int c_dt_dtg_to_mjd_bcd(const QELTVAPI_DTG_T* pt_dtg, uint16_t* mjd, uint16_t* bcd, uint8_t* extra);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_TIME_H */
