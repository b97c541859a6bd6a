#include "Schedule.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

namespace qeltvd {

namespace {

constexpr int64_t kDaysOfWeek = 7;
/** How far repetitions are compared. */
constexpr int64_t kDaysCompared = 2 * kDaysOfWeek;

/** Seconds between the starts of a booking; 0 for one that is not repeated. */
int64_t periodOf(const Schedule::Booking& booking) {
    switch (booking.repeat) {
        case QELTV_BOOKING_DAILY:
            return Schedule::kSecondsOfDay;
        case QELTV_BOOKING_WEEKLY:
            return kDaysOfWeek * Schedule::kSecondsOfDay;
        default:
            return 0;
    }
}

std::vector<int64_t> startsOf(const Schedule::Booking& booking) {
    std::vector<int64_t> starts{booking.start};
    const int64_t period = periodOf(booking);
    for (int64_t later = period; later != 0 && later <= kDaysCompared * Schedule::kSecondsOfDay;
         later += period) {
        starts.push_back(booking.start + later);
    }
    return starts;
}

void moveToNextStart(Schedule::Booking& booking, int64_t now) {
    while (booking.start <= now) booking.start += periodOf(booking);
    booking.state = QELTV_BOOKING_WAITS;
}

}  // namespace

Schedule::Schedule(std::vector<Booking> bookings) : mBookings(std::move(bookings)) {
    std::sort(mBookings.begin(), mBookings.end(), [](const Booking& a, const Booking& b) {
        return std::tie(a.start, a.booking) < std::tie(b.start, b.booking);
    });
}

std::vector<Schedule::Booking> Schedule::due(int64_t now) const {
    std::vector<Booking> due;
    for (const Booking& booking : mBookings) {
        if (booking.state == QELTV_BOOKING_WAITS && booking.start <= now) due.push_back(booking);
    }
    return due;
}

std::optional<int64_t> Schedule::nextStart() const {
    for (const Booking& booking : mBookings) {
        if (booking.state == QELTV_BOOKING_WAITS) return booking.start;
    }
    return std::nullopt;
}

bool Schedule::conflicts(const Booking& booking, uint32_t stream,
                         const StreamLookup& streamOf) const {
    return std::any_of(mBookings.begin(), mBookings.end(), [&](const Booking& other) {
        if (other.booking == booking.booking ||
            (other.state != QELTV_BOOKING_WAITS && other.state != QELTV_BOOKING_RUNS) ||
            !overlap(booking, other)) {
            return false;
        }
        const auto otherStream = streamOf(other.channel);
        return otherStream && *otherStream != stream;
    });
}

bool Schedule::isValid(const Booking& request, int64_t now) {
    const int64_t period = periodOf(request);
    return request.seconds != 0 && request.seconds <= kLongest &&
           request.repeat <= QELTV_BOOKING_WEEKLY && request.rate <= kRateLimitKib &&
           request.start > 0 && request.start <= std::numeric_limits<uint32_t>::max() &&
           (period == 0 || request.seconds <= period) && secondsLeft(request, now) > 0;
}

int64_t Schedule::secondsLeft(const Booking& booking, int64_t now) {
    return booking.start + booking.seconds - now;
}

bool Schedule::overlap(const Booking& a, const Booking& b) {
    for (const int64_t startA : startsOf(a)) {
        for (const int64_t startB : startsOf(b)) {
            if (startA < startB + b.seconds && startB < startA + a.seconds) return true;
        }
    }
    return false;
}

std::optional<Schedule::Booking> Schedule::afterRecording(Booking booking, int32_t error,
                                                          int64_t now) {
    booking.error = static_cast<uint32_t>(error);
    if (periodOf(booking) != 0) {
        moveToNextStart(booking, now);
        return booking;
    }
    if (error == QELTV_RECORDING_ERROR_NONE) return std::nullopt;
    booking.state = QELTV_BOOKING_FAILED;
    return booking;
}

Schedule::Booking Schedule::afterMissing(Booking booking, int64_t now) {
    if (periodOf(booking) != 0) {
        booking.error = QELTV_RECORDING_ERROR_NONE;
        moveToNextStart(booking, now);
    } else {
        booking.state = QELTV_BOOKING_MISSED;
    }
    return booking;
}

}  // namespace qeltvd
