// The tables of the channel data: what is written is what is read, in layouts that are known.

#include "ChannelStore.h"

#include <gtest/gtest.h>

#include "ChannelDatabase.h"
#include "ChannelIds.h"

using namespace qeltvd;

namespace {

constexpr uint16_t kList = 1;

int64_t layoutOf(Store& store) {
    Store::Statement row(store, "PRAGMA user_version");
    return row.step() ? row.integer(0) : -1;
}

std::string refusalOf(Store& store) {
    try {
        ChannelStore channels(store);
    } catch (const StoreError& e) {
        return e.what();
    }
    return "";
}

TEST(ChannelStore, ReadsEveryFieldThatItWrites) {
    Store store(":memory:");
    ChannelStore channels(store);
    Channel c;
    c.list = kList;
    c.recordId = 2;
    c.channelId = channel_ids::onePart(kList, 3);
    c.number = 3;
    c.type = ServiceType::kRadio;
    c.flags = 0x80000004;
    c.multiplex = 5;
    c.originalNetworkId = 6;
    c.streamId = 7;
    c.serviceId = 8;
    c.pmtPid = 9;
    c.pcrPid = 10;
    c.videoPid = 11;
    c.audioPid = 12;
    c.name = "Name";
    c.provider = "Provider";
    c.language = "deu";
    channels.save(c);
    Satellite s;
    s.recordId = 1;
    s.name = "East";
    s.position = -300;
    s.lowOscillatorKHz = 2;
    s.highOscillatorKHz = 3;
    s.switchKHz = 4;
    s.switchPort = 5;
    s.enabled = false;
    channels.save(s);
    ChannelLists before, now;
    now.region = "";
    now.mode = CHANNEL_LIST_MODE_ONE;
    now.current = {kList, 2};
    channels.saveValues(before, now);
    channels.saveFavourites(1, {{kList, 2}, {3, 9}});

    const ChannelLists read = ChannelStore(store).load();
    ASSERT_EQ(1u, read.list(kList).channels.size());
    const Channel& r = read.list(kList).channels[0];
    EXPECT_EQ(std::tie(c.recordId, c.channelId, c.number, c.type, c.flags, c.multiplex),
              std::tie(r.recordId, r.channelId, r.number, r.type, r.flags, r.multiplex));
    EXPECT_EQ(std::tie(c.originalNetworkId, c.streamId, c.serviceId, c.pmtPid, c.pcrPid),
              std::tie(r.originalNetworkId, r.streamId, r.serviceId, r.pmtPid, r.pcrPid));
    EXPECT_EQ(std::tie(c.videoPid, c.audioPid, c.name, c.provider, c.language),
              std::tie(r.videoPid, r.audioPid, r.name, r.provider, r.language));
    ASSERT_EQ(1u, read.satellites.size());
    const Satellite& t = read.satellites[0];
    EXPECT_EQ(std::tie(s.recordId, s.name, s.position, s.lowOscillatorKHz, s.highOscillatorKHz),
              std::tie(t.recordId, t.name, t.position, t.lowOscillatorKHz, t.highOscillatorKHz));
    EXPECT_EQ(std::tie(s.switchKHz, s.switchPort, s.enabled),
              std::tie(t.switchKHz, t.switchPort, t.enabled));
    EXPECT_EQ("", read.region) << "an empty region was filled, too";
    EXPECT_EQ(uint32_t{CHANNEL_LIST_MODE_ONE}, read.mode);
    EXPECT_EQ(2u, read.current.recordId);
    EXPECT_EQ((Favourites{{kList, 2}, {3, 9}}), read.favourites[1]);

    channels.erase(c);
    EXPECT_TRUE(ChannelStore(store).load().list(kList).channels.empty());
}

TEST(ChannelStore, AdoptsTablesWithoutALayoutInAnyOrderOfColumns) {
    Store store(":memory:");
    store.execute(
            "CREATE TABLE networks (name TEXT, satellite INTEGER, network INTEGER, record INTEGER,"
            " list INTEGER, PRIMARY KEY (list, record)) WITHOUT ROWID;"
            "INSERT INTO networks VALUES ('Net', 4, 3, 2, 1);"
            "PRAGMA user_version = 1");
    const ChannelLists lists = ChannelStore(store).load();
    ASSERT_EQ(1u, lists.list(kList).networks.size());
    const Network& network = lists.list(kList).networks[0];
    EXPECT_EQ("Net", network.name);
    EXPECT_EQ(2u, network.recordId);
    EXPECT_EQ(3u, network.networkId);
    EXPECT_EQ(4u, network.satellite);
    EXPECT_EQ(ChannelStore::kLayout, layoutOf(store));
}

TEST(ChannelStore, RefusesTablesWithOtherColumns) {
    Store store(":memory:");
    store.execute("CREATE TABLE networks (list INTEGER, record INTEGER, country TEXT)");
    EXPECT_NE(std::string::npos, refusalOf(store).find("\"networks\"")) << refusalOf(store);
    EXPECT_NE(ChannelStore::kLayout, layoutOf(store));
}

TEST(ChannelStore, RefusesALayoutOfANewerTelevisionAndLeavesItAlone) {
    Store store(":memory:");
    store.execute("PRAGMA user_version = 3");
    EXPECT_NE(std::string::npos, refusalOf(store).find("newer television")) << refusalOf(store);
    EXPECT_EQ(3, layoutOf(store));
    Store::Statement tables(store, "SELECT name FROM sqlite_master");
    EXPECT_FALSE(tables.step()) << "no table is made";
}

TEST(ChannelStore, KeepsItsLayoutWhenTheStoreIsProbed) {
    Store store(":memory:");
    Timers timers;
    Broadcast broadcast(timers);
    { ChannelDatabase channels(store, broadcast, "dvb-t/de-Berlin"); }
    store.probe();
    EXPECT_EQ(ChannelStore::kLayout, layoutOf(store));
}

}  // namespace
