#include "Block.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

#include <unistd.h>

#include "Threads.h"
#include "Wire.h"

namespace hidlhost {
namespace {

constexpr size_t kCached = 4;
/** A block that grew beyond this is given back to the system. */
constexpr size_t kKeptCapacity = 2 * 1024 * 1024;
/** So is every block that grew while all of them hold more than this beside a packet each. */
constexpr size_t kKeptInAll = 32 * 1024 * 1024;
std::atomic<size_t> gGrown{0};

/**
 * Trivially destructible, so that it can still be used while a thread's other objects end: a
 * parcel may be freed by the destructor of any of them. `closed` is set when the cache is drained.
 */
struct Cache {
    Block* blocks[kCached];
    size_t count;
    bool draining;
    bool closed;
};
FAST_THREAD_LOCAL Cache tCache;

void destroy(Block* block) {
    if (block->capacity > kPacketSize) gGrown -= block->capacity - kPacketSize;
    free(block->bytes);
    delete block;
}

struct Drain {
    ~Drain() {
        tCache.closed = true;
        while (tCache.count > 0) destroy(tCache.blocks[--tCache.count]);
    }
    void touch() {}
};
thread_local Drain tDrain;

}  // namespace

Block* Block::take() {
    if (tCache.count > 0) return tCache.blocks[--tCache.count];
    auto* block = new (std::nothrow) Block;
    if (block == nullptr) return nullptr;
    if (!block->reserve(kPacketSize)) {
        delete block;
        return nullptr;
    }
    return block;
}

void Block::give(Block* block) {
    if (block == nullptr) return;
    block->closeDescriptors();
    block->size = 0;
    block->share.reset();
    if (!tCache.draining) {
        tCache.draining = true;
        tDrain.touch();
    }
    // A block that was made to measure has no room for what is received next.
    if (tCache.closed || tCache.count == kCached || block->capacity < kPacketSize ||
        block->capacity > kKeptCapacity || (block->capacity > kPacketSize && gGrown > kKeptInAll)) {
        destroy(block);
        return;
    }
    tCache.blocks[tCache.count++] = block;
}

bool Block::reserve(size_t newCapacity) {
    if (newCapacity <= capacity) return true;
    void* grown = realloc(bytes, newCapacity);
    if (grown == nullptr) return false;
    bytes = static_cast<uint8_t*>(grown);
    if (newCapacity > kPacketSize) gGrown += newCapacity - std::max(capacity, kPacketSize);
    capacity = newCapacity;
    return true;
}

void Block::shrink() {
    if (capacity <= kPacketSize) return;
    size = std::min(size, kPacketSize);
    void* shrunk = realloc(bytes, kPacketSize);
    if (shrunk == nullptr) return;
    gGrown -= capacity - kPacketSize;
    bytes = static_cast<uint8_t*>(shrunk);
    capacity = kPacketSize;
}

void Block::closeDescriptors() {
    for (int descriptor : descriptors) close(descriptor);
    descriptors.clear();
}

}  // namespace hidlhost
