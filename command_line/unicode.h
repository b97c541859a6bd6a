#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tool {

/** Appends a character to a UTF-8 text; U+FFFD in place of a number that is no character's. */
void appendUtf8(std::string* text, char32_t character);

/**
 * UTF-16 as UTF-8.
 *
 * @param text  ends with a zero or after `limit` units; null for ""
 * @param limit units
 */
std::string utf8Of(const uint16_t* text, size_t limit = SIZE_MAX);

}  // namespace tool
