#include "CiService.h"

#include <hwbinder/IPCThreadState.h>

#include <algorithm>

#include "Code.h"

namespace qeltvd {

using android::hardware::IPCThreadState;

namespace {

constexpr uint32_t kFirstKind = 0;

}  // namespace

CiService::CiService(Cam& cam, Presentation& presentation)
        : mCam(cam), mPresentation(presentation) {}

/** The caller takes the whole answer, so one that does not fit into its buffer is none. */
Return<void> CiService::a_hidl_qeltvapi_ci_get(int32_t type, uint32_t value, const Bytes&,
                                               uint32_t len, a_hidl_qeltvapi_ci_get_cb reply) {
    const auto answer = mCam.get(type);
    if (!answer) {
        reply({}, 0, kUnsupported);
    } else if (value != 0) {
        reply({}, 0, kNotFound);
    } else if (answer->size() > len) {
        reply({}, 0, kBadValue);
    } else {
        const size_t unit = type == QELTV_CI_GET_CAM_NAME_UTF16 ? sizeof(uint16_t) : 1;
        reply(*answer, static_cast<uint32_t>(answer->size() / unit), kOk);
    }
    return Void();
}

Return<void> CiService::a_hidl_qeltvapi_ci_get_cam_pin_code(
        int32_t, uint32_t value, a_hidl_qeltvapi_ci_get_cam_pin_code_cb reply) {
    HIDL_CI_CAM_PIN_CODE_T code{};
    if (value != 0) {
        reply(code, kNotFound);
        return Void();
    }
    bool valid = false;
    std::u16string pin = mCam.pin(&valid);
    pin.push_back(0);
    code.ui1_valid = valid;
    code.w2s_pin_code = std::vector<uint16_t>(pin.begin(), pin.end());
    reply(code, kOk);
    return Void();
}

Return<int32_t> CiService::a_hidl_qeltvapi_ci_set(int32_t type, uint32_t value, const Bytes& data) {
    const Code code = mCam.set(type, value, data.data(), data.size());
    // What is shown may need the CAM, which may have come or gone.
    if (code == kOk) mPresentation.camChanged();
    return code;
}

Return<int32_t> CiService::a_hidl_qeltvapi_ci_set_mmi_enq_ans(int32_t, uint32_t value,
                                                              const HIDL_CI_MMI_ENQ_ANS_T& answer) {
    if (value != 0) return kNotFound;
    const auto* const begin = answer.w2s_txt.data();
    const auto* const end = begin + answer.w2s_txt.size();
    return mCam.answerEnquiry(answer.ui4_first, answer.ui4_second,
                              std::u16string(begin, std::find(begin, end, 0)));
}

Return<void> CiService::a_hidl_qeltvapi_ci_get_virtual_channel_info(
        uint32_t info, a_hidl_qeltvapi_ci_get_virtual_channel_info_cb reply) {
    return replyWith(reply, mCam.virtualChannel(info));
}

Return<int32_t> CiService::a_hidl_qeltvapi_ci_key_erase() {
    return mCam.eraseKeys();
}

Return<void> CiService::a_hidl_qeltvapi_ci_key_get_host_id(
        uint8_t len, a_hidl_qeltvapi_ci_key_get_host_id_cb reply) {
    if (len < QELTV_CI_HOST_ID_SIZE) {
        reply({}, 0, kBadValue);
    } else {
        reply(mCam.hostId(), QELTV_CI_HOST_ID_SIZE, kOk);
    }
    return Void();
}

Return<void> CiService::a_hidl_qeltvapi_ci_key_query(a_hidl_qeltvapi_ci_key_query_cb reply) {
    const Result<std::u16string> keys = mCam.describeKeys();
    std::u16string text = keys.valueOr({});
    text.push_back(0);
    reply(std::vector<uint16_t>(text.begin(), text.end()), keys.code());
    return Void();
}

Return<void> CiService::a_hidl_qeltvapi_ci_key_query_exist(
        a_hidl_qeltvapi_ci_key_query_exist_cb reply) {
    return replyWith(reply, mCam.keyExists(kFirstKind));
}

Return<void> CiService::a_hidl_qeltvapi_ci_key_query_exist_ex(
        uint32_t value, a_hidl_qeltvapi_ci_key_query_exist_ex_cb reply) {
    return replyWith(reply, mCam.keyExists(value));
}

Return<int32_t> CiService::a_hidl_qeltvapi_ci_key_update() {
    return mCam.readDeviceKey(kFirstKind);
}

Return<int32_t> CiService::a_hidl_qeltvapi_ci_key_update_with_path(const String& path) {
    return mCam.readKey(kFirstKind, path);
}

Return<int32_t> CiService::a_hidl_qeltvapi_ci_key_update_with_path_ex(const String& path,
                                                                      uint32_t value) {
    return mCam.readKey(value, path);
}

Return<int32_t> CiService::a_hidl_qeltvapi_ci_key_update_ex(uint32_t value) {
    return mCam.readDeviceKey(value);
}

Return<int32_t> CiService::a_hidl_qeltvapi_ci_key_write(const Bytes& data, uint32_t len) {
    if (len != data.size()) return kBadValue;
    return mCam.writeKey(kFirstKind, Cam::Bytes(data.begin(), data.end()));
}

Return<int32_t> CiService::a_hidl_qeltvapi_ci_key_activate() {
    return mCam.activateKeys();
}

Return<void> CiService::a_hidl_qeltvapi_ci_reg_callback(uint32_t a, uint32_t b,
                                                        a_hidl_qeltvapi_ci_reg_callback_cb reply) {
    return replyWith(reply, mCam.add(a, b, IPCThreadState::self()->getCallingPid()));
}

Return<int32_t> CiService::a_hidl_qeltvapi_ci_unreg_callback(int32_t registration) {
    return mCam.remove(registration);
}

}  // namespace qeltvd
