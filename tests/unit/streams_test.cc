#include <gmock/gmock.h>

#include <filesystem>
#include <random>

#include "EmptyStream.h"
#include "ServiceStream.h"
#include "StreamCollector.h"
#include "StreamInspection.h"
#include "StreamReceiver.h"
#include "eventually.h"
#include "stream_composer.h"

using namespace qeltvd::stream;
using composed::Octets;
using composed::Writer;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

Batch batchOf(Octets& bytes, bool discontinuity = false) {
    return {bytes.data(), bytes.size() / kPacketSize, discontinuity};
}

/** Twice, because tables refer to each other. */
StreamFacts read(StreamCollector* collector, Octets bytes) {
    collector->push(batchOf(bytes));
    return collector->facts();
}

TEST(StreamCollector, AMultiplexOfDvbIsKnownWhole) {
    StreamCollector collector;
    const StreamFacts facts = read(&collector, composed::dvb());
    EXPECT_TRUE(facts.locked && facts.mapsComplete && facts.descriptionsComplete &&
                facts.networkComplete);
    EXPECT_FALSE(facts.atsc);
    EXPECT_EQ(composed::kStream, facts.streamId);
    EXPECT_EQ(composed::kNetwork, facts.originalNetworkId);
    EXPECT_EQ(composed::kNetworkName, facts.networkName);
    ASSERT_THAT(facts.services, SizeIs(2));
    const Service& first = facts.services.at(composed::kFirstService);
    EXPECT_EQ(composed::kFirstName, first.name());
    EXPECT_EQ("Küstenprogramme", first.description->provider);
    EXPECT_EQ(composed::kFirstNumber, first.number->number);
    EXPECT_EQ(composed::kFirstHdNumber, first.hdNumber->number);
    EXPECT_FALSE(first.isRadio() || first.isData() || first.scrambledNow);
    const PictureFormat format{Codec::kMpeg2Video, 352, 288, 25000, false, 1333};
    EXPECT_EQ(format, first.format);
    ASSERT_THAT(first.components, SizeIs(5));
    EXPECT_EQ("deu", first.components[1].language);
    const Component* text = first.find(ComponentKind::kTeletext);
    ASSERT_NE(nullptr, text);
    EXPECT_EQ(0x888, text->teletext.at(1).page);
    EXPECT_EQ(TeletextService::kHearingImpaired, text->teletext.at(1).type);
    const Component* subtitles = first.find(ComponentKind::kSubtitles);
    ASSERT_NE(nullptr, subtitles);
    EXPECT_TRUE(subtitles->subtitles.at(1).hearingImpaired());
    ASSERT_THAT(first.applications, SizeIs(1));
    EXPECT_EQ(composed::kUrl, first.applications[0].url);
    EXPECT_EQ("Startleiste", first.applications[0].name);
    const Service& second = facts.services.at(composed::kSecondService);
    EXPECT_EQ(composed::kSecondName, second.name());
    EXPECT_TRUE(second.isRadio());
    EXPECT_EQ(composed::kSecondNumber, second.number->number);
    EXPECT_FALSE(second.number->visible);
    ASSERT_THAT(facts.others, SizeIs(1));
    EXPECT_EQ("Elsewhere HD", facts.others.begin()->second.name);
    ASSERT_TRUE(facts.time);
    EXPECT_EQ(composed::kTime + 3, facts.time->utc);
    ASSERT_THAT(facts.time->offsets, SizeIs(1)) << "of TOT, though TDT comes as well";
    EXPECT_EQ(3600, facts.time->offsets[0].seconds);
    EXPECT_EQ(composed::kChange, facts.time->offsets[0].changeAt);
    EXPECT_EQ(7200, facts.time->offsets[0].nextSeconds);
}

TEST(StreamCollector, TheGuideHasWhatIsBroadcast) {
    StreamCollector collector;
    read(&collector, composed::dvb());
    const ServiceKey key = collector.keyOf(composed::kFirstService);
    const auto present = collector.events().present(key);
    ASSERT_TRUE(present);
    EXPECT_EQ(composed::kTime, present->start);
    EXPECT_EQ(1800u, present->duration);
    const EventText* german = present->text("deu");
    ASSERT_NE(nullptr, german);
    EXPECT_EQ("Nachrichten im Café", german->title);
    EXPECT_EQ("Das Wetter\nund mehr", german->summary);
    EXPECT_EQ("Erster Teil, zweiter Teil €", german->details);
    EXPECT_THAT(german->items,
                ElementsAre(std::pair<std::string, std::string>("Regie", "Änne Öhm und Co")));
    EXPECT_EQ("News at the café", present->text("eng")->title);
    EXPECT_EQ("deu", present->text("fra")->language);
    EXPECT_THAT(present->contents, ElementsAre(0x20));
    ASSERT_THAT(present->ratings, SizeIs(1));
    EXPECT_EQ(12, present->ratings[0].age());
    EXPECT_EQ("/news/1", present->programmeCrid);
    EXPECT_EQ("/news", present->seriesCrid);
    EXPECT_EQ("16:9", present->components.at(0).text);
    EXPECT_EQ("Film", collector.events().following(key)->texts.at(0).title);
    std::vector<uint16_t> ids;
    for (const Event& event : collector.events().events(key)) ids.push_back(event.id);
    EXPECT_THAT(ids, ElementsAre(100, 101, 102)) << "without the one that has no time";
    EXPECT_EQ("Музыка", collector.events()
                                .present(collector.keyOf(composed::kSecondService))
                                ->texts.at(0)
                                .title);
}

