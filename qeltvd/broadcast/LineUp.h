#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

namespace qeltvd {

/** How the signal comes; also the id of the lists that hold what comes so. */
enum class Medium : uint16_t { kAir = 1, kCable = 2, kSatellite = 3 };

enum class DeliverySystem : uint8_t {
    kUnknown = 0,
    kDvbT = 1,
    kDvbT2 = 2,
    kDvbC = 3,
    kDvbS = 4,
    kDvbS2 = 5,
    kAtsc = 6,
    /** ATSC's cable, 64 or 256 QAM. */
    kClearQam = 7,
    kIsdbT = 8,
};

enum class Modulation : uint8_t {
    kAuto = 0,
    kQpsk = 1,
    kPsk8 = 2,
    kApsk16 = 3,
    kApsk32 = 4,
    kQam16 = 5,
    kQam32 = 6,
    kQam64 = 7,
    kQam128 = 8,
    kQam256 = 9,
    kVsb8 = 10,
    kVsb16 = 11,
};

enum class Polarisation : uint8_t {
    kNone = 0,
    kHorizontal = 1,
    kVertical = 2,
    kLeft = 3,
    kRight = 4,
};

enum class ServiceType : uint8_t { kTelevision = 1, kRadio = 2, kData = 3 };

/** Families of standards: the broadcast types of the interface; 0 stands for any. */
enum class BroadcastType : uint32_t { kAny = 0, kDvb = 1, kAtsc = 2, kIsdb = 3 };

Medium mediumOf(DeliverySystem system);
BroadcastType broadcastTypeOf(DeliverySystem system);
/** Texts for people: "DVB-T2", "QAM 64", "horizontal". */
const char* nameOf(DeliverySystem system);
const char* nameOf(Modulation modulation);

/** One transport stream and how it is received. */
struct Multiplex {
    uint16_t list = 0;
    uint32_t recordId = 0;
    DeliverySystem system = DeliverySystem::kUnknown;
    Modulation modulation = Modulation::kAuto;
    Polarisation polarisation = Polarisation::kNone;
    /** Inner code rate as two hexadecimal digits, 0x34 for 3/4, 0x9a for 9/10; 0 automatic. */
    uint8_t codeRate = 0;
    uint64_t frequencyHz = 0;
    /** Symbols per second, of cable and satellite. */
    uint32_t symbolRate = 0;
    /** Of terrestrial signals. */
    uint32_t bandwidthHz = 0;
    /** Record id of the satellite, 0 for none. */
    uint32_t satellite = 0;
    /** In a scan table of a satellite: tenths of a degree, east positive. */
    int32_t position = 0;
    /** Record id of the network. */
    uint32_t network = 0;
    uint16_t originalNetworkId = 0;
    uint16_t networkId = 0;
    uint16_t streamId = 0;
    /** RF channel of ATSC, 0 elsewhere. */
    uint16_t rfChannel = 0;
    std::string name = {};
    /** In a scan table: where its packets come from, as openSource() has it; empty if simulated. */
    std::string stream = {};
};

/** How far two frequencies are apart. */
constexpr uint64_t apart(uint64_t a, uint64_t b) {
    return a > b ? a - b : b - a;
}
/** Whether a tuner that looks for one multiplex finds the other one, if a dish looks there. */
bool sameFrequency(const Multiplex& a, const Multiplex& b);
/** The same of two multiplexes of the channel data, whose satellites are known. */
bool sameReception(const Multiplex& a, const Multiplex& b);

/** One channel. */
struct Channel {
    uint16_t list = 0;
    uint32_t recordId = 0;
    /** See ChannelIds.h; follows from list, number and kind. */
    uint32_t channelId = 0;
    /** What the viewer dials: a number, or major << 16 | minor. */
    uint32_t number = 0;
    ServiceType type = ServiceType::kTelevision;
    /** CHANNEL_FLAG_ of layouts/channel_records.h. */
    uint32_t flags = 0;
    /** Record id of its multiplex in the list of the same id. */
    uint32_t multiplex = 0;
    uint16_t originalNetworkId = 0;
    uint16_t streamId = 0;
    /** Service id of DVB, program number of ATSC. */
    uint16_t serviceId = 0;
    uint16_t pmtPid = 0;
    uint16_t pcrPid = 0;
    uint16_t videoPid = 0;
    uint16_t audioPid = 0;
    std::string name = {};
    std::string provider = {};
    /** ISO 639 code of the main sound. */
    std::string language = {};
};

/** One satellite position and the dish that looks there. */
struct Satellite {
    uint32_t recordId = 0;
    std::string name = {};
    /** Tenths of a degree, east positive. */
    int32_t position = 0;
    uint32_t lowOscillatorKHz = 9750000;
    uint32_t highOscillatorKHz = 10600000;
    uint32_t switchKHz = 11700000;
    /** Input of the DiSEqC switch from 1, 0 for no switch. */
    uint8_t switchPort = 0;
    bool enabled = true;
};

struct Network {
    uint16_t list = 0;
    uint32_t recordId = 0;
    uint16_t networkId = 0;
    uint32_t satellite = 0;
    std::string name = {};
};

/** What can be received at a place: one scan table. */
struct Region {
    /** As in the configuration: "dvb-t/de-Berlin". */
    std::string name;
    Medium medium = Medium::kAir;
    /** Of a satellite region. */
    std::string satellite;
    int32_t position = 0;
    /** Directory of the table's file, from which the names of streams go; empty if built in. */
    std::string directory;
    /** Whether the streams' times are shifted by whole days so that they begin today. */
    bool streamsToday = false;
    /** Without ids of records; ids of streams and networks set. */
    std::vector<Multiplex> multiplexes;
};

/**
 * Reads a scan table. What it does not understand is left out. Beside the keys of such tables a
 * transponder can have `STREAM = file.ts | udp://... | rtp://... | pipe:command`, and the file,
 * before its first transponder, `TIME = broadcast | now`.
 */
Region readRegion(const std::string& name, std::istream& table);

/**
 * The regions that a configuration text names, separated by blanks or commas; in a name "*" stands
 * for any characters, as in "dvb-s/Astra*". Read from the scan tables of this machine, of which a
 * few are built in for machines without. A name that begins with a slash is a file of one's own,
 * whose transponders cannot have a `pipe:`, because clients may set the text. Names that there are
 * not are left out; nothing at all gives the built-in region of Berlin.
 *
 * @param files scan tables that the user of this machine has named, which come first and may run
 *              commands
 */
std::vector<Region> regions(const std::string& configured,
                            const std::vector<std::string>& files = {});

/** Where the scan tables are; QELTVD_SCAN_TABLES names another directory. */
std::string scanTables();

}  // namespace qeltvd
