#pragma once

#include <cstdint>
#include <vector>

#include "StreamFacts.h"

namespace qeltvd::stream {

/** Whole sections, with their checksums, of a stream with one service. */
std::vector<uint8_t> associationSection(uint16_t streamId, uint16_t serviceId, uint16_t pmtPid);
std::vector<uint8_t> descriptionSection(uint16_t streamId, uint16_t originalNetworkId,
                                        const Service& service);
/** A programme map without the descriptors of conditional access; empty for one that is invalid. */
std::vector<uint8_t> clearMapSection(const std::vector<uint8_t>& section);

/** Writes packets of one PID with their continuity. */
class PacketWriter {
  public:
    explicit PacketWriter(uint16_t pid) : mPid(pid) {}

    void writeSection(const std::vector<uint8_t>& section, std::vector<uint8_t>* packets);
    /** @param reference ticks of 90 kHz for a clock reference in the first packet */
    void writePes(const std::vector<uint8_t>& pes, std::vector<uint8_t>* packets,
                  std::optional<uint64_t> reference = {}, bool randomAccess = false);

  private:
    const uint16_t mPid;
    uint8_t mCounter = 0;
};

}  // namespace qeltvd::stream
