#include "hw_qeltvapi_volctrl.h"
#include "wire.h"

using namespace wire;

namespace {

Row volume(const char* function, uint32_t ordinal, int16_t (*get)(), int16_t answer) {
    return Row(function, ordinal)
            .call([get](Outputs&) { return get(); })
            .answered({i16(answer)})
            .returns(answer)
            .direct<int16_t>();
}

Row volumeByType(const char* function, uint32_t ordinal, int16_t (*get)(int32_t), int16_t answer) {
    return Row(function, ordinal)
            .call([get, answer](Outputs&) { return get(-answer); })
            .sent({i32(-answer)})
            .answered({i16(answer)})
            .returns(answer)
            .direct<int16_t>();
}

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_volctrl)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            volume("a_qeltvapi_volctrl_incrVolume", 101, a_qeltvapi_volctrl_incrVolume, 31),
            volumeByType("a_qeltvapi_volctrl_incrVolume_by_type", 102,
                         a_qeltvapi_volctrl_incrVolume_by_type, 32),
            volume("a_qeltvapi_volctrl_decrVolume", 103, a_qeltvapi_volctrl_decrVolume, -33),
            volumeByType("a_qeltvapi_volctrl_decrVolume_by_type", 104,
                         a_qeltvapi_volctrl_decrVolume_by_type, -34),
            Row("a_qeltvapi_volctrl_setVolume", 105)
                    .call([](Outputs&) { return a_qeltvapi_volctrl_setVolume(0x18035); })
                    .sent({i32(0x18035)})
                    .answered({i32(5)})
                    .returns(5)
                    .direct<int32_t>(),
            Row("a_qeltvapi_volctrl_setVolume_by_type", 106)
                    .call([](Outputs&) { return a_qeltvapi_volctrl_setVolume_by_type(-3, 36); })
                    .sent({i32(-3), i32(36)})
                    .answered({i32(6)})
                    .returns(6)
                    .direct<int32_t>(),
            volume("a_qeltvapi_volctrl_getVolume", 107, a_qeltvapi_volctrl_getVolume, 37),
            volumeByType("a_qeltvapi_volctrl_getVolume_by_type", 108,
                         a_qeltvapi_volctrl_getVolume_by_type, 38),
            Row("a_qeltvapi_volctrl_setMute", 109)
                    .call([](Outputs&) { return a_qeltvapi_volctrl_setMute(2); })
                    .sent({boolean(true)})
                    .answered({i32(9)})
                    .returns(9)
                    .direct<int32_t>(),
            Row("a_qeltvapi_volctrl_setMute_by_type", 110)
                    .call([](Outputs&) { return a_qeltvapi_volctrl_setMute_by_type(-4, 256); })
                    .sent({i32(-4), boolean(true)})
                    .answered({i32(10)})
                    .returns(10)
                    .direct<int32_t>(),
            Row("a_qeltvapi_volctrl_getMute", 111)
                    .call([](Outputs&) { return a_qeltvapi_volctrl_getMute(); })
                    .answered({boolean(true)})
                    .returns(1)
                    .missing(0)
                    .lost(0)
                    .direct<bool>(),
            Row("a_qeltvapi_volctrl_getMute_by_type", 112)
                    .call([](Outputs&) { return a_qeltvapi_volctrl_getMute_by_type(-5); })
                    .sent({i32(-5)})
                    .answered({boolean(true)})
                    .returns(1)
                    .missing(0)
                    .lost(0)
                    .direct<bool>(),
    };
    return t;
}

WIRE_TABLE_TESTS(VolctrlWire, table())

TEST(VolctrlWire, UnmutesForZero) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    service.expect({boolean(false)}, {i32(0)});
    a_qeltvapi_volctrl_setMute(0);
    service.expect({i32(1), boolean(false)}, {i32(0)});
    a_qeltvapi_volctrl_setMute_by_type(1, 0);
}

}  // namespace
