#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "Broadcast.h"
#include "ChannelChange.h"
#include "ChannelEditing.h"
#include "ChannelLists.h"
#include "ChannelMerge.h"
#include "ChannelQuery.h"
#include "ChannelStore.h"
#include "Code.h"
#include "LineUp.h"
#include "Result.h"
#include "Store.h"
#include "layouts/channel_records.h"

namespace qeltvd {

/**
 * The channel data of the television: the service list of each medium with its multiplexes, the
 * satellites and networks, favourite lists, BISS keys, the current channel.
 *
 * Everything is held in memory and mirrored in the store; a change is stored first, so that one
 * that cannot be stored (StoreError) has not happened. All functions may be called on any thread.
 * A list is in the order of its channel numbers, and an index counts in that order from 0.
 *
 * A channel id holds the list and the number of a channel (see ChannelIds.h), is unique in the
 * television, and changes when the channel is renumbered; the record id of a channel never changes
 * and is unique within its list.
 */
class ChannelDatabase {
  public:
    /**
     * Opens the data, and fills it from the line-up of a region when there is none or the region
     * is not the one that it was filled from. @throws StoreError
     */
    ChannelDatabase(Store& store, Broadcast& broadcast, const std::string& region);

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
    /** By its id, or by the low 16 bits of its id. */
    std::optional<Channel> channel(uint32_t list, uint32_t channelId) const;
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
     * The channel that follows (or, backwards, precedes) another one among what a query finds,
     * going round at the end. The channel itself need not be found, nor exist any more.
     */
    std::optional<Channel> next(uint32_t channelId, const ChannelQuery& query,
                                Direction direction = Direction::kForwards) const;

    /** A channel with its multiplex. */
    using Pair = std::pair<Channel, Multiplex>;
    std::optional<Pair> pair(uint32_t channelId) const;
    /** By its id, or by the low 16 bits of its id. */
    std::optional<Pair> pair(uint32_t list, uint32_t channelId) const;
    std::optional<Pair> pairOfRecord(uint16_t list, uint32_t recordId) const;
    std::optional<Pair> pairAt(uint16_t list, size_t index, const ChannelQuery& query = {}) const;
    std::optional<Pair> currentPair() const;
    std::optional<Pair> secondCurrentPair() const;
    /**
     * Calls `take` for channels from index `first` among what a query finds, until `limit` are
     * taken, all as they are at one moment.
     *
     * @return number of calls
     */
    size_t visit(uint16_t list, const ChannelQuery& query, size_t first, size_t limit,
                 const std::function<void(const Channel&, const Multiplex&)>& take) const;

    // Editing. Each returns a code of layouts/codes.h.

    /** Sets the flags under a mask. The favourite flags are those of the favourite lists. */
    Code setFlags(uint16_t list, uint32_t recordId, uint32_t mask, uint32_t flags);
    /** As setFlags(), for all that a query finds. */
    Code setFlagsOfAll(uint16_t list, const ChannelQuery& query, uint32_t mask, uint32_t flags);
    Code rename(uint16_t list, uint32_t recordId, const std::string& name);
    /**
     * Writes a channel over that of its record id, or adds it when the record id is 0 (a channel
     * number that is taken or 0 then becomes the next free one).
     */
    Code put(const Channel& channel, Audience audience = Audience::kEveryone);
    /** As put(), with its multiplex in the same change. */
    Code put(const Channel& channel, const Multiplex& stream, Audience audience);
    Code remove(uint16_t list, const std::vector<uint32_t>& recordIds);
    /** Removes what a query finds; `streams`: those that are left without channels. */
    Code removeAll(uint16_t list, const ChannelQuery& query, Streams streams);
    /** Two channels of one list change their numbers. */
    Code swap(uint32_t channelId, uint32_t otherId);
    /**
     * A channel goes in front of another one of its list: the channels between move by one place,
     * and the list has the same numbers as before.
     */
    Code moveBefore(uint32_t channelId, uint32_t beforeId);
    /** A channel takes the number behind the highest of its list. */
    Code moveToEnd(uint32_t channelId);
    /** Renumbers the channels from a number on by an offset. */
    Code slide(uint16_t list, uint32_t fromNumber, int32_t offset);

