/**
 * Audio tracks: information, languages, selection, and notification of changes. Generic audio
 * values and data blocks are in hw_qeltvapi_av_mode.h.
 *
 * The functions ask IQelTvApi, but for the registration, and return -1 when the service is not
 * there and -1 after a lost reply. Only a_qeltvapi_select_default_audio() logs the missing
 * service, while debugging.
 *
 * The layouts of records and the values of tracks are the service's. Records are stored whole, not
 * bounded by the buffer's size.
 */
#ifndef HW_QELTVAPI_AUDIOINFO_H
#define HW_QELTVAPI_AUDIOINFO_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of changed audio information, in place of the one before, and
 * asks for the callback object to be registered (see registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_audio_info_register_callback(qeltvapi_audio_update_cb_t fn);

/**
 * Reads the current audio language. Asks method 146.
 *
 * @param name passed to the service; null counts as ""
 * @param lang [out] the language, without a terminating zero and whatever the room
 * @return the service's code
 */
int a_qeltvapi_audio_info_get_current_lanuage(const char* name, char* lang);

/**
 * Selects the next audio language. Asks method 147.
 *
 * @return the service's code
 */
int a_qeltvapi_audio_info_set_next_lanuage(void);

/**
 * Reads the records of the available audio tracks. Asks method 148.
 *
 * @param buf [out] the records; null asks for their number alone
 * @param num [in,out] number of records that `buf` has room for, read only when `buf` is not
 *            null; then the number that the service tells, which may be larger
 * @return the service's code
 */
int a_qeltvapi_audio_info_get_available_record(void* buf, uint32_t* num);

/**
 * Reads the record of the current audio track. Asks method 149.
 *
 * @param buf [out] the record
 * @return the service's code
 */
int a_qeltvapi_get_current_audio_info(void* buf);

/**
 * Reads the additional text of an audio track. Asks method 150.
 *
 * @param p1  passed to the service unchanged
 * @param buf [out] the text, without a terminating zero and whatever the room; may be null, then
 *            nothing is stored
 * @param len [out] the length that the service tells
 * @return the service's code
 */
int a_qeltvapi_get_audio_apd_text(int32_t p1, void* buf, int32_t* len);

/**
 * Reads the record of the current audio description track. Asks method 151.
 *
 * @param buf [out] the record
 * @return the service's code
 */
int a_qeltvapi_get_current_ad_info(void* buf);

/**
 * Selects an audio track. Asks method 152.
 *
 * @param track points to the track
 * @return the service's code
 */
int a_qeltvapi_select_audio(const uint32_t* track);

/**
 * Selects the main and the sub audio track. Asks method 153.
 *
 * @param main points to the main track
 * @param sub  points to the sub track
 * @return the service's code
 */
int a_qeltvapi_select_main_sub_audio(const uint32_t* main, const uint32_t* sub);

/**
 * Selects the default audio track. Asks method 154.
 *
 * @param lang its language; null counts as ""
 * @return the service's code
 */
int a_qeltvapi_select_default_audio(const char* lang);

/**
 * As a_qeltvapi_audio_info_get_available_record(), for the tracks of the input source. Asks
 * method 155.
 *
 * @param buf [out] as there
 * @param num [in,out] as there
 * @return the service's code
 */
int a_qeltvapi_audio_info_get_inputsource_available_record(void* buf, uint32_t* num);

/**
 * Reads the record of the current audio track of the input source. Asks method 156.
 *
 * @param buf [out] the record
 * @return the service's code
 */
int a_qeltvapi_get_inputsource_current_audio_info(void* buf);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_AUDIOINFO_H */
