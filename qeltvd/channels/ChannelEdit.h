#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ChannelChange.h"
#include "ChannelLists.h"
#include "ChannelStore.h"
#include "Code.h"
#include "Result.h"

namespace qeltvd {

/**
 * One change of the lists: works on a copy of what it changes and writes it to the store as it
 * goes. The store takes it back unless commit() returns. Functions that return a code are those of
 * ChannelDatabase of the same name; after another code than kOk the edit must be dropped.
 */
class ChannelEdit {
  public:
    ChannelEdit(ChannelStore& store, std::shared_ptr<const ChannelLists> before);

    ChannelStore& store() { return mStore; }
    /** The lists as they will be. */
    ChannelLists& lists() { return *mLists; }
    /** A list, to be read. */
    const ChannelList& list(uint16_t id) const { return mLists->list(id); }
    /** A list, to be changed. */
    ChannelList& change(uint16_t id);

    void changed(ChannelChange change) { mChanges.push_back(std::move(change)); }

    /** Replaces a channel of a list that is being changed, or adds it. */
    void place(ChannelList& list, const Channel& channel);
    /** Replaces channels of a list, which are all changed in one way. */
    void placeAll(uint16_t list, const std::vector<Channel>& channels);
    /** Removes channels from their list. */
    void take(uint16_t list, const std::vector<uint32_t>& records);
    /** Removes multiplexes with their channels. */
    void takeMultiplexes(uint16_t list, const std::vector<uint32_t>& records);

    /** For Multiplex, Network, Satellite, BissKey. Returns the record id. */
    template <class Record>
    Result<uint32_t> put(Record record, Audience audience);
    Code removeNetworks(uint16_t list, uint32_t recordId);
    Code removeSatellites(uint32_t recordId);
    Code removeKeys(uint32_t recordId);

    void setFavourites(uint32_t favouriteList, const Favourites& favourites);
    /** Sets the channels' favourite flags as the favourite lists are. */
    void flagFavourites();

    /** Stores the change and returns what listeners are to be notified of. @throws StoreError */
    std::vector<ChannelChange> commit();
    /** The lists after commit(). */
    std::shared_ptr<const ChannelLists> result() const { return mLists; }

  private:
    /** The records among which a record is. */
    std::vector<Multiplex>& among(const Multiplex& r) { return change(r.list).multiplexes; }
    std::vector<Network>& among(const Network& r) { return change(r.list).networks; }
    std::vector<Satellite>& among(const Satellite&) { return mLists->satellites; }
    std::vector<BissKey>& among(const BissKey&) { return mLists->keys; }

    /** An id for a record that is added. */
    uint32_t newId(const Multiplex& r) { return change(r.list).nextMultiplex++; }
    uint32_t newId(const Network& r) { return change(r.list).nextNetwork++; }
    template <class Record>
    uint32_t newId(const Record& r) {
        const auto& all = among(r);
        return all.empty() ? 1 : all.back().recordId + 1;
    }

    template <class Record, class Unwanted>
    void erase(std::vector<Record>& from, const Unwanted& unwanted);
    /** Removes a record, or all for record id 0. */
    template <class Record>
    Code remove(std::vector<Record>& from, uint32_t recordId);
    void follow(const ChannelLists::Reference& was, ChannelLists::Reference& is,
                ChannelChange::Kind kind);

    ChannelStore& mStore;
    std::optional<Store::Transaction> mTransaction;
    const std::shared_ptr<const ChannelLists> mBefore;
    const std::shared_ptr<ChannelLists> mLists;
    std::map<uint16_t, std::shared_ptr<ChannelList>> mChanged;
    std::vector<ChannelChange> mChanges;
};

}  // namespace qeltvd
