/**
 * Subtitles: the list of what can be shown, and the choice.
 *
 * Every function but a_qeltvapi_subtitle_reg_callback() asks IQelTvApi and returns -1 when the
 * service is not there and -1 after a lost reply. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_SUBTITLE_H
#define HW_QELTVAPI_SUBTITLE_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of events of the subtitles, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either (see
 * registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_subtitle_reg_callback(qeltvapi_subtitle_cb_t fn);

/**
 * Reads the subtitle loop. Asks method 114.
 *
 * @param data  [in] what is sent along, [out] the entries, all of them, even beyond @p count
 * @param count number of 32-bit values that are sent
 * @return the service's code
 */
int a_qeltvapi_subtitle_get_loop(int32_t* data, uint32_t count);

/**
 * Plays a subtitle. Asks method 115.
 *
 * @param value which one, a value of the service
 * @return the service's code
 */
int a_qeltvapi_subtitle_play(uint32_t value);

/**
 * Steps to the next subtitle. Asks method 116.
 *
 * @return the service's code
 */
int a_qeltvapi_subtitle_set_next(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_SUBTITLE_H */
