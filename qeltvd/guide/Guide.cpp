#define LOG_TAG "qeltvd"

#include "Guide.h"

#include <algorithm>
#include <cctype>

#include "Code.h"

namespace qeltvd {

namespace {

constexpr int64_t kDay = 86400;
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

constexpr size_t kTelevisionCount = sizeof(kTelevision) / sizeof(kTelevision[0]);
constexpr size_t kRadioCount = sizeof(kRadio) / sizeof(kRadio[0]);

/** Programmes of radio are counted behind those of television. */
const Programme& programmeOf(const Event& event) {
    return event.programme < kTelevisionCount ? kTelevision[event.programme]
                                              : kRadio[event.programme - kTelevisionCount];
}

class Splitmix {
  public:
    explicit Splitmix(uint64_t state) : mState(state) {}
    uint64_t next() {
        uint64_t z = mState += 0x9e3779b97f4a7c15;
        z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9;
        z = (z ^ z >> 27) * 0x94d049bb133111eb;
        return z ^ z >> 31;
    }
    size_t below(size_t bound) { return static_cast<size_t>(next() % bound); }

  private:
    uint64_t mState;
};

int64_t dayOf(int64_t time) {
    return time >= 0 ? time / kDay : (time - kDay + 1) / kDay;
}

std::string lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

std::vector<Event> scheduleOf(uint32_t channelId, ServiceType type, bool scrambled, int64_t day) {
    if (type == ServiceType::kData) return {};
    const bool radio = type == ServiceType::kRadio;
    Splitmix random(uint64_t{channelId} * 0x9e3779b97f4a7c15 ^ static_cast<uint64_t>(day));
    std::vector<Event> events;
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
        Event event;
        event.channelId = channelId;
        event.id =
                static_cast<uint16_t>(((day % kDayPeriod + kDayPeriod) % kDayPeriod) << kIndexBits |
                                      static_cast<int64_t>(events.size() + 1));
        event.start = day * kDay + minute * 60;
        event.duration = static_cast<uint32_t>(length * 60);
        event.genre = programme->genre;
        event.programme = radio ? kTelevisionCount + index : index;
        event.rating = {programme->age, programme->rated,
                        programme->genre == QELTV_GENRE_FILM && !programme->series,
                        programme->children, programme->content};
        if (programme->series) {
            event.series = static_cast<uint16_t>(event.programme + 1);
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

std::string titleOf(const Event& event) {
    return programmeOf(event).title;
}

std::string detailsOf(const Event& event) {
    std::string text = programmeOf(event).synopsis;
    if (event.series != 0) text += " Episode " + std::to_string(event.episode) + ".";
    return text;
}

std::string extendedOf(const Event& event) {
    const Programme& programme = programmeOf(event);
    std::string text = std::string(programme.title) + " (" + nameOfGenre(event.genre) + ", " +
                       std::to_string(event.duration / 60) + " minutes). " + detailsOf(event);
    if ((event.flags & QELTV_EVENT_SUBTITLES) != 0) text += " With subtitles.";
    if ((event.flags & QELTV_EVENT_AUDIO_DESCRIPTION) != 0) text += " With audio description.";
    if ((event.flags & QELTV_EVENT_HD) != 0) text += " In high definition.";
    return text;
}

std::string guidanceOf(const Event& event) {
    constexpr const char* kWords[] = {"suggestive dialogue", "strong language", "sexual scenes",
                                      "violence"};
    std::string text;
    for (unsigned bit = 0; bit < 4; ++bit) {
        if ((event.rating.content >> bit & 1) == 0) continue;
        text += (text.empty() ? "Contains " : ", ") + std::string(kWords[bit]);
    }
    return text.empty() ? text : text + ".";
}

const char* nameOfGenre(uint8_t genre) {
    constexpr const char* kNames[] = {"",      "film", "news",    "show",    "sport",  "children",
                                      "music", "arts", "society", "science", "leisure"};
    return genre < sizeof(kNames) / sizeof(kNames[0]) ? kNames[genre] : "";
}

Guide::Guide(Timers& timers, ChannelDatabase& channels, Clock& clock, PinLock& pin,
             Ratings& ratings, Notifier& notifier)
        : mChannels(channels),
          mClock(clock),
          mRatings(ratings),
          mNotifier(notifier),
          mLastLook(clock.now()),
          mAlarm(timers, "following the programme", [this] { ring(); }) {
    clock.addListener([this] {
        refresh();
        callListener();
    });
    pin.addListener([this] { unlock(); });
    ratings.addListener([this] { blockingChanged(); });
    channels.addListener([this](const ChannelChange& change) {
        if (change.kind == ChannelChange::kCurrent) refresh();
    });
    refresh();
}

void Guide::setListener(std::function<void()> listener) {
    std::lock_guard<std::mutex> guard(mListenerLock);
    mListener = std::move(listener);
}

void Guide::callListener() {
    std::lock_guard<std::mutex> guard(mListenerLock);
    if (mListener) mListener();
}

void Guide::show(uint32_t path, uint32_t channelId) {
    {
        std::lock_guard<std::mutex> guard(mLock);
        mShown[path] = channelId;
    }
    refresh();
}

int64_t Guide::begin() const {
    return (dayOf(mClock.now()) - QELTV_GUIDE_DAYS_BACK) * kDay;
}

int64_t Guide::end() const {
    return (dayOf(mClock.now()) + QELTV_GUIDE_DAYS_AHEAD + 1) * kDay;
}

std::vector<Event> Guide::range(const Channel& channel, int64_t from, int64_t to) const {
    from = std::max(from, begin());
    to = std::min(to, end());
    std::vector<Event> events;
    for (int64_t day = dayOf(from); from < to && day * kDay < to; ++day) {
        for (const Event& event : scheduleOf(channel.channelId, channel.type,
                                             (channel.flags & CHANNEL_FLAG_SCRAMBLED) != 0, day)) {
            if (event.start < to && event.end() > from) events.push_back(event);
        }
    }
    return events;
}

std::vector<Event> Guide::range(uint32_t channelId, int64_t from, int64_t to) const {
    const auto channel = mChannels.byChannelId(channelId);
    return channel ? range(*channel, from, to) : std::vector<Event>();
}

std::optional<Event> Guide::find(uint32_t channelId, uint16_t id) const {
    // The day of that number that is nearest.
    const int64_t today = dayOf(mClock.now());
    int64_t ahead = ((id >> kIndexBits) - today % kDayPeriod) % kDayPeriod;
    if (ahead < -kDayPeriod / 2) ahead += kDayPeriod;
    if (ahead >= kDayPeriod / 2) ahead -= kDayPeriod;
    const int64_t day = today + ahead;
    for (const Event& event : range(channelId, day * kDay, (day + 1) * kDay)) {
        if (event.id == id) return event;
    }
    return std::nullopt;
}

std::optional<Event> Guide::present(uint32_t channelId) const {
    const int64_t now = mClock.now();
    const auto events = range(channelId, now, now + 1);
    if (events.empty()) return std::nullopt;
    return events.front();
}

std::optional<Event> Guide::following(uint32_t channelId) const {
    const auto now = present(channelId);
    if (!now) return std::nullopt;
    const auto events = range(channelId, now->end(), now->end() + 1);
    if (events.empty()) return std::nullopt;
    return events.front();
}

std::vector<Event> Guide::episodes(const Event& event) const {
    std::vector<Event> episodes;
    if (event.series == 0) return episodes;
    for (const Event& other : range(event.channelId, begin(), end())) {
        if (other.series == event.series) episodes.push_back(other);
    }
    return episodes;
}

std::vector<Event> Guide::search(const Filter& filter, size_t limit) const {
    std::vector<Channel> channels;
    if (filter.channelId != QELTV_EVERY_CHANNEL) {
        if (const auto channel = mChannels.byChannelId(filter.channelId)) {
            channels.push_back(*channel);
        }
    } else {
        for (const uint16_t list : mChannels.lists()) {
            const auto more = mChannels.find(list);
            channels.insert(channels.end(), more.begin(), more.end());
        }
    }
    const std::string text = lower(filter.text);
    std::vector<Event> found;
    for (const Channel& channel : channels) {
        for (const Event& event : range(channel, filter.from, filter.to)) {
            if (found.size() == limit) return found;
            if (!filter.genres.empty() && std::find(filter.genres.begin(), filter.genres.end(),
                                                    event.genre) == filter.genres.end()) {
                continue;
            }
            if (filter.age != 0 && (!event.rating.told || event.rating.age > filter.age)) continue;
            if (!text.empty() && lower(titleOf(event)).find(text) == std::string::npos) continue;
            if (filter.unblocked && blocked(event)) continue;
            if (passes(event)) found.push_back(event);
        }
    }
    return found;
}

void Guide::setParameters(const Parameters& parameters) {
    std::lock_guard<std::mutex> guard(mLock);
    mParameters = parameters;
}

bool Guide::passes(const Event& event) const {
    Parameters parameters;
    {
        std::lock_guard<std::mutex> guard(mLock);
        parameters = mParameters;
    }
    if (event.duration < parameters.shortest) return false;
    if (parameters.longest != 0 && event.duration > parameters.longest) return false;
    if (parameters.genres != 0 && (parameters.genres >> event.genre & 1) == 0) return false;
    if (parameters.subtitles && (event.flags & QELTV_EVENT_SUBTITLES) == 0) return false;
    if (parameters.hd && (event.flags & QELTV_EVENT_HD) == 0) return false;
    if (parameters.toCome && event.end() <= mClock.now()) return false;
    return !parameters.unblocked || !blocked(event);
}

bool Guide::blocked(const Event& event) const {
    if (!mRatings.blocks(event.rating)) return false;
    std::lock_guard<std::mutex> guard(mLock);
    return !mUnlocked || *mUnlocked < event.start || *mUnlocked >= event.end();
}

void Guide::unlock() {
    const int64_t now = mClock.now();
    {
        std::lock_guard<std::mutex> guard(mLock);
        mUnlocked = now;
    }
    blockingChanged();
}

void Guide::blockingChanged() {
    mNotifier.event(&Notifier::Callback::a_hidl_event_update_nfy_fct, QELTV_EVENT_BLOCKING_CHANGED,
                    {0});
    callListener();
}

uint16_t Guide::flagsOf(const Event& event) const {
    uint16_t flags = event.flags;
    const int64_t now = mClock.now();
    if (event.start <= now && now < event.end()) flags |= QELTV_EVENT_PRESENT;
    if (blocked(event)) flags |= QELTV_EVENT_BLOCKED;
    return flags;
}

int32_t Guide::setWindow(Window window) {
    if (window.channels.size() > kWindowLimit || window.end < window.start) return kBadValue;
    for (const uint32_t channelId : window.channels) {
        if (!mChannels.byChannelId(channelId)) return kNotFound;
    }
    {
        std::lock_guard<std::mutex> guard(mLock);
        mWindow = window;
    }
    mNotifier.event(&Notifier::Callback::a_hidl_event_update_nfy_fct, QELTV_EVENT_WINDOW_CHANGED,
                    {window.channels.size(), window.start, window.end});
    refresh();
    return kOk;
}

Guide::Window Guide::window() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mWindow;
}

void Guide::refresh() {
    arm(false);
}

void Guide::ring() {
    arm(true);
    callListener();
}

/** Tells what has changed since the last look, when that is wanted, and sets the next one. */
void Guide::arm(bool told) {
    const int64_t nowMs = mClock.milliseconds();
    const int64_t now = nowMs / 1000;
    int64_t last = 0;
    std::vector<uint32_t> channels;
    std::array<uint32_t, QELTV_PATHS> shown{};
    {
        std::lock_guard<std::mutex> guard(mLock);
        last = mLastLook;
        mLastLook = now;
        channels = mWindow.channels;
        shown = mShown;
    }
    const auto current = mChannels.current();
    if (current &&
        std::find(channels.begin(), channels.end(), current->channelId) == channels.end()) {
        channels.push_back(current->channelId);
    }
    int64_t next = end();
    for (const uint32_t channelId : channels) {
        const auto event = present(channelId);
        if (!event) continue;
        next = std::min(next, event->end());
        if (told && event->start > last) tell(channelId);
        if (told && event->start > last && current && channelId == current->channelId) {
            mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_banner_callback,
                            QELTV_BANNER_CHANGED, {QELTV_BANNER_SIMPLE, int64_t{-1}});
        }
    }
    for (const uint32_t channelId : shown) {
        if (const auto event = present(channelId)) next = std::min(next, event->end());
    }
    // A clock that is slow against the alarm's must not make it ring too early again and again.
    mAlarm.in(std::chrono::milliseconds(std::max<int64_t>(next * 1000 - nowMs, 20)));
}

void Guide::tell(uint32_t channelId) const {
    const auto now = present(channelId);
    const auto then = following(channelId);
    mNotifier.event(&Notifier::Callback::a_hidl_event_update_nfy_fct, QELTV_EVENT_PRESENT_CHANGED,
                    {channelId, now ? now->id : 0u, then ? then->id : 0u});
}

AtscGuide::AtscGuide(const Guide& guide, const ChannelDatabase& channels, const Clock& clock,
                     Notifier& notifier)
        : mGuide(guide), mChannels(channels), mClock(clock), mNotifier(notifier) {}

int32_t AtscGuide::load(uint32_t channelId, int64_t start, int32_t seconds,
                        std::vector<int32_t>* ids) {
    if (!mChannels.byChannelId(channelId)) return kNotFound;
    if (seconds <= 0 || start < 0 || start > INT64_MAX - seconds) return kBadValue;
    auto events = mGuide.range(channelId, start, start + seconds);
    if (events.size() > QELTV_ATSC_LIST_MAXIMUM) events.resize(QELTV_ATSC_LIST_MAXIMUM);
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (mLoaded.size() + events.size() > QELTV_ATSC_LOADED_MAXIMUM) return kRefused;
        for (const Event& event : events) {
            while (mLoaded.count(mNext) != 0) mNext = mNext == INT32_MAX ? 1 : mNext + 1;
            mLoaded[mNext] = event;
            ids->push_back(mNext);
            mNext = mNext == INT32_MAX ? 1 : mNext + 1;
        }
    }
    tell(channelId, events.size(), -1);
    return kOk;
}

int32_t AtscGuide::find(int32_t id, Event* event) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mLoaded.find(id);
    if (found == mLoaded.end()) return kNotFound;
    *event = found->second;
    return kOk;
}

