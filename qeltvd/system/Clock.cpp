#define LOG_TAG "qeltvd"

#include "Clock.h"

#include <date/ptz.h>
#include <date/tz.h>
#include <log/log.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>

#include "Code.h"
#include "Guarded.h"
#include "LogText.h"
#include "Stored.h"

namespace qeltvd {

using std::chrono::duration_cast;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

namespace {

constexpr char kPlaceItem[] = "system.time_zone";
constexpr char kCountryItem[] = "channels.country";
constexpr char kSourceSetting[] = "time.source";
constexpr char kDistanceSetting[] = "time.distance_ms";
constexpr char kManualSetting[] = "time.manual";
constexpr char kZoneSetting[] = "time.zone";
constexpr char kOffsetSetting[] = "time.offset";

/** Day 0 of the Modified Julian Date. */
constexpr date::sys_days kJulianEpoch = date::year{1858} / 11 / 17;

constexpr date::sys_seconds kFirst = date::sys_days(date::year{1} / 1 / 1);
constexpr date::sys_seconds kLast = date::sys_days(date::year{10000} / 1 / 1) - seconds(1);

/** Milliseconds by which the time that is received has to differ for the clock to follow. */
constexpr int64_t kJump = 2000;
/** Offsets that are received hold for times that are so many seconds away: about two months. */
constexpr int64_t kOffsetsHold = int64_t{60} * 86400;

/** Seconds that are to be added to UTC, and what of it is daylight saving time. */
struct TotalOffset {
    int64_t seconds;
    int64_t daylight;
};

TotalOffset offsetAt(const stream::LocalOffset& offset, int64_t utc) {
    const bool changes = offset.changeAt != 0;
    const int64_t total = changes && utc >= offset.changeAt ? offset.nextSeconds : offset.seconds;
    const int64_t standard =
            changes ? std::min(offset.seconds, offset.nextSeconds) : offset.seconds;
    return {total, total - standard};
}

/** Milliseconds of the clock of this machine. */
int64_t machineTime() {
    return duration_cast<milliseconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

bool zoneExists(const std::string& name) {
    try {
        return date::locate_zone(name) != nullptr;
    } catch (const std::exception&) {
        return false;
    }
}

const date::time_zone* zoneOf(const std::string& name) {
    try {
        return date::locate_zone(name);
    } catch (const std::exception& e) {
        ALOGW("no time zone \"%s\": UTC", logText(name).c_str());
        return date::locate_zone("Etc/UTC");
    }
}

/** The tables of a zone end in 2037; from then on the rule that stands behind them holds. */
constexpr date::year kRuleFrom{2037};

std::optional<Posix::time_zone> ruleOf(const date::time_zone& zone) {
    std::ifstream file("/usr/share/zoneinfo/" + zone.name(), std::ios::binary);
    std::string line, rule;
    while (std::getline(file, line)) rule = line;
    try {
        return Posix::time_zone(rule);
    } catch (const std::exception& e) {
        ALOGW("no rule for the time zone \"%s\" after its tables", zone.name().c_str());
        return std::nullopt;
    }
}

/** What holds in a place at a time, in UTC (sys_info) or local time (local_info). */
template <class Time>
auto infoOf(const std::string& place, Time time) {
    const date::time_zone& zone = *zoneOf(place);
    if (time.time_since_epoch() >= date::sys_days(kRuleFrom / 1 / 1).time_since_epoch()) {
        if (const auto rule = ruleOf(zone)) return rule->get_info(time);
    }
    return zone.get_info(time);
}

std::optional<QELTV_DTG_T> record(date::sys_seconds time, uint16_t flags) {
    if (time < kFirst || time > kLast) return std::nullopt;
    const auto day = date::floor<date::days>(time);
    const date::year_month_day ymd(day);
    const date::hh_mm_ss<seconds> clock(time - day);
    QELTV_DTG_T dtg{};
    dtg.year = static_cast<uint16_t>(int(ymd.year()));
    dtg.month = static_cast<uint8_t>(unsigned(ymd.month()));
    dtg.day = static_cast<uint8_t>(unsigned(ymd.day()));
    dtg.weekday = static_cast<uint8_t>(date::weekday(day).c_encoding());
    dtg.hour = static_cast<uint8_t>(clock.hours().count());
    dtg.minute = static_cast<uint8_t>(clock.minutes().count());
    dtg.second = static_cast<uint8_t>(clock.seconds().count());
    dtg.flags = flags;
    return dtg;
}

bool inRange(int64_t utc) {
    return utc >= kFirst.time_since_epoch().count() && utc <= kLast.time_since_epoch().count();
}

}  // namespace

const char* weekdayName(const QELTV_DTG_T& dtg) {
    constexpr const char* kNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    return kNames[dtg.weekday % 7];
}

const char* monthName(const QELTV_DTG_T& dtg) {
    constexpr const char* kNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return kNames[(dtg.month + 11) % 12];
}

Clock::Clock(Store& store, Notifier& notifier, ConfigItems& config, Broadcast& broadcast)
        : mSettings(store),
          mNotifier(notifier),
          mConfig(config),
          mBroadcast(broadcast),
          mSource(static_cast<int32_t>(mSettings.number(kSourceSetting, QELTV_SYNC_BROADCAST))),
          mDistance(mSettings.number(kDistanceSetting, 0)) {
    if (mSettings.number(kManualSetting, 0) != 0) {
        mManual = Manual{mSettings.number(kZoneSetting, 0), mSettings.number(kOffsetSetting, 0)};
    }
    config.addCheck(kPlaceItem, zoneExists);
    config.addListener([this](const ConfigItems::Item& item, Audience) {
        if (item.name == kPlaceItem && !manual()) zoneChanged();
        if (item.name == kCountryItem) follow();
    });
    broadcast.addListener([this](uint32_t changes) {
        if ((changes & stream::kTimeChanged) != 0) follow();
    });
}

void Clock::addListener(std::function<void()> listener) {
    mListeners.push_back(std::move(listener));
}

int64_t Clock::milliseconds() const {
    std::lock_guard<std::mutex> guard(mLock);
    return machineTime() + distance();
}

/** With the lock held. */
int64_t Clock::distance() const {
    if (mSource == QELTV_SYNC_MANUAL) return mDistance;
    return mSource == QELTV_SYNC_BROADCAST ? mBroadcastDistance : 0;
}

void Clock::follow() {
    const auto all = mBroadcast.received();
    std::optional<int64_t> time;
    std::optional<stream::Time> table;
    for (const auto& signals : all) {
        if (!time) time = signals->time();
        if (!table) table = signals->timeTable();
    }
    std::optional<stream::LocalOffset> offset;
    if (table) {
        const std::string country = mConfig.text(kCountryItem);
        for (const stream::LocalOffset& each : table->offsets) {
            if (!offset && each.country == country) offset = each;
        }
    }
    const auto same = [](const std::optional<stream::LocalOffset>& a,
                         const std::optional<stream::LocalOffset>& b) {
        if (!a || !b) return !a && !b;
        return a->seconds == b->seconds && a->changeAt == b->changeAt &&
               a->nextSeconds == b->nextSeconds;
    };
    bool jumps = false, zoneJumps = false;
    {
        std::lock_guard<std::mutex> guard(mLock);
        mReceives = !all.empty();
        // A reception that has just begun goes on with the time of the one before.
        const int64_t ahead = time ? *time - machineTime() : all.empty() ? 0 : mBroadcastDistance;
        const int64_t before = distance();
        if (std::abs(ahead - mBroadcastDistance) >= kJump) mBroadcastDistance = ahead;
        jumps = distance() != before;
        if (!all.empty() && !table) offset = mOffset;
        zoneJumps = !same(offset, mOffset) && mSource == QELTV_SYNC_BROADCAST;
        mOffset = offset;
    }
    if (jumps) jumped();
    if (zoneJumps) zoneChanged();
}

std::optional<stream::LocalOffset> Clock::received(int64_t utc) const {
    const int64_t present = now();
    std::lock_guard<std::mutex> guard(mLock);
    if (mSource != QELTV_SYNC_BROADCAST || mManual) return std::nullopt;
    return std::abs(utc - present) < kOffsetsHold ? mOffset : std::nullopt;
}

std::optional<int64_t> Clock::broadcast() const {
    if (source() != QELTV_SYNC_BROADCAST) return std::nullopt;
    return now();
}

int32_t Clock::source() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mSource;
}

bool Clock::timeEditable() const {
    return source() == QELTV_SYNC_MANUAL;
}

bool Clock::zoneEditable() const {
    return source() != QELTV_SYNC_BROADCAST;
}

bool Clock::hasOffsetTable() const {
    if (source() != QELTV_SYNC_BROADCAST) return false;
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (mReceives) return mOffset.has_value();
    }
    return mConfig.text("channels.region").compare(0, 4, "atsc") != 0;
}

