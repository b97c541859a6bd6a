#define LOG_TAG "qeltvd"

#include "ChannelListService.h"

#include <hwbinder/IPCThreadState.h>
#include <log/log.h>

#include <algorithm>
#include <new>

#include "ChannelIds.h"
#include "Code.h"
#include "Process.h"
#include "SharedBlock.h"
#include "Stored.h"

namespace qeltvd {

using android::hardware::IPCThreadState;

using Service = ChannelListService;

namespace {

// The last channels of the cable plan, analogue and as a scan for clear QAM goes.
constexpr uint32_t kLastCableChannel = 125;
constexpr uint32_t kLastQamChannel = 135;

/** Most records that a reply carries as vectors. */
constexpr uint32_t kVectorRecords = 1000;

constexpr uint32_t handleOf(uint32_t kind, uint32_t list) {
    return kind << 16 | list;
}

/** The list of a handle of one kind; 0 for another handle. */
constexpr uint16_t listOf(uint32_t kind, uint32_t handle) {
    return handle >> 16 == kind ? static_cast<uint16_t>(handle) : uint16_t{0};
}

/** Id of a list, from the width of the interface; 0, which is no list, when it is none. */
constexpr uint16_t listId(uint32_t list) {
    return list <= channel_ids::kMaximumList ? static_cast<uint16_t>(list) : uint16_t{0};
}

ChannelQuery queryOf(uint32_t filter, uint32_t broadcast) {
    ChannelQuery query;
    query.filter = filter;
    query.broadcast = static_cast<BroadcastType>(broadcast);
    return query;
}

ChannelQuery maskQuery(uint32_t mask, uint32_t value, uint32_t broadcast = 0) {
    ChannelQuery query = ChannelQuery::masked(mask, value);
    query.broadcast = static_cast<BroadcastType>(broadcast);
    return query;
}

DatabaseLocks::Access accessOf(uint32_t access) {
    return access == CHANNEL_LOCK_WRITE ? DatabaseLocks::Access::kWrite
                                        : DatabaseLocks::Access::kRead;
}

template <class Reply>
void replyPair(const std::optional<ChannelDatabase::Pair>& pair, const Reply& reply) {
    if (pair) {
        reply(bytesOf(pack(pair->first, pair->second)), bytesOf(pack(pair->second)), kOk);
    } else {
        reply(Bytes(), Bytes(), kNotFound);
    }
}

/**
 * Writes the records of up to `count` channels, of `available` that there are, into both blocks.
 * `visit` gets the number and what takes a channel. Returns how many were written.
 */
template <class Visit>
Result<size_t> fillBlocks(const Handle& svl, const Handle& tsl, uint64_t count, size_t available,
                          const Visit& visit) {
    SharedBlock channels(svl), streams(tsl);
    if (!channels.holds(count * sizeof(channel_record_t)) ||
        !streams.holds(count * sizeof(multiplex_record_t))) {
        return kBadValue;
    }
    // A client's memfd may be larger than the machine's memory: only what is written gets pages.
    const uint64_t most = std::min<uint64_t>(count, available);
    auto* channel = channels.records<channel_record_t>(most);
    auto* stream = streams.records<multiplex_record_t>(most);
    if (channel == nullptr || stream == nullptr) return kBadValue;
    size_t done = 0;
    visit(static_cast<size_t>(most), [&](const Channel& from, const Multiplex& multiplex) {
        new (channel + done) channel_record_t(pack(from, multiplex));
        new (stream + done) multiplex_record_t(pack(multiplex));
        ++done;
    });
    if (!channels.publish(done * sizeof(*channel)) || !streams.publish(done * sizeof(*stream))) {
        return kBadValue;
    }
    return done;
}

}  // namespace

ChannelListService::ChannelListService(ChannelDatabase& channels, const ConfigItems& config,
                                       Notifier& notifier)
        : mChannels(channels), mConfig(config), mNotifier(notifier) {
    mChannels.addListener([this](const ChannelChange& change) { notify(change); });
}

void ChannelListService::notify(const ChannelChange& change) {
    if (change.audience == Audience::kTelevision) return;
    const uint64_t list = change.list;
    const uint64_t version = mChannels.version(change.list);
    const uint64_t count = change.records.size();
    const uint64_t single = count == 1 ? change.records.front() : 0;
    const auto update = [&](int32_t type, uint64_t a, uint64_t b, uint64_t c, uint64_t d) {
        mNotifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_channellist_update_callback_fct, type,
                        {a, b, c, d});
    };
    const auto records = [&](int32_t type) {
        const Bytes ids = bytesOf(change.records);
        mNotifier.notify(
                &IQelTvApiCallback::a_hidl_qeltvapi_tvprovider_channellist_update_callback_fct,
                type, uint64_t{0}, list, count, ids, version);
        mNotifier.notify(&IQelTvApiCallback::a_hidl_qeltvapi_concern_column_update_callback_fct,
                         type, uint64_t{0}, list, count, ids, version);
    };
    switch (change.kind) {
        case ChannelChange::Kind::kChannels:
            update(CHANNEL_UPDATE_CHANGED, list, count, version, single);
            records(CHANNEL_UPDATE_CHANGED);
            break;
        case ChannelChange::Kind::kChannelsRemoved:
            update(CHANNEL_UPDATE_REMOVED, list, count, version, single);
            records(CHANNEL_UPDATE_REMOVED);
            break;
        case ChannelChange::Kind::kList:
            update(CHANNEL_UPDATE_LIST, list, mChannels.count(change.list), version, 0);
            mNotifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_svlid_update_callback_fct,
                            CHANNEL_UPDATE_LIST, {list, version, mChannels.count(change.list)});
            break;
        case ChannelChange::Kind::kCurrent:
            update(CHANNEL_UPDATE_CURRENT, list, change.channelId, version, 0);
            break;
        case ChannelChange::Kind::kSecondCurrent:
            update(CHANNEL_UPDATE_CURRENT_2ND, list, change.channelId, version, 0);
            break;
        case ChannelChange::Kind::kFavourites:
            update(CHANNEL_UPDATE_FAVOURITES, list, mChannels.favourites(change.list).size(), 0, 0);
            break;
        case ChannelChange::Kind::kMultiplexes:
        case ChannelChange::Kind::kNetworks:
            mNotifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_tslid_update_callback_fct,
                            change.kind == ChannelChange::Kind::kMultiplexes
                                    ? CHANNEL_UPDATE_STREAMS
                                    : CHANNEL_UPDATE_NETWORKS,
                            {list, count, version, single});
            break;
        case ChannelChange::Kind::kSatellites:
            mNotifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_satllist_update_callback_fct,
                            CHANNEL_UPDATE_CHANGED, {list, count, version, single});
            break;
        case ChannelChange::Kind::kBissKeys:
            mNotifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_bisskey_update_callback_fct,
                            CHANNEL_UPDATE_CHANGED, {list, count, version, single});
            break;
        case ChannelChange::Kind::kListMode:
            mNotifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_listMode_update_callback_fct,
                            CHANNEL_UPDATE_CHANGED, {list});
            break;
    }
}

