/**
 * Teletext, subtitles, metadata and HTML agent of the reference television: values and records.
 */
#ifndef QELTV_LAYOUTS_TELETEXT_H
#define QELTV_LAYOUTS_TELETEXT_H

#include <stdint.h>

#define QELTV_TELETEXT_COLUMNS 40 /**< characters in a row */
#define QELTV_TELETEXT_ROWS 25    /**< rows of a page */

/**
 * Lowest bit of the subpage in a page record. A page record has 32 bits: the page number as three
 * hexadecimal digits (0x100 to 0x8ff) in the low half, the subpage as a number from 1 in the high
 * half; subpage 0 is the one that is on air.
 */
#define QELTV_TELETEXT_SUBPAGE_SHIFT 16

/** Whether a page is shown. */
enum QELTV_TELETEXT_STATE {
    QELTV_TELETEXT_ABSENT = 0,  /**< it is not broadcast */
    QELTV_TELETEXT_AWAITED = 1, /**< it has not been received yet */
    QELTV_TELETEXT_SHOWN = 2,   /**< it is shown */
};

/** Answer of get_cur_page(). */
typedef struct {
    uint32_t page;     /**< page record */
    uint32_t subpages; /**< subpages of the page, so far; 0 unless it is broadcast and has come */
    /** seven-bit codes with control codes, of no particular character set; the first row has the
     *  clock */
    uint8_t rows[QELTV_TELETEXT_ROWS][QELTV_TELETEXT_COLUMNS];
    /** the same places in UTF-16, in the character set of the page and with its accents; blanks
     *  for control codes and mosaics */
    uint16_t characters[QELTV_TELETEXT_ROWS][QELTV_TELETEXT_COLUMNS];
    uint32_t state; /**< a QELTV_TELETEXT_STATE */
} QELTV_TELETEXT_PAGE_T;

/** Most entries of a TOP table. */
#define QELTV_TOP_ENTRIES 100

/**
 * Entry of a TOP table. A table is the number of entries in 32 bits, then the entries, at most
 * QELTV_TOP_ENTRIES.
 */
typedef struct {
    uint16_t page;  /**< page number as in the page record; the page key of the methods */
    uint16_t level; /**< 1 block, 2 group, 3 page */
    char title[28]; /**< title, UTF-8, zero-padded */
} QELTV_TOP_ENTRY_T;

/** Kind of a teletext notification. */
enum QELTV_TELETEXT_EVENT {
    /** a page is chosen, or a received one that is chosen comes for the first time or is lost: page
     *  record, number of its subpages, 0 while there is none @values page, subpages */
    QELTV_TELETEXT_PAGE_CHANGED = 1,
    /** the chosen page is received with another text or other subpages: page record of the
     *  subpage that is shown, number of subpages @values page, subpages */
    QELTV_TELETEXT_PAGE_UPDATED = 2,
};

/** Kind of a subtitle. */
enum QELTV_SUBTITLE_KIND {
    QELTV_SUBTITLE_DVB = 1,      /**< DVB subtitles */
    QELTV_SUBTITLE_TELETEXT = 2, /**< a teletext page */
    QELTV_SUBTITLE_HEARING = 3,  /**< subtitles for the hard of hearing, of either sort */
};

/** Entry of the subtitle loop: number of entries, number of the active one, then the entries. */
typedef struct {
    int32_t number;   /**< from 1; the argument of play(), which takes 0 for off */
    int32_t language; /**< ISO 639-2 code, its first letter in bits 16 to 23 */
    int32_t kind;     /**< a QELTV_SUBTITLE_KIND */
} QELTV_SUBTITLE_ENTRY_T;

/** Kind of a subtitle notification. */
enum QELTV_SUBTITLE_EVENT {
    /** another subtitle is played, by choice or with the service: as QELTV_SUBTITLE_ENTRY_T, then
     *  the number of its teletext page, 0 for pictures; all 0 for off
     *  @values number, language, kind:QELTV_SUBTITLE_KIND, page */
    QELTV_SUBTITLE_CHANGED = 1,
};

/** First word of an exchange with the HTML agent; the reply begins with the result code. */
enum QELTV_HTML_COMMAND {
    QELTV_HTML_ECHO = 0,  /**< the reply has the words of the request */
    QELTV_HTML_STORE = 1, /**< key, then words to store under it */
    QELTV_HTML_LOAD = 2,  /**< key; the reply has the number of words and the words */
    QELTV_HTML_POST = 3,  /**< kind, then words; every application is notified with that kind */
};

/** Statuses of get_earc_status(). */
enum QELTV_EARC_STATUS {
    QELTV_EARC_ENABLED = 0,   /**< whether eARC is enabled */
    QELTV_EARC_CONNECTED = 1, /**< whether an eARC device is connected */
};

#endif /* QELTV_LAYOUTS_TELETEXT_H */
