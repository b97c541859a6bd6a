#include "hw_hbbtv.h"

#include <algorithm>

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_hbbtv)(client)";

constexpr Family<IQelTvApi> kHbbtv{kTag, getQelTvApiService, -1, -1, line::dot};

/** A language is always stored as four bytes, regardless of the length of the text. */
auto storeLanguage(char* lang) {
    return [=](const hidl_string& value, int32_t code) {
        char word[QELTVAPI_HBBTV_LANG_SIZE] = {};
        memcpy(word, value.c_str(), std::min(value.size(), sizeof(word)));
        memcpy(lang, word, sizeof(word));
        return code;
    };
}

}  // namespace

int c_opera_hbbtv_stm_set_audio(uint32_t track) {
    return direct(kHbbtv, HERE, &IQelTvApi::a_hidl_c_opera_hbbtv_stm_set_audio, track);
}

int c_opera_hbbtv_stm_get_audio(uint32_t* track) {
    return ask(kHbbtv, HERE, &IQelTvApi::a_hidl_c_opera_hbbtv_stm_get_audio, storeValue(track));
}

int c_opera_hbbtv_stm_get_audio_lang(uint32_t track, char* lang) {
    return ask(kHbbtv, HERE, &IQelTvApi::a_hidl_c_opera_hbbtv_stm_get_audio_lang,
               storeLanguage(lang), track);
}

int c_opera_hbbtv_stm_get_audio_num(uint32_t* count) {
    return ask(kHbbtv, HERE, &IQelTvApi::a_hidl_c_opera_hbbtv_stm_get_audio_num, storeValue(count));
}

int c_opera_hbbtv_set_default_subtitle_lang(const char* lang, uint32_t v) {
    return direct(kHbbtv, HERE, &IQelTvApi::a_hidl_c_opera_hbbtv_set_default_subtitle_lang,
                  text(lang), v);
}

int c_opera_hbbtv_set_default_audio_lang(const char* lang) {
    return direct(kHbbtv, HERE, &IQelTvApi::a_hidl_c_opera_hbbtv_set_default_audio_lang,
                  text(lang));
}

int c_opera_hbbtv_set_audio_desc(int on) {
    // Only 1 counts, on purpose.
    return direct(kHbbtv, HERE, &IQelTvApi::a_hidl_c_opera_hbbtv_set_audio_desc, on == 1);
}

int c_hbbtv_stm_set_audio(uint32_t track) {
    return direct(kHbbtv, HERE, &IQelTvApi::a_hidl_c_hbbtv_stm_set_audio, track);
}

int c_hbbtv_stm_get_audio(uint32_t* track) {
    return ask(kHbbtv, HERE, &IQelTvApi::a_hidl_c_hbbtv_stm_get_audio, storeValue(track));
}

int c_hbbtv_stm_get_audio_lang(uint32_t track, char* lang) {
    return ask(kHbbtv, HERE, &IQelTvApi::a_hidl_c_hbbtv_stm_get_audio_lang, storeLanguage(lang),
               track);
}

int c_hbbtv_stm_get_audio_num(uint32_t* count) {
    return ask(kHbbtv, HERE, &IQelTvApi::a_hidl_c_hbbtv_stm_get_audio_num, storeValue(count));
}

int c_hbbtv_set_default_subtitle_lang(const char* lang, uint32_t v) {
    return direct(kHbbtv, HERE, &IQelTvApi::a_hidl_c_hbbtv_set_default_subtitle_lang, text(lang),
                  v);
}

int c_hbbtv_set_default_audio_lang(const char* lang) {
    return direct(kHbbtv, HERE, &IQelTvApi::a_hidl_c_hbbtv_set_default_audio_lang, text(lang));
}

int c_hbbtv_set_audio_desc(int on) {
    // Only 1 counts, on purpose.
    return direct(kHbbtv, HERE, &IQelTvApi::a_hidl_c_hbbtv_set_audio_desc, on == 1);
}
