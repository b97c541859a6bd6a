#include <gmock/gmock.h>

#include "StreamText.h"
#include "StreamTime.h"
#include "Tables.h"
#include "stream_composer.h"

using namespace qeltvd::stream;
using composed::Octets;
using composed::Writer;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

Bytes view(const std::string& text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

Bytes view(const Octets& bytes) {
    return {bytes.data(), bytes.size()};
}

std::string shown(const std::string& field) {
    return dvbText(view(field));
}

bool isUtf8(const std::string& text) {
    for (size_t i = 0; i < text.size();) {
        const auto c = static_cast<uint8_t>(text[i]);
        const size_t size = c < 0x80 ? 1 : c >= 0xf0 ? 4 : c >= 0xe0 ? 3 : c >= 0xc2 ? 2 : 0;
        if (size == 0 || i + size > text.size()) return false;
        for (size_t j = 1; j < size; ++j) {
            if ((static_cast<uint8_t>(text[i + j]) & 0xc0) != 0x80) return false;
        }
        i += size;
    }
    return true;
}

TEST(DvbText, EveryCharacterTableIsRead) {
    const struct {
        const char* field;
        const char* text;
    } rows[] = {
            {"Plain 7", "Plain 7"},
            {"Caf\xc2\x65 \xa4 5", "Café € 5"},
            {"\xe2or\xf2", "Đorđ"},
            {"\xd0 \xd4 \xe6", "― ™ Ĳ"},
            {"\xcfS \xc8u \xcb\x63 \xc5\x61 \xcd\x6f", "Š ü ç ā ő"},
            {"\x01\xbc\xd8\xe0", "Мир"},
            {"\x02\xc7", "ا"},
            {"\x03\xc1\xe8", "Αθ"},
            {"\x04\xe0", "א"},
            {"\x05\xfd\xf0", "ığ"},
            {"\x06\xaf", "Ŋ"},
            {"\x07\xa1", "ก"},
            {"\x09\xd0", "Š"},
            {"\x0a\xa1", "Ḃ"},
            {"\x0b\xa4", "€"},
            {"\x15K\xc3\xbc\xe2\x82\xac", "Kü€"},
            {"\x12\xb0\xa1", "가"},
            {"\x13\xb0\xa1", "啊"},
    };
    for (const auto& row : rows) EXPECT_EQ(row.text, shown(row.field)) << row.text;
    EXPECT_EQ("ł", shown(std::string("\x10\x00\x02\xb3", 4)));
    EXPECT_EQ("Ж", shown(std::string("\x11\x04\x16", 3)));
    EXPECT_EQ("中", shown(std::string("\x14\x4e\x2d", 3)));
}

TEST(DvbText, ControlCodesGoAndLineBreaksStay) {
    EXPECT_EQ("bold\nnext", shown("\x86"
                                  "bold\x87\x8a"
                                  "next\x80\x9f"));
    EXPECT_EQ("a\nb", shown("\x15"
                            "a\xee\x82\x8a\xee\x82\x86"
                            "b"));
    EXPECT_EQ("a\nb", shown(std::string("\x11\0a\xe0\x8a\0b", 7)));
    EXPECT_EQ("ab", shown(std::string("a\0b", 3)));
}

TEST(DvbText, WhatATableDoesNotHaveIsReplacedAndTheResultIsUtf8) {
    EXPECT_EQ(
            "a\xef\xbf\xbd"
            "b",
            shown("\x15"
                  "a\xff"
                  "b"));
    EXPECT_EQ("", shown("\x1f\x01\x42")) << "an encoding that somebody registered";
    EXPECT_EQ("", shown("\x16what"));
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const char field[] = {static_cast<char>(first),
                                  static_cast<char>(second),
                                  '\xc3',
                                  'e',
                                  '\xff',
                                  '\x80',
                                  '\xe4'};
            ASSERT_TRUE(isUtf8(shown(std::string(field, sizeof(field))))) << first << " " << second;
            ASSERT_TRUE(isUtf8(shown(std::string(field, 1)))) << first;
        }
    }
}

