#include "ChannelLists.h"

#include <set>
#include <utility>

#include "ChannelIds.h"

namespace qeltvd {

namespace {

/** A key fits a multiplex whose frequency is no further from its own. */
constexpr uint64_t kSameTransponderHz = 2000000;

}  // namespace

void ChannelList::order() {
    const auto before = [](const Channel& a, const Channel& b) {
        return a.number != b.number ? a.number < b.number : a.channelId < b.channelId;
    };
    if (!std::is_sorted(channels.begin(), channels.end(), before)) {
        std::sort(channels.begin(), channels.end(), before);
    }
    byRecord.clear();
    byId.clear();
    byRecord.reserve(channels.size());
    byId.reserve(channels.size());
    for (size_t i = 0; i < channels.size(); ++i) {
        byRecord[channels[i].recordId] = i;
        byId[channels[i].channelId] = i;
    }
}

const Channel* ChannelList::record(uint32_t recordId) const {
    const auto found = byRecord.find(recordId);
    return found != byRecord.end() ? &channels[found->second] : nullptr;
}

const Channel* ChannelList::id(uint32_t channelId) const {
    const auto found = byId.find(channelId);
    return found != byId.end() ? &channels[found->second] : nullptr;
}

const Channel* ChannelList::shortId(uint16_t list, uint16_t channelId) const {
    const Channel* found = id(channel_ids::onePart(list, channelId));
    if (found != nullptr) return found;
    for (const Channel& channel : channels) {
        if ((channel.channelId & 0xffff) == channelId) return &channel;
    }
    return nullptr;
}

const Channel* ChannelList::number(uint32_t number) const {
    const auto found =
            std::lower_bound(channels.begin(), channels.end(), number,
                             [](const Channel& channel, uint32_t n) { return channel.number < n; });
    return found != channels.end() && found->number == number ? &*found : nullptr;
}

const Channel* ChannelList::triplet(uint16_t networkId, uint16_t streamId,
                                    uint16_t serviceId) const {
    for (const Channel& channel : channels) {
        if (channel.originalNetworkId == networkId && channel.streamId == streamId &&
            channel.serviceId == serviceId) {
            return &channel;
        }
    }
    return nullptr;
}

const Channel* ChannelList::at(size_t index, const ChannelQuery& query) const {
    const Channel* found = nullptr;
    visit(query, index, 1, [&](const Channel& channel, const Multiplex&) { found = &channel; });
    return found;
}

const Multiplex& ChannelList::multiplexOf(const Channel& channel) const {
    static const Multiplex kNone;
    const auto found = recordIn(multiplexes, channel.multiplex);
    return found != multiplexes.end() ? *found : kNone;
}

bool ChannelList::matches(const ChannelQuery& query, const Channel& channel) const {
    return query.all() || query.matches(channel, multiplexOf(channel));
}

size_t ChannelList::count(const ChannelQuery& query) const {
    if (query.all()) return channels.size();
    return static_cast<size_t>(
            std::count_if(channels.begin(), channels.end(),
                          [&](const Channel& channel) { return matches(query, channel); }));
}

std::optional<size_t> ChannelList::indexOf(uint32_t channelId, const ChannelQuery& query) const {
    const auto found = byId.find(channelId);
    if (found == byId.end()) return std::nullopt;
    if (query.all()) return found->second;
    if (!matches(query, channels[found->second])) return std::nullopt;
    return static_cast<size_t>(std::count_if(
            channels.begin(), channels.begin() + static_cast<ptrdiff_t>(found->second),
            [&](const Channel& channel) { return matches(query, channel); }));
}

const Channel* ChannelList::next(uint32_t channelId, const ChannelQuery& query,
                                 Direction direction) const {
    if (channels.empty()) return nullptr;
    const uint32_t number = channel_ids::number(channelId);
    // The place of the channel, or the one that it would have.
    const auto from = static_cast<size_t>(
            std::lower_bound(channels.begin(), channels.end(), std::make_pair(number, channelId),
                             [](const Channel& c, const std::pair<uint32_t, uint32_t>& n) {
                                 return std::make_pair(c.number, c.channelId) < n;
                             }) -
            channels.begin());
    const bool there = from < channels.size() && channels[from].channelId == channelId;
    for (size_t step = 0; step < channels.size(); ++step) {
        const size_t index = direction == Direction::kBackwards
                                     ? from + 2 * channels.size() - 1 - step
                                     : from + step + (there ? 1 : 0);
        const Channel& channel = channels[index % channels.size()];
        if (channel.channelId != channelId && matches(query, channel)) return &channel;
    }
    return there && matches(query, channels[from]) ? &channels[from] : nullptr;
}

size_t ChannelList::visit(const ChannelQuery& query, size_t first, size_t limit,
                          const std::function<void(const Channel&, const Multiplex&)>& take) const {
    // Neighbours often share a multiplex.
    const Multiplex* last = nullptr;
    const auto multiplexNear = [&](const Channel& channel) -> const Multiplex& {
        if (last == nullptr || last->recordId != channel.multiplex) last = &multiplexOf(channel);
        return *last;
    };
    size_t taken = 0;
    if (query.all()) {
        for (size_t i = first; i < channels.size() && taken < limit; ++i, ++taken) {
            take(channels[i], multiplexNear(channels[i]));
        }
        return taken;
    }
    size_t index = 0;
    for (const Channel& channel : channels) {
        if (taken >= limit) break;
        const Multiplex& multiplex = multiplexNear(channel);
        if (!query.matches(channel, multiplex) || index++ < first) continue;
        take(channel, multiplex);
        ++taken;
    }
    return taken;
}

uint32_t ChannelList::freeNumber() const {
    uint32_t highest = 0;
    std::set<uint32_t> taken;
    for (const Channel& channel : channels) {
        if (channel.number > channel_ids::kMaximumNumber) continue;
        highest = std::max(highest, channel.number);
    }
    if (highest < channel_ids::kMaximumNumber) return highest + 1;
    for (const Channel& channel : channels) taken.insert(channel.number);
    for (uint32_t number = 1; number <= channel_ids::kMaximumNumber; ++number) {
        if (taken.count(number) == 0) return number;
    }
    return 0;
}

const ChannelList& ChannelLists::list(uint16_t id) const {
    static const ChannelList kEmpty;
    const auto found = lists.find(id);
    return found != lists.end() ? *found->second : kEmpty;
}

std::vector<uint16_t> ChannelLists::ids() const {
    std::vector<uint16_t> ids;
    for (const auto& [id, list] : lists) {
        if (!list->channels.empty() || !list->multiplexes.empty()) ids.push_back(id);
    }
    return ids;
}

const Channel* ChannelLists::channel(const Reference& reference) const {
    return reference.recordId != 0 ? list(reference.list).record(reference.recordId) : nullptr;
}

const Channel* ChannelLists::channel(uint32_t id, uint32_t channelId) const {
    if (id == 0 || id > channel_ids::kMaximumList) return nullptr;
    const auto in = static_cast<uint16_t>(id);
    if (channelId <= 0xffff) return list(in).shortId(in, static_cast<uint16_t>(channelId));
    return channel_ids::list(channelId) == in ? list(in).id(channelId) : nullptr;
}

std::vector<Channel> ChannelLists::favouriteChannels(uint32_t index, uint16_t only,
                                                     const ChannelQuery& query) const {
    std::vector<Channel> found;
    if (index >= kFavouriteLists) return found;
    for (const Favourite& favourite : favourites[index]) {
        if (only != 0 && favourite.list != only) continue;
        const ChannelList& from = list(favourite.list);
        const Channel* channel = from.record(favourite.recordId);
        if (channel != nullptr && from.matches(query, *channel)) found.push_back(*channel);
    }
    return found;
}

const BissKey* ChannelLists::keyFor(const Channel& channel) const {
    const Multiplex& multiplex = list(channel.list).multiplexOf(channel);
    const auto satellite = recordIn(satellites, multiplex.satellite);
    if (satellite == satellites.end()) return nullptr;
    const BissKey* best = nullptr;
    for (const BissKey& key : keys) {
        if (!key.enabled || key.key.empty() ||
            apart(uint64_t{key.frequencyKHz} * 1000, multiplex.frequencyHz) > kSameTransponderHz ||
            key.position != satellite->position || key.polarisation != multiplex.polarisation) {
            continue;
        }
        if (key.serviceId == channel.serviceId) return &key;
        if (key.serviceId == 0 && best == nullptr) best = &key;
    }
    return best;
}

}  // namespace qeltvd
