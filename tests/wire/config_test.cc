#include "hw_qeltvapi_config.h"

#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApiConfig";
    t.tag = "(hw_qeltvapi_config)(client)";
    t.rows = {
            Row("a_qeltvapi_config_get_minmaxvalue", 0)
                    .call([](Outputs& o) {
                        return a_qeltvapi_config_get_minmaxvalue(0x80000007, "contrast",
                                                                 o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000007), str("contrast")})
                    .answered({u32(0xfffe0064), i32(3)})
                    .returns(3)
                    .stores(0, uint32_t{0xfffe0064})
                    .exit({"<{f}:118> {i32@0}, {r}"})
                    .exitWhenMissing({"<{f}:118> {i32@0}, -1"}),
            Row("a_qeltvapi_config_get_value", 1)
                    .call([](Outputs& o) {
                        return a_qeltvapi_config_get_value(7, "volume", o.at<int32_t>(0));
                    })
                    .sent({u32(7), str("volume")})
                    .answered({i32(-42), i32(5)})
                    .returns(5)
                    .stores(0, int32_t{-42})
                    .entry({"<{f}:124> {f}"})
                    .exit({"<{f}:140> {i32@0}, {r}"})
                    .exitWhenMissing({"<{f}:140> {i32@0}, -1"}),
            Row("a_qeltvapi_config_set_value", 2)
                    .call([](Outputs&) {
                        return a_qeltvapi_config_set_value(11, "hue", -12, 0x40000013);
                    })
                    .sent({u32(11), str("hue"), i32(-12), i32(0x40000013)})
                    .answered({i32(-6)})
                    .returns(-6)
                    .direct<int32_t>(),
            Row("a_qeltvapi_config_is_visible", 3)
                    .call([](Outputs&) { return a_qeltvapi_config_is_visible(21, "tint"); })
                    .sent({u32(21), str("tint")})
                    .answered({i32(1)})
                    .returns(1)
                    .direct<int32_t>(),
            // The visibility too: the same method.
            Row("a_qeltvapi_config_is_enabled", 3)
                    .call([](Outputs&) { return a_qeltvapi_config_is_enabled(21, "tint"); })
                    .sent({u32(21), str("tint")})
                    .answered({i32(1)})
                    .returns(1)
                    .direct<int32_t>(),
            Row("a_qeltvapi_config_reset_values", 5)
                    .call([](Outputs&) { return a_qeltvapi_config_reset_values(0xdeadbeef); })
                    .sent({u32(0xdeadbeef)})
                    .answered({i32(8)})
                    .returns(8)
                    .direct<int32_t>(),
            // The length is the service's number; the text goes in as it is, unterminated.
            Row("a_qeltvapi_config_get_str_value", 6)
                    .call([](Outputs& o) {
                        return a_qeltvapi_config_get_str_value("country", o.at<char>(0),
                                                               o.at<uint32_t>(1));
                    })
                    .sent({str("country")})
                    .answered({str("Norge"), u32(77), i32(9)})
                    .returns(9)
                    .stores(0, Bytes("Norge"))
                    .stores(1, uint32_t{77}),
            Row("a_qeltvapi_config_set_str_value", 7)
                    .call([](Outputs&) {
                        return a_qeltvapi_config_set_str_value("country", "Sverige");
                    })
                    .sent({str("country"), str("Sverige")})
                    .answered({i32(10)})
                    .returns(10)
                    .direct<int32_t>(),
            Row("a_qeltvapi_config_set_str_value_ex", 8)
                    .call([](Outputs&) {
                        return a_qeltvapi_config_set_str_value_ex("country", "Suomi", 0xf0000002);
                    })
                    .sent({str("country"), str("Suomi"), u32(0xf0000002)})
                    .answered({i32(11)})
                    .returns(11)
                    .direct<int32_t>(),
            Row("a_qeltvapi_config_add_value_changed_callback", 9)
                    .call([](Outputs&) {
                        return a_qeltvapi_config_add_value_changed_callback("sleep");
                    })
                    .sent({str("sleep")})
                    .answered({i32(12)})
                    .returns(12)
                    .direct<int32_t>(),
            Row("a_qeltvapi_config_remove_value_changed_callback", 10)
                    .call([](Outputs&) {
                        return a_qeltvapi_config_remove_value_changed_callback("sleep");
                    })
                    .sent({str("sleep")})
                    .answered({i32(13)})
                    .returns(13)
                    .direct<int32_t>(),
            Row("a_qeltvapi_config_get_items_enabled", 11)
                    .call([](Outputs& o) {
                        return a_qeltvapi_config_get_items_enabled(
                                31, "inputs", o.at<char>(0), o.at<uint32_t>(1), o.at<int32_t>(2));
                    })
                    .sent({u32(31), str("inputs")})
                    .answered({str("1101"), u32(4), i32(-8), i32(14)})
                    .returns(14)
                    .stores(0, Bytes("1101"))
                    .stores(1, uint32_t{4})
                    .stores(2, int32_t{-8}),
            Row("a_qeltvapi_config_set_android_world_info", 12)
                    .call([](Outputs&) {
                        return a_qeltvapi_config_set_android_world_info(0x81000001, 0x92000002);
                    })
                    .sent({u32(0x81000001), u32(0x92000002)})
                    .answered({i32(15)})
                    .returns(15)
                    .direct<int32_t>(),
            Row("a_qeltvapi_config_get_video_resolution", 13)
                    .call([](Outputs& o) {
                        return a_qeltvapi_config_get_video_resolution(o.at(0));
                    })
                    .answered({bytes(counted(37)), i32(16)})
                    .returns(16)
                    .stores(0, counted(37))
                    .entry({"<{f}:349> {f}"}),
            Row("a_qeltvapi_config_set_value_for_all_elems", 14)
                    .call([](Outputs&) {
                        return a_qeltvapi_config_set_value_for_all_elems(41, "gamma", -22, 3);
                    })
                    .sent({u32(41), str("gamma"), i32(-22), i32(3)})
                    .answered({i32(17)})
                    .returns(17)
                    .direct<int32_t>(),
    };
    return t;
}

