#include "hw_qeltvapi_event.h"

#include "wire.h"

using namespace wire;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_event)(client)";

Bytes padded(Bytes text, size_t size) {
    text.resize(size);
    return text;
}

QELTVAPI_EVENT_FILTER_T filter() {
    QELTVAPI_EVENT_FILTER_T f{};
    f.word = 0x8122;
    f.value = 0x93445566;
    memcpy(f.block, counted(16, 31).data(), 16);
    f.flag = 2;
    f.count = 3;
    memcpy(f.list, "\x0a\x0b\x0c\x0d\x0e", 5);
    f.last = 0xf7;
    return f;
}

/** The filter as it crosses: the flag as 1, and no more of the list than counts. */
Value sentFilter() {
    return record(Bytes("\x22\x81\0\0", 4) + bytesOf(uint32_t{0x93445566}) + counted(16, 31) +
                  Bytes("\x01\x03\x0a\x0b\x0c\0\0\0\0\0\xf7\0", 12))
            .gap(2, 2)
            .gap(35, 1);
}

/** A block whose size the caller gives; 3 bytes more are sent. */
Row block(const std::string& name, uint32_t ordinal, int (*function)(int, int, void*, int),
          const std::string& label = "") {
    const int room = 11 + static_cast<int>(ordinal);
    const int code = 40 + static_cast<int>(ordinal);
    Row row = Row("a_qeltvapi_event_" + name, ordinal)
                      .call([=](Outputs& o) { return function(-101, 102, o.at(0), room); })
                      .given(0, padded("old", 64))
                      .sent({i32(-101), i32(102), i32(room)})
                      .answered({bytes(counted(static_cast<size_t>(room) + 3)), i32(code)})
                      .returns(code)
                      .stores(0, counted(static_cast<size_t>(room)));
    if (!label.empty()) row.exit({"<{f}:{n}> " + label + ":[{text@0}] \n"});
    return row;
}

Row wholeBlock(const std::string& name, int (*function)(int, int, void*)) {
    return Row("a_qeltvapi_event_" + name, 16)
            .call([=](Outputs& o) { return function(111, -112, o.at(0)); })
            .sent({i32(111), i32(-112)})
            .answered({bytes(counted(77)), i32(61)})
            .returns(61)
            .stores(0, counted(77));
}

Row inert(const std::string& name, Row::CallFn call, const std::string& line = "{n}") {
    return Row("a_qeltvapi_event_" + name, Row::kNoCall)
            .call(call)
            .returns(0)
            .entry({"<{f}:" + line + "> {f}"});
}

/** A function that refuses a null pointer before it fetches the proxy. */
Row refusal(const std::string& name, Row::CallFn call) {
    return Row("a_qeltvapi_event_" + name, Row::kNoCall)
            .call(call)
            .returns(-1)
            .entry({"<{f}:{n}> {f}"})
            .replyAlways({"<{f}:{n}> Invalid arg(null point)!!!!\n"});
}

