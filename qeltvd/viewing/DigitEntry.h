#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace qeltvd {

/** A channel number that is typed on the remote control. Used under its owner's lock. */
class DigitEntry {
  public:
    using Clock = std::chrono::steady_clock;

    /** After the last key the number is complete. */
    static constexpr std::chrono::milliseconds kTimeout{2000};
    /** Digits that complete a number of one part, and the second part of a number of two. */
    static constexpr size_t kDigits = 4;
    static constexpr size_t kMinorDigits = 3;
    static constexpr char kPoint = '.';

    /** A number of one part, or of two if minor is not 0. */
    struct Number {
        uint32_t major;
        uint32_t minor;
        /** Keys that make it. */
        size_t keys;

        /** As notifications have it: the major number in the high half of a number of two parts. */
        uint32_t word() const { return minor != 0 ? major << 16 | minor : major; }
        std::string text() const {
            return std::to_string(major) + (minor != 0 ? kPoint + std::to_string(minor) : "");
        }
    };

    /** Takes a digit or the point. False for a point that cannot stand there. */
    [[nodiscard]] bool add(char key, Clock::time_point now);
    /** Whether no further key can follow. */
    bool complete() const;
    /** When the number is complete by itself; nothing while none is typed. */
    std::optional<Clock::time_point> due() const { return mDue; }
    /** The number so far. */
    Number number() const;
    /** The keys so far. */
    const std::string& keys() const { return mKeys; }
    /** Ends the entry with its number; nothing when none is typed. */
    std::optional<Number> take();

    /** Whether keys have been taken since the last reset. */
    bool used() const { return mUsed; }
    /** Drops the number. */
    void reset();

  private:
    std::string mKeys;
    std::optional<Clock::time_point> mDue;
    bool mUsed = false;
};

}  // namespace qeltvd
