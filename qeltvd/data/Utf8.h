#pragma once

#include <cstdint>
#include <string>

namespace qeltvd::stream {

/** Appends a character of the basic plane. */
inline void appendUtf8(std::string* text, uint16_t c) {
    if (c < 0x80) {
        text->push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        text->push_back(static_cast<char>(0xc0 | c >> 6));
        text->push_back(static_cast<char>(0x80 | (c & 0x3f)));
    } else {
        text->push_back(static_cast<char>(0xe0 | c >> 12));
        text->push_back(static_cast<char>(0x80 | (c >> 6 & 0x3f)));
        text->push_back(static_cast<char>(0x80 | (c & 0x3f)));
    }
}

}  // namespace qeltvd::stream
