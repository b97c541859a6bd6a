#include "hw_qeltvapi_broadcast.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using namespace vendor::qelnova::tv::qeltvapi::V1_0;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_broadcast)(client)";

void serviceFail(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Get broadcast service fail.\n");
}

void ret(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> ret=%d", static_cast<int>(result));
}

// A lost reply gives 0.
constexpr Family<IQelTvApiBroadcast> kBroadcast =
        Family<IQelTvApiBroadcast>{kTag, getQelTvApiBroadcastService, 0}.withMissingAlways(
                serviceFail);
constexpr Family<IQelTvApiBroadcast> kPlain = kBroadcast.withExit(ret);
constexpr Family<IQelTvApiBroadcast> kGetter = kBroadcast.withEntry(line::dot);

int invalidArg(const Site& site) {
    QELTVAPI_LOG_SITE(kTag, site, "<%s:%d> Arg invalid(null ptr).\n");
    return -1;
}

/** Asks for one value. The trace shows what the caller's variable holds, stored or not. */
template <class V, class Method, class... A>
int get(const Site& site, V* val, Method method, const A&... args) {
    Call<IQelTvApiBroadcast> call(kGetter, site);
    if (!call) return kGetter.missing;
    const int ret = call.ask(method, storeValue(val), args...);
    if (tracing()) QELTVAPI_LOG_SITE(kTag, site, "<%s:%d> val=%d, ret=%d", *val, ret);
    return ret;
}

static_assert(sizeof(QELTVAPI_SB_DVB_REGION_T) == 40 &&
              offsetof(QELTVAPI_SB_DVB_REGION_T, code1) == 2 &&
              offsetof(QELTVAPI_SB_DVB_REGION_T, name) == 8);
static_assert(sizeof(QELTVAPI_CHANGE_FREQ_T) == 28 &&
              offsetof(QELTVAPI_CHANGE_FREQ_T, word1) == 16);
static_assert(offsetof(QELTVAPI_EXTERNAL_UI_STATUS_T, on) == 4);
static_assert(sizeof(HIDL_QELTVAPI_EXTERNAL_UI_STATUS_T) == 8);

}  // namespace

int a_qeltvapi_broadcast_register_callback(qeltvapi_broadcast_callback_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 946, "%s", __func__);
    QelTvApiCallbackImpl::pf_broadcast_callback_cb.set(fn);
    return 0;
}

int a_qeltvapi_broadcast_select_channel(int32_t p1, int32_t p2, int32_t p3, int p4) {
    Call<IQelTvApiBroadcast> call(kPlain, HERE);
    if (!call) return kPlain.missing;
    QELTVAPI_TRACE(kTag, "ARG=[%d,%d,%d,%d]", p1, p2, p3, p4);
    return call.direct(&IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_select_channel, p1, p2, p3,
                       p4 != 0);
}

int a_qeltvapi_broadcast_select_channel_by_focusid(int32_t p1, int32_t p2, int32_t p3, int p4,
                                                   int32_t p5) {
    Call<IQelTvApiBroadcast> call(kPlain, HERE);
    if (!call) return kPlain.missing;
    QELTVAPI_TRACE(kTag, "ARG=[%d,%d,%d,%d,%d]", p1, p2, p3, p4, p5);
    return call.direct(&IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_select_channel_by_focusid, p1,
                       p2, p3, p4 != 0, p5);
}

int a_qeltvapi_broadcast_select_channel_by_chan_num(int32_t p1, int32_t p2, int p3) {
    Call<IQelTvApiBroadcast> call(kPlain, HERE);
    if (!call) return kPlain.missing;
    QELTVAPI_TRACE(kTag, "ARG=[%d,%d,%d]", p1, p2, p3);
    return call.direct(&IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_select_channel_by_chan_num,
                       p1, p2, p3 != 0);
}

int a_qeltvapi_broadcast_select_channel_by_chan_id(int32_t p1, int p2) {
    Call<IQelTvApiBroadcast> call(kPlain, HERE);
    if (!call) return kPlain.missing;
    QELTVAPI_TRACE(kTag, "ARG=[%d,%d]", p1, p2);
    return call.direct(&IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_select_channel_by_chan_id, p1,
                       p2 != 0);
}

