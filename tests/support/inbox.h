/** What other threads deliver, as a test waits for it. */
#ifndef TESTS_SUPPORT_INBOX_H
#define TESTS_SUPPORT_INBOX_H

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "eventually.h"

/**
 * Values in the order of their arrival. Any thread may put; waits end at the latest after their
 * limit.
 */
template <class T>
class Inbox {
  public:
    void put(T value) {
        std::lock_guard<std::mutex> guard(mLock);
        mValues.push_back(std::move(value));
        mArrived.notify_all();
    }

    void clear() {
        std::lock_guard<std::mutex> guard(mLock);
        mValues.clear();
    }

    /**
     * Removes the values up to the first that fits, and returns that. If none that fits comes, all
     * stay and the result is empty.
     */
    template <class F>
    std::optional<T> takeUntil(const F& fits, std::chrono::milliseconds limit = kPatience) {
        std::unique_lock<std::mutex> guard(mLock);
        std::optional<T> found;
        mArrived.wait_for(guard, limit, [&] {
            const auto at = std::find_if(mValues.begin(), mValues.end(), fits);
            if (at == mValues.end()) return false;
            found = std::move(*at);
            mValues.erase(mValues.begin(), at + 1);
            return true;
        });
        return found;
    }

    /** The first value that fits, which stays; none if it does not come. */
    template <class F>
    std::optional<T> find(const F& fits, std::chrono::milliseconds limit = kPatience) {
        std::unique_lock<std::mutex> guard(mLock);
        std::optional<T> found;
        mArrived.wait_for(guard, limit, [&] {
            const auto at = std::find_if(mValues.begin(), mValues.end(), fits);
            if (at != mValues.end()) found = *at;
            return found.has_value();
        });
        return found;
    }

    /** Removes and returns the first value; none if none comes. */
    std::optional<T> take(std::chrono::milliseconds limit = kPatience) {
        return takeUntil([](const T&) { return true; }, limit);
    }

    /** Removes and returns the first value if there is one; does not wait. */
    std::optional<T> takeNow() { return take(std::chrono::milliseconds(0)); }

    /** Removes and returns all values that are there; does not wait. */
    std::vector<T> takeAll() {
        std::lock_guard<std::mutex> guard(mLock);
        std::vector<T> all(std::make_move_iterator(mValues.begin()),
                           std::make_move_iterator(mValues.end()));
        mValues.clear();
        return all;
    }

    /** Whether so many values have come and stay; false if they do not come. */
    bool waitForCount(size_t count, std::chrono::milliseconds limit = kPatience) {
        std::unique_lock<std::mutex> guard(mLock);
        return mArrived.wait_for(guard, limit, [&] { return mValues.size() >= count; });
    }

    /** How many of the values that are there fit. */
    template <class F>
    size_t count(const F& fits) {
        std::lock_guard<std::mutex> guard(mLock);
        return static_cast<size_t>(std::count_if(mValues.begin(), mValues.end(), fits));
    }

    bool empty() {
        std::lock_guard<std::mutex> guard(mLock);
        return mValues.empty();
    }

  private:
    std::mutex mLock;
    std::condition_variable mArrived;
    std::deque<T> mValues;
};

#endif  // TESTS_SUPPORT_INBOX_H
