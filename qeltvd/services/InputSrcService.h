#pragma once

#include <qeltvapi/service/IQelTvApiInputSrc.h>

#include "Inputs.h"
#include "Presentation.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiInputSrc: the sockets, and which of them is shown. */
class InputSrcService : public Default<IQelTvApiInputSrc> {
  public:
    InputSrcService(Inputs& inputs, Presentation& presentation);

    Return<void> a_hidl_qeltvapi_inputsource_isVideoSignalAvailable(
            const String& path,
            a_hidl_qeltvapi_inputsource_isVideoSignalAvailable_cb reply) override;
    Return<void> a_hidl_qeltvapi_inputsource_isAudioSignalAvailable(
            const String& path,
            a_hidl_qeltvapi_inputsource_isAudioSignalAvailable_cb reply) override;
    Return<void> a_hidl_qeltvapi_inputsource_get_gpioid_byidx(
            int32_t idx, a_hidl_qeltvapi_inputsource_get_gpioid_byidx_cb reply) override;
    Return<uint8_t> a_hidl_qeltvapi_inputsource_get_hybrid_video_internal_id() override;
    Return<uint8_t> a_hidl_qeltvapi_inputsource_get_hybrid_comp_internal_id() override;
    Return<uint8_t> a_hidl_qeltvapi_inputsource_get_sourcetotalnum() override;
    Return<void> a_hidl_qeltvapi_inputsource_get_sharepinrec_byidx(
            int32_t idx, a_hidl_qeltvapi_inputsource_get_sharepinrec_byidx_cb reply) override;
    Return<void> a_hidl_qeltvapi_inputsource_get_sourcerec_byidx(
            int32_t idx, a_hidl_qeltvapi_inputsource_get_sourcerec_byidx_cb reply) override;
    Return<void> a_hidl_qeltvapi_inputsource_get_currentsourcename(
            int32_t capacity, a_hidl_qeltvapi_inputsource_get_currentsourcename_cb reply) override;
    Return<void> a_hidl_qeltvapi_inputsource_get_currentsourcename_bypath(
            int32_t capacity, const String& path,
            a_hidl_qeltvapi_inputsource_get_currentsourcename_bypath_cb reply) override;
    Return<void> a_hidl_qeltvapi_inputsource_get_sourcename_bysourceid(
            int32_t id, int32_t capacity,
            a_hidl_qeltvapi_inputsource_get_sourcename_bysourceid_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_inputsource_changesource_bysourceid(int32_t id) override;
    Return<void> a_hidl_qeltvapi_inputsource_is_source_available_bysourceidandpath(
            int32_t id, const String& path,
            a_hidl_qeltvapi_inputsource_is_source_available_bysourceidandpath_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_inputsource_changesource_bysourceidandpath(
            int32_t id, const String& path) override;
    Return<int32_t> a_hidl_qeltvapi_inputsource_cs_bysourceidandpathandpriority(
            int32_t id, const String& path, int32_t prio) override;
    Return<void> a_hidl_qeltvapi_inputsource_is_block_bysourceid(
            int32_t id, a_hidl_qeltvapi_inputsource_is_block_bysourceid_cb reply) override;
    Return<void> a_hidl_qeltvapi_inputsource_is_source_block_bysourceid(
            int32_t id, a_hidl_qeltvapi_inputsource_is_source_block_bysourceid_cb reply) override;
    Return<void> a_hidl_qeltvapi_inputsource_is_source_autodetect_bysourceid(
            int32_t id,
            a_hidl_qeltvapi_inputsource_is_source_autodetect_bysourceid_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_inputsource_set_source_blockstatus_bysourceid(
            int32_t id, bool block) override;
    Return<int32_t> a_hidl_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid(
            int32_t id, bool on) override;
    Return<void> a_hidl_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid(
            int32_t id,
            a_hidl_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid(
            int32_t id, int32_t label) override;
    Return<void> a_hidl_qeltvapi_inputsource_get_userdefname_bysourceid(
            int32_t id, int32_t capacity,
            a_hidl_qeltvapi_inputsource_get_userdefname_bysourceid_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_inputsource_set_userdefname_bysourceid(
            int32_t id, const String& name) override;
    Return<void> a_hidl_qeltvapi_inputsource_get_external_device_has_signal(
            int32_t id, int32_t extra,
            a_hidl_qeltvapi_inputsource_get_external_device_has_signal_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_inputsource_sync_stop(const String& path, bool extra) override;
    Return<void> a_hidl_qeltvapi_inputsource_query_conflict(
            int32_t first, int32_t second,
            a_hidl_qeltvapi_inputsource_query_conflict_cb reply) override;
    Return<void> a_hidl_qeltvapi_inputsource_get_mhl_port_num(
            a_hidl_qeltvapi_inputsource_get_mhl_port_num_cb reply) override;
    Return<void> a_hidl_qeltvapi_inputsource_check_menu_tv_block(
            a_hidl_qeltvapi_inputsource_check_menu_tv_block_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_inputsource_set_scart_auto_jump(bool on) override;

  private:
    template <class Reply>
    void answerName(int32_t id, int32_t form, const Reply& reply) const;

    Inputs& mInputs;
    Presentation& mPresentation;
};

}  // namespace qeltvd
