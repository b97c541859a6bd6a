#ifndef QELTVAPI_SHARE_MEMORY_H
#define QELTVAPI_SHARE_MEMORY_H

#include <hidl/HidlSupport.h>
#include <stdint.h>

namespace qeltvapi {

/**
 * A buffer shared with the service, for bulk results. It lives for one call on one thread:
 *
 *     QelTvApiShareMemory memory(bytes);
 *     if (memory.m_status >= 0) {
 *         service->method(memory.m_handle, ...);
 *         if (void* p = memory.getPointer()) { copy out }
 *         memory.commit();
 *     }
 *
 * The fields are for reading; only the class writes them.
 */
class QelTvApiShareMemory {
  public:
    /**
     * Allocates the buffer. Never throws: m_status reports whether it exists.
     *
     * @param length size in bytes, may be 0
     */
    explicit QelTvApiShareMemory(unsigned int length);

    /** Releases what is left and closes the buffer's descriptor. */
    ~QelTvApiShareMemory();

    QelTvApiShareMemory(const QelTvApiShareMemory&) = delete;
    QelTvApiShareMemory& operator=(const QelTvApiShareMemory&) = delete;

    /**
     * Maps the buffer at the first call and returns its address, valid until commit().
     *
     * @return null when the mapping fails, but MAP_FAILED from every later call: ask once
     */
    void* getPointer();

    /**
     * Unmaps the buffer and closes the allocator. The name notwithstanding nothing is published, as
     * the service writes into the buffer itself. The handle stays open. May be called again.
     */
    void commit();

    /** Allocator, -1 when not open. */
    int m_ion_fd;
    /** Descriptor of the buffer, owned by m_handle; -1 before allocation and after commit(). */
    int m_share_fd;
    /** The handle that goes to the service: one descriptor, no integers. Empty when there is no
     * buffer. */
    android::hardware::hidl_handle m_handle;
    /** Size in bytes. */
    uint32_t m_length;
    /** Handle of a legacy allocator; always -1. */
    int m_ion_handle;
    void* m_address;
    /** 0 once buffer and handle exist, else -1. */
    int m_status;
};

}  // namespace qeltvapi

#endif  // QELTVAPI_SHARE_MEMORY_H
