#pragma once

#include <string>

#include <hidl/HidlTransportSupport.h>
#include <log/log.h>

namespace android {
namespace hardware {

/**
 * Loads the implementation of an interface into this process and registers it.
 *
 * @tparam ExpectInterface what the implementation must be at least
 * @param name the instance
 * @return OK, or a negative status if there is no implementation, it is none of the expected
 *         interface, or it cannot be registered
 */
template <class Interface, class ExpectInterface = Interface>
[[nodiscard]] status_t registerPassthroughServiceImplementation(
        const std::string& name = "default") {
    const sp<Interface> service = Interface::getService(name, true /* getStub */);
    if (service == nullptr) {
        ALOGE("could not load an implementation of %s/%s", Interface::descriptor, name.c_str());
        return NAME_NOT_FOUND;
    }
    if (service->isRemote()) return INVALID_OPERATION;
    const sp<::android::hidl::base::V1_0::IBase> base = service;
    const sp<ExpectInterface> expected = ExpectInterface::castFrom(base).withDefault(nullptr);
    if (expected == nullptr) {
        ALOGE("the implementation of %s/%s is no %s", Interface::descriptor, name.c_str(),
              ExpectInterface::descriptor);
        return BAD_TYPE;
    }
    const status_t status = service->registerAsService(name);
    if (status != OK) {
        ALOGE("could not register %s/%s: %d", Interface::descriptor, name.c_str(), status);
    }
    return status;
}

/**
 * The whole of a service's main(): loads, registers and serves the implementation. Returns only
 * if that fails.
 *
 * @param maxThreads how many calls run at a time, the calling thread's included
 */
template <class Interface, class ExpectInterface = Interface>
[[nodiscard]] status_t defaultPassthroughServiceImplementation(const std::string& name,
                                                               size_t maxThreads = 1) {
    configureRpcThreadpool(maxThreads, true);
    const status_t status =
            registerPassthroughServiceImplementation<Interface, ExpectInterface>(name);
    if (status != OK) return status;
    joinRpcThreadpool();
    return UNKNOWN_ERROR;
}

template <class Interface, class ExpectInterface = Interface>
[[nodiscard]] status_t defaultPassthroughServiceImplementation(size_t maxThreads = 1) {
    return defaultPassthroughServiceImplementation<Interface, ExpectInterface>("default",
                                                                               maxThreads);
}

}  // namespace hardware
}  // namespace android
