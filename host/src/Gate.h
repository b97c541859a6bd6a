#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace hidlhost {

/** Bounds the calls that run at a time. */
class Gate {
  public:
    void configure(size_t threads, bool callerJoins);
    void join();
    size_t capacity();

    /** Whether the process has said how many threads it has. */
    bool configured() const { return mConfigured; }

    bool tryEnter();
    void waitAndEnter();
    void leave();

  private:
    void changed();

    std::mutex mMutex;
    std::condition_variable mLeft;
    std::atomic<bool> mConfigured{false};
    size_t mThreads = 1;
    bool mCallerJoins = false;
    bool mJoined = false;
    std::atomic<size_t> mLimit{1};
    std::atomic<size_t> mRunning{0};
    std::atomic<size_t> mWaiting{0};
};

/** While it lives, the calling thread has given its place in a pool, if it has one, to others. */
class WithoutPlace {
  public:
    WithoutPlace();
    ~WithoutPlace();
    WithoutPlace(const WithoutPlace&) = delete;
    WithoutPlace& operator=(const WithoutPlace&) = delete;

  private:
    Gate* const mGate;
};

}  // namespace hidlhost
