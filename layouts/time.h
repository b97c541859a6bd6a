/** What crosses the time interface of this television. */
#pragma once

#include <cstddef>
#include <cstdint>

namespace qeltvd::layouts {

enum DtgFlag : uint16_t {
    /** The record is in UTC; without it, local time of the television. */
    kDtgUtc = 1,
    /** Local time with daylight saving; told, and asked for where an hour comes twice. */
    kDtgDaylight = 2,
};

/** The 10-byte date-time record. All zero is no time. */
struct Dtg {
    /** 1 to 9999, Gregorian calendar at all times. */
    uint16_t year;
    /** From 1. */
    uint8_t month;
    uint8_t day;
    /** 0 Sunday to 6 Saturday; only told. */
    uint8_t weekday;
    uint8_t hour;
    uint8_t minute;
    uint8_t second;
    /** DtgFlag. */
    uint16_t flags;
};
static_assert(sizeof(Dtg) == 10 && offsetof(Dtg, flags) == 8);

/** Type of a_qeltvapi_time_convert(); the flags of the record are not looked at. */
enum TimeConversion : uint32_t {
    kUtcToLocal = 0,
    kLocalToUtc = 1,
    /** Carries fields beyond their range over, as minute 75 into the hour. */
    kNormalise = 2,
};

/** What the clock follows. */
enum SyncSource : int32_t {
    /** Nothing: the user sets time, zone and offset. */
    kSyncManual = 0,
    /** The broadcast (time and time offset table), zone of the configured place. */
    kSyncBroadcast = 1,
    /** The network (the clock of this machine); zone and offset may be set. */
    kSyncNetwork = 2,
};

/** First byte of the raw broadcast time; the three values are given after each. */
enum RawTimeTable : uint8_t {
    /** UTC seconds, local offset in seconds, UTC second of the next change of it (0 none). */
    kRawTot = 1,
    /** System time table: the same values. */
    kRawStt = 2,
};

/** Type of a date-time notification; its argument. */
enum TimeEvent : int32_t {
    /** UTC seconds: the clock was set or jumped. */
    kTimeChanged = 1,
    /** Local time minus UTC in seconds: zone or offset have changed. */
    kZoneChanged = 2,
};

/** Type of a sync-source notification: the SyncSource. */
enum SyncEvent : int32_t { kSyncSourceChanged = 1 };

/** Type of a sleep-timer notification; its argument. */
enum SleepEvent : int32_t {
    /** Seconds until it fires. */
    kSleepSet = 1,
    /** Seconds left: it fires soon. */
    kSleepWarning = 2,
    /** 0: its time is up. */
    kSleepExpired = 3,
    /** 0: it was switched off. */
    kSleepCancelled = 4,
};

/** Longest sleep timer, in seconds. */
constexpr int32_t kSleepMaximum = 24 * 3600;
/** The warning comes so many seconds before. */
constexpr int32_t kSleepWarningTime = 60;

/** Largest time zone and offset, in seconds either way. */
constexpr int64_t kZoneMaximum = 14 * 3600;

}  // namespace qeltvd::layouts
