#include "hw_qeltvapi_scan.h"

#include "wire.h"

using namespace wire;

namespace {

const std::string kReuturn = "<{f}:{n}> {f} reuturn {r}\n";

/** The reply is longer than what was sent, and all of it is stored. */
Row exchange(const std::string& name, uint32_t ordinal, int (*function)(int32_t*, uint32_t)) {
    const int32_t base = static_cast<int32_t>(ordinal) * 100;
    return Row(name, ordinal)
            .call([=](Outputs& o) { return function(o.at<int32_t>(0), 3); })
            .given(0, bytesOf<int32_t>({base + 1, -base, base + 3, base + 4}))
            .sent({i32s({base + 1, -base, base + 3})})
            .answered({i32s({base + 11, base + 12, -base - 13, base + 14, base + 15}),
                       i32(base + 16)})
            .returns(base + 16)
            .stores(0, bytesOf<int32_t>({base + 11, base + 12, -base - 13, base + 14, base + 15}))
            .exit({kReuturn});
}

Row inert(const std::string& name, Row::CallFn call, const std::string& line = "{n}") {
    return Row(name, Row::kNoCall).call(call).returns(0).entry({"<{f}:" + line + "> {f}"});
}

Table table() {
    Table t;
    t.interface = "IQelTvApiScan";
    t.tag = "(hw_qeltvapi_scan)(client)";
    t.rows = {
            Row("a_qeltvapi_scan_select_crnt_or_first_channel", 0)
                    .call([](Outputs&) { return a_qeltvapi_scan_select_crnt_or_first_channel(1); })
                    .sent({boolean(true)})
                    .answered({i32(21)})
                    .returns(21)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> {f}, b_skip_fake:1\n"})
                    .exit({kReuturn}),
            Row("a_qeltvapi_is_scan_active", 1)
                    .call([](Outputs&) { return a_qeltvapi_is_scan_active(); })
                    .answered({boolean(true)})
                    .returns(1)
                    .missing(0)
                    .lost(0)
                    .direct<bool>()
                    .entry({"<{f}:{n}> {f}\n"})
                    .exit({kReuturn}),
            Row("a_qeltvapi_start_scan", 2)
                    .call([](Outputs&) { return a_qeltvapi_start_scan(0x9876543210abcdef, 7); })
                    .sent({u64(0x9876543210abcdef), boolean(true)})
                    .answered({i32(-22)})
                    .returns(-22)
                    .direct<int32_t>()
                    .exit({kReuturn}),
            Row("a_qeltvapi_cancel_scan", 3)
                    .call([](Outputs&) { return a_qeltvapi_cancel_scan(); })
                    .answered({i32(23)})
                    .returns(23)
                    .direct<int32_t>()
                    .exit({kReuturn}),
            Row("a_qeltvapi_get_market_region", 4)
                    .call([](Outputs&) { return a_qeltvapi_get_market_region(); })
                    .answered({i32(24)})
                    .returns(24)
                    .direct<int32_t>()
                    .exit({kReuturn}),
            Row("a_qeltvapi_set_atsc_scan_param", 5)
                    .call([](Outputs&) {
                        const QELTVAPI_ATSC_SCAN_PARAM_T param = {31, 32, 33, 34};
                        return a_qeltvapi_set_atsc_scan_param(0x8000000000000035, &param);
                    })
                    .sent({u64(0x8000000000000035), record(bytesOf<uint32_t>({31, 32, 33, 34}))})
                    .answered({i32(25)})
                    .returns(25)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> {f}:ui4_first_scan_index:31, ui4_end_scan_index:32, "
                            "ui4_mod_mask:33, ui4_freq_plan:34\n"})
                    .exit({kReuturn}),
            Row("a_qeltvapi_set_isdb_scan_param", 6)
                    .call([](Outputs&) {
                        const QELTVAPI_ISDB_SCAN_PARAM_T param = {41, 42, 43};
                        return a_qeltvapi_set_isdb_scan_param(0x8000000000000046, &param);
                    })
                    .sent({u64(0x8000000000000046), record(bytesOf<uint32_t>({41, 42, 43}))})
                    .answered({i32(26)})
                    .returns(26)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> {f}:ui4_first_scan_index:41, ui4_end_scan_index:42, "
                            "ui4_configFlag:43\n"})
                    .exit({kReuturn}),
            Row("a_qeltvapi_set_ntsc_scan_param", 7)
                    .call([](Outputs&) {
                        const QELTVAPI_NTSC_SCAN_PARAM_T param = {51, 52};
                        return a_qeltvapi_set_ntsc_scan_param(0x8000000000000057, &param);
                    })
                    .sent({u64(0x8000000000000057), record(bytesOf<uint32_t>({51, 52}))})
                    .answered({i32(27)})
                    .returns(27)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> {f}:ui4_first_scan_index:51, ui4_end_scan_index:52\n"})
                    .exit({kReuturn}),
            exchange("a_qeltvapi_atsc_exchange_data", 8, a_qeltvapi_atsc_exchange_data),
            exchange("a_qeltvapi_isdb_exchange_data", 9, a_qeltvapi_isdb_exchange_data),
            exchange("a_scan_ce_exchange_data", 10, a_scan_ce_exchange_data),
            exchange("a_scan_dtmb_exchange_data", 11, a_scan_dtmb_exchange_data),
            exchange("a_scan_pal_secam_exchange_data", 12, a_scan_pal_secam_exchange_data),
            exchange("a_scan_dvbs_exchange_data", 13, a_scan_dvbs_exchange_data),
            // The separate length says what is copied; -1 comes as an unsigned number.
            Row("a_qeltvapi_get_user_message", 14)
                    .call([](Outputs& o) {
                        return a_qeltvapi_get_user_message(o.at<char>(0), 0x80000040);
                    })
                    .given(0, Bytes("ask me", 7))
                    .sent({str("ask me"), u32(0x80000040)})
                    .answered({str("No signal"), u32(5), i32(-2)})
                    .returns(0xfffffffe)
                    .missing(0xffffffff)
                    .lost(0xffffffff)
                    .stores(0, Bytes("No si")),
            exchange("a_scan_dvbc_exchange_data", 15, a_scan_dvbc_exchange_data),
            Row("a_qeltvapi_scan_dvbc_get_str_data", 16)
                    .call([](Outputs& o) {
                        return a_qeltvapi_scan_dvbc_get_str_data(0x90000061, o.at<char>(0), -62);
                    })
                    .given(0, Bytes("", 1))
                    .sent({u32(0x90000061), str(""), i32(-62)})
                    .answered({str("Kabel"), i32(4), i32(28)})
                    .returns(28)
                    .stores(0, Bytes("Kabe"))
                    .exit({kReuturn}),
            exchange("a_scan_dvbt_exchange_data", 17, a_scan_dvbt_exchange_data),
            inert("a_qeltvapi_set_dvbt_scan_param",
                  [](Outputs& o) { return a_qeltvapi_set_dvbt_scan_param(1, o.at(0)); }),
            inert("a_qeltvapi_set_dvbc_manual_scan_param",
                  [](Outputs& o) { return a_qeltvapi_set_dvbc_manual_scan_param(o.at(0)); }),
            inert("a_qeltvapi_set_dvbc_scan_param",
                  [](Outputs& o) { return a_qeltvapi_set_dvbc_scan_param(int64_t{1}, o.at(0)); }),
            inert("a_qeltvapi_set_dvbs_scan_param",
                  [](Outputs&) { return a_qeltvapi_set_dvbs_scan_param(); }),
            inert("a_qeltvapi_scan_maps_fct",
                  [](Outputs& o) { return a_qeltvapi_scan_maps_fct(o.at(0), 2, 3); }),
            inert("a_qeltvapi_dvb_scan_complete_ui_mode",
                  [](Outputs&) { return a_qeltvapi_dvb_scan_complete_ui_mode(1); }),
            inert("a_qeltvapi_scan_dvbc_get_country_id",
                  [](Outputs&) { return a_qeltvapi_scan_dvbc_get_country_id(); }),
    };
    return t;
}

