/**
 * Screen modes (aspect), zoom and overscan. The modes, 16-bit numbers, and the meaning of the
 * overscan values are the service's.
 *
 * The functions ask IQelTvApi. Without a service and after a lost reply the current mode is
 * QELTVAPI_SCREENMODE_NONE and zoom is not enabled; all other functions return -1 then. The
 * missing service is not logged.
 */
#ifndef HW_QELTVAPI_SCREENMODE_H
#define HW_QELTVAPI_SCREENMODE_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** No mode: the service did not answer. */
#define QELTVAPI_SCREENMODE_NONE 65535

/**
 * Reads the current screen mode. Asks method 81.
 *
 * @return the mode, or QELTVAPI_SCREENMODE_NONE
 */
uint16_t a_qeltvapi_screenmode_get_screen_mode(void);

/**
 * Sets the screen mode. Asks method 82.
 *
 * @param mode the mode
 * @return the service's code
 */
int a_qeltvapi_screenmode_set_screen_mode(int32_t mode);

/**
 * Reads all screen modes. Asks method 83.
 *
 * @param modes [out] the modes, as many as the service sends, whatever the room: size it by
 *              a_qeltvapi_screenmode_get_number_screen_mode()
 * @param num   [in,out] number of modes that there is room for, told to the service; then the
 *              number that the service tells
 * @return the service's code
 */
int a_qeltvapi_screenmode_get_all_screen_mode(uint16_t* modes, uint32_t* num);

/**
 * Reads the number of screen modes. Asks method 84.
 *
 * @param num [out] the number
 * @return the service's code
 */
int a_qeltvapi_screenmode_get_number_screen_mode(uint32_t* num);

/**
 * Tells whether zoom is enabled. Asks method 85.
 *
 * @return 1 when it is; 0 when it is not, when the service is not there and after a lost reply
 */
int a_qeltvapi_zoom_is_enable(void);

/**
 * Sets the current overscan. Asks method 86.
 *
 * @param p1 first value
 * @param p2 second value
 * @param p3 third value
 * @param p4 fourth value
 * @return the service's code
 */
int a_qeltvapi_screenmode_set_crnt_overscan(int32_t p1, int32_t p2, int32_t p3, int32_t p4);

/**
 * Reads the current overscan. Asks method 87.
 *
 * @param four [out] room for the four values; takes as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_screenmode_get_crnt_overscan(int32_t* four);

/**
 * Has the current overscan written to the settings. Asks method 88.
 *
 * @return the service's code
 */
int a_qeltvapi_screenmode_update_overscan_ini(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_SCREENMODE_H */
