#include "hw_qeltvapi_rating.h"

#include "wire.h"

using namespace wire;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_rating)(client)";

Bytes padded(Bytes text, size_t size) {
    text.resize(size);
    return text;
}

Row get(const std::string& name, uint32_t ordinal, int (*function)(uint8_t*)) {
    const uint8_t value = static_cast<uint8_t>(200 + ordinal);
    const int code = 30 + static_cast<int>(ordinal);
    return Row("a_qeltvapi_rating_" + name, ordinal)
            .call([=](Outputs& o) { return function(o.at<uint8_t>(0)); })
            .answered({u8(value), i32(code)})
            .returns(code)
            .stores(0, value);
}

Row set(const std::string& name, uint32_t ordinal, int (*function)(int), int value, Value sent) {
    const int code = -30 - static_cast<int>(ordinal);
    return Row("a_qeltvapi_rating_" + name, ordinal)
            .call([=](Outputs&) { return function(value); })
            .sent({std::move(sent)})
            .answered({i32(code)})
            .returns(code)
            .direct<int32_t>();
}

/** An 8-bit setting; what is above the low byte does not cross. */
Row set(const std::string& name, uint32_t ordinal, int (*function)(int)) {
    const uint8_t value = static_cast<uint8_t>(0x80 + ordinal);
    return set(name, ordinal, function, 0x7100 + value, u8(value));
}

/** A function that refuses a null pointer, with the service and without. */
Row refusal(const std::string& name, Row::CallFn call) {
    return Row("a_qeltvapi_rating_" + name, Row::kNoCall)
            .call(call)
            .returns(-1)
            .replyAlways({"<{f}:{n}> Invalid arg(null pointer).\n"});
}

Value map(Bytes first, Bytes second, Bytes third) {
    return record(Bytes(48, '\0')).text(0, first).text(16, second).text(32, third);
}

/** A rating-list node as it crosses. */
Value node(uint16_t id, uint16_t count, Bytes name, Bytes values) {
    return record(bytesOf<uint16_t>({id, count}) + Bytes(36, '\0'))
            .gap(4, 4)
            .text(8, std::move(name))
            .vec(24, std::move(values));
}

const uint8_t kValues[] = {0xf1, 2, 3};

