#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_scan.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/scan.h"
#include "with_television.h"

using namespace wire;

namespace {

Inbox<Notified> sScan;

int onScan(int32_t type, uintptr_t, uintptr_t a1, uintptr_t a2, uintptr_t a3, uintptr_t a4) {
    sScan.put({type, {a1, a2, a3, a4}});
    return 0;
}

uint64_t frequency(uint64_t kHz) {
    return QELTV_SCAN_FREQUENCY | kHz << QELTV_SCAN_FREQUENCY_SHIFT;
}

class ChannelScan : public WithTelevision {
  protected:
    void SetUp() override {
        WithTelevision::SetUp();
        a_qeltvapi_scan_reg_callback(onScan);
        sScan.clear();
    }

    static std::vector<int32_t> exchange(std::vector<int32_t> data, int code,
                                         int (*function)(int32_t*, uint32_t)) {
        const auto count = static_cast<uint32_t>(data.size());
        data.resize(QELTV_SCAN_EXCHANGE_CAPACITY);
        EXPECT_EQ(code, function(data.data(), count));
        return data;
    }
};

TEST_F(ChannelScan, WalksTheTranspondersOfTheRegionAndAddsTheirServices) {
    ASSERT_EQ(0, a_qeltvapi_config_set_str_value("channels.region", "dvb-c/at-Innsbruck"));
    const auto count = exchange({QELTV_EXCHANGE_COUNT}, 0, a_scan_dvbc_exchange_data)[1];
    ASSERT_GT(count, 3);
    ASSERT_EQ(0, a_qeltvapi_start_scan(QELTV_SCAN_FULL, 0));
    EXPECT_EQ(1, a_qeltvapi_is_scan_active());
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_start_scan(QELTV_SCAN_FULL, 0)) << "one at a time";

    const auto started = sScan.take();
    ASSERT_TRUE(started);
    EXPECT_EQ(QELTV_SCAN_STARTED, started->type);
    EXPECT_EQ(static_cast<uint64_t>(count), started->values[0]);
    uint64_t services = 0;
    for (int32_t i = 0; i < count; ++i) {
        const auto progress = sScan.take();
        ASSERT_TRUE(progress);
        ASSERT_EQ(QELTV_SCAN_PROGRESS, progress->type);
        EXPECT_EQ(static_cast<uint64_t>((i + 1) * 100 / count), progress->values[0]);
        const auto transponder =
                exchange({QELTV_EXCHANGE_TRANSPONDER, i}, 0, a_scan_dvbc_exchange_data);
        EXPECT_EQ(static_cast<uint64_t>(transponder[2]), progress->values[1]);
        EXPECT_GT(progress->values[2] + progress->values[3], services);
        services = progress->values[2] + progress->values[3];
    }
    const auto complete = sScan.take();
    ASSERT_TRUE(complete);
    ASSERT_EQ(QELTV_SCAN_COMPLETE, complete->type);
    EXPECT_EQ(services, complete->values[0] + complete->values[1]);
    EXPECT_EQ(0, a_qeltvapi_is_scan_active());
    // Data services count too, so there may be more than the two kinds.
    EXPECT_LE(services, static_cast<uint64_t>(a_qeltvapi_channellist_get_number_by_mask(2, 0, 0)));

    // Once more: all of it is known.
    ASSERT_EQ(0, a_qeltvapi_start_scan(QELTV_SCAN_CABLE, 1));
    const auto again =
            sScan.takeUntil([](const Notified& t) { return t.type == QELTV_SCAN_COMPLETE; });
    ASSERT_TRUE(again);
    EXPECT_EQ(services, again->values[0] + again->values[1]);
    EXPECT_EQ(0u, again->values[2]);
    EXPECT_EQ(0u, again->values[3]);
}

