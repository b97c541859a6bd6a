#include "hw_qeltvapi_screenmode.h"
#include "wire.h"

using namespace wire;

namespace {

Table table() {
    const std::string returned = "<{f}:{n}> {f} reuturn {r}\n";
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_screenmode)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            Row("a_qeltvapi_screenmode_get_screen_mode", 81)
                    .call([](Outputs&) { return a_qeltvapi_screenmode_get_screen_mode(); })
                    .answered({u16(0x8001)})
                    .returns(0x8001)
                    .missing(65535)
                    .lost(65535)
                    .direct<uint16_t>(),
            Row("a_qeltvapi_screenmode_set_screen_mode", 82)
                    .call([](Outputs&) { return a_qeltvapi_screenmode_set_screen_mode(0x18002); })
                    .sent({i32(0x18002)})
                    .answered({i32(3)})
                    .returns(3)
                    .direct<int32_t>(),
            // The capacity is two, three come, and the service sends a number of its own.
            Row("a_qeltvapi_screenmode_get_all_screen_mode", 83)
                    .call([](Outputs& o) {
                        return a_qeltvapi_screenmode_get_all_screen_mode(o.at<uint16_t>(0),
                                                                         o.at<uint32_t>(1));
                    })
                    .given(1, bytesOf(uint32_t{2}))
                    .sent({u32(2)})
                    .answered({u16s({0x8003, 0x8004, 0x8005}), u32(0x80000006), i32(-4)})
                    .returns(-4)
                    .stores(0, bytesOf<uint16_t>({0x8003, 0x8004, 0x8005}))
                    .stores(1, uint32_t{0x80000006}),
            Row("a_qeltvapi_screenmode_get_number_screen_mode", 84)
                    .call([](Outputs& o) {
                        return a_qeltvapi_screenmode_get_number_screen_mode(o.at<uint32_t>(0));
                    })
                    .answered({u32(17), i32(-5)})
                    .returns(-5)
                    .stores(0, uint32_t{17})
                    .reply({"<operator():{n}> operator() result 17 -5"}),
            Row("a_qeltvapi_zoom_is_enable", 85)
                    .call([](Outputs&) { return a_qeltvapi_zoom_is_enable(); })
                    .answered({boolean(true)})
                    .returns(1)
                    .missing(0)
                    .lost(0)
                    .direct<bool>()
                    .exit({returned}),
            Row("a_qeltvapi_screenmode_set_crnt_overscan", 86)
                    .call([](Outputs&) {
                        return a_qeltvapi_screenmode_set_crnt_overscan(-1, 2, -3, 4);
                    })
                    .sent({i32(-1), i32(2), i32(-3), i32(4)})
                    .answered({i32(6)})
                    .returns(6)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> {f} (-1,2,-3,4)\n"}),
            Row("a_qeltvapi_screenmode_get_crnt_overscan", 87)
                    .call([](Outputs& o) {
                        return a_qeltvapi_screenmode_get_crnt_overscan(o.at<int32_t>(0));
                    })
                    .answered({bytes(bytesOf({5, -6, 7, -8})), i32(7)})
                    .returns(7)
                    .stores(0, bytesOf({5, -6, 7, -8}))
                    .reply({"<operator():{n}> operator() (5,-6,7,-8)\n"}),
            Row("a_qeltvapi_screenmode_update_overscan_ini", 88)
                    .call([](Outputs&) { return a_qeltvapi_screenmode_update_overscan_ini(); })
                    .answered({i32(8)})
                    .returns(8)
                    .direct<int32_t>()
                    .exit({returned}),
    };
    return t;
}

WIRE_TABLE_TESTS(ScreenmodeWire, table())

TEST(ScreenmodeWire, StoresTheOverscanAtTheLengthThatArrives) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    for (size_t length : {size_t{0}, size_t{7}, size_t{20}}) {
        int32_t values[6];
        memset(values, '-', sizeof(values));
        service.expect({}, {bytes(counted(length)), i32(0)});
        EXPECT_EQ(0, a_qeltvapi_screenmode_get_crnt_overscan(values));
        EXPECT_EQ(counted(length) + Bytes(sizeof(values) - length, '-'), bytesOf(values));
    }
}

}  // namespace
