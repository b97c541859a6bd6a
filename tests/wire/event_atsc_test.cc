#include "hw_qeltvapi_event_atsc.h"

#include <cstddef>

#include "wire.h"

using namespace wire;

namespace {

using Info = QELTVAPI_EVENT_ATSC_INFO_T;

/** A text field as strncpy() fills it. */
Bytes field(Bytes text, size_t size) {
    text.resize(size, '\0');
    return text;
}

/** An event as the service sends it, with these texts. */
Value event(const Bytes& first, const Bytes& second, const Bytes& third) {
    Bytes image(96, '\0');
    const auto put = [&](size_t offset, const Bytes& value) {
        image.replace(offset, value.size(), value);
    };
    put(0, bytesOf(uint16_t{0x8102}));
    put(4, bytesOf(uint32_t{0x83040506}));
    put(8, bytesOf(uint16_t{0x8708}));
    put(16, bytesOf(uint64_t{0x890a0b0c0d0e0f10}));
    put(24, bytesOf(uint64_t{0x9112131415161718}));
    put(32, bytesOf(uint8_t{0x99}));
    put(34, bytesOf(uint16_t{0x9a1b}));
    put(56, bytesOf(uint16_t{0x9c1d}));
    return record(image).text(40, first).text(64, second).text(80, third);
}

/** A row that reads an event without a place for the second text. */
Row infoRow(Row row) {
    return row.given(0, Bytes(sizeof(char*), '\0'), offsetof(Info, ps_at_292))
            .answered({event("Evening news", "not stored", "English"), i32(41)})
            .returns(41)
            .stores(0, uint16_t{0x8102}, 0)
            .stores(0, uint32_t{0x83040506}, 4)
            .stores(0, uint16_t{0x8708}, 8)
            .stores(0, uint64_t{0x890a0b0c0d0e0f10}, 12)
            .stores(0, uint64_t{0x9112131415161718}, 20)
            .stores(0, uint8_t{0x99}, 28)
            .stores(0, uint16_t{0x9a1b}, 30)
            .stores(0, field("Evening news", 256), 32)
            .stores(0, uint16_t{0x9c1d}, 288)
            .stores(0, field("English", 32), offsetof(Info, s_at_296));
}

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_event_atsc)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            Row("a_qeltvapi_event_atsc_load_events", 135)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_atsc_load_events(-1, INT64_C(-0x123456789a), 3,
                                                                 o.at<int32_t>(0));
                    })
                    .sent({i32(-1), i64(INT64_C(-0x123456789a)), i32(3)})
                    .answered({i32s({10, -11, 12}), i32(4)})
                    .returns(4)
                    .stores(0, bytesOf<int32_t>({10, -11, 12})),
            Row("a_qeltvapi_event_atsc_get_details_info", 136)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_atsc_get_details_info(5, o.at<char>(0), -6);
                    })
                    .sent({i32(5), i32(-6)})
                    .answered({str("A long story"), i32(7)})
                    .returns(7)
                    .stores(0, Bytes("A long story")),
            Row("a_qeltvapi_event_atsc_freeEvent", 137)
                    .call([](Outputs&) { return a_qeltvapi_event_atsc_freeEvent(-8); })
                    .sent({i32(-8)})
                    .answered({i32(-9)})
                    .returns(-9)
                    .direct<int32_t>(),
            Row("a_qeltvapi_event_atsc_load_events_by_EIT", 139)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_atsc_load_events_by_EIT(10, 11, o.at<uint32_t>(0));
                    })
                    .sent({i32(10), i32(11)})
                    .answered({u32(0x80000012), i32(13)})
                    .returns(13)
                    .stores(0, uint32_t{0x80000012}),
            Row("a_qeltvapi_event_atsc_get_event_number_in_EIT", 140)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_atsc_get_event_number_in_EIT(14, o.at<uint32_t>(0));
                    })
                    .sent({i32(14)})
                    .answered({u32(15), i32(16)})
                    .returns(16)
                    .stores(0, uint32_t{15}),
            // The room that is sent bounds nothing.
            Row("a_qeltvapi_event_atsc_get_detail_info_by_index", 141)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_atsc_get_detail_info_by_index(17, 18, o.at<char>(0),
                                                                              4);
                    })
                    .sent({i32(17), i32(18), i32(4)})
                    .answered({str("Longer than four"), i32(19)})
                    .returns(19)
                    .stores(0, Bytes("Longer than four")),
            // Two entries by the count, though the vector brings three.
            Row("a_qeltvapi_event_atsc_check_EIT_status", 142)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_atsc_check_EIT_status(20, o.at<uint32_t>(0), 21,
                                                                      o.at<int32_t>(1));
                    })
                    .sent({i32(20), i32(21)})
                    .answered({u32s({0x80000001, 2, 3}), u8(2), i32(-22), i32(23)})
                    .returns(23)
                    .stores(0, bytesOf<uint32_t>({0x80000001, 2}))
                    .stores(1, int32_t{-22}),
            Row("a_qeltvapi_event_atsc_getEvent_detail_len_by_index", 143)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_atsc_getEvent_detail_len_by_index(
                                24, 25, o.at<uint32_t>(0));
                    })
                    .sent({i32(24), i32(25)})
                    .answered({u32(26), i32(27)})
                    .returns(27)
                    .stores(0, uint32_t{26}),
            infoRow(Row("a_qeltvapi_event_atsc_getEvent_general", 144)
                            .call([](Outputs& o) {
                                return a_qeltvapi_event_atsc_getEvent_general(28, o.at<Info>(0));
                            })
                            .sent({i32(28)})),
            infoRow(Row("a_qeltvapi_event_atsc_getEvent_general_by_index", 145)
                            .call([](Outputs& o) {
                                return a_qeltvapi_event_atsc_getEvent_general_by_index(
                                        29, 30, o.at<Info>(0));
                            })
                            .sent({i32(29), i32(30)})),
            Row("a_qeltvapi_event_atsc_get_rating_map_by_index", 161)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_atsc_get_rating_map_by_index(
                                31, 32, o.at<QELTVAPI_RATING_MAP_T>(0));
                    })
                    .sent({i32(31), i32(32)})
                    .answered({record(Bytes(48, '\0'))
                                       .text(0, "TV-14")
                                       .text(16, "D-L")
                                       .text(32, "Drama"),
                               i32(33)})
                    .returns(33)
                    .stores(0, Bytes("TV-14"), 0)
                    .stores(0, Bytes("D-L"), 65)
                    .stores(0, Bytes("Drama"), 98),
            Row("a_qeltvapi_event_atsc_getEvent_general_64", Row::kNoCall)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_atsc_getEvent_general_64(1, o.at(0));
                    })
                    .entry({"<{f}:{n}> {f}"}),
            Row("a_qeltvapi_event_atsc_getEvent_general_by_index_64", Row::kNoCall)
                    .call([](Outputs& o) {
                        return a_qeltvapi_event_atsc_getEvent_general_by_index_64(1, 2, o.at(0));
                    })
                    .entry({"<{f}:{n}> {f}"}),
            Row("a_qeltvapi_event_atsc_check_block", Row::kNoCall)
                    .call([](Outputs&) { return a_qeltvapi_event_atsc_check_block(77); })
                    .entry({"<{f}:{n}> {f}"}),
    };
    return t;
}

