/**
 * A call of every shape of the package through its generated proxies: what the corpus is made of
 * and what meets the replies of the fuzzer.
 */
#pragma once

#include <fcntl.h>

#include <functional>
#include <vector>

#include <vendor/qelnova/tv/qeltvapi/1.0/BpHwQelTvApi.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BpHwQelTvApiCI.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BpHwQelTvApiCallback.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BpHwQelTvApiChannelList.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BpHwQelTvApiConfig.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BpHwQelTvApiEvent.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BpHwQelTvApiRating.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BpHwQelTvApiTime.h>

namespace fuzz {

using namespace vendor::qelnova::tv::qeltvapi::V1_0;
using android::hardware::hidl_handle;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;

/** A call over a binder of the fuzzer's. */
struct CallOfProxy {
    const char* descriptor;
    std::function<void(const android::sp<android::hardware::IBinder>&)> call;
};

/** Touches all bytes of a value, as a caller that copies it does. */
inline void look(const hidl_string& text) {
    volatile size_t sum = 0;
    for (size_t i = 0; i < text.size(); ++i)
        sum = sum + static_cast<unsigned char>(text.c_str()[i]);
}
template <class T>
std::enable_if_t<std::is_arithmetic_v<T>> look(T) {}
template <class T>
void look(const hidl_vec<T>& values) {
    for (const T& value : values) look(value);
}
inline void look(const HIDL_CI_CAM_PIN_CODE_T& pin) {
    look(pin.w2s_pin_code);
}
const auto kLook = [](const auto&... values) { (look(values), ...); };

template <class P>
android::sp<P> proxy(const android::sp<android::hardware::IBinder>& binder) {
    return new P(binder);
}

inline const std::vector<CallOfProxy>& calls() {
    static const std::vector<CallOfProxy> sCalls = {
            {IQelTvApiConfig::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApiConfig>(binder)
                         ->a_hidl_qeltvapi_config_get_items_enabled(3, "picture.contrast", kLook)
                         .isOk();
             }},
            {IQelTvApiConfig::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApiConfig>(binder)
                         ->a_hidl_qeltvapi_config_set_value(1, "x", -2, 3)
                         .isOk();
             }},
            {IQelTvApi::descriptor,
             [](const auto& binder) {
                 native_handle_t* native = native_handle_create(1, 0);
                 native->data[0] = open("/dev/null", O_RDWR | O_CLOEXEC);
                 hidl_handle memory;
                 memory.setTo(native, true);
                 proxy<BpHwQelTvApi>(binder)->a_hidl_c_iom_get(1, 2, memory, 16, kLook).isOk();
             }},
            {IQelTvApi::descriptor,
             [](const auto& binder) {
                 HIDL_SVCTX_SELECT_T request;
                 request.block = std::vector<uint8_t>(260, 7);
                 request.first = "first";
                 request.second = "second";
                 request.specific = std::vector<uint8_t>(64, 8);
                 proxy<BpHwQelTvApi>(binder)
                         ->a_hidl_c_svctx_select_svc(1, 2, request, std::vector<uint8_t>(76, 9), 10)
                         .isOk();
             }},
            {IQelTvApi::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApi>(binder)
                         ->a_hidl_qeltvapi_html_agent_exchange_data(std::vector<uint8_t>(8, 1),
                                                                    kLook)
                         .isOk();
             }},
            {IQelTvApiCI::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApiCI>(binder)
                         ->a_hidl_qeltvapi_ci_get_cam_pin_code(29, 1, kLook)
                         .isOk();
             }},
            {IQelTvApiCI::descriptor,
             [](const auto& binder) {
                 HIDL_CI_MMI_ENQ_ANS_T answer{};
                 answer.w2s_txt = std::vector<uint16_t>{'1', '2', 0};
                 proxy<BpHwQelTvApiCI>(binder)
                         ->a_hidl_qeltvapi_ci_set_mmi_enq_ans(2, 1, answer)
                         .isOk();
             }},
            {IQelTvApiChannelList::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApiChannelList>(binder)
                         ->a_hidl_qeltvapi_channellist_get_channel_by_id(1, 2, kLook)
                         .isOk();
             }},
            {IQelTvApiRating::descriptor,
             [](const auto& binder) {
                 hidl_vec<HIDL_EVCTX_ATSC_RATING_LIST_T> list(2);
                 for (auto& rating : list) {
                     rating = {};
                 }
                 proxy<BpHwQelTvApiRating>(binder)
                         ->a_hidl_qeltvapi_rating_convert_rating_info(list, [](const auto&...) {})
                         .isOk();
             }},
            {IQelTvApiEvent::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApiEvent>(binder)
                         ->a_hidl_qeltvapi_event_get_active_win_list(4, kLook)
                         .isOk();
             }},
            {IQelTvApiTime::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApiTime>(binder)
                         ->a_hidl_c_dt_mjd_to_dtg(60000, [](const auto&...) {})
                         .isOk();
             }},
            {IQelTvApi::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApi>(binder)
                         ->a_hidl_registerCallbackHandler(proxy<BpHwQelTvApiCallback>(binder))
                         .isOk();
             }},
    };
    return sCalls;
}

/** The same for notifications. */
inline const std::vector<CallOfProxy>& notifications() {
    static const std::vector<CallOfProxy> sCalls = {
            {IQelTvApiCallback::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApiCallback>(binder)
                         ->a_hidl_config_update_nfy_fct(1, 2, 3, "name", 4, 5)
                         .isOk();
             }},
            {IQelTvApiCallback::descriptor,
             [](const auto& binder) {
                 HIDL_CI_MMI_MENU_T menu;
                 menu.title = std::vector<uint16_t>{'t'};
                 menu.choices = std::vector<hidl_vec<uint16_t>>{std::vector<uint16_t>{'a', 'b'},
                                                                std::vector<uint16_t>{'c'}};
                 proxy<BpHwQelTvApiCallback>(binder)
                         ->a_hidl_qeltvapi_ci_nfy_fct_menu(1, 2, 3, menu)
                         .isOk();
             }},
            {IQelTvApiCallback::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApiCallback>(binder)
                         ->a_hidl_qeltvapi_highlevel_query_android_fct(1, 2, 3, 4, kLook)
                         .isOk();
             }},
            {IQelTvApiCallback::descriptor,
             [](const auto& binder) {
                 proxy<BpHwQelTvApiCallback>(binder)
                         ->a_hidl_iom_uart_nfy_fct(1, 2, std::vector<uint8_t>(5, 3))
                         .isOk();
             }},
    };
    return sCalls;
}

}  // namespace fuzz
