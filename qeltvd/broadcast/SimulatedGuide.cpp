#include "SimulatedGuide.h"

#include <algorithm>

#include "Days.h"
#include "Random.h"
#include "layouts/channel_records.h"

namespace qeltvd {

namespace {

/** Days until an event id comes again, and numbers of events of a day. */
constexpr int64_t kDayPeriod = 512;
constexpr unsigned kIndexBits = 7;

/** Bits of the content of a rating. */
constexpr uint8_t kDialogue = 1, kLanguage = 2, kSex = 4, kViolence = 8;

struct Programme {
    const char* title;
    const char* synopsis;
    uint8_t genre;
    /** Minutes. */
    uint16_t length;
    uint8_t age;
    uint8_t content;
    bool series;
    bool children;
    /** False: it has no rating. */
    bool rated;
};

constexpr Programme kTelevision[] = {
        {"Morning Bulletin", "News, weather and traffic to begin the day.", QELTV_GENRE_NEWS, 30, 0,
         0, false, false, false},
        {"The World at Noon", "Correspondents report what the morning has brought.",
         QELTV_GENRE_NEWS, 15, 0, 0, false, false, false},
        {"News at Eight", "The most important of the day in a quarter of an hour.",
         QELTV_GENRE_NEWS, 15, 0, 0, false, false, false},
        {"Late Edition", "What was, and what it means: with guests in the studio.",
         QELTV_GENRE_NEWS, 30, 0, 0, false, false, false},
        {"Harbour Street", "The people of a small street by the harbour, and their secrets.",
         QELTV_GENRE_FILM, 45, 7, kDialogue, true, false, true},
        {"Inspector Lindqvist", "A death in the archipelago takes the inspector back to her youth.",
         QELTV_GENRE_FILM, 90, 12, kLanguage | kViolence, true, false, true},
        {"Ward Seven", "Night shift in a hospital in which nothing goes to plan.", QELTV_GENRE_FILM,
         45, 12, kDialogue, true, false, true},
        {"The Long Crossing", "Two strangers and a stolen lorry on the road to the sea.",
         QELTV_GENRE_FILM, 105, 12, kLanguage, false, false, true},
        {"Ashes of the North", "A war has ended; what it did to a village has not.",
         QELTV_GENRE_FILM, 120, 16, kLanguage | kViolence, false, false, true},
        {"Midnight Ledger", "An accountant finds a number that should not be there.",
         QELTV_GENRE_FILM, 105, 16, kSex | kViolence, false, false, true},
        {"The Red Room", "Nobody who has slept in the room wants to tell what happened.",
         QELTV_GENRE_FILM, 90, 18, kSex | kViolence | kLanguage, false, false, true},
        {"A Summer in Crete", "Three generations, one house and no running water.",
         QELTV_GENRE_FILM, 90, 0, 0, false, false, true},
        {"Quiz of the Nation", "Eight candidates, one chair and the question about everything.",
         QELTV_GENRE_SHOW, 60, 0, 0, true, false, true},
        {"Saturday Stage", "Music, magic and people who can do what nobody else can.",
         QELTV_GENRE_SHOW, 120, 0, 0, false, false, true},
        {"Round the Table", "Four guests talk about what moves the country.", QELTV_GENRE_SOCIETY,
         60, 0, 0, false, false, false},
        {"Matchday", "All games, all goals and the table after the weekend.", QELTV_GENRE_SPORT,
         105, 0, 0, false, false, true},
        {"On the Ice", "The semi-finals, live from the sold-out hall.", QELTV_GENRE_SPORT, 120, 0,
         0, false, false, true},
        {"Peloton", "Two hundred kilometres and the last climb decides.", QELTV_GENRE_SPORT, 60, 0,
         0, false, false, true},
        {"Pip and the Moon", "Pip has lost a shoe, and the moon has seen where.",
         QELTV_GENRE_CHILDREN, 15, 0, 0, true, true, true},
        {"The Tinkerers", "Nora and Sam build a submarine out of what the attic has.",
         QELTV_GENRE_CHILDREN, 30, 7, 0, true, true, true},
        {"Dragon School", "First lesson: do not set fire to the teacher.", QELTV_GENRE_CHILDREN, 25,
         7, kViolence, true, true, true},
        {"Deep Water", "Animals of which nobody knew until a lamp sank to them.",
         QELTV_GENRE_SCIENCE, 45, 0, 0, true, false, true},
        {"How It Holds", "Bridges, glue and knots: why things do not fall apart.",
         QELTV_GENRE_SCIENCE, 30, 0, 0, true, false, true},
        {"Roots of Cities", "What lies under the pavement of an old town.", QELTV_GENRE_SCIENCE, 45,
         0, 0, true, false, true},
        {"The Painter's Eye", "One picture, one hour, and everything that is in it.",
         QELTV_GENRE_ARTS, 60, 0, 0, false, false, true},
        {"Kitchen of the Alps", "Recipes from four valleys and one very old stove.",
         QELTV_GENRE_LEISURE, 30, 0, 0, true, false, true},
        {"Green Thumb", "What the garden needs this month, and what it does not.",
         QELTV_GENRE_LEISURE, 30, 0, 0, true, false, true},
        {"By Night Train", "From one end of the continent to the other, asleep.",
         QELTV_GENRE_LEISURE, 45, 0, 0, true, false, true},
        {"Concert from the Dome", "The radio orchestra plays the Sixth.", QELTV_GENRE_MUSIC, 90, 0,
         0, false, false, true},
};

constexpr Programme kRadio[] = {
        {"News on the Hour", "The news, and the weather for the region.", QELTV_GENRE_NEWS, 15, 0,
         0, false, false, false},
        {"Breakfast Radio", "Music and talk until the coffee works.", QELTV_GENRE_MUSIC, 120, 0, 0,
         true, false, false},
        {"The Record Shelf", "Listeners bring the record of their life.", QELTV_GENRE_MUSIC, 60, 0,
         0, true, false, false},
        {"Evening Concert", "Recorded in the concert house last season.", QELTV_GENRE_MUSIC, 105, 0,
         0, false, false, false},
        {"The Radio Play", "A voice on the telephone, and it is one's own.", QELTV_GENRE_ARTS, 60,
         12, kViolence, false, false, true},
        {"Question Time", "Experts answer what listeners want to know.", QELTV_GENRE_SOCIETY, 45, 0,
         0, true, false, false},
        {"Night Line", "Slow music, few words.", QELTV_GENRE_MUSIC, 120, 0, 0, false, false, false},
};

constexpr uint32_t kTelevisionCount = sizeof(kTelevision) / sizeof(kTelevision[0]);
constexpr uint32_t kRadioCount = sizeof(kRadio) / sizeof(kRadio[0]);

/** An event before its texts are made. */
struct Scheduled {
    const Programme* programme;
    uint16_t id;
    int64_t start;
    uint32_t duration;
    uint16_t series;
    uint16_t episode;
    uint16_t flags;

