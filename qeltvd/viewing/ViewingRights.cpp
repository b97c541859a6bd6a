#define LOG_TAG "qeltvd"

#include "ViewingRights.h"

#include <log/log.h>

#include <utility>

#include "Store.h"

namespace qeltvd {

ViewingRights::ViewingRights(const ConfigItems& config, const ChannelDatabase& channels,
                             const Broadcast& broadcast, const Guide& guide, const Inputs& inputs,
                             std::function<std::string()> camName)
        : mConfig(config),
          mChannels(channels),
          mBroadcast(broadcast),
          mGuide(guide),
          mInputs(inputs),
          mCamName(std::move(camName)) {}

bool ViewingRights::blocked(const VideoPath& path) const {
    const Channel* const channel = path.shownChannel();
    if (channel != nullptr && programmeBlocked(*channel, path.unlockedEvent)) return true;
    if (path.unlocked) return false;
    if (channel != nullptr && (channel->flags & CHANNEL_FLAG_LOCKED) != 0) return true;
    return inputBlocked(path.source);
}

bool ViewingRights::inputBlocked(int32_t source) const {
    return mInputs.blocked(source) && inputsLocked();
}

bool ViewingRights::scrambled(const VideoPath& path) const {
    const Channel* const channel = path.shownChannel();
    if (channel == nullptr) return false;
    const bool descrambler = !mCamName().empty() || mChannels.bissKeyFor(*channel);
    const auto signals = mBroadcast.of(path.multiplex.value_or(Multiplex{}));
    return signals->scrambled(*channel, descrambler);
}

std::vector<uint8_t> ViewingRights::key(const VideoPath& path) const {
    const Channel* const channel = path.shownChannel();
    const auto key = channel != nullptr ? mChannels.bissKeyFor(*channel) : std::nullopt;
    return key ? key->key : std::vector<uint8_t>();
}

std::optional<uint16_t> ViewingRights::programme(const VideoPath& path) const {
    const Channel* const channel = path.shownChannel();
    if (channel == nullptr) return std::nullopt;
    const auto event = mGuide.present(channel->channelId);
    return event ? std::optional(event->id) : std::nullopt;
}

bool ViewingRights::programmeBlocked(const Channel& channel,
                                     std::optional<uint16_t> unlockedEvent) const {
    try {
        const auto event = mGuide.present(channel.channelId);
        return event && event->id != unlockedEvent && mGuide.blocked(*event);
    } catch (const StoreError& e) {
        ALOGE("%s", e.what());
        return true;
    }
}

bool ViewingRights::inputsLocked() const {
    try {
        return mConfig.value(kInputLockItem) != 0;
    } catch (const StoreError& e) {
        ALOGE("%s", e.what());
        return true;
    }
}

}  // namespace qeltvd
