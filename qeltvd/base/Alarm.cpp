#define LOG_TAG "qeltvd"

#include "Alarm.h"

#include <algorithm>

#include "Guarded.h"

namespace qeltvd {

Timers::Timers() : mThread([this] { run(); }) {}

Timers::~Timers() {
    stop();
}

void Timers::stop() {
    {
        std::lock_guard<std::mutex> guard(mLock);
        mEnd = true;
    }
    mChanged.notify_one();
    if (mThread.joinable()) mThread.join();
}

void Timers::add(Alarm* alarm) {
    std::lock_guard<std::mutex> guard(mLock);
    mAlarms.push_back(alarm);
}

void Timers::remove(Alarm* alarm) {
    std::unique_lock<std::mutex> guard(mLock);
    mAlarms.erase(std::find(mAlarms.begin(), mAlarms.end(), alarm));
    mReturned.wait(guard, [&] { return mRinging != alarm; });
}

void Timers::set(Alarm* alarm, std::optional<Clock::time_point> due) {
    {
        std::lock_guard<std::mutex> guard(mLock);
        alarm->mDue = due;
    }
    mChanged.notify_one();
}

/** The alarm whose time comes first; null when none is set. */
Alarm* Timers::next() const {
    Alarm* first = nullptr;
    for (Alarm* const alarm : mAlarms) {
        if (alarm->mDue && (first == nullptr || *alarm->mDue < *first->mDue)) first = alarm;
    }
    return first;
}

void Timers::run() {
    std::unique_lock<std::mutex> guard(mLock);
    while (!mEnd) {
        Alarm* const alarm = next();
        if (alarm == nullptr) {
            mChanged.wait(guard);
            continue;
        }
        if (const auto due = *alarm->mDue; Clock::now() < due) {
            mChanged.wait_until(guard, due);
            continue;
        }
        alarm->mDue.reset();
        mRinging = alarm;
        guard.unlock();
        const bool returned = guarded(alarm->mName, alarm->mRing);
        guard.lock();
        if (!returned && !alarm->mDue) alarm->mDue = Clock::now() + kRetry;
        mRinging = nullptr;
        mReturned.notify_all();
    }
}

}  // namespace qeltvd
