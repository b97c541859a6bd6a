/**
 * ISDB closed captions.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_ISDB_CC_H
#define HW_QELTVAPI_ISDB_CC_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Switches the captions on or off.
 *
 * @param flag 1 for on; any other value for off
 * @return the service's code
 */
int a_qeltvapi_isdbcc_enable(int32_t flag);

/**
 * Selects the next caption stream.
 *
 * @return the service's answer; reference television: the new stream, 1 or 2
 */
int a_qeltvapi_isdbcc_next_stream(void);

/**
 * Reads the caption that is to be shown; the result alone is the answer.
 *
 * @return the service's answer; reference television: the stream that is shown, 0 for none
 */
int a_qeltvapi_isdbcc_get_CCString(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_ISDB_CC_H */
