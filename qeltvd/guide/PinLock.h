#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "Alarm.h"
#include "Code.h"
#include "Notifier.h"
#include "Settings.h"
#include "layouts/rating.h"

namespace qeltvd {

/**
 * The parental PIN. Only a salted hash of it is kept, made to be slow (Argon2id). Wrong tries are
 * counted over restarts, and delay the next one longer and longer; a restart begins the delay anew.
 */
class PinLock {
  public:
    /** Sets the factory PIN if there is none. @throws StoreError */
    PinLock(Store& store, Notifier& notifier);

    /** Called after each right PIN; before serving only. */
    void addListener(std::function<void()> listener);

    /** A QELTV_PIN_ANSWER. */
    int32_t check(const std::string& pin);
    /** A new PIN, within a minute of a right one. */
    Code change(const std::string& pin);
    /** Asks the applications to show the dialog. */
    Code show();

    int wrongTries() const;
    int64_t delayLeftMs() const;

  private:
    using Time = Alarm::Clock::time_point;
    int64_t delayLeftMs(Time now) const;
    void notify(int32_t type) const;

    Settings mSettings;
    Notifier& mNotifier;
    std::vector<std::function<void()>> mListeners;

    mutable std::mutex mLock;
    // Guarded by mLock.
    std::string mHash;
    int64_t mWrong = 0;
    Time mUnlocked;
    Time mMayChangeUntil;
};

}  // namespace qeltvd
