#pragma once

#include <hidlhost/runtime_directory.h>

#include <string>
#include <vector>

#include "Agent.h"
#include "Alerts.h"
#include "Broadcast.h"
#include "Cam.h"
#include "Captions.h"
#include "ChannelDatabase.h"
#include "Clock.h"
#include "Code.h"
#include "ConfigItems.h"
#include "Guide.h"
#include "Inputs.h"
#include "Monitor.h"
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
    /**
     * @param state       directory of the store
     * @param monitor     is sent each notification
     * @param regionFiles scan tables of the user's own
     * @throws StoreError
     * @throws std::runtime_error for a scan table that cannot be read
     */
    Television(const std::string& state, Monitor& monitor,
               std::vector<std::string> regionFiles = {});
    /** Finishes the recordings that run. */
    ~Television();
    Television(const Television&) = delete;
    Television& operator=(const Television&) = delete;

    /**
     * Makes a channel the current one and shows it, if that is possible now: not in standby and
     * not while the second picture has the tuner. @throws StoreError
     */
    Code goTo(uint32_t channelId);

    const std::string directory;
    Store store;
    Notifier notifier;
    Timers timers;
    ConfigItems config;
    Broadcast broadcast;
    ChannelDatabase channels;

    Clock clock{store, notifier, config, broadcast};
    Ratings ratings{store, notifier, config, broadcast};
    PinLock pin{store, notifier};
    Guide guide{timers, channels, broadcast, clock, pin, ratings, notifier};
    AtscGuide atsc{guide, channels, clock, notifier};
    Scanner scanner{channels, broadcast, config, notifier};
    Upgrade upgrade{store, timers, notifier};
    OverAirDownload overAir{
            store, timers, notifier, clock, channels, upgrade, [this](uint32_t channelId) {
                return goTo(channelId);
            }};
    Uart uart{notifier};

    Settings settings{store};
    Recorder recorder{store,
                      settings,
                      notifier,
                      directory + "/recordings",
                      lookupIn(channels),
                      clock,
                      [this](const PacketRequest& request) { return packets(request); }};
    Timeshift timeshift{settings, notifier, lookupIn(channels),
                        [this](const PacketRequest& request) { return packets(request); }};
    Cam cam{store, settings, notifier, directory};
    Alerts alerts{store,    timers,    notifier,
                  channels, broadcast, [this](uint32_t channelId) { return goTo(channelId); }};
    Captions captions{settings, notifier, config, channels, broadcast};
    Teletext teletext{notifier, channels, clock, broadcast};
    Agent agent{settings, notifier, channels, broadcast, captions};

    Inputs inputs{store};
    Sound sound{store, notifier};
    Picture picture{store, notifier};
    Power power{store, notifier};
    SleepTimer sleepTimer{timers, notifier};
    PacketSockets packetSockets{hidlhost::runtimeDirectory()};
    Presentation presentation{timers,
                              notifier,
                              config,
                              channels,
                              broadcast,
                              guide,
                              inputs,
                              sound,
                              power,
                              packetSockets,
                              [this] {
                                  const auto name = cam.get(QELTV_CI_GET_CAM_NAME);
                                  return name ? std::string(name->begin(), name->end()) : "";
                              },
                              shift()};

  private:
    std::unique_ptr<PacketSource> packets(const PacketRequest& request);
    /** The timeshift as what is shown has it. */
    ViewerShift shift();
    /** Looks into the channel data, which has to outlive the lookup. */
    static ChannelLookup lookupIn(const ChannelDatabase& channels);
};

}  // namespace qeltvd
