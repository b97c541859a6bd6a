#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "PacketSource.h"
#include "RecordedChannel.h"

namespace qeltvd {

/** What a recording wants of its source. */
struct PacketRequest {
    RecordedChannel channel;
    /** Bytes per second that are set for the recording; received packets have their own rate. */
    uint32_t rate;
};

/** Makes the source of a recording that starts; never null. */
using PacketSourceFactory = std::function<std::unique_ptr<PacketSource>(const PacketRequest&)>;

}  // namespace qeltvd
