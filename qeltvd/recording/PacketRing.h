#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>

#include "Files.h"
#include "Packets.h"

namespace qeltvd {

/**
 * A file of a fixed size with the newest packets of a stream, and an index of their times. A place
 * is a number of bytes since the start of the stream, a time what the clock references of the
 * packets say since then. One thread writes; all other functions may be called on any thread.
 */
class PacketRing {
  public:
    using Time = std::chrono::milliseconds;

    /**
     * Starts without packets.
     *
     * @param file a file of this size, open for reading and writing
     * @param size bytes; the ring takes the whole packets of it
     */
    PacketRing(Descriptor file, int64_t size);

    /**
     * Writes packets, over the oldest ones if the file is full.
     *
     * @param size    a multiple of stream::kPacketSize, at most that of the file
     * @param arrived since the start; the time of packets without any clock reference
     * @return 0 or the errno of the failure, after which none of these packets are held
     */
    [[nodiscard]] int write(const uint8_t* packets, size_t size, Time arrived);
    /**
     * Reads packets that are held.
     *
     * @return bytes read, a multiple of stream::kPacketSize; 0 if the place is not held any more
     *         or not yet
     */
    size_t read(int64_t place, uint8_t* packets, size_t size) const;

    /** The place of a time; of the oldest or the end if the time is not held. */
    int64_t placeOf(Time time) const;
    /** The time of the oldest packet. */
    Time oldest() const;
    Time newest() const;
    /** The place behind the newest packet. */
    int64_t end() const;
    /** Whether packets have been overwritten. */
    bool full() const;

    /** Forgets all packets and frees their blocks on the disk; times begin anew. */
    void clear();

  private:
    /** A place whose time is known. */
    struct Mark {
        int64_t place;
        Time time;
    };

    /** Follows the clock of packets that have been written. */
    void follow(const uint8_t* packets, size_t size, Time arrived);
    int64_t placeAt(Time time) const;
    Time timeAt(int64_t place) const;
    [[nodiscard]] bool transfer(int64_t place, size_t size, const uint8_t* from, uint8_t* to) const;

    const Descriptor mFile;
    const int64_t mSize;
    const int64_t mCapacity;
    /** Between marks, so that their number has a bound. */
    const int64_t mSpacing;

    mutable std::mutex mLock;
    // Guarded by mLock, and changed by the thread that writes only.
    /** Where the stream begins, and what of it is held. */
    int64_t mStart = 0;
    int64_t mBegin = 0;
    int64_t mEnd = 0;
    /** The first one is at or before the oldest packet. */
    std::deque<Mark> mMarks;
    Time mNewest{0};
    // Of the thread that writes.
    stream::PacketClock mClock;
    /** The time when the clock started. */
    Time mClockStart{0};
    std::optional<Time> mFirstArrived;
};

}  // namespace qeltvd
