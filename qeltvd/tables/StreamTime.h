#pragma once

#include <cstdint>
#include <optional>

namespace qeltvd::stream {

/**
 * Seconds since 1970 of a time of DVB: a Modified Julian Date of 16 bits and six decimal digits.
 * Nothing for an undefined time or one that is none. Dates go from 1970 to 2149.
 */
std::optional<int64_t> timeOfDvb(uint64_t time);
/** The inverse, for a time of 1970 or later. */
uint64_t dvbOfTime(int64_t time);

/** Seconds since 1970 of a time of ATSC, which counts from 1980 and without leap seconds. */
int64_t timeOfAtsc(uint32_t time, int64_t utcOffset);

}  // namespace qeltvd::stream
