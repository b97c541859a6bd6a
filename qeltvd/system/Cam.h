#pragma once

#include <vendor/qelnova/tv/qeltvapi/1.0/types.h>

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Code.h"
#include "Notifier.h"
#include "Result.h"
#include "Settings.h"
#include "Store.h"
#include "layouts/ci.h"

namespace qeltvd {

/**
 * The Common Interface slot with a CAM in it: its menu, its PIN and the key data of the host. PIN
 * and keys are kept in the store and never logged.
 */
class Cam {
  public:
    using Enquiry = ::vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_MMI_ENQ_T;
    using Menu = ::vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_MMI_MENU_T;
    using Units = android::hardware::hidl_vec<uint16_t>;
    using Bytes = std::vector<uint8_t>;

    static constexpr size_t kRegistrationLimit = 64;
    static constexpr size_t kPinLimit = 8;
    static constexpr uint32_t kVirtualChannels = 2;

    /** @param device directory with the key data of the device. @throws StoreError */
    Cam(Store& store, Settings& settings, Notifier& notifier, const std::string& device);

    /** Registers a process for notifications, each with its two values. Returns the registration.
     */
    Result<int32_t> add(uint32_t first, uint32_t second, int pid);
    Code remove(int32_t registration);

    /** What a get type but the PIN answers, or nothing for one that is not supported. */
    std::optional<Bytes> get(int32_t type) const;
    /** The PIN that the television holds, and whether the CAM takes it. */
    std::u16string pin(bool* valid) const;
    Code set(int32_t type, uint32_t value, const uint8_t* data, size_t size);
    Code answerEnquiry(uint32_t kind, uint32_t dialogue, const std::u16string& text);

    Result<uint32_t> virtualChannel(uint32_t index) const;
    const Bytes& hostId() const { return mHostId; }

    Code writeKey(uint32_t kind, const Bytes& data);
    Code readKey(uint32_t kind, const std::string& path);
    Code readDeviceKey(uint32_t kind);
    Code activateKeys();
    Code eraseKeys();
    Result<bool> keyExists(uint32_t kind) const;
    Result<std::u16string> describeKeys() const;

  private:
    enum class Screen {
        kNone,
        kMain,
        kSubscription,
        kInformation,
        kMessage,
        kOldPin,
        kNewPin,
        kNewPinAgain,
        kParental,
        kParentalPin,
    };

    Code answerMenu(uint32_t dialogue, uint32_t choice);
    void show(Screen screen);
    void showMenu(Screen screen, int32_t cond, const std::u16string& title,
                  const std::u16string& subTitle, const std::vector<std::u16string>& choices);
    void showEnquiry(Screen screen, const std::u16string& text);
    void showMessage(const std::u16string& text);
    void closeDialogue();
    bool ready() const { return mInserted && mPowered; }
    Code setPin(const std::string& digits);
    void notify(int32_t cond, const Bytes& data);
    void notifySlot(int32_t cond);
    /** Calls every registered process's object, with the values that it registered. */
    template <class F>
    void notifyAll(const F& call);

    struct Registration {
        int32_t handle;
        uint64_t first;
        uint64_t second;
        int pid;
    };

    Store& mStore;
    Settings& mSettings;
    Notifier& mNotifier;
    const std::string mDevice;
    Bytes mHostId;

    mutable std::mutex mLock;
    // Guarded by mLock.
    std::vector<Registration> mRegistrations;
    int32_t mNextRegistration = 1;
    bool mInserted = true;
    bool mPowered;
    Screen mScreen = Screen::kNone;
    uint32_t mDialogue = 0;
    std::u16string mNewPin;
    int32_t mWantedAge = 0;
    int mWrongPins = 0;
};

}  // namespace qeltvd
