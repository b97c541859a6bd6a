#pragma once

#include <cstdint>
#include <functional>

#include <sys/types.h>

/** Addressed without a call; for a few bytes at a time, as their room is scarce. */
#define FAST_THREAD_LOCAL thread_local __attribute__((tls_model("initial-exec")))

namespace hidlhost {

class Gate;
struct Conversation;

/** Runs `body` on a thread of its own, one that was parked or a new one. False without resources.
 */
bool startThread(const char* name, std::function<void()> body);

/** The state of one thread, of any origin, in the runtime. */
struct ThreadState {
    uint64_t chain = 0;  // of the call being served, or of the thread's own calls
    pid_t callerPid = 0;
    uid_t callerUid = 0;
    bool serving = false;
    /** Whose pool the thread has a place in. */
    Gate* gate = nullptr;
    /** The innermost call that it serves. */
    Conversation* conversation = nullptr;
    const char* clientMethod = nullptr;  // kept by the generated code's trace points
    const char* serverMethod = nullptr;
};
ThreadState& threadState();

}  // namespace hidlhost
