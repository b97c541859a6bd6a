#include "hw_qeltvapi_config.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiConfig;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_config)(client)";

constexpr Family<IQelTvApiConfig> kConfig{kTag, getQelTvApiConfigService};

}  // namespace

int a_qeltvapi_config_reg_callback(qeltvapi_config_update_nfy_fct_t fn) {
    QELTVAPI_TRACE_AT(kTag, 93, "%s", __func__);
    QelTvApiCallbackImpl::pf_config_update_nfy_fct.set(fn);
    return 0;
}

int a_qeltvapi_config_get_minmaxvalue(uint32_t selector, const char* name, uint32_t* out) {
    const int result = ask(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_get_minmaxvalue,
                           storeValue(out), selector, text(name));
    // Also when nothing was stored: the caller's variable must be readable while tracing.
    QELTVAPI_TRACE_AT(kTag, 118, "%d, %d", *out, result);
    return result;
}

int a_qeltvapi_config_get_value(uint32_t selector, const char* name, int32_t* out) {
    QELTVAPI_TRACE_AT(kTag, 124, "%s", __func__);
    const int result = ask(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_get_value,
                           storeValue(out), selector, text(name));
    // Also when nothing was stored: the caller's variable must be readable while tracing.
    QELTVAPI_TRACE_AT(kTag, 140, "%d, %d", *out, result);
    return result;
}

int a_qeltvapi_config_set_value(uint32_t selector, const char* name, int32_t value, int32_t flags) {
    return direct(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_set_value, selector,
                  text(name), value, flags);
}

int a_qeltvapi_config_is_visible(uint32_t selector, const char* name) {
    return direct(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_is_visible, selector,
                  text(name));
}

// Asks for the visibility too; callers have come to rely on it.
int a_qeltvapi_config_is_enabled(uint32_t selector, const char* name) {
    return direct(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_is_visible, selector,
                  text(name));
}

int a_qeltvapi_config_reset_values(uint32_t selector) {
    return direct(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_reset_values, selector);
}

int a_qeltvapi_config_get_str_value(const char* name, char* buf, uint32_t* n) {
    return ask(
            kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_get_str_value,
            [=](const hidl_string& value, uint32_t length, int32_t code) {
                // Bounded by the text's own length, so no terminator is written.
                strncpy(buf, value.c_str(), value.size());
                *n = length;
                return code;
            },
            text(name));
}

int a_qeltvapi_config_set_str_value(const char* name, const char* value) {
    return direct(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_set_str_value, text(name),
                  text(value));
}

int a_qeltvapi_config_set_str_value_ex(const char* name, const char* value, uint32_t extra) {
    return direct(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_set_str_value_ex,
                  text(name), text(value), extra);
}

int a_qeltvapi_config_add_value_changed_callback(const char* name) {
    return direct(kConfig, HERE,
                  &IQelTvApiConfig::a_hidl_qeltvapi_config_add_value_changed_callback, text(name));
}

int a_qeltvapi_config_remove_value_changed_callback(const char* name) {
    return direct(kConfig, HERE,
                  &IQelTvApiConfig::a_hidl_qeltvapi_config_remove_value_changed_callback,
                  text(name));
}

int a_qeltvapi_config_get_items_enabled(uint32_t selector, const char* name, char* buf, uint32_t* n,
                                        int32_t* v) {
    return ask(
            kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_get_items_enabled,
            [=](const hidl_string& items, uint32_t count, int32_t value, int32_t code) {
                copyAll(buf, items);
                *n = count;
                *v = value;
                return code;
            },
            selector, text(name));
}

int a_qeltvapi_config_set_android_world_info(uint32_t a, uint32_t b) {
    return direct(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_set_android_world_info, a,
                  b);
}

int a_qeltvapi_config_get_video_resolution(void* buf) {
    QELTVAPI_TRACE_AT(kTag, 349, "%s", __func__);
    return ask(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_get_video_resolution,
               storeAll(buf));
}

int a_qeltvapi_config_set_value_for_all_elems(uint32_t selector, const char* name, int32_t value,
                                              int32_t flags) {
    return direct(kConfig, HERE, &IQelTvApiConfig::a_hidl_qeltvapi_config_set_value_for_all_elems,
                  selector, text(name), value, flags);
}
