#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Bytes.h"
#include "StreamStructs.h"
#include "StreamText.h"

/**
 * Sections as structs. Each function takes one whole section and returns nothing for one that is
 * not of its table, not whole or not valid; none reads beyond the section. Checksums are checked.
 */
namespace qeltvd::stream {

/** The header of a section of the long form. */
struct TableHeader {
    uint8_t tableId = 0;
    uint16_t extension = 0;
    uint8_t version = 0;
    bool current = true;
    uint8_t section = 0;
    uint8_t lastSection = 0;
};

/** Reads the header of a section of the long form. */
std::optional<TableHeader> tableHeader(Bytes section);
/** Whether a section is as long as it says, and its checksum right where it has one. */
bool isWhole(Bytes section);
/** The body of a caption service descriptor, which programme maps and events of ATSC have. */
std::vector<CaptionService> captionServices(Bytes body);

struct ProgramAssociation : TableHeader {
    uint16_t streamId() const { return extension; }
    struct Program {
        uint16_t number = 0;
        uint16_t pid = 0;
    };
    std::vector<Program> programs;
    std::optional<uint16_t> networkPid;
};
std::optional<ProgramAssociation> programAssociation(Bytes section);

struct ProgramMap : TableHeader {
    uint16_t serviceId() const { return extension; }
    /** 0x1fff for none. */
    uint16_t pcrPid = 0x1fff;
    std::vector<CaSystem> ca;
    std::vector<Component> components;
};
std::optional<ProgramMap> programMap(Bytes section);

struct ServiceTable : TableHeader {
    uint16_t streamId() const { return extension; }
    bool actual = true;
    uint16_t originalNetworkId = 0;
    std::vector<ServiceDescription> services;
};
std::optional<ServiceTable> serviceTable(Bytes section);

/** A network or a bouquet. */
struct NetworkTable : TableHeader {
    uint16_t id() const { return extension; }
    bool actual = true;
    bool bouquet = false;
    std::string name;
    std::string authority;
    std::vector<NetworkStream> streams;
};
std::optional<NetworkTable> networkTable(Bytes section);

struct EventTable : TableHeader {
    uint16_t serviceId() const { return extension; }
    bool actual = true;
    bool presentFollowing = true;
    uint16_t streamId = 0;
    uint16_t originalNetworkId = 0;
    uint8_t segmentLastSection = 0;
    uint8_t lastTableId = 0;
    /** Without events whose start is undefined. */
    std::vector<Event> events;
};
std::optional<EventTable> eventTable(Bytes section);

/** TDT or TOT. */
std::optional<Time> timeTable(Bytes section);

struct ApplicationTable : TableHeader {
    std::vector<Application> applications;
};
std::optional<ApplicationTable> applicationTable(Bytes section);

// ATSC and cable.

struct MasterGuide : TableHeader {
    struct Entry {
        enum Type : uint16_t {
            kTerrestrialChannels = 0x0000,
            kCableChannels = 0x0002,
            kChannelText = 0x0004,
            kFirstEvents = 0x0100,
            kLastEvents = 0x017f,
            kFirstEventText = 0x0200,
            kLastEventText = 0x027f,
            kFirstRatings = 0x0301,
            kLastRatings = 0x03ff,
        };
        uint16_t type = 0;
        uint16_t pid = 0;
        uint8_t version = 0;
    };
    std::vector<Entry> tables;
};
std::optional<MasterGuide> masterGuide(Bytes section);

struct ChannelTable : TableHeader {
    uint16_t streamId() const { return extension; }
    bool cable = false;
    std::vector<VirtualChannel> channels;
};
std::optional<ChannelTable> channelTable(Bytes section);

/** ATSC's events; their texts have a title only. */
struct AtscEventTable : TableHeader {
    uint16_t sourceId() const { return extension; }
    std::vector<Event> events;
};
/** @param utcOffset seconds between GPS time and UTC, as the system time table has it */
std::optional<AtscEventTable> atscEventTable(Bytes section, int64_t utcOffset);

struct ExtendedText : TableHeader {
    uint16_t sourceId = 0;
    /** None for the text of a channel. */
    std::optional<uint16_t> eventId;
    std::vector<LanguageText> texts;
};
std::optional<ExtendedText> extendedText(Bytes section);

struct SystemTime {
    Time time;
    uint8_t utcOffset = 0;
};
std::optional<SystemTime> systemTime(Bytes section);

std::optional<RatingRegion> ratingRegion(Bytes section);
std::optional<Alert> alert(Bytes section, int64_t utcOffset);

// Pictures.

/** The first sequence header in bytes of an elementary stream that is whole and valid. */
std::optional<PictureFormat> pictureFormat(Codec codec, Bytes stream);

}  // namespace qeltvd::stream
