#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "Files.h"
#include "PacketSource.h"

namespace qeltvd {

/** The file of one recording, into which the packets of its source go. Used by one thread. */
class RecordingWriter {
  public:
    /** The recording starts with the object. */
    RecordingWriter(Descriptor file, std::string path, std::unique_ptr<PacketSource> source);

    static constexpr int64_t kPacketSize = stream::kPacketSize;
    /** Bytes of the whole packets in a number of bytes. */
    static constexpr int64_t wholePackets(int64_t bytes) {
        return bytes / kPacketSize * kPacketSize;
    }

    /** How far a recording goes by itself. */
    struct Limit {
        std::chrono::milliseconds time = std::chrono::milliseconds::max();
        int64_t bytes = std::numeric_limits<int64_t>::max();
    };

    /** Time since the start. */
    std::chrono::milliseconds elapsed() const;
    /**
     * Bytes of whole packets that have arrived within a limit and are not written; at most as many
     * as are written in one turn. 0 or less while there are none.
     */
    int64_t waiting(std::chrono::milliseconds elapsed, const Limit& limit) const;
    /** Writes packets through to the disk. @return 0 or the errno of the failure */
    [[nodiscard]] int write(int64_t bytes);
    /** Ends the file. */
    void close();
    /** Writes what is left of a stream's units when the recording ends. */
    void writeRest(const Limit& limit);

    const std::string& path() const { return mPath; }
    /** The length of what has been written, if the packets themselves have one. */
    std::optional<std::chrono::milliseconds> length() const { return mSource->length(); }
    /** The size of the file. */
    int64_t written() const { return mWritten; }

  private:
    using Clock = std::chrono::steady_clock;

    Descriptor mFile;
    const std::string mPath;
    const std::unique_ptr<PacketSource> mSource;
    const Clock::time_point mStarted = Clock::now();
    int64_t mWritten = 0;
};

}  // namespace qeltvd
