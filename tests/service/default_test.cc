#include <gtest/gtest.h>
#include <hidl/HidlBinderSupport.h>
#include <hidlhost/raw_service.h>
#include <qeltvapi/service/interfaces.h>

#include "private_runtime.h"
#include "transactions.h"

using namespace qeltvapi::service;
using android::sp;
using android::hardware::IBinder;
using android::hardware::Parcel;
using transactions::Json;
using transactions::Kind;

namespace {

const bool sPrivate = qeltvapi::testing::wire::usePrivateRuntime();

struct Checked {
    size_t methods = 0;
    /** Methods with a block that clients copy without a look at the code. */
    size_t blocks = 0;
};

/** Checks what every method of an interface answers, over the wire, and counts the methods. */
template <class Interface>
void expectUnsupported(Checked* checked) {
    const std::string descriptor = Interface::descriptor;
    hidlhost::RawHost host;
    const sp<Interface> service = new Default<Interface>;
    EXPECT_EQ(android::OK,
              host.add(descriptor, "default",
                       android::hardware::getOrCreateCachedBinder(service.get())->localBinder()));
    const sp<IBinder> object = hidlhost::findRaw(descriptor, "default");
    const auto* interface =
            transactions::findInterface(descriptor.substr(descriptor.rfind(':') + 1));
    if (object == nullptr || interface == nullptr) {
        ADD_FAILURE() << descriptor;
        return;
    }
    for (uint32_t code = 1; code <= interface->methods.size(); ++code) {
        const transactions::Method& method = interface->methods[code - 1];
        SCOPED_TRACE(descriptor + " " + method.name);
        Json arguments = transactions::zerosOf(method.parameters);
        bool takesObject = false;
        for (const auto& parameter : method.parameters) {
            takesObject |= parameter.type->kind == Kind::kObject;
        }
        if (takesObject) continue;  // there is no empty one
        const bool copied = arguments.contains("room");
        if (copied) arguments["room"] = 3;
        transactions::Files files;
        Parcel reply;
        EXPECT_EQ(android::OK, hidlhost::rawCall(
                                       object, descriptor, code,
                                       [&](Parcel* parcel) {
                                           transactions::write(method.parameters, arguments, parcel,
                                                               &files);
                                       },
                                       &reply));
        EXPECT_EQ(0, reply.readInt32());
        Json expected = transactions::zerosOf(method.results);
        if (!method.results.empty() && method.results.back().type->kind == Kind::kInt32) {
            expected[method.results.back().name] = QELTV_UNSUPPORTED;
        }
        if (copied && expected.contains("block")) {
            expected["block"] = "000000";
            ++checked->blocks;
        }
        EXPECT_EQ(expected, transactions::read(method.results, reply));
        EXPECT_EQ(0u, reply.dataAvail());
        ++checked->methods;
    }
}

TEST(Default, AnswersEveryMethodInItsShape) {
    Checked checked;
#define CHECK_INTERFACE(interface) expectUnsupported<interface>(&checked);
    QELTVAPI_SERVICE_INTERFACES(CHECK_INTERFACE)
#undef CHECK_INTERFACE
    EXPECT_GT(checked.methods, 600u);
    EXPECT_EQ(8u, checked.blocks);
}

TEST(Default, AnswersWithAnotherCodeWhereThatIsWanted) {
    const sp<IQelTvApiCec> last = new Default<IQelTvApiCec>(-5);
    EXPECT_EQ(-5, last->a_hidl_qeltvapi_set_earc_enable(true));
    EXPECT_FALSE(last->a_hidl_qeltvapi_get_earc_caps());
    const sp<IQelTvApiCec> everywhere = new Default<IQelTvApiCec>(-5, true);
    EXPECT_TRUE(everywhere->a_hidl_qeltvapi_get_earc_caps());
}

}  // namespace
