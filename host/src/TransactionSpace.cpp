#include "TransactionSpace.h"

#include "Settings.h"

namespace hidlhost {
namespace {

/** A record is an object of 40 bytes in a device's stream, where 4 name it here, and an offset. */
constexpr size_t kRecordOnDevice = 44;

}  // namespace

size_t TransactionSpace::limit(bool oneway) {
    const size_t all = Settings::get().transactionBytes;
    return oneway ? all / 2 : all;
}

size_t TransactionSpace::sizeOf(const MessageHeader& header) {
    return static_cast<size_t>(padded(header.dataSize)) + header.recordCount * kRecordOnDevice +
           header.payloadSize;
}

TransactionSpace& TransactionSpace::make() {
    // Without a lock, which a child could find locked.
    static std::atomic<TransactionSpace*> all{nullptr};
    auto* space = new TransactionSpace;
    space->mNext = all.load();
    while (!all.compare_exchange_weak(space->mNext, space)) {
    }
    return *space;
}

void TransactionSpace::Share::reset() {
    if (mSpace == nullptr) return;
    mSpace->mUsed.fetch_sub(mBytes, std::memory_order_relaxed);
    if (mOneway) mSpace->mUsedOneway.fetch_sub(mBytes, std::memory_order_relaxed);
    mSpace = nullptr;
}

void TransactionSpace::takeAnyway(size_t bytes, bool oneway, Share* share) {
    share->reset();
    mUsed.fetch_add(bytes, std::memory_order_relaxed);
    if (oneway) mUsedOneway.fetch_add(bytes, std::memory_order_relaxed);
    share->mSpace = this;
    share->mBytes = bytes;
    share->mOneway = oneway;
}

bool TransactionSpace::take(size_t bytes, bool oneway, Share* share) {
    takeAnyway(bytes, oneway, share);
    if (mUsed.load(std::memory_order_relaxed) <= limit(false) &&
        (!oneway || mUsedOneway.load(std::memory_order_relaxed) <= limit(true))) {
        return true;
    }
    share->reset();
    return false;
}

}  // namespace hidlhost
