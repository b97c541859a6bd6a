#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace qeltvd {

/**
 * Calls a function at a set time, on a thread of its own, outside of any lock; the function may
 * set the next time. Ends with the object, which a model therefore declares as its last member.
 */
class Alarm {
  public:
    using Clock = std::chrono::steady_clock;

    explicit Alarm(std::function<void()> ring)
            : mRing(std::move(ring)), mThread([this] { run(); }) {}

    ~Alarm() {
        {
            std::lock_guard<std::mutex> guard(mLock);
            mEnd = true;
        }
        mChanged.notify_one();
        mThread.join();
    }

    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;

    /** Replaces the time that was set before. */
    void set(Clock::time_point due) { change(due); }
    void in(Clock::duration time) { change(Clock::now() + time); }
    /** A call that has begun is not waited for. */
    void clear() { change(std::nullopt); }

  private:
    void change(std::optional<Clock::time_point> due) {
        {
            std::lock_guard<std::mutex> guard(mLock);
            mDue = due;
        }
        mChanged.notify_one();
    }

    void run() {
        std::unique_lock<std::mutex> guard(mLock);
        while (!mEnd) {
            if (!mDue) {
                mChanged.wait(guard);
            } else if (const auto due = *mDue; Clock::now() < due) {
                mChanged.wait_until(guard, due);
            } else {
                mDue.reset();
                guard.unlock();
                mRing();
                guard.lock();
            }
        }
    }

    const std::function<void()> mRing;
    std::mutex mLock;
    std::condition_variable mChanged;
    // Guarded by mLock.
    std::optional<Clock::time_point> mDue;
    bool mEnd = false;
    std::thread mThread;
};

}  // namespace qeltvd
