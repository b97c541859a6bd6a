/**
 * The result codes of the reference television. They do not include the library's own -1 and -2, so
 * that a caller can distinguish a refusal from a service that is not reachable.
 */
#ifndef QELTV_LAYOUTS_CODES_H
#define QELTV_LAYOUTS_CODES_H

/* QELTV_CODE: result code. */
#define QELTV_OK 0              /**< success */
#define QELTV_NOT_FOUND (-3)    /**< no such item, channel, record or handle */
#define QELTV_BAD_VALUE (-4)    /**< a value out of range, or a record of the wrong size */
#define QELTV_REFUSED (-5)      /**< not possible in this state: disabled, locked, busy */
#define QELTV_STORAGE (-6)      /**< the store cannot be written */
#define QELTV_UNSUPPORTED (-38) /**< this television does not have the function */

#endif /* QELTV_LAYOUTS_CODES_H */