int a_qeltvapi_broadcast_select_channel_by_prog_no(int32_t p1, int32_t p2) {
    Call<IQelTvApiBroadcast> call(kPlain, HERE);
    if (!call) return kPlain.missing;
    QELTVAPI_TRACE(kTag, "ARG=[%d,%d]", p1, p2);
    return call.direct(&IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_select_channel_by_prog_no, p1,
                       p2);
}

// The fourth argument stays a number and the fifth is not traced, on purpose.
int a_qeltvapi_broadcast_select_channel_silently(int32_t p1, int32_t p2, int32_t p3, int32_t p4,
                                                 int32_t p5) {
    Call<IQelTvApiBroadcast> call(kPlain, HERE);
    if (!call) return kPlain.missing;
    QELTVAPI_TRACE(kTag, "ARG=[%d,%d,%d,%d]", p1, p2, p3, p4);
    return call.direct(&IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_select_channel_silently, p1,
                       p2, p3, p4, p5);
}

int a_qeltvapi_broadcast_set_banner_visibility(int visible) {
    Call<IQelTvApiBroadcast> call(kPlain, HERE);
    if (!call) return kPlain.missing;
    QELTVAPI_TRACE(kTag, "ARG=[%d]", visible);
    return call.direct(&IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_set_banner_visibility,
                       visible != 0);
}

// Unlike the getters with a line of the common form it has no entry line.
int a_qeltvapi_broadcast_get_tuning_status(int32_t* status) {
    Call<IQelTvApiBroadcast> call(kBroadcast, HERE);
    if (!call) return kBroadcast.missing;
    const int ret = call.ask(&IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_tuning_status,
                             storeValue(status));
    QELTVAPI_TRACE(kTag, "status=%d, ret=%d", *status, ret);
    return ret;
}

int a_qeltvapi_broadcast_get_tuning_error(int32_t* val) {
    return get(HERE, val, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_tuning_error);
}

int a_qeltvapi_broadcast_key_handler(int32_t key) {
    Call<IQelTvApiBroadcast> call(kPlain, HERE);
    if (!call) return kPlain.missing;
    QELTVAPI_TRACE(kTag, "ARG=[%d]", key);
    return call.direct(&IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_key_handler, key);
}

int a_qeltvapi_broadcast_switch_input_to_tv(void) {
    return direct(kPlain, HERE, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_switch_input_to_tv);
}

int a_qeltvapi_broadcast_is_cam_installed(uint8_t* val) {
    return get(HERE, val, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_is_cam_installed);
}

int a_qeltvapi_broadcast_is_additional_service_available(uint8_t* val) {
    return get(HERE, val,
               &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_is_additional_service_available);
}

int a_qeltvapi_broadcast_is_support_4_digits_chan_no(uint8_t* val) {
    return get(HERE, val,
               &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_is_support_4_digits_chan_no);
}

// Asks for the four digits too; the two always agree.
int a_qeltvapi_broadcast_is_digits_key_handled(uint8_t* val) {
    return get(HERE, val,
               &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_is_support_4_digits_chan_no);
}

int a_qeltvapi_broadcast_is_channel_number_valid(int32_t p1, int32_t p2, int p3, uint8_t* val) {
    return get(HERE, val, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_is_channel_number_valid,
               p1, p2, p3 != 0);
}

int a_qeltvapi_broadcast_set_favorite_icon_on_banner(int show) {
    Call<IQelTvApiBroadcast> call(kPlain, HERE);
    if (!call) return kPlain.missing;
    QELTVAPI_TRACE(kTag, "ARG=[%d]", show);
    return call.direct(&IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_set_favorite_icon_on_banner,
                       show != 0);
}

int a_qeltvapi_broadcast_reset_digits_key_handled(void) {
    return direct(kPlain, HERE,
                  &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_reset_digits_key_handled);
}

int a_qeltvapi_broadcast_get_target_region_num(int32_t p1, uint16_t* num) {
    return get(HERE, num, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_target_region_num, p1);
}

int a_qeltvapi_broadcast_get_target_regions(int32_t p1, int32_t p2, int32_t p3,
                                            QELTVAPI_SB_DVB_REGION_T* out) {
    return ask(
            kBroadcast, HERE, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_target_regions,
            [=](const HIDL_QELTVAPI_SB_DVB_REGION_T& region, int32_t status) {
                // Field by field: the byte behind the level stays the caller's.
                out->level = region.level;
                out->code1 = region.code1;
                out->code2 = region.code2;
                out->code3 = region.code3;
                copyField(out->name, region.name, sizeof(out->name));
                return status;
            },
            p1, p2, p3);
}

