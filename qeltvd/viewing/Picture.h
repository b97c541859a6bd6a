#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <vector>

#include "Code.h"
#include "Notifier.h"
#include "Settings.h"
#include "StoredValues.h"
#include "layouts/presentation.h"

namespace qeltvd {

/**
 * Picture and screen modes, overscan and video values, all of which are kept; the overscan only
 * when keepOverscan() is called. Every change is notified.
 */
class Picture {
  public:
    using Overscan = std::array<int32_t, 4>;

    /** @throws StoreError */
    Picture(Store& store, Notifier& notifier);

    static const std::vector<uint16_t>& pictureModes();
    uint16_t pictureMode() const;
    [[nodiscard]] Code setPictureMode(int32_t mode);

    static constexpr uint16_t kPixelByPixel = 7;
    /** Pixel by pixel is for inputs only. */
    static std::vector<uint16_t> screenModes(bool input);
    /** The mode for the tuner or for inputs; each has its own. */
    uint16_t screenMode(bool input) const;
    [[nodiscard]] Code setScreenMode(bool input, int32_t mode);

    Overscan overscan() const;
    [[nodiscard]] Code setOverscan(const Overscan& overscan);
    [[nodiscard]] Code keepOverscan();

    /** A QELTV_VIDEO_VALUE that can be set. */
    [[nodiscard]] Code value(int32_t id, uint32_t* value) const;
    [[nodiscard]] Code setValue(int32_t id, int32_t value);
    std::vector<uint8_t> userData() const;
    [[nodiscard]] Code setUserData(const std::vector<uint8_t>& data);

    /** Sends a video notification. */
    void notify(QELTV_VIDEO_EVENT event, const std::vector<uint64_t>& values);

  private:
    Store& mStore;
    Settings mSettings;
    Notifier& mNotifier;
    mutable std::mutex mLock;
    // Guarded by mLock.
    uint16_t mPictureMode;
    std::array<uint16_t, 2> mScreenModes;
    Overscan mOverscan;
    StoredValues mValues;
    std::vector<uint8_t> mUserData;
};

}  // namespace qeltvd
