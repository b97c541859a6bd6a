#include "hw_qeltvapi_inputsource.h"

#include "wire.h"

using namespace wire;

namespace {

constexpr char kName[] = "<{f}:{n}> {f}";

Row plain(const std::string& name, uint32_t ordinal, Row::CallFn call, Values sent, int32_t code) {
    return Row("a_qeltvapi_inputsource_" + name, ordinal)
            .call(call)
            .sent(std::move(sent))
            .answered({i32(code)})
            .returns(code)
            .direct<int32_t>();
}

/** A function whose result is the method's 8 bits. */
Row byteOf(const std::string& name, uint32_t ordinal, Row::CallFn call, uint8_t value) {
    return Row("a_qeltvapi_inputsource_" + name, ordinal)
            .call(call)
            .answered({u8(value)})
            .returns(value)
            .missing(255)
            .lost(255)
            .direct<uint8_t>();
}

/** A function that stores one byte in slot 0 and traces it with the result. */
Row getter(const std::string& name, uint32_t ordinal, Row::CallFn call, Values sent, uint8_t value,
           int32_t code) {
    return Row("a_qeltvapi_inputsource_" + name, ordinal)
            .call(call)
            .sent(std::move(sent))
            .answered({u8(value), i32(code)})
            .returns(code)
            .stores(0, value)
            .exit({"<{f}:{n}> {u8@0}, {r}"});
}

/** A function that stores a name in slot 0, over a longer one that keeps its tail. */
Row named(const std::string& name, uint32_t ordinal, Row::CallFn call, Values sent, int32_t code) {
    return Row("a_qeltvapi_inputsource_" + name, ordinal)
            .call(call)
            .given(0, Bytes("a longer name", 14))
            .sent(std::move(sent))
            .answered({str("HDMI 2"), i32(code)})
            .returns(code)
            .stores(0, Bytes("HDMI 2"));
}

Bytes sourceImage() {
    return Bytes("\x81\x82\x83", 3) + Bytes(21, '\0') + Bytes("....\x84...", 8);
}

Table table() {
    Table t;
    t.interface = "IQelTvApiInputSrc";
    t.tag = "(hw_qeltvapi_inputsource)(client)";
    t.rows = {
            getter(
                    "isVideoSignalAvailable", 0,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_isVideoSignalAvailable("main",
                                                                             o.at<uint8_t>(0));
                    },
                    {str("main")}, 201, 21),
            getter(
                    "isAudioSignalAvailable", 1,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_isAudioSignalAvailable("sub",
                                                                             o.at<uint8_t>(0));
                    },
                    {str("sub")}, 202, -22),
            Row("a_qeltvapi_inputsource_get_gpioid_byidx", 2)
                    .call([](Outputs& o) {
                        return a_qeltvapi_inputsource_get_gpioid_byidx(-11, o.at<int32_t>(0));
                    })
                    .sent({i32(-11)})
                    .answered({i32(-70002), i32(23)})
                    .returns(23)
                    .stores(0, int32_t{-70002})
                    .entry({kName}),
            byteOf(
                    "get_hybrid_video_internal_id", 3,
                    [](Outputs&) { return a_qeltvapi_inputsource_get_hybrid_video_internal_id(); },
                    203),
            byteOf(
                    "get_hybrid_comp_internal_id", 4,
                    [](Outputs&) { return a_qeltvapi_inputsource_get_hybrid_comp_internal_id(); },
                    204),
            byteOf(
                    "get_sourcetotalnum", 5,
                    [](Outputs&) { return a_qeltvapi_inputsource_get_sourcetotalnum(); }, 205),
            Row("a_qeltvapi_inputsource_get_sharepinrec_byidx", 6)
                    .call([](Outputs& o) {
                        return a_qeltvapi_inputsource_get_sharepinrec_byidx(
                                -12, o.at<QELTVAPI_INPUT_SHARE_PIN_RECORD_T>(0));
                    })
                    .sent({i32(-12)})
                    .answered({record("\x91\x92"), i32(24)})
                    .returns(24)
                    .stores(0, Bytes("\x91\x92"))
                    .entry({kName}),
            // A long name fills its field; bytes 35 to 39 stay the caller's.
            Row("a_qeltvapi_inputsource_get_sourcerec_byidx", 7)
                    .call([](Outputs& o) {
                        return a_qeltvapi_inputsource_get_sourcerec_byidx(
                                13, o.at<QELTVAPI_INPUT_SOURCE_RECORD_T>(0));
                    })
                    .sent({i32(13)})
                    .answered({record(sourceImage()).text(8, counted(33)), i32(25)})
                    .returns(25)
                    .stores(0, "\x81\x82\x83" + counted(32))
                    .stores(0, uint8_t{0x84}, 40)
                    .entry({kName}),
            named(
                    "get_currentsourcename", 8,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_get_currentsourcename(o.at<char>(0), -14);
                    },
                    {i32(-14)}, 26)
                    .exit({"<{f}:{n}> {f},name:{text@0}"}),
            named(
                    "get_currentsourcename_bypath", 9,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_get_currentsourcename_bypath(o.at<char>(0),
                                                                                   15, "sub");
                    },
                    {i32(15), str("sub")}, 27)
                    .exit({"<{f}:{n}> {f},name:{text@0}"}),
            named(
                    "get_sourcename_bysourceid", 10,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_get_sourcename_bysourceid(16, o.at<char>(0),
                                                                                -17);
                    },
                    {i32(16), i32(-17)}, 28)
                    .entry({kName}),
            plain(
                    "changesource_bysourceid", 11,
                    [](Outputs&) { return a_qeltvapi_inputsource_changesource_bysourceid(-18); },
                    {i32(-18)}, 29),
            getter(
                    "is_source_available_bysourceidandpath", 12,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_is_source_available_bysourceidandpath(
                                19, "main", o.at<uint8_t>(0));
                    },
                    {i32(19), str("main")}, 206, 30),
            plain(
                    "changesource_bysourceidandpath", 13,
                    [](Outputs&) {
                        return a_qeltvapi_inputsource_changesource_bysourceidandpath(20, "sub");
                    },
                    {i32(20), str("sub")}, 31),
            plain(
                    "cs_bysourceidandpathandpriority", 14,
                    [](Outputs&) {
                        return a_qeltvapi_inputsource_cs_bysourceidandpathandpriority(21, "main",
                                                                                      -22);
                    },
                    {i32(21), str("main"), i32(-22)}, 32),
            getter(
                    "is_block_bysourceid", 15,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_is_block_bysourceid(23, o.at<uint8_t>(0));
                    },
                    {i32(23)}, 207, 33),
            getter(
                    "is_source_block_bysourceid", 16,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_is_source_block_bysourceid(-24,
                                                                                 o.at<uint8_t>(0));
                    },
                    {i32(-24)}, 208, 34),
            getter(
                    "is_source_autodetect_bysourceid", 17,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_is_source_autodetect_bysourceid(
                                25, o.at<uint8_t>(0));
                    },
                    {i32(25)}, 209, 35),
            plain(
                    "set_source_blockstatus_bysourceid", 18,
                    [](Outputs&) {
                        return a_qeltvapi_inputsource_set_source_blockstatus_bysourceid(26, 2);
                    },
                    {i32(26), boolean(true)}, 36),
            plain(
                    "set_source_autodetectstatus_bysourceid", 19,
                    [](Outputs&) {
                        return a_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid(27,
                                                                                             -1);
                    },
                    {i32(27), boolean(true)}, 37),
            getter(
                    "get_source_inputlabelidx_bysourceid", 20,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid(
                                -28, o.at<uint8_t>(0));
                    },
                    {i32(-28)}, 210, 38),
            plain(
                    "set_source_inputlabelidx_bysourceid", 21,
                    [](Outputs&) {
                        return a_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid(29, -30);
                    },
                    {i32(29), i32(-30)}, 39),
            named(
                    "get_userdefname_bysourceid", 22,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_get_userdefname_bysourceid(31, o.at<char>(0),
                                                                                 -32);
                    },
                    {i32(31), i32(-32)}, 40)
                    .exit({"<{f}:{n}> {f},{text@0}"}),
            plain(
                    "set_userdefname_bysourceid", 23,
                    [](Outputs&) {
                        return a_qeltvapi_inputsource_set_userdefname_bysourceid(-33, "Console");
                    },
                    {i32(-33), str("Console")}, 41),
            getter(
                    "get_external_device_has_signal", 24,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_get_external_device_has_signal(
                                34, -35, o.at<uint8_t>(0));
                    },
                    {i32(34), i32(-35)}, 211, 42),
            plain(
                    "sync_stop", 25,
                    [](Outputs&) { return a_qeltvapi_inputsource_sync_stop("main", 2); },
                    {str("main"), boolean(true)}, 43),
            getter(
                    "query_conflict", 26,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_query_conflict(36, 37, o.at<uint8_t>(0));
                    },
                    {i32(36), i32(37)}, 212, 44),
            getter(
                    "get_mhl_port_num", 27,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_get_mhl_port_num(o.at<uint8_t>(0));
                    },
                    {}, 213, 45),
            getter(
                    "check_menu_tv_block", 28,
                    [](Outputs& o) {
                        return a_qeltvapi_inputsource_check_menu_tv_block(o.at<uint8_t>(0));
                    },
                    {}, 214, 46),
            plain(
                    "set_scart_auto_jump", 29,
                    [](Outputs&) { return a_qeltvapi_inputsource_set_scart_auto_jump(2); },
                    {boolean(true)}, 47),
    };
    return t;
}

