#pragma once

#include <vector>

#include "EmptyStream.h"
#include "LineUp.h"
#include "PacketSource.h"

namespace qeltvd {

/**
 * Simulated packets of a service: a black picture and silence, which every player opens, with null
 * packets up to a set rate. A rate below that of the picture makes it slower.
 */
class SimulatedPackets : public PacketSource {
  public:
    /** @param rate bytes per second */
    SimulatedPackets(const Channel& channel, uint32_t rate);

    int64_t arrived(std::chrono::milliseconds elapsed) override;
    size_t read(uint8_t* buffer, size_t size) override;

  private:
    stream::EmptyStream mStream;
    const int64_t mRate;
    /** Bytes read so far. */
    int64_t mRead = 0;
    int64_t mFrames = 0;
    /** Packets of frames that have begun, and how far they are read. */
    std::vector<uint8_t> mFrame;
    size_t mFrameRead = 0;
};

}  // namespace qeltvd
