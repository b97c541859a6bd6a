#pragma once

#include <qeltvapi/service/IQelTvApiConfig.h>
#include <mutex>
#include <set>
#include <string>

#include "ConfigItems.h"
#include "Notifier.h"
#include "PinLock.h"
#include "Presentation.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiConfig over the settings in the store. */
class ConfigService : public Default<IQelTvApiConfig> {
  public:
    ConfigService(ConfigItems& config, Notifier& notifier, PinLock& pin,
                  Presentation& presentation);

    Return<void> a_hidl_qeltvapi_config_get_minmaxvalue(
            uint32_t selector, const String& name,
            a_hidl_qeltvapi_config_get_minmaxvalue_cb reply) override;
    Return<void> a_hidl_qeltvapi_config_get_value(
            uint32_t selector, const String& name,
            a_hidl_qeltvapi_config_get_value_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_config_set_value(uint32_t selector, const String& name,
                                                     int32_t value, int32_t flags) override;
    Return<int32_t> a_hidl_qeltvapi_config_is_visible(uint32_t selector,
                                                      const String& name) override;
    Return<int32_t> a_hidl_qeltvapi_config_is_enabled(uint32_t selector,
                                                      const String& name) override;
    Return<int32_t> a_hidl_qeltvapi_config_reset_values(uint32_t selector) override;
    Return<void> a_hidl_qeltvapi_config_get_str_value(
            const String& name, a_hidl_qeltvapi_config_get_str_value_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_config_set_str_value(const String& name,
                                                         const String& value) override;
    Return<int32_t> a_hidl_qeltvapi_config_set_str_value_ex(const String& name, const String& value,
                                                            uint32_t extra) override;
    Return<int32_t> a_hidl_qeltvapi_config_add_value_changed_callback(const String& name) override;
    Return<int32_t> a_hidl_qeltvapi_config_remove_value_changed_callback(
            const String& name) override;
    Return<void> a_hidl_qeltvapi_config_get_items_enabled(
            uint32_t selector, const String& name,
            a_hidl_qeltvapi_config_get_items_enabled_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_config_set_android_world_info(uint32_t a, uint32_t b) override;
    Return<void> a_hidl_qeltvapi_config_get_video_resolution(
            a_hidl_qeltvapi_config_get_video_resolution_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_config_set_value_for_all_elems(uint32_t selector,
                                                                   const String& name,
                                                                   int32_t value,
                                                                   int32_t flags) override;

  private:
    int32_t set(uint32_t selector, const std::string& name, int32_t value, int32_t flags);
    int32_t setText(const std::string& name, const std::string& value, Audience audience);
    /** Notifies clients of a change of an item that is watched. */
    void changed(const ConfigItems::Item& item);

    ConfigItems& mConfig;
    Notifier& mNotifier;
    PinLock& mPin;
    Presentation& mPresentation;
    std::mutex mLock;
    // Guarded by mLock.
    std::set<std::string> mWatched;
    uint32_t mWorldInfo[2] = {0, 0};
};

}  // namespace qeltvd
