#include "hw_hbbtv.h"
#include "wire.h"

using namespace wire;

namespace {

/** The functions of one engine; the other has the same under another prefix. */
struct Engine {
    std::string prefix;
    uint32_t first;
    int (*setAudio)(uint32_t);
    int (*getAudio)(uint32_t*);
    int (*getAudioLang)(uint32_t, char*);
    int (*getAudioNum)(uint32_t*);
    int (*setDefaultSubtitleLang)(const char*, uint32_t);
    int (*setDefaultAudioLang)(const char*);
    int (*setAudioDesc)(int);
};

const Engine kOpera{"c_opera_hbbtv_",
                    52,
                    c_opera_hbbtv_stm_set_audio,
                    c_opera_hbbtv_stm_get_audio,
                    c_opera_hbbtv_stm_get_audio_lang,
                    c_opera_hbbtv_stm_get_audio_num,
                    c_opera_hbbtv_set_default_subtitle_lang,
                    c_opera_hbbtv_set_default_audio_lang,
                    c_opera_hbbtv_set_audio_desc};
const Engine kGeneric{"c_hbbtv_",
                      59,
                      c_hbbtv_stm_set_audio,
                      c_hbbtv_stm_get_audio,
                      c_hbbtv_stm_get_audio_lang,
                      c_hbbtv_stm_get_audio_num,
                      c_hbbtv_set_default_subtitle_lang,
                      c_hbbtv_set_default_audio_lang,
                      c_hbbtv_set_audio_desc};

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_hbbtv)(client)";
    t.entry = {"<{f}:{n}> ."};
    for (const Engine& e : {kOpera, kGeneric}) {
        const std::vector<Row> rows{
                Row(e.prefix + "stm_set_audio", e.first)
                        .call([e](Outputs&) { return e.setAudio(0x80000001); })
                        .sent({u32(0x80000001)})
                        .answered({i32(3)})
                        .returns(3)
                        .direct<int32_t>(),
                Row(e.prefix + "stm_get_audio", e.first + 1)
                        .call([e](Outputs& o) { return e.getAudio(o.at<uint32_t>(0)); })
                        .answered({u32(0x80000002), i32(4)})
                        .returns(4)
                        .stores(0, uint32_t{0x80000002}),
                Row(e.prefix + "stm_get_audio_lang", e.first + 2)
                        .call([e](Outputs& o) { return e.getAudioLang(0x80000003, o.at<char>(0)); })
                        .sent({u32(0x80000003)})
                        .answered({str("eng"), i32(5)})
                        .returns(5)
                        .stores(0, Bytes("eng\0", 4)),
                Row(e.prefix + "stm_get_audio_num", e.first + 3)
                        .call([e](Outputs& o) { return e.getAudioNum(o.at<uint32_t>(0)); })
                        .answered({u32(0x80000004), i32(6)})
                        .returns(6)
                        .stores(0, uint32_t{0x80000004}),
                Row(e.prefix + "set_default_subtitle_lang", e.first + 4)
                        .call([e](Outputs&) { return e.setDefaultSubtitleLang("fin", 0x80000005); })
                        .sent({str("fin"), u32(0x80000005)})
                        .answered({i32(7)})
                        .returns(7)
                        .direct<int32_t>(),
                Row(e.prefix + "set_default_audio_lang", e.first + 5)
                        .call([e](Outputs&) { return e.setDefaultAudioLang("swe"); })
                        .sent({str("swe")})
                        .answered({i32(8)})
                        .returns(8)
                        .direct<int32_t>(),
                Row(e.prefix + "set_audio_desc", e.first + 6)
                        .call([e](Outputs&) { return e.setAudioDesc(1); })
                        .sent({boolean(true)})
                        .answered({i32(9)})
                        .returns(9)
                        .direct<int32_t>(),
        };
        t.rows.insert(t.rows.end(), rows.begin(), rows.end());
    }
    return t;
}

WIRE_TABLE_TESTS(StreamAudioWire, table())

TEST(StreamAudioWire, SwitchesAudioDescriptionOnForOneOnly) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    for (const Engine& e : {kOpera, kGeneric}) {
        for (int on : {0, 2, -1, 0x101}) {
            service.expect({boolean(false)}, {i32(0)});
            EXPECT_EQ(0, e.setAudioDesc(on));
            service.settle();
        }
    }
}

TEST(StreamAudioWire, StoresFourBytesOfALanguageForAnyAnswer) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    const std::vector<std::pair<Bytes, Bytes>> cases{{"", Bytes("\0\0\0\0-", 5)},
                                                     {"e", Bytes("e\0\0\0-", 5)},
                                                     {"engl", "engl-"},
                                                     {"english", "engl-"},
                                                     {Bytes("a\0bc", 4), Bytes("a\0bc-", 5)}};
    for (const Engine& e : {kOpera, kGeneric}) {
        for (const auto& [answer, stored] : cases) {
            Bytes lang(5, '-');
            service.expect({u32(1)}, {str(answer), i32(0)});
            EXPECT_EQ(0, e.getAudioLang(1, lang.data()));
            EXPECT_EQ(stored, lang);
        }
    }
}

}  // namespace
