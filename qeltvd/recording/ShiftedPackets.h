#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "PacketRing.h"
#include "PacketSource.h"

namespace qeltvd {

/**
 * The packets of a service for one viewer: those that are broadcast, and those of the timeshift
 * while the viewer is behind. If the viewer moves, each PID begins anew with a unit, after a packet
 * that marks the discontinuity.
 */
class ShiftedPackets : public PacketSource {
  public:
    /** What the viewer sees. */
    struct Place {
        /** Null for what is broadcast. */
        std::shared_ptr<const PacketRing> ring;
        /** Up to where it is played. */
        int64_t end = 0;
        /** Another number if the viewer has moved otherwise than by playing forward. */
        uint64_t turn = 0;
    };

    /** @param place called for each reading */
    ShiftedPackets(std::unique_ptr<PacketSource> live, std::function<Place()> place);

    int64_t arrived(std::chrono::milliseconds elapsed) override;
    size_t read(uint8_t* buffer, size_t size) override;

  private:
    void takeLive(std::chrono::milliseconds elapsed, bool shifted);
    void takeShifted(const Place& place);
    /** The packets that follow continue none of those before. */
    void interrupt();
    void append(const uint8_t* packets, size_t size);
    void append(const uint8_t* packet);
    void markDiscontinuity(const uint8_t* next);

    const std::unique_ptr<PacketSource> mLive;
    const std::function<Place()> mPlace;
    int64_t mLiveRead = 0;
    uint64_t mTurn = 0;
    /** Where the ring is read next. */
    int64_t mNext = 0;

    /** Counts the interruptions. */
    uint64_t mInterruptions = 0;
    struct Pid {
        bool given = false;
        /** Since the interruption there was a unit. */
        bool begun = false;
        /** The one that the last packet came after. */
        uint64_t interruption = 0;
    };
    std::map<uint16_t, Pid> mPids;
    bool mAwaitsTables = false;

    /** Packets for the viewer, of which some have been read. */
    std::vector<uint8_t> mPackets;
    size_t mGiven = 0;
    int64_t mRead = 0;
};

}  // namespace qeltvd
