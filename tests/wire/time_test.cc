#include "hw_qeltvapi_time.h"

#include "wire.h"

using namespace wire;

namespace {

QELTVAPI_DTG_T dtg(unsigned char first) {
    QELTVAPI_DTG_T d;
    memcpy(&d, counted(10, first).data(), sizeof(d));
    return d;
}

Row truth(const std::string& name, uint32_t ordinal, int (*function)()) {
    return Row("a_qeltvapi_time_" + name, ordinal)
            .call([=](Outputs&) { return function(); })
            .answered({boolean(true)})
            .returns(1)
            .missing(0)
            .unchecked()
            .exit({"<{f}:{n}> {f} b_ret ={r}\n"});
}

Row seconds(const std::string& name, uint32_t ordinal, int64_t (*function)()) {
    const int64_t value = -0x700000000 - static_cast<int64_t>(ordinal);
    return Row("a_qeltvapi_time_" + name, ordinal)
            .call([=](Outputs&) { return function(); })
            .answered({i64(value)})
            .returns(value)
            .unchecked()
            .exit({"<{f}:{n}> {f} t_time ={r}\n"});
}

Row timer(const std::string& name, uint32_t ordinal, int (*function)()) {
    const int32_t value = -60 - static_cast<int32_t>(ordinal);
    return Row("a_qeltvapi_time_" + name, ordinal)
            .call([=](Outputs&) { return function(); })
            .answered({i32(value)})
            .returns(value)
            .unchecked()
            .exit({"<{f}:{n}> {f} t_time ={r}\n"});
}

/** A setter; `label` is what it traces of its argument. */
template <class T>
Row set(const std::string& name, uint32_t ordinal, void (*function)(T), T value, Value sent,
        const std::string& label) {
    return Row("a_qeltvapi_time_" + name, ordinal)
            .call([=](Outputs&) { function(value); })
            .sent({std::move(sent)})
            .returns(0)
            .missing(0)
            .entry({"<{f}:{n}> {f} " + label});
}

/** A number that comes with a code. */
Row number(const std::string& name, uint32_t ordinal, int (*function)(uint32_t*)) {
    const int code = 30 + static_cast<int>(ordinal);
    return Row("a_qeltvapi_time_" + name, ordinal)
            .call([=](Outputs& o) { return function(o.at<uint32_t>(0)); })
            .answered({i32(-5), i32(code)})
            .returns(code)
            .stores(0, uint32_t{0xfffffffb});
}

/** A 64-bit time in, a record out and nothing else: 0 on success. */
Row toDtg(const std::string& name, uint32_t ordinal, int (*function)(int64_t, QELTVAPI_DTG_T*)) {
    return Row(name, ordinal)
            .call([=](Outputs& o) { return function(-0x123456789, o.at<QELTVAPI_DTG_T>(0)); })
            .sent({i64(-0x123456789)})
            .answered({record(counted(10, 50))})
            .returns(0)
            .stores(0, counted(10, 50));
}

Row toSeconds(const std::string& name, uint32_t ordinal,
              int64_t (*function)(const QELTVAPI_DTG_T*)) {
    return Row(name, ordinal)
            .call([=](Outputs&) {
                const QELTVAPI_DTG_T from = dtg(60);
                return function(&from);
            })
            .sent({record(counted(10, 60))})
            .answered({i64(0x200000000 + ordinal)})
            .returns(0x200000000 + ordinal);
}

Row registers(const std::string& name, Row::CallFn call, const std::string& line) {
    return Row("a_qeltvapi_time_" + name, Row::kNoCall)
            .call(call)
            .returns(0)
            .entry({"<{f}:" + line + "> {f}"});
}

const std::string kNoUtc = "<{f}:{n}> Get time service fail or pui2_ms==NULL.\n";
// Written when the pointer is not null.
const std::string kInverted = "<operator():{n}>  pui2_ms==NULL,return -1.\n";

const std::string kNoDtg = " pt_dtg==NULL,return -1.\n";
const std::string kNoDtgBlank = "pt_dtg==NULL, return -1.\n";
const std::string kNoLocal = " pt_local_dtg==NULL or pt_millis==NULL,return -1.\n";
const std::string kNoInOut = " pt_in==NULL or pt_out==NULL,return -1.\n";
const std::string kNoInputOutput = " pt_input_dtg==NULL or pt_output_dtg==NULL,return -1.\n";

/** A function that refuses a null pointer with a line of its own before it fetches the proxy. */
template <class F>
Row refusal(const std::string& function, const std::string& line, F&& call) {
    return Row(function, Row::kNoCall)
            .call(call)
            .returns(-1)
            .entry({"<{f}:{n}> {f}"})
            .replyAlways({"<{f}:{n}> " + line});
}

Table table() {
    Table t;
    t.interface = "IQelTvApiTime";
    t.tag = "(hw_qeltvapi_time)(client)";
    t.missing = -2;
    t.lost = 0;
    t.missingAlways = {"<{f}:{n}> Get time service fail .\n"};
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            registers(
                    "register_dt_event_callback",
                    [](Outputs&) { return a_qeltvapi_time_register_dt_event_callback(nullptr); },
                    "846"),
            registers(
                    "register_sync_source_callback",
                    [](Outputs&) { return a_qeltvapi_time_register_sync_source_callback(nullptr); },
                    "854"),
            registers(
                    "register_sleep_timer_callback",
                    [](Outputs&) { return a_qeltvapi_time_register_sleep_timer_callback(nullptr); },
                    "862"),
            Row("a_qeltvapi_time_get_utc_time", 0)
                    .call([](Outputs& o) {
                        return a_qeltvapi_time_get_utc_time(o.at<uint16_t>(0));
                    })
                    .sent({u16(0)})
                    .answered({u16(0xff99), i64(-0x300000001)})
                    .returns(-0x300000001)
                    .stores(0, uint16_t{0xff99})
                    .missingLines({kNoUtc}, {})
                    .replyAlways({kInverted})
                    .exit({"<{f}:{n}> ret={r}"}),
            toDtg("a_qeltvapi_utc_sec_to_dtg", 1, a_qeltvapi_utc_sec_to_dtg),
            Row("a_qeltvapi_time_get_broadcast_time_ex", 2)
                    .call([](Outputs& o) {
                        return a_qeltvapi_time_get_broadcast_time_ex(o.at<QELTVAPI_DTG_T>(0));
                    })
                    .given(0, counted(10, 70))
                    .sent({record(counted(10, 70))})
                    .answered({record(counted(10, 80)), i64(-0x300000002)})
                    .returns(-0x300000002)
                    .missing(-1)
                    .stores(0, counted(10, 80)),
            // Through the function above, whose name the lines show.
            Row("a_qeltvapi_time_get_broadcast_time_ex", 2)
                    .call([](Outputs&) { return a_qeltvapi_time_get_broadcast_time(); })
                    .sent({record(Bytes(10, '\0'))})
                    .answered({record(counted(10, 80)), i64(0x300000003)})
                    .returns(0x300000003)
                    .missing(-1),
            Row("a_qeltvapi_time_convert", 3)
                    .call([](Outputs& o) {
                        const QELTVAPI_DTG_T in = dtg(90);
                        return a_qeltvapi_time_convert(0x80000004, &in, o.at<QELTVAPI_DTG_T>(0));
                    })
                    .sent({u32(0x80000004), record(counted(10, 90))})
                    .answered({record(counted(10, 100)), i32(41)})
                    .returns(41)
                    .stores(0, counted(10, 100)),
            Row("a_qeltvapi_time_get_brdcst_raw_data", 4)
                    .call([](Outputs& o) {
                        return a_qeltvapi_time_get_brdcst_raw_data(o.at<QELTVAPI_TIME_RAW_T>(0));
                    })
                    .answered({u8(0xf1), u8(2), i64(0x0000000400000003), i64(-2),
                               i64(0x7000000800000007), i32(42)})
                    .returns(42)
                    .stores(0, Bytes("\xf1\x02", 2))
                    .stores(0, bytesOf<uint32_t>({3, 4, 0xfffffffe, 0xffffffff, 7, 0x70000008}), 4),
            set<int64_t>("set_utc_time", 5, a_qeltvapi_time_set_utc_time, -0x400000005,
                         i64(-0x400000005), "t_time=-17179869189"),
            truth("is_time_editable", 6, a_qeltvapi_time_is_time_editable),
            seconds("get_time_zone", 7, a_qeltvapi_time_get_time_zone),
            set<int64_t>("set_time_zone", 8, a_qeltvapi_time_set_time_zone, 0x400000008,
                         i64(0x400000008), "t_tz=17179869192\n"),
            truth("is_time_zone_editable", 9, a_qeltvapi_time_is_time_zone_editable),
            seconds("get_time_offset", 10, a_qeltvapi_time_get_time_offset),
            set<int64_t>("set_time_offset", 11, a_qeltvapi_time_set_time_offset, -0x40000000b,
                         i64(-0x40000000b), "t_tz=-17179869195\n"),
            truth("is_time_offset_editable", 12, a_qeltvapi_time_is_time_offset_editable),
            truth("has_received_tot", 13, a_qeltvapi_time_has_received_tot),
            Row("a_qeltvapi_time_convert_millis_to_local_time", 14)
                    .call([](Outputs& o) {
                        a_qeltvapi_time_convert_millis_to_local_time(-0x50000000e,
                                                                     o.at<QELTVAPI_DTG_T>(0));
                    })
                    .sent({i64(-0x50000000e)})
                    .answered({record(counted(10, 110))})
                    .missing(0)
                    .stores(0, counted(10, 110)),
            toSeconds("a_qeltvapi_dtg_to_sec", 15, a_qeltvapi_dtg_to_sec),
            Row("a_qeltvapi_time_convert_local_time_to_millis", 16)
                    .call([](Outputs& o) {
                        const QELTVAPI_DTG_T from = dtg(120);
                        a_qeltvapi_time_convert_local_time_to_millis(&from, o.at<int64_t>(0));
                    })
                    .sent({record(counted(10, 120))})
                    .answered({i64(-0x600000010)})
                    .missing(0)
                    .stores(0, int64_t{-0x600000010}),
            number("get_sync_source", 17, a_qeltvapi_time_get_sync_source),
            set<int32_t>("set_sync_source", 18, a_qeltvapi_time_set_sync_source, -18, i32(-18),
                         "t_tz=-18\n"),
            Row("a_qeltvapi_time_update_local_time", 19)
                    .call([](Outputs&) { return a_qeltvapi_time_update_local_time("one", "two"); })
                    .sent({str("one"), str("two")})
                    .answered({i32(-43)})
                    .returns(-43)
                    .unchecked(),
            timer("get_sleep_timer", 20, a_qeltvapi_time_get_sleep_timer),
            timer("get_sleep_timer_reverse", 21, a_qeltvapi_time_get_sleep_timer_reverse),
            set<int32_t>("set_sleep_timer", 22, a_qeltvapi_time_set_sleep_timer, 22, i32(22),
                         "t_tz=22\n"),
            number("get_sleep_timer_remaining_time", 23,
                   a_qeltvapi_time_get_sleep_timer_remaining_time),
            toDtg("c_dt_utc_sec_to_loc_dtg", 24, c_dt_utc_sec_to_loc_dtg),
            Row("c_dt_get_utc", 25)
                    .call([](Outputs& o) {
                        return c_dt_get_utc(o.at<uint16_t>(0), o.at<uint32_t>(1));
                    })
                    .answered({u16(0xff25), u32(0xdddddddd), i64(0x700000019)})
                    .returns(0x700000019)
                    .stores(0, uint16_t{0xff25})
                    .stores(1, uint32_t{0xdddddddd})
                    .missingLines({kNoUtc}, {})
                    .replyAlways({kInverted})
                    .exit({"<{f}:{n}> ret={r}"}),
            Row("c_dt_conv_utc_local", 26)
                    .call([](Outputs& o) {
                        const QELTVAPI_DTG_T from = dtg(130);
                        return c_dt_conv_utc_local(&from, o.at<QELTVAPI_DTG_T>(0));
                    })
                    .sent({record(counted(10, 130))})
                    .answered({record(counted(10, 140))})
                    .returns(0)
                    .stores(0, counted(10, 140)),
            Row("c_dt_mjd_to_dtg", 27)
                    .call([](Outputs& o) {
                        return c_dt_mjd_to_dtg(0x8000e9e9, o.at<QELTVAPI_DTG_T>(0));
                    })
                    .sent({u32(0x8000e9e9)})
                    .answered({record(counted(10, 150)), i32(44)})
                    .returns(44)
                    .stores(0, counted(10, 150)),
            toSeconds("c_dt_dtg_to_sec", 28, c_dt_dtg_to_sec),
            Row("c_dt_dtg_to_mjd_bcd", 29)
                    .call([](Outputs& o) {
                        const QELTVAPI_DTG_T from = dtg(160);
                        return c_dt_dtg_to_mjd_bcd(&from, o.at<uint16_t>(0), o.at<uint16_t>(1),
                                                   o.at<uint8_t>(2));
                    })
                    .sent({record(counted(10, 160))})
                    .answered({u16(0xe9e8), u16(0x2359), u8(0xf6), i32(45)})
                    .returns(45)
                    .stores(0, uint16_t{0xe9e8})
                    .stores(1, uint16_t{0x2359})
                    .stores(2, uint8_t{0xf6}),
            refusal("a_qeltvapi_utc_sec_to_dtg", kNoDtg,
                    [](Outputs&) { return a_qeltvapi_utc_sec_to_dtg(1, nullptr); }),
            refusal("a_qeltvapi_time_get_broadcast_time_ex", kNoDtg,
                    [](Outputs&) { return a_qeltvapi_time_get_broadcast_time_ex(nullptr); }),
            refusal("a_qeltvapi_time_convert", kNoInOut,
                    [](Outputs& o) {
                        return a_qeltvapi_time_convert(1, nullptr, o.at<QELTVAPI_DTG_T>(0));
                    }),
            refusal("a_qeltvapi_time_convert", kNoInOut,
                    [](Outputs& o) {
                        return a_qeltvapi_time_convert(1, o.at<QELTVAPI_DTG_T>(0), nullptr);
                    }),
            refusal("a_qeltvapi_time_get_brdcst_raw_data", " pt_dt==NULL,return -1.\n",
                    [](Outputs&) { return a_qeltvapi_time_get_brdcst_raw_data(nullptr); }),
            refusal("a_qeltvapi_dtg_to_sec", kNoDtg,
                    [](Outputs&) { return a_qeltvapi_dtg_to_sec(nullptr); }),
            refusal("a_qeltvapi_time_get_sync_source", " pui4_source==NULL,return -1.\n",
                    [](Outputs&) { return a_qeltvapi_time_get_sync_source(nullptr); }),
            refusal("a_qeltvapi_time_get_sleep_timer_remaining_time",
                    " pui4_remaining_time==NULL,return -1.\n",
                    [](Outputs&) {
                        return a_qeltvapi_time_get_sleep_timer_remaining_time(nullptr);
                    }),
            refusal("c_dt_utc_sec_to_loc_dtg", kNoDtgBlank,
                    [](Outputs&) { return c_dt_utc_sec_to_loc_dtg(1, nullptr); }),
            refusal("c_dt_conv_utc_local", kNoInputOutput,
                    [](Outputs& o) {
                        return c_dt_conv_utc_local(nullptr, o.at<QELTVAPI_DTG_T>(0));
                    }),
            refusal("c_dt_conv_utc_local", kNoInputOutput,
                    [](Outputs& o) {
                        return c_dt_conv_utc_local(o.at<QELTVAPI_DTG_T>(0), nullptr);
                    }),
            refusal("c_dt_mjd_to_dtg", kNoDtgBlank,
                    [](Outputs&) { return c_dt_mjd_to_dtg(1, nullptr); }),
            refusal("c_dt_dtg_to_sec", kNoDtg, [](Outputs&) { return c_dt_dtg_to_sec(nullptr); }),
            refusal("c_dt_dtg_to_mjd_bcd", kNoDtgBlank,
                    [](Outputs& o) {
                        return c_dt_dtg_to_mjd_bcd(nullptr, o.at<uint16_t>(1), o.at<uint16_t>(1),
                                                   o.at<uint8_t>(2));
                    }),
            refusal("a_qeltvapi_time_convert_millis_to_local_time",
                    " pt_local_dtg==NULL,return -1.\n",
                    [](Outputs&) { a_qeltvapi_time_convert_millis_to_local_time(1, nullptr); })
                    .returns(0),
            refusal("a_qeltvapi_time_convert_local_time_to_millis", kNoLocal,
                    [](Outputs& o) {
                        a_qeltvapi_time_convert_local_time_to_millis(nullptr, o.at<int64_t>(1));
                    })
                    .returns(0),
            refusal("a_qeltvapi_time_convert_local_time_to_millis", kNoLocal,
                    [](Outputs& o) {
                        a_qeltvapi_time_convert_local_time_to_millis(o.at<QELTVAPI_DTG_T>(0),
                                                                     nullptr);
                    })
                    .returns(0),
    };
    return t;
}

