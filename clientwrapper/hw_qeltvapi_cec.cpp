#include "hw_qeltvapi_cec.h"

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCec;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_cec)(client)";

constexpr Family<IQelTvApiCec> kCec =
        Family<IQelTvApiCec>{kTag, getQelTvApiCecService}.withEntry(line::name);

/** The two getters: false when the service is missing. */
constexpr Family<IQelTvApiCec> kGetter =
        kCec.withMissing(0).withMissingTraced([](const char* tag, const Site& site) {
            QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s, Get service fail\n", site.function);
        });

}  // namespace

int a_qeltvapi_get_earc_caps(void) {
    constexpr auto family =
            kGetter.withExit([](const char* tag, const Site& site, long long value) {
                QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s, b_supported=%d\n", site.function,
                                  static_cast<int>(value));
            });
    return unchecked(family, HERE, &IQelTvApiCec::a_hidl_qeltvapi_get_earc_caps);
}

int a_qeltvapi_set_earc_enable(int flag) {
    // Without the line feed of the getters.
    constexpr auto family = kCec.withMissingTraced([](const char* tag, const Site& site) {
        QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s, Get service fail", site.function);
    });
    return unchecked(family, HERE, &IQelTvApiCec::a_hidl_qeltvapi_set_earc_enable, flag != 0);
}

int a_qeltvapi_get_earc_status(uint32_t value) {
    constexpr auto family =
            kGetter.withExit([](const char* tag, const Site& site, long long value) {
                QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s, b_status=%d\n", site.function,
                                  static_cast<int>(value));
            });
    return unchecked(family, HERE, &IQelTvApiCec::a_hidl_qeltvapi_get_earc_status, value);
}