Table table() {
    static const QELTVAPI_EVENT_FILTER_T kFilter = filter();
    Table t;
    t.interface = "IQelTvApiEvent";
    t.tag = kTag;
    t.lost = 0;
    t.missingAlways = {"<{f}:{n}> Get event service fail.\n"};
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            Row("a_qeltvapi_event_setCurrentActiveWindow", 0)
                    .call([](Outputs&) {
                        uint32_t ids[] = {0x80000001, 2, 3};
                        return a_qeltvapi_event_setCurrentActiveWindow(ids, -0x123456789abc, 3);
                    })
                    .sent({u32s({0x80000001, 2, 3}), i64(-0x123456789abc), i32(3)})
                    .answered({i32(-31)})
                    .returns(-31)
                    .direct<int32_t>(),
            Row("a_qeltvapi_event_setCurrentActiveWindow_Ex", 1)
                    .call([](Outputs&) {
                        uint32_t ids[] = {11, 0xfffffffe};
                        return a_qeltvapi_event_setCurrentActiveWindow_Ex(ids, 0x7fffffff1, -12, 2);
                    })
                    .sent({u32s({11, 0xfffffffe}), i64(0x7fffffff1), i64(-12), i32(2)})
                    .answered({i32(32)})
                    .returns(32)
                    .direct<int32_t>(),
            Row("a_qeltvapi_event_clear_active_win", 2)
                    .call([](Outputs&) { return a_qeltvapi_event_clear_active_win(); })
                    .answered({i32(33)})
                    .returns(33)
                    .direct<int32_t>(),
            Row("a_qeltvapi_event_query_event_id_by_range", 3)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_query_event_id_by_range(
                                -21, 0x1000000022, -23, o.at<uint16_t>(0), o.at<uint16_t>(1));
                    })
                    .given(0, bytesOf(uint16_t{2}))
                    .sent({i32(-21), i64(0x1000000022), i64(-23), u16(2)})
                    .answered({u16(2), u16s({0xfff1, 17, 18}), i32(34)})
                    .returns(34)
                    .stores(0, uint16_t{2})
                    .stores(1, bytesOf<uint16_t>({0xfff1, 17}))
                    .exit({"<{f}:{n}> event_id_num = {u16@0}\n",
                           "<{f}:{n}> event_id[0] = {u16@1}\n",
                           "<{f}:{n}> event_id[1] = {u16@1+2}\n"}),
            block("get_details_info", 4, a_qeltvapi_event_get_details_info, "details"),
            block("get_guidance_info", 5, a_qeltvapi_event_get_guidance_info, "guidance"),
            block("get_details_extend_info", 6, a_qeltvapi_event_get_details_extend_info,
                  "extend_detail"),
            Row("a_qeltvapi_event_check_block", 7)
                    .call([](Outputs&) { return a_qeltvapi_event_check_block(-41, 42); })
                    .sent({i32(-41), i32(42)})
                    .answered({boolean(true)})
                    .returns(1)
                    .missing(0)
                    .direct<bool>()
                    .exit({"<{f}:{n}> b_ret=[{r}] \n"}),
            Row("a_qeltvapi_event_get_active_win_channel_num", 8)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_get_active_win_channel_num(o.at<uint16_t>(0));
                    })
                    .given(0, bytesOf(uint16_t{0xff01}))
                    .answered({u16(0xff02), i32(35)})
                    .returns(35)
                    .stores(0, uint16_t{0xff02})
                    .exit({"<{f}:{n}> active win channel num = [{u16@0}] \n"}),
            // More ids come than there is room for, and all are stored.
            Row("a_qeltvapi_event_get_active_win_list", 9)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_get_active_win_list(
                                o.at<uint32_t>(0), 2, o.at<int64_t>(1), o.at<int64_t>(2));
                    })
                    .given(0, bytesOf<uint32_t>({51, 52}))
                    .sent({i32(2)})
                    .answered({u32s({51, 52, 0x80000053}), i64(-0x500000001), i64(0x600000002),
                               i32(36)})
                    .returns(36)
                    .stores(0, bytesOf<uint32_t>({51, 52, 0x80000053}))
                    .stores(1, int64_t{-0x500000001})
                    .stores(2, int64_t{0x600000002})
                    .reply({"<operator():{n}> t_startTime = -21474836481\n",
                            "<operator():{n}> t_endTime = 25769803778\n"})
                    .exit({"<{f}:{n}> active win channel list:channel_id[0]:[51]\n",
                           "<{f}:{n}> active win channel list:channel_id[1]:[52]\n"}),
            Row("a_qeltvapi_event_get_pf_event_id", 10)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_get_pf_event_id(61, o.at<uint16_t>(0), 2);
                    })
                    .given(0, bytesOf(uint16_t{1}))
                    .sent({i32(61), boolean(true)})
                    .answered({u16(0xff62), i32(37)})
                    .returns(37)
                    .stores(0, uint16_t{0xff62})
                    .exit({"<{f}:{n}> [now event] event_id[{u16@0}] \n"}),
            Row("a_qeltvapi_event_get_group_info", 11)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_get_group_info(71, 72, o.at(0), 17);
                    })
                    .given(0, bytesOf<uint32_t>({73, 74, 75, 76}))
                    .sent({i32(71), i32(72), i32(17)})
                    .answered({bytes(bytesOf<uint32_t>({73, 0xffff004a, 75, 0x1234004c, 9})),
                               i32(38)})
                    .returns(38)
                    .stores(0, bytesOf<uint32_t>({73, 0xffff004a, 75, 0x1234004c}) + '\x09')
                    .exit({"<{f}:{n}> pt_event_common[0].ui4_channel_id:[73] \n",
                           "<{f}:{n}> pt_event_common[0].ui2_event_id:[74] \n",
                           "<{f}:{n}> pt_event_common[1].ui4_channel_id:[75] \n",
                           "<{f}:{n}> pt_event_common[1].ui2_event_id:[76] \n"}),
            block("get_series_info", 11, a_qeltvapi_event_get_series_info),
            Row("a_qeltvapi_event_get_rating_map", 13)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_get_rating_map(81, -82,
                                                               o.at<QELTVAPI_RATING_MAP_T>(0));
                    })
                    .sent({i32(81), i32(-82)})
                    .answered({record(Bytes(48, '\0'))
                                       .text(0, "TV-14")
                                       .text(16, Bytes(40, 'd'))
                                       .text(32, "third"),
                               i32(39)})
                    .returns(39)
                    .stores(0, padded("TV-14", 64))
                    .stores(0, Bytes(32, 'd'), 65)
                    .stores(0, padded("third", 255), 98),
            Row("a_qeltvapi_event_set_query_parameter", 14)
                    .call([](Outputs&) {
                        const QELTVAPI_EVENT_QUERY_PARAM_T r = {0x80000091, 92, 93, {0, 2, 0, 255}};
                        return a_qeltvapi_event_set_query_parameter(&r);
                    })
                    .sent({record(bytesOf<uint32_t>({0x80000091, 92, 93, 0x01000100}))})
                    .answered({i32(40)})
                    .returns(40)
                    .direct<int32_t>(),
            Row("a_qeltvapi_event_query_event_id_by_filter", 15)
                    .call([](Outputs& o) {
                        const QELTVAPI_EVENT_FILTER_T f = filter();
                        return a_qeltvapi_event_query_event_id_by_filter(
                                -95, &f, o.at<uint16_t>(0), o.at<uint16_t>(1), o.at<uint32_t>(2));
                    })
                    .given(0, bytesOf(uint16_t{0xfff0}))
                    .sent({i32(-95), sentFilter(), u16(0xfff0)})
                    .answered({u16(2), u16s({96, 97, 98}), u32s({0x80000099, 100, 101}), i32(41)})
                    .returns(41)
                    .stores(0, uint16_t{2})
                    .stores(1, bytesOf<uint16_t>({96, 97}))
                    .stores(2, bytesOf<uint32_t>({0x80000099, 100})),
            wholeBlock("get_general_info", a_qeltvapi_event_get_general_info),
            wholeBlock("get_general_info_64", a_qeltvapi_event_get_general_info_64),
            block("get_rating_list", 17, a_qeltvapi_event_get_rating_list),
            block("get_content_identifier", 18, a_qeltvapi_event_get_content_identifier),
            block("get_audio_comp_info", 19, a_qeltvapi_event_get_audio_comp_info),
            inert("getEventInformation",
                  [](Outputs& o) { return a_qeltvapi_event_getEventInformation(1, o.at(0)); }),
            inert("getEvent_len",
                  [](Outputs& o) { return a_qeltvapi_event_getEvent_len(o.at(0), int64_t{2}, 3); }),
            refusal("setCurrentActiveWindow",
                    [](Outputs&) {
                        return a_qeltvapi_event_setCurrentActiveWindow(nullptr, 1, 0);
                    }),
            refusal("setCurrentActiveWindow_Ex",
                    [](Outputs&) {
                        return a_qeltvapi_event_setCurrentActiveWindow_Ex(nullptr, 1, 2, 0);
                    }),
            refusal("query_event_id_by_range",
                    [](Outputs& o) {
                        return a_qeltvapi_event_query_event_id_by_range(1, 2, 3, o.at<uint16_t>(0),
                                                                        nullptr);
                    }),
            refusal("get_details_info",
                    [](Outputs&) { return a_qeltvapi_event_get_details_info(1, 2, nullptr, 3); }),
            refusal("get_guidance_info",
                    [](Outputs&) { return a_qeltvapi_event_get_guidance_info(1, 2, nullptr, 3); }),
            refusal("get_details_extend_info",
                    [](Outputs&) {
                        return a_qeltvapi_event_get_details_extend_info(1, 2, nullptr, 3);
                    }),
            refusal("get_active_win_channel_num",
                    [](Outputs&) { return a_qeltvapi_event_get_active_win_channel_num(nullptr); }),
            refusal("get_pf_event_id",
                    [](Outputs&) { return a_qeltvapi_event_get_pf_event_id(1, nullptr, 1); }),
            refusal("get_group_info",
                    [](Outputs&) { return a_qeltvapi_event_get_group_info(1, 2, nullptr, 8); }),
            refusal("get_series_info",
                    [](Outputs&) { return a_qeltvapi_event_get_series_info(1, 2, nullptr, 8); }),
            refusal("get_rating_map",
                    [](Outputs&) { return a_qeltvapi_event_get_rating_map(1, 2, nullptr); }),
            refusal("set_query_parameter",
                    [](Outputs&) { return a_qeltvapi_event_set_query_parameter(nullptr); }),
            refusal("query_event_id_by_filter",
                    [](Outputs& o) {
                        return a_qeltvapi_event_query_event_id_by_filter(
                                1, &kFilter, nullptr, o.at<uint16_t>(0), o.at<uint32_t>(1));
                    }),
            refusal("query_event_id_by_filter",
                    [](Outputs& o) {
                        return a_qeltvapi_event_query_event_id_by_filter(
                                1, &kFilter, o.at<uint16_t>(0), nullptr, o.at<uint32_t>(1));
                    }),
            refusal("query_event_id_by_filter",
                    [](Outputs& o) {
                        return a_qeltvapi_event_query_event_id_by_filter(
                                1, &kFilter, o.at<uint16_t>(0), o.at<uint16_t>(0), nullptr);
                    }),
            refusal("get_general_info",
                    [](Outputs&) { return a_qeltvapi_event_get_general_info(1, 2, nullptr); }),
            refusal("get_general_info_64",
                    [](Outputs&) { return a_qeltvapi_event_get_general_info_64(1, 2, nullptr); }),
            refusal("get_rating_list",
                    [](Outputs&) { return a_qeltvapi_event_get_rating_list(1, 2, nullptr, 3); }),
            refusal("get_content_identifier",
                    [](Outputs&) {
                        return a_qeltvapi_event_get_content_identifier(1, 2, nullptr, 3);
                    }),
            refusal("get_audio_comp_info",
                    [](Outputs&) {
                        return a_qeltvapi_event_get_audio_comp_info(1, 2, nullptr, 3);
                    }),
    };
    return t;
}

