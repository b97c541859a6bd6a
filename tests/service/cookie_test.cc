#include <gtest/gtest.h>
#include <stdlib.h>

#include "TvApiDeathRecipient.h"
#include "hw_qeltvapi_common.h"
#include "log_capture.h"

using namespace wire;

namespace {

TEST(DeathRecipient, OnlyItsOwnCookieStartsAReconnection) {
    captureLog();
    const auto recipient = TvApiDeathRecipient::getInstance();
    EXPECT_EQ(recipient, TvApiDeathRecipient::getInstance());
    takeLog();
    // Equal in the low 32 bits only, and no cookie at all.
    recipient->serviceDied(12345 + (uint64_t{1} << 32), nullptr);
    recipient->serviceDied(0, nullptr);
    const auto lines = takeLog();
    ASSERT_EQ(2u, lines.size());
    EXPECT_EQ("<serviceDied:46> serviceDied 4294979641", lines[0].text);
    EXPECT_EQ("<serviceDied:46> serviceDied 0", lines[1].text);
    EXPECT_EQ("hw_qeltvapi_common", lines[0].tag);

    recipient->serviceDied(12345, nullptr);
    EXPECT_TRUE(waitForLog("hw_qeltvapi_common", "<reconnectService:60> ."));
}

}  // namespace
