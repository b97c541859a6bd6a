#include "Files.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace qeltvd {

namespace {

constexpr size_t kLongestName = 200;
constexpr mode_t kRightsOfOthers = 077;

/** The way to a file that is open, at which nobody can put another one. */
std::string pathOf(const Descriptor& descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor.get());
}

[[noreturn]] void refuse(const std::string& path, const std::string& why) {
    throw std::runtime_error(path + ": " + why);
}

[[noreturn]] void refuse(const std::string& path, const std::string& why, int error) {
    refuse(path, why + ": " + strerror(error));
}

/** The checks that files and directories share. */
void claim(const std::string& path, const Descriptor& found, const struct stat& info) {
    if (info.st_uid != geteuid()) {
        refuse(path, "belongs to another user (" + std::to_string(info.st_uid) +
                             "); remove it or choose another directory with --state");
    }
    const mode_t rights = info.st_mode & 07777;
    if ((rights & kRightsOfOthers) != 0 &&
        chmod(pathOf(found).c_str(), rights & ~kRightsOfOthers) != 0 && errno != EROFS) {
        refuse(path, "is open to other users, which cannot be changed", errno);
    }
    if (faccessat(AT_FDCWD, pathOf(found).c_str(), W_OK, AT_EACCESS) != 0) {
        refuse(path, "cannot be written", errno);
    }
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    std::swap(mDescriptor, other.mDescriptor);
    return *this;
}

Descriptor::~Descriptor() {
    // The caller still reads errno.
    const int error = errno;
    if (mDescriptor >= 0) close(mDescriptor);
    errno = error;
}

Descriptor openDirectory(const std::string& path) {
    if (path.empty() || path[0] != '/') {
        errno = ENOENT;
        return Descriptor();
    }
    return Descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

Descriptor openFile(int directory, const std::string& name, int flags) {
    // Opening a device can have an effect, so the kind of the file is checked first.
    const Descriptor found(openat(directory, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat info {};
    if (!found || fstat(found.get(), &info) != 0) return Descriptor();
    if (!S_ISREG(info.st_mode)) {
        errno = EINVAL;
        return Descriptor();
    }
    // A lease of another process holds up who opens the file, unless it does not wait.
    return Descriptor(open(pathOf(found).c_str(), flags | O_NONBLOCK | O_CLOEXEC));
}

Descriptor makeFile(int directory, const std::string& name) {
    Descriptor made(openat(directory, name.c_str(),
                           O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (made || errno != EEXIST) return made;
    Descriptor file = openFile(directory, name, O_RDWR);
    struct stat info {};
    if (!file || fstat(file.get(), &info) != 0) return Descriptor();
    if (info.st_uid != geteuid() || info.st_nlink != 1) {
        errno = EPERM;
        return Descriptor();
    }
    return file;
}

off_t sizeOfFile(int directory, const std::string& name) {
    struct stat info {};
    const bool found = fstatat(directory, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
    return found && S_ISREG(info.st_mode) ? info.st_size : -1;
}

bool writeAll(int file, const void* data, size_t size) {
    const auto* from = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = write(file, from, size);
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        from += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

bool isFileName(const std::string& name) {
    return !name.empty() && name.size() <= kLongestName && name[0] != '.' &&
           std::all_of(name.begin(), name.end(), [](char c) {
               return c != '/' && static_cast<unsigned char>(c) >= ' ' && c != 0x7f;
           });
}

Descriptor claimDirectory(const std::string& path) {
    std::string bare = path;
    // A slash at the end follows a link.
    while (bare.size() > 1 && bare.back() == '/') bare.pop_back();
    std::error_code error;
    std::filesystem::create_directories(bare, error);
    if (error) refuse(path, "cannot be made: " + error.message());
    Descriptor found(open(bare.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat info {};
    if (!found || fstat(found.get(), &info) != 0) refuse(path, "cannot be opened", errno);
    if (!S_ISDIR(info.st_mode)) refuse(path, "is no directory; a link does not count as one");
    claim(path, found, info);
    return Descriptor(open(pathOf(found).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

void claimFile(const std::string& path) {
    const Descriptor found(open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!found && errno == ENOENT) return;
    struct stat info {};
    if (!found || fstat(found.get(), &info) != 0) refuse(path, "cannot be opened", errno);
    if (!S_ISREG(info.st_mode)) refuse(path, "is no regular file; remove it");
    if (info.st_nlink != 1) {
        refuse(path, "is a file that has another name as well; replace it by a copy");
    }
    claim(path, found, info);
}

}  // namespace qeltvd
