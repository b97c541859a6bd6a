/** What crosses the scan interface of this television. */
#pragma once

#include <cstdint>

namespace qeltvd::layouts {

/**
 * The 64-bit argument of a scan: the mode in the low 8 bits, and of a single frequency that in kHz
 * in the high 32 bits. The regions are those of the configuration item "channels.region". The flag
 * has channels removed that are not found any more, when the scan has gone through all of it.
 */
enum ScanMode : uint64_t {
    /** Every transponder of every region. */
    kScanFull = 0,
    /** Air, cable, satellite only. */
    kScanAir = 1,
    kScanCable = 2,
    kScanSatellite = 3,
    /** The transponders at one frequency. */
    kScanFrequency = 4,
};
constexpr uint64_t scanFrequency(uint32_t kHz) {
    return kScanFrequency | uint64_t{kHz} << 32;
}

/**
 * Parameters hold for the next scan. The indices count the transponders of a region from 0, both
 * ends are scanned. Modulation mask of ATSC: 1 8VSB, 2 64 QAM, 4 256 QAM, 0 all; frequency plan: 0
 * as in the tables, 1 air, 2 cable. Flag of ISDB: 1 leaves radio out. There is no analogue tuner:
 * NTSC, PAL, SECAM, and DTMB too, are not supported.
 */
constexpr uint32_t kScanModulations = 7;
constexpr uint32_t kScanPlans = 2;
constexpr uint32_t kIsdbNoRadio = 1;

/** Type of a scan notification; its values. */
enum ScanEvent : int32_t {
    /** Number of transponders. */
    kScanStarted = 1,
    /** Percent, frequency in kHz, television and radio services so far: one is done. */
    kScanProgress = 2,
    /** Television services, radio services, new ones, removed ones. */
    kScanComplete = 3,
    /** The same values: what was found until then is kept. */
    kScanCancelled = 4,
    /** A code. */
    kScanFailed = 5,
};

/**
 * First element of an exchange; the others, and the answer, which begins with the same element.
 * Without a standard's transponders in the regions its exchange is refused, and what came goes
 * back as it was; so it does with an unknown command. An answer has at most kScanExchangeRoom
 * elements.
 */
enum ScanExchange : int32_t {
    /** Answer: ScanState, percent, kHz, index and number of the transponder, television services,
     *  radio services, new ones. */
    kExchangeStatus = 1,
    /** First and last index for the next scan; answer: the same. */
    kExchangeRange = 2,
    /** Index; answer: index, kHz, symbol rate or bandwidth, modulation, delivery system. */
    kExchangeTransponder = 3,
    /** Answer: number of transponders of the standard. */
    kExchangeCount = 4,
};
constexpr uint32_t kScanExchangeRoom = 16;

enum ScanState : int32_t {
    kScanIdle = 0,
    kScanRuns = 1,
    kScanDone = 2,
    kScanStopped = 3,
    kScanBroken = 4,
};

/** Answer of get_market_region(). */
enum MarketRegion : int32_t {
    kMarketEurope = 1,
    kMarketNorthAmerica = 2,
    kMarketLatinAmerica = 3,
};

/** Texts of scan_dvbc_get_str_data(). */
enum ScanText : uint32_t {
    /** The regions. */
    kScanTextRegion = 0,
    kScanTextCountry = 1,
    /** Name of the transponder that is being scanned, or was last. */
    kScanTextTransponder = 2,
};

}  // namespace qeltvd::layouts
