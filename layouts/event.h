/** EPG, ATSC events and banner of the reference television: values and records. */
#ifndef QELTV_LAYOUTS_EVENT_H
#define QELTV_LAYOUTS_EVENT_H

#include <stdint.h>

#define QELTV_GUIDE_DAYS_BACK 1  /**< days (UTC) before the current one that the EPG covers */
#define QELTV_GUIDE_DAYS_AHEAD 7 /**< days (UTC) after the current one that the EPG covers */

/** Genre of an event: the first content nibble of DVB. 0 is undefined. */
enum QELTV_GENRE {
    QELTV_GENRE_FILM = 1,     /**< film, drama */
    QELTV_GENRE_NEWS = 2,     /**< news, current affairs */
    QELTV_GENRE_SHOW = 3,     /**< show, game show */
    QELTV_GENRE_SPORT = 4,    /**< sport */
    QELTV_GENRE_CHILDREN = 5, /**< programmes for children and young people */
    QELTV_GENRE_MUSIC = 6,    /**< music, ballet, dance */
    QELTV_GENRE_ARTS = 7,     /**< arts, culture */
    QELTV_GENRE_SOCIETY = 8,  /**< society, politics, economy */
    QELTV_GENRE_SCIENCE = 9,  /**< education, science */
    QELTV_GENRE_LEISURE = 10, /**< leisure hobbies */
};

/** Flags of an event, bits. */
enum QELTV_EVENT_FLAG {
    QELTV_EVENT_BLOCKED = 1,           /**< parental control blocks it */
    QELTV_EVENT_SUBTITLES = 2,         /**< it has subtitles */
    QELTV_EVENT_HD = 4,                /**< it is in high definition */
    QELTV_EVENT_AUDIO_DESCRIPTION = 8, /**< it has an audio description */
    QELTV_EVENT_SCRAMBLED = 16,        /**< it is scrambled */
    QELTV_EVENT_PRESENT = 32,          /**< it is on air */
};

#define QELTV_AGE_UNRATED 255 /**< age of an event without an age rating */

/** The general block of an event. Texts of all blocks are UTF-8. */
typedef struct {
    uint32_t channelId;      /**< channel id of the event's channel */
    uint16_t eventId;        /**< id of the event, unique on its channel */
    uint8_t genre;           /**< a QELTV_GENRE; 0 undefined */
    uint8_t age;             /**< lowest age in years, 0 for all, or QELTV_AGE_UNRATED */
    int64_t start;           /**< start in seconds since 1970, UTC */
    uint32_t duration;       /**< duration in seconds */
    uint16_t flags;          /**< QELTV_EVENT_FLAG bits */
    uint16_t detailsLength;  /**< bytes of the details, without terminator */
    uint16_t guidanceLength; /**< bytes of the guidance, without terminator */
    uint16_t extendedLength; /**< bytes of the extended details, without terminator */
    uint16_t series;         /**< number of the series; 0 for none */
    uint16_t episode;        /**< number of the episode; 0 for none */
    char language[4];        /**< ISO 639-2 code of the texts and a zero */
    uint32_t reserved;       /**< 0 */
    char title[96];          /**< title, zero-padded */
} QELTV_EVENT_GENERAL_T;

/**
 * An event's identity; the entry of the blocks of group and series, which are the episodes of the
 * series on the same channel in the EPG, in the order of their times.
 *
 * Blocks of a length that the caller passes are zero-padded. Texts (details, guidance, extended
 * details) end in a zero; the other blocks are arrays of records, of which only whole ones are
 * stored.
 */
typedef struct {
    uint32_t channelId; /**< channel id of the event's channel */
    uint16_t eventId;   /**< id of the event */
    uint16_t reserved;  /**< 0 */
} QELTV_EVENT_COMMON_T;

/** A rating of an event. */
typedef struct {
    char country[4];  /**< ISO 3166 code of three letters and a zero */
    uint8_t age;      /**< lowest age in years, or QELTV_AGE_UNRATED */
    uint8_t content;  /**< bits 0 to 3: dialogue, language, sex, violence */
    uint8_t film;     /**< a QELTV_US_MOVIE_LIMIT; 0 for none */
    uint8_t children; /**< 1 for a programme for children, else 0 */
} QELTV_EVENT_RATING_T;

/** A content identifier. */
typedef struct {
    uint8_t type;  /**< 1 programme, 2 series */
    char crid[63]; /**< CRID, zero-padded */
} QELTV_CONTENT_IDENTIFIER_T;

/** An audio component of an event. */
typedef struct {
    char language[4]; /**< ISO 639-2 code and a zero */
    uint8_t codec;    /**< 1 MPEG, 2 AC-3, 3 HE-AAC */
    uint8_t channels; /**< number of audio channels */
    uint8_t purpose;  /**< 0 main sound, 1 audio description */
    uint8_t reserved; /**< 0 */
} QELTV_AUDIO_COMPONENT_T;

