/**
 * Volume and mute, of the television and by type. Volumes and types are the service's.
 *
 * The functions ask IQelTvApi, but for the three registrations, and return -1 when the service is
 * not there and -1 after a lost reply; a volume of -1 is thus no volume, and the mute states are 0
 * then. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_VOLCTRL_H
#define HW_QELTVAPI_VOLCTRL_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Does nothing; kept for callers that link against it.
 *
 * @return 0
 */
int a_qeltvapi_volctrl_reg_callback(void);

/**
 * Does nothing; kept for callers that link against it.
 *
 * @return 0
 */
int a_qeltvapi_volctrl_audio_event_callback_unregister(void);

/**
 * Does nothing; kept for callers that link against it.
 *
 * @return 0
 */
int a_qeltvapi_volctrl_audio_event_register_callback(void);

/**
 * Raises the volume by one step. Asks method 101.
 *
 * @return the volume afterwards
 */
int16_t a_qeltvapi_volctrl_incrVolume(void);

/**
 * Raises the volume of one type by one step. Asks method 102.
 *
 * @param type the type
 * @return the volume afterwards
 */
int16_t a_qeltvapi_volctrl_incrVolume_by_type(int32_t type);

/**
 * Lowers the volume by one step. Asks method 103.
 *
 * @return the volume afterwards
 */
int16_t a_qeltvapi_volctrl_decrVolume(void);

/**
 * Lowers the volume of one type by one step. Asks method 104.
 *
 * @param type the type
 * @return the volume afterwards
 */
int16_t a_qeltvapi_volctrl_decrVolume_by_type(int32_t type);

/**
 * Sets the volume. Asks method 105.
 *
 * @param volume the volume
 * @return the service's code
 */
int a_qeltvapi_volctrl_setVolume(int32_t volume);

/**
 * Sets the volume of one type. Asks method 106.
 *
 * @param type   the type
 * @param volume the volume
 * @return the service's code
 */
int a_qeltvapi_volctrl_setVolume_by_type(int32_t type, int32_t volume);

/**
 * Reads the volume. Asks method 107.
 *
 * @return the volume
 */
int16_t a_qeltvapi_volctrl_getVolume(void);

/**
 * Reads the volume of one type. Asks method 108.
 *
 * @param type the type
 * @return the volume
 */
int16_t a_qeltvapi_volctrl_getVolume_by_type(int32_t type);

/**
 * Mutes or unmutes the sound. Asks method 109.
 *
 * @param mute any value but 0 mutes
 * @return the service's code
 */
int a_qeltvapi_volctrl_setMute(int mute);

/**
 * Mutes or unmutes the sound of one type. Asks method 110.
 *
 * @param type the type
 * @param mute any value but 0 mutes
 * @return the service's code
 */
int a_qeltvapi_volctrl_setMute_by_type(int32_t type, int mute);

/**
 * Tells whether the sound is muted. Asks method 111.
 *
 * @return 1 when it is; 0 when it is not, when the service is not there and after a lost reply
 */
int a_qeltvapi_volctrl_getMute(void);

/**
 * Tells whether the sound of one type is muted. Asks method 112.
 *
 * @param type the type
 * @return 1 when it is; 0 when it is not, when the service is not there and after a lost reply
 */
int a_qeltvapi_volctrl_getMute_by_type(int32_t type);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_VOLCTRL_H */
