#include "MultiviewService.h"

#include "Code.h"

namespace qeltvd {

MultiviewService::MultiviewService(Presentation& presentation) : mPresentation(presentation) {}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_getPOPTunerFocus() {
    const auto path = mPresentation.tunerPath();
    return path ? static_cast<int32_t>(*path) : kNotFound;
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_setAudioFocusbySourceid(
        int32_t source) {
    const auto path = mPresentation.pathWith(source);
    return path ? mPresentation.setAudioFocus(*path) : kNotFound;
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_setAudioFocus(const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? mPresentation.setAudioFocus(*number) : kNotFound;
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_getAudioFocus() {
    return static_cast<int32_t>(mPresentation.audioFocus());
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_setNewTvMode(int32_t mode) {
    return mPresentation.setTvMode(mode);
}

Return<void> MultiviewService::a_hidl_qeltvapi_multiview_is_source_available_bysourceidandpath(
        int32_t source, const String& path,
        a_hidl_qeltvapi_multiview_is_source_available_bysourceidandpath_cb reply) {
    const auto number = Presentation::pathOf(path);
    const bool known = number && Inputs::exists(source);
    reply(known && mPresentation.isAvailable(*number, source), known ? kOk : kNotFound);
    return Void();
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_startMainVideo(
        int32_t input, const HIDL_QELTVAPI_MULTIVIEW_REGION_T& region) {
    return mPresentation.startVideo(Presentation::kMain, input,
                                    {region.x, region.y, region.w, region.h});
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_startSubVideo(
        int32_t input, const HIDL_QELTVAPI_MULTIVIEW_REGION_T& region) {
    return mPresentation.startVideo(Presentation::kSub, input,
                                    {region.x, region.y, region.w, region.h});
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_stopMainVideo() {
    return mPresentation.stop(Presentation::kMain);
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_stopSubVideo() {
    return mPresentation.stop(Presentation::kSub);
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_startVideoWithoutVideoPath(
        int32_t input, const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? mPresentation.startWithoutPath(*number, input) : kNotFound;
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_stopVideoWithoutVideoPath(
        const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? mPresentation.stopWithoutPath(*number) : kNotFound;
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_getVideoResource(const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? static_cast<int32_t>(mPresentation.resource(*number)) : kNotFound;
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_setChgSource(bool on) {
    mChangingSource = on;
    return kOk;
}

Return<uint8_t> MultiviewService::a_hidl_qeltvapi_multiview_getChgSource() {
    return static_cast<uint8_t>(mChangingSource);
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_get_video_state(const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? int32_t{mPresentation.videoOn(*number)} : kNotFound;
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_set_video_state(const String& path,
                                                                            bool state) {
    const auto number = Presentation::pathOf(path);
    return number ? mPresentation.setVideoOn(*number, state) : kNotFound;
}

Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_only_chg_focus(const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? mPresentation.setAudioFocus(*number, true) : kNotFound;
}

}  // namespace qeltvd