TEST(StreamCollector, AMultiplexOfAtscIsKnownWhole) {
    StreamCollector collector;
    collector.watch({composed::kAtscFirst});
    const StreamFacts facts = read(&collector, composed::atsc());
    EXPECT_TRUE(facts.atsc && facts.mapsComplete && facts.descriptionsComplete);
    const Service& first = facts.services.at(composed::kAtscFirst);
    ASSERT_TRUE(first.channel);
    EXPECT_EQ("WABC-D", first.name());
    EXPECT_EQ("WABC-D Television", first.channel->longName);
    EXPECT_EQ(8, first.channel->major);
    EXPECT_EQ(1, first.channel->minor);
    ASSERT_THAT(first.components, SizeIs(2));
    EXPECT_THAT(first.components[0].captions, SizeIs(2));
    EXPECT_EQ(Codec::kAc3, first.components[1].codec);
    EXPECT_EQ(5, first.components[1].channels);
    EXPECT_EQ("eng", first.components[1].language);
    EXPECT_EQ(composed::kTime + 3, facts.time->utc);
    EXPECT_TRUE(*facts.time->daylightSaving);
    const auto events = collector.events().events(collector.keyOf(composed::kAtscFirst));
    ASSERT_THAT(events, SizeIs(1));
    EXPECT_EQ(composed::kTime, events[0].start);
    EXPECT_EQ("Evening Report", events[0].texts.at(0).title);
    EXPECT_EQ("All the news.", events[0].texts.at(0).details);
    EXPECT_EQ("TV-PG", events[0].advisory);
    ASSERT_THAT(facts.ratings, SizeIs(1));
    EXPECT_EQ("Region Five", facts.ratings[0].name);
    ASSERT_THAT(facts.ratings[0].dimensions, SizeIs(1));
    EXPECT_EQ("Value B", facts.ratings[0].dimensions[0].values.at(1).text);
    ASSERT_THAT(facts.alerts, SizeIs(1)) << "repeated, but the same";
    EXPECT_EQ("TOR", facts.alerts[0].code);
    EXPECT_EQ("Tornado Warning", facts.alerts[0].nature);
    EXPECT_EQ("Take cover now.", facts.alerts[0].text);
    EXPECT_EQ(11, facts.alerts[0].priority);
    EXPECT_EQ(8, facts.alerts[0].major);
    EXPECT_EQ(37, facts.alerts[0].locations.at(0).county);
    const CaptionDecoder* captions = collector.captions(composed::kAtscFirst);
    ASSERT_NE(nullptr, captions);
    EXPECT_THAT(captions->rows(1), ElementsAre(composed::kCaption));
    EXPECT_EQ(1, captions->channels());
}

TEST(StreamCollector, TeletextIsDecodedOfWhatIsWatched) {
    StreamCollector collector;
    read(&collector, composed::dvb());
    EXPECT_THAT(collector.teletext(composed::kFirstService), IsEmpty());
    collector.watch({composed::kFirstService});
    read(&collector, composed::dvb());
    ASSERT_THAT(collector.teletext(composed::kFirstService), SizeIs(1));
    EXPECT_THAT(collector.teletext(composed::kSecondService), IsEmpty());
    const TeletextDecoder& text = *collector.teletext(composed::kFirstService)[0];
    EXPECT_THAT(text.pages(), ElementsAre(0x100, 0x101, composed::kLatePage, 0x888));
    EXPECT_THAT(text.subpages(0x101), ElementsAre(1, 2));
    const auto page = text.page(0x101, 1);
    ASSERT_TRUE(page);
    EXPECT_EQ("Erste Unterseite", std::string(page->rows[1].begin(), page->rows[1].begin() + 16));
    EXPECT_EQ(4, page->national);
    EXPECT_TRUE(text.page(0x888)->subtitle);
    EXPECT_FALSE(text.page(0x102));
    EXPECT_THAT(text.text(0x100).at(0), HasSubstr("Küstentext"));
    EXPECT_THAT(text.text(composed::kLatePage).at(24), StartsWith("Spät "));
    const auto top = text.top();
    ASSERT_THAT(top, SizeIs(6));
    EXPECT_EQ(0x100, top[0].number);
    EXPECT_EQ(1, top[0].level);
    EXPECT_EQ("Küste", top[0].title);
    EXPECT_EQ(3, top[1].level);
    EXPECT_EQ("", top[1].title);
    EXPECT_EQ(0x110, top[2].number);
    EXPECT_EQ(2, top[2].level);
    EXPECT_EQ("Wetter", top[2].title);
    EXPECT_TRUE(text.isAbsent(0x555));
    EXPECT_FALSE(text.isAbsent(0x111));
    EXPECT_FALSE(text.isAbsent(0x888));
    collector.watch({});
    EXPECT_THAT(collector.teletext(composed::kFirstService), IsEmpty());
}

/** Feeds the lines of teletext and reads pages as text. */
class TeletextTest : public testing::Test {
  protected:
    void push(const std::vector<Octets>& units) {
        const Octets payload = composed::teletextPayload(units);
        decoder.push(payload.data(), payload.size());
    }
    static std::string trimmed(const std::string& text) {
        return text.substr(0, text.find_last_not_of(' ') + 1);
    }
    std::string row(uint16_t page, size_t number, std::optional<uint16_t> subpage = {}) const {
        const auto rows = decoder.text(page, subpage);
        return number < rows.size() ? trimmed(rows[number]) : "none";
    }
    static composed::TeletextHeader header(uint16_t page, uint16_t subpage = 0) {
        return {page, subpage};
    }

    TeletextDecoder decoder;
};

TEST_F(TeletextTest, APageCountsWhenTheNextOneHasBegun) {
    push({composed::teletextHeader(header(0x100)), composed::teletextRow(0x100, 1, "one")});
    EXPECT_FALSE(decoder.page(0x100));
    composed::TeletextHeader other = header(0x200);
    other.serial = false;
    push({composed::teletextHeader(other)});
    EXPECT_FALSE(decoder.page(0x100)) << "the page of another magazine, in parallel";
    push({composed::teletextRow(0x100, 2, "two"), composed::teletextHeader(header(0x300))});
    EXPECT_EQ("one", row(0x100, 1));
    EXPECT_EQ("two", row(0x100, 2));
    EXPECT_TRUE(decoder.page(0x200));
    // What is cut off does not count.
    push({composed::teletextRow(0x300, 1, "lost")});
    decoder.interrupt();
    push({composed::teletextRow(0x300, 2, "lost"), composed::teletextHeader(header(0x1ff))});
    EXPECT_FALSE(decoder.page(0x300));
}

