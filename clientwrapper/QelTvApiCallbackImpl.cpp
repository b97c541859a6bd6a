#include "QelTvApiCallbackImpl.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

#include "hw_qeltvapi_common.h"

using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::Return;
using android::hardware::Void;
using namespace vendor::qelnova::tv::qeltvapi::V1_0;

namespace {

constexpr char kTag[] = "QelTvApiCallbackImpl(client)";

unsigned long long wide(uint64_t value) {
    return value;
}

// How a value of a notification reaches the application's function.

template <class T>
std::enable_if_t<std::is_arithmetic_v<T>, T> converted(T value) {
    return value;
}

/** Tags and pointers of this process: a 32-bit process receives the low half. */
uintptr_t converted(uint64_t value) {
    return static_cast<uintptr_t>(value);
}

int32_t converted(HIDL_QELTVAPI_APPTV_CALLBACK_TYPE_T value) {
    return static_cast<int32_t>(value);
}

const char* converted(const hidl_string& value) {
    return value.c_str();
}

const void* converted(const hidl_vec<uint8_t>& value) {
    return value.data();
}

/** Calls the slot's function with the notification's values, if there is a function. */
template <class F, class... V>
Return<void> forward(const NotificationSlot<F>& slot, const V&... values) {
    static_assert(std::is_same_v<F, int (*)(decltype(converted(values))...)>,
                  "the function takes the notification's values in their order, converted");
    if (F function = slot.get(); function != nullptr) function(converted(values)...);
    return Void();
}

/** The three kinds of Common Interface notification share one function. */
Return<void> forwardCi(uint64_t nfy, uint64_t tag, int32_t cond, const void* data) {
    if (auto function = QelTvApiCallbackImpl::pf_ci_cb.get(); function != nullptr) {
        function(static_cast<uint32_t>(nfy), static_cast<uint32_t>(tag), cond, data);
    }
    return Void();
}

/** The first 32-bit word of the data, missing bytes 0. */
uint32_t firstWord(const hidl_vec<uint8_t>& data) {
    uint32_t word = 0;
    if (data.size() != 0) memcpy(&word, data.data(), std::min(data.size(), sizeof(word)));
    return word;
}

using Text = std::vector<uint16_t>;

/** A text of the interface, with a zero behind it. */
Text terminated(const hidl_vec<uint16_t>& text) {
    Text copy(text.begin(), text.end());
    copy.push_back(0);
    return copy;
}

}  // namespace

Return<void> QelTvApiCallbackImpl::a_hidl_x_svctx_listener_nfy_fct(uint32_t svctx, uint16_t arg1,
                                                                   uint16_t arg2, uint16_t arg3,
                                                                   uint64_t tag) {
    QELTVAPI_TRACE_AT(kTag, 121, "%d %d", svctx, arg1);
    return forward(pf_svctx_listener, svctx, arg1, arg2, arg3, tag);
}

Return<void> QelTvApiCallbackImpl::a_hidl_x_svctx_select_nfy_fct(uint32_t svctx, uint32_t arg1,
                                                                 uint32_t arg2, uint32_t arg3,
                                                                 uint64_t tag) {
    QELTVAPI_TRACE_AT(kTag, 140, "%d %d %d %d", svctx, arg1, arg2, arg3);
    return forward(pf_svctx_select_listener, svctx, arg1, arg2, arg3, tag);
}

