#include "hw_qeltvapi_audioinfo.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_audioinfo)(client)";

constexpr Family<IQelTvApi> kAudioInfo{kTag, getQelTvApiService, -1, -1, line::name};

void returned(const char* tag, const Site& site, long long result) {
    // "reuturn" is how the line is spelt.
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s reuturn %d\n", site.function,
                      static_cast<int>(result));
}

/** The languages and selections also write what they return. */
constexpr Family<IQelTvApi> kSelection = kAudioInfo.withExit(returned);

/** Records go to the caller who has room for them, their number to every caller. */
auto storeRecords(void* buf, uint32_t* num) {
    return [=](const hidl_vec<uint8_t>& records, uint32_t count, int32_t code) {
        if (buf != nullptr) copyAll(buf, records);
        *num = count;
        return code;
    };
}

}  // namespace

int a_qeltvapi_audio_info_register_callback(qeltvapi_audio_update_cb_t fn) {
    QelTvApiCallbackImpl::pf_audio_update_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_audio_info_get_current_lanuage(const char* name, char* lang) {
    return ask(kSelection, HERE, &IQelTvApi::a_hidl_qeltvapi_audio_info_get_current_lanuage,
               storeText(lang), text(name));
}

int a_qeltvapi_audio_info_set_next_lanuage(void) {
    return direct(kSelection, HERE, &IQelTvApi::a_hidl_qeltvapi_audio_info_set_next_lanuage);
}

int a_qeltvapi_audio_info_get_available_record(void* buf, uint32_t* num) {
    Call<IQelTvApi> call(kAudioInfo, HERE);
    if (!call) return kAudioInfo.missing;
    return call.ask(&IQelTvApi::a_hidl_qeltvapi_audio_info_get_available_record,
                    storeRecords(buf, num), buf != nullptr ? *num : 0);
}

int a_qeltvapi_get_current_audio_info(void* buf) {
    return ask(kAudioInfo, HERE, &IQelTvApi::a_hidl_qeltvapi_get_current_audio_info, storeAll(buf));
}

int a_qeltvapi_get_audio_apd_text(int32_t p1, void* buf, int32_t* len) {
    return ask(
            kAudioInfo, HERE, &IQelTvApi::a_hidl_qeltvapi_get_audio_apd_text,
            [=](const hidl_vec<uint8_t>& value, int32_t length, int32_t code) {
                if (buf != nullptr) {
                    copyAll(buf, value);
                    *len = length;
                }
                return code;
            },
            p1);
}

int a_qeltvapi_get_current_ad_info(void* buf) {
    return ask(kAudioInfo, HERE, &IQelTvApi::a_hidl_qeltvapi_get_current_ad_info, storeAll(buf));
}

int a_qeltvapi_select_audio(const uint32_t* track) {
    Call<IQelTvApi> call(kSelection, HERE);
    if (!call) return kSelection.missing;
    return call.direct(&IQelTvApi::a_hidl_qeltvapi_select_audio, *track);
}

int a_qeltvapi_select_main_sub_audio(const uint32_t* main, const uint32_t* sub) {
    Call<IQelTvApi> call(kSelection, HERE);
    if (!call) return kSelection.missing;
    return call.direct(&IQelTvApi::a_hidl_qeltvapi_select_main_sub_audio, *main, *sub);
}

// Alone in this family it reports the missing service.
int a_qeltvapi_select_default_audio(const char* lang) {
    return direct(kSelection.withMissingTraced(line::mainServiceFail), HERE,
                  &IQelTvApi::a_hidl_qeltvapi_select_default_audio, text(lang));
}

int a_qeltvapi_audio_info_get_inputsource_available_record(void* buf, uint32_t* num) {
    Call<IQelTvApi> call(kAudioInfo, HERE);
    if (!call) return kAudioInfo.missing;
    return call.ask(&IQelTvApi::a_hidl_qeltvapi_audio_info_get_inputsource_available_record,
                    storeRecords(buf, num), buf != nullptr ? *num : 0);
}

int a_qeltvapi_get_inputsource_current_audio_info(void* buf) {
    return ask(kAudioInfo, HERE, &IQelTvApi::a_hidl_qeltvapi_get_inputsource_current_audio_info,
               storeAll(buf));
}