TEST_F(TeletextTest, APageIsErasedOrWrittenOver) {
    push({composed::teletextHeader(header(0x100)), composed::teletextRow(0x100, 1, "one"),
          composed::teletextRow(0x100, 2, "two"), composed::teletextHeader(header(0x1ff))});
    const uint64_t first = decoder.page(0x100)->version;
    composed::TeletextHeader update = header(0x100);
    update.erase = false;
    update.text = "another time";
    push({composed::teletextHeader(update), composed::teletextHeader(header(0x1ff))});
    EXPECT_EQ(first, decoder.page(0x100)->version) << "the header alone is no other page";
    push({composed::teletextHeader(update), composed::teletextRow(0x100, 2, "2"),
          composed::teletextHeader(header(0x1ff))});
    EXPECT_EQ("one", row(0x100, 1));
    EXPECT_EQ("2", row(0x100, 2));
    EXPECT_NE(first, decoder.page(0x100)->version);
    push({composed::teletextHeader(header(0x100)), composed::teletextHeader(header(0x1ff))});
    EXPECT_EQ("", row(0x100, 1)) << "a header only";
}

TEST_F(TeletextTest, DamageIsCorrectedOrLeavesWhatWasThere) {
    const Octets first = composed::teletextRow(0x100, 1, "Hello");
    push({composed::teletextHeader(header(0x100)), first, composed::teletextHeader(header(0x1ff))});
    // Address, framing code and units are 4 and 2 bytes.
    constexpr size_t kText = 4 + 2;
    Octets damaged = composed::teletextRow(0x100, 1, "Jolly");
    damaged[kText] ^= 0x01;
    damaged[4] ^= 0x10;
    composed::TeletextHeader update = header(0x100);
    update.erase = false;
    Octets head = composed::teletextHeader(update);
    head[kText + 1] ^= 0x04;
    push({head, damaged, composed::teletextHeader(header(0x1ff))});
    EXPECT_EQ("Holly", row(0x100, 1)) << "a single bit of an address is corrected";
    head[kText + 1] ^= 0x20;
    push({head, composed::teletextRow(0x100, 1, "Wrong"), composed::teletextHeader(header(0x1ff))});
    EXPECT_EQ("Holly", row(0x100, 1)) << "of a header without a page number";
}

TEST_F(TeletextTest, SubpagesHaveTheNumbersOfTheirCodes) {
    for (const uint16_t code : std::initializer_list<uint16_t>{0x01, 0x02, 0x12, 0x0b}) {
        push({composed::teletextHeader(header(0x100, code)),
              composed::teletextRow(0x100, 1, std::to_string(code))});
    }
    push({composed::teletextHeader(header(0x200)), composed::teletextHeader(header(0x2ff))});
    EXPECT_THAT(decoder.subpages(0x100), ElementsAre(0x01, 0x02, 0x0b, 0x12));
    EXPECT_EQ(12, decoder.subpageNumber(0x100, 0x0012));
    EXPECT_EQ(TeletextDecoder::kNoDecimal | 0x0b, decoder.subpageNumber(0x100, 0x000b));
    EXPECT_EQ(1, decoder.subpageNumber(0x200, 0));
    EXPECT_EQ("11", row(0x100, 1)) << "the latest";
    EXPECT_EQ("18", row(0x100, 1, 0x12));
    EXPECT_EQ("none", row(0x100, 1, 0x03));
}

TEST_F(TeletextTest, CharactersAreThoseOfTheCountryAndOfThePage) {
    const auto shown = [](const char* language, uint8_t national, const std::string& text,
                          const std::vector<Octets>& more = {}) {
        TeletextDecoder decoder(language);
        composed::TeletextHeader header;
        header.national = national;
        std::vector<Octets> units{composed::teletextHeader(header),
                                  composed::teletextRow(0x100, 1, text)};
        units.insert(units.end(), more.begin(), more.end());
        units.push_back(composed::teletextHeader({0x1ff}));
        const Octets payload = composed::teletextPayload(units);
        decoder.push(payload.data(), payload.size());
        return trimmed(decoder.text(0x100).at(1));
    };
    EXPECT_EQ("äöüß #$", shown("deu", 4, "{|}~ #$"));
    EXPECT_EQ("£ ¼", shown("eng", 0, "# {"));
    EXPECT_EQ("éàâ", shown("fra", 1, "#@{"));
    EXPECT_EQ("Привет", shown("rus", 1, "Priwet"));
    EXPECT_EQ("Αβγ", shown("ell", 7, "Abc"));
    EXPECT_EQ("A   b", shown("deu", 4,
                             "A\x11!\x07"
                             "b"))
            << "with a mosaic";
    // Packet 26 puts an acute accent over the letter in column 3: row 1, then the letter.
    const auto triplet = [](uint8_t address, uint8_t mode, uint8_t data) {
        const auto bits = static_cast<uint32_t>(address | mode << 6 | data << 11);
        // Hamming 24/18: the data in the places that are no powers of two.
        uint32_t word = 0;
        for (int bit = 0, place = 1; bit < 18; ++place) {
            if ((place & (place - 1)) == 0) continue;
            if ((bits >> bit++ & 1) != 0) word |= 1u << (place - 1);
        }
        for (int parity = 0; parity < 5; ++parity) {
            bool odd = true;
            for (int place = 1; place < 24; ++place) {
                if ((place >> parity & 1) != 0 && (word >> (place - 1) & 1) != 0) odd = !odd;
            }
            if (odd) word |= 1u << ((1 << parity) - 1);
        }
        if (__builtin_parity(word) == 0) word |= 1u << 23;
        return word;
    };
    Octets accents{composed::hamming(0)};
    for (const uint32_t word : {triplet(40 + 1, 0x04, 0), triplet(3, 0x12, 'c'),
                                triplet(0x3f, 0x1f, 7), triplet(0x3f, 0x1f, 7)}) {
        for (const int shift : {0, 8, 16}) accents.push_back(static_cast<uint8_t>(word >> shift));
    }
    while (accents.size() < 40) {
        const uint32_t end = triplet(0x3f, 0x1f, 7);
        for (const int shift : {0, 8, 16}) accents.push_back(static_cast<uint8_t>(end >> shift));
    }
    EXPECT_EQ("abcć", shown("deu", 4, "abcc", {composed::teletextPacket(0x100, 26, accents)}));
}

