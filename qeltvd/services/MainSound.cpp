#define LOG_TAG "qeltvd"

#include <algorithm>

#include "Blocks.h"
#include "Code.h"
#include "ConfigItems.h"
#include "MainService.h"
#include "Presentation.h"
#include "Sound.h"
#include "Stored.h"

namespace qeltvd {

namespace {

std::string language(const QELTV_AUDIO_TRACK_T& track) {
    return std::string(track.language, 3);
}

std::optional<QELTV_AUDIO_TRACK_T> current(const std::vector<QELTV_AUDIO_TRACK_T>& tracks) {
    for (const QELTV_AUDIO_TRACK_T& track : tracks) {
        if (track.current != 0) return track;
    }
    return std::nullopt;
}

/** No more records than the capacity. */
Bytes records(const std::vector<QELTV_AUDIO_TRACK_T>& tracks, uint32_t room) {
    const size_t count = std::min<size_t>(tracks.size(), room);
    return bytesAs<Bytes>(tracks.data(), count);
}

std::string description(const QELTV_AUDIO_TRACK_T& track) {
    const char* codec = track.codec == QELTV_AUDIO_AC3   ? "AC-3"
                        : track.codec == QELTV_AUDIO_AAC ? "AAC"
                        : track.codec == QELTV_AUDIO_PCM ? "PCM"
                                                         : "MPEG";
    std::string text = language(track) + ", " + codec + (track.channels > 2 ? " 5.1" : " stereo");
    if (track.purpose == QELTV_AUDIO_DESCRIPTION) text += ", audio description";
    if (track.purpose == QELTV_AUDIO_ORIGINAL) text += ", original";
    return text;
}

}  // namespace

std::optional<QELTV_AUDIO_TRACK_T> MainService::trackOf(uint32_t number) const {
    for (const QELTV_AUDIO_TRACK_T& track : mModels.presentation.tracks(Presentation::kMain)) {
        if (track.track == number) return track;
    }
    return std::nullopt;
}

/** The tracks of the main path while it shows the tuner, or while it shows another input. */
std::vector<QELTV_AUDIO_TRACK_T> MainService::tracksOfMain(bool ofInput) const {
    const bool input = mModels.presentation.status(Presentation::kMain).source != Inputs::kTuner;
    if (input != ofInput) return {};
    return mModels.presentation.tracks(Presentation::kMain);
}

int32_t MainService::setLanguage(const char* item, const std::string& language) {
    const bool isCode =
            language.size() == 3 && std::all_of(language.begin(), language.end(),
                                                [](char c) { return c >= 'a' && c <= 'z'; });
    if (!isCode) return kBadValue;
    return stored([&] { return mModels.config.setText(item, language); });
}

Return<int32_t> MainService::a_hidl_c_opera_hbbtv_stm_set_audio(uint32_t track) {
    return mModels.presentation.selectTrack(Presentation::kMain, track);
}

Return<void> MainService::a_hidl_c_opera_hbbtv_stm_get_audio(
        a_hidl_c_opera_hbbtv_stm_get_audio_cb reply) {
    const auto track = currentTrack(Presentation::kMain);
    reply(track ? track->track : 0, track ? kOk : kRefused);
    return Void();
}

Return<void> MainService::a_hidl_c_opera_hbbtv_stm_get_audio_lang(
        uint32_t track, a_hidl_c_opera_hbbtv_stm_get_audio_lang_cb reply) {
    const auto one = trackOf(track);
    reply(one ? language(*one) : std::string(), one ? kOk : kNotFound);
    return Void();
}

Return<void> MainService::a_hidl_c_opera_hbbtv_stm_get_audio_num(
        a_hidl_c_opera_hbbtv_stm_get_audio_num_cb reply) {
    reply(static_cast<uint32_t>(mModels.presentation.tracks(Presentation::kMain).size()), kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_c_opera_hbbtv_set_default_subtitle_lang(const String& lang,
                                                                            uint32_t /*v*/) {
    return setLanguage("sound.subtitle_language", lang);
}

Return<int32_t> MainService::a_hidl_c_opera_hbbtv_set_default_audio_lang(const String& lang) {
    return setLanguage("sound.audio_language", lang);
}

Return<int32_t> MainService::a_hidl_c_opera_hbbtv_set_audio_desc(bool on) {
    return mModels.sound.setValue(QELTV_AUDIO_DESCRIPTION_ON, on);
}

Return<int32_t> MainService::a_hidl_c_hbbtv_stm_set_audio(uint32_t track) {
    return a_hidl_c_opera_hbbtv_stm_set_audio(track);
}

Return<void> MainService::a_hidl_c_hbbtv_stm_get_audio(a_hidl_c_hbbtv_stm_get_audio_cb reply) {
    return a_hidl_c_opera_hbbtv_stm_get_audio(reply);
}

Return<void> MainService::a_hidl_c_hbbtv_stm_get_audio_lang(
        uint32_t track, a_hidl_c_hbbtv_stm_get_audio_lang_cb reply) {
    return a_hidl_c_opera_hbbtv_stm_get_audio_lang(track, reply);
}

Return<void> MainService::a_hidl_c_hbbtv_stm_get_audio_num(
        a_hidl_c_hbbtv_stm_get_audio_num_cb reply) {
    return a_hidl_c_opera_hbbtv_stm_get_audio_num(reply);
}

Return<int32_t> MainService::a_hidl_c_hbbtv_set_default_subtitle_lang(const String& lang,
                                                                      uint32_t v) {
    return a_hidl_c_opera_hbbtv_set_default_subtitle_lang(lang, v);
}

Return<int32_t> MainService::a_hidl_c_hbbtv_set_default_audio_lang(const String& lang) {
    return a_hidl_c_opera_hbbtv_set_default_audio_lang(lang);
}

Return<int32_t> MainService::a_hidl_c_hbbtv_set_audio_desc(bool on) {
    return a_hidl_c_opera_hbbtv_set_audio_desc(on);
}

Return<uint16_t> MainService::a_hidl_qeltvapi_av_mode_get_sound_effect() {
    return mModels.sound.effect();
}

Return<int32_t> MainService::a_hidl_qeltvapi_av_mode_set_sound_effect(int32_t mode) {
    return mModels.sound.setEffect(mode);
}

Return<void> MainService::a_hidl_qeltvapi_av_mode_get_all_sound_effect(
        uint32_t capacity, a_hidl_qeltvapi_av_mode_get_all_sound_effect_cb reply) {
    reply(atMost(Sound::effects(), capacity), kOk);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_av_mode_get_number_sound_effect(
        a_hidl_qeltvapi_av_mode_get_number_sound_effect_cb reply) {
    reply(static_cast<uint32_t>(Sound::effects().size()), kOk);
    return Void();
}

Return<int16_t> MainService::a_hidl_qeltvapi_volctrl_incrVolume() {
    return static_cast<int16_t>(mModels.sound.step(QELTV_VOLUME_SPEAKER, true));
}

Return<int16_t> MainService::a_hidl_qeltvapi_volctrl_incrVolume_by_type(int32_t type) {
    return static_cast<int16_t>(mModels.sound.step(type, true));
}

Return<int16_t> MainService::a_hidl_qeltvapi_volctrl_decrVolume() {
    return static_cast<int16_t>(mModels.sound.step(QELTV_VOLUME_SPEAKER, false));
}

Return<int16_t> MainService::a_hidl_qeltvapi_volctrl_decrVolume_by_type(int32_t type) {
    return static_cast<int16_t>(mModels.sound.step(type, false));
}

Return<int32_t> MainService::a_hidl_qeltvapi_volctrl_setVolume(int32_t volume) {
    return mModels.sound.setVolume(QELTV_VOLUME_SPEAKER, volume);
}

Return<int32_t> MainService::a_hidl_qeltvapi_volctrl_setVolume_by_type(int32_t type,
                                                                       int32_t volume) {
    return mModels.sound.setVolume(type, volume);
}

Return<int16_t> MainService::a_hidl_qeltvapi_volctrl_getVolume() {
    return static_cast<int16_t>(mModels.sound.volume(QELTV_VOLUME_SPEAKER));
}

Return<int16_t> MainService::a_hidl_qeltvapi_volctrl_getVolume_by_type(int32_t type) {
    return static_cast<int16_t>(mModels.sound.volume(type));
}

Return<int32_t> MainService::a_hidl_qeltvapi_volctrl_setMute(bool mute) {
    return mModels.sound.setMuted(QELTV_VOLUME_SPEAKER, mute);
}

Return<int32_t> MainService::a_hidl_qeltvapi_volctrl_setMute_by_type(int32_t type, bool mute) {
    return mModels.sound.setMuted(type, mute);
}

Return<bool> MainService::a_hidl_qeltvapi_volctrl_getMute() {
    return mModels.sound.muted(QELTV_VOLUME_SPEAKER);
}

Return<bool> MainService::a_hidl_qeltvapi_volctrl_getMute_by_type(int32_t type) {
    return mModels.sound.muted(type);
}

Return<void> MainService::a_hidl_qeltvapi_audio_info_get_current_lanuage(
        const String& name, a_hidl_qeltvapi_audio_info_get_current_lanuage_cb reply) {
    const auto path = Presentation::pathOf(name);
    const auto track = path ? currentTrack(*path) : std::nullopt;
    reply(track ? language(*track) : std::string(), !path ? kNotFound : track ? kOk : kRefused);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_audio_info_set_next_lanuage() {
    return mModels.presentation.nextLanguage(mModels.presentation.audioFocus());
}

Return<void> MainService::a_hidl_qeltvapi_audio_info_get_available_record(
        uint32_t num, a_hidl_qeltvapi_audio_info_get_available_record_cb reply) {
    const auto all = tracksOfMain(false);
    reply(records(all, num), static_cast<uint32_t>(all.size()), kOk);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_get_current_audio_info(
        a_hidl_qeltvapi_get_current_audio_info_cb reply) {
    const auto track = current(tracksOfMain(false));
    reply(track ? bytesOf(*track) : Bytes(), track ? kOk : kRefused);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_get_audio_apd_text(
        int32_t number, a_hidl_qeltvapi_get_audio_apd_text_cb reply) {
    const auto track = number > 0 ? trackOf(static_cast<uint32_t>(number)) : std::nullopt;
    const std::string text = track ? description(*track) : "";
    reply(textBytes(text), static_cast<int32_t>(text.size()), track ? kOk : kNotFound);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_get_current_ad_info(
        a_hidl_qeltvapi_get_current_ad_info_cb reply) {
    for (const QELTV_AUDIO_TRACK_T& track : tracksOfMain(false)) {
        if (track.purpose != QELTV_AUDIO_DESCRIPTION) continue;
        reply(bytesOf(track), kOk);
        return Void();
    }
    reply({}, kNotFound);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_select_audio(uint32_t track) {
    return mModels.presentation.selectTrack(mModels.presentation.audioFocus(), track);
}

Return<int32_t> MainService::a_hidl_qeltvapi_select_main_sub_audio(uint32_t track_main,
                                                                   uint32_t track_sub) {
    const int32_t code = mModels.presentation.selectTrack(Presentation::kMain, track_main);
    if (code != kOk) return code;
    return mModels.presentation.selectTrack(Presentation::kSub, track_sub);
}

Return<int32_t> MainService::a_hidl_qeltvapi_select_default_audio(const String& lang) {
    return stored([&] {
        const std::string wanted =
                lang.size() != 0 ? std::string(lang) : mModels.config.text("sound.audio_language");
        return mModels.presentation.selectLanguage(mModels.presentation.audioFocus(), wanted);
    });
}

Return<void> MainService::a_hidl_qeltvapi_audio_info_get_inputsource_available_record(
        uint32_t num, a_hidl_qeltvapi_audio_info_get_inputsource_available_record_cb reply) {
    const auto all = tracksOfMain(true);
    reply(records(all, num), static_cast<uint32_t>(all.size()), kOk);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_get_inputsource_current_audio_info(
        a_hidl_qeltvapi_get_inputsource_current_audio_info_cb reply) {
    const auto track = current(tracksOfMain(true));
    reply(track ? bytesOf(*track) : Bytes(), track ? kOk : kRefused);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_audio_info_set_value(int32_t id, int32_t value) {
    const bool reads = id >= QELTV_AUDIO_CURRENT_CODEC && id <= QELTV_AUDIO_CURRENT_RATE;
    return reads ? kRefused : mModels.sound.setValue(id, value);
}

Return<void> MainService::a_hidl_qeltvapi_audio_info_get_value(
        int32_t id, a_hidl_qeltvapi_audio_info_get_value_cb reply) {
    if (id < QELTV_AUDIO_CURRENT_CODEC || id > QELTV_AUDIO_CURRENT_RATE) {
        uint32_t value = 0;
        const int32_t code = mModels.sound.value(id, &value);
        reply(value, code);
        return Void();
    }
    const auto track = currentTrack(Presentation::kMain);
    if (!track) {
        reply(0, kRefused);
    } else {
        reply(id == QELTV_AUDIO_CURRENT_CODEC      ? track->codec
              : id == QELTV_AUDIO_CURRENT_CHANNELS ? track->channels
                                                   : track->sampleRate,
              kOk);
    }
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_audio_info_set_data(int32_t id, const Bytes& data,
                                                                 int32_t len) {
    if (id != QELTV_AUDIO_EQUALISER) return kNotFound;
    if (len < 0 || static_cast<size_t>(len) != data.size()) return kBadValue;
    return mModels.sound.setEqualiser(data);
}

Return<void> MainService::a_hidl_qeltvapi_audio_info_get_data(
        int32_t id, int32_t len, const Bytes& request,
        a_hidl_qeltvapi_audio_info_get_data_cb reply) {
    // The client copies all that arrives into the buffer of its request.
    const bool fits = len >= 0 && static_cast<size_t>(len) == request.size() &&
                      request.size() >= QELTV_AUDIO_EQUALISER_SIZE;
    const int32_t code = id != QELTV_AUDIO_EQUALISER ? kNotFound : fits ? kOk : kBadValue;
    reply(code == kOk ? Bytes(mModels.sound.equaliser()) : Bytes(), code);
    return Void();
}

}  // namespace qeltvd
