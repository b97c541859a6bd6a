#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ChannelChange.h"
#include "ChannelLists.h"
#include "ChannelQuery.h"
#include "LineUp.h"
#include "Store.h"
#include "layouts/channel_records.h"

namespace qeltvd {

/** What a scan has found on one multiplex. Ids and numbers 0: the database gives them. */
struct Found {
    Multiplex multiplex;
    std::vector<Channel> services;
};

/** What became of the findings of a scan. */
struct Merged {
    size_t added = 0;
    size_t updated = 0;
    size_t removed = 0;
    /** Record ids of the added channels, in the order found. */
    std::vector<uint32_t> addedRecords = {};
};

/**
 * The channel data of the television: the service list of each medium with its multiplexes, the
 * satellites and networks, favourite lists, BISS keys, the current channel.
 *
 * Everything is held in memory and mirrored in the store; a change is stored first, so that one
 * that cannot be stored (StoreError) has not happened. All functions may be called on any thread.
 * A list is in the order of its channel numbers, and an index counts in that order from 0.
 *
 * A channel id tells the list and the number of a channel (see ChannelIds.h), is unique in the
 * television, and changes when the channel is renumbered; the record id of a channel never changes
 * and is unique within its list.
 */
class ChannelDatabase {
  public:
    /**
     * Opens the data, and fills it from the line-up of a region when there is none or the region
     * is not the one that it was filled from. @throws StoreError
     */
    ChannelDatabase(Store& store, const std::string& region);

    // Listening

    using Listener = std::function<void(const ChannelChange&)>;
    /**
     * Adds a listener, called for every change on the thread that made it, in no lock. To be
     * called before the television serves; a listener stays.
     */
    void addListener(Listener listener);

    // Channels

    /** Ids of the lists that have channels or multiplexes, ascending. */
    std::vector<uint16_t> lists() const;
    size_t count(uint16_t list, const ChannelQuery& query = {}) const;

    std::optional<Channel> byChannelId(uint32_t channelId) const;
    /** By an id of which only the low 16 bits are known. */
    std::optional<Channel> byShortId(uint16_t list, uint16_t channelId) const;
    std::optional<Channel> byRecord(uint16_t list, uint32_t recordId) const;
    std::optional<Channel> byNumber(uint16_t list, uint32_t number) const;
    std::optional<Channel> byIndex(uint16_t list, size_t index) const;
    /** By what the broadcast calls it. */
    std::optional<Channel> byTriplet(uint16_t list, uint16_t networkId, uint16_t streamId,
                                     uint16_t serviceId) const;
    /** The channel at an index among those that a query finds. */
    std::optional<Channel> byIndex(uint16_t list, const ChannelQuery& query, size_t index) const;
    /** All that a query finds, in order; at most `limit` from index `first` on. */
    std::vector<Channel> find(uint16_t list, const ChannelQuery& query = {}, size_t first = 0,
                              size_t limit = SIZE_MAX) const;
    /** Index of a channel in its list, or among what a query finds. */
    std::optional<size_t> indexOf(uint32_t channelId, const ChannelQuery& query = {}) const;
    /**
     * The channel that follows (or, backwards, comes before) another one among what a query finds,
     * going round at the end. The channel itself need not be found, nor exist any more.
     */
    std::optional<Channel> next(uint32_t channelId, const ChannelQuery& query,
                                bool backwards = false) const;

    /** A channel with its multiplex. */
    using Pair = std::pair<Channel, Multiplex>;
    std::optional<Pair> pair(uint32_t channelId) const;
    /**
     * Calls `take` for channels from index `first` among what a query finds, until `limit` are
     * taken, all as they are at one moment.
     *
     * @return number of calls
     */
    size_t visit(uint16_t list, const ChannelQuery& query, size_t first, size_t limit,
                 const std::function<void(const Channel&, const Multiplex&)>& take) const;

    // Editing. Each gives a code of Codes.h.

    /** Sets the flags under a mask. The favourite flags are those of the favourite lists. */
    int32_t setFlags(uint16_t list, uint32_t recordId, uint32_t mask, uint32_t flags,
                     bool quiet = false);
    /** As setFlags(), for all that a query finds. */
    int32_t setFlagsOfAll(uint16_t list, const ChannelQuery& query, uint32_t mask, uint32_t flags);
    int32_t rename(uint16_t list, uint32_t recordId, const std::string& name);
    /**
     * Writes a channel over that of its record id, or adds it when the record id is 0 (a channel
     * number that is taken or 0 then becomes the next free one).
     *
     * @param stream not null: its multiplex, written with it in one change
     */
    int32_t put(const Channel& channel, bool quiet = false, uint32_t* recordId = nullptr,
                const Multiplex* stream = nullptr);
    int32_t remove(uint16_t list, const std::vector<uint32_t>& recordIds);
    /** Removes what a query finds; `streams`: multiplexes that are left without channels too. */
    int32_t removeAll(uint16_t list, const ChannelQuery& query, bool streams);
    /** Two channels of one list change their numbers. */
    int32_t swap(uint32_t channelId, uint32_t otherId);
    /**
     * A channel goes in front of another one of its list: the channels between move by one place,
     * and the list has the same numbers as before.
     */
    int32_t moveBefore(uint32_t channelId, uint32_t beforeId);
    /** A channel takes the number behind the highest of its list. */
    int32_t moveToEnd(uint32_t channelId);
    /** Renumbers the channels from a number on by an offset. */
    int32_t slide(uint16_t list, uint32_t fromNumber, int32_t offset);

