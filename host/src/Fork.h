#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

/**
 * What becomes of the runtime in a child that fork() makes. The child has one thread, the one that
 * forked, and a copy of everything as the others left it. So
 *
 *  - what the process has one of is made anew there (onePerProcess()),
 *  - what is shared without that is guarded by a process lock, and fork() takes all of these,
 *  - the parent's nodes, peers and connections are of an older generation. Nobody takes their locks
 *    in the child, and their descriptors are closed: a child that held them would keep the parent
 *    alive in the eyes of others. Nor may it shut them down, because they are the parent's,
 *  - proxies move to a peer of the child's own with their first use.
 */
namespace hidlhost {

/** How often the process has forked on its way here. */
uint32_t generation();

/** Runs `task`, which may do no more than store and close, in the child of every later fork. */
void onFork(void (*task)());

/**
 * The locks of what outlives a fork. Held for moments and never while foreign code runs. A later
 * one may be taken while an earlier one is held.
 */
enum class ProcessLock {
    kListeners,
    kDirectory,
    kProxies,
    kTaskRunners,
    kRawServices,
    kSystemProperties,
    kCount
};
std::mutex& processMutex(ProcessLock which);

/**
 * Something that is done under locks that the runtime does not know: libraries search for services
 * and generated proxies link death recipients under theirs, which would stay locked in a child. A
 * fork waits, within bounds, for a moment without any.
 */
class UnderForeignLock {
  public:
    UnderForeignLock();
    ~UnderForeignLock();
    UnderForeignLock(const UnderForeignLock&) = delete;
    UnderForeignLock& operator=(const UnderForeignLock&) = delete;
};

/** Ends a child that has returned from foreign code into a thread of its parent's runtime. */
[[noreturn]] void endStrayChild();

/**
 * What the process has one of, made by `make` when first asked for, and anew in a child. Never
 * destroyed: other threads use it until the very end of the process.
 */
template <class T, class Make>
T& onePerProcess(Make make) {
    struct One {
        uint32_t generation;
        T* value;
    };
    static std::atomic<One*> current{nullptr};
    One* one = current.load(std::memory_order_acquire);
    if (one != nullptr && one->generation == generation()) return *one->value;
    One* fresh = new One{generation(), make()};
    // A parent's stays as it is: its threads had it in their hands.
    if (current.compare_exchange_strong(one, fresh)) return *fresh->value;
    delete fresh->value;
    delete fresh;
    return *one->value;
}

}  // namespace hidlhost
