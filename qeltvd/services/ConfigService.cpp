#include "ConfigService.h"

#include <cstring>

#include "Blocks.h"
#include "Code.h"
#include "Stored.h"
#include "layouts/config.h"

namespace qeltvd {

namespace {

Audience audienceOf(uint32_t flags) {
    return (flags & QELTV_CONFIG_QUIET) != 0 ? Audience::kTelevision : Audience::kEveryone;
}

/** Minimum and maximum in one word: the maximum in the high half, both as 16-bit numbers. */
uint32_t packed(int32_t minimum, int32_t maximum) {
    return static_cast<uint32_t>(static_cast<uint16_t>(minimum)) |
           static_cast<uint32_t>(static_cast<uint16_t>(maximum)) << 16;
}

}  // namespace

ConfigService::ConfigService(ConfigItems& config, Notifier& notifier, PinLock& pin,
                             Presentation& presentation)
        : mConfig(config), mNotifier(notifier), mPin(pin), mPresentation(presentation) {
    config.addListener([this](const ConfigItems::Item& item, Audience audience) {
        if (audience == Audience::kEveryone) changed(item);
    });
}

Return<void> ConfigService::a_hidl_qeltvapi_config_get_minmaxvalue(
        uint32_t selector, const String& name, a_hidl_qeltvapi_config_get_minmaxvalue_cb reply) {
    const auto item = mConfig.find(selector, name);
    if (item && !item->isText) {
        reply(packed(item->minimum, item->maximum), kOk);
    } else {
        reply(0, kNotFound);
    }
    return Void();
}

Return<void> ConfigService::a_hidl_qeltvapi_config_get_value(
        uint32_t selector, const String& name, a_hidl_qeltvapi_config_get_value_cb reply) {
    const auto item = mConfig.find(selector, name);
    if (item && !item->isText) {
        reply(item->value, kOk);
    } else {
        reply(0, kNotFound);
    }
    return Void();
}

Return<int32_t> ConfigService::a_hidl_qeltvapi_config_set_value(uint32_t selector,
                                                                const String& name, int32_t value,
                                                                int32_t flags) {
    return set(selector, name, value, flags);
}

Return<int32_t> ConfigService::a_hidl_qeltvapi_config_is_visible(uint32_t selector,
                                                                 const String& name) {
    const auto item = mConfig.find(selector, name);
    return item ? int32_t{item->visible} : kNotFound;
}

Return<int32_t> ConfigService::a_hidl_qeltvapi_config_is_enabled(uint32_t selector,
                                                                 const String& name) {
    const auto item = mConfig.find(selector, name);
    return item ? int32_t{item->enabled} : kNotFound;
}

Return<int32_t> ConfigService::a_hidl_qeltvapi_config_reset_values(uint32_t selector) {
    return stored([&] { return mConfig.reset(selector); });
}

Return<void> ConfigService::a_hidl_qeltvapi_config_get_str_value(
        const String& name, a_hidl_qeltvapi_config_get_str_value_cb reply) {
    const auto item = mConfig.find(QELTV_CONFIG_ANY_GROUP, name);
    if (item && item->isText) {
        reply(item->text, static_cast<uint32_t>(item->text.size()), kOk);
    } else {
        reply("", 0, kNotFound);
    }
    return Void();
}

Return<int32_t> ConfigService::a_hidl_qeltvapi_config_set_str_value(const String& name,
                                                                    const String& value) {
    return setText(name, value, Audience::kEveryone);
}

/** The extra word is the flags that set_value has. */
Return<int32_t> ConfigService::a_hidl_qeltvapi_config_set_str_value_ex(const String& name,
                                                                       const String& value,
                                                                       uint32_t extra) {
    return setText(name, value, audienceOf(extra));
}

Return<int32_t> ConfigService::a_hidl_qeltvapi_config_add_value_changed_callback(
        const String& name) {
    if (!mConfig.find(QELTV_CONFIG_ANY_GROUP, name)) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    mWatched.insert(name);
    return kOk;
}

Return<int32_t> ConfigService::a_hidl_qeltvapi_config_remove_value_changed_callback(
        const String& name) {
    std::lock_guard<std::mutex> guard(mLock);
    return mWatched.erase(name) != 0 ? kOk : kNotFound;
}

/** One character for each value that the item can take, '1' if it can be chosen now. */
Return<void> ConfigService::a_hidl_qeltvapi_config_get_items_enabled(
        uint32_t selector, const String& name, a_hidl_qeltvapi_config_get_items_enabled_cb reply) {
    const auto item = mConfig.find(selector, name);
    if (!item || item->isText) {
        reply("", 0, 0, kNotFound);
        return Void();
    }
    const size_t count = static_cast<size_t>(item->maximum - item->minimum) + 1;
    reply(std::string(count, item->enabled ? '1' : '0'), static_cast<uint32_t>(count), item->value,
          kOk);
    return Void();
}

Return<int32_t> ConfigService::a_hidl_qeltvapi_config_set_android_world_info(uint32_t a,
                                                                             uint32_t b) {
    std::lock_guard<std::mutex> guard(mLock);
    mWorldInfo[0] = a;
    mWorldInfo[1] = b;
    return kOk;
}

/**
 * Four 32-bit words of the picture that the main path shows: width, height, frames per second times
 * 1000, 1 when interlaced. Zeros while it shows none.
 */
Return<void> ConfigService::a_hidl_qeltvapi_config_get_video_resolution(
        a_hidl_qeltvapi_config_get_video_resolution_cb reply) {
    const QELTV_VIDEO_SOURCE_T video = mPresentation.video(Presentation::kMain);
    reply(wordBytes({video.width, video.height, video.frameRate, video.interlaced}), kOk);
    return Void();
}

/** Every input shares one value here. */
Return<int32_t> ConfigService::a_hidl_qeltvapi_config_set_value_for_all_elems(uint32_t selector,
                                                                              const String& name,
                                                                              int32_t value,
                                                                              int32_t flags) {
    return set(selector, name, value, flags);
}

int32_t ConfigService::set(uint32_t selector, const std::string& name, int32_t value,
                           int32_t flags) {
    return stored([&] {
        return mConfig.set(selector, name, value, audienceOf(static_cast<uint32_t>(flags)));
    });
}

int32_t ConfigService::setText(const std::string& name, const std::string& value,
                               Audience audience) {
    // Only written: a right PIN has to come before it, and nobody can read the new one.
    if (name == "parental.pin") return mPin.change(value);
    return stored([&] { return mConfig.setText(name, value, audience); });
}

void ConfigService::changed(const ConfigItems::Item& item) {
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (mWatched.count(item.name) == 0) return;
    }
    mNotifier.notify(&IQelTvApiCallback::a_hidl_config_update_nfy_fct, QELTV_CONFIG_VALUE_CHANGED,
                     uint64_t{0}, uint64_t{item.group}, String(item.name),
                     static_cast<uint64_t>(int64_t{item.value}), uint64_t{0});
}

}  // namespace qeltvd
