#include "hw_qeltvapi_freeze.h"
#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_freeze)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            Row("a_qeltvapi_freeze_set_freeze", 47)
                    .call([](Outputs&) { return a_qeltvapi_freeze_set_freeze("main_path", 1); })
                    .sent({str("main_path"), boolean(true)})
                    .answered({i32(3)})
                    .returns(3)
                    .direct<int32_t>(),
            Row("a_qeltvapi_freeze_is_freeze", 48)
                    .call([](Outputs&) { return a_qeltvapi_freeze_is_freeze("sub_path"); })
                    .sent({str("sub_path")})
                    .answered({boolean(true)})
                    .returns(1)
                    .missing(0)
                    .lost(0)
                    .direct<bool>(),
    };
    return t;
}

WIRE_TABLE_TESTS(FreezeWire, table())

TEST(FreezeWire, FreezesForOneOnly) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    for (int freeze : {0, 2, -1, 0x101}) {
        service.expect({str("p"), boolean(false)}, {i32(0)});
        EXPECT_EQ(0, a_qeltvapi_freeze_set_freeze("p", freeze));
        service.settle();
    }
}

}  // namespace