TEST_F(TeletextTest, MemoryIsBoundedAndTheOldestPagesGo) {
    constexpr uint16_t kCount = TeletextDecoder::kPageLimit + 100;
    // A code has seven bits and six.
    const auto code = [](uint16_t i) { return static_cast<uint16_t>((i & 0x7f) | i >> 7 << 8); };
    push({composed::teletextHeader(header(0x200))});
    for (uint16_t i = 0; i < kCount; ++i) {
        push({composed::teletextHeader(header(0x100, code(i))),
              composed::teletextRow(0x100, 1, std::to_string(i))});
        if (i % 1000 == 0) push({composed::teletextHeader(header(0x200))});
    }
    push({composed::teletextHeader(header(0x1ff))});
    EXPECT_THAT(decoder.subpages(0x100), SizeIs(TeletextDecoder::kPageLimit - 1));
    EXPECT_EQ("none", row(0x100, 1, code(0)));
    EXPECT_EQ(std::to_string(kCount - 1), row(0x100, 1));
    EXPECT_TRUE(decoder.page(0x200)) << "it came again";
}

TEST_F(TeletextTest, AnyBytesAreReadWithoutHarm) {
    std::minstd_rand random(1);
    const auto byte = [&] { return static_cast<uint8_t>(random() >> 8); };
    const Octets good = composed::teletextPayload(
            {composed::teletextHeader(header(0x1f0)), composed::teletextRow(0x1f0, 21, "abc"),
             composed::teletextHeader(header(0x1f1)), composed::teletextRow(0x1f1, 1, "def"),
             composed::teletextHeader(header(0x100)), composed::teletextRow(0x100, 26, "ghi"),
             composed::teletextRow(0x100, 28, "jkl"), composed::teletextHeader(header(0x1ff))});
    for (int i = 0; i < 3000; ++i) {
        Octets bytes = good;
        if (i % 2 == 0) {
            for (int n = 0; n < 8; ++n) bytes[random() % bytes.size()] = byte();
        } else {
            for (uint8_t& each : bytes) each = byte();
            bytes[0] = 0x10;
        }
        decoder.push(bytes.data(), random() % (bytes.size() + 1));
        if (i % 100 == 0) {
            for (const uint16_t page : decoder.pages()) decoder.text(page);
            decoder.top();
        }
    }
    push({composed::teletextHeader(header(0x100)), composed::teletextRow(0x100, 1, "still here"),
          composed::teletextHeader(header(0x1ff))});
    EXPECT_EQ("still here", row(0x100, 1));
}

TEST(StreamCollector, AMapMayChangeInTheMiddle) {
    composed::Options options;
    options.changeMap = true;
    Octets bytes = composed::dvb(options);
    StreamCollector collector;
    const size_t half = bytes.size() / kPacketSize / 2;
    collector.push({bytes.data(), half / 2, false});
    EXPECT_THAT(collector.facts().services.at(composed::kFirstService).components, SizeIs(5));
    uint32_t changes = 0;
    for (size_t i = half / 2; i < bytes.size() / kPacketSize; ++i) {
        changes |= collector.push({bytes.data() + i * kPacketSize, 1, false});
    }
    EXPECT_NE(0u, changes & kServicesChanged);
    const Service service = collector.facts().services.at(composed::kFirstService);
    EXPECT_EQ(1, *service.mapVersion);
    ASSERT_THAT(service.components, SizeIs(6));
    EXPECT_EQ(AudioRole::kVisuallyImpaired, service.components[2].role);
    EXPECT_TRUE(service.format) << "read again";
}

/** The tables of a stream with one service, as broadcasters send them who repair nothing. */
class OddTables : public testing::Test {
  protected:
    void add(uint16_t pid, const Octets& section) { packets.addSection(pid, section); }
    void associate(uint16_t networkPid, uint16_t streamId = kStream) {
        add(0, composed::section(
                       0, streamId,
                       Writer().u16(0).u16(0xe000 | networkPid).u16(kService).u16(0xe000 | kPmt)));
    }
    void map(uint8_t version, bool current, uint16_t picture) {
        add(kPmt,
            composed::section(
                    2, kService,
                    Writer().u16(0xe000 | picture).list({}).u8(2).u16(0xe000 | picture).list({}),
                    version, 0, 0, current));
    }
    void describe(uint16_t networkId) {
        const Octets named = composed::descriptor(0x48, Writer().u8(1).counted("").counted("One"));
        add(0x11,
            composed::section(0x42, kStream,
                              Writer().u16(networkId).u8(0xff).u16(kService).u8(0xfc).list(named)));
    }
    Octets network(uint16_t networkId, const Octets& descriptors) const {
        const Octets stream = Writer().u16(kStream).u16(networkId).list(descriptors);
        return composed::section(0x40, 1, Writer().list({}).list(stream));
    }
    Octets event(uint16_t streamId, uint16_t networkId) const {
        return composed::section(0x4e, kService,
                                 Writer().u16(streamId)
                                         .u16(networkId)
                                         .u16(0x004e)
                                         .u16(9)
                                         .u40(0xf069123000)
                                         .u24(0x010000)
                                         .u16(0));
    }
    uint32_t push() {
        const uint32_t changes = collector.push(batchOf(packets.bytes()));
        packets.bytes().clear();
        return changes;
    }
    Service service() const { return collector.facts().services.at(kService); }

    static constexpr uint16_t kStream = 7, kService = 5, kPmt = 0x30;
    composed::Packets packets;
    StreamCollector collector;
};

TEST_F(OddTables, WhatHoldsLaterChangesNothing) {
    associate(0x10);
    map(1, true, 0x100);
    push();
    EXPECT_EQ(0x100, service().components.at(0).pid);
    map(2, false, 0x200);
    map(1, true, 0x100);
    EXPECT_EQ(0u, push()) << "the map of now has not changed";
    map(2, true, 0x200);
    EXPECT_EQ(kServicesChanged, push());
    EXPECT_EQ(0x200, service().components.at(0).pid);
}

