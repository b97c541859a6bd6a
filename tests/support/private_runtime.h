#ifndef TESTS_SUPPORT_PRIVATE_RUNTIME_H
#define TESTS_SUPPORT_PRIVATE_RUNTIME_H

namespace wire {

/**
 * Gives this process and its children a runtime directory of their own, which goes with the
 * process. For the initialisation of a static: before anything asks for the directory.
 */
bool usePrivateRuntime();

}  // namespace wire

#endif  // TESTS_SUPPORT_PRIVATE_RUNTIME_H
