#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "TransactionSpace.h"

namespace hidlhost {

/** The bytes and descriptors of one received message. Comes from and returns to a thread's cache.
 */
struct Block {
    uint8_t* bytes = nullptr;
    size_t capacity = 0;
    size_t size = 0;
    std::vector<int> descriptors;
    /** The receiving node's space that the message takes. */
    TransactionSpace::Share share;

    /** Room for a packet at least. Null without memory. */
    static Block* take();
    /** Closes the descriptors. */
    static void give(Block* block);

    /** Keeps `size` bytes. */
    bool reserve(size_t newCapacity);
    /** Keeps the first packet of what has come. */
    void shrink();
    void closeDescriptors();
};

struct BlockDeleter {
    void operator()(Block* block) const { Block::give(block); }
};

}  // namespace hidlhost
