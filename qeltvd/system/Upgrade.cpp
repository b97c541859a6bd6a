#define LOG_TAG "qeltvd"

#include "Upgrade.h"

#include <log/log.h>

#include "Code.h"
#include "Stored.h"

namespace qeltvd {

using std::chrono::milliseconds;

namespace {

constexpr milliseconds kCheckTime(60), kStepTime(25), kRebootTime(150);
constexpr int32_t kStep = 5;

struct Package {
    const char* kind;
    uint32_t sizeKib;
    const char* factory;
    const char* version;
    const char* date;
    const char* name;
    const char* checksum;
    bool mandatory;
};

/** What the server of the maker has. */
constexpr Package kPackages[QELTV_UPGRADE_ITEMS] = {
        {"MAIN", 196608, "1.0.0", "1.1.0", "2026-09-01", "Television firmware",
         "5f3c1a90b7e24d68a1c0935e7f2bd846", false},
        {"BOOT", 1024, "2.3", "2.3", "2025-02-14", "Boot loader",
         "0d9a6b3e81f74c52be60a7d4193c85f2", true},
};

/** What the broadcast carries. */
constexpr char kOadVersion[] = "1.2.0";
constexpr uint32_t kOadSizeKib = 204800;
constexpr char kOadDescription[] = "Faster programme guide, better reception on UHF";
/** Local time. */
constexpr uint8_t kOadHour = 3;

std::string setting(uint32_t item, const char* what) {
    return "upgrade." + std::to_string(item) + "." + what;
}

/** Compares the numbers between the points. */
bool isNewer(const std::string& version, const std::string& than) {
    size_t a = 0, b = 0;
    while (a < version.size() || b < than.size()) {
        unsigned long left = 0, right = 0;
        for (; a < version.size() && version[a] != '.'; ++a) {
            left = left * 10 + static_cast<unsigned long>(version[a] - '0');
        }
        for (; b < than.size() && than[b] != '.'; ++b) {
            right = right * 10 + static_cast<unsigned long>(than[b] - '0');
        }
        if (left != right) return left > right;
        ++a;
        ++b;
    }
    return false;
}

bool runs(QELTV_UPGRADE_STATE state) {
    return state == QELTV_UPGRADE_CHECKING || state == QELTV_UPGRADE_DOWNLOADING ||
           state == QELTV_UPGRADE_INSTALLING || state == QELTV_UPGRADE_REBOOTING;
}

}  // namespace

Upgrade::Upgrade(Store& store, Timers& timers, Notifier& notifier)
        : mStore(store),
          mSettings(store),
          mNotifier(notifier),
          mAlarm(timers, "the upgrade", [this] { step(); }) {}

Upgrade::Kept Upgrade::kept(uint32_t item) const {
    return static_cast<Kept>(mSettings.number(setting(item, "kept"), kNothing));
}

void Upgrade::keep(uint32_t item, Kept kept) {
    mSettings.set(setting(item, "kept"), int64_t{kept});
}

std::string Upgrade::installed(uint32_t item) const {
    if (item >= QELTV_UPGRADE_ITEMS) return "";
    const std::string version = mSettings.text(setting(item, "version"));
    return version.empty() ? kPackages[item].factory : version;
}

bool Upgrade::newer(uint32_t item) const {
    return isNewer(kPackages[item].version, installed(item));
}

Result<Upgrade::Item> Upgrade::item(uint32_t item) const {
    if (item >= QELTV_UPGRADE_ITEMS) return kNotFound;
    std::lock_guard<std::recursive_mutex> guard(mLock);
    const Package& package = kPackages[item];
    QELTV_UPGRADE_STATE state = mLast[item];
    if (item == mItem && runs(mState)) {
        state = mState;
    } else if (kept(item) == kDownloaded) {
        state = QELTV_UPGRADE_DOWNLOADED;
    } else if (kept(item) == kInstalled) {
        state = QELTV_UPGRADE_INSTALLED;
    }
    return Item{package.kind,     "EU",         package.sizeKib,
                package.version,  package.date, package.name,
                package.checksum, state,        package.mandatory};
}

Result<int32_t> Upgrade::result(uint32_t item) const {
    if (item >= QELTV_UPGRADE_ITEMS) return kNotFound;
    return static_cast<int32_t>(
            mSettings.number(setting(item, "result"), QELTV_UPGRADE_RESULT_NONE));
}

Code Upgrade::begin(uint32_t item, QELTV_UPGRADE_STATE state) {
    if (runs(mState)) return kRefused;
    mItem = item;
    mThrough = mReboot = false;
    enter(state);
    return kOk;
}

Code Upgrade::check(uint32_t item) {
    if (item >= QELTV_UPGRADE_ITEMS) return kNotFound;
    std::lock_guard<std::recursive_mutex> guard(mLock);
    return begin(item, QELTV_UPGRADE_CHECKING);
}

Code Upgrade::download(uint32_t item, const std::string& source, const std::string& target) {
    if (item >= QELTV_UPGRADE_ITEMS) return kNotFound;
    if (source.find("://") == std::string::npos || target.empty()) return kBadValue;
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (!newer(item)) return kRefused;
    return begin(item, QELTV_UPGRADE_DOWNLOADING);
}

Code Upgrade::cancel(uint32_t item) {
    if (item >= QELTV_UPGRADE_ITEMS) return kNotFound;
    return stored([&] {
        std::lock_guard<std::recursive_mutex> guard(mLock);
        if (mItem != item || mState != QELTV_UPGRADE_DOWNLOADING) return kRefused;
        mSettings.set(setting(item, "result"), int64_t{QELTV_UPGRADE_RESULT_CANCELLED});
        mAlarm.clear();
        finish(QELTV_UPGRADE_CANCELLED, mPercent);
        return kOk;
    });
}

Code Upgrade::trigger(uint32_t item) {
    if (item >= QELTV_UPGRADE_ITEMS) return kNotFound;
    std::lock_guard<std::recursive_mutex> guard(mLock);
    return kept(item) == kDownloaded ? begin(item, QELTV_UPGRADE_INSTALLING) : kRefused;
}

Code Upgrade::reboot(uint32_t item) {
    if (item >= QELTV_UPGRADE_ITEMS) return kNotFound;
    std::lock_guard<std::recursive_mutex> guard(mLock);
    return kept(item) == kInstalled ? begin(item, QELTV_UPGRADE_REBOOTING) : kRefused;
}

Code Upgrade::start(uint32_t item, bool reboot) {
    if (item >= QELTV_UPGRADE_ITEMS) return kNotFound;
    std::lock_guard<std::recursive_mutex> guard(mLock);
    const Code code = begin(item, QELTV_UPGRADE_CHECKING);
    if (code != kOk) return code;
    mThrough = true;
    mReboot = reboot;
    return kOk;
}

Code Upgrade::set(uint32_t a, uint32_t first, uint32_t b, uint32_t second) {
    for (const auto& [number, value] : {std::pair(a, first), std::pair(b, second)}) {
        if (number < QELTV_UPGRADE_SETTING_AUTO_CHECK || number > QELTV_UPGRADE_SETTING_BRANCH)
            return kNotFound;
        if (value > 1) return kBadValue;
    }
    return stored([&] {
        std::lock_guard<std::recursive_mutex> guard(mLock);
        // Both in one value: neither without the other.
        int64_t all = mSettings.number("upgrade.settings", 0);
        for (const auto& [number, value] : {std::pair(a, first), std::pair(b, second)}) {
            all = (all & ~(int64_t{1} << number)) | int64_t{value} << number;
        }
        mSettings.set("upgrade.settings", all);
        return kOk;
    });
}

void Upgrade::installedElsewhere(uint32_t item, const std::string& version,
                                 const std::function<void()>& store) {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    Store::Transaction transaction(mStore);
    mSettings.set(setting(item, "version"), version);
    if (!newer(item)) keep(item, kNothing);
    store();
    transaction.commit();
}

void Upgrade::enter(QELTV_UPGRADE_STATE state) {
    mState = state;
    mPercent = 0;
    notify(state, 0);
    mAlarm.in(state == QELTV_UPGRADE_CHECKING    ? kCheckTime
              : state == QELTV_UPGRADE_REBOOTING ? kRebootTime
                                                 : kStepTime);
}

void Upgrade::finish(QELTV_UPGRADE_STATE state, int32_t value) {
    mState = state;
    mLast[mItem] = state;
    notify(state, value);
}

void Upgrade::step() {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (!runs(mState)) return;
    try {
        advance();
    } catch (const StoreError& e) {
        ALOGE("%s", e.what());
        finish(QELTV_UPGRADE_FAILED, kStorage);
    }
}

/** One step further; a step that cannot be stored ends it. */
void Upgrade::advance() {
    switch (mState) {
        case QELTV_UPGRADE_CHECKING:
            if (!newer(mItem)) {
                finish(QELTV_UPGRADE_UP_TO_DATE, 0);
                return;
            }
            finish(QELTV_UPGRADE_AVAILABLE, 0);
            if (mThrough) enter(QELTV_UPGRADE_DOWNLOADING);
            return;
        case QELTV_UPGRADE_DOWNLOADING:
        case QELTV_UPGRADE_INSTALLING: {
            mPercent += kStep;
            if (mPercent < 100) {
                notify(mState, mPercent);
                mAlarm.in(kStepTime);
                return;
            }
            const bool downloading = mState == QELTV_UPGRADE_DOWNLOADING;
            keep(mItem, downloading ? kDownloaded : kInstalled);
            finish(downloading ? QELTV_UPGRADE_DOWNLOADED : QELTV_UPGRADE_INSTALLED, 100);
            if (mThrough && downloading) {
                enter(QELTV_UPGRADE_INSTALLING);
            } else if (mReboot && !downloading) {
                enter(QELTV_UPGRADE_REBOOTING);
            }
            return;
        }
        case QELTV_UPGRADE_REBOOTING: {
            Store::Transaction transaction(mStore);
            mSettings.set(setting(mItem, "result"), int64_t{QELTV_UPGRADE_RESULT_SUCCESS});
            mSettings.set(setting(mItem, "version"), std::string(kPackages[mItem].version));
            keep(mItem, kNothing);
            transaction.commit();
            finish(QELTV_UPGRADE_DONE, 100);
            return;
        }
        default:
            return;
    }
}

void Upgrade::notify(int32_t type, int32_t value) const {
    mNotifier.notify(&Notifier::Callback::a_hidl_qeltvapi_upgrade_callback_fct, type,
                     static_cast<int32_t>(mItem), value, uint64_t{0});
}

OverAirDownload::OverAirDownload(Store& store, Timers& timers, Notifier& notifier,
                                 const Clock& clock, const ChannelDatabase& channels,
                                 Upgrade& upgrade, std::function<Code(uint32_t)> goTo)
        : mSettings(store),
          mNotifier(notifier),
          mClock(clock),
          mChannels(channels),
          mGoTo(std::move(goTo)),
          mUpgrade(upgrade),
          mState(static_cast<QELTV_OAD_STATE>(mSettings.number("oad.kept", QELTV_OAD_IDLE))),
          mAutomatic(mSettings.number("oad.automatic", 0) != 0),
          mAlarm(timers, "the over-air download", [this] { step(); }) {}

int64_t OverAirDownload::nextTime() const {
    const int64_t now = mClock.now();
    constexpr int64_t kDay = 86400;
    for (const int64_t when : {now, now + kDay, now + 2 * kDay}) {
        auto local = mClock.localRecord(when);
        if (!local) break;
        local->hour = kOadHour;
        local->minute = local->second = 0;
        const auto time = mClock.localToUtc(*local);
        if (time && *time > now) return *time;
    }
    return now + kDay;
}

std::optional<uint32_t> OverAirDownload::carrier() const {
    for (const uint16_t list : mChannels.lists()) {
        if (const auto first = mChannels.byIndex(list, ChannelQuery::zapping(), 0)) {
            return first->channelId;
        }
    }
    return std::nullopt;
}

bool OverAirDownload::isNew() const {
    const std::string last = mSettings.text("oad.version");
    return last != kOadVersion &&
           isNewer(kOadVersion, mUpgrade.installed(QELTV_UPGRADE_ITEM_FIRMWARE));
}

/** Local date and time, channel, version. */
std::string OverAirDownload::schedule() const {
    const auto channel = carrier();
    const auto local = mClock.localRecord(nextTime());
    if (!channel || !local) return "";
    char text[64];
    snprintf(text, sizeof(text), "%04u-%02u-%02u %02u:%02u, channel %u, version %s", local->year,
             local->month, local->day, local->hour, local->minute, *channel, kOadVersion);
    return text;
}

Result<std::string> OverAirDownload::text(uint32_t which) const {
    switch (which) {
        case QELTV_OAD_TEXT_VERSION:
            return std::string(kOadVersion);
        case QELTV_OAD_TEXT_SIZE:
            return std::to_string(kOadSizeKib);
        case QELTV_OAD_TEXT_DESCRIPTION:
            return std::string(kOadDescription);
        case QELTV_OAD_TEXT_PACKAGE:
            return mSettings.text("oad.package");
        default:
            return kNotFound;
    }
}

void OverAirDownload::enter(QELTV_OAD_STATE state, milliseconds next) {
    mState = state;
    mPercent = 0;
    notify(state);
    mAlarm.in(next);
}

void OverAirDownload::rest(QELTV_OAD_STATE state) {
    mAlarm.clear();
    mState = state;
    notify(state);
}

Code OverAirDownload::jump() {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (mState != QELTV_OAD_IDLE && mState != QELTV_OAD_FOUND && mState != QELTV_OAD_SCHEDULED)
        return kRefused;
    const auto channel = carrier();
    if (!channel) return kNotFound;
    const Code code = stored([&] { return mGoTo(*channel); });
    if (code == kOk) enter(QELTV_OAD_DETECTING, kCheckTime * 2);
    return code;
}

Code OverAirDownload::stopDetection() {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (mState != QELTV_OAD_DETECTING) return kRefused;
    rest(QELTV_OAD_STOPPED);
    mState = QELTV_OAD_IDLE;
    return kOk;
}

Code OverAirDownload::start() {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (mState != QELTV_OAD_FOUND && mState != QELTV_OAD_SCHEDULED) return kRefused;
    enter(QELTV_OAD_DOWNLOADING, kStepTime);
    return kOk;
}

Code OverAirDownload::stop() {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (mState != QELTV_OAD_DOWNLOADING) return kRefused;
    rest(QELTV_OAD_STOPPED);
    mState = QELTV_OAD_FOUND;
    return kOk;
}

Code OverAirDownload::flash() {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (mState != QELTV_OAD_DOWNLOADED) return kRefused;
    enter(QELTV_OAD_FLASHING, kStepTime);
    return kOk;
}

Code OverAirDownload::restart() {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (mState != QELTV_OAD_FLASHED) return kRefused;
    enter(QELTV_OAD_RESTARTING, kRebootTime);
    return kOk;
}

Code OverAirDownload::remind() {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (mState != QELTV_OAD_FOUND && mState != QELTV_OAD_DOWNLOADED && mState != QELTV_OAD_FLASHED)
        return kRefused;
    mReminds = true;
    mAlarm.in(std::chrono::seconds(QELTV_OAD_REMINDER_SECONDS));
    return kOk;
}

Code OverAirDownload::acceptSchedule() {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (mState != QELTV_OAD_IDLE && mState != QELTV_OAD_FOUND) return kRefused;
    if (!isNew()) return kNotFound;
    const int64_t wait = nextTime() - mClock.now();
    enter(QELTV_OAD_SCHEDULED, std::chrono::seconds(wait));
    return kOk;
}

Code OverAirDownload::setAutomatic(bool on) {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    return stored([&] {
        mSettings.set("oad.automatic", int64_t{on});
        mAutomatic = on;
        return kOk;
    });
}

Code OverAirDownload::setPackage(const std::string& path) {
    if (path.empty() || path[0] != '/' || path.size() > 4096 ||
        path.find('\0') != std::string::npos) {
        return kBadValue;
    }
    return stored([&] {
        mSettings.set("oad.package", path);
        return kOk;
    });
}

Code OverAirDownload::clearVersion() {
    return stored([&] {
        mSettings.remove("oad.version");
        return kOk;
    });
}

int32_t OverAirDownload::powerOnStatus() const {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (mUpdated) return QELTV_OAD_POWER_ON_UPDATED;
    return mState == QELTV_OAD_DOWNLOADED || mState == QELTV_OAD_FLASHED
                   ? QELTV_OAD_POWER_ON_PENDING
                   : QELTV_OAD_POWER_ON_NORMAL;
}

void OverAirDownload::step() {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    const QELTV_OAD_STATE begun = mState;
    try {
        advance();
    } catch (const StoreError& e) {
        ALOGE("%s", e.what());
        rest(QELTV_OAD_STOPPED);
        // The step can be taken again from where it began.
        mState = begun == QELTV_OAD_DOWNLOADING  ? QELTV_OAD_FOUND
                 : begun == QELTV_OAD_FLASHING   ? QELTV_OAD_DOWNLOADED
                 : begun == QELTV_OAD_RESTARTING ? QELTV_OAD_FLASHED
                                                 : QELTV_OAD_IDLE;
    }
}

/** One step further; nothing has changed when it cannot be stored. */
void OverAirDownload::advance() {
    switch (mState) {
        case QELTV_OAD_DETECTING:
            if (!isNew()) {
                rest(QELTV_OAD_NOTHING_NEW);
                mState = QELTV_OAD_IDLE;
                return;
            }
            rest(QELTV_OAD_FOUND);
            if (mAutomatic) enter(QELTV_OAD_DOWNLOADING, kStepTime);
            return;
        case QELTV_OAD_SCHEDULED:
            enter(QELTV_OAD_DOWNLOADING, kStepTime);
            return;
        case QELTV_OAD_DOWNLOADING:
        case QELTV_OAD_FLASHING: {
            mPercent += kStep;
            if (mPercent < 100) {
                notify(mState);
                mAlarm.in(kStepTime);
                return;
            }
            const auto next =
                    mState == QELTV_OAD_DOWNLOADING ? QELTV_OAD_DOWNLOADED : QELTV_OAD_FLASHED;
            mSettings.set("oad.kept", int64_t{next});
            rest(next);
            return;
        }
        case QELTV_OAD_RESTARTING:
            mUpgrade.installedElsewhere(QELTV_UPGRADE_ITEM_FIRMWARE, kOadVersion, [this] {
                mSettings.set("oad.version", std::string(kOadVersion));
                mSettings.set("oad.kept", int64_t{QELTV_OAD_IDLE});
            });
            mUpdated = true;
            rest(QELTV_OAD_IDLE);
            return;
        default:
            if (mReminds) notify(QELTV_OAD_REMINDER);
            mReminds = false;
            return;
    }
}

void OverAirDownload::notify(int32_t type) const {
    mNotifier.notify(&Notifier::Callback::a_hidl_qeltvapi_oad_callback_fct, type, uint64_t{0},
                     android::hardware::hidl_string(kOadVersion), mPercent, mAutomatic,
                     int32_t{mState});
}

}  // namespace qeltvd
