#define LOG_TAG "qeltvd"

#include "ChannelMerge.h"

#include <log/log.h>

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "ChannelEdit.h"
#include "ChannelIds.h"
#include "Code.h"
#include "Text.h"

namespace qeltvd::channel_editing {

namespace {

/** Numbers for services that the broadcast gives none, or one that is taken. */
class FreeNumbers {
  public:
    FreeNumbers(uint16_t id, const ChannelList& list)
            : mId(id), mList(list), mNext{{1, list.freeNumber()}} {}

    /** From `first` on; 0 if all are taken. */
    uint32_t next(uint32_t first) {
        uint32_t& number = mNext.emplace(first, first).first->second;
        while (number != 0 && mList.byId.count(channel_ids::onePart(mId, number)) != 0) {
            number = number < channel_ids::kMaximumNumber ? number + 1 : 0;
        }
        return number;
    }

  private:
    const uint16_t mId;
    const ChannelList& mList;
    std::map<uint32_t, uint32_t> mNext;
};

/** The record of the network that a multiplex names; it is added if there is none. */
uint32_t networkOf(ChannelEdit& edit, ChannelList& list, uint16_t id, const Found& found) {
    const std::string name = cut(found.network, kNameLimit);
    for (const Network& network : list.networks) {
        if (network.networkId == found.multiplex.networkId && network.name == name &&
            network.satellite == found.multiplex.satellite) {
            return network.recordId;
        }
    }
    list.networks.push_back(
            {id, list.nextNetwork++, found.multiplex.networkId, found.multiplex.satellite, name});
    edit.store().save(list.networks.back());
    return list.networks.back().recordId;
}

}  // namespace

Result<Merged> merge(ChannelEdit& edit, uint16_t id, const std::vector<Found>& found,
                     Unfound unfound) {
    if (id == 0 || id > channel_ids::kMaximumList) return kBadValue;
    ChannelList& list = edit.change(id);
    Merged result;
    std::unordered_set<uint32_t> seenMultiplexes;
    std::unordered_set<uint32_t> seenChannels;
    ChannelChange change{ChannelChange::Kind::kChannels, id};
    // The mark of new channels lasts until the next scan.
    for (Channel& channel : list.channels) {
        if ((channel.flags & CHANNEL_FLAG_NEW) == 0) continue;
        channel.flags &= ~CHANNEL_FLAG_NEW;
        edit.store().save(channel);
    }
    FreeNumbers free(id, list);
    std::unordered_map<uint32_t, std::vector<uint32_t>> onMultiplex;
    for (const Channel& channel : list.channels) {
        onMultiplex[channel.multiplex].push_back(channel.recordId);
    }
    for (const Found& each : found) {
        if (!each.signal) continue;
        Multiplex multiplex = each.multiplex;
        multiplex.list = id;
        multiplex.name = cut(multiplex.name, kNameLimit);
        if (!each.network.empty()) multiplex.network = networkOf(edit, list, id, each);
        const auto known =
                std::find_if(list.multiplexes.begin(), list.multiplexes.end(),
                             [&](const Multiplex& m) { return sameReception(m, multiplex); });
        if (known != list.multiplexes.end()) {
            multiplex.recordId = known->recordId;
            if (multiplex.network == 0) multiplex.network = known->network;
            *known = multiplex;
        } else {
            multiplex.recordId = list.nextMultiplex++;
            list.multiplexes.push_back(multiplex);
        }
        edit.store().save(multiplex);
        seenMultiplexes.insert(multiplex.recordId);

        std::vector<Channel> services = each.services;
        // None takes the number that another one has in the broadcast.
        std::stable_partition(services.begin(), services.end(),
                              [](const Channel& service) { return service.number != 0; });
        for (const Channel& service : services) {
            const Channel* was = nullptr;
            for (const uint32_t record : onMultiplex[multiplex.recordId]) {
                const Channel& candidate = list.channels[list.byRecord.at(record)];
                if (candidate.serviceId == service.serviceId) was = &candidate;
            }
            Channel channel = service;
            channel.list = id;
            channel.multiplex = multiplex.recordId;
            channel.originalNetworkId = multiplex.originalNetworkId;
            channel.streamId = multiplex.streamId;
            channel.name = cut(channel.name, kNameLimit);
            channel.provider = cut(channel.provider, kProviderLimit);
            channel.language = cut(channel.language, kLanguageLimit);
            channel.flags &= ~(CHANNEL_FLAGS_FAVOURITE | CHANNEL_FLAG_RENAMED);
            if (was != nullptr) {
                // The user's: number, visibility, lock, skipping, favourites, name.
                constexpr uint32_t kUsers = CHANNEL_FLAG_VISIBLE | CHANNEL_FLAG_LOCKED |
                                            CHANNEL_FLAG_SKIPPED | CHANNEL_FLAG_RENAMED |
                                            CHANNEL_FLAGS_FAVOURITE;
                channel.recordId = was->recordId;
                channel.channelId = was->channelId;
                channel.number = was->number;
                channel.flags = (channel.flags & ~kUsers) | (was->flags & kUsers);
                if ((was->flags & CHANNEL_FLAG_RENAMED) != 0) channel.name = was->name;
                ++result.updated;
            } else {
                channel.channelId = channel_ids::ofNumber(id, channel.number);
                if (channel.channelId == 0 || list.byId.count(channel.channelId) != 0) {
                    channel.number = free.next(each.firstNumber);
                    if (channel.number == 0) {
                        ALOGW("list %u is full, services are left out", id);
                        break;
                    }
                    channel.channelId = channel_ids::onePart(id, channel.number);
                }
                channel.recordId = list.nextRecord++;
                channel.flags |= CHANNEL_FLAG_NEW;
                onMultiplex[multiplex.recordId].push_back(channel.recordId);
                list.byId[channel.channelId] = list.channels.size();
                result.addedRecords.push_back(channel.recordId);
                ++result.added;
            }
            edit.place(list, channel);
            seenChannels.insert(channel.recordId);
            change.records.push_back(channel.recordId);
        }
    }
    if (unfound == Unfound::kRemove) {
        std::vector<uint32_t> channels;
        for (const Channel& channel : list.channels) {
            if (seenChannels.count(channel.recordId) == 0) channels.push_back(channel.recordId);
        }
        std::vector<uint32_t> multiplexes;
        for (const Multiplex& multiplex : list.multiplexes) {
            if (seenMultiplexes.count(multiplex.recordId) == 0) {
                multiplexes.push_back(multiplex.recordId);
            }
        }
        result.removed = channels.size();
        edit.take(id, channels);
        edit.takeMultiplexes(id, multiplexes);
    }
    if (!change.records.empty()) edit.changed(std::move(change));
    edit.changed({ChannelChange::Kind::kMultiplexes, id});
    return result;
}

}  // namespace qeltvd::channel_editing
