#include "Television.h"

#include <optional>

#include "ChannelIds.h"
#include "layouts/presentation.h"
#include "layouts/record.h"

namespace qeltvd {

Television::Television(const std::string& state)
        : directory(state),
          store(state + "/television.db"),
          config(store),
          channels(store, config.text("channels.region")) {
    clock.addListener([this] { recorder.clockChanged(); });
    power.addListener([this](bool standby) {
        if (standby) recorder.command(QELTV_COMMAND_STANDBY, 0);
        timeshift.standBy(standby);
    });
    sleepTimer.addListener([this] {
        if (power.setDownReason(QELTV_DOWN_SLEEP_TIMER, {}) == 0) {
            power.powerDown(QELTV_POWER_DOWN);
        }
    });
}

int32_t Television::goTo(uint32_t channelId) {
    const int32_t code = channels.setCurrent(channelId);
    if (code == 0) presentation.select(Presentation::kMain, channelId, false);
    return code;
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
