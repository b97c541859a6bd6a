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

/** The names of this runtime; an object of the calling process, which is registered nowhere. */
sp<::android::hidl::manager::V1_0::IServiceManager> defaultServiceManager();

/** The instances under which somebody serves the interface. */
std::vector<std::string> getAllHalInstanceNames(const std::string& descriptor);

namespace details {

/**
 * The object registered under the names.
 *
 * @param retry   whether to wait for a name that QELTV_MANIFEST lists; any other is null at once
 * @param getStub whether to load an implementation into this process instead: the function
 *                HIDL_FETCH_IFoo of package@version-impl.so, null if there is none
 */
sp<::android::hidl::base::V1_0::IBase> getRawServiceInternal(const std::string& descriptor,
                                                             const std::string& instance,
                                                             bool retry, bool getStub);

/** Waits until somebody serves the instance, with a line in the log for each second. */
void waitForHwService(const std::string& interface, const std::string& instanceName);

/** Registers the object for its interface and all ancestors but IBase, in place of any other. */
status_t registerAsServiceInternal(const sp<::android::hidl::base::V1_0::IBase>& service,
                                   const std::string& name);

}  // namespace details
}  // namespace hardware
}  // namespace android