TEST_F(OddTables, TheNetworkTableIsWhereTheAssociationSays) {
    const Octets number = composed::descriptor(0x83, Writer().u16(kService).u16(0xfc00 | 12));
    associate(0x1f0);
    add(0x1f0, network(1, number));
    push();
    ASSERT_TRUE(service().number);
    EXPECT_EQ(12, service().number->number);
}

TEST_F(OddTables, NumbersOfAnotherNetworkIdCountIfThereAreNoOwn) {
    const auto numbered = [](uint16_t number) {
        return composed::descriptor(0x83, Writer().u16(kService).u16(0xfc00 | number));
    };
    associate(0x10);
    describe(20);
    add(0x10, network(21, numbered(9)));
    push();
    ASSERT_TRUE(service().number);
    EXPECT_EQ(9, service().number->number);
    const Octets both =
            Writer().u16(kStream).u16(20).list(numbered(10)).u16(kStream).u16(21).list(numbered(9));
    add(0x10, composed::section(0x40, 1, Writer().list({}).list(both), 1));
    push();
    EXPECT_EQ(10, service().number->number);
}

TEST_F(OddTables, NorthernNumbersOfTheSecondListComeFirst) {
    const Octets list = Writer().u16(kService).u16(0xfc00 | 11);
    const Octets second =
            composed::descriptor(0x87, Writer().u8(1).counted("List").text("NOR").counted(list));
    const Octets first = composed::descriptor(0x83, Writer().u16(kService).u16(0x8000 | 5000));
    const Octets specifier = composed::descriptor(0x5f, Writer().u32(0x29));
    associate(0x10);
    add(0x10, network(1, Writer().bytes(specifier).bytes(second).bytes(first)));
    push();
    ASSERT_TRUE(service().number);
    EXPECT_EQ(11, service().number->number);
}

TEST_F(OddTables, EventsOfThisStreamMayComeUnderOtherIds) {
    associate(0x10);
    add(0x12, event(8, 3));
    push();
    ASSERT_THAT(collector.events().events(collector.keyOf(kService)), SizeIs(1))
            << "a service without a description";
    EXPECT_EQ(collector.keyOf(kService), service().guideKey);
    describe(20);
    push();
    EXPECT_THAT(collector.events().events(collector.keyOf(kService)), SizeIs(1));
    add(0x12, event(kStream, 20));
    push();
    EXPECT_EQ((ServiceKey{20, kStream, kService}), collector.keyOf(kService)) << "its own ids";
}

TEST(StreamCollector, ChannelsOfAtscMayComeUnderAnotherId) {
    Octets bytes = composed::atsc();
    const Octets association = composed::section(
            0, 0x0123,
            Writer().u16(composed::kAtscFirst).u16(0xe030).u16(composed::kAtscSecond).u16(0xe040));
    composed::Packets packets;
    packets.addSection(0, association);
    for (size_t at = 0; at < bytes.size(); at += kPacketSize) {
        if (pidOf(bytes.data() + at) == 0) {
            std::copy(packets.bytes().begin(), packets.bytes().end(),
                      bytes.begin() + static_cast<std::ptrdiff_t>(at));
        }
    }
    StreamCollector collector;
    const StreamFacts facts = read(&collector, std::move(bytes));
    EXPECT_EQ(0x0123, facts.streamId);
    const Service& first = facts.services.at(composed::kAtscFirst);
    ASSERT_TRUE(first.channel);
    EXPECT_EQ(8, first.channel->major);
    EXPECT_THAT(collector.events().events(first.guideKey), testing::Not(IsEmpty()));
}

TEST(CaptionDecoder, PicturesCountInTheOrderInWhichTheyAreShown) {
    // Cleared, loaded with "ABCDEF", shown; a pair for each picture.
    const std::vector<std::pair<uint8_t, uint8_t>> pairs{{0x14, 0x20}, {0x14, 0x2e}, {0x14, 0x70},
                                                         {'A', 'B'},   {'C', 'D'},   {'E', 'F'},
                                                         {0x14, 0x2f}};
    const auto odd = [](uint8_t c) {
        return static_cast<uint8_t>(__builtin_parity(c) != 0 ? c : c | 0x80);
    };
    constexpr uint64_t kWrap = uint64_t{1} << 33, kFrame = 3003;
    CaptionDecoder decoder(CaptionCarrier::kMpeg2);
    // Two pictures between predicted ones; the clock wraps meanwhile.
    uint64_t decoding = kWrap - 3 * kFrame;
    for (const size_t picture : {0u, 3u, 1u, 2u, 6u, 4u, 5u}) {
        const Octets data{0,
                          0,
                          1,
                          0xb2,
                          'G',
                          'A',
                          '9',
                          '4',
                          3,
                          0x41,
                          0xff,
                          0xfc,
                          odd(pairs[picture].first),
                          odd(pairs[picture].second),
                          0xff};
        const uint64_t shown = kWrap - 2 * kFrame + picture * kFrame;
        decoder.push(data.data(), data.size(), shown % kWrap, decoding % kWrap);
        decoding += kFrame;
    }
    EXPECT_THAT(decoder.rows(1), IsEmpty());
    decoder.interrupt();
    EXPECT_THAT(decoder.rows(1), ElementsAre("ABCDEF"));
}

/** Feeds pairs of bytes of line 21 as pictures of MPEG-2 without times. */
class CaptionTest : public testing::Test {
  protected:
    using Pair = std::pair<uint8_t, uint8_t>;
    static uint8_t odd(uint8_t c) {
        return static_cast<uint8_t>(__builtin_parity(c) != 0 ? c : c | 0x80);
    }
    void picture(uint8_t field, uint8_t first, uint8_t second) {
        const auto kind = static_cast<uint8_t>(0xfc | field);
        const Octets data{0, 0,    1,    0xb2, 'G',   'A',    '9', '4',
                          3, 0x41, 0xff, kind, first, second, 0xff};
        decoder.push(data.data(), data.size(), std::nullopt, std::nullopt);
    }
    /** @param control the first byte of control codes: its channel and field */
    void popOn(uint8_t control, const std::string& text, uint8_t field = 0) {
        // Control codes come twice and count once.
        command(control, 0x20, field);
        command(control, 0x2e, field);
        picture(field, odd(control), odd(0x70));
        for (size_t i = 0; i < text.size(); i += 2) {
            picture(field, odd(static_cast<uint8_t>(text[i])),
                    odd(i + 1 < text.size() ? static_cast<uint8_t>(text[i + 1]) : uint8_t{0}));
        }
        command(control, 0x2f, field);
    }
    void command(uint8_t control, uint8_t code, uint8_t field = 0) {
        for (int i = 0; i < 2; ++i) picture(field, odd(control), odd(code));
    }

