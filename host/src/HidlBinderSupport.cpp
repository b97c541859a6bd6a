#define LOG_TAG "hidlhost"

#include <hidl/HidlBinderSupport.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

#include <hwbinder/IPCThreadState.h>
#include <hwbinder/ProcessState.h>
#include <log/log.h>

namespace android {
namespace hardware {

using ::android::hidl::base::V1_0::IBase;

namespace {

std::atomic<bool> sEnding{false};
// Runs before the destructors of any library.
[[maybe_unused]] const int sNoticesTheEnd = atexit([] { sEnding = true; });

}  // namespace

hidl_binder_death_recipient::hidl_binder_death_recipient(const sp<hidl_death_recipient>& recipient,
                                                         uint64_t cookie, const sp<IBase>& base)
        : mRecipient(recipient), mCookie(cookie), mBase(base) {}

void hidl_binder_death_recipient::binderDied(const wp<IBinder>&) {
    sp<hidl_death_recipient> recipient = mRecipient.promote();
    if (recipient != nullptr) recipient->serviceDied(mCookie, mBase);
}

wp<hidl_death_recipient> hidl_binder_death_recipient::getRecipient() {
    return mRecipient;
}

status_t readFromParcel(Status* status, const Parcel& parcel) {
    int32_t exception;
    status_t error = parcel.readInt32(&exception);
    if (error != OK) {
        status->setFromStatusT(error);
        return error;
    }
    if (exception == Status::EX_NONE) {
        *status = Status();
        return OK;
    }
    const char* message = parcel.readCString();
    if (message == nullptr) {
        status->setFromStatusT(NOT_ENOUGH_DATA);
        return NOT_ENOUGH_DATA;
    }
    status->setException(exception, message);
    return OK;
}

status_t writeToParcel(const Status& status, Parcel* parcel) {
    // A transport failure shows in the status, not in a message.
    if (status.exceptionCode() == Status::EX_TRANSACTION_FAILED) return status.transactionError();
    status_t error = parcel->writeInt32(status.exceptionCode());
    if (error != OK || status.exceptionCode() == Status::EX_NONE) return error;
    return parcel->writeCString(status.exceptionMessage());
}

void details::disown(const void* object, size_t flagOffset) {
    static_assert(sizeof(hidl_string) == 16 && sizeof(hidl_vec<char>) == 16, "wire layout");
    static_assert(sizeof(hidl_handle) == 16, "wire layout");
    auto* bytes = static_cast<uint8_t*>(const_cast<void*>(object));
    bytes[flagOffset] = 0;
}

status_t readEmbeddedFromParcel(const hidl_handle& handle, const Parcel& parcel,
                                size_t parentHandle, size_t parentOffset) {
    details::disown(&handle, details::kOffsetOfOwnsHandle);
    const native_handle_t* read;
    return parcel.readNullableEmbeddedNativeHandle(
            parentHandle, parentOffset + hidl_handle::kOffsetOfNativeHandle, &read);
}

status_t writeEmbeddedToParcel(const hidl_handle& handle, Parcel* parcel, size_t parentHandle,
                               size_t parentOffset) {
    return parcel->writeEmbeddedNativeHandle(handle.getNativeHandle(), parentHandle,
                                             parentOffset + hidl_handle::kOffsetOfNativeHandle);
}

status_t readEmbeddedFromParcel(const hidl_string& string, const Parcel& parcel,
                                size_t parentHandle, size_t parentOffset) {
    details::disown(&string, details::kOffsetOfOwnsBuffer);
    if (string.size() == SIZE_MAX) return BAD_VALUE;
    const void* text;
    status_t status = parcel.readEmbeddedBuffer(string.size() + 1, nullptr, parentHandle,
                                                parentOffset + hidl_string::kOffsetOfBuffer, &text);
    if (status != OK) return status;
    return static_cast<const char*>(text)[string.size()] == '\0' ? OK : BAD_VALUE;
}

status_t writeEmbeddedToParcel(const hidl_string& string, Parcel* parcel, size_t parentHandle,
                               size_t parentOffset) {
    return parcel->writeEmbeddedBuffer(string.c_str(), string.size() + 1, nullptr, parentHandle,
                                       parentOffset + hidl_string::kOffsetOfBuffer);
}

sp<IBinder> getOrCreateCachedBinder(IBase* interface) {
    if (interface->isRemote()) {
        auto* proxy = dynamic_cast<IInterface*>(interface);
        return proxy == nullptr ? nullptr : IInterface::asBinder(proxy);
    }
    std::string descriptor = details::getDescriptor(interface);
    if (descriptor.empty()) {
        ALOGE("an object does not report its interface, so that it cannot be sent");
        return nullptr;
    }
    auto lock = details::gBnMap->lock();
    auto known = details::gBnMap->findLocked(interface);
    if (known != details::gBnMap->end()) {
        sp<BHwBinder> stub = known->second.promote();
        if (stub != nullptr) return stub;
    }
    auto make = details::getBnConstructorMap().get(descriptor, nullptr);
    if (make == nullptr) {
        // Libraries withdraw theirs while the process ends, which is no news to other threads.
        if (!sEnding) ALOGE("nothing in this process can serve a %s", descriptor.c_str());
        return nullptr;
    }
    sp<IBinder> stub = make(static_cast<void*>(interface));
    details::gBnMap->setLocked(interface, static_cast<BHwBinder*>(stub.get()));
    return stub;
}

void configureBinderRpcThreadpool(size_t maxThreads, bool callerWillJoin) {
    status_t status = ProcessState::self()->setThreadPoolConfiguration(maxThreads, callerWillJoin);
    LOG_ALWAYS_FATAL_IF(status != OK, "a thread pool of %zu threads cannot be joined", maxThreads);
}

void joinBinderRpcThreadpool() {
    IPCThreadState::self()->joinThreadPool();
}

}  // namespace hardware
}  // namespace android
