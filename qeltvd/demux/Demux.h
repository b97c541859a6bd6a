#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Packets.h"

namespace qeltvd::stream {

/** One packet of an elementary stream. */
struct PesPacket {
    uint16_t pid = 0;
    uint8_t streamId = 0;
    /** In ticks of 90 kHz. */
    std::optional<uint64_t> presentation;
    std::optional<uint64_t> decoding;
    /** The whole packet with its header, and what it carries. Cut at the limit of the filter. */
    const uint8_t* data = nullptr;
    size_t size = 0;
    const uint8_t* payload = nullptr;
    size_t payloadSize = 0;
};

/** Counts what passed on a PID. */
struct PidCounters {
    uint64_t packets = 0;
    /** Steps of the continuity counter that were none. */
    uint32_t continuityErrors = 0;
    /** Packets that the receiver marked as damaged. */
    uint32_t transportErrors = 0;
    /** Sections with a wrong checksum or length. */
    uint32_t sectionErrors = 0;
    uint64_t scrambled = 0;
    /** Whether the last packet with a payload was scrambled. */
    bool scrambledNow = false;
    /** The last clock reference, in ticks of 27 MHz. */
    std::optional<uint64_t> reference;
};

/**
 * Takes the packets of a transport stream apart: sections and packets of elementary streams by
 * PID. Memory is bounded by the number of filters. Handlers may set and remove filters.
 */
class Demux {
  public:
    /** A whole section whose checksum is right where it has one; valid during the call. */
    using SectionHandler = std::function<void(uint16_t pid, const uint8_t* section, size_t size)>;
    using PesHandler = std::function<void(const PesPacket& packet)>;

    static constexpr size_t kPesLimit = 1 << 16;

    Demux();
    ~Demux();
    Demux(const Demux&) = delete;
    Demux& operator=(const Demux&) = delete;

    /** A PID has one filter; the one before is replaced. PIDs above 0x1fff are ignored. */
    void filterSections(uint16_t pid, SectionHandler handler);
    /** @param limit bytes of each packet that are kept; the rest is left out */
    void filterPes(uint16_t pid, PesHandler handler, size_t limit = kPesLimit);
    void removeFilter(uint16_t pid);

    /** Scrambled packets reach no filter, so a descrambler comes before. */
    void push(const Batch& batch);

    const PidCounters& counters(uint16_t pid) const;
    /** Packets of all PIDs. */
    uint64_t packets() const { return mPackets; }
    /** How often any PID has become scrambled or clear. */
    uint64_t scramblingChanges() const { return mScramblingChanges; }
    /** Seconds of the stream so far, by the clock references of its first PID with some. */
    double seconds() const;
    /** Bits per second of a PID, the average so far; 0 before there are clock references. */
    uint64_t bitsPerSecond(uint16_t pid) const;

  private:
    struct Filter;

    void packet(const uint8_t* packet);
    void section(uint16_t pid, const std::shared_ptr<Filter>& filter, const uint8_t* payload,
                 size_t size, bool start);
    bool finishSections(uint16_t pid, const std::shared_ptr<Filter>& filter);
    void pes(uint16_t pid, const std::shared_ptr<Filter>& filter, const uint8_t* payload,
             size_t size, bool start);
    void finishPes(uint16_t pid, const std::shared_ptr<Filter>& filter);

    std::vector<PidCounters> mCounters;
    /** The last continuity counter of each PID with the generation that it belongs to. */
    struct Continuity {
        uint32_t generation = 0;
        uint8_t counter = 0;
        bool repeated = false;
    };
    std::vector<Continuity> mContinuity;
    /** Counts the discontinuities of all PIDs. */
    uint32_t mGeneration = 1;
    std::vector<std::shared_ptr<Filter>> mFilters;
    uint64_t mPackets = 0;
    uint64_t mScramblingChanges = 0;
    std::optional<uint16_t> mReferencePid;
    ElapsedClock mElapsed;
};

}  // namespace qeltvd::stream
