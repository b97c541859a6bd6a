#define LOG_TAG "qeltvd"

#include "Recorder.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <log/log.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <limits>
#include <random>

#include "Code.h"
#include "Guarded.h"
#include "LogText.h"
#include "Stored.h"

namespace qeltvd {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

namespace {

constexpr int64_t kPacket = 188;
/** Written in one go at most; what is due beyond waits for the next turn. */
constexpr int64_t kTurnLimit = int64_t{64} << 20;
constexpr auto kTurn = 200ms;
constexpr auto kRetry = 5s;
constexpr int64_t kDefaultLimit = int64_t{2} << 30;
constexpr uint32_t kDefaultRate = 1 << 20;
constexpr int64_t kRateLimitKib = 1 << 20;
constexpr uint32_t kLongest = 24 * 3600;
constexpr int64_t kDay = 24 * 3600;
constexpr char kRegisterFile[] = ".qeltv-disk";
/** Begins the name of a file that is being deleted; no recording's begins with a dot. */
constexpr char kDeleting[] = ".qeltv-deleting.";
constexpr char kDiskKey[] = "recorder.disk_id";

/** The text of a field that need not be terminated. */
template <size_t N>
std::string textOf(const char (&field)[N]) {
    return std::string(field, strnlen(field, N));
}

template <size_t N>
void fill(char (&field)[N], const std::string& text) {
    memset(field, 0, N);
    memcpy(field, text.data(), std::min(text.size(), N - 1));
}

bool exists(int directory, const std::string& name) {
    struct stat info {};
    return fstatat(directory, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
}

bool exists(const std::string& path) {
    return exists(AT_FDCWD, path);
}

bool isDirectory(const std::string& path) {
    return static_cast<bool>(openDirectory(path));
}

int64_t period(uint32_t repeat) {
    return repeat == QELTV_BOOKING_DAILY ? kDay : repeat == QELTV_BOOKING_WEEKLY ? 7 * kDay : 0;
}

/** Whether two times overlap that may come again; for the next two weeks. */
bool overlap(int64_t startA, int64_t secondsA, uint32_t repeatA, int64_t startB, int64_t secondsB,
             uint32_t repeatB) {
    const auto times = [](int64_t start, uint32_t repeat) {
        std::vector<int64_t> all{start};
        for (int64_t day = period(repeat); day != 0 && day <= 14 * kDay; day += period(repeat)) {
            all.push_back(start + day);
        }
        return all;
    };
    for (const int64_t a : times(startA, repeatA)) {
        for (const int64_t b : times(startB, repeatB)) {
            if (a < b + secondsB && b < a + secondsA) return true;
        }
    }
    return false;
}

constexpr char kItemColumns[] =
        "SELECT id, channel, major, minor, channel_name, programme, start, seconds, stop_reason,"
        " rating, retention, bytes, path FROM recordings WHERE stop_reason != 0 ";

RecordedItem itemOf(const Store::Statement& row) {
    const auto word = [&](int column) { return static_cast<uint32_t>(row.integer(column)); };
    return {row.integer(0), word(1),         word(2),     word(3), row.text(4),
            row.text(5),    row.integer(6),  word(7),     word(8), word(9),
            word(10),       row.integer(11), row.text(12)};
}

constexpr char kBookingColumns[] =
        "SELECT id, channel, start, seconds, repeat, rate, programme, state, error FROM bookings ";

QELTV_SCHEDULE_RECORD_T bookingOf(const Store::Statement& row) {
    const auto word = [&](int column) { return static_cast<uint32_t>(row.integer(column)); };
    QELTV_SCHEDULE_RECORD_T record{};
    record.booking = word(0);
    record.channel = word(1);
    record.start = row.integer(2);
    record.seconds = word(3);
    record.repeat = word(4);
    record.rate = word(5);
    fill(record.programme, row.text(6));
    record.state = word(7);
    record.error = word(8);
    return record;
}

}  // namespace

struct Recorder::Disk {
    uint32_t number;
    std::string path;
    int64_t limit;
    uint32_t rate;
    bool present;
};

struct Recorder::Place {
    Descriptor directory;
    std::string name;

    /** -1 where there is no file. */
    off_t size() const { return sizeOfFile(directory.get(), name); }
    void remove() const { unlinkat(directory.get(), name.c_str(), 0); }
};

struct Recorder::Recording {
    uint32_t handle = 0;
    RecordedChannel channel;
    uint32_t disk = 0;
    /** Bytes per second; 0 for the disk's. */
    uint32_t rate = 0;
    int32_t mode = QELTV_RECORDING_MODE_ENDLESS;
    int64_t modeValue = 0;
    std::string name;
    std::string programme;
    uint32_t rating = 0;
    uint32_t retention = 0;
    int64_t booking = 0;

    int32_t status = QELTV_RECORDING_OPENED;
    int32_t error = QELTV_RECORDING_ERROR_NONE;
    uint32_t reason = 0;
    int64_t item = 0;
    int fd = -1;
    std::string path;
    SteadyClock::time_point started;
    int64_t written = 0;
    /** Of that what has reached the disk. */
    int64_t synced = 0;
    int64_t seconds = 0;

