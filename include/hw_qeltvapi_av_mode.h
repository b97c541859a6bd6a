/**
 * Picture modes and sound effects, each a 16-bit number of the service's, and generic audio values
 * and data blocks, whose ids and layouts are the service's.
 *
 * The functions ask IQelTvApi. Without a service and after a lost reply the current modes are
 * QELTVAPI_AV_MODE_NONE; all other functions return -1 then. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_AV_MODE_H
#define HW_QELTVAPI_AV_MODE_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** No mode: the service did not answer. */
#define QELTVAPI_AV_MODE_NONE 65535

/**
 * Reads the current picture mode. Asks method 89.
 *
 * @return the mode, or QELTVAPI_AV_MODE_NONE
 */
uint16_t a_qeltvapi_av_mode_get_picture_mode(void);

/**
 * Sets the picture mode. Asks method 90.
 *
 * @param mode the mode
 * @return the service's code
 */
int a_qeltvapi_av_mode_set_picture_mode(int32_t mode);

/**
 * Reads all picture modes. Asks method 91.
 *
 * @param modes [out] the modes, as many as the service sends, whatever the room: size it by
 *              a_qeltvapi_av_mode_get_number_picture_mode()
 * @param num   [in,out] number of modes that there is room for, told to the service; then the
 *              number stored
 * @return the service's code
 */
int a_qeltvapi_av_mode_get_all_picture_mode(uint16_t* modes, uint32_t* num);

/**
 * Reads the number of picture modes. Asks method 92.
 *
 * @param num [out] the number
 * @return the service's code
 */
int a_qeltvapi_av_mode_get_number_picture_mode(uint32_t* num);

/**
 * Reads the current sound effect. Asks method 93.
 *
 * @return the effect, or QELTVAPI_AV_MODE_NONE
 */
uint16_t a_qeltvapi_av_mode_get_sound_effect(void);

/**
 * Sets the sound effect. Asks method 94.
 *
 * @param effect the effect
 * @return the service's code
 */
int a_qeltvapi_av_mode_set_sound_effect(int32_t effect);

/**
 * Reads all sound effects. Asks method 95.
 *
 * @param effects [out] the effects, as many as the service sends, whatever the room: size it by
 *                a_qeltvapi_av_mode_get_number_sound_effect()
 * @param num     [in,out] number of effects that there is room for, told to the service; then the
 *                number stored
 * @return the service's code
 */
int a_qeltvapi_av_mode_get_all_sound_effect(uint16_t* effects, uint32_t* num);

/**
 * Reads the number of sound effects. Asks method 96.
 *
 * @param num [out] the number
 * @return the service's code
 */
int a_qeltvapi_av_mode_get_number_sound_effect(uint32_t* num);

/**
 * Sets an audio value. Asks method 157.
 *
 * @param id    which one
 * @param value the value
 * @return the service's code
 */
int a_qeltvapi_audio_info_set_value(int32_t id, int32_t value);

/**
 * Reads an audio value. Asks method 158.
 *
 * @param id    which one
 * @param value [out] the value
 * @return the service's code
 */
int a_qeltvapi_audio_info_get_value(int32_t id, uint32_t* value);

/**
 * Sets an audio data block. Asks method 159.
 *
 * @param id   which one
 * @param data the block
 * @param len  its length in bytes
 * @return the service's code
 */
int a_qeltvapi_audio_info_set_data(int32_t id, const void* data, int32_t len);

/**
 * Reads an audio data block. Asks method 160.
 *
 * @param id  which one
 * @param buf [in,out] the request, sent as it stands; then the block, as many bytes as the
 *            service sends, whatever `len`
 * @param len length of the request in bytes
 * @return the service's code
 */
int a_qeltvapi_audio_info_get_data(int32_t id, void* buf, int32_t len);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_AV_MODE_H */
