#include "hw_qeltvapi_screenmode.h"

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_screenmode)(client)";

constexpr Family<IQelTvApi> kScreenmode{kTag, getQelTvApiService, -1, -1, line::name};

void returned(const char* tag, const Site& site, long long result) {
    // "reuturn" is how the line is spelt.
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s reuturn %d\n", site.function,
                      static_cast<int>(result));
}

}  // namespace

uint16_t a_qeltvapi_screenmode_get_screen_mode(void) {
    return direct(
            kScreenmode.withPreset(QELTVAPI_SCREENMODE_NONE).withMissing(QELTVAPI_SCREENMODE_NONE),
            HERE, &IQelTvApi::a_hidl_qeltvapi_screenmode_get_screen_mode);
}

int a_qeltvapi_screenmode_set_screen_mode(int32_t mode) {
    return direct(kScreenmode, HERE, &IQelTvApi::a_hidl_qeltvapi_screenmode_set_screen_mode, mode);
}

int a_qeltvapi_screenmode_get_all_screen_mode(uint16_t* modes, uint32_t* num) {
    Call<IQelTvApi> call(kScreenmode, HERE);
    if (!call) return kScreenmode.missing;
    return call.ask(
            &IQelTvApi::a_hidl_qeltvapi_screenmode_get_all_screen_mode,
            [=](const hidl_vec<uint16_t>& answer, uint32_t count, int32_t code) {
                // All that came, regardless of the capacity; the count is the service's own.
                copyAll(modes, answer);
                *num = count;
                return code;
            },
            *num);
}

int a_qeltvapi_screenmode_get_number_screen_mode(uint32_t* num) {
    return ask(kScreenmode, HERE, &IQelTvApi::a_hidl_qeltvapi_screenmode_get_number_screen_mode,
               [=](uint32_t count, int32_t code) {
                   QELTVAPI_TRACE(kTag, "%s result %d %d", __func__, static_cast<int>(count), code);
                   *num = count;
                   return code;
               });
}

int a_qeltvapi_zoom_is_enable(void) {
    return direct(kScreenmode.withPreset(0).withMissing(0).withExit(returned), HERE,
                  &IQelTvApi::a_hidl_qeltvapi_zoom_is_enable);
}

int a_qeltvapi_screenmode_set_crnt_overscan(int32_t p1, int32_t p2, int32_t p3, int32_t p4) {
    Call<IQelTvApi> call(kScreenmode, HERE);
    QELTVAPI_TRACE(kTag, "%s (%d,%d,%d,%d)\n", __func__, p1, p2, p3, p4);
    if (!call) return kScreenmode.missing;
    return call.direct(&IQelTvApi::a_hidl_qeltvapi_screenmode_set_crnt_overscan, p1, p2, p3, p4);
}

int a_qeltvapi_screenmode_get_crnt_overscan(int32_t* four) {
    return ask(kScreenmode, HERE, &IQelTvApi::a_hidl_qeltvapi_screenmode_get_crnt_overscan,
               [=](const hidl_vec<uint8_t>& answer, int32_t code) {
                   copyAll(four, answer);
                   QELTVAPI_TRACE(kTag, "%s (%d,%d,%d,%d)\n", __func__, four[0], four[1], four[2],
                                  four[3]);
                   return code;
               });
}

int a_qeltvapi_screenmode_update_overscan_ini(void) {
    return direct(kScreenmode.withExit(returned), HERE,
                  &IQelTvApi::a_hidl_qeltvapi_screenmode_update_overscan_ini);
}