WIRE_TABLE_TESTS(InputSourceWire, table())

TEST(InputSourceWire, SendsFalseForZero) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    const auto sends = [&](Values values, const std::function<int()>& call) {
        service.expect(std::move(values), {i32(0)});
        call();
        service.settle();
    };
    sends({i32(1), boolean(false)},
          [] { return a_qeltvapi_inputsource_set_source_blockstatus_bysourceid(1, 0); });
    sends({i32(1), boolean(false)},
          [] { return a_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid(1, 0); });
    sends({str("a"), boolean(false)}, [] { return a_qeltvapi_inputsource_sync_stop("a", 0); });
    sends({boolean(false)}, [] { return a_qeltvapi_inputsource_set_scart_auto_jump(0); });
}

TEST(InputSourceWire, PadsAShortSourceNameAndStoresTheLastByte) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    QELTVAPI_INPUT_SOURCE_RECORD_T source;
    memset(&source, '#', sizeof(source));
    service.expect({i32(0)}, {record(sourceImage()).text(8, "TV"), i32(-3)});
    EXPECT_EQ(-3, a_qeltvapi_inputsource_get_sourcerec_byidx(0, &source));
    EXPECT_EQ("TV" + Bytes(30, '\0') + Bytes(5, '#') + "\x84",
              Bytes(source.name, sizeof(source) - offsetof(QELTVAPI_INPUT_SOURCE_RECORD_T, name)));
}

}  // namespace
