#include "hw_qeltvapi_av_mode.h"
#include "wire.h"

using namespace wire;

namespace {

Row current(const char* function, uint32_t ordinal, uint16_t (*get)()) {
    return Row(function, ordinal)
            .call([get](Outputs&) { return get(); })
            .answered({u16(0x8003)})
            .returns(0x8003)
            .missing(65535)
            .lost(65535)
            .direct<uint16_t>();
}

/** There is room for two; three come and are stored. */
Row all(const char* function, uint32_t ordinal, int (*get)(uint16_t*, uint32_t*)) {
    return Row(function, ordinal)
            .call([get](Outputs& o) { return get(o.at<uint16_t>(0), o.at<uint32_t>(1)); })
            .given(1, bytesOf(uint32_t{2}))
            .sent({u32(2)})
            .answered({u16s({0x8001, 0x8002, 0x8003}), i32(-4)})
            .returns(-4)
            .stores(0, bytesOf<uint16_t>({0x8001, 0x8002, 0x8003}))
            .stores(1, uint32_t{3})
            .exit({"<{f}:{n}> {f} result!number:{i32@1},ret:{r}"});
}

Row number(const char* function, uint32_t ordinal, int (*get)(uint32_t*)) {
    return Row(function, ordinal)
            .call([get](Outputs& o) { return get(o.at<uint32_t>(0)); })
            .answered({u32(17), i32(-5)})
            .returns(-5)
            .stores(0, uint32_t{17})
            .reply({"<operator():{n}> operator() result 17 -5"});
}

Table table() {
    const std::string inside = "<operator():{n}> Enter operator():{n}";
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_av_mode)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            current("a_qeltvapi_av_mode_get_picture_mode", 89, a_qeltvapi_av_mode_get_picture_mode),
            Row("a_qeltvapi_av_mode_set_picture_mode", 90)
                    .call([](Outputs&) { return a_qeltvapi_av_mode_set_picture_mode(0x18001); })
                    .sent({i32(0x18001)})
                    .answered({i32(3)})
                    .returns(3)
                    .direct<int32_t>(),
            all("a_qeltvapi_av_mode_get_all_picture_mode", 91,
                a_qeltvapi_av_mode_get_all_picture_mode),
            number("a_qeltvapi_av_mode_get_number_picture_mode", 92,
                   a_qeltvapi_av_mode_get_number_picture_mode),
            current("a_qeltvapi_av_mode_get_sound_effect", 93, a_qeltvapi_av_mode_get_sound_effect),
            Row("a_qeltvapi_av_mode_set_sound_effect", 94)
                    .call([](Outputs&) { return a_qeltvapi_av_mode_set_sound_effect(-6); })
                    .sent({i32(-6)})
                    .answered({i32(4)})
                    .returns(4)
                    .direct<int32_t>(),
            all("a_qeltvapi_av_mode_get_all_sound_effect", 95,
                a_qeltvapi_av_mode_get_all_sound_effect),
            number("a_qeltvapi_av_mode_get_number_sound_effect", 96,
                   a_qeltvapi_av_mode_get_number_sound_effect),
            Row("a_qeltvapi_audio_info_set_value", 157)
                    .call([](Outputs&) { return a_qeltvapi_audio_info_set_value(-11, -12); })
                    .sent({i32(-11), i32(-12)})
                    .answered({i32(11)})
                    .returns(11)
                    .direct<int32_t>(),
            Row("a_qeltvapi_audio_info_get_value", 158)
                    .call([](Outputs& o) {
                        return a_qeltvapi_audio_info_get_value(-13, o.at<uint32_t>(0));
                    })
                    .sent({i32(-13)})
                    .answered({u32(0x80000003), i32(12)})
                    .returns(12)
                    .stores(0, uint32_t{0x80000003})
                    .reply({inside}),
            Row("a_qeltvapi_audio_info_set_data", 159)
                    .call([](Outputs& o) {
                        return a_qeltvapi_audio_info_set_data(-14, o.at(0), 15);
                    })
                    .given(0, counted(15, 40))
                    .sent({i32(-14), bytes(counted(15, 40)), i32(15)})
                    .answered({i32(13)})
                    .returns(13)
                    .direct<int32_t>(),
            // The buffer is the request, then takes the answer whole.
            Row("a_qeltvapi_audio_info_get_data", 160)
                    .call([](Outputs& o) {
                        return a_qeltvapi_audio_info_get_data(-15, o.at(0), 16);
                    })
                    .given(0, counted(16, 50))
                    .sent({i32(-15), i32(16), bytes(counted(16, 50))})
                    .answered({bytes(counted(20)), i32(14)})
                    .returns(14)
                    .stores(0, counted(20))
                    .reply({inside}),
    };
    return t;
}

WIRE_TABLE_TESTS(AvModeWire, table())

TEST(AvModeWire, TakesABlockLongerThan64KiB) {
    ScriptedService& service = ready();
    Bytes block = counted(70000);
    service.expect({i32(1), bytes(block), i32(70000)}, {i32(2)});
    EXPECT_EQ(2, a_qeltvapi_audio_info_set_data(1, block.data(), 70000));
    service.expect({i32(3), i32(70000), bytes(block)}, {bytes(Bytes(70000, 'a')), i32(4)});
    EXPECT_EQ(4, a_qeltvapi_audio_info_get_data(3, block.data(), 70000));
    EXPECT_TRUE(Bytes(70000, 'a') == block);
}

}  // namespace
