#include "hw_svl.h"
#include "hw_tsl.h"
#include "wire.h"

using namespace wire;

namespace {

/** One module of the two; records of any size are stored whole. */
Table table(const std::string& module, const std::string& function, uint32_t ordinal,
            int (*read)(uint32_t, uint32_t, void*, uint32_t*)) {
    const std::string path = "clientwrapper/" + module + ".cpp";
    Table t;
    t.interface = "IQelTvApiChannelList";
    t.tag = "(" + module + ")(client)";
    t.missing = 0;
    t.missingTraced = {"<{f}:{n}> [" + path + "]:[{f}] Error --> service is invalid\n"};
    t.entry = {"<{f}:{n}> Enter [" + path + "][{f}]"};
    t.exit = {"<{f}:{n}> Exit [" + path + "][{f}]"};
    constexpr size_t kSizes[] = {0, 100, 396, 628, 700};
    for (const size_t size : kSizes) {
        const Bytes data = counted(size, 7);
        t.rows.push_back(Row(function, ordinal)
                                 .call([=](Outputs& o) {
                                     return read(0x80000001, 2, o.at(0), o.at<uint32_t>(1));
                                 })
                                 .sent({u32(0x80000001), u32(2)})
                                 .answered({bytes(data), u32(0xa0000003), i32(-4)})
                                 .returns(-4)
                                 .stores(0, data)
                                 .stores(1, uint32_t{0xa0000003}));
    }
    return t;
}

Table services() {
    return table("hw_svl", "c_svl_get_rec", 90, c_svl_get_rec);
}

Table transportStreams() {
    return table("hw_tsl", "c_tsl_get_rec", 91, c_tsl_get_rec);
}

TEST(ListRecordWire, ReturnsZeroAndTouchesNothingWhenTheServiceIsMissing) {
    runMissing(services());
    runMissing(transportStreams());
}

TEST(ListRecordWire, StoresRecordsOfAnySizeWhole) {
    runAnswered(services());
    runAnswered(transportStreams());
}

TEST(ListRecordWire, LeavesTheOutputsAloneWhenTheReplyIsLost) {
    runLost(services());
    runLost(transportStreams());
}

}  // namespace
