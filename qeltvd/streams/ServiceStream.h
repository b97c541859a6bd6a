#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "Packets.h"
#include "StreamFacts.h"
#include "TableWriter.h"

namespace qeltvd::stream {

/**
 * Makes a transport stream of one service out of the packets of its multiplex, as a recording
 * holds it: association, map and description tables of its own, and the components from a random
 * access point on, in whole units: one that has lost packets or was cut off is left out.
 * Continuity counters and clocks go on where the source begins anew. Not thread-safe.
 */
class ServiceStream {
  public:
    /** Packets of the multiplex after which it begins even without a random access point. */
    static constexpr uint64_t kLongestWait = 100000;

    /** @param map the section of the programme map as StreamCollector has it */
    ServiceStream(uint16_t streamId, uint16_t originalNetworkId, const Service& service,
                  const std::vector<uint8_t>& map);

    /** The service has other components or another name. */
    void update(const Service& service, const std::vector<uint8_t>& map);

    /** Appends what the packets have of the service to `packets`. */
    void push(const Batch& batch, std::vector<uint8_t>* packets);

    /** Appends the packets of whole units that wait for the end of another one. */
    void finish(std::vector<uint8_t>* packets);

    bool begun() const { return mBegun; }
    /** Seconds that the stream is long, by its clock references. */
    double seconds() const;

  private:
    /** A picture, a packet of sound or of text: from one start of a unit to the next one. */
    struct Unit {
        enum class State { kOpen, kWhole, kCut };
        State state = State::kOpen;
        /** Whether what follows needs it. */
        bool access = false;
        /** Bytes until its end, if its header says so. */
        std::optional<size_t> left;
    };
    struct Output {
        bool begun = false;
        uint8_t counter = 0;
        /** The counter of the source, and whether its packet came twice. */
        std::optional<uint8_t> sourceCounter;
        bool repeated = false;
        /** The one that is being received. */
        std::shared_ptr<Unit> unit;
    };
    /** A packet that waits for the end of its unit, or of one before it. */
    struct Held {
        std::array<uint8_t, kPacketSize> packet;
        std::shared_ptr<Unit> unit;
        uint64_t at;
    };
    /** Packets, and ticks of the clock, that a unit may take. */
    static constexpr size_t kMostHeld = 20000;
    static constexpr uint64_t kLongestUnit = ElapsedClock::kFrequency;

    bool isAccessPoint(const uint8_t* packet) const;
    bool mayBegin(const uint8_t* packet) const;
    /** Finds what is to be added to the times of the source. */
    void followClock(uint64_t reference);
    void writeTables(std::vector<uint8_t>* packets);
    enum class Step { kNext, kRepeated, kLost };
    Step follow(const uint8_t* packet, Output* output) const;
    /** Takes a packet into its unit, and gives what is whole. */
    void hold(const uint8_t* packet, Output* output, std::vector<uint8_t>* packets);
    void release(std::vector<uint8_t>* packets);
    static void cut(Output* output);
    void writePacket(const uint8_t* packet, std::vector<uint8_t>* packets);

    const uint16_t mStreamId;
    const uint16_t mOriginalNetworkId;
    Service mService;
    std::vector<uint8_t> mAssociation, mMap, mDescription;
    PacketWriter mAssociationWriter, mDescriptionWriter;
    std::optional<PacketWriter> mMapWriter;
    uint16_t mMapPid = kNullPid;
    std::map<uint16_t, Output> mOutputs;
    std::deque<Held> mHeld;
    std::optional<uint16_t> mVideo;
    Codec mCodec = Codec::kUnknown;
    bool mBegun = false;
    /** Packets of the multiplex since the picture was there last. */
    uint64_t mWaited = 0;
    /** Ticks of 90 kHz between the times of the source and those of the stream. */
    uint64_t mOffset = 0;
    std::optional<uint64_t> mLastReference;
    /** Nothing is written before a clock reference has come. */
    bool mClockKnown = false;
    /** Packets written since the tables. */
    uint64_t mSinceTables = 0;
    uint64_t mTablesAt = 0;
    ElapsedClock mElapsed;
};

}  // namespace qeltvd::stream
