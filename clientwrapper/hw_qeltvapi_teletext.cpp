#include "hw_qeltvapi_teletext.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_teletext)(client)";

void enter(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Enter.");
}

// The blank before the line feed belongs to the line.
void serviceMissing(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Get qeltvapi service fail. \n");
}

/** In this family every failure is a 0. */
constexpr Family<IQelTvApi> kSilent =
        Family<IQelTvApi>{kTag, getQelTvApiService}.withPreset(0).withMissing(0);

constexpr Family<IQelTvApi> kTeletext = kSilent.withMissingAlways(serviceMissing);

}  // namespace

int a_qeltvapi_teletext_register_msg_callback(qeltvapi_teletext_msg_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 20, "%s", __func__);
    QelTvApiCallbackImpl::pf_teletext_msg_cb.set(fn);
    return 0;
}

int a_qeltvapi_teletext_get_cur_page(void* out) {
    return ask(kTeletext.withEntry(line::name), HERE,
               &IQelTvApi::a_hidl_qeltvapi_teletext_get_cur_page, storeAll(out));
}

int a_qeltvapi_teletext_set_page(const uint32_t* page) {
    Call<IQelTvApi> call(kTeletext, HERE);
    // The service's code is dropped on purpose.
    if (call) call.direct(&IQelTvApi::a_hidl_qeltvapi_teletext_set_page, *page);
    return 0;
}

int a_qeltvapi_teletext_is_top_stream(void) {
    // The one function here that does not report a missing service.
    constexpr auto family = kSilent.withEntry(enter).withExit(
            [](const char* tag, const Site& site, long long value) {
                QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %d", static_cast<int>(value));
            });
    return direct(family, HERE, &IQelTvApi::a_hidl_qeltvapi_teletext_is_top_stream);
}

int a_qeltvapi_teletext_top_get_block_content(void* out) {
    return ask(kTeletext, HERE, &IQelTvApi::a_hidl_qeltvapi_teletext_top_get_block_content,
               storeAll(out));
}

int a_qeltvapi_teletext_top_get_group_content(const uint16_t* key, void* out) {
    Call<IQelTvApi> call(kTeletext.withEntry(enter), HERE);
    if (!call) return kTeletext.missing;
    return call.ask(&IQelTvApi::a_hidl_qeltvapi_teletext_top_get_group_content, storeAll(out),
                    *key);
}

int a_qeltvapi_teletext_top_get_page_content(const uint16_t* key, void* out) {
    Call<IQelTvApi> call(kTeletext.withEntry(enter), HERE);
    if (!call) return kTeletext.missing;
    return call.ask(&IQelTvApi::a_hidl_qeltvapi_teletext_top_get_page_content, storeAll(out), *key);
}

int a_qeltvapi_teletext_get_ttx_rating_on(void) {
    return direct(kTeletext.withEntry(enter), HERE,
                  &IQelTvApi::a_hidl_qeltvapi_teletext_get_ttx_rating_on) &
           0xff;
}
