#pragma once

#include <cstdint>

namespace qeltvd {

/**
 * Channel ids. The two highest bits tell the kind, the four below them the list, the rest the
 * number:
 *
 *   one part   0 | list | 10 zeros     | number 16 bits
 *   two parts  1 | list | 6 zeros | major 10 bits | minor 10 bits
 *   non-PSIP   2 | list | 2 zeros | RF channel 8 bits | program number 16 bits
 *
 * 0 is no channel. The low 16 bits tell channels of one list apart, but for two-part channels of a
 * major number above 63 and non-PSIP channels; they are the short id.
 */
namespace channel_ids {

enum Kind : uint32_t { kOnePart = 0, kTwoParts = 1, kNonPsip = 2 };

constexpr uint32_t kMaximumList = 15;
constexpr uint32_t kMaximumNumber = 0xffff;
constexpr uint32_t kMaximumPart = 0x3ff;

constexpr uint32_t make(Kind kind, uint32_t list, uint32_t payload) {
    return kind << 30 | list << 26 | payload;
}

/** 0 where a part does not fit. */
constexpr uint32_t onePart(uint32_t list, uint32_t number) {
    if (list == 0 || list > kMaximumList || number == 0 || number > kMaximumNumber) return 0;
    return make(kOnePart, list, number);
}

constexpr uint32_t twoParts(uint32_t list, uint32_t major, uint32_t minor) {
    if (list == 0 || list > kMaximumList || major == 0 || major > kMaximumPart) return 0;
    return minor > kMaximumPart ? 0 : make(kTwoParts, list, major << 10 | minor);
}

constexpr uint32_t nonPsip(uint32_t list, uint32_t rfChannel, uint32_t program) {
    if (list == 0 || list > kMaximumList || rfChannel == 0 || rfChannel > 0xff) return 0;
    return program > 0xffff ? 0 : make(kNonPsip, list, rfChannel << 16 | program);
}

constexpr uint32_t kind(uint32_t id) {
    return id >> 30;
}

constexpr uint16_t list(uint32_t id) {
    return static_cast<uint16_t>(id >> 26 & 0xf);
}

constexpr bool isOnePart(uint32_t id) {
    return kind(id) == kOnePart && (id & 0xffff) != 0;
}

constexpr bool isNonPsip(uint32_t id) {
    return kind(id) == kNonPsip;
}

/** The number of a one-part id, the RF channel of a non-PSIP id. */
constexpr uint16_t major(uint32_t id) {
    switch (kind(id)) {
        case kOnePart:
            return static_cast<uint16_t>(id);
        case kTwoParts:
            return static_cast<uint16_t>(id >> 10 & 0x3ff);
        default:
            return static_cast<uint16_t>(id >> 16 & 0xff);
    }
}

/** 0 for a one-part id, the program number of a non-PSIP id. */
constexpr uint16_t minor(uint32_t id) {
    switch (kind(id)) {
        case kOnePart:
            return 0;
        case kTwoParts:
            return static_cast<uint16_t>(id & 0x3ff);
        default:
            return static_cast<uint16_t>(id);
    }
}

/** What the viewer dials: a number, or major << 16 | minor. */
constexpr uint32_t number(uint32_t id) {
    return kind(id) == kOnePart ? id & 0xffff : uint32_t{major(id)} << 16 | minor(id);
}

/** The id of a number in a list; the inverse of number() but for non-PSIP channels. */
constexpr uint32_t ofNumber(uint32_t list, uint32_t number) {
    return number <= kMaximumNumber ? onePart(list, number)
                                    : twoParts(list, number >> 16, number & 0xffff);
}

}  // namespace channel_ids

}  // namespace qeltvd
