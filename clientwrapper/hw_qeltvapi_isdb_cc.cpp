#include "hw_qeltvapi_isdb_cc.h"

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_isdb_cc)(client)";

constexpr Family<IQelTvApi> kIsdbCc =
        Family<IQelTvApi>{kTag, getQelTvApiService}.withEntry(line::tagAndName);

}  // namespace

// Only 1 switches on; kept on purpose.
int a_qeltvapi_isdbcc_enable(int32_t flag) {
    return direct(kIsdbCc, HERE, &IQelTvApi::a_hidl_qeltvapi_isdbcc_enable, flag == 1);
}

int a_qeltvapi_isdbcc_next_stream(void) {
    return direct(kIsdbCc, HERE, &IQelTvApi::a_hidl_qeltvapi_isdbcc_next_stream);
}

int a_qeltvapi_isdbcc_get_CCString(void) {
    return direct(kIsdbCc, HERE, &IQelTvApi::a_hidl_qeltvapi_isdbcc_get_CCString);
}
