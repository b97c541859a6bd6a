// The interfaces as they are found.

#include <hidl/HidlSupport.h>

#include "Run.h"

namespace conformance {
namespace {

using android::OK;
using android::hardware::Parcel;
using transactions::Kind;
using transactions::Type;

constexpr char kBase[] = "android.hidl.base@1.0::IBase";
constexpr uint32_t kChain = 0x0f43484e;
constexpr uint32_t kDescriptor = 0x0f445343;

/** Calls a method that all interfaces have; null if it is not answered with such a value. */
Json askBase(Service& service, const Target& target, uint32_t code, const Type& type) {
    Parcel reply;
    int32_t exception = 0;
    if (service.transact(target, kBase, code, nullptr, &reply) != OK ||
        reply.readInt32(&exception) != OK || exception != 0) {
        return nullptr;
    }
    try {
        return transactions::read({{"value", &type}}, reply)["value"];
    } catch (const transactions::Malformed&) {
        return nullptr;
    }
}

}  // namespace

void checkInterfaces(Run& run) {
    static const Type kText{Kind::kString, sizeof(android::hardware::hidl_string)};
    static const Type kTexts{Kind::kVector, sizeof(android::hardware::hidl_vec<uint8_t>), &kText};

    for (const Target& target : run.service().targets()) {
        Check& registered = run.check("interfaces.registered");
        registered.examine();
        if (target.object == nullptr) {
            registered.fail(target.interface->name, "", "an object registered as \"default\"",
                            "none");
            continue;
        }
        const Json chain = askBase(run.service(), target, kChain, kTexts);
        bool found = false;
        if (chain.is_array()) {
            for (const Json& name : chain) found = found || name == target.descriptor;
        }
        Check& check = run.check("interfaces.chain");
        check.examine();
        if (!found || chain.back() != kBase) {
            check.fail(target.interface->name, "",
                       "a chain with " + target.descriptor + " that ends with " + kBase,
                       chain.dump());
        }
        Check& named = run.check("interfaces.descriptor");
        named.examine();
        const Json name = askBase(run.service(), target, kDescriptor, kText);
        const Json expected = found ? chain.front() : Json(target.descriptor);
        if (name != expected) {
            named.fail(target.interface->name, "", expected.dump(), name.dump());
        }
    }
}

}  // namespace conformance
