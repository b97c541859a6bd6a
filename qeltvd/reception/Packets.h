#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace qeltvd::stream {

constexpr size_t kPacketSize = 188;
constexpr uint8_t kSyncByte = 0x47;
constexpr uint16_t kPids = 0x2000;
constexpr uint16_t kNullPid = 0x1fff;

/** Whole packets one after the other, valid until the source reads again. */
struct Batch {
    uint8_t* packets = nullptr;
    size_t count = 0;
    /** The packets do not continue those before: the file begins anew, or packets are lost. */
    bool discontinuity = false;
};

inline uint16_t pidOf(const uint8_t* packet) {
    return static_cast<uint16_t>((packet[1] & 0x1f) << 8 | packet[2]);
}

/** The clock reference of a packet that has one, in ticks of 27 MHz. */
inline std::optional<uint64_t> clockReference(const uint8_t* packet) {
    constexpr uint8_t kSize = 7;
    const bool present = (packet[3] & 0x20) != 0 && packet[4] >= kSize && (packet[5] & 0x10) != 0;
    if (!present) return std::nullopt;
    const uint64_t base = static_cast<uint64_t>(packet[6]) << 25 | uint64_t{packet[7]} << 17 |
                          uint64_t{packet[8]} << 9 | uint64_t{packet[9]} << 1 | packet[10] >> 7;
    return base * 300 + (static_cast<uint64_t>(packet[10] & 1) << 8 | packet[11]);
}

/** Adds up the time between clock references, across the wrap of their 33 bits. */
class ElapsedClock {
  public:
    static constexpr uint64_t kFrequency = 27000000;
    /** A longer step is a clock that was set, and counts for nothing. */
    static constexpr uint64_t kLongestStep = kFrequency * 2;

    /** @return whether the reference continues the one before */
    bool add(uint64_t reference) {
        constexpr uint64_t kWrap = (uint64_t{1} << 33) * 300;
        const uint64_t step = (reference + kWrap - mLast % kWrap) % kWrap;
        const bool continues = mStarted && step <= kLongestStep;
        if (continues) mElapsed += step;
        mStarted = true;
        mLast = reference;
        return continues;
    }
    /** The next reference continues nothing. */
    void interrupt() { mStarted = false; }
    /** Ticks since the first reference. */
    uint64_t elapsed() const { return mElapsed; }

  private:
    bool mStarted = false;
    uint64_t mLast = 0;
    uint64_t mElapsed = 0;
};

/** The time that goes by in packets: by the references of the first PID that has some. */
class PacketClock {
  public:
    /** @return whether the packet has a reference of the clock */
    bool push(const uint8_t* packet) {
        const auto reference = clockReference(packet);
        if (!reference) return false;
        const uint16_t pid = pidOf(packet);
        if (!mPid) mPid = pid;
        if (pid != *mPid) {
            // The clock has moved to another PID, or two services have each one.
            constexpr uint32_t kMoved = 50;
            if (++mOthers < kMoved) return false;
            mPid = pid;
            mElapsed.interrupt();
        }
        mOthers = 0;
        mElapsed.add(*reference);
        return true;
    }
    /** Whether there was a reference. */
    bool running() const { return mPid.has_value(); }
    std::chrono::milliseconds elapsed() const {
        constexpr uint64_t kTicks = ElapsedClock::kFrequency / 1000;
        return std::chrono::milliseconds(mElapsed.elapsed() / kTicks);
    }

  private:
    std::optional<uint16_t> mPid;
    /** References of other PIDs since the last one of this PID. */
    uint32_t mOthers = 0;
    ElapsedClock mElapsed;
};

}  // namespace qeltvd::stream
