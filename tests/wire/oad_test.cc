#include "hw_qeltvapi_oad.h"

#include "wire.h"

using namespace wire;

namespace {

/** The functions without arguments. */
Row plain(const char* function, uint32_t ordinal, int (*call)()) {
    return Row(function, ordinal)
            .call([=](Outputs&) { return call(); })
            .answered({i32(-static_cast<int32_t>(ordinal))})
            .returns(-static_cast<int32_t>(ordinal))
            .direct<int32_t>();
}

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_oad)(client)";
    t.rows = {
            Row("a_qeltvapi_oad_get_scheduleinfo", 192)
                    .call([](Outputs& o) {
                        return a_qeltvapi_oad_get_scheduleinfo(o.at<char>(0), 64);
                    })
                    .answered({str("tonight"), i32(1)})
                    .returns(1)
                    .stores(0, Bytes("tonight")),
            // The one text that is cut to the caller's room.
            Row("a_qeltvapi_oad_get_datainfo", 193)
                    .call([](Outputs& o) {
                        return a_qeltvapi_oad_get_datainfo(0x80000002, o.at<char>(0), 4);
                    })
                    .sent({u32(0x80000002)})
                    .answered({str("0123456789"), i32(3)})
                    .returns(3)
                    .stores(0, Bytes("0123")),
            plain("a_qeltvapi_oad_stop_manual_detect", 194, a_qeltvapi_oad_stop_manual_detect),
            plain("a_qeltvapi_oad_start_download", 195, a_qeltvapi_oad_start_download),
            plain("a_qeltvapi_oad_stop_download", 196, a_qeltvapi_oad_stop_download),
            // Any number but 0 is true.
            Row("a_qeltvapi_oad_set_auto_download", 197)
                    .call([](Outputs&) { return a_qeltvapi_oad_set_auto_download(-2); })
                    .sent({boolean(true)})
                    .answered({i32(4)})
                    .returns(4)
                    .direct<int32_t>(),
            plain("a_qeltvapi_oad_start_flash", 198, a_qeltvapi_oad_start_flash),
            plain("a_qeltvapi_oad_accept_restart", 199, a_qeltvapi_oad_accept_restart),
            plain("a_qeltvapi_oad_remind_me_later", 200, a_qeltvapi_oad_remind_me_later),
            plain("a_qeltvapi_oad_accept_schedule", 201, a_qeltvapi_oad_accept_schedule),
            plain("a_qeltvapi_oad_start_jump_channel", 202, a_qeltvapi_oad_start_jump_channel),
            plain("a_qeltvapi_oad_get_power_on_status", 203, a_qeltvapi_oad_get_power_on_status),
            Row("a_qeltvapi_set_pkg_pathname", 204)
                    .call([](Outputs&) { return a_qeltvapi_set_pkg_pathname("/data/a.pkg"); })
                    .sent({str("/data/a.pkg")})
                    .answered({i32(5)})
                    .returns(5)
                    .direct<int32_t>(),
            plain("a_qeltvapi_oad_clear_version", 205, a_qeltvapi_oad_clear_version),
    };
    return t;
}

WIRE_TABLE_TESTS(OadWire, table())

TEST(OadWire, CutsTextsToTheBufferAndNeverTerminatesThem) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    for (uint32_t room : {0u, 2u, 3u, 4u}) {
        Bytes buffer(5, '-');
        service.expect({}, {str("abc"), i32(0)});
        EXPECT_EQ(0, a_qeltvapi_oad_get_scheduleinfo(buffer.data(), room));
        const Bytes stored = Bytes("abc").substr(0, room);
        EXPECT_EQ(stored + Bytes(5 - stored.size(), '-'), buffer) << "room " << room;
    }
}

}  // namespace
