#include "hw_qeltvapi_banner.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_banner)(client)";

constexpr Family<IQelTvApi> kBanner =
        Family<IQelTvApi>{kTag, getQelTvApiService}.withEntry(line::name);

}  // namespace

int a_qeltvapi_banner_register_callback(qeltvapi_banner_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 171, "%s", __func__);
    QelTvApiCallbackImpl::pf_banner_cb.set(fn);
    return 0;
}

int a_qeltvapi_banner_get_item_state(int p1, int p2, uint8_t* state) {
    return ask(kBanner, HERE, &IQelTvApi::a_hidl_qeltvapi_banner_get_item_state, storeValue(state),
               p1, p2);
}

int a_qeltvapi_banner_get_item_id(int p1, int p2, uint32_t* id) {
    return ask(kBanner, HERE, &IQelTvApi::a_hidl_qeltvapi_banner_get_item_id, storeValue(id), p1,
               p2);
}

int a_qeltvapi_banner_get_item_content(int p1, int p2, char* buf, uint32_t* len) {
    Call<IQelTvApi> call(kBanner, HERE);
    if (!call) return kBanner.missing;
    const int result = call.ask(
            &IQelTvApi::a_hidl_qeltvapi_banner_get_item_content,
            [=](const hidl_string& content, int32_t code) {
                // Not compared with the room that was sent.
                copyAll(buf, content);
                *len = static_cast<uint32_t>(content.size());
                return code;
            },
            p1, p2, *len);
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return result;
}

int a_qeltvapi_banner_get_item_content_len(int p1, int p2, uint32_t* len) {
    return ask(kBanner, HERE, &IQelTvApi::a_hidl_qeltvapi_banner_get_item_content_len,
               storeValue(len), p1, p2);
}
