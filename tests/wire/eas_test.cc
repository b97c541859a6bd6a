#include "hw_qeltvapi_eas.h"

#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_eas)(client)";
    const char* const status =
            "<{f}:{n}> {f} reuturn {r}, *pi4_eas_type:{i32@0}, "
            "*pi4_eas_channel_change:{i32@1}, *pi4_arg1:{i32@2}, *pi4_arg2:{i32@3}\n";
    t.rows = {
            // The exit trace reads the four outputs whether or not they were written.
            Row("a_qeltvapi_eas_get_status", 66)
                    .call([](Outputs& o) {
                        return a_qeltvapi_eas_get_status(o.at<int32_t>(0), o.at<int32_t>(1),
                                                         o.at<int32_t>(2), o.at<int32_t>(3));
                    })
                    .answered({i32(-1), i32(2), i32(-3), i32(4), i32(5)})
                    .returns(5)
                    .stores(0, int32_t{-1})
                    .stores(1, int32_t{2})
                    .stores(2, int32_t{-3})
                    .stores(3, int32_t{4})
                    .entry({"<{f}:{n}> {f}\n"})
                    .exit({status})
                    .exitWhenMissing({status}),
            Row("a_qeltvapi_eas_set_android_launch_status", 67)
                    .call([](Outputs&) { return a_qeltvapi_eas_set_android_launch_status(1); })
                    .sent({boolean(true)})
                    .answered({i32(6)})
                    .returns(6)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> {f}, b_enter:1\n"})
                    .exit({"<{f}:{n}> {f} reuturn {r}\n"}),
            Row("a_qeltvapi_eas_get_android_launch_status", 68)
                    .call([](Outputs&) { return a_qeltvapi_eas_get_android_launch_status(); })
                    .answered({boolean(true)})
                    .returns(1)
                    .missing(0)
                    .lost(0)
                    .direct<bool>()
                    .entry({"<{f}:{n}> {f}\n"})
                    .exit({"<{f}:{n}> {f} reuturn {r}\n"}),
            // Only 1 is true.
            Row("a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status", 69)
                    .call([](Outputs&) {
                        return a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(2);
                    })
                    .sent({boolean(false)})
                    .answered({i32(7)})
                    .returns(7)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> {f}, b_enter:2\n"})
                    .exit({"<{f}:{n}> {f} reuturn {r}\n"}),
    };
    return t;
}

WIRE_TABLE_TESTS(EasWire, table())

TEST(EasWire, SendsTrueForOneOnly) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    for (int32_t enter : {-1, 0, 1, 2}) {
        service.expect({boolean(enter == 1)}, {i32(0)});
        a_qeltvapi_eas_set_android_launch_status(enter);
        service.expect({boolean(enter == 1)}, {i32(0)});
        a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(enter);
    }
}

}  // namespace
