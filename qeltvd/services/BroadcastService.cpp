#include "BroadcastService.h"

#include <algorithm>

#include <cstring>

#include "Blocks.h"
#include "ChannelIds.h"
#include "Code.h"

namespace qeltvd {

namespace {

/** MHEG applications take the text, colour, arrow and exit keys. */
constexpr uint8_t kMhegAllEvents = 0x0f;

/** The highest channel number, and in a list of two-part numbers the highest of either part. */
constexpr int32_t kHighestNumber = 9999;
constexpr int32_t kHighestAtscNumber = 999;

bool isPath(int32_t path) {
    return path >= 0 && path < static_cast<int32_t>(QELTV_PATHS);
}

int32_t digitsOf(int32_t number) {
    return static_cast<int32_t>(std::to_string(number).size());
}

}  // namespace

BroadcastService::BroadcastService(const ChannelDatabase& channels, Broadcast& broadcast,
                                   Notifier& notifier, Presentation& presentation)
        : mChannels(channels),
          mBroadcast(broadcast),
          mNotifier(notifier),
          mPresentation(presentation) {}

std::vector<TargetRegion> BroadcastService::regionsOf(int32_t level, int32_t primary) const {
    const auto current = mChannels.currentPair();
    std::vector<TargetRegion> regions = current ? mBroadcast.of(current->second)->targetRegions()
                                                : mBroadcast.simulated().targetRegions();
    regions.erase(std::remove_if(regions.begin(), regions.end(),
                                 [&](const TargetRegion& each) {
                                     return each.level != level ||
                                            (primary != 0 && each.primary != primary);
                                 }),
                  regions.end());
    return regions;
}

/** The path that has the tuner; the main path if the tuner is at rest. */
Presentation::Status BroadcastService::tuner() const {
    const auto path = mPresentation.tunerPath();
    if (path) return mPresentation.status(*path);
    return {Inputs::kTuner, QELTV_TUNING_STOPPED, QELTV_TUNING_NO_ERROR, std::nullopt};
}

/** Whether numbers have two parts: in list `list`, or in the current one if that is 0. */
bool BroadcastService::isAtsc(int32_t list) const {
    if (list < 0 || list > int32_t{channel_ids::kMaximumList}) return false;
    const auto id = list != 0 ? static_cast<uint16_t>(list) : mPresentation.currentList();
    const auto first = mChannels.byIndex(id, 0);
    return first && channel_ids::kind(first->channelId) == channel_ids::kTwoParts;
}

int32_t BroadcastService::select(int32_t path, int32_t list, int32_t channel, bool banner) {
    if (!isPath(path)) return kBadValue;
    const auto id = static_cast<uint32_t>(channel);
    // List 0 stands for whichever the channel is in.
    if (list != 0 && channel_ids::list(id) != list) return kNotFound;
    return mPresentation.select(static_cast<uint32_t>(path), id, banner);
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_select_channel(int32_t list,
                                                                           int32_t channel,
                                                                           int32_t path,
                                                                           bool banner) {
    return select(path, list, channel, banner);
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_select_channel_by_focusid(
        int32_t path, int32_t list, int32_t channel, bool banner, int32_t /*extra*/) {
    return select(path, list, channel, banner);
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_select_channel_by_chan_num(
        int32_t major, int32_t minor, bool banner) {
    if (major <= 0 || minor < 0) return kBadValue;
    return mPresentation.selectNumber(Presentation::kMain, static_cast<uint32_t>(major),
                                      static_cast<uint32_t>(minor), banner);
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_select_channel_by_chan_id(
        int32_t channel, bool banner) {
    return mPresentation.select(Presentation::kMain, static_cast<uint32_t>(channel), banner);
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_select_channel_by_prog_no(
        int32_t serviceId, int32_t path) {
    if (serviceId < 0 || serviceId > 0xffff || !isPath(path)) return kBadValue;
    return mPresentation.selectServiceId(static_cast<uint32_t>(path),
                                         static_cast<uint16_t>(serviceId));
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_select_channel_silently(
        int32_t list, int32_t channel, int32_t path, int32_t /*extra1*/, int32_t /*extra2*/) {
    return select(path, list, channel, false);
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_set_banner_visibility(bool visible) {
    mPresentation.showBanner(visible);
    return kOk;
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_tuning_status(
        a_hidl_qeltvapi_broadcast_get_tuning_status_cb reply) {
    reply(tuner().status, kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_tuning_error(
        a_hidl_qeltvapi_broadcast_get_tuning_error_cb reply) {
    reply(tuner().error, kOk);
    return Void();
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_key_handler(int32_t key) {
    return mPresentation.key(key);
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_switch_input_to_tv() {
    return mPresentation.changeSource(Presentation::kMain, Inputs::kTuner);
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_is_cam_installed(
        a_hidl_qeltvapi_broadcast_is_cam_installed_cb reply) {
    reply(!mPresentation.camName().empty(), kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_is_additional_service_available(
        a_hidl_qeltvapi_broadcast_is_additional_service_available_cb reply) {
    reply(mPresentation.tracks(Presentation::kMain).size() > 1, kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_is_support_4_digits_chan_no(
        a_hidl_qeltvapi_broadcast_is_support_4_digits_chan_no_cb reply) {
    reply(1, kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_is_digits_key_handled(
        a_hidl_qeltvapi_broadcast_is_digits_key_handled_cb reply) {
    reply(mPresentation.digitsKeyHandled(), kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_is_channel_number_valid(
        int32_t major, int32_t minor, bool exact,
        a_hidl_qeltvapi_broadcast_is_channel_number_valid_cb reply) {
    const auto& presentation = mPresentation;
    const bool valid =
            major > 0 && minor >= 0 &&
            presentation.byNumber(presentation.currentList(), static_cast<uint32_t>(major),
                                  static_cast<uint32_t>(minor), exact);
    reply(valid, kOk);
    return Void();
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_set_favorite_icon_on_banner(bool show) {
    mNotifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_broadcast_callback_fct,
                    QELTV_BROADCAST_FAVOURITE_ICON, {show});
    return kOk;
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_reset_digits_key_handled() {
    mPresentation.resetDigitsKeyHandled();
    return kOk;
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_target_region_num(
        int32_t level, a_hidl_qeltvapi_broadcast_get_target_region_num_cb reply) {
    const auto found = regionsOf(level, 0);
    reply(static_cast<uint16_t>(found.size()), kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_target_regions(
        int32_t level, int32_t primary, int32_t index,
        a_hidl_qeltvapi_broadcast_get_target_regions_cb reply) {
    const auto found = regionsOf(level, primary);
    if (index < 0 || static_cast<size_t>(index) >= found.size()) {
        reply({}, kNotFound);
        return Void();
    }
    const TargetRegion& region = found[static_cast<size_t>(index)];
    reply({region.level, region.primary, region.secondary, region.tertiary, region.name}, kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_max_possible_major_chan_no(
        int32_t list, a_hidl_qeltvapi_broadcast_get_max_possible_major_chan_no_cb reply) {
    reply(isAtsc(list) ? kHighestAtscNumber : kHighestNumber, kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_max_possible_minor_chan_no(
        int32_t list, a_hidl_qeltvapi_broadcast_get_max_possible_minor_chan_no_cb reply) {
    reply(isAtsc(list) ? kHighestAtscNumber : 0, kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_max_possible_major_digits(
        int32_t list, a_hidl_qeltvapi_broadcast_get_max_possible_major_digits_cb reply) {
    reply(digitsOf(isAtsc(list) ? kHighestAtscNumber : kHighestNumber), kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_max_possible_minor_digits(
        int32_t list, a_hidl_qeltvapi_broadcast_get_max_possible_minor_digits_cb reply) {
    reply(isAtsc(list) ? digitsOf(kHighestAtscNumber) : 0, kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_cam_operator_name(
        int32_t /*len*/, a_hidl_qeltvapi_broadcast_get_cam_operator_name_cb reply) {
    const std::string name = mPresentation.camName();
    reply(name, name.empty() ? kNotFound : kOk);
    return Void();
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_mheg_input_event_mask(
        int32_t /*extra*/, a_hidl_qeltvapi_broadcast_get_mheg_input_event_mask_cb reply) {
    // An application on air takes no keys while another user interface shows.
    reply(mExternalUi == 0 ? kMhegAllEvents : 0, kOk);
    return Void();
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_sync_stop(const String& name,
                                                                      bool /*extra*/) {
    const auto path = Presentation::pathOf(name);
    return path ? mPresentation.stop(*path) : kNotFound;
}

Return<bool> BroadcastService::a_hidl_qeltvapi_broadcast_is_signal_loss() {
    return !mPresentation.reception().signal;
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_get_signal_level() {
    return static_cast<int32_t>(mPresentation.reception().level);
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_get_signal_quality() {
    return static_cast<int32_t>(mPresentation.reception().quality);
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_strm_is_orig_scramble(
        const String& name, int32_t /*stream*/,
        a_hidl_qeltvapi_broadcast_strm_is_orig_scramble_cb reply) {
    const auto path = Presentation::pathOf(name);
    if (!path) {
        reply(0, kNotFound);
        return Void();
    }
    const auto channel = mPresentation.status(*path).channel;
    reply(channel && (channel->flags & CHANNEL_FLAG_SCRAMBLED) != 0, kOk);
    return Void();
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_change_freq(
        const String& name, const HIDL_QELTVAPI_CHANGE_FREQ_T& freq) {
    const auto path = Presentation::pathOf(name);
    if (!path) return kNotFound;
    const auto head = recordOf<QELTV_FREQUENCY_HEAD_T>(freq.head.data(), sizeof(freq.head));
    if (!head) return kBadValue;
    return mPresentation.changeFrequency(*path, freq.word1, head->system, head->polarisation);
}

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_ana_channel_fine_tune(
        const String& name, int32_t /*step*/, bool /*extra*/) {
    // There is no analogue channel in any line-up.
    return Presentation::pathOf(name) ? kRefused : kNotFound;
}

Return<void> BroadcastService::a_hidl_qeltvapi_broadcast_get_connect_attr(
        const String& name, int32_t attribute,
        a_hidl_qeltvapi_broadcast_get_connect_attr_cb reply) {
    const auto path = Presentation::pathOf(name);
    if (!path) {
        reply(0, kNotFound);
        return Void();
    }
    const QELTV_CONNECTION_T all = mPresentation.connection(*path);
    const auto channel = mPresentation.status(*path).channel;
    const auto answer = [&](uint32_t value) { reply(static_cast<int32_t>(value), kOk); };
    switch (attribute) {
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

Return<int32_t> BroadcastService::a_hidl_qeltvapi_broadcast_transfer_external_ui_status(
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