    /**
     * Takes the findings of a scan: multiplexes are known by delivery system, frequency,
     * polarisation and satellite, services by service id; known channels keep number, flags and
     * favourites, new ones get a free number (the one that they bring, if it is free).
     *
     * @param list      the list that was scanned
     * @param found     what was found
     * @param exclusive remove what was not found: multiplexes (not the satellites) and channels
     * @param merged    [out] what became of it, may be null
     */
    int32_t merge(uint16_t list, const std::vector<Found>& found, bool exclusive, Merged* merged);

    // Current channel

    std::optional<Channel> current() const;
    std::optional<Channel> secondCurrent() const;
    /** kNotFound for a channel id that there is not; 0 is no channel. */
    int32_t setCurrent(uint32_t channelId);
    int32_t setSecondCurrent(uint32_t channelId);

    // Multiplexes, satellites, networks. The lists of a medium all have the id of its service list.

    std::vector<Multiplex> multiplexes(uint16_t list) const;
    std::optional<Multiplex> multiplex(uint16_t list, uint32_t recordId) const;
    /** Writes over the record id, or adds when it is 0. */
    int32_t putMultiplex(const Multiplex& multiplex, bool quiet = false,
                         uint32_t* recordId = nullptr);
    /** With the channels on them. */
    int32_t removeMultiplexes(uint16_t list, const std::vector<uint32_t>& recordIds);

    std::vector<Satellite> satellites() const;
    std::optional<Satellite> satellite(uint32_t recordId) const;
    int32_t putSatellite(const Satellite& satellite, bool quiet = false,
                         uint32_t* recordId = nullptr);
    /** With its multiplexes, networks and channels. Record id 0: every satellite. */
    int32_t removeSatellite(uint32_t recordId);

    std::vector<Network> networks(uint16_t list) const;
    std::optional<Network> network(uint16_t list, uint32_t recordId) const;
    int32_t putNetwork(const Network& network, bool quiet = false, uint32_t* recordId = nullptr);
    /** Record id 0: every network of the list. */
    int32_t removeNetwork(uint16_t list, uint32_t recordId);

    // Favourite lists: record ids of channels in the order that the user gave them.

    std::vector<Favourite> favourites(uint32_t favouriteList) const;
    /** The channels of a favourite list that a query finds (list 0: of every service list). */
    std::vector<Channel> favouriteChannels(uint32_t favouriteList, uint16_t list,
                                           const ChannelQuery& query) const;
    /** Replaces a favourite list; it must not name a channel twice, or one that there is not. */
    int32_t setFavourites(uint32_t favouriteList, const std::vector<Favourite>& favourites);
    uint32_t currentFavouriteList() const;
    int32_t setCurrentFavouriteList(uint32_t favouriteList);

    // BISS keys

    std::vector<BissKey> bissKeys() const;
    /** Writes over the record id, or adds when it is 0. */
    int32_t putBissKey(const BissKey& key, uint32_t* recordId);
    /** Record id 0: every key. */
    int32_t removeBissKey(uint32_t recordId);
    /** The key that fits a multiplex and service. */
    std::optional<BissKey> bissKeyFor(const Channel& channel) const;

    // Whole lists

    /** Empties a list: its channels, and its multiplexes when told so. */
    int32_t clear(uint16_t list, bool streams);
    /** Fills all lists anew from the line-up of a region. */
    int32_t reload(const std::string& region);

    /** A list with its multiplexes, networks and favourites as it is now; for restore(). */
    std::shared_ptr<const ChannelSnapshot> snapshot(uint16_t list) const;
    /** The satellites as they are now. */
    std::shared_ptr<const ChannelSnapshot> satelliteSnapshot() const;
    int32_t restore(const ChannelSnapshot& snapshot);
    /** Id of the list that it is of. */
    static uint16_t listOf(const ChannelSnapshot& snapshot);

    /** kListMode of the layouts. */
    uint32_t listMode() const;
    int32_t setListMode(uint32_t mode);
    /** Counts the changes of a list, over restarts too. */
    uint32_t version(uint16_t list) const;
    /** Version of what filled the list from outside ("channel pump"). */
    uint32_t pumpVersion(uint16_t list) const;
    int32_t setPumpVersion(uint16_t list, uint32_t version);

  private:
    class Edit;

    std::shared_ptr<const ChannelLists> state() const;
    std::shared_ptr<const ChannelList> list(uint16_t list) const;
    void load();
    void fill(Edit& edit, const std::string& configured);

    Store& mStore;
    // Held over a whole change, and taken before the store's.
    std::mutex mEditing;
    mutable std::mutex mLock;
    // Guarded by mLock; what it points at never changes.
    std::shared_ptr<const ChannelLists> mState;
    std::vector<Listener> mListeners;
};

}  // namespace qeltvd
