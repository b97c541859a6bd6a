#define LOG_TAG "qeltvd"

#include "Recorder.h"

#include <errno.h>
#include <fcntl.h>
#include <log/log.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <limits>
#include <utility>

#include "Guarded.h"
#include "LogText.h"
#include "PacketLength.h"
#include "RecordingWriter.h"
#include "Stored.h"
#include "Text.h"

namespace qeltvd {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

namespace {

constexpr auto kTurn = 200ms;
constexpr auto kRetry = 5s;
constexpr auto kLongestWait = 1h;
constexpr int64_t kKib = 1024;
constexpr int64_t kDefaultLimit = int64_t{2} << 30;
constexpr uint32_t kDefaultRate = 1 << 20;
constexpr size_t kDiskPathLimit = 200;
constexpr size_t kProgrammeLimit = 120;

bool exists(int directory, const std::string& name) {
    struct stat info {};
    return fstatat(directory, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
}

/** A name for a recording that has none: local time and channel, unlike those that are there. */
std::string freeName(int directory, const QELTV_DTG_T& local, const std::string& channel) {
    char stamp[64];
    snprintf(stamp, sizeof(stamp), "%04u%02u%02u-%02u%02u%02u-", local.year, local.month, local.day,
             local.hour, local.minute, local.second);
    std::string base = stamp;
    for (const char c : channel) base += isalnum(static_cast<unsigned char>(c)) ? c : '_';
    std::string name = base + ".ts";
    for (int i = 2; exists(directory, name); ++i) name = base + "-" + std::to_string(i) + ".ts";
    return name;
}

}  // namespace

struct Recorder::Recording {
    uint32_t handle = 0;
    RecordedChannel channel;
    uint32_t disk = Disks::kOwn;
    /** Bytes per second; 0 for the disk's. */
    uint32_t rate = 0;
    int32_t mode = QELTV_RECORDING_MODE_ENDLESS;
    int64_t modeValue = 0;
    std::string name;
    RecordingStore::Labels labels;
    /** Number of the booking that started it; 0 for none. */
    uint32_t booking = 0;

    int32_t status = QELTV_RECORDING_OPENED;
    int32_t error = QELTV_RECORDING_ERROR_NONE;
    uint32_t reason = 0;
    /** Id in the store; 0 until it has started. */
    int64_t item = 0;
    /** From the start on. */
    std::unique_ptr<RecordingWriter> writer;
    /** Bytes that have reached the disk. */
    int64_t synced = 0;
    int64_t seconds = 0;

    bool runs() const { return status == QELTV_RECORDING_RUNS; }
    /** Ended, which is not stored yet. */
    bool stopping() const { return status == QELTV_RECORDING_STOPPING; }

