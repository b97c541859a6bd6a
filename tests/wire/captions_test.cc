#include "hw_qeltvapi_analog_cc.h"
#include "hw_qeltvapi_atsc_cc.h"
#include "hw_qeltvapi_isdb_cc.h"
#include "wire.h"

using namespace wire;

namespace {

/** A function without arguments. */
Row step(const char* function, uint32_t ordinal, int (*call)()) {
    return Row(function, ordinal)
            .call([=](Outputs&) { return call(); })
            .answered({i32(-static_cast<int32_t>(ordinal))})
            .returns(-static_cast<int32_t>(ordinal))
            .direct<int32_t>();
}

/** A function that switches something: only 1 is true. */
Row onOff(const char* function, uint32_t ordinal, int (*call)(int32_t), int32_t flag) {
    return Row(function, ordinal)
            .call([=](Outputs&) { return call(flag); })
            .sent({boolean(flag == 1)})
            .answered({i32(static_cast<int32_t>(ordinal))})
            .returns(ordinal)
            .direct<int32_t>();
}

Table captions(const char* module) {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = std::string("(hw_qeltvapi_") + module + ")(client)";
    t.entry = {"<{f}:{n}> " + t.tag + " {f}"};
    return t;
}

std::vector<Table> tables() {
    Table isdb = captions("isdb_cc");
    Table atsc = captions("atsc_cc");
    Table analog = captions("analog_cc");
    for (int32_t flag : {1, 2, 0, -1}) {
        isdb.rows.push_back(onOff("a_qeltvapi_isdbcc_enable", 49, a_qeltvapi_isdbcc_enable, flag));
        atsc.rows.push_back(onOff("a_qeltvapi_atsccc_enable", 162, a_qeltvapi_atsccc_enable, flag));
        atsc.rows.push_back(
                onOff("a_qeltvapi_atsccc_set_visible", 165, a_qeltvapi_atsccc_set_visible, flag));
        analog.rows.push_back(
                onOff("a_qeltvapi_analogcc_enable", 167, a_qeltvapi_analogcc_enable, flag));
        analog.rows.push_back(onOff("a_qeltvapi_analogcc_set_visible", 170,
                                    a_qeltvapi_analogcc_set_visible, flag));
    }
    isdb.rows.insert(isdb.rows.end(),
                     {step("a_qeltvapi_isdbcc_next_stream", 50, a_qeltvapi_isdbcc_next_stream),
                      step("a_qeltvapi_isdbcc_get_CCString", 51, a_qeltvapi_isdbcc_get_CCString)});
    atsc.rows.insert(atsc.rows.end(),
                     {step("a_qeltvapi_atsccc_next_stream", 163, a_qeltvapi_atsccc_next_stream),
                      step("a_qeltvapi_atsccc_get_CCString", 164, a_qeltvapi_atsccc_get_CCString),
                      Row("a_qeltvapi_atsccc_demo_set", 166)
                              .call([](Outputs&) {
                                  return a_qeltvapi_atsccc_demo_set(0x80000001, 0x80000002);
                              })
                              .sent({u32(0x80000001), u32(0x80000002)})
                              .answered({i32(3)})
                              .returns(3)
                              .direct<int32_t>()});
    analog.rows.insert(
            analog.rows.end(),
            {step("a_qeltvapi_analogcc_next_stream", 168, a_qeltvapi_analogcc_next_stream),
             step("a_qeltvapi_analogcc_get_CCString", 169, a_qeltvapi_analogcc_get_CCString)});
    return {isdb, atsc, analog};
}

TEST(CaptionsWire, TouchesNothingWhenTheServiceIsMissing) {
    for (const Table& table : tables()) runMissing(table);
}

TEST(CaptionsWire, CallsItsMethodAndStoresTheAnswer) {
    for (const Table& table : tables()) runAnswered(table);
}

TEST(CaptionsWire, LeavesTheOutputsAloneWhenTheReplyIsLost) {
    for (const Table& table : tables()) runLost(table);
}

}  // namespace
