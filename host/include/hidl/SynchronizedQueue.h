#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <queue>
#include <utility>

namespace android {
namespace hardware {
namespace details {

/** A queue with a limit, for one consumer and any number of producers. */
template <typename T>
class SynchronizedQueue {
  public:
    explicit SynchronizedQueue(size_t limit) : mLimit(limit) {}
    SynchronizedQueue(const SynchronizedQueue&) = delete;
    SynchronizedQueue& operator=(const SynchronizedQueue&) = delete;

    /** False, without waiting, when the queue is full or closed. */
    bool push(const T& item) {
        std::lock_guard<std::mutex> lock(mMutex);
        if (mClosed || mQueue.size() >= mLimit) return false;
        mQueue.push(item);
        mCondition.notify_one();
        return true;
    }

    /** Waits for an item; false when the queue is closed and empty. */
    bool pop(T* item) {
        std::unique_lock<std::mutex> lock(mMutex);
        mCondition.wait(lock, [this] { return mClosed || !mQueue.empty(); });
        if (mQueue.empty()) return false;
        *item = std::move(mQueue.front());
        mQueue.pop();
        return true;
    }

    /** Takes no more items; those inside can still be popped. */
    void close() {
        std::lock_guard<std::mutex> lock(mMutex);
        mClosed = true;
        mCondition.notify_all();
    }

    size_t size() const {
        std::lock_guard<std::mutex> lock(mMutex);
        return mQueue.size();
    }

  private:
    mutable std::mutex mMutex;
    std::condition_variable mCondition;
    std::queue<T> mQueue;
    const size_t mLimit;
    bool mClosed = false;
};

}  // namespace details
}  // namespace hardware
}  // namespace android
