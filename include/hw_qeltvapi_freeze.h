/**
 * Freezing of the picture of a video path. Both functions ask IQelTvApi; the missing service is
 * not logged. A path is a text ended by a zero; null counts as "".
 */
#ifndef HW_QELTVAPI_FREEZE_H
#define HW_QELTVAPI_FREEZE_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Freezes or unfreezes the picture of a path. Asks method 47.
 *
 * @param path   the path
 * @param freeze 1 freezes; any other value, 2 included, unfreezes
 * @return the service's code; -1 when the service is not there and after a lost reply
 */
int a_qeltvapi_freeze_set_freeze(const char* path, int freeze);

/**
 * Tells whether the picture of a path is frozen. Asks method 48.
 *
 * @param path the path
 * @return 1 when it is; 0 when it is not, when the service is not there and after a lost reply
 */
int a_qeltvapi_freeze_is_freeze(const char* path);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_FREEZE_H */
