/**
 * What every header of this folder starts from.
 *
 * The rules below hold for every function of the library; a header or a function says so where
 * it differs.
 *
 * Threads: any thread may call any function, several at once. A call blocks until the service
 * has answered; nothing is retried and nothing is remembered between calls.
 *
 * Memory: arguments are read and outputs written during the call only. Output buffers belong to
 * the caller, who sizes and clears them: texts are stored without a terminating zero and many
 * answers are stored whole, whatever the room.
 *
 * Results: the service's own code, as a rule 0 for success and negative for a refusal. Every
 * header tells what its functions return when the service is not there and when the reply is
 * lost because the service died during the call; outputs are untouched then.
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
/** The parameters of an entry point that takes whatever an old caller passes. */
#define QELTVAPI_ANY_ARGS ...
#else
#define QELTVAPI_BEGIN_DECLS
#define QELTVAPI_END_DECLS
#define QELTVAPI_ANY_ARGS
#endif

#endif /* QELTVAPI_BASE_H */
