#pragma once

#include <qeltvapi/service/IQelTvApiMultiview.h>
#include <atomic>

#include "Presentation.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiMultiview: two pictures at a time. */
class MultiviewService : public Default<IQelTvApiMultiview> {
  public:
    explicit MultiviewService(Presentation& presentation);

    Return<int32_t> a_hidl_qeltvapi_multiview_getPOPTunerFocus() override;
    Return<int32_t> a_hidl_qeltvapi_multiview_setAudioFocusbySourceid(int32_t source) override;
    Return<int32_t> a_hidl_qeltvapi_multiview_setAudioFocus(const String& path) override;
    Return<int32_t> a_hidl_qeltvapi_multiview_getAudioFocus() override;
    Return<int32_t> a_hidl_qeltvapi_multiview_setNewTvMode(int32_t mode) override;
    Return<void> a_hidl_qeltvapi_multiview_is_source_available_bysourceidandpath(
            int32_t source, const String& path,
            a_hidl_qeltvapi_multiview_is_source_available_bysourceidandpath_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_multiview_startMainVideo(
            int32_t input, const HIDL_QELTVAPI_MULTIVIEW_REGION_T& region) override;
    Return<int32_t> a_hidl_qeltvapi_multiview_startSubVideo(
            int32_t input, const HIDL_QELTVAPI_MULTIVIEW_REGION_T& region) override;
    Return<int32_t> a_hidl_qeltvapi_multiview_stopMainVideo() override;
    Return<int32_t> a_hidl_qeltvapi_multiview_stopSubVideo() override;
    Return<int32_t> a_hidl_qeltvapi_multiview_startVideoWithoutVideoPath(
            int32_t input, const String& path) override;
    Return<int32_t> a_hidl_qeltvapi_multiview_stopVideoWithoutVideoPath(
            const String& path) override;
    Return<int32_t> a_hidl_qeltvapi_multiview_getVideoResource(const String& path) override;
    Return<int32_t> a_hidl_qeltvapi_multiview_setChgSource(bool on) override;
    Return<uint8_t> a_hidl_qeltvapi_multiview_getChgSource() override;
    Return<int32_t> a_hidl_qeltvapi_multiview_get_video_state(const String& path) override;
    Return<int32_t> a_hidl_qeltvapi_multiview_set_video_state(const String& path,
                                                              bool state) override;
    Return<int32_t> a_hidl_qeltvapi_multiview_only_chg_focus(const String& path) override;

  private:
    Presentation& mPresentation;
    std::atomic<bool> mChangingSource{false};
};

}  // namespace qeltvd
