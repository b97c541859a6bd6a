#include <gmock/gmock.h>

#include <filesystem>

#include "EmptyStream.h"
#include "ServiceStream.h"
#include "StreamCollector.h"
#include "StreamInspection.h"
#include "StreamReceiver.h"
#include "eventually.h"
#include "stream_composer.h"

using namespace qeltvd::stream;
using composed::Octets;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

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
    EXPECT_EQ(nullptr, collector.teletext(composed::kFirstService));
    collector.watch({composed::kFirstService});
    read(&collector, composed::dvb());
    const TeletextDecoder* text = collector.teletext(composed::kFirstService);
    ASSERT_NE(nullptr, text);
    EXPECT_THAT(text->pages(), ElementsAre(0x100, 0x101, 0x888));
    EXPECT_THAT(text->subpages(0x101), ElementsAre(1, 2));
    const auto page = text->page(0x101, 1);
    ASSERT_TRUE(page);
    EXPECT_EQ("Erste Unterseite", std::string(page->rows[1].begin(), page->rows[1].begin() + 16));
    EXPECT_EQ(4, page->national);
    EXPECT_TRUE(text->page(0x888)->subtitle);
    EXPECT_FALSE(text->page(0x102));
    EXPECT_THAT(text->text(0x100).at(0), HasSubstr("Küstentext"));
    const auto top = text->top();
    ASSERT_THAT(top, SizeIs(2));
    EXPECT_EQ(0x100, top[0].number);
    EXPECT_EQ(1, top[0].level);
    EXPECT_EQ(3, top[1].level);
    collector.watch({});
    EXPECT_EQ(nullptr, collector.teletext(composed::kFirstService));
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
    EXPECT_THAT(decoder.rows(1), testing::IsEmpty());
    decoder.interrupt();
    EXPECT_THAT(decoder.rows(1), ElementsAre("ABCDEF"));
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
    EXPECT_GE(pictures, 148u);
    EXPECT_NEAR(6.3, demux.seconds(), 0.3);
    EXPECT_NEAR(6.3, stream.seconds(), 0.3);
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
        const auto page = receiver.teletextPage(composed::kFirstService, 0x101, 1);
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
