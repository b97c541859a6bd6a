#pragma once

#include <cstdint>

namespace qeltvd {

/**
 * The result codes of the reference television. 0 is success; the library's own -1 and -2 are
 * not used, so that a caller can tell a refusal from a service that is not there.
 */
enum Code : int32_t {
    kOk = 0,
    /** No such item, channel, record, handle. */
    kNotFound = -3,
    /** A value outside of its range, a record of the wrong size. */
    kBadValue = -4,
    /** Not now: disabled, locked, busy, the wrong state. */
    kRefused = -5,
    /** The store could not be written. */
    kStorage = -6,
    /** This television does not have that function. */
    kUnsupported = -38,
};

}  // namespace qeltvd