TEST(AtscText, StringsAreChosenByLanguageAndJoinedOfSegments) {
    Octets two = Writer().u8(2).text("eng").u8(2).u8(0).u8(0).counted("One").u8(0).u8(0x3f).counted(
            Writer().u16(0x20).u16(0x416));
    const Octets spanish =
            Writer().text("spa").u8(2).u8(0).u8(0).counted("Uno").u8(1).u8(0).counted("xx");
    two.insert(two.end(), spanish.begin(), spanish.end());
    EXPECT_EQ("One Ж", atscText(view(two)));
    EXPECT_EQ("Uno", atscText(view(two), "spa")) << "without the segment that is coded";
    EXPECT_EQ("One Ж", atscText(view(two), "fra"));
    two.resize(two.size() - 3);
    EXPECT_EQ("One Ж", atscText(view(two), "spa")) << "cut off";
    // A string that is coded as a whole is not known, and another one is better than none.
    const Octets coded = Writer().u8(2)
                                 .text("eng")
                                 .u8(1)
                                 .u8(2)
                                 .u8(0xff)
                                 .counted("xx")
                                 .text("spa")
                                 .u8(1)
                                 .u8(0)
                                 .u8(0)
                                 .counted("Uno");
    EXPECT_EQ("Uno", atscText(view(coded), "eng"));
    ASSERT_EQ(2u, atscTexts(view(coded)).size());
    EXPECT_EQ((LanguageText{"eng", ""}), atscTexts(view(coded))[0]);
}

TEST(AtscText, HasAnEncodingForEachMode) {
    const auto shown = [](uint8_t mode, const Octets& bytes) {
        return atscText(view(Writer().u8(1).text("eng").u8(1).u8(0).u8(mode).counted(bytes)));
    };
    EXPECT_EQ("é", shown(0x00, {0xe9}));
    EXPECT_EQ("Жд", shown(0x04, {0x16, 0x34}));
    EXPECT_EQ("あ", shown(0x30, {0x42}));
    EXPECT_EQ("Ж😀", shown(0x3f, {0x04, 0x16, 0xd8, 0x3d, 0xde, 0x00}));
    EXPECT_EQ("", shown(0x40, {0x41})) << "has no meaning yet";
    EXPECT_EQ("", shown(0xff, {0x41}));
    // The compression of Unicode, with the examples of its report.
    EXPECT_EQ("Öl fließt", shown(0x3e, {0xd6, 0x6c, 0x20, 0x66, 0x6c, 0x69, 0x65, 0xdf, 0x74}));
    EXPECT_EQ("Москва", shown(0x3e, {0x12, 0x9c, 0xbe, 0xc1, 0xba, 0xb2, 0xb0}));
    // A quoted window, a window far away, units of UTF-16, and a change back.
    EXPECT_EQ("–😀A♪é", shown(0x3e, {0x05, 0x13, 0x0b, 0x61, 0xec, 0x80, 0x0f, 0x00, 0x41, 0x26,
                                    0x6a, 0xe0, 0xe9}));
    // What is cut off or has no meaning ends without a crash, and stays valid.
    EXPECT_EQ("", shown(0x3e, {0x0f, 0xd8}));
    EXPECT_EQ("A", shown(0x3e, {0x41, 0x0b, 0x61}));
}

TEST(StreamTime, DatesGoFrom1970To2149) {
    const auto digits = [](uint64_t day, uint64_t time) { return day << 24 | time; };
    EXPECT_EQ(750516300, timeOfDvb(digits(0xc079, 0x124500))) << "1993-10-13 12:45";
    EXPECT_EQ(composed::kTime, timeOfDvb(dvbOfTime(composed::kTime)));
    // The last second of 31 bits, and the day after the last one of the date.
    for (const int64_t time :
         {int64_t{2147483647}, int64_t{2155679999}, int64_t{2155680000}, int64_t{4102444800}}) {
        EXPECT_EQ(time, timeOfDvb(dvbOfTime(time))) << time;
    }
    EXPECT_EQ(std::nullopt, timeOfDvb(0xffffffffff));
    EXPECT_EQ(std::nullopt, timeOfDvb(digits(0xc079, 0x1a0000)));
    EXPECT_EQ(std::nullopt, timeOfDvb(digits(0xc079, 0x240000)));
    EXPECT_EQ(4294967295 + 315964800 - 18, timeOfAtsc(0xffffffff, 18));
}

TEST(ServiceTables, DamageIsRefused) {
    const Octets good = composed::section(0x02, 1,
                                          Writer().u16(0xe101).list({}).u8(0x1b).u16(0xe101).list(
                                                  composed::descriptor(0x52, {7})));
    const auto map = programMap(view(good));
    ASSERT_TRUE(map);
    EXPECT_EQ(1, map->serviceId());
    ASSERT_THAT(map->components, SizeIs(1));
    EXPECT_EQ(Codec::kH264, map->components[0].codec);
    EXPECT_EQ(7, map->components[0].tag);
    for (size_t size = 0; size < good.size(); ++size) {
        EXPECT_FALSE(programMap({good.data(), size})) << size;
    }
    for (size_t i = 0; i < good.size(); ++i) {
        Octets damaged = good;
        damaged[i] ^= 0x10;
        EXPECT_FALSE(programMap(view(damaged))) << i;
    }
    // A list of descriptors that is longer than its section, with a checksum that is right.
    EXPECT_FALSE(programMap(view(composed::section(
            0x02, 1, Writer().u16(0xe101).list({}).u8(0x1b).u16(0xe101).u16(0xf0ff)))));
    EXPECT_FALSE(serviceTable(view(good)));
    EXPECT_FALSE(eventTable(view(good)));
}

