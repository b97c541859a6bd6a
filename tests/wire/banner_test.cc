#include "hw_qeltvapi_banner.h"

#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_banner)(client)";
    t.rows = {
            Row("a_qeltvapi_banner_get_item_state", 97)
                    .call([](Outputs& o) {
                        return a_qeltvapi_banner_get_item_state(-1, 2, o.at<uint8_t>(0));
                    })
                    .sent({i32(-1), i32(2)})
                    .answered({u8(0xc8), i32(3)})
                    .returns(3)
                    .stores(0, uint8_t{0xc8})
                    .entry({"<{f}:{n}> {f}"}),
            Row("a_qeltvapi_banner_get_item_id", 98)
                    .call([](Outputs& o) {
                        return a_qeltvapi_banner_get_item_id(4, -5, o.at<uint32_t>(0));
                    })
                    .sent({i32(4), i32(-5)})
                    .answered({u32(0x89abcdef), i32(-6)})
                    .returns(-6)
                    .stores(0, uint32_t{0x89abcdef})
                    .entry({"<{f}:{n}> {f}"}),
            // The room that is sent bounds nothing; the name is traced twice.
            Row("a_qeltvapi_banner_get_item_content", 99)
                    .given(1, bytesOf(uint32_t{3}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_banner_get_item_content(7, 8, o.at<char>(0),
                                                                  o.at<uint32_t>(1));
                    })
                    .sent({i32(7), i32(8), u32(3)})
                    .answered({str("Das Erste"), i32(9)})
                    .returns(9)
                    .stores(0, Bytes("Das Erste"))
                    .stores(1, uint32_t{9})
                    .entry({"<{f}:{n}> {f}"})
                    .exit({"<{f}:{n}> {f}"}),
            Row("a_qeltvapi_banner_get_item_content_len", 100)
                    .call([](Outputs& o) {
                        return a_qeltvapi_banner_get_item_content_len(10, 11, o.at<uint32_t>(0));
                    })
                    .sent({i32(10), i32(11)})
                    .answered({u32(12), i32(13)})
                    .returns(13)
                    .stores(0, uint32_t{12})
                    .entry({"<{f}:{n}> {f}"}),
    };
    return t;
}

WIRE_TABLE_TESTS(BannerWire, table())

TEST(BannerWire, StoresOnlyTheLengthOfAnEmptyText) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    char buffer[] = "old";
    uint32_t length = sizeof(buffer);
    service.expect({i32(1), i32(2), u32(4)}, {str(""), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_banner_get_item_content(1, 2, buffer, &length));
    EXPECT_STREQ("old", buffer);
    EXPECT_EQ(0u, length);
}

}  // namespace
