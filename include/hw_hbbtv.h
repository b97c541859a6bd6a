/**
 * Audio tracks and languages for an HbbTV application's browser engine, which plays the stream of
 * a broadcast channel. Two sets of functions do the same for two engines: c_opera_hbbtv_ for the
 * Opera-based one, c_hbbtv_ for the generic one.
 *
 * The functions ask IQelTvApi and return -1 when the service is not there and -1 after a lost
 * reply. The missing service is not logged. Track numbers are the service's.
 */
#ifndef HW_HBBTV_H
#define HW_HBBTV_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Size of a language: three letters and a zero. */
#define QELTVAPI_HBBTV_LANG_SIZE 4

/**
 * Selects an audio track. Asks method 52.
 *
 * @param track the track
 * @return the service's code
 */
int c_opera_hbbtv_stm_set_audio(uint32_t track);

/**
 * Reads the current audio track. Asks method 53.
 *
 * @param track [out] the track
 * @return the service's code
 */
int c_opera_hbbtv_stm_get_audio(uint32_t* track);

/**
 * Reads the language of an audio track. Asks method 54.
 *
 * @param track the track
 * @param lang  [out] the language: always QELTVAPI_HBBTV_LANG_SIZE bytes, so a longer text
 *              is cut and has no terminator
 * @return the service's code
 */
int c_opera_hbbtv_stm_get_audio_lang(uint32_t track, char* lang);

/**
 * Reads the number of audio tracks. Asks method 55.
 *
 * @param count [out] the number
 * @return the service's code
 */
int c_opera_hbbtv_stm_get_audio_num(uint32_t* count);

/**
 * Sets the default subtitle language. Asks method 56.
 *
 * @param lang the language; null counts as ""
 * @param v    passed to the service unchanged
 * @return the service's code
 */
int c_opera_hbbtv_set_default_subtitle_lang(const char* lang, uint32_t v);

/**
 * Sets the default audio language. Asks method 57.
 *
 * @param lang the language; null counts as ""
 * @return the service's code
 */
int c_opera_hbbtv_set_default_audio_lang(const char* lang);

/**
 * Switches audio description. Asks method 58.
 *
 * @param on 1 switches it on; any other value, 2 included, switches it off
 * @return the service's code
 */
int c_opera_hbbtv_set_audio_desc(int on);

/**
 * Selects an audio track. Asks method 59.
 *
 * @param track the track
 * @return the service's code
 */
int c_hbbtv_stm_set_audio(uint32_t track);

/**
 * Reads the current audio track. Asks method 60.
 *
 * @param track [out] the track
 * @return the service's code
 */
int c_hbbtv_stm_get_audio(uint32_t* track);

/**
 * Reads the language of an audio track. Asks method 61.
 *
 * @param track the track
 * @param lang  [out] the language: always QELTVAPI_HBBTV_LANG_SIZE bytes, so a longer text
 *              is cut and has no terminator
 * @return the service's code
 */
int c_hbbtv_stm_get_audio_lang(uint32_t track, char* lang);

/**
 * Reads the number of audio tracks. Asks method 62.
 *
 * @param count [out] the number
 * @return the service's code
 */
int c_hbbtv_stm_get_audio_num(uint32_t* count);

/**
 * Sets the default subtitle language. Asks method 63.
 *
 * @param lang the language; null counts as ""
 * @param v    passed to the service unchanged
 * @return the service's code
 */
int c_hbbtv_set_default_subtitle_lang(const char* lang, uint32_t v);

/**
 * Sets the default audio language. Asks method 64.
 *
 * @param lang the language; null counts as ""
 * @return the service's code
 */
int c_hbbtv_set_default_audio_lang(const char* lang);

/**
 * Switches audio description. Asks method 65.
 *
 * @param on 1 switches it on; any other value, 2 included, switches it off
 * @return the service's code
 */
int c_hbbtv_set_audio_desc(int on);

QELTVAPI_END_DECLS

#endif /* HW_HBBTV_H */
