/** What crosses the event, ATSC event and banner interfaces of this television. */
#pragma once

#include <cstddef>
#include <cstdint>

namespace qeltvd::layouts {

/** The guide knows the events of yesterday, today and the seven days after it (UTC). */
constexpr int kGuideDaysBack = 1;
constexpr int kGuideDaysAhead = 7;

/** First content nibble of DVB. */
enum Genre : uint8_t {
    kGenreFilm = 1,
    kGenreNews = 2,
    kGenreShow = 3,
    kGenreSport = 4,
    kGenreChildren = 5,
    kGenreMusic = 6,
    kGenreArts = 7,
    kGenreSociety = 8,
    kGenreScience = 9,
    kGenreLeisure = 10,
};

enum EventFlag : uint16_t {
    kEventBlocked = 1,
    kEventSubtitles = 2,
    kEventHd = 4,
    kEventAudioDescription = 8,
    kEventScrambled = 16,
    /** It is on air now. */
    kEventPresent = 32,
};

/** Age of an event that tells none. */
constexpr uint8_t kAgeNotTold = 255;

/** The general block. Texts of all blocks are UTF-8. */
struct EventGeneral {
    uint32_t channelId;
    uint16_t eventId;
    uint8_t genre;
    /** Years, 0 for everybody, or kAgeNotTold. */
    uint8_t age;
    /** Seconds since 1970, UTC. */
    int64_t start;
    /** Seconds. */
    uint32_t duration;
    uint16_t flags;
    /** Bytes of the texts. */
    uint16_t detailsLength;
    uint16_t guidanceLength;
    uint16_t extendedLength;
    /** 0 for none. */
    uint16_t series;
    uint16_t episode;
    char language[4];
    uint32_t reserved;
    /** Filled with zeros. */
    char title[96];
};
static_assert(sizeof(EventGeneral) == 136 && offsetof(EventGeneral, title) == 40);

/*
 * Blocks of a length that the caller gives are filled with zeros. Texts (details, guidance,
 * extended details) end with one; the others are arrays of the following records, of which only
 * whole ones are stored. Group and series have entries of EventCommon: the episodes of the series
 * on the same channel that the guide knows, in the order of their times.
 */
struct EventCommon {
    uint32_t channelId;
    uint16_t eventId;
    uint16_t reserved;
};
static_assert(sizeof(EventCommon) == 8);

struct EventRating {
    char country[4];
    uint8_t age;
    /** Bits: dialogue, language, sex, violence. */
    uint8_t content;
    uint8_t film;
    uint8_t children;
};
static_assert(sizeof(EventRating) == 8);

struct ContentIdentifier {
    /** 1 programme, 2 series. */
    uint8_t type;
    char crid[63];
};
static_assert(sizeof(ContentIdentifier) == 64);

struct AudioComponent {
    char language[4];
    /** 1 MPEG, 2 AC-3, 3 HE-AAC. */
    uint8_t codec;
    uint8_t channels;
    /** 0 main, 1 audio description. */
    uint8_t purpose;
    uint8_t reserved;
};
static_assert(sizeof(AudioComponent) == 8);

/** Largest block that is sent; a caller that asks for more gets nothing but an error. */
constexpr int32_t kEventBlockMaximum = 1 << 20;

/*
 * Event filter: the 16-bit value is how many hours are looked at (0: to the end of the guide), the
 * 32-bit value from when on (UTC seconds, 0: now), the 16 bytes a text that the title has to
 * contain, whatever the case (UTF-8, filled with zeros), the flag leaves blocked events out, the
 * list has genres (none: all), the last byte is the highest age (0: any). Channel 0 stands for all.
 *
 * Query parameters, for this filter and for ranges: shortest and longest duration in seconds (0:
 * any), a bit for each genre (0: all); only events to come or on air, only unblocked ones, only
 * with subtitles, only in high definition.
 */
constexpr uint32_t kEveryChannel = 0;

/** Type of an event notification; its values. */
enum EventEvent : int32_t {
    /** Channel, its present event, its following event: on a channel of the active window or the
     *  current one. */
    kPresentChanged = 1,
    /** Number of channels, start and end of the window. */
    kWindowChanged = 2,
    /** Channel 0: what is blocked has changed. */
    kBlockingChanged = 3,
};

/** ATSC tables: each covers three hours from 0, 3, 6... o'clock UTC, EIT-0 the present ones. */
constexpr uint32_t kEitSeconds = 3 * 3600;
constexpr int32_t kEitTables = 56;
/** Events that are loaded by id at a time, at most, and by one call. */
constexpr size_t kAtscLoadedMaximum = 1024;
constexpr size_t kAtscListMaximum = 255;

/** Status of the tables of a channel. */
enum EitStatus : int32_t { kEitNone = 0, kEitPart = 1, kEitAll = 2 };

/** An entry of the list of table states: number of events, and the highest bit when loaded. */
constexpr uint32_t kEitLoaded = 0x80000000;

/*
 * ATSC event record, fields by offset: 0 event id, 4 channel id, 8 number of the table, 12 start
 * (UTC seconds), 20 duration, 28 genre, 30 EventFlag, 32 title, 288 length of the details, 292
 * label of the rating, 296 language.
 */

/** Type of an ATSC event notification; its values. */
enum AtscEvent : int32_t {
    /** Channel, number of events, table or -1. */
    kAtscLoaded = 1,
};

/** Pages of the banner, the first number of an item. */
enum BannerPage : int32_t { kBannerSimple = 0, kBannerDetailed = 1 };

/** Items of a page, the second number; the id is page << 16 | item | 1 << 31. */
enum BannerItem : int32_t {
    kBannerNumber,
    kBannerChannel,
    kBannerClock,
    kBannerTitle,
    kBannerTimes,
    kBannerFollowing,
    /** From here on on the detailed page only. */
    kBannerGenre,
    kBannerRating,
    kBannerSound,
    kBannerPicture,
    kBannerLock,
    kBannerDetails,
    kBannerItems,
};
constexpr uint32_t kBannerIdBit = 0x80000000;

enum BannerState : uint8_t { kBannerHidden = 0, kBannerShown = 1 };

/** Type of a banner notification: page and item (-1 for all) that have changed. */
enum BannerEvent : int32_t { kBannerChanged = 1 };

}  // namespace qeltvd::layouts
