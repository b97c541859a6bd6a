#pragma once

#include <type_traits>

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlInternal.h>

namespace android {
namespace hardware {
namespace details {

sp<::android::hidl::base::V1_0::IBase> wrapPassthroughInternal(
        const sp<::android::hidl::base::V1_0::IBase>& interface);

/** Gives a local object the behaviour of a remote one; leaves a remote one as it is. */
template <typename IType,
          typename = std::enable_if_t<std::is_same<i_tag, typename IType::_hidl_tag>::value>>
sp<IType> wrapPassthrough(sp<IType> interface) {
    if (interface == nullptr || interface->isRemote()) return interface;
    sp<::android::hidl::base::V1_0::IBase> wrapped = wrapPassthroughInternal(interface);
    return static_cast<IType*>(wrapped.get());
}

}  // namespace details
}  // namespace hardware
}  // namespace android
