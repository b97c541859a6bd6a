/** Emergency alerts and emergency warnings of the reference television: values and records. */
#ifndef QELTV_LAYOUTS_ALERT_H
#define QELTV_LAYOUTS_ALERT_H

#include <stdint.h>

/** Type of an emergency alert. */
enum QELTV_ALERT_TYPE {
    QELTV_ALERT_NONE = 0,     /**< no alert */
    QELTV_ALERT_TEST = 1,     /**< a test; nothing has happened */
    QELTV_ALERT_MESSAGE = 2,  /**< an administrative message */
    QELTV_ALERT_WARNING = 3,  /**< a warning of an area */
    QELTV_ALERT_NATIONAL = 4, /**< a national emergency */
};

/**
 * Kind of an alert notification; its values are the alert's state.
 * @values alert:QELTV_ALERT_TYPE, channel_change, channel, area
 */
enum QELTV_ALERT_EVENT {
    QELTV_ALERT_BEGINS = 1, /**< an alert begins */
    QELTV_ALERT_ENDS = 2,   /**< the alert ends, and the channel before it returns */
    QELTV_ALERT_LEFT = 3,   /**< the application ends the alert, and the channel stays */
};

/** First value of ewspa_get() and ewspa_set(); b is the second value. */
enum QELTV_WARNING_ITEM {
    QELTV_WARNING_MONITORS = 1, /**< get: number of monitors, then the area of each */
    /** get: number of warnings for monitor b, then a QELTV_WARNING_ENTRY_T for each */
    QELTV_WARNING_LIST = 2,
    /** set: raises the QELTV_WARNING_ENTRY_T in the data; the answer has its number */
    QELTV_WARNING_RAISE = 3,
    QELTV_WARNING_CANCEL = 4, /**< set: ends warning b */
    /** set: begins the QELTV_ALERT_ENTRY_T in the data as a broadcast does; type 0 ends it */
    QELTV_ALERT_RAISE = 5,
};

/** A warning, as 32-bit values. */
typedef struct {
    int32_t number;   /**< number of the warning, from 1; ignored in a request */
    int32_t severity; /**< 1 test, 2 watch, 3 warning */
    int32_t area;     /**< area in which it holds; 0 for everywhere */
    int32_t seconds;  /**< remaining duration in seconds, 1 to 86400 */
} QELTV_WARNING_ENTRY_T;

/** An alert, as 32-bit values. */
typedef struct {
    int32_t type;          /**< a QELTV_ALERT_TYPE */
    int32_t channelChange; /**< 1 when the television changes to the channel with details, else 0 */
    int32_t channel;       /**< channel id of the channel with details; 0 for none */
    int32_t area;          /**< area in which it holds; 0 for everywhere */
    int32_t seconds;       /**< duration in seconds, 1 to 86400 */
} QELTV_ALERT_ENTRY_T;

/** Kind of a warning notification. */
enum QELTV_WARNING_EVENT {
    QELTV_WARNING_BEGINS = 1, /**< a warning begins */
    QELTV_WARNING_ENDS = 2,   /**< a warning ends */
};

#define QELTV_WARNING_MONITOR_LIMIT 16u /**< most monitors at a time */

#endif /* QELTV_LAYOUTS_ALERT_H */