    CaptionDecoder decoder{CaptionCarrier::kMpeg2};
};

TEST_F(CaptionTest, ChannelsAreKeptApart) {
    popOn(0x14, "First");
    popOn(0x1c, "Second");
    popOn(0x15, "Third", 1);
    EXPECT_THAT(decoder.rows(1), ElementsAre("First"));
    EXPECT_THAT(decoder.rows(2), ElementsAre("Second"));
    EXPECT_THAT(decoder.rows(3), ElementsAre("Third"));
    EXPECT_THAT(decoder.rows(4), IsEmpty());
    EXPECT_EQ(7, decoder.channels());
    EXPECT_THAT(decoder.rows(0), IsEmpty());
    EXPECT_THAT(decoder.rows(9), IsEmpty());
}

TEST_F(CaptionTest, CaptionsAreClearedAndRollUp) {
    constexpr uint8_t kClear = 0x2c, kTwoRows = 0x25, kReturn = 0x2d;
    popOn(0x14, "Gone");
    const uint64_t before = decoder.changes();
    command(0x14, kClear);
    EXPECT_THAT(decoder.rows(1), IsEmpty());
    EXPECT_GT(decoder.changes(), before);
    command(0x14, kTwoRows);
    for (const char c : {'a', 'b', 'c'}) {
        command(0x14, kReturn);
        picture(0, odd(static_cast<uint8_t>(c)), odd(static_cast<uint8_t>(c)));
    }
    // A word is shown when it ends, by a pause at the latest.
    for (int i = 0; i < 3; ++i) picture(0, 0x80, 0x80);
    EXPECT_THAT(decoder.rows(1), ElementsAre("bb", "cc"));
}

TEST_F(CaptionTest, DamagedPairsHarmNothingElse) {
    popOn(0x14, "Before");
    for (int first = 0; first < 256; ++first) {
        // One of the two has the wrong parity.
        const auto byte = static_cast<uint8_t>(first);
        picture(0, static_cast<uint8_t>(odd(byte) ^ 0x80), odd('x'));
    }
    command(0x14, 0x2c);
    popOn(0x14, "After");
    EXPECT_THAT(decoder.rows(1), ElementsAre("After"));
}

TEST(CaptionDecoder, AnyBytesAreReadWithoutHarm) {
    std::minstd_rand random(2);
    for (const auto carrier :
         {CaptionCarrier::kMpeg2, CaptionCarrier::kH264, CaptionCarrier::kH265}) {
        CaptionDecoder decoder(carrier);
        for (int i = 0; i < 2000; ++i) {
            // A start code and the begin of captions, then anything.
            Octets bytes{0, 0, 1, 0xb2, 'G', 'A', '9', '4', 3, 0xdf, 0xff};
            if (carrier != CaptionCarrier::kMpeg2) {
                bytes = {0,    0,
                         1,    carrier == CaptionCarrier::kH264 ? uint8_t{6} : uint8_t{39 << 1},
                         4,    static_cast<uint8_t>(random() >> 8),
                         0xb5, 0,
                         0x31, 'G',
                         'A',  '9',
                         '4',  3,
                         0xdf, 0xff};
            }
            const size_t more = random() % 100;
            for (size_t n = 0; n < more; ++n) bytes.push_back(static_cast<uint8_t>(random() >> 8));
            const uint64_t time = random() % (uint64_t{1} << 33);
            decoder.push(bytes.data(), bytes.size(), time, i % 3 == 0 ? time : time - 5000);
            for (uint8_t channel = 1; channel <= CaptionDecoder::kChannels; ++channel) {
                for (const std::string& row : decoder.rows(channel)) EXPECT_LE(row.size(), 160u);
            }
        }
        decoder.interrupt();
    }
}

TEST(EventStore, ANewVersionReplacesItsSectionAndMemoryIsBounded) {
    const auto table = [](uint16_t service, uint8_t section, uint8_t last, uint16_t id,
                          size_t size) {
        EventTable events;
        events.tableId = 0x50;
        events.presentFollowing = false;
        events.extension = service;
        events.section = section;
        events.lastSection = last;
        events.segmentLastSection = section;
        Event event;
        event.id = id;
        event.start = id;
        event.texts.push_back({"eng", std::string(size, 'x')});
        events.events.push_back(event);
        return events;
    };
    EventStore store;
    const ServiceKey key{0, 0, 1};
    store.add(table(1, 0, 8, 1, 10));
    store.add(table(1, 8, 8, 2, 10));
    EXPECT_THAT(store.events(key), SizeIs(2));
    store.add(table(1, 0, 0, 3, 10));
    ASSERT_THAT(store.events(key), SizeIs(1)) << "the table has become shorter";
    EXPECT_EQ(3, store.events(key)[0].id);
    for (uint16_t i = 2; i < 60000; ++i) store.add(table(i, 0, 0, i, 1000));
    EXPECT_LE(store.size(), EventStore::kLimit);
    EXPECT_LT(store.services().size(), 60000u);
}

