#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <vector>

#include "Notifier.h"
#include "Settings.h"
#include "layouts/presentation.h"

namespace qeltvd {

/**
 * Picture and screen modes, overscan and video values, all of which are kept; the overscan only
 * when it is told so. Video notifications tell every change.
 */
class Picture {
  public:
    using Overscan = std::array<int32_t, 4>;

    /** @throws StoreError */
    Picture(Store& store, Notifier& notifier);

    static const std::vector<uint16_t>& pictureModes();
    uint16_t pictureMode() const;
    int32_t setPictureMode(int32_t mode);

    static constexpr uint16_t kPixelByPixel = 7;
    /** Pixel by pixel is for inputs only. */
    static std::vector<uint16_t> screenModes(bool input);
    /** The mode for the tuner or for inputs; each has its own. */
    uint16_t screenMode(bool input) const;
    int32_t setScreenMode(bool input, int32_t mode);

    Overscan overscan() const;
    int32_t setOverscan(const Overscan& overscan);
    int32_t keepOverscan();

    /** A QELTV_VIDEO_VALUE that can be set. */
    int32_t value(int32_t id, uint32_t* value) const;
    int32_t setValue(int32_t id, int32_t value);
    std::vector<uint8_t> userData() const;
    int32_t setUserData(const std::vector<uint8_t>& data);

    /** Tells a video event. */
    void tell(QELTV_VIDEO_EVENT event, const std::vector<uint64_t>& values);

  private:
    Store& mStore;
    Settings mSettings;
    Notifier& mNotifier;
    mutable std::mutex mLock;
    // Guarded by mLock.
    uint16_t mPictureMode;
    std::array<uint16_t, 2> mScreenModes;
    Overscan mOverscan;
    std::vector<int32_t> mValues;
    std::vector<uint8_t> mUserData;
};

}  // namespace qeltvd
