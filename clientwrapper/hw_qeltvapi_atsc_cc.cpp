#include "hw_qeltvapi_atsc_cc.h"

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_atsc_cc)(client)";

constexpr Family<IQelTvApi> kAtscCc =
        Family<IQelTvApi>{kTag, getQelTvApiService}.withEntry(line::tagAndName);

}  // namespace

// Only 1 switches on; kept on purpose, also below.
int a_qeltvapi_atsccc_enable(int32_t flag) {
    return direct(kAtscCc, HERE, &IQelTvApi::a_hidl_qeltvapi_atsccc_enable, flag == 1);
}

int a_qeltvapi_atsccc_next_stream(void) {
    return direct(kAtscCc, HERE, &IQelTvApi::a_hidl_qeltvapi_atsccc_next_stream);
}

int a_qeltvapi_atsccc_get_CCString(void) {
    return direct(kAtscCc, HERE, &IQelTvApi::a_hidl_qeltvapi_atsccc_get_CCString);
}

int a_qeltvapi_atsccc_set_visible(int32_t flag) {
    return direct(kAtscCc, HERE, &IQelTvApi::a_hidl_qeltvapi_atsccc_set_visible, flag == 1);
}

int a_qeltvapi_atsccc_demo_set(uint32_t a, uint32_t b) {
    return direct(kAtscCc, HERE, &IQelTvApi::a_hidl_qeltvapi_atsccc_demo_set, a, b);
}
