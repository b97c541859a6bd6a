#include "hw_qeltvapi_upgrade.h"

#include "wire.h"

using namespace wire;

namespace {

Bytes field(Bytes text, size_t size) {
    text.resize(size, '\0');
    return text;
}

/** Firmware information as the service sends it, with this first text. */
Value firmware(const Bytes& first) {
    return record(Bytes(112, '\0') + bytesOf(uint32_t{0x8badf00d}) + Bytes(4, '\0'))
            .text(0, first)
            .text(16, "2")
            .text(32, "33")
            .text(48, "444")
            .text(64, "5555")
            .text(80, "66666")
            .text(96, "777777");
}

/** The functions that only pass numbers on. */
Row plain(const char* function, uint32_t ordinal, int (*call)(uint32_t)) {
    return Row(function, ordinal)
            .call([=](Outputs&) { return call(0x80000000 + ordinal); })
            .sent({u32(0x80000000 + ordinal)})
            .answered({i32(-static_cast<int32_t>(ordinal))})
            .returns(-static_cast<int32_t>(ordinal))
            .unchecked();
}

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_upgrade)(client)";
    t.missing = 0;
    t.missingTraced = {"<{f}:{n}> {f}"};
    t.rows = {
            // Any number but 0 is true.
            Row("a_qeltvapi_upgrade_start", 216)
                    .call([](Outputs&) { return a_qeltvapi_upgrade_start(0x80000001, 2); })
                    .sent({u32(0x80000001), boolean(true)})
                    .answered({i32(3)})
                    .returns(3)
                    .unchecked(),
            plain("a_qeltvapi_upgrade_trigger", 217, a_qeltvapi_upgrade_trigger),
            Row("a_qeltvapi_upgrade_get_firmware_info", 218)
                    .call([](Outputs& o) {
                        return a_qeltvapi_upgrade_get_firmware_info(
                                o.at<QELTVAPI_UPGRADE_FW_INFO_T>(0));
                    })
                    .answered({firmware("1.2.3"), i32(4)})
                    .returns(4)
                    .missing(-1)
                    .stores(0, field("1.2.3", 32), 0)
                    .stores(0, field("2", 32), 32)
                    .stores(0, field("33", 32), 64)
                    .stores(0, field("444", 32), 96)
                    .stores(0, field("5555", 32), 128)
                    .stores(0, field("66666", 32), 160)
                    .stores(0, field("777777", 32), 192)
                    .stores(0, uint32_t{0x8badf00d}, 224)
                    .missingLines({}, {})
                    .exit({"<{f}:{n}> {f}"})
                    .exitWhenMissing({"<{f}:{n}> {f}"}),
            // Bytes 10 to 71 stay as they are; two texts are cut to five characters.
            Row("a_qeltvapi_upgrade_get_item_info", 219)
                    .call([](Outputs& o) {
                        return a_qeltvapi_upgrade_get_item_info(o.at<QELTVAPI_UPGRADE_ITEM_T>(0),
                                                                0x80000005);
                    })
                    .sent({u32(0x80000005)})
                    .answered({record(Bytes(32, '\0') + bytesOf(uint32_t{0x81000001}) +
                                      Bytes(68, '\0') + bytesOf(uint32_t{0x82000002}) +
                                      bytesOf(uint32_t{0x83000003}))
                                       .text(0, "sixsix")
                                       .text(16, "ab")
                                       .text(40, "third")
                                       .text(56, "fourth")
                                       .text(72, Bytes(33, 'x'))
                                       .text(88, ""),
                               i32(6)})
                    .returns(6)
                    .missing(-1)
                    .stores(0, Bytes("sixsi"), 0)
                    .stores(0, field("ab", 5), 5)
                    .stores(0, uint32_t{0x81000001}, 72)
                    .stores(0, field("third", 32), 76)
                    .stores(0, field("fourth", 32), 108)
                    .stores(0, Bytes(32, 'x'), 140)
                    .stores(0, Bytes(32, '\0'), 172)
                    .stores(0, uint32_t{0x82000002}, 204)
                    .stores(0, uint32_t{0x83000003}, 208)
                    .missingLines({}, {})
                    .exit({"<{f}:{n}> {f}"})
                    .exitWhenMissing({"<{f}:{n}> {f}"}),
            Row("a_qeltvapi_upgrade_start_download_firmware", 220)
                    .call([](Outputs&) {
                        return a_qeltvapi_upgrade_start_download_firmware(7, "http://a", nullptr);
                    })
                    .sent({u32(7), str("http://a"), str("")})
                    .answered({i32(8)})
                    .returns(8)
                    .unchecked(),
            plain("a_qeltvapi_upgrade_cancel_download_firmware", 221,
                  a_qeltvapi_upgrade_cancel_download_firmware),
            plain("a_qeltvapi_upgrade_start_reboot_upgrade", 222,
                  a_qeltvapi_upgrade_start_reboot_upgrade),
            plain("a_qeltvapi_upgrade_query_upgrade_result", 223,
                  a_qeltvapi_upgrade_query_upgrade_result),
            Row("a_qeltvapi_upgrade_is_supported", 224)
                    .given(0, bytesOf(false))
                    .call([](Outputs& o) {
                        return a_qeltvapi_upgrade_is_supported(0x80000009, o.at<bool>(0));
                    })
                    .sent({u32(0x80000009)})
                    .answered({boolean(true), i32(10)})
                    .returns(10)
                    .missing(-1)
                    .stores(0, bytesOf(true))
                    .missingLines({}, {})
                    .exit({"<{f}:{n}> {u8@0}, {r}"})
                    .exitWhenMissing({"<{f}:{n}> 0, -1"}),
            plain("a_qeltvapi_upgrade_check_update", 225, a_qeltvapi_upgrade_check_update),
            Row("a_qeltvapi_upgrade_set", 226)
                    .given(0, counted(5))
                    .given(1, counted(5, 21))
                    .call([](Outputs& o) {
                        return a_qeltvapi_upgrade_set(0x80000011, o.at(0), 0x80000012, o.at(1));
                    })
                    .sent({u32(0x80000011), bytes(counted(4)), u32(0x80000012),
                           bytes(counted(4, 21))})
                    .answered({i32(13)})
                    .returns(13)
                    .unchecked(),
    };
    return t;
}