/** Largest block in bytes; a request for a larger one returns only an error. */
#define QELTV_EVENT_BLOCK_MAXIMUM (1 << 20)

/**
 * Channel of an event filter that stands for every channel.
 *
 * Event filter: the 16-bit value is the length of the window in hours (0: to the end of the EPG),
 * the 32-bit value its start (seconds since 1970, UTC; 0: now), the 16 bytes a text that the title
 * contains regardless of case (UTF-8, zero-padded), the flag leaves blocked events out, the list
 * has genres (none: all), the last byte is the highest age (0: any).
 *
 * Query parameters, for filters and ranges: shortest and longest duration in seconds (0: any), a
 * bit for each genre (0: all); only events to come or on air, only unblocked ones, only ones with
 * subtitles, only ones in high definition.
 */
#define QELTV_EVERY_CHANNEL 0u

/** Type of an event notification. Event ids are 0 for no event, times seconds since 1970, UTC. */
enum QELTV_EVENT_EVENT {
    /** the present event of the current channel, or of one in the active window, has changed
     *  @values channel, present, following */
    QELTV_EVENT_PRESENT_CHANGED = 1,
    /** the active window has changed: number of channels, start, end
     *  @values channels, start, end */
    QELTV_EVENT_WINDOW_CHANGED = 2,
    QELTV_EVENT_BLOCKING_CHANGED = 3, /**< other events are blocked; channel 0 @values channel */
};

/** Seconds that an ATSC table covers; tables begin at 0, 3, 6... o'clock UTC, EIT-0 is present. */
#define QELTV_EIT_SECONDS (3u * 3600u)
#define QELTV_EIT_TABLES 56            /**< number of tables: EIT-0 to EIT-55 */
#define QELTV_ATSC_LOADED_MAXIMUM 1024 /**< most ATSC events loaded at a time */
#define QELTV_ATSC_LIST_MAXIMUM 255    /**< most ATSC events loaded by one call */

/** Status of the tables of a channel. */
enum QELTV_EIT_STATUS {
    QELTV_EIT_NONE = 0, /**< no table is loaded */
    QELTV_EIT_PART = 1, /**< some tables are loaded */
    QELTV_EIT_ALL = 2,  /**< all tables are loaded */
};

/**
 * Bit of a table state: the table is loaded. The other bits are its number of events.
 *
 * ATSC event record, fields by offset: 0 event id, 4 channel id, 8 number of the table, 12 start
 * (seconds since 1970, UTC), 20 duration in seconds, 28 genre, 30 QELTV_EVENT_FLAG bits, 32 title,
 * 288 length of the details in bytes, 292 label of the rating, 296 language.
 */
#define QELTV_EIT_LOADED 0x80000000u

/** Type of an ATSC event notification. */
enum QELTV_ATSC_EVENT {
    /** events are loaded; table -1 when they are not of one table
     *  @values channel, events, table:signed */
    QELTV_ATSC_LOADED = 1,
};

/** Pages of the banner, the first number of an item. */
enum QELTV_BANNER_PAGE {
    QELTV_BANNER_SIMPLE = 0,   /**< the short banner */
    QELTV_BANNER_DETAILED = 1, /**< the banner with all items */
};

/** Items of a page, the second number; the id is page << 16 | item | QELTV_BANNER_ID_BIT. */
enum QELTV_BANNER_ITEM {
    QELTV_BANNER_NUMBER = 0,    /**< number of the channel */
    QELTV_BANNER_CHANNEL = 1,   /**< name of the channel */
    QELTV_BANNER_CLOCK = 2,     /**< local time */
    QELTV_BANNER_TITLE = 3,     /**< title of the present event */
    QELTV_BANNER_TIMES = 4,     /**< start and end of the present event */
    QELTV_BANNER_FOLLOWING = 5, /**< title of the following event */
    QELTV_BANNER_GENRE = 6,     /**< detailed page: genre of the present event */
    QELTV_BANNER_RATING = 7,    /**< detailed page: rating of the present event */
    QELTV_BANNER_SOUND = 8,     /**< detailed page: audio track */
    QELTV_BANNER_PICTURE = 9,   /**< detailed page: video format */
    QELTV_BANNER_LOCK = 10,     /**< detailed page: lock of the channel */
    QELTV_BANNER_DETAILS = 11,  /**< detailed page: details of the present event */
    QELTV_BANNER_ITEMS = 12,    /**< number of items */
};
#define QELTV_BANNER_ID_BIT 0x80000000u /**< bit of every item id */

/** State of the banner. */
enum QELTV_BANNER_STATE {
    QELTV_BANNER_HIDDEN = 0, /**< not visible */
    QELTV_BANNER_SHOWN = 1,  /**< visible */
};

/** Type of a banner notification. */
enum QELTV_BANNER_EVENT {
    /** an item has changed; item -1 for all of the page
     *  @values page:QELTV_BANNER_PAGE, item:signed */
    QELTV_BANNER_CHANGED = 1,
};

#endif /* QELTV_LAYOUTS_EVENT_H */
