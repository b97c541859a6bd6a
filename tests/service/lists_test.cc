/** What goes from the channel data when parts of it are deleted, and who hears of it. */
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

#include "inbox.h"
#include "layouts/channel_records.h"
#include "layouts/codes.h"
#include "qeltvapi.h"
#include "with_television.h"

using namespace wire;

namespace {

constexpr uint32_t kAir = CHANNEL_LIST_AIR, kSatellite = CHANNEL_LIST_SATELLITE;

Inbox<Notified> sChannels;

int onChannels(int32_t type, uintptr_t, uintptr_t list, uintptr_t count, uintptr_t first,
               uintptr_t) {
    sChannels.put({type, {list, count, first}});
    return 0;
}

/** One television for all: the library stays with the channel list that it meets first. */
class Lists : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        television = new Daemon;
        television->start();
        a_qeltvapi_channellist_register_callback(onChannels);
        ASSERT_TRUE(joinTelevision());
    }
    static void TearDownTestSuite() { delete television; }

    void SetUp() override {
        // The lists as they leave the factory.
        const channel_request_t none{};
        const uint32_t zero = 0;
        ASSERT_EQ(0, a_qeltvapi_channellist_interface(CHANNEL_REQUEST_RELOAD, &none, 0, 0, &zero));
        sChannels.clear();
        ASSERT_GT(channels(kAir), 0u);
        ASSERT_GT(channels(kSatellite), 0u);
    }

    static uint32_t channels(uint32_t list, uint32_t mask = 0, uint32_t value = 0) {
        return static_cast<uint32_t>(a_qeltvapi_channellist_get_number_by_mask(list, mask, value));
    }
    static uint32_t streams(uint32_t list) {
        uint32_t count = 0xdead;
        EXPECT_EQ(0, a_qeltvapi_tsl_get_num_recs(list, &count));
        return count;
    }
    static uint32_t networks(uint32_t list) {
        uint32_t count = 0xdead;
        EXPECT_EQ(0, a_qeltvapi_nwl_get_num_recs(list, &count));
        return count;
    }
    static channel_record_t at(uint32_t list, uint32_t index) {
        channel_record_t record{};
        EXPECT_EQ(0, a_qeltvapi_channellist_get_svl_rec_by_index(list, 0, 0, index, &record));
        return record;
    }
    static bool notified(uint32_t list) {
        return sChannels.takeUntil([list](const Notified& t) { return t.values[0] == list; })
                .has_value();
    }

    static Daemon* television;
};

Daemon* Lists::television = nullptr;

TEST_F(Lists, ChannelsGoByTheirBroadcastAndTheirStreamsOnlyWhereAsked) {
    const uint32_t before = streams(kAir), satellite = channels(kSatellite);
    // Nothing here comes from an American transmitter.
    ASSERT_EQ(0, a_qeltvapi_channellist_delete_by_brdcst(kAir, CHANNEL_BROADCAST_ATSC));
    EXPECT_GT(channels(kAir), 0u);
    ASSERT_EQ(0, a_qeltvapi_channellist_delete_by_brdcst(kAir, CHANNEL_BROADCAST_DVB));
    EXPECT_TRUE(notified(kAir));
    EXPECT_EQ(0u, channels(kAir));
    EXPECT_EQ(before, streams(kAir)) << "the transponders stay";
    EXPECT_EQ(satellite, channels(kSatellite));

    ASSERT_EQ(0, a_qeltvapi_channellist_and_ts_del_by_brdcst(kSatellite, CHANNEL_BROADCAST_DVB));
    EXPECT_TRUE(notified(kSatellite));
    EXPECT_EQ(0u, channels(kSatellite));
    EXPECT_EQ(0u, streams(kSatellite));
}

