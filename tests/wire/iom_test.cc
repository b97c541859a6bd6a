#include "hw_iom.h"

#include <hidlhost/ion_faults.h>

#include "inbox.h"
#include "registered.h"
#include "wire.h"

using namespace wire;

namespace {

constexpr char kTag[] = "(hw_iom)(client)";

void* tag() {
    return reinterpret_cast<void*>(uintptr_t{0x81234567});
}

qeltvapi_iom_uart_setting_t setting() {
    return {{0x0102030405060708, 0x1112131415161718}};
}

int ignore(uintptr_t, uintptr_t, const void*, uint32_t) {
    return 0;
}

Table table() {
    // What a shared buffer writes when it is made, and when it is given up.
    const char* made = "<QelTvApiShareMemory:51> 1, m_ion_fd:{n}, m_share_fd:{n}";
    const std::vector<std::string> released{"<commit:126> commit {n} {n}",
                                            "<commit:126> commit -1 -1",
                                            "<~QelTvApiShareMemory:91> ~"};
    const std::string names = "> (hw_iom)(client) {f}";
    Table t;
    t.interface = "IQelTvApi";
    t.tag = kTag;
    t.rows = {
            Row("c_iom_open_uart", 171)
                    .call([](Outputs& o) {
                        const qeltvapi_iom_uart_setting_t s = setting();
                        return c_iom_open_uart(8, 0x90000001, "uart0", &s, tag(), ignore,
                                               o.at<uint32_t>(0));
                    })
                    .sent({u32(8), u32(0x90000001), str("uart0"), memoryHolding(bytesOf(setting())),
                           u64(0x81234567)})
                    .answered({u32(0xa0000002), i32(3)})
                    .returns(3)
                    .stores(0, uint32_t{0xa0000002})
                    .entry({"<{f}:97" + names, made})
                    .exit(released)
                    .exitWhenMissing(released),
            Row("c_iom_open_uart", Row::kNoCall)
                    .call([](Outputs& o) {
                        const qeltvapi_iom_uart_setting_t s = setting();
                        return c_iom_open_uart(7, 1, "uart0", &s, tag(), ignore, o.at<uint32_t>(0));
                    })
                    .returns(-1)
                    .entry({"<{f}:97" + names}),
            Row("c_iom_close", 172)
                    .call([](Outputs&) { return c_iom_close(0xa0000003); })
                    .sent({u32(0xa0000003)})
                    .answered({i32(4)})
                    .returns(4)
                    .direct<int32_t>()
                    .entry({"<{f}:133" + names}),
            // The operation code is cut to 16 bits.
            Row("c_iom_get", 173)
                    .call([](Outputs& o) {
                        return c_iom_get(0xa0000004, 0x00058003, o.at(0), o.at<uint64_t>(1));
                    })
                    .given(1, bytesOf(uint64_t{40}))
                    .sent({u32(0xa0000004), u16(0x8003), memory(40, counted(40)), u64(40)})
                    .answered({u64(33), i32(5)})
                    .returns(5)
                    .stores(0, counted(33))
                    .stores(1, uint64_t{33})
                    // The lost reply has a test of its own: something is stored all the same.
                    .unchecked()
                    .entry({"<{f}:153" + names, made})
                    .exit(released)
                    .exitWhenMissing(released),
            Row("c_iom_set", 174)
                    .call([](Outputs&) {
                        return c_iom_set(0xa0000005, 0x00069004, counted(21, 5).data(), 21);
                    })
                    .sent({u32(0xa0000005), u16(0x9004), memoryHolding(counted(21, 5)), u64(21)})
                    .answered({i32(6)})
                    .returns(6)
                    .direct<int32_t>()
                    .entry({"<{f}:185" + names, made})
                    .exit(released)
                    .exitWhenMissing(released),
            Row("c_iom_output", 175)
                    .call([](Outputs&) {
                        const Bytes data = counted(11, 9);
                        const qeltvapi_iom_buffer_t b{11, data.data()};
                        return c_iom_output(0xa0000006, &b);
                    })
                    .sent({u32(0xa0000006), bytes(counted(11, 9))})
                    .answered({i32(7)})
                    .returns(7)
                    .direct<int32_t>()
                    .entry({"<{f}:210" + names}),
    };
    return t;
}

WIRE_TABLE_TESTS(IomWire, table())

struct Heard {
    uintptr_t tag;
    uintptr_t arg1;
    Bytes data;
};
Inbox<Heard> sHeard;

int hear(uintptr_t tag, uintptr_t arg1, const void* data, uint32_t len) {
    sHeard.put({tag, arg1, Bytes(static_cast<const char*>(data), len)});
    return 0;
}

TEST(IomWire, KeepsTheListenerForAWrongDeviceTypeAndReplacesItForTheRightOne) {
    ASSERT_TRUE(registered());
    ScriptedService& service = ScriptedService::instance();
    const qeltvapi_iom_uart_setting_t s = setting();
    uint32_t handle = 0;
    const auto notify = [&] {
        EXPECT_EQ("", service.notify(
                              30, {u64(0x300000001), u64(0x400000002), bytes(Bytes("\1\0\3", 3))}));
    };

    service.expect({u32(8), u32(1), str("uart"), memory(16), u64(0x81234567)}, {u32(9), i32(0)});
    EXPECT_EQ(0, c_iom_open_uart(8, 1, "uart", &s, tag(), hear, &handle));
    EXPECT_EQ(-1, c_iom_open_uart(7, 1, "uart", &s, tag(), ignore, &handle));
    notify();
    const std::vector<Heard> heard = sHeard.takeAll();
    ASSERT_EQ(1u, heard.size());
    EXPECT_EQ(static_cast<uintptr_t>(0x300000001), heard[0].tag);
    EXPECT_EQ(static_cast<uintptr_t>(0x400000002), heard[0].arg1);
    EXPECT_EQ(Bytes("\1\0\3", 3), heard[0].data);

    service.expect({u32(8), u32(1), str("uart"), memory(16), u64(0x81234567)}, {u32(9), i32(-5)});
    EXPECT_EQ(-5, c_iom_open_uart(8, 1, "uart", &s, tag(), nullptr, &handle));
    notify();
    EXPECT_TRUE(sHeard.empty()) << "a refused opening clears the listener all the same";
}

TEST(IomWire, BoundsAReadByTheServicesLengthAlone) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    char buffer[64];
    memset(buffer, '-', sizeof(buffer));

