#include "hw_qeltvapi_record.h"

#include "wire.h"

using namespace wire;

namespace {

const std::string kName = "<{f}:{n}> {f}";
const std::string kRet = "<{f}:{n}> ret={r}\n";
const std::string kOpened = "<{f}:{n}> handle is {r}\n";

/** A function with one number as its answer, checked, and the family's usual lines. */
Row plain(const std::string& name, uint32_t ordinal, Row::CallFn call, Values sent) {
    const int32_t code = (ordinal % 2 == 0 ? 40 : -40) + static_cast<int32_t>(ordinal);
    return Row("a_qeltvapi_" + name, ordinal)
            .call(call)
            .sent(std::move(sent))
            .answered({i32(code)})
            .returns(code)
            .direct<int32_t>()
            .entry({kName})
            .exit({kRet});
}

Row byHandle(const std::string& name, uint32_t ordinal, int (*function)(uint32_t)) {
    const uint32_t handle = 0x80000100 + ordinal;
    return plain(name, ordinal, [=](Outputs&) { return function(handle); }, {u32(handle)});
}

Row size(const std::string& name, uint32_t ordinal, int64_t (*function)(uint32_t)) {
    const uint32_t which = 0x90000100 + ordinal;
    const int64_t bytes = 0x500000000 + ordinal;
    return Row("a_qeltvapi_record_pvr_" + name, ordinal)
            .call([=](Outputs&) { return function(which); })
            .sent({u32(which)})
            .answered({i64(bytes)})
            .returns(bytes)
            .unchecked()
            .entry({kName})
            .exit({kRet});
}

/** Both readers of a file name ask the same method; the room does not bound the copy. */
Row fileName(const std::string& name, int (*function)(uint32_t, char*, uint32_t)) {
    return Row("a_qeltvapi_record_pvr_" + name, 3)
            .call([=](Outputs& o) { return function(0xa0000031, o.at<char>(0), 4); })
            .sent({u32(0xa0000031), u32(4)})
            .answered({str("rec_00000001"), i32(33)})
            .returns(33)
            .stores(0, Bytes("rec_00000001"))
            .entry({kName})
            .exit({kRet});
}

Table table() {
    Table t;
    t.interface = "IQelTvApiRecord";
    t.tag = "(hw_qeltvapi_record)(client)";
    t.lost = 0;
    t.missingAlways = {"<{f}:{n}> Get record service fail.\n"};
    t.rows = {
            plain("pvr_set_event", 0,
                  [](Outputs&) { return a_qeltvapi_pvr_set_event(0x80000001, 2); },
                  {u32(0x80000001), u32(2)}),
            plain("pvr_set_event_extra", 1,
                  [](Outputs&) {
                      return a_qeltvapi_pvr_set_event_extra(3, 0x80000004, -5, "extra");
                  },
                  {u32(3), u32(0x80000004), i32(-5), str("extra")}),
            Row("a_qeltvapi_pvr_get_booking_count", 2)
                    .call([](Outputs&) { return a_qeltvapi_pvr_get_booking_count(); })
                    .answered({i32(32)})
                    .returns(32)
                    .unchecked()
                    .entry({kName})
                    .exit({kRet}),
            fileName("get_recording_file_name", a_qeltvapi_record_pvr_get_recording_file_name),
            fileName("get_disk", a_qeltvapi_record_pvr_get_disk),
            plain("record_create_register_file", 4,
                  [](Outputs&) { return a_qeltvapi_record_create_register_file("/mnt/a"); },
                  {str("/mnt/a")}),
            plain("record_check_register_file", 5,
                  [](Outputs&) { return a_qeltvapi_record_check_register_file("/mnt/b", 256); },
                  {str("/mnt/b"), boolean(true)}),
            byHandle("record_pvr_get_error_id", 6, a_qeltvapi_record_pvr_get_error_id),
            size("get_disk_total_size", 7, a_qeltvapi_record_pvr_get_disk_total_size),
            size("get_disk_free_size", 8, a_qeltvapi_record_pvr_get_disk_free_size),
            size("get_recording_file_size", 9, a_qeltvapi_record_pvr_get_recording_file_size),
            byHandle("del_schedule_record", 10, a_qeltvapi_del_schedule_record),
            byHandle("get_recording_position", 11, a_qeltvapi_get_recording_position),
            plain("record_pvr_set_mode", 12,
                  [](Outputs&) {
                      return a_qeltvapi_record_pvr_set_mode(0x80000011, 12, -13, 0x80000014);
                  },
                  {u32(0x80000011), u32(12), i32(-13), u32(0x80000014)}),
            byHandle("record_pvr_get_mode", 13, a_qeltvapi_record_pvr_get_mode),
            plain("record_hdd_speed_test", 14,
                  [](Outputs&) { return a_qeltvapi_record_hdd_speed_test("/mnt/c", 0x80000015); },
                  {str("/mnt/c"), u32(0x80000015)}),
            plain("record_pvr_set_recording_file_name", 15,
                  [](Outputs&) {
                      return a_qeltvapi_record_pvr_set_recording_file_name(0x80000016, "film");
                  },
                  {u32(0x80000016), str("film")}),
            byHandle("record_pvr_open", 16, a_qeltvapi_record_pvr_open).missing(0).exit({kOpened}),
            byHandle("record_pvr_close", 17, a_qeltvapi_record_pvr_close),
            byHandle("record_pvr_start", 18, a_qeltvapi_record_pvr_start),
            byHandle("record_pvr_stop", 19, a_qeltvapi_record_pvr_stop),
            byHandle("record_pvr_get_status", 20, a_qeltvapi_record_pvr_get_status),
            byHandle("record_pvr_get_source_type", 21, a_qeltvapi_record_pvr_get_source_type),
            Row("a_qeltvapi_record_pvr_get_current_handle", 22)
                    .call([](Outputs&) { return a_qeltvapi_record_pvr_get_current_handle(); })
                    .answered({i32(-35)})
                    .returns(-35)
                    .missing(0)
                    .unchecked()
                    .entry({kName})
                    .exit({"<{f}:{n}> ret=handle is {r}\n"}),
            plain("set_schedule_record", 24,
                  [](Outputs& o) { return a_qeltvapi_set_schedule_record(o.at(0), 0x80000024); },
                  {bytes(counted(248)), u32(0x80000024)})
                    .given(0, counted(300)),
            // As many bytes as come, beyond what a schedule record holds.
            Row("a_qeltvapi_get_schedule_record", 25)
                    .call([](Outputs& o) {
                        return a_qeltvapi_get_schedule_record(o.at(0), 0x80000025);
                    })
                    .sent({u32(0x80000025)})
                    .answered({bytes(counted(251, 3)), i32(36)})
                    .returns(36)
                    .stores(0, counted(251, 3))
                    .entry({kName})
                    .exit({kRet}),
            Row("a_qeltvapi_record_pvr_chk_src_conflict", 26)
                    .call([](Outputs& o) {
                        return a_qeltvapi_record_pvr_chk_src_conflict(o.at(0), o.at(1));
                    })
                    .given(0, counted(80, 1))
                    .given(1, counted(80, 101))
                    .sent({bytes(counted(72, 1)), bytes(counted(72, 101))})
                    .answered({boolean(true)})
                    .returns(1)
                    .missing(0)
                    .unchecked()
                    .exit({kRet}),
            Row("a_qeltvapi_record_pvr_chk_src_conflict", 26)
                    .call([](Outputs&) {
                        return a_qeltvapi_record_pvr_chk_src_conflict(nullptr, nullptr);
                    })
                    .sent({bytes(""), bytes("")})
                    .answered({boolean(false)})
                    .returns(0)
                    .missing(0)
                    .unchecked()
                    .exit({kRet}),
            plain("record_pvr_set_disk", 27,
                  [](Outputs& o) {
                      return a_qeltvapi_record_pvr_set_disk(0x80000027, "/mnt/d", o.at(0));
                  },
                  {u32(0x80000027), str("/mnt/d"), record(counted(20, 9))})
                    .given(0, counted(30, 9)),
            plain("record_pvr_open_ex", 28,
                  [](Outputs&) { return a_qeltvapi_record_pvr_open_ex(0x80000028, 5); },
                  {u32(0x80000028), boolean(true)})
                    .missing(0)
                    .exit({kOpened}),
            plain("record_pvr_select_svc", 29,
                  [](Outputs&) {
                      return a_qeltvapi_record_pvr_select_svc(0x80000029, 30, 0x80000031);
                  },
                  {u32(0x80000029), u32(30), u32(0x80000031)}),
    };
    return t;
}

WIRE_TABLE_TESTS(RecordWire, table())

TEST(RecordWire, LeavesTheRestOfTheBufferWhenAFileNameIsShort) {
    ScriptedService& service = ready();
    char buffer[17] = "................";
    service.expect({u32(1), u32(16)}, {str("recording.ts"), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_record_pvr_get_recording_file_name(1, buffer, 16));
    EXPECT_STREQ("recording.ts....", buffer);
}

TEST(RecordWire, SendsFalseForZeroOnly) {
    ScriptedService& service = ready();
    service.expect({u32(1), boolean(false)}, {i32(0)});
    a_qeltvapi_record_pvr_open_ex(1, 0);
    service.expect({str("p"), boolean(false)}, {i32(0)});
    a_qeltvapi_record_check_register_file("p", 0);
    service.expect({u32(1), boolean(true)}, {i32(0)});
    a_qeltvapi_record_pvr_open_ex(1, -1);
}

TEST(RecordWire, EndsTheProcessWhenAReplyIsLostThatIsUsedUnchecked) {
    const std::vector<std::pair<std::function<void()>, Values>> calls = {
            {[] { a_qeltvapi_pvr_get_booking_count(); }, {}},
            {[] { a_qeltvapi_record_pvr_get_disk_total_size(1); }, {u32(1)}},
            {[] { a_qeltvapi_record_pvr_get_disk_free_size(2); }, {u32(2)}},
            {[] { a_qeltvapi_record_pvr_get_recording_file_size(3); }, {u32(3)}},
            {[] { a_qeltvapi_record_pvr_get_current_handle(); }, {}},
            {[] { a_qeltvapi_record_pvr_chk_src_conflict(nullptr, nullptr); },
             {bytes(""), bytes("")}},
    };
    for (const auto& [call, sent] : calls) expectLostReplyEndsTheProcess(sent, call);
}

}  // namespace
