#include "hw_qeltvapi_mds.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_mds)(client)";

constexpr Family<IQelTvApi> kMds{kTag, getQelTvApiService};

}  // namespace

int a_qeltvapi_mds_reg_msg_callback(qeltvapi_mds_msg_callback_fct_t fn) {
    QELTVAPI_TRACE_AT(kTag, 134, "%s", __func__);
    QelTvApiCallbackImpl::pf_mds_msg_callback_fct.set(fn);
    return 0;
}

int a_qeltvapi_mds_fvpMtdtOperator(const char* s) {
    return direct(kMds.withEntry(line::name), HERE, &IQelTvApi::a_hidl_qeltvapi_mds_fvpMtdtOperator,
                  text(s));
}

int a_qeltvapi_mds_getValue(const char* key, char* out, uint32_t value) {
    QELTVAPI_TRACE(kTag, "%s\n", __func__);
    Call<IQelTvApi> call(kMds, HERE);
    if (!call) return kMds.missing;
    const int result =
            call.ask(&IQelTvApi::a_hidl_qeltvapi_mds_getValue, storeText(out), text(key), value);
    // The content of the caller's buffer, which must be terminated while tracing.
    QELTVAPI_TRACE(kTag, "%s,pc_getValue:%s", __func__, out);
    return result;
}
