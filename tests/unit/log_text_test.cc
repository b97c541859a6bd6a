#include "LogText.h"

#include <gtest/gtest.h>

#include <string>

using qeltvd::kLogTextLimit;
using qeltvd::logText;

namespace {

TEST(LogText, StaysOneLineThatCannotPassForAnother) {
    EXPECT_EQ("Küche 7", logText("Küche 7"));
    EXPECT_EQ("a\\x0aE/qeltvd: b\\x1b[2J\\x7f\\x00", logText({"a\nE/qeltvd: b\x1b[2J\x7f\0", 19}));
    EXPECT_EQ("\\\\x0a", logText("\\x0a")) << "no escape of the text itself";
    EXPECT_EQ("\\xc2\\x9b1m", logText("\xc2\x9b\x31m")) << "a control character of two bytes";
    EXPECT_EQ("\\x9b\\xff\\xc3", logText("\x9b\xff\xc3")) << "no UTF-8";
}

TEST(LogText, IsBoundedAndCutBeforeACharacter) {
    const std::string most(kLogTextLimit, 'x');
    EXPECT_EQ(most, logText(most));
    EXPECT_EQ(most + "... (" + std::to_string(kLogTextLimit + 1) + " bytes)", logText(most + "y"));
    const std::string less(kLogTextLimit - 1, 'x');
    EXPECT_EQ(less + "... (" + std::to_string(kLogTextLimit + 1) + " bytes)", logText(less + "ü"));
    EXPECT_LE(logText(std::string(1 << 20, '\x01')).size(), kLogTextLimit + 32);
}

}  // namespace
