#include "hw_qeltvapi_upgrade.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_QELTVAPI_UPGRADE_FW_INFO_T;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_QELTVAPI_UPGRADE_ITEM_T;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_upgrade)(client)";

/** The functions with a plain result: 0 and the only trace when the service is missing. */
constexpr Family<IQelTvApi> kPlain =
        Family<IQelTvApi>{kTag, getQelTvApiService}.withMissing(0).withMissingTraced(line::name);

/** The functions that read something: -1 and no trace of the frame's. */
constexpr Family<IQelTvApi> kReader{kTag, getQelTvApiService};

static_assert(sizeof(QELTVAPI_UPGRADE_FW_INFO_T) == 228);
static_assert(offsetof(QELTVAPI_UPGRADE_FW_INFO_T, ui4_at_224) == 224);
static_assert(sizeof(QELTVAPI_UPGRADE_ITEM_T) == 212);
static_assert(offsetof(QELTVAPI_UPGRADE_ITEM_T, s_at_5) == 5);
static_assert(offsetof(QELTVAPI_UPGRADE_ITEM_T, ui4_at_72) == 72);
static_assert(offsetof(QELTVAPI_UPGRADE_ITEM_T, s_at_76) == 76);
static_assert(offsetof(QELTVAPI_UPGRADE_ITEM_T, ui4_at_204) == 204);

/** A text field of the records, as long as its array. */
template <size_t N>
void store(char (&field)[N], const hidl_string& text) {
    copyField(field, text, N);
}

}  // namespace

int a_qeltvapi_upgrade_register_callback(qeltvapi_upgrade_callback_fct_t fn) {
    QelTvApiCallbackImpl::pf_upgrade_callback_fct.set(fn);
    registerCallbackHandler();
    return 0;
}

// Writes the slot of the recording status, not its own; kept on purpose.
int a_qeltvapi_upgrade_unregister_callback(qeltvapi_pvr_status_cb_t fn) {
    QelTvApiCallbackImpl::pf_pvr_status_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_upgrade_start(uint32_t value, int flag) {
    return unchecked(kPlain, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_start, value, flag != 0);
}

int a_qeltvapi_upgrade_trigger(uint32_t value) {
    return unchecked(kPlain, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_trigger, value);
}

int a_qeltvapi_upgrade_get_firmware_info(QELTVAPI_UPGRADE_FW_INFO_T* out) {
    const int result = ask(kReader, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_get_firmware_info,
                           [=](const HIDL_QELTVAPI_UPGRADE_FW_INFO_T& info, int32_t code) {
                               store(out->s_at_0, info.s_at_0);
                               store(out->s_at_32, info.s_at_32);
                               store(out->s_at_64, info.s_at_64);
                               store(out->s_at_96, info.s_at_96);
                               store(out->s_at_128, info.s_at_128);
                               store(out->s_at_160, info.s_at_160);
                               store(out->s_at_192, info.s_at_192);
                               out->ui4_at_224 = info.ui4_at_224;
                               return code;
                           });
    // Also when the service is missing.
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return result;
}

int a_qeltvapi_upgrade_get_item_info(QELTVAPI_UPGRADE_ITEM_T* out, uint32_t index) {
    const int result = ask(
            kReader, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_get_item_info,
            [=](const HIDL_QELTVAPI_UPGRADE_ITEM_T& item, int32_t code) {
                store(out->s_at_0, item.s_at_0);
                store(out->s_at_5, item.s_at_5);
                out->ui4_at_72 = item.ui4_at_72;
                store(out->s_at_76, item.s_at_76);
                store(out->s_at_108, item.s_at_108);
                store(out->s_at_140, item.s_at_140);
                store(out->s_at_172, item.s_at_172);
                out->ui4_at_204 = item.ui4_at_204;
                out->ui4_at_208 = item.ui4_at_208;
                return code;
            },
            index);
    // Also when the service is missing.
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return result;
}

int a_qeltvapi_upgrade_start_download_firmware(uint32_t value, const char* first,
                                               const char* second) {
    return unchecked(kPlain, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_start_download_firmware,
                     value, text(first), text(second));
}

int a_qeltvapi_upgrade_cancel_download_firmware(uint32_t value) {
    return unchecked(kPlain, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_cancel_download_firmware,
                     value);
}

int a_qeltvapi_upgrade_start_reboot_upgrade(uint32_t value) {
    return unchecked(kPlain, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_start_reboot_upgrade, value);
}

int a_qeltvapi_upgrade_query_upgrade_result(uint32_t value) {
    return unchecked(kPlain, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_query_upgrade_result, value);
}

int a_qeltvapi_upgrade_is_supported(uint32_t value, bool* out) {
    const int result = ask(kReader, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_is_supported,
                           storeValue(out), value);
    // Also when nothing was stored: the caller's variable must be readable while tracing.
    QELTVAPI_TRACE(kTag, "%d, %d", *out, result);
    return result;
}

int a_qeltvapi_upgrade_check_update(uint32_t value) {
    return unchecked(kPlain, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_check_update, value);
}

int a_qeltvapi_upgrade_set(uint32_t a, const void* first4, uint32_t b, const void* second4) {
    return unchecked(kPlain, HERE, &IQelTvApi::a_hidl_qeltvapi_upgrade_set, a, over(first4, 4), b,
                     over(second4, 4));
}

int c_rpc_reg_qeltvapi_upgrade_cb_hndlrs(void) {
    QELTVAPI_TRACE_AT(kTag, 302, "%s", __func__);
    return 0;
}
