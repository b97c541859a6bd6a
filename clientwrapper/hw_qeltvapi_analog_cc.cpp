#include "hw_qeltvapi_analog_cc.h"

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_analog_cc)(client)";

constexpr Family<IQelTvApi> kAnalogCc =
        Family<IQelTvApi>{kTag, getQelTvApiService}.withEntry(line::tagAndName);

}  // namespace

// Only 1 switches on; kept on purpose, also below.
int a_qeltvapi_analogcc_enable(int32_t flag) {
    return direct(kAnalogCc, HERE, &IQelTvApi::a_hidl_qeltvapi_analogcc_enable, flag == 1);
}

int a_qeltvapi_analogcc_next_stream(void) {
    return direct(kAnalogCc, HERE, &IQelTvApi::a_hidl_qeltvapi_analogcc_next_stream);
}

int a_qeltvapi_analogcc_get_CCString(void) {
    return direct(kAnalogCc, HERE, &IQelTvApi::a_hidl_qeltvapi_analogcc_get_CCString);
}

int a_qeltvapi_analogcc_set_visible(int32_t flag) {
    return direct(kAnalogCc, HERE, &IQelTvApi::a_hidl_qeltvapi_analogcc_set_visible, flag == 1);
}