TEST_F(Lists, WhatLiesOnAStreamGoesWithIt) {
    const channel_record_t first = at(kAir, 0);
    const uint32_t stream = first.tsl_record_id;
    std::set<uint32_t> others;
    for (uint32_t i = 0; i < channels(kAir); ++i) {
        if (at(kAir, i).tsl_record_id != stream) others.insert(at(kAir, i).record_id);
    }
    ASSERT_FALSE(others.empty());
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_tsl_del_rec(kAir, 0x7fff));
    ASSERT_EQ(0, a_qeltvapi_tsl_del_rec(kAir, stream));
    std::set<uint32_t> left;
    for (uint32_t i = 0; i < channels(kAir); ++i) left.insert(at(kAir, i).record_id);
    EXPECT_EQ(others, left);

    multiplex_record_t record{};
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_tsl_get_rec(kAir, stream, &record));
    ASSERT_EQ(0, a_qeltvapi_tsl_get_rec(kAir, at(kAir, 0).tsl_record_id, &record));
    record.frequency_low = 690000000;
    ASSERT_EQ(0, a_qeltvapi_tsl_update_rec(kAir, &record, 1));
    multiplex_record_t back{};
    ASSERT_EQ(0, a_qeltvapi_tsl_get_rec(kAir, record.record_id, &back));
    EXPECT_EQ(690000000u, back.frequency_low);

    ASSERT_EQ(0, a_qeltvapi_tsl_clean(kAir));
    EXPECT_EQ(0u, streams(kAir));
    EXPECT_EQ(0u, channels(kAir));
    EXPECT_GT(channels(kSatellite), 0u);
    EXPECT_EQ(channels(kSatellite) - 1,
              static_cast<uint32_t>(a_qeltvapi_channellist_max_channel_index()));
}

TEST_F(Lists, NetworksAreAddedFoundAndForgotten) {
    const uint32_t before = networks(kAir);
    network_record_t network{};
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_nwl_update_rec(kAir, &network, 1)) << "of no list";
    network.list = kAir;
    network.network_id = 0x2114;
    strcpy(network.name, "Northern network");
    ASSERT_EQ(0, a_qeltvapi_nwl_update_rec(kAir, &network, 1));
    EXPECT_EQ(before + 1, networks(kAir));
    uint32_t record = 0;
    ASSERT_EQ(0, a_qeltvapi_nwl_qry_rec_id(kAir, 0x2114, &record));
    network_record_t back{};
    ASSERT_EQ(0, a_qeltvapi_nwl_get_rec(kAir, record, &back));
    EXPECT_STREQ("Northern network", back.name);
    EXPECT_EQ(record, back.record_id);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_nwl_qry_rec_id(kAir, 0x2115, &record));
    ASSERT_EQ(0, a_qeltvapi_nwl_clean(kAir));
    EXPECT_EQ(0u, networks(kAir));
    EXPECT_GT(channels(kAir), 0u) << "channels do not depend on it";
}

TEST_F(Lists, TheLogicalOrderIsForgottenAndChannelsStay) {
    const uint32_t all = channels(kAir);
    const uint32_t ordered = channels(kAir, CHANNEL_FLAG_LCN, CHANNEL_FLAG_LCN);
    ASSERT_GT(ordered, 0u);
    ASSERT_EQ(0, a_qeltvapi_channellist_clean_lol(kAir));
    EXPECT_EQ(0u, channels(kAir, CHANNEL_FLAG_LCN, CHANNEL_FLAG_LCN));
    EXPECT_EQ(all, channels(kAir));
}

TEST_F(Lists, SatellitesTakeTheirChannelsWithThemAndAreLockedApart) {
    const uint32_t air = channels(kAir);
    ASSERT_EQ(0, a_qeltvapi_satllist_lock_database(kSatellite));
    const Ended refused = qeltvctl({"satellite", "set", "19.2E", "--off"});
    EXPECT_EQ(1, refused.status);
    EXPECT_EQ("qeltvctl: 19.2E: not now or not allowed (-5)\n", refused.err);
    EXPECT_EQ(0, qeltvctl({"channel", "set", "satellite/1", "--lock"}).status)
            << "its channels are another list";
    ASSERT_EQ(0, a_qeltvapi_satllist_unlock_database(kSatellite));
    EXPECT_EQ(0, qeltvctl({"satellite", "set", "19.2E", "--off"}).status);
    ASSERT_EQ(0, a_qeltvapi_satllist_clean(kSatellite));
    EXPECT_EQ(0u, channels(kSatellite));
    EXPECT_EQ(0u, streams(kSatellite));
    EXPECT_EQ(air, channels(kAir));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_satllist_clean(kAir)) << "no list of satellites";

    ASSERT_EQ(0, a_qeltvapi_bisskey_lock_database(kSatellite));
    const std::vector<std::string> words{
            "biss",           "set", "--frequency",   "11000000", "--position", "19.2E",
            "--polarisation", "H",   "--symbol-rate", "22000000", "--key",      "0123456789ab"};
    EXPECT_EQ(1, qeltvctl(words).status);
    ASSERT_EQ(0, a_qeltvapi_bisskey_unlock_database(kSatellite));
    EXPECT_EQ("1\n", qeltvctl(words).out);
}

}  // namespace
