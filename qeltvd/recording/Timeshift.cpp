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
#include <utility>
#include <vector>

#include "Files.h"
#include "Guarded.h"
#include "LogText.h"
#include "RecordingWriter.h"
#include "Stored.h"

namespace qeltvd {

using namespace std::chrono_literals;

namespace {

/** How long a device is examined before it can be used. */
constexpr auto kExamination = 1s;
constexpr auto kProgressStep = 250ms;
/** How often packets are written. */
constexpr auto kTurn = 100ms;
constexpr auto kLongestWait = 1h;
/** Percent, as all speeds. */
constexpr int32_t kFastest = 6400;
constexpr int32_t kAsBroadcast = 100;
constexpr int32_t kPaused = 0;
/** Before the device is ready. */
constexpr int64_t kMostProgress = 99;
/** How far a viewer whom the oldest has reached goes on from it. */
constexpr int64_t kMargin = 1000;
constexpr size_t kPathLimit = 1024;
/** Bytes of a block of stat(). */
constexpr int64_t kBlockSize = 512;
constexpr size_t kBlock = 1024 * stream::kPacketSize;

constexpr char kPathKey[] = "timeshift.path";
constexpr char kSizeKey[] = "timeshift.size";
constexpr char kAutoKey[] = "timeshift.auto_record";
constexpr char kPlayKey[] = "timeshift.play_before_full";

int64_t elapsed(std::chrono::steady_clock::time_point since) {
    using std::chrono::milliseconds;
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - since)
            .count();
}

int32_t errorOf(int failure) {
    const bool full = failure == ENOSPC || failure == EFBIG || failure == EDQUOT;
    return full ? QELTV_RECORDING_ERROR_DISK_FULL : QELTV_RECORDING_ERROR_WRITE;
}

/** The buffer's file, of its size and without content, or the error that keeps it from being. */
struct Buffer {
    Descriptor file;
    int32_t error = QELTV_RECORDING_ERROR_NONE;
};

Buffer openBuffer(const std::string& directory, int64_t size) {
    const Descriptor disk = openDirectory(directory);
    struct statvfs info {};
    if (!disk || fstatvfs(disk.get(), &info) != 0) {
        return {Descriptor(), QELTV_RECORDING_ERROR_DISK_GONE};
    }
    // The file that another run has left is used again, without its content.
    Buffer buffer{makeFile(disk.get(), Timeshift::kBufferFile)};
    if (!buffer.file) {
        ALOGE("%s/%s: %s", logText(directory).c_str(), Timeshift::kBufferFile, strerror(errno));
        buffer.error = QELTV_RECORDING_ERROR_WRITE;
        return buffer;
    }
    struct stat before {};
    fstat(buffer.file.get(), &before);
    const auto free = static_cast<int64_t>(info.f_bavail * info.f_frsize) +
                      int64_t{before.st_blocks} * kBlockSize;
    if (size > free) {
        buffer.error = QELTV_RECORDING_ERROR_DISK_FULL;
    } else if (ftruncate(buffer.file.get(), 0) != 0 ||
               ftruncate(buffer.file.get(), static_cast<off_t>(size)) != 0) {
        buffer.error = errorOf(errno);
    }
    if (buffer.error != QELTV_RECORDING_ERROR_NONE) {
        unlinkat(disk.get(), Timeshift::kBufferFile, 0);
    }
    return buffer;
}

void removeBuffer(const std::string& directory) {
    const Descriptor disk = openDirectory(directory);
    // Only a file that openBuffer() would take.
    if (!disk || sizeOfFile(disk.get(), Timeshift::kBufferFile) < 0) return;
    if (makeFile(disk.get(), Timeshift::kBufferFile))
        unlinkat(disk.get(), Timeshift::kBufferFile, 0);
}

Code codeOf(int32_t error) {
    return error == QELTV_RECORDING_ERROR_NONE        ? kOk
           : error == QELTV_RECORDING_ERROR_DISK_GONE ? kNotFound
                                                      : kStorage;
}

}  // namespace

