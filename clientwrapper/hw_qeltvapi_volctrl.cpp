#include "hw_qeltvapi_volctrl.h"

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_volctrl)(client)";

constexpr Family<IQelTvApi> kVolctrl{kTag, getQelTvApiService, -1, -1, line::name};

/** The mute states. */
constexpr Family<IQelTvApi> kMuted = kVolctrl.withPreset(0).withMissing(0);

}  // namespace

int a_qeltvapi_volctrl_reg_callback(void) {
    QELTVAPI_TRACE_AT(kTag, 85, "%s", __func__);
    return 0;
}

int a_qeltvapi_volctrl_audio_event_callback_unregister(void) {
    QELTVAPI_TRACE_AT(kTag, 90, "%s", __func__);
    return 0;
}

int a_qeltvapi_volctrl_audio_event_register_callback(void) {
    QELTVAPI_TRACE_AT(kTag, 97, "%s", __func__);
    return 0;
}

int16_t a_qeltvapi_volctrl_incrVolume(void) {
    return direct(kVolctrl, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_incrVolume);
}

int16_t a_qeltvapi_volctrl_incrVolume_by_type(int32_t type) {
    return direct(kVolctrl, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_incrVolume_by_type, type);
}

int16_t a_qeltvapi_volctrl_decrVolume(void) {
    return direct(kVolctrl, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_decrVolume);
}

int16_t a_qeltvapi_volctrl_decrVolume_by_type(int32_t type) {
    return direct(kVolctrl, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_decrVolume_by_type, type);
}

int a_qeltvapi_volctrl_setVolume(int32_t volume) {
    return direct(kVolctrl, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_setVolume, volume);
}

int a_qeltvapi_volctrl_setVolume_by_type(int32_t type, int32_t volume) {
    return direct(kVolctrl, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_setVolume_by_type, type,
                  volume);
}

int16_t a_qeltvapi_volctrl_getVolume(void) {
    return direct(kVolctrl, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_getVolume);
}

int16_t a_qeltvapi_volctrl_getVolume_by_type(int32_t type) {
    return direct(kVolctrl, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_getVolume_by_type, type);
}

int a_qeltvapi_volctrl_setMute(int mute) {
    return direct(kVolctrl, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_setMute, mute != 0);
}

int a_qeltvapi_volctrl_setMute_by_type(int32_t type, int mute) {
    return direct(kVolctrl, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_setMute_by_type, type,
                  mute != 0);
}

int a_qeltvapi_volctrl_getMute(void) {
    return direct(kMuted, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_getMute);
}

int a_qeltvapi_volctrl_getMute_by_type(int32_t type) {
    return direct(kMuted, HERE, &IQelTvApi::a_hidl_qeltvapi_volctrl_getMute_by_type, type);
}
