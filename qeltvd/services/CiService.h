#pragma once

#include <qeltvapi/service/IQelTvApiCI.h>

#include "Cam.h"
#include "Presentation.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiCI over the CAM. */
class CiService : public Default<IQelTvApiCI> {
  public:
    CiService(Cam& cam, Presentation& presentation);

    Return<void> a_hidl_qeltvapi_ci_get(int32_t type, uint32_t value, const Bytes& data,
                                        uint32_t len, a_hidl_qeltvapi_ci_get_cb reply) override;
    Return<void> a_hidl_qeltvapi_ci_get_cam_pin_code(
            int32_t type, uint32_t value, a_hidl_qeltvapi_ci_get_cam_pin_code_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_ci_set(int32_t type, uint32_t value,
                                           const Bytes& data) override;
    Return<int32_t> a_hidl_qeltvapi_ci_set_mmi_enq_ans(
            int32_t type, uint32_t value, const HIDL_CI_MMI_ENQ_ANS_T& answer) override;
    Return<void> a_hidl_qeltvapi_ci_get_virtual_channel_info(
            uint32_t info, a_hidl_qeltvapi_ci_get_virtual_channel_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_ci_key_erase() override;
    Return<void> a_hidl_qeltvapi_ci_key_get_host_id(
            uint8_t len, a_hidl_qeltvapi_ci_key_get_host_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_ci_key_query(a_hidl_qeltvapi_ci_key_query_cb reply) override;
    Return<void> a_hidl_qeltvapi_ci_key_query_exist(
            a_hidl_qeltvapi_ci_key_query_exist_cb reply) override;
    Return<void> a_hidl_qeltvapi_ci_key_query_exist_ex(
            uint32_t value, a_hidl_qeltvapi_ci_key_query_exist_ex_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_ci_key_update() override;
    Return<int32_t> a_hidl_qeltvapi_ci_key_update_with_path(const String& path) override;
    Return<int32_t> a_hidl_qeltvapi_ci_key_update_with_path_ex(const String& path,
                                                               uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_ci_key_update_ex(uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_ci_key_write(const Bytes& data, uint32_t len) override;
    Return<int32_t> a_hidl_qeltvapi_ci_key_activate() override;
    Return<void> a_hidl_qeltvapi_ci_reg_callback(uint32_t a, uint32_t b,
                                                 a_hidl_qeltvapi_ci_reg_callback_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_ci_unreg_callback(int32_t registration) override;

  private:
    Cam& mCam;
    Presentation& mPresentation;
};

}  // namespace qeltvd
