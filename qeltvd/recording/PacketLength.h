#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace qeltvd {

/**
 * The length of a recording by the clock references of its packets, of which it reads samples.
 *
 * @param file of packets, open for reading
 * @param size bytes of its whole packets
 * @return nothing if it has fewer than two clock references or cannot be read
 */
std::optional<std::chrono::milliseconds> packetLength(int file, int64_t size);

}  // namespace qeltvd
