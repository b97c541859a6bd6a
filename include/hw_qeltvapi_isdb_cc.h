/**
 * ISDB closed captions.
 *
 * Every function asks IQelTvApi and returns -1 when the service is not there and -1 after a lost
 * reply. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_ISDB_CC_H
#define HW_QELTVAPI_ISDB_CC_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Switches the captions on or off. Asks method 49.
 *
 * @param flag 1 for on; every other value is off
 * @return the service's code
 */
int a_qeltvapi_isdbcc_enable(int32_t flag);

/**
 * Steps to the next caption stream. Asks method 50.
 *
 * @return the service's answer
 */
int a_qeltvapi_isdbcc_next_stream(void);

/**
 * Asks for the caption text; the answer is the result alone. Asks method 51.
 *
 * @return the service's answer
 */
int a_qeltvapi_isdbcc_get_CCString(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_ISDB_CC_H */