Code ChannelListService::change(DatabaseLocks::Database database, uint32_t list,
                                const std::function<Code()>& change) {
    if (list == 0 || list > UINT16_MAX) return kNotFound;
    const pid_t process = IPCThreadState::self()->getCallingPid();
    if (!mLocks.mayWrite(database, list, process)) return kRefused;
    return stored(change);
}

Result<size_t> ChannelListService::fill(const Handle& svl, const Handle& tsl, uint64_t count,
                                        uint16_t list, const ChannelQuery& query,
                                        size_t first) const {
    return fillBlocks(svl, tsl, count, mChannels.count(list), [&](size_t most, const auto& take) {
        mChannels.visit(list, query, first, most, take);
    });
}

Result<size_t> ChannelListService::fill(const Handle& svl, const Handle& tsl, uint64_t count,
                                        const std::vector<Channel>& all) const {
    return fillBlocks(svl, tsl, count, all.size(), [&](size_t most, const auto& take) {
        for (size_t i = 0; i < most; ++i) {
            const auto multiplex = mChannels.multiplex(all[i].list, all[i].multiplex);
            take(all[i], multiplex.value_or(Multiplex()));
        }
    });
}

// Records and the current channel

/** `access` is a CHANNEL_LOCK_. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_lock_database(uint32_t list, uint32_t access) {
    if (listId(list) == 0 || access > CHANNEL_LOCK_READ) return kBadValue;
    return mLocks.lock(DatabaseLocks::Database::kChannels, list,
                       IPCThreadState::self()->getCallingPid(), accessOf(access));
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_unlock_database(uint32_t list,
                                                                     uint32_t access) {
    if (listId(list) == 0 || access > CHANNEL_LOCK_READ) return kBadValue;
    return mLocks.unlock(DatabaseLocks::Database::kChannels, list,
                         IPCThreadState::self()->getCallingPid(), accessOf(access));
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_channel_by_id(
        uint32_t list, uint32_t channelId, a_hidl_qeltvapi_channellist_get_channel_by_id_cb reply) {
    replyPair(mChannels.pair(list, channelId), reply);
    return Void();
}

Return<uint32_t> Service::a_hidl_qeltvapi_channellist_get_current_chan_id() {
    const auto current = mChannels.current();
    return current ? current->channelId : 0;
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_rec_by_channel_id(
        uint32_t list, uint32_t channelId,
        a_hidl_qeltvapi_channellist_get_svl_rec_by_channel_id_cb reply) {
    replyPair(mChannels.pair(list, channelId),
              [&](const Bytes& svl, const Bytes&, int32_t code) { reply(svl, code); });
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_current_channel(
        a_hidl_qeltvapi_channellist_get_current_channel_cb reply) {
    const auto current = mChannels.currentPair();
    replyPair(current, [&](const Bytes& svl, const Bytes& tsl, int32_t code) {
        reply(current ? current->first.list : uint16_t{0}, svl, tsl, code);
    });
    return Void();
}

/** A channel id without a list is looked for in the list of the current channel. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_set_current_channel(uint32_t channelId) {
    const auto current = mChannels.current();
    const uint32_t list = channelId > 0xffff ? channel_ids::list(channelId)
                          : current          ? current->list
                                             : CHANNEL_LIST_AIR;
    return a_hidl_qeltvapi_channellist_set_current_channel_by_svlId(list, channelId);
}

/** Counts the channels of a broadcast type in a list. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_delete_channel_without_lcn(
        uint32_t list, uint32_t broadcast) {
    return changeChannels(list, [&] {
        return mChannels.removeAll(listId(list), maskQuery(CHANNEL_FLAG_LCN, 0, broadcast),
                                   Streams::kKeep);
    });
}

/** Renumbers a list from a number on, by an offset that may be negative. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_slide_for_one_part_channel_id(
        uint32_t list, uint32_t number, uint32_t offset) {
    return changeChannels(list, [&] {
        return mChannels.slide(listId(list), number, static_cast<int32_t>(offset));
    });
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_set_current_channel_by_svlId(
        uint32_t list, uint32_t channelId) {
    const auto found = mChannels.channel(list, channelId);
    if (!found) return kNotFound;
    return stored([&] { return mChannels.setCurrent(found->channelId); });
}

/** Channel id 0: there is no second channel any more. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_set_2nd_current_channel_by_svlId(
        uint32_t list, uint32_t channelId) {
    const auto found = mChannels.channel(list, channelId);
    if (!found && channelId != 0) return kNotFound;
    return stored([&] { return mChannels.setSecondCurrent(found ? found->channelId : 0); });
}

/** `which` is 0 for the main picture, 1 for the second one. */
Return<void> Service::a_hidl_qeltvapi_channellist_get_current_channel_from_nav(
        uint32_t which, a_hidl_qeltvapi_channellist_get_current_channel_from_nav_cb reply) {
    const auto current = which == 0   ? mChannels.currentPair()
                         : which == 1 ? mChannels.secondCurrentPair()
                                      : std::nullopt;
    replyPair(current, [&](const Bytes& svl, const Bytes& tsl, int32_t code) {
        reply(current ? current->first.list : uint16_t{0}, svl, tsl, code);
    });
    return Void();
}

