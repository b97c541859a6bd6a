#include "Gate.h"

#include <algorithm>

#include "Threads.h"

namespace hidlhost {

void Gate::configure(size_t threads, bool callerJoins) {
    std::lock_guard<std::mutex> lock(mMutex);
    mConfigured = true;
    mThreads = std::max<size_t>(threads, 1);
    mCallerJoins = callerJoins;
    changed();
}

void Gate::join() {
    std::lock_guard<std::mutex> lock(mMutex);
    mJoined = true;
    changed();
}

void Gate::changed() {
    mLimit = mThreads - (mCallerJoins && !mJoined ? 1 : 0);
    mLeft.notify_all();
}

size_t Gate::capacity() {
    std::lock_guard<std::mutex> lock(mMutex);
    return mThreads;
}

bool Gate::tryEnter() {
    size_t running = mRunning.load();
    while (running < mLimit.load(std::memory_order_relaxed)) {
        if (mRunning.compare_exchange_weak(running, running + 1)) return true;
    }
    return false;
}

void Gate::waitAndEnter() {
    std::unique_lock<std::mutex> lock(mMutex);
    ++mWaiting;  // before the next look at mRunning; leave() does both the other way round
    mLeft.wait(lock, [this] { return tryEnter(); });
    --mWaiting;
}

void Gate::leave() {
    --mRunning;
    if (mWaiting == 0) return;
    std::lock_guard<std::mutex> lock(mMutex);
    mLeft.notify_one();
}

WithoutPlace::WithoutPlace() : mGate(threadState().gate) {
    if (mGate == nullptr) return;
    threadState().gate = nullptr;
    mGate->leave();
}

WithoutPlace::~WithoutPlace() {
    if (mGate == nullptr) return;
    mGate->waitAndEnter();
    threadState().gate = mGate;
}

}  // namespace hidlhost
