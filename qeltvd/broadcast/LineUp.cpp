#define LOG_TAG "qeltvd"

#include "LineUp.h"

#include <fnmatch.h>
#include <log/log.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "LogText.h"
#include "Source.h"

namespace qeltvd {
namespace {

namespace fs = std::filesystem;

/** Tables for machines that have none, in their format. */
struct BuiltIn {
    const char* name;
    const char* table;
};

constexpr BuiltIn kBuiltIn[] = {
        {"dvb-t/de-Berlin", R"(
[CHANNEL]
  DELIVERY_SYSTEM = DVBT
  FREQUENCY = 506000000
  BANDWIDTH_HZ = 8000000
  CODE_RATE_HP = 2/3
  MODULATION = QAM/16
[CHANNEL]
  DELIVERY_SYSTEM = DVBT
  FREQUENCY = 522000000
  BANDWIDTH_HZ = 8000000
  CODE_RATE_HP = 2/3
  MODULATION = QAM/16
[CHANNEL]
  DELIVERY_SYSTEM = DVBT
  FREQUENCY = 570000000
  BANDWIDTH_HZ = 8000000
  CODE_RATE_HP = 2/3
  MODULATION = QAM/16
[CHANNEL]
  DELIVERY_SYSTEM = DVBT
  FREQUENCY = 618000000
  BANDWIDTH_HZ = 8000000
  CODE_RATE_HP = 2/3
  MODULATION = QAM/64
)"},
        {"dvb-c/de-Berlin", R"(
[CHANNEL]
  DELIVERY_SYSTEM = DVBC/ANNEX_A
  FREQUENCY = 394000000
  SYMBOL_RATE = 6900000
  MODULATION = QAM/64
[CHANNEL]
  DELIVERY_SYSTEM = DVBC/ANNEX_A
  FREQUENCY = 113000000
  SYMBOL_RATE = 6900000
  MODULATION = QAM/64
)"},
        {"dvb-s/Astra-1N-19.2E", R"(
[CHANNEL]
  DELIVERY_SYSTEM = DVBS
  FREQUENCY = 11954000
  POLARIZATION = HORIZONTAL
  SYMBOL_RATE = 27500000
  INNER_FEC = 3/4
[CHANNEL]
  DELIVERY_SYSTEM = DVBS2
  FREQUENCY = 11362000
  POLARIZATION = HORIZONTAL
  SYMBOL_RATE = 22000000
  INNER_FEC = 2/3
  MODULATION = PSK/8
)"},
        {"atsc/us-ATSC-center-frequencies-8VSB", R"(
[CHANNEL]
  DELIVERY_SYSTEM = ATSC
  FREQUENCY = 177028615
  MODULATION = VSB/8
[CHANNEL]
  DELIVERY_SYSTEM = ATSC
  FREQUENCY = 473028615
  MODULATION = VSB/8
)"},
};

struct SystemName {
    const char* table;
    DeliverySystem system;
};

constexpr SystemName kSystems[] = {
        {"DVBT", DeliverySystem::kDvbT},
        {"DVBT2", DeliverySystem::kDvbT2},
        {"DVBC/ANNEX_A", DeliverySystem::kDvbC},
        {"DVBC/ANNEX_C", DeliverySystem::kDvbC},
        {"DVBC/ANNEX_B", DeliverySystem::kClearQam},
        {"DVBS", DeliverySystem::kDvbS},
        {"DVBS2", DeliverySystem::kDvbS2},
        {"ATSC", DeliverySystem::kAtsc},
        {"ISDBT", DeliverySystem::kIsdbT},
};

struct ModulationName {
    const char* table;
    Modulation modulation;
};

constexpr ModulationName kModulations[] = {
        {"QPSK", Modulation::kQpsk},      {"PSK/8", Modulation::kPsk8},
        {"APSK/16", Modulation::kApsk16}, {"APSK/32", Modulation::kApsk32},
        {"QAM/16", Modulation::kQam16},   {"QAM/32", Modulation::kQam32},
        {"QAM/64", Modulation::kQam64},   {"QAM/128", Modulation::kQam128},
        {"QAM/256", Modulation::kQam256}, {"VSB/8", Modulation::kVsb8},
        {"VSB/16", Modulation::kVsb16},
};

/** FNV-1a: the same on every machine. */
uint32_t hash(const std::string& text) {
    uint32_t hash = 2166136261u;
    for (const char c : text) hash = (hash ^ static_cast<uint8_t>(c)) * 16777619u;
    return hash;
}

uint64_t numberOf(const std::string& value) {
    uint64_t number = 0;
    for (const char c : value) {
        if (c < '0' || c > '9' || number > UINT64_MAX / 10 - 9) return 0;
        number = number * 10 + static_cast<uint64_t>(c - '0');
    }
    return number;
}

/** "3/4" to 0x34; what is no rate is automatic. */
uint8_t codeRateOf(const std::string& value) {
    const size_t slash = value.find('/');
    if (slash == std::string::npos) return 0;
    const uint64_t above = numberOf(value.substr(0, slash));
    const uint64_t below = numberOf(value.substr(slash + 1));
    return above > 0 && above < 16 && below < 16 ? static_cast<uint8_t>(above << 4 | below) : 0;
}

/** The channel that a frequency lies in; 0 outside of the bands. */
uint16_t rfChannelOf(DeliverySystem system, uint64_t frequencyHz) {
    struct Band {
        uint16_t first, last;
        uint32_t startMHz;
    };
    static constexpr Band kAir[] = {{2, 4, 54}, {5, 6, 76}, {7, 13, 174}, {14, 69, 470}};
    static constexpr Band kCable[] = {{2, 4, 54},   {5, 6, 76},    {95, 99, 90},   {14, 22, 120},
                                      {7, 13, 174}, {23, 94, 216}, {100, 158, 648}};
    const auto find = [&](const auto& bands) -> uint16_t {
        for (const Band& band : bands) {
            const uint64_t start = band.startMHz * UINT64_C(1000000);
            if (frequencyHz < start) continue;
            const uint64_t channel = band.first + (frequencyHz - start) / 6000000;
            if (channel <= band.last) return static_cast<uint16_t>(channel);
        }
        return 0;
    };
    if (system == DeliverySystem::kAtsc) return find(kAir);
    return system == DeliverySystem::kClearQam ? find(kCable) : uint16_t{0};
}

void set(Multiplex* multiplex, const std::string& key, const std::string& value) {
    if (key == "DELIVERY_SYSTEM") {
        for (const auto& each : kSystems) {
            if (value == each.table) multiplex->system = each.system;
        }
    } else if (key == "FREQUENCY") {
        multiplex->frequencyHz = numberOf(value);
    } else if (key == "SYMBOL_RATE") {
        multiplex->symbolRate = static_cast<uint32_t>(numberOf(value));
    } else if (key == "BANDWIDTH_HZ") {
        multiplex->bandwidthHz = static_cast<uint32_t>(numberOf(value));
    } else if (key == "INNER_FEC" || key == "CODE_RATE_HP") {
        multiplex->codeRate = codeRateOf(value);
    } else if (key == "MODULATION") {
        for (const auto& each : kModulations) {
            if (value == each.table) multiplex->modulation = each.modulation;
        }
    } else if (key == "STREAM") {
        multiplex->stream = value;
    } else if (key == "POLARIZATION") {
        multiplex->polarisation = value == "HORIZONTAL" ? Polarisation::kHorizontal
                                  : value == "VERTICAL" ? Polarisation::kVertical
                                  : value == "LEFT"     ? Polarisation::kLeft
                                  : value == "RIGHT"    ? Polarisation::kRight
                                                        : Polarisation::kNone;
    }
}

std::string trimmed(const std::string& text) {
    const size_t begin = text.find_first_not_of(" \t\r");
    if (begin == std::string::npos) return "";
    return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

/** "dvb-s/Astra-1N-19.2E" to "Astra 1N 19.2E" and 192. */
void nameSatellite(Region* region) {
    std::string name = region->name.substr(region->name.find('/') + 1);
    std::replace(name.begin(), name.end(), '-', ' ');
    region->satellite = name;
    const size_t blank = name.rfind(' ');
    if (blank == std::string::npos) return;
    const double degrees = strtod(name.c_str() + blank, nullptr);
    const auto tenths = static_cast<int32_t>(std::lround(degrees * 10));
    if (std::abs(tenths) <= 1800) region->position = name.back() == 'W' ? -tenths : tenths;
}

Region builtIn(const BuiltIn& table) {
    std::istringstream text(table.table);
    return readRegion(table.name, text);
}

/** A table in a file of its own; without transponders if it cannot be read. */
Region ownTable(const std::string& path, bool commands) {
    Region region;
    const fs::path file(path);
    std::error_code ignored;
    std::ifstream text;
    if (fs::is_regular_file(file, ignored)) text.open(file);
    if (!text.is_open()) {
        ALOGW("the scan table %s cannot be read", logText(path).c_str());
        return region;
    }
    region = readRegion(file.filename().string(), text);
    region.directory = file.parent_path().string();
    if (!commands) {
        const auto runs = [&](const Multiplex& multiplex) {
            const bool command =
                    stream::sourceKindOf(multiplex.stream) == stream::SourceKind::kPipe;
            if (command) {
                ALOGW("%s: commands are run for a table of --region only", logText(path).c_str());
            }
            return command;
        };
        region.multiplexes.erase(
                std::remove_if(region.multiplexes.begin(), region.multiplexes.end(), runs),
                region.multiplexes.end());
    }
    return region;
}

/** The tables whose names a pattern fits, by name. */
std::vector<Region> matching(const std::string& pattern) {
    std::vector<Region> found;
    const size_t slash = pattern.find('/');
    // One directory and one file: nothing that leads out of the tables.
    if (slash == std::string::npos || slash == 0 || pattern.find('/', slash + 1) != pattern.npos ||
        pattern.front() == '.') {
        return found;
    }
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& file :
         fs::directory_iterator(fs::path(scanTables()) / pattern.substr(0, slash), ignored)) {
        const std::string name = pattern.substr(0, slash + 1) + file.path().filename().string();
        if (file.is_regular_file(ignored) &&
            fnmatch(pattern.c_str(), name.c_str(), FNM_PERIOD | FNM_PATHNAME) == 0) {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        std::ifstream file(fs::path(scanTables()) / name);
        Region region = readRegion(name, file);
        if (!region.multiplexes.empty()) found.push_back(std::move(region));
    }
    for (Region& region : found) {
        // The tables of the machine are no place for streams.
        for (Multiplex& multiplex : region.multiplexes) multiplex.stream.clear();
    }
    if (found.empty()) {
        for (const auto& table : kBuiltIn) {
            if (fnmatch(pattern.c_str(), table.name, FNM_PATHNAME) == 0) {
                found.push_back(builtIn(table));
            }
        }
    }
    return found;
}

}  // namespace

Medium mediumOf(DeliverySystem system) {
    switch (system) {
        case DeliverySystem::kDvbC:
        case DeliverySystem::kClearQam:
            return Medium::kCable;
        case DeliverySystem::kDvbS:
        case DeliverySystem::kDvbS2:
            return Medium::kSatellite;
        default:
            return Medium::kAir;
    }
}

bool sameFrequency(const Multiplex& a, const Multiplex& b) {
    constexpr uint64_t kSameHz = 500000;
    return apart(a.frequencyHz, b.frequencyHz) <= kSameHz &&
           mediumOf(a.system) == mediumOf(b.system) && a.polarisation == b.polarisation;
}

bool sameReception(const Multiplex& a, const Multiplex& b) {
    return sameFrequency(a, b) && a.satellite == b.satellite;
}

BroadcastType broadcastTypeOf(DeliverySystem system) {
    switch (system) {
        case DeliverySystem::kAtsc:
        case DeliverySystem::kClearQam:
            return BroadcastType::kAtsc;
        case DeliverySystem::kIsdbT:
            return BroadcastType::kIsdb;
        case DeliverySystem::kUnknown:
            return BroadcastType::kAny;
        default:
            return BroadcastType::kDvb;
    }
}

const char* nameOf(DeliverySystem system) {
    static constexpr const char* kNames[] = {"unknown", "DVB-T", "DVB-T2", "DVB-C", "DVB-S",
                                             "DVB-S2",  "ATSC",  "QAM",    "ISDB-T"};
    const auto index = static_cast<size_t>(system);
    return kNames[index < std::size(kNames) ? index : 0];
}

const char* nameOf(Modulation modulation) {
    static constexpr const char* kNames[] = {"auto",    "QPSK",    "8PSK",   "16APSK",
                                             "32APSK",  "QAM 16",  "QAM 32", "QAM 64",
                                             "QAM 128", "QAM 256", "8VSB",   "16VSB"};
    const auto index = static_cast<size_t>(modulation);
    return kNames[index < std::size(kNames) ? index : 0];
}

Region readRegion(const std::string& name, std::istream& table) {
    Region region;
    region.name = name;
    std::vector<Multiplex> all;
    std::string line;
    while (std::getline(table, line)) {
        // A command of a stream may have the sign in a word.
        const bool stream = trimmed(line).rfind("STREAM", 0) == 0;
        line = trimmed(stream ? line : line.substr(0, line.find('#')));
        if (line.empty() || line.front() == '#') continue;
        if (line.front() == '[') {
            all.emplace_back();
            continue;
        }
        const size_t equals = line.find('=');
        if (equals == std::string::npos) continue;
        const std::string key = trimmed(line.substr(0, equals));
        const std::string value = trimmed(line.substr(equals + 1));
        if (all.empty()) {
            if (key == "TIME") region.streamsToday = value == "now";
        } else {
            set(&all.back(), key, value);
        }
    }

    const uint32_t seed = hash(name);
    for (Multiplex& multiplex : all) {
        if (multiplex.system == DeliverySystem::kUnknown || multiplex.frequencyHz == 0) continue;
        // The tables have kHz for satellites and Hz for all else.
        const bool satellite = mediumOf(multiplex.system) == Medium::kSatellite;
        if (satellite) multiplex.frequencyHz *= 1000;
        if (multiplex.system == DeliverySystem::kDvbS) multiplex.modulation = Modulation::kQpsk;
        if (multiplex.system == DeliverySystem::kAtsc) multiplex.bandwidthHz = 6000000;
        const bool twice = std::any_of(
                region.multiplexes.begin(), region.multiplexes.end(), [&](const Multiplex& m) {
                    return m.frequencyHz == multiplex.frequencyHz && m.system == multiplex.system &&
                           m.polarisation == multiplex.polarisation;
                });
        if (twice) continue;
        multiplex.rfChannel = rfChannelOf(multiplex.system, multiplex.frequencyHz);
        multiplex.list = static_cast<uint16_t>(mediumOf(multiplex.system));
        multiplex.originalNetworkId = static_cast<uint16_t>(seed % 0xfe00 + 1);
        multiplex.networkId = multiplex.originalNetworkId;
        multiplex.streamId =
                static_cast<uint16_t>((seed >> 16) % 0x1000 + region.multiplexes.size() + 1);
        region.multiplexes.push_back(multiplex);
    }
    if (!region.multiplexes.empty()) {
        region.medium = mediumOf(region.multiplexes.front().system);
        if (region.medium == Medium::kSatellite) nameSatellite(&region);
        for (Multiplex& multiplex : region.multiplexes) multiplex.position = region.position;
    }
    return region;
}

std::vector<Region> regions(const std::string& configured, const std::vector<std::string>& files) {
    std::vector<Region> all;
    const auto add = [&all](Region region) {
        const bool twice = std::any_of(all.begin(), all.end(), [&](const Region& each) {
            return each.name == region.name && each.directory == region.directory;
        });
        if (!twice && !region.multiplexes.empty()) all.push_back(std::move(region));
    };
    for (const std::string& path : files) add(ownTable(path, true));
    std::string names = configured;
    std::replace(names.begin(), names.end(), ',', ' ');
    std::istringstream words(names);
    for (std::string pattern; words >> pattern;) {
        if (pattern.front() == '/') {
            add(ownTable(pattern, false));
            continue;
        }
        for (Region& region : matching(pattern)) add(std::move(region));
    }
    if (all.empty()) all.push_back(builtIn(kBuiltIn[0]));
    return all;
}

std::string scanTables() {
    const char* path = getenv("QELTVD_SCAN_TABLES");
    return path != nullptr && *path != '\0' ? path : "/usr/share/dvb";
}

}  // namespace qeltvd
