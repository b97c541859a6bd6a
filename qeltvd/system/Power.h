#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "Code.h"
#include "Notifier.h"
#include "Result.h"
#include "Settings.h"
#include "layouts/presentation.h"

namespace qeltvd {

/**
 * Power control: why the set woke up and powered down, the wake-up setup, GPIO lines. Power-down
 * and suspend leave the process alive, in standby. Reasons and setup are kept; GPIO lines are not.
 */
class Power {
  public:
    /** A reason with the one word of data that it may carry. */
    struct Reason {
        uint32_t reason;
        std::vector<uint8_t> data;
    };
    struct IrKey {
        uint32_t protocol;
        uint32_t key;
    };

    /** @throws StoreError */
    Power(Store& store, Notifier& notifier);

    /** Called after it has gone to standby or come back, without a lock; before serving only. */
    void addListener(std::function<void(bool standby)> listener);

    Reason wakeReason() const;
    Reason downReason() const;
    Code setWakeReason(uint32_t reason, const std::vector<uint8_t>& data);
    Code setDownReason(uint32_t reason, const std::vector<uint8_t>& data);

    bool standby() const;
    /** kRefused when it is in standby already. */
    Code powerDown(QELTV_POWER_EVENT how);
    Code requestPowerDown();
    /** kRefused when it is awake, or when the setup does not allow the reason. */
    Code wake(uint32_t reason, IrKey key);
    IrKey wakeKey() const;

    uint32_t wakeSetup() const;
    Code setWakeSetup(uint32_t setup);

    Result<uint32_t> gpio(uint32_t line, uint32_t what) const;
    Code setGpio(uint32_t line, uint32_t level);
    Code monitorGpio(uint32_t line, bool on);
    /** What happens on a line from outside. */
    void driveGpio(uint32_t line, bool level);

  private:
    void notify(QELTV_POWER_EVENT event, uint32_t first, uint32_t second = 0);
    Code setReason(const char* key, uint32_t limit, Reason& current, uint32_t reason,
                   const std::vector<uint8_t>& data);
    void setLine(uint32_t line, bool level);
    void changed(bool standby) const;

    Store& mStore;
    Settings mSettings;
    Notifier& mNotifier;
    std::vector<std::function<void(bool)>> mListeners;
    mutable std::mutex mLock;
    // Guarded by mLock.
    Reason mWake;
    Reason mDown;
    uint32_t mSetup;
    IrKey mKey{0, 0};
    bool mStandby = false;
    std::array<bool, QELTV_GPIO_LINES> mLevels{};
    std::array<bool, QELTV_GPIO_LINES> mMonitored{};
};

}  // namespace qeltvd