    ~Recording() {
        if (fd >= 0) ::close(fd);
    }
};

Recorder::Recorder(Store& store, Settings& settings, Notifier& notifier,
                   const std::string& directory, ChannelLookup channels, const Clock& clock)
        : mStore(store),
          mSettings(settings),
          mNotifier(notifier),
          mChannels(std::move(channels)),
          mClock(clock),
          mOwnDisk(std::filesystem::absolute(directory).string()) {
    claimDirectory(directory);
    mStore.execute(
            "CREATE TABLE IF NOT EXISTS recordings (id INTEGER PRIMARY KEY AUTOINCREMENT,"
            " path TEXT NOT NULL UNIQUE, disk INTEGER NOT NULL, channel INTEGER NOT NULL,"
            " major INTEGER NOT NULL, minor INTEGER NOT NULL, channel_name TEXT NOT NULL,"
            " programme TEXT NOT NULL, start INTEGER NOT NULL, seconds INTEGER NOT NULL,"
            " stop_reason INTEGER NOT NULL, rating INTEGER NOT NULL, retention INTEGER NOT NULL,"
            " bytes INTEGER NOT NULL, rate INTEGER NOT NULL);"
            "CREATE TABLE IF NOT EXISTS bookings (id INTEGER PRIMARY KEY AUTOINCREMENT,"
            " channel INTEGER NOT NULL, start INTEGER NOT NULL, seconds INTEGER NOT NULL,"
            " repeat INTEGER NOT NULL, rate INTEGER NOT NULL, programme TEXT NOT NULL,"
            " state INTEGER NOT NULL, error INTEGER NOT NULL);"
            "CREATE TABLE IF NOT EXISTS recorder_disks (disk INTEGER PRIMARY KEY,"
            " path TEXT NOT NULL, bytes INTEGER NOT NULL, rate INTEGER NOT NULL)");
    {
        // Where the television's own disk is depends on where the state is.
        Store::Transaction transaction(mStore);
        Store::Statement(
                mStore,
                "UPDATE recordings SET path = ?1 || substr(recordings.path, length(own.path) + 1)"
                " FROM (SELECT path FROM recorder_disks WHERE disk = 0) AS own"
                " WHERE disk = 0 AND own.path <> ?1"
                " AND substr(recordings.path, 1, length(own.path) + 1) = own.path || '/'")
                .bind(mOwnDisk)
                .run();
        Store::Statement(mStore,
                         "INSERT INTO recorder_disks VALUES (0, ?, ?, ?)"
                         " ON CONFLICT (disk) DO UPDATE SET path = excluded.path"
                         " WHERE path <> excluded.path")
                .bind(mOwnDisk)
                .bind(kDefaultLimit)
                .bind(int64_t{kDefaultRate})
                .run();
        transaction.commit();
    }
    {
        Store::Statement rows(mStore, "SELECT disk, path, bytes, rate FROM recorder_disks");
        while (rows.step()) {
            const std::string path = rows.text(1);
            mDisks.push_back(std::make_unique<Disk>(
                    Disk{static_cast<uint32_t>(rows.integer(0)), path, rows.integer(2),
                         static_cast<uint32_t>(rows.integer(3)), false}));
        }
    }
    // What a full disk leaves unfinished is finished at a later start.
    stored([this] {
        for (const auto& disk : mDisks) disk->present = static_cast<bool>(openDisk(disk->path));
        recover();
        Store::Statement(mStore, "UPDATE bookings SET state = 0 WHERE state = ?")
                .bind(int64_t{QELTV_BOOKING_RUNS})
                .run();
        return kOk;
    });
    mThread = std::thread([this] { run(); });
}

Recorder::~Recorder() {
    {
        Lock operation(mOperation);
        mEnds = true;
    }
    mWake.notify_one();
    mThread.join();
    for (const auto& [handle, recording] : mOpen) {
        if (recording->status == QELTV_RECORDING_RUNS)
            finish(*recording, QELTV_STOP_STANDBY, QELTV_RECORDING_ERROR_NONE);
    }
}

Descriptor Recorder::openDisk(const std::string& path) const {
    Descriptor directory = openDirectory(path);
    if (!directory || path == mOwnDisk || registered(directory.get(), true) == kOk) {
        return directory;
    }
    return Descriptor();
}

std::optional<Recorder::Place> Recorder::placeOf(const std::string& path) const {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos || !isFileName(path.substr(slash + 1))) return std::nullopt;
    Descriptor directory = openDisk(path.substr(0, slash));
    if (!directory) return std::nullopt;
    return Place{std::move(directory), path.substr(slash + 1)};
}

void Recorder::recover() {
    recoverRecordings();
    for (const auto& disk : mDisks) recoverDeletions(*disk);
}

void Recorder::recoverRecordings() {
    struct Cut {
        int64_t id;
        std::string path;
        int64_t rate;
    };
    std::vector<Cut> cuts;
    {
        Store::Statement rows(mStore,
                              "SELECT id, path, rate FROM recordings WHERE stop_reason = 0");
        while (rows.step()) cuts.push_back({rows.integer(0), rows.text(1), rows.integer(2)});
    }
    for (const Cut& cut : cuts) {
        const bool open = std::any_of(mOpen.begin(), mOpen.end(), [&](const auto& each) {
            return each.second->item == cut.id;
        });
        if (open) continue;
        const auto place = placeOf(cut.path);
        if (!place) {
            ALOGW("%s was cut off and waits for its disk", logText(cut.path).c_str());
            continue;
        }
        const int64_t size = place->size();
        const int64_t whole = std::max<int64_t>(0, size) / kPacket * kPacket;
        if (size > whole) {
            const Descriptor file = makeFile(place->directory.get(), place->name);
            if (!file || ftruncate(file.get(), whole) != 0) {
                ALOGW("%s cannot be cut: %s", logText(cut.path).c_str(), strerror(errno));
            }
        }
        if (whole == 0) {
            if (size >= 0) place->remove();
            Store::Statement(mStore, "DELETE FROM recordings WHERE id = ?").bind(cut.id).run();
            continue;
        }
        ALOGI("%s was cut off", logText(cut.path).c_str());
        Store::Statement(mStore,
                         "UPDATE recordings SET stop_reason = ?, bytes = ?, seconds = ?"
                         " WHERE id = ?")
                .bind(int64_t{QELTV_STOP_POWER_LOST})
                .bind(whole)
                .bind(whole / std::max<int64_t>(1, cut.rate))
                .bind(cut.id)
                .run();
    }
}

void Recorder::recoverDeletions(const Disk& disk) {
    const Descriptor directory = openDisk(disk.path);
    if (!directory) return;
    std::vector<std::string> names;
    DIR* const entries =
            fdopendir(openat(directory.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (entries == nullptr) return;
    while (const dirent* entry = readdir(entries)) names.emplace_back(entry->d_name);
    closedir(entries);
    for (const std::string& aside : names) {
        if (aside.compare(0, strlen(kDeleting), kDeleting) != 0) continue;
        const std::string name = aside.substr(strlen(kDeleting));
        if (!isFileName(name) || sizeOfFile(directory.get(), aside) < 0) continue;
        Store::Statement row(mStore, "SELECT id FROM recordings WHERE path = ?");
        if (!row.bind(disk.path + "/" + name).step()) {
            unlinkat(directory.get(), aside.c_str(), 0);
        } else if (renameat2(directory.get(), aside.c_str(), directory.get(), name.c_str(),
                             RENAME_NOREPLACE) != 0) {
            ALOGW("%s/%s cannot be renamed: %s", logText(disk.path).c_str(), logText(aside).c_str(),
                  strerror(errno));
        }
    }
}

void Recorder::run() {
    Lock operation(mOperation);
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
    auto wake = SteadyClock::now() + 1h;
    for (const auto& [handle, recording] : mOpen) {
        if (recording->status == QELTV_RECORDING_RUNS)
            wake = std::min(wake, SteadyClock::now() + kTurn);
        if (recording->status == QELTV_RECORDING_STOPPING) wake = std::min(wake, mRetry);
    }
    // Clock and channels are asked outside of the store: they may wait for it themselves.
    const int64_t now = mClock.now();
    try {
        Store::Statement row(mStore, "SELECT MIN(start) FROM bookings WHERE state = 0");
        if (row.step() && row.integer(0) != 0) {
            // One that is due but could not be looked at is looked at again a little later.
            const std::chrono::seconds left(std::min<int64_t>(row.integer(0) - now, 3600));
            wake = std::min(wake,
                            SteadyClock::now() + std::max<SteadyClock::duration>(left, kTurn));
        }
    } catch (const StoreError& e) {
        ALOGE("%s", logText(e.what()).c_str());
        wake = std::min(wake, SteadyClock::now() + kRetry);
    }
    return wake;
}

void Recorder::clockChanged() {
    {
        Lock operation(mOperation);
        mChanged = true;
    }
    mWake.notify_one();
}

void Recorder::writeDue() {
    for (const auto& [handle, recording] : Handles(mOpen)) {
        Recording& r = *recording;
        if (r.status == QELTV_RECORDING_STOPPING && SteadyClock::now() >= mRetry) store(r);
        if (r.status != QELTV_RECORDING_RUNS) continue;
        Disk* const disk = this->disk(r.disk);
        if (disk == nullptr || !disk->present) {
            finish(r, QELTV_STOP_DISK, QELTV_RECORDING_ERROR_DISK_GONE);
            continue;
        }
        const int64_t elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
                                        SteadyClock::now() - r.started)
                                        .count();
        int64_t due = int64_t{r.rate} * elapsed / 1000;
        if (r.mode == QELTV_RECORDING_MODE_SECONDS)
            due = std::min(due, int64_t{r.rate} * r.modeValue);
        if (r.mode == QELTV_RECORDING_MODE_KIB) due = std::min(due, r.modeValue * 1024);
        const int64_t wanted = std::min(due - r.written, kTurnLimit) / kPacket * kPacket;
        const int64_t room = wanted > 0 ? makeRoom(*disk, wanted) : 0;
        if (wanted > 0 && !writeOut(r, std::min(wanted, room / kPacket * kPacket))) continue;
        {
            std::lock_guard<std::mutex> guard(mLock);
            r.seconds = elapsed / 1000;
        }
        if (wanted > room) {
            finish(r, QELTV_STOP_DISK_FULL, QELTV_RECORDING_ERROR_DISK_FULL);
        } else if ((r.mode == QELTV_RECORDING_MODE_SECONDS && elapsed >= r.modeValue * 1000) ||
                   (r.mode == QELTV_RECORDING_MODE_KIB &&
                    r.modeValue * 1024 - r.written < kPacket)) {
            finish(r, QELTV_STOP_TIME, QELTV_RECORDING_ERROR_NONE);
        }
    }
}

/** Writes packets through to the disk; a failure finishes the recording. */
bool Recorder::writeOut(Recording& r, int64_t bytes) {
    std::vector<uint8_t> block;
    const int64_t before = r.written;
    while (r.written - before < bytes) {
        const int64_t size = std::min<int64_t>(bytes - (r.written - before), 1024 * kPacket);
        block.assign(static_cast<size_t>(size), 0xff);
        for (int64_t at = 0; at < size; at += kPacket) {
            const auto number = static_cast<uint64_t>((r.written + at) / kPacket);
            uint8_t* const packet = &block[static_cast<size_t>(at)];
            // A stream of one component: sync byte, PID, continuity counter, packet number.
            packet[0] = 0x47;
            packet[1] = 0x01;
            packet[2] = static_cast<uint8_t>(r.handle);
            packet[3] = static_cast<uint8_t>(0x10 | (number & 0xf));
            memcpy(packet + 4, &number, sizeof(number));
        }
        if (!writeAll(r.fd, block.data(), block.size())) break;
        r.written += size;
    }
    int failure = r.written - before < bytes ? errno : 0;
    if (failure != 0 && ftruncate(r.fd, r.written) != 0) {
        ALOGW("%s cannot be cut: %s", logText(r.path).c_str(), strerror(errno));
    }
    if (fdatasync(r.fd) != 0 && failure == 0) failure = errno;
    if (failure != 0) {
        ALOGE("%s: %s", logText(r.path).c_str(), strerror(failure));
        const bool full = failure == ENOSPC || failure == EDQUOT;
        finish(r, full ? QELTV_STOP_DISK_FULL : QELTV_STOP_DISK,
               full ? QELTV_RECORDING_ERROR_DISK_FULL : QELTV_RECORDING_ERROR_WRITE);
        return false;
    }
    std::lock_guard<std::mutex> guard(mLock);
    r.synced = r.written;
    return true;
}

int32_t Recorder::finish(Recording& r, uint32_t reason, int32_t error) {
    if (fdatasync(r.fd) != 0) ALOGE("%s: %s", logText(r.path).c_str(), strerror(errno));
    ::close(r.fd);
    r.fd = -1;
    {
        std::lock_guard<std::mutex> guard(mLock);
        r.seconds = std::chrono::duration_cast<std::chrono::seconds>(SteadyClock::now() - r.started)
                            .count();
        if (error == QELTV_RECORDING_ERROR_DISK_FULL || r.mode == QELTV_RECORDING_MODE_KIB) {
            r.seconds = r.written / std::max<int64_t>(1, r.rate);
        }
        r.synced = r.written;
        r.reason = reason;
        r.error = error;
        r.status = QELTV_RECORDING_STOPPING;
        if (mCurrent == r.handle) {
            mCurrent = 0;
            for (const auto& [handle, other] : mOpen) {
                if (other->status == QELTV_RECORDING_RUNS) mCurrent = handle;
            }
        }
    }
    return store(r);
}

/** Stores the end of a recording. One that could not be stored is tried again later. */
int32_t Recorder::store(Recording& r) {
    const int64_t now = mClock.now();
    const int32_t code = stored([&] {
        Store::Transaction transaction(mStore);
        if (r.written == 0) {
            Store::Statement(mStore, "DELETE FROM recordings WHERE id = ?").bind(r.item).run();
        } else {
            Store::Statement(mStore,
                             "UPDATE recordings SET stop_reason = ?, bytes = ?, seconds = ?,"
                             " programme = ?, rating = ?, retention = ? WHERE id = ?")
                    .bind(int64_t{r.reason})
                    .bind(r.written)
                    .bind(r.seconds)
                    .bind(r.programme)
                    .bind(int64_t{r.rating})
                    .bind(int64_t{r.retention})
                    .bind(r.item)
                    .run();
        }
        if (r.booking != 0) endBooking(r.booking, r.error, now);
        transaction.commit();
        return kOk;
    });
    if (code != kOk) {
        mRetry = SteadyClock::now() + kRetry;
        mChanged = true;
        mWake.notify_one();
        return code;
    }
    if (r.written == 0) {
        if (const auto place = placeOf(r.path)) place->remove();
    }
    {
        std::lock_guard<std::mutex> guard(mLock);
        r.status = r.error != QELTV_RECORDING_ERROR_NONE ? QELTV_RECORDING_FAILED
                                                         : QELTV_RECORDING_STOPPED;
    }
    ALOGI("recording %u has ended, reason %u, %lld bytes", r.handle, r.reason,
          static_cast<long long>(r.written));
    if (r.error != QELTV_RECORDING_ERROR_NONE) {
        notify(QELTV_RECORDING_FAILED_EVENT, r.handle, static_cast<uint64_t>(r.error));
    }
    notify(QELTV_RECORDING_STOPPED_EVENT, r.handle, r.reason);
    return kOk;
}

void Recorder::endBooking(int64_t booking, int32_t error, int64_t now) {
    Store::Statement row(mStore, "SELECT start, repeat FROM bookings WHERE id = ?");
    if (!row.bind(booking).step()) return;
    const int64_t step = period(static_cast<uint32_t>(row.integer(1)));
    if (step != 0) {
        int64_t start = row.integer(0);
        while (start <= now) start += step;
        Store::Statement(mStore, "UPDATE bookings SET state = 0, start = ?, error = ? WHERE id = ?")
                .bind(start)
                .bind(int64_t{error})
                .bind(booking)
                .run();
    } else if (error != QELTV_RECORDING_ERROR_NONE) {
        Store::Statement(mStore, "UPDATE bookings SET state = ?, error = ? WHERE id = ?")
                .bind(int64_t{QELTV_BOOKING_FAILED})
                .bind(int64_t{error})
                .bind(booking)
                .run();
    } else {
        Store::Statement(mStore, "DELETE FROM bookings WHERE id = ?").bind(booking).run();
    }
}

void Recorder::startBookings() {
    const int64_t now = mClock.now();
    std::vector<QELTV_SCHEDULE_RECORD_T> due;
    {
        Store::Statement rows(mStore, (std::string(kBookingColumns) +
                                       "WHERE state = 0 AND start <= ? ORDER BY start, id")
                                              .c_str());
        rows.bind(now);
        while (rows.step()) due.push_back(bookingOf(rows));
    }
    for (const QELTV_SCHEDULE_RECORD_T& booking : due) {
        const bool already = std::any_of(mOpen.begin(), mOpen.end(), [&](const auto& open) {
            return open.second->booking == booking.booking &&
                   (open.second->status == QELTV_RECORDING_RUNS ||
                    open.second->status == QELTV_RECORDING_STOPPING);
        });
        const int64_t left = booking.start + booking.seconds - now;
        if (!already && left <= 0) {
            if (booking.repeat != QELTV_BOOKING_ONCE) {
                endBooking(booking.booking, QELTV_RECORDING_ERROR_NONE, now);
            } else {
                Store::Statement(mStore, "UPDATE bookings SET state = ? WHERE id = ?")
                        .bind(int64_t{QELTV_BOOKING_MISSED})
                        .bind(int64_t{booking.booking})
                        .run();
            }
            notify(QELTV_BOOKING_MISSED_EVENT, booking.booking, 0);
            continue;
        }
        int32_t error = QELTV_RECORDING_ERROR_NONE;
        if (!already) {
            const int32_t handle = openLocked(booking.channel);
            const auto recording = find(static_cast<uint32_t>(handle));
            if (recording == nullptr) {
                error = QELTV_RECORDING_ERROR_NO_CHANNEL;
            } else {
                recording->programme = textOf(booking.programme);
                recording->mode = QELTV_RECORDING_MODE_SECONDS;
                recording->modeValue = left;
                recording->rate = booking.rate * 1024;
                recording->booking = booking.booking;
                if (startLocked(*recording) != kOk) {
                    error = recording->error != QELTV_RECORDING_ERROR_NONE
                                    ? recording->error
                                    : QELTV_RECORDING_ERROR_WRITE;
                    std::lock_guard<std::mutex> guard(mLock);
                    mOpen.erase(recording->handle);
                }
            }
        }
        if (error == QELTV_RECORDING_ERROR_NONE) {
            Store::Statement(mStore, "UPDATE bookings SET state = ?, error = 0 WHERE id = ?")
                    .bind(int64_t{QELTV_BOOKING_RUNS})
                    .bind(int64_t{booking.booking})
                    .run();
        } else {
            endBooking(booking.booking, error, now);
            notify(QELTV_BOOKING_FAILED_EVENT, booking.booking, static_cast<uint64_t>(error));
        }
    }
}

int32_t Recorder::open(uint32_t channel, bool startNow) {
    Lock operation(mOperation);
    const int32_t handle = openLocked(channel);
    if (handle == 0 || !startNow) return handle;
    const auto recording = find(static_cast<uint32_t>(handle));
    if (startLocked(*recording) == kOk) return handle;
    std::lock_guard<std::mutex> guard(mLock);
    mOpen.erase(recording->handle);
    return 0;
}

int32_t Recorder::openLocked(uint32_t channel) {
    const auto found = mChannels(channel);
    if (!found) return 0;
    std::lock_guard<std::mutex> guard(mLock);
    if (mOpen.size() >= kOpenLimit) {
        // Left open by an application that is gone, most likely.
        const auto idle = std::find_if(mOpen.begin(), mOpen.end(), [](const auto& open) {
            return open.second->status != QELTV_RECORDING_RUNS &&
                   open.second->status != QELTV_RECORDING_STOPPING;
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

int32_t Recorder::close(uint32_t handle) {
    Lock operation(mOperation);
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    if (recording->status == QELTV_RECORDING_RUNS)
        finish(*recording, QELTV_STOP_USER, QELTV_RECORDING_ERROR_NONE);
    if (recording->status == QELTV_RECORDING_STOPPING && store(*recording) != kOk) return kStorage;
    std::lock_guard<std::mutex> guard(mLock);
    mOpen.erase(handle);
    return kOk;
}

int32_t Recorder::start(uint32_t handle) {
    Lock operation(mOperation);
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    if (recording->status != QELTV_RECORDING_OPENED) return kRefused;
    return startLocked(*recording);
}

int32_t Recorder::startLocked(Recording& r) {
    const auto refuse = [&](int32_t error, int32_t code) {
        std::lock_guard<std::mutex> guard(mLock);
        r.error = error;
        return code;
    };
    Disk* const disk = this->disk(r.disk);
    const Descriptor directory =
            disk != nullptr && disk->present ? openDisk(disk->path) : Descriptor();
    if (!directory) return refuse(QELTV_RECORDING_ERROR_DISK_GONE, kRefused);
    if (tunerBusy(r.channel.stream)) return refuse(QELTV_RECORDING_ERROR_TUNER_BUSY, kRefused);
    const uint32_t rate = r.rate != 0 ? r.rate : disk->rate;
    if (makeRoom(*disk, rate) < kPacket) return refuse(QELTV_RECORDING_ERROR_DISK_FULL, kStorage);

    const int64_t start = mClock.now();
    std::string name = r.name;
    if (name.empty()) {
        const QELTV_DTG_T local = mClock.localRecord(start).value_or(QELTV_DTG_T{});
        char stamp[64];
        snprintf(stamp, sizeof(stamp), "%04u%02u%02u-%02u%02u%02u-", local.year, local.month,
                 local.day, local.hour, local.minute, local.second);
        name = stamp;
        for (const char c : r.channel.name)
            name += isalnum(static_cast<unsigned char>(c)) ? c : '_';
        const std::string base = name;
        name += ".ts";
        for (int i = 2; exists(directory.get(), name); ++i) {
            name = base + "-" + std::to_string(i) + ".ts";
        }
    }
    const std::string path = disk->path + "/" + name;
    if (exists(directory.get(), name)) return refuse(QELTV_RECORDING_ERROR_WRITE, kRefused);

    // The list knows of the file before it is there, so that none is ever forgotten.
    int64_t item = 0;
    const int32_t code = stored([&] {
        Store::Transaction transaction(mStore);
        Store::Statement(mStore,
                         "INSERT INTO recordings (path, disk, channel, major, minor, channel_name,"
                         " programme, start, seconds, stop_reason, rating, retention, bytes, rate)"
                         " VALUES (?, ?, ?, ?, ?, ?, ?, ?, 0, 0, ?, ?, 0, ?)")
                .bind(path)
                .bind(int64_t{r.disk})
                .bind(int64_t{r.channel.id})
                .bind(int64_t{r.channel.major})
                .bind(int64_t{r.channel.minor})
                .bind(r.channel.name)
                .bind(r.programme)
                .bind(start)
                .bind(int64_t{r.rating})
                .bind(int64_t{r.retention})
                .bind(int64_t{rate})
                .run();
        item = mStore.lastId();
        transaction.commit();
        return kOk;
    });
    if (code != kOk) return refuse(QELTV_RECORDING_ERROR_WRITE, code);
    const int fd = openat(directory.get(), name.c_str(),
                          O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0) {
        const int failure = errno;
        ALOGE("%s: %s", logText(path).c_str(), strerror(failure));
        stored([&] {
            Store::Statement(mStore, "DELETE FROM recordings WHERE id = ?").bind(item).run();
            return kOk;
        });
        return refuse(
                failure == ENOSPC ? QELTV_RECORDING_ERROR_DISK_FULL : QELTV_RECORDING_ERROR_WRITE,
                kStorage);
    }
    fsync(directory.get());
    {
        std::lock_guard<std::mutex> guard(mLock);
        r.name = name;
        r.path = path;
        r.rate = rate;
        r.item = item;
        r.fd = fd;
        r.started = SteadyClock::now();
        r.error = QELTV_RECORDING_ERROR_NONE;
        r.status = QELTV_RECORDING_RUNS;
        mCurrent = r.handle;
    }
    ALOGI("recording %u of channel %u into %s", r.handle, r.channel.id, logText(path).c_str());
    notify(QELTV_RECORDING_STARTED_EVENT, r.handle, static_cast<uint64_t>(r.booking));
    mChanged = true;
    mWake.notify_one();
    return kOk;
}

int32_t Recorder::stop(uint32_t handle) {
    Lock operation(mOperation);
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    if (recording->status == QELTV_RECORDING_STOPPING) return store(*recording);
    if (recording->status != QELTV_RECORDING_RUNS) return kRefused;
    writeDue();
    // What was due may have filled the disk, or been the last.
    if (recording->status == QELTV_RECORDING_STOPPED) return kOk;
    if (recording->status != QELTV_RECORDING_RUNS) return kStorage;
    return finish(*recording, QELTV_STOP_USER, QELTV_RECORDING_ERROR_NONE);
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

int32_t Recorder::status(uint32_t handle) const {
    const auto recording = find(handle);
    std::lock_guard<std::mutex> guard(mLock);
    return recording != nullptr ? recording->status : kNotFound;
}

int32_t Recorder::error(uint32_t handle) const {
    const auto recording = find(handle);
    std::lock_guard<std::mutex> guard(mLock);
    return recording != nullptr ? recording->error : kNotFound;
}

int32_t Recorder::mode(uint32_t handle) const {
    const auto recording = find(handle);
    std::lock_guard<std::mutex> guard(mLock);
    return recording != nullptr ? recording->mode : kNotFound;
}

int32_t Recorder::sourceType(uint32_t handle) const {
    const auto recording = find(handle);
    std::lock_guard<std::mutex> guard(mLock);
    return recording != nullptr ? static_cast<int32_t>(recording->channel.medium) : kNotFound;
}

int32_t Recorder::position(uint32_t handle) const {
    const auto recording = find(handle);
    std::lock_guard<std::mutex> guard(mLock);
    return recording != nullptr ? static_cast<int32_t>(recording->seconds) : kNotFound;
}

int64_t Recorder::fileSize(uint32_t handle) const {
    const auto recording = find(handle);
    std::lock_guard<std::mutex> guard(mLock);
    return recording != nullptr ? recording->synced : kNotFound;
}

int32_t Recorder::fileName(uint32_t handle, std::string* name) const {
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    *name = recording->name;
    return kOk;
}

int32_t Recorder::setMode(uint32_t handle, uint32_t mode, int32_t value, uint32_t rate) {
    Lock operation(mOperation);
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    if (mode > QELTV_RECORDING_MODE_KIB || value < 0 ||
        (mode != QELTV_RECORDING_MODE_ENDLESS && value == 0) || rate > kRateLimitKib) {
        return kBadValue;
    }
    if (rate != 0 && recording->status != QELTV_RECORDING_OPENED) return kRefused;
    std::lock_guard<std::mutex> guard(mLock);
    recording->mode = static_cast<int32_t>(mode);
    recording->modeValue = value;
    if (rate != 0) recording->rate = rate * 1024;
    return kOk;
}

int32_t Recorder::setFileName(uint32_t handle, const std::string& name) {
    Lock operation(mOperation);
    const auto recording = find(handle);
    if (recording == nullptr) return kNotFound;
    if (!isFileName(name)) return kBadValue;
    if (recording->status != QELTV_RECORDING_OPENED) return kRefused;
    const Disk* const disk = this->disk(recording->disk);
    if (disk != nullptr && exists(disk->path + "/" + name)) return kRefused;
    std::lock_guard<std::mutex> guard(mLock);
    recording->name = name;
    return kOk;
}

int32_t Recorder::setChannel(uint32_t handle, uint32_t channel) {
    Lock operation(mOperation);
    const auto recording = find(handle);
    const auto found = mChannels(channel);
    if (recording == nullptr || !found) return kNotFound;
    if (recording->status != QELTV_RECORDING_OPENED) return kRefused;
    std::lock_guard<std::mutex> guard(mLock);
    recording->channel = *found;
    return kOk;
}

Recorder::Disk* Recorder::disk(uint32_t number) const {
    for (const auto& disk : mDisks) {
        if (disk->number == number) return disk.get();
    }
    return nullptr;
}

int32_t Recorder::setDisk(uint32_t handle, const std::string& path,
                          const QELTV_DISK_RECORD_T& record) {
    Lock operation(mOperation);
    const auto recording = find(handle);
    if (handle != 0 && recording == nullptr) return kNotFound;
    if (handle != 0 && recording->status != QELTV_RECORDING_OPENED) return kRefused;
    const uint64_t limit = record.limitLow | uint64_t{record.limitHigh} << 32;
    if (record.disk >= kDisks || limit > std::numeric_limits<int64_t>::max() ||
        record.rate > kRateLimitKib * 1024 || path.size() > 200) {
        return kBadValue;
    }
    Disk* const known = disk(record.disk);
    // The television's own disk stays where it is.
    const std::string where = path.empty() && known != nullptr ? known->path : path;
    if (record.disk == 0 && where != known->path) return kBadValue;
    if (!isDirectory(where)) return kNotFound;
    if (record.disk != 0) {
        const int32_t registered = checkDisk(where, true);
        if (registered != kOk) return registered;
    }
    const bool used = std::any_of(mOpen.begin(), mOpen.end(), [&](const auto& open) {
        return open.second->disk == record.disk && open.second->status == QELTV_RECORDING_RUNS;
    });
    if (used && where != known->path) return kRefused;
    const uint32_t rate = record.rate != 0   ? record.rate
                          : known != nullptr ? known->rate
                                             : kDefaultRate;
    const int32_t code = stored([&] {
        Store::Statement(mStore, "INSERT OR REPLACE INTO recorder_disks VALUES (?, ?, ?, ?)")
                .bind(int64_t{record.disk})
                .bind(where)
                .bind(static_cast<int64_t>(limit))
                .bind(int64_t{rate})
                .run();
        return kOk;
    });
    if (code != kOk) return code;
    {
        std::lock_guard<std::mutex> guard(mLock);
        const Disk disk{record.disk, where, static_cast<int64_t>(limit), rate, true};
        if (known != nullptr) {
            *known = disk;
        } else {
            mDisks.push_back(std::make_unique<Disk>(disk));
        }
        if (recording != nullptr) recording->disk = record.disk;
    }
    return stored([this] {
        recover();
        return kOk;
    });
}

int32_t Recorder::command(uint32_t command, uint32_t value) {
    Lock operation(mOperation);
    switch (command) {
        case QELTV_COMMAND_DISK_REMOVED:
        case QELTV_COMMAND_DISK_INSERTED: {
            Disk* const disk = this->disk(value);
            if (disk == nullptr) return kNotFound;
            const bool there = command == QELTV_COMMAND_DISK_INSERTED;
            if (there && !openDisk(disk->path)) return kRefused;
            {
                std::lock_guard<std::mutex> guard(mLock);
                disk->present = there;
            }
            if (!there) {
                writeDue();
                return kOk;
            }
            return stored([this] {
                recover();
                return kOk;
            });
        }
        case QELTV_COMMAND_STANDBY: {
            int32_t code = kOk;
            for (const auto& [handle, recording] : Handles(mOpen)) {
                if (recording->status != QELTV_RECORDING_RUNS || recording->booking != 0) continue;
                if (finish(*recording, QELTV_STOP_STANDBY, QELTV_RECORDING_ERROR_NONE) != kOk)
                    code = kStorage;
            }
            return code;
        }
        default:
            return kBadValue;
    }
}

int32_t Recorder::command(uint32_t command, uint32_t value, int32_t extra,
                          const std::string& text) {
    if (command < QELTV_COMMAND_PROGRAMME_NAME) return this->command(command, value);
    Lock operation(mOperation);
    const auto recording = find(value);
    if (recording == nullptr) return kNotFound;
    std::string programme = recording->programme;
    uint32_t rating = recording->rating;
    uint32_t retention = recording->retention;
    if (command == QELTV_COMMAND_PROGRAMME_NAME && text.size() <= 120) {
        programme = text;
    } else if (command == QELTV_COMMAND_RATING && extra >= 0) {
        rating = static_cast<uint32_t>(extra);
    } else if (command == QELTV_COMMAND_RETENTION && extra >= 0) {
        retention = static_cast<uint32_t>(extra);
    } else {
        return kBadValue;
    }
    if (recording->item != 0) {
        const int32_t code = stored([&] {
            Store::Statement(mStore,
                             "UPDATE recordings SET programme = ?, rating = ?, retention = ?"
                             " WHERE id = ?")
                    .bind(programme)
                    .bind(int64_t{rating})
                    .bind(int64_t{retention})
                    .bind(recording->item)
                    .run();
            return kOk;
        });
        if (code != kOk) return code;
    }
    std::lock_guard<std::mutex> guard(mLock);
    recording->programme = programme;
    recording->rating = rating;
    recording->retention = retention;
    return kOk;
}

int64_t Recorder::usedBytes(const Disk& disk) {
    int64_t used = 0;
    DIR* const directory = opendir(disk.path.c_str());
    if (directory == nullptr) return 0;
    while (const dirent* entry = readdir(directory)) {
        struct stat info {};
        if (fstatat(dirfd(directory), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(info.st_mode)) {
            used += info.st_size;
        }
    }
    closedir(directory);
    return used;
}

int64_t Recorder::totalBytes(const Disk& disk) {
    struct statvfs info {};
    if (statvfs(disk.path.c_str(), &info) != 0) return 0;
    const auto size = static_cast<int64_t>(info.f_blocks * info.f_frsize);
    return disk.limit != 0 ? std::min(disk.limit, size) : size;
}

int64_t Recorder::freeBytes(const Disk& disk) {
    struct statvfs info {};
    if (!disk.present || statvfs(disk.path.c_str(), &info) != 0) return 0;
    const auto free = static_cast<int64_t>(info.f_bavail * info.f_frsize);
    if (disk.limit == 0) return free;
    return std::max<int64_t>(0, std::min(free, disk.limit - usedBytes(disk)));
}

int64_t Recorder::totalBytes(uint32_t number) const {
    std::unique_lock<std::mutex> guard(mLock);
    const Disk* const found = disk(number);
    if (found == nullptr) return kNotFound;
    const Disk disk = *found;
    guard.unlock();
    return totalBytes(disk);
}

int64_t Recorder::freeBytes(uint32_t number) const {
    std::unique_lock<std::mutex> guard(mLock);
    const Disk* const found = disk(number);
    if (found == nullptr) return kNotFound;
    const Disk disk = *found;
    guard.unlock();
    return freeBytes(disk);
}

/** Free bytes, for which recordings go that are kept no longer than until now, the oldest first. */
int64_t Recorder::makeRoom(const Disk& disk, int64_t wanted) {
    int64_t free = freeBytes(disk);
    if (free >= wanted) return free;
    stored([&] {
        const auto all = items();
        for (const RecordedItem& item : all) {
            if (item.retention == 0 || item.start + item.retention * kDay > mClock.now()) continue;
            if (item.path.compare(0, disk.path.size() + 1, disk.path + "/") != 0) continue;
            const auto place = placeOf(item.path);
            if (!place) continue;
            Store::Statement(mStore, "DELETE FROM recordings WHERE id = ?").bind(item.id).run();
            place->remove();
            ALOGI("%s went to make room", logText(item.path).c_str());
            free = freeBytes(disk);
            if (free >= wanted) break;
        }
        return kOk;
    });
    return free;
}

int32_t Recorder::registerDisk(const std::string& path) {
    const Descriptor directory = openDirectory(path);
    if (!directory) return kNotFound;
    std::string id;
    const int32_t code = stored([&] {
        id = mSettings.text(kDiskKey);
        if (id.empty()) {
            std::random_device random;
            id = std::to_string(random()) + "-" + std::to_string(random());
            mSettings.set(kDiskKey, id);
        }
        return kOk;
    });
    if (code != kOk) return code;
    const Descriptor file = makeFile(directory.get(), kRegisterFile);
    // Another user's file, a link, a pipe or a device in its place stays.
    if (!file) return errno == EINVAL || errno == EPERM ? kRefused : kStorage;
    const bool written = ftruncate(file.get(), 0) == 0 &&
                         writeAll(file.get(), id.data(), id.size()) && fsync(file.get()) == 0;
    if (!written) unlinkat(directory.get(), kRegisterFile, 0);
    fsync(directory.get());
    return written ? kOk : kStorage;
}

int32_t Recorder::checkDisk(const std::string& path, bool ours) const {
    const Descriptor directory = openDirectory(path);
    return directory ? registered(directory.get(), ours) : kNotFound;
}

/** Whether a directory has a register file, and this television's if it has to be ours. */
int32_t Recorder::registered(int directory, bool ours) const {
    const Descriptor file = openFile(directory, kRegisterFile, O_RDONLY);
    if (!file) return kNotFound;
    char id[128];
    const ssize_t size = read(file.get(), id, sizeof(id));
    if (size <= 0) return kNotFound;
    if (!ours) return kOk;
    return stored([&]() -> int32_t {
        return mSettings.text(kDiskKey) == std::string(id, static_cast<size_t>(size)) ? kOk
                                                                                      : kRefused;
    });
}

int32_t Recorder::measureDisk(const std::string& path, uint32_t mib) {
    if (mib > 256) return kBadValue;
    if (!isDirectory(path)) return kNotFound;
    std::string file = path + "/.qeltv-speed-XXXXXX";
    const Descriptor descriptor(mkostemp(file.data(), O_CLOEXEC));
    const int fd = descriptor.get();
    if (fd < 0) return kStorage;
    // Without a name nothing is left behind by a crash.
    unlink(file.c_str());
    const std::vector<uint8_t> block(1 << 20, 0x47);
    const uint32_t blocks = mib != 0 ? mib : 4;
    const auto begin = SteadyClock::now();
    bool done = true;
    for (uint32_t i = 0; i < blocks && done; ++i) done = writeAll(fd, block.data(), block.size());
    done = done && fdatasync(fd) == 0;
    const auto took =
            std::chrono::duration_cast<std::chrono::microseconds>(SteadyClock::now() - begin);
    if (!done) return kStorage;
    const int64_t rate = int64_t{blocks} * 1024 * 1000000 / std::max<int64_t>(1, took.count());
    return static_cast<int32_t>(std::min<int64_t>(rate, std::numeric_limits<int32_t>::max()));
}

int32_t Recorder::bookings() const {
    return stored([&] {
        Store::Statement row(mStore, "SELECT COUNT(*) FROM bookings");
        row.step();
        return static_cast<int32_t>(row.integer(0));
    });
}

std::optional<QELTV_SCHEDULE_RECORD_T> Recorder::bookingAt(uint32_t index) const {
    Store::Statement row(
            mStore, (std::string(kBookingColumns) + "ORDER BY start, id LIMIT 1 OFFSET ?").c_str());
    if (!row.bind(int64_t{index}).step()) return std::nullopt;
    return bookingOf(row);
}

int32_t Recorder::booking(uint32_t index, QELTV_SCHEDULE_RECORD_T* record) const {
    return stored([&]() -> int32_t {
        const auto found = bookingAt(index);
        if (!found) return kNotFound;
        *record = *found;
        if (const auto channel = mChannels(record->channel)) {
            fill(record->channelName, channel->name);
        }
        return kOk;
    });
}

bool Recorder::conflictsWithBookings(const QELTV_SCHEDULE_RECORD_T& record, uint32_t stream) const {
    std::vector<QELTV_SCHEDULE_RECORD_T> others;
    {
        Store::Statement rows(
                mStore,
                (std::string(kBookingColumns) + "WHERE id != ? AND state IN (0, 1)").c_str());
        rows.bind(int64_t{record.booking});
        while (rows.step()) others.push_back(bookingOf(rows));
    }
    return std::any_of(others.begin(), others.end(), [&](const QELTV_SCHEDULE_RECORD_T& other) {
        const auto channel = mChannels(other.channel);
        return channel && channel->stream != stream &&
               overlap(record.start, record.seconds, record.repeat, other.start, other.seconds,
                       other.repeat);
    });
}

int32_t Recorder::book(const QELTV_SCHEDULE_RECORD_T& record, uint32_t flags) {
    Lock operation(mOperation);
    if (record.seconds == 0 || record.seconds > kLongest || record.repeat > QELTV_BOOKING_WEEKLY ||
        record.rate > kRateLimitKib || record.start <= 0 ||
        record.start > std::numeric_limits<uint32_t>::max() ||
        (period(record.repeat) != 0 && record.seconds > period(record.repeat)) ||
        record.start + record.seconds <= mClock.now() ||
        (flags & ~QELTV_BOOK_IN_SPITE_OF_CONFLICT) != 0) {
        return kBadValue;
    }
    if (record.channel == 0) return kNotFound;
    const auto channel = mChannels(record.channel);
    if (!channel) return kNotFound;
    int64_t booking = record.booking;
    const int32_t code = stored([&]() -> int32_t {
        if (booking != 0) {
            Store::Statement row(mStore, "SELECT state FROM bookings WHERE id = ?");
            if (!row.bind(booking).step()) return kNotFound;
            if (row.integer(0) == QELTV_BOOKING_RUNS) return kRefused;
        } else if (bookings() >= static_cast<int32_t>(kBookingLimit)) {
            return kRefused;
        }
        if ((flags & QELTV_BOOK_IN_SPITE_OF_CONFLICT) == 0 &&
            conflictsWithBookings(record, channel->stream)) {
            return kRefused;
        }
        Store::Transaction transaction(mStore);
        if (booking == 0) {
            mStore.execute("INSERT INTO bookings VALUES (NULL, 0, 0, 0, 0, 0, '', 0, 0)");
            booking = mStore.lastId();
        }
        Store::Statement(mStore,
                         "UPDATE bookings SET channel = ?, start = ?, seconds = ?, repeat = ?,"
                         " rate = ?, programme = ?, state = 0, error = 0 WHERE id = ?")
                .bind(int64_t{record.channel})
                .bind(record.start)
                .bind(int64_t{record.seconds})
                .bind(int64_t{record.repeat})
                .bind(int64_t{record.rate})
                .bind(textOf(record.programme))
                .bind(booking)
                .run();
        transaction.commit();
        return kOk;
    });
    if (code != kOk) return code;
    notify(QELTV_BOOKING_STORED_EVENT, static_cast<uint64_t>(booking), 0);
    mChanged = true;
    mWake.notify_one();
    return static_cast<int32_t>(booking);
}

int32_t Recorder::deleteBooking(uint32_t index) {
    Lock operation(mOperation);
    std::optional<QELTV_SCHEDULE_RECORD_T> found;
    const int32_t code = stored([&]() -> int32_t {
        found = bookingAt(index);
        if (!found) return kNotFound;
        Store::Statement(mStore, "DELETE FROM bookings WHERE id = ?")
                .bind(int64_t{found->booking})
                .run();
        return kOk;
    });
    if (code != kOk) return code;
    for (const auto& [handle, recording] : Handles(mOpen)) {
        if (recording->booking != found->booking) continue;
        if (recording->status == QELTV_RECORDING_RUNS)
            finish(*recording, QELTV_STOP_USER, QELTV_RECORDING_ERROR_NONE);
    }
    notify(QELTV_BOOKING_DELETED_EVENT, found->booking, 0);
    return kOk;
}

bool Recorder::tunerBusy(uint32_t stream) const {
    return std::any_of(mOpen.begin(), mOpen.end(), [&](const auto& open) {
        return open.second->status == QELTV_RECORDING_RUNS && open.second->channel.stream != stream;
    });
}

bool Recorder::conflict(const QELTV_SOURCE_RECORD_T& first,
                        const QELTV_SOURCE_RECORD_T& second) const {
    if (first.kind != 0 || second.kind != 0) return false;
    const auto a = mChannels(first.id);
    const auto b = mChannels(second.id);
    if (!a || !b || a->stream == b->stream) return false;
    return first.seconds == 0 || second.seconds == 0 ||
           overlap(first.start, first.seconds, QELTV_BOOKING_ONCE, second.start, second.seconds,
                   QELTV_BOOKING_ONCE);
}

std::vector<RecordedItem> Recorder::items() const {
    Store::Statement rows(mStore, (std::string(kItemColumns) + "ORDER BY start, id").c_str());
    std::vector<RecordedItem> items;
    while (rows.step()) items.push_back(qeltvd::itemOf(rows));
    return items;
}

size_t Recorder::itemCount() const {
    Store::Statement row(mStore, "SELECT COUNT(*) FROM recordings WHERE stop_reason != 0");
    row.step();
    return static_cast<size_t>(row.integer(0));
}

std::optional<RecordedItem> Recorder::itemAt(uint32_t index) const {
    Store::Statement row(
            mStore, (std::string(kItemColumns) + "ORDER BY start, id LIMIT 1 OFFSET ?").c_str());
    if (!row.bind(int64_t{index}).step()) return std::nullopt;
    return qeltvd::itemOf(row);
}

std::optional<RecordedItem> Recorder::itemOf(const std::string& path) const {
    Store::Statement row(mStore, (std::string(kItemColumns) + "AND path = ?").c_str());
    if (!row.bind(path).step()) return std::nullopt;
    return qeltvd::itemOf(row);
}

int32_t Recorder::deleteItem(uint32_t index) {
    Lock operation(mOperation);
    return stored([&]() -> int32_t {
        const auto item = itemAt(index);
        if (!item) return kNotFound;
        // Out of the way first, so that it can come back when the list cannot be written.
        const auto place = placeOf(item->path);
        const bool there = place && place->size() >= 0;
        const int directory = there ? place->directory.get() : -1;
        const std::string aside = there ? kDeleting + place->name : "";
        if (there && renameat(directory, place->name.c_str(), directory, aside.c_str()) != 0) {
            return kStorage;
        }
        try {
            Store::Statement(mStore, "DELETE FROM recordings WHERE id = ?").bind(item->id).run();
        } catch (const StoreError&) {
            if (there) renameat(directory, aside.c_str(), directory, place->name.c_str());
            throw;
        }
        if (there) unlinkat(directory, aside.c_str(), 0);
        return kOk;
    });
}

void Recorder::notify(int32_t type, uint64_t first, uint64_t second) {
    mNotifier.event(&Notifier::Callback::a_hidl_record_pvr_status_nfy_fct, type, {first, second});
}

}  // namespace qeltvd
