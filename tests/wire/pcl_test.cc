#include "hw_pcl.h"
#include "wire.h"

using namespace wire;

namespace {

const uint32_t kCell = 0x04030201;

Row refused(const char* function, std::function<int()> call) {
    return Row(function, Row::kNoCall)
            .call([call](Outputs&) { return call(); })
            .returns(-1)
            .entry({"<{f}:{n}> {f}", "<{f}:{n}> {f}, invalid arg(null pointer) \n"});
}

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_pcl)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.missingTraced = {"<{f}:{n}> Get qeltvapi service fail. \n"};
    t.rows = {
            Row("c_pcl_get_wakeup_reason", 119)
                    .call([](Outputs& o) {
                        return c_pcl_get_wakeup_reason(o.at<uint32_t>(0), o.at(1));
                    })
                    .answered({u32(0x80000001), bytes(counted(7)), i32(3)})
                    .returns(3)
                    .stores(0, uint32_t{0x80000001})
                    .stores(1, counted(7)),
            Row("c_pcl_get_wakeup_reason", 119)
                    .call([](Outputs& o) {
                        return c_pcl_get_wakeup_reason(o.at<uint32_t>(0), nullptr);
                    })
                    .answered({u32(0x80000002), bytes(counted(7)), i32(4)})
                    .returns(4)
                    .stores(0, uint32_t{0x80000002}),
            refused("c_pcl_get_wakeup_reason",
                    [] { return c_pcl_get_wakeup_reason(nullptr, nullptr); }),
            Row("c_pcl_set_wakeup_reason", 120)
                    .call([](Outputs&) { return c_pcl_set_wakeup_reason(0x80000003, &kCell); })
                    .sent({u32(0x80000003), bytes(counted(4))})
                    .answered({i32(5)})
                    .returns(5)
                    .direct<int32_t>(),
            Row("c_pcl_get_power_down_reason", 121)
                    .call([](Outputs& o) {
                        return c_pcl_get_power_down_reason(o.at<uint32_t>(0), o.at(1));
                    })
                    .answered({u32(0x80000004), bytes(counted(9)), i32(6)})
                    .returns(6)
                    .stores(0, uint32_t{0x80000004})
                    .stores(1, counted(9)),
            refused("c_pcl_get_power_down_reason",
                    [] { return c_pcl_get_power_down_reason(nullptr, nullptr); }),
            Row("c_pcl_set_power_down_reason", 122)
                    .call([](Outputs&) { return c_pcl_set_power_down_reason(0x80000005, &kCell); })
                    .sent({u32(0x80000005), bytes(counted(4))})
                    .answered({i32(7)})
                    .returns(7)
                    .direct<int32_t>(),
            Row("c_pcl_set_power_down", 123)
                    .call([](Outputs&) { return c_pcl_set_power_down(); })
                    .answered({i32(8)})
                    .returns(8)
                    .direct<int32_t>(),
            Row("c_pcl_set_request_suspend", 124)
                    .call([](Outputs&) { return c_pcl_set_request_suspend(); })
                    .answered({i32(9)})
                    .returns(9)
                    .direct<int32_t>(),
            Row("c_pcl_set_request_powerdown_envent", 125)
                    .call([](Outputs&) { return c_pcl_set_request_powerdown_envent(); })
                    .answered({i32(10)})
                    .returns(10)
                    .direct<int32_t>(),
            Row("c_pcl_get_gpio", 126)
                    .call([](Outputs& o) {
                        return c_pcl_get_gpio(0x80000006, 0x80000007, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000006), u32(0x80000007)})
                    .answered({u32(0x80000008), i32(11)})
                    .returns(11)
                    .stores(0, uint32_t{0x80000008}),
            refused("c_pcl_get_gpio", [] { return c_pcl_get_gpio(1, 2, nullptr); }),
            Row("c_pcl_set_gpio", 127)
                    .call([](Outputs&) { return c_pcl_set_gpio(0x80000009, 0x8000000a); })
                    .sent({u32(0x80000009), u32(0x8000000a)})
                    .answered({i32(12)})
                    .returns(12)
                    .direct<int32_t>(),
            Row("c_pcl_set_gpio_monitor_ctrl_ex", 128)
                    .call([](Outputs&) {
                        const qeltvapi_pcl_gpio_monitor_ctrl_t ctrl{0x8000000b, 5};
                        return c_pcl_set_gpio_monitor_ctrl_ex(&ctrl);
                    })
                    .sent({u32(0x8000000b), boolean(true)})
                    .answered({i32(13)})
                    .returns(13)
                    .direct<int32_t>(),
            Row("c_pcl_set_gpio_monitor_ctrl_ex", 128)
                    .call([](Outputs&) {
                        const qeltvapi_pcl_gpio_monitor_ctrl_t ctrl{1, 0};
                        return c_pcl_set_gpio_monitor_ctrl_ex(&ctrl);
                    })
                    .sent({u32(1), boolean(false)})
                    .answered({i32(14)})
                    .returns(14)
                    .direct<int32_t>(),
            Row("c_pcl_set_gpio_monitor_ctrl_ex", Row::kNoCall)
                    .call([](Outputs&) { return c_pcl_set_gpio_monitor_ctrl_ex(nullptr); })
                    .returns(-1)
                    .entry({"<{f}:{n}> {f}"})
                    .replyAlways({"<{f}:{n}> Invalid arg(null pointer).\n"}),
            Row("c_pcl_get_wakeup_irkey", 129)
                    .call([](Outputs& o) {
                        return c_pcl_get_wakeup_irkey(o.at<qeltvapi_pcl_wakeup_key_t>(0));
                    })
                    .answered({record(bytesOf({0x8000000cu, 0x8000000du})), i32(14)})
                    .returns(14)
                    .stores(0, bytesOf({0x8000000cu, 0x8000000du})),
            refused("c_pcl_get_wakeup_irkey", [] { return c_pcl_get_wakeup_irkey(nullptr); }),
            Row("c_pcl_get_wakeup_setup", 130)
                    .call([](Outputs& o) { return c_pcl_get_wakeup_setup(o.at<uint32_t>(0)); })
                    .answered({u32(0x8000000e), i32(15)})
                    .returns(15)
                    .stores(0, uint32_t{0x8000000e}),
            refused("c_pcl_get_wakeup_setup", [] { return c_pcl_get_wakeup_setup(nullptr); }),
            Row("c_pcl_set_wakeup_setup", 131)
                    .call([](Outputs&) { return c_pcl_set_wakeup_setup(0x8000000f); })
                    .sent({u32(0x8000000f)})
                    .answered({i32(16)})
                    .returns(16)
                    .direct<int32_t>(),
            Row("a_qeltvapi_pcl_get_wakeup_reason", 132)
                    .call([](Outputs& o) {
                        return a_qeltvapi_pcl_get_wakeup_reason(o.at<uint32_t>(0), o.at(1));
                    })
                    .answered({u32(0x80000010), bytes(counted(11)), i32(17)})
                    .returns(17)
                    .stores(0, uint32_t{0x80000010})
                    .stores(1, counted(11)),
            refused("a_qeltvapi_pcl_get_wakeup_reason",
                    [] { return a_qeltvapi_pcl_get_wakeup_reason(nullptr, nullptr); }),
            Row("a_qeltvapi_pcl_get_wakeup_setup", 133)
                    .call([](Outputs& o) {
                        return a_qeltvapi_pcl_get_wakeup_setup(o.at<uint32_t>(0));
                    })
                    .answered({u32(0x80000011), i32(18)})
                    .returns(18)
                    .stores(0, uint32_t{0x80000011}),
            refused("a_qeltvapi_pcl_get_wakeup_setup",
                    [] { return a_qeltvapi_pcl_get_wakeup_setup(nullptr); }),
            Row("a_qeltvapi_pcl_set_wakeup_setup", 134)
                    .call([](Outputs&) { return a_qeltvapi_pcl_set_wakeup_setup(0x80000012); })
                    .sent({u32(0x80000012)})
                    .answered({i32(19)})
                    .returns(19)
                    .direct<int32_t>(),
    };
    return t;
}

WIRE_TABLE_TESTS(PclWire, table())

TEST(PclWire, SendsAnEmptyVectorWhenAReasonHasNoData) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    uint32_t reason = 0;
    service.expect({}, {u32(5), bytes(""), i32(0)});
    EXPECT_EQ(0, c_pcl_get_power_down_reason(&reason, nullptr));
    service.expect({}, {u32(6), bytes(""), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_pcl_get_wakeup_reason(&reason, nullptr));
    EXPECT_EQ(6u, reason);
    service.expect({u32(7), bytes("")}, {i32(1)});
    EXPECT_EQ(1, c_pcl_set_wakeup_reason(7, nullptr));
    service.expect({u32(8), bytes("")}, {i32(2)});
    EXPECT_EQ(2, c_pcl_set_power_down_reason(8, nullptr));
}

}  // namespace
