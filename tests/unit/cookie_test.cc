#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "TvApiDeathRecipient.h"
#include "hw_qeltvapi_common.h"
#include "log_capture.h"

using namespace wire;

namespace {

constexpr char kTag[] = "hw_qeltvapi_common";

TEST(DeathRecipient, StartsAReconnectionForItsOwnCookieOnly) {
    captureLog();
    const auto recipient = TvApiDeathRecipient::getInstance();
    EXPECT_EQ(recipient, TvApiDeathRecipient::getInstance());
    takeLog();
    // Equal in the low 32 bits only, and no cookie at all.
    recipient->serviceDied(12345 + (uint64_t{1} << 32), nullptr);
    recipient->serviceDied(0, nullptr);
    recipient->serviceDied(12345, nullptr);
    EXPECT_TRUE(waitForLog(kTag, "<reconnectService:60> ."));
    // A thread that should not be there has had all the time that the right one had, and more.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    const auto lines = takeLog();
    ASSERT_EQ(4u, lines.size());
    EXPECT_EQ("<serviceDied:46> serviceDied 4294979641", lines[0].text);
    EXPECT_EQ("<serviceDied:46> serviceDied 0", lines[1].text);
    EXPECT_EQ("<serviceDied:46> serviceDied 12345", lines[2].text);
    EXPECT_EQ("<reconnectService:60> .", lines[3].text);
    EXPECT_EQ(kTag, lines[0].tag);
}

}  // namespace
