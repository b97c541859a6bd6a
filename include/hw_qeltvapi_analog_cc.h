/**
 * Analogue closed captions.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_ANALOG_CC_H
#define HW_QELTVAPI_ANALOG_CC_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Switches the captions on or off.
 *
 * @param flag 1 for on; any other value for off
 * @return the service's code
 */
int a_qeltvapi_analogcc_enable(int32_t flag);

/**
 * Selects the next caption stream.
 *
 * @return the service's answer; reference television: the new stream, 1 to 8
 */
int a_qeltvapi_analogcc_next_stream(void);

/**
 * Reads the caption that is to be shown; the result alone is the answer.
 *
 * @return the service's answer; reference television: the stream that is shown, 0 for none
 */
int a_qeltvapi_analogcc_get_CCString(void);

/**
 * Shows or hides the captions.
 *
 * @param flag 1 to show them; any other value hides them
 * @return the service's code
 */
int a_qeltvapi_analogcc_set_visible(int32_t flag);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_ANALOG_CC_H */
