#define LOG_TAG "qeltvd"

#include "ChannelDatabase.h"

#include <utility>

#include "ChannelEdit.h"
#include "ChannelFill.h"
#include "ChannelIds.h"
#include "Code.h"
#include "Guarded.h"
#include "Stored.h"

namespace qeltvd {

namespace {

std::optional<Channel> copied(const Channel* channel) {
    return channel != nullptr ? std::optional<Channel>(*channel) : std::nullopt;
}

std::optional<ChannelDatabase::Pair> paired(const ChannelList& list, const Channel* channel) {
    if (channel == nullptr) return std::nullopt;
    return ChannelDatabase::Pair{*channel, list.multiplexOf(*channel)};
}

}  // namespace

ChannelDatabase::ChannelDatabase(Store& store, Broadcast& broadcast, const std::string& region)
        : mBroadcast(broadcast),
          mStore(store),
          mState(std::make_shared<ChannelLists>(mStore.load())) {
    mBroadcast.setSatellites(mState->satellites);
    if (!mState->region) {
        (void)reload(region);
    } else if (mState->region != mBroadcast.nameOf(region)) {
        // On a full disk the channels of before are better than none; tried again at each start.
        (void)stored([&] { return reload(region); });
    } else {
        // The lists stay as they are; the guide takes what the files have.
        (void)channel_editing::survey(mBroadcast, region);
    }
}

template <class Edit>
auto ChannelDatabase::change(const Edit& edit) -> std::invoke_result_t<const Edit&, ChannelEdit&> {
    std::unique_lock<std::mutex> editing(mEditing);
    ChannelEdit work(mStore, state());
    const auto result = edit(work);
    if (codeOf(result) != kOk) return result;
    const std::vector<ChannelChange> changes = work.commit();
    std::vector<Listener> listeners;
    {
        std::lock_guard<std::mutex> guard(mLock);
        mState = work.result();
        mBroadcast.setSatellites(mState->satellites);
        listeners = mListeners;
    }
    editing.unlock();
    for (const ChannelChange& each : changes) {
        callAll("following a change of the channels", listeners, each);
    }
    return result;
}

template <class Record>
Result<uint32_t> ChannelDatabase::putRecord(const Record& record, Audience audience) {
    return change([&](ChannelEdit& edit) { return edit.put(record, audience); });
}

template Result<uint32_t> ChannelDatabase::putRecord(const Multiplex&, Audience);
template Result<uint32_t> ChannelDatabase::putRecord(const Satellite&, Audience);
template Result<uint32_t> ChannelDatabase::putRecord(const Network&, Audience);
template Result<uint32_t> ChannelDatabase::putRecord(const BissKey&, Audience);

std::shared_ptr<const ChannelLists> ChannelDatabase::state() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mState;
}

std::shared_ptr<const ChannelList> ChannelDatabase::list(uint16_t id) const {
    static const auto kEmpty = std::make_shared<const ChannelList>();
    const auto now = state();
    const auto found = now->lists.find(id);
    return found != now->lists.end() ? found->second : kEmpty;
}

void ChannelDatabase::addListener(Listener listener) {
    std::lock_guard<std::mutex> guard(mLock);
    mListeners.push_back(std::move(listener));
}

std::vector<uint16_t> ChannelDatabase::lists() const {
    return state()->ids();
}

size_t ChannelDatabase::count(uint16_t id, const ChannelQuery& query) const {
    return list(id)->count(query);
}

std::optional<Channel> ChannelDatabase::byChannelId(uint32_t channelId) const {
    return copied(list(channel_ids::list(channelId))->id(channelId));
}

std::optional<Channel> ChannelDatabase::channel(uint32_t id, uint32_t channelId) const {
    return copied(state()->channel(id, channelId));
}

std::optional<Channel> ChannelDatabase::byRecord(uint16_t id, uint32_t recordId) const {
    return copied(list(id)->record(recordId));
}

std::optional<Channel> ChannelDatabase::byNumber(uint16_t id, uint32_t number) const {
    return copied(list(id)->number(number));
}

std::optional<Channel> ChannelDatabase::byIndex(uint16_t id, size_t index) const {
    return byIndex(id, {}, index);
}

std::optional<Channel> ChannelDatabase::byTriplet(uint16_t id, uint16_t networkId,
                                                  uint16_t streamId, uint16_t serviceId) const {
    return copied(list(id)->triplet(networkId, streamId, serviceId));
}

std::optional<Channel> ChannelDatabase::byIndex(uint16_t id, const ChannelQuery& query,
                                                size_t index) const {
    return copied(list(id)->at(index, query));
}

std::vector<Channel> ChannelDatabase::find(uint16_t id, const ChannelQuery& query, size_t first,
                                           size_t limit) const {
    std::vector<Channel> found;
    visit(id, query, first, limit,
          [&](const Channel& channel, const Multiplex&) { found.push_back(channel); });
    return found;
}