Code Clock::setSource(int32_t source) {
    if (source < QELTV_SYNC_MANUAL || source > QELTV_SYNC_NETWORK) return kBadValue;
    bool jumps = false, zoneJumps = false;
    const Code code = stored([&] {
        std::lock_guard<std::mutex> guard(mLock);
        if (source == mSource) return kOk;
        mSettings.set(kSourceSetting, int64_t{source});
        const int64_t before = distance();
        const bool broadcast = source == QELTV_SYNC_BROADCAST || mSource == QELTV_SYNC_BROADCAST;
        zoneJumps = (mManual && source == QELTV_SYNC_BROADCAST) || (mOffset && broadcast);
        mSource = source;
        jumps = distance() != before;
        return kOk;
    });
    if (code != kOk) return code;
    if (zoneJumps && source == QELTV_SYNC_BROADCAST) {
        std::lock_guard<std::mutex> guard(mLock);
        mManual.reset();
        (void)stored([&] {
            mSettings.set(kManualSetting, int64_t{0});
            return kOk;
        });
    }
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_sync_source_callback_fct,
                    QELTV_SYNC_SOURCE_CHANGED, {source});
    if (jumps) jumped();
    if (zoneJumps) zoneChanged();
    return kOk;
}

Code Clock::set(int64_t utc) {
    if (!inRange(utc)) return kBadValue;
    const Code code = stored([&] {
        std::lock_guard<std::mutex> guard(mLock);
        if (mSource != QELTV_SYNC_MANUAL) return kRefused;
        const int64_t distance = utc * 1000 - machineTime();
        mSettings.set(kDistanceSetting, distance);
        mDistance = distance;
        return kOk;
    });
    if (code == kOk) jumped();
    return code;
}

