/**
 * Freezing the picture of a video path.
 *
 * Results: each function says what it returns without a service and after a transport failure; the
 * missing service is not logged.
 *
 * A path is a terminated text, null counts as "". Reference television: "main" (also "") and "sub".
 */
#ifndef HW_QELTVAPI_FREEZE_H
#define HW_QELTVAPI_FREEZE_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Freezes or unfreezes the picture of a path.
 *
 * @param path   video path
 * @param freeze 1 to freeze; any other value, 2 included, unfreezes
 * @return the service's code; -1 without a service and after a transport failure
 */
int a_qeltvapi_freeze_set_freeze(const char* path, int freeze);

/**
 * Reports whether the picture of a path is frozen.
 *
 * @param path video path
 * @return 1 or 0; 0 without a service and after a transport failure
 */
int a_qeltvapi_freeze_is_freeze(const char* path);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_FREEZE_H */