int a_qeltvapi_broadcast_get_max_possible_major_chan_no(int32_t p1, int32_t* val) {
    return get(HERE, val,
               &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_max_possible_major_chan_no, p1);
}

int a_qeltvapi_broadcast_get_max_possible_minor_chan_no(int32_t p1, int32_t* val) {
    return get(HERE, val,
               &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_max_possible_minor_chan_no, p1);
}

int a_qeltvapi_broadcast_get_max_possible_major_digits(int32_t p1, int32_t* val) {
    return get(HERE, val,
               &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_max_possible_major_digits, p1);
}

int a_qeltvapi_broadcast_get_max_possible_minor_digits(int32_t p1, int32_t* val) {
    return get(HERE, val,
               &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_max_possible_minor_digits, p1);
}

// Alone in the family it is silent, and returns 0, when the service is missing.
int a_qeltvapi_broadcast_get_cam_operator_name(int32_t len, char* buf) {
    if (buf == nullptr) return invalidArg(HERE);
    Call<IQelTvApiBroadcast> call(kBroadcast.withMissingAlways(nullptr), HERE);
    if (!call) return 0;
    const int ret = call.ask(
            &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_cam_operator_name,
            [=](const hidl_string& name, int32_t status) {
                copyField(buf, name, static_cast<size_t>(len - 1));
                buf[len - 1] = '\0';
                return status;
            },
            len);
    QELTVAPI_TRACE(kTag, "val=%s, ret=%d", buf, ret);
    return ret;
}

int a_qeltvapi_broadcast_get_mheg_input_event_mask(int32_t p1, uint8_t* mask) {
    return get(HERE, mask, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_mheg_input_event_mask,
               p1);
}

int a_qeltvapi_broadcast_sync_stop(const char* name, int p2) {
    if (name == nullptr) return invalidArg(HERE);
    return direct(kPlain, HERE, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_sync_stop,
                  text(name), p2 != 0);
}

int a_qeltvapi_broadcast_is_signal_loss(void) {
    return direct(kPlain.withMissing(0), HERE,
                  &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_is_signal_loss);
}

int a_qeltvapi_broadcast_get_signal_level(void) {
    return direct(kPlain, HERE, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_signal_level);
}

int a_qeltvapi_broadcast_get_signal_quality(void) {
    return direct(kPlain, HERE, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_signal_quality);
}

int a_qeltvapi_broadcast_strm_is_orig_scramble(const char* name, int32_t p2, uint8_t* val) {
    if (name == nullptr) return invalidArg(HERE);
    return get(HERE, val, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_strm_is_orig_scramble,
               text(name), p2);
}

int a_qeltvapi_broadcast_change_freq(const char* name, const QELTVAPI_CHANGE_FREQ_T* r) {
    if (name == nullptr || r == nullptr) return invalidArg(HERE);
    HIDL_QELTVAPI_CHANGE_FREQ_T freq;
    copy(freq.head.data(), r->head, sizeof(r->head));
    freq.word1 = r->word1;
    freq.word2 = r->word2;
    freq.word3 = r->word3;
    return direct(kPlain, HERE, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_change_freq,
                  text(name), freq);
}

int a_qeltvapi_broadcast_ana_channel_fine_tune(const char* name, int32_t p2, int p3) {
    if (name == nullptr) return invalidArg(HERE);
    return direct(kPlain, HERE,
                  &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_ana_channel_fine_tune, text(name),
                  p2, p3 != 0);
}

int a_qeltvapi_broadcast_get_connect_attr(const char* name, int32_t p2, int32_t* val) {
    if (name == nullptr) return invalidArg(HERE);
    return get(HERE, val, &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_get_connect_attr,
               text(name), p2);
}

int a_qeltvapi_broadcast_transfer_external_ui_status(const QELTVAPI_EXTERNAL_UI_STATUS_T* r) {
    if (r == nullptr) return invalidArg(HERE);
    HIDL_QELTVAPI_EXTERNAL_UI_STATUS_T ui;
    // The bytes behind the truth value cross too.
    memset(&ui, 0, sizeof(ui));
    ui.status = r->status;
    ui.on = r->on != 0;
    return direct(kPlain, HERE,
                  &IQelTvApiBroadcast::a_hidl_qeltvapi_broadcast_transfer_external_ui_status, ui);
}