Code Clock::setLocal(const std::string& date, const std::string& time) {
    // The parser computes with digits that are missing, which is undefined.
    static const std::regex dateShape("[0-9]{1,4}-[0-9]{1,2}-[0-9]{1,2}");
    static const std::regex timeShape("[0-9]{1,2}:[0-9]{1,2}(:[0-9]{1,2})?");
    if (!std::regex_match(date, dateShape) || !std::regex_match(time, timeShape)) return kBadValue;
    std::istringstream text(date + "T" + (time.size() == 5 ? time + ":00" : time));
    date::local_seconds local;
    text >> date::parse("%FT%T", local);
    if (text.fail() || text.peek() != std::istringstream::traits_type::eof()) return kBadValue;
    const auto fields = record(date::sys_seconds(local.time_since_epoch()), 0);
    if (!fields) return kBadValue;
    const auto utc = localToUtc(*fields);
    return utc ? set(*utc) : kBadValue;
}

std::optional<Clock::Manual> Clock::manual() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mManual;
}

std::string Clock::place() const {
    return mConfig.text(kPlaceItem);
}

int64_t Clock::zone() const {
    if (const auto set = manual()) return set->zone;
    if (const auto offset = received(now())) {
        const TotalOffset total = offsetAt(*offset, now());
        return total.seconds - total.daylight;
    }
    const auto info = infoOf(place(), date::sys_seconds(seconds(now())));
    return (info.offset - info.save).count();
}

int64_t Clock::offset() const {
    if (const auto set = manual()) return set->offset;
    if (const auto offset = received(now())) return offsetAt(*offset, now()).daylight;
    const auto info = infoOf(place(), date::sys_seconds(seconds(now())));
    return seconds(info.save).count();
}

