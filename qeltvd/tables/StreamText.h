#pragma once

#include <string>
#include <vector>

#include "Bytes.h"

namespace qeltvd::stream {

/**
 * A text field of DVB (EN 300 468, annex A) as UTF-8. The first bytes choose the character table.
 * A line break of the field is '\n'; emphasis and other control codes are removed. A byte that
 * the table lacks becomes U+FFFD, so that the result is always valid UTF-8.
 */
std::string dvbText(Bytes field);

/** A text in one of several languages. */
struct LanguageText {
    std::string language;
    std::string text;

    bool operator==(const LanguageText& other) const {
        return language == other.language && text == other.text;
    }
};

/**
 * The strings of a multiple string structure (ATSC A/65), each of its segments together. Segments
 * with Huffman coding are left out, so a string of nothing else is empty.
 */
std::vector<LanguageText> atscTexts(Bytes structure);
/** The first of these strings that is in a language and not empty, or the first of any language. */
std::string atscText(Bytes structure, const std::string& language = {});

/** A text of UTF-16, high byte first, such as the short names of ATSC; ends before a null. */
std::string utf16Text(Bytes text);

/** A field of plain letters, such as an address or a code; all but printable ASCII is left out. */
std::string asciiText(Bytes field);

/** Three letters of ISO 639 or 3166 in lower case; empty for anything that is not letters. */
std::string languageOf(const uint8_t* code);
/** The same in capitals, as countries are written. */
std::string countryOf(const uint8_t* code);

}  // namespace qeltvd::stream
