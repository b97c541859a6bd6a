#include <errno.h>
#include <fcntl.h>
#include <ion/ion.h>
#include <stdint.h>
#include <stdio.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <limits>

#include "IonPool.h"
#include "hidlhost/ion_faults.h"

namespace hidlhost {
namespace {

constexpr int kSteps = static_cast<int>(IonStep::CLOSE) + 1;

struct Fault {
    /** 0: no fault. */
    std::atomic<int> result{0};
    std::atomic<unsigned> skip{0};
};

Fault gFaults[kSteps];
std::atomic<bool> gLegacy{false};
std::atomic<uint64_t> gOpened{0};
std::atomic<uint64_t> gClosed{0};
std::atomic<uint64_t> gAllocated{0};
std::atomic<uint64_t> gFreed{0};

Fault& faultOf(IonStep step) {
    return gFaults[static_cast<int>(step)];
}

/** The result that a step has to fail with now, or 0. */
int fails(IonStep step) {
    Fault& fault = faultOf(step);
    const int result = fault.result.load(std::memory_order_acquire);
    if (result == 0) {
        return 0;
    }
    unsigned skip = fault.skip.load();
    while (skip > 0 && !fault.skip.compare_exchange_weak(skip, skip - 1)) {
    }
    return skip > 0 ? 0 : result;
}

}  // namespace

IonFault::IonFault(IonStep step, int result, unsigned skip) : mStep(step) {
    faultOf(step).skip.store(skip);
    faultOf(step).result.store(result, std::memory_order_release);
}

IonFault::~IonFault() {
    faultOf(mStep).result.store(0, std::memory_order_release);
}

IonLegacy::IonLegacy() {
    gLegacy = true;
}

IonLegacy::~IonLegacy() {
    gLegacy = false;
}

IonCounts ionCounts() {
    return {gOpened, gClosed, gAllocated, gFreed};
}

void ionForgetBuffers() {
    IonPool::get().clear();
}

}  // namespace hidlhost

using hidlhost::fails;
using hidlhost::IonStep;

int ion_open() {
    if (const int result = fails(IonStep::OPEN)) {
        return result;
    }
    const int fd = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        return -errno;
    }
    ++hidlhost::gOpened;
    return fd;
}

int ion_close(int fd) {
    if (close(fd) != 0) {
        return -errno;
    }
    ++hidlhost::gClosed;
    return fails(IonStep::CLOSE);
}

int ion_alloc_fd(int fd, size_t len, size_t /*align*/, unsigned int heap_mask,
                 unsigned int /*flags*/, int* handle_fd) {
    if (const int result = fails(IonStep::ALLOC)) {
        return result;
    }
    if (fcntl(fd, F_GETFD) < 0) {
        return -errno;
    }
    if (heap_mask == 0) {
        return -ENODEV;
    }
    // More than a process can map, although a file can be as long.
    if (len > static_cast<size_t>(std::numeric_limits<ptrdiff_t>::max())) {
        return -ENOMEM;
    }
    int buffer = hidlhost::IonPool::get().allocate(len);
    if (buffer < 0) {
        return buffer;
    }
    if (fails(IonStep::MAP) != 0) {
        char path[32];
        snprintf(path, sizeof(path), "/proc/self/fd/%d", buffer);
        const int readOnly = open(path, O_RDONLY | O_CLOEXEC);
        const int error = errno;
        close(buffer);
        if (readOnly < 0) {
            return -error;
        }
        buffer = readOnly;
    }
    *handle_fd = buffer;
    ++hidlhost::gAllocated;
    return 0;
}

int ion_is_legacy(int /*fd*/) {
    return hidlhost::gLegacy ? 1 : 0;
}

int ion_free(int /*fd*/, ion_user_handle_t /*handle*/) {
    if (const int result = fails(IonStep::FREE)) {
        return result;
    }
    if (!hidlhost::gLegacy) {
        return -ENOTTY;
    }
    ++hidlhost::gFreed;
    return 0;
}
