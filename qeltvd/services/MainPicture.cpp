#include "Blocks.h"
#include "Code.h"
#include "MainService.h"
#include "Picture.h"
#include "Presentation.h"

namespace qeltvd {

namespace {

/** What the picture of a source measures; broadcasts keep to the limited range. */
QELTV_DATA_RANGE_T dataRange(const QELTV_VIDEO_SOURCE_T& video) {
    if (video.width == 0) return {};
    const bool full = video.codec == QELTV_VIDEO_RAW && video.interlaced == 0;
    const uint32_t low = full ? 0 : 16;
    const uint32_t high = full ? 255 : 235;
    return {full, low, high, (low + high) / 2};
}

}  // namespace

bool MainService::showsInput() const {
    return mModels.presentation.status(Presentation::kMain).source != Inputs::kTuner;
}

Return<int32_t> MainService::a_hidl_qeltvapi_freeze_set_freeze(const String& path, bool freeze) {
    const auto number = Presentation::pathOf(path);
    return number ? mModels.presentation.setFrozen(*number, freeze) : kNotFound;
}

Return<bool> MainService::a_hidl_qeltvapi_freeze_is_freeze(const String& path) {
    const auto number = Presentation::pathOf(path);
    return number && mModels.presentation.frozen(*number);
}

Return<uint16_t> MainService::a_hidl_qeltvapi_screenmode_get_screen_mode() {
    return mModels.picture.screenMode(showsInput());
}

Return<int32_t> MainService::a_hidl_qeltvapi_screenmode_set_screen_mode(int32_t mode) {
    return mModels.picture.setScreenMode(showsInput(), mode);
}

Return<void> MainService::a_hidl_qeltvapi_screenmode_get_all_screen_mode(
        uint32_t capacity, a_hidl_qeltvapi_screenmode_get_all_screen_mode_cb reply) {
    const auto modes = atMost(Picture::screenModes(showsInput()), capacity);
    reply(modes, static_cast<uint32_t>(modes.size()), kOk);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_screenmode_get_number_screen_mode(
        a_hidl_qeltvapi_screenmode_get_number_screen_mode_cb reply) {
    reply(static_cast<uint32_t>(Picture::screenModes(showsInput()).size()), kOk);
    return Void();
}

Return<bool> MainService::a_hidl_qeltvapi_zoom_is_enable() {
    const bool input = showsInput();
    return mModels.presentation.video(Presentation::kMain).width != 0 &&
           mModels.picture.screenMode(input) != Picture::kPixelByPixel;
}

Return<int32_t> MainService::a_hidl_qeltvapi_screenmode_set_crnt_overscan(int32_t top,
                                                                          int32_t bottom,
                                                                          int32_t left,
                                                                          int32_t right) {
    return mModels.picture.setOverscan({top, bottom, left, right});
}

Return<void> MainService::a_hidl_qeltvapi_screenmode_get_crnt_overscan(
        a_hidl_qeltvapi_screenmode_get_crnt_overscan_cb reply) {
    reply(bytesOf(mModels.picture.overscan()), kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_screenmode_update_overscan_ini() {
    return mModels.picture.keepOverscan();
}

Return<uint16_t> MainService::a_hidl_qeltvapi_av_mode_get_picture_mode() {
    return mModels.picture.pictureMode();
}

Return<int32_t> MainService::a_hidl_qeltvapi_av_mode_set_picture_mode(int32_t mode) {
    return mModels.picture.setPictureMode(mode);
}

Return<void> MainService::a_hidl_qeltvapi_av_mode_get_all_picture_mode(
        uint32_t capacity, a_hidl_qeltvapi_av_mode_get_all_picture_mode_cb reply) {
    reply(atMost(Picture::pictureModes(), capacity), kOk);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_av_mode_get_number_picture_mode(
        a_hidl_qeltvapi_av_mode_get_number_picture_mode_cb reply) {
    reply(static_cast<uint32_t>(Picture::pictureModes().size()), kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_videoinfo_set_value(int32_t id, int32_t value) {
    return id >= QELTV_VIDEO_WIDTH && id <= QELTV_VIDEO_ASPECT
                   ? kRefused
                   : mModels.picture.setValue(id, value);
}

Return<void> MainService::a_hidl_qeltvapi_videoinfo_get_value(
        int32_t id, a_hidl_qeltvapi_videoinfo_get_value_cb reply) {
    const QELTV_VIDEO_SOURCE_T video = mModels.presentation.video(Presentation::kMain);
    uint32_t value = 0;
    int32_t code = kOk;
    switch (id) {
        case QELTV_VIDEO_WIDTH:
            value = video.width;
            break;
        case QELTV_VIDEO_HEIGHT:
            value = video.height;
            break;
        case QELTV_VIDEO_FRAME_RATE:
            value = video.frameRate;
            break;
        case QELTV_VIDEO_INTERLACED:
            value = video.interlaced;
            break;
        case QELTV_VIDEO_CODEC_VALUE:
            value = video.codec;
            break;
        case QELTV_VIDEO_ASPECT:
            value = video.aspectWidth << 16 | video.aspectHeight;
            break;
        default:
            code = mModels.picture.value(id, &value);
    }
    reply(value, code);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_videoinfo_set_data(int32_t id, const Bytes& data,
                                                                int32_t len) {
    if (data.size() != static_cast<uint32_t>(len)) return kBadValue;
    if (id == QELTV_VIDEO_DATA_SOURCE || id == QELTV_VIDEO_DATA_RANGE) return kRefused;
    return id == QELTV_VIDEO_DATA_USER ? mModels.picture.setUserData(data) : kNotFound;
}

Return<void> MainService::a_hidl_qeltvapi_videoinfo_get_data(
        int32_t id, const Bytes& request, a_hidl_qeltvapi_videoinfo_get_data_cb reply) {
    const QELTV_VIDEO_SOURCE_T video = mModels.presentation.video(Presentation::kMain);
    Bytes data;
    if (id == QELTV_VIDEO_DATA_SOURCE) {
        data = bytesOf(video);
    } else if (id == QELTV_VIDEO_DATA_RANGE) {
        data = bytesOf(dataRange(video));
    } else if (id == QELTV_VIDEO_DATA_USER) {
        data = mModels.picture.userData();
    } else {
        reply({}, kNotFound);
        return Void();
    }
    // The client copies all that arrives into the buffer of its request.
    if (data.size() <= request.size()) {
        reply(data, kOk);
    } else {
        reply({}, kBadValue);
    }
    return Void();
}

}  // namespace qeltvd
