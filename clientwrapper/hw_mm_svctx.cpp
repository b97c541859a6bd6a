#include "hw_mm_svctx.h"

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_mm_svctx)(client)";

constexpr Family<IQelTvApi> kMmSvctx{kTag, getQelTvApiService, -1, -1, line::dot};

}  // namespace

int c_svctx_generic_get_info(uint32_t ctx, uint32_t v, uint32_t code, void* buf, uint32_t len) {
    return ask(kMmSvctx, HERE, &IQelTvApi::a_hidl_c_svctx_generic_get_info, storeAll(buf), ctx, v,
               code, len);
}

// Stores the answer into the buffer that it sends.
int c_svctx_generic_set_info(uint32_t ctx, uint32_t v, uint32_t code, void* buf, uint32_t len) {
    return ask(kMmSvctx, HERE, &IQelTvApi::a_hidl_c_svctx_generic_set_info, storeAll(buf), ctx, v,
               code, over(buf, len));
}