Code Clock::setManual(std::optional<int64_t> newZone, std::optional<int64_t> newOffset) {
    const Manual wanted{newZone.value_or(zone()), newOffset.value_or(offset())};
    const auto possible = [](int64_t value) {
        return value >= -QELTV_ZONE_MAXIMUM && value <= QELTV_ZONE_MAXIMUM;
    };
    if (!possible(wanted.zone) || !possible(wanted.offset)) return kBadValue;
    const Code code = stored([&] {
        std::lock_guard<std::mutex> guard(mLock);
        if (mSource == QELTV_SYNC_BROADCAST) return kRefused;
        mSettings.set(kZoneSetting, wanted.zone);
        mSettings.set(kOffsetSetting, wanted.offset);
        // Last: until here what was set before holds, should one of them fail.
        mSettings.set(kManualSetting, int64_t{1});
        mManual = wanted;
        return kOk;
    });
    if (code == kOk) zoneChanged();
    return code;
}

Code Clock::setZone(int64_t zone) {
    return setManual(zone, std::nullopt);
}

Code Clock::setOffset(int64_t offset) {
    return setManual(std::nullopt, offset);
}

std::optional<int64_t> Clock::nextChange() const {
    if (manual()) return std::nullopt;
    const auto offset = received(now());
    if (offset && offset->changeAt > now()) return offset->changeAt;
    const auto info = infoOf(place(), date::sys_seconds(seconds(now())));
    if (info.end > kLast) return std::nullopt;
    return info.end.time_since_epoch().count();
}

void Clock::jumped() const {
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_dt_callback_fct, QELTV_TIME_CHANGED,
                    {now()});
    callAll("following the clock", mListeners);
}

void Clock::zoneChanged() const {
    // The change has been stored; the place of the zone may not be readable now.
    guarded("the notification of the time zone", [this] {
        mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_dt_callback_fct,
                        QELTV_TIME_ZONE_CHANGED, {zone() + offset()});
    });
}

std::optional<QELTV_DTG_T> Clock::utcRecord(int64_t utc) const {
    if (!inRange(utc)) return std::nullopt;
    return record(date::sys_seconds(seconds(utc)), QELTV_DTG_UTC);
}

std::optional<QELTV_DTG_T> Clock::localRecord(int64_t utc) const {
    if (!inRange(utc)) return std::nullopt;
    const date::sys_seconds time{seconds(utc)};
    if (const auto set = manual()) {
        return record(time + seconds(set->zone + set->offset),
                      set->offset != 0 ? QELTV_DTG_DAYLIGHT : 0);
    }
    if (const auto offset = received(utc)) {
        const TotalOffset total = offsetAt(*offset, utc);
        return record(time + seconds(total.seconds), total.daylight != 0 ? QELTV_DTG_DAYLIGHT : 0);
    }
    const auto info = infoOf(place(), time);
    return record(time + info.offset, info.save != minutes(0) ? QELTV_DTG_DAYLIGHT : 0);
}

std::optional<int64_t> Clock::plainSeconds(const QELTV_DTG_T& dtg) {
    const date::year_month_day ymd = date::year{dtg.year} / dtg.month / dtg.day;
    if (dtg.year < 1 || dtg.year > 9999 || !ymd.ok() || dtg.hour > 23 || dtg.minute > 59 ||
        dtg.second > 59) {
        return std::nullopt;
    }
    const date::sys_seconds time =
            date::sys_days(ymd) + hours(dtg.hour) + minutes(dtg.minute) + seconds(dtg.second);
    return time.time_since_epoch().count();
}

std::optional<int64_t> Clock::utcSeconds(const QELTV_DTG_T& dtg) const {
    return (dtg.flags & QELTV_DTG_UTC) != 0 ? plainSeconds(dtg) : localToUtc(dtg);
}

std::optional<int64_t> Clock::localToUtc(const QELTV_DTG_T& dtg) const {
    const auto plain = plainSeconds(dtg);
    if (!plain) return std::nullopt;
    if (const auto set = manual()) return *plain - set->zone - set->offset;
    if (const auto offset = received(*plain)) {
        const int64_t before = *plain - offset->seconds;
        const int64_t after = *plain - offset->nextSeconds;
        if (offset->changeAt == 0 || after < offset->changeAt) return before;
        if (before >= offset->changeAt) return after;
        // An hour that there is twice: the flag selects one.
        const bool daylight = (dtg.flags & QELTV_DTG_DAYLIGHT) != 0;
        return daylight == (offset->seconds > offset->nextSeconds) ? before : after;
    }
    const auto info = infoOf(place(), date::local_seconds(seconds(*plain)));
    // The flag distinguishes the hours of a repeated one. A skipped hour counts as before the
    // change.
    const bool second = info.result == date::local_info::ambiguous &&
                        (info.second.save != minutes(0)) == ((dtg.flags & QELTV_DTG_DAYLIGHT) != 0);
    return *plain - (second ? info.second : info.first).offset.count();
}

