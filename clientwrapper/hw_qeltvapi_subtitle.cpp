#include "hw_qeltvapi_subtitle.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_subtitle)(client)";

constexpr Family<IQelTvApi> kSubtitle =
        Family<IQelTvApi>{kTag, getQelTvApiService}.withEntry(line::name);

}  // namespace

int a_qeltvapi_subtitle_reg_callback(qeltvapi_subtitle_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 92, "%s", __func__);
    QelTvApiCallbackImpl::pf_subtitle_cb.set(fn);
    return 0;
}

int a_qeltvapi_subtitle_get_loop(int32_t* data, uint32_t count) {
    return ask(
            kSubtitle, HERE, &IQelTvApi::a_hidl_qeltvapi_subtitle_get_loop,
            [=](const hidl_vec<int32_t>& loop, int32_t code) {
                // All of it, however many entries were sent.
                copyAll(data, loop);
                return code;
            },
            over<int32_t>(data, count));
}

int a_qeltvapi_subtitle_play(uint32_t value) {
    return direct(kSubtitle, HERE, &IQelTvApi::a_hidl_qeltvapi_subtitle_play, value);
}

int a_qeltvapi_subtitle_set_next(void) {
    return direct(kSubtitle, HERE, &IQelTvApi::a_hidl_qeltvapi_subtitle_set_next);
}
