/**
 * Generic information blocks of a service context (see hw_svctx.h).
 *
 * Both functions ask IQelTvApi and return -1 when the service is not there and -1 after a lost
 * reply. The missing service is not logged.
 */
#ifndef HW_MM_SVCTX_H
#define HW_MM_SVCTX_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Reads an information block. Asks method 25.
 *
 * @param ctx  the context
 * @param v    passed to the service unchanged
 * @param code which block
 * @param buf  [out] the block, as many bytes as the service sends, whatever `len`
 * @param len  length in bytes, told to the service
 * @return the service's code
 */
int c_svctx_generic_get_info(uint32_t ctx, uint32_t v, uint32_t code, void* buf, uint32_t len);

/**
 * Sets an information block. Asks method 26.
 *
 * @param ctx  the context
 * @param v    passed to the service unchanged
 * @param code which block
 * @param buf  [in,out] the block; then the answer, as many bytes as the service sends, whatever
 *             `len`
 * @param len  length of the block in bytes
 * @return the service's code
 */
int c_svctx_generic_set_info(uint32_t ctx, uint32_t v, uint32_t code, void* buf, uint32_t len);

QELTVAPI_END_DECLS

#endif /* HW_MM_SVCTX_H */
