#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "LineUp.h"
#include "TeletextDecoder.h"

namespace qeltvd {

/** The subjects of simulated pages; received ones need none of them. */
struct TeletextTopics {
    /** Seconds since 1970, UTC, by which subpages turn. */
    int64_t now = 0;
    /** The time as the first row shows it. */
    std::string stamp = {};
    /** The channels of the list that is being watched. */
    std::function<std::vector<Channel>()> channels = {};
};

/** What teletext shows for a page, or one of its subpages, that a viewer chooses. */
struct TeletextView {
    enum class State : uint8_t {
        /** It is not broadcast. */
        kAbsent,
        /** It has not come yet. */
        kAwaited,
        kShown,
    };
    State state = State::kAbsent;
    /** Those that there are, or have come so far. */
    uint32_t subpages = 0;
    /** The one that is shown or awaited, from 1; 0 for none. */
    uint32_t subpage = 0;
    /** With the header of the moment, which has space for the page number; blank without a page. */
    stream::TeletextPage page = {};
    /** Whether it is received, so that it changes by itself. */
    bool received = false;
};

}  // namespace qeltvd
