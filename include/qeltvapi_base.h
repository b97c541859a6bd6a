/**
 * The rules that hold for every function of the library; a header or a function says where it
 * differs.
 *
 * Threads: any thread may call any function, several at once. A call is one transaction with the
 * service and blocks until the service has answered; nothing is retried, and nothing is kept
 * between calls.
 *
 * Memory: arguments are read and outputs written during the call only. The caller owns the output
 * buffers, sizes and clears them: texts are stored without a terminating zero, and many answers are
 * stored whole, not bounded by the buffer's size. The comment of a buffer gives its capacity, or
 * what the reference television sends at most.
 *
 * Results: the service's code is its own, as a rule 0 for success and negative for a refusal
 * (reference television: a QELTV_CODE of layouts/codes.h). Two situations have no answer: without a
 * service (none is registered) and after a transport failure (the reply did not come, because the
 * service died during the call or the call was lost). The top of every header gives the result of
 * both; a function repeats them where it differs. Outputs are untouched then.
 *
 * Parameters: an input crosses unchanged unless its comment says otherwise. The meaning of a
 * service-defined parameter is the service's; the comment adds what the reference television takes.
 * Names of its values are in layouts/. Parameters without a direction are inputs.
 */
#ifndef QELTVAPI_BASE_H
#define QELTVAPI_BASE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define QELTVAPI_BEGIN_DECLS _Pragma("GCC visibility push(default)") extern "C" {
#define QELTVAPI_END_DECLS \
    }                      \
    _Pragma("GCC visibility pop")
/** The parameters of a function that takes any arguments. */
#define QELTVAPI_ANY_ARGS ...
#else
#define QELTVAPI_BEGIN_DECLS
#define QELTVAPI_END_DECLS
#define QELTVAPI_ANY_ARGS
#endif

#endif /* QELTVAPI_BASE_H */
