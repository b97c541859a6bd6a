/**
 * Audio tracks: information, languages, selection, and notification of changes. Generic audio
 * values and data blocks are in hw_qeltvapi_av_mode.h.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. Only a_qeltvapi_select_default_audio() logs the missing service, while
 * debugging.
 *
 * Records are stored whole, not bounded by the buffer's size; their layout and the values of tracks
 * are service-defined. Reference television: a record is a QELTV_AUDIO_TRACK_T of 24 bytes, a track
 * its number from 1, a language three letters of ISO 639-2.
 */
#ifndef HW_QELTVAPI_AUDIOINFO_H
#define HW_QELTVAPI_AUDIOINFO_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for changed audio information, replacing the previous one, and requests
 * the registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_audio_info_register_callback(qeltvapi_audio_update_cb_t fn);

/**
 * Reads the current audio language.
 *
 * @param name service-defined; reference television: the video path, "main" (also "") or "sub";
 *             null counts as ""
 * @param lang [out] the language, without a terminating zero; not bounded by the buffer's size;
 *             reference television: 3 bytes
 * @return the service's code
 */
int a_qeltvapi_audio_info_get_current_lanuage(const char* name, char* lang);

/**
 * Selects the next audio language.
 *
 * @return the service's code
 */
int a_qeltvapi_audio_info_set_next_lanuage(void);

/**
 * Reads the records of the available audio tracks.
 *
 * @param buf [out] the records, null to read only their number; reference television: at most the
 *            capacity in @p num, each a QELTV_AUDIO_TRACK_T
 * @param num [in,out] capacity of @p buf in records, read only if @p buf is not null; then the
 *            number that the service sends, which may be larger
 * @return the service's code
 */
int a_qeltvapi_audio_info_get_available_record(void* buf, uint32_t* num);

/**
 * Reads the record of the current audio track.
 *
 * @param buf [out] the record; reference television: a QELTV_AUDIO_TRACK_T
 * @return the service's code
 */
int a_qeltvapi_get_current_audio_info(void* buf);

/**
 * Reads the additional text of an audio track.
 *
 * @param p1  service-defined; reference television: the track
 * @param buf [out] the text, without a terminating zero, not bounded by the buffer's size; null to
 *            store nothing; reference television: at most 64 bytes
 * @param len [out] length of the text that the service sends
 * @return the service's code
 */
int a_qeltvapi_get_audio_apd_text(int32_t p1, void* buf, int32_t* len);

/**
 * Reads the record of the current audio description track.
 *
 * @param buf [out] the record; reference television: a QELTV_AUDIO_TRACK_T
 * @return the service's code
 */
int a_qeltvapi_get_current_ad_info(void* buf);

/**
 * Selects an audio track.
 *
 * @param track the track
 * @return the service's code
 */
int a_qeltvapi_select_audio(const uint32_t* track);

/**
 * Selects the main and the sub audio track.
 *
 * @param main the main track; reference television: the track of path "main"
 * @param sub  the sub track; reference television: the track of path "sub"
 * @return the service's code
 */
int a_qeltvapi_select_main_sub_audio(const uint32_t* main, const uint32_t* sub);

/**
 * Selects the default audio track.
 *
 * @param lang language of the track, null counts as ""; reference television: "" selects the
 *             configured language
 * @return the service's code
 */
int a_qeltvapi_select_default_audio(const char* lang);

/**
 * Reads the records of the available audio tracks of the input source.
 *
 * @param buf [out] as of a_qeltvapi_audio_info_get_available_record()
 * @param num [in,out] as of a_qeltvapi_audio_info_get_available_record()
 * @return the service's code
 */
int a_qeltvapi_audio_info_get_inputsource_available_record(void* buf, uint32_t* num);

/**
 * Reads the record of the current audio track of the input source.
 *
 * @param buf [out] the record; reference television: a QELTV_AUDIO_TRACK_T
 * @return the service's code
 */
int a_qeltvapi_get_inputsource_current_audio_info(void* buf);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_AUDIOINFO_H */
