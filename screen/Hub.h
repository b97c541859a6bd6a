#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>

namespace screen {

/**
 * What the page is sent: the state, of which only the newest counts, and a running list of entries,
 * of which the last ones are kept for pages that come later. All functions may be called on any
 * thread.
 */
class Hub {
  public:
    /** A place in what is sent. */
    struct Position {
        uint64_t state = 0;
        uint64_t entry = 0;
    };

    /** @param state JSON text; ignored when it is that of before */
    void setState(const std::string& state);
    /** @param event name of the event; @param data JSON text */
    void add(const char* event, const std::string& data);

    /**
     * Waits for something that is newer than a position.
     *
     * @param position [in,out] what has been sent; then what the result brings it to
     * @return server-sent events, empty when there is nothing until the timeout or the end
     */
    std::string next(Position* position, std::chrono::milliseconds timeout);

    /** Ends all waits, from then on. */
    void close();
    bool closed() const;

  private:
    static constexpr size_t kKept = 200;

    mutable std::mutex mLock;
    std::condition_variable mNews;
    std::string mState;
    uint64_t mStateNumber = 0;
    std::deque<std::string> mEntries;
    uint64_t mEntryNumber = 0;
    bool mClosed = false;
};

}  // namespace screen
