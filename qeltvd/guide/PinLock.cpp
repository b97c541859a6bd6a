#define LOG_TAG "qeltvd"

#include "PinLock.h"

#include <log/log.h>
#include <sodium.h>

#include <algorithm>
#include <stdexcept>

#include "Code.h"
#include "Guarded.h"
#include "Stored.h"

namespace qeltvd {

namespace {

constexpr char kHashSetting[] = "pin.hash";
constexpr char kWrongSetting[] = "pin.wrong";

bool wellFormed(const std::string& pin) {
    return pin.size() >= 4 && pin.size() <= 8 &&
           std::all_of(pin.begin(), pin.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string hashOf(const std::string& pin) {
    char hash[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str(hash, pin.data(), pin.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                          crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0) {
        throw StoreError("no memory to hash the PIN");
    }
    return hash;
}

/** What the wrong tries so far cost. */
std::chrono::milliseconds delayAfter(int64_t wrong) {
    const int64_t charged = wrong - QELTV_PIN_FREE_TRIES;
    if (charged <= 0) return std::chrono::milliseconds(0);
    const int64_t doubled = int64_t{1000} << std::min<int64_t>(charged - 1, 30);
    return std::chrono::milliseconds(std::min<int64_t>(doubled, QELTV_PIN_LONGEST_DELAY_MS));
}

}  // namespace

PinLock::PinLock(Store& store, Notifier& notifier) : mSettings(store), mNotifier(notifier) {
    if (sodium_init() < 0) throw std::runtime_error("no randomness for the PIN");
    mHash = mSettings.text(kHashSetting);
    if (mHash.empty()) {
        mHash = hashOf(QELTV_PIN_FACTORY);
        mSettings.set(kHashSetting, mHash);
    }
    mWrong = mSettings.number(kWrongSetting, 0);
    mUnlocked = Alarm::Clock::now() + delayAfter(mWrong);
}

void PinLock::addListener(std::function<void()> listener) {
    mListeners.push_back(std::move(listener));
}

int32_t PinLock::check(const std::string& pin) {
    if (!wellFormed(pin)) return QELTV_PIN_MALFORMED;
    bool right = false;
    {
        // Held while hashing: one try at a time, however many ask at once.
        std::lock_guard<std::mutex> guard(mLock);
        if (delayLeftMs(Alarm::Clock::now()) > 0) {
            notify(QELTV_PIN_EVENT_REFUSED);
            return QELTV_PIN_LOCKED;
        }
        // Counted as wrong before it is judged: a crash in between gives no free try.
        const int32_t counted = stored([&] {
            mSettings.set(kWrongSetting, mWrong + 1);
            return kOk;
        });
        if (counted != kOk) return QELTV_PIN_FAILED;
        right = crypto_pwhash_str_verify(mHash.c_str(), pin.data(), pin.size()) == 0;
        const auto now = Alarm::Clock::now();
        if (right) {
            (void)stored([&] {
                mSettings.set(kWrongSetting, int64_t{0});
                return kOk;
            });
            mWrong = 0;
            mMayChangeUntil = now + std::chrono::minutes(1);
        } else {
            ++mWrong;
            mUnlocked = now + delayAfter(mWrong);
        }
        notify(right ? QELTV_PIN_EVENT_ACCEPTED : QELTV_PIN_EVENT_REJECTED);
    }
    if (!right) return QELTV_PIN_WRONG;
    callAll("following the PIN", mListeners);
    return QELTV_PIN_RIGHT;
}

Code PinLock::change(const std::string& pin) {
    std::lock_guard<std::mutex> guard(mLock);
    if (Alarm::Clock::now() >= mMayChangeUntil) return kRefused;
    if (!wellFormed(pin)) return kBadValue;
    return stored([&] {
        const std::string hash = hashOf(pin);
        mSettings.set(kHashSetting, hash);
        mHash = hash;
        mMayChangeUntil = {};
        notify(QELTV_PIN_EVENT_CHANGED);
        return kOk;
    });
}

Code PinLock::show() {
    std::lock_guard<std::mutex> guard(mLock);
    notify(QELTV_PIN_EVENT_SHOW);
    return kOk;
}

int PinLock::wrongTries() const {
    std::lock_guard<std::mutex> guard(mLock);
    return static_cast<int>(mWrong);
}

int64_t PinLock::delayLeftMs() const {
    std::lock_guard<std::mutex> guard(mLock);
    return delayLeftMs(Alarm::Clock::now());
}

int64_t PinLock::delayLeftMs(Time now) const {
    if (now >= mUnlocked) return 0;
    return std::chrono::ceil<std::chrono::milliseconds>(mUnlocked - now).count();
}

void PinLock::notify(int32_t type) const {
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_pwddlg_callback_fct, type,
                    {mWrong, delayLeftMs(Alarm::Clock::now())});
}

}  // namespace qeltvd
