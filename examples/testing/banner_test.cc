#include <gtest/gtest.h>
#include <qeltvapi/testing/testing.h>

#include "banner.h"

using namespace qeltvapi::testing;

namespace {

std::string shown() {
    char text[64];
    banner_contrast(text, sizeof(text));
    return text;
}

TEST(Banner, ShowsWhatTheTelevisionAnswers) {
    Television tv;
    tv.when("IQelTvApiConfig", "get_value").with(0u, "picture.contrast").answers(42, 0);
    EXPECT_EQ("contrast 42", shown());
}

TEST(Banner, DistinguishesARefusalFromAMissingTelevision) {
    Television tv;
    tv.when("IQelTvApiConfig", "get_value").refuses(-5).losesReply();
    EXPECT_EQ("contrast locked (-5)", shown());
    EXPECT_EQ("no television", shown());
}

TEST(Banner, StepsUpToAHundred) {
    Television tv;
    tv.when("IQelTvApiConfig", "get_value").answers(99, 0).answers(100, 0);
    tv.when("IQelTvApiConfig", "set_value").answers(0);
    EXPECT_EQ(0, banner_contrast_up());
    EXPECT_EQ(0, banner_contrast_up());
    const auto calls = tv.calls("IQelTvApiConfig", "set_value");
    ASSERT_EQ(1u, calls.size());
    EXPECT_EQ(100, calls[0]["value"].number()) << calls[0];
}

}  // namespace
