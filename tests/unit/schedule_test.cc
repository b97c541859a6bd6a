#include "Schedule.h"

#include <gtest/gtest.h>

#include <map>

using namespace qeltvd;
using Booking = Schedule::Booking;

namespace {

constexpr int64_t kDay = Schedule::kSecondsOfDay;
/** A Saturday, 20:15 UTC. */
constexpr int64_t kEvening = 1795378500;
constexpr uint32_t kHour = 3600;

Booking booking(uint32_t number, int64_t start, uint32_t seconds = kHour,
                QELTV_BOOKING_REPEAT repeat = QELTV_BOOKING_ONCE,
                QELTV_BOOKING_STATE state = QELTV_BOOKING_WAITS) {
    Booking booking{};
    booking.booking = number;
    booking.channel = number;
    booking.start = start;
    booking.seconds = seconds;
    booking.repeat = repeat;
    booking.state = state;
    return booking;
}

std::vector<uint32_t> numbersOf(const std::vector<Booking>& bookings) {
    std::vector<uint32_t> numbers;
    for (const Booking& each : bookings) numbers.push_back(each.booking);
    return numbers;
}

TEST(Schedule, WhatWaitsIsDueFromItsStartOnInTheOrderOfStarts) {
    const Schedule schedule(
            {booking(1, kEvening + 2), booking(2, kEvening + 1), booking(3, kEvening + 1),
             booking(4, kEvening, kHour, QELTV_BOOKING_ONCE, QELTV_BOOKING_RUNS),
             booking(5, kEvening, kHour, QELTV_BOOKING_ONCE, QELTV_BOOKING_FAILED)});
    EXPECT_EQ(kEvening + 1, schedule.nextStart());
    EXPECT_TRUE(schedule.due(kEvening).empty());
    EXPECT_EQ((std::vector<uint32_t>{2, 3}), numbersOf(schedule.due(kEvening + 1)));
    EXPECT_EQ((std::vector<uint32_t>{2, 3, 1}), numbersOf(schedule.due(kEvening + kDay)));
    EXPECT_EQ(std::nullopt, Schedule({}).nextStart());
}

TEST(Schedule, NeighboursDoNotOverlapAndRepetitionsDo) {
    const Booking once = booking(1, kEvening);
    EXPECT_FALSE(Schedule::overlap(once, booking(2, kEvening + kHour)));
    EXPECT_FALSE(Schedule::overlap(once, booking(2, kEvening - kHour)));
    EXPECT_TRUE(Schedule::overlap(once, booking(2, kEvening + kHour - 1)));
    EXPECT_TRUE(Schedule::overlap(once, booking(2, kEvening - kHour + 1)));

    const Booking daily = booking(2, kEvening - 3 * kDay, kHour, QELTV_BOOKING_DAILY);
    EXPECT_TRUE(Schedule::overlap(once, daily));
    EXPECT_TRUE(Schedule::overlap(daily, once));
    const Booking weekly = booking(3, kEvening - 7 * kDay, kHour, QELTV_BOOKING_WEEKLY);
    EXPECT_TRUE(Schedule::overlap(once, weekly));
    EXPECT_FALSE(Schedule::overlap(booking(1, kEvening + kDay), weekly));
    // Two weeks are compared.
    EXPECT_TRUE(Schedule::overlap(once, booking(2, kEvening - 14 * kDay, 1, QELTV_BOOKING_DAILY)));
    EXPECT_FALSE(Schedule::overlap(once, booking(2, kEvening - 15 * kDay, 1, QELTV_BOOKING_DAILY)));
}

TEST(Schedule, OnlyWhatWaitsOrRunsOnAnotherStreamConflicts) {
    const std::map<uint32_t, uint32_t> streams{{1, 100}, {2, 100}, {3, 200}, {4, 200}, {5, 200}};
    const auto streamOf = [&](uint32_t channel) -> std::optional<uint32_t> {
        const auto found = streams.find(channel);
        return found != streams.end() ? std::optional(found->second) : std::nullopt;
    };
    const Booking wanted = booking(1, kEvening);
    const auto conflicts = [&](const Booking& other) {
        return Schedule({wanted, other}).conflicts(wanted, 100, streamOf);
    };
    EXPECT_FALSE(conflicts(booking(2, kEvening))) << "same stream";
    EXPECT_TRUE(conflicts(booking(3, kEvening)));
    EXPECT_TRUE(conflicts(booking(4, kEvening, kHour, QELTV_BOOKING_ONCE, QELTV_BOOKING_RUNS)));
    EXPECT_FALSE(conflicts(booking(5, kEvening, kHour, QELTV_BOOKING_ONCE, QELTV_BOOKING_FAILED)));
    EXPECT_FALSE(conflicts(booking(9, kEvening))) << "no such channel";
    EXPECT_FALSE(Schedule({booking(3, kEvening)}).conflicts(booking(3, kEvening), 100, streamOf))
            << "a booking that is changed is not its own conflict";
}

TEST(Schedule, ARepeatedBookingWaitsForItsNextStart) {
    const int64_t late = kEvening + 3 * kDay + 5;
    const auto next = Schedule::afterRecording(
            booking(1, kEvening, kHour, QELTV_BOOKING_DAILY, QELTV_BOOKING_RUNS),
            QELTV_RECORDING_ERROR_WRITE, late);
    ASSERT_TRUE(next);
    EXPECT_EQ(kEvening + 4 * kDay, next->start);
    EXPECT_EQ(uint32_t{QELTV_BOOKING_WAITS}, next->state);
    EXPECT_EQ(uint32_t{QELTV_RECORDING_ERROR_WRITE}, next->error);

    const Booking missed =
            Schedule::afterMissing(booking(1, kEvening, kHour, QELTV_BOOKING_WEEKLY), late);
    EXPECT_EQ(kEvening + 7 * kDay, missed.start);
    EXPECT_EQ(uint32_t{QELTV_BOOKING_WAITS}, missed.state);
}

TEST(Schedule, ASingleBookingGoesOrStaysWithItsError) {
    const Booking runs = booking(1, kEvening, kHour, QELTV_BOOKING_ONCE, QELTV_BOOKING_RUNS);
    const int64_t end = kEvening + kHour;
    EXPECT_FALSE(Schedule::afterRecording(runs, QELTV_RECORDING_ERROR_NONE, end));
    const auto failed = Schedule::afterRecording(runs, QELTV_RECORDING_ERROR_DISK_FULL, end);
    ASSERT_TRUE(failed);
    EXPECT_EQ(uint32_t{QELTV_BOOKING_FAILED}, failed->state);
    EXPECT_EQ(uint32_t{QELTV_RECORDING_ERROR_DISK_FULL}, failed->error);
    EXPECT_EQ(kEvening, failed->start);

    EXPECT_EQ(1, Schedule::secondsLeft(runs, end - 1));
    EXPECT_EQ(0, Schedule::secondsLeft(runs, end));
    const Booking missed = Schedule::afterMissing(booking(1, kEvening), end);
    EXPECT_EQ(uint32_t{QELTV_BOOKING_MISSED}, missed.state);
    EXPECT_EQ(kEvening, missed.start);
}

TEST(Schedule, RefusesWhatCannotBeRecorded) {
    const auto valid = [](const Booking& request) { return Schedule::isValid(request, kEvening); };
    EXPECT_TRUE(valid(booking(0, kEvening)));
    EXPECT_TRUE(valid(booking(0, kEvening - kHour + 1))) << "a second is left";
    EXPECT_FALSE(valid(booking(0, kEvening - kHour)));
    EXPECT_FALSE(valid(booking(0, kEvening, 0)));
    EXPECT_TRUE(valid(booking(0, kEvening, Schedule::kLongest, QELTV_BOOKING_DAILY)));
    EXPECT_FALSE(valid(booking(0, kEvening, Schedule::kLongest + 1)));
    EXPECT_FALSE(valid(booking(0, 0)));
    EXPECT_FALSE(valid(booking(0, INT64_MAX)));
    Booking unknown = booking(0, kEvening);
    unknown.repeat = QELTV_BOOKING_WEEKLY + 1;
    EXPECT_FALSE(valid(unknown));
    Booking fast = booking(0, kEvening);
    fast.rate = Schedule::kRateLimitKib + 1;
    EXPECT_FALSE(valid(fast));
}

}  // namespace
