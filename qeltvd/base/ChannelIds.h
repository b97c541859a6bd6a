#pragma once

#include <cstdint>

#include "layouts/channel_ids.h"

namespace qeltvd {

/** Channel ids, which layouts/channel_ids.h describes. */
namespace channel_ids {

enum Kind : uint32_t {
    kOnePart = QELTV_CHANNEL_ID_ONE_PART,
    kTwoParts = QELTV_CHANNEL_ID_TWO_PARTS,
    kNonPsip = QELTV_CHANNEL_ID_NON_PSIP,
};

constexpr uint32_t kMaximumList = QELTV_CHANNEL_LIST_MAXIMUM;
constexpr uint32_t kMaximumNumber = QELTV_CHANNEL_NUMBER_MAXIMUM;
constexpr uint32_t kMaximumPart = QELTV_CHANNEL_PART_MAXIMUM;

constexpr uint32_t make(Kind kind, uint32_t list, uint32_t payload) {
    return kind << QELTV_CHANNEL_ID_KIND_SHIFT | list << QELTV_CHANNEL_ID_LIST_SHIFT | payload;
}

/** Returns 0 for a value out of range, as the two functions below do. */
constexpr uint32_t onePart(uint32_t list, uint32_t number) {
    if (list == 0 || list > kMaximumList || number == 0 || number > kMaximumNumber) return 0;
    return make(kOnePart, list, number);
}

constexpr uint32_t twoParts(uint32_t list, uint32_t major, uint32_t minor) {
    if (list == 0 || list > kMaximumList || major == 0 || major > kMaximumPart) return 0;
    if (minor > kMaximumPart) return 0;
    return make(kTwoParts, list, major << QELTV_CHANNEL_ID_MAJOR_SHIFT | minor);
}

constexpr uint32_t nonPsip(uint32_t list, uint32_t rfChannel, uint32_t program) {
    if (list == 0 || list > kMaximumList) return 0;
    if (rfChannel == 0 || rfChannel > QELTV_CHANNEL_RF_MAXIMUM) return 0;
    if (program > QELTV_CHANNEL_PROGRAM_MAXIMUM) return 0;
    return make(kNonPsip, list, rfChannel << QELTV_CHANNEL_ID_RF_SHIFT | program);
}

constexpr uint32_t kind(uint32_t id) {
    return id >> QELTV_CHANNEL_ID_KIND_SHIFT;
}

constexpr uint16_t list(uint32_t id) {
    return static_cast<uint16_t>(id >> QELTV_CHANNEL_ID_LIST_SHIFT & QELTV_CHANNEL_ID_LIST_MASK);
}

constexpr bool isOnePart(uint32_t id) {
    return kind(id) == kOnePart && (id & QELTV_CHANNEL_ID_NUMBER_MASK) != 0;
}

constexpr bool isNonPsip(uint32_t id) {
    return kind(id) == kNonPsip;
}

/** The number of a one-part id, the RF channel of a non-PSIP id. */
constexpr uint16_t major(uint32_t id) {
    switch (kind(id)) {
        case kOnePart:
            return static_cast<uint16_t>(id & QELTV_CHANNEL_ID_NUMBER_MASK);
        case kTwoParts:
            return static_cast<uint16_t>(id >> QELTV_CHANNEL_ID_MAJOR_SHIFT &
                                         QELTV_CHANNEL_ID_PART_MASK);
        default:
            return static_cast<uint16_t>(id >> QELTV_CHANNEL_ID_RF_SHIFT &
                                         QELTV_CHANNEL_ID_RF_MASK);
    }
}

/** 0 for a one-part id, the program number of a non-PSIP id. */
constexpr uint16_t minor(uint32_t id) {
    switch (kind(id)) {
        case kOnePart:
            return 0;
        case kTwoParts:
            return static_cast<uint16_t>(id & QELTV_CHANNEL_ID_PART_MASK);
        default:
            return static_cast<uint16_t>(id & QELTV_CHANNEL_ID_PROGRAM_MASK);
    }
}

/** The number as the viewer enters it: one number, or major << 16 | minor. */
constexpr uint32_t number(uint32_t id) {
    if (kind(id) == kOnePart) return id & QELTV_CHANNEL_ID_NUMBER_MASK;
    return uint32_t{major(id)} << QELTV_CHANNEL_DIALLED_MAJOR_SHIFT | minor(id);
}

/** The id of a number in a list; the inverse of number() except for non-PSIP channels. */
constexpr uint32_t ofNumber(uint32_t list, uint32_t number) {
    if (number <= kMaximumNumber) return onePart(list, number);
    return twoParts(list, number >> QELTV_CHANNEL_DIALLED_MAJOR_SHIFT,
                    number & QELTV_CHANNEL_NUMBER_MAXIMUM);
}

}  // namespace channel_ids

}  // namespace qeltvd
