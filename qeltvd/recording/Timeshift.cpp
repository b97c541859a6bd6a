#define LOG_TAG "qeltvd"

#include "Timeshift.h"

#include <errno.h>
#include <fcntl.h>
#include <log/log.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "Files.h"
#include "LogText.h"
#include "Stored.h"

namespace qeltvd {

using namespace std::chrono_literals;

namespace {

/** How long a device is examined before it can be used. */
constexpr auto kExamination = 1s;
constexpr auto kProgressStep = 250ms;
/** Percent, as all speeds. */
constexpr int32_t kFastest = 6400;
constexpr int32_t kAsBroadcast = 100;
constexpr int32_t kPaused = 0;
/** Before the device is ready. */
constexpr int64_t kMostProgress = 99;
constexpr size_t kPathLimit = 1024;
/** Bytes of a block of stat(). */
constexpr int64_t kBlockSize = 512;
constexpr auto kLongestWait = 24h;

constexpr char kPathKey[] = "timeshift.path";
constexpr char kSizeKey[] = "timeshift.size";
constexpr char kAutoKey[] = "timeshift.auto_record";
constexpr char kPlayKey[] = "timeshift.play_before_full";

std::chrono::milliseconds ms(int64_t value) {
    return std::chrono::milliseconds(value);
}

/** Makes the buffer's file of a size; the error that keeps it from being there. */
int32_t makeBuffer(const std::string& directory, int64_t size) {
    const Descriptor disk = openDirectory(directory);
    struct statvfs info {};
    if (!disk || fstatvfs(disk.get(), &info) != 0) return QELTV_RECORDING_ERROR_DISK_GONE;
    const Descriptor file = makeFile(disk.get(), Timeshift::kBufferFile);
    if (!file) {
        ALOGE("%s/%s: %s", logText(directory).c_str(), Timeshift::kBufferFile, strerror(errno));
        return QELTV_RECORDING_ERROR_WRITE;
    }
    struct stat before {};
    fstat(file.get(), &before);
    const auto free = static_cast<int64_t>(info.f_bavail * info.f_frsize) +
                      int64_t{before.st_blocks} * kBlockSize;
    int32_t error = QELTV_RECORDING_ERROR_NONE;
    if (size > free) {
        error = QELTV_RECORDING_ERROR_DISK_FULL;
    } else if (ftruncate(file.get(), size) != 0) {
        error = errno == ENOSPC || errno == EFBIG ? QELTV_RECORDING_ERROR_DISK_FULL
                                                  : QELTV_RECORDING_ERROR_WRITE;
    }
    if (error != QELTV_RECORDING_ERROR_NONE) unlinkat(disk.get(), Timeshift::kBufferFile, 0);
    return error;
}

}  // namespace

Timeshift::Timeshift(Timers& timers, Settings& settings, Notifier& notifier)
        : mSettings(settings),
          mNotifier(notifier),
          mAutoRecord(settings.number(kAutoKey, 0) != 0),
          mPlayBeforeFull(settings.number(kPlayKey, 1) != 0),
          mAlarm(timers, "the timeshift", [this] { update(); }) {
    const std::string path = settings.text(kPathKey);
    if (!path.empty() && registerDevice(path, settings.number(kSizeKey, 0)) != kOk) {
        ALOGW("%s cannot be used for the timeshift", logText(path).c_str());
    }
}

Code Timeshift::registerDevice(const std::string& path, int64_t size) {
    std::lock_guard<std::mutex> guard(mLock);
    if (path.empty() || path[0] != '/' || path.size() > kPathLimit || size < kMinimumSize) {
        return kBadValue;
    }
    if (mStatus == QELTV_TIMESHIFT_RECORDS || mStatus == QELTV_TIMESHIFT_FULL) return kRefused;
    const int32_t error = makeBuffer(path, size);
    if (error == QELTV_RECORDING_ERROR_NONE) {
        const Code code = stored([&] {
            mSettings.set(kPathKey, path);
            mSettings.set(kSizeKey, size);
            return kOk;
        });
        if (code != kOk) return code;
        mPath = path;
        mSize = size;
    }
    mStatus = QELTV_TIMESHIFT_IDLE;
    mError = error;
    mDevice = error == QELTV_RECORDING_ERROR_NONE ? QELTV_DEVICE_REGISTERS : QELTV_DEVICE_FAILED;
    mRegistered = Clock::now();
    notify(QELTV_TIMESHIFT_DEVICE_EVENT, mDevice, 0);
    if (error == QELTV_RECORDING_ERROR_NONE) mAlarm.in(kProgressStep);
    return error == QELTV_RECORDING_ERROR_NONE        ? kOk
           : error == QELTV_RECORDING_ERROR_DISK_GONE ? kNotFound
                                                      : kStorage;
}

int32_t Timeshift::progress() const {
    std::lock_guard<std::mutex> guard(mLock);
    if (mDevice == QELTV_DEVICE_READY) return 100;
    if (mDevice != QELTV_DEVICE_REGISTERS) return 0;
    const auto percent =
            elapsed(mRegistered) * 100 /
            std::chrono::duration_cast<std::chrono::milliseconds>(kExamination).count();
    return static_cast<int32_t>(std::min(percent, kMostProgress));
}

int32_t Timeshift::deviceStatus() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mDevice;
}

