// What arrives at the callback object: any bytes as any notification, with every slot taken that
// looks at more than numbers.

#include <hidl/Static.h>

#include <cstring>

#include "QelTvApiCallbackImpl.h"
#include "message.h"

namespace {

using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCallback;

volatile size_t sSeen = 0;

void look(const char* text) {
    if (text != nullptr) sSeen = sSeen + strlen(text);
}

android::sp<android::hardware::IBinder> stub() {
    QelTvApiCallbackImpl::pf_config_update_nfy_fct.set(
            [](int32_t, uintptr_t, uintptr_t, const char* name, uintptr_t, uintptr_t) {
                look(name);
                return 0;
            });
    QelTvApiCallbackImpl::pf_mheg5_launch_hbbtv_nfy_cb.set(
            [](const char* location, uintptr_t, int32_t) {
                look(location);
                return 0;
            });
    QelTvApiCallbackImpl::iom_notify_cb.set(
            [](uintptr_t, uintptr_t, const void* data, uint32_t size) {
                for (uint32_t i = 0; i < size; ++i) {
                    sSeen = sSeen + static_cast<const unsigned char*>(data)[i];
                }
                return 0;
            });
    QelTvApiCallbackImpl::pf_ci_cb.set([](uint32_t, uint32_t, int32_t, const void*) { return 0; });
    const auto make = android::hardware::details::getBnConstructorMap().get(
            IQelTvApiCallback::descriptor, nullptr);
    return make(static_cast<IQelTvApiCallback*>(new QelTvApiCallbackImpl));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const android::sp<android::hardware::IBinder> sStub = stub();
    hidlhost::MessageHeader header;
    android::hardware::Parcel call;
    if (!fuzz::parse(data, size, &header, &call)) return 0;
    android::hardware::Parcel reply;
    sStub->localBinder()->onTransact(header.code, call, &reply, 0,
                                     [](android::hardware::Parcel&) {});
    return 0;
}
