#include "StreamText.h"

#include <errno.h>
#include <iconv.h>

#include <algorithm>
#include <map>
#include <memory>

#include "Text.h"

namespace qeltvd::stream {

namespace {

constexpr char32_t kReplacement = 0xfffd;
/** Control codes of DVB; in tables of two or more bytes they stand in the private use area. */
constexpr uint8_t kLineBreak = 0x8a;
constexpr char32_t kPrivateControls = 0xe000;

/** Appends a character as texts show it: line breaks stay, other control codes go. */
void appendShown(std::string* text, char32_t c) {
    if (c >= kPrivateControls + 0x80 && c < kPrivateControls + 0xa0) c -= kPrivateControls;
    if (c == '\r' || c == kLineBreak) c = '\n';
    const bool control = c < 0x20 || (c >= 0x7f && c < 0xa0);
    if (control && c != '\n') return;
    appendUtf8(text, c);
}

class Converter {
  public:
    explicit Converter(const char* table) : mHandle(iconv_open("UTF-32LE", table)) {}
    ~Converter() {
        if (mHandle != kNone) iconv_close(mHandle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    /** Converts what it can; a byte that the table does not have becomes a replacement. */
    std::u32string convert(Bytes bytes) {
        std::u32string text;
        if (mHandle == kNone) {
            text.assign(bytes.size, kReplacement);
            return text;
        }
        iconv(mHandle, nullptr, nullptr, nullptr, nullptr);
        char* from = const_cast<char*>(reinterpret_cast<const char*>(bytes.data));
        size_t left = bytes.size;
        while (left > 0) {
            char32_t buffer[64];
            char* to = reinterpret_cast<char*>(buffer);
            size_t space = sizeof(buffer);
            const size_t result = iconv(mHandle, &from, &left, &to, &space);
            const int error = errno;
            text.append(buffer, (sizeof(buffer) - space) / sizeof(char32_t));
            if (result != static_cast<size_t>(-1) || error == E2BIG) continue;
            text.push_back(kReplacement);
            ++from;
            --left;
        }
        // Some tables hold a letter back until they have seen what follows.
        char32_t held[8];
        char* to = reinterpret_cast<char*>(held);
        size_t space = sizeof(held);
        iconv(mHandle, nullptr, nullptr, &to, &space);
        text.append(held, (sizeof(held) - space) / sizeof(char32_t));
        return text;
    }

  private:
    static inline const iconv_t kNone = reinterpret_cast<iconv_t>(-1);
    const iconv_t mHandle;
};

std::u32string convert(const std::string& table, Bytes bytes) {
    // Opening a converter takes longer than most texts.
    thread_local std::map<std::string, std::unique_ptr<Converter>> sConverters;
    std::unique_ptr<Converter>& converter = sConverters[table];
    if (!converter) converter = std::make_unique<Converter>(table.c_str());
    return converter->convert(bytes);
}

/** The table of texts that choose none: ISO 6937 with a euro sign. */
std::string latinText(Bytes bytes) {
    // Combining characters of the accents 0xc1 to 0xcf; 0 where there is none.
    constexpr char32_t kAccents[] = {0x300, 0x301, 0x302, 0x303, 0x304, 0x306, 0x307, 0x308,
                                     0x308, 0x30a, 0x327, 0,     0x30b, 0x328, 0x30c};
    std::string text;
    for (size_t i = 0; i < bytes.size; ++i) {
        const uint8_t c = bytes.data[i];
        if (c < 0xa0) {
            appendShown(&text, c);
        } else if (c == 0xa4) {
            appendUtf8(&text, U'€');
        } else if (c == 0xe2) {
            // glibc takes the letter with the stroke for the Icelandic one.
            appendUtf8(&text, U'Đ');
        } else if (c == 0xd0) {
            // glibc has the dash of the table's first edition.
            appendUtf8(&text, U'―');
        } else if (c >= 0xc1 && c <= 0xcf && i + 1 < bytes.size && bytes.data[i + 1] >= 0x20 &&
                   bytes.data[i + 1] < 0x7f) {
            const uint8_t pair[] = {c == 0xc9 ? uint8_t{0xc8} : c, bytes.data[++i]};
            const std::u32string letter = convert("ISO_6937", {pair, sizeof(pair)});
            const char32_t accent = kAccents[c - 0xc1];
            if (letter.size() == 1 && letter[0] != kReplacement) {
                appendUtf8(&text, letter[0]);
            } else {
                appendUtf8(&text, pair[1]);
                if (accent != 0) appendUtf8(&text, accent);
            }
        } else {
            for (const char32_t each : convert("ISO_6937", {&c, 1})) appendShown(&text, each);
        }
    }
    return text;
}

/** A table with one byte per character, whose control codes are those of DVB. */
std::string singleByteText(const std::string& table, Bytes bytes) {
    std::string text;
    for (size_t i = 0; i < bytes.size;) {
        const uint8_t c = bytes.data[i];
        if (c < 0xa0) {
            appendShown(&text, c);
            ++i;
            continue;
        }
        const uint8_t* end = std::find_if(bytes.data + i, bytes.data + bytes.size,
                                          [](uint8_t each) { return each < 0xa0; });
        const auto size = static_cast<size_t>(end - (bytes.data + i));
        for (const char32_t each : convert(table, {bytes.data + i, size})) appendUtf8(&text, each);
        i += size;
    }
    return text;
}

std::string multiByteText(const std::string& table, Bytes bytes) {
    std::string text;
    for (const char32_t each : convert(table, bytes)) appendShown(&text, each);
    return text;
}

std::string isoText(unsigned part, Bytes bytes) {
    if (part < 1 || part > 15 || part == 12) return singleByteText("ASCII", bytes);
    return singleByteText("ISO-8859-" + std::to_string(part), bytes);
}

std::string letters(const uint8_t* code, char first, char other) {
    std::string text;
    for (size_t i = 0; i < 3; ++i) {
        char c = static_cast<char>(code[i]);
        if (c >= other && c < other + 26) c = static_cast<char>(c - other + first);
        if (c < first || c >= first + 26) return {};
        text.push_back(c);
    }
    return text;
}

/** Text of the Standard Compression Scheme for Unicode (Unicode Technical Standard 6). */
class CompressedText {
  public:
    explicit CompressedText(Bytes bytes) : mReader(bytes) {}

    std::string decode() {
        while (mReader.left() > 0 && mReader.ok()) {
            const uint8_t byte = mReader.u8();
            mWide ? wide(byte) : narrow(byte);
        }
        return std::move(mText);
    }

  private:
    /** One byte for a character of a window, and tags. */
    void narrow(uint8_t byte) {
        constexpr uint8_t kQuote = 0x01, kDefineFar = 0x0b, kQuoteUnit = 0x0e, kWide = 0x0f,
                          kChange = 0x10, kDefine = 0x18;
        if (byte >= 0x80) {
            put(mWindows[mWindow] + byte - 0x80);
        } else if (byte >= 0x20) {
            put(byte);
        } else if (byte >= kDefine) {
            define(byte - kDefine, mReader.u8());
        } else if (byte >= kChange) {
            mWindow = byte - kChange;
        } else if (byte == kWide) {
            mWide = true;
        } else if (byte == kQuoteUnit) {
            unit(mReader.u16());
        } else if (byte == kDefineFar) {
            defineFar(mReader.u16());
        } else if (byte >= kQuote && byte < kQuote + 8) {
            const uint8_t quoted = mReader.u8();
            if (!mReader.ok()) return;
            const size_t window = byte - kQuote;
            put(quoted < 0x80 ? kStatic[window] + quoted : mWindows[window] + quoted - 0x80);
        } else {
            put(byte);
        }
    }

    /** Units of UTF-16, and tags. */
    void wide(uint8_t byte) {
        constexpr uint8_t kChange = 0xe0, kDefine = 0xe8, kQuoteUnit = 0xf0, kDefineFar = 0xf1,
                          kReserved = 0xf2;
        if (byte < kChange || byte > kReserved) {
            unit(static_cast<uint16_t>(byte << 8 | mReader.u8()));
        } else if (byte == kQuoteUnit) {
            unit(mReader.u16());
        } else if (byte == kDefineFar) {
            defineFar(mReader.u16());
            mWide = false;
        } else if (byte >= kDefine && byte < kQuoteUnit) {
            define(byte - kDefine, mReader.u8());
            mWide = false;
        } else if (byte < kDefine) {
            mWindow = byte - kChange;
            mWide = false;
        }
    }

    void define(size_t window, uint8_t number) {
        constexpr char32_t kSpecial[] = {0x00c0, 0x0250, 0x0370, 0x0530, 0x3040, 0x30a0, 0xff60};
        constexpr uint8_t kFirstSpecial = 0xf9;
        constexpr char32_t kHalf = 0x80, kGap = 0xac00;
        mWindow = window;
        if (number >= kFirstSpecial) {
            mWindows[window] = kSpecial[number - kFirstSpecial];
        } else if (number < 0x68) {
            mWindows[window] = number * kHalf;
        } else if (number < 0xa8) {
            mWindows[window] = number * kHalf + kGap;
        }
    }

    void defineFar(uint16_t word) {
        mWindow = word >> 13;
        mWindows[mWindow] = 0x10000 + (word & 0x1fffu) * 0x80;
    }

    void unit(uint16_t value) {
        if (!mReader.ok()) return;
        const bool high = value >= 0xd800 && value < 0xdc00;
        const bool low = value >= 0xdc00 && value < 0xe000;
        if (mHigh != 0 && low) {
            const char32_t high10 = mHigh - 0xd800u;
            mHigh = 0;
            put(0x10000 + (high10 << 10) + (value - 0xdc00u));
            return;
        }
        if (high) {
            if (mHigh != 0) appendUtf8(&mText, kReplacement);
            mHigh = value;
            return;
        }
        put(low ? kReplacement : char32_t{value});
    }

    void put(char32_t c) {
        if (mHigh != 0) appendUtf8(&mText, kReplacement);
        mHigh = 0;
        const bool surrogate = c >= 0xd800 && c < 0xe000;
        appendShown(&mText, surrogate || c > 0x10ffff ? kReplacement : c);
    }

    static constexpr char32_t kStatic[8] = {0x0000, 0x0080, 0x0100, 0x0300,
                                            0x2000, 0x2080, 0x2100, 0x3000};

    Reader mReader;
    std::string mText;
    bool mWide = false;
    size_t mWindow = 0;
    char32_t mWindows[8] = {0x0080, 0x00c0, 0x0400, 0x0600, 0x0900, 0x3040, 0x30a0, 0xff00};
    /** The first half of a pair. */
    uint16_t mHigh = 0;
};

/** A string of one mode: the number is the high byte of each character, but for two encodings. */
std::string segmentText(uint8_t mode, Bytes bytes) {
    constexpr uint8_t kHighestPage = 0x33, kCompressed = 0x3e, kUtf16 = 0x3f;
    if (mode == kUtf16) return utf16Text(bytes);
    if (mode == kCompressed) return CompressedText(bytes).decode();
    if (mode > kHighestPage) return {};
    std::string text;
    for (size_t i = 0; i < bytes.size; ++i) {
        appendShown(&text, static_cast<char32_t>(mode << 8 | bytes.data[i]));
    }
    return text;
}

}  // namespace

std::string dvbText(Bytes field) {
    if (field.size == 0) return {};
    const uint8_t first = field.data[0];
    const auto after = [&](size_t size) {
        return Bytes{field.data + size, field.size - std::min(size, field.size)};
    };
    if (first >= 0x20) return latinText(field);
    if (first <= 0x0b) {
        // Tables 1 to 11 are the parts 5 to 15 of ISO 8859.
        return first == 0 ? latinText(after(1)) : isoText(first + 4u, after(1));
    }
    switch (first) {
        case 0x10:
            if (field.size < 3) return {};
            return isoText(static_cast<unsigned>(field.data[1] << 8 | field.data[2]), after(3));
        case 0x11:
            return multiByteText("UTF-16BE", after(1));
        case 0x12:
            return multiByteText("EUC-KR", after(1));
        case 0x13:
            return multiByteText("GB2312", after(1));
        case 0x14:
            // The character set of ISO 10646 that the second plane of Big5 names.
            return multiByteText("UTF-16BE", after(1));
        case 0x15:
            return multiByteText("UTF-8", after(1));
        default:
            // An encoding of a registered organisation, or none that is defined.
            return {};
    }
}

std::vector<LanguageText> atscTexts(Bytes structure) {
    constexpr uint8_t kUncompressed = 0;
    Reader reader(structure);
    std::vector<LanguageText> texts;
    const uint8_t strings = reader.u8();
    for (uint8_t i = 0; i < strings && reader.ok(); ++i) {
        const Bytes code = reader.take(3);
        std::string text;
        const uint8_t segments = reader.u8();
        for (uint8_t j = 0; j < segments && reader.ok(); ++j) {
            const uint8_t compression = reader.u8();
            const uint8_t mode = reader.u8();
            const Bytes bytes = reader.take(reader.u8());
            if (compression == kUncompressed) text += segmentText(mode, bytes);
        }
        if (reader.ok()) texts.push_back({languageOf(code.data), std::move(text)});
    }
    return texts;
}

std::string atscText(Bytes structure, const std::string& language) {
    std::vector<LanguageText> texts = atscTexts(structure);
    LanguageText* chosen = nullptr;
    for (LanguageText& each : texts) {
        if (each.text.empty()) continue;
        if (each.language == language) return std::move(each.text);
        if (chosen == nullptr) chosen = &each;
    }
    return chosen != nullptr ? std::move(chosen->text) : std::string();
}

std::string utf16Text(Bytes text) {
    size_t size = 0;
    while (size + 1 < text.size && (text.data[size] != 0 || text.data[size + 1] != 0)) size += 2;
    return multiByteText("UTF-16BE", {text.data, size});
}

std::string asciiText(Bytes field) {
    std::string text;
    for (size_t i = 0; i < field.size; ++i) {
        if (field.data[i] >= 0x20 && field.data[i] < 0x7f) {
            text.push_back(static_cast<char>(field.data[i]));
        }
    }
    return text;
}

std::string languageOf(const uint8_t* code) {
    return letters(code, 'a', 'A');
}

std::string countryOf(const uint8_t* code) {
    return letters(code, 'A', 'a');
}

}  // namespace qeltvd::stream
