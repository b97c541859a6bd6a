#include "hw_qeltvapi_multiview.h"

#include "call.h"

using namespace qeltvapi;
using namespace vendor::qelnova::tv::qeltvapi::V1_0;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_multiview)(client)";

// The rating family's words are kept on purpose.
void serviceFail(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Get rating service fail.\n");
}

// A lost reply gives 0.
constexpr Family<IQelTvApiMultiview> kMultiview =
        Family<IQelTvApiMultiview>{kTag, getQelTvApiMultiviewService, 0}
                .withEntry(line::name)
                .withMissingAlways(serviceFail);

static_assert(sizeof(QELTVAPI_MULTIVIEW_REGION_T) == sizeof(HIDL_QELTVAPI_MULTIVIEW_REGION_T) &&
              sizeof(QELTVAPI_MULTIVIEW_REGION_T) == 16);

/** Starts a video in the caller's region, which is not read without a service. */
template <class Method>
int startVideo(const Site& site, Method method, int32_t p1, const QELTVAPI_MULTIVIEW_REGION_T* r) {
    Call<IQelTvApiMultiview> call(kMultiview, site);
    if (!call) return kMultiview.missing;
    HIDL_QELTVAPI_MULTIVIEW_REGION_T region;
    copy(&region, r, sizeof(region));
    return call.direct(method, p1, region);
}

}  // namespace

int a_qeltvapi_multiview_getPOPTunerFocus(void) {
    return direct(kMultiview, HERE,
                  &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_getPOPTunerFocus);
}

int a_qeltvapi_multiview_setAudioFocusbySourceid(int32_t source) {
    return direct(kMultiview, HERE,
                  &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_setAudioFocusbySourceid, source);
}

int a_qeltvapi_multiview_setAudioFocus(const char* path) {
    return direct(kMultiview, HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_setAudioFocus,
                  text(path));
}

int a_qeltvapi_multiview_getAudioFocus(void) {
    return direct(kMultiview, HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_getAudioFocus);
}

int a_qeltvapi_multiview_setNewTvMode(int32_t mode) {
    return direct(kMultiview, HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_setNewTvMode,
                  mode);
}

int a_qeltvapi_multiview_is_source_available_bysourceidandpath(int32_t source, const char* path,
                                                               uint8_t* val) {
    return ask(kMultiview, HERE,
               &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_is_source_available_bysourceidandpath,
               storeValue(val), source, text(path));
}

int a_qeltvapi_multiview_startMainVideo(int32_t p1, const QELTVAPI_MULTIVIEW_REGION_T* r) {
    return startVideo(HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_startMainVideo, p1, r);
}

int a_qeltvapi_multiview_startSubVideo(int32_t p1, const QELTVAPI_MULTIVIEW_REGION_T* r) {
    return startVideo(HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_startSubVideo, p1, r);
}

int a_qeltvapi_multiview_stopMainVideo(void) {
    return direct(kMultiview, HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_stopMainVideo);
}

int a_qeltvapi_multiview_stopSubVideo(void) {
    return direct(kMultiview, HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_stopSubVideo);
}

int a_qeltvapi_multiview_startVideoWithoutVideoPath(int32_t p1, const char* path) {
    return direct(kMultiview, HERE,
                  &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_startVideoWithoutVideoPath, p1,
                  text(path));
}

int a_qeltvapi_multiview_stopVideoWithoutVideoPath(const char* path) {
    return direct(kMultiview, HERE,
                  &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_stopVideoWithoutVideoPath,
                  text(path));
}

int a_qeltvapi_multiview_getVideoResource(const char* path) {
    return direct(kMultiview, HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_getVideoResource,
                  text(path));
}

int a_qeltvapi_multiview_setChgSource(int on) {
    return direct(kMultiview, HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_setChgSource,
                  on != 0);
}

uint8_t a_qeltvapi_multiview_getChgSource(void) {
    return direct(kMultiview.withMissing(0), HERE,
                  &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_getChgSource);
}

int a_qeltvapi_multiview_get_video_state(const char* path) {
    return direct(kMultiview, HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_get_video_state,
                  text(path));
}

int a_qeltvapi_multiview_set_video_state(const char* path, int state) {
    return direct(kMultiview, HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_set_video_state,
                  text(path), state != 0);
}

int a_qeltvapi_multiview_only_chg_focus(const char* path) {
    return direct(kMultiview, HERE, &IQelTvApiMultiview::a_hidl_qeltvapi_multiview_only_chg_focus,
                  text(path));
}