std::optional<size_t> ChannelDatabase::indexOf(uint32_t channelId,
                                               const ChannelQuery& query) const {
    return list(channel_ids::list(channelId))->indexOf(channelId, query);
}

std::optional<Channel> ChannelDatabase::next(uint32_t channelId, const ChannelQuery& query,
                                             Direction direction) const {
    return copied(list(channel_ids::list(channelId))->next(channelId, query, direction));
}

std::optional<ChannelDatabase::Pair> ChannelDatabase::pair(uint32_t channelId) const {
    const auto now = list(channel_ids::list(channelId));
    return paired(*now, now->id(channelId));
}

std::optional<ChannelDatabase::Pair> ChannelDatabase::pair(uint32_t id, uint32_t channelId) const {
    const auto now = state();
    const Channel* found = now->channel(id, channelId);
    return found != nullptr ? paired(now->list(found->list), found) : std::nullopt;
}

std::optional<ChannelDatabase::Pair> ChannelDatabase::pairOfRecord(uint16_t id,
                                                                   uint32_t recordId) const {
    const auto now = list(id);
    return paired(*now, now->record(recordId));
}

std::optional<ChannelDatabase::Pair> ChannelDatabase::pairAt(uint16_t id, size_t index,
                                                             const ChannelQuery& query) const {
    const auto now = list(id);
    return paired(*now, now->at(index, query));
}

std::optional<ChannelDatabase::Pair> ChannelDatabase::currentPair() const {
    const auto now = state();
    return paired(now->list(now->current.list), now->channel(now->current));
}

std::optional<ChannelDatabase::Pair> ChannelDatabase::secondCurrentPair() const {
    const auto now = state();
    return paired(now->list(now->second.list), now->channel(now->second));
}

size_t ChannelDatabase::visit(
        uint16_t id, const ChannelQuery& query, size_t first, size_t limit,
        const std::function<void(const Channel&, const Multiplex&)>& take) const {
    return list(id)->visit(query, first, limit, take);
}

Code ChannelDatabase::setFlags(uint16_t id, uint32_t recordId, uint32_t mask, uint32_t flags) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::setFlags(edit, id, recordId, mask, flags);
    });
}

Code ChannelDatabase::setFlagsOfAll(uint16_t id, const ChannelQuery& query, uint32_t mask,
                                    uint32_t flags) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::setFlagsOfAll(edit, id, query, mask, flags);
    });
}

Code ChannelDatabase::rename(uint16_t id, uint32_t recordId, const std::string& name) {
    return change(
            [&](ChannelEdit& edit) { return channel_editing::rename(edit, id, recordId, name); });
}

Code ChannelDatabase::put(const Channel& channel, Audience audience) {
    return change([&](ChannelEdit& edit) { return channel_editing::put(edit, channel, audience); });
}

Code ChannelDatabase::put(const Channel& channel, const Multiplex& stream, Audience audience) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::put(edit, channel, stream, audience);
    });
}

Code ChannelDatabase::remove(uint16_t id, const std::vector<uint32_t>& recordIds) {
    return change([&](ChannelEdit& edit) { return channel_editing::remove(edit, id, recordIds); });
}

Code ChannelDatabase::removeAll(uint16_t id, const ChannelQuery& query, Streams streams) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::removeAll(edit, id, query, streams);
    });
}

Code ChannelDatabase::swap(uint32_t channelId, uint32_t otherId) {
    return change(
            [&](ChannelEdit& edit) { return channel_editing::swap(edit, channelId, otherId); });
}

Code ChannelDatabase::moveBefore(uint32_t channelId, uint32_t beforeId) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::moveBefore(edit, channelId, beforeId);
    });
}

Code ChannelDatabase::moveToEnd(uint32_t channelId) {
    return change([&](ChannelEdit& edit) { return channel_editing::moveToEnd(edit, channelId); });
}

Code ChannelDatabase::slide(uint16_t id, uint32_t fromNumber, int32_t offset) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::slide(edit, id, fromNumber, offset);
    });
}

Result<Merged> ChannelDatabase::merge(uint16_t id, const std::vector<Found>& found,
                                      Unfound unfound) {
    return change(
            [&](ChannelEdit& edit) { return channel_editing::merge(edit, id, found, unfound); });
}

std::optional<Channel> ChannelDatabase::current() const {
    const auto now = state();
    return copied(now->channel(now->current));
}

std::optional<Channel> ChannelDatabase::secondCurrent() const {
    const auto now = state();
    return copied(now->channel(now->second));
}

Code ChannelDatabase::setCurrent(uint32_t channelId) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::setCurrent(edit, channelId, &ChannelLists::current);
    });
}

Code ChannelDatabase::setSecondCurrent(uint32_t channelId) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::setCurrent(edit, channelId, &ChannelLists::second);
    });
}

