#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Broadcast.h"
#include "ChannelDatabase.h"
#include "ConfigItems.h"
#include "Guide.h"
#include "Inputs.h"
#include "VideoPath.h"

namespace qeltvd {

/** Whether what a video path shows may be seen, and can be. Nothing is shown in doubt. */
class ViewingRights {
  public:
    /** Item that blocks the inputs which are set to be blocked. */
    static constexpr char kInputLockItem[] = "parental.input_lock";

    /** @param camName the name of the CAM, empty while none works */
    ViewingRights(const ConfigItems& config, const ChannelDatabase& channels,
                  const Broadcast& broadcast, const Guide& guide, const Inputs& inputs,
                  std::function<std::string()> camName);

    /** A locked channel, a blocked input, or a programme that the rating lock blocks. */
    bool blocked(const VideoPath& path) const;
    bool inputBlocked(int32_t source) const;
    bool scrambled(const VideoPath& path) const;
    /** The BISS key for what a path shows; empty for none. */
    std::vector<uint8_t> key(const VideoPath& path) const;
    /** The programme that a path shows; nothing if it shows none. @throws StoreError */
    std::optional<uint16_t> programme(const VideoPath& path) const;
    /** Name of the CAM that descrambles; empty for none. */
    std::string camName() const { return mCamName(); }

  private:
    bool programmeBlocked(const Channel& channel, std::optional<uint16_t> unlockedEvent) const;
    bool inputsLocked() const;

    const ConfigItems& mConfig;
    const ChannelDatabase& mChannels;
    const Broadcast& mBroadcast;
    const Guide& mGuide;
    const Inputs& mInputs;
    const std::function<std::string()> mCamName;
};

}  // namespace qeltvd