WIRE_TABLE_TESTS(EventAtscWire, table())

TEST(EventAtscWire, LeavesATextUnterminatedWhenItFillsItsField) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    const Bytes first = counted(300), second(21, 's'), third(33, 't');
    char place[22];
    memset(place, '-', sizeof(place));
    Info info;
    memset(&info, '-', sizeof(info));
    info.ps_at_292 = place;

    service.expect({i32(1)}, {event(first, second, third), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_event_atsc_getEvent_general(1, &info));
    // The text stops at the zero that counted() brings as its 256th byte.
    EXPECT_EQ(first.substr(0, 255) + '\0', Bytes(info.s_at_32, 256));
    EXPECT_EQ(0x9c1d, info.ui2_at_288);
    EXPECT_EQ(Bytes(20, 's') + "--", Bytes(place, 22));
    EXPECT_EQ(place, info.ps_at_292);
    EXPECT_EQ(Bytes(32, 't'), Bytes(info.s_at_296, 32));

    service.expect({i32(1)}, {event(Bytes(257, 'f'), "short", ""), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_event_atsc_getEvent_general(1, &info));
    EXPECT_EQ(Bytes(256, 'f'), Bytes(info.s_at_32, 256));
    EXPECT_EQ(0x9c1d, info.ui2_at_288);
    EXPECT_EQ(field("short", 20) + "--", Bytes(place, 22));
}

TEST(EventAtscWire, LetsALongRatingTextRunIntoTheNext) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    QELTVAPI_RATING_MAP_T map;
    memset(&map, '-', sizeof(map));
    service.expect({i32(1), i32(2)},
                   {record(Bytes(48, '\0')).text(0, Bytes(70, 'a')).text(16, "bcd").text(32, "e"),
                    i32(0)});
    EXPECT_EQ(0, a_qeltvapi_event_atsc_get_rating_map_by_index(1, 2, &map));
    EXPECT_EQ(Bytes(65, 'a') + "bcdaa" + Bytes(28, '-') + "e-",
              Bytes(reinterpret_cast<const char*>(&map), 100));
}

}  // namespace