/** By channel id; 0 if there is no such channel. */
Return<uint32_t> Service::a_hidl_qeltvapi_channellist_get_channel_number(uint32_t channelId) {
    const auto found = mChannels.byChannelId(channelId);
    return found ? found->number : 0;
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_handle_by_svl_id(
        uint32_t list, a_hidl_qeltvapi_channellist_get_svl_handle_by_svl_id_cb reply) {
    const bool known = listId(list) != 0;
    reply(known ? handleOf(CHANNEL_HANDLE_SVL, list) : 0, known ? kOk : kNotFound);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_tsl_handle_by_svl_id(
        uint32_t list, a_hidl_qeltvapi_channellist_get_tsl_handle_by_svl_id_cb reply) {
    const bool known = listId(list) != 0;
    reply(known ? handleOf(CHANNEL_HANDLE_TSL, list) : 0, known ? kOk : kNotFound);
    return Void();
}

/**
 * The channel at an index of the list of a service-list or favourite handle; the transport-stream
 * handle is that of the same list. The words are the number of channels and the list's version.
 */
Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle(
        uint32_t svlHandle, uint32_t tslHandle, uint32_t index,
        a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle_cb reply) {
    std::optional<ChannelDatabase::Pair> found;
    uint16_t list = listOf(CHANNEL_HANDLE_SVL, svlHandle);
    size_t count = mChannels.count(list);
    if (const uint16_t favourite = listOf(CHANNEL_HANDLE_FAVOURITE, svlHandle); favourite != 0) {
        list = favourite & 0xff;
        const auto all = mChannels.favouriteChannels(favourite >> 8, list, {});
        count = all.size();
        if (index < count) found = mChannels.pair(all[index].channelId);
    } else if (list != 0) {
        found = mChannels.pairAt(list, index);
    }
    if (list == 0 || listOf(CHANNEL_HANDLE_TSL, tslHandle) != list) {
        reply(0, 0, Bytes(), Bytes(), kBadValue);
        return Void();
    }
    replyPair(found, [&](const Bytes& svl, const Bytes& tsl, int32_t code) {
        reply(static_cast<uint32_t>(count), mChannels.version(list), svl, tsl, code);
    });
    return Void();
}

/** From the first channel on. The words are the number of records and the list's version. */
Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex(
        uint32_t svlHandle, uint32_t tslHandle, uint32_t count, const Handle& svl,
        const Handle& tsl, a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex_cb reply) {
    uint16_t list = listOf(CHANNEL_HANDLE_SVL, svlHandle);
    const uint16_t favourite = listOf(CHANNEL_HANDLE_FAVOURITE, svlHandle);
    if (favourite != 0) list = favourite & 0xff;
    if (list == 0 || listOf(CHANNEL_HANDLE_TSL, tslHandle) != list) {
        reply(0, 0, kBadValue);
        return Void();
    }
    const Result<size_t> done =
            favourite != 0
                    ? fill(svl, tsl, count, mChannels.favouriteChannels(favourite >> 8, list, {}))
                    : fill(svl, tsl, count, list, {}, 0);
    reply(static_cast<uint32_t>(done.valueOr(0)), mChannels.version(list), done.code());
    return Void();
}

/**
 * From an index on among those whose flags under the mask have the value, that pass the filter and
 * are of the broadcast type; of a favourite list when its index plus one is not 0. Where there are
 * fewer, the rest of the blocks stays zero. `reserved` is ignored.
 */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(
        uint32_t list, uint32_t first, uint32_t mask, uint32_t value, uint32_t filter,
        uint32_t broadcast, uint32_t favourite, uint32_t count, uint32_t /*reserved*/,
        const Handle& svl, const Handle& tsl) {
    ChannelQuery query = maskQuery(mask, value, broadcast);
    query.filter = filter;
    if (favourite == 0) return fill(svl, tsl, count, listId(list), query, first).code();
    auto all = mChannels.favouriteChannels(favourite - 1, listId(list), query);
    all.erase(all.begin(),
              all.begin() + static_cast<ptrdiff_t>(std::min<size_t>(first, all.size())));
    return fill(svl, tsl, count, all).code();
}

Code ChannelListService::write(uint32_t list, uint32_t tslList, uint32_t recordId, uint32_t fields,
                               uint32_t mask, uint32_t value, const Bytes& svl, const Bytes& tsl,
                               Audience audience) {
    const auto record = recordOf<channel_record_t>(svl);
    const auto streamRecord = recordOf<multiplex_record_t>(tsl);
    if (!record || !streamRecord || (fields & ~CHANNEL_WRITE_ALL) != 0 || listId(list) == 0) {
        return kBadValue;
    }
    return changeChannels(list, [&]() -> Code {
        const auto known = mChannels.byRecord(listId(list), recordId);
        if (!known && recordId != 0) return kNotFound;
        const Channel given = unpack(*record);
        Channel channel = known.value_or(Channel());
        channel.list = listId(list);
        if ((fields & CHANNEL_WRITE_SERVICE) != 0) {
            channel.type = given.type;
            channel.multiplex = given.multiplex;
            channel.originalNetworkId = given.originalNetworkId;
            channel.streamId = given.streamId;
            channel.serviceId = given.serviceId;
            channel.pmtPid = given.pmtPid;
            channel.pcrPid = given.pcrPid;
            channel.videoPid = given.videoPid;
            channel.audioPid = given.audioPid;
            channel.provider = given.provider;
            channel.language = given.language;
        }
        if ((fields & CHANNEL_WRITE_FLAGS) != 0) channel.flags = given.flags;
        if ((fields & CHANNEL_WRITE_NUMBER) != 0) {
            channel.number = given.number;
            channel.channelId = given.channelId;
        }
        if ((fields & CHANNEL_WRITE_NAME) != 0) {
            if (given.name.empty()) return kBadValue;
            channel.name = given.name;
            channel.flags |= CHANNEL_FLAG_RENAMED;
        }
        channel.flags = (channel.flags & ~mask) | (value & mask);
        if ((fields & CHANNEL_WRITE_STREAM) == 0) return mChannels.put(channel, audience);
        Multiplex stream = unpack(*streamRecord);
        if (stream.list != listId(tslList)) return kBadValue;
        return mChannels.put(channel, stream, audience);
    });
}

/** `fields` are CHANNEL_WRITE_ bits; record id 0 adds a channel. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_set_svl_tsl_rec_info(
        uint32_t list, uint32_t tslList, uint32_t recordId, uint32_t fields, uint32_t mask,
        uint32_t value, const Bytes& svl, const Bytes& tsl) {
    return write(list, tslList, recordId, fields, mask, value, svl, tsl, Audience::kEveryone);
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_set_svl_tsl_rec_info_without_notify(
        uint32_t list, uint32_t tslList, uint32_t recordId, uint32_t fields, uint32_t mask,
        uint32_t value, const Bytes& svl, const Bytes& tsl) {
    return write(list, tslList, recordId, fields, mask, value, svl, tsl, Audience::kTelevision);
}

/** The answer comes as a notification of the channel list. `reserved` is ignored. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_get_channel_rf_info(uint32_t list,
                                                                         uint32_t channelId,
                                                                         uint32_t /*reserved*/) {
    const auto pair = mChannels.pair(list, channelId);
    if (!pair) return kNotFound;
    const Multiplex& multiplex = pair->second;
    mNotifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_channellist_update_callback_fct,
                    CHANNEL_UPDATE_RF,
                    {list, pair->first.channelId, multiplex.frequencyHz / 1000,
                     static_cast<uint64_t>(multiplex.system) << 16 | multiplex.rfChannel});
    return kOk;
}