WIRE_TABLE_TESTS(EventWire, table())

TEST(EventWire, TakesEightEntriesAndNoFlagInAFilter) {
    ScriptedService& service = ready();
    QELTVAPI_EVENT_FILTER_T f = filter();
    f.flag = 0;
    f.count = 8;
    memcpy(f.list, counted(8, 0xa1).data(), 8);
    uint16_t num = 0;
    uint16_t id = 0;
    uint32_t word = 0;
    const Value sent =
            record(Bytes("\x22\x81\0\0", 4) + bytesOf(uint32_t{0x93445566}) + counted(16, 31) +
                   Bytes("\0\x08", 2) + counted(8, 0xa1) + Bytes("\xf7\0", 2))
                    .gap(2, 2)
                    .gap(35, 1);
    service.expect({i32(1), sent, u16(0)}, {u16(0), u16s({}), u32s({}), i32(5)});
    EXPECT_EQ(5, a_qeltvapi_event_query_event_id_by_filter(1, &f, &num, &id, &word));
}

TEST(EventWire, BoundsTheIdsByTheAnswersNumberNotByTheCapacityThatWasSent) {
    ScriptedService& service = ready();
    Debug debug(true);
    uint16_t num = 1;
    uint16_t ids[5] = {9, 9, 9, 9, 9};
    service.expect({i32(1), i64(2), i64(3), u16(1)}, {u16(3), u16s({21, 22, 23, 24}), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_event_query_event_id_by_range(1, 2, 3, &num, ids));
    EXPECT_EQ(3, num);
    EXPECT_EQ(bytesOf<uint16_t>({21, 22, 23, 9, 9}), bytesOf(ids));
    const std::string head = "<a_qeltvapi_event_query_event_id_by_range:{n}> ";
    expectLog(kTag, {head + "a_qeltvapi_event_query_event_id_by_range", head + "event_id_num = 3\n",
                     head + "event_id[0] = 21\n", head + "event_id[1] = 22\n",
                     head + "event_id[2] = 23\n"});
}

TEST(EventWire, ReadsTheWindowsTimesWithoutItsChannelsAndWithoutEachOther) {
    ScriptedService& service = ready();
    Debug debug(true);
    uint32_t ids[2] = {9, 9};
    int64_t start = 0;
    int64_t end = 0;
    const Values answer = {u32s({51, 52}), i64(5), i64(6), i32(4)};

    service.expect({i32(2)}, answer);
    EXPECT_EQ(4, a_qeltvapi_event_get_active_win_list(nullptr, 2, &start, nullptr));
    EXPECT_EQ(5, start);
    const std::string name = "a_qeltvapi_event_get_active_win_list";
    expectLog(kTag, {"<" + name + ":{n}> " + name, "<operator():{n}> t_startTime = 5\n"});

    service.expect({i32(0)}, answer);
    EXPECT_EQ(4, a_qeltvapi_event_get_active_win_list(ids, 0, nullptr, &end));
    EXPECT_EQ(6, end);
    EXPECT_EQ(9u, ids[0]);
    expectLog(kTag, {"<" + name + ":{n}> " + name, "<operator():{n}> t_endTime = 6\n"});
}

TEST(EventWire, RequestsTheFollowingEventForAFlagOfZero) {
    ScriptedService& service = ready();
    Debug debug(true);
    uint16_t id = 0;
    service.expect({i32(61), boolean(false)}, {u16(62), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_event_get_pf_event_id(61, &id, 0));
    const std::string name = "a_qeltvapi_event_get_pf_event_id";
    expectLog(kTag,
              {"<" + name + ":{n}> " + name, "<" + name + ":{n}> [next event] event_id[62] \n"});
}

TEST(EventWire, StoresAGroupBelowOneEntryAndTracesNone) {
    ScriptedService& service = ready();
    Debug debug(true);
    for (int len : {0, 7}) {
        char buffer[8] = {9, 9, 9, 9, 9, 9, 9, 9};
        service.expect({i32(1), i32(2), i32(len)}, {bytes(counted(8)), i32(3)});
        EXPECT_EQ(3, a_qeltvapi_event_get_group_info(1, 2, buffer, len));
        const size_t stored = static_cast<size_t>(len);
        EXPECT_EQ(counted(stored) + Bytes(8 - stored, 9), Bytes(buffer, 8));
        expectLog(kTag, {"<a_qeltvapi_event_get_group_info:{n}> a_qeltvapi_event_get_group_info"});
    }
}

}  // namespace
