// What the broadcast gives the models, simulated and from streams.

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "Broadcast.h"
#include "StreamEvents.h"
#include "eventually.h"
#include "stream_composer.h"

using namespace qeltvd;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

Event received(const stream::Event& event, const EventContext& context = {}) {
    return eventOf({}, event, context);
}

Rating rated(std::vector<stream::AdvisoryRating> advisories) {
    stream::Event event;
    event.advisories = std::move(advisories);
    return received(event).rating;
}

TEST(StreamEvents, AreRatedAsTheBroadcasterDoes) {
    stream::Event event;
    EXPECT_FALSE(received(event).rating.known);
    event.ratings = {{"DEU", 0}, {"AUT", 0x10}, {"FRA", 9}, {"DEU", 13}};
    const Event aged = received(event);
    EXPECT_TRUE(aged.rating.known);
    EXPECT_EQ(12, aged.rating.age);
    EXPECT_FALSE(aged.rating.system);
    ASSERT_THAT(aged.ages, SizeIs(2)) << "values of a broadcaster's own are no ages";
    EXPECT_EQ("DEU", aged.ages[1].country);
    EXPECT_EQ(16, aged.ages[1].age);

    // TV-14-LV: dimensions 0, 2 and 4 of region 1.
    const Rating fourteen = rated({{1, 0, 4}, {1, 2, 1}, {1, 4, 1}});
    EXPECT_EQ(RatingSystem::kUnitedStates, fourteen.system);
    EXPECT_EQ(14, fourteen.age);
    EXPECT_EQ(2 | 8, fourteen.content);
    EXPECT_FALSE(fourteen.film || fourteen.children);
    const Rating fantasy = rated({{1, 5, 2}, {1, 6, 1}});
    EXPECT_TRUE(fantasy.known && fantasy.children);
    EXPECT_EQ(7, fantasy.age);
    EXPECT_EQ(8, fantasy.content);
    EXPECT_TRUE(rated({{1, 7, 5}}).film);
    EXPECT_FALSE(rated({{1, 7, 8}}).known) << "not rated";
    EXPECT_FALSE(rated({{1, 0, 200}}).known) << "no value of the table";
    const Rating canada = rated({{2, 0, 5}, {2, 1, 3}});
    EXPECT_EQ(RatingSystem::kCanada, canada.system);
    EXPECT_EQ(14, canada.age);
    EXPECT_FALSE(rated({{5, 0, 1}}).system) << "a region whose table is downloaded";
}

TEST(StreamEvents, HaveTextsComponentsAndReferences) {
    stream::Event event;
    event.contents = {0xb1, 0x43};
    event.texts = {{"deu", "Titel", "Kurz", "lang", {{"Regie", "A"}}},
                   {"eng", "Title", "", "", {}}};
    event.components = {{1, 0x01, 0x0b, "deu", ""},
                        {2, 0x02, 0x40, "deu", ""},
                        {3, 0x04, 0x44, "eng", ""},
                        {4, 0x03, 0x20, "deu", ""}};
    event.seriesCrid = "/serie";
    EventContext context;
    context.authority = "sender.example";
    const Event whole = received(event, context);
    EXPECT_EQ(QELTV_GENRE_SPORT, whole.genre) << "the first that is a genre";
    EXPECT_EQ("Titel", whole.title);
    EXPECT_EQ("Kurz", whole.details);
    EXPECT_EQ("Regie: A\nlang", whole.extended);
    EXPECT_EQ("deu", whole.language);
    EXPECT_EQ(QELTV_EVENT_HD | QELTV_EVENT_AUDIO_DESCRIPTION | QELTV_EVENT_SUBTITLES, whole.flags);
    ASSERT_THAT(whole.sounds, SizeIs(2));
    EXPECT_EQ("eng", whole.sounds[0].language) << "description comes last";
    EXPECT_EQ(6, whole.sounds[0].channels);
    EXPECT_EQ("crid://sender.example/serie", whole.seriesReference);
    EXPECT_NE(0, whole.series);
    context.atsc = true;
    EXPECT_EQ("lang", received(event, context).details);

    // The preferred language, by either of its codes, if there is a title in it.
    context.language = "eng";
    EXPECT_EQ("Title", received(event, context).title);
    EXPECT_EQ("lang", received(event, context).details) << "of the only language that has some";
    context.language = "ger";
    EXPECT_EQ("Titel", received(event, context).title);
    context.language = "fra";
    EXPECT_EQ("Titel", received(event, context).title);
    event.texts[0].title.clear();
    EXPECT_EQ("Title", received(event, context).title) << "one that is not known";
}

class BroadcastTest : public testing::Test {
  protected:
    BroadcastTest() {
        setenv("QELTVD_SCAN_TABLES", "/nonexistent", 1);
        std::filesystem::create_directory(directory);
        composed::Options options;
        options.time = composed::kTime;
        composed::writeFile(directory + "/dvb.ts", composed::dvb(options));
    }
    ~BroadcastTest() override { std::filesystem::remove_all(directory); }