/** Ids of the service list and of the transport-stream list, number of channels. */
Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_info_by_brdcast_medium(
        uint32_t medium, a_hidl_qeltvapi_channellist_get_svl_info_by_brdcast_medium_cb reply) {
    if (medium < CHANNEL_LIST_AIR || medium > CHANNEL_LIST_SATELLITE) {
        reply(0, 0, 0, kNotFound);
        return Void();
    }
    const auto list = static_cast<uint16_t>(medium);
    reply(list, list, static_cast<uint32_t>(mChannels.count(list)), kOk);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_swap_channels(uint32_t list, uint32_t one,
                                                                   uint32_t other) {
    return changeChannels(list, [&]() -> Code {
        const auto first = mChannels.channel(list, one), second = mChannels.channel(list, other);
        if (!first || !second) return kNotFound;
        return mChannels.swap(first->channelId, second->channelId);
    });
}

// Queries

/** From an index on. The words are the number of records and that of all that fit. */
Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type(
        uint32_t list, uint32_t broadcast, uint32_t first, uint32_t count, uint32_t filter,
        const Handle& svl, const Handle& tsl,
        a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type_cb reply) {
    const ChannelQuery query = queryOf(filter, broadcast);
    const Result<size_t> done = fill(svl, tsl, count, listId(list), query, first);
    if (!done) {
        reply(0, 0, done.code());
    } else {
        reply(static_cast<uint32_t>(*done),
              static_cast<uint32_t>(mChannels.count(listId(list), query)), kOk);
    }
    return Void();
}

/**
 * A page of a list around a channel: up to `before` records of the channels before it, and behind
 * them up to `from` records from the channel on; `around`: going round at the ends of the list, yet
 * no channel twice. Channel id 0 is the first channel. The words are the two numbers of records.
 */
Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_filter(
        uint32_t list, uint32_t filter, uint32_t channelId, bool around, uint32_t broadcast,
        uint32_t before, uint32_t from, const Handle& svl, const Handle& tsl,
        a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_filter_cb reply) {
    const auto all = mChannels.find(listId(list), queryOf(filter, broadcast));
    size_t at = 0;
    if (channelId != 0) {
        const auto found = std::find_if(all.begin(), all.end(), [&](const Channel& each) {
            return each.channelId == channelId ||
                   (channelId <= 0xffff && (each.channelId & 0xffff) == channelId);
        });
        if (found == all.end()) {
            reply(0, 0, kNotFound);
            return Void();
        }
        at = static_cast<size_t>(found - all.begin());
    }
    const size_t total = all.size();
    const size_t after = std::min<size_t>(from, around ? total : total - at);
    const size_t ahead = std::min<size_t>(before, around ? total - after : at);
    std::vector<Channel> page;
    page.reserve(ahead + after);
    for (size_t i = 0; i < ahead + after; ++i) {
        page.push_back(all[(at + total - ahead + i) % total]);
    }
    // The blocks have the length that was asked for, regardless of the number of channels.
    const Result<size_t> done = fill(svl, tsl, uint64_t{before} + from, page);
    if (!done) {
        reply(0, 0, done.code());
    } else {
        reply(static_cast<uint32_t>(ahead), static_cast<uint32_t>(after), kOk);
    }
    return Void();
}

Return<uint32_t> Service::a_hidl_qeltvapi_channellist_get_number_by_filter(uint32_t list,
                                                                           uint32_t filter) {
    return static_cast<uint32_t>(mChannels.count(listId(list), queryOf(filter, 0)));
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_prev_channel_id_by_filter(
        uint32_t list, uint32_t filter, uint32_t channelId, uint32_t broadcast,
        a_hidl_qeltvapi_channellist_get_prev_channel_id_by_filter_cb reply) {
    const uint32_t full = channelId > 0xffff ? channelId : channel_ids::onePart(list, channelId);
    std::optional<Channel> found;
    if (channel_ids::list(full) == list) {
        found = mChannels.next(full, queryOf(filter, broadcast), Direction::kBackwards);
    }
    reply(found ? found->channelId : 0, found ? kOk : kNotFound);
    return Void();
}

/** Requests are CHANNEL_REQUEST_; the other values are ignored. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_interface(uint32_t request, const Bytes& block,
                                                               uint32_t, uint64_t, uint32_t) {
    const auto words = recordOf<channel_request_t>(block);
    if (!words) return kBadValue;
    switch (request) {
        case CHANNEL_REQUEST_RELOAD: {
            const pid_t process = IPCThreadState::self()->getCallingPid();
            for (const uint32_t list :
                 {CHANNEL_LIST_AIR, CHANNEL_LIST_CABLE, CHANNEL_LIST_SATELLITE}) {
                if (!mLocks.mayWrite(DatabaseLocks::Database::kChannels, list, process))
                    return kRefused;
            }
            return change(DatabaseLocks::Database::kSatellites, CHANNEL_LIST_SATELLITE,
                          [&] { return mChannels.reload(mConfig.text("channels.region")); });
        }
        case CHANNEL_REQUEST_LIST_MODE:
            return stored([&] { return mChannels.setListMode(words->word0); });
        case CHANNEL_REQUEST_FAVOURITE_LIST:
            return stored([&] { return mChannels.setCurrentFavouriteList(words->word0); });
        default:
            return kBadValue;
    }
}

namespace {

/** What query information asks for; nothing when it makes no sense. */
std::optional<ChannelQuery> queryOf(const Bytes& info, uint32_t filter, uint32_t broadcast) {
    const auto asked = recordOf<channel_query_t>(info);
    if (!asked) return std::nullopt;
    ChannelQuery query = queryOf(filter, broadcast);
    switch (asked->kind) {
        case CHANNEL_QUERY_NUMBER:
        case CHANNEL_QUERY_SERVICE:
            return query;
        case CHANNEL_QUERY_FLAGS:
            query.mask = asked->value1;
            query.flags = asked->value2;
            return query;
        case CHANNEL_QUERY_FILTER:
            query.filter |= asked->value1;
            return query;
        case CHANNEL_QUERY_STREAM:
            if (asked->value1 == 0) return std::nullopt;
            query.multiplex = asked->value1;
            return query;
        default:
            return std::nullopt;
    }
}

std::vector<Channel> find(const ChannelDatabase& channels, uint16_t list, const Bytes& info,
                          uint32_t filter, uint32_t broadcast) {
    const auto query = queryOf(info, filter, broadcast);
    if (!query) return {};
    const auto asked = *recordOf<channel_query_t>(info);
    std::vector<Channel> found = channels.find(list, *query);
    const auto drop = [&](const auto& unwanted) {
        found.erase(std::remove_if(found.begin(), found.end(), unwanted), found.end());
    };
    if (asked.kind == CHANNEL_QUERY_NUMBER) {
        drop([&](const Channel& each) { return each.number != asked.value1; });
    } else if (asked.kind == CHANNEL_QUERY_SERVICE) {
        drop([&](const Channel& each) {
            return (uint32_t{each.originalNetworkId} << 16 | each.streamId) != asked.value1 ||
                   each.serviceId != asked.value2;
        });
    }
    return found;
}

}  // namespace

Return<uint32_t> Service::a_hidl_qeltvapi_channellist_get_channel_number_by_query_info(
        uint32_t list, uint32_t filter, uint32_t broadcast, const Bytes& info) {
    return static_cast<uint32_t>(find(mChannels, listId(list), info, filter, broadcast).size());
}

/** The one at an index of those found; the last value is ignored. */
Return<void> Service::a_hidl_qeltvapi_channellist_get_channellist_by_query_info(
        uint32_t list, uint32_t filter, uint32_t broadcast, const Bytes& info, uint32_t index,
        uint64_t, a_hidl_qeltvapi_channellist_get_channellist_by_query_info_cb reply) {
    if (!queryOf(info, filter, broadcast)) {
        reply(Bytes(), Bytes(), kBadValue);
        return Void();
    }
    const auto found = find(mChannels, listId(list), info, filter, broadcast);
    replyPair(index < found.size() ? mChannels.pair(found[index].channelId) : std::nullopt, reply);
    return Void();
}

/** Only channels of the broadcast type if that is not 0; the last value is ignored. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_svl_tsl_lol_clean(uint32_t list,
                                                                       uint32_t broadcast,
                                                                       uint32_t) {
    if (broadcast != 0) return a_hidl_qeltvapi_channellist_and_ts_del_by_brdcst(list, broadcast);
    return changeChannels(list, [&] { return mChannels.clear(listId(list), Streams::kRemove); });
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_and_ts_lol_del_by_brdcst(uint32_t list,
                                                                              uint32_t broadcast) {
    return a_hidl_qeltvapi_channellist_and_ts_del_by_brdcst(list, broadcast);
}

Return<uint32_t> Service::a_hidl_qeltvapi_channellist_get_number_by_mask(uint32_t list,
                                                                         uint32_t mask,
                                                                         uint32_t value) {
    return static_cast<uint32_t>(mChannels.count(listId(list), maskQuery(mask, value)));
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_rec_by_index(
        uint32_t list, uint32_t mask, uint32_t value, uint32_t index,
        a_hidl_qeltvapi_channellist_get_svl_rec_by_index_cb reply) {
    replyPair(mChannels.pairAt(listId(list), index, maskQuery(mask, value)),
              [&](const Bytes& svl, const Bytes&, int32_t code) { reply(svl, code); });
    return Void();
}

Return<uint32_t> Service::a_hidl_qeltvapi_channellist_get_number_by_name(uint32_t list,
                                                                         uint32_t mask,
                                                                         uint32_t value,
                                                                         const String& name) {
    if (name.empty()) return 0;
    ChannelQuery query = maskQuery(mask, value);
    query.name = name;
    return static_cast<uint32_t>(mChannels.count(listId(list), query));
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_index_by_channel(
        uint32_t list, uint32_t mask, uint32_t value, uint32_t channelId,
        a_hidl_qeltvapi_channellist_get_index_by_channel_cb reply) {
    const auto found = mChannels.channel(list, channelId);
    const auto index =
            found ? mChannels.indexOf(found->channelId, maskQuery(mask, value)) : std::nullopt;
    reply(static_cast<uint32_t>(index.value_or(0)), index ? kOk : kNotFound);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_rec_by_index_and_name(
        uint32_t list, uint32_t mask, uint32_t value, const String& name, uint32_t index,
        a_hidl_qeltvapi_channellist_get_svl_rec_by_index_and_name_cb reply) {
    ChannelQuery query = maskQuery(mask, value);
    query.name = name;
    const auto found = name.empty() ? std::nullopt : mChannels.pairAt(listId(list), index, query);
    replyPair(found, [&](const Bytes& svl, const Bytes&, int32_t code) { reply(svl, code); });
    return Void();
}

/** From an index on; at most 1000 records, so that a reply stays small. */
Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_mask(
        uint32_t list, uint32_t tslList, uint32_t mask, uint32_t value, uint32_t first,
        uint32_t count, uint32_t broadcast, uint32_t filter, uint32_t, uint32_t,
        a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_mask_cb reply) {
    if (listId(list) == 0 || tslList != list || count > kVectorRecords) {
        reply(Bytes(), Bytes(), kBadValue);
        return Void();
    }
    ChannelQuery query = maskQuery(mask, value, broadcast);
    query.filter = filter;
    std::vector<channel_record_t> channels;
    std::vector<multiplex_record_t> streams;
    mChannels.visit(listId(list), query, first, count,
                    [&](const Channel& channel, const Multiplex& multiplex) {
                        channels.push_back(pack(channel, multiplex));
                        streams.push_back(pack(multiplex));
                    });
    reply(bytesOf(channels), bytesOf(streams), channels.empty() && count != 0 ? kNotFound : kOk);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_delete_by_brdcst(uint32_t list,
                                                                      uint32_t broadcast) {
    return changeChannels(list, [&] {
        return mChannels.removeAll(listId(list), maskQuery(0, 0, broadcast), Streams::kKeep);
    });
}

/** The logical order is the numbers that were broadcast: no channel has one any more. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_clean_lol(uint32_t list) {
    return changeChannels(
            list, [&] { return mChannels.setFlagsOfAll(listId(list), {}, CHANNEL_FLAG_LCN, 0); });
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_and_ts_del_by_brdcst(uint32_t list,
                                                                          uint32_t broadcast) {
    return changeChannels(list, [&] {
        return mChannels.removeAll(listId(list), maskQuery(0, 0, broadcast), Streams::kRemove);
    });
}

Return<uint8_t> Service::a_hidl_qeltvapi_channellist_is_exist_by_channel_number(uint32_t list,
                                                                                uint32_t number) {
    return mChannels.byNumber(listId(list), number) ? uint8_t{1} : uint8_t{0};
}

// Snapshots

Code ChannelListService::restore(uint32_t handle, ChannelSnapshot::Kind kind) {
    const auto snapshot = mSnapshots.find(handle, kind);
    if (snapshot == nullptr) return kNotFound;
    return change(kind == ChannelSnapshot::Kind::kSatellites ? DatabaseLocks::Database::kSatellites
                                                             : DatabaseLocks::Database::kChannels,
                  snapshot->id, [&] { return mChannels.restore(*snapshot); });
}

Return<void> Service::a_hidl_qeltvapi_channellist_create_snapshot(
        uint32_t list, a_hidl_qeltvapi_channellist_create_snapshot_cb reply) {
    if (listId(list) == 0) {
        reply(0, kNotFound);
        return Void();
    }
    const uint32_t handle = mSnapshots.keep(mChannels.snapshot(listId(list)),
                                            IPCThreadState::self()->getCallingPid());
    reply(handle, handle != 0 ? kOk : kRefused);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_restore_snapshot(uint32_t snapshot) {
    return restore(snapshot, ChannelSnapshot::Kind::kServiceList);
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_free_snapshot(uint32_t snapshot) {
    return mSnapshots.release(snapshot, ChannelSnapshot::Kind::kServiceList);
}

// Records by record id, deletion, list ids

Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(
        uint32_t list, uint32_t recordId,
        a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id_cb reply) {
    replyPair(mChannels.pairOfRecord(listId(list), recordId), reply);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_del_tsl_svl_rec_by_tsl_rec_id(
        uint32_t list, uint32_t recordId) {
    return changeChannels(list,
                          [&] { return mChannels.removeMultiplexes(listId(list), {recordId}); });
}

/** By the record id of the satellite. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_del_tsl_svl_rec_by_satl_rec_id(
        uint32_t list, uint32_t satelliteList, uint32_t satellite) {
    if (satelliteList != CHANNEL_LIST_SATELLITE || !mChannels.satellite(satellite)) {
        return kNotFound;
    }
    return changeChannels(list, [&] {
        std::vector<uint32_t> records;
        for (const Multiplex& multiplex : mChannels.multiplexes(listId(list))) {
            if (multiplex.satellite == satellite) records.push_back(multiplex.recordId);
        }
        return mChannels.removeMultiplexes(listId(list), records);
    });
}

/** As many ids as the memory holds. */
Return<void> Service::a_hidl_qeltvapi_tvprovider_get_all_svlid(
        const Handle& memory, uint16_t capacity,
        a_hidl_qeltvapi_tvprovider_get_all_svlid_cb reply) {
    SharedBlock block(memory);
    if (!block.holds(uint64_t{capacity} * sizeof(uint16_t))) {
        reply(0, kBadValue);
        return Void();
    }
    std::vector<uint16_t> lists = mChannels.lists();
    if (lists.size() > capacity) lists.resize(capacity);
    const bool good = block.write(lists.data(), lists.size() * sizeof(uint16_t));
    reply(good ? static_cast<uint16_t>(lists.size()) : uint16_t{0},
          good ? int16_t{kOk} : int16_t{kBadValue});
    return Void();
}

Return<uint32_t> Service::a_hidl_qeltvapi_tvprovider_get_all_svlid_count() {
    return static_cast<uint32_t>(mChannels.lists().size());
}

// Handles of other lists, more queries

Return<void> Service::a_hidl_qeltvapi_channellist_get_satl_handle_by_satl_id(
        uint32_t list, a_hidl_qeltvapi_channellist_get_satl_handle_by_satl_id_cb reply) {
    const bool known = list == CHANNEL_LIST_SATELLITE;
    reply(known ? handleOf(CHANNEL_HANDLE_SATL, list) : 0, known ? kOk : kNotFound);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_lol_handle_by_lol_id(
        uint32_t list, a_hidl_qeltvapi_channellist_get_lol_handle_by_lol_id_cb reply) {
    const bool known = listId(list) != 0;
    reply(known ? handleOf(CHANNEL_HANDLE_LOL, list) : 0, known ? kOk : kNotFound);
    return Void();
}

Return<uint32_t> Service::a_hidl_qeltvapi_channellist_get_num_by_mask_and_brdcst(
        uint32_t list, uint32_t mask, uint32_t value, uint32_t broadcast) {
    return static_cast<uint32_t>(mChannels.count(listId(list), maskQuery(mask, value, broadcast)));
}

Return<void> Service::a_hidl_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst(
        uint32_t list, uint32_t mask, uint32_t value, uint32_t broadcast, uint32_t index,
        a_hidl_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst_cb reply) {
    replyPair(mChannels.pairAt(listId(list), index, maskQuery(mask, value, broadcast)),
              [&](const Bytes& svl, const Bytes&, int32_t code) { reply(svl, code); });
    return Void();
}

// List mode, versions, channel ids

Return<int32_t> Service::a_hidl_qeltvapi_one_channellist_arrange_before(uint32_t channelId,
                                                                        uint32_t beforeId) {
    return changeChannels(channel_ids::list(channelId),
                          [&] { return mChannels.moveBefore(channelId, beforeId); });
}

Return<uint32_t> Service::a_hidl_qeltvapi_channellist_getChannelListMode() {
    return mChannels.listMode();
}

Return<void> Service::a_hidl_qeltvapi_channellist_getChannelPumpVer(
        uint32_t list, a_hidl_qeltvapi_channellist_getChannelPumpVer_cb reply) {
    const bool known = listId(list) != 0;
    reply(known ? mChannels.pumpVersion(listId(list)) : 0, known ? kOk : kNotFound);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_channellist_setChannelPumpVer(uint32_t list,
                                                                       uint32_t version) {
    if (listId(list) == 0) return kNotFound;
    return changeChannels(list, [&] { return mChannels.setPumpVersion(listId(list), version); });
}

Return<int32_t> Service::a_hidl_qeltvapi_one_channellist_add_channel_to_max(uint32_t list,
                                                                            uint32_t channelId) {
    return changeChannels(list, [&] {
        const auto found = mChannels.channel(list, channelId);
        return found ? mChannels.moveToEnd(found->channelId) : kNotFound;
    });
}

/** By list, major and minor number; without a minor number it has one part. */
Return<uint32_t> Service::a_hidl_qeltvapi_channellist_gen_channel_id(uint32_t list, uint32_t major,
                                                                     uint32_t minor) {
    return minor == 0 ? channel_ids::onePart(list, major)
                      : channel_ids::twoParts(list, major, minor);
}

Return<uint32_t> Service::a_hidl_qeltvapi_channellist_gen_one_part_channel_id(uint32_t list,
                                                                              uint32_t number) {
    return channel_ids::onePart(list, number);
}

/** By list, RF channel and program number. */
Return<uint32_t> Service::a_hidl_qeltvapi_channellist_gen_non_psip_channel_id(uint32_t list,
                                                                              uint32_t rfChannel,
                                                                              uint32_t program) {
    return channel_ids::nonPsip(list, rfChannel, program);
}

Return<bool> Service::a_hidl_qeltvapi_is_one_part_channel_id(uint32_t channelId) {
    return channel_ids::isOnePart(channelId);
}

Return<bool> Service::a_hidl_qeltvapi_is_non_psip_channel_id(uint32_t channelId) {
    return channel_ids::isNonPsip(channelId);
}

Return<uint16_t> Service::a_hidl_qeltvapi_channellist_get_major_channel_num(uint32_t channelId) {
    return channel_ids::major(channelId);
}

Return<uint16_t> Service::a_hidl_qeltvapi_channellist_get_minor_channel_num(uint32_t channelId) {
    return channel_ids::minor(channelId);
}

/** kNotFound, negative in the caller's int, when there is no such channel. */
Return<uint32_t> Service::a_hidl_qeltvapi_channellist_get_channel_index(uint32_t channelId) {
    const auto index = mChannels.indexOf(channelId);
    return index ? static_cast<uint32_t>(*index) : static_cast<uint32_t>(kNotFound);
}

/** The length of the longest list. */
Return<uint32_t> Service::a_hidl_qeltvapi_channellist_max_channel_index() {
    size_t longest = 0;
    for (const uint16_t list : mChannels.lists()) {
        longest = std::max(longest, mChannels.count(list));
    }
    return longest != 0 ? static_cast<uint32_t>(longest - 1) : 0;
}

Return<uint32_t> Service::a_hidl_qeltvapi_channellist_get_ntsc_cable_last_channel() {
    return kLastCableChannel;
}

Return<uint32_t> Service::a_hidl_qeltvapi_channellist_get_cqam_scan_last_channel() {
    return kLastQamChannel;
}

/** The word is the version of the list. */
Return<void> Service::a_hidl_c_svl_get_rec(uint32_t list, uint32_t recordId,
                                           a_hidl_c_svl_get_rec_cb reply) {
    replyPair(mChannels.pairOfRecord(listId(list), recordId),
              [&](const Bytes& svl, const Bytes&, int32_t code) {
                  reply(svl, mChannels.version(listId(list)), code);
              });
    return Void();
}

/** The word is the version of the list. */
Return<void> Service::a_hidl_c_tsl_get_rec(uint32_t list, uint32_t recordId,
                                           a_hidl_c_tsl_get_rec_cb reply) {
    const auto found = mChannels.multiplex(listId(list), recordId);
    reply(found ? bytesOf(pack(*found)) : Bytes(), mChannels.version(listId(list)),
          found ? kOk : kNotFound);
    return Void();
}

}  // namespace qeltvd
