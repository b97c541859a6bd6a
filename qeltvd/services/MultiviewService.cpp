#include "MultiviewService.h"

#include "Code.h"

namespace qeltvd {

using android::hardware::Void;

MultiviewService::MultiviewService(Television& tv)
        : IQelTvApiMultiviewDefault(kUnsupported, false), mTv(tv) {}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_getPOPTunerFocus() {
    const auto path = mTv.presentation.tunerPath();
    return path ? static_cast<int32_t>(*path) : kNotFound;
}

MultiviewService::Return<int32_t>
MultiviewService::a_hidl_qeltvapi_multiview_setAudioFocusbySourceid(int32_t source) {
    const auto path = mTv.presentation.pathWith(source);
    return path ? mTv.presentation.setAudioFocus(*path) : kNotFound;
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_setAudioFocus(
        const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? mTv.presentation.setAudioFocus(*number) : kNotFound;
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_getAudioFocus() {
    return static_cast<int32_t>(mTv.presentation.audioFocus());
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_setNewTvMode(
        int32_t mode) {
    return mTv.presentation.setTvMode(mode);
}

MultiviewService::Return<void>
MultiviewService::a_hidl_qeltvapi_multiview_is_source_available_bysourceidandpath(
        int32_t source, const String& path,
        a_hidl_qeltvapi_multiview_is_source_available_bysourceidandpath_cb reply) {
    const auto number = Presentation::pathOf(path);
    const bool known = number && Inputs::exists(source);
    reply(known && mTv.presentation.isAvailable(*number, source), known ? kOk : kNotFound);
    return Void();
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_startMainVideo(
        int32_t p1, const HIDL_QELTVAPI_MULTIVIEW_REGION_T& region) {
    return mTv.presentation.startVideo(Presentation::kMain, p1,
                                       {region.x, region.y, region.w, region.h});
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_startSubVideo(
        int32_t p1, const HIDL_QELTVAPI_MULTIVIEW_REGION_T& region) {
    return mTv.presentation.startVideo(Presentation::kSub, p1,
                                       {region.x, region.y, region.w, region.h});
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_stopMainVideo() {
    return mTv.presentation.stop(Presentation::kMain);
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_stopSubVideo() {
    return mTv.presentation.stop(Presentation::kSub);
}

MultiviewService::Return<int32_t>
MultiviewService::a_hidl_qeltvapi_multiview_startVideoWithoutVideoPath(int32_t p1,
                                                                       const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? mTv.presentation.startWithoutPath(*number, p1) : kNotFound;
}

MultiviewService::Return<int32_t>
MultiviewService::a_hidl_qeltvapi_multiview_stopVideoWithoutVideoPath(const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? mTv.presentation.stopWithoutPath(*number) : kNotFound;
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_getVideoResource(
        const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? static_cast<int32_t>(mTv.presentation.resource(*number)) : kNotFound;
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_setChgSource(
        bool on) {
    mChangingSource = on;
    return kOk;
}

MultiviewService::Return<uint8_t> MultiviewService::a_hidl_qeltvapi_multiview_getChgSource() {
    return static_cast<uint8_t>(mChangingSource);
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_get_video_state(
        const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? int32_t{mTv.presentation.videoOn(*number)} : kNotFound;
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_set_video_state(
        const String& path, bool state) {
    const auto number = Presentation::pathOf(path);
    return number ? mTv.presentation.setVideoOn(*number, state) : kNotFound;
}

MultiviewService::Return<int32_t> MultiviewService::a_hidl_qeltvapi_multiview_only_chg_focus(
        const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? mTv.presentation.setAudioFocus(*number, true) : kNotFound;
}

}  // namespace qeltvd
