#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "Notifier.h"
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
    int32_t setWakeReason(uint32_t reason, const std::vector<uint8_t>& data);
    int32_t setDownReason(uint32_t reason, const std::vector<uint8_t>& data);

    bool standby() const;
    /** kRefused when it is in standby already. */
    int32_t powerDown(QELTV_POWER_EVENT how);
    int32_t requestPowerDown();
    /** kRefused when it is awake, or when the setup does not allow the reason. */
    int32_t wake(uint32_t reason, IrKey key);
    IrKey wakeKey() const;

    uint32_t wakeSetup() const;
    int32_t setWakeSetup(uint32_t setup);

    int32_t gpio(uint32_t line, uint32_t what, uint32_t* value) const;
    int32_t setGpio(uint32_t line, uint32_t level);
    int32_t monitorGpio(uint32_t line, bool on);
    /** What happens on a line from outside. */
    void driveGpio(uint32_t line, bool level);

  private:
    void tell(QELTV_POWER_EVENT event, uint32_t first, uint32_t second = 0);
    int32_t setReason(const char* key, uint32_t limit, Reason& current, uint32_t reason,
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
