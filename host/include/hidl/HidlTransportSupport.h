#pragma once

#include <cstddef>
#include <cstdint>

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlBinderSupport.h>
#include <hidl/HidlSupport.h>
#include <hidl/HidlTransportUtils.h>
#include <hidl/ServiceManagement.h>
#include <hidl/Status.h>
#include <hwbinder/IInterface.h>
#include <hwbinder/ProcessState.h>

namespace android {
namespace hardware {

/**
 * Sets how many incoming calls run at a time, before the first object is registered or sent out.
 * A thread that will join counts among them. Without this it is one.
 */
void configureRpcThreadpool(size_t maxThreads, bool callerWillJoin);

/** Gives the calling thread to incoming calls; does not return. */
void joinRpcThreadpool();

/** A wish for the scheduling of the threads that serve the object; before it is sent out. */
bool setMinSchedulerPolicy(const sp<::android::hidl::base::V1_0::IBase>& service, int policy,
                           int priority);
bool setRequestingSid(const sp<::android::hidl::base::V1_0::IBase>& service, bool requesting);

/** Whether both are the same object, possibly through two proxies. */
bool interfacesEqual(const sp<::android::hidl::base::V1_0::IBase>& left,
                     const sp<::android::hidl::base::V1_0::IBase>& right);

namespace details {

/** The process id if it is known, else -1. */
int32_t getPidIfSharable();

template <typename IChild, typename IParent, typename BpChild>
Return<sp<IChild>> castInterface(sp<IParent> parent, const char* childIndicator, bool emitError) {
    if (parent == nullptr) return sp<IChild>();
    Return<bool> castable = canCastInterface(parent.get(), childIndicator, emitError);
    if (!castable.isOk()) {
        if (emitError) {
            return Status::fromExceptionCode(Status::EX_TRANSACTION_FAILED,
                                             castable.description().c_str());
        }
        return sp<IChild>();
    }
    if (!castable) return sp<IChild>();
    if (parent->isRemote()) return sp<IChild>(new BpChild(getOrCreateCachedBinder(parent.get())));
    return sp<IChild>(static_cast<IChild*>(parent.get()));
}

template <typename BpType, typename IType = typename BpType::Pure>
sp<IType> getServiceInternal(const std::string& instance, bool retry, bool getStub) {
    using ::android::hidl::base::V1_0::IBase;
    sp<IBase> base = getRawServiceInternal(IType::descriptor, instance, retry, getStub);
    if (base == nullptr) return nullptr;
    // An object that answers no more is as good as none.
    Return<sp<IType>> cast = castInterface<IType, IBase, BpType>(base, IType::descriptor, true);
    return cast.isOk() ? static_cast<sp<IType>>(cast) : nullptr;
}

}  // namespace details
}  // namespace hardware
}  // namespace android