int32_t AtscGuide::free(int32_t id) {
    std::lock_guard<std::mutex> guard(mLock);
    return mLoaded.erase(id) != 0 ? kOk : kNotFound;
}

int64_t AtscGuide::firstBegin() const {
    return mClock.now() / QELTV_EIT_SECONDS * QELTV_EIT_SECONDS;
}

std::vector<Event> AtscGuide::eventsOf(uint32_t channelId, int32_t table) const {
    const int64_t begin = firstBegin() + int64_t{table} * QELTV_EIT_SECONDS;
    std::vector<Event> events = mGuide.range(channelId, begin, begin + QELTV_EIT_SECONDS);
    if (table != 0 && !events.empty() && events.front().start < begin) {
        events.erase(events.begin());
    }
    return events;
}

int32_t AtscGuide::loadTable(uint32_t channelId, int32_t table, uint32_t* count) {
    if (table < 0 || table >= QELTV_EIT_TABLES) return kBadValue;
    if (!mChannels.byChannelId(channelId)) return kNotFound;
    const auto events = eventsOf(channelId, table);
    *count = static_cast<uint32_t>(events.size());
    {
        std::lock_guard<std::mutex> guard(mLock);
        mTables[table] = {channelId, events};
    }
    tell(channelId, events.size(), table);
    return kOk;
}

