#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Alarm.h"
#include "Broadcast.h"
#include "Code.h"
#include "ConfigItems.h"
#include "Notifier.h"
#include "Settings.h"
#include "layouts/time.h"

namespace qeltvd {

/** "Sun" to "Sat", "Jan" to "Dec". */
const char* weekdayName(const QELTV_DTG_T& record);
const char* monthName(const QELTV_DTG_T& record);

/**
 * The clock of the television and its place in the calendar of the world. It runs with the clock
 * of this machine; one that is set by hand keeps its distance from that over restarts. One that
 * follows the broadcast shows the time that the multiplex sends which is received; the time that a
 * simulated one sends is that of this machine.
 *
 * Local time is that of the configured place (item "system.time_zone", an IANA name) until the
 * user sets zone or offset, which the broadcast as the source undoes. Offsets that are received
 * for the configured country (item "channels.country") come first, for times that are near.
 */
class Clock {
  public:
    /** @throws StoreError */
    Clock(Store& store, Notifier& notifier, ConfigItems& config, Broadcast& broadcast);

    /** Called after the clock has jumped, on the thread that made it; before serving only. */
    void addListener(std::function<void()> listener);

    int64_t milliseconds() const;
    int64_t now() const { return milliseconds() / 1000; }
    /** The time as broadcast; none unless the clock follows it. */
    std::optional<int64_t> broadcast() const;

    int32_t source() const;
    Code setSource(int32_t source);
    bool timeEditable() const;
    bool zoneEditable() const;
    /** Whether the broadcast is one that has a time offset table. */
    bool hasOffsetTable() const;

    Code set(int64_t utc);
    /** Sets the clock to a local time: "2026-03-29" and "02:30" or "02:30:15". */
    Code setLocal(const std::string& date, const std::string& time);

    /** Standard time minus UTC now, and what daylight saving or the user adds; seconds. */
    int64_t zone() const;
    int64_t offset() const;
    Code setZone(int64_t seconds);
    Code setOffset(int64_t seconds);
    /** UTC second at which zone or offset change next, by the rules of the place. */
    std::optional<int64_t> nextChange() const;

    /** Conversions; nothing if a time is outside of the years 1 to 9999 or no real date. */
    std::optional<QELTV_DTG_T> utcRecord(int64_t utc) const;
    std::optional<QELTV_DTG_T> localRecord(int64_t utc) const;
    /** Seconds of the fields as they stand, as if they were UTC. */
    static std::optional<int64_t> plainSeconds(const QELTV_DTG_T& record);
    /** UTC seconds of a record of either kind, by its flag. */
    std::optional<int64_t> utcSeconds(const QELTV_DTG_T& record) const;
    std::optional<int64_t> localToUtc(const QELTV_DTG_T& record) const;
    static std::optional<QELTV_DTG_T> normalised(const QELTV_DTG_T& record);
    /** Modified Julian Date of a day, and back. */
    static std::optional<uint32_t> modifiedJulian(const QELTV_DTG_T& record);
    static std::optional<QELTV_DTG_T> fromModifiedJulian(uint32_t day);

  private:
    struct Manual {
        int64_t zone;
        int64_t offset;
    };
    std::optional<Manual> manual() const;
    /** The offsets that are received and hold at a UTC time. */
    std::optional<stream::LocalOffset> received(int64_t utc) const;
    /** Takes the time and the offsets that are received. */
    void follow();
    int64_t distance() const;
    std::string place() const;
    Code setManual(std::optional<int64_t> zone, std::optional<int64_t> offset);
    void jumped() const;
    void zoneChanged() const;

    Settings mSettings;
    Notifier& mNotifier;
    const ConfigItems& mConfig;
    Broadcast& mBroadcast;
    std::vector<std::function<void()>> mListeners;

    mutable std::mutex mLock;
    // Guarded by mLock.
    int32_t mSource;
    int64_t mDistance;
    std::optional<Manual> mManual;
    /** Milliseconds that the broadcast is ahead of this machine. */
    int64_t mBroadcastDistance = 0;
    std::optional<stream::LocalOffset> mOffset;
    bool mReceives = false;
};

/** The sleep timer. It is not kept: a set that is switched on has none. */
class SleepTimer {
  public:
    SleepTimer(Timers& timers, Notifier& notifier);

    /** Called when it fires, on its thread; before serving only. */
    void addListener(std::function<void()> listener);

    /** Seconds from now, 0 for off. */
    Code set(int32_t seconds);
    /** What it was set to, 0 when it is off; how much of that has gone by, and is left. */
    int32_t value() const;
    int32_t elapsed() const;
    int32_t remaining() const;

  private:
    void ring();
    void notify(int32_t type, int32_t seconds) const;

    Notifier& mNotifier;
    std::vector<std::function<void()>> mListeners;
    mutable std::mutex mLock;
    // Guarded by mLock.
    int32_t mValue = 0;
    Alarm::Clock::time_point mDue;
    bool mWarned = false;
    Alarm mAlarm;
};

}  // namespace qeltvd
