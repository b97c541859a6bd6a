#include "LogText.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace qeltvd {

namespace {

/** Size of the character that the text begins with; 0 for a control character and for no UTF-8. */
size_t printableSize(std::string_view text) {
    const auto byte = [&](size_t i) { return static_cast<uint8_t>(text[i]); };
    const uint8_t lead = byte(0);
    if (lead < 0x80) return lead >= 0x20 && lead != 0x7f ? 1 : 0;
    const size_t size = lead >= 0xc2 && lead <= 0xdf   ? 2
                        : lead >= 0xe0 && lead <= 0xef ? 3
                        : lead >= 0xf0 && lead <= 0xf4 ? 4
                                                       : 0;
    if (size == 0 || size > text.size()) return 0;
    for (size_t i = 1; i < size; ++i) {
        if ((byte(i) & 0xc0) != 0x80) return 0;
    }
    // U+0080 to U+009F are control characters too.
    return lead == 0xc2 && byte(1) < 0xa0 ? 0 : size;
}

}  // namespace

std::string logText(std::string_view text) {
    std::string shown;
    std::string_view rest = text;
    while (!rest.empty()) {
        size_t size = printableSize(rest);
        std::string part(rest.substr(0, std::max<size_t>(size, 1)));
        if (size == 0) {
            char escaped[8];
            snprintf(escaped, sizeof(escaped), "\\x%02x", static_cast<uint8_t>(rest[0]));
            part = escaped;
            size = 1;
        } else if (part == "\\") {
            part = "\\\\";
        }
        if (shown.size() + part.size() > kLogTextLimit) {
            return shown + "... (" + std::to_string(text.size()) + " bytes)";
        }
        shown += part;
        rest.remove_prefix(size);
    }
    return shown;
}

}  // namespace qeltvd
