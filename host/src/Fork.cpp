#define LOG_TAG "hidlhost"

#include "Fork.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <hidl/Static.h>
#include <log/log.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include "IonPool.h"
#include "Registry.h"
#include "Settings.h"
#include "Threads.h"

namespace hidlhost {
namespace {

using Clock = std::chrono::steady_clock;
namespace details = ::android::hardware::details;

/** What is done after that, still under the lock, is over by then. */
constexpr std::chrono::milliseconds kQuiet{1};
/** A process that does such things all the time forks nevertheless. */
constexpr std::chrono::milliseconds kLongestWait{50};

std::atomic<uint32_t> gGeneration{0};

std::array<std::atomic<void (*)()>, 8> gTasks{};
std::atomic<size_t> gTaskCount{0};

constexpr auto kLocks = static_cast<size_t>(ProcessLock::kCount);
std::array<std::mutex, kLocks> gLocks;

std::atomic<int> gForeignLocks{0};
std::atomic<Clock::rep> gLastForeignLock{0};

void waitForForeignLocks() {
    const auto deadline = Clock::now() + kLongestWait;
    for (auto now = Clock::now(); now < deadline; now = Clock::now()) {
        const Clock::time_point last{Clock::duration(gLastForeignLock.load())};
        if (gForeignLocks == 0 && now - last >= kQuiet) return;
        usleep(100);
    }
}

/** Those of the maps, before the process locks because none of those is held over a map's use. */
std::array<std::mutex*, 5> gMapLocks;

void prepare() {
    Settings::get();  // no other thread is in the middle of reading them then
    waitForForeignLocks();
    gMapLocks = {details::gBnMap->lock().release(), details::getBnConstructorMap().lock().release(),
                 details::getBsConstructorMap().lock().release(),
                 details::gServicePrioMap->lock().release(),
                 details::gServiceSidMap->lock().release()};
    for (std::mutex& lock : gLocks) lock.lock();
}

void release() {
    for (std::mutex& lock : gLocks) lock.unlock();
    for (std::mutex* lock : gMapLocks) lock->unlock();
}

bool isNode(const sockaddr_un& address, socklen_t size) {
    if (address.sun_family != AF_UNIX || size <= offsetof(sockaddr_un, sun_path)) return false;
    char path[sizeof(address.sun_path) + 1] = {};
    memcpy(path, address.sun_path, sizeof(address.sun_path));
    const char* slash = strrchr(path, '/');
    return slash != nullptr && registry::isSocket(slash + 1);
}

/** Whether the socket is a listener of this runtime, or one end of a connection to one. */
bool isConnection(int socket) {
    int type = 0;
    socklen_t size = sizeof(type);
    if (getsockopt(socket, SOL_SOCKET, SO_TYPE, &type, &size) < 0 || type != SOCK_SEQPACKET) {
        return false;
    }
    sockaddr_un address = {};
    size = sizeof(address);
    if (getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) < 0 ||
        address.sun_family != AF_UNIX) {
        return false;
    }
    if (isNode(address, size)) return true;
    size = sizeof(address);
    if (getpeername(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0) {
        return isNode(address, size);
    }
    // A thread that is about to connect has its bound for that already.
    timeval bound = {};
    size = sizeof(bound);
    return errno == ENOTCONN && getsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &bound, &size) == 0 &&
           (bound.tv_sec != 0 || bound.tv_usec != 0);
}

/**
 * Closes the sockets of all nodes, the lock of the registry and the pool of ION buffers. They are
 * known by their addresses and marks: a list would lack those that another thread was about to
 * enter.
 */
void closeInherited() {
    const std::string lockFile = registry::lockFile();
    if (lockFile.empty() && !IonPool::exists()) return;  // the parent has not used the runtime
    struct stat lock = {};
    const bool locked = !lockFile.empty() && stat(lockFile.c_str(), &lock) == 0;
    const int list = open("/proc/self/fd", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (list < 0) {
        ALOGW("/proc/self/fd cannot be read: %s; the child keeps its parent's connections",
              strerror(errno));
        return;
    }
    alignas(dirent64) char entries[4096];
    for (;;) {
        const long size = syscall(SYS_getdents64, list, entries, sizeof(entries));
        if (size <= 0) break;
        for (long at = 0; at < size;) {
            const auto* entry = reinterpret_cast<const dirent64*>(entries + at);
            at += entry->d_reclen;
            const int file = atoi(entry->d_name);
            struct stat status;
            if (entry->d_name[0] == '.' || file == list || fstat(file, &status) < 0) continue;
            const bool isLock =
                    locked && status.st_dev == lock.st_dev && status.st_ino == lock.st_ino;
            const bool own =
                    S_ISSOCK(status.st_mode) ? isConnection(file) : isLock || IonPool::owns(file);
            if (own) close(file);
        }
    }
    close(list);
}

void inChild() {
    ++gGeneration;
    gForeignLocks = 0;
    threadState() = ThreadState();
    const size_t count = gTaskCount;
    for (size_t i = 0; i < count; ++i) gTasks[i].load()();
    release();
    closeInherited();
}

[[maybe_unused]] const int sRegistered = pthread_atfork(prepare, release, inChild);

}  // namespace

uint32_t generation() {
    return gGeneration.load(std::memory_order_relaxed);
}

void onFork(void (*task)()) {
    const size_t at = gTaskCount;
    LOG_ALWAYS_FATAL_IF(at == gTasks.size(), "no place for one more task of a fork");
    gTasks[at] = task;
    gTaskCount = at + 1;
}

std::mutex& processMutex(ProcessLock which) {
    return gLocks[static_cast<size_t>(which)];
}

UnderForeignLock::UnderForeignLock() {
    ++gForeignLocks;
}

UnderForeignLock::~UnderForeignLock() {
    gLastForeignLock = Clock::now().time_since_epoch().count();
    --gForeignLocks;
}

void endStrayChild() {
    ALOGE("a child returned from a call that its parent serves, and ends; it can end itself or "
          "execute another program");
    _exit(EXIT_FAILURE);
}

}  // namespace hidlhost
