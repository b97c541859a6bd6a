/** What crosses the rating and PIN interfaces of this television. */
#pragma once

#include <cstdint>

namespace qeltvd::layouts {

/** Flags of the US television ratings, in the order of the record; a flag that is set blocks. */
enum UsTvFlag : uint32_t {
    kTvY,
    kTvY7,
    kTvG,
    kTvPg,
    kTv14,
    kTvMa,
    /** Fantasy violence of TV-Y7. */
    kTvY7Fv,
    /** Dialogue, language, sex, violence. */
    kTvPgD,
    kTvPgL,
    kTvPgS,
    kTvPgV,
    kTv14D,
    kTv14L,
    kTv14S,
    kTv14V,
    kTvMaL,
    /** From here on the four further flags. */
    kTvMaS,
    kTvMaV,
    /** Programmes that tell that they have no rating. */
    kTvNone,
    /** Blocking TV-Y blocks TV-Y7, blocking TV-G what is above it. */
    kTvUpwards,
    kUsTvFlags,
};

/* Limits: 0 blocks nothing, a limit blocks what has it or is above it. */
enum UsMovieLimit : uint8_t { kMovieG = 1, kMoviePg, kMoviePg13, kMovieR, kMovieNc17, kMovieX };
enum CanadaEnglishLimit : uint8_t {
    kEnglishC = 1,
    kEnglishC8,
    kEnglishG,
    kEnglishPg,
    kEnglish14,
    kEnglish18
};
enum CanadaFrenchLimit : uint8_t { kFrenchG = 1, kFrench8, kFrench13, kFrench16, kFrench18 };
/** Age limits in years; besides 0. */
constexpr uint8_t kAgeMinimum = 4;
constexpr uint8_t kAgeMaximum = 18;
/** ISDB content, bits: drugs, violence, sex. */
constexpr uint8_t kIsdbContentMask = 7;

/** Answer of get_us_tv_group_by_child(): what is blocked of the ratings for children. */
enum ChildGroup : uint8_t { kChildNone = 0, kChildY7 = 1, kChildAll = 2 };

constexpr uint32_t kOpenVchipDimensions = 3;
constexpr uint32_t kOpenVchipLevels = 6;
/** Number of the rating region that is downloaded. */
constexpr uint8_t kOpenVchipRegion = 5;

/** The open V-chip table, 64 bytes. Texts are filled with zeros. */
struct OpenVchipTable {
    uint8_t region;
    uint8_t version;
    uint8_t dimensions;
    uint8_t reserved;
    char name[24];
    struct {
        uint8_t levels;
        /** Blocking a level blocks those above it. */
        uint8_t graduated;
        char name[10];
    } dimension[kOpenVchipDimensions];
};
static_assert(sizeof(OpenVchipTable) == 64);

/**
 * Open V-chip settings: the first byte is the region, the second the dimension; the third tells
 * the number of levels, and the block has a byte for each, 1 where it is blocked.
 */

/** Type of an open V-chip notification; its values. */
enum OpenVchipEvent : int32_t {
    /** Region, version, dimensions. */
    kVchipReceived = 1,
    kVchipRemoved = 2,
};

/** Answer to a PIN. */
enum PinAnswer : int32_t {
    kPinRight = 0,
    kPinWrong = 1,
    /** Not judged: a delay after wrong ones still runs. */
    kPinLocked = 2,
    /** Not 4 to 8 digits; counts as no try. */
    kPinMalformed = 3,
    /** The store failed. */
    kPinFailed = 4,
};

/** Type of a PIN dialog notification; values: wrong tries so far, milliseconds of delay left. */
enum PinEvent : int32_t {
    kPinShow = 1,
    kPinAccepted = 2,
    kPinRejected = 3,
    kPinRefused = 4,
    kPinChanged = 5,
};

/** The PIN of a new television. */
constexpr char kFactoryPin[] = "0000";
/** Wrong tries that have no delay; the first one after them delays by a second, each further one
 * by twice as much as the one before, up to the longest. */
constexpr int kPinFreeTries = 2;
constexpr int64_t kPinLongestDelayMs = 900'000;

}  // namespace qeltvd::layouts