    RecordingWriter::Limit limit() const {
        RecordingWriter::Limit limit;
        if (mode == QELTV_RECORDING_MODE_SECONDS) limit.time = std::chrono::seconds(modeValue);
        if (mode == QELTV_RECORDING_MODE_KIB) limit.bytes = modeValue * kKib;
        return limit;
    }
    /** The length of what has been written. */
    int64_t secondsAt(std::chrono::milliseconds elapsed) const {
        const auto length = writer->length().value_or(elapsed);
        return std::chrono::duration_cast<std::chrono::seconds>(length).count();
    }
    bool complete(std::chrono::milliseconds elapsed) const {
        const RecordingWriter::Limit end = limit();
        return elapsed >= end.time || end.bytes - writer->written() < RecordingWriter::kPacketSize;
    }
};

Recorder::Recorder(Store& store, Settings& settings, Notifier& notifier,
                   const std::string& directory, ChannelLookup channels, const Clock& clock,
                   PacketSourceFactory packets)
        : mStore(store),
          mDisks(settings, std::filesystem::absolute(directory).string()),
          mNotifier(notifier),
          mChannels(std::move(channels)),
          mClock(clock),
          mPackets(std::move(packets)) {
    claimDirectory(directory);
    // The place of the television's own disk depends on where the state is.
    mStore.moveDisk({Disks::kOwn, mDisks.ownPath(), kDefaultLimit, kDefaultRate});
    for (const auto& disk : mStore.disks()) {
        mDisks.put({disk.number, disk.path, disk.limit, disk.rate, false});
    }
    const Code code = stored([this] {
        for (Disk disk : mDisks.all()) {
            disk.present = static_cast<bool>(mDisks.open(disk.path));
            mDisks.put(disk);
        }
        recover();
        mStore.stopBookings();
        return kOk;
    });
    if (code != kOk) ALOGW("unfinished recordings are finished at a later start");
    mThread = std::thread([this] { run(); });
}

Recorder::~Recorder() {
    {
        Operation operation(mOperation);
        mEnds = true;
    }
    mWake.notify_one();
    mThread.join();
    for (const auto& [handle, recording] : mOpen) {
        if (recording->runs()) finish(*recording, QELTV_STOP_STANDBY, QELTV_RECORDING_ERROR_NONE);
    }
}

void Recorder::recover() {
    for (const auto& cut : mStore.unfinished()) {
        const bool open = std::any_of(mOpen.begin(), mOpen.end(), [&](const auto& each) {
            return each.second->item == cut.id;
        });
        if (!open) recoverRecording(cut);
    }
    for (const Disk& disk : mDisks.all()) {
        for (const RecordingPlace& place : mDisks.setAside(disk)) {
            if (mStore.has(disk.path + "/" + place.name())) {
                place.bringBack();
            } else {
                place.removeAside();
            }
        }
    }
}

void Recorder::recoverRecording(const RecordingStore::Unfinished& cut) {
    const auto place = mDisks.placeOf(cut.path);
    if (!place) {
        ALOGW("%s was cut off and waits for its disk", logText(cut.path).c_str());
        return;
    }
    const int64_t size = place->size();
    const int64_t whole = RecordingWriter::wholePackets(std::max<int64_t>(0, size));
    if (size > whole) place->cut(whole);
    if (whole == 0) {
        if (size >= 0) place->remove();
        mStore.remove(cut.id);
        return;
    }
    ALOGI("%s was cut off", logText(cut.path).c_str());
    int64_t seconds = whole / std::max<int64_t>(1, cut.rate);
    if (const Descriptor file = place->open()) {
        const auto length = packetLength(file.get(), whole);
        if (length) seconds = std::chrono::duration_cast<std::chrono::seconds>(*length).count();
    }
    mStore.end(cut.id, {QELTV_STOP_POWER_LOST, whole, seconds});
}

void Recorder::run() {
    Operation operation(mOperation);
    while (!mEnds) {
        mChanged = false;
        auto wake = SteadyClock::now() + kTurn;
        const bool written = guarded("writing the recordings", [&] { writeDue(); });
        const bool started = guarded("starting the bookings", [&] { startBookings(); });
        if (written && started) wake = nextWake();
        mWake.wait_until(operation, wake, [&] { return mEnds || mChanged; });
    }
}

SteadyClock::time_point Recorder::nextWake() const {
    auto wake = SteadyClock::now() + kLongestWait;
    for (const auto& [handle, recording] : mOpen) {
        if (recording->runs()) wake = std::min(wake, SteadyClock::now() + kTurn);
        if (recording->stopping()) wake = std::min(wake, mRetry);
    }
    // The clock is read outside of the store: it may wait for it itself.
    const int64_t now = mClock.now();
    try {
        if (const auto start = Schedule(mStore.bookings()).nextStart()) {
            constexpr int64_t kLongest = std::chrono::seconds(kLongestWait).count();
            // A booking that is due but could not be examined is examined again a little later.
            const std::chrono::seconds left(std::min(*start - now, kLongest));
            wake = std::min(wake,
                            SteadyClock::now() + std::max<SteadyClock::duration>(left, kTurn));
        }
    } catch (const StoreError& e) {
        ALOGE("%s", logText(e.what()).c_str());
        wake = std::min(wake, SteadyClock::now() + kRetry);
    }
    return wake;
}

void Recorder::wakeUp() {
    mChanged = true;
    mWake.notify_one();
}

void Recorder::clockChanged() {
    Operation operation(mOperation);
    wakeUp();
}

void Recorder::writeDue() {
    for (const auto& [handle, recording] : Handles(mOpen)) {
        if (recording->stopping() && SteadyClock::now() >= mRetry) store(*recording);
        if (recording->runs()) writeDue(*recording);
    }
}

void Recorder::writeDue(Recording& r) {
    const auto disk = mDisks.find(r.disk);
    if (!disk || !disk->present) {
        finish(r, QELTV_STOP_DISK, QELTV_RECORDING_ERROR_DISK_GONE);
        return;
    }
    const auto elapsed = r.writer->elapsed();
    const int64_t wanted = r.writer->waiting(elapsed, r.limit());
    const int64_t free = wanted > 0 ? makeRoom(*disk, wanted) : 0;
    if (wanted > 0) {
        const int failure = r.writer->write(std::min(wanted, RecordingWriter::wholePackets(free)));
        if (failure == ENOSPC || failure == EDQUOT) {
            finish(r, QELTV_STOP_DISK_FULL, QELTV_RECORDING_ERROR_DISK_FULL);
            return;
        }
        if (failure != 0) {
            finish(r, QELTV_STOP_DISK, QELTV_RECORDING_ERROR_WRITE);
            return;
        }
    }
    {
        std::lock_guard<std::mutex> guard(mLock);
        r.synced = r.writer->written();
        r.seconds = r.secondsAt(elapsed);
    }
    if (wanted > free) {
        finish(r, QELTV_STOP_DISK_FULL, QELTV_RECORDING_ERROR_DISK_FULL);
    } else if (r.complete(elapsed)) {
        finish(r, QELTV_STOP_TIME, QELTV_RECORDING_ERROR_NONE);
    }
}

void Recorder::finish(Recording& r, uint32_t reason, int32_t error) {
    if (error == QELTV_RECORDING_ERROR_NONE) r.writer->writeRest(r.limit());
    r.writer->close();
    {
        std::lock_guard<std::mutex> guard(mLock);
        r.seconds = r.secondsAt(r.writer->elapsed());
        const bool cut =
                error == QELTV_RECORDING_ERROR_DISK_FULL || r.mode == QELTV_RECORDING_MODE_KIB;
        if (cut && !r.writer->length()) {
            r.seconds = r.writer->written() / std::max<int64_t>(1, r.rate);
        }
        r.synced = r.writer->written();
        r.reason = reason;
        r.error = error;
        r.status = QELTV_RECORDING_STOPPING;
        if (mCurrent == r.handle) {
            mCurrent = 0;
            for (const auto& [handle, other] : mOpen) {
                if (other->runs()) mCurrent = handle;
            }
        }
    }
    store(r);
}

void Recorder::store(Recording& r) {
    const int64_t now = mClock.now();
    const int64_t written = r.writer->written();
    const Code code = stored([&] {
        auto transaction = mStore.transaction();
        if (written == 0) {
            mStore.remove(r.item);
        } else {
            mStore.end(r.item, {r.reason, written, r.seconds});
        }
        if (r.booking != 0) endBooking(r.booking, r.error, now);
        transaction.commit();
        return kOk;
    });
    if (code != kOk) {
        mRetry = SteadyClock::now() + kRetry;
        wakeUp();
        return;
    }
    if (written == 0) {
        if (const auto place = mDisks.placeOf(r.writer->path())) place->remove();
    }
    const bool failed = r.error != QELTV_RECORDING_ERROR_NONE;
    {
        std::lock_guard<std::mutex> guard(mLock);
        r.status = failed ? QELTV_RECORDING_FAILED : QELTV_RECORDING_STOPPED;
    }
    ALOGI("recording %u has ended, reason %u, %lld bytes", r.handle, r.reason,
          static_cast<long long>(written));
    if (failed) notify(QELTV_RECORDING_FAILED_EVENT, r.handle, static_cast<uint64_t>(r.error));
    notify(QELTV_RECORDING_STOPPED_EVENT, r.handle, r.reason);
}

void Recorder::endBooking(uint32_t number, int32_t error, int64_t now) {
    const auto booking = mStore.booking(number);
    if (!booking) return;
    if (const auto left = Schedule::afterRecording(*booking, error, now)) {
        mStore.update(*left);
    } else {
        mStore.removeBooking(number);
    }
}

void Recorder::startBookings() {
    const int64_t now = mClock.now();
    for (const auto& booking : Schedule(mStore.bookings()).due(now)) startBooking(booking, now);
}

void Recorder::startBooking(const Schedule::Booking& booking, int64_t now) {
    const bool already = std::any_of(mOpen.begin(), mOpen.end(), [&](const auto& open) {
        const Recording& recording = *open.second;
        return recording.booking == booking.booking && (recording.runs() || recording.stopping());
    });
    if (!already && Schedule::secondsLeft(booking, now) <= 0) {
        mStore.update(Schedule::afterMissing(booking, now));
        notify(QELTV_BOOKING_MISSED_EVENT, booking.booking, 0);
        return;
    }
    const int32_t error = already ? QELTV_RECORDING_ERROR_NONE : startRecordingOf(booking, now);
    if (error == QELTV_RECORDING_ERROR_NONE) {
        auto running = booking;
        running.state = QELTV_BOOKING_RUNS;
        running.error = QELTV_RECORDING_ERROR_NONE;
        mStore.update(running);
    } else {
        endBooking(booking.booking, error, now);
        notify(QELTV_BOOKING_FAILED_EVENT, booking.booking, static_cast<uint64_t>(error));
    }
}

int32_t Recorder::startRecordingOf(const Schedule::Booking& booking, int64_t now) {
    const int32_t handle = openLocked(booking.channel);
    const auto recording = find(static_cast<uint32_t>(handle));
    if (recording == nullptr) return QELTV_RECORDING_ERROR_NO_CHANNEL;
    recording->labels.programme = textOf(booking.programme);
    recording->mode = QELTV_RECORDING_MODE_SECONDS;
    recording->modeValue = Schedule::secondsLeft(booking, now);
    recording->rate = booking.rate * static_cast<uint32_t>(kKib);
    recording->booking = booking.booking;
    if (startLocked(*recording) == kOk) return QELTV_RECORDING_ERROR_NONE;
    forget(recording->handle);
    return recording->error != QELTV_RECORDING_ERROR_NONE ? recording->error
                                                          : QELTV_RECORDING_ERROR_WRITE;
}

int32_t Recorder::open(uint32_t channel, bool startNow) {
    Operation operation(mOperation);
    const int32_t handle = openLocked(channel);
    if (handle == 0 || !startNow) return handle;
    const auto recording = find(static_cast<uint32_t>(handle));
    if (startLocked(*recording) == kOk) return handle;
    forget(recording->handle);
    return 0;
}

int32_t Recorder::openLocked(uint32_t channel) {
    const auto found = mChannels(channel);
    if (!found) return 0;
    std::lock_guard<std::mutex> guard(mLock);
    if (mOpen.size() >= kOpenLimit) {
        // Left open by an application that is gone, most likely.
        const auto idle = std::find_if(mOpen.begin(), mOpen.end(), [](const auto& open) {
            return !open.second->runs() && !open.second->stopping();
        });
        if (idle == mOpen.end()) return 0;
        mOpen.erase(idle);
    }
    auto recording = std::make_shared<Recording>();
    recording->handle = mNextHandle;
    mNextHandle = mNextHandle == std::numeric_limits<int32_t>::max() ? 1 : mNextHandle + 1;
    recording->channel = *found;
    mOpen[recording->handle] = recording;
    return static_cast<int32_t>(recording->handle);
}

void Recorder::forget(uint32_t handle) {
    std::lock_guard<std::mutex> guard(mLock);
    mOpen.erase(handle);
}

Code Recorder::close(uint32_t handle) {
    Operation operation(mOperation);
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    if (recording->runs()) finish(*recording, QELTV_STOP_USER, QELTV_RECORDING_ERROR_NONE);
    if (recording->stopping()) store(*recording);
    if (recording->stopping()) return kStorage;
    forget(handle);
    return kOk;
}

Code Recorder::start(uint32_t handle) {
    Operation operation(mOperation);
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    if (recording->status != QELTV_RECORDING_OPENED) return kRefused;
    return startLocked(*recording);
}

Code Recorder::startLocked(Recording& r) {
    const auto refuse = [&](int32_t error, Code code) {
        std::lock_guard<std::mutex> guard(mLock);
        r.error = error;
        return code;
    };
    const auto disk = mDisks.find(r.disk);
    const Descriptor directory = disk && disk->present ? mDisks.open(disk->path) : Descriptor();
    if (!directory) return refuse(QELTV_RECORDING_ERROR_DISK_GONE, kRefused);
    if (tunerBusy(r.channel.stream)) return refuse(QELTV_RECORDING_ERROR_TUNER_BUSY, kRefused);
    const uint32_t rate = r.rate != 0 ? r.rate : disk->rate;
    if (makeRoom(*disk, rate) < RecordingWriter::kPacketSize) {
        return refuse(QELTV_RECORDING_ERROR_DISK_FULL, kStorage);
    }

    const int64_t start = mClock.now();
    std::string name = r.name;
    if (name.empty()) {
        name = freeName(directory.get(), mClock.localRecord(start).value_or(QELTV_DTG_T{}),
                        r.channel.name);
    }
    const std::string path = disk->path + "/" + name;
    if (exists(directory.get(), name)) return refuse(QELTV_RECORDING_ERROR_WRITE, kRefused);

    // The list has the file before it is there, so that none is ever forgotten.
    int64_t item = 0;
    const Code code = stored([&] {
        item = mStore.begin({path, r.disk, r.channel, r.labels, start, rate});
        return kOk;
    });
    if (code != kOk) return refuse(QELTV_RECORDING_ERROR_WRITE, code);
    Descriptor file(openat(directory.get(), name.c_str(),
                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file) {
        const int failure = errno;
        ALOGE("%s: %s", logText(path).c_str(), strerror(failure));
        const Code removed = stored([&] {
            mStore.remove(item);
            return kOk;
        });
        if (removed != kOk) ALOGW("the next start removes it from the list");
        return refuse(
                failure == ENOSPC ? QELTV_RECORDING_ERROR_DISK_FULL : QELTV_RECORDING_ERROR_WRITE,
                kStorage);
    }
    fsync(directory.get());
    auto writer =
            std::make_unique<RecordingWriter>(std::move(file), path, mPackets({r.channel, rate}));
    {
        std::lock_guard<std::mutex> guard(mLock);
        r.name = name;
        r.rate = rate;
        r.item = item;
        r.writer = std::move(writer);
        r.error = QELTV_RECORDING_ERROR_NONE;
        r.status = QELTV_RECORDING_RUNS;
        mCurrent = r.handle;
    }
    ALOGI("recording %u of channel %u into %s", r.handle, r.channel.id, logText(path).c_str());
    notify(QELTV_RECORDING_STARTED_EVENT, r.handle, r.booking);
    wakeUp();
    return kOk;
}

Code Recorder::stop(uint32_t handle) {
    Operation operation(mOperation);
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    if (recording->stopping()) {
        store(*recording);
        return recording->stopping() ? kStorage : kOk;
    }
    if (!recording->runs()) return kRefused;
    writeDue();
    // What was due may have filled the disk, or been the last.
    if (recording->status == QELTV_RECORDING_STOPPED) return kOk;
    if (!recording->runs()) return kStorage;
    finish(*recording, QELTV_STOP_USER, QELTV_RECORDING_ERROR_NONE);
    return recording->stopping() ? kStorage : kOk;
}

int32_t Recorder::current() const {
    std::lock_guard<std::mutex> guard(mLock);
    return static_cast<int32_t>(mCurrent);
}

std::shared_ptr<Recorder::Recording> Recorder::find(uint32_t handle) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mOpen.find(handle);
    return found != mOpen.end() ? found->second : nullptr;
}

template <class Read>
auto Recorder::valueOf(uint32_t handle, const Read& read) const {
    using Value = decltype(read(std::declval<const Recording&>()));
    const auto recording = find(handle);
    std::lock_guard<std::mutex> guard(mLock);
    return recording != nullptr ? read(*recording) : Value{kNotFound};
}

int32_t Recorder::status(uint32_t handle) const {
    return valueOf(handle, [](const Recording& r) { return r.status; });
}

int32_t Recorder::error(uint32_t handle) const {
    return valueOf(handle, [](const Recording& r) { return r.error; });
}

int32_t Recorder::mode(uint32_t handle) const {
    return valueOf(handle, [](const Recording& r) { return r.mode; });
}

int32_t Recorder::sourceType(uint32_t handle) const {
    return valueOf(handle,
                   [](const Recording& r) { return static_cast<int32_t>(r.channel.medium); });
}

int32_t Recorder::position(uint32_t handle) const {
    return valueOf(handle, [](const Recording& r) { return static_cast<int32_t>(r.seconds); });
}

int64_t Recorder::fileSize(uint32_t handle) const {
    return valueOf(handle, [](const Recording& r) { return r.synced; });
}

Code Recorder::fileName(uint32_t handle, std::string* name) const {
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    *name = recording->name;
    return kOk;
}

Code Recorder::setMode(uint32_t handle, uint32_t mode, int32_t value, uint32_t rate) {
    Operation operation(mOperation);
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    if (mode > QELTV_RECORDING_MODE_KIB || value < 0 ||
        (mode != QELTV_RECORDING_MODE_ENDLESS && value == 0) || rate > Schedule::kRateLimitKib) {
        return kBadValue;
    }
    if (rate != 0 && recording->status != QELTV_RECORDING_OPENED) return kRefused;
    std::lock_guard<std::mutex> guard(mLock);
    recording->mode = static_cast<int32_t>(mode);
    recording->modeValue = value;
    if (rate != 0) recording->rate = rate * static_cast<uint32_t>(kKib);
    return kOk;
}

Code Recorder::setFileName(uint32_t handle, const std::string& name) {
    Operation operation(mOperation);
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    if (!isFileName(name)) return kBadValue;
    if (recording->status != QELTV_RECORDING_OPENED) return kRefused;
    const auto disk = mDisks.find(recording->disk);
    if (disk && exists(AT_FDCWD, disk->path + "/" + name)) return kRefused;
    std::lock_guard<std::mutex> guard(mLock);
    recording->name = name;
    return kOk;
}

Code Recorder::setChannel(uint32_t handle, uint32_t channel) {
    Operation operation(mOperation);
    const auto recording = find(handle);
    const auto found = mChannels(channel);
    if (recording == nullptr || !found) return kNotFound;
    if (recording->status != QELTV_RECORDING_OPENED) return kRefused;
    std::lock_guard<std::mutex> guard(mLock);
    recording->channel = *found;
    return kOk;
}

Code Recorder::setDisk(uint32_t handle, const std::string& path,
                       const QELTV_DISK_RECORD_T& record) {
    Operation operation(mOperation);
    const auto recording = find(handle);
    if (handle != 0 && recording == nullptr) return kNotFound;
    if (handle != 0 && recording->status != QELTV_RECORDING_OPENED) return kRefused;
    const uint64_t limit = record.limitLow | uint64_t{record.limitHigh} << 32;
    if (record.disk >= Disks::kCount || limit > std::numeric_limits<int64_t>::max() ||
        record.rate > Schedule::kRateLimitKib * kKib || path.size() > kDiskPathLimit) {
        return kBadValue;
    }
    const auto known = mDisks.find(record.disk);
    // The television's own disk stays where it is.
    const std::string where = path.empty() && known ? known->path : path;
    if (record.disk == Disks::kOwn && where != mDisks.ownPath()) return kBadValue;
    if (!openDirectory(where)) return kNotFound;
    if (record.disk != Disks::kOwn) {
        const Code registered = mDisks.check(where, Disks::Owner::kThisTelevision);
        if (registered != kOk) return registered;
    }
    const bool used = std::any_of(mOpen.begin(), mOpen.end(), [&](const auto& open) {
        return open.second->disk == record.disk && open.second->runs();
    });
    if (used && where != known->path) return kRefused;
    const uint32_t rate = record.rate != 0 ? record.rate : known ? known->rate : kDefaultRate;
    const Disk disk{record.disk, where, static_cast<int64_t>(limit), rate, true};
    const Code code = stored([&] {
        mStore.putDisk({disk.number, disk.path, disk.limit, disk.rate});
        return kOk;
    });
    if (code != kOk) return code;
    mDisks.put(disk);
    if (recording != nullptr) {
        std::lock_guard<std::mutex> guard(mLock);
        recording->disk = record.disk;
    }
    return stored([this] {
        recover();
        return kOk;
    });
}

Code Recorder::command(uint32_t command, uint32_t value) {
    Operation operation(mOperation);
    switch (command) {
        case QELTV_COMMAND_DISK_REMOVED:
            return removeDisk(value);
        case QELTV_COMMAND_DISK_INSERTED:
            return insertDisk(value);
        case QELTV_COMMAND_STANDBY:
            return standBy();
        default:
            return kBadValue;
    }
}

Code Recorder::insertDisk(uint32_t number) {
    auto disk = mDisks.find(number);
    if (!disk) return kNotFound;
    if (!mDisks.open(disk->path)) return kRefused;
    disk->present = true;
    mDisks.put(*disk);
    return stored([this] {
        recover();
        return kOk;
    });
}

Code Recorder::removeDisk(uint32_t number) {
    auto disk = mDisks.find(number);
    if (!disk) return kNotFound;
    disk->present = false;
    mDisks.put(*disk);
    writeDue();
    return kOk;
}

Code Recorder::standBy() {
    Code code = kOk;
    for (const auto& [handle, recording] : Handles(mOpen)) {
        if (!recording->runs() || recording->booking != 0) continue;
        finish(*recording, QELTV_STOP_STANDBY, QELTV_RECORDING_ERROR_NONE);
        if (recording->stopping()) code = kStorage;
    }
    return code;
}

Code Recorder::command(uint32_t command, uint32_t value, int32_t extra, const std::string& text) {
    if (command < QELTV_COMMAND_PROGRAMME_NAME) return this->command(command, value);
    Operation operation(mOperation);
    const auto recording = find(value);
    if (recording == nullptr) return kNotFound;
    RecordingStore::Labels labels = recording->labels;
    if (command == QELTV_COMMAND_PROGRAMME_NAME && text.size() <= kProgrammeLimit) {
        labels.programme = text;
    } else if (command == QELTV_COMMAND_RATING && extra >= 0) {
        labels.rating = static_cast<uint32_t>(extra);
    } else if (command == QELTV_COMMAND_RETENTION && extra >= 0) {
        labels.retention = static_cast<uint32_t>(extra);
    } else {
        return kBadValue;
    }
    if (recording->item != 0) {
        const Code code = stored([&] {
            mStore.label(recording->item, labels);
            return kOk;
        });
        if (code != kOk) return code;
    }
    std::lock_guard<std::mutex> guard(mLock);
    recording->labels = labels;
    return kOk;
}

int64_t Recorder::totalBytes(uint32_t number) const {
    const auto disk = mDisks.find(number);
    return disk ? Disks::totalBytes(*disk) : kNotFound;
}

int64_t Recorder::freeBytes(uint32_t number) const {
    const auto disk = mDisks.find(number);
    return disk ? Disks::freeBytes(*disk) : kNotFound;
}

/** Free bytes, for which recordings go that are kept no longer than until now, the oldest first. */
int64_t Recorder::makeRoom(const Disk& disk, int64_t wanted) {
    int64_t free = Disks::freeBytes(disk);
    if (free >= wanted) return free;
    const Code code = stored([&] {
        for (const RecordedItem& item : mStore.items()) {
            const int64_t kept = item.retention * Schedule::kSecondsOfDay;
            if (item.retention == 0 || item.start + kept > mClock.now()) continue;
            if (item.path.compare(0, disk.path.size() + 1, disk.path + "/") != 0) continue;
            const auto place = mDisks.placeOf(item.path);
            if (!place) continue;
            mStore.remove(item.id);
            place->remove();
            ALOGI("%s was removed, its retention has passed and the disk is full",
                  logText(item.path).c_str());
            free = Disks::freeBytes(disk);
            if (free >= wanted) break;
        }
        return kOk;
    });
    if (code != kOk) ALOGW("recordings past their retention stay: the list cannot be written");
    return free;
}

Code Recorder::registerDisk(const std::string& path) {
    return mDisks.registerDisk(path);
}

Code Recorder::checkDisk(const std::string& path, bool ours) const {
    return mDisks.check(path, ours ? Disks::Owner::kThisTelevision : Disks::Owner::kAny);
}

int32_t Recorder::bookings() const {
    return stored([&] { return static_cast<int32_t>(mStore.bookingCount()); });
}

Code Recorder::booking(uint32_t index, QELTV_SCHEDULE_RECORD_T* record) const {
    return stored([&] {
        const auto found = mStore.bookingAt(index);
        if (!found) return kNotFound;
        *record = *found;
        if (const auto channel = mChannels(record->channel)) {
            copyText(record->channelName, channel->name);
        }
        return kOk;
    });
}

int32_t Recorder::book(const QELTV_SCHEDULE_RECORD_T& record, uint32_t flags) {
    Operation operation(mOperation);
    if (!Schedule::isValid(record, mClock.now()) ||
        (flags & ~QELTV_BOOK_IN_SPITE_OF_CONFLICT) != 0) {
        return kBadValue;
    }
    if (record.channel == 0) return kNotFound;
    const auto channel = mChannels(record.channel);
    if (!channel) return kNotFound;
    const auto streamOf = [this](uint32_t id) -> std::optional<uint32_t> {
        const auto other = mChannels(id);
        return other ? std::optional(other->stream) : std::nullopt;
    };
    uint32_t number = record.booking;
    const Code code = stored([&] {
        if (number != 0) {
            const auto known = mStore.booking(number);
            if (!known) return kNotFound;
            if (known->state == QELTV_BOOKING_RUNS) return kRefused;
        } else if (mStore.bookingCount() >= kBookingLimit) {
            return kRefused;
        }
        if ((flags & QELTV_BOOK_IN_SPITE_OF_CONFLICT) == 0 &&
            Schedule(mStore.bookings()).conflicts(record, channel->stream, streamOf)) {
            return kRefused;
        }
        number = mStore.book(record);
        return kOk;
    });
    if (code != kOk) return code;
    notify(QELTV_BOOKING_STORED_EVENT, number, 0);
    wakeUp();
    return static_cast<int32_t>(number);
}

Code Recorder::deleteBooking(uint32_t index) {
    Operation operation(mOperation);
    uint32_t number = 0;
    const Code code = stored([&] {
        const auto found = mStore.bookingAt(index);
        if (!found) return kNotFound;
        number = found->booking;
        mStore.removeBooking(number);
        return kOk;
    });
    if (code != kOk) return code;
    for (const auto& [handle, recording] : Handles(mOpen)) {
        if (recording->booking != number || !recording->runs()) continue;
        finish(*recording, QELTV_STOP_USER, QELTV_RECORDING_ERROR_NONE);
    }
    notify(QELTV_BOOKING_DELETED_EVENT, number, 0);
    return kOk;
}

bool Recorder::tunerBusy(uint32_t stream) const {
    return std::any_of(mOpen.begin(), mOpen.end(), [&](const auto& open) {
        return open.second->runs() && open.second->channel.stream != stream;
    });
}

bool Recorder::conflict(const QELTV_SOURCE_RECORD_T& first,
                        const QELTV_SOURCE_RECORD_T& second) const {
    if (first.kind != 0 || second.kind != 0) return false;
    const auto a = mChannels(first.id);
    const auto b = mChannels(second.id);
    if (!a || !b || a->stream == b->stream) return false;
    if (first.seconds == 0 || second.seconds == 0) return true;
    Schedule::Booking one{}, other{};
    one.start = first.start;
    one.seconds = first.seconds;
    other.start = second.start;
    other.seconds = second.seconds;
    return Schedule::overlap(one, other);
}

Code Recorder::deleteItem(uint32_t index) {
    Operation operation(mOperation);
    return stored([&] {
        const auto item = mStore.itemAt(index);
        if (!item) return kNotFound;
        const auto place = mDisks.placeOf(item->path);
        const bool there = place && place->size() >= 0;
        if (there && !place->setAside()) return kStorage;
        try {
            mStore.remove(item->id);
        } catch (const StoreError&) {
            if (there) place->bringBack();
            throw;
        }
        if (there) place->removeAside();
        return kOk;
    });
}

void Recorder::notify(QELTV_RECORDING_EVENT type, uint64_t first, uint64_t second) {
    mNotifier.event(&Notifier::Callback::a_hidl_record_pvr_status_nfy_fct, type, {first, second});
}

}  // namespace qeltvd
