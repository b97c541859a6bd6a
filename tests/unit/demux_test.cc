#include "Demux.h"

#include <gmock/gmock.h>

#include "Descrambler.h"
#include "stream_composer.h"

using namespace qeltvd::stream;
using composed::Octets;
using composed::Packets;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

Batch batchOf(Octets& bytes, bool discontinuity = false) {
    return {bytes.data(), bytes.size() / kPacketSize, discontinuity};
}

uint8_t* packetOf(Octets& bytes, size_t number) {
    return bytes.data() + number * kPacketSize;
}

struct Sections {
    explicit Sections(Demux* demux, uint16_t pid = 0x20) {
        demux->filterSections(pid, [this](uint16_t, const uint8_t* data, size_t size) {
            all.emplace_back(data, data + size);
        });
    }
    std::vector<Octets> all;
};

TEST(Demux, SectionsSpanPacketsAndSeveralShareOne) {
    const Octets large = composed::section(0x80, 1, Octets(4000, 0x55));
    const Octets small = composed::section(0x81, 2, Octets(10, 0x66));
    Packets packets;
    packets.addSection(0x20, large);
    // A packet with the end of one section and two whole ones.
    Octets three = large;
    three.insert(three.end(), small.begin(), small.end());
    three.insert(three.end(), small.begin(), small.end());
    packets.addSection(0x20, three);
    Demux demux;
    Sections sections(&demux);
    demux.push(batchOf(packets.bytes()));
    EXPECT_THAT(sections.all, ElementsAre(large, large, small, small));
    EXPECT_EQ(0u, demux.counters(0x20).sectionErrors);
}

TEST(Demux, DamagedAndInterruptedSectionsAreLeftOut) {
    const Octets section = composed::section(0x80, 1, Octets(400, 0x55));
    Packets packets;
    for (int i = 0; i < 4; ++i) packets.addSection(0x20, section);
    ASSERT_EQ(12u, packets.count());
    // A wrong byte in the first; a packet of the second is lost; the third comes twice.
    packetOf(packets.bytes(), 1)[60] ^= 1;
    Octets& bytes = packets.bytes();
    const Octets repeated(packetOf(bytes, 7), packetOf(bytes, 8));
    bytes.insert(bytes.begin() + 7 * static_cast<long>(kPacketSize), repeated.begin(),
                 repeated.end());
    bytes.erase(bytes.begin() + 4 * static_cast<long>(kPacketSize),
                bytes.begin() + 5 * static_cast<long>(kPacketSize));
    Demux demux;
    Sections sections(&demux);
    demux.push(batchOf(bytes));
    EXPECT_THAT(sections.all, ElementsAre(section, section));
    EXPECT_EQ(1u, demux.counters(0x20).sectionErrors);
    EXPECT_EQ(1u, demux.counters(0x20).continuityErrors);
}

TEST(Demux, ADiscontinuityOfTheSourceIsNoErrorAndJoinsNothing) {
    const Octets section = composed::section(0x80, 1, Octets(400, 0x55));
    Packets packets;
    packets.addSection(0x20, section);
    Octets begin(packets.bytes().begin(),
                 packets.bytes().begin() + 2 * static_cast<long>(kPacketSize));
    Demux demux;
    Sections sections(&demux);
    demux.push(batchOf(begin));
    demux.push(batchOf(packets.bytes(), true));
    EXPECT_THAT(sections.all, SizeIs(1));
    EXPECT_EQ(0u, demux.counters(0x20).continuityErrors);
}

TEST(Demux, PesPacketsHaveTheirTimesAndAreCutAtTheLimit) {
    Packets packets;
    packets.addPes(0x30, 0xe0, (uint64_t{1} << 33) - 1, Octets(1000, 0x11));
    packets.addPes(0x30, 0xe0, 5, Octets(70000 % 60000, 0x22));
    Demux demux;
    std::vector<std::pair<uint64_t, size_t>> all;
    demux.filterPes(
            0x30,
            [&](const PesPacket& packet) {
                all.emplace_back(packet.presentation.value_or(0), packet.payloadSize);
                EXPECT_FALSE(packet.decoding);
            },
            2000);
    demux.push(batchOf(packets.bytes()));
    EXPECT_THAT(all, ElementsAre(std::pair<uint64_t, size_t>((uint64_t{1} << 33) - 1, 1000),
                                 std::pair<uint64_t, size_t>(5, 2000 - 14)));
}

TEST(Demux, AHandlerMayReplaceItsOwnFilter) {
    Packets packets;
    for (uint16_t i = 0; i < 4; ++i) packets.addSection(0x20, composed::section(0x80, i, {}));
    Demux demux;
    int first = 0, second = 0;
    demux.filterSections(0x20, [&](uint16_t pid, const uint8_t*, size_t) {
        ++first;
        demux.filterSections(pid, [&](uint16_t from, const uint8_t*, size_t) {
            ++second;
            demux.removeFilter(from);
        });
    });
    demux.push(batchOf(packets.bytes()));
    EXPECT_EQ(1, first);
    EXPECT_EQ(1, second);
}

TEST(Demux, ScrambledPacketsAreCountedAndReachNoFilter) {
    Packets packets;
    packets.addSection(0x20, composed::section(0x80, 1, {}));
    packets.addSection(0x20, composed::section(0x80, 2, {}));
    packetOf(packets.bytes(), 0)[3] |= 0x80;
    Demux demux;
    Sections sections(&demux);
    Octets one(packetOf(packets.bytes(), 0), packetOf(packets.bytes(), 1));
    demux.push(batchOf(one));
    EXPECT_TRUE(demux.counters(0x20).scrambledNow);
    Octets two(packetOf(packets.bytes(), 1), packetOf(packets.bytes(), 1) + kPacketSize);
    demux.push(batchOf(two));
    EXPECT_FALSE(demux.counters(0x20).scrambledNow);
    EXPECT_EQ(1u, demux.counters(0x20).scrambled);
    EXPECT_THAT(sections.all, SizeIs(1));
}

TEST(Demux, SecondsCountAcrossTheWrapOfTheClock) {
    composed::Options options;
    options.clock = (uint64_t{1} << 33) - 2 * 90000;
    Octets bytes = composed::dvb(options);
    Demux demux;
    demux.push(batchOf(bytes));
    EXPECT_NEAR(options.seconds, demux.seconds(), 0.2);
    // The same once more begins with a step back, which counts for nothing.
    demux.push(batchOf(bytes, true));
    EXPECT_NEAR(2 * options.seconds, demux.seconds(), 0.4);
}

TEST(Descrambler, KeysComeWithAndWithoutChecksums) {
    const ControlWord word{0x12, 0x34, 0x56, 0x9c, 0x78, 0x9a, 0xbc, 0xce};
    EXPECT_EQ(word, controlWord("123456789abc"));
    EXPECT_EQ(word, controlWord("1234569C789ABCCE"));
    EXPECT_EQ(word, controlWord("12345600789ABC00"));
    for (const char* wrong :
         {"", "1234569d789abcce", "12345678", "123456789abg", "123456789abcde"}) {
        EXPECT_FALSE(controlWord(wrong)) << wrong;
    }
}

}  // namespace
