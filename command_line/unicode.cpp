#include "unicode.h"

namespace tool {

void appendUtf8(std::string* text, char32_t character) {
    const bool surrogate = character >= 0xd800 && character < 0xe000;
    const char32_t c = surrogate || character > 0x10ffff ? U'\ufffd' : character;
    const auto put = [text](char32_t byte) { text->push_back(static_cast<char>(byte)); };
    if (c < 0x80) return put(c);
    if (c < 0x800) {
        put(0xc0 | c >> 6);
    } else {
        if (c < 0x10000) {
            put(0xe0 | c >> 12);
        } else {
            put(0xf0 | c >> 18);
            put(0x80 | (c >> 12 & 0x3f));
        }
        put(0x80 | (c >> 6 & 0x3f));
    }
    put(0x80 | (c & 0x3f));
}

std::string utf8Of(const uint16_t* text, size_t limit) {
    std::string out;
    for (size_t i = 0; text != nullptr && i < limit && text[i] != 0; ++i) {
        char32_t c = text[i];
        const bool high = c >= 0xd800 && c < 0xdc00;
        if (high && i + 1 < limit && text[i + 1] >= 0xdc00 && text[i + 1] < 0xe000) {
            c = 0x10000 + ((c & 0x3ff) << 10) + (text[++i] & 0x3ffu);
        }
        appendUtf8(&out, c);
    }
    return out;
}

}  // namespace tool
