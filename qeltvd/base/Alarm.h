#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace qeltvd {

class Alarm;

/** The thread of all alarms: runs their functions one after the other. Outlives its alarms. */
class Timers {
  public:
    Timers();
    ~Timers();
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;

    using Clock = std::chrono::steady_clock;
    /** When a function that threw is called again, unless it has set a time itself. */
    static constexpr std::chrono::milliseconds kRetry{1000};

    /** No alarm rings from here on. Waits until the function of the one that rings has returned. */
    void stop();

  private:
    friend class Alarm;

    void add(Alarm* alarm);
    /** Waits until the alarm's function has returned. */
    void remove(Alarm* alarm);
    void set(Alarm* alarm, std::optional<Clock::time_point> due);
    void run();
    Alarm* next() const;

    mutable std::mutex mLock;
    std::condition_variable mChanged;
    std::condition_variable mReturned;
    // Guarded by mLock, as are the times of the alarms.
    std::vector<Alarm*> mAlarms;
    Alarm* mRinging = nullptr;
    bool mEnd = false;
    std::thread mThread;
};

/**
 * Calls a function at a set time, on the thread of the timers, outside of any lock; the function
 * may set the next time. A function that throws is logged and called again after a moment. Ends
 * with the object, which a model therefore declares as its last member.
 */
class Alarm {
  public:
    using Clock = Timers::Clock;

    /** @param name names the function in the log */
    Alarm(Timers& timers, const char* name, std::function<void()> ring)
            : mTimers(timers), mName(name), mRing(std::move(ring)) {
        mTimers.add(this);
    }
    ~Alarm() { mTimers.remove(this); }
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;

    /** Replaces the time that was set before. */
    void set(Clock::time_point due) { mTimers.set(this, due); }
    void in(Clock::duration time) { set(Clock::now() + time); }
    /** Does not wait for a call that has begun. */
    void clear() { mTimers.set(this, std::nullopt); }

  private:
    friend class Timers;

    Timers& mTimers;
    const char* const mName;
    const std::function<void()> mRing;
    // Guarded by the lock of the timers.
    std::optional<Clock::time_point> mDue;
};

}  // namespace qeltvd
