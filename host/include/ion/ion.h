#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * ION for a host without it: a buffer is a memfd, sealed so that its size stays what was asked for.
 *
 * All functions return 0 or a descriptor, and a negative errno on failure. Descriptors are closed
 * on exec. Buffers outlive the device descriptor and are released with their last descriptor and
 * mapping, in any process. Some of the memory released is kept for the next buffers of its size.
 */

typedef int ion_user_handle_t;

/**
 * Opens the allocator.
 *
 * @return a descriptor that the caller gives back with ion_close()
 */
int ion_open(void);

/**
 * Closes the allocator. Buffers stay.
 *
 * @param fd from ion_open(); closed even when the call fails
 */
int ion_close(int fd);

/**
 * Allocates a zeroed buffer that can be mapped for reading and writing and sent to other processes.
 *
 * @param fd         from ion_open()
 * @param len        size in bytes, may be 0
 * @param align      ignored, pages are aligned
 * @param heap_mask  which heaps may serve; not 0
 * @param flags      ignored
 * @param handle_fd  [out] descriptor of the buffer, the caller's to close; untouched on failure
 */
int ion_alloc_fd(int fd, size_t len, size_t align, unsigned int heap_mask, unsigned int flags,
                 int* handle_fd);

/**
 * Reports whether the allocator wants ion_free().
 *
 * @return 0, here buffers are never freed by handle
 */
int ion_is_legacy(int fd);

/**
 * Frees a buffer by its handle, on allocators that have handles.
 *
 * @return -ENOTTY, as this one has none
 */
int ion_free(int fd, ion_user_handle_t handle);

#ifdef __cplusplus
}
#endif
