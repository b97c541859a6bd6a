#include "DigitEntry.h"

#include <gtest/gtest.h>

using namespace qeltvd;

namespace {

const DigitEntry::Clock::time_point kStart{};

/** Types keys; the number of those that are taken. */
size_t type(DigitEntry& entry, const std::string& keys) {
    size_t taken = 0;
    for (const char key : keys) {
        if (entry.add(key, kStart)) ++taken;
    }
    return taken;
}

TEST(DigitEntry, FourDigitsOrThreeBehindThePointAreComplete) {
    const struct {
        const char* keys;
        bool complete;
        uint32_t major, minor, word;
    } kCases[] = {
            {"7", false, 7, 0, 7},
            {"007", false, 7, 0, 7},
            {"1234", true, 1234, 0, 1234},
            {"7.", false, 7, 0, 7},
            {"7.1", false, 7, 1, 7 << 16 | 1},
            {"12.345", true, 12, 345, 12 << 16 | 345},
            {"7.000", true, 7, 0, 7},
    };
    for (const auto& each : kCases) {
        SCOPED_TRACE(each.keys);
        DigitEntry entry;
        EXPECT_EQ(std::string(each.keys).size(), type(entry, each.keys));
        EXPECT_EQ(each.complete, entry.complete());
        const DigitEntry::Number number = entry.number();
        EXPECT_EQ(each.major, number.major);
        EXPECT_EQ(each.minor, number.minor);
        EXPECT_EQ(each.word, number.word());
        EXPECT_EQ(std::string(each.keys).size(), number.keys);
    }
}

TEST(DigitEntry, RefusesAPointInFrontAndASecondOne) {
    DigitEntry entry;
    EXPECT_EQ(0u, type(entry, "."));
    EXPECT_FALSE(entry.used());
    EXPECT_FALSE(entry.due());
    EXPECT_EQ(3u, type(entry, "7..1"));
    EXPECT_EQ("7.1", entry.number().text());
}

TEST(DigitEntry, EveryKeyPutsOffTheEndAndTakingTheNumberLeavesNone) {
    DigitEntry entry;
    ASSERT_TRUE(entry.add('1', kStart));
    ASSERT_TRUE(entry.add('2', kStart + DigitEntry::kTimeout / 2));
    EXPECT_EQ(kStart + DigitEntry::kTimeout / 2 + DigitEntry::kTimeout, entry.due());
    const auto number = entry.take();
    ASSERT_TRUE(number);
    EXPECT_EQ("12", number->text());
    EXPECT_FALSE(entry.due());
    EXPECT_FALSE(entry.take());
    EXPECT_TRUE(entry.used()) << "until it is reset";
    ASSERT_TRUE(entry.add('3', kStart));
    EXPECT_EQ("3", entry.number().text());
    entry.reset();
    EXPECT_FALSE(entry.used());
    EXPECT_FALSE(entry.take());
}

}  // namespace
