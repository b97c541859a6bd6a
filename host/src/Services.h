#pragma once

#include <string>

#include <android/hidl/manager/1.0/IServiceNotification.h>
#include <hwbinder/Binder.h>

#include "Node.h"
#include "Registry.h"

namespace hidlhost {

android::status_t registerService(Node& node, const std::string& interface,
                                  const std::string& instance,
                                  const android::sp<android::hardware::BHwBinder>& service);
void unregisterService(Node& node, const std::string& interface, const std::string& instance);

/** What holds an object while it is registered. */
std::string registrationHolder(const std::string& interface, const std::string& instance);

/** The local object or a proxy; null where nobody alive is registered. */
android::sp<android::hardware::IBinder> findService(const std::string& interface,
                                                    const std::string& instance);

/** An empty instance name stands for all. */
bool notifyOfRegistrations(
        const std::string& interface, const std::string& instance,
        const android::sp<android::hidl::manager::V1_0::IServiceNotification>& listener);

}  // namespace hidlhost
