#include <hidl/Static.h>

#include <hwbinder/Binder.h>

#include <android/hidl/base/1.0/IBase.h>

namespace android {
namespace hardware {
namespace details {

// Constructors of other libraries insert into the constructor maps before this library's own
// dynamic initialisers need have run, so those are built on first use; the maps below are first
// used when an object is sent out.
DoNotDestruct<BnMap> gBnMap;
DoNotDestruct<ServicePrioMap> gServicePrioMap;
DoNotDestruct<ServiceSidMap> gServiceSidMap;

BnConstructorMap& getBnConstructorMap() {
    static DoNotDestruct<BnConstructorMap> map;
    return map.get();
}

BsConstructorMap& getBsConstructorMap() {
    static DoNotDestruct<BsConstructorMap> map;
    return map.get();
}

}  // namespace details
}  // namespace hardware
}  // namespace android
