#include "IonPool.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "Fork.h"

namespace hidlhost {
namespace {

constexpr int kSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL;
/** Marks the pool's own descriptors. Neither flag has an effect on memory. */
constexpr int kMark = O_APPEND | O_NONBLOCK;

std::atomic<bool> gExists{false};

int create(size_t size) {
    const int file = memfd_create("ion", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (file < 0) return -errno;
    if (ftruncate(file, static_cast<off_t>(size)) != 0 || fcntl(file, F_ADD_SEALS, kSeals) != 0) {
        const int error = errno;
        close(file);
        return -error;
    }
    return file;
}

/** Opens another file description, which counts as an opener. That of memfd_create() does not. */
int openAgain(int file, int flags) {
    char path[32];
    snprintf(path, sizeof(path), "/proc/self/fd/%d", file);
    return open(path, O_RDWR | O_CLOEXEC | flags);
}

bool unused(int file) {
    // Opening a file under a lease signals the holder, by default with SIGIO, which kills. The end
    // of a lease brings the default back.
    fcntl(file, F_SETSIG, SIGURG);
    if (fcntl(file, F_SETLEASE, F_WRLCK) != 0) return false;
    fcntl(file, F_SETLEASE, F_UNLCK);
    return true;
}

}  // namespace

IonPool& IonPool::get() {
    return onePerProcess<IonPool>([] {
        gExists = true;
        return new IonPool;
    });
}

bool IonPool::exists() {
    return gExists;
}

bool IonPool::owns(int file) {
    const int flags = fcntl(file, F_GETFL);
    return flags >= 0 && (flags & kMark) == kMark && fcntl(file, F_GET_SEALS) == kSeals;
}

int IonPool::allocate(size_t size) {
    if (size < kSmallest || size > kMostBytes) return create(size);
    Buffer buffer;
    if (takeUnused(size, &buffer)) {
        memset(buffer.mapping, 0, size);
    } else {
        const int fresh = create(size);
        if (fresh < 0) return fresh;
        buffer.file = openAgain(fresh, kMark);
        if (buffer.file < 0) return fresh;
        close(fresh);
        buffer.size = size;
        // Without leases no buffer would ever come back.
        if (unused(buffer.file)) {
            buffer.mapping =
                    mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, buffer.file, 0);
        }
        if (buffer.mapping == nullptr || buffer.mapping == MAP_FAILED) {
            fcntl(buffer.file, F_SETFL, 0);  // the caller's from here on
            return buffer.file;
        }
        madvise(buffer.mapping, size, MADV_DONTFORK);
    }
    const int handedOut = openAgain(buffer.file, 0);
    const int error = errno;
    put(buffer);
    return handedOut < 0 ? -error : handedOut;
}

bool IonPool::takeUnused(size_t size, Buffer* buffer) {
    std::lock_guard<std::mutex> lock(mMutex);
    for (size_t i = mBuffers.size(); i-- > 0;) {
        if (mBuffers[i].size != size || !unused(mBuffers[i].file)) continue;
        *buffer = mBuffers[i];
        mBuffers.erase(mBuffers.begin() + static_cast<ptrdiff_t>(i));
        mBytes -= size;
        return true;
    }
    return false;
}

void IonPool::put(const Buffer& buffer) {
    std::vector<Buffer> dropped;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mBuffers.push_back(buffer);
        mBytes += buffer.size;
        while (mBuffers.size() > kMostBuffers || mBytes > kMostBytes) {
            mBytes -= mBuffers.front().size;
            dropped.push_back(mBuffers.front());
            mBuffers.erase(mBuffers.begin());
        }
    }
    for (const Buffer& old : dropped) {
        munmap(old.mapping, old.size);
        close(old.file);
    }
}

void IonPool::clear() {
    std::vector<Buffer> all;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        all.swap(mBuffers);
        mBytes = 0;
    }
    for (const Buffer& buffer : all) {
        munmap(buffer.mapping, buffer.size);
        close(buffer.file);
    }
}

}  // namespace hidlhost
