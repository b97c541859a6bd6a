#include "hw_qeltvapi_bisskey.h"

#include "wire.h"

using namespace wire;

namespace {

const std::string withPath =
        "<{f}:{n}> [clientwrapper/hw_qeltvapi_bisskey.cpp]:[{f}] Error --> service is invalid\n";

Table keys() {
    Table t;
    t.interface = "IQelTvApiChannelList";
    t.tag = "(hw_qeltvapi_bisskey)(client)";
    t.missing = 0;
    t.missingTraced = {"<{f}:{n}> Error --> service is invalid\n"};
    t.entry = {"<{f}:{n}> Enter [clientwrapper/hw_qeltvapi_bisskey.cpp][{f}]"};
    t.exit = {"<{f}:{n}> Exit [clientwrapper/hw_qeltvapi_bisskey.cpp][{f}]"};
    t.rows = {
            Row("a_qeltvapi_bisskey_get_bsl_handle_by_bsl_id", 106)
                    .call([](Outputs& o) {
                        return a_qeltvapi_bisskey_get_bsl_handle_by_bsl_id(0x800006a1,
                                                                           o.at<uint32_t>(0));
                    })
                    .sent({u32(0x800006a1)})
                    .answered({u32(0xa000006a), i32(109)})
                    .returns(109)
                    .stores(0, uint32_t{0xa000006a})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_bisskey_lock_database", 107)
                    .call([](Outputs&) { return a_qeltvapi_bisskey_lock_database(0x800006b1); })
                    .sent({u32(0x800006b1)})
                    .answered({i32(-110)})
                    .returns(-110)
                    .direct<int32_t>(),
            Row("a_qeltvapi_bisskey_unlock_database", 108)
                    .call([](Outputs&) { return a_qeltvapi_bisskey_unlock_database(0x800006c1); })
                    .sent({u32(0x800006c1)})
                    .answered({i32(111)})
                    .returns(111)
                    .direct<int32_t>(),
            Row("a_qeltvapi_bisskey_get_recs_number", 109)
                    .call([](Outputs& o) {
                        return a_qeltvapi_bisskey_get_recs_number(0x800006d1, o.at<uint16_t>(0),
                                                                  o.at<uint32_t>(1));
                    })
                    .sent({u32(0x800006d1)})
                    .answered({u16(0xfe6d), u32(0xa000006d), i32(-112)})
                    .returns(-112)
                    .stores(0, uint16_t{0xfe6d})
                    .stores(1, uint32_t{0xa000006d})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id", 110)
                    .call([](Outputs& o) {
                        return a_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id(
                                0x800006e1, 1762, o.at(0), o.at<uint32_t>(1));
                    })
                    .sent({u32(0x800006e1), u32(1762)})
                    .answered({bytes(counted(50, 112)), u32(0xa000006e), i32(113)})
                    .returns(113)
                    .stores(0, counted(50, 112))
                    .stores(1, uint32_t{0xa000006e})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_bisskey_get_bsl_rec_by_idx", 111)
                    .call([](Outputs& o) {
                        return a_qeltvapi_bisskey_get_bsl_rec_by_idx(0x800006f1, 1778, o.at(0),
                                                                     o.at<uint32_t>(1));
                    })
                    .sent({u32(0x800006f1), u32(1778)})
                    .answered({bytes(counted(51, 113)), u32(0xa000006f), i32(-114)})
                    .returns(-114)
                    .stores(0, counted(51, 113))
                    .stores(1, uint32_t{0xa000006f})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_bisskey_get_recs_number_by_header", 112)
                    .call([](Outputs& o) {
                        return a_qeltvapi_bisskey_get_recs_number_by_header(
                                0x80000701, counted(16, 45).data(), o.at<uint16_t>(0),
                                o.at<uint32_t>(1));
                    })
                    .sent({u32(0x80000701), bytes(counted(16, 45))})
                    .answered({u16(0xfe70), u32(0xa0000070), i32(115)})
                    .returns(115)
                    .stores(0, uint16_t{0xfe70})
                    .stores(1, uint32_t{0xa0000070})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_bisskey_get_bsl_rec_by_header", 113)
                    .call([](Outputs& o) {
                        return a_qeltvapi_bisskey_get_bsl_rec_by_header(
                                0x80000711, counted(16, 61).data(), o.at(0), 1812,
                                o.at<uint32_t>(1));
                    })
                    .sent({u32(0x80000711), bytes(counted(16, 61)), u32(1812)})
                    .answered({bytes(counted(53, 115)), u32(0xa0000071), i32(-116)})
                    .returns(-116)
                    .stores(0, counted(53, 115))
                    .stores(1, uint32_t{0xa0000071})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_bisskey_set_bsl_rec_info", 114)
                    .call([](Outputs& o) {
                        return a_qeltvapi_bisskey_set_bsl_rec_info(
                                0x80000721, 1826, counted(32, 78).data(), o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000721), u32(1826), bytes(counted(32, 78))})
                    .answered({u32(0xa0000072), i32(117)})
                    .returns(117)
                    .stores(0, uint32_t{0xa0000072})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_bisskey_clean", 115)
                    .call([](Outputs&) { return a_qeltvapi_bisskey_clean(0x80000731); })
                    .sent({u32(0x80000731)})
                    .answered({i32(-118)})
                    .returns(-118)
                    .direct<int32_t>(),
            Row("a_qeltvapi_bisskey_is_same_record", 116)
                    .call([](Outputs&) {
                        return a_qeltvapi_bisskey_is_same_record(counted(32, 108).data(),
                                                                 counted(32, 109).data());
                    })
                    .sent({bytes(counted(32, 108)), bytes(counted(32, 109))})
                    .answered({i32(119)})
                    .returns(119)
                    .direct<int32_t>(),
            Row("a_qeltvapi_bisskey_get_default_record", 117)
                    .call([](Outputs& o) { return a_qeltvapi_bisskey_get_default_record(o.at(0)); })
                    .answered({bytes(counted(40, 119)), i32(-120)})
                    .returns(-120)
                    .stores(0, counted(40, 119))
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_bisskey_set_key_for_current_channel", 118)
                    .call([](Outputs&) { return a_qeltvapi_bisskey_set_key_for_current_channel(); })
                    .answered({i32(121)})
                    .returns(121)
                    .direct<int32_t>(),
    };
    return t;
}

WIRE_TABLE_TESTS(BisskeyWire, keys())

TEST(BisskeyWire, LogsNoKeyMaterial) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    captureLog();
    takeLog();
    Debug debug(true);
    const Bytes key(32, 'K');
    Bytes record(32, '-');
    uint32_t word = 0;
    service.expect({u32(1), u32(2), bytes(key)}, {u32(3), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_bisskey_set_bsl_rec_info(1, 2, key.data(), &word));
    service.expect({u32(1), u32(2)}, {bytes(key), u32(4), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_bisskey_get_bsl_rec_by_idx(1, 2, record.data(), &word));
    EXPECT_EQ(key, record);
    service.expect({bytes(key), bytes(record)}, {i32(1)});
    EXPECT_EQ(1, a_qeltvapi_bisskey_is_same_record(key.data(), record.data()));
    const std::vector<LogLine> lines = takeLog();
    EXPECT_EQ(6u, lines.size());
    for (const LogLine& line : lines) {
        EXPECT_EQ(std::string::npos, line.text.find("KK")) << line.text;
        EXPECT_EQ(std::string::npos, line.text.find("4b4b")) << line.text;
    }
}

}  // namespace
