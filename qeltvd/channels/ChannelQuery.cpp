#include "ChannelQuery.h"

namespace qeltvd {

bool ChannelQuery::all() const {
    return filter == CHANNEL_FILTER_HIDDEN && mask == 0 && broadcast == BroadcastType::kAny &&
           name.empty() && multiplex == 0 && satellite == 0;
}

bool ChannelQuery::matches(const Channel& channel, const Multiplex& stream) const {
    if ((channel.flags & mask) != (flags & mask)) return false;
    if ((filter & CHANNEL_FILTER_HIDDEN) == 0 && (channel.flags & CHANNEL_FLAG_VISIBLE) == 0) {
        return false;
    }
    constexpr uint32_t kTypes =
            CHANNEL_FILTER_TELEVISION | CHANNEL_FILTER_RADIO | CHANNEL_FILTER_DATA;
    const uint32_t type = 1u << (static_cast<uint32_t>(channel.type) - 1);
    if ((filter & kTypes) != 0 && (filter & kTypes & type) == 0) return false;
    const auto wants = [&](uint32_t condition, uint32_t flag, bool set) {
        return (filter & condition) == 0 || ((channel.flags & flag) != 0) == set;
    };
    return wants(CHANNEL_FILTER_FAVOURITE, CHANNEL_FLAGS_FAVOURITE, true) &&
           wants(CHANNEL_FILTER_FREE, CHANNEL_FLAG_SCRAMBLED, false) &&
           wants(CHANNEL_FILTER_SCRAMBLED, CHANNEL_FLAG_SCRAMBLED, true) &&
           wants(CHANNEL_FILTER_UNLOCKED, CHANNEL_FLAG_LOCKED, false) &&
           wants(CHANNEL_FILTER_ZAPPING, CHANNEL_FLAG_SKIPPED, false) &&
           (broadcast == BroadcastType::kAny || broadcast == broadcastTypeOf(stream.system)) &&
           (name.empty() || name == channel.name) &&
           (multiplex == 0 || multiplex == channel.multiplex) &&
           (satellite == 0 || satellite == stream.satellite);
}

}  // namespace qeltvd