Timeshift::Timeshift(Settings& settings, Notifier& notifier, ChannelLookup channels,
                     PacketSourceFactory packets)
        : mSettings(settings),
          mNotifier(notifier),
          mChannels(std::move(channels)),
          mPackets(std::move(packets)),
          mAutoRecord(settings.number(kAutoKey, 0) != 0),
          mPlayBeforeFull(settings.number(kPlayKey, 1) != 0) {
    const std::string path = settings.text(kPathKey);
    if (!path.empty() && registerDevice(path, settings.number(kSizeKey, 0)) != kOk) {
        ALOGW("%s cannot be used for the timeshift", logText(path).c_str());
    }
    mThread = std::thread([this] { run(); });
}

Timeshift::~Timeshift() {
    {
        Operation operation(mOperation);
        mEnds = true;
    }
    mWake.notify_one();
    mThread.join();
    if (mRing) mRing->clear();
}

// The thread

void Timeshift::run() {
    Operation operation(mOperation);
    while (!mEnds) {
        mChanged = false;
        guarded("the timeshift", [&] { turn(); });
        mWake.wait_for(operation, nextTurn(), [&] { return mEnds || mChanged; });
    }
}

void Timeshift::turn() {
    followRegistration();
    followChannel();
    record();
    Guard guard(mLock);
    follow();
}

Timeshift::Clock::duration Timeshift::nextTurn() const {
    Guard guard(mLock);
    if (mSource) return kTurn;
    if (mDevice == QELTV_DEVICE_REGISTERS) return kProgressStep;
    const bool moves = mStatus == QELTV_TIMESHIFT_KEPT && !mLive && mSpeed != kPaused;
    return moves ? Clock::duration(kTurn) : Clock::duration(kLongestWait);
}

void Timeshift::wakeUp() {
    mChanged = true;
    mWake.notify_one();
}

void Timeshift::followRegistration() {
    {
        Guard guard(mLock);
        if (mDevice != QELTV_DEVICE_REGISTERS) return;
        if (Clock::now() - mRegistered < kExamination) {
            const int64_t percent = elapsed(mRegistered) / 10;
            notify(QELTV_TIMESHIFT_DEVICE_EVENT, mDevice, std::min(percent, kMostProgress));
            return;
        }
        mDevice = QELTV_DEVICE_READY;
        notify(QELTV_TIMESHIFT_DEVICE_EVENT, mDevice, 100);
    }
    startByItself();
}

void Timeshift::followChannel() {
    if (!mSource || !mChannelChanged.exchange(false)) return;
    const RecordedChannel channel = watched();
    {
        Guard guard(mLock);
        if (channel.id == mChannel) return;
    }
    begin(channel);
}

void Timeshift::record() {
    if (!mSource) return;
    const PacketRing::Time arrived(elapsed(mStarted));
    int64_t left = RecordingWriter::wholePackets(mSource->arrived(arrived) - mRead);
    std::vector<uint8_t> block;
    while (left > 0) {
        block.resize(static_cast<size_t>(std::min<int64_t>(left, kBlock)));
        const size_t size = mSource->read(block.data(), block.size());
        if (size == 0) return;
        mRead += static_cast<int64_t>(size);
        left -= static_cast<int64_t>(size);
        const int failure = mRing->write(block.data(), size, arrived);
        if (failure == 0) continue;
        ALOGE("the timeshift's buffer cannot be written: %s", strerror(failure));
        {
            Guard guard(mLock);
            mError = errorOf(failure);
        }
        stopLocked(QELTV_TIMESHIFT_STOP_KEEP);
        return;
    }
}

RecordedChannel Timeshift::watched() const {
    return mChannels(0).value_or(RecordedChannel{});
}

