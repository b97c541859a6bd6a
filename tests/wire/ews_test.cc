#include "hw_qeltvapi_ews_pa.h"
#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_ews_pa)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.exit = {"<{f}:{n}> {f} reuturn {r}\n"};
    t.rows = {
            // A set stores the answer as well; a get more than was asked for.
            Row("a_qeltvapi_ewspa_set", 227)
                    .given(0, bytesOf<int32_t>({-1, 2, -3}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_ewspa_set(0x80000001, 0x80000002, o.at<int32_t>(0), 3);
                    })
                    .sent({u32(0x80000001), u32(0x80000002), i32s({-1, 2, -3})})
                    .answered({i32s({7, -8}), i32(4)})
                    .returns(4)
                    .stores(0, bytesOf<int32_t>({7, -8})),
            Row("a_qeltvapi_ewspa_get", 228)
                    .given(0, bytesOf<int32_t>({5, -6}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_ewspa_get(0x80000003, 0x80000004, o.at<int32_t>(0), 2);
                    })
                    .sent({u32(0x80000003), u32(0x80000004), i32s({5, -6})})
                    .answered({i32s({9, 10, -11, 12}), i32(-5)})
                    .returns(-5)
                    .stores(0, bytesOf<int32_t>({9, 10, -11, 12})),
            // Direct results, but reported under the family's own tag.
            Row("a_qeltvapi_ewspa_create_monitor_inst", 229)
                    .call([](Outputs&) { return a_qeltvapi_ewspa_create_monitor_inst(0x80000006); })
                    .sent({u32(0x80000006)})
                    .answered({i32(7)})
                    .returns(7),
            Row("a_qeltvapi_ewspa_delete_monitor_inst", 230)
                    .call([](Outputs&) { return a_qeltvapi_ewspa_delete_monitor_inst(0x80000008); })
                    .sent({u32(0x80000008)})
                    .answered({i32(9)})
                    .returns(9),
    };
    return t;
}

WIRE_TABLE_TESTS(EwsWire, table())

}  // namespace