std::vector<Multiplex> ChannelDatabase::multiplexes(uint16_t id) const {
    return list(id)->multiplexes;
}

std::optional<Multiplex> ChannelDatabase::multiplex(uint16_t id, uint32_t recordId) const {
    return copyOf(list(id)->multiplexes, recordId);
}

Code ChannelDatabase::removeMultiplexes(uint16_t id, const std::vector<uint32_t>& recordIds) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::removeMultiplexes(edit, id, recordIds);
    });
}

std::vector<Satellite> ChannelDatabase::satellites() const {
    return state()->satellites;
}

std::optional<Satellite> ChannelDatabase::satellite(uint32_t recordId) const {
    return copyOf(state()->satellites, recordId);
}

Code ChannelDatabase::removeSatellite(uint32_t recordId) {
    return change([&](ChannelEdit& edit) { return edit.removeSatellites(recordId); });
}

std::vector<Network> ChannelDatabase::networks(uint16_t id) const {
    return list(id)->networks;
}

std::optional<Network> ChannelDatabase::network(uint16_t id, uint32_t recordId) const {
    return copyOf(list(id)->networks, recordId);
}

Code ChannelDatabase::removeNetwork(uint16_t id, uint32_t recordId) {
    return change([&](ChannelEdit& edit) { return edit.removeNetworks(id, recordId); });
}

Favourites ChannelDatabase::favourites(uint32_t index) const {
    return index < kFavouriteLists ? state()->favourites[index] : Favourites();
}

std::vector<Channel> ChannelDatabase::favouriteChannels(uint32_t index, uint16_t only,
                                                        const ChannelQuery& query) const {
    return state()->favouriteChannels(index, only, query);
}

Code ChannelDatabase::setFavourites(uint32_t index, const Favourites& favourites) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::setFavourites(edit, index, favourites);
    });
}

uint32_t ChannelDatabase::currentFavouriteList() const {
    return state()->favouriteList;
}

Code ChannelDatabase::setCurrentFavouriteList(uint32_t index) {
    return change([&](ChannelEdit& edit) {
        return channel_editing::setCurrentFavouriteList(edit, index);
    });
}

std::vector<BissKey> ChannelDatabase::bissKeys() const {
    return state()->keys;
}

Code ChannelDatabase::removeBissKey(uint32_t recordId) {
    return change([&](ChannelEdit& edit) { return edit.removeKeys(recordId); });
}

std::optional<BissKey> ChannelDatabase::bissKeyFor(const Channel& channel) const {
    const auto now = state();
    const BissKey* key = now->keyFor(channel);
    return key != nullptr ? std::optional<BissKey>(*key) : std::nullopt;
}

Code ChannelDatabase::clear(uint16_t id, Streams streams) {
    return change([&](ChannelEdit& edit) { return channel_editing::clear(edit, id, streams); });
}

Code ChannelDatabase::reload(const std::string& region) {
    // Files are read before the lists are locked.
    const auto surveyed = channel_editing::survey(mBroadcast, region);
    return change([&](ChannelEdit& edit) {
        channel_editing::fill(edit, mBroadcast.nameOf(region), surveyed);
        return kOk;
    });
}

std::shared_ptr<const ChannelSnapshot> ChannelDatabase::snapshot(uint16_t id) const {
    const auto now = state();
    const auto found = now->lists.find(id);
    return std::make_shared<ChannelSnapshot>(ChannelSnapshot{
            ChannelSnapshot::Kind::kServiceList,
            id,
            found != now->lists.end() ? found->second : std::make_shared<const ChannelList>(),
            now->favourites,
            {}});
}

std::shared_ptr<const ChannelSnapshot> ChannelDatabase::satelliteSnapshot() const {
    return std::make_shared<ChannelSnapshot>(ChannelSnapshot{
            ChannelSnapshot::Kind::kSatellites, kSatelliteList, nullptr, {}, state()->satellites});
}

Code ChannelDatabase::restore(const ChannelSnapshot& snapshot) {
    return change([&](ChannelEdit& edit) { return channel_editing::restore(edit, snapshot); });
}

uint32_t ChannelDatabase::listMode() const {
    return state()->mode;
}

Code ChannelDatabase::setListMode(uint32_t mode) {
    return change([&](ChannelEdit& edit) { return channel_editing::setListMode(edit, mode); });
}

uint32_t ChannelDatabase::version(uint16_t id) const {
    return list(id)->version;
}

uint32_t ChannelDatabase::pumpVersion(uint16_t id) const {
    return list(id)->pumpVersion;
}

Code ChannelDatabase::setPumpVersion(uint16_t id, uint32_t version) {
    return change([&](ChannelEdit& edit) {
        edit.change(id).pumpVersion = version;
        return kOk;
    });
}

}  // namespace qeltvd
