#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include "Inputs.h"
#include "LineUp.h"
#include "Signals.h"
#include "layouts/presentation.h"

namespace qeltvd {

/** A video path: what it shows, how far that has come, and how it is shown. */
struct VideoPath {
    /** A place on the screen in 1/10000 of it. */
    struct Region {
        uint32_t x, y, width, height;
    };

    int32_t source = Inputs::kTuner;
    QELTV_TUNING_STATUS status = QELTV_TUNING_STOPPED;
    QELTV_TUNING_ERROR error = QELTV_TUNING_NO_ERROR;
    std::optional<Channel> channel;
    std::optional<Multiplex> multiplex;
    /** Receives the channel; null while no channel is shown. */
    std::shared_ptr<Tuning> tuning;
    /** When the step that is under way is done. */
    std::optional<std::chrono::steady_clock::time_point> due;
    /** Until when a tuner that has received nothing may go on to search. */
    std::chrono::steady_clock::time_point searchEnd;
    /** Id of the channel before; 0 for none. */
    uint32_t lastChannel = 0;
    uint32_t track = 1;
    bool banner = false;
    bool unlocked = false;
    /** The programme for which that lifts the rating lock. */
    std::optional<uint16_t> unlockedEvent;
    bool frozen = false;
    bool muted = false;
    bool videoOn = true;
    QELTV_VIDEO_RESOURCE resource = QELTV_RESOURCE_NONE;
    Region region{0, 0, QELTV_REGION_FULL, QELTV_REGION_FULL};

    bool running() const { return status != QELTV_TUNING_STOPPED; }
    bool plays() const { return status == QELTV_TUNING_PLAYS; }
    bool showsTv() const { return source == Inputs::kTuner; }
    /** The channel that it shows; null while it shows none. */
    const Channel* shownChannel() const { return showsTv() && channel ? &*channel : nullptr; }
};

}  // namespace qeltvd