std::optional<QELTV_DTG_T> Clock::normalised(const QELTV_DTG_T& dtg) {
    if (dtg.year < 1 || dtg.year > 9999 || dtg.month == 0) return std::nullopt;
    const date::year_month first = date::year{dtg.year} / 1 + date::months(dtg.month - 1);
    const date::sys_seconds time = date::sys_days(first / 1) + date::days(dtg.day - 1) +
                                   hours(dtg.hour) + minutes(dtg.minute) + seconds(dtg.second);
    return record(time, dtg.flags);
}

std::optional<uint32_t> Clock::modifiedJulian(const QELTV_DTG_T& dtg) {
    const auto plain = plainSeconds(dtg);
    if (!plain) return std::nullopt;
    const auto day = date::floor<date::days>(date::sys_seconds(seconds(*plain)));
    if (day < kJulianEpoch) return std::nullopt;
    return static_cast<uint32_t>((day - kJulianEpoch).count());
}

std::optional<QELTV_DTG_T> Clock::fromModifiedJulian(uint32_t day) {
    // Far beyond year 9999, and small enough to count with.
    if (day > 4000000) return std::nullopt;
    return record(kJulianEpoch + date::days(day), QELTV_DTG_UTC);
}

SleepTimer::SleepTimer(Timers& timers, Notifier& notifier)
        : mNotifier(notifier), mAlarm(timers, "the sleep timer", [this] { ring(); }) {}

void SleepTimer::addListener(std::function<void()> listener) {
    mListeners.push_back(std::move(listener));
}

Code SleepTimer::set(int32_t value) {
    if (value < 0 || value > QELTV_SLEEP_MAXIMUM) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    if (value == 0) {
        if (mValue != 0) notify(QELTV_SLEEP_CANCELLED, 0);
        mValue = 0;
        mAlarm.clear();
        return kOk;
    }
    mValue = value;
    mDue = Alarm::Clock::now() + seconds(value);
    mWarned = value <= QELTV_SLEEP_WARNING_TIME;
    mAlarm.set(mWarned ? mDue : mDue - seconds(QELTV_SLEEP_WARNING_TIME));
    notify(QELTV_SLEEP_SET, value);
    return kOk;
}

int32_t SleepTimer::value() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mValue;
}

int32_t SleepTimer::elapsed() const {
    std::lock_guard<std::mutex> guard(mLock);
    if (mValue == 0) return 0;
    const auto left = date::ceil<seconds>(mDue - Alarm::Clock::now()).count();
    return mValue - static_cast<int32_t>(std::max<int64_t>(left, 0));
}

int32_t SleepTimer::remaining() const {
    std::lock_guard<std::mutex> guard(mLock);
    if (mValue == 0) return 0;
    const auto left = date::ceil<seconds>(mDue - Alarm::Clock::now()).count();
    return static_cast<int32_t>(std::max<int64_t>(left, 0));
}

void SleepTimer::ring() {
    {
        std::lock_guard<std::mutex> guard(mLock);
        // It may have been set anew while this began.
        const auto now = Alarm::Clock::now();
        if (mValue == 0 || (mWarned && now < mDue)) return;
        if (!mWarned) {
            if (now < mDue - seconds(QELTV_SLEEP_WARNING_TIME)) return;
            mWarned = true;
            mAlarm.set(mDue);
            notify(QELTV_SLEEP_WARNING, QELTV_SLEEP_WARNING_TIME);
            return;
        }
        mValue = 0;
        notify(QELTV_SLEEP_EXPIRED, 0);
    }
    callAll("going to sleep", mListeners);
}

void SleepTimer::notify(int32_t type, int32_t value) const {
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_sleep_timer_callback_fct, type, {value});
}

}  // namespace qeltvd
