/**
 * Entry point of the miscellaneous features. It makes no transaction.
 */
#ifndef HW_QELTVAPI_FEATURE_MISC_H
#define HW_QELTVAPI_FEATURE_MISC_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Does nothing; kept for programs that link against it.
 *
 * @return 0
 */
int a_qeltvapi_feature_misc_register_callback(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_FEATURE_MISC_H */
