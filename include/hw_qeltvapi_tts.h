/**
 * Notification of text to be spoken. It makes no transaction.
 */
#ifndef HW_QELTVAPI_TTS_H
#define HW_QELTVAPI_TTS_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for text to be spoken, replacing the previous one. It does not register
 * the callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_tts_reg_msg_callback(qeltvapi_tts_msg_callback_fct_t fn);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_TTS_H */
