#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace qeltvd {

/** What the recorder needs to know of a channel. */
struct RecordedChannel {
    uint32_t id;
    std::string name;
    uint32_t major;
    uint32_t minor;
    /** Channels of one stream can be received together. */
    uint32_t stream;
    /** Kind of broadcast. */
    uint32_t medium;
};

/** The channel with an id; 0 stands for the one that is being watched. */
using ChannelLookup = std::function<std::optional<RecordedChannel>(uint32_t id)>;

}  // namespace qeltvd
