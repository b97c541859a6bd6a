/**
 * Volume and mute, of the television and by type.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure, so that a volume of -1 is no volume, and 0 of the mute states. The missing
 * service is not logged.
 *
 * Volumes and types are service-defined. Reference television: volumes of 0 to
 * QELTV_VOLUME_MAXIMUM; the functions without a type control QELTV_VOLUME_SPEAKER.
 */
#ifndef HW_QELTVAPI_VOLCTRL_H
#define HW_QELTVAPI_VOLCTRL_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Does nothing; kept for programs that link against it.
 *
 * @return 0
 */
int a_qeltvapi_volctrl_reg_callback(void);

/**
 * Does nothing; kept for programs that link against it.
 *
 * @return 0
 */
int a_qeltvapi_volctrl_audio_event_callback_unregister(void);

/**
 * Does nothing; kept for programs that link against it.
 *
 * @return 0
 */
int a_qeltvapi_volctrl_audio_event_register_callback(void);

/**
 * Raises the volume by one step.
 *
 * @return the new volume; -1 without a service and after a transport failure
 */
int16_t a_qeltvapi_volctrl_incrVolume(void);

/**
 * Raises the volume of one type by one step.
 *
 * @param type service-defined; reference television: a QELTV_VOLUME_TYPE
 * @return the new volume; -1 without a service and after a transport failure
 */
int16_t a_qeltvapi_volctrl_incrVolume_by_type(int32_t type);

/**
 * Lowers the volume by one step.
 *
 * @return the new volume; -1 without a service and after a transport failure
 */
int16_t a_qeltvapi_volctrl_decrVolume(void);

/**
 * Lowers the volume of one type by one step.
 *
 * @param type service-defined; reference television: a QELTV_VOLUME_TYPE
 * @return the new volume; -1 without a service and after a transport failure
 */
int16_t a_qeltvapi_volctrl_decrVolume_by_type(int32_t type);

/**
 * Sets the volume.
 *
 * @param volume the volume; reference television: 0 to 100
 * @return the service's code
 */
int a_qeltvapi_volctrl_setVolume(int32_t volume);

/**
 * Sets the volume of one type.
 *
 * @param type   service-defined; reference television: a QELTV_VOLUME_TYPE
 * @param volume the volume; reference television: 0 to 100
 * @return the service's code
 */
int a_qeltvapi_volctrl_setVolume_by_type(int32_t type, int32_t volume);

/**
 * Reads the volume.
 *
 * @return the volume; -1 without a service and after a transport failure
 */
int16_t a_qeltvapi_volctrl_getVolume(void);

/**
 * Reads the volume of one type.
 *
 * @param type service-defined; reference television: a QELTV_VOLUME_TYPE
 * @return the volume; -1 without a service and after a transport failure
 */
int16_t a_qeltvapi_volctrl_getVolume_by_type(int32_t type);

/**
 * Mutes or unmutes the sound.
 *
 * @param mute 0 to unmute, any other value to mute
 * @return the service's code
 */
int a_qeltvapi_volctrl_setMute(int mute);

/**
 * Mutes or unmutes the sound of one type.
 *
 * @param type service-defined; reference television: a QELTV_VOLUME_TYPE
 * @param mute 0 to unmute, any other value to mute
 * @return the service's code
 */
int a_qeltvapi_volctrl_setMute_by_type(int32_t type, int mute);

/**
 * Reports whether the sound is muted.
 *
 * @return 1 or 0; 0 without a service and after a transport failure
 */
int a_qeltvapi_volctrl_getMute(void);

/**
 * Reports whether the sound of one type is muted.
 *
 * @param type service-defined; reference television: a QELTV_VOLUME_TYPE
 * @return 1 or 0; 0 without a service and after a transport failure
 */
int a_qeltvapi_volctrl_getMute_by_type(int32_t type);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_VOLCTRL_H */
