// The rules of the channel database, without a television around it.

#include <gtest/gtest.h>

#include "Broadcast.h"
#include "ChannelDatabase.h"
#include "ChannelIds.h"
#include "Code.h"
#include "ServiceGenerator.h"

using namespace qeltvd;

namespace {

constexpr uint16_t kAir = 1;

class Database : public testing::Test {
  protected:
    Database() {
        setenv("QELTVD_SCAN_TABLES", "/nonexistent", 1);
        channels = std::make_unique<ChannelDatabase>(store, broadcast, "dvb-t/de-Berlin");
        channels->addListener([this](const ChannelChange& change) { changes.push_back(change); });
    }

    /** The line-up as a scan would find it. */
    static std::vector<Found> onAir() {
        std::vector<Found> found;
        const Region region = regions("dvb-t/de-Berlin").front();
        for (const Multiplex& multiplex : region.multiplexes) {
            found.push_back({multiplex, generateServices(region, multiplex)});
        }
        return found;
    }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const Channel& channel : channels->find(kAir)) all.push_back(channel.name);
        return all;
    }

    bool notified(ChannelChange::Kind kind) const {
        return std::any_of(changes.begin(), changes.end(),
                           [&](const ChannelChange& change) { return change.kind == kind; });
    }

    Store store{":memory:"};
    Timers timers;
    Broadcast broadcast{timers};
    std::unique_ptr<ChannelDatabase> channels;
    std::vector<ChannelChange> changes;
};

TEST_F(Database, KeepsTheUsersChangesWhenAScanFindsTheSame) {
    const Channel third = *channels->byIndex(kAir, 2);
    ASSERT_EQ(kOk, channels->rename(kAir, third.recordId, "Mine"));
    ASSERT_EQ(kOk,
              channels->setFlags(kAir, third.recordId, CHANNEL_FLAG_LOCKED | CHANNEL_FLAG_VISIBLE,
                                 CHANNEL_FLAG_LOCKED));
    ASSERT_EQ(kOk, channels->moveToEnd(third.channelId));
    const Channel before = *channels->byRecord(kAir, third.recordId);
    const size_t count = channels->count(kAir);

    const Merged merged = *channels->merge(kAir, onAir(), Unfound::kRemove);
    EXPECT_EQ(0u, merged.added);
    EXPECT_EQ(0u, merged.removed);
    EXPECT_EQ(count, merged.updated);
    const Channel after = *channels->byRecord(kAir, third.recordId);
    EXPECT_EQ("Mine", after.name);
    EXPECT_EQ(before.channelId, after.channelId);
    EXPECT_EQ(before.flags, after.flags);
}

TEST_F(Database, AddsAndRemovesChannelsAsAScanFindsThem) {
    auto found = onAir();
    const size_t gone = found.back().services.size() + 1;
    found.pop_back();
    found[0].services.pop_back();
    Found fresh;
    fresh.multiplex.system = DeliverySystem::kDvbT2;
    fresh.multiplex.frequencyHz = 700000000;
    Channel service;
    service.name = "Fresh";
    service.serviceId = 5;
    service.number = 1;
    fresh.services = {service, service};
    fresh.services[1].serviceId = 6;
    fresh.services[1].number = 500;
    found.push_back(fresh);

    const size_t before = channels->count(kAir);
    Merged merged = *channels->merge(kAir, found, Unfound::kRemove);
    EXPECT_EQ(2u, merged.added);
    EXPECT_EQ(gone, merged.removed);
    EXPECT_EQ(before + 2 - gone, channels->count(kAir));
    ASSERT_EQ(2u, merged.addedRecords.size());
    const Channel one = *channels->byRecord(kAir, merged.addedRecords[0]);
    EXPECT_NE(1u, one.number) << "is taken";
    EXPECT_NE(0u, one.flags & CHANNEL_FLAG_NEW);
    EXPECT_EQ(500u, channels->byRecord(kAir, merged.addedRecords[1])->number);
    EXPECT_TRUE(notified(ChannelChange::Kind::kChannelsRemoved));
    EXPECT_TRUE(notified(ChannelChange::Kind::kMultiplexes));

    // What is gone leaves its record id behind for ever.
    const uint32_t record = merged.addedRecords[1];
    ASSERT_EQ(kOk, channels->remove(kAir, {record}));
    merged = *channels->merge(kAir, {fresh}, Unfound::kKeep);
    ASSERT_EQ(1u, merged.added);
    EXPECT_LT(record, merged.addedRecords[0]);
}

TEST_F(Database, ZapsInACircleAndLeavesOutSkippedAndHiddenChannels) {
    const auto all = channels->find(kAir);
    ASSERT_GE(all.size(), 5u);
    const size_t n = all.size();
    const auto zap = ChannelQuery::zapping();
    ASSERT_EQ(kOk, channels->setFlags(kAir, all[1].recordId, CHANNEL_FLAG_SKIPPED, ~0u));
    ASSERT_EQ(kOk, channels->setFlags(kAir, all[2].recordId, CHANNEL_FLAG_VISIBLE, 0));
    EXPECT_EQ(all[3].recordId, channels->next(all[0].channelId, zap)->recordId);
    EXPECT_EQ(all[0].recordId,
              channels->next(all[3].channelId, zap, Direction::kBackwards)->recordId);
    EXPECT_EQ(all[n - 1].recordId,
              channels->next(all[0].channelId, zap, Direction::kBackwards)->recordId);
    EXPECT_EQ(all[0].recordId, channels->next(all[n - 1].channelId, zap)->recordId);
    // From a channel that is not found, and from one that there is not.
    EXPECT_EQ(all[3].recordId, channels->next(all[2].channelId, zap)->recordId);
    EXPECT_EQ(all[0].recordId,
              channels->next(all[1].channelId, zap, Direction::kBackwards)->recordId);
    ASSERT_EQ(kOk, channels->remove(kAir, {all[3].recordId}));
    EXPECT_EQ(all[4].recordId, channels->next(all[3].channelId, zap)->recordId);
    EXPECT_EQ(all[0].recordId,
              channels->next(all[3].channelId, zap, Direction::kBackwards)->recordId);
    // Only itself, and nothing at all.
    ChannelQuery named;
    named.name = all[0].name;
    EXPECT_EQ(all[0].recordId, channels->next(all[0].channelId, named)->recordId);
    named.name = "nobody";
    EXPECT_FALSE(channels->next(all[0].channelId, named));
}

