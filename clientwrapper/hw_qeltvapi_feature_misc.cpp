#include "hw_qeltvapi_feature_misc.h"

#include "hw_qeltvapi_common.h"

namespace {

constexpr char kTag[] = "(hw_qeltvapi_feature_misc)(client)";

}  // namespace

int a_qeltvapi_feature_misc_register_callback(void) {
    QELTVAPI_TRACE_AT(kTag, 86, "%s", __func__);
    return 0;
}