Table table() {
    Table t;
    t.interface = "IQelTvApiRating";
    t.tag = kTag;
    t.lost = 0;
    t.missingTraced = {"<{f}:{n}> Get rating service fail.\n"};
    t.rows = {
            // The bytes as they come, not only 0 and 1.
            Row("a_qeltvapi_rating_get_us_tv_setting_info", 0)
                    .call([](Outputs& o) {
                        return a_qeltvapi_rating_get_us_tv_setting_info(
                                o.at<QELTVAPI_RATING_US_TV_SETTING_T>(0));
                    })
                    .answered({record(counted(20, 5)), i32(51)})
                    .returns(51)
                    .stores(0, counted(20, 5)),
            Row("a_qeltvapi_rating_set_us_tv_setting_info", 1)
                    .call([](Outputs&) {
                        QELTVAPI_RATING_US_TV_SETTING_T in{};
                        in.block[1] = 1;
                        in.block[2] = 2;
                        in.block[15] = 255;
                        in.extra[0] = 3;
                        in.extra[3] = 4;
                        return a_qeltvapi_rating_set_us_tv_setting_info(&in);
                    })
                    .sent({record(Bytes("\0\1\1\0\0\0\0\0\0\0\0\0\0\0\0\1\1\0\0\1", 20))})
                    .answered({i32(52)})
                    .returns(52)
                    .direct<int32_t>(),
            get("get_us_movie_setting_info", 2, a_qeltvapi_rating_get_us_movie_setting_info),
            set("set_us_movie_setting_info", 3, a_qeltvapi_rating_set_us_movie_setting_info),
            get("get_can_eng_setting_info", 4, a_qeltvapi_rating_get_can_eng_setting_info),
            set("set_can_eng_setting_info", 5, a_qeltvapi_rating_set_can_eng_setting_info),
            get("get_can_fre_setting_info", 6, a_qeltvapi_rating_get_can_fre_setting_info),
            set("set_can_fre_setting_info", 7, a_qeltvapi_rating_set_can_fre_setting_info),
            get("get_block_unrated", 8, a_qeltvapi_rating_get_block_unrated),
            set("set_block_unrated", 9, a_qeltvapi_rating_set_block_unrated, 0x200, boolean(true)),
            get("get_enable", 10, a_qeltvapi_rating_get_enable),
            get("get_us_tv_group_by_child", 11, a_qeltvapi_rating_get_us_tv_group_by_child),
            set("set_enable", 12, a_qeltvapi_rating_set_enable),
            get("get_op_vchip_avail", 13, a_qeltvapi_rating_get_op_vchip_avail),
            Row("a_qeltvapi_rating_get_op_vchip_info", 14)
                    .call([](Outputs& o) { return a_qeltvapi_rating_get_op_vchip_info(o.at(0)); })
                    .answered({bytes(counted(64)), i32(53)})
                    .returns(53)
                    .stores(0, counted(64)),
            // The first line is written before the call, so its lost reply has a test of its own.
            Row("a_qeltvapi_rating_get_op_vchip_setting_info", 15)
                    .call([](Outputs& o) {
                        return a_qeltvapi_rating_get_op_vchip_setting_info(
                                o.at<QELTVAPI_RATING_OPEN_VCHIP_SETTING_T>(0));
                    })
                    .given(0, Bytes("\xf1\xf2\xf3", 3))
                    .sent({u8(0xf1), u8(0xf2), u8(0xf3)})
                    .answered({record(counted(258, 9)), i32(57)})
                    .returns(57)
                    .stores(0, counted(258, 9))
                    .replyAlways({"<{f}:{n}> GET OPEN VCHIP setting BEF! [241, 242]",
                                  "<operator():{n}> GET OPEN VCHIP setting AFT! [9, 10]"})
                    .unchecked(),
            Row("a_qeltvapi_rating_set_op_vchip_setting_info", 16)
                    .call([](Outputs&) {
                        QELTVAPI_RATING_OPEN_VCHIP_SETTING_T in;
                        memcpy(&in, counted(258, 7).data(), 258);
                        return a_qeltvapi_rating_set_op_vchip_setting_info(&in);
                    })
                    .sent({record(counted(258, 7))})
                    .answered({i32(54)})
                    .returns(54)
                    .direct<int32_t>(),
            get("get_isdb_content_setting_info", 17,
                a_qeltvapi_rating_get_isdb_content_setting_info),
            set("set_isdb_content_setting_info", 18,
                a_qeltvapi_rating_set_isdb_content_setting_info),
            get("get_isdb_age_setting_info", 19, a_qeltvapi_rating_get_isdb_age_setting_info),
            set("set_isdb_age_setting_info", 20, a_qeltvapi_rating_set_isdb_age_setting_info),
            get("get_dvb_age_setting_info", 21, a_qeltvapi_rating_get_dvb_age_setting_info),
            set("set_dvb_age_setting_info", 22, a_qeltvapi_rating_set_dvb_age_setting_info),
            // A node without values has its count all the same.
            Row("a_qeltvapi_rating_convert_rating_info", 23)
                    .call([](Outputs& o) {
                        const QELTVAPI_ATSC_RATING_LIST_T third = {0xf103, 0, "", kValues, nullptr};
                        const QELTVAPI_ATSC_RATING_LIST_T second = {102, 2, "MPAA", nullptr,
                                                                    &third};
                        const QELTVAPI_ATSC_RATING_LIST_T head = {101, 3, "TV", kValues, &second};
                        return a_qeltvapi_rating_convert_rating_info(
                                &head, o.at<QELTVAPI_RATING_MAP_T>(0));
                    })
                    .sent({records({node(101, 3, "TV", "\xf1\x02\x03"), node(102, 2, "MPAA", ""),
                                    node(0xf103, 0, "", "")})})
                    .answered({map("PG", "L", Bytes(300, 'x')), i32(55)})
                    .returns(55)
                    .stores(0, padded("PG", 64))
                    .stores(0, padded("L", 32), 65)
                    .stores(0, Bytes(255, 'x'), 98),
            set("atsc_storage", 24, a_qeltvapi_rating_atsc_storage, 2, boolean(true)),
            Row("a_qeltvapi_rating_get_crnt_rating_info", 25)
                    .call([](Outputs& o) {
                        return a_qeltvapi_rating_get_crnt_rating_info(
                                o.at<QELTVAPI_RATING_MAP_T>(0));
                    })
                    .answered({map(Bytes(70, 'a'), "second", "third"), i32(56)})
                    .returns(56)
                    .stores(0, Bytes(64, 'a'))
                    .stores(0, padded("second", 32), 65)
                    .stores(0, padded("third", 255), 98),
            refusal("get_us_tv_setting_info",
                    [](Outputs&) { return a_qeltvapi_rating_get_us_tv_setting_info(nullptr); }),
            refusal("set_us_tv_setting_info",
                    [](Outputs&) { return a_qeltvapi_rating_set_us_tv_setting_info(nullptr); }),
            refusal("get_us_movie_setting_info",
                    [](Outputs&) { return a_qeltvapi_rating_get_us_movie_setting_info(nullptr); }),
            refusal("get_can_eng_setting_info",
                    [](Outputs&) { return a_qeltvapi_rating_get_can_eng_setting_info(nullptr); }),
            refusal("get_can_fre_setting_info",
                    [](Outputs&) { return a_qeltvapi_rating_get_can_fre_setting_info(nullptr); }),
            refusal("get_block_unrated",
                    [](Outputs&) { return a_qeltvapi_rating_get_block_unrated(nullptr); }),
            refusal("get_enable", [](Outputs&) { return a_qeltvapi_rating_get_enable(nullptr); }),
            refusal("get_us_tv_group_by_child",
                    [](Outputs&) { return a_qeltvapi_rating_get_us_tv_group_by_child(nullptr); }),
            refusal("get_op_vchip_avail",
                    [](Outputs&) { return a_qeltvapi_rating_get_op_vchip_avail(nullptr); }),
            refusal("get_op_vchip_info",
                    [](Outputs&) { return a_qeltvapi_rating_get_op_vchip_info(nullptr); }),
            refusal("get_op_vchip_setting_info",
                    [](Outputs&) { return a_qeltvapi_rating_get_op_vchip_setting_info(nullptr); }),
            refusal("set_op_vchip_setting_info",
                    [](Outputs&) { return a_qeltvapi_rating_set_op_vchip_setting_info(nullptr); }),
            refusal("get_isdb_content_setting_info",
                    [](Outputs&) {
                        return a_qeltvapi_rating_get_isdb_content_setting_info(nullptr);
                    }),
            refusal("get_isdb_age_setting_info",
                    [](Outputs&) { return a_qeltvapi_rating_get_isdb_age_setting_info(nullptr); }),
            refusal("get_dvb_age_setting_info",
                    [](Outputs&) { return a_qeltvapi_rating_get_dvb_age_setting_info(nullptr); }),
            // The one refusal that is only traced.
            refusal("convert_rating_info",
                    [](Outputs& o) {
                        return a_qeltvapi_rating_convert_rating_info(
                                nullptr, o.at<QELTVAPI_RATING_MAP_T>(0));
                    })
                    .replyAlways({})
                    .reply({"<{f}:{n}> Invalid arg(null point)!!!!\n"}),
            refusal("convert_rating_info",
                    [](Outputs&) {
                        const QELTVAPI_ATSC_RATING_LIST_T node{};
                        return a_qeltvapi_rating_convert_rating_info(&node, nullptr);
                    })
                    .replyAlways({})
                    .reply({"<{f}:{n}> Invalid arg(null point)!!!!\n"}),
    };
    return t;
}

