/**
 * What crosses the recording, timeshift and browser interfaces of this television: the records
 * that are opaque to the client library, and the meaning of plain numbers.
 */
#pragma once

#include <cstddef>
#include <cstdint>

namespace qeltvd::layouts {

/** Status of a recording. */
enum RecordingStatus : int32_t {
    kRecordingOpened = 0,
    kRecordingRuns = 1,
    kRecordingStopped = 2,
    /** It ended because of an error; what was written until then is kept. */
    kRecordingFailed = 3,
    /** Nothing is written any more, but that it has ended could not be stored yet. */
    kRecordingStopping = 4,
};

/** Last error of a recording or of the timeshift. */
enum RecordingError : int32_t {
    kErrorNone = 0,
    kErrorDiskFull = 1,
    kErrorDiskGone = 2,
    kErrorWrite = 3,
    kErrorNoChannel = 4,
    /** The tuner receives another stream for another recording. */
    kErrorTunerBusy = 5,
};

/** Why a recording ended, as the browser tells it. */
enum StopReason : uint32_t {
    kStopUser = 1,
    /** The time of its booking, or the limit of its mode. */
    kStopTime = 2,
    kStopDiskFull = 3,
    kStopDisk = 4,
    kStopPowerLost = 5,
    kStopStandby = 6,
};

/** Mode of a recording: when it ends by itself. */
enum RecordingMode : int32_t {
    kModeEndless = 0,
    /** After so many seconds. */
    kModeSeconds = 1,
    /** After so many KiB. */
    kModeKib = 2,
};

/** Kind of a recording notification; its two arguments. */
enum RecordingEvent : int32_t {
    /** Recording, booking or 0. */
    kRecordingStartedEvent = 1,
    /** Recording, StopReason. */
    kRecordingStoppedEvent = 2,
    /** Recording, RecordingError. */
    kRecordingFailedEvent = 3,
    /** Booking, 0: it was made or changed. */
    kBookingStoredEvent = 4,
    /** Booking, 0. */
    kBookingDeletedEvent = 5,
    /** Booking, 0: its time passed while the television was off. */
    kBookingMissedEvent = 6,
    /** Booking, RecordingError: it could not start. */
    kBookingFailedEvent = 7,
};

/** Event that an application passes to the recorder. */
enum RecorderCommand : uint32_t {
    /** A disk was unplugged; value: the disk. Its recordings end. */
    kCommandDiskRemoved = 1,
    /** A disk is back; value: the disk. */
    kCommandDiskInserted = 2,
    /** The television goes to standby: recordings without a booking end. */
    kCommandStandby = 3,
    /** With a text. Names the programme of a recording; value: the recording. */
    kCommandProgrammeName = 16,
    /** With a number. Sets the first rating of a recording; value: the recording. */
    kCommandRating = 17,
    /** With a number. For how many days a recording is kept; 0 for ever; value: the recording. */
    kCommandRetention = 18,
};

enum BookingState : uint32_t {
    kBookingWaits = 0,
    kBookingRuns = 1,
    kBookingMissed = 2,
    kBookingFailed = 3,
};

enum BookingRepeat : uint32_t { kOnce = 0, kDaily = 1, kWeekly = 2 };

/** Flag of set_schedule_record(): book even what cannot be received together with another one. */
constexpr uint32_t kBookInSpiteOfConflict = 1;

/** Schedule record. Texts are UTF-8, shorter ones filled with zeros. */
struct ScheduleRecord {
    /** Number of the booking; 0 for a new one. */
    uint32_t booking;
    uint32_t channel;
    /** Seconds since 1970, UTC. */
    int64_t start;
    uint32_t seconds;
    uint32_t repeat;
    /** Only told: a BookingState. */
    uint32_t state;
    /** KiB per second; 0 for the disk's own rate. */
    uint32_t rate;
    /** Only told: a RecordingError, of a booking that failed. */
    uint32_t error;
    uint32_t reserved;
    char programme[128];
    /** Only told. */
    char channelName[64];
    uint8_t unused[16];
};
static_assert(sizeof(ScheduleRecord) == 248);
static_assert(offsetof(ScheduleRecord, start) == 8);
static_assert(offsetof(ScheduleRecord, programme) == 40);

/** What is to be received and when; 0 seconds means all the time. */
struct SourceRecord {
    /** 0: a channel; 1: an input, which no recording can use. */
    uint32_t kind;
    /** Channel id, or number of the input. */
    uint32_t id;
    int64_t start;
    uint32_t seconds;
    uint8_t unused[52];
};
static_assert(sizeof(SourceRecord) == 72);

/** Disk record: size limit and data rate of the recordings on a disk. */
struct DiskRecord {
    uint32_t disk;
    /** Bytes that recordings may take; 0 for all that the file system has. */
    uint32_t limitLow;
    uint32_t limitHigh;
    /** Bytes per second; 0 leaves it. */
    uint32_t rate;
    uint32_t unused;
};
static_assert(sizeof(DiskRecord) == 20);

/** Item record of the browser. */
struct BrowserItem {
    uint32_t item;
    uint32_t channel;
    uint32_t major;
    uint32_t minor;
    /** Seconds since 1970, UTC. */
    int64_t start;
    int64_t bytes;
    uint32_t seconds;
    uint32_t stopReason;
    uint32_t rating;
    /** Days that it is kept; 0 for ever. */
    uint32_t retention;
    char channelName[64];
    char programme[128];
    char path[256];
};
static_assert(sizeof(BrowserItem) == 496);

/** File-info record of the browser. */
struct BrowserInfo {
    uint32_t items;
    uint32_t unused;
    int64_t bytes;
    /** Free on the television's own disk. */
    int64_t free;
};
static_assert(sizeof(BrowserInfo) == 24);

/** Status of the timeshift's device. */
enum DeviceStatus : int32_t {
    kDeviceNone = 0,
    kDeviceRegisters = 1,
    kDeviceReady = 2,
    kDeviceFailed = 3,
};

/** Status of the recording behind the timeshift. */
enum TimeshiftStatus : int32_t {
    kTimeshiftIdle = 0,
    kTimeshiftRecords = 1,
    /** The buffer is full: the oldest goes as the newest comes. */
    kTimeshiftFull = 2,
    /** Recording has ended; what is there can still be played. */
    kTimeshiftKept = 3,
};

/** How the timeshift is stopped. */
enum TimeshiftStop : uint32_t { kStopDrop = 0, kStopKeep = 1 };

/** Kind of a timeshift notification; its two arguments. */
enum TimeshiftEvent : int32_t {
    /** DeviceStatus, progress in percent. */
    kTimeshiftDeviceEvent = 1,
    /** TimeshiftStatus, 0. */
    kTimeshiftStatusEvent = 2,
    /** Speed in percent as signed 32 bits (0: paused, 100: as broadcast), position. */
    kTimeshiftSpeedEvent = 3,
    /** Position, 0: playing forward has come to what is being broadcast. */
    kTimeshiftLiveEvent = 4,
    /** Position, 0: playing backward has come to the oldest. */
    kTimeshiftBeginEvent = 5,
};

}  // namespace qeltvd::layouts
