#include "BroadcastService.h"

#include <cstring>

#include "Blocks.h"
#include "ChannelIds.h"
#include "Code.h"

namespace qeltvd {

using android::hardware::Void;

namespace {

/** MHEG applications take the text, colour, arrow and exit keys. */
constexpr uint8_t kMhegAllEvents = 0x0f;

/** A region that a broadcast can be for: a level and the codes down to it. */
struct TargetRegion {
    uint8_t level;
    uint16_t primary, secondary, tertiary;
    const char* name;
};
constexpr TargetRegion kRegions[] = {
        {1, 1, 0, 0, "Berlin"}, {1, 2, 0, 0, "Brandenburg"}, {2, 1, 1, 0, "Mitte"},
        {2, 1, 2, 0, "Pankow"}, {2, 2, 1, 0, "Potsdam"},     {3, 1, 1, 1, "Wedding"},
        {3, 1, 1, 2, "Moabit"},
};

/** Regions of a level; in a primary region, or in any where it is 0. */
std::vector<const TargetRegion*> regionsOf(int32_t level, int32_t primary) {
    std::vector<const TargetRegion*> found;
    for (const TargetRegion& region : kRegions) {
        if (region.level == level && (primary == 0 || region.primary == primary)) {
            found.push_back(&region);
        }
    }
    return found;
}

bool isPath(int32_t path) {
    return path >= 0 && path < static_cast<int32_t>(QELTV_PATHS);
}

}  // namespace

BroadcastService::BroadcastService(Television& tv)
        : IQelTvApiBroadcastDefault(kUnsupported, false), mTv(tv) {}

/** The path that has the tuner; of a tuner at rest the main path. */
Presentation::Status BroadcastService::tuner() const {
    const auto path = mTv.presentation.tunerPath();
    if (path) return mTv.presentation.status(*path);
    return {Inputs::kTuner, QELTV_TUNING_STOPPED, QELTV_TUNING_NO_ERROR, std::nullopt};
}

/** Whether numbers have two parts: in list `list`, or where that is 0 in the current one. */
bool BroadcastService::isAtsc(int32_t list) const {
    if (list < 0 || list > int32_t{channel_ids::kMaximumList}) return false;
    const auto id = list != 0 ? static_cast<uint16_t>(list) : mTv.presentation.currentList();
    const auto first = mTv.channels.byIndex(id, 0);
    return first && channel_ids::kind(first->channelId) == channel_ids::kTwoParts;
}

int32_t BroadcastService::select(int32_t path, int32_t list, int32_t channel, bool banner) {
    if (!isPath(path)) return kBadValue;
    const auto id = static_cast<uint32_t>(channel);
    // List 0 stands for whichever the channel is in.
    if (list != 0 && channel_ids::list(id) != list) return kNotFound;
    return mTv.presentation.select(static_cast<uint32_t>(path), id, banner);
}

BroadcastService::Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_select_channel(
        int32_t p1, int32_t p2, int32_t p3, bool p4) {
    return select(p3, p1, p2, p4);
}

BroadcastService::Return<int32_t>
BroadcastService::a_hidl_qeltvapi_broadcast_select_channel_by_focusid(int32_t p1, int32_t p2,
                                                                      int32_t p3, bool p4,
                                                                      int32_t /*p5*/) {
    return select(p1, p2, p3, p4);
}

BroadcastService::Return<int32_t>
BroadcastService::a_hidl_qeltvapi_broadcast_select_channel_by_chan_num(int32_t p1, int32_t p2,
                                                                       bool p3) {
    if (p1 <= 0 || p2 < 0) return kBadValue;
    return mTv.presentation.selectNumber(Presentation::kMain, static_cast<uint32_t>(p1),
                                         static_cast<uint32_t>(p2), p3);
}

BroadcastService::Return<int32_t>
BroadcastService::a_hidl_qeltvapi_broadcast_select_channel_by_chan_id(int32_t p1, bool p2) {
    return mTv.presentation.select(Presentation::kMain, static_cast<uint32_t>(p1), p2);
}

BroadcastService::Return<int32_t>
BroadcastService::a_hidl_qeltvapi_broadcast_select_channel_by_prog_no(int32_t p1, int32_t p2) {
    if (p1 < 0 || p1 > 0xffff || !isPath(p2)) return kBadValue;
    return mTv.presentation.selectServiceId(static_cast<uint32_t>(p2), static_cast<uint16_t>(p1));
}

BroadcastService::Return<int32_t>
BroadcastService::a_hidl_qeltvapi_broadcast_select_channel_silently(int32_t p1, int32_t p2,
                                                                    int32_t p3, int32_t /*p4*/,
                                                                    int32_t /*p5*/) {
    return select(p3, p1, p2, false);
}

BroadcastService::Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_set_banner_visibility(
        bool visible) {
    mTv.presentation.showBanner(visible);
    return kOk;
}

BroadcastService::Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_tuning_status(
        a_hidl_qeltvapi_broadcast_get_tuning_status_cb reply) {
    reply(tuner().status, kOk);
    return Void();
}

BroadcastService::Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_tuning_error(
        a_hidl_qeltvapi_broadcast_get_tuning_error_cb reply) {
    reply(tuner().error, kOk);
    return Void();
}

BroadcastService::Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_key_handler(
        int32_t key) {
    return mTv.presentation.key(key);
}

BroadcastService::Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_switch_input_to_tv() {
    return mTv.presentation.changeSource(Presentation::kMain, Inputs::kTuner);
}

BroadcastService::Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_is_cam_installed(
        a_hidl_qeltvapi_broadcast_is_cam_installed_cb reply) {
    reply(!mTv.presentation.camName().empty(), kOk);
    return Void();
}

BroadcastService::Return<void>
BroadcastService::a_hidl_qeltvapi_broadcast_is_additional_service_available(
        a_hidl_qeltvapi_broadcast_is_additional_service_available_cb reply) {
    reply(mTv.presentation.tracks(Presentation::kMain).size() > 1, kOk);
    return Void();
}

BroadcastService::Return<void>
BroadcastService::a_hidl_qeltvapi_broadcast_is_support_4_digits_chan_no(
        a_hidl_qeltvapi_broadcast_is_support_4_digits_chan_no_cb reply) {
    reply(1, kOk);
    return Void();
}

BroadcastService::Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_is_digits_key_handled(
        a_hidl_qeltvapi_broadcast_is_digits_key_handled_cb reply) {
    reply(mTv.presentation.digitsKeyHandled(), kOk);
    return Void();
}

BroadcastService::Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_is_channel_number_valid(
        int32_t p1, int32_t p2, bool p3,
        a_hidl_qeltvapi_broadcast_is_channel_number_valid_cb reply) {
    const auto& presentation = mTv.presentation;
    const bool valid = p1 > 0 && p2 >= 0 &&
                       presentation.byNumber(presentation.currentList(), static_cast<uint32_t>(p1),
                                             static_cast<uint32_t>(p2), p3);
    reply(valid, kOk);
    return Void();
}

BroadcastService::Return<int32_t>
BroadcastService::a_hidl_qeltvapi_broadcast_set_favorite_icon_on_banner(bool show) {
    mTv.notifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_broadcast_callback_fct,
                       QELTV_BROADCAST_FAVOURITE_ICON, {show});
    return kOk;
}

