#pragma once

#include <qeltvapi/service/IQelTvApiTime.h>

#include "Clock.h"
#include "ServiceTypes.h"

namespace qeltvd {

/** IQelTvApiTime over the clock and the sleep timer. */
class TimeService : public Default<IQelTvApiTime> {
  public:
    TimeService(Clock& clock, SleepTimer& sleepTimer);

    Return<void> a_hidl_qeltvapi_time_get_utc_time(
            uint16_t zero, a_hidl_qeltvapi_time_get_utc_time_cb reply) override;
    Return<void> a_hidl_qeltvapi_utc_sec_to_dtg(int64_t seconds,
                                                a_hidl_qeltvapi_utc_sec_to_dtg_cb reply) override;
    Return<void> a_hidl_qeltvapi_time_get_broadcast_time_ex(
            const HIDL_DTG_T& dtg, a_hidl_qeltvapi_time_get_broadcast_time_ex_cb reply) override;
    Return<void> a_hidl_qeltvapi_time_convert(uint32_t type, const HIDL_DTG_T& from,
                                              a_hidl_qeltvapi_time_convert_cb reply) override;
    Return<void> a_hidl_qeltvapi_time_get_brdcst_raw_data(
            a_hidl_qeltvapi_time_get_brdcst_raw_data_cb reply) override;
    Return<void> a_hidl_qeltvapi_time_set_utc_time(int64_t seconds) override;
    Return<bool> a_hidl_qeltvapi_time_is_time_editable() override;
    Return<int64_t> a_hidl_qeltvapi_time_get_time_zone() override;
    Return<void> a_hidl_qeltvapi_time_set_time_zone(int64_t zone) override;
    Return<bool> a_hidl_qeltvapi_time_is_time_zone_editable() override;
    Return<int64_t> a_hidl_qeltvapi_time_get_time_offset() override;
    Return<void> a_hidl_qeltvapi_time_set_time_offset(int64_t offset) override;
    Return<bool> a_hidl_qeltvapi_time_is_time_offset_editable() override;
    Return<bool> a_hidl_qeltvapi_time_has_received_tot() override;
    Return<void> a_hidl_qeltvapi_time_convert_millis_to_local_time(
            int64_t milliseconds,
            a_hidl_qeltvapi_time_convert_millis_to_local_time_cb reply) override;
    Return<int64_t> a_hidl_qeltvapi_dtg_to_sec(const HIDL_DTG_T& dtg) override;
    Return<int64_t> a_hidl_qeltvapi_time_convert_local_time_to_millis(
            const HIDL_DTG_T& dtg) override;
    Return<void> a_hidl_qeltvapi_time_get_sync_source(
            a_hidl_qeltvapi_time_get_sync_source_cb reply) override;
    Return<void> a_hidl_qeltvapi_time_set_sync_source(int32_t source) override;
    Return<int32_t> a_hidl_qeltvapi_time_update_local_time(const String& first,
                                                           const String& second) override;
    Return<int32_t> a_hidl_qeltvapi_time_get_sleep_timer() override;
    Return<int32_t> a_hidl_qeltvapi_time_get_sleep_timer_reverse() override;
    Return<void> a_hidl_qeltvapi_time_set_sleep_timer(int32_t value) override;
    Return<void> a_hidl_qeltvapi_time_get_sleep_timer_remaining_time(
            a_hidl_qeltvapi_time_get_sleep_timer_remaining_time_cb reply) override;
    Return<void> a_hidl_c_dt_utc_sec_to_loc_dtg(int64_t seconds,
                                                a_hidl_c_dt_utc_sec_to_loc_dtg_cb reply) override;
    Return<void> a_hidl_c_dt_get_utc(a_hidl_c_dt_get_utc_cb reply) override;
    Return<void> a_hidl_c_dt_conv_utc_local(const HIDL_DTG_T& from,
                                            a_hidl_c_dt_conv_utc_local_cb reply) override;
    Return<void> a_hidl_c_dt_mjd_to_dtg(uint32_t mjd, a_hidl_c_dt_mjd_to_dtg_cb reply) override;
    Return<int64_t> a_hidl_c_dt_dtg_to_sec(const HIDL_DTG_T& dtg) override;
    Return<void> a_hidl_c_dt_dtg_to_mjd_bcd(const HIDL_DTG_T& dtg,
                                            a_hidl_c_dt_dtg_to_mjd_bcd_cb reply) override;

  private:
    Clock& mClock;
    SleepTimer& mSleepTimer;
};

}  // namespace qeltvd
