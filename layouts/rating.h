/** Ratings and PIN of the reference television: values and records. */
#ifndef QELTV_LAYOUTS_RATING_H
#define QELTV_LAYOUTS_RATING_H

#include <stdint.h>

/** Flags of the US television ratings, in the order of the record; a flag of 1 blocks. */
enum QELTV_US_TV_FLAG {
    QELTV_US_TV_Y = 0,        /**< TV-Y, all children */
    QELTV_US_TV_Y7 = 1,       /**< TV-Y7, older children */
    QELTV_US_TV_G = 2,        /**< TV-G, general audience */
    QELTV_US_TV_PG = 3,       /**< TV-PG, parental guidance suggested */
    QELTV_US_TV_14 = 4,       /**< TV-14, parents strongly cautioned */
    QELTV_US_TV_MA = 5,       /**< TV-MA, mature audience only */
    QELTV_US_TV_Y7_FV = 6,    /**< TV-Y7 with fantasy violence */
    QELTV_US_TV_PG_D = 7,     /**< TV-PG with suggestive dialogue */
    QELTV_US_TV_PG_L = 8,     /**< TV-PG with coarse language */
    QELTV_US_TV_PG_S = 9,     /**< TV-PG with sexual situations */
    QELTV_US_TV_PG_V = 10,    /**< TV-PG with violence */
    QELTV_US_TV_14_D = 11,    /**< TV-14 with suggestive dialogue */
    QELTV_US_TV_14_L = 12,    /**< TV-14 with coarse language */
    QELTV_US_TV_14_S = 13,    /**< TV-14 with sexual situations */
    QELTV_US_TV_14_V = 14,    /**< TV-14 with violence */
    QELTV_US_TV_MA_L = 15,    /**< TV-MA with coarse language */
    QELTV_US_TV_MA_S = 16,    /**< TV-MA with sexual situations; first of the four further flags */
    QELTV_US_TV_MA_V = 17,    /**< TV-MA with violence */
    QELTV_US_TV_NONE = 18,    /**< programmes that are broadcast as not rated */
    QELTV_US_TV_UPWARDS = 19, /**< blocking TV-Y blocks TV-Y7, blocking TV-G the ratings above it */
    QELTV_US_TV_FLAGS = 20,   /**< number of flags */
};

/** Limit of the US film ratings. A limit of 0 blocks nothing, others block their level and above.
 */
enum QELTV_US_MOVIE_LIMIT {
    QELTV_US_MOVIE_G = 1,     /**< G, general audiences */
    QELTV_US_MOVIE_PG = 2,    /**< PG, parental guidance suggested */
    QELTV_US_MOVIE_PG_13 = 3, /**< PG-13, parents strongly cautioned */
    QELTV_US_MOVIE_R = 4,     /**< R, restricted */
    QELTV_US_MOVIE_NC_17 = 5, /**< NC-17, nobody of 17 and under */
    QELTV_US_MOVIE_X = 6,     /**< X, adults only */
};

/** Limit of the English-language ratings of Canada. */
enum QELTV_CANADA_ENGLISH_LIMIT {
    QELTV_CANADA_ENGLISH_C = 1,  /**< C, children */
    QELTV_CANADA_ENGLISH_C8 = 2, /**< C8+, children of eight and older */
    QELTV_CANADA_ENGLISH_G = 3,  /**< G, general */
    QELTV_CANADA_ENGLISH_PG = 4, /**< PG, parental guidance */
    QELTV_CANADA_ENGLISH_14 = 5, /**< 14+ */
    QELTV_CANADA_ENGLISH_18 = 6, /**< 18+ */
};

/** Limit of the French-language ratings of Canada. */
enum QELTV_CANADA_FRENCH_LIMIT {
    QELTV_CANADA_FRENCH_G = 1,  /**< G, general */
    QELTV_CANADA_FRENCH_8 = 2,  /**< 8+ */
    QELTV_CANADA_FRENCH_13 = 3, /**< 13+ */
    QELTV_CANADA_FRENCH_16 = 4, /**< 16+ */
    QELTV_CANADA_FRENCH_18 = 5, /**< 18+ */
};

