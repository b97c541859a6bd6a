// Loaded into a program by LD_PRELOAD: stands before SQLite, the system calls that SQLite makes and
// the threads of the C library, and has calls of them fail as the test says that has started the
// program.

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <string_view>

#include "shortage.h"

namespace {

constexpr int kIoError = 10;

wire::ShortageState* state() {
    static wire::ShortageState* const sState = []() -> wire::ShortageState* {
        const char* path = getenv(wire::kShortageVariable);
        const int fd = path != nullptr ? open(path, O_RDWR | O_CLOEXEC) : -1;
        if (fd < 0) return nullptr;
        void* memory = mmap(nullptr, sizeof(wire::ShortageState), PROT_READ | PROT_WRITE,
                            MAP_SHARED, fd, 0);
        close(fd);
        return memory != MAP_FAILED ? static_cast<wire::ShortageState*>(memory) : nullptr;
    }();
    return sState;
}

/** In sqlite3_exec(), which makes calls of its own and ignores some of their results. */
thread_local bool tExecutes = false;

bool statementFails() {
    wire::ShortageState* const shortage = state();
    if (tExecutes || shortage == nullptr || shortage->storePercent == 0) return false;
    static std::atomic<uint32_t> sCount{0};
    // The high bits of a multiplicative hash of the count, the same in every run.
    const uint32_t hash = sCount.fetch_add(1) * 2654435761u;
    if ((hash >> 8) % 100 >= shortage->storePercent) return false;
    ++shortage->failedStatements;
    return true;
}

bool isDatabase(int fd) {
    char link[32], path[4096];
    snprintf(link, sizeof(link), "/proc/self/fd/%d", fd);
    const ssize_t size = readlink(link, path, sizeof(path));
    if (size < 0) return false;
    const std::string_view name(path, static_cast<size_t>(size));
    return name.find("/television.db", name.rfind('/')) != name.npos;
}

/** Sets errno for a call that fails. */
bool fileCallFails(wire::FileCall call, int fd) {
    wire::ShortageState* const shortage = state();
    if (shortage == nullptr || (shortage->fileCalls & call) == 0 || !isDatabase(fd)) return false;
    if (shortage->fileGrace > 0) {
        --shortage->fileGrace;
        return false;
    }
    ++shortage->failedFileCalls;
    errno = shortage->fileError;
    return true;
}

template <class F>
F* next(const char* name) {
    return reinterpret_cast<F*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

#define INTERPOSED extern "C" __attribute__((visibility("default")))

INTERPOSED int sqlite3_step(void* statement) {
    static auto* const sNext = next<int(void*)>("sqlite3_step");
    return statementFails() ? kIoError : sNext(statement);
}

INTERPOSED int sqlite3_prepare_v2(void* database, const char* sql, int size, void** statement,
                                  const char** tail) {
    static auto* const sNext =
            next<int(void*, const char*, int, void**, const char**)>("sqlite3_prepare_v2");
    if (!statementFails()) return sNext(database, sql, size, statement, tail);
    *statement = nullptr;
    return kIoError;
}

INTERPOSED int sqlite3_exec(void* database, const char* sql,
                            int (*callback)(void*, int, char**, char**), void* argument,
                            char** error) {
    static auto* const sNext =
            next<int(void*, const char*, int (*)(void*, int, char**, char**), void*, char**)>(
                    "sqlite3_exec");
    if (statementFails()) return kIoError;
    tExecutes = true;
    const int result = sNext(database, sql, callback, argument, error);
    tExecutes = false;
    return result;
}

INTERPOSED ssize_t pwrite64(int fd, const void* data, size_t size, off64_t offset) {
    static auto* const sNext = next<ssize_t(int, const void*, size_t, off64_t)>("pwrite64");
    // SQLite calls again for the rest of a write.
    thread_local bool sHalved = false;
    if (!fileCallFails(wire::kFileWrite, fd)) {
        sHalved = false;
        return sNext(fd, data, size, offset);
    }
    sHalved = !sHalved;
    return sHalved ? sNext(fd, data, size / 2, offset) : -1;
}

INTERPOSED int fdatasync(int fd) {
    static auto* const sNext = next<int(int)>("fdatasync");
    return fileCallFails(wire::kFileSync, fd) ? -1 : sNext(fd);
}

INTERPOSED int ftruncate64(int fd, off64_t size) noexcept {
    static auto* const sNext = next<int(int, off64_t)>("ftruncate64");
    return fileCallFails(wire::kFileCut, fd) ? -1 : sNext(fd, size);
}

INTERPOSED int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*start)(void*), void* argument) {
    static auto* const sNext =
            next<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create");
    wire::ShortageState* const shortage = state();
    if (shortage == nullptr || shortage->noThreads == 0) {
        return sNext(thread, attributes, start, argument);
    }
    ++shortage->failedThreads;
    return EAGAIN;
}
