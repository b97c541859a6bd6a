#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Broadcast.h"
#include "Code.h"
#include "ConfigItems.h"
#include "Event.h"
#include "Notifier.h"
#include "Result.h"
#include "Settings.h"
#include "layouts/rating.h"

namespace qeltvd {

/** A rating as three texts for people. */
struct RatingText {
    std::string label;
    std::string system;
    std::string description;
};

/**
 * What the rating lock blocks. The DVB age limit and the master switch are the configuration items
 * "parental.age" and "parental.rating_lock", the rest is the lock's own.
 */
class Ratings {
  public:
    /** @throws StoreError */
    Ratings(Store& store, Notifier& notifier, ConfigItems& config, Broadcast& broadcast);

    /** Called when another rating may be blocked, without a lock; before serving only. */
    void addListener(std::function<void()> listener);

    /** Settings of 8 bits. */
    enum class Setting : uint8_t {
        kUsMovie,
        kCanadaEnglish,
        kCanadaFrench,
        kBlockUnrated,
        kIsdbContent,
        kIsdbAge,
        kDvbAge,
        kEnable,
    };
    uint8_t get(Setting setting) const;
    Code set(Setting setting, uint8_t value);

    using UsTv = std::array<uint8_t, QELTV_US_TV_FLAGS>;
    UsTv usTv() const;
    Code setUsTv(const UsTv& flags);
    uint8_t childGroup() const;

    /** Receives the downloadable table, or forgets it with its settings. */
    Code store(bool on);
    bool vchipAvailable() const;
    QELTV_OPEN_VCHIP_TABLE_T vchipTable() const;
    using Levels = std::array<uint8_t, 255>;
    struct VchipDimension {
        uint8_t levels;
        Levels blocked;
    };
    Result<VchipDimension> vchip(uint8_t region, uint8_t dimension) const;
    Code setVchip(uint8_t region, uint8_t dimension, const Levels& blocked);

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
    /** The table that is stored, or that a simulated broadcast has. */
    QELTV_OPEN_VCHIP_TABLE_T table() const;
    /** Takes the table that a multiplex sends. */
    void receive(const Broadcast& broadcast);
    /** Stores the table that was received last, with nothing blocked; with the lock held. */
    Code storeTable();
    void notifyTable(int32_t type) const;

    Settings mSettings;
    Notifier& mNotifier;
    ConfigItems& mConfig;
    std::vector<std::function<void()>> mListeners;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::optional<QELTV_OPEN_VCHIP_TABLE_T> mReceived;
};

}  // namespace qeltvd
