/** What crosses the Common Interface methods of this television. It has one slot, 0. */
#pragma once

#include <cstdint>

namespace qeltvd::layouts {

/** Get types; every other one that the client library sends is not supported here. */
enum CiGet : int32_t {
    /** u32: a CiSlotState. */
    kCiGetSlotState = 0,
    /** Name of the CAM, UTF-8 without terminator. */
    kCiGetCamName = 1,
    /** Two u32: a CiDialogue and its number. */
    kCiGetDialogue = 2,
    /** u16 for each CA system. */
    kCiGetCaSystems = 7,
    /** u8. */
    kCiGetSlots = 8,
    /** Four bytes: preferred language, as set type 40 has set it. */
    kCiGetLanguage = 10,
    /** u8: whether the CAM is powered. */
    kCiGetPower = 13,
    /** Name of the CAM in UTF-16 units. */
    kCiGetCamNameUtf16 = 15,
    kCiGetPin = 29,
};

enum CiSet : int32_t {
    /** Opens the CAM's menu. */
    kCiSetOpenMenu = 0,
    /** Closes whatever the CAM shows. */
    kCiSetClose = 1,
    /** CiEnquiryAnswer and number of the dialogue in the record, and the text. */
    kCiSetEnquiryAnswer = 2,
    /** Two u32: number of the dialogue, choice from 1, or 0 for back. */
    kCiSetMenuAnswer = 3,
    kCiSetReset = 4,
    /** Takes the CAM out of the slot, as a hand would. */
    kCiSetRemove = 5,
    /** Puts it back. */
    kCiSetInsert = 6,
    /** The PIN that the television hands to the CAM; the CAM's reply is a notification. */
    kCiSetPin = 34,
    /** Four bytes. */
    kCiSetLanguage = 40,
    /** One byte: 0 off, 1 on. */
    kCiSetPower = 80,
};

enum CiSlotState : uint32_t { kCiEmpty = 0, kCiOff = 1, kCiReady = 2 };

enum CiDialogue : uint32_t {
    kCiNoDialogue = 0,
    kCiMenuDialogue = 1,
    kCiListDialogue = 2,
    kCiEnquiryDialogue = 3,
};

enum CiEnquiryAnswer : uint32_t { kCiCancelled = 0, kCiAnswered = 1 };

/** Condition of a notification; its data. */
enum CiCondition : int32_t {
    /** u32: the slot. */
    kCiCardInserted = 0,
    /** u32: the slot. */
    kCiCardRemoved = 1,
    /** u32: the slot. */
    kCiCardReady = 2,
    /** The enquiry. */
    kCiEnquiry = 3,
    /** The menu. */
    kCiMenu = 4,
    /** The menu record, its choices only to be read. */
    kCiList = 5,
    /** u32: the slot. */
    kCiClosed = 6,
    /** u8: 1 when the CAM took the PIN, 0 when it is wrong. */
    kCiPinReply = 7,
    /** u8: a CiKeyState. */
    kCiKeyChanged = 8,
};

/** Kinds of key data; functions that name none mean the first. */
constexpr uint32_t kCiKeyKinds = 4;
/** Sizes of key data in bytes. */
constexpr uint32_t kCiKeyMinimum = 16;
constexpr uint32_t kCiKeyMaximum = 65536;

enum CiKeyState : uint8_t { kCiKeyNone = 0, kCiKeyWritten = 1, kCiKeyActive = 2 };

/** Bytes of the host id. */
constexpr uint8_t kCiHostIdSize = 8;

}  // namespace qeltvd::layouts