BroadcastService::Return<int32_t>
BroadcastService::a_hidl_qeltvapi_broadcast_reset_digits_key_handled() {
    mTv.presentation.resetDigitsKeyHandled();
    return kOk;
}

BroadcastService::Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_target_region_num(
        int32_t p1, a_hidl_qeltvapi_broadcast_get_target_region_num_cb reply) {
    const auto found = regionsOf(p1, 0);
    reply(static_cast<uint16_t>(found.size()), kOk);
    return Void();
}

BroadcastService::Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_target_regions(
        int32_t p1, int32_t p2, int32_t p3, a_hidl_qeltvapi_broadcast_get_target_regions_cb reply) {
    const auto found = regionsOf(p1, p2);
    if (p3 < 0 || static_cast<size_t>(p3) >= found.size()) {
        reply({}, kNotFound);
        return Void();
    }
    const TargetRegion& region = *found[static_cast<size_t>(p3)];
    reply({region.level, region.primary, region.secondary, region.tertiary, region.name}, kOk);
    return Void();
}

BroadcastService::Return<void>
BroadcastService::a_hidl_qeltvapi_broadcast_get_max_possible_major_chan_no(
        int32_t p1, a_hidl_qeltvapi_broadcast_get_max_possible_major_chan_no_cb reply) {
    reply(isAtsc(p1) ? 999 : 9999, kOk);
    return Void();
}

BroadcastService::Return<void>
BroadcastService::a_hidl_qeltvapi_broadcast_get_max_possible_minor_chan_no(
        int32_t p1, a_hidl_qeltvapi_broadcast_get_max_possible_minor_chan_no_cb reply) {
    reply(isAtsc(p1) ? 999 : 0, kOk);
    return Void();
}

BroadcastService::Return<void>
BroadcastService::a_hidl_qeltvapi_broadcast_get_max_possible_major_digits(
        int32_t p1, a_hidl_qeltvapi_broadcast_get_max_possible_major_digits_cb reply) {
    reply(isAtsc(p1) ? 3 : 4, kOk);
    return Void();
}

BroadcastService::Return<void>
BroadcastService::a_hidl_qeltvapi_broadcast_get_max_possible_minor_digits(
        int32_t p1, a_hidl_qeltvapi_broadcast_get_max_possible_minor_digits_cb reply) {
    reply(isAtsc(p1) ? 3 : 0, kOk);
    return Void();
}

