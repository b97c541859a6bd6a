/**
 * Timeshift: the storage device, starting, stopping, playing, pausing and seeking, and the
 * positions of the timeshifted programme. The unit of lengths and positions is the service's.
 *
 * Every function but the two for registration asks IQelTvApiTimeshift. The result is -1 when the
 * service is not there, unless the function says otherwise, and -1 after a lost reply where it
 * does not end the process. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_TIMESHIFT_H
#define HW_QELTVAPI_TIMESHIFT_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of timeshift events, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_timeshift_register_callback(qeltvapi_timeshift_cb_t fn);

/**
 * Does nothing: the function that is registered stays so. Give
 * a_qeltvapi_timeshift_register_callback() a null pointer instead.
 *
 * @return 0
 */
int a_qeltvapi_timeshift_unregister_callback(void);

/**
 * Reads how far the registration of the device has come. Asks method 0.
 *
 * @return the progress
 */
int a_qeltvapi_timeshift_get_registerdevice_schedule(void);

/**
 * Reads the length of the timeshifted programme. Asks method 1. A lost reply ends the process,
 * by the HIDL runtime.
 *
 * @return the length
 */
int64_t a_qeltvapi_timeshift_get_duration(void);

/**
 * Reads the play position. Asks method 2. A lost reply ends the process, by the HIDL runtime.
 *
 * @return the position
 */
int64_t a_qeltvapi_timeshift_get_position(void);

/**
 * Registers the storage device. Asks method 3.
 *
 * @param path the path of the device; null counts as ""
 * @param size bytes that timeshift may use
 * @return the service's code
 */
int a_qeltvapi_timeshift_registerDevice(const char* path, int64_t size);

/**
 * Starts timeshift. Asks method 4. A lost reply ends the process, by the HIDL runtime.
 *
 * @return the service's code
 */
int a_qeltvapi_timeshift_start(void);

/**
 * Stops timeshift. Asks method 5. A lost reply ends the process, by the HIDL runtime.
 *
 * @return the service's code
 */
int a_qeltvapi_timeshift_stop(void);

/**
 * Plays the timeshifted programme. Asks method 6. A lost reply ends the process, by the HIDL
 * runtime.
 *
 * @return the service's code
 */
int a_qeltvapi_timeshift_play(void);

/**
 * Pauses the timeshifted programme. Asks method 7. A lost reply ends the process, by the HIDL
 * runtime.
 *
 * @return the service's code
 */
int a_qeltvapi_timeshift_pause(void);

/**
 * Moves the play position. Asks method 8.
 *
 * @param value where to; passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_timeshift_seek(uint32_t value);

/**
 * Plays at another speed. Asks method 9.
 *
 * @param value the speed; passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_timeshift_trickplay(uint32_t value);

/**
 * Reads the status of the storage device. Asks method 10. A lost reply ends the process, by the
 * HIDL runtime.
 *
 * @return the status
 */
int a_qeltvapi_timeshift_get_device_status(void);

/**
 * Reads the last error. Asks method 11. A lost reply ends the process, by the HIDL runtime.
 *
 * @return the error
 */
int a_qeltvapi_timeshift_get_error_id(void);

/**
 * Reads the status of the recording behind timeshift. Asks method 12. A lost reply ends the
 * process, by the HIDL runtime.
 *
 * @return the status
 */
int a_qeltvapi_timeshift_get_record_status(void);

/**
 * Reads the current position. Asks method 13. A lost reply ends the process, by the HIDL
 * runtime.
 *
 * @return the position; 0 when the service is not there
 */
int64_t a_qeltvapi_timeshift_get_current_position(void);

/**
 * Reads the first position that can still be played. Asks method 14. A lost reply ends the
 * process, by the HIDL runtime.
 *
 * @return the position
 */
int64_t a_qeltvapi_timeshift_get_start_position(void);

/**
 * Switches recording that starts by itself. Asks method 15.
 *
 * @param flag 0 for off, any other value for on
 * @return the service's code
 */
int a_qeltvapi_timeshift_set_auto_record(int flag);

/**
 * Switches playing before the buffer is full. Asks method 16.
 *
 * @param flag 0 for off, any other value for on
 * @return the service's code
 */
int a_qeltvapi_timeshift_set_play_before_full(int flag);

/**
 * Stops timeshift in a given way. Asks method 17.
 *
 * @param value the way; passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_timeshift_stop_ex(uint32_t value);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_TIMESHIFT_H */
