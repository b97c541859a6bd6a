#include "Alarm.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>

#include "eventually.h"

using namespace qeltvd;
using namespace std::chrono_literals;

namespace {

TEST(Alarm, ATaskThatThrowsIsCalledAgainAndHoldsUpNoOther) {
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

TEST(Alarm, AllAreRungInTheOrderOfTheirTimesOnOneThread) {
    Timers timers;
    std::mutex lock;
    std::vector<int> order;
    std::set<std::thread::id> threads;
    const auto ring = [&](int number) {
        std::lock_guard<std::mutex> guard(lock);
        order.push_back(number);
        threads.insert(std::this_thread::get_id());
    };
    Alarm first(timers, "a test's alarm", [&] { ring(1); });
    Alarm second(timers, "a test's alarm", [&] { ring(2); });
    Alarm cleared(timers, "a test's alarm", [&] { ring(3); });
    const auto now = Alarm::Clock::now();
    cleared.set(now + 40ms);
    second.set(now + 60ms);
    first.set(now + 50ms);
    cleared.clear();
    EXPECT_TRUE(eventually([&] {
        std::lock_guard<std::mutex> guard(lock);
        return order.size() == 2;
    }));
    EXPECT_EQ((std::vector<int>{1, 2}), order);
    EXPECT_EQ(1u, threads.size());
}

TEST(Alarm, ItsEndWaitsForACallThatHasBegunAndNoneFollows) {
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
