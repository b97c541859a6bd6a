#pragma once

#include <hidl/HidlSupport.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace qeltvd {

/**
 * A client's shared memory. Only a memfd that is sealed against shrinking counts as one: its pages
 * can be written in place, and no access to it waits for anybody.
 */
class SharedBlock {
  public:
    explicit SharedBlock(const android::hardware::hidl_handle& handle);
    ~SharedBlock();
    SharedBlock(const SharedBlock&) = delete;
    SharedBlock& operator=(const SharedBlock&) = delete;

    /** Whether it is a memory of at least so many bytes. */
    bool holds(uint64_t size) const { return mDescriptor >= 0 && mSize >= size; }

    /**
     * Memory for `count` records, to be constructed in it, at the beginning of the block. Null when
     * the block does not hold them or cannot be written.
     */
    template <class T>
    T* records(uint64_t count) {
        if (count > mSize / sizeof(T)) return nullptr;
        return static_cast<T*>(begin(static_cast<size_t>(count) * sizeof(T)));
    }
    /** Puts the first records into the block. False when it cannot be written. */
    bool publish(size_t bytes);

    bool write(const void* from, size_t size);
    bool read(void* to, size_t size) const;

  private:
    /** From here on mapping the block is quicker than copying into it. */
    static constexpr size_t kMapped = 256 * 1024;

    void* begin(size_t size);

    // Belongs to the handle, which outlives this.
    int mDescriptor = -1;
    uint64_t mSize = 0;
    void* mMapping = nullptr;
    size_t mMappedSize = 0;
    std::unique_ptr<uint8_t[]> mCopy;
};

}  // namespace qeltvd
