#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Event.h"
#include "LineUp.h"

namespace qeltvd {

/**
 * The simulated programme of a channel: days from midnight to midnight UTC without a gap. The same
 * on every machine: all choices come from splitmix64 whose state begins with the channel id times
 * 0x9e3779b97f4a7c15, exclusive or the day (number of days since 1970); nothing depends on when and
 * how often it is asked. An event id is the day modulo 512 in the high 9 bits and the number of the
 * event of that day from 1 in the low 7. It covers QELTV_GUIDE_DAYS_BACK and _AHEAD.
 */
class SimulatedGuide {
  public:
    /** What overlaps a time, in order. */
    static std::vector<Event> events(const Channel& channel, int64_t from, int64_t to, int64_t now);
    /** The event of an id on the day of that number that is nearest. */
    static std::optional<Event> event(const Channel& channel, uint16_t id, int64_t now);

    /** First second that a guide knows, and the second after the last. */
    static int64_t begin(int64_t now);
    static int64_t end(int64_t now);
};

}  // namespace qeltvd
