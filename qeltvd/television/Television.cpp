#define LOG_TAG "qeltvd"

#include "Television.h"

#include <log/log.h>

#include <optional>
#include <utility>

#include "ChannelIds.h"
#include "layouts/presentation.h"
#include "layouts/record.h"

namespace qeltvd {

namespace {

constexpr char kLanguageItem[] = "channels.guide_language";

}  // namespace

Television::Television(const std::string& state, Monitor& monitor,
                       std::vector<std::string> regionFiles)
        : directory(state),
          store(state + "/television.db"),
          notifier(monitor),
          config(store),
          broadcast(timers, std::move(regionFiles)),
          channels(store, broadcast, config.text("channels.region")) {
    broadcast.setLanguage(config.text(kLanguageItem));
    config.addListener([this](const ConfigItems::Item& item, Audience) {
        if (item.name == kLanguageItem) broadcast.setLanguage(config.text(kLanguageItem));
    });
    clock.addListener([this] { recorder.clockChanged(); });
    channels.addListener([this](const ChannelChange&) { timeshift.channelChanged(); });
    power.addListener([this](bool standby) {
        if (standby && recorder.command(QELTV_COMMAND_STANDBY, 0) != kOk) {
            ALOGW("the end of a recording is stored later: the store cannot be written");
        }
        timeshift.standBy(standby);
    });
    sleepTimer.addListener([this] {
        Code code = power.setDownReason(QELTV_DOWN_SLEEP_TIMER, {});
        if (code == kOk) code = power.powerDown(QELTV_POWER_DOWN);
        if (code != kOk) ALOGW("the sleep timer leaves the television on: code %d", code);
    });
}

Television::~Television() {
    // Their functions call models that end before theirs.
    timers.stop();
    scanner.stop();
}

Code Television::goTo(uint32_t channelId) {
    const Code code = channels.setCurrent(channelId);
    if (code != kOk) return code;
    if (presentation.select(Presentation::kMain, channelId, false) != kOk) {
        ALOGI("channel %u is current and is not shown now", channelId);
    }
    return kOk;
}

std::unique_ptr<PacketSource> Television::packets(const PacketRequest& request) {
    const auto pair = channels.pair(request.channel.id);
    if (pair) {
        const auto signals = broadcast.of(pair->second);
        const auto key = channels.bissKeyFor(pair->first);
        signals->setKey(pair->first, key ? key->key : std::vector<uint8_t>());
        return signals->packets(pair->first, request.rate);
    }
    // The channel has just been removed.
    Channel channel;
    channel.name = request.channel.name;
    return broadcast.simulated().packets(channel, request.rate);
}

ViewerShift Television::shift() {
    return {[this](uint32_t channel, std::unique_ptr<PacketSource> live) {
                return timeshift.viewerPackets(channel, std::move(live));
            },
            [this](uint32_t channel) { return timeshift.behind(channel); }};
}

ChannelLookup Television::lookupIn(const ChannelDatabase& channels) {
    return [&channels](uint32_t id) -> std::optional<RecordedChannel> {
        const auto channel = id != 0 ? channels.byChannelId(id) : channels.current();
        if (!channel) return std::nullopt;
        return RecordedChannel{channel->channelId,
                               channel->name,
                               channel_ids::major(channel->channelId),
                               channel_ids::minor(channel->channelId),
                               uint32_t{channel->list} << 24 | channel->multiplex,
                               channel->list};
    };
}

}  // namespace qeltvd
