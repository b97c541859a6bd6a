#include "hw_qeltvapi_multiview.h"

#include "hw_qeltvapi_pop.h"
#include "wire.h"

using namespace wire;

namespace {

QELTVAPI_MULTIVIEW_REGION_T region() {
    QELTVAPI_MULTIVIEW_REGION_T r;
    memcpy(&r, counted(sizeof(r)).data(), sizeof(r));
    return r;
}

Row plain(const std::string& name, uint32_t ordinal, Row::CallFn call, Values sent, int32_t code) {
    return Row("a_qeltvapi_multiview_" + name, ordinal)
            .call(call)
            .sent(std::move(sent))
            .answered({i32(code)})
            .returns(code)
            .direct<int32_t>();
}

Table table() {
    Table t;
    t.interface = "IQelTvApiMultiview";
    t.tag = "(hw_qeltvapi_multiview)(client)";
    t.lost = 0;
    // The rating family's words.
    t.missingAlways = {"<{f}:{n}> Get rating service fail.\n"};
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            plain(
                    "getPOPTunerFocus", 0,
                    [](Outputs&) { return a_qeltvapi_multiview_getPOPTunerFocus(); }, {}, 31),
            plain(
                    "setAudioFocusbySourceid", 1,
                    [](Outputs&) { return a_qeltvapi_multiview_setAudioFocusbySourceid(-11); },
                    {i32(-11)}, 32),
            plain(
                    "setAudioFocus", 2,
                    [](Outputs&) { return a_qeltvapi_multiview_setAudioFocus("sub"); },
                    {str("sub")}, -33),
            plain(
                    "getAudioFocus", 3,
                    [](Outputs&) { return a_qeltvapi_multiview_getAudioFocus(); }, {}, 34),
            plain(
                    "setNewTvMode", 4,
                    [](Outputs&) { return a_qeltvapi_multiview_setNewTvMode(-12); }, {i32(-12)},
                    35),
            Row("a_qeltvapi_multiview_is_source_available_bysourceidandpath", 5)
                    .call([](Outputs& o) {
                        return a_qeltvapi_multiview_is_source_available_bysourceidandpath(
                                -13, "main", o.at<uint8_t>(0));
                    })
                    .sent({i32(-13), str("main")})
                    .answered({u8(201), i32(36)})
                    .returns(36)
                    .stores(0, uint8_t{201}),
            plain(
                    "startMainVideo", 6,
                    [](Outputs&) {
                        const QELTVAPI_MULTIVIEW_REGION_T r = region();
                        return a_qeltvapi_multiview_startMainVideo(-14, &r);
                    },
                    {i32(-14), record(counted(16))}, 37),
            plain(
                    "startSubVideo", 7,
                    [](Outputs&) {
                        const QELTVAPI_MULTIVIEW_REGION_T r = region();
                        return a_qeltvapi_multiview_startSubVideo(15, &r);
                    },
                    {i32(15), record(counted(16))}, 38),
            plain(
                    "stopMainVideo", 8,
                    [](Outputs&) { return a_qeltvapi_multiview_stopMainVideo(); }, {}, 39),
            plain(
                    "stopSubVideo", 9, [](Outputs&) { return a_qeltvapi_multiview_stopSubVideo(); },
                    {}, 40),
            plain(
                    "startVideoWithoutVideoPath", 10,
                    [](Outputs&) {
                        return a_qeltvapi_multiview_startVideoWithoutVideoPath(-16, "sub");
                    },
                    {i32(-16), str("sub")}, 41),
            plain(
                    "stopVideoWithoutVideoPath", 11,
                    [](Outputs&) { return a_qeltvapi_multiview_stopVideoWithoutVideoPath("main"); },
                    {str("main")}, 42),
            plain(
                    "getVideoResource", 12,
                    [](Outputs&) { return a_qeltvapi_multiview_getVideoResource("sub"); },
                    {str("sub")}, 43),
            plain(
                    "setChgSource", 13,
                    [](Outputs&) { return a_qeltvapi_multiview_setChgSource(2); }, {boolean(true)},
                    44),
            Row("a_qeltvapi_multiview_getChgSource", 14)
                    .call([](Outputs&) { return a_qeltvapi_multiview_getChgSource(); })
                    .answered({u8(202)})
                    .returns(202)
                    .missing(0)
                    .direct<uint8_t>(),
            plain(
                    "get_video_state", 15,
                    [](Outputs&) { return a_qeltvapi_multiview_get_video_state("main"); },
                    {str("main")}, 45),
            plain(
                    "set_video_state", 16,
                    [](Outputs&) { return a_qeltvapi_multiview_set_video_state("sub", 2); },
                    {str("sub"), boolean(true)}, 46),
            plain(
                    "only_chg_focus", 17,
                    [](Outputs&) { return a_qeltvapi_multiview_only_chg_focus("main"); },
                    {str("main")}, 47),
    };
    return t;
}

WIRE_TABLE_TESTS(MultiviewWire, table())

TEST(MultiviewWire, SendsFalseForZeroAndTheEmptyPathForNull) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    service.expect({boolean(false)}, {i32(0)});
    a_qeltvapi_multiview_setChgSource(0);
    service.expect({str(""), boolean(false)}, {i32(0)});
    a_qeltvapi_multiview_set_video_state(nullptr, 0);
}

Row inert(const std::string& name, int (*function)(...)) {
    return Row("a_qeltvapi_pop_" + name, Row::kNoCall)
            .call([=](Outputs&) { return function(1, "any", 2); })
            .returns(0)
            .entry({"<{f}:{n}> {f}"});
}

TEST(PopWire, ReturnsZeroWithoutATransactionForTheEarlierPictureInPicture) {
    Table t;
    t.tag = "(hw_qeltvapi_pop)(client)";
    t.rows = {
            inert("enter_next_tv_mode", a_qeltvapi_pop_enter_next_tv_mode),
            inert("swap_win", a_qeltvapi_pop_swap_win),
            inert("switch_audio_focus", a_qeltvapi_pop_switch_audio_focus),
            inert("goto_next_win_size", a_qeltvapi_pop_goto_next_win_size),
            inert("goto_next_win_pos", a_qeltvapi_pop_goto_next_win_pos),
            inert("get_focus_win_info", a_qeltvapi_pop_get_focus_win_info),
            inert("get_focus_id", a_qeltvapi_pop_get_focus_id),
    };
    runAnswered(t);
}

}  // namespace
