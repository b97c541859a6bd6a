#pragma once

#include <qeltvapi/service/IQelTvApiScan.h>

#include "ChannelDatabase.h"
#include "ConfigItems.h"
#include "Ratings.h"
#include "Scanner.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiScan over the scanner. */
class ScanService : public Default<IQelTvApiScan> {
  public:
    ScanService(const ChannelDatabase& channels, const ConfigItems& config, const Ratings& ratings,
                Scanner& scanner, std::function<Code(uint32_t channelId)> goTo);

    using Data = Vector<int32_t>;

    Return<int32_t> a_hidl_qeltvapi_scan_select_crnt_or_first_channel(bool skip_fake) override;
    Return<bool> a_hidl_qeltvapi_is_scan_active() override;
    Return<int32_t> a_hidl_qeltvapi_start_scan(uint64_t scan_arg, bool flag) override;
    Return<int32_t> a_hidl_qeltvapi_cancel_scan() override;
    Return<int32_t> a_hidl_qeltvapi_get_market_region() override;
    Return<int32_t> a_hidl_qeltvapi_set_atsc_scan_param(
            uint64_t scan_arg, const HIDL_ATSC_SCAN_PARAM_T& param) override;
    Return<int32_t> a_hidl_qeltvapi_set_isdb_scan_param(
            uint64_t scan_arg, const HIDL_ISDB_SCAN_PARAM_T& param) override;
    Return<void> a_hidl_qeltvapi_atsc_exchange_data(
            const Data& data, a_hidl_qeltvapi_atsc_exchange_data_cb reply) override;
    Return<void> a_hidl_qeltvapi_isdb_exchange_data(
            const Data& data, a_hidl_qeltvapi_isdb_exchange_data_cb reply) override;
    Return<void> a_hidl_scan_ce_exchange_data(const Data& data,
                                              a_hidl_scan_ce_exchange_data_cb reply) override;
    Return<void> a_hidl_scan_dtmb_exchange_data(const Data& data,
                                                a_hidl_scan_dtmb_exchange_data_cb reply) override;
    Return<void> a_hidl_scan_pal_secam_exchange_data(
            const Data& data, a_hidl_scan_pal_secam_exchange_data_cb reply) override;
    Return<void> a_hidl_scan_dvbs_exchange_data(const Data& data,
                                                a_hidl_scan_dvbs_exchange_data_cb reply) override;
    Return<void> a_hidl_qeltvapi_get_user_message(
            const String& text, uint32_t room, a_hidl_qeltvapi_get_user_message_cb reply) override;
    Return<void> a_hidl_scan_dvbc_exchange_data(const Data& data,
                                                a_hidl_scan_dvbc_exchange_data_cb reply) override;
    Return<void> a_hidl_qeltvapi_scan_dvbc_get_str_data(
            uint32_t id, const String& text, int32_t room,
            a_hidl_qeltvapi_scan_dvbc_get_str_data_cb reply) override;
    Return<void> a_hidl_scan_dvbt_exchange_data(const Data& data,
                                                a_hidl_scan_dvbt_exchange_data_cb reply) override;

  private:
    using Belongs = bool (*)(DeliverySystem);
    using Reply = std::function<void(const Data&, int32_t)>;
    void exchange(const Data& data, Belongs belongs, const Reply& reply);

    const ChannelDatabase& mChannels;
    const ConfigItems& mConfig;
    const Ratings& mRatings;
    Scanner& mScanner;
    const std::function<Code(uint32_t)> mGoTo;
};

}  // namespace qeltvd
