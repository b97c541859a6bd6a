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

/** Simulated teletext: the same pages on every channel, with TOP navigation. */
class SimulatedTeletext {
  public:
    /** Rows 1 to 24 of each subpage; nothing for a page that is not broadcast. */
    static std::vector<std::vector<std::string>> content(uint16_t number,
                                                         const TeletextTopics& topics);
    /** All pages, in order. */
    static std::vector<stream::TopPage> top();
};

}  // namespace qeltvd
