#define LOG_TAG "qeltvd"

#include "Disks.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <log/log.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>
#include <random>

#include "LogText.h"
#include "Stored.h"

namespace qeltvd {

namespace {

constexpr char kRegisterFile[] = ".qeltv-disk";
constexpr size_t kLongestId = 128;
/** Begins the name of a file that is being deleted; no recording's begins with a dot. */
constexpr char kAside[] = ".qeltv-deleting.";
constexpr char kDiskKey[] = "recorder.disk_id";

constexpr uint32_t kDefaultMeasureMib = 4;
constexpr uint32_t kMeasureLimitMib = 256;

std::string asideOf(const std::string& name) {
    return kAside + name;
}

/** The size of all files in a directory. */
int64_t usedBytes(const std::string& path) {
    int64_t used = 0;
    DIR* const directory = opendir(path.c_str());
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

std::vector<std::string> namesIn(const Descriptor& directory) {
    std::vector<std::string> names;
    DIR* const entries =
            fdopendir(openat(directory.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (entries == nullptr) return names;
    while (const dirent* entry = readdir(entries)) names.emplace_back(entry->d_name);
    closedir(entries);
    return names;
}

}  // namespace

Descriptor RecordingPlace::open() const {
    return openFile(mDirectory->get(), mName, O_RDONLY);
}

void RecordingPlace::cut(off_t size) const {
    const Descriptor file = makeFile(mDirectory->get(), mName);
    if (!file || ftruncate(file.get(), size) != 0) {
        ALOGW("%s cannot be cut: %s", logText(mName).c_str(), strerror(errno));
    }
}

void RecordingPlace::remove() const {
    unlinkat(mDirectory->get(), mName.c_str(), 0);
}

bool RecordingPlace::setAside() const {
    const int directory = mDirectory->get();
    return renameat(directory, mName.c_str(), directory, asideOf(mName).c_str()) == 0;
}

void RecordingPlace::bringBack() const {
    const int directory = mDirectory->get();
    const std::string aside = asideOf(mName);
    if (renameat2(directory, aside.c_str(), directory, mName.c_str(), RENAME_NOREPLACE) != 0) {
        ALOGW("%s cannot be renamed: %s", logText(aside).c_str(), strerror(errno));
    }
}

void RecordingPlace::removeAside() const {
    unlinkat(mDirectory->get(), asideOf(mName).c_str(), 0);
}

Disks::Disks(Settings& settings, std::string own) : mSettings(settings), mOwn(std::move(own)) {}

std::vector<Disk> Disks::all() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mDisks;
}

std::optional<Disk> Disks::find(uint32_t number) const {
    std::lock_guard<std::mutex> guard(mLock);
    for (const Disk& disk : mDisks) {
        if (disk.number == number) return disk;
    }
    return std::nullopt;
}

void Disks::put(const Disk& disk) {
    std::lock_guard<std::mutex> guard(mLock);
    for (Disk& known : mDisks) {
        if (known.number != disk.number) continue;
        known = disk;
        return;
    }
    mDisks.push_back(disk);
}

Descriptor Disks::open(const std::string& path) const {
    Descriptor directory = openDirectory(path);
    if (!directory || path == mOwn ||
        checkRegistered(directory.get(), Owner::kThisTelevision) == kOk) {
        return directory;
    }
    return Descriptor();
}

std::optional<RecordingPlace> Disks::placeOf(const std::string& path) const {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos || !isFileName(path.substr(slash + 1))) return std::nullopt;
    auto directory = std::make_shared<const Descriptor>(open(path.substr(0, slash)));
    if (!*directory) return std::nullopt;
    return RecordingPlace(std::move(directory), path.substr(slash + 1));
}

std::vector<RecordingPlace> Disks::setAside(const Disk& disk) const {
    std::vector<RecordingPlace> places;
    const auto directory = std::make_shared<const Descriptor>(open(disk.path));
    if (!*directory) return places;
    for (const std::string& aside : namesIn(*directory)) {
        if (aside.compare(0, strlen(kAside), kAside) != 0) continue;
        const std::string name = aside.substr(strlen(kAside));
        if (!isFileName(name) || sizeOfFile(directory->get(), aside) < 0) continue;
        places.emplace_back(directory, name);
    }
    return places;
}

Code Disks::registerDisk(const std::string& path) {
    const Descriptor directory = openDirectory(path);
    if (!directory) return kNotFound;
    std::string id;
    const Code code = stored([&] {
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

Code Disks::check(const std::string& path, Owner owner) const {
    const Descriptor directory = openDirectory(path);
    return directory ? checkRegistered(directory.get(), owner) : kNotFound;
}

Code Disks::checkRegistered(int directory, Owner owner) const {
    const Descriptor file = openFile(directory, kRegisterFile, O_RDONLY);
    if (!file) return kNotFound;
    char id[kLongestId];
    const ssize_t size = read(file.get(), id, sizeof(id));
    if (size <= 0) return kNotFound;
    if (owner == Owner::kAny) return kOk;
    return stored([&] {
        const bool ours = mSettings.text(kDiskKey) == std::string(id, static_cast<size_t>(size));
        return ours ? kOk : kRefused;
    });
}

int64_t Disks::totalBytes(const Disk& disk) {
    struct statvfs info {};
    if (statvfs(disk.path.c_str(), &info) != 0) return 0;
    const auto size = static_cast<int64_t>(info.f_blocks * info.f_frsize);
    return disk.limit != 0 ? std::min(disk.limit, size) : size;
}

int64_t Disks::freeBytes(const Disk& disk) {
    struct statvfs info {};
    if (!disk.present || statvfs(disk.path.c_str(), &info) != 0) return 0;
    const auto free = static_cast<int64_t>(info.f_bavail * info.f_frsize);
    if (disk.limit == 0) return free;
    return std::max<int64_t>(0, std::min(free, disk.limit - usedBytes(disk.path)));
}

int32_t Disks::measure(const std::string& path, uint32_t mib) {
    using Clock = std::chrono::steady_clock;
    if (mib > kMeasureLimitMib) return kBadValue;
    if (!openDirectory(path)) return kNotFound;
    std::string file = path + "/.qeltv-speed-XXXXXX";
    const Descriptor descriptor(mkostemp(file.data(), O_CLOEXEC));
    const int fd = descriptor.get();
    if (fd < 0) return kStorage;
    // A crash leaves nothing behind of a file without a name.
    unlink(file.c_str());
    const std::vector<uint8_t> block(1 << 20, 0x47);
    const uint32_t blocks = mib != 0 ? mib : kDefaultMeasureMib;
    const auto begin = Clock::now();
    bool done = true;
    for (uint32_t i = 0; i < blocks && done; ++i) done = writeAll(fd, block.data(), block.size());
    done = done && fdatasync(fd) == 0;
    const auto took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
    if (!done) return kStorage;
    const int64_t rate = int64_t{blocks} * 1024 * 1000000 / std::max<int64_t>(1, took.count());
    return static_cast<int32_t>(std::min<int64_t>(rate, std::numeric_limits<int32_t>::max()));
}

}  // namespace qeltvd