WIRE_TABLE_TESTS(TimeWire, table())

TEST(TimeWire, LogsNothingWhenAUtcReaderGetsNoPointer) {
    ScriptedService& service = ready();
    service.expect({u16(0)}, {u16(5), i64(77)});
    EXPECT_EQ(77, a_qeltvapi_time_get_utc_time(nullptr));
    uint32_t word = 0;
    service.expect({}, {u16(5), u32(6), i64(78)});
    EXPECT_EQ(78, c_dt_get_utc(nullptr, &word));
    EXPECT_EQ(6u, word);
    EXPECT_TRUE(takeLog().empty());

    uint16_t ms = 0;
    service.expect({}, {u16(8), u32(9), i64(79)});
    EXPECT_EQ(79, c_dt_get_utc(&ms, nullptr));
    EXPECT_EQ(8, ms);
    expectLog("(hw_qeltvapi_time)(client)", {kInverted});
}

TEST(TimeWire, AcceptsAMissingOutputOfTheModifiedJulianDate) {
    ScriptedService& service = ready();
    const QELTVAPI_DTG_T from = dtg(1);
    for (int wanted = 0; wanted < 8; ++wanted) {
        uint16_t mjd = 1;
        uint16_t bcd = 2;
        uint8_t extra = 3;
        service.expect({record(counted(10, 1))}, {u16(11), u16(12), u8(13), i32(0)});
        EXPECT_EQ(0, c_dt_dtg_to_mjd_bcd(&from, (wanted & 1) != 0 ? &mjd : nullptr,
                                         (wanted & 2) != 0 ? &bcd : nullptr,
                                         (wanted & 4) != 0 ? &extra : nullptr));
        EXPECT_EQ((wanted & 1) != 0 ? 11 : 1, mjd);
        EXPECT_EQ((wanted & 2) != 0 ? 12 : 2, bcd);
        EXPECT_EQ((wanted & 4) != 0 ? 13 : 3, extra);
    }
}