    /**
     * Takes the findings of a scan: multiplexes are known by delivery system, frequency,
     * polarisation and satellite, services by service id; known channels keep number, flags and
     * favourites, new ones get a free number (the one that they bring, if it is free).
     *
     * @param list    the list that was scanned
     * @param found   what was found
     * @param unfound what becomes of the list's other multiplexes and channels
     */
    Result<Merged> merge(uint16_t list, const std::vector<Found>& found, Unfound unfound);

    // Current channel

    std::optional<Channel> current() const;
    std::optional<Channel> secondCurrent() const;
    /** kNotFound for a channel id that there is not; 0 is no channel. */
    Code setCurrent(uint32_t channelId);
    Code setSecondCurrent(uint32_t channelId);

    // Multiplexes, satellites, networks. The lists of a medium all have the id of its service list.

    std::vector<Multiplex> multiplexes(uint16_t list) const;
    std::optional<Multiplex> multiplex(uint16_t list, uint32_t recordId) const;
    /**
     * Writes a Multiplex, Satellite, Network or BissKey over that of its record id, or adds it when
     * the record id is 0. Returns the record id.
     */
    template <class Record>
    Result<uint32_t> putRecord(const Record& record, Audience audience = Audience::kEveryone);
    /** With the channels on them. */
    Code removeMultiplexes(uint16_t list, const std::vector<uint32_t>& recordIds);

    std::vector<Satellite> satellites() const;
    std::optional<Satellite> satellite(uint32_t recordId) const;
    /** With its multiplexes, networks and channels. Record id 0: every satellite. */
    Code removeSatellite(uint32_t recordId);

    std::vector<Network> networks(uint16_t list) const;
    std::optional<Network> network(uint16_t list, uint32_t recordId) const;
    /** Record id 0: every network of the list. */
    Code removeNetwork(uint16_t list, uint32_t recordId);

    // Favourite lists: record ids of channels in the order that the user gave them.

    Favourites favourites(uint32_t favouriteList) const;
    /** The channels of a favourite list that a query finds (list 0: of every service list). */
    std::vector<Channel> favouriteChannels(uint32_t favouriteList, uint16_t list,
                                           const ChannelQuery& query) const;
    /** Replaces a favourite list; it must not name a channel twice, or one that there is not. */
    Code setFavourites(uint32_t favouriteList, const Favourites& favourites);
    uint32_t currentFavouriteList() const;
    Code setCurrentFavouriteList(uint32_t favouriteList);

    // BISS keys

    std::vector<BissKey> bissKeys() const;
    /** Record id 0: every key. */
    Code removeBissKey(uint32_t recordId);
    /** The key that fits a multiplex and service. */
    std::optional<BissKey> bissKeyFor(const Channel& channel) const;

    // Whole lists

    /** Empties a list of its channels, and with the streams of its multiplexes and networks. */
    Code clear(uint16_t list, Streams streams);
    /** Fills all lists anew from the line-up of a region; live streams need a scan. */
    Code reload(const std::string& region);

    /** A list with its multiplexes, networks and favourites as it is now; for restore(). */
    std::shared_ptr<const ChannelSnapshot> snapshot(uint16_t list) const;
    /** The satellites as they are now. */
    std::shared_ptr<const ChannelSnapshot> satelliteSnapshot() const;
    Code restore(const ChannelSnapshot& snapshot);

    /** kListMode of the layouts. */
    uint32_t listMode() const;
    Code setListMode(uint32_t mode);
    /** Counts the changes of a list, over restarts too. */
    uint32_t version(uint16_t list) const;
    /** Version of what filled the list from outside ("channel pump"). */
    uint32_t pumpVersion(uint16_t list) const;
    Code setPumpVersion(uint16_t list, uint32_t version);

  private:
    std::shared_ptr<const ChannelLists> state() const;
    std::shared_ptr<const ChannelList> list(uint16_t list) const;
    /** Makes a change: runs `edit`, stores and publishes what it leaves, notifies listeners. */
    template <class Edit>
    auto change(const Edit& edit) -> std::invoke_result_t<const Edit&, ChannelEdit&>;

    Broadcast& mBroadcast;
    ChannelStore mStore;
    // Held over a whole change, and taken before the store's.
    std::mutex mEditing;
    mutable std::mutex mLock;
    // Guarded by mLock; what it points at never changes.
    std::shared_ptr<const ChannelLists> mState;
    std::vector<Listener> mListeners;
};

}  // namespace qeltvd
