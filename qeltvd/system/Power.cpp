#define LOG_TAG "qeltvd"

#include "Power.h"

#include "Guarded.h"
#include "Stored.h"
#include "layouts/codes.h"

namespace qeltvd {

using namespace layouts;

namespace {

/** Remote control, timer, CEC and the front panel. */
constexpr uint32_t kFirstSetup =
        1u << kWakeRemote | 1u << kWakeTimer | 1u << kWakeCec | 1u << kWakePanel;

/** Size of the data of a reason. */
constexpr size_t kDataSize = 4;

}  // namespace

Power::Power(Store& store, Notifier& notifier)
        : mStore(store), mSettings(store), mNotifier(notifier) {
    // The process starts when the mains come on.
    mWake = {kWakeMains, {}};
    mDown = {static_cast<uint32_t>(mSettings.number("power.down", kDownUnknown)),
             mSettings.bytes("power.down.data")};
    mSetup = static_cast<uint32_t>(mSettings.number("power.setup", kFirstSetup));
}

void Power::tell(PowerEvent event, uint32_t first, uint32_t second) {
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

int32_t Power::setReason(const char* key, uint32_t limit, Reason& current, uint32_t reason,
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

int32_t Power::setWakeReason(uint32_t reason, const std::vector<uint8_t>& data) {
    // Of this run only: the next one has a reason of its own.
    return setReason(nullptr, kWakeReasons, mWake, reason, data);
}

int32_t Power::setDownReason(uint32_t reason, const std::vector<uint8_t>& data) {
    return setReason("power.down", kDownReasons, mDown, reason, data);
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

int32_t Power::powerDown(PowerEvent how) {
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (mStandby) return kRefused;
        mStandby = true;
        tell(how, mDown.reason);
    }
    changed(true);
    return kOk;
}

int32_t Power::requestPowerDown() {
    std::lock_guard<std::mutex> guard(mLock);
    if (mStandby) return kRefused;
    tell(kPowerDownRequested, mDown.reason);
    return kOk;
}

int32_t Power::wake(uint32_t reason, IrKey key) {
    if (reason >= kWakeReasons) return kBadValue;
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (!mStandby || (mSetup & 1u << reason) == 0) return kRefused;
        mStandby = false;
        mWake = {reason, {}};
        mKey = key;
        tell(kPowerWake, reason);
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

int32_t Power::setWakeSetup(uint32_t setup) {
    if ((setup & ~kWakeSetupMask) != 0) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        mSettings.set("power.setup", int64_t{setup});
        mSetup = setup;
        return kOk;
    });
}

int32_t Power::gpio(uint32_t line, uint32_t what, uint32_t* value) const {
    if (line >= kGpioLines) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    switch (what) {
        case kGpioLevel:
            *value = mLevels[line];
            return kOk;
        case kGpioDirection:
            *value = line >= kGpioOutputs;
            return kOk;
        case kGpioMonitored:
            *value = mMonitored[line];
            return kOk;
        default:
            return kBadValue;
    }
}

int32_t Power::setGpio(uint32_t line, uint32_t level) {
    if (line >= kGpioLines) return kNotFound;
    if (level > 1) return kBadValue;
    if (line < kGpioOutputs) return kRefused;
    std::lock_guard<std::mutex> guard(mLock);
    setLine(line, level != 0);
    return kOk;
}

int32_t Power::monitorGpio(uint32_t line, bool on) {
    if (line >= kGpioLines) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    mMonitored[line] = on;
    return kOk;
}

void Power::driveGpio(uint32_t line, bool level) {
    if (line >= kGpioOutputs) return;
    std::lock_guard<std::mutex> guard(mLock);
    setLine(line, level);
}

void Power::setLine(uint32_t line, bool level) {
    if (mLevels[line] == level) return;
    mLevels[line] = level;
    if (mMonitored[line]) tell(kPowerGpio, line, level);
}

}  // namespace qeltvd
