#include "hw_qeltvapi_mds.h"

#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_mds)(client)";
    t.rows = {
            Row("a_qeltvapi_mds_fvpMtdtOperator", 250)
                    .call([](Outputs&) { return a_qeltvapi_mds_fvpMtdtOperator("operator=1"); })
                    .sent({str("operator=1")})
                    .answered({i32(1)})
                    .returns(1)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> {f}"}),
            // The trace shows what stands in the buffer, its old tail included.
            Row("a_qeltvapi_mds_getValue", 251)
                    .given(0, Bytes("old value\0", 10))
                    .call([](Outputs& o) {
                        return a_qeltvapi_mds_getValue("key", o.at<char>(0), 0x80000002);
                    })
                    .sent({str("key"), u32(0x80000002)})
                    .answered({str("NEW"), i32(3)})
                    .returns(3)
                    .stores(0, Bytes("NEW"))
                    .entry({"<{f}:{n}> {f}\n"})
                    .exit({"<{f}:{n}> {f},pc_getValue:{text@0}"}),
    };
    return t;
}

WIRE_TABLE_TESTS(MdsWire, table())

}  // namespace
