#pragma once

#include <string>

#include "Agent.h"
#include "Alerts.h"
#include "Cam.h"
#include "Captions.h"
#include "ChannelDatabase.h"
#include "Clock.h"
#include "ConfigItems.h"
#include "Guide.h"
#include "Inputs.h"
#include "Notifier.h"
#include "Picture.h"
#include "PinLock.h"
#include "Power.h"
#include "Presentation.h"
#include "Ratings.h"
#include "Recorder.h"
#include "Scanner.h"
#include "Settings.h"
#include "Sound.h"
#include "Store.h"
#include "Teletext.h"
#include "Timeshift.h"
#include "Uart.h"
#include "Upgrade.h"

namespace qeltvd {

/** What the services of the reference television share. */
struct Television {
    /** @param state directory of the store. @throws StoreError */
    explicit Television(const std::string& state);

    /**
     * Makes a channel the current one and shows it, where that is possible now: not in standby and
     * not while the second picture has the tuner. Gives a code. @throws StoreError
     */
    int32_t goTo(uint32_t channelId);

    const std::string directory;
    Store store;
    Notifier notifier;
    Timers timers;
    ConfigItems config;
    ChannelDatabase channels;

    Clock clock{store, notifier, config};
    Ratings ratings{store, notifier, config};
    PinLock pin{store, notifier};
    Guide guide{timers, channels, clock, pin, ratings, notifier};
    AtscGuide atsc{guide, channels, clock, notifier};
    Scanner scanner{channels, config, notifier};
    Upgrade upgrade{store, timers, notifier};
    OverAirDownload overAir{
            store, timers, notifier, clock, channels, upgrade, [this](uint32_t channelId) {
                return goTo(channelId);
            }};
    Uart uart{notifier};

    Settings settings{store};
    Recorder recorder{store, settings, notifier, directory + "/recordings", lookupIn(channels),
                      clock};
    Timeshift timeshift{timers, settings, notifier};
    Cam cam{store, settings, notifier, directory};
    Alerts alerts{store, timers, notifier, channels,
                  [this](uint32_t channelId) { return goTo(channelId); }};
    Captions captions{settings, notifier};
    Teletext teletext{notifier, channels, clock};
    Agent agent{settings, notifier, channels};

    Inputs inputs{store};
    Sound sound{store, notifier};
    Picture picture{store, notifier};
    Power power{store, notifier};
    SleepTimer sleepTimer{timers, notifier};
    Presentation presentation{
            timers, notifier, config, channels, guide, inputs, sound, power, [this] {
                const auto name = cam.get(QELTV_CI_GET_CAM_NAME);
                return name ? std::string(name->begin(), name->end()) : "";
            }};

  private:
    /** Looks into the channel data, which has to outlive the lookup. */
    static ChannelLookup lookupIn(const ChannelDatabase& channels);
};

}  // namespace qeltvd
