#define LOG_TAG "qeltvd"

#include "Alerts.h"

#include <log/log.h>

#include <algorithm>

#include "Code.h"
#include "LogText.h"
#include "Stored.h"

namespace qeltvd {

namespace {

constexpr uint8_t kTestPriority = 0, kHighPriority = 11;
/** Alerts that are remembered as raised. */
constexpr size_t kReceivedLimit = 64;

bool isOneOf(const std::string& code, std::initializer_list<const char*> codes) {
    return std::any_of(codes.begin(), codes.end(), [&](const char* each) { return code == each; });
}

QELTV_ALERT_TYPE typeOf(const stream::Alert& alert) {
    if (alert.priority == kTestPriority || isOneOf(alert.code, {"RWT", "RMT", "NPT", "DMO"})) {
        return QELTV_ALERT_TEST;
    }
    if (alert.originator == "PEP" || isOneOf(alert.code, {"EAN", "EAT", "NIC"})) {
        return QELTV_ALERT_NATIONAL;
    }
    return alert.code == "ADR" ? QELTV_ALERT_MESSAGE : QELTV_ALERT_WARNING;
}

}  // namespace

Alerts::Alerts(Store& store, Timers& timers, Notifier& notifier, const ChannelDatabase& channels,
               Broadcast& broadcast, std::function<Code(uint32_t)> goTo)
        : mStore(store),
          mNotifier(notifier),
          mChannels(channels),
          mBroadcast(broadcast),
          mGoTo(std::move(goTo)),
          mAlarm(timers, "ending an alert", [this] { update(); }) {
    mStore.execute("CREATE TABLE IF NOT EXISTS ews_monitors (area INTEGER PRIMARY KEY)");
    Store::Statement rows(mStore, "SELECT area FROM ews_monitors ORDER BY area");
    while (rows.step()) mMonitors.push_back(static_cast<int32_t>(rows.integer(0)));
    broadcast.addListener([this](uint32_t changes) {
        if ((changes & stream::kAlertChanged) != 0) receive();
    });
}

QELTV_ALERT_ENTRY_T Alerts::entryOf(const stream::Alert& alert) const {
    QELTV_ALERT_ENTRY_T entry{};
    entry.type = typeOf(alert);
    const auto current = mChannels.current();
    if (alert.major != 0 && current) {
        const uint32_t number =
                alert.minor != 0 ? uint32_t{alert.major} << 16 | alert.minor : alert.major;
        if (const auto details = mChannels.byNumber(current->list, number)) {
            entry.channel = static_cast<int32_t>(details->channelId);
            // Less urgent ones leave it to the application to go there.
            entry.channelChange =
                    alert.priority >= kHighPriority && entry.type != QELTV_ALERT_TEST ? 1 : 0;
        }
    }
    // State and county as in the codes of places of the United States.
    constexpr int32_t kCounties = 1000;
    if (!alert.locations.empty()) {
        entry.area = alert.locations.front().state * kCounties + alert.locations.front().county;
    }
    constexpr int32_t kMinute = 60;
    const int32_t seconds =
            alert.remaining != 0 ? alert.remaining : alert.durationMinutes * kMinute;
    entry.seconds = seconds != 0 ? std::min(seconds, kLongest) : kLongest;
    return entry;
}

void Alerts::receive() {
    for (const auto& signals : mBroadcast.received()) {
        for (const stream::Alert& alert : signals->alerts()) {
            std::tuple<uint8_t, uint16_t, std::string> key{alert.sequence, alert.id, alert.code};
            if (std::find(mReceived.begin(), mReceived.end(), key) != mReceived.end()) continue;
            if (mReceived.size() >= kReceivedLimit) mReceived.pop_front();
            mReceived.push_back(std::move(key));
            const Code code = raise(entryOf(alert));
            if (code != kOk) {
                ALOGE("the alert %s is not shown: code %d", logText(alert.code).c_str(), code);
                continue;
            }
            ALOGW("alert %s: %s", logText(alert.code).c_str(), logText(alert.text).c_str());
        }
    }
}

QELTV_ALERT_ENTRY_T Alerts::alert() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mAlert;
}

Code Alerts::raise(const QELTV_ALERT_ENTRY_T& alert) {
    std::lock_guard<std::mutex> guard(mLock);
    if (alert.type == QELTV_ALERT_NONE) {
        if (mAlert.type == QELTV_ALERT_NONE) return kRefused;
        endAlert(QELTV_ALERT_ENDS, true);
        return kOk;
    }
    if (alert.type < QELTV_ALERT_TEST || alert.type > QELTV_ALERT_NATIONAL ||
        alert.channelChange < 0 || alert.channelChange > 1 || alert.seconds <= 0 ||
        alert.seconds > kLongest) {
        return kBadValue;
    }
    const auto channel = static_cast<uint32_t>(alert.channel);
    if (alert.channelChange == 1 && !mChannels.byChannelId(channel)) return kNotFound;
    if (mAlert.type != QELTV_ALERT_NONE) endAlert(QELTV_ALERT_ENDS, true);
    if (alert.channelChange == 1) {
        const auto before = mChannels.current();
        const Code code = stored([&] { return mGoTo(channel); });
        if (code != kOk) return code;
        if (before) mChannelBefore = before->channelId;
    }
    mAlert = alert;
    mAlertEnd = Clock::now() + std::chrono::seconds(alert.seconds);
    notifyAlert(QELTV_ALERT_BEGINS);
    schedule();
    return kOk;
}

