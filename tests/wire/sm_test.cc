#include "hw_sm.h"

#include "registered.h"
#include "wire.h"

using namespace wire;

namespace {

using Cmds = std::vector<qeltvapi_scc_cmd_t>;

qeltvapi_scc_cmd_t number(uint32_t code, uint32_t value) {
    qeltvapi_scc_cmd_t cmd{};
    cmd.code = code;
    cmd.value.number = value;
    return cmd;
}

qeltvapi_scc_cmd_t pointer(uint32_t code, const void* value) {
    qeltvapi_scc_cmd_t cmd{};
    cmd.code = code;
    cmd.value.pointer = value;
    return cmd;
}

const Bytes kBlock = counted(12, 40);

uint32_t sHeard = 0;

int hear(uint32_t comp, uint32_t, uintptr_t, uint32_t, uint32_t) {
    sHeard = comp;
    return 0;
}

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_sm)(client)";
    t.rows = {
            Row("c_scc_comp_open", 27)
                    .call([](Outputs& o) {
                        const Cmds cmds{number(0x80000000, 0), pointer(16, "main"),
                                        pointer(80, kBlock.data()), number(0, 0)};
                        return c_scc_comp_open(cmds.data(), o.at<uint32_t>(0));
                    })
                    .sent({u32(0), str("main"), u8(80), bytes(kBlock)})
                    .answered({u32(0x70000001), i32(-3)})
                    .returns(-3)
                    .stores(0, uint32_t{0x70000001})
                    .missing(0)
                    .lost(0)
                    .entry({"<_set_cmd_array:119> 80,16", "<_set_cmd_array:119> 80,80"})
                    .reply({"<operator():{n}> resuit 1879048193 -3"}),
            Row("c_scc_comp_open", 27)
                    .call([](Outputs& o) {
                        // No block for this type, though one is there.
                        const Cmds cmds{number(0x80000000, 1), pointer(16, "main"),
                                        pointer(80, kBlock.data()), number(0, 0)};
                        return c_scc_comp_open(cmds.data(), o.at<uint32_t>(0));
                    })
                    .sent({u32(1), str("main"), u8(0), bytes("")})
                    .answered({u32(9), i32(4)})
                    .returns(4)
                    .stores(0, uint32_t{9})
                    .missing(0)
                    .lost(0)
                    .reply({"<operator():{n}> resuit 9 4"}),
            Row("c_scc_comp_open", Row::kNoCall)
                    .call([](Outputs& o) {
                        const Cmds cmds{number(0x80000000, 3), pointer(16, "main"), number(0, 0)};
                        return c_scc_comp_open(cmds.data(), o.at<uint32_t>(0));
                    })
                    .returns(-2)
                    .replyAlways({"<{f}:{n}> -2"}),
            Row("c_scc_comp_close", 28)
                    .call([](Outputs&) { return c_scc_comp_close(0x70000002); })
                    .sent({u32(0x70000002)})
                    .answered({i32(5)})
                    .returns(5)
                    .direct<int32_t>(),
            Row("c_scc_vid_set_src_detect_nfy", 29)
                    .call([](Outputs&) {
                        return c_scc_vid_set_src_detect_nfy(
                                0x90000003, hear, reinterpret_cast<void*>(uintptr_t{0x81234567}));
                    })
                    .sent({u32(0x90000003), u64(0x81234567)})
                    .answered({i32(6)})
                    .returns(6)
                    .direct<int32_t>(),
    };
    return t;
}

WIRE_TABLE_TESTS(SmWire, table())

TEST(SmWire, ScansFromTheSecondCommandAndTakesTheLastOne) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    const Bytes other = counted(12, 200);
    const struct {
        Cmds cmds;
        Values sent;
    } cases[] = {
            // A name in the first command is not seen; its code makes the type 0.
            {{pointer(16, "first"), number(5, 6), number(0, 0)},
             {u32(0), str(""), u8(0), bytes("")}},
            // Nor is a type in a later one, nor an end in the first.
            {{number(0, 0), number(0x80000000, 1), pointer(16, "late"), number(0, 0)},
             {u32(0), str("late"), u8(0), bytes("")}},
            {{number(0x80000000, 0), pointer(16, "a"), pointer(80, other.data()), pointer(16, "b"),
              pointer(80, kBlock.data()), number(0, 0), pointer(16, "behind the end")},
             {u32(0), str("b"), u8(80), bytes(kBlock)}},
            {{number(0x80000000, 2), pointer(16, nullptr), number(0, 0)},
             {u32(2), str(""), u8(0), bytes("")}},
            {{number(0x80000000, 0), pointer(80, nullptr), number(0, 0)},
             {u32(0), str(""), u8(80), bytes("")}},
            // The block belongs to type 0 alone.
            {{number(0x80000000, 2), pointer(16, "x"), pointer(80, kBlock.data()), number(0, 0)},
             {u32(2), str("x"), u8(0), bytes("")}},
    };
    for (const auto& c : cases) {
        uint32_t handle = 0;
        service.expect(c.sent, {u32(3), i32(0)});
        EXPECT_EQ(0, c_scc_comp_open(c.cmds.data(), &handle));
        service.settle();
    }
}

TEST(SmWire, SetsTheListenerWhenTheRequestIsRefused) {
    ASSERT_TRUE(registered());
    ScriptedService& service = ScriptedService::instance();
    service.expect({u32(1), u64(0)}, {i32(-7)});
    EXPECT_EQ(-7, c_scc_vid_set_src_detect_nfy(1, hear, nullptr));
    EXPECT_EQ("", service.notify(2, {u32(44), u32(1), u64(2), u32(3), u32(4)}));
    EXPECT_EQ(44u, sHeard);
}

}  // namespace