void Timeshift::begin(const RecordedChannel& channel) {
    // The new source comes before the old one ends, so a multiplex of both is received on.
    auto source = mPackets({channel, kRate});
    mSource = std::move(source);
    mStarted = Clock::now();
    mRead = 0;
    mRing->clear();
    Guard guard(mLock);
    mChannel = channel.id;
    mStatus = QELTV_TIMESHIFT_RECORDS;
    mError = QELTV_RECORDING_ERROR_NONE;
    viewLive(kAsBroadcast);
    notify(QELTV_TIMESHIFT_STATUS_EVENT, mStatus, 0);
}

// The device

Code Timeshift::registerDevice(const std::string& path, int64_t size) {
    Operation operation(mOperation);
    if (path.empty() || path[0] != '/' || path.size() > kPathLimit || size < kMinimumSize) {
        return kBadValue;
    }
    if (mSource) return kRefused;
    const int32_t error = openBuffer(path, size).error;
    if (error == QELTV_RECORDING_ERROR_NONE) {
        const Code code = stored([&] {
            mSettings.set(kPathKey, path);
            mSettings.set(kSizeKey, size);
            return kOk;
        });
        if (code != kOk) return code;
        if (!mPath.empty() && mPath != path) removeBuffer(mPath);
    }
    Guard guard(mLock);
    if (error == QELTV_RECORDING_ERROR_NONE) {
        mPath = path;
        mSize = size;
    }
    mRing.reset();
    mStatus = QELTV_TIMESHIFT_IDLE;
    viewLive(kAsBroadcast);
    mError = error;
    mDevice = error == QELTV_RECORDING_ERROR_NONE ? QELTV_DEVICE_REGISTERS : QELTV_DEVICE_FAILED;
    mRegistered = Clock::now();
    notify(QELTV_TIMESHIFT_DEVICE_EVENT, mDevice, 0);
    wakeUp();
    return codeOf(error);
}

int32_t Timeshift::progress() const {
    Guard guard(mLock);
    if (mDevice == QELTV_DEVICE_READY) return 100;
    if (mDevice != QELTV_DEVICE_REGISTERS) return 0;
    const auto percent =
            elapsed(mRegistered) * 100 /
            std::chrono::duration_cast<std::chrono::milliseconds>(kExamination).count();
    return static_cast<int32_t>(std::min(percent, kMostProgress));
}

int32_t Timeshift::deviceStatus() const {
    Guard guard(mLock);
    return mDevice;
}

int32_t Timeshift::errorId() const {
    Guard guard(mLock);
    return mError;
}

// Starting and stopping

Code Timeshift::start() {
    Operation operation(mOperation);
    return startLocked();
}

Code Timeshift::startLocked() {
    std::string path;
    int64_t size = 0;
    {
        Guard guard(mLock);
        if (mDevice != QELTV_DEVICE_READY || records() || mStandby) return kRefused;
        path = mPath;
        size = mSize;
    }
    Buffer buffer = openBuffer(path, size);
    if (buffer.error != QELTV_RECORDING_ERROR_NONE) {
        Guard guard(mLock);
        mError = buffer.error;
        return codeOf(buffer.error);
    }
    {
        Guard guard(mLock);
        mRing = std::make_shared<PacketRing>(std::move(buffer.file), size);
    }
    mChannelChanged = false;
    begin(watched());
    wakeUp();
    return kOk;
}

Code Timeshift::stop(uint32_t how) {
    Operation operation(mOperation);
    if (how > QELTV_TIMESHIFT_STOP_KEEP) return kBadValue;
    {
        Guard guard(mLock);
        const bool kept = mStatus == QELTV_TIMESHIFT_KEPT;
        if (mStatus == QELTV_TIMESHIFT_IDLE || (kept && how == QELTV_TIMESHIFT_STOP_KEEP)) {
            return kRefused;
        }
    }
    if (how == QELTV_TIMESHIFT_STOP_KEEP) {
        record();
        // A failure has stopped it.
        if (!mSource) return kOk;
    }
    stopLocked(how);
    return kOk;
}

