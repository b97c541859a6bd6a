#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "ConfigItems.h"
#include "Notifier.h"
#include "Settings.h"
#include "layouts/rating.h"

namespace qeltvd {

/** The rating of a programme. */
struct Rating {
    /** Years; 0 for everybody. */
    uint8_t age = 0;
    /** False: the broadcaster tells none. */
    bool told = true;
    /** A film: US films have ratings of their own. */
    bool film = false;
    /** Made for children, which the US and Canada rate apart. */
    bool children = false;
    /** Bits: dialogue, language, sex, violence (QELTV_US_TV_FLAG has them in this order). */
    uint8_t content = 0;

    bool operator==(const Rating& o) const {
        return age == o.age && told == o.told && film == o.film && children == o.children &&
               content == o.content;
    }
};

/** A rating as three texts for people. */
struct RatingText {
    std::string label;
    std::string system;
    std::string description;
};

/** Where ratings differ; told by the region of the television. */
enum class RatingSystem { kDvb, kUnitedStates, kCanada, kIsdb };

/**
 * What the rating lock blocks. The DVB age limit and the master switch are the configuration items
 * "parental.age" and "parental.rating_lock", the rest is the lock's own.
 */
class Ratings {
  public:
    /** @throws StoreError */
    Ratings(Store& store, Notifier& notifier, ConfigItems& config);

    /** Called when another rating may be blocked, without a lock; before serving only. */
    void addListener(std::function<void()> listener);

    /** Settings of 8 bits. */
    enum Setting {
        kUsMovie,
        kCanadaEnglish,
        kCanadaFrench,
        kBlockUnrated,
        kIsdbContent,
        kIsdbAge,
        kDvbAge,
        kEnable,
        kSettings,
    };
    uint8_t get(Setting setting) const;
    /** Gives a code. */
    int32_t set(Setting setting, uint8_t value);

    using UsTv = std::array<uint8_t, QELTV_US_TV_FLAGS>;
    UsTv usTv() const;
    int32_t setUsTv(const UsTv& flags);
    uint8_t childGroup() const;

    /** Receives the downloadable table, or forgets it with its settings. */
    int32_t store(bool on);
    bool vchipAvailable() const;
    QELTV_OPEN_VCHIP_TABLE_T vchipTable() const;
    using Levels = std::array<uint8_t, 255>;
    /** `levels` gets their number. */
    int32_t vchip(uint8_t region, uint8_t dimension, uint8_t* levels, Levels* blocked) const;
    int32_t setVchip(uint8_t region, uint8_t dimension, const Levels& blocked);

    RatingSystem system() const;
    /** Whether the lock blocks a rating; the PIN is not asked for here. */
    bool blocks(const Rating& rating) const;
    RatingText text(const Rating& rating) const;

    /** One rating as an ATSC table carries it. */
    struct Atsc {
        uint16_t region;
        std::string name;
        /** Pairs of dimension and value. */
        std::vector<uint8_t> values;
    };
    static RatingText text(const std::vector<Atsc>& list);

  private:
    void changed() const;

    Settings mSettings;
    Notifier& mNotifier;
    ConfigItems& mConfig;
    std::vector<std::function<void()>> mListeners;
    mutable std::mutex mLock;
};

}  // namespace qeltvd
