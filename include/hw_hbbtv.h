/**
 * Audio tracks and languages for an HbbTV application's browser engine, which plays the stream of a
 * broadcast channel. Two sets of functions do the same for two engines: c_opera_hbbtv_ for the
 * Opera-based one, c_hbbtv_ for the generic one.
 *
 * Results: the service's code; -1 without a service and after a transport failure. The missing
 * service is not logged.
 *
 * Track numbers are service-defined. Reference television: from 1.
 */
#ifndef HW_HBBTV_H
#define HW_HBBTV_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Size of a language: three letters and a zero. */
#define QELTVAPI_HBBTV_LANG_SIZE 4

/**
 * Selects an audio track.
 *
 * @param track the track
 * @return the service's code
 */
int c_opera_hbbtv_stm_set_audio(uint32_t track);

/**
 * Reads the current audio track.
 *
 * @param track [out] the track
 * @return the service's code
 */
int c_opera_hbbtv_stm_get_audio(uint32_t* track);

/**
 * Reads the language of an audio track.
 *
 * @param track the track
 * @param lang  [out] the language, always QELTVAPI_HBBTV_LANG_SIZE bytes: a longer text is cut and
 *              has no terminator
 * @return the service's code
 */
int c_opera_hbbtv_stm_get_audio_lang(uint32_t track, char* lang);

/**
 * Reads the number of audio tracks.
 *
 * @param count [out] the number
 * @return the service's code
 */
int c_opera_hbbtv_stm_get_audio_num(uint32_t* count);

/**
 * Sets the default subtitle language.
 *
 * @param lang the language, null counts as ""; reference television: three letters of ISO 639-2
 * @param v    service-defined; reference television: ignored
 * @return the service's code
 */
int c_opera_hbbtv_set_default_subtitle_lang(const char* lang, uint32_t v);

/**
 * Sets the default audio language.
 *
 * @param lang the language, null counts as ""; reference television: three letters of ISO 639-2
 * @return the service's code
 */
int c_opera_hbbtv_set_default_audio_lang(const char* lang);

/**
 * Switches audio description on or off.
 *
 * @param on 1 for on; any other value, 2 included, for off
 * @return the service's code
 */
int c_opera_hbbtv_set_audio_desc(int on);

/**
 * Selects an audio track.
 *
 * @param track the track
 * @return the service's code
 */
int c_hbbtv_stm_set_audio(uint32_t track);

/**
 * Reads the current audio track.
 *
 * @param track [out] the track
 * @return the service's code
 */
int c_hbbtv_stm_get_audio(uint32_t* track);

/**
 * Reads the language of an audio track.
 *
 * @param track the track
 * @param lang  [out] the language, always QELTVAPI_HBBTV_LANG_SIZE bytes: a longer text is cut and
 *              has no terminator
 * @return the service's code
 */
int c_hbbtv_stm_get_audio_lang(uint32_t track, char* lang);

/**
 * Reads the number of audio tracks.
 *
 * @param count [out] the number
 * @return the service's code
 */
int c_hbbtv_stm_get_audio_num(uint32_t* count);

/**
 * Sets the default subtitle language.
 *
 * @param lang the language, null counts as ""; reference television: three letters of ISO 639-2
 * @param v    service-defined; reference television: ignored
 * @return the service's code
 */
int c_hbbtv_set_default_subtitle_lang(const char* lang, uint32_t v);

/**
 * Sets the default audio language.
 *
 * @param lang the language, null counts as ""; reference television: three letters of ISO 639-2
 * @return the service's code
 */
int c_hbbtv_set_default_audio_lang(const char* lang);

/**
 * Switches audio description on or off.
 *
 * @param on 1 for on; any other value, 2 included, for off
 * @return the service's code
 */
int c_hbbtv_set_audio_desc(int on);

QELTVAPI_END_DECLS

#endif /* HW_HBBTV_H */
