#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "CaptionDecoder.h"
#include "Demux.h"
#include "EventStore.h"
#include "StreamFacts.h"
#include "Tables.h"
#include "TeletextDecoder.h"

namespace qeltvd::stream {

/** Kinds of changes, as bits. */
enum Change : uint32_t {
    /** Services, their components, names and numbers, networks, and what is scrambled. */
    kServicesChanged = 1,
    kEventsChanged = 2,
    kTimeChanged = 4,
    kAlertChanged = 8,
    kRatingsChanged = 16,
    kFormatChanged = 32,
    kApplicationsChanged = 64,
    kTeletextChanged = 128,
    kCaptionsChanged = 256,
};

/**
 * Reads all that the packets of one multiplex say. Its memory is bounded for any stream. Not
 * thread-safe.
 */
class StreamCollector {
  public:
    StreamCollector();

    /** @return the bits of Change */
    uint32_t push(const Batch& batch);

    StreamFacts facts() const;
    const EventStore& events() const { return mEvents; }
    const Demux& demux() const { return mDemux; }
    const std::optional<Time>& time() const { return mTime; }
    /** The key of a service's events. */
    ServiceKey keyOf(uint16_t serviceId) const;
    /** The section of the programme map, whole; empty while there is none. */
    std::vector<uint8_t> mapSection(uint16_t serviceId) const;

    /** The services whose teletext and captions are decoded; none at first. */
    void watch(const std::set<uint16_t>& services);
    /** Those of its streams of teletext; none for a service that is not watched or has none. */
    std::vector<const TeletextDecoder*> teletext(uint16_t serviceId) const;
    /** nullptr for a service that is not watched or has none. */
    const CaptionDecoder* captions(uint16_t serviceId) const;

  private:
    /** Which sections of a table there are. */
    struct Progress {
        uint8_t version = 0xff;
        uint8_t last = 0;
        std::set<uint8_t> seen;
        /** @return whether the table begins anew */
        bool add(const TableHeader& header);
        bool complete() const { return version != 0xff && seen.size() == size_t{last} + 1; }
    };
    struct Program {
        uint16_t pmtPid = 0;
        uint8_t section = 0;
        std::optional<ProgramMap> map;
        std::vector<uint8_t> bytes;
        std::optional<PictureFormat> format;
    };
    struct NetworkSections {
        Progress progress;
        bool actual = false;
        std::string name;
        std::map<uint8_t, std::vector<NetworkStream>> streams;
    };

    void section(uint16_t pid, const uint8_t* data, size_t size);
    bool isNew(uint16_t pid, Bytes section);
    void readAssociation(Bytes section);
    void readMap(uint16_t pid, Bytes section);
    void readDescriptions(Bytes section);
    void readNetwork(Bytes section);
    void readAtsc(uint16_t pid, Bytes section);
    void readGuide(Bytes section);
    void readApplications(uint16_t pid, Bytes section);
    /** Sets the filters that the tables so far ask for. */
    void setFilters();
    void filterTable(uint16_t pid);
    void picture(uint16_t pid, const PesPacket& packet);
    const LogicalNumber* numberOf(uint16_t serviceId, bool hd) const;

    Demux mDemux;
    EventStore mEvents;
    uint32_t mChanges = 0;
    bool mSignal = false;
    /** Checksums of sections by a hash of their place. */
    std::unordered_map<uint64_t, uint32_t> mKnown;
    /** The place of the section that is being read. */
    uint64_t mLastPlace = 0;

    Progress mAssociation;
    uint16_t mStreamId = 0;
    std::map<uint16_t, Program> mPrograms;
    Progress mDescriptionProgress;
    uint16_t mOriginalNetworkId = 0;
    std::map<uint16_t, ServiceDescription> mDescriptions;
    std::map<ServiceKey, ServiceDescription> mOthers;
    /** The ids under which the events of this stream's services are sent. */
    std::map<uint16_t, ServiceKey> mGuideKeys;
    /** Where the association table says that the network table is. */
    uint16_t mNetworkPid = 0x10;
    /** By bouquet or not, and id. */
    std::map<std::pair<bool, uint16_t>, NetworkSections> mNetworks;
    std::map<uint16_t, std::map<std::pair<uint16_t, uint8_t>, std::vector<Application>>>
            mApplications;
    std::optional<Time> mTime;

    bool mAtsc = false;
    int64_t mUtcOffset = 18;
    Progress mChannelProgress;
    /** Whether the channels come under the id of the association table. */
    bool mChannelsOfStream = false;
    std::map<uint8_t, std::vector<VirtualChannel>> mChannels;
    /** Numbers of the event tables by PID. */
    std::map<uint16_t, uint16_t> mGuidePids;
    std::map<uint8_t, RatingRegion> mRatings;
    std::vector<Alert> mAlerts;

    std::set<uint16_t> mTablePids;
    std::set<uint16_t> mPesPids;
    std::set<uint16_t> mWatched;
    std::map<uint16_t, std::unique_ptr<TeletextDecoder>> mTeletext;
    std::map<uint16_t, std::unique_ptr<CaptionDecoder>> mCaptions;
};

}  // namespace qeltvd::stream
