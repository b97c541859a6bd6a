#define LOG_TAG "qeltvd"

#include "ChannelFill.h"

#include <log/log.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <set>
#include <unordered_set>

#include "ChannelEdit.h"
#include "ChannelIds.h"
#include "Text.h"

namespace qeltvd::channel_editing {

namespace {

/** How much of a file is read: its tables come again every few seconds. */
constexpr std::chrono::seconds kFileTime{3};

/** A service that has no record yet. */
struct Service {
    Channel channel;
    uint32_t firstNumber;
};

/** Gives all services a number: those of the broadcast first, the others what is left. */
void number(uint16_t list, std::vector<Service>* services) {
    std::unordered_set<uint32_t> taken;
    for (Service& each : *services) {
        const uint32_t id = channel_ids::ofNumber(list, each.channel.number);
        each.channel.channelId = id != 0 && taken.insert(id).second ? id : 0;
    }
    std::map<uint32_t, uint32_t> next;
    for (Service& each : *services) {
        if (each.channel.channelId != 0) continue;
        uint32_t& free = next.emplace(each.firstNumber, each.firstNumber).first->second;
        while (taken.count(channel_ids::onePart(list, free)) != 0) ++free;
        if (free > channel_ids::kMaximumNumber) continue;
        each.channel.number = free;
        each.channel.channelId = channel_ids::onePart(list, free);
        taken.insert(each.channel.channelId);
    }
}

/** The networks of a list while it is filled. */
class Networks {
  public:
    Networks(ChannelList& list, uint16_t id, uint32_t satellite, const Region& region)
            : mList(list), mId(id), mSatellite(satellite), mRegion(region) {}

    /** The one that a multiplex names, or that of the region. */
    uint32_t of(const Survey& survey) {
        if (survey.network.empty()) {
            return find(mRegion.multiplexes.front().networkId, mRegion.name);
        }
        return find(survey.multiplex.networkId, survey.network);
    }

  private:
    uint32_t find(uint16_t networkId, const std::string& name) {
        const std::string text = cut(name, kNameLimit);
        const auto [known, added] = mKnown.emplace(std::pair(networkId, text), mList.nextNetwork);
        if (added) {
            mList.networks.push_back({mId, mList.nextNetwork++, networkId, mSatellite, text});
        }
        return known->second;
    }

    ChannelList& mList;
    const uint16_t mId;
    const uint32_t mSatellite;
    const Region& mRegion;
    std::map<std::pair<uint16_t, std::string>, uint32_t> mKnown;
};

}  // namespace

std::vector<Surveyed> survey(Broadcast& broadcast, const std::string& configured) {
    std::vector<Surveyed> all;
    for (Region& region : broadcast.regions(configured)) {
        Surveyed surveyed{std::move(region), {}};
        for (const Multiplex& multiplex : surveyed.region.multiplexes) {
            const auto signals = broadcast.of(multiplex);
            const auto end = std::chrono::steady_clock::now() + kFileTime;
            Survey survey;
            if (!signals->live()) {
                survey = signals->survey(surveyed.region, multiplex,
                                         [end] { return std::chrono::steady_clock::now() < end; });
            }
            if (!survey.signal) survey.multiplex = multiplex;
            surveyed.surveys.push_back(std::move(survey));
        }
        all.push_back(std::move(surveyed));
    }
    return all;
}

void fill(ChannelEdit& edit, const std::string& name, const std::vector<Surveyed>& all) {
    std::set<uint16_t> ids;
    for (const auto& each : edit.lists().lists) ids.insert(each.first);
    for (const auto& each : all) ids.insert(static_cast<uint16_t>(each.region.medium));
    for (const uint16_t id : ids) {
        ChannelList& list = edit.change(id);
        list.channels.clear();
        list.multiplexes.clear();
        list.networks.clear();
    }
    edit.lists().satellites.clear();

    std::map<uint16_t, std::vector<Service>> services;
    for (const auto& [region, surveys] : all) {
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
        Networks networks(list, id, satellite, region);
        for (const Survey& survey : surveys) {
            if (survey.multiplex.list != id) continue;
            Multiplex multiplex = survey.multiplex;
            multiplex.recordId = list.nextMultiplex++;
            multiplex.satellite = satellite;
            multiplex.network = networks.of(survey);
            for (Channel channel : survey.services) {
                channel.multiplex = multiplex.recordId;
                channel.name = cut(channel.name, kNameLimit);
                channel.provider = cut(channel.provider, kProviderLimit);
                channel.language = cut(channel.language, kLanguageLimit);
                services[id].push_back({std::move(channel), survey.firstNumber});
            }
            list.multiplexes.push_back(std::move(multiplex));
        }
    }
    for (auto& [id, found] : services) {
        ChannelList& list = edit.change(id);
        std::stable_sort(found.begin(), found.end(), [](const Service& a, const Service& b) {
            return a.channel.type < b.channel.type;
        });
        number(id, &found);
        for (Service& service : found) {
            if (service.channel.channelId == 0) {
                ALOGW("list %u is full, services are left out", id);
                break;
            }
            service.channel.recordId = list.nextRecord++;
            list.channels.push_back(std::move(service.channel));
        }
    }
    for (const uint16_t id : ids) {
        edit.change(id).order();
        edit.store().saveList(id, edit.list(id));
        edit.changed({ChannelChange::Kind::kList, id});
    }
    edit.store().saveSatellites(edit.lists().satellites);
    edit.lists().region = name;
    edit.lists().current = {};
    edit.lists().second = {};
    for (const auto& [id, list] : edit.lists().lists) {
        if (list->channels.empty()) continue;
        edit.lists().current = {id, list->channels.front().recordId};
        break;
    }
    edit.changed({ChannelChange::Kind::kSatellites, kSatelliteList});
}

}  // namespace qeltvd::channel_editing
