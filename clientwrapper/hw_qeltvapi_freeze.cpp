#include "hw_qeltvapi_freeze.h"

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_freeze)(client)";

constexpr Family<IQelTvApi> kFreeze{kTag, getQelTvApiService, -1, -1, line::name};

}  // namespace

int a_qeltvapi_freeze_set_freeze(const char* path, int freeze) {
    // Only 1 counts, on purpose.
    return direct(kFreeze, HERE, &IQelTvApi::a_hidl_qeltvapi_freeze_set_freeze, text(path),
                  freeze == 1);
}

int a_qeltvapi_freeze_is_freeze(const char* path) {
    return direct(kFreeze.withPreset(0).withMissing(0), HERE,
                  &IQelTvApi::a_hidl_qeltvapi_freeze_is_freeze, text(path));
}
