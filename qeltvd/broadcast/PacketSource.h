#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "Packets.h"

namespace qeltvd {

/** The transport-stream packets of one recording. Used by one thread at a time. */
class PacketSource {
  public:
    PacketSource() = default;
    virtual ~PacketSource() = default;
    PacketSource(const PacketSource&) = delete;
    PacketSource& operator=(const PacketSource&) = delete;

    /**
     * The bytes that have arrived since the start of the recording, those included that have been
     * read. Never becomes less while the time grows.
     *
     * @param elapsed time since the start of the recording
     */
    [[nodiscard]] virtual int64_t arrived(std::chrono::milliseconds elapsed) = 0;

    /**
     * Reads the packets that follow those of the previous call.
     *
     * @param size a multiple of stream::kPacketSize; not more than has arrived and has not been
     * read
     * @return bytes read, a multiple of stream::kPacketSize; less than size if packets have been
     * lost
     */
    [[nodiscard]] virtual size_t read(uint8_t* buffer, size_t size) = 0;

    /** Takes no more packets; those that have arrived can still be read, and end whole. */
    virtual void finish() {}

    /** The length of what has been read by its clock references; nothing if time is its length. */
    virtual std::optional<std::chrono::milliseconds> length() const { return std::nullopt; }
};

}  // namespace qeltvd
