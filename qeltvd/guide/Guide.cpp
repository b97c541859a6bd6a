#define LOG_TAG "qeltvd"

#include "Guide.h"

#include <algorithm>
#include <cctype>

#include "Code.h"
#include "SimulatedGuide.h"

namespace qeltvd {

namespace {

std::string lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

Guide::Guide(Timers& timers, ChannelDatabase& channels, Broadcast& broadcast, Clock& clock,
             PinLock& pin, Ratings& ratings, Notifier& notifier)
        : mChannels(channels),
          mBroadcast(broadcast),
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
        if (change.kind == ChannelChange::Kind::kCurrent) refresh();
    });
    broadcast.addListener([this](uint32_t changes) {
        if ((changes & stream::kEventsChanged) != 0) received();
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
    return SimulatedGuide::begin(mClock.now());
}

int64_t Guide::end() const {
    return SimulatedGuide::end(mClock.now());
}

std::optional<Guide::Source> Guide::sourceOf(uint32_t channelId) const {
    auto found = mChannels.pair(channelId);
    if (!found) return std::nullopt;
    auto signals = mBroadcast.of(found->second);
    return Source{std::move(found->first), std::move(signals)};
}

std::vector<Event> Guide::range(uint32_t channelId, int64_t from, int64_t to) const {
    const auto source = sourceOf(channelId);
    if (!source) return {};
    return source->signals->events(source->channel, from, to, mClock.now());
}

std::optional<Event> Guide::find(uint32_t channelId, uint16_t id) const {
    const auto source = sourceOf(channelId);
    if (!source) return std::nullopt;
    return source->signals->event(source->channel, id, mClock.now());
}

std::optional<Event> Guide::present(uint32_t channelId) const {
    const auto source = sourceOf(channelId);
    if (!source) return std::nullopt;
    return source->signals->present(source->channel, mClock.now());
}

std::optional<Event> Guide::following(uint32_t channelId) const {
    const auto source = sourceOf(channelId);
    if (!source) return std::nullopt;
    return source->signals->following(source->channel, mClock.now());
}

std::vector<Event> Guide::episodes(const Event& event) const {
    std::vector<Event> episodes;
    if (event.series == 0) return episodes;
    for (Event& other : range(event.channelId, INT64_MIN, INT64_MAX)) {
        if (other.series == event.series) episodes.push_back(std::move(other));
    }
    return episodes;
}

std::vector<Event> Guide::search(const Filter& filter, size_t limit) const {
    std::vector<Source> sources;
    if (filter.channelId != QELTV_EVERY_CHANNEL) {
        if (auto source = sourceOf(filter.channelId)) sources.push_back(std::move(*source));
    } else {
        for (const uint16_t list : mChannels.lists()) {
            mChannels.visit(list, {}, 0, SIZE_MAX,
                            [&](const Channel& channel, const Multiplex& multiplex) {
                                sources.push_back({channel, mBroadcast.of(multiplex)});
                            });
        }
    }
    const int64_t now = mClock.now();
    const std::string text = lower(filter.text);
    std::vector<Event> found;
    for (const auto& [channel, signals] : sources) {
        for (Event& event : signals->events(channel, filter.from, filter.to, now)) {
            if (found.size() == limit) return found;
            if (!filter.genres.empty() && std::find(filter.genres.begin(), filter.genres.end(),
                                                    event.genre) == filter.genres.end()) {
                continue;
            }
            if (filter.age != 0 && (!event.rating.known || event.rating.age > filter.age)) continue;
            if (!text.empty() && lower(event.title).find(text) == std::string::npos) continue;
            if (filter.unblocked && blocked(event)) continue;
            if (passes(event)) found.push_back(std::move(event));
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

Code Guide::setWindow(Window window) {
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

bool Guide::OnAir::sameAs(const OnAir& other) const {
    const auto same = [](const std::optional<Event>& a, const std::optional<Event>& b) {
        if (!a || !b) return !a && !b;
        return a->id == b->id && a->start == b->start && a->duration == b->duration &&
               a->title == b->title && a->rating == b->rating;
    };
    return same(present, other.present) && same(following, other.following);
}

int64_t Guide::OnAir::changesAt(int64_t now) const {
    int64_t at = INT64_MAX;
    if (present && present->end() > now) at = present->end();
    if (following && following->start > now) at = std::min(at, following->start);
    return at;
}

Guide::OnAir Guide::onAir(uint32_t channelId) const {
    const auto source = sourceOf(channelId);
    if (!source) return {};
    const int64_t now = mClock.now();
    return {source->signals->present(source->channel, now),
            source->signals->following(source->channel, now)};
}

std::vector<uint32_t> Guide::watched() const {
    std::vector<uint32_t> channels = window().channels;
    const auto current = mChannels.current();
    if (current &&
        std::find(channels.begin(), channels.end(), current->channelId) == channels.end()) {
        channels.push_back(current->channelId);
    }
    return channels;
}

/** Notifies of changes since the last look if `notifies`, and sets the time of the next look. */
void Guide::arm(bool notifies) {
    const int64_t nowMs = mClock.milliseconds();
    const int64_t now = nowMs / 1000;
    int64_t last = 0;
    std::array<uint32_t, QELTV_PATHS> shown{};
    {
        std::lock_guard<std::mutex> guard(mLock);
        last = mLastLook;
        mLastLook = now;
        shown = mShown;
    }
    const auto current = mChannels.current();
    int64_t next = end();
    std::map<uint32_t, OnAir> all;
    for (const uint32_t channelId : watched()) {
        const OnAir& found = all[channelId] = onAir(channelId);
        next = std::min(next, found.changesAt(now));
        if (notifies && found.present && found.present->start > last) {
            notify(channelId, found, current && channelId == current->channelId);
        }
    }
    for (const uint32_t channelId : shown) next = std::min(next, onAir(channelId).changesAt(now));
    {
        std::lock_guard<std::mutex> guard(mLock);
        mOnAir = std::move(all);
    }
    // A clock that is slow against the alarm's must not make it ring too early again and again.
    mAlarm.in(std::chrono::milliseconds(std::max<int64_t>(next * 1000 - nowMs, 20)));
}

void Guide::received() {
    const auto current = mChannels.current();
    for (const uint32_t channelId : watched()) {
        const OnAir found = onAir(channelId);
        {
            std::lock_guard<std::mutex> guard(mLock);
            const auto known = mOnAir.find(channelId);
            if (known != mOnAir.end() && known->second.sameAs(found)) continue;
        }
        notify(channelId, found, current && channelId == current->channelId);
    }
    refresh();
    callListener();
}

void Guide::notify(uint32_t channelId, const OnAir& onAir, bool current) const {
    mNotifier.event(&Notifier::Callback::a_hidl_event_update_nfy_fct, QELTV_EVENT_PRESENT_CHANGED,
                    {channelId, onAir.present ? onAir.present->id : 0u,
                     onAir.following ? onAir.following->id : 0u});
    if (!current) return;
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_banner_callback, QELTV_BANNER_CHANGED,
                    {QELTV_BANNER_SIMPLE, int64_t{-1}});
}

AtscGuide::AtscGuide(const Guide& guide, const ChannelDatabase& channels, const Clock& clock,
                     Notifier& notifier)
        : mGuide(guide), mChannels(channels), mClock(clock), mNotifier(notifier) {}

Result<std::vector<int32_t>> AtscGuide::load(uint32_t channelId, int64_t start, int32_t seconds) {
    if (!mChannels.byChannelId(channelId)) return kNotFound;
    if (seconds <= 0 || start < 0 || start > INT64_MAX - seconds) return kBadValue;
    auto events = mGuide.range(channelId, start, start + seconds);
    if (events.size() > QELTV_ATSC_LIST_MAXIMUM) events.resize(QELTV_ATSC_LIST_MAXIMUM);
    std::vector<int32_t> ids;
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (mLoaded.size() + events.size() > QELTV_ATSC_LOADED_MAXIMUM) return kRefused;
        for (const Event& event : events) {
            while (mLoaded.count(mNext) != 0) mNext = mNext == INT32_MAX ? 1 : mNext + 1;
            mLoaded[mNext] = event;
            ids.push_back(mNext);
            mNext = mNext == INT32_MAX ? 1 : mNext + 1;
        }
    }
    notify(channelId, events.size(), -1);
    return ids;
}

Result<Event> AtscGuide::find(int32_t id) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mLoaded.find(id);
    if (found == mLoaded.end()) return kNotFound;
    return found->second;
}

Code AtscGuide::free(int32_t id) {
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

Result<uint32_t> AtscGuide::loadTable(uint32_t channelId, int32_t table) {
    if (table < 0 || table >= QELTV_EIT_TABLES) return kBadValue;
    if (!mChannels.byChannelId(channelId)) return kNotFound;
    const auto events = eventsOf(channelId, table);
    {
        std::lock_guard<std::mutex> guard(mLock);
        mTables[table] = {channelId, events};
    }
    notify(channelId, events.size(), table);
    return static_cast<uint32_t>(events.size());
}

Result<uint32_t> AtscGuide::count(int32_t table) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mTables.find(table);
    if (found == mTables.end()) return kNotFound;
    return static_cast<uint32_t>(found->second.events.size());
}

Result<Event> AtscGuide::find(int32_t table, int32_t index) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mTables.find(table);
    if (found == mTables.end() || index < 0 ||
        static_cast<size_t>(index) >= found->second.events.size()) {
        return kNotFound;
    }
    return found->second.events[static_cast<size_t>(index)];
}

Result<AtscGuide::TableStatus> AtscGuide::status(uint32_t channelId, int32_t tables) const {
    if (tables < 1 || tables > QELTV_EIT_TABLES) return kBadValue;
    if (!mChannels.byChannelId(channelId)) return kNotFound;
    TableStatus status;
    int32_t loaded = 0;
    for (int32_t table = 0; table < tables; ++table) {
        auto state = static_cast<uint32_t>(eventsOf(channelId, table).size());
        std::lock_guard<std::mutex> guard(mLock);
        const auto found = mTables.find(table);
        if (found != mTables.end() && found->second.channelId == channelId) {
            state = static_cast<uint32_t>(found->second.events.size()) | QELTV_EIT_LOADED;
            ++loaded;
        }
        status.states.push_back(state);
    }
    status.whole = loaded == 0 ? QELTV_EIT_NONE : loaded == tables ? QELTV_EIT_ALL : QELTV_EIT_PART;
    return status;
}

int32_t AtscGuide::tableOf(const Event& event) const {
    const int64_t begin = firstBegin();
    if (event.start < begin) return 0;
    const int64_t table = (event.start - begin) / QELTV_EIT_SECONDS;
    return static_cast<int32_t>(std::min<int64_t>(table, QELTV_EIT_TABLES));
}

void AtscGuide::notify(uint32_t channelId, size_t count, int32_t table) const {
    mNotifier.event(&Notifier::Callback::a_hidl_event_event_atsc_nfy_fct, QELTV_ATSC_LOADED,
                    {channelId, count, int64_t{table}});
}

}  // namespace qeltvd
