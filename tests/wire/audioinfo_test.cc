#include "hw_qeltvapi_audioinfo.h"
#include "wire.h"

using namespace wire;

namespace {

const uint32_t kMain = 0x80000001;
const uint32_t kSub = 0x80000002;

Row records(const char* function, uint32_t ordinal, int (*get)(void*, uint32_t*)) {
    return Row(function, ordinal)
            .call([get](Outputs& o) { return get(o.at(0), o.at<uint32_t>(1)); })
            .given(1, bytesOf(uint32_t{3}))
            .sent({u32(3)})
            .answered({bytes(counted(100)), u32(5), i32(-3)})
            .returns(-3)
            .stores(0, counted(100))
            .stores(1, uint32_t{5});
}

/** Without a buffer the number is not read, but stored. */
Row count(const char* function, uint32_t ordinal, int (*get)(void*, uint32_t*)) {
    return Row(function, ordinal)
            .call([get](Outputs& o) { return get(nullptr, o.at<uint32_t>(1)); })
            .given(1, bytesOf(uint32_t{3}))
            .sent({u32(0)})
            .answered({bytes(counted(100)), u32(6), i32(4)})
            .returns(4)
            .stores(1, uint32_t{6});
}

Row wholeRecord(const char* function, uint32_t ordinal, int (*get)(void*)) {
    return Row(function, ordinal)
            .call([get](Outputs& o) { return get(o.at(0)); })
            .answered({bytes(counted(77, 9)), i32(5)})
            .returns(5)
            .stores(0, counted(77, 9));
}

Table table() {
    const std::string returned = "<{f}:{n}> {f} reuturn {r}\n";
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_audioinfo)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.rows = {
            Row("a_qeltvapi_audio_info_get_current_lanuage", 146)
                    .call([](Outputs& o) {
                        return a_qeltvapi_audio_info_get_current_lanuage("main", o.at<char>(0));
                    })
                    .sent({str("main")})
                    .answered({str(Bytes("en\0g", 4)), i32(3)})
                    .returns(3)
                    .stores(0, Bytes("en\0g", 4))
                    .exit({returned}),
            Row("a_qeltvapi_audio_info_set_next_lanuage", 147)
                    .call([](Outputs&) { return a_qeltvapi_audio_info_set_next_lanuage(); })
                    .answered({i32(4)})
                    .returns(4)
                    .direct<int32_t>()
                    .exit({returned}),
            records("a_qeltvapi_audio_info_get_available_record", 148,
                    a_qeltvapi_audio_info_get_available_record),
            count("a_qeltvapi_audio_info_get_available_record", 148,
                  a_qeltvapi_audio_info_get_available_record),
            wholeRecord("a_qeltvapi_get_current_audio_info", 149,
                        a_qeltvapi_get_current_audio_info),
            Row("a_qeltvapi_get_audio_apd_text", 150)
                    .call([](Outputs& o) {
                        return a_qeltvapi_get_audio_apd_text(-7, o.at(0), o.at<int32_t>(1));
                    })
                    .sent({i32(-7)})
                    .answered({bytes(counted(9)), i32(-8), i32(6)})
                    .returns(6)
                    .stores(0, counted(9))
                    .stores(1, int32_t{-8}),
            Row("a_qeltvapi_get_audio_apd_text", 150)
                    .call([](Outputs& o) {
                        return a_qeltvapi_get_audio_apd_text(-7, nullptr, o.at<int32_t>(1));
                    })
                    .sent({i32(-7)})
                    .answered({bytes(counted(9)), i32(9), i32(7)})
                    .returns(7),
            wholeRecord("a_qeltvapi_get_current_ad_info", 151, a_qeltvapi_get_current_ad_info),
            Row("a_qeltvapi_select_audio", 152)
                    .call([](Outputs&) { return a_qeltvapi_select_audio(&kMain); })
                    .sent({u32(kMain)})
                    .answered({i32(8)})
                    .returns(8)
                    .direct<int32_t>()
                    .exit({returned}),
            Row("a_qeltvapi_select_main_sub_audio", 153)
                    .call([](Outputs&) { return a_qeltvapi_select_main_sub_audio(&kMain, &kSub); })
                    .sent({u32(kMain), u32(kSub)})
                    .answered({i32(9)})
                    .returns(9)
                    .direct<int32_t>()
                    .exit({returned}),
            Row("a_qeltvapi_select_default_audio", 154)
                    .call([](Outputs&) { return a_qeltvapi_select_default_audio("fin"); })
                    .sent({str("fin")})
                    .answered({i32(10)})
                    .returns(10)
                    .direct<int32_t>()
                    .missingLines({}, {"<{f}:{n}> Get qeltvapi service fail. \n"})
                    .exit({returned}),
            records("a_qeltvapi_audio_info_get_inputsource_available_record", 155,
                    a_qeltvapi_audio_info_get_inputsource_available_record),
            count("a_qeltvapi_audio_info_get_inputsource_available_record", 155,
                  a_qeltvapi_audio_info_get_inputsource_available_record),
            wholeRecord("a_qeltvapi_get_inputsource_current_audio_info", 156,
                        a_qeltvapi_get_inputsource_current_audio_info),
    };
    return t;
}

WIRE_TABLE_TESTS(AudioinfoWire, table())

}  // namespace