int32_t Timeshift::errorId() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mError;
}

Code Timeshift::start() {
    std::lock_guard<std::mutex> guard(mLock);
    return startLocked();
}

Code Timeshift::startLocked() {
    if (mDevice != QELTV_DEVICE_READY || mStatus == QELTV_TIMESHIFT_RECORDS ||
        mStatus == QELTV_TIMESHIFT_FULL || mStandby) {
        return kRefused;
    }
    mStarted = Clock::now();
    mStatus = QELTV_TIMESHIFT_RECORDS;
    mError = QELTV_RECORDING_ERROR_NONE;
    view(0, kAsBroadcast);
    notify(QELTV_TIMESHIFT_STATUS_EVENT, mStatus, 0);
    mAlarm.in(ms(capacity()));
    return kOk;
}

Code Timeshift::stop(uint32_t how) {
    std::lock_guard<std::mutex> guard(mLock);
    if (how > QELTV_TIMESHIFT_STOP_KEEP) return kBadValue;
    if (mStatus == QELTV_TIMESHIFT_IDLE ||
        (mStatus == QELTV_TIMESHIFT_KEPT && how == QELTV_TIMESHIFT_STOP_KEEP)) {
        return kRefused;
    }
    stopLocked(how);
    return kOk;
}

void Timeshift::stopLocked(uint32_t how) {
    if (how == QELTV_TIMESHIFT_STOP_KEEP) {
        const int64_t position = viewed();
        mEnd = live();
        mStatus = QELTV_TIMESHIFT_KEPT;
        view(position, mSpeed);
    } else {
        mStatus = QELTV_TIMESHIFT_IDLE;
        view(0, kAsBroadcast);
    }
    notify(QELTV_TIMESHIFT_STATUS_EVENT, mStatus, 0);
    mAlarm.in(0ms);
}

void Timeshift::standBy(bool on) {
    std::lock_guard<std::mutex> guard(mLock);
    mStandby = on;
    if (on && mStatus != QELTV_TIMESHIFT_IDLE) stopLocked(QELTV_TIMESHIFT_STOP_DROP);
    if (!on) startByItself();
}

void Timeshift::startByItself() {
    if (!mAutoRecord || mStatus != QELTV_TIMESHIFT_IDLE) return;
    if (startLocked() != kOk) ALOGI("the timeshift does not start by itself: no device is ready");
}

Code Timeshift::play() {
    return trickplay(kAsBroadcast);
}

Code Timeshift::pause() {
    return trickplay(kPaused);
}

Code Timeshift::seek(uint32_t position) {
    std::lock_guard<std::mutex> guard(mLock);
    if (mStatus == QELTV_TIMESHIFT_IDLE) return kRefused;
    if (!mPlayBeforeFull && !full()) return kRefused;
    if (position < oldest() || position > live()) return kBadValue;
    view(position, mSpeed);
    notify(QELTV_TIMESHIFT_SPEED_EVENT, mSpeed, position);
    mAlarm.in(0ms);
    return kOk;
}

Code Timeshift::trickplay(uint32_t speed) {
    const auto percent = static_cast<int32_t>(speed);
    std::lock_guard<std::mutex> guard(mLock);
    if (percent < -kFastest || percent > kFastest) return kBadValue;
    if (mStatus == QELTV_TIMESHIFT_IDLE) return kRefused;
    // A pause is how the viewer comes to be behind at all.
    if (percent != kPaused && percent != kAsBroadcast && !mPlayBeforeFull && !full())
        return kRefused;
    if (percent == kAsBroadcast && mSpeed != kAsBroadcast && !mPlayBeforeFull && !full()) {
        return kRefused;
    }
    view(viewed(), percent);
    notify(QELTV_TIMESHIFT_SPEED_EVENT, percent, mViewed);
    mAlarm.in(0ms);
    return kOk;
}

int32_t Timeshift::status() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mStatus == QELTV_TIMESHIFT_RECORDS && full() ? QELTV_TIMESHIFT_FULL : mStatus;
}

int64_t Timeshift::duration() const {
    std::lock_guard<std::mutex> guard(mLock);
    return live() - oldest();
}

int64_t Timeshift::position() const {
    std::lock_guard<std::mutex> guard(mLock);
    return viewed() - oldest();
}

