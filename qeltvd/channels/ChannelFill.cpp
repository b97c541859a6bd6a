#define LOG_TAG "qeltvd"

#include "ChannelFill.h"

#include <log/log.h>

#include <algorithm>
#include <map>
#include <set>
#include <unordered_set>

#include "ChannelEdit.h"
#include "ChannelIds.h"
#include "ServiceGenerator.h"

namespace qeltvd::channel_editing {

void fill(ChannelEdit& edit, const std::string& configured) {
    std::set<uint16_t> ids;
    for (const auto& each : edit.lists().lists) ids.insert(each.first);
    const auto all = regions(configured);
    for (const Region& region : all) ids.insert(static_cast<uint16_t>(region.medium));
    for (const uint16_t id : ids) {
        ChannelList& list = edit.change(id);
        list.channels.clear();
        list.multiplexes.clear();
        list.networks.clear();
    }
    edit.lists().satellites.clear();

    std::map<uint16_t, std::vector<Channel>> services;
    for (const Region& region : all) {
        const auto id = static_cast<uint16_t>(region.medium);
        ChannelList& list = edit.change(id);
        uint32_t satellite = 0;
        if (region.medium == Medium::kSatellite) {
            satellite = static_cast<uint32_t>(edit.lists().satellites.size() + 1);
            Satellite record;
            record.recordId = satellite;
            record.name = cut(region.satellite, kNameLimit);
            record.position = region.position;
            // A switch has four inputs; what is beyond needs a motor.
            record.switchPort = static_cast<uint8_t>(satellite <= 4 ? satellite : 0);
            edit.lists().satellites.push_back(record);
        }
        const uint32_t network = list.nextNetwork++;
        list.networks.push_back({id, network, region.multiplexes.front().networkId, satellite,
                                 cut(region.name, kNameLimit)});
        for (const Multiplex& transponder : region.multiplexes) {
            if (transponder.list != id) continue;
            Multiplex multiplex = transponder;
            multiplex.recordId = list.nextMultiplex++;
            multiplex.satellite = satellite;
            multiplex.network = network;
            for (Channel& service : generateServices(region, multiplex)) {
                service.multiplex = multiplex.recordId;
                services[id].push_back(std::move(service));
            }
            list.multiplexes.push_back(std::move(multiplex));
        }
    }
    for (auto& [id, found] : services) {
        ChannelList& list = edit.change(id);
        std::stable_sort(found.begin(), found.end(),
                         [](const Channel& a, const Channel& b) { return a.type < b.type; });
        std::unordered_set<uint32_t> taken;
        uint32_t free = 1;
        for (Channel& channel : found) {
            channel.channelId = channel_ids::ofNumber(id, channel.number);
            if (channel.channelId == 0 || taken.count(channel.channelId) != 0) {
                if (free > channel_ids::kMaximumNumber) {
                    ALOGW("list %u is full, services are left out", id);
                    break;
                }
                channel.number = free++;
                channel.channelId = channel_ids::onePart(id, channel.number);
            }
            taken.insert(channel.channelId);
            channel.recordId = list.nextRecord++;
            list.channels.push_back(std::move(channel));
        }
    }
    for (const uint16_t id : ids) {
        edit.change(id).order();
        edit.store().saveList(id, edit.list(id));
        edit.changed({ChannelChange::kList, id});
    }
    edit.store().saveSatellites(edit.lists().satellites);
    edit.lists().region = configured;
    edit.lists().current = {};
    edit.lists().second = {};
    for (const auto& [id, list] : edit.lists().lists) {
        if (list->channels.empty()) continue;
        edit.lists().current = {id, list->channels.front().recordId};
        break;
    }
    edit.changed({ChannelChange::kSatellites, kSatelliteList});
}

}  // namespace qeltvd::channel_editing
