/**
 * ATSC closed captions.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_ATSC_CC_H
#define HW_QELTVAPI_ATSC_CC_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Switches the captions on or off.
 *
 * @param flag 1 for on; any other value for off
 * @return the service's code
 */
int a_qeltvapi_atsccc_enable(int32_t flag);

/**
 * Selects the next caption stream.
 *
 * @return the service's answer; reference television: the new stream, 1 to 6
 */
int a_qeltvapi_atsccc_next_stream(void);

/**
 * Reads the caption that is to be shown; the result alone is the answer.
 *
 * @return the service's answer; reference television: the stream that is shown, 0 for none
 */
int a_qeltvapi_atsccc_get_CCString(void);

/**
 * Shows or hides the captions.
 *
 * @param flag 1 to show them; any other value hides them
 * @return the service's code
 */
int a_qeltvapi_atsccc_set_visible(int32_t flag);

/**
 * Sets the demonstration mode.
 *
 * @param a service-defined; reference television: 1 for on, 0 for off
 * @param b service-defined; reference television: style of the captions, 0 to 7
 * @return the service's code
 */
int a_qeltvapi_atsccc_demo_set(uint32_t a, uint32_t b);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_ATSC_CC_H */
