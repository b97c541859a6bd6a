#pragma once

#include <functional>
#include <new>
#include <string>
#include <utility>

#include <hidl/ConcurrentMap.h>
#include <hidl/HidlSupport.h>
#include <utils/RefBase.h>

namespace android {
namespace hardware {

class IBinder;
class BHwBinder;

namespace details {

/**
 * Builds its object on first use and never destroys it, because destructors of other libraries use
 * it while the process ends, in an order that nobody controls.
 */
template <typename T>
class DoNotDestruct {
  public:
    DoNotDestruct() { new (mStorage) T(); }
    DoNotDestruct(const DoNotDestruct&) = delete;
    DoNotDestruct& operator=(const DoNotDestruct&) = delete;

    T& get() { return *std::launder(reinterpret_cast<T*>(mStorage)); }
    T& operator*() { return get(); }
    T* operator->() { return &get(); }

  private:
    alignas(T) unsigned char mStorage[sizeof(T)];
};

struct SchedPrio {
    int sched_policy;
    int prio;
};

using BnMap = ConcurrentMap<const ::android::hidl::base::V1_0::IBase*, wp<BHwBinder>>;
using ServicePrioMap = ConcurrentMap<wp<::android::hidl::base::V1_0::IBase>, SchedPrio>;
using ServiceSidMap = ConcurrentMap<wp<::android::hidl::base::V1_0::IBase>, bool>;

/** The stub of each local object that has been sent out and still lives. */
extern DoNotDestruct<BnMap> gBnMap;

/** Wishes for the thread that serves an object; set before the object is first sent out. */
extern DoNotDestruct<ServicePrioMap> gServicePrioMap;
extern DoNotDestruct<ServiceSidMap> gServiceSidMap;

using BnConstructorMap = ConcurrentMap<std::string, std::function<sp<IBinder>(void*)>>;
using BsConstructorMap =
        ConcurrentMap<std::string, std::function<sp<::android::hidl::base::V1_0::IBase>(void*)>>;

/**
 * How to build the stub and the pass-through wrapper of an interface. Generated libraries fill them
 * while they are loaded and erase their entries while they are unloaded.
 */
BnConstructorMap& getBnConstructorMap();
BsConstructorMap& getBsConstructorMap();

}  // namespace details
}  // namespace hardware
}  // namespace android
