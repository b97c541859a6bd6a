#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Alarm.h"
#include "Broadcast.h"
#include "ChannelDatabase.h"
#include "Clock.h"
#include "Code.h"
#include "Event.h"
#include "Notifier.h"
#include "PinLock.h"
#include "Ratings.h"
#include "Result.h"
#include "layouts/event.h"
#include "layouts/presentation.h"

namespace qeltvd {

/** The programme guide of all channels, and the window of it that applications show. */
class Guide {
  public:
    Guide(Timers& timers, ChannelDatabase& channels, Broadcast& broadcast, Clock& clock,
          PinLock& pin, Ratings& ratings, Notifier& notifier);

    /**
     * Called when another programme is on air on a channel that show() was called with, and when
     * what is blocked has changed. Nothing ends the last one before a call of it has returned.
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
    /** First second and the second after the last that are simulated. */
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
    Code setWindow(Window window);
    Window window() const;

  private:
    /** Looks again for what is on; after a change of the clock or of the current channel. */
    void refresh();
    /** Looks for what has changed by other tables. */
    void received();
    /** A channel and where its events come from. */
    struct Source {
        Channel channel;
        std::shared_ptr<Signals> signals;
    };
    std::optional<Source> sourceOf(uint32_t channelId) const;
    /** The channels whose changes clients are notified of: of the window and the current one. */
    std::vector<uint32_t> watched() const;
    void ring();
    void blockingChanged();
    void callListener();
    void arm(bool notifies);
    struct OnAir {
        std::optional<Event> present;
        std::optional<Event> following;
        bool sameAs(const OnAir& other) const;
        /** When another programme is on air, as far as is known. */
        int64_t changesAt(int64_t now) const;
    };
    OnAir onAir(uint32_t channelId) const;
    void notify(uint32_t channelId, const OnAir& onAir, bool current) const;

    const ChannelDatabase& mChannels;
    const Broadcast& mBroadcast;
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
    /** As the last look found it, by channel id. */
    std::map<uint32_t, OnAir> mOnAir;
    int64_t mLastLook = 0;
    Alarm mAlarm;
};

/** Events by ATSC table: what applications have loaded. */
class AtscGuide {
  public:
    AtscGuide(const Guide& guide, const ChannelDatabase& channels, const Clock& clock,
              Notifier& notifier);

    /** Loads by time. Returns ids for the other functions. */
    Result<std::vector<int32_t>> load(uint32_t channelId, int64_t start, int32_t seconds);
    Result<Event> find(int32_t id) const;
    Code free(int32_t id);

    /** Loads one table, in place of the same table of another channel. */
    Result<uint32_t> loadTable(uint32_t channelId, int32_t table);
    Result<uint32_t> count(int32_t table) const;
    Result<Event> find(int32_t table, int32_t index) const;
    struct TableStatus {
        /** The number of events of each table, and QELTV_EIT_LOADED. */
        std::vector<uint32_t> states;
        int32_t whole = QELTV_EIT_NONE;
    };
    /** States of the first tables of a channel. */
    Result<TableStatus> status(uint32_t channelId, int32_t tables) const;
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
    void notify(uint32_t channelId, size_t count, int32_t table) const;

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