BroadcastService::Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_cam_operator_name(
        int32_t /*len*/, a_hidl_qeltvapi_broadcast_get_cam_operator_name_cb reply) {
    const std::string name = mTv.presentation.camName();
    reply(name, name.empty() ? kNotFound : kOk);
    return Void();
}

BroadcastService::Return<void>
BroadcastService::a_hidl_qeltvapi_broadcast_get_mheg_input_event_mask(
        int32_t /*p1*/, a_hidl_qeltvapi_broadcast_get_mheg_input_event_mask_cb reply) {
    // An application on air takes no keys while another user interface shows.
    reply(mExternalUi == 0 ? kMhegAllEvents : 0, kOk);
    return Void();
}

BroadcastService::Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_sync_stop(
        const String& name, bool /*p2*/) {
    const auto path = Presentation::pathOf(name);
    return path ? mTv.presentation.stop(*path) : kNotFound;
}

BroadcastService::Return<bool> BroadcastService::a_hidl_qeltvapi_broadcast_is_signal_loss() {
    return !mTv.presentation.reception().signal;
}

BroadcastService::Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_get_signal_level() {
    return static_cast<int32_t>(mTv.presentation.reception().level);
}

BroadcastService::Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_get_signal_quality() {
    return static_cast<int32_t>(mTv.presentation.reception().quality);
}

BroadcastService::Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_strm_is_orig_scramble(
        const String& name, int32_t /*p2*/,
        a_hidl_qeltvapi_broadcast_strm_is_orig_scramble_cb reply) {
    const auto path = Presentation::pathOf(name);
    if (!path) {
        reply(0, kNotFound);
        return Void();
    }
    const auto channel = mTv.presentation.status(*path).channel;
    reply(channel && (channel->flags & CHANNEL_FLAG_SCRAMBLED) != 0, kOk);
    return Void();
}

BroadcastService::Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_change_freq(
        const String& name, const HIDL_QELTVAPI_CHANGE_FREQ_T& freq) {
    const auto path = Presentation::pathOf(name);
    if (!path) return kNotFound;
    const auto head = recordOf<QELTV_FREQUENCY_HEAD_T>(freq.head.data(), sizeof(freq.head));
    if (!head) return kBadValue;
    return mTv.presentation.changeFrequency(*path, freq.word1, head->system, head->polarisation);
}

BroadcastService::Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_ana_channel_fine_tune(
        const String& name, int32_t /*p2*/, bool /*p3*/) {
    // There is no analogue channel in any line-up.
    return Presentation::pathOf(name) ? kRefused : kNotFound;
}

BroadcastService::Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_connect_attr(
        const String& name, int32_t p2, a_hidl_qeltvapi_broadcast_get_connect_attr_cb reply) {
    const auto path = Presentation::pathOf(name);
    if (!path) {
        reply(0, kNotFound);
        return Void();
    }
    const QELTV_CONNECTION_T all = mTv.presentation.connection(*path);
    const auto channel = mTv.presentation.status(*path).channel;
    const auto answer = [&](uint32_t value) { reply(static_cast<int32_t>(value), kOk); };
    switch (p2) {
        case QELTV_CONNECT_LOCKED:
            answer(all.status == QELTV_TUNING_LOCKED || all.status == QELTV_TUNING_PLAYS);
            break;
        case QELTV_CONNECT_LEVEL:
            answer(all.level);
            break;
        case QELTV_CONNECT_QUALITY:
            answer(all.quality);
            break;
        case QELTV_CONNECT_BIT_ERRORS:
            answer(all.bitErrors);
            break;
        case QELTV_CONNECT_FREQUENCY_KHZ:
            answer(all.frequencyKHz);
            break;
        case QELTV_CONNECT_SYMBOL_RATE:
            answer(all.symbolRate);
            break;
        case QELTV_CONNECT_MODULATION:
            answer(all.modulation);
            break;
        case QELTV_CONNECT_SYSTEM:
            answer(all.system);
            break;
        case QELTV_CONNECT_CHANNEL:
            answer(all.channel);
            break;
        case QELTV_CONNECT_LIST:
            answer(channel ? channel->list : 0u);
            break;
        case QELTV_CONNECT_STATUS:
            answer(all.status);
            break;
        case QELTV_CONNECT_ERROR:
            answer(all.error);
            break;
        default:
            reply(0, kNotFound);
    }
    return Void();
}

BroadcastService::Return<int32_t>
BroadcastService::a_hidl_qeltvapi_broadcast_transfer_external_ui_status(
        const HIDL_QELTVAPI_EXTERNAL_UI_STATUS_T& ui) {
    if (!isSound(ui) || ui.status < 0 || ui.status > 31) return kBadValue;
    const uint32_t bit = 1u << ui.status;
    if (ui.on) {
        mExternalUi |= bit;
    } else {
        mExternalUi &= ~bit;
    }
    return kOk;
}

}  // namespace qeltvd
