#pragma once

#include <atomic>
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

/**
 * How often the process has forked on its way here. A child has the parent's objects but neither
 * its threads nor a right to its connections, so everything of an older generation is dead to it.
 */
uint32_t generation();
/** Runs `task`, which may do no more than store, in the child of every later fork. */
void onFork(void (*task)());

/**
 * What the process has one of, made by `make` when first asked for, and anew in a fork. Never
 * destroyed: other threads use it until the very end of the process.
 */
template <class T, class Make>
T& onePerProcess(Make make) {
    static std::atomic<T*> current{nullptr};
    T* one = current.load(std::memory_order_acquire);
    if (one != nullptr) return *one;
    static const bool watchingForks = [] {
        onFork([] { current = nullptr; });
        return true;
    }();
    (void)watchingForks;
    T* fresh = make();
    if (current.compare_exchange_strong(one, fresh)) return *fresh;
    delete fresh;
    return *one;
}

/** What a thread of any origin is doing for the runtime. */
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
