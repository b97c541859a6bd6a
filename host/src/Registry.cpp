#define LOG_TAG "hidlhost"

#include "Registry.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>

#include <dirent.h>
#include <fcntl.h>
#include <hidlhost/runtime_directory.h>
#include <log/log.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Fork.h"
#include "Socket.h"

using android::OK;
using android::status_t;

namespace hidlhost {
namespace registry {
namespace {

constexpr char kServicePrefix[] = "service.";
constexpr char kSocketPrefix[] = "node.";
constexpr char kLockFile[] = "lock";
constexpr char kNodeCharacters[] = "0123456789abcdef-";
constexpr char kFormat[] = "hidlhost 1";
/** For the lock; others hold it for less than a millisecond. */
constexpr std::chrono::milliseconds kLongestWait{200};

std::string fromEnvironment() {
    if (const char* set = getenv("QELTV_RUNTIME_DIR"); set != nullptr && *set != '\0') return set;
    if (const char* run = getenv("XDG_RUNTIME_DIR"); run != nullptr && *run != '\0') {
        return std::string(run) + "/hidl";
    }
    return "/tmp/hidl-" + std::to_string(geteuid());
}

/** Independent of where the process goes later. */
std::string chosenDirectory() {
    std::string path = fromEnvironment();
    if (path[0] != '/') {
        std::unique_ptr<char, decltype(&free)> here(getcwd(nullptr, 0), free);
        if (here != nullptr) path = std::string(here.get()) + "/" + path;
    }
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

/** Empty until one is usable. */
std::string& usableDirectory() {
    static std::string& directory = *new std::string;
    return directory;
}

/** The reason why the directory cannot be used; empty if it can. */
std::string makeDirectory(const std::string& path) {
    struct stat status;
    // Not followed: in a shared parent somebody else's link could lead anywhere.
    int result = lstat(path.c_str(), &status);
    if (result < 0 && errno == ENOENT) {
        if (mkdir(path.c_str(), 0700) < 0 && errno != EEXIST) {
            return std::string("cannot be made: ") + strerror(errno);
        }
        result = lstat(path.c_str(), &status);
    }
    if (result < 0) return strerror(errno);
    if (!S_ISDIR(status.st_mode)) return "is not a directory";
    if (status.st_uid != geteuid()) return "belongs to user " + std::to_string(status.st_uid);
    if ((status.st_mode & 077) != 0) {
        char mode[32];
        snprintf(mode, sizeof(mode), "is open to others (mode %04o)", status.st_mode & 07777);
        return mode;
    }
    return "";
}

/** File names keep what is in interface names; everything else becomes %XX. */
std::string escaped(const std::string& text) {
    std::string result;
    for (char character : text) {
        auto byte = static_cast<unsigned char>(character);
        if (isalnum(byte) || strchr("._-@:", byte) != nullptr) {
            result += character;
        } else {
            char code[4];
            snprintf(code, sizeof(code), "%%%02X", byte);
            result += code;
        }
    }
    return result;
}

std::string unescaped(const std::string& text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            result += static_cast<char>(strtoul(text.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string fileName(const std::string& interface, const std::string& instance) {
    return kServicePrefix + escaped(interface + "/" + instance);
}

std::string filePath(const std::string& name) {
    return directory() + "/" + name;
}

bool readEntry(const std::string& path, Entry* entry) {
    int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (file < 0) return false;
    char text[256];
    ssize_t size = read(file, text, sizeof(text) - 1);
    close(file);
    if (size <= 0) return false;
    text[size] = '\0';
    char node[129];
    unsigned long long object;
    if (sscanf(text, "hidlhost 1\nnode %128s\nobject %llu\n", node, &object) != 2) return false;
    if (!isNodeName(node)) return false;
    entry->node = node;
    entry->object = object;
    return true;
}

template <typename Visitor>
void forEachFile(const char* prefix, Visitor visit) {
    if (directory().empty()) return;
    DIR* files = opendir(directory().c_str());
    if (files == nullptr) return;
    std::vector<std::string> names;
    size_t length = strlen(prefix);
    while (dirent* file = readdir(files)) {
        if (strncmp(file->d_name, prefix, length) == 0) names.emplace_back(file->d_name);
    }
    closedir(files);
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) visit(name, name.substr(length));
}

}  // namespace

std::string lockFile() {
    std::lock_guard<std::mutex> lock(processMutex(ProcessLock::kDirectory));
    const std::string& usable = usableDirectory();
    return usable.empty() ? "" : usable + "/" + kLockFile;
}

const std::string& directory() {
    // Looked at again as long as it is not usable: it may be put right in the meantime.
    static std::string& complaint = *new std::string;
    std::lock_guard<std::mutex> lock(processMutex(ProcessLock::kDirectory));
    std::string& usable = usableDirectory();
    if (!usable.empty()) return usable;
    std::string path = chosenDirectory();
    std::string reason = makeDirectory(path);
    if (reason.empty()) {
        usable = path;
    } else if (complaint != path + reason) {
        complaint = path + reason;
        ALOGE("the runtime directory %s %s", path.c_str(), reason.c_str());
    }
    return usable;
}

std::string socketPath(const std::string& node) {
    return filePath(kSocketPrefix + node);
}

bool isSocket(const char* file) {
    const size_t length = strlen(kSocketPrefix);
    return strncmp(file, kSocketPrefix, length) == 0 && file[length] != '\0' &&
           file[length + strspn(file + length, kNodeCharacters)] == '\0';
}

bool isNodeName(const std::string& text) {
    return !text.empty() && text.size() <= 64 &&
           text.find_first_not_of(kNodeCharacters) == std::string::npos;
}

Lock::Lock() {
    const std::string path = filePath(kLockFile);
    mFile = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (mFile < 0) {
        // Without the directory there are no entries either.
        if (errno != ENOENT) ALOGW("%s cannot be opened: %s", path.c_str(), strerror(errno));
        return;
    }
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + kLongestWait;
    while (flock(mFile, LOCK_EX | LOCK_NB) < 0) {
        if (Clock::now() >= deadline) {
            ALOGW("%s is held by another process; going on without it", path.c_str());
            close(mFile);
            mFile = -1;
            return;
        }
        usleep(1000);
    }
}

Lock::~Lock() {
    if (mFile < 0) return;
    // A child that has the same open file would keep the lock otherwise.
    flock(mFile, LOCK_UN);
    close(mFile);
}

bool ownsName(pid_t pid, const std::string& node) {
    const long named = atol(node.c_str());
    // A process of another container that is not below this one has no number here.
    if (pid == 0 || named == pid) return true;
    // A process of a container below has a number of its own there, the last of its line.
    const std::string path = "/proc/" + std::to_string(pid) + "/status";
    std::unique_ptr<FILE, decltype(&fclose)> file(fopen(path.c_str(), "re"), fclose);
    char line[256];
    while (file != nullptr && fgets(line, sizeof(line), file.get()) != nullptr) {
        if (strncmp(line, "NSpid:", 6) != 0) continue;
        const std::string numbers(line + 6, strcspn(line + 6, "\n"));
        const size_t last = numbers.find_last_of(" \t");
        return last != std::string::npos && atol(numbers.c_str() + last) == named;
    }
    return false;
}

status_t publish(const std::string& interface, const std::string& instance, const Entry& entry) {
    if (directory().empty()) return android::PERMISSION_DENIED;
    std::string name = fileName(interface, instance);
    std::string path = filePath(name);
    std::string fresh = filePath("new." + entry.node);
    std::string text = std::string(kFormat) + "\nnode " + entry.node + "\nobject " +
                       std::to_string(entry.object) + "\n";
    Lock lock;
    int file = open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0) {
        ALOGE("cannot write %s: %s", fresh.c_str(), strerror(errno));
        return -errno;
    }
    ssize_t size = write(file, text.data(), text.size());
    int error = size == static_cast<ssize_t>(text.size()) ? 0 : (size < 0 ? errno : ENOSPC);
    close(file);
    if (error == 0 && rename(fresh.c_str(), path.c_str()) < 0) error = errno;
    if (error != 0) {
        unlink(fresh.c_str());
        ALOGE("cannot write %s: %s", path.c_str(), strerror(error));
    }
    return -error;
}

bool find(const std::string& interface, const std::string& instance, Entry* entry) {
    if (directory().empty()) return false;
    return readEntry(filePath(fileName(interface, instance)), entry);
}

void withdraw(const std::string& interface, const std::string& instance, const Entry& entry) {
    if (directory().empty()) return;
    std::string path = filePath(fileName(interface, instance));
    Lock lock;
    Entry now;
    if (lock.held() && readEntry(path, &now) && now == entry) unlink(path.c_str());
}

void withdrawNode(const std::string& node) {
    if (directory().empty()) return;
    {
        Lock lock;
        forEachFile(kServicePrefix, [&](const std::string& name, const std::string&) {
            if (!lock.held()) return;
            Entry entry;
            if (readEntry(filePath(name), &entry) && entry.node == node) {
                unlink(filePath(name).c_str());
            }
        });
    }
    unlink(socketPath(node).c_str());
}

bool nameOfFile(const std::string& file, Name* name) {
    const size_t length = strlen(kServicePrefix);
    if (file.compare(0, length, kServicePrefix) != 0) return false;
    const std::string both = unescaped(file.substr(length));
    const size_t slash = both.find('/');
    if (slash == std::string::npos) return false;
    *name = {both.substr(0, slash), both.substr(slash + 1)};
    return true;
}

int32_t processOf(const std::string& node) {
    return static_cast<int32_t>(strtol(node.c_str(), nullptr, 10));
}

std::vector<Name> list() {
    std::vector<Name> names;
    forEachFile(kServicePrefix, [&](const std::string& file, const std::string&) {
        Name name;
        if (nameOfFile(file, &name)) names.push_back(std::move(name));
    });
    return names;
}

void sweep() {
    forEachFile(kSocketPrefix, [](const std::string& name, const std::string& node) {
        const pid_t pid = processOf(node);
        if (pid <= 0 || kill(pid, 0) == 0 || errno != ESRCH) return;
        // The number may mean nothing here and still be somebody's, in another container.
        android::base::unique_fd socket;
        if (connectTo(filePath(name), 100, &socket) == -ECONNREFUSED) {
            unlink(filePath(name).c_str());
        }
    });
}

}  // namespace registry

std::string runtimeDirectory() {
    return registry::directory();
}

}  // namespace hidlhost
