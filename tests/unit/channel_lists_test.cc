// The queries over the channel lists: plain data, no store.

#include "ChannelLists.h"

#include <gtest/gtest.h>

#include "ChannelIds.h"

using namespace qeltvd;

namespace {

constexpr uint16_t kList = 1;

Channel channel(uint32_t recordId, uint32_t number, uint32_t multiplex = 1) {
    Channel c;
    c.list = kList;
    c.recordId = recordId;
    c.number = number;
    c.channelId = channel_ids::onePart(kList, number);
    c.multiplex = multiplex;
    c.flags = CHANNEL_FLAG_VISIBLE;
    c.serviceId = static_cast<uint16_t>(100 + recordId);
    return c;
}

Multiplex multiplex(uint32_t recordId, DeliverySystem system) {
    Multiplex m;
    m.list = kList;
    m.recordId = recordId;
    m.system = system;
    m.frequencyHz = recordId * UINT64_C(100000000);
    return m;
}

/** Numbers 2, 4, 6, 8 in another order than their records; 8 is ATSC. */
ChannelList four() {
    ChannelList list;
    list.multiplexes = {multiplex(1, DeliverySystem::kDvbT), multiplex(5, DeliverySystem::kAtsc)};
    list.channels = {channel(10, 6), channel(11, 2), channel(12, 8, 5), channel(13, 4)};
    list.order();
    return list;
}

uint32_t numberOf(const Channel* channel) {
    return channel != nullptr ? channel->number : 0;
}

std::vector<uint32_t> visited(const ChannelList& list, const ChannelQuery& query, size_t first,
                              size_t limit) {
    std::vector<uint32_t> numbers;
    const size_t calls = list.visit(query, first, limit, [&](const Channel& c, const Multiplex& m) {
        EXPECT_EQ(c.multiplex, m.recordId);
        numbers.push_back(c.number);
    });
    EXPECT_EQ(calls, numbers.size());
    return numbers;
}

TEST(ChannelList, FindsAChannelByEachOfItsNames) {
    const ChannelList list = four();
    EXPECT_EQ(6u, numberOf(list.record(10)));
    EXPECT_EQ(4u, numberOf(list.id(channel_ids::onePart(kList, 4))));
    EXPECT_EQ(8u, numberOf(list.number(8)));
    EXPECT_EQ(2u, numberOf(list.shortId(kList, 2)));
    EXPECT_EQ(4u, numberOf(list.triplet(0, 0, 113)));
    EXPECT_EQ(nullptr, list.record(9));
    EXPECT_EQ(nullptr, list.number(5));
    EXPECT_EQ(nullptr, list.number(9));
    EXPECT_EQ(nullptr, list.shortId(2, 3));
    EXPECT_EQ(nullptr, list.triplet(1, 0, 113));
}

TEST(ChannelList, FindsAShortIdOfTwoParts) {
    ChannelList list = four();
    Channel c = channel(14, 0);
    c.channelId = channel_ids::twoParts(kList, 7, 3);
    c.number = channel_ids::number(c.channelId);
    list.channels.push_back(c);
    list.order();
    const Channel* found = list.shortId(kList, static_cast<uint16_t>(c.channelId));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(14u, found->recordId);
}

TEST(ChannelList, CountsIndicesAmongWhatAQueryFinds) {
    ChannelList list = four();
    ChannelQuery dvb;
    dvb.broadcast = BroadcastType::kDvb;
    ChannelQuery atsc;
    atsc.broadcast = BroadcastType::kAtsc;
    EXPECT_EQ(4u, list.count({}));
    EXPECT_EQ(3u, list.count(dvb));
    EXPECT_EQ(8u, numberOf(list.at(0, atsc)));
    EXPECT_EQ(nullptr, list.at(1, atsc));
    EXPECT_EQ(6u, numberOf(list.at(2, {})));
    EXPECT_EQ(std::optional<size_t>(2), list.indexOf(channel_ids::onePart(kList, 6), dvb));
    EXPECT_EQ(std::nullopt, list.indexOf(channel_ids::onePart(kList, 6), atsc));
    EXPECT_EQ(std::optional<size_t>(0), list.indexOf(channel_ids::onePart(kList, 8), atsc));
    EXPECT_EQ((std::vector<uint32_t>{4, 6}), visited(list, {}, 1, 2));
    EXPECT_EQ((std::vector<uint32_t>{4, 6}), visited(list, dvb, 1, 5));
    EXPECT_EQ((std::vector<uint32_t>{}), visited(list, {}, 4, 5));
    EXPECT_EQ((std::vector<uint32_t>{2, 4, 6, 8}), visited(list, {}, 0, SIZE_MAX));
}

TEST(ChannelList, HasAnEmptyMultiplexForAChannelWithoutOne) {
    ChannelList list = four();
    const Channel orphan = channel(20, 9, 77);
    EXPECT_EQ(0u, list.multiplexOf(orphan).recordId);
    // Record ids with gaps: the second multiplex does not stand where its id says.
    EXPECT_EQ(DeliverySystem::kAtsc, list.multiplexOf(*list.record(12)).system);
}

TEST(ChannelList, GoesRoundFromAChannelThatIsNotThere) {
    const ChannelList list = four();
    const auto id = [](uint32_t number) { return channel_ids::onePart(kList, number); };
    EXPECT_EQ(6u, numberOf(list.next(id(5), {}, Direction::kForwards)));
    EXPECT_EQ(4u, numberOf(list.next(id(5), {}, Direction::kBackwards)));
    EXPECT_EQ(2u, numberOf(list.next(id(9), {}, Direction::kForwards)));
    EXPECT_EQ(8u, numberOf(list.next(id(1), {}, Direction::kBackwards)));
    EXPECT_EQ(nullptr, ChannelList().next(id(1), {}, Direction::kForwards));
}

TEST(ChannelList, GivesAFreeNumberUntilEveryOneIsTaken) {
    ChannelList list = four();
    EXPECT_EQ(9u, list.freeNumber());
    list.channels.push_back(channel(14, channel_ids::kMaximumNumber));
    EXPECT_EQ(1u, list.freeNumber()) << "the first gap once the highest is taken";
    list.channels.clear();
    for (uint32_t number = 1; number <= channel_ids::kMaximumNumber; ++number) {
        list.channels.push_back(channel(number, number));
    }
    EXPECT_EQ(0u, list.freeNumber());
    list.channels.erase(list.channels.begin() + 99);
    EXPECT_EQ(100u, list.freeNumber());
}

TEST(ChannelLists, FindAChannelByItsIdInItsOwnListAlone) {
    ChannelLists lists;
    lists.lists[kList] = std::make_shared<ChannelList>(four());
    EXPECT_EQ(4u, numberOf(lists.channel(kList, 4)));
    EXPECT_EQ(4u, numberOf(lists.channel(kList, channel_ids::onePart(kList, 4))));
    EXPECT_EQ(nullptr, lists.channel(2, channel_ids::onePart(kList, 4)));
    EXPECT_EQ(nullptr, lists.channel(0, 4));
    EXPECT_EQ(nullptr, lists.channel(kList + 0x10000, 4)) << "not cut to 16 bits";
}

TEST(ChannelLists, PreferTheKeyOfTheServiceToThatOfTheTransponder) {
    ChannelLists lists;
    Satellite satellite;
    satellite.recordId = 3;
    satellite.position = 192;
    lists.satellites = {satellite};
    ChannelList list;
    Multiplex stream = multiplex(1, DeliverySystem::kDvbS);
    stream.frequencyHz = UINT64_C(11954000000);
    stream.satellite = 3;
    stream.polarisation = Polarisation::kHorizontal;
    list.multiplexes = {stream};
    list.channels = {channel(1, 1)};
    list.order();
    lists.lists[kList] = std::make_shared<ChannelList>(list);
    const Channel& wanted = lists.list(kList).channels[0];

    BissKey any;
    any.recordId = 1;
    any.frequencyKHz = 11955000;
    any.position = 192;
    any.polarisation = Polarisation::kHorizontal;
    any.key = {1, 2, 3, 6, 0, 0, 0, 0};
    BissKey own = any;
    own.recordId = 2;
    own.serviceId = wanted.serviceId;
    lists.keys = {any, own};
    ASSERT_NE(nullptr, lists.keyFor(wanted));
    EXPECT_EQ(2u, lists.keyFor(wanted)->recordId);
    lists.keys[1].enabled = false;
    EXPECT_EQ(1u, lists.keyFor(wanted)->recordId);
    lists.keys[0].frequencyKHz = 11957000;
    EXPECT_EQ(nullptr, lists.keyFor(wanted)) << "another transponder's";
    lists.keys[0].frequencyKHz = 11954000;
    lists.keys[0].position = 130;
    EXPECT_EQ(nullptr, lists.keyFor(wanted)) << "another satellite's";
}

}  // namespace
