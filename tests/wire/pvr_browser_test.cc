#include "hw_qeltvapi_pvr_browser.h"

#include "wire.h"

using namespace wire;

namespace {

/** The name and the function of one reader. */
#define READER(name) #name, a_qeltvapi_mmp_get_pvr_browser_##name

std::string pathOf(uint32_t ordinal) {
    return "/pvr/" + std::to_string(ordinal) + ".ts";
}

uint32_t indexOf(uint32_t ordinal) {
    return 0x80000100 + ordinal;
}

/** What an answer holds, and what of it ends up in the caller's memory. */
struct Answer {
    Value value;
    Bytes stored;
};

Answer answerFor(uint32_t ordinal, const uint32_t*) {
    const uint32_t value = 0xc0000000 + ordinal;
    return {u32(value), bytesOf(value)};
}

Answer answerFor(uint32_t ordinal, const char*) {
    const Bytes text = "text " + std::to_string(ordinal);
    return {str(text), text};
}

Answer answerFor(uint32_t ordinal, const void*) {
    const Bytes record = counted(ordinal * 2 + 1, 5);
    return {bytes(record), record};
}

Row reader(const std::string& name, uint32_t ordinal, Values sent, const Answer& answer) {
    const int32_t code = 20 + static_cast<int32_t>(ordinal);
    return Row("a_qeltvapi_mmp_get_pvr_browser_" + name, ordinal)
            .sent(std::move(sent))
            .answered({answer.value, i32(code)})
            .returns(code)
            .stores(0, answer.stored);
}

template <class T>
Row read(uint32_t ordinal, const std::string& name, int (*function)(const char*, T*)) {
    return reader(name, ordinal, {str(pathOf(ordinal))},
                  answerFor(ordinal, static_cast<T*>(nullptr)))
            .call([=](Outputs& o) { return function(pathOf(ordinal).c_str(), o.at<T>(0)); });
}

template <class T>
Row read(uint32_t ordinal, const std::string& name, int (*function)(uint32_t, T*)) {
    return reader(name, ordinal, {u32(indexOf(ordinal))},
                  answerFor(ordinal, static_cast<T*>(nullptr)))
            .call([=](Outputs& o) { return function(indexOf(ordinal), o.at<T>(0)); });
}

template <class T>
Row read(uint32_t ordinal, const std::string& name, int (*function)(T*)) {
    return reader(name, ordinal, {}, answerFor(ordinal, static_cast<T*>(nullptr)))
            .call([=](Outputs& o) { return function(o.at<T>(0)); });
}

Table table() {
    Table t;
    t.interface = "IQelTvApiPvrbrowser";
    t.tag = "(hw_qeltvapi_pvr_browser)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.exit = {"<{f}:{n}> {f} return {r}\n"};
    t.rows = {
            read(0, READER(channelid_by_path)),
            read(1, READER(channelname_by_path)),
            read(2, READER(duration_by_path)),
            read(3, READER(stop_reason_by_path)),
            read(4, READER(programname_by_path)),
            read(5, READER(start_time_by_path)),
            read(6, READER(item_path_by_index)),
            read(7, READER(channelmajornumber_by_index)),
            read(8, READER(channelminornumber_by_index)),
            read(9, READER(channelname_by_index)),
            read(10, READER(duration_by_index)),
            read(11, READER(stop_reason_by_index)),
            read(12, READER(start_time_by_index)),
            read(13, READER(programname_by_index)),
            read(14, READER(date_by_index)),
            read(15, READER(time_by_index)),
            read(16, READER(channelid_by_index)),
            read(17, READER(week_by_index)),
            read(18, READER(recording_file_num)),
            read(19, READER(recording_file_name)),
            read(20, READER(item_by_path)),
            read(21, READER(item_by_index)),
            // 16 bits only: the two bytes behind stay.
            Row("a_qeltvapi_mmp_get_pvr_browser_item_count", 22)
                    .call([](Outputs& o) {
                        return a_qeltvapi_mmp_get_pvr_browser_item_count(o.at<uint16_t>(0));
                    })
                    .answered({u16(0xfedc), i32(42)})
                    .returns(42)
                    .stores(0, uint16_t{0xfedc}),
            read(23, READER(recording_file_info)),
            Row("a_qeltvapi_mmp_pvr_browser_delete_file_by_index", 24)
                    .call([](Outputs&) {
                        return a_qeltvapi_mmp_pvr_browser_delete_file_by_index(0x80000124);
                    })
                    .sent({u32(0x80000124)})
                    .answered({i32(-44)})
                    .returns(-44)
                    .direct<int32_t>(),
            read(25, READER(channelmajornumber_by_path)),
            read(26, READER(channelminornumber_by_path)),
            read(27, READER(date_by_path)),
            read(28, READER(week_by_path)),
            read(29, READER(time_by_path)),
            read(30, READER(first_rating_by_index)),
            read(31, READER(first_rating_by_path)),
            read(32, READER(retention_by_index)),
            read(33, READER(retention_by_path)),
    };
    return t;
}

WIRE_TABLE_TESTS(PvrBrowserWire, table())

TEST(PvrBrowserWire, LeavesTheBufferAloneForEmptyTextsAndRecords) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    char buffer[5] = "....";
    service.expect({u32(1)}, {str(""), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_channelname_by_index(1, buffer));
    service.expect({str("")}, {bytes(""), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_item_by_path(nullptr, buffer));
    service.expect({str("")}, {str(""), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_channelname_by_path(nullptr, buffer));
    uint32_t value = 0;
    service.expect({str("")}, {u32(7), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_channelid_by_path(nullptr, &value));
    EXPECT_STREQ("....", buffer);
}

}  // namespace
