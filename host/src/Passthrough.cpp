#define LOG_TAG "hidlhost"

#include <dlfcn.h>
#include <log/log.h>

#include <android/hidl/base/1.0/IBase.h>

#include "Services.h"

using ::android::sp;
using ::android::hidl::base::V1_0::IBase;

namespace hidlhost {

// An implementation's function returns its own interface, whose begin is an IBase.
__attribute__((no_sanitize("function"))) sp<IBase> loadImplementation(const std::string& interface,
                                                                      const std::string& instance) {
    const size_t colons = interface.find("::");
    if (colons == std::string::npos) return nullptr;
    const std::string library = interface.substr(0, colons) + "-impl.so";
    const std::string symbol = "HIDL_FETCH_" + interface.substr(colons + 2);
    // Stays loaded: its objects may outlive every reference that is known here.
    void* handle = dlopen(library.c_str(), RTLD_LAZY);
    if (handle == nullptr) {
        ALOGE("no implementation of %s: %s", interface.c_str(), dlerror());
        return nullptr;
    }
    auto* fetch = reinterpret_cast<IBase* (*)(const char*)>(dlsym(handle, symbol.c_str()));
    if (fetch == nullptr) {
        ALOGE("no implementation of %s: %s", interface.c_str(), dlerror());
        return nullptr;
    }
    return fetch(instance.c_str());
}

}  // namespace hidlhost
