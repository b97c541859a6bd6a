#pragma once

#include <cstdint>
#include <vector>

namespace qeltvd {

/** What has changed, told to listeners after it is stored. */
struct ChannelChange {
    enum Kind {
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
    /** The caller asked that clients are not told; the television's own parts still are. */
    bool quiet = false;
};

}  // namespace qeltvd