WIRE_TABLE_TESTS(ScanWire, table())

TEST(ScanWire, PassesOverPlaceholdersForOneOnlyButTakesAnyNumberAsAFlag) {
    ScriptedService& service = ready();
    for (int other : {0, 2, -1, 0x101}) {
        service.expect({boolean(false)}, {i32(0)});
        EXPECT_EQ(0, a_qeltvapi_scan_select_crnt_or_first_channel(other));
    }
    service.expect({u64(1), boolean(false)}, {i32(0)});
    EXPECT_EQ(0, a_qeltvapi_start_scan(1, 0));
    service.expect({u64(1), boolean(true)}, {i32(0)});
    EXPECT_EQ(0, a_qeltvapi_start_scan(1, -256));
}

TEST(ScanWire, StoresTheWholeReplyOfAnExchangeOfNothing) {
    ScriptedService& service = ready();
    int32_t data[11];
    memcpy(data, counted(44, 1).data(), 44);
    service.expect({i32s({})}, {i32s({10, 9, 8, 7, 6, 5, 4, 3, 2, 1}), i32(3)});
    EXPECT_EQ(3, a_scan_dvbt_exchange_data(data, 0));
    EXPECT_EQ(bytesOf<int32_t>({10, 9, 8, 7, 6, 5, 4, 3, 2, 1}) + counted(4, 41), bytesOf(data));
}

TEST(ScanWire, LeavesTheRestOfTheArrayWhenTheReplyIsShort) {
    ScriptedService& service = ready();
    int32_t data[3] = {1, 2, 3};
    service.expect({i32s({1, 2, 3})}, {i32s({9}), i32(0)});
    EXPECT_EQ(0, a_scan_ce_exchange_data(data, 3));
    EXPECT_EQ(bytesOf<int32_t>({9, 2, 3}), bytesOf(data));
    service.expect({i32s({9, 2, 3})}, {i32s({}), i32(-4)});
    EXPECT_EQ(-4, a_scan_ce_exchange_data(data, 3));
    EXPECT_EQ(bytesOf<int32_t>({9, 2, 3}), bytesOf(data));
}

TEST(ScanWire, StoresATextBeyondTheCapacityThatWasSent) {
    ScriptedService& service = ready();
    char buffer[12] = "";
    memset(buffer + 1, '.', 10);
    service.expect({str(""), u32(2)}, {str("Hello world"), u32(5), i32(0)});
    EXPECT_EQ(0u, a_qeltvapi_get_user_message(buffer, 2));
    EXPECT_STREQ("Hello......", buffer);
}

}  // namespace