TEST(ServiceTables, ATableMayHaveMoreEntriesThan256) {
    Writer body;
    body.u16(1).u8(0xff);
    for (uint16_t id = 1; id <= 700; ++id) body.u16(id).u8(0xfc).u16(0x8000);
    const auto table = serviceTable(view(composed::section(0x42, 1, body)));
    ASSERT_TRUE(table);
    EXPECT_THAT(table->services, SizeIs(700));
}

TEST(ServiceTables, SoundRolesAndChannelsComeFromTheirDescriptors) {
    const auto read = [](uint8_t type, const Octets& descriptors) {
        const auto map = programMap(view(composed::section(
                0x02, 1, Writer().u16(0xe101).list({}).u8(type).u16(0xe101).list(descriptors))));
        return map && !map->components.empty() ? map->components[0] : Component{};
    };
    using composed::descriptor;
    Component sound = read(0x06, descriptor(0x6a, {0x80, 0x54}));
    EXPECT_EQ(Codec::kAc3, sound.codec);
    EXPECT_EQ(6, sound.channels);
    EXPECT_EQ(AudioRole::kVisuallyImpaired, sound.role);
    // Supplementary audio that a receiver mixes: audio description in English.
    sound = read(0x11, descriptor(0x7f, {0x06, 0x05, 'e', 'n', 'g'}));
    EXPECT_EQ(AudioRole::kVisuallyImpaired, sound.role);
    EXPECT_TRUE(sound.mixed);
    EXPECT_EQ("eng", sound.language);
    sound = read(0x03, descriptor(0x0a, {'D', 'E', 'U', 0, 'f', 'r', 'a', 0}));
    EXPECT_EQ("deu", sound.language);
    EXPECT_EQ("fra", sound.secondLanguage);
    sound = read(0x06, descriptor(0x05, {'E', 'A', 'C', '3'}));
    EXPECT_EQ(Codec::kEac3, sound.codec);
    sound = read(0x06, descriptor(0x7f, {0x15}));
    EXPECT_EQ(Codec::kAc4, sound.codec);
    EXPECT_EQ(ComponentKind::kOther, read(0x06, {}).kind);
    const Component scrambled = read(0x1b, descriptor(0x09, {0x26, 0x00, 0xff, 0xff}));
    ASSERT_THAT(scrambled.ca, SizeIs(1));
    EXPECT_EQ(0x2600, scrambled.ca[0].systemId);
}

TEST(ServiceTables, NumbersOfNorthernNetworksHave14Bits) {
    using composed::descriptor;
    const auto read = [](const Octets& descriptors) {
        const Octets stream = Writer().u16(1).u16(2).list(descriptors);
        const auto table =
                networkTable(view(composed::section(0x40, 1, Writer().list({}).list(stream))));
        return table && !table->streams.empty() ? table->streams[0].numbers
                                                : std::vector<LogicalNumber>{};
    };
    const Octets numbers = descriptor(0x83, Writer().u16(5).u16(0x8000 | 0x1234));
    Octets northern = descriptor(0x5f, Writer().u32(0x29));
    northern.insert(northern.end(), numbers.begin(), numbers.end());
    ASSERT_THAT(read(northern), SizeIs(1));
    EXPECT_EQ(0x1234, read(northern)[0].number);
    ASSERT_THAT(read(numbers), SizeIs(1));
    EXPECT_EQ(0x234, read(numbers)[0].number);
    EXPECT_TRUE(read(numbers)[0].visible);
    const Octets list = Writer().u16(6).u16(0x7c09);
    const Octets second =
            descriptor(0x87, Writer().u8(1).counted("List").text("SWE").counted(list));
    ASSERT_THAT(read(second), SizeIs(1));
    EXPECT_EQ(9, read(second)[0].number);
    EXPECT_FALSE(read(second)[0].visible);
    Octets other = descriptor(0x5f, Writer().u32(0x28));
    other.insert(other.end(), second.begin(), second.end());
    EXPECT_THAT(read(other), SizeIs(0)) << "another organisation's descriptor";
}

TEST(EventTables, OffsetsWestOfGreenwichAreNegativeAndMayHaveNoChange) {
    const Octets offset = composed::descriptor(
            0x58, Writer().text("CAN").u8(0x07).u16(0x0330).u40(0xffffffffff).u16(0x0230));
    const Octets body = Writer().u40(dvbOfTime(composed::kTime)).list(offset);
    const auto time = timeTable(view(composed::shortSection(0x73, body)));
    ASSERT_TRUE(time);
    EXPECT_EQ(composed::kTime, time->utc);
    ASSERT_THAT(time->offsets, SizeIs(1));
    EXPECT_EQ("CAN", time->offsets[0].country);
    EXPECT_EQ(1, time->offsets[0].region);
    EXPECT_EQ(-12600, time->offsets[0].seconds);
    EXPECT_EQ(-9000, time->offsets[0].nextSeconds);
    EXPECT_EQ(0, time->offsets[0].changeAt);
}

