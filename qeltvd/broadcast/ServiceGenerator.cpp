#include "ServiceGenerator.h"

#include <algorithm>
#include <iterator>

#include "Random.h"
#include "layouts/channel_records.h"

namespace qeltvd {
namespace {

constexpr const char* kFirst[] = {
        "Alder",   "Amber",   "Arbor",  "Aster",    "Basalt", "Birch",     "Bluff",    "Brücke",
        "Cairn",   "Cedar",   "Cobalt", "Coral",    "Delta",  "Élan",      "Ember",    "Falke",
        "Fjord",   "Garnet",  "Granit", "Harbour",  "Heron",  "Indigo",    "Iris",     "Juniper",
        "Kestrel", "Königs",  "Lagune", "Larch",    "Linden", "Lumen",     "Maple",    "Meridian",
        "Mistral", "Ñandú",   "Nimbus", "Onyx",     "Orchid", "Pebble",    "Pinnacle", "Quarz",
        "Rowan",   "Saffron", "Sierra", "Solstice", "Tundra", "Überblick", "Vega",     "Willow",
};

constexpr const char* kTelevision[] = {
        "One",     "Two",     "News",   "Sport",   "Cinema",  "Kids",     "Music",  "Nature",
        "History", "World",   "Life",   "Classic", "Comedy",  "Drama",    "Docu",   "Regional",
        "Arts",    "Science", "Travel", "Kitchen", "Weather", "Business", "Family", "Action",
};

constexpr const char* kRadio[] = {"Radio", "FM",   "Jazz", "Klassik", "Pop",
                                  "Talk",  "Rock", "Info", "Folk",    "Dance"};

struct Country {
    const char* code;
    const char* language;
};

constexpr Country kCountries[] = {
        {"at", "deu"}, {"au", "eng"}, {"be", "nld"}, {"br", "por"}, {"ca", "eng"}, {"ch", "deu"},
        {"cz", "ces"}, {"de", "deu"}, {"dk", "dan"}, {"es", "spa"}, {"fi", "fin"}, {"fr", "fra"},
        {"gr", "ell"}, {"hr", "hrv"}, {"hu", "hun"}, {"ie", "eng"}, {"il", "heb"}, {"it", "ita"},
        {"lt", "lit"}, {"lu", "ltz"}, {"lv", "lav"}, {"nl", "nld"}, {"no", "nor"}, {"nz", "eng"},
        {"pl", "pol"}, {"pt", "por"}, {"ro", "ron"}, {"se", "swe"}, {"si", "slv"}, {"sk", "slk"},
        {"tw", "zho"}, {"uk", "eng"}, {"us", "eng"}, {"vn", "vie"},
};

/** Of satellites, which serve many countries. */
constexpr const char* kLanguages[] = {"eng", "deu", "fra", "ita", "spa", "pol", "ara", "tur"};

uint64_t seedOf(const Region& region, const Multiplex& multiplex) {
    uint64_t hash = UINT64_C(0xcbf29ce484222325);
    const auto take = [&hash](uint8_t byte) { hash = (hash ^ byte) * UINT64_C(0x100000001b3); };
    for (const char c : region.name) take(static_cast<uint8_t>(c));
    for (int i = 0; i < 64; i += 8) take(static_cast<uint8_t>(multiplex.frequencyHz >> i));
    take(static_cast<uint8_t>(multiplex.polarisation));
    take(static_cast<uint8_t>(multiplex.system));
    return hash;
}

std::string languageOf(const Region& region, Random& random) {
    if (region.medium == Medium::kSatellite) return random.of(kLanguages);
    const size_t slash = region.name.find('/');
    for (const Country& country : kCountries) {
        if (region.name.compare(slash + 1, 2, country.code) == 0) return country.language;
    }
    return "eng";
}

uint32_t howMany(DeliverySystem system, Random& random) {
    switch (system) {
        case DeliverySystem::kDvbT2:
            return random.between(5, 9);
        case DeliverySystem::kDvbC:
        case DeliverySystem::kDvbS2:
            return random.between(6, 12);
        case DeliverySystem::kDvbS:
            return random.between(4, 9);
        case DeliverySystem::kAtsc:
            return random.between(2, 5);
        case DeliverySystem::kClearQam:
            return random.between(3, 7);
        case DeliverySystem::kIsdbT:
            return random.between(1, 3);
        default:
            return random.between(3, 6);
    }
}

bool isHighDefinition(DeliverySystem system, uint32_t index) {
    switch (system) {
        case DeliverySystem::kDvbT2:
        case DeliverySystem::kDvbS2:
            return true;
        case DeliverySystem::kAtsc:
        case DeliverySystem::kClearQam:
        case DeliverySystem::kIsdbT:
            return index == 0;
        default:
            return false;
    }
}

}  // namespace

std::vector<Channel> generateServices(const Region& region, const Multiplex& multiplex) {
    Random random(seedOf(region, multiplex));
    const bool atsc = broadcastTypeOf(multiplex.system) == BroadcastType::kAtsc;
    const bool air = mediumOf(multiplex.system) == Medium::kAir;
    const uint32_t count = howMany(multiplex.system, random);
    const uint32_t firstId = atsc ? 1 : random.between(0x40, 0x6ff) * 0x20;
    const std::string provider = std::string(random.of(kFirst)) + " Media";

    std::vector<Channel> services;
    for (uint32_t i = 0; i < count; ++i) {
        Channel service;
        service.list = multiplex.list;
        service.originalNetworkId = multiplex.originalNetworkId;
        service.streamId = multiplex.streamId;
        service.serviceId = static_cast<uint16_t>(firstId + i);
        // The first one is always a picture, so that every multiplex has one.
        service.type = i == 0             ? ServiceType::kTelevision
                       : random.oneIn(40) ? ServiceType::kData
                       : random.oneIn(6)  ? ServiceType::kRadio
                                          : ServiceType::kTelevision;
        const bool television = service.type == ServiceType::kTelevision;
        const bool high = television && isHighDefinition(multiplex.system, i);
        service.flags = CHANNEL_FLAG_VISIBLE;
        if (high) service.flags |= CHANNEL_FLAG_HD;
        if (!air && random.oneIn(5)) service.flags |= CHANNEL_FLAG_SCRAMBLED;
        if (air && !random.oneIn(10)) service.flags |= CHANNEL_FLAG_LCN;
        if (atsc && multiplex.rfChannel != 0) {
            service.number = uint32_t{multiplex.rfChannel} << 16 | (i + 1);
            service.flags |= CHANNEL_FLAG_LCN;
        }

        const auto pid = static_cast<uint16_t>(0x100 + i * 0x10);
        service.pmtPid = pid;
        if (television) service.videoPid = static_cast<uint16_t>(pid + 1);
        if (service.type != ServiceType::kData) service.audioPid = static_cast<uint16_t>(pid + 2);
        service.pcrPid = television ? service.videoPid : service.audioPid;

        std::string name = random.of(kFirst);
        switch (service.type) {
            case ServiceType::kTelevision:
                name += std::string(" ") + random.of(kTelevision) + (high ? " HD" : "");
                break;
            case ServiceType::kRadio:
                name += std::string(" ") + random.of(kRadio);
                break;
            case ServiceType::kData:
                name += " Data";
                break;
        }
        const auto taken = [&](const std::string& wanted) {
            return std::any_of(services.begin(), services.end(),
                               [&](const Channel& each) { return each.name == wanted; });
        };
        service.name = name;
        for (int n = 2; taken(service.name); ++n) service.name = name + " " + std::to_string(n);
        service.provider = provider;
        service.language = languageOf(region, random);
        services.push_back(std::move(service));
    }
    return services;
}

}  // namespace qeltvd