void Timeshift::stopLocked(uint32_t how) {
    mSource.reset();
    // Frees the blocks of the file.
    if (how == QELTV_TIMESHIFT_STOP_DROP) mRing->clear();
    Guard guard(mLock);
    if (how == QELTV_TIMESHIFT_STOP_KEEP) {
        mStatus = QELTV_TIMESHIFT_KEPT;
    } else {
        mStatus = QELTV_TIMESHIFT_IDLE;
        mRing.reset();
        viewLive(kAsBroadcast);
    }
    notify(QELTV_TIMESHIFT_STATUS_EVENT, mStatus, 0);
    wakeUp();
}

void Timeshift::standBy(bool on) {
    Operation operation(mOperation);
    bool runs = false;
    {
        Guard guard(mLock);
        mStandby = on;
        runs = mStatus != QELTV_TIMESHIFT_IDLE;
    }
    if (on && runs) stopLocked(QELTV_TIMESHIFT_STOP_DROP);
    if (!on) startByItself();
}

void Timeshift::startByItself() {
    {
        Guard guard(mLock);
        if (!mAutoRecord || mStatus != QELTV_TIMESHIFT_IDLE) return;
    }
    if (startLocked() != kOk) ALOGI("the timeshift does not start by itself: no device is ready");
}

Code Timeshift::setAutoRecord(bool on) {
    Operation operation(mOperation);
    const Code code = stored([&] {
        mSettings.set(kAutoKey, int64_t{on});
        return kOk;
    });
    if (code != kOk) return code;
    {
        Guard guard(mLock);
        mAutoRecord = on;
    }
    startByItself();
    return kOk;
}

Code Timeshift::setPlayBeforeFull(bool on) {
    Operation operation(mOperation);
    const Code code = stored([&] {
        mSettings.set(kPlayKey, int64_t{on});
        return kOk;
    });
    if (code != kOk) return code;
    Guard guard(mLock);
    mPlayBeforeFull = on;
    return kOk;
}

// The viewer

Code Timeshift::play() {
    return trickplay(kAsBroadcast);
}

Code Timeshift::pause() {
    return trickplay(kPaused);
}

Code Timeshift::seek(uint32_t position) {
    Operation operation(mOperation);
    Guard guard(mLock);
    if (mStatus == QELTV_TIMESHIFT_IDLE) return kRefused;
    if (!mPlayBeforeFull && !full()) return kRefused;
    if (position < oldest() || position > newest()) return kBadValue;
    if (position == newest() && records() && mSpeed >= kAsBroadcast) {
        viewLive(mSpeed);
    } else {
        ++mTurn;
        view(position, mSpeed);
    }
    notify(QELTV_TIMESHIFT_SPEED_EVENT, mSpeed, position);
    wakeUp();
    return kOk;
}

Code Timeshift::trickplay(uint32_t speed) {
    const auto percent = static_cast<int32_t>(speed);
    Operation operation(mOperation);
    Guard guard(mLock);
    if (percent < -kFastest || percent > kFastest) return kBadValue;
    if (mStatus == QELTV_TIMESHIFT_IDLE) return kRefused;
    // A pause is how the viewer comes to be behind at all.
    if (percent != kPaused && percent != kAsBroadcast && !mPlayBeforeFull && !full())
        return kRefused;
    if (percent == kAsBroadcast && mSpeed != kAsBroadcast && !mPlayBeforeFull && !full()) {
        return kRefused;
    }
    const int64_t position = viewed();
    if (mLive && percent >= kAsBroadcast && records()) {
        mSpeed = percent;
    } else {
        // Playing backward shows nothing; then what is played forward continues nothing.
        if (mLive || mSpeed < kPaused) ++mTurn;
        view(position, percent);
    }
    notify(QELTV_TIMESHIFT_SPEED_EVENT, percent, position);
    wakeUp();
    return kOk;
}

int32_t Timeshift::status() const {
    Guard guard(mLock);
    return mStatus == QELTV_TIMESHIFT_RECORDS && full() ? QELTV_TIMESHIFT_FULL : mStatus;
}

int64_t Timeshift::duration() const {
    Guard guard(mLock);
    return newest() - oldest();
}

