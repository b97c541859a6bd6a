#include "PacketRing.h"

#include <errno.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace qeltvd {

using namespace std::chrono_literals;

namespace {

constexpr auto kPacket = static_cast<int64_t>(stream::kPacketSize);
constexpr int64_t kMostMarks = 1 << 16;
constexpr auto kMarkTime = 100ms;

int64_t wholePackets(int64_t bytes) {
    return bytes / kPacket * kPacket;
}

}  // namespace

PacketRing::PacketRing(Descriptor file, int64_t size)
        : mFile(std::move(file)),
          mSize(size),
          mCapacity(std::max(wholePackets(size), kPacket)),
          mSpacing(mCapacity / kMostMarks),
          mMarks{{0, 0ms}} {}

bool PacketRing::transfer(int64_t place, size_t size, const uint8_t* from, uint8_t* to) const {
    for (size_t done = 0; done < size;) {
        const int64_t offset = (place + static_cast<int64_t>(done)) % mCapacity;
        const auto count = static_cast<size_t>(
                std::min<int64_t>(static_cast<int64_t>(size - done), mCapacity - offset));
        const auto where = static_cast<off_t>(offset);
        const ssize_t moved = from != nullptr ? pwrite(mFile.get(), from + done, count, where)
                                              : pread(mFile.get(), to + done, count, where);
        if (moved < 0 && errno == EINTR) continue;
        if (moved <= 0) {
            if (moved == 0) errno = EIO;
            return false;
        }
        done += static_cast<size_t>(moved);
    }
    return true;
}

int PacketRing::write(const uint8_t* packets, size_t size, Time arrived) {
    {
        // Readers of what is about to be overwritten see that it is gone.
        std::lock_guard<std::mutex> guard(mLock);
        mBegin = std::max(mBegin, mEnd + static_cast<int64_t>(size) - mCapacity);
        while (mMarks.size() > 1 && mMarks[1].place <= mBegin) mMarks.pop_front();
    }
    if (!transfer(mEnd, size, packets, nullptr)) return errno;
    std::lock_guard<std::mutex> guard(mLock);
    follow(packets, size, arrived);
    return 0;
}

void PacketRing::follow(const uint8_t* packets, size_t size, Time arrived) {
    for (size_t at = 0; at < size; at += stream::kPacketSize, mEnd += kPacket) {
        const bool ran = mClock.running();
        if (!mClock.push(packets + at)) continue;
        if (!ran) mClockStart = mNewest;
        mNewest = mClockStart + mClock.elapsed();
        const Mark& last = mMarks.back();
        if (mEnd - last.place >= mSpacing && mNewest - last.time >= kMarkTime) {
            mMarks.push_back({mEnd, mNewest});
        }
    }
    if (mClock.running()) return;
    if (!mFirstArrived) mFirstArrived = arrived;
    mNewest = std::max(mNewest, arrived - *mFirstArrived);
    if (mEnd - mMarks.back().place >= mSpacing) mMarks.push_back({mEnd, mNewest});
}

size_t PacketRing::read(int64_t place, uint8_t* packets, size_t size) const {
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (place < mBegin || place >= mEnd) return 0;
        size = static_cast<size_t>(
                wholePackets(std::min(static_cast<int64_t>(size), mEnd - place)));
    }
    if (size == 0 || !transfer(place, size, nullptr, packets)) return 0;
    std::lock_guard<std::mutex> guard(mLock);
    return place >= mBegin ? size : 0;
}

int64_t PacketRing::placeAt(Time time) const {
    const auto after = std::upper_bound(mMarks.begin(), mMarks.end(), time,
                                        [](Time t, const Mark& mark) { return t < mark.time; });
    if (after == mMarks.begin()) return mBegin;
    const Mark& before = *(after - 1);
    const Mark next = after != mMarks.end() ? *after : Mark{mEnd, mNewest};
    if (next.time <= before.time) return next.place;
    const double part = static_cast<double>((time - before.time).count()) /
                        static_cast<double>((next.time - before.time).count());
    return before.place +
           static_cast<int64_t>(part * static_cast<double>(next.place - before.place));
}

PacketRing::Time PacketRing::timeAt(int64_t place) const {
    const auto after = std::upper_bound(mMarks.begin(), mMarks.end(), place,
                                        [](int64_t p, const Mark& mark) { return p < mark.place; });
    if (after == mMarks.begin()) return mMarks.front().time;
    const Mark& before = *(after - 1);
    const Mark next = after != mMarks.end() ? *after : Mark{mEnd, mNewest};
    if (next.place <= before.place) return next.time;
    const double part = static_cast<double>(place - before.place) /
                        static_cast<double>(next.place - before.place);
    return before.time + Time(static_cast<int64_t>(
                                 part * static_cast<double>((next.time - before.time).count())));
}

int64_t PacketRing::placeOf(Time time) const {
    std::lock_guard<std::mutex> guard(mLock);
    if (time >= mNewest) return mEnd;
    const int64_t place = placeAt(time);
    return std::clamp(mStart + wholePackets(place - mStart), mBegin, mEnd);
}

PacketRing::Time PacketRing::oldest() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mBegin > mStart ? timeAt(mBegin) : 0ms;
}

PacketRing::Time PacketRing::newest() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mNewest;
}

int64_t PacketRing::end() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mEnd;
}

bool PacketRing::full() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mBegin > mStart;
}

void PacketRing::clear() {
    {
        std::lock_guard<std::mutex> guard(mLock);
        mStart = mBegin = mEnd;
        mMarks = {{mEnd, 0ms}};
        mNewest = 0ms;
    }
    mClock = {};
    mClockStart = 0ms;
    mFirstArrived.reset();
    const bool cleared = ftruncate(mFile.get(), 0) == 0 &&
                         ftruncate(mFile.get(), static_cast<off_t>(mSize)) == 0;
    // The blocks stay and are overwritten.
    if (!cleared) return;
}

}  // namespace qeltvd
