#pragma once

#include <qeltvapi/service/IQelTvApiBroadcast.h>
#include <atomic>

#include "ChannelDatabase.h"
#include "Notifier.h"
#include "Presentation.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiBroadcast: the tuner as a viewer's application sees it. */
class BroadcastService : public Default<IQelTvApiBroadcast> {
  public:
    BroadcastService(const ChannelDatabase& channels, Broadcast& broadcast, Notifier& notifier,
                     Presentation& presentation);

    Return<int32_t> a_hidl_qeltvapi_broadcast_select_channel(int32_t list, int32_t channel,
                                                             int32_t path, bool banner) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_select_channel_by_focusid(int32_t path, int32_t list,
                                                                        int32_t channel,
                                                                        bool banner,
                                                                        int32_t extra) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_select_channel_by_chan_num(int32_t major,
                                                                         int32_t minor,
                                                                         bool banner) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_select_channel_by_chan_id(int32_t channel,
                                                                        bool banner) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_select_channel_by_prog_no(int32_t serviceId,
                                                                        int32_t path) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_select_channel_silently(int32_t list, int32_t channel,
                                                                      int32_t path, int32_t extra1,
                                                                      int32_t extra2) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_set_banner_visibility(bool visible) override;
    Return<void> a_hidl_qeltvapi_broadcast_get_tuning_status(
            a_hidl_qeltvapi_broadcast_get_tuning_status_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_get_tuning_error(
            a_hidl_qeltvapi_broadcast_get_tuning_error_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_key_handler(int32_t key) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_switch_input_to_tv() override;
    Return<void> a_hidl_qeltvapi_broadcast_is_cam_installed(
            a_hidl_qeltvapi_broadcast_is_cam_installed_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_is_additional_service_available(
            a_hidl_qeltvapi_broadcast_is_additional_service_available_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_is_support_4_digits_chan_no(
            a_hidl_qeltvapi_broadcast_is_support_4_digits_chan_no_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_is_digits_key_handled(
            a_hidl_qeltvapi_broadcast_is_digits_key_handled_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_is_channel_number_valid(
            int32_t major, int32_t minor, bool exact,
            a_hidl_qeltvapi_broadcast_is_channel_number_valid_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_set_favorite_icon_on_banner(bool show) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_reset_digits_key_handled() override;
    Return<void> a_hidl_qeltvapi_broadcast_get_target_region_num(
            int32_t level, a_hidl_qeltvapi_broadcast_get_target_region_num_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_get_target_regions(
            int32_t level, int32_t primary, int32_t index,
            a_hidl_qeltvapi_broadcast_get_target_regions_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_get_max_possible_major_chan_no(
            int32_t list,
            a_hidl_qeltvapi_broadcast_get_max_possible_major_chan_no_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_get_max_possible_minor_chan_no(
            int32_t list,
            a_hidl_qeltvapi_broadcast_get_max_possible_minor_chan_no_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_get_max_possible_major_digits(
            int32_t list,
            a_hidl_qeltvapi_broadcast_get_max_possible_major_digits_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_get_max_possible_minor_digits(
            int32_t list,
            a_hidl_qeltvapi_broadcast_get_max_possible_minor_digits_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_get_cam_operator_name(
            int32_t len, a_hidl_qeltvapi_broadcast_get_cam_operator_name_cb reply) override;
    Return<void> a_hidl_qeltvapi_broadcast_get_mheg_input_event_mask(
            int32_t extra, a_hidl_qeltvapi_broadcast_get_mheg_input_event_mask_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_sync_stop(const String& name, bool extra) override;
    Return<bool> a_hidl_qeltvapi_broadcast_is_signal_loss() override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_get_signal_level() override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_get_signal_quality() override;
    Return<void> a_hidl_qeltvapi_broadcast_strm_is_orig_scramble(
            const String& name, int32_t stream,
            a_hidl_qeltvapi_broadcast_strm_is_orig_scramble_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_change_freq(
            const String& name, const HIDL_QELTVAPI_CHANGE_FREQ_T& freq) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_ana_channel_fine_tune(const String& name,
                                                                    int32_t step,
                                                                    bool extra) override;
    Return<void> a_hidl_qeltvapi_broadcast_get_connect_attr(
            const String& name, int32_t attribute,
            a_hidl_qeltvapi_broadcast_get_connect_attr_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_broadcast_transfer_external_ui_status(
            const HIDL_QELTVAPI_EXTERNAL_UI_STATUS_T& ui) override;

  private:
    Presentation::Status tuner() const;
    bool isAtsc(int32_t list) const;
    int32_t select(int32_t path, int32_t list, int32_t channel, bool banner);
    /** Those of the current multiplex; primary 0: any. */
    std::vector<TargetRegion> regionsOf(int32_t level, int32_t primary) const;

    const ChannelDatabase& mChannels;
    Broadcast& mBroadcast;
    Notifier& mNotifier;
    Presentation& mPresentation;
    /** Bit n: external user interface n shows. */
    std::atomic<uint32_t> mExternalUi{0};
};

}  // namespace qeltvd