WIRE_TABLE_TESTS(RatingWire, table())

TEST(RatingWire, StoresNoOpenVchipTableOfAnotherSize) {
    ScriptedService& service = ready();
    for (size_t size : {size_t{63}, size_t{65}, size_t{0}}) {
        Bytes out(80, 'o');
        service.expect({}, {bytes(counted(size)), i32(6)});
        EXPECT_EQ(6, a_qeltvapi_rating_get_op_vchip_info(out.data()));
        EXPECT_EQ(Bytes(80, 'o'), out);
        expectLog(kTag, {"<operator():{n}> GET OPEN VCHIP Error! 64 != " + std::to_string(size)});
    }
}

TEST(RatingWire, LeavesTheOpenVchipSettingsAloneWhenTheReplyIsLost) {
    ScriptedService& service = ready();
    QELTVAPI_RATING_OPEN_VCHIP_SETTING_T io;
    memcpy(&io, counted(258, 3).data(), 258);
    service.expectAndLose({u8(3), u8(4), u8(5)});
    EXPECT_EQ(0, a_qeltvapi_rating_get_op_vchip_setting_info(&io));
    EXPECT_EQ(counted(258, 3), bytesOf(io));
    expectLog(kTag, {"<a_qeltvapi_rating_get_op_vchip_setting_info:{n}> "
                     "GET OPEN VCHIP setting BEF! [3, 4]",
                     "<STATUS_CHECK:60> ."});
}

TEST(RatingWire, SendsFalseForZeroOnly) {
    ScriptedService& service = ready();
    service.expect({boolean(false)}, {i32(0)});
    EXPECT_EQ(0, a_qeltvapi_rating_set_block_unrated(0));
    service.expect({boolean(false)}, {i32(0)});
    EXPECT_EQ(0, a_qeltvapi_rating_atsc_storage(0));
}

}  // namespace