TEST(EventStore, EventsOfOneIdAreOneOnlyIfTheyAreThePresentOrBeginTogether) {
    const auto table = [](uint8_t id, uint8_t section, std::vector<int64_t> starts) {
        EventTable events;
        events.tableId = id;
        events.presentFollowing = id == 0x4e;
        events.extension = 1;
        events.section = section;
        events.lastSection = 16;
        events.segmentLastSection = section;
        for (const int64_t start : starts) {
            events.events.emplace_back();
            events.events.back().id = 7;
            events.events.back().start = start;
        }
        return events;
    };
    EventStore store;
    store.add(table(0x50, 0, {3600}));
    store.add(table(0x50, 8, {3600, 90000, 176400}));
    EXPECT_THAT(store.events({0, 0, 1}), SizeIs(3));
    store.add(table(0x4e, 0, {3900}));
    ASSERT_THAT(store.events({0, 0, 1}), SizeIs(3));
    EXPECT_EQ(3900, store.events({0, 0, 1})[0].start) << "it began later than the schedule has it";
}

/** A recorded stream: its services and the errors in it. */
struct Recorded {
    StreamFacts facts;
    uint32_t errors = 0;
    double seconds = 0;
};
Recorded recorded(Octets bytes) {
    StreamCollector collector;
    collector.push(batchOf(bytes));
    Recorded result;
    result.facts = collector.facts();
    result.seconds = collector.demux().seconds();
    for (uint16_t pid = 0; pid < kPids; ++pid) {
        const PidCounters& counters = collector.demux().counters(pid);
        result.errors += counters.continuityErrors + counters.sectionErrors;
    }
    return result;
}

TEST(ServiceStream, ARecordingHasOneServiceFromARandomAccessPointOn) {
    Octets bytes = composed::dvb();
    StreamCollector collector;
    collector.push(batchOf(bytes));
    const StreamFacts facts = collector.facts();
    ServiceStream stream(facts.streamId, facts.originalNetworkId,
                         facts.services.at(composed::kFirstService),
                         collector.mapSection(composed::kFirstService));
    Octets output;
    // From the middle of a group of pictures, and the file begins anew.
    const size_t count = bytes.size() / kPacketSize;
    stream.push({bytes.data() + count / 10 * kPacketSize, count / 2, false}, &output);
    stream.push({bytes.data(), count, true}, &output);
    const Recorded result = recorded(output);
    EXPECT_EQ(0u, result.errors);
    EXPECT_NEAR(5.8, result.seconds, 0.6) << "one clock";
    ASSERT_THAT(result.facts.services, SizeIs(1));
    const Service& service = result.facts.services.at(composed::kFirstService);
    EXPECT_EQ(composed::kFirstName, service.name());
    EXPECT_THAT(service.components, SizeIs(5));
    EXPECT_TRUE(service.format);
    EXPECT_NEAR(stream.seconds(), result.seconds, 0.1);
    // Association, map and description; then the picture.
    EXPECT_EQ(0x00, pidOf(output.data()));
    EXPECT_EQ(composed::kFirstPmt, pidOf(output.data() + kPacketSize));
    const uint8_t* picture = output.data() + 3 * kPacketSize;
    EXPECT_EQ(composed::kFirstVideo, pidOf(picture));
    EXPECT_EQ(0x40, picture[5] & 0x40) << "a random access point";
}

TEST(ServiceStream, TimesGoOnWhereTheSourceBeginsAnew) {
    composed::Options options;
    options.seconds = 2;
    options.clock = (uint64_t{1} << 33) - 90000;
    Octets bytes = composed::dvb(options);
    StreamCollector collector;
    collector.push(batchOf(bytes));
    const StreamFacts facts = collector.facts();
    ServiceStream stream(facts.streamId, facts.originalNetworkId,
                         facts.services.at(composed::kFirstService),
                         collector.mapSection(composed::kFirstService));
    Octets output;
    for (int turn = 0; turn < 3; ++turn) stream.push(batchOf(bytes, turn > 0), &output);
    Demux demux;
    std::optional<uint64_t> last;
    size_t pictures = 0;
    demux.filterPes(composed::kFirstVideo, [&](const PesPacket& packet) {
        ASSERT_TRUE(packet.presentation);
        if (last) {
            const uint64_t step = (*packet.presentation - *last) % (uint64_t{1} << 33);
            EXPECT_GE(step, 3600u) << pictures;
            EXPECT_LE(step, 3600u + 18000u) << pictures;
        }
        last = packet.presentation;
        ++pictures;
    });
    demux.push(batchOf(output));
    EXPECT_GE(pictures, 146u) << "the last one of each turn may be cut off";
    EXPECT_NEAR(6.3, demux.seconds(), 0.3);
    EXPECT_NEAR(6.3, stream.seconds(), 0.3);
}

TEST(ServiceStream, DamagedAndCutUnitsAreLeftOutAndRepeatedPacketsTakenOnce) {
    Octets bytes = composed::dvb();
    StreamCollector collector;
    collector.push(batchOf(bytes));
    const StreamFacts facts = collector.facts();
    const auto unitsOf = [&](Octets input, uint16_t pid) {
        ServiceStream stream(facts.streamId, facts.originalNetworkId,
                             facts.services.at(composed::kFirstService),
                             collector.mapSection(composed::kFirstService));
        Octets output;
        stream.push(batchOf(input), &output);
        stream.finish(&output);
        EXPECT_EQ(0u, recorded(output).errors);
        std::vector<Octets> units;
        Demux demux;
        demux.filterPes(pid, [&](const PesPacket& packet) {
            units.emplace_back(packet.data, packet.data + packet.size);
        });
        demux.push(batchOf(output));
        // The begin of another unit ends the last one of the pictures.
        composed::Packets end;
        end.addPes(pid, 0xe0, 0, {0});
        demux.push(batchOf(end.bytes(), true));
        return units;
    };
    for (const uint16_t pid : {composed::kFirstVideo, composed::kFirstAudio}) {
        const std::vector<Octets> all = unitsOf(bytes, pid);
        ASSERT_THAT(all, testing::Not(IsEmpty()));
        std::vector<size_t> rests;
        size_t last = 0;
        for (size_t at = 0; at < bytes.size(); at += kPacketSize) {
            if (pidOf(bytes.data() + at) != pid || (bytes[at + 3] & 0x10) == 0) continue;
            last = at;
            if ((bytes[at + 1] & 0x40) == 0) rests.push_back(at);
        }
        ASSERT_GT(rests.size(), 2u);
        const auto erased = [&](size_t at) {
            Octets lossy = bytes;
            const auto begin = lossy.begin() + static_cast<std::ptrdiff_t>(at);
            lossy.erase(begin, begin + kPacketSize);
            return lossy;
        };
        const std::vector<Octets> lossy = unitsOf(erased(rests[rests.size() / 2]), pid);
        if (pid == composed::kFirstVideo) {
            // Only pictures that need no other one take several packets here.
            EXPECT_LT(lossy.size(), all.size() - 1) << "up to the next random access point";
            EXPECT_EQ(all.back(), lossy.back());
            const std::vector<Octets> later = unitsOf(erased(rests[0]), pid);
            ASSERT_THAT(later, testing::Not(IsEmpty()));
            EXPECT_LT(later.size(), all.size() - 1) << "does not begin with what cannot be shown";
            EXPECT_EQ(all[all.size() - later.size()], later[0]);
        } else {
            EXPECT_EQ(all.size() - 1, lossy.size()) << "a unit without one of its packets";
        }
        for (const Octets& unit : lossy) EXPECT_THAT(all, testing::Contains(unit));

        Octets twice = bytes;
        const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(rests[1]);
        twice.insert(twice.begin() + static_cast<std::ptrdiff_t>(rests[1]), from,
                     from + kPacketSize);
        EXPECT_EQ(all, unitsOf(twice, pid));

        Octets shortened(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(last));
        const std::vector<Octets> begun = unitsOf(shortened, pid);
        EXPECT_LE(begun.size() + 1, all.size() + (pid == composed::kFirstVideo ? 1 : 0));
        for (const Octets& unit : begun) EXPECT_THAT(all, testing::Contains(unit));
    }
}