TEST_F(ChannelScan, EndsWhenItIsCancelledAndCanBeStartedAtOnce) {
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_cancel_scan()) << "nothing runs";
    ASSERT_EQ(0, a_qeltvapi_start_scan(QELTV_SCAN_FULL, 1));
    const auto first =
            sScan.takeUntil([](const Notified& t) { return t.type == QELTV_SCAN_PROGRESS; });
    ASSERT_TRUE(first);
    ASSERT_LT(first->values[0], 100u);
    ASSERT_EQ(0, a_qeltvapi_cancel_scan());
    EXPECT_EQ(0, a_qeltvapi_is_scan_active());
    ASSERT_EQ(0, a_qeltvapi_start_scan(frequency(506000), 0));
    ASSERT_TRUE(sScan.takeUntil([](const Notified& t) { return t.type == QELTV_SCAN_CANCELLED; }));
    const auto done =
            sScan.takeUntil([](const Notified& t) { return t.type == QELTV_SCAN_COMPLETE; });
    ASSERT_TRUE(done);
    EXPECT_GT(done->values[0], 0u);
    EXPECT_EQ(0u, done->values[3]) << "one that did not go through all removes nothing";
}

TEST_F(ChannelScan, RefusesWhatItCannotDo) {
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_start_scan(99, 0));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_start_scan(QELTV_SCAN_FULL | 1ull << 32, 0));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_start_scan(frequency(1), 0));
    const QELTVAPI_ATSC_SCAN_PARAM_T backwards{5, 4, 0, 0};
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_set_atsc_scan_param(0, &backwards));
    const QELTVAPI_NTSC_SCAN_PARAM_T ntsc{0, 1};
    EXPECT_EQ(QELTV_UNSUPPORTED, a_qeltvapi_set_ntsc_scan_param(0, &ntsc));
    EXPECT_EQ(9, exchange({9, 8, 7}, QELTV_BAD_VALUE, a_scan_dvbt_exchange_data)[0]);
    EXPECT_EQ(QELTV_EXCHANGE_COUNT,
              exchange({QELTV_EXCHANGE_COUNT}, QELTV_REFUSED, a_qeltvapi_atsc_exchange_data)[0]);
    exchange({}, QELTV_BAD_VALUE, a_scan_ce_exchange_data);
    exchange({QELTV_EXCHANGE_COUNT}, QELTV_UNSUPPORTED, a_scan_dtmb_exchange_data);
    EXPECT_EQ(QELTV_MARKET_EUROPE, a_qeltvapi_get_market_region());

    // A range of two transponders holds for one scan.
    EXPECT_EQ(1, exchange({QELTV_EXCHANGE_RANGE, 0, 1}, 0, a_scan_dvbt_exchange_data)[2]);
    ASSERT_EQ(0, a_qeltvapi_start_scan(QELTV_SCAN_AIR, 0));
    const auto started =
            sScan.takeUntil([](const Notified& t) { return t.type == QELTV_SCAN_STARTED; });
    ASSERT_TRUE(started);
    EXPECT_EQ(2u, started->values[0]);
    ASSERT_TRUE(sScan.takeUntil([](const Notified& t) { return t.type == QELTV_SCAN_COMPLETE; }));

    char text[256] = "";
    EXPECT_EQ(0u, a_qeltvapi_get_user_message(text, 13));
    EXPECT_STREQ("Scan complete", text) << "no more than there is room";
    char region[64] = "";
    EXPECT_EQ(0, a_qeltvapi_scan_dvbc_get_str_data(QELTV_SCAN_TEXT_COUNTRY, region, 63));
    EXPECT_STREQ("DEU", region);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_scan_dvbc_get_str_data(9, region, 63));
}

TEST_F(ChannelScan, TheToolPrintsPlainLinesIntoAPipe) {
    ASSERT_EQ(0, a_qeltvapi_config_set_str_value("channels.region", "dvb-t/de-Berlin"));
    const Ended ended = qeltvctl({"scan", "start"});
    EXPECT_EQ(0, ended.status) << ended.err;
    const std::regex line(R"( *\d+ %  +\d+\.\d{3} MHz  \d+ services)");
    std::istringstream out(ended.out);
    std::string each, last;
    size_t lines = 0;
    while (std::getline(out, each)) {
        if (std::regex_match(each, line)) ++lines;
        last = each;
    }
    EXPECT_GT(lines, 3u);
    EXPECT_TRUE(std::regex_match(
            last, std::regex(R"(complete: \d+ television, \d+ radio, \d+ new, \d+ removed)")))
            << last;
    EXPECT_EQ(1, qeltvctl({"scan", "cancel"}).status);
    const auto state = nlohmann::json::parse(qeltvctl({"scan", "status", "--json"}).out);
    EXPECT_FALSE(state.at("active"));
    EXPECT_EQ(lines, state.at("transponders"));
}

}  // namespace
