#include "ChannelSnapshots.h"

#include <algorithm>
#include <utility>

#include "Code.h"
#include "Process.h"

namespace qeltvd {

uint32_t ChannelSnapshots::keep(Snapshot snapshot, pid_t owner) {
    std::lock_guard<std::mutex> guard(mLock);
    if (mKept.size() >= kLimit) {
        const auto orphan = std::find_if(mKept.begin(), mKept.end(), [](const auto& each) {
            return !isAlive(each.second.owner);
        });
        if (orphan == mKept.end()) return 0;
        mKept.erase(orphan);
    }
    const uint32_t handle = mNext++;
    mKept[handle] = {std::move(snapshot), owner};
    return handle;
}

ChannelSnapshots::Snapshot ChannelSnapshots::find(uint32_t handle,
                                                  ChannelSnapshot::Kind kind) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mKept.find(handle);
    if (found == mKept.end() || found->second.snapshot->kind != kind) return nullptr;
    return found->second.snapshot;
}

int32_t ChannelSnapshots::release(uint32_t handle, ChannelSnapshot::Kind kind) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mKept.find(handle);
    if (found == mKept.end() || found->second.snapshot->kind != kind) return kNotFound;
    mKept.erase(found);
    return kOk;
}

}  // namespace qeltvd
