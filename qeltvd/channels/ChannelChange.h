#pragma once

#include <cstdint>
#include <vector>

#include "Audience.h"

namespace qeltvd {

/** What has changed; listeners are notified after it is stored. */
struct ChannelChange {
    enum class Kind {
        /** Channels of a list are new, edited, renumbered; `records` are their record ids. */
        kChannels,
        /** Channels of a list are gone; `records` are the record ids that they had. */
        kChannelsRemoved,
        /** A list was filled, emptied or put back as a whole. */
        kList,
        /** Another channel is the current one, or there is none any more; `channelId`. */
        kCurrent,
        kSecondCurrent,
        /** A favourite list; `list` is its index. */
        kFavourites,
        kMultiplexes,
        kSatellites,
        kNetworks,
        kBissKeys,
        /** `list` is the new mode. */
        kListMode,
    };
    Kind kind;
    uint16_t list = 0;
    uint32_t channelId = 0;
    std::vector<uint32_t> records = {};
    Audience audience = Audience::kEveryone;
};

}  // namespace qeltvd
