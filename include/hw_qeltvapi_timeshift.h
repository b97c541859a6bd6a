/**
 * Timeshift: the storage device, starting, stopping, playing, pausing and seeking, and the
 * positions of the timeshifted programme.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service, and -1 after
 * a transport failure except in the functions whose process ends then. The missing service is not
 * logged.
 *
 * The unit of lengths and positions is service-defined. Reference television: milliseconds.
 */
#ifndef HW_QELTVAPI_TIMESHIFT_H
#define HW_QELTVAPI_TIMESHIFT_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for timeshift events, replacing the previous one. It does not register the
 * callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_timeshift_register_callback(qeltvapi_timeshift_cb_t fn);

/**
 * Does nothing: the registered callback stays registered. Pass null to
 * a_qeltvapi_timeshift_register_callback() instead.
 *
 * @return 0
 */
int a_qeltvapi_timeshift_unregister_callback(void);

/**
 * Reads the progress of the device's registration.
 *
 * @return the progress; reference television: in percent
 */
int a_qeltvapi_timeshift_get_registerdevice_schedule(void);

/**
 * Reads the length of the timeshifted programme. A transport failure ends the process.
 *
 * @return the length; reference television: in ms
 */
int64_t a_qeltvapi_timeshift_get_duration(void);

/**
 * Reads the play position. A transport failure ends the process.
 *
 * @return the position; reference television: in ms from the oldest position that can still be
 *         played
 */
int64_t a_qeltvapi_timeshift_get_position(void);

/**
 * Registers the storage device.
 *
 * @param path path of the device, null counts as ""
 * @param size bytes that timeshift may use
 * @return the service's code
 */
int a_qeltvapi_timeshift_registerDevice(const char* path, int64_t size);

/**
 * Starts timeshift. A transport failure ends the process.
 *
 * @return the service's code
 */
int a_qeltvapi_timeshift_start(void);

/**
 * Stops timeshift. A transport failure ends the process.
 *
 * @return the service's code
 */
int a_qeltvapi_timeshift_stop(void);

/**
 * Plays the timeshifted programme. A transport failure ends the process.
 *
 * @return the service's code
 */
int a_qeltvapi_timeshift_play(void);

/**
 * Pauses the timeshifted programme. A transport failure ends the process.
 *
 * @return the service's code
 */
int a_qeltvapi_timeshift_pause(void);

/**
 * Moves the play position.
 *
 * @param value service-defined; reference television: new position in ms since the start of
 *              timeshift
 * @return the service's code
 */
int a_qeltvapi_timeshift_seek(uint32_t value);

/**
 * Plays at another speed.
 *
 * @param value service-defined; reference television: speed in percent as signed 32 bits: 0 pauses,
 *              100 is the broadcast speed, negative is backward
 * @return the service's code
 */
int a_qeltvapi_timeshift_trickplay(uint32_t value);

/**
 * Reads the status of the storage device. A transport failure ends the process.
 *
 * @return the status; reference television: a QELTV_DEVICE_STATUS
 */
int a_qeltvapi_timeshift_get_device_status(void);

/**
 * Reads the last error. A transport failure ends the process.
 *
 * @return the error; reference television: a QELTV_RECORDING_ERROR
 */
int a_qeltvapi_timeshift_get_error_id(void);

/**
 * Reads the status of the recording behind timeshift. A transport failure ends the process.
 *
 * @return the status; reference television: a QELTV_TIMESHIFT_STATUS
 */
int a_qeltvapi_timeshift_get_record_status(void);

/**
 * Reads the current position. A transport failure ends the process.
 *
 * @return the position, 0 without a service; reference television: in ms since the start of
 *         timeshift
 */
int64_t a_qeltvapi_timeshift_get_current_position(void);

/**
 * Reads the first position that can still be played. A transport failure ends the process.
 *
 * @return the position; reference television: in ms since the start of timeshift
 */
int64_t a_qeltvapi_timeshift_get_start_position(void);

/**
 * Switches recording that starts by itself on or off.
 *
 * @param flag 0 for off, any other value for on
 * @return the service's code
 */
int a_qeltvapi_timeshift_set_auto_record(int flag);

/**
 * Switches playing before the buffer is full on or off.
 *
 * @param flag 0 for off, any other value for on
 * @return the service's code
 */
int a_qeltvapi_timeshift_set_play_before_full(int flag);

/**
 * Stops timeshift in a given way.
 *
 * @param value service-defined; reference television: a QELTV_TIMESHIFT_STOP
 * @return the service's code
 */
int a_qeltvapi_timeshift_stop_ex(uint32_t value);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_TIMESHIFT_H */
