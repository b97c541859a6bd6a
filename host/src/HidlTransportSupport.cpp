#define LOG_TAG "hidlhost"

#include <hidl/HidlTransportSupport.h>

#include <hidl/HidlBinderSupport.h>
#include <hidl/HidlPassthroughSupport.h>
#include <hidl/Static.h>
#include <hwbinder/BpHwBinder.h>
#include <log/log.h>
#include <sched.h>
#include <unistd.h>

namespace android {
namespace hardware {

using ::android::hidl::base::V1_0::IBase;

void configureRpcThreadpool(size_t maxThreads, bool callerWillJoin) {
    configureBinderRpcThreadpool(maxThreads, callerWillJoin);
}

void joinRpcThreadpool() {
    joinBinderRpcThreadpool();
}

bool setMinSchedulerPolicy(const sp<IBase>& service, int policy, int priority) {
    if (service == nullptr || service->isRemote()) {
        ALOGE("the scheduling of an object is its own process' business");
        return false;
    }
    switch (policy) {
        case SCHED_NORMAL:
            if (priority < -20 || priority > 19) return false;
            break;
        case SCHED_RR:
        case SCHED_FIFO:
            if (priority < 1 || priority > 99) return false;
            break;
        default:
            return false;
    }
    details::gServicePrioMap->set(service, {policy, priority});
    return true;
}

bool setRequestingSid(const sp<IBase>& service, bool requesting) {
    if (service == nullptr || service->isRemote()) return false;
    details::gServiceSidMap->set(service, bool{requesting});
    return true;
}

bool interfacesEqual(const sp<IBase>& left, const sp<IBase>& right) {
    if (left == nullptr || right == nullptr || !left->isRemote() || !right->isRemote()) {
        return left == right;
    }
    return getOrCreateCachedBinder(left.get()) == getOrCreateCachedBinder(right.get());
}

namespace details {

int32_t getPidIfSharable() {
    return static_cast<int32_t>(getpid());
}

Return<bool> canCastInterface(IBase* interface, const char* castTo, bool emitError) {
    if (interface == nullptr) return false;
    // Everything is an IBase, and asking a dead object would say otherwise.
    if (strcmp(castTo, IBase::descriptor) == 0) return true;
    // Nor need a service be asked for the name under which it was found.
    if (interface->isRemote()) {
        const sp<IBinder> binder = getOrCreateCachedBinder(interface);
        BpHwBinder* proxy = binder == nullptr ? nullptr : binder->remoteBinder();
        if (proxy != nullptr && proxy->isKnownAs(castTo)) return true;
    }
    bool found = false;
    Return<void> asked = interface->interfaceChain([&](const hidl_vec<hidl_string>& descriptors) {
        for (const hidl_string& descriptor : descriptors) {
            if (descriptor == castTo) found = true;
        }
    });
    if (!asked.isOk()) {
        if (!emitError) return false;
        return Status::fromExceptionCode(Status::EX_TRANSACTION_FAILED,
                                         asked.description().c_str());
    }
    return found;
}

std::string getDescriptor(IBase* interface) {
    std::string name;
    if (interface == nullptr) return name;
    Return<void> asked = interface->interfaceDescriptor(
            [&](const hidl_string& descriptor) { name = descriptor; });
    if (!asked.isOk()) {
        ALOGE("interfaceDescriptor: %s", asked.description().c_str());
    }
    return name;
}

sp<IBase> wrapPassthroughInternal(const sp<IBase>& interface) {
    std::string descriptor = getDescriptor(interface.get());
    auto make = getBsConstructorMap().get(descriptor, nullptr);
    if (make == nullptr) {
        ALOGE("nothing in this process can wrap a %s", descriptor.c_str());
        return nullptr;
    }
    return make(static_cast<void*>(interface.get()));
}

}  // namespace details
}  // namespace hardware
}  // namespace android
