#include "Hub.h"

#include <algorithm>

namespace screen {

void Hub::setState(const std::string& state) {
    std::lock_guard<std::mutex> guard(mLock);
    if (state == mState) return;
    mState = state;
    ++mStateNumber;
    mNews.notify_all();
}

void Hub::add(const char* event, const std::string& data) {
    std::lock_guard<std::mutex> guard(mLock);
    mEntries.push_back(std::string("event: ") + event + "\ndata: " + data + "\n\n");
    if (mEntries.size() > kKept) mEntries.pop_front();
    ++mEntryNumber;
    mNews.notify_all();
}

std::string Hub::next(Position* position, std::chrono::milliseconds timeout) {
    std::unique_lock<std::mutex> guard(mLock);
    const auto news = [&] {
        return mClosed || position->state != mStateNumber || position->entry != mEntryNumber;
    };
    if (!mNews.wait_for(guard, timeout, news) || mClosed) return "";
    std::string events;
    if (position->state != mStateNumber) events = "event: state\ndata: " + mState + "\n\n";
    const uint64_t missing = std::min<uint64_t>(mEntryNumber - position->entry, mEntries.size());
    for (size_t i = mEntries.size() - missing; i < mEntries.size(); ++i) events += mEntries[i];
    *position = {mStateNumber, mEntryNumber};
    return events;
}

void Hub::close() {
    std::lock_guard<std::mutex> guard(mLock);
    mClosed = true;
    mNews.notify_all();
}

bool Hub::closed() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mClosed;
}

}  // namespace screen
