#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

#include "Fork.h"

namespace hidlhost {

/**
 * Two threads of the process that start with the first use: one waits on the connections whose end
 * means the end of a process, the other runs what that leads to in foreign code (death recipients,
 * destructors of released objects), so that nothing of it can hold up the first.
 */
class Watcher {
  public:
    static Watcher& get();

    /**
     * Calls `ready` on the watching thread whenever the socket has something to read or has hung
     * up; it must not block. The function keeps the socket open. It ends once it returns false.
     */
    void add(int socket, std::function<bool()> ready);

    /** As add(), but if the watching thread does not run yet, startDeferred() starts it. */
    void addDeferred(int socket, std::function<bool()> ready);
    void startDeferred() {
        if (mDeferred.load(std::memory_order_relaxed)) start();
    }

    /**
     * Calls `ready` on the watching thread once: with true when the socket has something to read or
     * has hung up, with false when the time is over. The socket is not watched any more then.
     */
    void once(int socket, uint32_t milliseconds, std::function<void(bool)> ready);

    /** Runs `task` on the watching thread after a while; it must not block. */
    void after(uint32_t milliseconds, std::function<void()> task);

    /** Runs `task` on the other thread, in the order of the posts. */
    void post(std::function<void()> task);

  private:
    template <class T, class Make>
    friend T& onePerProcess(Make make);

    Watcher();
    ~Watcher();
    void start();
    struct State;
    State* mState;
    std::atomic<bool> mDeferred{false};
};

}  // namespace hidlhost
