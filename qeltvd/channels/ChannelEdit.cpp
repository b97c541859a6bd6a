#include "ChannelEdit.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "ChannelIds.h"
#include "Code.h"
#include "Text.h"

namespace qeltvd {

namespace {

/** Tenths of a degree. */
constexpr int32_t kFarthestPosition = 1800;
constexpr uint8_t kSwitchInputs = 16;
constexpr size_t kKeySize = 8;
constexpr uint64_t kHighestHz = UINT64_C(100000000000);

bool isPosition(int32_t position) {
    return position >= -kFarthestPosition && position <= kFarthestPosition;
}

/** Whether there is the satellite of a record that need not have one. */
bool hasSatellite(const ChannelLists& lists, uint32_t satellite) {
    return satellite == 0 || recordIn(lists.satellites, satellite) != lists.satellites.end();
}

// What the records of a client must be.

bool isGood(const ChannelLists& lists, const Multiplex& m) {
    return m.frequencyHz != 0 && m.frequencyHz <= kHighestHz &&
           m.system != DeliverySystem::kUnknown && m.system <= DeliverySystem::kIsdbT &&
           m.modulation <= Modulation::kVsb16 && m.polarisation <= Polarisation::kRight &&
           static_cast<uint16_t>(mediumOf(m.system)) == m.list && hasSatellite(lists, m.satellite);
}

bool isGood(const ChannelLists& lists, const Network& n) {
    return n.list != 0 && n.list <= channel_ids::kMaximumList && hasSatellite(lists, n.satellite);
}

bool isGood(const ChannelLists&, const Satellite& s) {
    return isPosition(s.position) && s.switchPort <= kSwitchInputs && !s.name.empty();
}

bool isGood(const ChannelLists&, const BissKey& k) {
    return (k.key.empty() || k.key.size() == kKeySize) && k.polarisation <= Polarisation::kRight &&
           isPosition(k.position) && k.frequencyKHz != 0;
}

template <class Record>
void cutName(Record& record) {
    record.name = cut(record.name, kNameLimit);
}
void cutName(BissKey&) {}

// What a change of a record is.

ChannelChange changeOf(const Multiplex& m) {
    return {ChannelChange::Kind::kMultiplexes, m.list};
}
ChannelChange changeOf(const Network& n) {
    return {ChannelChange::Kind::kNetworks, n.list};
}
ChannelChange changeOf(const Satellite&) {
    return {ChannelChange::Kind::kSatellites, kSatelliteList};
}
ChannelChange changeOf(const BissKey&) {
    return {ChannelChange::Kind::kBissKeys, kSatelliteList};
}

}  // namespace

ChannelEdit::ChannelEdit(ChannelStore& store, std::shared_ptr<const ChannelLists> before)
        : mStore(store),
          mTransaction(std::in_place, store.store()),
          mBefore(std::move(before)),
          mLists(std::make_shared<ChannelLists>(*mBefore)) {}

ChannelList& ChannelEdit::change(uint16_t id) {
    auto& mine = mChanged[id];
    if (mine == nullptr) {
        mine = std::make_shared<ChannelList>(mLists->list(id));
        mLists->lists[id] = mine;
    }
    return *mine;
}

void ChannelEdit::place(ChannelList& list, const Channel& channel) {
    mStore.save(channel);
    const auto found = list.byRecord.find(channel.recordId);
    if (found != list.byRecord.end()) {
        list.channels[found->second] = channel;
    } else {
        list.byRecord[channel.recordId] = list.channels.size();
        list.channels.push_back(channel);
    }
}

void ChannelEdit::placeAll(uint16_t id, const std::vector<Channel>& channels) {
    ChannelChange what{ChannelChange::Kind::kChannels, id};
    ChannelList& to = change(id);
    for (const Channel& channel : channels) {
        place(to, channel);
        what.records.push_back(channel.recordId);
    }
    changed(std::move(what));
}

template <class Record, class Unwanted>
void ChannelEdit::erase(std::vector<Record>& from, const Unwanted& unwanted) {
    for (const Record& record : from) {
        if (unwanted(record)) mStore.erase(record);
    }
    from.erase(std::remove_if(from.begin(), from.end(), unwanted), from.end());
}

void ChannelEdit::take(uint16_t id, const std::vector<uint32_t>& records) {
    if (records.empty()) return;
    ChannelList& from = change(id);
    const std::unordered_set<uint32_t> gone(records.begin(), records.end());
    erase(from.channels, [&](const Channel& c) { return gone.count(c.recordId) != 0; });
    from.order();
    changed({ChannelChange::Kind::kChannelsRemoved, id, 0, records});
}

void ChannelEdit::takeMultiplexes(uint16_t id, const std::vector<uint32_t>& records) {
    if (records.empty()) return;
    ChannelList& from = change(id);
    const std::unordered_set<uint32_t> gone(records.begin(), records.end());
    std::vector<uint32_t> channels;
    for (const Channel& channel : from.channels) {
        if (gone.count(channel.multiplex) != 0) channels.push_back(channel.recordId);
    }
    take(id, channels);
    erase(from.multiplexes, [&](const Multiplex& m) { return gone.count(m.recordId) != 0; });
    changed({ChannelChange::Kind::kMultiplexes, id, 0, records});
}

template <class Record>
Result<uint32_t> ChannelEdit::put(Record record, Audience audience) {
    if (!isGood(*mLists, record)) return kBadValue;
    cutName(record);
    auto& all = among(record);
    if (record.recordId == 0) {
        record.recordId = newId(record);
        all.push_back(record);
    } else {
        const auto known = recordIn(all, record.recordId);
        if (known == all.end()) return kNotFound;
        *known = record;
    }
    mStore.save(record);
    ChannelChange what = changeOf(record);
    what.records = {record.recordId};
    what.audience = audience;
    changed(std::move(what));
    return record.recordId;
}

template Result<uint32_t> ChannelEdit::put(Multiplex, Audience);
template Result<uint32_t> ChannelEdit::put(Network, Audience);
template Result<uint32_t> ChannelEdit::put(Satellite, Audience);
template Result<uint32_t> ChannelEdit::put(BissKey, Audience);

template <class Record>
Code ChannelEdit::remove(std::vector<Record>& from, uint32_t recordId) {
    if (recordId != 0 && recordIn(from, recordId) == from.end()) return kNotFound;
    erase(from, [&](const Record& r) { return recordId == 0 || r.recordId == recordId; });
    return kOk;
}

Code ChannelEdit::removeNetworks(uint16_t id, uint32_t recordId) {
    ChannelList& list = change(id);
    const Code code = remove(list.networks, recordId);
    if (code != kOk) return code;
    for (Multiplex& multiplex : list.multiplexes) {
        if (multiplex.network == 0 || (recordId != 0 && multiplex.network != recordId)) continue;
        multiplex.network = 0;
        mStore.save(multiplex);
    }
    changed({ChannelChange::Kind::kNetworks, id, 0, {recordId}});
    return kOk;
}

Code ChannelEdit::removeSatellites(uint32_t recordId) {
    const Code code = remove(mLists->satellites, recordId);
    if (code != kOk) return code;
    const auto concerned = [&](const auto& record) {
        return record.satellite != 0 && (recordId == 0 || record.satellite == recordId);
    };
    ChannelList& list = change(kSatelliteList);
    std::vector<uint32_t> multiplexes;
    for (const Multiplex& multiplex : list.multiplexes) {
        if (concerned(multiplex)) multiplexes.push_back(multiplex.recordId);
    }
    takeMultiplexes(kSatelliteList, multiplexes);
    erase(list.networks, concerned);
    changed({ChannelChange::Kind::kSatellites, kSatelliteList, 0, {recordId}});
    return kOk;
}

Code ChannelEdit::removeKeys(uint32_t recordId) {
    const Code code = remove(mLists->keys, recordId);
    if (code != kOk) return code;
    changed({ChannelChange::Kind::kBissKeys, kSatelliteList, 0, {recordId}});
    return kOk;
}

void ChannelEdit::setFavourites(uint32_t index, const Favourites& favourites) {
    mLists->favourites[index] = favourites;
    mStore.saveFavourites(index, favourites);
    changed({ChannelChange::Kind::kFavourites, static_cast<uint16_t>(index)});
}

void ChannelEdit::flagFavourites() {
    std::map<std::pair<uint16_t, uint32_t>, uint32_t> flags;
    for (uint32_t i = 0; i < kFavouriteLists; ++i) {
        for (const Favourite& f : mLists->favourites[i]) {
            flags[{f.list, f.recordId}] |= CHANNEL_FLAG_FAVOURITE_1 << i;
        }
    }
    std::vector<uint16_t> ids;
    for (const auto& each : mLists->lists) ids.push_back(each.first);
    for (const uint16_t id : ids) {
        std::vector<Channel> changed;
        for (const Channel& channel : list(id).channels) {
            const auto found = flags.find({id, channel.recordId});
            const uint32_t wanted = found != flags.end() ? found->second : 0;
            if ((channel.flags & CHANNEL_FLAGS_FAVOURITE) == wanted) continue;
            changed.push_back(channel);
            changed.back().flags = (channel.flags & ~CHANNEL_FLAGS_FAVOURITE) | wanted;
        }
        if (changed.empty()) continue;
        ChannelList& to = change(id);
        for (const Channel& channel : changed) place(to, channel);
    }
}

std::vector<ChannelChange> ChannelEdit::commit() {
    for (uint32_t i = 0; i < kFavouriteLists; ++i) {
        Favourites there = mLists->favourites[i];
        const auto gone = [&](const Favourite& f) {
            return list(f.list).record(f.recordId) == nullptr;
        };
        there.erase(std::remove_if(there.begin(), there.end(), gone), there.end());
        if (there.size() != mLists->favourites[i].size()) setFavourites(i, there);
    }
    for (auto& [id, list] : mChanged) {
        list->order();
        ++list->version;
        mStore.saveCounters(id, *list);
    }
    follow(mBefore->current, mLists->current, ChannelChange::Kind::kCurrent);
    follow(mBefore->second, mLists->second, ChannelChange::Kind::kSecondCurrent);
    mStore.saveValues(*mBefore, *mLists);
    mTransaction->commit();
    mTransaction.reset();
    return std::move(mChanges);
}

/** Notes a current channel that is another one than before, has gone or has another number. */
void ChannelEdit::follow(const ChannelLists::Reference& was, ChannelLists::Reference& is,
                         ChannelChange::Kind kind) {
    const Channel* from = mBefore->channel(was);
    const Channel* to = mLists->channel(is);
    if (to == nullptr) is = {};
    const uint32_t idBefore = from != nullptr ? from->channelId : 0;
    const uint32_t idNow = to != nullptr ? to->channelId : 0;
    if (idBefore != idNow) changed({kind, is.list, idNow});
}

}  // namespace qeltvd
