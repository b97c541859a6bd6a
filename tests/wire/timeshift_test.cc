#include "hw_qeltvapi_timeshift.h"

#include <chrono>
#include <thread>

#include "wire.h"

using namespace wire;

namespace {

const std::string kReturn = "<{f}:{n}> {f} return {r} \n";

int32_t codeOf(uint32_t ordinal) {
    return -70 - static_cast<int32_t>(ordinal);
}

Row unchecked(const std::string& name, uint32_t ordinal, int (*function)()) {
    return Row("a_qeltvapi_timeshift_" + name, ordinal)
            .call([=](Outputs&) { return function(); })
            .answered({i32(codeOf(ordinal))})
            .returns(codeOf(ordinal))
            .unchecked()
            .entry({"<{f}:{n}> {f}"})
            .exit({kReturn});
}

Row position(const std::string& name, uint32_t ordinal, int64_t (*function)()) {
    const int64_t value = -0x800000000 - static_cast<int64_t>(ordinal);
    return Row("a_qeltvapi_timeshift_" + name, ordinal)
            .call([=](Outputs&) { return function(); })
            .answered({i64(value)})
            .returns(value)
            .unchecked()
            .entry({"<{f}:{n}> {f}"});
}

Row checked(const std::string& name, uint32_t ordinal, Row::CallFn call, Values sent) {
    return Row("a_qeltvapi_timeshift_" + name, ordinal)
            .call(call)
            .sent(std::move(sent))
            .answered({i32(codeOf(ordinal))})
            .returns(codeOf(ordinal))
            .direct<int32_t>()
            .entry({"<{f}:{n}> {f}"})
            .exit({kReturn});
}

Table table() {
    Table t;
    t.interface = "IQelTvApiTimeshift";
    t.tag = "(hw_qeltvapi_timeshift)(client)";
    t.rows = {
            // No blank before the line end, unlike the others.
            checked("get_registerdevice_schedule", 0,
                    [](Outputs&) { return a_qeltvapi_timeshift_get_registerdevice_schedule(); }, {})
                    .exit({"<{f}:{n}> {f} return {r}\n"}),
            position("get_duration", 1, a_qeltvapi_timeshift_get_duration),
            position("get_position", 2, a_qeltvapi_timeshift_get_position),
            checked("registerDevice", 3,
                    [](Outputs&) {
                        return a_qeltvapi_timeshift_registerDevice("/mnt/usb", 0x100000000);
                    },
                    {str("/mnt/usb"), i64(0x100000000)})
                    .entry({"<{f}:{n}> {f} path:/mnt/usb size:4294967296\n"}),
            unchecked("start", 4, a_qeltvapi_timeshift_start),
            unchecked("stop", 5, a_qeltvapi_timeshift_stop),
            unchecked("play", 6, a_qeltvapi_timeshift_play),
            unchecked("pause", 7, a_qeltvapi_timeshift_pause),
            checked("seek", 8, [](Outputs&) { return a_qeltvapi_timeshift_seek(0x80000008); },
                    {u32(0x80000008)}),
            checked("trickplay", 9,
                    [](Outputs&) { return a_qeltvapi_timeshift_trickplay(0x80000009); },
                    {u32(0x80000009)}),
            unchecked("get_device_status", 10, a_qeltvapi_timeshift_get_device_status),
            unchecked("get_error_id", 11, a_qeltvapi_timeshift_get_error_id),
            unchecked("get_record_status", 12, a_qeltvapi_timeshift_get_record_status),
            position("get_current_position", 13, a_qeltvapi_timeshift_get_current_position)
                    .missing(0)
                    .exit({kReturn}),
            position("get_start_position", 14, a_qeltvapi_timeshift_get_start_position)
                    .exit({kReturn}),
            checked("set_auto_record", 15,
                    [](Outputs&) { return a_qeltvapi_timeshift_set_auto_record(2); },
                    {boolean(true)}),
            checked("set_play_before_full", 16,
                    [](Outputs&) { return a_qeltvapi_timeshift_set_play_before_full(0x100); },
                    {boolean(true)}),
            checked("stop_ex", 17,
                    [](Outputs&) { return a_qeltvapi_timeshift_stop_ex(0x80000017); },
                    {u32(0x80000017)}),
    };
    return t;
}

WIRE_TABLE_TESTS(TimeshiftWire, table())

TEST(TimeshiftWire, SendsFalseForZeroOnly) {
    ScriptedService& service = ready();
    service.expect({boolean(false)}, {i32(0)});
    EXPECT_EQ(0, a_qeltvapi_timeshift_set_auto_record(0));
    service.expect({boolean(false)}, {i32(0)});
    EXPECT_EQ(0, a_qeltvapi_timeshift_set_play_before_full(0));
}

TEST(TimeshiftWire, LeavesTheFunctionRegisteredWhenItUnregisters) {
    ScriptedService& service = ready();
    static int32_t sType = 0;
    a_qeltvapi_timeshift_register_callback([](int32_t type, uintptr_t, uintptr_t, uintptr_t) {
        sType = type;
        return 0;
    });
    EXPECT_EQ(0, a_qeltvapi_timeshift_unregister_callback());
    registerCallbackHandler();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (service.callback() == nullptr && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_EQ("", service.notify(23, {i32(-81), u64(2), u64(3), u64(4)}));
    EXPECT_EQ(-81, sType);

    a_qeltvapi_timeshift_register_callback(nullptr);
    EXPECT_EQ("", service.notify(23, {i32(-82), u64(2), u64(3), u64(4)}));
    EXPECT_EQ(-81, sType);
}

TEST(TimeshiftWire, EndsTheProcessWhenAReplyIsLostThatIsUsedUnchecked) {
    const std::vector<std::pair<std::function<void()>, Values>> calls = {
            {[] { a_qeltvapi_timeshift_get_duration(); }, {}},
            {[] { a_qeltvapi_timeshift_get_position(); }, {}},
            {[] { a_qeltvapi_timeshift_start(); }, {}},
            {[] { a_qeltvapi_timeshift_stop(); }, {}},
            {[] { a_qeltvapi_timeshift_play(); }, {}},
            {[] { a_qeltvapi_timeshift_pause(); }, {}},
            {[] { a_qeltvapi_timeshift_get_device_status(); }, {}},
            {[] { a_qeltvapi_timeshift_get_error_id(); }, {}},
            {[] { a_qeltvapi_timeshift_get_record_status(); }, {}},
            {[] { a_qeltvapi_timeshift_get_current_position(); }, {}},
            {[] { a_qeltvapi_timeshift_get_start_position(); }, {}},
    };
    for (const auto& [call, sent] : calls) expectLostReplyEndsTheProcess(sent, call);
}

}  // namespace