Return<void> QelTvApiCallbackImpl::a_hidl_x_scc_vid_src_detect_nfy_fct(uint32_t comp, uint32_t cond,
                                                                       uint64_t tag, uint32_t arg1,
                                                                       uint32_t arg2) {
    QELTVAPI_TRACE_AT(kTag, 160, "%d", comp);
    return forward(pf_src_detect_nfy_cb, comp, cond, tag, arg1, arg2);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_highlevel_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    QELTVAPI_TRACE_AT(kTag, 181, "%d", type);
    return forward(pf_highlevel_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_3dmode_callback_fct(int32_t type, uint64_t tag,
                                                                       uint64_t arg1, uint64_t arg2,
                                                                       uint64_t arg3,
                                                                       uint64_t arg4) {
    QELTVAPI_TRACE_AT(kTag, 201, "%d", type);
    return forward(pf_3dmode_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_osdmessage_callback_fct(
        bool show, uint64_t /* tag */, uint64_t /* arg1 */, uint64_t /* arg2 */,
        uint64_t /* arg3 */, uint64_t /* arg4 */) {
    QELTVAPI_TRACE_AT(kTag, 221, "%d", show);
    return Void();
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_special_mode_callback(int32_t type,
                                                                         uint64_t /* tag */,
                                                                         uint64_t /* arg1 */) {
    QELTVAPI_TRACE_AT(kTag, 227, "%d", type);
    return Void();
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_util_nousedkey_callback(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    QELTVAPI_TRACE_AT(kTag, 239, "%d", type);
    return forward(pf_nousedkey_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_highlevel_query_android_fct(
        uint32_t query, uint64_t /* data */, uint32_t size, uint64_t tag,
        a_hidl_qeltvapi_highlevel_query_android_fct_cb _hidl_cb) {
    // The second argument is a pointer of the service's process; a block of ours stands for it.
    auto function = pf_highlevel_query_cb.get();
    std::unique_ptr<void, decltype(&free)> block(function != nullptr ? calloc(size, 1) : nullptr,
                                                 &free);
    // A call without an answer would abort the caller's transport.
    if (block == nullptr) {
        _hidl_cb(0, {});
        return Void();
    }
    uint32_t value = function(query, block.get(), size, converted(tag));
    hidl_vec<uint8_t> answer;
    answer.setToExternal(static_cast<uint8_t*>(block.get()), size);
    _hidl_cb(value, answer);
    return Void();
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_eas_callback_fct(int32_t type, uint64_t tag,
                                                                    uint64_t arg1, uint64_t arg2,
                                                                    uint64_t arg3, uint64_t arg4) {
    return forward(pf_eas_callback_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_ginga_callback_fct(int32_t type, uint64_t tag,
                                                                      const hidl_vec<uint8_t>& data,
                                                                      uint64_t arg1,
                                                                      uint64_t arg2) {
    QELTVAPI_TRACE_AT(kTag, 319, "%d", type);
    return forward(pf_ginga_app_cb, type, tag, data, arg1, arg2);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_ginga_volume_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3) {
    QELTVAPI_TRACE_AT(kTag, 337, "%d", type);
    return forward(pf_ginga_volume_cb, type, tag, arg1, arg2, arg3);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_ginga_update_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3) {
    QELTVAPI_TRACE_AT(kTag, 355, "%d", type);
    return forward(pf_ginga_update_cb, type, tag, arg1, arg2, arg3);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_scan_callback_fct(int32_t type, uint64_t tag,
                                                                     uint64_t arg1, uint64_t arg2,
                                                                     uint64_t arg3, uint64_t arg4) {
    return forward(pf_scan_callback_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_broadcast_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    return forward(pf_broadcast_callback_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_screensaver_msg_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3) {
    QELTVAPI_TRACE_AT(kTag, 411, "%d", type);
    return forward(pf_screensaver_msg_cb, type, tag, arg1, arg2, arg3);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_warning_msg_callback(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    return forward(pf_warning_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_banner_callback(int32_t type, uint64_t tag,
                                                                   uint64_t arg1, uint64_t arg2,
                                                                   uint64_t arg3, uint64_t arg4) {
    return forward(pf_banner_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_rating_op_vchip_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    return forward(pf_rating_op_vchip_callback_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_channel_logo_data_update_callback_fct(
        int32_t type, uint64_t tag, int32_t arg1, int32_t arg2, int32_t arg3, int32_t arg4) {
    QELTVAPI_TRACE_AT(kTag, 503, "%d", type);
    return forward(pf_channel_logo_data_update_callback_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_subtitle_callback(int32_t type, uint64_t tag,
                                                                     uint64_t arg1, uint64_t arg2,
                                                                     uint64_t arg3, uint64_t arg4) {
    return forward(pf_subtitle_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_pwddlg_callback_fct(int32_t type, uint64_t tag,
                                                                       uint64_t arg1, uint64_t arg2,
                                                                       uint64_t arg3,
                                                                       uint64_t arg4) {
    QELTVAPI_TRACE_AT(kTag, 543, "%d", type);
    return forward(pf_pwddlg_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_event_update_nfy_fct(int32_t type, uint64_t tag,
                                                               uint64_t arg1, uint64_t arg2,
                                                               uint64_t arg3, uint64_t arg4) {
    QELTVAPI_TRACE_AT(kTag, 583, "%d", type);
    return forward(pf_event_nfy_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_timeshift_jni_callback_fct(int32_t type, uint64_t tag,
                                                                     uint64_t arg1, uint64_t arg2) {
    return forward(pf_timeshift_cb, type, tag, arg1, arg2);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_dt_callback_fct(int32_t type, uint64_t tag,
                                                                   uint64_t arg1) {
    return forward(pf_dt_cb, type, tag, arg1);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_sleep_timer_callback_fct(int32_t type,
                                                                            uint64_t tag,
                                                                            uint64_t arg1) {
    return forward(pf_sleep_timer_cb, type, tag, arg1);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_sync_source_callback_fct(int32_t type,
                                                                            uint64_t tag,
                                                                            uint64_t arg1) {
    return forward(pf_sync_source_cb, type, tag, arg1);
}

Return<void> QelTvApiCallbackImpl::a_hidl_x_pcl_nfy_fct(uint32_t cond, uint64_t tag, uint32_t arg1,
                                                        uint32_t arg2) {
    return forward(pf_pcl_cb, cond, tag, arg1, arg2);
}

Return<void> QelTvApiCallbackImpl::a_hidl_event_event_atsc_nfy_fct(int32_t type, uint64_t tag,
                                                                   uint64_t arg1, uint64_t arg2,
                                                                   uint64_t arg3, uint64_t arg4) {
    QELTVAPI_TRACE_AT(kTag, 672, "%d", type);
    return forward(event_atsc_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_config_update_nfy_fct(int32_t type, uint64_t tag,
                                                                uint64_t arg1,
                                                                const hidl_string& name,
                                                                uint64_t arg2, uint64_t arg3) {
    QELTVAPI_TRACE_AT(kTag, 522, "%d", type);
    return forward(pf_config_update_nfy_fct, type, tag, arg1, name, arg2, arg3);
}

Return<void> QelTvApiCallbackImpl::a_hidl_iom_uart_nfy_fct(uint64_t tag, uint64_t arg1,
                                                           const hidl_vec<uint8_t>& data) {
    return forward(iom_notify_cb, tag, arg1, data, static_cast<uint32_t>(data.size()));
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_apptv_register_callback_fct(
        HIDL_QELTVAPI_APPTV_CALLBACK_TYPE_T type, uint64_t tag, uint64_t arg1, uint64_t arg2,
        uint64_t arg3, uint64_t arg4) {
    QELTVAPI_TRACE_AT(kTag, 707, "%d", converted(type));
    return forward(pf_apptv_callback_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_hbbtv_msg_callback(
        int32_t type, uint64_t tag, const hidl_vec<uint8_t>& data) {
    return forward(pf_hbbtv_msg_callback_fct, type, tag, data);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_oad_callback_fct(int32_t type, uint64_t tag,
                                                                    const hidl_string& text,
                                                                    int32_t arg1, bool flag,
                                                                    int32_t arg2) {
    return forward(pf_oad_callback_fct, type, tag, text, arg1, flag, arg2);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_mheg5_msg_callback(int32_t type, uint64_t tag,
                                                                      int32_t arg1, int32_t arg2,
                                                                      int32_t arg3) {
    QELTVAPI_TRACE_AT(kTag, 762,
                      "{MHEG5} i4_type:%d, pv_tag:%llu, i4_arg1:%d, i4_arg2:%d, i4_arg3:%d.", type,
                      wide(tag), arg1, arg2, arg3);
    return forward(pf_mheg5_msg_cb, type, tag, arg1, arg2, arg3);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_mheg5_lanuch_hbbtv_nfy_fct(
        const hidl_string& location, uint64_t tag, int32_t arg1) {
    QELTVAPI_TRACE_AT(kTag, 783, "{MHEG5} ps_location:%s, pv_tag:%llu, i4_arg1:%d.",
                      location.c_str(), wide(tag), arg1);
    return forward(pf_mheg5_launch_hbbtv_nfy_cb, location, tag, arg1);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_mheg5_is_mime_type_support_fct(
        const hidl_string& mime, uint64_t tag, int32_t arg1,
        a_hidl_qeltvapi_mheg5_is_mime_type_support_fct_cb _hidl_cb) {
    uint8_t supported = 0;
    int32_t code = -1;
    if (auto function = pf_mheg5_is_mime_type_support_cb.get(); function != nullptr) {
        code = function(mime.c_str(), &supported, converted(tag), arg1);
    }
    QELTVAPI_TRACE_AT(kTag, 817,
                      "{MHEG5} ps_mime_type:%s, b_supported:%d, pv_tag:%llu, i4_arg1:%d.",
                      mime.c_str(), supported, wide(tag), arg1);
    _hidl_cb(supported != 0, code);
    return Void();
}

Return<void> QelTvApiCallbackImpl::a_hidl_record_pvr_status_nfy_fct(int32_t type, uint64_t tag,
                                                                    uint64_t arg1, uint64_t arg2) {
    QELTVAPI_TRACE_AT(kTag, 833, "%d", type);
    return forward(pf_pvr_status_cb, type, tag, arg1, arg2);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_audio_update_nfy_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    return forward(pf_audio_update_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_upgrade_callback_fct(int32_t type, int32_t arg1,
                                                                        int32_t arg2,
                                                                        uint64_t tag) {
    return forward(pf_upgrade_callback_fct, type, arg1, arg2, tag);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_channellist_update_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    return forward(pf_channellist_update_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_tvprovider_channellist_update_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, const hidl_vec<uint8_t>& data,
        uint64_t arg3) {
    return forward(pf_tvprovider_cb, type, tag, arg1, arg2, data, arg3);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_svlid_update_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    return forward(pf_svlid_update_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_tslid_update_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    return forward(pf_tslid_update_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_listMode_update_callback_fct(int32_t type,
                                                                                uint64_t tag,
                                                                                uint64_t arg1,
                                                                                uint64_t arg2) {
    return forward(pf_listmode_update_cb, type, tag, arg1, arg2);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_ocl_scanInfo_callback_fct(int32_t type,
                                                                             uint64_t tag,
                                                                             uint64_t arg1,
                                                                             uint64_t arg2) {
    return forward(pf_ocl_scaninfo_cb, type, tag, arg1, arg2);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_ewspa_msg_callback(int32_t type, uint64_t tag) {
    QELTVAPI_TRACE_AT(kTag, 1006, "{EWSPA} i4_type:%d, pv_tag:%llu.", type, wide(tag));
    return forward(pf_ewspa_msg_cb, type, tag);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_teletext_register_msg_callback(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3) {
    return forward(pf_teletext_msg_cb, type, tag, arg1, arg2, arg3);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_bisskey_update_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    return forward(pf_bisskey_update_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_satllist_update_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4) {
    return forward(pf_satllist_update_cb, type, tag, arg1, arg2, arg3, arg4);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_ci_nfy_fct(uint64_t nfy, uint64_t tag,
                                                              int32_t cond,
                                                              const hidl_vec<uint8_t>& data) {
    QELTVAPI_TRACE_AT(kTag, 1079, "{ci} e_nfy_cond:%d, ui1_out_data.size():%d, sizeof(UINT32):%d\n",
                      cond, static_cast<int>(data.size()), static_cast<int>(sizeof(uint32_t)));
    if (cond == QELTVAPI_CI_NFY_COND_CARD_INSERT) {
        QELTVAPI_TRACE_AT(kTag, 1090, "%s QELTVAPI_CI_NFY_COND_CARD_INSERT", __func__);
        QELTVAPI_TRACE_AT(kTag, 1092, "%s no CI_IGNORE_CAM_INSERT_BOOTUP, slotId:%d", __func__,
                          firstWord(data));
    }
    return forwardCi(nfy, tag, cond, data.data());
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_ci_nfy_fct_enq(uint64_t nfy, uint64_t tag,
                                                                  int32_t cond,
                                                                  const HIDL_CI_MMI_ENQ_T& enq) {
    const Text text = terminated(enq.text);
    const QELTVAPI_CI_MMI_ENQ_T record{enq.b_blind, enq.ans_len, text.data()};
    return forwardCi(nfy, tag, cond, &record);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_ci_nfy_fct_menu(uint64_t nfy, uint64_t tag,
                                                                   int32_t cond,
                                                                   const HIDL_CI_MMI_MENU_T& menu) {
    const Text title = terminated(menu.title);
    const Text subTitle = terminated(menu.sub_title);
    const Text bottom = terminated(menu.bottom);
    std::vector<Text> choices;
    std::vector<const uint16_t*> choiceTexts;
    choices.reserve(menu.choices.size());
    for (const hidl_vec<uint16_t>& choice : menu.choices) {
        choiceTexts.push_back(choices.emplace_back(terminated(choice)).data());
    }
    const QELTVAPI_CI_MMI_MENU_T record{title.data(), subTitle.data(), bottom.data(),
                                        static_cast<uint32_t>(choiceTexts.size()),
                                        choiceTexts.data()};
    return forwardCi(nfy, tag, cond, &record);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_concern_column_update_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, const hidl_vec<uint8_t>& data,
        uint64_t arg3) {
    return forward(pf_concern_column_cb, type, tag, arg1, arg2, data, arg3);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_bml_msg_callback(int32_t type, uint64_t tag,
                                                                    const hidl_vec<uint8_t>& data) {
    return forward(pf_bml_msg_callback_fct, type, tag, data);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_html_agent_callback(
        int32_t type, uint64_t tag, const hidl_vec<uint8_t>& data) {
    return forward(pf_html_agent_callback_fct, type, tag, data);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_videoinfo_common_callback_fct(
        int32_t type, uint64_t tag, uint64_t arg1, uint64_t arg2, uint64_t arg3, uint64_t arg4,
        uint64_t arg5, uint64_t arg6) {
    QELTVAPI_TRACE_AT(kTag, 1323, "%d", type);
    const auto function = pf_video_common_nfy_fct.get();
    if (function == nullptr) {
        QELTVAPI_TRACE_AT(kTag, 1336, "pf_video_common_nfy_fct is NULL\n");
        return Void();
    }
    function(type, converted(tag), converted(arg1), converted(arg2), converted(arg3),
             converted(arg4), converted(arg5), converted(arg6));
    return Void();
}

Return<void> QelTvApiCallbackImpl::a_hidl_x_dai_tvapi_update_fct(const hidl_string& /* name */,
                                                                 uint64_t /* tag */) {
    return Void();
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_tts_msg_callback(uint64_t tag,
                                                                    const hidl_string& data,
                                                                    uint32_t len) {
    QELTVAPI_TRACE_AT(kTag, 1368, "{tts} pc_nfy_data:%s, pv_tag:%llu, ui4_data_len:%d.",
                      data.c_str(), wide(tag), len);
    return forward(pf_tts_msg_callback_fct, tag, data, len);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_mds_msg_callback(uint64_t tag,
                                                                    const hidl_string& data,
                                                                    uint32_t len) {
    QELTVAPI_TRACE_AT(kTag, 1388, "{mds} pc_nfy_data:%s, pv_tag:%llu, ui4_data_len:%d.",
                      data.c_str(), wide(tag), len);
    return forward(pf_mds_msg_callback_fct, tag, data, len);
}

Return<void> QelTvApiCallbackImpl::a_hidl_qeltvapi_ews_msg_callback(int32_t type, uint64_t tag) {
    QELTVAPI_TRACE_AT(kTag, 1406, "{EWS} i4_type:%d, pv_tag:%llu.", type, wide(tag));
    return forward(pf_ews_msg_cb, type, tag);
}
