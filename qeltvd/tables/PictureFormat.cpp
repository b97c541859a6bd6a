#include <bitstream/mpeg/mp2v.h>

#include <algorithm>

#include "Tables.h"

namespace qeltvd::stream {

namespace {

constexpr uint32_t kLargestSide = 16384;

/** Reads bits of a NAL unit, without the bytes that keep start codes out of it. */
class Bits {
  public:
    explicit Bits(Bytes unit) {
        size_t zeros = 0;
        for (size_t i = 0; i < unit.size && mBytes.size() < kLimit; ++i) {
            if (zeros >= 2 && unit.data[i] == 3) {
                zeros = 0;
                continue;
            }
            zeros = unit.data[i] == 0 ? zeros + 1 : 0;
            mBytes.push_back(unit.data[i]);
        }
    }

    uint32_t bits(unsigned count) {
        uint32_t value = 0;
        for (unsigned i = 0; i < count; ++i) value = value << 1 | (bit() ? 1u : 0u);
        return value;
    }
    bool bit() {
        if (mAt >= mBytes.size() * 8) {
            mOk = false;
            return false;
        }
        const bool value = (mBytes[mAt / 8] >> (7 - mAt % 8) & 1) != 0;
        ++mAt;
        return value;
    }
    void skip(unsigned count) { bits(count); }
    /** Exp-Golomb. */
    uint32_t number() {
        unsigned zeros = 0;
        while (mOk && !bit()) ++zeros;
        if (!mOk || zeros > 31) {
            mOk = false;
            return 0;
        }
        return (uint32_t{1} << zeros) - 1 + bits(zeros);
    }
    int32_t signedNumber() {
        const uint32_t value = number();
        const auto half = static_cast<int32_t>(value / 2);
        return (value & 1) != 0 ? half + 1 : -half;
    }
    bool ok() const { return mOk; }

