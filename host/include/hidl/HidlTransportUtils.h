#pragma once

#include <string>

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/Status.h>

namespace android {
namespace hardware {
namespace details {

/** Whether the object implements the interface of that name. A remote one is asked. */
Return<bool> canCastInterface(::android::hidl::base::V1_0::IBase* interface, const char* castTo,
                              bool emitError = false);

/** The name of the object's interface; empty when it does not answer. */
std::string getDescriptor(::android::hidl::base::V1_0::IBase* interface);

}  // namespace details
}  // namespace hardware
}  // namespace android
