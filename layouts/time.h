/** Time of the reference television: values and records. */
#ifndef QELTV_LAYOUTS_TIME_H
#define QELTV_LAYOUTS_TIME_H

#include <stdint.h>

/** Flags of a date-time record, bits. */
enum QELTV_DTG_FLAG {
    QELTV_DTG_UTC = 1, /**< UTC; without the bit, local time of the television */
    /** local time with daylight saving; in a request it matters only where an hour occurs twice */
    QELTV_DTG_DAYLIGHT = 2,
};

/** The 10-byte date-time record. All zeros are no time. */
typedef struct {
    uint16_t year;   /**< 1 to 9999, Gregorian calendar at all times */
    uint8_t month;   /**< 1 to 12 */
    uint8_t day;     /**< 1 to 31 */
    uint8_t weekday; /**< 0 Sunday to 6 Saturday; ignored in a request */
    uint8_t hour;    /**< 0 to 23 */
    uint8_t minute;  /**< 0 to 59 */
    uint8_t second;  /**< 0 to 59 */
    uint16_t flags;  /**< QELTV_DTG_FLAG bits */
} QELTV_DTG_T;

/** Type of a_qeltvapi_time_convert(); the flags of the record are ignored. */
enum QELTV_TIME_CONVERSION {
    QELTV_TIME_UTC_TO_LOCAL = 0, /**< from UTC to local time */
    QELTV_TIME_LOCAL_TO_UTC = 1, /**< from local time to UTC */
    QELTV_TIME_NORMALISE = 2,    /**< carries fields out of range over: minute 75 into the hour */
};

/** Source of the clock. */
enum QELTV_SYNC_SOURCE {
    QELTV_SYNC_MANUAL = 0,    /**< nothing: the user sets time, zone and offset */
    QELTV_SYNC_BROADCAST = 1, /**< the broadcast (TDT, TOT), zone of the configured place */
    QELTV_SYNC_NETWORK = 2,   /**< the network (the host's clock); zone and offset can be set */
};

/** First byte of the raw broadcast time; the three values that follow. */
enum QELTV_RAW_TIME_TABLE {
    /** time offset table: UTC in seconds since 1970, local offset in seconds, UTC of the next
     *  change of the offset (0 for none) */
    QELTV_RAW_TIME_TOT = 1,
    QELTV_RAW_TIME_STT = 2, /**< system time table: the same values */
};

/** Type of a date-time notification. */
enum QELTV_TIME_EVENT {
    QELTV_TIME_CHANGED = 1, /**< the clock is set or jumps; seconds since 1970, UTC @values utc */
    /** zone or offset changes; local time minus UTC in seconds @values offset:signed */
    QELTV_TIME_ZONE_CHANGED = 2,
};

/** Type of a sync-source notification. */
enum QELTV_SYNC_EVENT {
    QELTV_SYNC_SOURCE_CHANGED = 1, /**< another source @values source:QELTV_SYNC_SOURCE */
};

/** Type of a sleep-timer notification. @values seconds */
enum QELTV_SLEEP_EVENT {
    QELTV_SLEEP_SET = 1,       /**< the timer is set; seconds until it expires */
    QELTV_SLEEP_WARNING = 2,   /**< the timer expires soon; seconds left */
    QELTV_SLEEP_EXPIRED = 3,   /**< the timer expires; 0 seconds */
    QELTV_SLEEP_CANCELLED = 4, /**< the timer is switched off; 0 seconds */
};

#define QELTV_SLEEP_MAXIMUM (24 * 3600) /**< longest sleep timer, in seconds */
#define QELTV_SLEEP_WARNING_TIME 60     /**< seconds from the warning to the expiry */
#define QELTV_ZONE_MAXIMUM (14 * 3600)  /**< largest zone and offset, in seconds either way */

#endif /* QELTV_LAYOUTS_TIME_H */
