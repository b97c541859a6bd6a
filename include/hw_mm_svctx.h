/**
 * Generic information blocks of a service context (see hw_svctx.h).
 *
 * Results: the service's code; -1 without a service and after a transport failure. The missing
 * service is not logged.
 */
#ifndef HW_MM_SVCTX_H
#define HW_MM_SVCTX_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Reads an information block.
 *
 * @param ctx  the context
 * @param v    service-defined; reference television: ignored
 * @param code which block; reference television: a QELTV_INFO_CODE
 * @param buf  [out] the block, as many bytes as the service sends, not bounded by @p len; reference
 *             television: at most @p len bytes
 * @param len  capacity of @p buf in bytes, sent to the service
 * @return the service's code
 */
int c_svctx_generic_get_info(uint32_t ctx, uint32_t v, uint32_t code, void* buf, uint32_t len);

/**
 * Sets an information block.
 *
 * @param ctx  the context
 * @param v    service-defined; reference television: ignored
 * @param code which block; reference television: QELTV_INFO_USER to QELTV_INFO_USER_LAST
 * @param buf  [in,out] the block; then the answer, as many bytes as the service sends, not bounded
 *             by @p len; reference television: the block as sent
 * @param len  size of the block in bytes
 * @return the service's code
 */
int c_svctx_generic_set_info(uint32_t ctx, uint32_t v, uint32_t code, void* buf, uint32_t len);

QELTVAPI_END_DECLS

#endif /* HW_MM_SVCTX_H */
