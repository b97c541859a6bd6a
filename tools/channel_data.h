#pragma once

#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "layouts/channel_records.h"
#include "tool.h"

/** Shared by the commands that name channels. */
namespace tool {

/** A text field of a record. */
template <size_t N>
std::string textOf(const char (&field)[N]) {
    return std::string(field, strnlen(field, N));
}

template <size_t N>
void setText(char (&field)[N], const std::string& text) {
    if (text.size() >= N) {
        throw Failure(kUsage, "a name has at most " + std::to_string(N - 1) + " bytes");
    }
    memset(field, 0, N);
    memcpy(field, text.data(), text.size());
}

/** "air", "cable", "satellite", or the number of another list; and back. */
std::string listName(uint32_t list);
uint32_t listOf(const std::string& name);

/** "19.2E" and tenths of a degree, east positive. */
std::string positionText(int32_t position);
int32_t positionOf(const std::string& text);

/** "horizontal"; its first letter, or the whole word, is taken back. */
std::string polarisationName(uint8_t polarisation);
uint8_t polarisationOf(const std::string& text);

/** "DVB-S 11.954 GHz H". */
std::string multiplexText(const multiplex_record_t& multiplex);
nlohmann::ordered_json multiplexJson(const multiplex_record_t& multiplex);

uint64_t frequencyOf(const multiplex_record_t& multiplex);

/** A channel and the multiplex that it is on. */
struct ChannelPair {
    channel_record_t channel;
    multiplex_record_t multiplex;
};

/** "5" or "7.1" of the number in a record, and back. */
std::string numberText(uint32_t number);
std::optional<uint32_t> numberIn(const std::string& text);
/** "0x04000005". */
std::string channelIdText(uint32_t id);
/** ASCII letters only; other letters keep their case. */
std::string lower(std::string text);

/**
 * The channels of a list, of all lists if it is "".
 *
 * @param filter    CHANNEL_FILTER_ bits
 * @param favourite only those of this favourite list, from 1; 0 for all
 */
std::vector<ChannelPair> readLists(const std::string& list, uint32_t filter,
                                   uint32_t favourite = 0);

/** How every command names a channel. */
constexpr char kChannelHelp[] =
        "A number (5, 7.1), list/number (air/5), name, id (0x04000005) or current";
/** Ends the command if there is no such channel, or if several have the name. */
ChannelPair findChannel(const std::string& text);
uint32_t channelIdOf(const std::string& text);

}  // namespace tool
