#pragma once

#include <cstdint>

namespace qeltvd {

/** Seconds of a day. */
constexpr int64_t kDay = 86400;

/** The number of the day since 1970 in which a second lies, negative before. */
constexpr int64_t dayOf(int64_t time) {
    return time >= 0 ? time / kDay : (time - kDay + 1) / kDay;
}

}  // namespace qeltvd