    // 16 bytes are asked for, 24 come.
    uint64_t len = 16;
    service.expect({u32(1), u16(2), memory(16, counted(24)), u64(16)}, {u64(24), i32(0)});
    EXPECT_EQ(0, c_iom_get(1, 2, buffer, &len));
    EXPECT_EQ(24u, len);
    EXPECT_EQ(counted(24) + "-", Bytes(buffer, 25));

    // Only the low half of the length counts here, the service sees it whole.
    Bytes large(70000, '-');
    len = 0x700000000 + 70000;
    service.expect({u32(1), u16(2), memory(70000, counted(70000)), u64(len)},
                   {u64(0x900000000 + 69999), i32(0)});
    EXPECT_EQ(0, c_iom_get(1, 2, large.data(), &len));
    EXPECT_EQ(0x900000000u + 69999, len);
    EXPECT_TRUE(counted(70000).substr(0, 69999) + "-" == large);
    service.expect({u32(1), u16(2), memoryHolding(large), u64(0x700000000 + 70000)}, {i32(3)});
    EXPECT_EQ(3, c_iom_set(1, 2, large.data(), 0x700000000 + 70000));
}

TEST(IomWire, StoresWhatTheBufferHoldsWhenTheReplyIsLost) {
    ScriptedService& service = ready();
    char buffer[] = "---------";
    uint64_t len = 5;
    service.expectAndLose({u32(1), u16(2), memory(5, "ahead"), u64(5)});
    EXPECT_EQ(-1, c_iom_get(1, 2, buffer, &len));
    EXPECT_EQ(5u, len);
    EXPECT_STREQ("ahead----", buffer);
    expectLog(kTag, {"<STATUS_CHECK:60> ."});
}

TEST(IomWire, SendsEmptyTransfersWithoutAMapping) {
    ScriptedService& service = ready();
    uint64_t len = 0;
    service.expect({u32(1), u16(2), memory(0), u64(0)}, {u64(0), i32(1)});
    EXPECT_EQ(1, c_iom_get(1, 2, nullptr, &len));
    service.expect({u32(1), u16(2), memory(0), u64(0)}, {i32(2)});
    EXPECT_EQ(2, c_iom_set(1, 2, nullptr, 0));
    service.expect({u32(1), bytes("")}, {i32(3)});
    const qeltvapi_iom_buffer_t b{0, "x"};
    EXPECT_EQ(3, c_iom_output(1, &b));
    EXPECT_TRUE(takeLog().empty()) << "an empty mapping fails and would be logged";
}

TEST(IomWire, MakesNoTransactionWithoutSharedMemory) {
    ScriptedService& service = ready();
    const qeltvapi_iom_uart_setting_t s = setting();
    uint32_t handle = 77;
    uint64_t len = 8;
    char buffer[8] = "keep";
    for (const auto& call : std::vector<std::function<int()>>{
                 [&] { return c_iom_open_uart(8, 1, "uart", &s, tag(), ignore, &handle); },
                 [&] { return c_iom_get(1, 2, buffer, &len); },
                 [&] { return c_iom_set(1, 2, buffer, 8); }}) {
        hidlhost::IonFault fault(hidlhost::IonStep::ALLOC, -12);
        takeLog();
        EXPECT_EQ(-1, call());
        expectLog(kTag, {"<QelTvApiShareMemory:39> ion_alloc failed:-12"});
    }
    EXPECT_TRUE(service.take().empty());
    EXPECT_EQ(77u, handle);
    EXPECT_EQ(8u, len);
    EXPECT_STREQ("keep", buffer);
}

}  // namespace
