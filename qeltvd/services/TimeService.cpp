#define LOG_TAG "qeltvd"

#include "TimeService.h"

#include <log/log.h>

#include <cstring>

#include "Code.h"

namespace qeltvd {

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

TimeService::TimeService(Clock& clock, SleepTimer& sleepTimer)
        : mClock(clock), mSleepTimer(sleepTimer) {}

Return<void> TimeService::a_hidl_qeltvapi_time_get_utc_time(
        uint16_t, a_hidl_qeltvapi_time_get_utc_time_cb reply) {
    const int64_t now = mClock.milliseconds();
    const int64_t part = ((now % 1000) + 1000) % 1000;
    reply(static_cast<uint16_t>(part), (now - part) / 1000);
    return Void();
}

Return<void> TimeService::a_hidl_qeltvapi_utc_sec_to_dtg(int64_t seconds,
                                                         a_hidl_qeltvapi_utc_sec_to_dtg_cb reply) {
    reply(toWire(mClock.utcRecord(seconds)));
    return Void();
}

/** In UTC; without a broadcast time, no time and 0. What the caller's record held is not asked. */
Return<void> TimeService::a_hidl_qeltvapi_time_get_broadcast_time_ex(
        const HIDL_DTG_T&, a_hidl_qeltvapi_time_get_broadcast_time_ex_cb reply) {
    if (const auto time = mClock.broadcast()) {
        reply(toWire(mClock.utcRecord(*time)), *time);
    } else {
        reply(HIDL_DTG_T{}, 0);
    }
    return Void();
}

Return<void> TimeService::a_hidl_qeltvapi_time_convert(uint32_t type, const HIDL_DTG_T& from,
                                                       a_hidl_qeltvapi_time_convert_cb reply) {
    const QELTV_DTG_T record = fromWire(from);
    std::optional<QELTV_DTG_T> to;
    if (type == QELTV_TIME_UTC_TO_LOCAL) {
        if (const auto utc = Clock::plainSeconds(record)) to = mClock.localRecord(*utc);
    } else if (type == QELTV_TIME_LOCAL_TO_UTC) {
        if (const auto utc = mClock.localToUtc(record)) to = mClock.utcRecord(*utc);
    } else if (type == QELTV_TIME_NORMALISE) {
        to = Clock::normalised(record);
    }
    reply(toWire(to), to ? kOk : kBadValue);
    return Void();
}

Return<void> TimeService::a_hidl_qeltvapi_time_get_brdcst_raw_data(
        a_hidl_qeltvapi_time_get_brdcst_raw_data_cb reply) {
    const auto time = mClock.broadcast();
    if (!time) {
        reply(0, 0, 0, 0, 0, kNotFound);
        return Void();
    }
    const int64_t saving = mClock.offset();
    reply(mClock.hasOffsetTable() ? QELTV_RAW_TIME_TOT : QELTV_RAW_TIME_STT, saving != 0, *time,
          mClock.zone() + saving, mClock.nextChange().value_or(0), kOk);
    return Void();
}

Return<void> TimeService::a_hidl_qeltvapi_time_set_utc_time(int64_t seconds) {
    logRefusal("setting the time", mClock.set(seconds));
    return Void();
}

Return<bool> TimeService::a_hidl_qeltvapi_time_is_time_editable() {
    return mClock.timeEditable();
}

Return<int64_t> TimeService::a_hidl_qeltvapi_time_get_time_zone() {
    return mClock.zone();
}

Return<void> TimeService::a_hidl_qeltvapi_time_set_time_zone(int64_t zone) {
    logRefusal("setting the time zone", mClock.setZone(zone));
    return Void();
}

Return<bool> TimeService::a_hidl_qeltvapi_time_is_time_zone_editable() {
    return mClock.zoneEditable();
}

Return<int64_t> TimeService::a_hidl_qeltvapi_time_get_time_offset() {
    return mClock.offset();
}

Return<void> TimeService::a_hidl_qeltvapi_time_set_time_offset(int64_t offset) {
    logRefusal("setting the time offset", mClock.setOffset(offset));
    return Void();
}

Return<bool> TimeService::a_hidl_qeltvapi_time_is_time_offset_editable() {
    return mClock.zoneEditable();
}

Return<bool> TimeService::a_hidl_qeltvapi_time_has_received_tot() {
    return mClock.hasOffsetTable();
}

Return<void> TimeService::a_hidl_qeltvapi_time_convert_millis_to_local_time(
        int64_t milliseconds, a_hidl_qeltvapi_time_convert_millis_to_local_time_cb reply) {
    const int64_t below = milliseconds % 1000 < 0 ? 1 : 0;
    reply(toWire(mClock.localRecord(milliseconds / 1000 - below)));
    return Void();
}

/** UTC seconds of a record in UTC or local time, by its flag; kBadValue for no date. */
Return<int64_t> TimeService::a_hidl_qeltvapi_dtg_to_sec(const HIDL_DTG_T& dtg) {
    return mClock.utcSeconds(fromWire(dtg)).value_or(kBadValue);
}

Return<int64_t> TimeService::a_hidl_qeltvapi_time_convert_local_time_to_millis(
        const HIDL_DTG_T& dtg) {
    const auto utc = mClock.localToUtc(fromWire(dtg));
    return utc ? *utc * 1000 : int64_t{kBadValue};
}

Return<void> TimeService::a_hidl_qeltvapi_time_get_sync_source(
        a_hidl_qeltvapi_time_get_sync_source_cb reply) {
    reply(mClock.source(), kOk);
    return Void();
}

Return<void> TimeService::a_hidl_qeltvapi_time_set_sync_source(int32_t source) {
    logRefusal("setting the time source", mClock.setSource(source));
    return Void();
}

/** Date and time, as "2026-03-29" and "02:30" or "02:30:15". */
Return<int32_t> TimeService::a_hidl_qeltvapi_time_update_local_time(const String& first,
                                                                    const String& second) {
    return mClock.setLocal(first, second);
}

Return<int32_t> TimeService::a_hidl_qeltvapi_time_get_sleep_timer() {
    return mSleepTimer.value();
}

/** Counts up: the seconds since it was set. */
Return<int32_t> TimeService::a_hidl_qeltvapi_time_get_sleep_timer_reverse() {
    return mSleepTimer.elapsed();
}

Return<void> TimeService::a_hidl_qeltvapi_time_set_sleep_timer(int32_t value) {
    logRefusal("setting the sleep timer", mSleepTimer.set(value));
    return Void();
}

Return<void> TimeService::a_hidl_qeltvapi_time_get_sleep_timer_remaining_time(
        a_hidl_qeltvapi_time_get_sleep_timer_remaining_time_cb reply) {
    reply(mSleepTimer.remaining(), mSleepTimer.value() != 0 ? kOk : kNotFound);
    return Void();
}

Return<void> TimeService::a_hidl_c_dt_utc_sec_to_loc_dtg(int64_t seconds,
                                                         a_hidl_c_dt_utc_sec_to_loc_dtg_cb reply) {
    reply(toWire(mClock.localRecord(seconds)));
    return Void();
}

/** The 32-bit value: the second of the minute. */
Return<void> TimeService::a_hidl_c_dt_get_utc(a_hidl_c_dt_get_utc_cb reply) {
    const int64_t now = mClock.milliseconds();
    const int64_t part = ((now % 1000) + 1000) % 1000;
    const int64_t seconds = (now - part) / 1000;
    const auto record = mClock.utcRecord(seconds);
    reply(static_cast<uint16_t>(part), record ? record->second : 0, seconds);
    return Void();
}

/** To the other one of the two, by the flag of the record. */
Return<void> TimeService::a_hidl_c_dt_conv_utc_local(const HIDL_DTG_T& from,
                                                     a_hidl_c_dt_conv_utc_local_cb reply) {
    const QELTV_DTG_T record = fromWire(from);
    std::optional<QELTV_DTG_T> to;
    if (const auto utc = mClock.utcSeconds(record)) {
        to = (record.flags & QELTV_DTG_UTC) != 0 ? mClock.localRecord(*utc)
                                                 : mClock.utcRecord(*utc);
    }
    reply(toWire(to));
    return Void();
}

Return<void> TimeService::a_hidl_c_dt_mjd_to_dtg(uint32_t mjd, a_hidl_c_dt_mjd_to_dtg_cb reply) {
    const auto record = Clock::fromModifiedJulian(mjd);
    reply(toWire(record), record ? kOk : kBadValue);
    return Void();
}

/** The fields as they stand, regardless of the flags. */
Return<int64_t> TimeService::a_hidl_c_dt_dtg_to_sec(const HIDL_DTG_T& dtg) {
    return Clock::plainSeconds(fromWire(dtg)).value_or(kBadValue);
}

/** The time in BCD has hour and minute, the third value the second. */
Return<void> TimeService::a_hidl_c_dt_dtg_to_mjd_bcd(const HIDL_DTG_T& dtg,
                                                     a_hidl_c_dt_dtg_to_mjd_bcd_cb reply) {
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
