#include "hw_qeltvapi_teletext.h"

#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_teletext)(client)";
    t.missing = 0;
    t.lost = 0;
    t.missingAlways = {"<{f}:{n}> Get qeltvapi service fail. \n"};
    t.rows = {
            Row("a_qeltvapi_teletext_get_cur_page", 231)
                    .call([](Outputs& o) { return a_qeltvapi_teletext_get_cur_page(o.at(0)); })
                    .answered({bytes(counted(6)), i32(1)})
                    .returns(1)
                    .stores(0, counted(6))
                    .entry({"<{f}:{n}> {f}"}),
            // 0 regardless of what the service says.
            Row("a_qeltvapi_teletext_set_page", 232)
                    .given(0, bytesOf(uint32_t{0x80000100}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_teletext_set_page(o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000100)})
                    .answered({i32(-2)})
                    .returns(0)
                    .direct<int32_t>(),
            Row("a_qeltvapi_teletext_is_top_stream", 233)
                    .call([](Outputs&) { return a_qeltvapi_teletext_is_top_stream(); })
                    .answered({i32(0x103)})
                    .returns(0x103)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> Enter."})
                    .exit({"<{f}:{n}> {r}"})
                    .missingLines({}, {}),
            Row("a_qeltvapi_teletext_top_get_block_content", 234)
                    .call([](Outputs& o) {
                        return a_qeltvapi_teletext_top_get_block_content(o.at(0));
                    })
                    .answered({bytes(counted(300)), i32(4)})
                    .returns(4)
                    .stores(0, counted(300)),
            Row("a_qeltvapi_teletext_top_get_group_content", 235)
                    .given(0, bytesOf(uint16_t{0x8100}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_teletext_top_get_group_content(o.at<uint16_t>(0),
                                                                         o.at(1));
                    })
                    .sent({u16(0x8100)})
                    .answered({bytes(counted(9)), i32(5)})
                    .returns(5)
                    .stores(1, counted(9))
                    .entry({"<{f}:{n}> Enter."}),
            Row("a_qeltvapi_teletext_top_get_page_content", 236)
                    .given(0, bytesOf(uint16_t{0x8899}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_teletext_top_get_page_content(o.at<uint16_t>(0), o.at(1));
                    })
                    .sent({u16(0x8899)})
                    .answered({bytes(counted(11, 90)), i32(6)})
                    .returns(6)
                    .stores(1, counted(11, 90))
                    .entry({"<{f}:{n}> Enter."}),
            // The answer is cut to 8 bits.
            Row("a_qeltvapi_teletext_get_ttx_rating_on", 237)
                    .call([](Outputs&) { return a_qeltvapi_teletext_get_ttx_rating_on(); })
                    .answered({i32(-2)})
                    .returns(254)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> Enter."}),
    };
    return t;
}

WIRE_TABLE_TESTS(TeletextWire, table())

}  // namespace
