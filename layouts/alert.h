/** What crosses the emergency alert and warning methods of this television. */
#pragma once

#include <cstdint>

namespace qeltvd::layouts {

/** Type of an alert. */
enum AlertType : int32_t {
    kAlertNone = 0,
    kAlertTest = 1,
    kAlertMessage = 2,
    kAlertWarning = 3,
    kAlertNational = 4,
};

/** Kind of an alert notification; its arguments are the four values of the alert's state. */
enum AlertEvent : int32_t {
    kAlertBegins = 1,
    kAlertEnds = 2,
    /** It has ended because the application left it; the channel stays. */
    kAlertLeft = 3,
};

/** First value of ewspa_get() and ewspa_set(); the second value is @c b. */
enum WarningItem : uint32_t {
    /** get: number of monitors, then their areas. */
    kWarningMonitors = 1,
    /** get: number of warnings for monitor b, then a WarningEntry each. */
    kWarningList = 2,
    /** set: raises a warning, data a WarningEntry; the answer has the number it got. */
    kWarningRaise = 3,
    /** set: ends warning b. */
    kWarningCancel = 4,
    /** set: begins an alert as a broadcast would, data an AlertEntry; type 0 ends it. */
    kAlertRaise = 5,
};

/** As 32-bit values. */
struct WarningEntry {
    int32_t number;
    /** 1 test, 2 watch, 3 warning. */
    int32_t severity;
    /** Where it holds; 0 everywhere. */
    int32_t area;
    /** That it still lasts. */
    int32_t seconds;
};
static_assert(sizeof(WarningEntry) == 16);

struct AlertEntry {
    int32_t type;
    /** 1 when the television goes to the channel that has details. */
    int32_t channelChange;
    /** The channel with details. */
    int32_t channel;
    /** Where it holds. */
    int32_t area;
    int32_t seconds;
};
static_assert(sizeof(AlertEntry) == 20);

/** Kind of a warning notification. */
enum WarningEvent : int32_t { kWarningBegins = 1, kWarningEnds = 2 };

/** Monitors that can be there at once. */
constexpr uint32_t kWarningMonitorLimit = 16;

}  // namespace qeltvd::layouts
