#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "layouts/channel_records.h"
#include "tool.h"

/** What the commands of the channel data share. */
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

}  // namespace tool
