/**
 * Picture modes, sound effects, and generic audio values and data blocks.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure, where the current modes are QELTVAPI_AV_MODE_NONE. The missing service is not
 * logged.
 *
 * Modes and effects are service-defined 16-bit numbers. Reference television: picture modes 1 to 7
 * (standard, vivid, film, sport, game, photo, user), sound effects 1 to 6.
 */
#ifndef HW_QELTVAPI_AV_MODE_H
#define HW_QELTVAPI_AV_MODE_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** No mode: the service did not answer. */
#define QELTVAPI_AV_MODE_NONE 65535

/**
 * Reads the current picture mode.
 *
 * @return the mode; QELTVAPI_AV_MODE_NONE without a service and after a transport failure
 */
uint16_t a_qeltvapi_av_mode_get_picture_mode(void);

/**
 * Sets the picture mode.
 *
 * @param mode the mode
 * @return the service's code
 */
int a_qeltvapi_av_mode_set_picture_mode(int32_t mode);

/**
 * Reads all picture modes.
 *
 * @param modes [out] the modes, as many as the service sends, not bounded by the buffer's size:
 *              size it by a_qeltvapi_av_mode_get_number_picture_mode(); reference television: at
 *              most the capacity in @p num, 7 modes in all
 * @param num   [in,out] capacity of @p modes in modes, sent to the service; then the number of
 *              stored modes
 * @return the service's code
 */
int a_qeltvapi_av_mode_get_all_picture_mode(uint16_t* modes, uint32_t* num);

/**
 * Reads the number of picture modes.
 *
 * @param num [out] the number; reference television: 7
 * @return the service's code
 */
int a_qeltvapi_av_mode_get_number_picture_mode(uint32_t* num);

/**
 * Reads the current sound effect.
 *
 * @return the effect; QELTVAPI_AV_MODE_NONE without a service and after a transport failure
 */
uint16_t a_qeltvapi_av_mode_get_sound_effect(void);

/**
 * Sets the sound effect.
 *
 * @param effect the effect
 * @return the service's code
 */
int a_qeltvapi_av_mode_set_sound_effect(int32_t effect);

/**
 * Reads all sound effects.
 *
 * @param effects [out] the effects, as many as the service sends, not bounded by the buffer's size:
 *                size it by a_qeltvapi_av_mode_get_number_sound_effect(); reference television: at
 *                most the capacity in @p num, 6 effects in all
 * @param num     [in,out] capacity of @p effects in effects, sent to the service; then the number
 *                of stored effects
 * @return the service's code
 */
int a_qeltvapi_av_mode_get_all_sound_effect(uint16_t* effects, uint32_t* num);

/**
 * Reads the number of sound effects.
 *
 * @param num [out] the number; reference television: 6
 * @return the service's code
 */
int a_qeltvapi_av_mode_get_number_sound_effect(uint32_t* num);

/**
 * Sets an audio value.
 *
 * @param id    service-defined; reference television: a QELTV_AUDIO_VALUE that is not read only
 * @param value the value; reference television: range by @p id
 * @return the service's code
 */
int a_qeltvapi_audio_info_set_value(int32_t id, int32_t value);

/**
 * Reads an audio value.
 *
 * @param id    service-defined; reference television: a QELTV_AUDIO_VALUE
 * @param value [out] the value
 * @return the service's code
 */
int a_qeltvapi_audio_info_get_value(int32_t id, uint32_t* value);

/**
 * Sets an audio data block.
 *
 * @param id   service-defined; reference television: QELTV_AUDIO_EQUALISER
 * @param data the block; reference television: QELTV_AUDIO_EQUALISER_SIZE signed bytes, -12 to 12
 * @param len  size of the block in bytes
 * @return the service's code
 */
int a_qeltvapi_audio_info_set_data(int32_t id, const void* data, int32_t len);

/**
 * Reads an audio data block.
 *
 * @param id  service-defined; reference television: QELTV_AUDIO_EQUALISER
 * @param buf [in,out] the request, sent as it stands; then the block, as many bytes as the service
 *            sends, not bounded by @p len; reference television: QELTV_AUDIO_EQUALISER_SIZE bytes,
 *            refused if @p len is less
 * @param len size of the request in bytes
 * @return the service's code
 */
int a_qeltvapi_audio_info_get_data(int32_t id, void* buf, int32_t len);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_AV_MODE_H */
