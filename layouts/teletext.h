/** What crosses the teletext, subtitle, caption, metadata and HTML agent methods. */
#pragma once

#include <cstdint>

namespace qeltvd::layouts {

constexpr uint32_t kTeletextColumns = 40;
constexpr uint32_t kTeletextRows = 25;

/**
 * Page record, 32 bits: the page number as three hexadecimal digits (0x100 to 0x8ff) in the low
 * half, the subpage in the high half; subpage 0 is the one that is on air.
 */
constexpr uint32_t teletextPage(uint32_t number, uint32_t subpage) {
    return number | subpage << 16;
}

/** Answer of get_cur_page(). */
struct TeletextPage {
    uint32_t page;
    /** Subpages of the page; 0 when the page is not broadcast. */
    uint32_t subpages;
    /** Seven-bit codes, control codes included; the first row has the clock. */
    uint8_t rows[kTeletextRows][kTeletextColumns];
};
static_assert(sizeof(TeletextPage) == 1008);

/** Entry of a TOP table. A table is the number of entries in 32 bits, then the entries. */
struct TopEntry {
    /** Page number as in the page record; the page key of the methods. */
    uint16_t page;
    /** 1 block, 2 group, 3 page. */
    uint16_t level;
    /** UTF-8, filled with zeros. */
    char title[28];
};
static_assert(sizeof(TopEntry) == 32);

/** Kind of a teletext notification; page record, subpages, 0. */
enum TeletextEvent : int32_t { kTeletextPageChanged = 1 };

enum SubtitleKind : int32_t { kSubtitleDvb = 1, kSubtitleTeletext = 2, kSubtitleHearing = 3 };

/** Entry of the subtitle loop: number of entries, number of the one that plays, then these. */
struct SubtitleEntry {
    /** From 1; what play() takes, and 0 for off. */
    int32_t number;
    /** Three letters, the first in bits 16 to 23. */
    int32_t language;
    int32_t kind;
};
static_assert(sizeof(SubtitleEntry) == 12);

/** Kind of a subtitle notification; number, language, SubtitleKind, 0. */
enum SubtitleEvent : int32_t { kSubtitleChanged = 1 };

/** First word of an exchange with the HTML agent; the reply begins with the result code. */
enum HtmlCommand : uint32_t {
    /** Answers what follows as it came. */
    kHtmlEcho = 0,
    /** Key, then words to keep under it. */
    kHtmlStore = 1,
    /** Key; the reply has the number of words and the words. */
    kHtmlLoad = 2,
    /** Kind, then words that go to every application as a notification of that kind. */
    kHtmlPost = 3,
};

/** Status that get_earc_status() tells. */
enum EarcStatus : uint32_t { kEarcEnabled = 0, kEarcConnected = 1 };

}  // namespace qeltvd::layouts
