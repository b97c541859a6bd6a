#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "ChannelLists.h"

namespace qeltvd {

/** The snapshots that clients have made, by handle. All functions may be called on any thread. */
class ChannelSnapshots {
  public:
    using Snapshot = std::shared_ptr<const ChannelSnapshot>;

    /**
     * Keeps a snapshot of a process until it is released. When there are too many, one whose
     * process is gone is dropped.
     *
     * @return its handle, 0 when too many are kept
     */
    uint32_t keep(Snapshot snapshot, pid_t owner);
    /** Null when the handle is not one of a snapshot of that kind. */
    Snapshot find(uint32_t handle, ChannelSnapshot::Kind kind) const;
    /** Returns kNotFound for a handle of another kind. */
    int32_t release(uint32_t handle, ChannelSnapshot::Kind kind);

  private:
    static constexpr size_t kLimit = 16;

    struct Kept {
        Snapshot snapshot;
        pid_t owner;
    };

    mutable std::mutex mLock;
    // Guarded by mLock.
    std::map<uint32_t, Kept> mKept;
    uint32_t mNext = 1;
};

}  // namespace qeltvd