    int64_t end() const { return start + duration; }
};

/** What a channel broadcasts on a day. */
std::vector<Scheduled> scheduleOf(const Channel& channel, int64_t day) {
    if (channel.type == ServiceType::kData) return {};
    const bool radio = channel.type == ServiceType::kRadio;
    const bool scrambled = (channel.flags & CHANNEL_FLAG_SCRAMBLED) != 0;
    Random random(uint64_t{channel.channelId} * 0x9e3779b97f4a7c15 ^ static_cast<uint64_t>(day));
    std::vector<Scheduled> events;
    constexpr int kMinutes = 1440;
    size_t last = SIZE_MAX;
    for (int minute = 0; minute < kMinutes;) {
        size_t index = random.below(radio ? kRadioCount : kTelevisionCount);
        const Programme* programme = radio ? &kRadio[index] : &kTelevision[index];
        // Not for adults before 21 o'clock, not for small children after it, nothing twice running.
        const bool late = minute < 4 * 60 || minute >= 21 * 60;
        for (int again = 0; again < 8 && (index == last || (!late && programme->age >= 16) ||
                                          (late && programme->children));
             ++again) {
            index = (index + 1) % (radio ? kRadioCount : kTelevisionCount);
            programme = radio ? &kRadio[index] : &kTelevision[index];
        }
        last = index;
        int length = programme->length;
        // The last one of the day fills what would be too short for another one.
        if (kMinutes - minute - length < 15) length = kMinutes - minute;

        const uint64_t traits = random.next();
        Scheduled event{};
        event.programme = programme;
        event.id =
                static_cast<uint16_t>(((day % kDayPeriod + kDayPeriod) % kDayPeriod) << kIndexBits |
                                      static_cast<int64_t>(events.size() + 1));
        event.start = day * kDay + minute * 60;
        event.duration = static_cast<uint32_t>(length * 60);
        if (programme->series) {
            // Programmes of radio are counted behind those of television.
            event.series = static_cast<uint16_t>((radio ? kTelevisionCount : 0) + index + 1);
            event.episode = static_cast<uint16_t>(1 + random.below(240));
        }
        if (!radio && traits % 3 != 0) event.flags |= QELTV_EVENT_SUBTITLES;
        if (!radio && (traits >> 8) % 2 != 0) event.flags |= QELTV_EVENT_HD;
        if (!radio && (traits >> 16) % 6 == 0) event.flags |= QELTV_EVENT_AUDIO_DESCRIPTION;
        if (scrambled) event.flags |= QELTV_EVENT_SCRAMBLED;
        events.push_back(event);
        minute += length;
    }
    return events;
}

std::string extendedOf(const Event& event) {
    std::string text = event.title + " (" + nameOfGenre(event.genre) + ", " +
                       std::to_string(event.duration / 60) + " minutes). " + event.details;
    if ((event.flags & QELTV_EVENT_SUBTITLES) != 0) text += " With subtitles.";
    if ((event.flags & QELTV_EVENT_AUDIO_DESCRIPTION) != 0) text += " With audio description.";
    if ((event.flags & QELTV_EVENT_HD) != 0) text += " In high definition.";
    return text;
}

Event eventOf(const Channel& channel, const Scheduled& scheduled) {
    constexpr uint8_t kMpeg = 1, kAc3 = 2, kStereo = 2, kSurround = 6;
    const Programme& programme = *scheduled.programme;
    Event event;
    event.channelId = channel.channelId;
    event.id = scheduled.id;
    event.start = scheduled.start;
    event.duration = scheduled.duration;
    event.genre = programme.genre;
    event.flags = scheduled.flags;
    event.series = scheduled.series;
    event.episode = scheduled.episode;
    event.rating = {programme.age, programme.rated,
                    programme.genre == QELTV_GENRE_FILM && !programme.series, programme.children,
                    programme.content};
    event.language = "eng";
    event.title = programme.title;
    event.details = programme.synopsis;
    if (event.series != 0) event.details += " Episode " + std::to_string(event.episode) + ".";
    event.extended = extendedOf(event);
    const std::string base = "crid://television.example/" + std::to_string(channel.channelId);
    event.reference = base + "/" + std::to_string(event.start);
    if (event.series != 0) event.seriesReference = base + "/series/" + std::to_string(event.series);
    const bool hd = (event.flags & QELTV_EVENT_HD) != 0;
    event.sounds.push_back({"eng", hd ? kAc3 : kMpeg, hd ? kSurround : kStereo, false});
    if ((event.flags & QELTV_EVENT_AUDIO_DESCRIPTION) != 0) {
        event.sounds.push_back({"eng", kMpeg, kStereo, true});
    }
    return event;
}

}  // namespace

int64_t SimulatedGuide::begin(int64_t now) {
    return (dayOf(now) - QELTV_GUIDE_DAYS_BACK) * kDay;
}

int64_t SimulatedGuide::end(int64_t now) {
    return (dayOf(now) + QELTV_GUIDE_DAYS_AHEAD + 1) * kDay;
}

std::vector<Event> SimulatedGuide::events(const Channel& channel, int64_t from, int64_t to,
                                          int64_t now) {
    from = std::max(from, begin(now));
    to = std::min(to, end(now));
    std::vector<Event> events;
    for (int64_t day = dayOf(from); from < to && day * kDay < to; ++day) {
        for (const Scheduled& event : scheduleOf(channel, day)) {
            if (event.start < to && event.end() > from) events.push_back(eventOf(channel, event));
        }
    }
    return events;
}

std::optional<Event> SimulatedGuide::event(const Channel& channel, uint16_t id, int64_t now) {
    const int64_t today = dayOf(now);
    int64_t ahead = ((id >> kIndexBits) - today % kDayPeriod) % kDayPeriod;
    if (ahead < -kDayPeriod / 2) ahead += kDayPeriod;
    if (ahead >= kDayPeriod / 2) ahead -= kDayPeriod;
    const int64_t day = today + ahead;
    if (day * kDay < begin(now) || day * kDay >= end(now)) return std::nullopt;
    for (const Scheduled& event : scheduleOf(channel, day)) {
        if (event.id == id) return eventOf(channel, event);
    }
    return std::nullopt;
}

}  // namespace qeltvd
