#pragma once

#include <cstdint>
#include <vector>

#include "Packets.h"

namespace qeltvd::stream {

/**
 * Finds the packets in bytes that begin anywhere: of 188 bytes, of 192 with a time stamp before
 * each, or of 204 with check bytes behind each. Drops what is no packet and synchronises anew.
 */
class PacketAligner {
  public:
    /**
     * Appends the whole packets of the bytes so far to `packets`.
     *
     * @return whether bytes were dropped between packets
     */
    bool push(const uint8_t* bytes, size_t size, std::vector<uint8_t>* packets);
    /** The bytes are at their end: fewer packets than usual are enough to find them. */
    bool finish(std::vector<uint8_t>* packets);
    /** The next bytes do not continue those before. */
    void reset();

  private:
    bool take(std::vector<uint8_t>* packets, size_t certain);
    bool find(size_t certain);

    /** How many packets in a row make certain that they are some. */
    static constexpr size_t kCertain = 5;
    /** Bytes that are kept while none are found. */
    static constexpr size_t kLongest = 204 * (kCertain + 1);

    std::vector<uint8_t> mBytes;
    /** Bytes from one packet to the next; 0 while none are found. */
    size_t mStride = 0;
    /** Bytes behind the last packet that are still to come. */
    size_t mSkip = 0;
    bool mFirst = true;
};

}  // namespace qeltvd::stream
