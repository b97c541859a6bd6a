#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <android/hidl/manager/1.0/IServiceNotification.h>
#include <hwbinder/Binder.h>

#include "Node.h"
#include "Registry.h"

namespace hidlhost {

android::status_t registerService(Node& node, const std::string& interface,
                                  const std::string& instance,
                                  const android::sp<android::hardware::BHwBinder>& service);
void unregisterService(Node& node, const std::string& interface, const std::string& instance);

/** The holder of an object while it is registered. */
std::string registrationHolder(const std::string& interface, const std::string& instance);

/** The local object or a proxy; null where nobody alive is registered. */
android::sp<android::hardware::IBinder> findService(const std::string& interface,
                                                    const std::string& instance);

/** Interface and instance of everything that can be found, the service manager included. */
std::vector<std::pair<std::string, std::string>> listServices();

/** The object that the implementation's library makes; null, with a line in the log, without. */
android::sp<android::hidl::base::V1_0::IBase> loadImplementation(const std::string& interface,
                                                                 const std::string& instance);

/**
 * Calls `found` now and whenever something is registered until it returns true. Logs a line for
 * each second with what it waits for.
 */
void waitForRegistration(const std::string& what, const std::function<bool()>& found);

/** An empty instance name stands for all. */
bool notifyOfRegistrations(
        const std::string& interface, const std::string& instance,
        const android::sp<android::hidl::manager::V1_0::IServiceNotification>& listener);

}  // namespace hidlhost
