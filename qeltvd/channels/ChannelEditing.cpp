#include "ChannelEditing.h"

#include <algorithm>
#include <set>
#include <unordered_set>
#include <utility>

#include "ChannelEdit.h"
#include "ChannelIds.h"
#include "Code.h"
#include "Text.h"

namespace qeltvd::channel_editing {

Code setFlags(ChannelEdit& edit, uint16_t id, uint32_t recordId, uint32_t mask, uint32_t flags) {
    const Channel* found = edit.list(id).record(recordId);
    if (found == nullptr) return kNotFound;
    if ((mask & CHANNEL_FLAGS_FAVOURITE) != 0) return kBadValue;
    Channel channel = *found;
    channel.flags = (channel.flags & ~mask) | (flags & mask);
    if (channel.flags == found->flags) return kOk;
    edit.place(edit.change(id), channel);
    edit.changed({ChannelChange::Kind::kChannels, id, 0, {recordId}});
    return kOk;
}

Code setFlagsOfAll(ChannelEdit& edit, uint16_t id, const ChannelQuery& query, uint32_t mask,
                   uint32_t flags) {
    if ((mask & CHANNEL_FLAGS_FAVOURITE) != 0) return kBadValue;
    std::vector<Channel> changed;
    const ChannelList& before = edit.list(id);
    for (const Channel& channel : before.channels) {
        const uint32_t wanted = (channel.flags & ~mask) | (flags & mask);
        if (channel.flags == wanted || !before.matches(query, channel)) continue;
        changed.push_back(channel);
        changed.back().flags = wanted;
    }
    if (!changed.empty()) edit.placeAll(id, changed);
    return kOk;
}

Code rename(ChannelEdit& edit, uint16_t id, uint32_t recordId, const std::string& name) {
    const Channel* found = edit.list(id).record(recordId);
    if (found == nullptr) return kNotFound;
    if (name.empty() || name.find('\0') != std::string::npos) return kBadValue;
    Channel channel = *found;
    channel.name = name;
    channel.flags |= CHANNEL_FLAG_RENAMED;
    return put(edit, channel, Audience::kEveryone);
}

Code put(ChannelEdit& edit, const Channel& given, Audience audience) {
    Channel channel = given;
    const uint16_t id = channel.list;
    if (id == 0 || id > channel_ids::kMaximumList) return kBadValue;
    const ChannelList& before = edit.list(id);
    if (recordIn(before.multiplexes, channel.multiplex) == before.multiplexes.end()) {
        return kBadValue;
    }
    if (channel.type < ServiceType::kTelevision || channel.type > ServiceType::kData) {
        return kBadValue;
    }
    channel.name = cut(channel.name, kNameLimit);
    channel.provider = cut(channel.provider, kProviderLimit);
    channel.language = cut(channel.language, kLanguageLimit);
    // A non-PSIP id does not follow from its number alone.
    const bool kept = channel.channelId != 0 && channel_ids::isNonPsip(channel.channelId) &&
                      channel_ids::list(channel.channelId) == id &&
                      channel_ids::number(channel.channelId) == channel.number;
    if (!kept) channel.channelId = channel_ids::ofNumber(id, channel.number);
    const Channel* holder = before.id(channel.channelId);

    ChannelList& to = edit.change(id);
    if (channel.recordId == 0) {
        if (channel.channelId == 0 || holder != nullptr) {
            channel.number = to.freeNumber();
            if (channel.number == 0) return kRefused;
            channel.channelId = channel_ids::onePart(id, channel.number);
        }
        channel.recordId = to.nextRecord++;
        channel.flags &= ~CHANNEL_FLAGS_FAVOURITE;
    } else {
        const Channel* was = before.record(channel.recordId);
        if (was == nullptr) return kNotFound;
        if (channel.channelId == 0) return kBadValue;
        if (holder != nullptr && holder->recordId != channel.recordId) return kBadValue;
        channel.flags =
                (channel.flags & ~CHANNEL_FLAGS_FAVOURITE) | (was->flags & CHANNEL_FLAGS_FAVOURITE);
    }
    edit.place(to, channel);
    edit.changed({ChannelChange::Kind::kChannels, id, 0, {channel.recordId}, audience});
    return kOk;
}

Code put(ChannelEdit& edit, const Channel& given, const Multiplex& stream, Audience audience) {
    if (given.list == 0 || given.list > channel_ids::kMaximumList || stream.list != given.list) {
        return kBadValue;
    }
    const Result<uint32_t> multiplex = edit.put(stream, audience);
    if (!multiplex) return multiplex.code();
    Channel channel = given;
    channel.multiplex = *multiplex;
    return put(edit, channel, audience);
}

Code remove(ChannelEdit& edit, uint16_t id, const std::vector<uint32_t>& recordIds) {
    for (const uint32_t record : recordIds) {
        if (edit.list(id).record(record) == nullptr) return kNotFound;
    }
    edit.take(id, recordIds);
    return kOk;
}

Code removeAll(ChannelEdit& edit, uint16_t id, const ChannelQuery& query, Streams streams) {
    const ChannelList& before = edit.list(id);
    std::vector<uint32_t> channels;
    std::unordered_set<uint32_t> touched;
    std::unordered_set<uint32_t> used;
    for (const Channel& channel : before.channels) {
        if (before.matches(query, channel)) {
            channels.push_back(channel.recordId);
            touched.insert(channel.multiplex);
        } else {
            used.insert(channel.multiplex);
        }
    }
    std::vector<uint32_t> left;
    if (streams == Streams::kRemove) {
        // With a broadcast type, also those that had no channels before.
        for (const Multiplex& multiplex : before.multiplexes) {
            const bool concerned = touched.count(multiplex.recordId) != 0 ||
                                   (query.broadcast != BroadcastType::kAny &&
                                    query.broadcast == broadcastTypeOf(multiplex.system));
            if (concerned && used.count(multiplex.recordId) == 0) {
                left.push_back(multiplex.recordId);
            }
        }
    }
    edit.take(id, channels);
    edit.takeMultiplexes(id, left);
    return kOk;
}

Code removeMultiplexes(ChannelEdit& edit, uint16_t id, const std::vector<uint32_t>& recordIds) {
    const auto& before = edit.list(id).multiplexes;
    for (const uint32_t record : recordIds) {
        if (recordIn(before, record) == before.end()) return kNotFound;
    }
    edit.takeMultiplexes(id, recordIds);
    return kOk;
}

Code swap(ChannelEdit& edit, uint32_t channelId, uint32_t otherId) {
    const uint16_t id = channel_ids::list(channelId);
    if (id != channel_ids::list(otherId)) return kBadValue;
    const Channel* one = edit.list(id).id(channelId);
    const Channel* two = edit.list(id).id(otherId);
    if (one == nullptr || two == nullptr) return kNotFound;
    if (one == two) return kOk;
    Channel first = *one, second = *two;
    std::swap(first.channelId, second.channelId);
    std::swap(first.number, second.number);
    edit.placeAll(id, {first, second});
    return kOk;
}

Code moveBefore(ChannelEdit& edit, uint32_t channelId, uint32_t beforeId) {
    const uint16_t id = channel_ids::list(channelId);
    if (id != channel_ids::list(beforeId)) return kBadValue;
    const ChannelList& before = edit.list(id);
    const auto moved = before.byId.find(channelId);
    const auto target = before.byId.find(beforeId);
    if (moved == before.byId.end() || target == before.byId.end()) return kNotFound;
    const size_t from = moved->second;
    const size_t to = target->second > from ? target->second - 1 : target->second;
    if (from == to) return kOk;
    const size_t low = std::min(from, to), high = std::max(from, to);
    const auto at = [&](size_t i) { return before.channels.begin() + static_cast<ptrdiff_t>(i); };
    std::vector<Channel> range(at(low), at(high + 1));
    if (from < to) {
        std::rotate(range.begin(), range.begin() + 1, range.end());
    } else {
        std::rotate(range.begin(), range.end() - 1, range.end());
    }
    for (size_t i = 0; i < range.size(); ++i) {
        range[i].number = at(low + i)->number;
        range[i].channelId = at(low + i)->channelId;
    }
    edit.placeAll(id, range);
    return kOk;
}

Code moveToEnd(ChannelEdit& edit, uint32_t channelId) {
    const uint16_t id = channel_ids::list(channelId);
    const Channel* found = edit.list(id).id(channelId);
    if (found == nullptr) return kNotFound;
    Channel channel = *found;
    channel.number = edit.list(id).freeNumber();
    if (channel.number == 0) return kRefused;
    channel.channelId = channel_ids::onePart(id, channel.number);
    edit.placeAll(id, {channel});
    return kOk;
}

Code slide(ChannelEdit& edit, uint16_t id, uint32_t fromNumber, int32_t offset) {
    std::vector<Channel> moved;
    std::set<uint32_t> stay;
    for (const Channel& channel : edit.list(id).channels) {
        if (!channel_ids::isOnePart(channel.channelId)) continue;
        if (channel.number < fromNumber) {
            stay.insert(channel.number);
        } else {
            moved.push_back(channel);
        }
    }
    if (moved.empty() || offset == 0) return kOk;
    for (Channel& channel : moved) {
        const int64_t number = int64_t{channel.number} + offset;
        if (number < 1 || number > channel_ids::kMaximumNumber ||
            stay.count(static_cast<uint32_t>(number)) != 0) {
            return kBadValue;
        }
        channel.number = static_cast<uint32_t>(number);
        channel.channelId = channel_ids::onePart(id, channel.number);
    }
    edit.placeAll(id, moved);
    return kOk;
}

Code setCurrent(ChannelEdit& edit, uint32_t channelId,
                ChannelLists::Reference ChannelLists::*current) {
    const Channel* channel = edit.list(channel_ids::list(channelId)).id(channelId);
    if (channel == nullptr && channelId != 0) return kNotFound;
    edit.lists().*current = channel != nullptr
                                    ? ChannelLists::Reference{channel->list, channel->recordId}
                                    : ChannelLists::Reference{};
    return kOk;
}

Code setFavourites(ChannelEdit& edit, uint32_t index, const Favourites& favourites) {
    if (index >= kFavouriteLists) return kNotFound;
    std::set<std::pair<uint16_t, uint32_t>> seen;
    for (const Favourite& favourite : favourites) {
        if (edit.list(favourite.list).record(favourite.recordId) == nullptr) {
            return kNotFound;
        }
        if (!seen.insert({favourite.list, favourite.recordId}).second) return kBadValue;
    }
    if (edit.lists().favourites[index] == favourites) return kOk;
    edit.setFavourites(index, favourites);
    edit.flagFavourites();
    return kOk;
}

Code setCurrentFavouriteList(ChannelEdit& edit, uint32_t index) {
    if (index >= kFavouriteLists) return kNotFound;
    edit.lists().favouriteList = index;
    edit.changed({ChannelChange::Kind::kFavourites, static_cast<uint16_t>(index)});
    return kOk;
}

Code clear(ChannelEdit& edit, uint16_t id, Streams streams) {
    ChannelList& list = edit.change(id);
    list.channels.clear();
    if (streams == Streams::kRemove) {
        list.multiplexes.clear();
        list.networks.clear();
    }
    list.order();
    edit.store().saveList(id, edit.list(id));
    edit.changed({ChannelChange::Kind::kList, id});
    return kOk;
}

namespace {

/**
 * A favourite list as it was in a snapshot of a service list: in the order of the snapshot, with
 * the favourites of other service lists that there are at present.
 */
Favourites restored(uint16_t list, const Favourites& then, const Favourites& now) {
    const auto has = [](const Favourites& in, const Favourite& f) {
        return std::find(in.begin(), in.end(), f) != in.end();
    };
    Favourites all;
    for (const Favourite& f : then) {
        if (f.list == list || has(now, f)) all.push_back(f);
    }
    for (const Favourite& f : now) {
        if (f.list != list && !has(all, f)) all.push_back(f);
    }
    return all;
}

}  // namespace

Code restore(ChannelEdit& edit, const ChannelSnapshot& snapshot) {
    if (snapshot.kind == ChannelSnapshot::Kind::kSatellites) {
        edit.lists().satellites = snapshot.satellites;
        edit.store().saveSatellites(snapshot.satellites);
        edit.changed({ChannelChange::Kind::kSatellites, kSatelliteList});
        return kOk;
    }
    ChannelList& list = edit.change(snapshot.id);
    list.channels = snapshot.list->channels;
    list.multiplexes = snapshot.list->multiplexes;
    list.networks = snapshot.list->networks;
    list.order();
    edit.store().saveList(snapshot.id, list);
    for (uint32_t i = 0; i < kFavouriteLists; ++i) {
        const Favourites& now = edit.lists().favourites[i];
        const Favourites all = restored(snapshot.id, snapshot.favourites[i], now);
        if (all != now) edit.setFavourites(i, all);
    }
    edit.flagFavourites();
    edit.changed({ChannelChange::Kind::kList, snapshot.id});
    return kOk;
}

Code setListMode(ChannelEdit& edit, uint32_t mode) {
    if (mode > CHANNEL_LIST_MODE_ONE) return kBadValue;
    if (edit.lists().mode == mode) return kOk;
    edit.lists().mode = mode;
    edit.changed({ChannelChange::Kind::kListMode, static_cast<uint16_t>(mode)});
    return kOk;
}

}  // namespace qeltvd::channel_editing