int64_t Timeshift::currentPosition() const {
    std::lock_guard<std::mutex> guard(mLock);
    return viewed();
}

int64_t Timeshift::startPosition() const {
    std::lock_guard<std::mutex> guard(mLock);
    return oldest();
}

Code Timeshift::setAutoRecord(bool on) {
    std::lock_guard<std::mutex> guard(mLock);
    const Code code = stored([&] {
        mSettings.set(kAutoKey, int64_t{on});
        return kOk;
    });
    if (code != kOk) return code;
    mAutoRecord = on;
    startByItself();
    return kOk;
}

Code Timeshift::setPlayBeforeFull(bool on) {
    std::lock_guard<std::mutex> guard(mLock);
    const Code code = stored([&] {
        mSettings.set(kPlayKey, int64_t{on});
        return kOk;
    });
    if (code == kOk) mPlayBeforeFull = on;
    return code;
}

int64_t Timeshift::elapsed(Clock::time_point since) const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - since).count();
}

int64_t Timeshift::capacity() const {
    return mSize / kRate * 1000;
}

int64_t Timeshift::live() const {
    switch (mStatus) {
        case QELTV_TIMESHIFT_RECORDS:
        case QELTV_TIMESHIFT_FULL:
            return elapsed(mStarted);
        case QELTV_TIMESHIFT_KEPT:
            return mEnd;
        default:
            return 0;
    }
}

int64_t Timeshift::oldest() const {
    return std::max<int64_t>(0, live() - capacity());
}

bool Timeshift::full() const {
    return mStatus != QELTV_TIMESHIFT_IDLE && live() >= capacity();
}

int64_t Timeshift::viewed() const {
    if (mStatus == QELTV_TIMESHIFT_IDLE) return 0;
    const int64_t position = mViewed + elapsed(mViewedAt) * mSpeed / 100;
    return std::clamp(position, oldest(), live());
}

void Timeshift::view(int64_t position, int32_t speed) {
    mViewed = position;
    mViewedAt = Clock::now();
    mSpeed = speed;
}

void Timeshift::update() {
    std::lock_guard<std::mutex> guard(mLock);
    if (mDevice == QELTV_DEVICE_REGISTERS) {
        if (Clock::now() - mRegistered < kExamination) {
            const int64_t percent = elapsed(mRegistered) / 10;
            notify(QELTV_TIMESHIFT_DEVICE_EVENT, mDevice, std::min(percent, kMostProgress));
            mAlarm.in(kProgressStep);
            return;
        }
        mDevice = QELTV_DEVICE_READY;
        notify(QELTV_TIMESHIFT_DEVICE_EVENT, mDevice, 100);
        startByItself();
        return;
    }
    if (mStatus == QELTV_TIMESHIFT_IDLE) return;
    if (mStatus == QELTV_TIMESHIFT_RECORDS && full()) {
        mStatus = QELTV_TIMESHIFT_FULL;
        notify(QELTV_TIMESHIFT_STATUS_EVENT, mStatus, 0);
    }
    const bool records = mStatus != QELTV_TIMESHIFT_KEPT;
    const int64_t newest = live();
    const int64_t first = oldest();
    const int64_t position = viewed();
    // What is in front moves as fast as the broadcast, and so does the end of a full buffer.
    const int32_t frontSpeed = records ? kAsBroadcast : kPaused;
    const int32_t backSpeed = mStatus == QELTV_TIMESHIFT_FULL ? kAsBroadcast : kPaused;
    if (mSpeed > frontSpeed && position >= newest) {
        view(newest, frontSpeed);
        notify(QELTV_TIMESHIFT_LIVE_EVENT, newest, 0);
    } else if (mSpeed < backSpeed && position <= first) {
        // Paused or rewinding, and now the oldest is here: playing goes on from it.
        view(first, frontSpeed);
        notify(QELTV_TIMESHIFT_BEGIN_EVENT, first, 0);
    }
    const auto soon = [](int64_t distance, int32_t speed) {
        return ms(std::max<int64_t>(1, distance * 100 / speed + 1));
    };
    std::chrono::milliseconds wait = kLongestWait;
    if (mSpeed > frontSpeed) wait = std::min(wait, soon(newest - viewed(), mSpeed - frontSpeed));
    if (mSpeed < backSpeed) wait = std::min(wait, soon(viewed() - oldest(), backSpeed - mSpeed));
    if (mStatus == QELTV_TIMESHIFT_RECORDS) wait = std::min(wait, ms(capacity() - newest + 1));
    mAlarm.in(wait);
}

void Timeshift::notify(int32_t type, int64_t first, int64_t second) {
    mNotifier.event(&Notifier::Callback::a_hidl_timeshift_jni_callback_fct, type, {first, second});
}

}  // namespace qeltvd
