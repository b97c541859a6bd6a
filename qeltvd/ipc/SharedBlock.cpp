#include "SharedBlock.h"

#include <cutils/native_handle.h>
#include <errno.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qeltvd {

SharedBlock::SharedBlock(const android::hardware::hidl_handle& handle) {
    const native_handle_t* native = handle.getNativeHandle();
    if (native == nullptr || native->numFds < 1) return;
    struct stat status;
    if (fstat(native->data[0], &status) != 0 || !S_ISREG(status.st_mode)) return;
    mDescriptor = native->data[0];
    mSize = static_cast<uint64_t>(status.st_size);
}

void SharedBlock::append(const void* data, size_t size) {
    if (mBuffer.capacity() == 0) mBuffer.reserve(kBuffer);
    if (mBuffer.size() + size > kBuffer) flush();
    const auto* from = static_cast<const uint8_t*>(data);
    mBuffer.insert(mBuffer.end(), from, from + size);
}

bool SharedBlock::flush() {
    for (size_t done = 0; mGood && done < mBuffer.size();) {
        const ssize_t written = pwrite(mDescriptor, mBuffer.data() + done, mBuffer.size() - done,
                                       static_cast<off_t>(mWritten));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) {
            mGood = false;
            break;
        }
        done += static_cast<size_t>(written);
        mWritten += static_cast<uint64_t>(written);
    }
    mBuffer.clear();
    return mGood;
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