int64_t Timeshift::position() const {
    Guard guard(mLock);
    return viewed() - oldest();
}

int64_t Timeshift::currentPosition() const {
    Guard guard(mLock);
    return viewed();
}

int64_t Timeshift::startPosition() const {
    Guard guard(mLock);
    return oldest();
}

bool Timeshift::records() const {
    return mStatus == QELTV_TIMESHIFT_RECORDS || mStatus == QELTV_TIMESHIFT_FULL;
}

bool Timeshift::full() const {
    return mRing && mRing->full();
}

int64_t Timeshift::newest() const {
    return mRing ? mRing->newest().count() : 0;
}

int64_t Timeshift::oldest() const {
    return mRing ? mRing->oldest().count() : 0;
}

int64_t Timeshift::viewed() const {
    if (mLive) return newest();
    const int64_t position = mViewed + elapsed(mViewedAt) * mSpeed / 100;
    const int64_t first = oldest();
    return std::clamp(position, first, std::max(first, newest()));
}

void Timeshift::view(int64_t position, int32_t speed) {
    mLive = false;
    mViewed = position;
    mViewedAt = Clock::now();
    mSpeed = speed;
}

void Timeshift::viewLive(int32_t speed) {
    if (!mLive) ++mTurn;
    mLive = true;
    mSpeed = speed;
}

void Timeshift::follow() {
    if (mStatus == QELTV_TIMESHIFT_IDLE) return;
    if (mStatus == QELTV_TIMESHIFT_RECORDS && full()) {
        mStatus = QELTV_TIMESHIFT_FULL;
        notify(QELTV_TIMESHIFT_STATUS_EVENT, mStatus, 0);
    }
    const int64_t last = newest();
    const int64_t first = oldest();
    const int64_t position = viewed();
    // What is in front moves as fast as the broadcast, and so does the end of a full buffer.
    const int32_t frontSpeed = records() ? kAsBroadcast : kPaused;
    const int32_t backSpeed = mStatus == QELTV_TIMESHIFT_FULL ? kAsBroadcast : kPaused;
    // What is held goes in steps.
    const int64_t margin = backSpeed != kPaused ? std::min(kMargin, (last - first) / 8) : 0;
    const bool reaches = mLive ? mSpeed > frontSpeed : mSpeed > kPaused && position >= last;
    if (reaches) {
        viewLive(frontSpeed);
        notify(QELTV_TIMESHIFT_LIVE_EVENT, last, 0);
    } else if (!mLive && position <= first && mSpeed < backSpeed) {
        // Paused or rewinding, and now the oldest is here: playing goes on from it.
        ++mTurn;
        view(first + margin, frontSpeed);
        notify(QELTV_TIMESHIFT_BEGIN_EVENT, first, 0);
    } else if (!mLive && position <= first && mSpeed == backSpeed && backSpeed != kPaused) {
        // The clock of the broadcast is a little faster.
        ++mTurn;
        view(first + margin, mSpeed);
    }
}

ShiftedPackets::Place Timeshift::placeOf(uint32_t channel) const {
    ShiftedPackets::Place place;
    place.turn = mTurn;
    if (mLive || !mRing || channel != mChannel) return place;
    place.ring = mRing;
    place.end = mRing->placeOf(PacketRing::Time(viewed()));
    return place;
}

std::unique_ptr<PacketSource> Timeshift::viewerPackets(uint32_t channel,
                                                       std::unique_ptr<PacketSource> live) const {
    return std::make_unique<ShiftedPackets>(std::move(live), [this, channel] {
        Guard guard(mLock);
        return placeOf(channel);
    });
}

bool Timeshift::behind(uint32_t channel) const {
    Guard guard(mLock);
    return placeOf(channel).ring != nullptr;
}

void Timeshift::notify(int32_t type, int64_t first, int64_t second) {
    mNotifier.event(&Notifier::Callback::a_hidl_timeshift_jni_callback_fct, type, {first, second});
}

}  // namespace qeltvd
