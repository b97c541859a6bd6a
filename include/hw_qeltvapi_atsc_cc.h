/**
 * ATSC closed captions.
 *
 * Every function asks IQelTvApi and returns -1 when the service is not there and -1 after a lost
 * reply. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_ATSC_CC_H
#define HW_QELTVAPI_ATSC_CC_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Switches the captions on or off. Asks method 162.
 *
 * @param flag 1 for on; every other value is off
 * @return the service's code
 */
int a_qeltvapi_atsccc_enable(int32_t flag);

/**
 * Steps to the next caption stream. Asks method 163.
 *
 * @return the service's answer
 */
int a_qeltvapi_atsccc_next_stream(void);

/**
 * Asks for the caption text; the answer is the result alone. Asks method 164.
 *
 * @return the service's answer
 */
int a_qeltvapi_atsccc_get_CCString(void);

/**
 * Shows or hides the captions. Asks method 165.
 *
 * @param flag 1 to show them; every other value hides them
 * @return the service's code
 */
int a_qeltvapi_atsccc_set_visible(int32_t flag);

/**
 * Sets the demonstration mode. Asks method 166.
 *
 * @param a passed to the service unchanged
 * @param b passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_atsccc_demo_set(uint32_t a, uint32_t b);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_ATSC_CC_H */
