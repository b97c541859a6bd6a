#pragma once

#include <cstdint>
#include <string>

#include "LineUp.h"
#include "layouts/channel_records.h"

namespace qeltvd {

/** What channels are looked for; conditions that are left alone hold for every channel. */
struct ChannelQuery {
    /** CHANNEL_FILTER_ bits; without CHANNEL_FILTER_HIDDEN hidden channels are left out. */
    uint32_t filter = CHANNEL_FILTER_HIDDEN;
    /** The flags under the mask have these values. */
    uint32_t mask = 0;
    uint32_t flags = 0;
    BroadcastType broadcast = BroadcastType::kAny;
    /** Not empty: the whole name. */
    std::string name = {};
    /** Not 0: record ids of the multiplex, of the satellite. */
    uint32_t multiplex = 0;
    uint32_t satellite = 0;

    /** Those that a viewer zaps through. */
    static ChannelQuery zapping() { return {CHANNEL_FILTER_ZAPPING}; }
    static ChannelQuery filtered(uint32_t filter) { return {filter}; }
    static ChannelQuery masked(uint32_t mask, uint32_t flags) {
        return {CHANNEL_FILTER_HIDDEN, mask, flags};
    }

    bool all() const;
    bool matches(const Channel& channel, const Multiplex& multiplex) const;
};

}  // namespace qeltvd
