#include "Alarm.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include "eventually.h"
#include "inbox.h"

using namespace qeltvd;
using namespace std::chrono_literals;

namespace {

TEST(Alarm, CallsATaskAgainWhenItThrowsAndHoldsUpNoOther) {
    Timers timers;
    std::atomic<int> thrown{0}, rung{0};
    Alarm throwing(timers, "a test's alarm", [&] {
        if (++thrown == 1) throw std::runtime_error("thrown by a test");
        if (thrown == 2) throw 7;
    });
    Alarm good(timers, "a test's alarm", [&] { ++rung; });
    throwing.in(0ms);
    EXPECT_TRUE(eventually([&] { return thrown == 1; }));
    good.in(0ms);
    EXPECT_TRUE(eventually([&] { return rung == 1; }));
    EXPECT_TRUE(eventually([&] { return thrown == 3; }));
}

TEST(Alarm, RingsInTheOrderOfTimesOnOneThread) {
    Timers timers;
    struct Ring {
        int number;
        std::thread::id thread;
    };
    Inbox<Ring> rings;
    const auto ring = [&](int number) { rings.put({number, std::this_thread::get_id()}); };
    Alarm first(timers, "a test's alarm", [&] { ring(1); });
    Alarm second(timers, "a test's alarm", [&] { ring(2); });
    Alarm cleared(timers, "a test's alarm", [&] { ring(3); });
    const auto now = Alarm::Clock::now();
    cleared.set(now + 40ms);
    second.set(now + 60ms);
    first.set(now + 50ms);
    cleared.clear();
    ASSERT_TRUE(rings.waitForCount(2));
    const std::vector<Ring> rung = rings.takeAll();
    ASSERT_EQ(2u, rung.size());
    EXPECT_EQ(1, rung[0].number);
    EXPECT_EQ(2, rung[1].number);
    EXPECT_EQ(rung[0].thread, rung[1].thread);
}

TEST(Alarm, WaitsForACallThatHasBegunWhenItEnds) {
    Timers timers;
    std::atomic<bool> begun{false}, ended{false};
    {
        Alarm alarm(timers, "a test's alarm", [&] {
            begun = true;
            std::this_thread::sleep_for(50ms);
            ended = true;
        });
        alarm.in(0ms);
        ASSERT_TRUE(eventually([&] { return begun.load(); }));
        alarm.in(0ms);
    }
    EXPECT_TRUE(ended);
    begun = false;
    std::atomic<bool> later{false};
    Alarm other(timers, "a test's alarm", [&] { later = true; });
    other.in(0ms);
    EXPECT_TRUE(eventually([&] { return later.load(); }));
    EXPECT_FALSE(begun);
}

}  // namespace
