#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "Alarm.h"
#include "Broadcast.h"
#include "ChannelDatabase.h"
#include "Code.h"
#include "Notifier.h"
#include "Result.h"
#include "Store.h"
#include "layouts/alert.h"

namespace qeltvd {

/**
 * Emergency alerts, one at a time, and warnings with the monitors of areas. Both end in time. An
 * alert of a multiplex that is received is raised once, however often it is sent.
 */
class Alerts {
  public:
    static constexpr size_t kWarningLimit = 32;
    static constexpr int32_t kLongest = 24 * 3600;

    /** @param goTo see Television::goTo(); called in a lock of this. @throws StoreError */
    Alerts(Store& store, Timers& timers, Notifier& notifier, const ChannelDatabase& channels,
           Broadcast& broadcast, std::function<Code(uint32_t channelId)> goTo);

    /** The alert that is on; of type QELTV_ALERT_NONE when none is. */
    QELTV_ALERT_ENTRY_T alert() const;
    /** Begins an alert in place of the one before; type QELTV_ALERT_NONE ends it. */
    Code raise(const QELTV_ALERT_ENTRY_T& alert);
    void setLaunched(bool launched);
    bool launched() const;
    /** The application leaves the alert, and stays on the channel. */
    Code leave();

    Code addMonitor(int32_t area);
    Code removeMonitor(int32_t area);
    std::vector<int32_t> monitors() const;

    /** The number of the warning, or a code. */
    Result<int32_t> raiseWarning(const QELTV_WARNING_ENTRY_T& warning);
    Code cancelWarning(int32_t number);
    /** Those that hold in an area; all for area 0. */
    std::vector<QELTV_WARNING_ENTRY_T> warnings(int32_t area) const;

  private:
    using Clock = Alarm::Clock;
    struct Warning {
        QELTV_WARNING_ENTRY_T entry;
        Clock::time_point end;
    };

    /** Raises what has been received. */
    void receive();
    QELTV_ALERT_ENTRY_T entryOf(const stream::Alert& alert) const;
    /** Ends the alert; whether it goes back to the channel before. */
    void endAlert(int32_t event, bool goBack);
    void notifyAlert(int32_t event);
    void notifyWarning(int32_t event, int32_t area);
    void schedule();
    void update();

    Store& mStore;
    Notifier& mNotifier;
    const ChannelDatabase& mChannels;
    const Broadcast& mBroadcast;
    const std::function<Code(uint32_t)> mGoTo;
    /** Sequence, id and code of the alerts that were raised; on the timers' thread. */
    std::deque<std::tuple<uint8_t, uint16_t, std::string>> mReceived;
    mutable std::mutex mLock;
    // Guarded by mLock.
    QELTV_ALERT_ENTRY_T mAlert{};
    Clock::time_point mAlertEnd;
    std::optional<uint32_t> mChannelBefore;
    bool mLaunched = false;
    std::vector<int32_t> mMonitors;
    std::vector<Warning> mWarnings;
    int32_t mNextWarning = 1;
    Alarm mAlarm;
};

}  // namespace qeltvd
