#include "SimulatedPackets.h"

#include <cstring>

namespace qeltvd {

namespace {

using stream::kPacketSize;

/** The header of a null packet: payload only, PID 0x1fff. */
constexpr uint8_t kNullHeader[] = {0x47, 0x1f, 0xff, 0x10};
constexpr uint8_t kFiller = 0xff;

}  // namespace

SimulatedPackets::SimulatedPackets(const Channel& channel, uint32_t rate)
        : mStream(channel.streamId, channel.originalNetworkId, channel.serviceId, channel.name,
                  channel.provider, channel.type != ServiceType::kTelevision, channel.language),
          mRate(rate) {}

int64_t SimulatedPackets::arrived(std::chrono::milliseconds elapsed) {
    return mRate * elapsed.count() / 1000;
}

size_t SimulatedPackets::read(uint8_t* buffer, size_t size) {
    for (size_t at = 0; at < size; at += kPacketSize, mRead += kPacketSize) {
        if (mFrameRead == mFrame.size() &&
            mRead * stream::EmptyStream::kFramesPerSecond >= mFrames * mRate) {
            mFrame.clear();
            mFrameRead = 0;
            mStream.frame(&mFrame);
            ++mFrames;
        }
        if (mFrameRead < mFrame.size()) {
            memcpy(buffer + at, mFrame.data() + mFrameRead, kPacketSize);
            mFrameRead += kPacketSize;
        } else {
            memcpy(buffer + at, kNullHeader, sizeof(kNullHeader));
            memset(buffer + at + sizeof(kNullHeader), kFiller, kPacketSize - sizeof(kNullHeader));
        }
    }
    return size;
}

}  // namespace qeltvd