WIRE_TABLE_TESTS(UpgradeWire, table())

TEST(UpgradeWire, LeavesAFirmwareTextUnterminatedWhenItFillsItsField) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    for (size_t length : {31u, 32u, 40u}) {
        QELTVAPI_UPGRADE_FW_INFO_T info;
        memset(&info, '-', sizeof(info));
        service.expect({}, {firmware(Bytes(length, 'x')), i32(0)});
        EXPECT_EQ(0, a_qeltvapi_upgrade_get_firmware_info(&info));
        EXPECT_EQ(length < 32 ? Bytes(31, 'x') + '\0' : Bytes(32, 'x'), Bytes(info.s_at_0, 32));
        EXPECT_STREQ("2", info.s_at_32);
    }
}

TEST(UpgradeWire, EndsTheProcessWhenTheReplyOfAPlainFunctionIsLost) {
    const struct {
        Values sent;
        std::function<int()> call;
    } calls[] = {
            {{u32(1), boolean(true)}, [] { return a_qeltvapi_upgrade_start(1, 2); }},
            {{u32(2)}, [] { return a_qeltvapi_upgrade_trigger(2); }},
            {{u32(7), str("http://a"), str("")},
             [] { return a_qeltvapi_upgrade_start_download_firmware(7, "http://a", nullptr); }},
            {{u32(3)}, [] { return a_qeltvapi_upgrade_cancel_download_firmware(3); }},
            {{u32(4)}, [] { return a_qeltvapi_upgrade_start_reboot_upgrade(4); }},
            {{u32(5)}, [] { return a_qeltvapi_upgrade_query_upgrade_result(5); }},
            {{u32(6)}, [] { return a_qeltvapi_upgrade_check_update(6); }},
            {{u32(1), bytes("1234"), u32(2), bytes("5678")},
             [] { return a_qeltvapi_upgrade_set(1, "1234", 2, "5678"); }},
    };
    for (const auto& c : calls) expectLostReplyEndsTheProcess(c.sent, c.call);
}

}  // namespace
