#ifndef QELTVAPI_TESTING_PRIVATE_RUNTIME_H
#define QELTVAPI_TESTING_PRIVATE_RUNTIME_H

namespace qeltvapi::testing::wire {

/**
 * Gives this process and its children a runtime directory of their own, which goes with the
 * process. For the initialisation of a static, before anything looks the directory up.
 */
bool usePrivateRuntime();

}  // namespace qeltvapi::testing::wire

#endif  // QELTVAPI_TESTING_PRIVATE_RUNTIME_H
