#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <hidl/HidlInternal.h>
#include <hidl/HidlSupport.h>

namespace android {
namespace hardware {

enum MQFlavor : uint32_t {
    kSynchronizedReadWrite = 0x01,
    kUnsynchronizedWrite = 0x02,
};

struct alignas(8) GrantorDescriptor {
    uint32_t flags;
    uint32_t fdIndex;
    uint32_t offset;
    alignas(8) uint64_t extent;
};

static_assert(sizeof(GrantorDescriptor) == 24, "wrong size");
static_assert(alignof(GrantorDescriptor) == 8, "wrong alignment");

/**
 * Names the layout of a message queue in shared memory. Generated code needs the type and its size;
 * the queues themselves are not part of this runtime.
 */
template <typename T, MQFlavor flavor>
struct MQDescriptor final {
    MQDescriptor() : mQuantum(0), mFlags(0) {
        static_assert(sizeof(MQDescriptor) == 32, "wrong size");
    }
    MQDescriptor(const MQDescriptor&) = delete;
    MQDescriptor& operator=(const MQDescriptor&) = delete;

    const hidl_vec<GrantorDescriptor>& grantors() const { return mGrantors; }
    const native_handle_t* handle() const { return mHandle; }
    uint32_t getQuantum() const { return mQuantum; }
    uint32_t getFlags() const { return mFlags; }
    bool isHandleValid() const { return mHandle != nullptr; }
    size_t countGrantors() const { return mGrantors.size(); }

    static constexpr size_t kOffsetOfGrantors = 0;
    static constexpr size_t kOffsetOfHandle = 16;

  private:
    hidl_vec<GrantorDescriptor> mGrantors;
    details::hidl_pointer<native_handle_t> mHandle;
    uint32_t mQuantum;
    uint32_t mFlags;
};

template <typename T>
using MQDescriptorSync = MQDescriptor<T, kSynchronizedReadWrite>;
template <typename T>
using MQDescriptorUnsync = MQDescriptor<T, kUnsynchronizedWrite>;

}  // namespace hardware
}  // namespace android
