#include "printable.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace tool {
namespace {

/** Bytes of the UTF-8 character at a place of a text; 0 if there is none. */
size_t characterAt(const std::string& text, size_t at) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[at + i]); };
    const size_t length = byte(0) < 0x80                      ? 1
                          : byte(0) >= 0xc2 && byte(0) < 0xe0 ? 2
                          : byte(0) >= 0xe0 && byte(0) < 0xf0 ? 3
                          : byte(0) >= 0xf0 && byte(0) < 0xf5 ? 4
                                                              : 0;
    if (length == 0 || at + length > text.size()) return 0;
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80) return 0;
    }
    // Overlong forms, surrogates and what is beyond U+10FFFF.
    if (length == 3 && ((byte(0) == 0xe0 && byte(1) < 0xa0) || (byte(0) == 0xed && byte(1) > 0x9f)))
        return 0;
    if (length == 4 && ((byte(0) == 0xf0 && byte(1) < 0x90) || (byte(0) == 0xf4 && byte(1) > 0x8f)))
        return 0;
    return length;
}

bool isControl(const std::string& text, size_t at, size_t length) {
    const auto first = static_cast<unsigned char>(text[at]);
    if (length == 1) return first < 0x20 || first == 0x7f;
    // U+0080 to U+009F; terminals take U+009B for the start of a sequence.
    return first == 0xc2 && static_cast<unsigned char>(text[at + 1]) < 0xa0;
}

}  // namespace

std::string printable(const std::string& text) {
    std::string shown;
    for (size_t at = 0; at < text.size();) {
        const size_t length = characterAt(text, at);
        if (length != 0 && !isControl(text, at, length)) {
            shown.append(text, at, length);
        } else {
            for (size_t i = 0; i < std::max<size_t>(length, 1); ++i) {
                char escaped[8];
                snprintf(escaped, sizeof(escaped), "\\x%02x",
                         static_cast<unsigned char>(text[at + i]));
                shown += escaped;
            }
        }
        at += std::max<size_t>(length, 1);
    }
    return shown;
}

}  // namespace tool
