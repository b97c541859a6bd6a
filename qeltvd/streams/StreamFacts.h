#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "StreamStructs.h"

namespace qeltvd::stream {

/** Which service of which stream; of ATSC no network, and the source id as service id. */
struct ServiceKey {
    uint16_t originalNetworkId = 0;
    uint16_t streamId = 0;
    uint16_t serviceId = 0;
    bool operator<(const ServiceKey& other) const {
        return std::tie(originalNetworkId, streamId, serviceId) <
               std::tie(other.originalNetworkId, other.streamId, other.serviceId);
    }
    bool operator==(const ServiceKey& other) const { return !(*this < other) && !(other < *this); }
};

/** One service of a multiplex, from all the tables that speak of it. */
struct Service {
    /** The service id of DVB, the program number. */
    uint16_t id = 0;
    uint16_t pmtPid = 0;
    /** 0x1fff for none. */
    uint16_t pcrPid = 0x1fff;
    /** Whether the programme map has come, and its version. */
    std::optional<uint8_t> mapVersion = {};
    std::vector<Component> components = {};
    std::vector<CaSystem> ca = {};
    /** The description of its broadcaster (SDT). */
    std::optional<ServiceDescription> description = {};
    /** Its entry in the virtual channel table (ATSC). */
    std::optional<VirtualChannel> channel = {};
    std::optional<LogicalNumber> number = {};
    std::optional<LogicalNumber> hdNumber = {};
    std::vector<Application> applications = {};
    std::optional<PictureFormat> format = {};
    /** The key of its events. */
    ServiceKey guideKey = {};
    /** Whether packets of its sound and pictures are scrambled at present. */
    bool scrambledNow = false;

    /** A name to show: of DVB, of ATSC, or "Service 1234". */
    std::string name() const;
    const Component* find(ComponentKind kind) const;
    bool isRadio() const;
    bool isData() const;
};

/** A network or a bouquet, from all sections of its table. */
struct Network {
    uint16_t id = 0;
    bool actual = false;
    bool bouquet = false;
    std::string name = {};
    std::vector<NetworkStream> streams = {};
};

/** All that is known of a multiplex. */
struct StreamFacts {
    /** Whether any packet has come, and whether an association table has. */
    bool signal = false;
    bool locked = false;
    bool atsc = false;
    uint16_t streamId = 0;
    uint16_t originalNetworkId = 0;
    uint16_t networkId = 0;
    std::string networkName = {};
    /** By id. */
    std::map<uint16_t, Service> services = {};
    /** Services of other streams that the stream describes. */
    std::map<ServiceKey, ServiceDescription> others = {};
    std::vector<Network> networks = {};
    std::optional<Time> time = {};
    std::vector<RatingRegion> ratings = {};
    std::vector<Alert> alerts = {};
    /**
     * A scan waits for these: the association table, all programme maps, and the descriptions of
     * this stream (SDT, NIT; VCT of ATSC).
     */
    bool mapsComplete = false;
    bool descriptionsComplete = false;
    bool networkComplete = false;
};

}  // namespace qeltvd::stream
