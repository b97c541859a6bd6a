#include "hw_qeltvapi_html_agent.h"

#include <algorithm>

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_html_agent)(client)";

constexpr Family<IQelTvApi> kHtmlAgent{kTag, getQelTvApiService};

}  // namespace

int a_qeltvapi_html_agent_reg_callback(qeltvapi_html_agent_callback_fct_t fn) {
    QelTvApiCallbackImpl::pf_html_agent_callback_fct.set(fn);
    return 0;
}

int a_qeltvapi_html_agent_exchange_data(void* data, uint32_t count) {
    Call<IQelTvApi> call(kHtmlAgent, HERE);
    // In 32 bits: a count of 2^30 is refused as well.
    const uint32_t size = count * 4;
    if (size == 0) {
        QELTVAPI_LOG(kTag, "0");
        return -1;
    }
    if (!call) return kHtmlAgent.missing;
    return call.ask(
            &IQelTvApi::a_hidl_qeltvapi_html_agent_exchange_data,
            [=](const hidl_vec<uint8_t>& reply, int32_t code) {
                copy(data, reply.data(), std::min<size_t>(size, reply.size()));
                return code;
            },
            over(data, size));
}
