#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <optional>

#include "channel_data.h"
#include "hw_qeltvapi_bisskey.h"
#include "hw_qeltvapi_dvbsconfig.h"
#include "tool.h"

namespace tool {
namespace {

constexpr uint32_t kList = CHANNEL_LIST_SATELLITE;

nlohmann::ordered_json json(const satellite_record_t& satellite, uint32_t transponders) {
    return {{"record", satellite.record_id},
            {"name", textOf(satellite.name)},
            {"position", positionText(satellite.position)},
            {"enabled", satellite.enabled != 0},
            {"switch_port", satellite.switch_port},
            {"low_oscillator_khz", satellite.low_oscillator_khz},
            {"high_oscillator_khz", satellite.high_oscillator_khz},
            {"switch_khz", satellite.switch_khz},
            {"transponders", transponders}};
}

uint32_t transpondersOf(uint32_t satellite) {
    uint32_t count = 0;
    check(a_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id(kList, satellite, &count), "transponders");
    return count;
}

void list(bool asJson) {
    requireService();
    uint32_t count = 0;
    check(a_qeltvapi_satllist_get_num_recs(kList, &count), "satellites");
    std::vector<std::vector<std::string>> rows{
            {"RECORD", "NAME", "POSITION", "SWITCH", "TRANSPONDERS", "STATE"}};
    nlohmann::ordered_json all = nlohmann::json::array();
    for (uint32_t i = 0; i < count; ++i) {
        satellite_record_t satellite{};
        check(a_qeltvapi_satllist_get_rec_by_rec_idx(kList, i, &satellite), "satellites");
        const uint32_t transponders = transpondersOf(satellite.record_id);
        rows.push_back({std::to_string(satellite.record_id), textOf(satellite.name),
                        positionText(satellite.position),
                        satellite.switch_port != 0 ? std::to_string(satellite.switch_port) : "-",
                        std::to_string(transponders), satellite.enabled != 0 ? "on" : "off"});
        all.push_back(json(satellite, transponders));
    }
    if (asJson) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

/** By record id or position. */
satellite_record_t find(const std::string& text) {
    uint32_t record = 0;
    if (!text.empty() && (text.back() == 'E' || text.back() == 'W')) {
        a_qeltvapi_satllist_qry_rec_id(kList, static_cast<uint32_t>(positionOf(text)), &record);
    } else {
        char* end = nullptr;
        record = static_cast<uint32_t>(strtoul(text.c_str(), &end, 10));
        if (text.empty() || *end != '\0') {
            throw Failure(kUsage, "a satellite is as in 1 or 19.2E, not \"" + text + "\"");
        }
    }
    satellite_record_t satellite{};
    if (record == 0 || a_qeltvapi_satllist_get_rec(kList, record, &satellite) != 0) {
        throw Failure(kRefused, "there is no satellite " + text);
    }
    return satellite;
}

void show(const std::string& text, bool asJson) {
    requireService();
    const satellite_record_t satellite = find(text);
    constexpr uint32_t kBatch = 100;
    std::vector<multiplex_record_t> all;
    for (std::vector<multiplex_record_t> batch(kBatch);;) {
        const uint32_t total = transpondersOf(satellite.record_id);
        if (all.size() >= total) break;
        const auto some = std::min<uint32_t>(kBatch, total - static_cast<uint32_t>(all.size()));
        check(a_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id(kList, satellite.record_id,
                                                         static_cast<uint32_t>(all.size()), some, 0,
                                                         batch.data()),
              "transponders");
        all.insert(all.end(), batch.data(), batch.data() + some);
    }
    if (asJson) {
        auto whole = json(satellite, static_cast<uint32_t>(all.size()));
        whole["transponders"] = nlohmann::json::array();
        for (const auto& each : all) whole["transponders"].push_back(multiplexJson(each));
        printJson(whole);
        return;
    }
    printf("%s, %s, oscillators %u and %u kHz, switched at %u kHz\n\n",
           printable(textOf(satellite.name)).c_str(), positionText(satellite.position).c_str(),
           satellite.low_oscillator_khz, satellite.high_oscillator_khz, satellite.switch_khz);
    std::vector<std::vector<std::string>> rows{{"RECORD", "TRANSPONDER", "SYMBOLS/S", "STREAM"}};
    for (const auto& each : all) {
        rows.push_back({std::to_string(each.record_id), multiplexText(each),
                        std::to_string(each.symbol_rate), std::to_string(each.stream_id)});
    }
    printTable(rows);
}

struct SatelliteChanges {
    std::string satellite, name, position;
    std::optional<uint32_t> low, high, border, port;
    bool on = false, off = false;
};

void set(const SatelliteChanges& changes) {
    const bool none = changes.name.empty() && changes.position.empty() && !changes.low &&
                      !changes.high && !changes.border && !changes.port && !changes.on &&
                      !changes.off;
    if (none) throw Failure(kUsage, "nothing to set");
    requireService();
    satellite_record_t satellite = find(changes.satellite);
    if (!changes.name.empty()) setText(satellite.name, changes.name);
    if (!changes.position.empty()) satellite.position = positionOf(changes.position);
    if (changes.low) satellite.low_oscillator_khz = *changes.low;
    if (changes.high) satellite.high_oscillator_khz = *changes.high;
    if (changes.border) satellite.switch_khz = *changes.border;
    if (changes.port) satellite.switch_port = static_cast<uint8_t>(*changes.port);
    if (changes.on || changes.off) satellite.enabled = changes.on ? 1 : 0;
    check(a_qeltvapi_satllist_update_rec(kList, &satellite, 1), changes.satellite);
}

// BISS keys

std::string hex(const biss_record_t& record) {
    std::string text;
    for (size_t i = 0; i < record.key_size && i < sizeof(record.key); ++i) {
        char digits[4];
        snprintf(digits, sizeof(digits), "%02X", record.key[i]);
        text += digits;
    }
    return text;
}

void listKeys(bool showKeys, bool asJson) {
    requireService();
    uint16_t count = 0;
    uint32_t word = 0;
    check(a_qeltvapi_bisskey_get_recs_number(kList, &count, &word), "keys");
    std::vector<std::vector<std::string>> rows{
            {"RECORD", "SATELLITE", "FREQUENCY", "POL", "SERVICE", "STATE", "KEY"}};
    nlohmann::ordered_json all = nlohmann::json::array();
    for (uint32_t i = 0; i < count; ++i) {
        biss_record_t record{};
        check(a_qeltvapi_bisskey_get_bsl_rec_by_idx(kList, i, &record, &word), "keys");
        const std::string key = record.key_size == 0 ? "none" : showKeys ? hex(record) : "set";
        const auto service = record.header.service_id;
        rows.push_back({std::to_string(record.record_id), positionText(record.header.position),
                        std::to_string(record.header.frequency_khz) + " kHz",
                        polarisationName(record.header.polarisation),
                        service != 0 ? std::to_string(service) : "all",
                        record.enabled != 0 ? "on" : "off", key});
        all.push_back({{"record", record.record_id},
                       {"position", positionText(record.header.position)},
                       {"frequency_khz", record.header.frequency_khz},
                       {"symbol_rate", record.header.symbol_rate},
                       {"polarisation", polarisationName(record.header.polarisation)},
                       {"service", service},
                       {"enabled", record.enabled != 0},
                       {"key", key}});
    }
    if (asJson) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

/** 12 digits, to which the two sums are added, or all 16. The digits are in no message. */
void setKey(biss_record_t* record, const std::string& digits) {
    std::string plain;
    for (const char c : digits) {
        if (c != ' ' && c != '-' && c != ':') plain += c;
    }
    const bool wrong = plain.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos;
    if (wrong || (plain.size() != 12 && plain.size() != 16)) {
        throw Failure(kUsage, "a key has 12 or 16 hexadecimal digits");
    }
    uint8_t bytes[8];
    for (size_t i = 0; i < plain.size() / 2; ++i) {
        bytes[i] = static_cast<uint8_t>(std::stoul(plain.substr(2 * i, 2), nullptr, 16));
    }
    if (plain.size() == 12) {
        memmove(bytes + 4, bytes + 3, 3);
        bytes[3] = static_cast<uint8_t>(bytes[0] + bytes[1] + bytes[2]);
        bytes[7] = static_cast<uint8_t>(bytes[4] + bytes[5] + bytes[6]);
    }
    memcpy(record->key, bytes, sizeof(bytes));
    record->key_size = sizeof(bytes);
}

struct KeyChanges {
    uint32_t record = 0, frequency = 0;
    std::optional<uint32_t> symbolRate, service;
    std::string position, polarisation, key;
    bool current = false, on = false, off = false;
};

void setKeyRecord(const KeyChanges& changes) {
    requireService();
    biss_record_t record{};
    uint32_t word = 0;
    if (changes.record != 0) {
        check(a_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id(kList, changes.record, &record, &word),
              "key " + std::to_string(changes.record));
    } else if (changes.current) {
        check(a_qeltvapi_bisskey_get_default_record(&record), "current channel");
        if (record.header.frequency_khz == 0) {
            throw Failure(kRefused, "the current channel does not come from a satellite");
        }
    } else {
        record.enabled = 1;
        if (changes.frequency == 0 || changes.position.empty() || changes.polarisation.empty()) {
            throw Failure(kUsage,
                          "a new key takes --current, or --frequency, --position, --polarisation");
        }
    }
    if (changes.frequency != 0) record.header.frequency_khz = changes.frequency;
    if (changes.symbolRate) record.header.symbol_rate = *changes.symbolRate;
    if (changes.service) record.header.service_id = static_cast<uint16_t>(*changes.service);
    if (!changes.position.empty()) {
        record.header.position = static_cast<int16_t>(positionOf(changes.position));
    }
    if (!changes.polarisation.empty()) {
        record.header.polarisation = polarisationOf(changes.polarisation);
    }
    if (changes.on || changes.off) record.enabled = changes.on ? 1 : 0;
    if (!changes.key.empty()) {
        std::string digits = changes.key;
        if (digits == "-" && !std::getline(std::cin, digits)) {
            throw Failure(kUsage, "no key came in");
        }
        setKey(&record, digits);
    }
    check(a_qeltvapi_bisskey_set_bsl_rec_info(kList, CHANNEL_BISS_WRITE, &record, &word), "key");
    printf("%u\n", word);
}

void clearKeys(uint32_t record, bool all) {
    requireService();
    if (all == (record != 0)) throw Failure(kUsage, "clear takes a record or --all");
    if (all) {
        check(a_qeltvapi_bisskey_clean(kList), "keys");
        return;
    }
    biss_record_t key{};
    key.record_id = record;
    uint32_t word = 0;
    check(a_qeltvapi_bisskey_set_bsl_rec_info(kList, CHANNEL_BISS_DELETE, &key, &word),
          "key " + std::to_string(record));
}

}  // namespace

void addSatellite(Command& app) {
    Command* satellite = app.addCommand("satellite", "Satellites and the dish");
    satellite->requireCommand();
    struct Options {
        std::string satellite;
        bool json = false;
    };
    auto options = std::make_shared<Options>();

    Command* command = satellite->addCommand("list", "List the satellites");
    addJson(command, &options->json);
    command->callback([options] { list(options->json); });

    command = satellite->addCommand("show", "Show a satellite and its transponders");
    command->addOption("satellite", options->satellite, "Its record or position, as in 19.2E")
            ->required();
    addJson(command, &options->json);
    command->callback([options] { show(options->satellite, options->json); });

    auto changes = std::make_shared<SatelliteChanges>();
    command = satellite->addCommand("set", "Change how a satellite is received");
    command->addOption("satellite", changes->satellite, "Its record or position, as in 19.2E")
            ->required();
    command->addOption("--name", changes->name, "Its name");
    command->addOption("--position", changes->position, "As in 19.2E");
    command->addOption("--low", changes->low, "Low oscillator of the LNB in kHz");
    command->addOption("--high", changes->high, "High oscillator in kHz");
    command->addOption("--border", changes->border, "Frequency between the bands in kHz");
    command->addOption("--port", changes->port, "Input of the DiSEqC switch, 0 for none")
            ->between(0, 16);
    Option* on = command->addFlag("--on", changes->on, "Receive it");
    command->addFlag("--off", changes->off, "Do not receive it")->excludes(on);
    command->callback([changes] { set(*changes); });
}

void addBiss(Command& app) {
    Command* biss = app.addCommand("biss", "BISS keys of satellite feeds");
    biss->requireCommand();
    struct Options {
        uint32_t record = 0;
        bool json = false, showKeys = false, all = false;
    };
    auto options = std::make_shared<Options>();

    Command* command = biss->addCommand("list", "List the keys");
    command->addFlag("--show-keys", options->showKeys, "The keys themselves too");
    addJson(command, &options->json);
    command->callback([options] { listKeys(options->showKeys, options->json); });

    auto changes = std::make_shared<KeyChanges>();
    command = biss->addCommand("set", "Store a key; prints its record");
    command->addOption("record", changes->record, "The record to change; a new one when left out");
    Option* current = command->addFlag("--current", changes->current, "For the current channel");
    command->addOption("--frequency", changes->frequency, "Of the transponder, in kHz")
            ->excludes(current);
    command->addOption("--position", changes->position, "Of the satellite, as in 19.2E");
    command->addOption("--polarisation", changes->polarisation, "H, V, L or R");
    command->addOption("--symbol-rate", changes->symbolRate, "Symbols per second");
    command->addOption("--service", changes->service, "Service id, 0 for all of the transponder")
            ->between(0, 65535);
    command->addOption("--key", changes->key,
                       "12 or 16 hexadecimal digits; \"-\" reads them from the input");
    Option* on = command->addFlag("--on", changes->on, "Use it");
    command->addFlag("--off", changes->off, "Do not use it")->excludes(on);
    command->callback([changes] { setKeyRecord(*changes); });

    command = biss->addCommand("clear", "Delete a key, or all");
    command->addOption("record", options->record, "The record");
    command->addFlag("--all", options->all, "All of them");
    command->callback([options] { clearKeys(options->record, options->all); });
}

}  // namespace tool
