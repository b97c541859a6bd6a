#define LOG_TAG "qeltvd"

#include "Power.h"

#include "Code.h"
#include "Guarded.h"
#include "Stored.h"

namespace qeltvd {

namespace {

/** Remote control, timer, CEC and the front panel. */
constexpr uint32_t kFirstSetup = 1u << QELTV_WAKE_REMOTE | 1u << QELTV_WAKE_TIMER |
                                 1u << QELTV_WAKE_CEC | 1u << QELTV_WAKE_PANEL;

/** Size of the data of a reason. */
constexpr size_t kDataSize = 4;

}  // namespace

Power::Power(Store& store, Notifier& notifier)
        : mStore(store), mSettings(store), mNotifier(notifier) {
    // The process starts when the mains come on.
    mWake = {QELTV_WAKE_MAINS, {}};
    mDown = {static_cast<uint32_t>(mSettings.number("power.down", QELTV_DOWN_UNKNOWN)),
             mSettings.bytes("power.down.data")};
    mSetup = static_cast<uint32_t>(mSettings.number("power.setup", kFirstSetup));
}

void Power::notify(QELTV_POWER_EVENT event, uint32_t first, uint32_t second) {
    mNotifier.notify(&Notifier::Callback::a_hidl_x_pcl_nfy_fct, static_cast<uint32_t>(event),
                     uint64_t{0}, first, second);
}

Power::Reason Power::wakeReason() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mWake;
}

Power::Reason Power::downReason() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mDown;
}

Code Power::setReason(const char* key, uint32_t limit, Reason& current, uint32_t reason,
                      const std::vector<uint8_t>& data) {
    if (reason >= limit || (!data.empty() && data.size() != kDataSize)) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        if (key != nullptr) {
            Store::Transaction transaction(mStore);
            mSettings.set(key, int64_t{reason});
            mSettings.set(std::string(key) + ".data", data);
            transaction.commit();
        }
        current = {reason, data};
        return kOk;
    });
}

Code Power::setWakeReason(uint32_t reason, const std::vector<uint8_t>& data) {
    // Holds for this run only: the next one has a reason of its own.
    return setReason(nullptr, QELTV_WAKE_REASONS, mWake, reason, data);
}

Code Power::setDownReason(uint32_t reason, const std::vector<uint8_t>& data) {
    return setReason("power.down", QELTV_DOWN_REASONS, mDown, reason, data);
}

bool Power::standby() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mStandby;
}

void Power::addListener(std::function<void(bool)> listener) {
    mListeners.push_back(std::move(listener));
}

void Power::changed(bool standby) const {
    callAll("following the power", mListeners, standby);
}

Code Power::powerDown(QELTV_POWER_EVENT how) {
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (mStandby) return kRefused;
        mStandby = true;
        notify(how, mDown.reason);
    }
    changed(true);
    return kOk;
}

Code Power::requestPowerDown() {
    std::lock_guard<std::mutex> guard(mLock);
    if (mStandby) return kRefused;
    notify(QELTV_POWER_DOWN_REQUESTED, mDown.reason);
    return kOk;
}

Code Power::wake(uint32_t reason, IrKey key) {
    if (reason >= QELTV_WAKE_REASONS) return kBadValue;
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (!mStandby || (mSetup & 1u << reason) == 0) return kRefused;
        mStandby = false;
        mWake = {reason, {}};
        mKey = key;
        notify(QELTV_POWER_WAKE, reason);
    }
    changed(false);
    return kOk;
}

Power::IrKey Power::wakeKey() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mKey;
}

uint32_t Power::wakeSetup() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mSetup;
}

Code Power::setWakeSetup(uint32_t setup) {
    if ((setup & ~QELTV_WAKE_SETUP_MASK) != 0) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        mSettings.set("power.setup", int64_t{setup});
        mSetup = setup;
        return kOk;
    });
}

Result<uint32_t> Power::gpio(uint32_t line, uint32_t what) const {
    if (line >= QELTV_GPIO_LINES) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    switch (what) {
        case QELTV_GPIO_LEVEL:
            return uint32_t{mLevels[line]};
        case QELTV_GPIO_DIRECTION:
            return uint32_t{line >= QELTV_GPIO_OUTPUTS};
        case QELTV_GPIO_MONITORED:
            return uint32_t{mMonitored[line]};
        default:
            return kBadValue;
    }
}

Code Power::setGpio(uint32_t line, uint32_t level) {
    if (line >= QELTV_GPIO_LINES) return kNotFound;
    if (level > 1) return kBadValue;
    if (line < QELTV_GPIO_OUTPUTS) return kRefused;
    std::lock_guard<std::mutex> guard(mLock);
    setLine(line, level != 0);
    return kOk;
}

Code Power::monitorGpio(uint32_t line, bool on) {
    if (line >= QELTV_GPIO_LINES) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    mMonitored[line] = on;
    return kOk;
}

void Power::driveGpio(uint32_t line, bool level) {
    if (line >= QELTV_GPIO_OUTPUTS) return;
    std::lock_guard<std::mutex> guard(mLock);
    setLine(line, level);
}

void Power::setLine(uint32_t line, bool level) {
    if (mLevels[line] == level) return;
    mLevels[line] = level;
    if (mMonitored[line]) notify(QELTV_POWER_GPIO, line, level);
}

}  // namespace qeltvd
