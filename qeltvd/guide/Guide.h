#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Alarm.h"
#include "ChannelDatabase.h"
#include "Clock.h"
#include "Notifier.h"
#include "PinLock.h"
#include "Ratings.h"
#include "layouts/event.h"
#include "layouts/presentation.h"

namespace qeltvd {

/** One programme of the guide, without its texts. */
struct Event {
    uint32_t channelId = 0;
    uint16_t id = 0;
    int64_t start = 0;
    uint32_t duration = 0;
    uint8_t genre = 0;
    /** QELTV_EVENT_FLAG, but for those that the moment decides. */
    uint16_t flags = 0;
    uint16_t series = 0;
    uint16_t episode = 0;
    Rating rating;
    /** Index of the programme that its texts come from. */
    size_t programme = 0;

    int64_t end() const { return start + duration; }
};

/**
 * What a channel broadcasts on a day (number of days since 1970, UTC), from midnight to midnight
 * without a gap. The same on every machine: all choices come from splitmix64 whose state begins
 * with the channel id times 0x9e3779b97f4a7c15, exclusive or the day; nothing depends on when and
 * how often it is asked. An event id is the day modulo 512 in the high 9 bits and the number of the
 * event of that day from 1 in the low 7.
 */
std::vector<Event> scheduleOf(uint32_t channelId, ServiceType type, bool scrambled, int64_t day);

std::string titleOf(const Event& event);
std::string detailsOf(const Event& event);
std::string extendedOf(const Event& event);
/** Empty where there is nothing to warn of. */
std::string guidanceOf(const Event& event);
const char* nameOfGenre(uint8_t genre);

/** The programme guide of all channels, and the window of it that applications show. */
class Guide {
  public:
    Guide(Timers& timers, ChannelDatabase& channels, Clock& clock, PinLock& pin, Ratings& ratings,
          Notifier& notifier);

    /**
     * Called when another programme is on air on what show() has been told of, and when what is
     * blocked has changed. Nothing ends the last one before a call of it has returned.
     */
    void setListener(std::function<void()> listener);
    /** The channel that a video path shows now; 0 for none. */
    void show(uint32_t path, uint32_t channelId);

    std::optional<Event> find(uint32_t channelId, uint16_t event) const;
    std::optional<Event> present(uint32_t channelId) const;
    std::optional<Event> following(uint32_t channelId) const;
    /** What overlaps a time, in order; none for a channel that there is not. */
    std::vector<Event> range(uint32_t channelId, int64_t from, int64_t to) const;
    std::vector<Event> episodes(const Event& event) const;

    struct Filter {
        uint32_t channelId = QELTV_EVERY_CHANNEL;
        int64_t from = 0;
        int64_t to = 0;
        std::string text;
        std::vector<uint8_t> genres;
        uint8_t age = 0;
        bool unblocked = false;
    };
    /** At most `limit`, by channel and time. */
    std::vector<Event> search(const Filter& filter, size_t limit) const;
    /** First and last second that the guide knows. */
    int64_t begin() const;
    int64_t end() const;

    struct Parameters {
        uint32_t shortest = 0;
        uint32_t longest = 0;
        uint32_t genres = 0;
        bool toCome = false;
        bool unblocked = false;
        bool subtitles = false;
        bool hd = false;
    };
    void setParameters(const Parameters& parameters);
    /** Whether the parameters let an event through. */
    bool passes(const Event& event) const;

    bool blocked(const Event& event) const;
    /** The lock is lifted for what is on air now, until it ends. */
    void unlock();
    /** With the flags of the moment. */
    uint16_t flagsOf(const Event& event) const;

    struct Window {
        std::vector<uint32_t> channels;
        int64_t start = 0;
        int64_t end = 0;
    };
    static constexpr size_t kWindowLimit = 4096;
    /** Gives a code. */
    int32_t setWindow(Window window);
    Window window() const;

  private:
    /** Looks again for what is on; after a change of the clock or of the current channel. */
    void refresh();
    std::vector<Event> range(const Channel& channel, int64_t from, int64_t to) const;
    void ring();
    void blockingChanged();
    void callListener();
    void arm(bool told);
    void tell(uint32_t channelId) const;

    const ChannelDatabase& mChannels;
    const Clock& mClock;
    const Ratings& mRatings;
    Notifier& mNotifier;

    // Held while the listener runs, and taken before its locks and mLock.
    std::mutex mListenerLock;
    std::function<void()> mListener;

    mutable std::mutex mLock;
    // Guarded by mLock.
    std::array<uint32_t, QELTV_PATHS> mShown{};
    Parameters mParameters;
    Window mWindow;
    std::optional<int64_t> mUnlocked;
    int64_t mLastLook = 0;
    Alarm mAlarm;
};

/** Events by ATSC table: what applications have loaded. */
class AtscGuide {
  public:
    AtscGuide(const Guide& guide, const ChannelDatabase& channels, const Clock& clock,
              Notifier& notifier);

    /** Loads by time; gives ids for the other functions. Each function gives a code. */
    int32_t load(uint32_t channelId, int64_t start, int32_t seconds, std::vector<int32_t>* ids);
    int32_t find(int32_t id, Event* event) const;
    int32_t free(int32_t id);

    /** Loads one table, in place of the same table of another channel. */
    int32_t loadTable(uint32_t channelId, int32_t table, uint32_t* count);
    int32_t count(int32_t table, uint32_t* count) const;
    int32_t find(int32_t table, int32_t index, Event* event) const;
    /** States of the first tables of a channel. */
    int32_t status(uint32_t channelId, int32_t tables, std::vector<uint32_t>* states,
                   int32_t* status) const;
    /** The table that an event stands in now; none beyond the last. */
    int32_t tableOf(const Event& event) const;

  private:
    struct Table {
        uint32_t channelId = 0;
        std::vector<Event> events;
    };
    /** What begins in a table, or runs at its begin for the first one. */
    std::vector<Event> eventsOf(uint32_t channelId, int32_t table) const;
    int64_t firstBegin() const;
    void tell(uint32_t channelId, size_t count, int32_t table) const;

    const Guide& mGuide;
    const ChannelDatabase& mChannels;
    const Clock& mClock;
    Notifier& mNotifier;

    mutable std::mutex mLock;
    // Guarded by mLock.
    std::map<int32_t, Event> mLoaded;
    int32_t mNext = 1;
    std::map<int32_t, Table> mTables;
};

}  // namespace qeltvd
