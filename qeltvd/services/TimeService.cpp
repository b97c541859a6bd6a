#define LOG_TAG "qeltvd"

#include "TimeService.h"

#include <log/log.h>

#include <cstring>

#include "Code.h"

namespace qeltvd {

using android::hardware::Void;

namespace {

QELTV_DTG_T fromWire(const HIDL_DTG_T& record) {
    QELTV_DTG_T dtg;
    memcpy(&dtg, record.head.data(), 8);
    dtg.flags = record.tail;
    return dtg;
}

/** All zero for no time. */
HIDL_DTG_T toWire(const std::optional<QELTV_DTG_T>& dtg) {
    HIDL_DTG_T record{};
    if (dtg) {
        memcpy(record.head.data(), &*dtg, 8);
        record.tail = dtg->flags;
    }
    return record;
}

void logRefusal(const char* what, int32_t code) {
    if (code != kOk) ALOGW("%s refused with code %d", what, code);
}

uint16_t bcd(unsigned value) {
    return static_cast<uint16_t>(value / 10 << 4 | value % 10);
}

}  // namespace

TimeService::TimeService(Television& tv) : IQelTvApiTimeDefault(kUnsupported, false), mTv(tv) {}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_get_utc_time(
        uint16_t, a_hidl_qeltvapi_time_get_utc_time_cb reply) {
    const int64_t now = mTv.clock.milliseconds();
    const int64_t part = ((now % 1000) + 1000) % 1000;
    reply(static_cast<uint16_t>(part), (now - part) / 1000);
    return Void();
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_utc_sec_to_dtg(
        int64_t seconds, a_hidl_qeltvapi_utc_sec_to_dtg_cb reply) {
    reply(toWire(mTv.clock.utcRecord(seconds)));
    return Void();
}

/** In UTC; without a broadcast time, no time and 0. What the caller's record held is not asked. */
TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_get_broadcast_time_ex(
        const HIDL_DTG_T&, a_hidl_qeltvapi_time_get_broadcast_time_ex_cb reply) {
    if (const auto time = mTv.clock.broadcast()) {
        reply(toWire(mTv.clock.utcRecord(*time)), *time);
    } else {
        reply(HIDL_DTG_T{}, 0);
    }
    return Void();
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_convert(
        uint32_t type, const HIDL_DTG_T& from, a_hidl_qeltvapi_time_convert_cb reply) {
    const QELTV_DTG_T record = fromWire(from);
    std::optional<QELTV_DTG_T> to;
    if (type == QELTV_TIME_UTC_TO_LOCAL) {
        if (const auto utc = Clock::plainSeconds(record)) to = mTv.clock.localRecord(*utc);
    } else if (type == QELTV_TIME_LOCAL_TO_UTC) {
        if (const auto utc = mTv.clock.localToUtc(record)) to = mTv.clock.utcRecord(*utc);
    } else if (type == QELTV_TIME_NORMALISE) {
        to = Clock::normalised(record);
    }
    reply(toWire(to), to ? kOk : kBadValue);
    return Void();
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_get_brdcst_raw_data(
        a_hidl_qeltvapi_time_get_brdcst_raw_data_cb reply) {
    const auto time = mTv.clock.broadcast();
    if (!time) {
        reply(0, 0, 0, 0, 0, kNotFound);
        return Void();
    }
    const int64_t saving = mTv.clock.offset();
    reply(mTv.clock.hasOffsetTable() ? QELTV_RAW_TIME_TOT : QELTV_RAW_TIME_STT, saving != 0, *time,
          mTv.clock.zone() + saving, mTv.clock.nextChange().value_or(0), kOk);
    return Void();
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_set_utc_time(int64_t seconds) {
    logRefusal("setting the time", mTv.clock.set(seconds));
    return Void();
}

TimeService::Return<bool> TimeService::a_hidl_qeltvapi_time_is_time_editable() {
    return mTv.clock.timeEditable();
}

TimeService::Return<int64_t> TimeService::a_hidl_qeltvapi_time_get_time_zone() {
    return mTv.clock.zone();
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_set_time_zone(int64_t zone) {
    logRefusal("setting the time zone", mTv.clock.setZone(zone));
    return Void();
}

TimeService::Return<bool> TimeService::a_hidl_qeltvapi_time_is_time_zone_editable() {
    return mTv.clock.zoneEditable();
}

TimeService::Return<int64_t> TimeService::a_hidl_qeltvapi_time_get_time_offset() {
    return mTv.clock.offset();
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_set_time_offset(int64_t offset) {
    logRefusal("setting the time offset", mTv.clock.setOffset(offset));
    return Void();
}

TimeService::Return<bool> TimeService::a_hidl_qeltvapi_time_is_time_offset_editable() {
    return mTv.clock.zoneEditable();
}

TimeService::Return<bool> TimeService::a_hidl_qeltvapi_time_has_received_tot() {
    return mTv.clock.hasOffsetTable();
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_convert_millis_to_local_time(
        int64_t milliseconds, a_hidl_qeltvapi_time_convert_millis_to_local_time_cb reply) {
    const int64_t below = milliseconds % 1000 < 0 ? 1 : 0;
    reply(toWire(mTv.clock.localRecord(milliseconds / 1000 - below)));
    return Void();
}

/** UTC seconds of a record in UTC or local time, as its flag tells; kBadValue for no date. */
TimeService::Return<int64_t> TimeService::a_hidl_qeltvapi_dtg_to_sec(const HIDL_DTG_T& dtg) {
    return mTv.clock.utcSeconds(fromWire(dtg)).value_or(kBadValue);
}

TimeService::Return<int64_t> TimeService::a_hidl_qeltvapi_time_convert_local_time_to_millis(
        const HIDL_DTG_T& dtg) {
    const auto utc = mTv.clock.localToUtc(fromWire(dtg));
    return utc ? *utc * 1000 : int64_t{kBadValue};
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_get_sync_source(
        a_hidl_qeltvapi_time_get_sync_source_cb reply) {
    reply(mTv.clock.source(), kOk);
    return Void();
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_set_sync_source(int32_t source) {
    logRefusal("setting the time source", mTv.clock.setSource(source));
    return Void();
}

/** Date and time, as "2026-03-29" and "02:30" or "02:30:15". */
TimeService::Return<int32_t> TimeService::a_hidl_qeltvapi_time_update_local_time(
        const String& first, const String& second) {
    return mTv.clock.setLocal(first, second);
}

TimeService::Return<int32_t> TimeService::a_hidl_qeltvapi_time_get_sleep_timer() {
    return mTv.sleepTimer.value();
}

/** Counts up: the seconds since it was set. */
TimeService::Return<int32_t> TimeService::a_hidl_qeltvapi_time_get_sleep_timer_reverse() {
    return mTv.sleepTimer.elapsed();
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_set_sleep_timer(int32_t value) {
    logRefusal("setting the sleep timer", mTv.sleepTimer.set(value));
    return Void();
}

TimeService::Return<void> TimeService::a_hidl_qeltvapi_time_get_sleep_timer_remaining_time(
        a_hidl_qeltvapi_time_get_sleep_timer_remaining_time_cb reply) {
    reply(mTv.sleepTimer.remaining(), mTv.sleepTimer.value() != 0 ? kOk : kNotFound);
    return Void();
}

TimeService::Return<void> TimeService::a_hidl_c_dt_utc_sec_to_loc_dtg(
        int64_t seconds, a_hidl_c_dt_utc_sec_to_loc_dtg_cb reply) {
    reply(toWire(mTv.clock.localRecord(seconds)));
    return Void();
}

/** The 32-bit value: the second of the minute. */
TimeService::Return<void> TimeService::a_hidl_c_dt_get_utc(a_hidl_c_dt_get_utc_cb reply) {
    const int64_t now = mTv.clock.milliseconds();
    const int64_t part = ((now % 1000) + 1000) % 1000;
    const int64_t seconds = (now - part) / 1000;
    const auto record = mTv.clock.utcRecord(seconds);
    reply(static_cast<uint16_t>(part), record ? record->second : 0, seconds);
    return Void();
}

/** To the other one of the two, as the flag of the record tells. */
TimeService::Return<void> TimeService::a_hidl_c_dt_conv_utc_local(
        const HIDL_DTG_T& from, a_hidl_c_dt_conv_utc_local_cb reply) {
    const QELTV_DTG_T record = fromWire(from);
    std::optional<QELTV_DTG_T> to;
    if (const auto utc = mTv.clock.utcSeconds(record)) {
        to = (record.flags & QELTV_DTG_UTC) != 0 ? mTv.clock.localRecord(*utc)
                                                 : mTv.clock.utcRecord(*utc);
    }
    reply(toWire(to));
    return Void();
}

TimeService::Return<void> TimeService::a_hidl_c_dt_mjd_to_dtg(uint32_t mjd,
                                                              a_hidl_c_dt_mjd_to_dtg_cb reply) {
    const auto record = Clock::fromModifiedJulian(mjd);
    reply(toWire(record), record ? kOk : kBadValue);
    return Void();
}

/** The fields as they stand, whatever the flags. */
TimeService::Return<int64_t> TimeService::a_hidl_c_dt_dtg_to_sec(const HIDL_DTG_T& dtg) {
    return Clock::plainSeconds(fromWire(dtg)).value_or(kBadValue);
}

/** The time in BCD has hour and minute, the third value the second. */
TimeService::Return<void> TimeService::a_hidl_c_dt_dtg_to_mjd_bcd(
        const HIDL_DTG_T& dtg, a_hidl_c_dt_dtg_to_mjd_bcd_cb reply) {
    const QELTV_DTG_T record = fromWire(dtg);
    const auto day = Clock::modifiedJulian(record);
    if (!day || *day > UINT16_MAX) {
        reply(0, 0, 0, kBadValue);
        return Void();
    }
    reply(static_cast<uint16_t>(*day),
          static_cast<uint16_t>(bcd(record.hour) << 8 | bcd(record.minute)),
          static_cast<uint8_t>(bcd(record.second)), kOk);
    return Void();
}

}  // namespace qeltvd
