/** The channel scan of the reference television: values. */
#ifndef QELTV_LAYOUTS_SCAN_H
#define QELTV_LAYOUTS_SCAN_H

#include <stdint.h>

/**
 * Mode of a scan: the low 8 bits of its 64-bit argument. The regions are those of the
 * configuration item "channels.region". With the flag a complete scan removes the channels that it
 * does not find.
 */
enum QELTV_SCAN_MODE {
    QELTV_SCAN_FULL = 0,      /**< every transponder of every region */
    QELTV_SCAN_AIR = 1,       /**< the terrestrial transponders */
    QELTV_SCAN_CABLE = 2,     /**< the cable transponders */
    QELTV_SCAN_SATELLITE = 3, /**< the satellite transponders */
    QELTV_SCAN_FREQUENCY = 4, /**< the transponders at one frequency */
};

/** Lowest bit of the frequency in kHz in the argument of a QELTV_SCAN_FREQUENCY scan. */
#define QELTV_SCAN_FREQUENCY_SHIFT 32

/**
 * Modulation mask of ATSC, all bits: 1 8VSB, 2 64 QAM, 4 256 QAM; 0 stands for all.
 *
 * Scan parameters hold for the next scan. Indices count the transponders of a region from 0; both
 * ends are scanned. There is no analogue tuner: NTSC, PAL, SECAM and DTMB are not supported.
 */
#define QELTV_SCAN_MODULATIONS 7u
/** Largest frequency plan: 0 as in the tables, 1 air, 2 cable. */
#define QELTV_SCAN_PLANS 2u
#define QELTV_ISDB_NO_RADIO 1u /**< flag of an ISDB scan: leaves radio services out */

/**
 * Type of a scan notification. Services are counted: television and radio services found, new and
 * removed ones.
 * @values television, radio, added, removed
 */
enum QELTV_SCAN_EVENT {
    QELTV_SCAN_STARTED = 1, /**< the scan starts @values transponders */
    /** a transponder is done; services so far
     *  @values percent, frequency_khz, television, radio */
    QELTV_SCAN_PROGRESS = 2,
    QELTV_SCAN_COMPLETE = 3,  /**< the scan is complete */
    QELTV_SCAN_CANCELLED = 4, /**< the scan is cancelled; the services found so far are kept */
    QELTV_SCAN_FAILED = 5,    /**< the scan failed @values code:QELTV_CODE */
};

/**
 * First element of an exchange and of its answer; the other elements. Without a transponder of the
 * standard in the regions the exchange is refused, and its elements return unchanged, as for an
 * unknown command.
 */
enum QELTV_SCAN_EXCHANGE {
    /** answer: QELTV_SCAN_STATE, percent, kHz, index of the transponder, number of transponders,
     *  television services, radio services, new ones */
    QELTV_EXCHANGE_STATUS = 1,
    QELTV_EXCHANGE_RANGE = 2, /**< first and last index for the next scan; answer: the same */
    /** index; answer: index, kHz, symbol rate or bandwidth, modulation, delivery system */
    QELTV_EXCHANGE_TRANSPONDER = 3,
    QELTV_EXCHANGE_COUNT = 4, /**< answer: number of transponders of the standard */
};
#define QELTV_SCAN_EXCHANGE_CAPACITY 16u /**< most elements of an answer */

/** State of the scan. */
enum QELTV_SCAN_STATE {
    QELTV_SCAN_STATE_IDLE = 0,      /**< no scan since the start */
    QELTV_SCAN_STATE_RUNNING = 1,   /**< a scan runs */
    QELTV_SCAN_STATE_COMPLETE = 2,  /**< the last scan is complete */
    QELTV_SCAN_STATE_CANCELLED = 3, /**< the last scan was cancelled */
    QELTV_SCAN_STATE_FAILED = 4,    /**< the last scan failed */
};

/** Answer of get_market_region(). */
enum QELTV_MARKET_REGION {
    QELTV_MARKET_EUROPE = 1,        /**< Europe, DVB */
    QELTV_MARKET_NORTH_AMERICA = 2, /**< North America, ATSC */
    QELTV_MARKET_LATIN_AMERICA = 3, /**< Latin America, ISDB */
};

/** Texts of scan_dvbc_get_str_data(). */
enum QELTV_SCAN_TEXT {
    QELTV_SCAN_TEXT_REGION = 0,      /**< the regions */
    QELTV_SCAN_TEXT_COUNTRY = 1,     /**< the country */
    QELTV_SCAN_TEXT_TRANSPONDER = 2, /**< name of the current transponder, or of the last one */
};

#endif /* QELTV_LAYOUTS_SCAN_H */
