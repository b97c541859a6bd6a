#include "PacketLength.h"

#include <errno.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "Packets.h"

namespace qeltvd {

namespace {

using stream::kPacketSize;

constexpr auto kPacket = static_cast<int64_t>(kPacketSize);
/** Of the file, at most, beside its end. */
constexpr int64_t kSamples = 256;
/** Between samples at least. */
constexpr int64_t kSmallestStep = 4096 * kPacket;
/** Of a sample: more than 100 ms, in which a reference has to come, of the fastest multiplex. */
constexpr int64_t kSampleSize = 4096 * kPacket;
constexpr uint64_t kFrequency = stream::ElapsedClock::kFrequency;
constexpr uint64_t kWrap = (uint64_t{1} << 33) * 300;
/** A longer step between samples is a clock that was set. */
constexpr uint64_t kLongestStep = 6 * 3600 * kFrequency;

/** Finds references of one PID in a file. */
class Samples {
  public:
    Samples(int file, int64_t size) : mFile(file), mSize(size), mBlock(kSampleSize) {}

    /** The first reference from a place on. */
    std::optional<uint64_t> first(int64_t place) {
        const size_t size = read(place);
        for (size_t at = 0; at + kPacketSize <= size; at += kPacketSize) {
            if (const auto reference = referenceAt(at)) return reference;
        }
        return std::nullopt;
    }
    /** The last one of the file. */
    std::optional<uint64_t> last() {
        const int64_t packets = std::min(mSize, kSampleSize) / kPacket;
        size_t at = read(mSize - packets * kPacket);
        while (at >= kPacketSize) {
            at -= kPacketSize;
            if (const auto reference = referenceAt(at)) return reference;
        }
        return std::nullopt;
    }

  private:
    size_t read(int64_t place) {
        const auto wanted = static_cast<size_t>(std::min(mSize - place, kSampleSize));
        size_t size = 0;
        while (size < wanted) {
            const ssize_t count = pread(mFile, mBlock.data() + size, wanted - size,
                                        static_cast<off_t>(place + static_cast<int64_t>(size)));
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) break;
            size += static_cast<size_t>(count);
        }
        return size / kPacketSize * kPacketSize;
    }

    std::optional<uint64_t> referenceAt(size_t at) {
        const uint8_t* packet = mBlock.data() + at;
        if (packet[0] != stream::kSyncByte) return std::nullopt;
        const auto reference = stream::clockReference(packet);
        if (!reference) return std::nullopt;
        const uint16_t pid = stream::pidOf(packet);
        if (!mPid) mPid = pid;
        return pid == *mPid ? reference : std::nullopt;
    }

    const int mFile;
    const int64_t mSize;
    std::vector<uint8_t> mBlock;
    std::optional<uint16_t> mPid;
};

}  // namespace

std::optional<std::chrono::milliseconds> packetLength(int file, int64_t size) {
    Samples samples(file, size);
    const int64_t step = std::max(size / kSamples / kPacket * kPacket, kSmallestStep);
    std::optional<uint64_t> before;
    uint64_t elapsed = 0;
    bool any = false;
    const auto add = [&](std::optional<uint64_t> reference) {
        if (!reference) return;
        if (before) {
            const uint64_t passed = (*reference + kWrap - *before % kWrap) % kWrap;
            if (passed <= kLongestStep) elapsed += passed;
            // The last reference may be that of the last sample.
            any |= passed != 0;
        }
        before = reference;
    };
    for (int64_t place = 0; place < size; place += step) add(samples.first(place));
    add(samples.last());
    if (!any) return std::nullopt;
    return std::chrono::milliseconds(elapsed / (kFrequency / 1000));
}

}  // namespace qeltvd
