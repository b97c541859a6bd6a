#include "hw_qeltvapi_videoinfo.h"
#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_videoinfo)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            Row("a_qeltvapi_videoinfo_set_value", 244)
                    .call([](Outputs&) { return a_qeltvapi_videoinfo_set_value(-1, -2); })
                    .sent({i32(-1), i32(-2)})
                    .answered({i32(3)})
                    .returns(3)
                    .direct<int32_t>(),
            Row("a_qeltvapi_videoinfo_get_value", 245)
                    .call([](Outputs& o) {
                        return a_qeltvapi_videoinfo_get_value(-3, o.at<uint32_t>(0));
                    })
                    .sent({i32(-3)})
                    .answered({u32(0x80000001), i32(4)})
                    .returns(4)
                    .stores(0, uint32_t{0x80000001}),
            Row("a_qeltvapi_videoinfo_set_data", 246)
                    .call([](Outputs& o) { return a_qeltvapi_videoinfo_set_data(-4, o.at(0), 15); })
                    .given(0, counted(15, 40))
                    .sent({i32(-4), bytes(counted(15, 40)), i32(15)})
                    .answered({i32(5)})
                    .returns(5)
                    .direct<int32_t>(),
            // The buffer is the request, then takes the answer whole.
            Row("a_qeltvapi_videoinfo_get_data", 247)
                    .call([](Outputs& o) { return a_qeltvapi_videoinfo_get_data(5, o.at(0), 16); })
                    .given(0, counted(16, 50))
                    .sent({i32(5), bytes(counted(16, 50))})
                    .answered({bytes(counted(20)), i32(6)})
                    .returns(6)
                    .stores(0, counted(20)),
            // One block is traced.
            Row("a_qeltvapi_videoinfo_get_data", 247)
                    .call([](Outputs& o) { return a_qeltvapi_videoinfo_get_data(4, o.at(0), 4); })
                    .given(0, counted(4, 50))
                    .sent({i32(4), bytes(counted(4, 50))})
                    .answered({bytes(bytesOf({1, -2, 3, -4, 5})), i32(7)})
                    .returns(7)
                    .stores(0, bytesOf({1, -2, 3, -4, 5}))
                    .reply({"<operator():{n}> edatarange:1, Min:-2 Max:3 Avg:-4\n"}),
            // Words that did not come are traced as 0, not read.
            Row("a_qeltvapi_videoinfo_get_data", 247)
                    .call([](Outputs& o) { return a_qeltvapi_videoinfo_get_data(4, o.at(0), 0); })
                    .sent({i32(4), bytes("")})
                    .answered({bytes(bytesOf({9, 8})), i32(8)})
                    .returns(8)
                    .stores(0, bytesOf({9, 8}))
                    .reply({"<operator():{n}> edatarange:9, Min:8 Max:0 Avg:0\n"}),
    };
    return t;
}

WIRE_TABLE_TESTS(VideoinfoWire, table())

TEST(VideoinfoWire, TakesABlockLongerThan64KiB) {
    ScriptedService& service = ready();
    Bytes block = counted(70000);
    service.expect({i32(1), bytes(block), i32(70000)}, {i32(2)});
    EXPECT_EQ(2, a_qeltvapi_videoinfo_set_data(1, block.data(), 70000));
    service.expect({i32(3), bytes(block)}, {bytes(Bytes(70000, 'a')), i32(4)});
    EXPECT_EQ(4, a_qeltvapi_videoinfo_get_data(3, block.data(), 70000));
    EXPECT_TRUE(Bytes(70000, 'a') == block);
}

}  // namespace