TEST_F(Database, UndoesAChangeThatCannotBeStored) {
    const auto before = names();
    const auto favourites = channels->favourites(0);
    const Channel first = *channels->byIndex(kAir, 0);
    const uint32_t version = channels->version(kAir);
    changes.clear();
    store.execute("PRAGMA query_only = ON");
    EXPECT_THROW((void)channels->rename(kAir, first.recordId, "Lost"), StoreError);
    EXPECT_THROW((void)channels->clear(kAir, Streams::kRemove), StoreError);
    EXPECT_THROW((void)channels->merge(kAir, onAir(), Unfound::kRemove), StoreError);
    EXPECT_THROW((void)channels->setFavourites(0, {{kAir, first.recordId}}), StoreError);
    EXPECT_THROW((void)channels->reload("atsc/*"), StoreError);
    store.execute("PRAGMA query_only = OFF");
    EXPECT_EQ(before, names());
    EXPECT_EQ(favourites, channels->favourites(0));
    EXPECT_EQ(version, channels->version(kAir));
    EXPECT_TRUE(changes.empty());
    EXPECT_EQ(kOk, channels->rename(kAir, first.recordId, "Kept"));
    EXPECT_EQ("Kept", channels->byIndex(kAir, 0)->name);
}

TEST_F(Database, LoadsWhatItStored) {
    ASSERT_EQ(kOk, channels->setFavourites(2, {{kAir, channels->byIndex(kAir, 3)->recordId},
                                               {kAir, channels->byIndex(kAir, 1)->recordId}}));
    ASSERT_EQ(kOk, channels->setCurrent(channels->byIndex(kAir, 4)->channelId));
    ASSERT_EQ(kOk, channels->setListMode(CHANNEL_LIST_MODE_ONE));
    BissKey key;
    key.frequencyKHz = 11954000;
    key.position = -300;
    key.key = {1, 2, 3, 6, 0, 0, 0, 0};
    ASSERT_TRUE(channels->putRecord(key));
    const ChannelDatabase again(store, broadcast, "dvb-t/de-Berlin");
    EXPECT_EQ(channels->favourites(2), again.favourites(2));
    EXPECT_EQ(channels->current()->recordId, again.current()->recordId);
    EXPECT_EQ(uint32_t{CHANNEL_LIST_MODE_ONE}, again.listMode());
    EXPECT_EQ(channels->version(kAir), again.version(kAir));
    ASSERT_EQ(1u, again.bissKeys().size());
    EXPECT_EQ(key.key, again.bissKeys()[0].key);
    EXPECT_EQ(-300, again.bissKeys()[0].position);
    const auto one = channels->find(kAir), other = again.find(kAir);
    ASSERT_EQ(one.size(), other.size());
    for (size_t i = 0; i < one.size(); ++i) {
        EXPECT_EQ(one[i].channelId, other[i].channelId);
        EXPECT_EQ(one[i].flags, other[i].flags);
        EXPECT_EQ(one[i].name, other[i].name);
        EXPECT_EQ(one[i].videoPid, other[i].videoPid);
        EXPECT_EQ(channels->pair(one[i].channelId)->second.frequencyHz,
                  again.pair(other[i].channelId)->second.frequencyHz);
    }
}

TEST_F(Database, ServesItsListeners) {
    const Channel first = *channels->byIndex(kAir, 0);
    channels->addListener([&](const ChannelChange& change) {
        if (change.kind != ChannelChange::Kind::kChannels) return;
        EXPECT_EQ(kOk, channels->setCurrent(first.channelId));
    });
    ASSERT_EQ(kOk, channels->setCurrent(0));
    ASSERT_EQ(kOk, channels->setFlags(kAir, first.recordId, CHANNEL_FLAG_SKIPPED, ~0u));
    EXPECT_EQ(first.recordId, channels->current()->recordId);
}

TEST(Regions, MatchNamesAndNeverLeadOutOfTheTables) {
    setenv("QELTVD_SCAN_TABLES", "/nonexistent", 1);
    EXPECT_EQ(2u, regions("dvb-t/* dvb-s/*,dvb-t/de-Berlin").size()) << "each once";
    EXPECT_EQ("dvb-t/de-Berlin", regions("../etc/passwd").front().name);
    EXPECT_EQ("dvb-t/de-Berlin", regions("").front().name);
    const Region satellite = regions("dvb-s/Astra-1N-19.2E").front();
    EXPECT_EQ(192, satellite.position);
    EXPECT_EQ("Astra 1N 19.2E", satellite.satellite);
    EXPECT_EQ(UINT64_C(11954000000), satellite.multiplexes[0].frequencyHz);
    EXPECT_EQ(0x34, satellite.multiplexes[0].codeRate);
}

}  // namespace
