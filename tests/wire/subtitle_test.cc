#include "hw_qeltvapi_subtitle.h"

#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_subtitle)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            // One value is sent, three are stored.
            Row("a_qeltvapi_subtitle_get_loop", 114)
                    .given(0, bytesOf(int32_t{-1}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_subtitle_get_loop(o.at<int32_t>(0), 1);
                    })
                    .sent({i32s({-1})})
                    .answered({i32s({2, -3, 4}), i32(5)})
                    .returns(5)
                    .stores(0, bytesOf<int32_t>({2, -3, 4})),
            Row("a_qeltvapi_subtitle_play", 115)
                    .call([](Outputs&) { return a_qeltvapi_subtitle_play(0x80000006); })
                    .sent({u32(0x80000006)})
                    .answered({i32(-7)})
                    .returns(-7)
                    .direct<int32_t>(),
            Row("a_qeltvapi_subtitle_set_next", 116)
                    .call([](Outputs&) { return a_qeltvapi_subtitle_set_next(); })
                    .answered({i32(8)})
                    .returns(8)
                    .direct<int32_t>(),
    };
    return t;
}

WIRE_TABLE_TESTS(SubtitleWire, table())

TEST(SubtitleWire, SendsAnArrayOfNoValuesAndStoresNothingFromAnEmptyLoop) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    int32_t data[] = {11, 12};
    service.expect({i32s({})}, {i32s({}), i32(1)});
    EXPECT_EQ(1, a_qeltvapi_subtitle_get_loop(data, 0));
    EXPECT_EQ(11, data[0]);
}

}  // namespace
