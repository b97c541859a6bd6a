/**
 * Recording, timeshift and browser of the reference television: the records that are opaque to the
 * client library, and the meaning of plain numbers.
 */
#ifndef QELTV_LAYOUTS_RECORD_H
#define QELTV_LAYOUTS_RECORD_H

#include <stdint.h>

/** Status of a recording. */
enum QELTV_RECORDING_STATUS {
    QELTV_RECORDING_OPENED = 0,   /**< opened and not started */
    QELTV_RECORDING_RUNS = 1,     /**< records */
    QELTV_RECORDING_STOPPED = 2,  /**< complete */
    QELTV_RECORDING_FAILED = 3,   /**< ended by an error; the part before the error is kept */
    QELTV_RECORDING_STOPPING = 4, /**< nothing more is written; its end is not stored yet */
};

/** Last error of a recording or of the timeshift. */
enum QELTV_RECORDING_ERROR {
    QELTV_RECORDING_ERROR_NONE = 0,       /**< no error */
    QELTV_RECORDING_ERROR_DISK_FULL = 1,  /**< the disk or its limit is full */
    QELTV_RECORDING_ERROR_DISK_GONE = 2,  /**< the disk was unplugged */
    QELTV_RECORDING_ERROR_WRITE = 3,      /**< the disk cannot be written */
    QELTV_RECORDING_ERROR_NO_CHANNEL = 4, /**< there is no such channel */
    QELTV_RECORDING_ERROR_TUNER_BUSY = 5, /**< another recording receives another multiplex */
};

/** Reason for the end of a recording, as the browser reports it. */
enum QELTV_STOP_REASON {
    QELTV_STOP_USER = 1,       /**< stopped by the user */
    QELTV_STOP_TIME = 2,       /**< end of its booking, or the limit of its mode */
    QELTV_STOP_DISK_FULL = 3,  /**< the disk or its limit was full */
    QELTV_STOP_DISK = 4,       /**< the disk was unplugged or could not be written */
    QELTV_STOP_POWER_LOST = 5, /**< the television lost power */
    QELTV_STOP_STANDBY = 6,    /**< the television went to standby */
};

/** Mode of a recording: its end. */
enum QELTV_RECORDING_MODE {
    QELTV_RECORDING_MODE_ENDLESS = 0, /**< never */
    QELTV_RECORDING_MODE_SECONDS = 1, /**< after a number of seconds */
    QELTV_RECORDING_MODE_KIB = 2,     /**< after a number of KiB */
};

/** Kind of a recording notification. @values booking */
enum QELTV_RECORDING_EVENT {
    QELTV_RECORDING_STARTED_EVENT = 1, /**< starts; booking or 0 @values recording, booking */
    /** ends @values recording, reason:QELTV_STOP_REASON */
    QELTV_RECORDING_STOPPED_EVENT = 2,
    /** ends with an error @values recording, error:QELTV_RECORDING_ERROR */
    QELTV_RECORDING_FAILED_EVENT = 3,
    QELTV_BOOKING_STORED_EVENT = 4,  /**< a booking is new or changed */
    QELTV_BOOKING_DELETED_EVENT = 5, /**< a booking is deleted */
    QELTV_BOOKING_MISSED_EVENT = 6,  /**< a booking's time passed while the power was off */
    /** a booking could not start @values booking, error:QELTV_RECORDING_ERROR */
    QELTV_BOOKING_FAILED_EVENT = 7,
};

/** Event that an application passes to the recorder, with a value. */
enum QELTV_RECORDER_COMMAND {
    QELTV_COMMAND_DISK_REMOVED = 1,    /**< a disk is unplugged; the disk. Its recordings end. */
    QELTV_COMMAND_DISK_INSERTED = 2,   /**< a disk is back; the disk */
    QELTV_COMMAND_STANDBY = 3,         /**< standby begins: recordings without a booking end */
    QELTV_COMMAND_PROGRAMME_NAME = 16, /**< the recording; a text names its programme */
    QELTV_COMMAND_RATING = 17,         /**< the recording; a number is its first rating */
    QELTV_COMMAND_RETENTION = 18, /**< the recording; a number of days to keep it, 0 for ever */
};

/** State of a booking. */
enum QELTV_BOOKING_STATE {
    QELTV_BOOKING_WAITS = 0,  /**< waits for its start */
    QELTV_BOOKING_RUNS = 1,   /**< records */
    QELTV_BOOKING_MISSED = 2, /**< its time passed while the power was off */
    QELTV_BOOKING_FAILED = 3, /**< it could not start */
};

/** Repetition of a booking. */
enum QELTV_BOOKING_REPEAT {
    QELTV_BOOKING_ONCE = 0,   /**< records once */
    QELTV_BOOKING_DAILY = 1,  /**< records every day */
    QELTV_BOOKING_WEEKLY = 2, /**< records every week */
};

/** Flag of set_schedule_record(): books in spite of a conflict with another booking. */
#define QELTV_BOOK_IN_SPITE_OF_CONFLICT 1u

