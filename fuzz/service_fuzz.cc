// Bytes that arrive at a service: any bytes as a call of any method of the fifteen interfaces.

#include <hidl/Static.h>
#include <qeltvapi/service/interfaces.h>

#include <map>
#include <string>

#include "message.h"

namespace {

using namespace qeltvapi::service;

template <class I>
std::pair<std::string, android::sp<android::hardware::IBinder>> stub() {
    const auto make = android::hardware::details::getBnConstructorMap().get(I::descriptor, nullptr);
    return {I::descriptor, make(static_cast<I*>(new Default<I>(0)))};
}

/** The stubs of all interfaces, by the name in a call's token. */
const std::map<std::string, android::sp<android::hardware::IBinder>>& all() {
#define STUB(interface) stub<interface>(),
    static const std::map<std::string, android::sp<android::hardware::IBinder>> sStubs = {
            QELTVAPI_SERVICE_INTERFACES(STUB)};
#undef STUB
    return sStubs;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    hidlhost::MessageHeader header;
    android::hardware::Parcel call;
    if (!fuzz::parse(data, size, &header, &call)) return 0;
    const auto found = all().find(hidlhost::Codec::interfaceOf(call));
    if (found == all().end()) return 0;
    android::hardware::Parcel reply;
    found->second->localBinder()->onTransact(header.code, call, &reply, 0,
                                             [](android::hardware::Parcel&) {});
    return 0;
}
