#pragma once

#include <hidl/HidlSupport.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qeltvd {

/**
 * A client's shared memory, written from its beginning with pwrite() rather than mapped: that is
 * quicker for a block that is written once, and a block that its owner has made too small is an
 * error and not a signal.
 */
class SharedBlock {
  public:
    explicit SharedBlock(const android::hardware::hidl_handle& handle);

    /** Whether it is a memory of at least so many bytes. */
    bool holds(uint64_t size) const { return mDescriptor >= 0 && mSize >= size; }

    /** Appends a record; what is appended is in the block after flush(). */
    void append(const void* data, size_t size);
    /** False when the memory could not be written. */
    bool flush();

    bool read(void* to, size_t size) const;

  private:
    static constexpr size_t kBuffer = 64 * 1024;

    // Of the handle, which outlives this.
    int mDescriptor = -1;
    uint64_t mSize = 0;
    uint64_t mWritten = 0;
    bool mGood = true;
    std::vector<uint8_t> mBuffer;
};

}  // namespace qeltvd
