/**
 * Notification of text to be spoken.
 *
 * Asks no service, and does not ask for the callback object to be registered either
 * (see registerCallbackHandler()).
 */
#ifndef HW_QELTVAPI_TTS_H
#define HW_QELTVAPI_TTS_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of text to be spoken, in place of the one before.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_tts_reg_msg_callback(qeltvapi_tts_msg_callback_fct_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_TTS_H */