TEST(TimeWire, ConvertsARecordInPlace) {
    ScriptedService& service = ready();
    QELTVAPI_DTG_T d = dtg(1);
    service.expect({record(counted(10, 1))}, {record(counted(10, 21))});
    EXPECT_EQ(0, c_dt_conv_utc_local(&d, &d));
    EXPECT_EQ(counted(10, 21), bytesOf(d));
}

TEST(TimeWire, EndsTheProcessWhenAReplyIsLostThatIsUsedUnchecked) {
    const std::vector<std::pair<std::function<void()>, Values>> calls = {
            {[] { a_qeltvapi_time_is_time_editable(); }, {}},
            {[] { a_qeltvapi_time_get_time_zone(); }, {}},
            {[] { a_qeltvapi_time_is_time_zone_editable(); }, {}},
            {[] { a_qeltvapi_time_get_time_offset(); }, {}},
            {[] { a_qeltvapi_time_is_time_offset_editable(); }, {}},
            {[] { a_qeltvapi_time_has_received_tot(); }, {}},
            {[] { a_qeltvapi_time_update_local_time("a", "b"); }, {str("a"), str("b")}},
            {[] { a_qeltvapi_time_get_sleep_timer(); }, {}},
            {[] { a_qeltvapi_time_get_sleep_timer_reverse(); }, {}},
    };
    for (const auto& [call, sent] : calls) expectLostReplyEndsTheProcess(sent, call);
}

}  // namespace
