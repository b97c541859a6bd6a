#include "hw_qeltvapi_av_mode.h"

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_av_mode)(client)";

constexpr Family<IQelTvApi> kAvMode{kTag, getQelTvApiService, -1, -1, line::name};

/** The current modes. */
constexpr Family<IQelTvApi> kCurrent =
        kAvMode.withPreset(QELTVAPI_AV_MODE_NONE).withMissing(QELTVAPI_AV_MODE_NONE);

/** All modes that the service sends, regardless of the buffer's capacity, and their number. */
auto storeModes(uint16_t* modes, uint32_t* num) {
    return [=](const hidl_vec<uint16_t>& answer, int32_t code) {
        copyAll(modes, answer);
        *num = static_cast<uint32_t>(answer.size());
        return code;
    };
}

auto storeNumber(uint32_t* num) {
    return [=](uint32_t count, int32_t code) {
        QELTVAPI_TRACE(kTag, "%s result %d %d", __func__, static_cast<int>(count), code);
        *num = count;
        return code;
    };
}

}  // namespace

uint16_t a_qeltvapi_av_mode_get_picture_mode(void) {
    return direct(kCurrent, HERE, &IQelTvApi::a_hidl_qeltvapi_av_mode_get_picture_mode);
}

int a_qeltvapi_av_mode_set_picture_mode(int32_t mode) {
    return direct(kAvMode, HERE, &IQelTvApi::a_hidl_qeltvapi_av_mode_set_picture_mode, mode);
}

int a_qeltvapi_av_mode_get_all_picture_mode(uint16_t* modes, uint32_t* num) {
    Call<IQelTvApi> call(kAvMode, HERE);
    if (!call) return kAvMode.missing;
    const int result = call.ask(&IQelTvApi::a_hidl_qeltvapi_av_mode_get_all_picture_mode,
                                storeModes(modes, num), *num);
    QELTVAPI_TRACE(kTag, "%s result!number:%d,ret:%d", __func__, static_cast<int>(*num), result);
    return result;
}

int a_qeltvapi_av_mode_get_number_picture_mode(uint32_t* num) {
    return ask(kAvMode, HERE, &IQelTvApi::a_hidl_qeltvapi_av_mode_get_number_picture_mode,
               storeNumber(num));
}

uint16_t a_qeltvapi_av_mode_get_sound_effect(void) {
    return direct(kCurrent, HERE, &IQelTvApi::a_hidl_qeltvapi_av_mode_get_sound_effect);
}

int a_qeltvapi_av_mode_set_sound_effect(int32_t effect) {
    return direct(kAvMode, HERE, &IQelTvApi::a_hidl_qeltvapi_av_mode_set_sound_effect, effect);
}

int a_qeltvapi_av_mode_get_all_sound_effect(uint16_t* effects, uint32_t* num) {
    Call<IQelTvApi> call(kAvMode, HERE);
    if (!call) return kAvMode.missing;
    const int result = call.ask(&IQelTvApi::a_hidl_qeltvapi_av_mode_get_all_sound_effect,
                                storeModes(effects, num), *num);
    QELTVAPI_TRACE(kTag, "%s result!number:%d,ret:%d", __func__, static_cast<int>(*num), result);
    return result;
}

int a_qeltvapi_av_mode_get_number_sound_effect(uint32_t* num) {
    return ask(kAvMode, HERE, &IQelTvApi::a_hidl_qeltvapi_av_mode_get_number_sound_effect,
               storeNumber(num));
}

int a_qeltvapi_audio_info_set_value(int32_t id, int32_t value) {
    return direct(kAvMode, HERE, &IQelTvApi::a_hidl_qeltvapi_audio_info_set_value, id, value);
}

int a_qeltvapi_audio_info_get_value(int32_t id, uint32_t* value) {
    return ask(
            kAvMode, HERE, &IQelTvApi::a_hidl_qeltvapi_audio_info_get_value,
            [=](uint32_t answer, int32_t code) {
                QELTVAPI_TRACE(kTag, "Enter %s:%d", __func__, __LINE__);
                *value = answer;
                return code;
            },
            id);
}

int a_qeltvapi_audio_info_set_data(int32_t id, const void* data, int32_t len) {
    return direct(kAvMode, HERE, &IQelTvApi::a_hidl_qeltvapi_audio_info_set_data, id,
                  over(data, static_cast<uint32_t>(len)), len);
}

int a_qeltvapi_audio_info_get_data(int32_t id, void* buf, int32_t len) {
    return ask(
            kAvMode, HERE, &IQelTvApi::a_hidl_qeltvapi_audio_info_get_data,
            [=](const hidl_vec<uint8_t>& answer, int32_t code) {
                QELTVAPI_TRACE(kTag, "Enter %s:%d", __func__, __LINE__);
                copyAll(buf, answer);
                return code;
            },
            id, len, over(buf, static_cast<uint32_t>(len)));
}
