#pragma once

#include <cstdint>
#include <string>

namespace hidlhost {

/** From the environment, read once. */
struct Settings {
    /** 0 without a limit. */
    uint32_t callTimeoutMs = 0;
    /** How long a socket waits before patience is asked. */
    uint32_t firstWaitMs = 1000;

    static const Settings& get();
};

}  // namespace hidlhost