WIRE_TABLE_TESTS(ConfigWire, table())

TEST(ConfigWire, LeavesTheTailOfTheTextBeforeAShorterOne) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    char buffer[] = "Deutsche";
    uint32_t length = 0;

    service.expect({str("country")}, {str("Norge"), u32(5), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_config_get_str_value("country", buffer, &length));
    EXPECT_STREQ("Norgeche", buffer);

    service.expect({u32(1), str("inputs")}, {str("abc"), u32(3), i32(0), i32(0)});
    int32_t value = 0;
    EXPECT_EQ(0, a_qeltvapi_config_get_items_enabled(1, "inputs", buffer, &length, &value));
    EXPECT_STREQ("abcgeche", buffer);
}

TEST(ConfigWire, StopsAtAnInnerZeroInOneReaderOnly) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    char buffer[6] = "-----";
    uint32_t length = 0;

    // strncpy() fills up with zeros behind the first one.
    service.expect({str("x")}, {str(Bytes("a\0b", 3)), u32(3), i32(0)});
    a_qeltvapi_config_get_str_value("x", buffer, &length);
    EXPECT_EQ(Bytes("a\0\0--", 5), Bytes(buffer, 5));

    int32_t value = 0;
    service.expect({u32(1), str("x")}, {str(Bytes("a\0b", 3)), u32(3), i32(0), i32(0)});
    a_qeltvapi_config_get_items_enabled(1, "x", buffer, &length, &value);
    EXPECT_EQ(Bytes("a\0b--", 5), Bytes(buffer, 5));
}

TEST(ConfigWire, SendsTheEmptyTextForNull) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    service.expect({str(""), str("")}, {i32(4)});
    EXPECT_EQ(4, a_qeltvapi_config_set_str_value(nullptr, nullptr));
}

}  // namespace