#define QELTV_AGE_MINIMUM 4       /**< smallest age limit in years besides 0 */
#define QELTV_AGE_MAXIMUM 18      /**< largest age limit in years */
#define QELTV_ISDB_CONTENT_MASK 7 /**< ISDB content, bits 0 to 2: drugs, violence, sex */

/** Answer of get_us_tv_group_by_child(): the blocked ratings for children. */
enum QELTV_CHILD_GROUP {
    QELTV_CHILD_NONE = 0, /**< none */
    QELTV_CHILD_Y7 = 1,   /**< TV-Y7 */
    QELTV_CHILD_ALL = 2,  /**< TV-Y and TV-Y7 */
};

#define QELTV_OPEN_VCHIP_DIMENSIONS 3 /**< most dimensions of the open V-chip table */
#define QELTV_OPEN_VCHIP_LEVELS 6     /**< most levels of a dimension */
#define QELTV_OPEN_VCHIP_REGION 5     /**< number of the rating region that is downloaded */

/** A dimension of the open V-chip table, 12 bytes. */
typedef struct {
    uint8_t levels;    /**< number of levels, up to QELTV_OPEN_VCHIP_LEVELS */
    uint8_t graduated; /**< 1 when blocking a level blocks those above it, else 0 */
    char name[10];     /**< name, zero-padded */
} QELTV_OPEN_VCHIP_DIMENSION_T;

/**
 * The open V-chip table, 64 bytes.
 *
 * Open V-chip settings: the first byte is the region, the second the dimension, the third the
 * number of levels; the block has a byte for each level, 1 where it is blocked.
 */
typedef struct {
    uint8_t region;     /**< number of the rating region */
    uint8_t version;    /**< version of the table, 0 to 31 */
    uint8_t dimensions; /**< number of dimensions, up to QELTV_OPEN_VCHIP_DIMENSIONS */
    uint8_t reserved;   /**< 0 */
    char name[24];      /**< name of the region, zero-padded */
    QELTV_OPEN_VCHIP_DIMENSION_T dimension[QELTV_OPEN_VCHIP_DIMENSIONS]; /**< the dimensions */
} QELTV_OPEN_VCHIP_TABLE_T;

/** Type of an open V-chip notification. @values region, version, dimensions */
enum QELTV_OPEN_VCHIP_EVENT {
    QELTV_OPEN_VCHIP_RECEIVED = 1, /**< a table is received */
    QELTV_OPEN_VCHIP_REMOVED = 2,  /**< the table is removed */
};

/** Answer to a PIN. */
enum QELTV_PIN_ANSWER {
    QELTV_PIN_RIGHT = 0,     /**< the PIN is right */
    QELTV_PIN_WRONG = 1,     /**< the PIN is wrong */
    QELTV_PIN_LOCKED = 2,    /**< not compared: a delay after wrong tries is running */
    QELTV_PIN_MALFORMED = 3, /**< not 4 to 8 digits; does not count as a try */
    QELTV_PIN_FAILED = 4,    /**< the store cannot be written */
};

/**
 * Type of a PIN dialog notification: wrong tries so far, remaining delay in milliseconds.
 * @values wrong_tries, delay_ms
 */
enum QELTV_PIN_EVENT {
    QELTV_PIN_EVENT_SHOW = 1,     /**< the dialog opens */
    QELTV_PIN_EVENT_ACCEPTED = 2, /**< the PIN is right */
    QELTV_PIN_EVENT_REJECTED = 3, /**< the PIN is wrong */
    QELTV_PIN_EVENT_REFUSED = 4,  /**< a delay is running */
    QELTV_PIN_EVENT_CHANGED = 5,  /**< the PIN is changed */
};

#define QELTV_PIN_FACTORY "0000" /**< the PIN of a new television */
/** Wrong tries without a delay; the next one delays by a second, each further one by twice as much
 *  as the one before, up to QELTV_PIN_LONGEST_DELAY_MS. */
#define QELTV_PIN_FREE_TRIES 2
#define QELTV_PIN_LONGEST_DELAY_MS 900000 /**< longest delay in milliseconds */

#endif /* QELTV_LAYOUTS_RATING_H */
