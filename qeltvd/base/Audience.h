#pragma once

namespace qeltvd {

/** Who is notified of a change. */
enum class Audience {
    /** The television's own parts and its clients. */
    kEveryone,
    /** The television's own parts. */
    kTelevision,
};

}  // namespace qeltvd
