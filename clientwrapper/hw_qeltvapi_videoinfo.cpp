#include "hw_qeltvapi_videoinfo.h"

#include <algorithm>

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_videoinfo)(client)";

constexpr Family<IQelTvApi> kVideoinfo{kTag, getQelTvApiService, -1, -1, line::name};

/** The block with the range of the picture's data, the one that is traced. */
constexpr int32_t kDataRange = 4;

}  // namespace

int a_qeltvapi_videoinfo_reg_common_nfy(qeltvapi_video_common_nfy_fct_t fn) {
    QELTVAPI_TRACE_AT(kTag, 187, "");
    QelTvApiCallbackImpl::pf_video_common_nfy_fct.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_videoinfo_set_value(int32_t id, int32_t value) {
    return direct(kVideoinfo, HERE, &IQelTvApi::a_hidl_qeltvapi_videoinfo_set_value, id, value);
}

int a_qeltvapi_videoinfo_get_value(int32_t id, uint32_t* value) {
    return ask(kVideoinfo, HERE, &IQelTvApi::a_hidl_qeltvapi_videoinfo_get_value, storeValue(value),
               id);
}

int a_qeltvapi_videoinfo_set_data(int32_t id, const void* data, int32_t len) {
    return direct(kVideoinfo, HERE, &IQelTvApi::a_hidl_qeltvapi_videoinfo_set_data, id,
                  over(data, static_cast<uint32_t>(len)), len);
}

int a_qeltvapi_videoinfo_get_data(int32_t id, void* buf, int32_t len) {
    return ask(
            kVideoinfo, HERE, &IQelTvApi::a_hidl_qeltvapi_videoinfo_get_data,
            [=](const hidl_vec<uint8_t>& answer, int32_t code) {
                copyAll(buf, answer);
                if (id == kDataRange && tracing()) {
                    int32_t word[4] = {};
                    copy(word, answer.data(), std::min(answer.size(), sizeof(word)));
                    QELTVAPI_LOG(kTag, "edatarange:%d, Min:%d Max:%d Avg:%d\n", word[0], word[1],
                                 word[2], word[3]);
                }
                return code;
            },
            id, over(buf, static_cast<uint32_t>(len)));
}
