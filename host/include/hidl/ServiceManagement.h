#pragma once

#include <string>
#include <vector>

#include <utils/Errors.h>
#include <utils/StrongPointer.h>

namespace android {

namespace hidl {
namespace base {
namespace V1_0 {
struct IBase;
}  // namespace V1_0
}  // namespace base
namespace manager {
namespace V1_0 {
struct IServiceManager;
}  // namespace V1_0
}  // namespace manager
}  // namespace hidl

namespace hardware {

/** The names of this runtime; an object of the calling process. */
sp<::android::hidl::manager::V1_0::IServiceManager> defaultServiceManager();

/** The instances under which somebody serves the interface. */
std::vector<std::string> getAllHalInstanceNames(const std::string& descriptor);

namespace details {

/**
 * The object registered under the names, null at once where there is none. `retry` and `getStub`
 * have no effect: nothing is waited for, and nothing is loaded into the process.
 */
sp<::android::hidl::base::V1_0::IBase> getRawServiceInternal(const std::string& descriptor,
                                                             const std::string& instance,
                                                             bool retry, bool getStub);

/** Registers the object for its interface and all ancestors but IBase, in place of any other. */
status_t registerAsServiceInternal(const sp<::android::hidl::base::V1_0::IBase>& service,
                                   const std::string& name);

}  // namespace details
}  // namespace hardware
}  // namespace android