/** Schedule record. Texts are UTF-8, zero-padded. */
typedef struct {
    uint32_t booking;     /**< number of the booking, from 1; 0 for a new one */
    uint32_t channel;     /**< channel id */
    int64_t start;        /**< start in seconds since 1970, UTC */
    uint32_t seconds;     /**< duration in seconds, 1 to 86400 */
    uint32_t repeat;      /**< a QELTV_BOOKING_REPEAT */
    uint32_t state;       /**< a QELTV_BOOKING_STATE; ignored in a request */
    uint32_t rate;        /**< data rate in KiB per second; 0 for the disk's own rate */
    uint32_t error;       /**< QELTV_RECORDING_ERROR of a failed booking; ignored in a request */
    uint32_t reserved;    /**< 0 */
    char programme[128];  /**< name of the programme */
    char channelName[64]; /**< name of the channel; ignored in a request */
    uint8_t unused[16];   /**< 0 */
} QELTV_SCHEDULE_RECORD_T;

/** A source and its time. */
typedef struct {
    uint32_t kind;      /**< 0 a channel, 1 an input, which no recording can use */
    uint32_t id;        /**< channel id, or number of the input */
    int64_t start;      /**< start in seconds since 1970, UTC */
    uint32_t seconds;   /**< duration in seconds; 0 for all the time */
    uint8_t unused[52]; /**< 0 */
} QELTV_SOURCE_RECORD_T;

/** Disk record: size limit and data rate of the recordings on a disk. */
typedef struct {
    uint32_t disk;      /**< number of the disk, from 0 */
    uint32_t limitLow;  /**< low half of the limit in bytes; limit 0 for the whole file system */
    uint32_t limitHigh; /**< high half of the limit in bytes */
    uint32_t rate;      /**< data rate in bytes per second; 0 leaves it */
    uint32_t unused;    /**< 0 */
} QELTV_DISK_RECORD_T;

/** Item record of the browser. Texts are UTF-8, zero-padded. */
typedef struct {
    uint32_t item;        /**< number of the item */
    uint32_t channel;     /**< channel id */
    uint32_t major;       /**< major number of the channel, or its number */
    uint32_t minor;       /**< minor number of the channel; 0 for a one-part number */
    int64_t start;        /**< start in seconds since 1970, UTC */
    int64_t bytes;        /**< size of the file in bytes */
    uint32_t seconds;     /**< duration in seconds */
    uint32_t stopReason;  /**< a QELTV_STOP_REASON */
    uint32_t rating;      /**< its first rating, as QELTV_COMMAND_RATING set it; 0 for none */
    uint32_t retention;   /**< days that it is kept; 0 for ever */
    char channelName[64]; /**< name of the channel */
    char programme[128];  /**< name of the programme */
    char path[256];       /**< path of the file */
} QELTV_BROWSER_ITEM_T;

/** File-info record of the browser. */
typedef struct {
    uint32_t items;  /**< number of items */
    uint32_t unused; /**< 0 */
    int64_t bytes;   /**< size of all items in bytes */
    int64_t free;    /**< free bytes on the television's own disk */
} QELTV_BROWSER_INFO_T;

/** Status of the timeshift's device. */
enum QELTV_DEVICE_STATUS {
    QELTV_DEVICE_NONE = 0,      /**< no device */
    QELTV_DEVICE_REGISTERS = 1, /**< is being registered */
    QELTV_DEVICE_READY = 2,     /**< ready */
    QELTV_DEVICE_FAILED = 3,    /**< the registration failed */
};

/** Status of the recording behind the timeshift. */
enum QELTV_TIMESHIFT_STATUS {
    QELTV_TIMESHIFT_IDLE = 0,    /**< nothing is recorded */
    QELTV_TIMESHIFT_RECORDS = 1, /**< records */
    QELTV_TIMESHIFT_FULL = 2, /**< records; the buffer is full, the newest overwrites the oldest */
    QELTV_TIMESHIFT_KEPT = 3, /**< stopped; the buffer can still be played */
};

/** Way to stop the timeshift. */
enum QELTV_TIMESHIFT_STOP {
    QELTV_TIMESHIFT_STOP_DROP = 0, /**< the buffer is dropped */
    QELTV_TIMESHIFT_STOP_KEEP = 1, /**< the buffer can still be played */
};

/**
 * Kind of a timeshift notification. Positions are in milliseconds.
 * @values position_ms
 */
enum QELTV_TIMESHIFT_EVENT {
    /** the device's registration proceeds, in percent, or ends
     *  @values status:QELTV_DEVICE_STATUS, percent */
    QELTV_TIMESHIFT_DEVICE_EVENT = 1,
    /** the status has changed @values status:QELTV_TIMESHIFT_STATUS */
    QELTV_TIMESHIFT_STATUS_EVENT = 2,
    /** the speed or the position is set; speed in percent, 0 paused, 100 as broadcast, negative
     *  backward @values speed_percent:signed, position_ms */
    QELTV_TIMESHIFT_SPEED_EVENT = 3,
    QELTV_TIMESHIFT_LIVE_EVENT = 4,  /**< playing forward reaches the broadcast */
    QELTV_TIMESHIFT_BEGIN_EVENT = 5, /**< playing backward reaches the oldest position */
};

#endif /* QELTV_LAYOUTS_RECORD_H */