/** Writes the parameters that sequence headers are made of. */
class Bits {
  public:
    Bits& put(uint64_t value, unsigned count) {
        for (unsigned i = count; i-- > 0;) mBits.push_back((value >> i & 1) != 0);
        return *this;
    }
    /** Exp-Golomb. */
    Bits& number(uint32_t value) {
        unsigned size = 0;
        while (value + 1 >= 2u << size) ++size;
        return put(0, size).put(value + 1, size + 1);
    }
    /** A unit behind its start code, with the bytes that keep start codes out. */
    Octets unit() {
        put(1, 1);
        Octets plain{0, 0, 1};
        size_t zeros = 0;
        for (size_t i = 0; i < mBits.size(); i += 8) {
            uint8_t byte = 0;
            for (size_t j = 0; j < 8; ++j) {
                const bool bit = i + j < mBits.size() && mBits[i + j];
                byte = static_cast<uint8_t>(byte << 1 | (bit ? 1 : 0));
            }
            if (zeros >= 2 && byte <= 3) {
                plain.push_back(3);
                zeros = 0;
            }
            zeros = byte == 0 ? zeros + 1 : 0;
            plain.push_back(byte);
        }
        return plain;
    }

  private:
    std::vector<bool> mBits;
};

/** Wide pixels, and 50 fields or 50 pictures a second. */
Bits& usability(Bits& bits, bool h265) {
    bits.put(1, 1).put(255, 8).put(4, 16).put(3, 16).put(0, 1).put(0, 1).put(0, 1);
    if (h265) bits.put(0, 4);
    return bits.put(1, 1).put(1, 32).put(50, 32);
}

TEST(PictureFormat, SequenceHeadersOfAllCodecsAreRead) {
    const Octets h262{0x00, 0x00, 0x01, 0xb3, 0x2d, 0x02, 0x40, 0x33, 0x24, 0x9f, 0x23,
                      0x81, 0x00, 0x00, 0x01, 0xb5, 0x14, 0x82, 0x00, 0x01, 0x00, 0x00};
    PictureFormat expected{Codec::kMpeg2Video, 720, 576, 25000, true, 1778};
    EXPECT_EQ(expected, pictureFormat(Codec::kMpeg2Video, view(h262)));

    Bits set;
    set.put(0x67, 8).put(100, 8).put(0, 8).put(40, 8).number(0).number(1).number(0).number(0);
    set.put(0, 1).put(1, 1).put(1, 1);
    // One list of 16, all steps 0.
    for (int i = 0; i < 16; ++i) set.number(0);
    set.put(0, 7).number(0).number(0).number(0).number(4).put(0, 1);
    // 1440 by 1088 in fields, of which 8 rows are cut.
    set.number(89).number(33).put(0, 1).put(0, 1).put(1, 1).put(1, 1);
    set.number(0).number(0).number(0).number(2).put(1, 1);
    const Octets h264 = usability(set, false).unit();
    expected = {Codec::kH264, 1440, 1080, 25000, true, 1778};
    EXPECT_EQ(expected, pictureFormat(Codec::kH264, view(h264)));

    Bits high;
    high.put(0x4201, 16).put(0, 4).put(0, 3).put(1, 1);
    high.put(2, 8).put(0, 32).put(2, 2).put(0, 46).put(153, 8);
    high.number(0).number(1).number(1440).number(1080).put(0, 1);
    high.number(2).number(2).number(4).put(1, 1).number(4).number(2).number(0);
    for (int i = 0; i < 6; ++i) high.number(1);
    high.put(0, 1).put(3, 2).put(0, 1);
    // Two sets of references, the second one by the first.
    high.number(2).number(1).number(1).number(0).put(1, 1).number(0).put(1, 1);
    high.put(1, 1).put(0, 1).number(0).put(7, 3);
    high.put(0, 1).put(0, 2).put(1, 1);
    const Octets h265 = usability(high, true).unit();
    expected = {Codec::kH265, 1440, 1080, 50000, false, 1778};
    EXPECT_EQ(expected, pictureFormat(Codec::kH265, view(h265)));

    for (size_t size = 0; size < h264.size(); ++size) {
        pictureFormat(Codec::kMpeg2Video, {h262.data(), std::min(size, h262.size())});
        pictureFormat(Codec::kH264, {h264.data(), size});
        pictureFormat(Codec::kH265, {h265.data(), std::min(size, h265.size())});
    }
}

}  // namespace