int32_t AtscGuide::count(int32_t table, uint32_t* count) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mTables.find(table);
    if (found == mTables.end()) return kNotFound;
    *count = static_cast<uint32_t>(found->second.events.size());
    return kOk;
}

int32_t AtscGuide::find(int32_t table, int32_t index, Event* event) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mTables.find(table);
    if (found == mTables.end() || index < 0 ||
        static_cast<size_t>(index) >= found->second.events.size()) {
        return kNotFound;
    }
    *event = found->second.events[static_cast<size_t>(index)];
    return kOk;
}

int32_t AtscGuide::status(uint32_t channelId, int32_t tables, std::vector<uint32_t>* states,
                          int32_t* status) const {
    if (tables < 1 || tables > QELTV_EIT_TABLES) return kBadValue;
    if (!mChannels.byChannelId(channelId)) return kNotFound;
    int32_t loaded = 0;
    for (int32_t table = 0; table < tables; ++table) {
        auto state = static_cast<uint32_t>(eventsOf(channelId, table).size());
        std::lock_guard<std::mutex> guard(mLock);
        const auto found = mTables.find(table);
        if (found != mTables.end() && found->second.channelId == channelId) {
            state = static_cast<uint32_t>(found->second.events.size()) | QELTV_EIT_LOADED;
            ++loaded;
        }
        states->push_back(state);
    }
    *status = loaded == 0 ? QELTV_EIT_NONE : loaded == tables ? QELTV_EIT_ALL : QELTV_EIT_PART;
    return kOk;
}

int32_t AtscGuide::tableOf(const Event& event) const {
    const int64_t begin = firstBegin();
    if (event.start < begin) return 0;
    const int64_t table = (event.start - begin) / QELTV_EIT_SECONDS;
    return static_cast<int32_t>(std::min<int64_t>(table, QELTV_EIT_TABLES));
}

void AtscGuide::tell(uint32_t channelId, size_t count, int32_t table) const {
    mNotifier.event(&Notifier::Callback::a_hidl_event_event_atsc_nfy_fct, QELTV_ATSC_LOADED,
                    {channelId, count, int64_t{table}});
}

}  // namespace qeltvd
