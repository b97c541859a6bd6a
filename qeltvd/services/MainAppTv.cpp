#define LOG_TAG "qeltvd"

#include <log/log.h>

#include "ChannelIds.h"
#include "Code.h"
#include "Inputs.h"
#include "LogText.h"
#include "MainService.h"
#include "Notifier.h"
#include "Presentation.h"

namespace qeltvd {

void MainService::notifyApplication(QELTV_APP_TV_EVENT event, uint64_t first, uint64_t second) {
    mModels.notifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_apptv_register_callback_fct,
                           static_cast<HIDL_QELTVAPI_APPTV_CALLBACK_TYPE_T>(event),
                           {first, second});
}

int32_t MainService::unblock(const std::string& path, bool unlocked) {
    const auto number = Presentation::pathOf(path);
    if (!number) return kNotFound;
    const int32_t code = mModels.presentation.unlock(*number, unlocked);
    if (code == kOk) notifyApplication(QELTV_APP_TV_UNLOCK, *number, unlocked);
    return code;
}

/** Number and name of the channel, or the name of the input, that the main path shows. */
std::string MainService::serviceText() const {
    const auto status = mModels.presentation.status(Presentation::kMain);
    if (status.status == QELTV_TUNING_STOPPED) return "";
    if (!status.channel) return mModels.inputs.name(status.source, QELTV_NAME_SHOWN);
    const uint32_t id = status.channel->channelId;
    std::string number = std::to_string(channel_ids::major(id));
    if (channel_ids::minor(id) != 0) number += "." + std::to_string(channel_ids::minor(id));
    return number + " " + status.channel->name;
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_save_timestamp(const String& tag) {
    ALOGI("time stamp %s", logText({tag.c_str(), tag.size()}).c_str());
    return kOk;
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_set_tv_started(bool started) {
    notifyApplication(QELTV_APP_TV_STARTED, started);
    return kOk;
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_unlock_service(const String& path) {
    return unblock(path, true);
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_get_matched_channel(int16_t number, bool exact,
                                                                       int32_t list,
                                                                       int32_t minor) {
    const int32_t major = number;
    if (major <= 0 || minor < 0 || list < 0 || list > 0xffff) return kBadValue;
    const auto wanted =
            list != 0 ? static_cast<uint16_t>(list) : mModels.presentation.currentList();
    const auto channel = mModels.presentation.byNumber(wanted, static_cast<uint32_t>(major),
                                                       static_cast<uint32_t>(minor), exact);
    return channel ? static_cast<int32_t>(channel->channelId) : kNotFound;
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_nav_update_sys_status_by_win(const String& path,
                                                                                int32_t status) {
    const auto number = Presentation::pathOf(path);
    if (!number) return kNotFound;
    notifyApplication(QELTV_APP_TV_STATUS, *number, static_cast<uint32_t>(status));
    return kOk;
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_update_sys_status(int32_t status) {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
        notifyApplication(QELTV_APP_TV_STATUS, path, static_cast<uint32_t>(status));
    }
    return kOk;
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_start_tv() {
    return mModels.presentation.start();
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_stop_all() {
    mModels.presentation.stopAll();
    return kOk;
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_get_current_channel_svc_text_len() {
    return static_cast<int32_t>(serviceText().size());
}

Return<void> MainService::a_hidl_qeltvapi_apptv_get_current_channel_svc_text(
        int32_t capacity, a_hidl_qeltvapi_apptv_get_current_channel_svc_text_cb reply) {
    std::string text = serviceText();
    if (capacity > 0 && text.size() > static_cast<size_t>(capacity))
        text.resize(static_cast<size_t>(capacity));
    reply(text, text.empty() ? kRefused : kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_unblock_svc(const String& path, bool unlocked) {
    return unblock(path, unlocked);
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_swap_tmp_unlock_info(int32_t /*extra*/) {
    mModels.presentation.swapUnlocked();
    return kOk;
}

Return<int32_t> MainService::a_hidl_qeltvapi_apptv_set_video_mute(const String& path, bool mute) {
    const auto number = Presentation::pathOf(path);
    return number ? mModels.presentation.setMuted(*number, mute) : kNotFound;
}

Return<void> MainService::a_hidl_qeltvapi_apptv_get_capability_ex(
        int32_t id, a_hidl_qeltvapi_apptv_get_capability_ex_cb reply) {
    uint32_t value = 0;
    switch (id) {
        case QELTV_CAPABILITY_TUNERS:
            value = 1;
            break;
        case QELTV_CAPABILITY_PATHS:
            value = QELTV_PATHS;
            break;
        case QELTV_CAPABILITY_INPUTS:
            value = Inputs::kCount;
            break;
        case QELTV_CAPABILITY_HDMI:
            for (int32_t input = 0; Inputs::exists(input); ++input) {
                value += Inputs::socket(input).type == QELTV_INPUT_HDMI;
            }
            break;
        case QELTV_CAPABILITY_VOLUME:
            value = QELTV_VOLUME_MAXIMUM;
            break;
        case QELTV_CAPABILITY_SYSTEMS:
            for (auto system = static_cast<uint32_t>(DeliverySystem::kDvbT);
                 system <= static_cast<uint32_t>(DeliverySystem::kIsdbT); ++system) {
                value |= 1u << system;
            }
            break;
        case QELTV_CAPABILITY_TV_MODES:
            value = QELTV_TV_SIDE_BY_SIDE + 1;
            break;
        default:
            reply(0, kNotFound);
            return Void();
    }
    reply(value, kOk);
    return Void();
}

Return<bool> MainService::a_hidl_qeltvapi_apptv_get_video_mute(const String& path) {
    const auto number = Presentation::pathOf(path);
    return number && mModels.presentation.muted(*number);
}

}  // namespace qeltvd
