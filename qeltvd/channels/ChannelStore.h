#pragma once

#include <cstdint>
#include <string>

#include "ChannelLists.h"
#include "Store.h"

namespace qeltvd {

/**
 * The tables of the channel data. The caller makes several writes one change with a transaction of
 * the store. Every function throws StoreError when the store cannot be read or written.
 */
class ChannelStore {
  public:
    /** The layout of the tables; kept in the store's user_version. */
    static constexpr int64_t kLayout = 2;

    /**
     * Makes the tables that are missing. Tables of the layout without a number are adopted.
     *
     * @throws StoreError also for tables of a layout that this television does not read
     */
    explicit ChannelStore(Store& store);

    Store& store() { return mStore; }

    ChannelLists load() const;

    // For Channel, Multiplex, Network, Satellite, BissKey.

    /** Writes a record over that of its key, or adds it. */
    template <class Record>
    void save(const Record& record);
    template <class Record>
    void erase(const Record& record);

    /** Replaces all records of a service list. */
    void saveList(uint16_t id, const ChannelList& list);
    /** Writes versions and next record ids of a service list. */
    void saveCounters(uint16_t id, const ChannelList& list);
    void saveSatellites(const std::vector<Satellite>& satellites);
    void saveFavourites(uint32_t favouriteList, const Favourites& favourites);
    /** Writes the current channels, the list mode and other single values that differ. */
    void saveValues(const ChannelLists& before, const ChannelLists& now);

  private:
    void checkLayout();

    Store& mStore;
};

}  // namespace qeltvd
