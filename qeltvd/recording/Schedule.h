#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "layouts/record.h"

namespace qeltvd {

/** The bookings at a moment: which one is due, and which ones cannot be received together. */
class Schedule {
  public:
    using Booking = QELTV_SCHEDULE_RECORD_T;
    /** The stream that a channel is received with; nothing for an unknown channel. */
    using StreamLookup = std::function<std::optional<uint32_t>(uint32_t channel)>;

    static constexpr int64_t kSecondsOfDay = 24 * 3600;
    /** The longest recording that can be booked. */
    static constexpr uint32_t kLongest = kSecondsOfDay;
    /** The highest data rate that can be set, in KiB per second. */
    static constexpr uint32_t kRateLimitKib = 1 << 20;

    explicit Schedule(std::vector<Booking> bookings);

    /** Bookings that wait and whose start has come, in the order of their starts. */
    std::vector<Booking> due(int64_t now) const;
    /** The earliest start of those that wait. */
    std::optional<int64_t> nextStart() const;
    /** Whether a booking overlaps another one, waiting or running, that needs another stream. */
    bool conflicts(const Booking& booking, uint32_t stream, const StreamLookup& streamOf) const;

    /** Whether a request can be booked. */
    static bool isValid(const Booking& request, int64_t now);
    /** Seconds of a booking that are still to come; 0 or less for none. */
    static int64_t secondsLeft(const Booking& booking, int64_t now);
    /** Whether two bookings record at the same time, repetitions within two weeks included. */
    static bool overlap(const Booking& a, const Booking& b);
    /**
     * A booking after its recording: one that repeats waits for its next start, a single one
     * stays where it failed.
     *
     * @param error a QELTV_RECORDING_ERROR
     * @return nothing for a booking that is done
     */
    static std::optional<Booking> afterRecording(Booking booking, int32_t error, int64_t now);
    /** A booking that was not recorded because its time has passed. */
    static Booking afterMissing(Booking booking, int64_t now);

  private:
    std::vector<Booking> mBookings;
};

}  // namespace qeltvd
