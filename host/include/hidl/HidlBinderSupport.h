#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <android/hidl/base/1.0/BnHwBase.h>
#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlInternal.h>
#include <hidl/HidlSupport.h>
#include <hidl/HidlTransportUtils.h>
#include <hidl/Static.h>
#include <hidl/Status.h>
#include <hwbinder/Binder.h>
#include <hwbinder/IBinder.h>
#include <hwbinder/Parcel.h>

namespace android {
namespace hardware {

/** Carries a death from the binder to the recipient of the interface. */
struct hidl_binder_death_recipient : IBinder::DeathRecipient {
    hidl_binder_death_recipient(const sp<hidl_death_recipient>& recipient, uint64_t cookie,
                                const sp<::android::hidl::base::V1_0::IBase>& base);
    void binderDied(const wp<IBinder>& who) override;
    wp<hidl_death_recipient> getRecipient();

  private:
    wp<hidl_death_recipient> mRecipient;
    uint64_t mCookie;
    wp<::android::hidl::base::V1_0::IBase> mBase;
};

status_t readFromParcel(Status* status, const Parcel& parcel);
status_t writeToParcel(const Status& status, Parcel* parcel);

// The members of a struct that refer to other buffers. Reading sets their pointers; what stood in
// them, and whether they owned anything, is the sender's business and never looked at.

status_t readEmbeddedFromParcel(const hidl_handle& handle, const Parcel& parcel,
                                size_t parentHandle, size_t parentOffset);
status_t writeEmbeddedToParcel(const hidl_handle& handle, Parcel* parcel, size_t parentHandle,
                               size_t parentOffset);

status_t readEmbeddedFromParcel(const hidl_string& string, const Parcel& parcel,
                                size_t parentHandle, size_t parentOffset);
status_t writeEmbeddedToParcel(const hidl_string& string, Parcel* parcel, size_t parentHandle,
                               size_t parentOffset);

namespace details {
/** Clears the flag by which a string, vector or handle owns its buffer. */
void disown(const void* object, size_t flagOffset);
constexpr size_t kOffsetOfOwnsBuffer = 12;
constexpr size_t kOffsetOfOwnsHandle = 8;
}  // namespace details

template <typename T>
status_t readEmbeddedFromParcel(const hidl_vec<T>& vec, const Parcel& parcel, size_t parentHandle,
                                size_t parentOffset, size_t* handle) {
    if (vec.size() > SIZE_MAX / sizeof(T)) return BAD_VALUE;
    details::disown(&vec, details::kOffsetOfOwnsBuffer);
    const void* buffer;
    return parcel.readNullableEmbeddedBuffer(vec.size() * sizeof(T), handle, parentHandle,
                                             parentOffset + hidl_vec<T>::kOffsetOfBuffer, &buffer);
}

template <typename T>
status_t writeEmbeddedToParcel(const hidl_vec<T>& vec, Parcel* parcel, size_t parentHandle,
                               size_t parentOffset, size_t* handle) {
    return parcel->writeEmbeddedBuffer(vec.data(), vec.size() * sizeof(T), handle, parentHandle,
                                       parentOffset + hidl_vec<T>::kOffsetOfBuffer);
}

/** The stub of a local object, made if there is none; the binder of a remote one. */
sp<IBinder> getOrCreateCachedBinder(::android::hidl::base::V1_0::IBase* interface);

/** The binder behind an interface, null for null. */
template <typename IType>
sp<IBinder> toBinder(sp<IType> interface) {
    return interface == nullptr ? nullptr : getOrCreateCachedBinder(interface.get());
}

/** The very object if it is local and of the type, else a proxy. */
template <typename IType, typename ProxyType, typename StubType>
sp<IType> fromBinder(const sp<IBinder>& binder) {
    using ::android::hidl::base::V1_0::BnHwBase;
    using ::android::hidl::base::V1_0::IBase;
    if (binder == nullptr) return nullptr;
    if (binder->localBinder() == nullptr) return new ProxyType(binder);
    auto* stub = dynamic_cast<BnHwBase*>(binder.get());
    if (stub == nullptr) return nullptr;
    sp<IBase> base = stub->getImpl();
    if (!details::canCastInterface(base.get(), IType::descriptor)) return nullptr;
    return static_cast<StubType*>(stub)->getImpl();
}

void configureBinderRpcThreadpool(size_t maxThreads, bool callerWillJoin);
void joinBinderRpcThreadpool();

}  // namespace hardware
}  // namespace android