  private:
    static constexpr size_t kLimit = 1024;
    std::vector<uint8_t> mBytes;
    size_t mAt = 0;
    bool mOk = true;
};

uint32_t aspectOf(uint64_t width, uint64_t height, uint64_t pixelWidth, uint64_t pixelHeight) {
    if (height == 0 || pixelHeight == 0) return 0;
    return static_cast<uint32_t>((width * pixelWidth * 1000 + height * pixelHeight / 2) /
                                 (height * pixelHeight));
}

bool plausible(uint32_t width, uint32_t height) {
    return width > 0 && height > 0 && width <= kLargestSide && height <= kLargestSide;
}

std::optional<PictureFormat> mpeg2Format(Bytes header) {
    constexpr uint32_t kRates[] = {0, 23976, 24000, 25000, 29970, 30000, 50000, 59940, 60000};
    if (header.size < MP2VSEQ_HEADER_SIZE) return std::nullopt;
    PictureFormat format;
    format.codec = Codec::kMpeg1Video;
    format.width = mp2vseq_get_horizontal(header.data);
    format.height = mp2vseq_get_vertical(header.data);
    const uint8_t rate = mp2vseq_get_framerate(header.data);
    if (rate >= sizeof(kRates) / sizeof(kRates[0])) return std::nullopt;
    format.rate = kRates[rate];
    switch (mp2vseq_get_aspect(header.data)) {
        case MP2VSEQ_ASPECT_SQUARE:
            format.aspect = aspectOf(format.width, format.height, 1, 1);
            break;
        case MP2VSEQ_ASPECT_4_3:
            format.aspect = 1333;
            break;
        case MP2VSEQ_ASPECT_16_9:
            format.aspect = 1778;
            break;
        case MP2VSEQ_ASPECT_2_21:
            format.aspect = 2210;
            break;
        default:
            break;
    }
    // The extension follows at once, behind the matrices.
    constexpr uint8_t kStart[] = {0, 0, 1};
    const uint8_t* end = header.data + header.size;
    const uint8_t* next = std::search(header.data + MP2VSEQ_HEADER_SIZE, end, kStart, kStart + 3);
    if (end - next >= MP2VSEQX_HEADER_SIZE && next[3] == MP2VX_START_CODE &&
        mp2vx_get_id(next) == MP2VX_ID_SEQX) {
        format.codec = Codec::kMpeg2Video;
        format.interlaced = !mp2vseqx_get_progressive(next);
        format.width = static_cast<uint16_t>(format.width | mp2vseqx_get_horizontal(next) << 12);
        format.height = static_cast<uint16_t>(format.height | mp2vseqx_get_vertical(next) << 12);
    }
    if (!plausible(format.width, format.height)) return std::nullopt;
    return format;
}

void skipScalingList(Bits* bits, unsigned size) {
    int32_t last = 8, next = 8;
    for (unsigned i = 0; i < size && bits->ok(); ++i) {
        if (next != 0) next = (last + bits->signedNumber() + 256) % 256;
        if (next != 0) last = next;
    }
}

/** Pixel shapes that H.264 and H.265 number from 1. */
constexpr uint8_t kPixels[][2] = {{1, 1},    {12, 11}, {10, 11}, {16, 11}, {40, 33}, {24, 11},
                                  {20, 11},  {32, 11}, {80, 33}, {18, 11}, {15, 11}, {64, 33},
                                  {160, 99}, {4, 3},   {3, 2},   {2, 1}};

/** The part of the usability information that both have: up to the chroma position. */
void readShape(Bits* bits, PictureFormat* format) {
    constexpr uint32_t kOwnShape = 255;
    uint32_t width = 1, height = 1;
    if (bits->bit()) {
        const uint32_t shape = bits->bits(8);
        if (shape == kOwnShape) {
            width = bits->bits(16);
            height = bits->bits(16);
        } else if (shape >= 1 && shape <= sizeof(kPixels) / sizeof(kPixels[0])) {
            width = kPixels[shape - 1][0];
            height = kPixels[shape - 1][1];
        }
    }
    if (width > 0 && height > 0) {
        format->aspect = aspectOf(format->width, format->height, width, height);
    }
    if (bits->bit()) bits->skip(1);
    if (bits->bit()) {
        bits->skip(4);
        if (bits->bit()) bits->skip(24);
    }
    if (bits->bit()) {
        bits->number();
        bits->number();
    }
}

/** Pictures per 1000 seconds of a tick and a time scale. */
uint32_t rateOf(uint64_t ticks, uint64_t scale) {
    if (ticks == 0) return 0;
    const uint64_t rate = scale * 1000 / ticks;
    return rate <= 1000000 ? static_cast<uint32_t>(rate) : 0;
}

std::optional<PictureFormat> h264Format(Bytes unit) {
    constexpr uint32_t kHighProfiles[] = {100, 110, 122, 244, 44, 83, 86, 118, 128, 138};
    Bits bits(unit);
    bits.skip(8);
    const uint32_t profile = bits.bits(8);
    bits.skip(16);
    bits.number();
    uint32_t chroma = 1;
    if (std::count(std::begin(kHighProfiles), std::end(kHighProfiles), profile) > 0) {
        chroma = bits.number();
        if (chroma == 3) bits.skip(1);
        bits.number();
        bits.number();
        bits.skip(1);
        if (bits.bit()) {
            for (unsigned i = 0; i < (chroma == 3 ? 12u : 8u); ++i) {
                if (bits.bit()) skipScalingList(&bits, i < 6 ? 16 : 64);
            }
        }
    }
    bits.number();
    const uint32_t order = bits.number();
    if (order == 0) {
        bits.number();
    } else if (order == 1) {
        bits.skip(1);
        bits.signedNumber();
        bits.signedNumber();
        const uint32_t count = bits.number();
        for (uint32_t i = 0; i < count && bits.ok(); ++i) bits.signedNumber();
    }
    bits.number();
    bits.skip(1);
    uint32_t width = bits.number(), height = bits.number();
    if (!bits.ok() || width >= kLargestSide / 16 || height >= kLargestSide / 16) {
        return std::nullopt;
    }
    const bool frames = bits.bit();
    width = (width + 1) * 16;
    height = (height + 1) * 16 * (frames ? 1 : 2);
    if (!frames) bits.skip(1);
    bits.skip(1);
    if (bits.bit()) {
        const uint32_t unitX = chroma == 1 || chroma == 2 ? 2 : 1;
        const uint32_t unitY = (chroma == 1 ? 2u : 1u) * (frames ? 1 : 2);
        const uint64_t left = bits.number(), right = bits.number();
        const uint64_t top = bits.number(), bottom = bits.number();
        if ((left + right) * unitX >= width || (top + bottom) * unitY >= height) {
            return std::nullopt;
        }
        width -= static_cast<uint32_t>((left + right) * unitX);
        height -= static_cast<uint32_t>((top + bottom) * unitY);
    }
    if (!bits.ok() || !plausible(width, height)) return std::nullopt;
    PictureFormat format;
    format.codec = Codec::kH264;
    format.width = static_cast<uint16_t>(width);
    format.height = static_cast<uint16_t>(height);
    format.interlaced = !frames;
    format.aspect = aspectOf(width, height, 1, 1);
    if (bits.bit()) {
        readShape(&bits, &format);
        if (bits.bit()) {
            const uint64_t ticks = bits.bits(32);
            const uint64_t scale = bits.bits(32);
            // The scale counts fields.
            if (bits.ok()) format.rate = rateOf(ticks * 2, scale);
        }
    }
    return format;
}

void skipScalingLists265(Bits* bits) {
    for (unsigned size = 0; size < 4; ++size) {
        for (unsigned matrix = 0; matrix < 6 && bits->ok(); matrix += size == 3 ? 3 : 1) {
            if (!bits->bit()) {
                bits->number();
                continue;
            }
            const unsigned count = std::min(64u, 1u << (4 + (size << 1)));
            if (size > 1) bits->signedNumber();
            for (unsigned i = 0; i < count && bits->ok(); ++i) bits->signedNumber();
        }
    }
}

/** @return false when the list cannot be skipped */
bool skipReferenceSets(Bits* bits) {
    constexpr uint32_t kMostSets = 64, kMostPictures = 16;
    const uint32_t sets = bits->number();
    if (sets > kMostSets) return false;
    uint32_t pictures = 0;
    for (uint32_t i = 0; i < sets && bits->ok(); ++i) {
        if (i > 0 && bits->bit()) {
            bits->skip(1);
            bits->number();
            uint32_t used = 0;
            for (uint32_t j = 0; j <= pictures; ++j) {
                const bool current = bits->bit();
                if (current || bits->bit()) ++used;
            }
            pictures = used;
        } else {
            const uint32_t before = bits->number(), after = bits->number();
            if (before > kMostPictures || after > kMostPictures) return false;
            pictures = before + after;
            for (uint32_t j = 0; j < pictures; ++j) {
                bits->number();
                bits->skip(1);
            }
        }
        if (pictures > kMostPictures) return false;
    }
    return bits->ok();
}

std::optional<PictureFormat> h265Format(Bytes unit) {
    Bits bits(unit);
    bits.skip(16 + 4);
    const uint32_t subLayers = bits.bits(3);
    if (subLayers > 6) return std::nullopt;
    bits.skip(1);
    bits.skip(8 + 32);
    const bool progressive = bits.bit(), interlaced = bits.bit();
    bits.skip(46 + 8);
    if (subLayers > 0) {
        bool profile[8] = {}, level[8] = {};
        for (uint32_t i = 0; i < subLayers; ++i) {
            profile[i] = bits.bit();
            level[i] = bits.bit();
        }
        for (uint32_t i = subLayers; i < 8; ++i) bits.skip(2);
        for (uint32_t i = 0; i < subLayers; ++i) {
            if (profile[i]) bits.skip(88);
            if (level[i]) bits.skip(8);
        }
    }
    bits.number();
    const uint32_t chroma = bits.number();
    if (chroma == 3) bits.skip(1);
    uint32_t width = bits.number(), height = bits.number();
    if (!bits.ok() || !plausible(width, height)) return std::nullopt;
    if (bits.bit()) {
        const uint32_t unitX = chroma == 1 || chroma == 2 ? 2 : 1, unitY = chroma == 1 ? 2 : 1;
        const uint64_t left = bits.number(), right = bits.number();
        const uint64_t top = bits.number(), bottom = bits.number();
        if ((left + right) * unitX >= width || (top + bottom) * unitY >= height) {
            return std::nullopt;
        }
        width -= static_cast<uint32_t>((left + right) * unitX);
        height -= static_cast<uint32_t>((top + bottom) * unitY);
    }
    if (!bits.ok()) return std::nullopt;
    PictureFormat format;
    format.codec = Codec::kH265;
    format.width = static_cast<uint16_t>(width);
    format.height = static_cast<uint16_t>(height);
    format.interlaced = interlaced && !progressive;
    format.aspect = aspectOf(width, height, 1, 1);

    // Up to the usability information.
    bits.number();
    bits.number();
    const uint32_t order = bits.number() + 4;
    for (uint32_t i = bits.bit() ? 0 : subLayers; i <= subLayers; ++i) {
        bits.number();
        bits.number();
        bits.number();
    }
    for (unsigned i = 0; i < 6; ++i) bits.number();
    if (bits.bit() && bits.bit()) skipScalingLists265(&bits);
    bits.skip(2);
    if (bits.bit()) {
        bits.skip(8);
        bits.number();
        bits.number();
        bits.skip(1);
    }
    if (order > 16 || !skipReferenceSets(&bits)) return format;
    if (bits.bit()) {
        const uint32_t count = bits.number();
        for (uint32_t i = 0; i < count && bits.ok(); ++i) bits.skip(order + 1);
    }
    bits.skip(2);
    if (!bits.bit() || !bits.ok()) return format;
    PictureFormat usable = format;
    readShape(&bits, &usable);
    bits.skip(1);
    const bool fields = bits.bit();
    bits.skip(1);
    if (bits.bit()) {
        for (unsigned i = 0; i < 4; ++i) bits.number();
    }
    if (bits.bit()) {
        const uint64_t ticks = bits.bits(32);
        const uint64_t scale = bits.bits(32);
        usable.rate = rateOf(ticks, scale);
    }
    if (!bits.ok()) return format;
    if (fields) {
        // Each coded picture is one field.
        usable.interlaced = true;
        usable.height = static_cast<uint16_t>(usable.height * 2);
        usable.aspect /= 2;
        usable.rate /= 2;
    }
    return usable;
}

}  // namespace

std::optional<PictureFormat> pictureFormat(Codec codec, Bytes stream) {
    for (size_t i = 0; i + 4 < stream.size; ++i) {
        if (stream.data[i] != 0 || stream.data[i + 1] != 0 || stream.data[i + 2] != 1) continue;
        const uint8_t code = stream.data[i + 3];
        const Bytes unit{stream.data + i + 3, stream.size - i - 3};
        std::optional<PictureFormat> format;
        switch (codec) {
            case Codec::kMpeg1Video:
            case Codec::kMpeg2Video:
                if (code == MP2VSEQ_START_CODE)
                    format = mpeg2Format({unit.data - 3, unit.size + 3});
                break;
            case Codec::kH264:
                if ((code & 0x1f) == 7) format = h264Format(unit);
                break;
            case Codec::kH265:
                if ((code >> 1 & 0x3f) == 33) format = h265Format(unit);
                break;
            default:
                return std::nullopt;
        }
        if (format) return format;
        i += 2;
    }
    return std::nullopt;
}

}  // namespace qeltvd::stream
