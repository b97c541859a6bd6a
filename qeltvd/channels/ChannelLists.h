#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "ChannelQuery.h"
#include "LineUp.h"
#include "layouts/channel_records.h"

namespace qeltvd {

/** Most bytes of a channel's, multiplex's, satellite's and network's name. */
constexpr size_t kNameLimit = 127;
constexpr size_t kProviderLimit = 63;
constexpr size_t kLanguageLimit = 3;

/** The favourite lists that a set has. */
constexpr uint32_t kFavouriteLists = 4;

/** The satellite list and the BISS key list have the id of the satellite channels' list. */
constexpr uint16_t kSatelliteList = static_cast<uint16_t>(Medium::kSatellite);

/** A BISS key and what it is for. */
struct BissKey {
    uint32_t recordId = 0;
    uint32_t frequencyKHz = 0;
    uint32_t symbolRate = 0;
    /** 0: every service of the transponder. */
    uint16_t serviceId = 0;
    /** The satellite's, tenths of a degree. */
    int16_t position = 0;
    Polarisation polarisation = Polarisation::kNone;
    bool enabled = true;
    /** Empty or 8 bytes. Never logged. */
    std::vector<uint8_t> key = {};
};

/** A channel of a favourite list. */
struct Favourite {
    uint16_t list;
    uint32_t recordId;
    bool operator==(const Favourite& o) const { return list == o.list && recordId == o.recordId; }
};

using Favourites = std::vector<Favourite>;
using FavouriteLists = std::array<Favourites, kFavouriteLists>;

enum class Direction { kForwards, kBackwards };

/** A record of a vector that is ordered by record id, or its end. */
template <class V>
auto recordIn(V& records, uint32_t recordId) {
    // Records are numbered from 1, so most stand where their id says.
    if (recordId != 0 && recordId <= records.size() && records[recordId - 1].recordId == recordId) {
        return records.begin() + (recordId - 1);
    }
    auto found = std::lower_bound(records.begin(), records.end(), recordId,
                                  [](const auto& r, uint32_t id) { return r.recordId < id; });
    return found != records.end() && found->recordId == recordId ? found : records.end();
}

template <class T>
std::optional<T> copyOf(const std::vector<T>& records, uint32_t recordId) {
    const auto found = recordIn(records, recordId);
    if (found == records.end()) return std::nullopt;
    return *found;
}

/**
 * A service list and the lists that go with it: plain data and what it answers. A pointer that a
 * function returns is into the list, or null.
 */
struct ChannelList {
    /** By number. */
    std::vector<Channel> channels;
    /** By record id. */
    std::vector<Multiplex> multiplexes;
    std::vector<Network> networks;
    /** Counts the changes. */
    uint32_t version = 0;
    uint32_t pumpVersion = 0;
    uint32_t nextRecord = 1;
    uint32_t nextMultiplex = 1;
    uint32_t nextNetwork = 1;

    /** Indices of channels, which order() makes. */
    std::unordered_map<uint32_t, size_t> byRecord;
    std::unordered_map<uint32_t, size_t> byId;

    /** Orders the channels and makes the indices. Everything below needs them. */
    void order();

    const Channel* record(uint32_t recordId) const;
    const Channel* id(uint32_t channelId) const;
    /** By an id of which only the low 16 bits are known. */
    const Channel* shortId(uint16_t list, uint16_t channelId) const;
    const Channel* number(uint32_t number) const;
    const Channel* triplet(uint16_t networkId, uint16_t streamId, uint16_t serviceId) const;
    /** The channel at an index among those that a query finds. */
    const Channel* at(size_t index, const ChannelQuery& query) const;

    /** An empty multiplex when the channel's is not there. */
    const Multiplex& multiplexOf(const Channel& channel) const;
    bool matches(const ChannelQuery& query, const Channel& channel) const;

    size_t count(const ChannelQuery& query) const;
    std::optional<size_t> indexOf(uint32_t channelId, const ChannelQuery& query) const;
    /** See ChannelDatabase::next(). */
    const Channel* next(uint32_t channelId, const ChannelQuery& query, Direction direction) const;
    /** See ChannelDatabase::visit(). */
    size_t visit(const ChannelQuery& query, size_t first, size_t limit,
                 const std::function<void(const Channel&, const Multiplex&)>& take) const;

    /** A number that no channel has, 0 when every number is taken. */
    uint32_t freeNumber() const;
};

/** All lists at one moment. */
struct ChannelLists {
    struct Reference {
        uint16_t list = 0;
        uint32_t recordId = 0;
    };

    std::map<uint16_t, std::shared_ptr<const ChannelList>> lists;
    std::vector<Satellite> satellites;
    std::vector<BissKey> keys;
    FavouriteLists favourites;
    Reference current;
    Reference second;
    uint32_t favouriteList = 0;
    uint32_t mode = CHANNEL_LIST_MODE_BROADCAST;
    /** The configured region that filled the lists; nothing before they are filled. */
    std::optional<std::string> region;

    /** An empty list when there is none. */
    const ChannelList& list(uint16_t id) const;
    /** Ids of the lists that have channels or multiplexes, ascending. */
    std::vector<uint16_t> ids() const;
    const Channel* channel(const Reference& reference) const;
    /** By its id, or by the low 16 bits of its id. */
    const Channel* channel(uint32_t list, uint32_t channelId) const;
    /** The channels of a favourite list that a query finds; list 0: of every service list. */
    std::vector<Channel> favouriteChannels(uint32_t favouriteList, uint16_t list,
                                           const ChannelQuery& query) const;
    /** The key that fits a channel's multiplex and service, or null. */
    const BissKey* keyFor(const Channel& channel) const;
};

/** A service list with its favourites, or the satellites, as they were at one moment. */
struct ChannelSnapshot {
    enum class Kind { kServiceList, kSatellites };
    Kind kind;
    /** The list that it is of. */
    uint16_t id;
    /** Null unless it is of a service list. */
    std::shared_ptr<const ChannelList> list;
    FavouriteLists favourites;
    std::vector<Satellite> satellites;
};

}  // namespace qeltvd