    std::string table(const std::string& text) const {
        std::ofstream(directory + "/own") << text;
        return directory + "/own";
    }

    const std::string directory = testing::TempDir() + "broadcast_" + std::to_string(getpid());
    Timers timers;
};

TEST_F(BroadcastTest, PutsAStreamInPlaceOfWhatIsSimulatedAtItsFrequency) {
    // Berlin has a transponder there.
    Broadcast broadcast(timers, {table("[A]\nDELIVERY_SYSTEM = DVBT\nFREQUENCY = 506100000\n"
                                       "STREAM = dvb.ts\n")});
    const auto regions = broadcast.regions("dvb-t/de-Berlin");
    ASSERT_THAT(regions, SizeIs(2));
    ASSERT_THAT(regions[0].multiplexes, SizeIs(1));
    EXPECT_THAT(regions[1].multiplexes, SizeIs(3));
    EXPECT_NE(broadcast.nameOf("dvb-t/de-Berlin"), Broadcast(timers).nameOf("dvb-t/de-Berlin"));
    Multiplex close = regions[0].multiplexes[0];
    close.frequencyHz -= 100000;
    EXPECT_NE(nullptr, broadcast.streamOf(close));
    EXPECT_EQ(nullptr, broadcast.streamOf(regions[1].multiplexes[0]));
    // The same stream over another reading.
    const auto stream = broadcast.streamOf(close);
    broadcast.regions("dvb-t/de-Berlin");
    EXPECT_EQ(stream, broadcast.streamOf(close));
}

TEST_F(BroadcastTest, TwoSatellitesHaveStreamsOnTheSameFrequency) {
    const auto satellite = [&](const std::string& name) {
        std::ofstream(directory + "/" + name)
                << "[A]\nDELIVERY_SYSTEM = DVBS\nFREQUENCY = 11914000\n"
                   "POLARIZATION = HORIZONTAL\nSYMBOL_RATE = 27500000\nSTREAM = dvb.ts\n";
        return directory + "/" + name;
    };
    Broadcast broadcast(timers, {satellite("Own-19.2E"), satellite("Own-13.0E")});
    const auto regions = broadcast.regions("dvb-t/de-Berlin");
    ASSERT_THAT(regions, SizeIs(3));
    Multiplex east = regions[0].multiplexes[0], west = regions[1].multiplexes[0];
    ASSERT_NE(nullptr, broadcast.streamOf(east));
    ASSERT_NE(nullptr, broadcast.streamOf(west));
    EXPECT_NE(broadcast.streamOf(east), broadcast.streamOf(west));
    // The channel data names satellites by their records.
    const auto of13 = broadcast.streamOf(west);
    east.position = west.position = 0;
    east.satellite = 1;
    west.satellite = 2;
    Satellite first, second;
    first.recordId = 1;
    first.position = 192;
    second.recordId = 2;
    second.position = 130;
    broadcast.setSatellites({first, second});
    EXPECT_EQ(of13, broadcast.streamOf(west));
    EXPECT_NE(of13, broadcast.streamOf(east));
    east.satellite = 3;
    EXPECT_EQ(nullptr, broadcast.streamOf(east)) << "a satellite without a stream";
}

TEST_F(BroadcastTest, RefusesATableThatIsNone) {
    EXPECT_THROW(Broadcast(timers, {directory + "/missing"}), std::runtime_error);
    EXPECT_THROW(Broadcast(timers, {directory}), std::runtime_error);
    EXPECT_THROW(Broadcast(timers, {table("no transponder\n")}), std::runtime_error);
}

TEST_F(BroadcastTest, AReceivedClockNeverGoesBackAndEndsWithTheReception) {
    Broadcast broadcast(timers, {table("[A]\nDELIVERY_SYSTEM = DVBT\nFREQUENCY = 474000000\n"
                                       "STREAM = dvb.ts\n")});
    const auto regions = broadcast.regions("");
    const Multiplex& multiplex = regions[0].multiplexes[0];
    const auto signals = broadcast.of(multiplex);
    const Survey survey = signals->survey(regions[0], multiplex, [] { return true; });
    ASSERT_TRUE(survey.signal);
    EXPECT_THAT(survey.services, SizeIs(2));
    EXPECT_FALSE(signals->time()) << "nobody receives it";
    auto tuning = signals->tune(survey.services[0]);
    int64_t last = 0;
    // It is four seconds long.
    EXPECT_TRUE(eventually([&] {
        const int64_t now = signals->time().value_or(0);
        EXPECT_GE(now, last);
        last = now;
        return now >= (composed::kTime + 6) * 1000;
    }));
    EXPECT_LT(last, (composed::kTime + 60) * 1000);
    EXPECT_THAT(broadcast.received(), SizeIs(1));
    tuning.reset();
    EXPECT_FALSE(signals->time());
    EXPECT_THAT(broadcast.received(), IsEmpty());
}

}  // namespace
