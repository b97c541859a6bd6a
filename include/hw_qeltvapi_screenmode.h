/**
 * Screen modes (aspect), zoom and overscan.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure, where the current mode is QELTVAPI_SCREENMODE_NONE and zoom is not enabled.
 * The missing service is not logged.
 *
 * Modes are service-defined 16-bit numbers. Reference television: 1 to 6, also 7 (pixel by pixel)
 * while an input is shown.
 */
#ifndef HW_QELTVAPI_SCREENMODE_H
#define HW_QELTVAPI_SCREENMODE_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** No mode: the service did not answer. */
#define QELTVAPI_SCREENMODE_NONE 65535

/**
 * Reads the current screen mode.
 *
 * @return the mode; QELTVAPI_SCREENMODE_NONE without a service and after a transport failure
 */
uint16_t a_qeltvapi_screenmode_get_screen_mode(void);

/**
 * Sets the screen mode.
 *
 * @param mode the mode
 * @return the service's code
 */
int a_qeltvapi_screenmode_set_screen_mode(int32_t mode);

/**
 * Reads all screen modes.
 *
 * @param modes [out] the modes, as many as the service sends, not bounded by the buffer's size:
 *              size it by a_qeltvapi_screenmode_get_number_screen_mode(); reference television: at
 *              most the capacity in @p num, 7 modes in all
 * @param num   [in,out] capacity of @p modes in modes, sent to the service; then the number of
 *              modes that the service sends
 * @return the service's code
 */
int a_qeltvapi_screenmode_get_all_screen_mode(uint16_t* modes, uint32_t* num);

/**
 * Reads the number of screen modes.
 *
 * @param num [out] the number; reference television: 6 or 7
 * @return the service's code
 */
int a_qeltvapi_screenmode_get_number_screen_mode(uint32_t* num);

/**
 * Reports whether zoom is enabled.
 *
 * @return 1 or 0; 0 without a service and after a transport failure
 */
int a_qeltvapi_zoom_is_enable(void);

/**
 * Sets the current overscan.
 *
 * @param p1 service-defined; reference television: top, in thousandths of the picture, 0 to
 *           QELTV_OVERSCAN_MAXIMUM
 * @param p2 service-defined; reference television: bottom, as @p p1
 * @param p3 service-defined; reference television: left, as @p p1
 * @param p4 service-defined; reference television: right, as @p p1
 * @return the service's code
 */
int a_qeltvapi_screenmode_set_crnt_overscan(int32_t p1, int32_t p2, int32_t p3, int32_t p4);

/**
 * Reads the current overscan.
 *
 * @param four [out] the four values of a_qeltvapi_screenmode_set_crnt_overscan(), as many bytes as
 *             the service sends; reference television: 16 bytes
 * @return the service's code
 */
int a_qeltvapi_screenmode_get_crnt_overscan(int32_t* four);

/**
 * Writes the current overscan to the settings.
 *
 * @return the service's code
 */
int a_qeltvapi_screenmode_update_overscan_ini(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_SCREENMODE_H */
