#include "hw_qeltvapi_apptv.h"
#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_apptv)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.missingAlways = {"<{f}:{n}> Get qeltvapi service fail. \n"};
    t.rows = {
            Row("a_qeltvapi_apptv_save_timestamp", 176)
                    .call([](Outputs&) { return a_qeltvapi_apptv_save_timestamp("boot done"); })
                    .sent({str("boot done")})
                    .answered({i32(3)})
                    .returns(3)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_set_tv_started", 177)
                    .call([](Outputs&) { return a_qeltvapi_apptv_set_tv_started(2); })
                    .sent({boolean(true)})
                    .answered({i32(4)})
                    .returns(4)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_unlock_service", 178)
                    .call([](Outputs&) { return a_qeltvapi_apptv_unlock_service("main_path"); })
                    .sent({str("main_path")})
                    .answered({i32(5)})
                    .returns(5)
                    .direct<int32_t>(),
            // Cut to 16 bits; only the second argument is a truth.
            Row("a_qeltvapi_apptv_get_matched_channel", 179)
                    .call([](Outputs&) {
                        return a_qeltvapi_apptv_get_matched_channel(40000, 2, 3, -4);
                    })
                    .sent({i16(-25536), boolean(true), i32(3), i32(-4)})
                    .answered({i32(6)})
                    .returns(6)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_nav_update_sys_status_by_win", 180)
                    .call([](Outputs&) {
                        return a_qeltvapi_apptv_nav_update_sys_status_by_win("sub_path", -11);
                    })
                    .sent({str("sub_path"), i32(-11)})
                    .answered({i32(7)})
                    .returns(7)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_update_sys_status", 181)
                    .call([](Outputs&) { return a_qeltvapi_apptv_update_sys_status(-12); })
                    .sent({i32(-12)})
                    .answered({i32(8)})
                    .returns(8)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_start_tv", 182)
                    .call([](Outputs&) { return a_qeltvapi_apptv_start_tv(); })
                    .answered({i32(9)})
                    .returns(9)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_stop_all", 183)
                    .call([](Outputs&) { return a_qeltvapi_apptv_stop_all(); })
                    .answered({i32(10)})
                    .returns(10)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_get_current_channel_svc_text_len", 184)
                    .call([](Outputs&) {
                        return a_qeltvapi_apptv_get_current_channel_svc_text_len();
                    })
                    .answered({i32(11)})
                    .returns(11)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_get_current_channel_svc_text", 185)
                    .call([](Outputs& o) {
                        return a_qeltvapi_apptv_get_current_channel_svc_text(o.at<char>(0), -13);
                    })
                    .sent({i32(-13)})
                    .answered({str(Bytes("news\0now", 8)), i32(12)})
                    .returns(12)
                    .stores(0, Bytes("news\0now", 8)),
            Row("a_qeltvapi_apptv_unblock_svc", 186)
                    .call([](Outputs&) { return a_qeltvapi_apptv_unblock_svc("main_path", 2); })
                    .sent({str("main_path"), boolean(true)})
                    .answered({i32(13)})
                    .returns(13)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_swap_tmp_unlock_info", 187)
                    .call([](Outputs&) { return a_qeltvapi_apptv_swap_tmp_unlock_info(-14); })
                    .sent({i32(-14)})
                    .answered({i32(14)})
                    .returns(14)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_set_video_mute", 188)
                    .call([](Outputs&) { return a_qeltvapi_apptv_set_video_mute("sub_path", 2); })
                    .sent({str("sub_path"), boolean(true)})
                    .answered({i32(15)})
                    .returns(15)
                    .direct<int32_t>(),
            Row("a_qeltvapi_apptv_get_capability_ex", 189)
                    .call([](Outputs& o) {
                        return a_qeltvapi_apptv_get_capability_ex(-16, o.at<uint32_t>(0));
                    })
                    .sent({i32(-16)})
                    .answered({u32(0x80000001), i32(16)})
                    .returns(16)
                    .stores(0, uint32_t{0x80000001}),
            Row("a_qeltvapi_apptv_get_video_mute", 190)
                    .call([](Outputs&) { return a_qeltvapi_apptv_get_video_mute("main_path"); })
                    .sent({str("main_path")})
                    .answered({boolean(true)})
                    .returns(1)
                    .missing(0)
                    .lost(0)
                    .direct<bool>()
                    .started({"<{f}:{n}> hardwre/hw_qeltvapi_apptv , {f}, ps_path:main_path"})
                    .exit({"<{f}:{n}> hardware/hw_qeltvapi_apptv , {f}, "
                           "ps_path:main_path,b_video_mute={r}"}),
    };
    return t;
}

WIRE_TABLE_TESTS(ApptvWire, table())

TEST(ApptvWire, SendsFalseForZero) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    service.expect({boolean(false)}, {i32(0)});
    a_qeltvapi_apptv_set_tv_started(0);
    service.expect({i16(1), boolean(false), i32(1), i32(1)}, {i32(0)});
    a_qeltvapi_apptv_get_matched_channel(0x10001, 0, 1, 1);
    service.expect({str("p"), boolean(false)}, {i32(0)});
    a_qeltvapi_apptv_unblock_svc("p", 0);
    service.expect({str(""), boolean(false)}, {i32(0)});
    a_qeltvapi_apptv_set_video_mute(nullptr, 0);
}

}  // namespace
