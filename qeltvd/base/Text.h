#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace qeltvd {

/** Cuts a UTF-8 text to at most `limit` bytes, never within a character. */
inline std::string cut(std::string text, size_t limit) {
    if (text.size() <= limit) return text;
    while (limit > 0 && (static_cast<uint8_t>(text[limit]) & 0xc0) == 0x80) --limit;
    text.resize(limit);
    return text;
}

/** Appends a character to a UTF-8 text. */
inline void appendUtf8(std::string* text, char32_t c) {
    const auto put = [text](char32_t byte) { text->push_back(static_cast<char>(byte)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xc0 | c >> 6);
        put(0x80 | (c & 0x3f));
    } else if (c < 0x10000) {
        put(0xe0 | c >> 12);
        put(0x80 | (c >> 6 & 0x3f));
        put(0x80 | (c & 0x3f));
    } else {
        put(0xf0 | c >> 18);
        put(0x80 | (c >> 12 & 0x3f));
        put(0x80 | (c >> 6 & 0x3f));
        put(0x80 | (c & 0x3f));
    }
}

/** Writes the bytes of a text that fit into a field, with zeros behind them: at least one. */
template <size_t N>
void copyText(char (&field)[N], const std::string& text) {
    memset(field, 0, N);
    memcpy(field, text.data(), std::min(text.size(), N - 1));
}

/** The text of a field that need not be terminated. */
template <size_t N>
std::string textOf(const char (&field)[N]) {
    return std::string(field, strnlen(field, N));
}

}  // namespace qeltvd
