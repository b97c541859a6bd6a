#pragma once

#include <cstddef>
#include <cstdint>

#include <utils/Errors.h>

namespace android {
namespace hardware {
class Parcel;
}
}  // namespace android

namespace hidlhost {

/** One line for each call, where QELTV_TRACE asks for it. */
class Trace {
  public:
    static bool enabled() { return sEnabled; }

    /** Starts the clock if the interface is to be traced. */
    Trace(bool incoming, const android::hardware::Parcel& arguments, uint32_t code, bool oneway);
    void finish(const android::hardware::Parcel* result, android::status_t status);

  private:
    static const bool sEnabled;

    bool mWanted = false;
    bool mIncoming;
    bool mOneway;
    uint32_t mCode;
    char mInterface[96];
    size_t mArgumentBytes = 0;
    uint64_t mStart = 0;
};

}  // namespace hidlhost