void Alerts::endAlert(int32_t event, bool goBack) {
    notifyAlert(event);
    mAlert = {};
    if (goBack && mChannelBefore) {
        // The channel may have been removed meanwhile.
        (void)stored([&] { return mGoTo(*mChannelBefore); });
    }
    mChannelBefore.reset();
}

void Alerts::setLaunched(bool launched) {
    std::lock_guard<std::mutex> guard(mLock);
    mLaunched = launched;
}

bool Alerts::launched() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mLaunched;
}

Code Alerts::leave() {
    std::lock_guard<std::mutex> guard(mLock);
    if (mAlert.type == QELTV_ALERT_NONE) return kRefused;
    endAlert(QELTV_ALERT_LEFT, false);
    return kOk;
}

Code Alerts::addMonitor(int32_t area) {
    std::lock_guard<std::mutex> guard(mLock);
    if (area <= 0) return kBadValue;
    if (std::find(mMonitors.begin(), mMonitors.end(), area) != mMonitors.end() ||
        mMonitors.size() >= QELTV_WARNING_MONITOR_LIMIT) {
        return kRefused;
    }
    const Code code = stored([&] {
        Store::Statement(mStore, "INSERT INTO ews_monitors VALUES (?)").bind(int64_t{area}).run();
        return kOk;
    });
    if (code == kOk) mMonitors.push_back(area);
    return code;
}

Code Alerts::removeMonitor(int32_t area) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = std::find(mMonitors.begin(), mMonitors.end(), area);
    if (found == mMonitors.end()) return kNotFound;
    const Code code = stored([&] {
        Store::Statement(mStore, "DELETE FROM ews_monitors WHERE area = ?")
                .bind(int64_t{area})
                .run();
        return kOk;
    });
    if (code == kOk) mMonitors.erase(found);
    return code;
}

std::vector<int32_t> Alerts::monitors() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mMonitors;
}

Result<int32_t> Alerts::raiseWarning(const QELTV_WARNING_ENTRY_T& warning) {
    std::lock_guard<std::mutex> guard(mLock);
    if (warning.severity < 1 || warning.severity > 3 || warning.area < 0 || warning.seconds <= 0 ||
        warning.seconds > kLongest) {
        return kBadValue;
    }
    if (mWarnings.size() >= kWarningLimit) return kRefused;
    Warning added{warning, Clock::now() + std::chrono::seconds(warning.seconds)};
    added.entry.number = mNextWarning++;
    mWarnings.push_back(added);
    notifyWarning(QELTV_WARNING_BEGINS, warning.area);
    schedule();
    return added.entry.number;
}

Code Alerts::cancelWarning(int32_t number) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found =
            std::find_if(mWarnings.begin(), mWarnings.end(),
                         [&](const Warning& warning) { return warning.entry.number == number; });
    if (found == mWarnings.end()) return kNotFound;
    notifyWarning(QELTV_WARNING_ENDS, found->entry.area);
    mWarnings.erase(found);
    return kOk;
}

std::vector<QELTV_WARNING_ENTRY_T> Alerts::warnings(int32_t area) const {
    std::lock_guard<std::mutex> guard(mLock);
    std::vector<QELTV_WARNING_ENTRY_T> entries;
    for (const Warning& warning : mWarnings) {
        if (area != 0 && warning.entry.area != 0 && warning.entry.area != area) continue;
        entries.push_back(warning.entry);
        entries.back().seconds = static_cast<int32_t>(
                std::chrono::ceil<std::chrono::seconds>(warning.end - Clock::now()).count());
    }
    return entries;
}

void Alerts::notifyAlert(int32_t event) {
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_eas_callback_fct, event,
                    {mAlert.type, mAlert.channelChange, static_cast<uint32_t>(mAlert.channel),
                     mAlert.area});
}

/** Notifies every client of a warning; with monitors, only if one of them covers the area. */
void Alerts::notifyWarning(int32_t event, int32_t area) {
    mNotifier.notify(&Notifier::Callback::a_hidl_qeltvapi_ews_msg_callback, event, uint64_t{0});
    if (mMonitors.empty()) return;
    if (area == 0 || std::find(mMonitors.begin(), mMonitors.end(), area) != mMonitors.end()) {
        mNotifier.notify(&Notifier::Callback::a_hidl_qeltvapi_ewspa_msg_callback, event,
                         uint64_t{0});
    }
}

void Alerts::schedule() {
    std::optional<Clock::time_point> next;
    if (mAlert.type != QELTV_ALERT_NONE) next = mAlertEnd;
    for (const Warning& warning : mWarnings) {
        next = next ? std::min(*next, warning.end) : warning.end;
    }
    if (next) mAlarm.set(*next);
}

void Alerts::update() {
    std::lock_guard<std::mutex> guard(mLock);
    const auto now = Clock::now();
    if (mAlert.type != QELTV_ALERT_NONE && mAlertEnd <= now) endAlert(QELTV_ALERT_ENDS, true);
    for (size_t i = 0; i < mWarnings.size();) {
        if (mWarnings[i].end > now) {
            ++i;
            continue;
        }
        notifyWarning(QELTV_WARNING_ENDS, mWarnings[i].entry.area);
        mWarnings.erase(mWarnings.begin() + static_cast<ptrdiff_t>(i));
    }
    schedule();
}

}  // namespace qeltvd
