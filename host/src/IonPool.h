#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

namespace hidlhost {

/**
 * The buffers of the host's ION. A buffer goes back to the pool when its last user closes it, as
 * the pages of the platform's system heap do: its next use needs no new memory, only zeroing.
 *
 * A buffer ends with its last descriptor or mapping in any process, and no call reports that. The
 * kernel knows it: the pool's descriptor and the one handed out belong to two open files of the
 * memfd, and a write lease is granted only to a file's sole opener.
 */
class IonPool {
  public:
    static IonPool& get();

    /** A descriptor of a zeroed memfd, sealed at its size, or a negative errno. */
    int allocate(size_t size);

    /** Drops every buffer. Those in use end with their last user. */
    void clear();

    /** Whether the process, or a parent of it, has a pool. */
    static bool exists();
    /** Whether the descriptor is the pool's own. Allocates nothing and takes no lock. */
    static bool owns(int file);

  private:
    struct Buffer {
        int file = -1;
        void* mapping = nullptr;
        size_t size = 0;
    };

    /** A new memfd of a smaller size takes no longer than one of the pool. */
    static constexpr size_t kSmallest = 16 * 1024;
    static constexpr size_t kMostBuffers = 16;
    static constexpr size_t kMostBytes = 32 * 1024 * 1024;

    bool takeUnused(size_t size, Buffer* buffer);
    void put(const Buffer& buffer);

    std::mutex mMutex;
    size_t mBytes = 0;
    std::vector<Buffer> mBuffers;  // the one used last is last
};

}  // namespace hidlhost