TEST(EmptyStream, IsAStreamWithoutErrors) {
    for (const bool radio : {false, true}) {
        EmptyStream stream(1, 2, 3, "Leerer Sender", "Niemand", radio, "deu");
        Octets bytes;
        for (uint32_t i = 0; i < 4 * EmptyStream::kFramesPerSecond; ++i) stream.frame(&bytes);
        const Recorded result = recorded(bytes);
        EXPECT_EQ(0u, result.errors);
        const Service& service = result.facts.services.at(3);
        EXPECT_EQ("Leerer Sender", service.name());
        EXPECT_EQ(radio, service.isRadio());
        EXPECT_EQ(radio, !service.format);
        EXPECT_NEAR(4, result.seconds, 0.3);
        EXPECT_EQ("deu", service.components.back().language);
        EXPECT_LT(bytes.size(), 4u * 20000);
    }
}

class ReceiverTest : public testing::Test {
  protected:
    ReceiverTest() {
        char path[] = "/tmp/streams-XXXXXX";
        if (mkdtemp(path) != nullptr) mDirectory = path;
    }
    ~ReceiverTest() override { std::filesystem::remove_all(mDirectory); }
    std::string mDirectory;
};

TEST_F(ReceiverTest, ALoopedFileIsOneStreamWithoutErrorsOrGrowth) {
    composed::writeFile(mDirectory + "/a.ts", composed::dvb());
    SourceOptions options;
    options.paced = false;
    StreamReceiver receiver("a.ts", mDirectory, options, {});
    ASSERT_TRUE(eventually([&] {
        const StreamFacts facts = receiver.facts();
        return facts.mapsComplete && facts.descriptionsComplete;
    }));
    receiver.watch({composed::kFirstService});
    std::mutex lock;
    Octets output;
    const auto number = receiver.addOutput(
            composed::kFirstService, [&](const std::vector<uint8_t>& packets, double) {
                std::lock_guard<std::mutex> guard(lock);
                if (output.size() < 4000000)
                    output.insert(output.end(), packets.begin(), packets.end());
            });
    ASSERT_TRUE(number);
    EXPECT_FALSE(receiver.addOutput(0x7777, [](const std::vector<uint8_t>&, double) {}));
    EXPECT_TRUE(eventually([&] {
        std::lock_guard<std::mutex> guard(lock);
        return output.size() > 2000000;
    }));
    receiver.removeOutput(*number);
    EXPECT_EQ(0u, receiver.counters(composed::kFirstVideo).continuityErrors);
    EXPECT_EQ("Erste Unterseite", [&] {
        const auto page = receiver.teletext(composed::kFirstService, 0x101, 1).page;
        return page ? std::string(page->rows[1].begin(), page->rows[1].begin() + 16) : "";
    }());
    const Recorded result = recorded(output);
    EXPECT_EQ(0u, result.errors);
    EXPECT_THAT(result.facts.services, SizeIs(1));
}

TEST_F(ReceiverTest, AnInspectionHasTheWholeFile) {
    Octets bytes = composed::dvb();
    // A packet of the picture is lost.
    for (size_t i = bytes.size() / kPacketSize / 2;; ++i) {
        uint8_t* packet = bytes.data() + i * kPacketSize;
        if (pidOf(packet) != composed::kFirstVideo) continue;
        bytes.erase(bytes.begin() + static_cast<long>(i * kPacketSize),
                    bytes.begin() + static_cast<long>((i + 1) * kPacketSize));
        break;
    }
    composed::writeFile(mDirectory + "/a.ts", bytes);
    const Inspection inspection = inspect(mDirectory + "/a.ts");
    EXPECT_EQ(bytes.size() / kPacketSize, inspection.packets);
    EXPECT_NEAR(4, inspection.seconds, 0.2);
    EXPECT_THAT(inspection.facts.services, SizeIs(2));
    for (const PidFacts& pid : inspection.pids) {
        EXPECT_EQ(pid.pid == composed::kFirstVideo ? 1u : 0u, pid.continuityErrors) << pid.pid;
        if (pid.pid == composed::kFirstAudio) {
            EXPECT_GT(pid.bitsPerSecond, 20000u);
        }
    }
    composed::writeFile(mDirectory + "/b.ts", Octets(10000, 1));
    EXPECT_THROW(inspect(mDirectory + "/b.ts"), std::runtime_error);
    EXPECT_THROW(inspect(mDirectory + "/c.ts"), std::runtime_error);
}

}  // namespace
