/**
 * Analogue closed captions.
 *
 * Every function asks IQelTvApi and returns -1 when the service is not there and -1 after a lost
 * reply. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_ANALOG_CC_H
#define HW_QELTVAPI_ANALOG_CC_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Switches the captions on or off. Asks method 167.
 *
 * @param flag 1 for on; every other value is off
 * @return the service's code
 */
int a_qeltvapi_analogcc_enable(int32_t flag);

/**
 * Steps to the next caption stream. Asks method 168.
 *
 * @return the service's answer
 */
int a_qeltvapi_analogcc_next_stream(void);

/**
 * Asks for the caption text; the answer is the result alone. Asks method 169.
 *
 * @return the service's answer
 */
int a_qeltvapi_analogcc_get_CCString(void);

/**
 * Shows or hides the captions. Asks method 170.
 *
 * @param flag 1 to show them; every other value hides them
 * @return the service's code
 */
int a_qeltvapi_analogcc_set_visible(int32_t flag);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_ANALOG_CC_H */
