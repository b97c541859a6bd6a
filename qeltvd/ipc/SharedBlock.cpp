#include "SharedBlock.h"

#include <cutils/native_handle.h>
#include <errno.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

namespace qeltvd {

SharedBlock::SharedBlock(const android::hardware::hidl_handle& handle) {
    const native_handle_t* native = handle.getNativeHandle();
    if (native == nullptr || native->numFds < 1) return;
    const int file = native->data[0];
    // Huge pages can be sealed too, and run out.
    struct statfs system;
    if (fstatfs(file, &system) != 0 || system.f_type != TMPFS_MAGIC) return;
    const int seals = fcntl(file, F_GET_SEALS);
    if (seals < 0 || (seals & F_SEAL_SHRINK) == 0) return;
    struct stat status;
    if (fstat(file, &status) != 0) return;
    mDescriptor = file;
    mSize = static_cast<uint64_t>(status.st_size);
}

SharedBlock::~SharedBlock() {
    if (mMapping != nullptr) munmap(mMapping, mMappedSize);
}

void* SharedBlock::begin(size_t size) {
    if (size < kMapped) {
        mCopy.reset(new uint8_t[size]);
        return mCopy.get();
    }
    void* mapping = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, mDescriptor, 0);
    if (mapping == MAP_FAILED) return nullptr;
    mMapping = mapping;
    mMappedSize = size;
    // Reports a lack of memory, which a first write would end the process for. Pages that were read
    // can be written. EINVAL: a kernel that does not know the advice.
    return madvise(mapping, size, MADV_POPULATE_READ) == 0 || errno == EINVAL ? mapping : nullptr;
}

bool SharedBlock::publish(size_t bytes) {
    return mMapping != nullptr || write(mCopy.get(), bytes);
}

bool SharedBlock::write(const void* from, size_t size) {
    for (size_t done = 0; done < size;) {
        const ssize_t part = pwrite(mDescriptor, static_cast<const uint8_t*>(from) + done,
                                    size - done, static_cast<off_t>(done));
        if (part < 0 && errno == EINTR) continue;
        if (part <= 0) return false;
        done += static_cast<size_t>(part);
    }
    return true;
}

bool SharedBlock::read(void* to, size_t size) const {
    for (size_t done = 0; done < size;) {
        const ssize_t part = pread(mDescriptor, static_cast<uint8_t*>(to) + done, size - done,
                                   static_cast<off_t>(done));
        if (part < 0 && errno == EINTR) continue;
        if (part <= 0) return false;
        done += static_cast<size_t>(part);
    }
    return true;
}

}  // namespace qeltvd
