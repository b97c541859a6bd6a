#define LOG_TAG "qeltvd"

#include <algorithm>

#include "ChannelIds.h"
#include "ChannelListService.h"
#include "Code.h"
#include "Stored.h"

namespace qeltvd {

using Service = ChannelListService;

namespace {

/** The bits that a mask of flags may have. */
constexpr uint32_t kFlags = 0xfff;

constexpr size_t kRecordIds = std::size(favourite_list_record_t{}.channel_ids);

Favourites::iterator placeOf(Favourites& favourites, const Channel& channel) {
    return std::find(favourites.begin(), favourites.end(),
                     Favourite{channel.list, channel.recordId});
}

}  // namespace

Code ChannelListService::changeFavourites(uint32_t favouriteList,
                                          const std::function<Code(Favourites*)>& change) {
    if (favouriteList >= kFavouriteLists) return kNotFound;
    // Read, changed and written as one.
    std::lock_guard<std::mutex> guard(mFavouriteLock);
    Favourites favourites = mChannels.favourites(favouriteList);
    const Code code = change(&favourites);
    if (code != kOk) return code;
    return stored([&] { return mChannels.setFavourites(favouriteList, favourites); });
}

std::vector<Channel> ChannelListService::favourites(uint32_t favouriteList, uint32_t list,
                                                    uint32_t mask, uint32_t value) const {
    if (list > channel_ids::kMaximumList) return {};
    return mChannels.favouriteChannels(favouriteList, static_cast<uint16_t>(list),
                                       ChannelQuery::masked(mask, value));
}

/** The channel ids are those of the service list. */
Return<int32_t> Service::a_hidl_qeltvapi_channellist_swap_favorites(uint32_t favouriteList,
                                                                    uint32_t list, uint32_t one,
                                                                    uint32_t other) {
    return changeFavourites(favouriteList, [&](Favourites* favourites) -> Code {
        const auto first = mChannels.channel(list, one), second = mChannels.channel(list, other);
        if (!first || !second) return kNotFound;
        const auto a = placeOf(*favourites, *first), b = placeOf(*favourites, *second);
        if (a == favourites->end() || b == favourites->end()) return kNotFound;
        std::iter_swap(a, b);
        return kOk;
    });
}

/**
 * Puts a channel of a service list into a favourite list, or takes it out; the word is its flags
 * then. The other two values are ignored.
 */
Return<void> Service::a_hidl_qeltvapi_channellist_set_favorites_by_id(
        uint32_t list, uint32_t channelId, uint32_t favouriteList, uint32_t, uint32_t, bool set,
        a_hidl_qeltvapi_channellist_set_favorites_by_id_cb reply) {
    const auto found = mChannels.channel(list, channelId);
    const Code code = changeFavourites(favouriteList, [&](Favourites* favourites) -> Code {
        if (!found) return kNotFound;
        const auto place = placeOf(*favourites, *found);
        if (set && place == favourites->end()) {
            favourites->push_back({found->list, found->recordId});
        } else if (!set && place != favourites->end()) {
            favourites->erase(place);
        }
        return kOk;
    });
    const auto now = found ? mChannels.byRecord(found->list, found->recordId) : std::nullopt;
    reply(now ? now->flags : 0, code);
    return Void();
}

// The current favourite list

Return<void> Service::a_hidl_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter(
        a_hidl_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter_cb reply) {
    favourite_list_record_t record{};
    record.list_index = mChannels.currentFavouriteList();
    record.current_index = UINT32_MAX;
    const auto all = mChannels.favouriteChannels(record.list_index, 0, {});
    const auto current = mChannels.current();
    record.count = static_cast<uint32_t>(all.size());
    for (size_t i = 0; i < all.size(); ++i) {
        if (i < kRecordIds) record.channel_ids[i] = all[i].channelId;
        if (current && current->channelId == all[i].channelId) {
            record.current_channel_id = current->channelId;
            record.current_index = static_cast<uint32_t>(i);
        }
    }
    reply(bytesOf(record), kOk);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_favoritelist_add_favoritelist_channel() {
    return a_hidl_qeltvapi_favoritelist_add_favoritelist_channel_by_index(UINT32_MAX);
}

/** An index beyond the end is the end; a channel that is in the list moves. */
Return<int32_t> Service::a_hidl_qeltvapi_favoritelist_add_favoritelist_channel_by_index(
        uint32_t index) {
    const auto current = mChannels.current();
    if (!current) return kRefused;
    return changeFavourites(mChannels.currentFavouriteList(), [&](Favourites* favourites) {
        const auto place = placeOf(*favourites, *current);
        if (place != favourites->end()) favourites->erase(place);
        favourites->insert(favourites->begin() + static_cast<ptrdiff_t>(std::min<size_t>(
                                                         index, favourites->size())),
                           {current->list, current->recordId});
        return kOk;
    });
}

Return<int32_t>
Service::a_hidl_qeltvapi_favoritelist_remove_favoritelist_channel_by_index_without_show_fav_icon(
        uint32_t index) {
    return changeFavourites(mChannels.currentFavouriteList(), [&](Favourites* favourites) -> Code {
        if (index >= favourites->size()) return kNotFound;
        favourites->erase(favourites->begin() + index);
        return kOk;
    });
}

/** By channel id; 0 is the current channel. */
Return<int32_t> Service::a_hidl_qeltvapi_favoritelist_remove_favoritelist_channel(
        uint32_t channelId) {
    const auto found = channelId == 0 ? mChannels.current() : mChannels.byChannelId(channelId);
    return changeFavourites(mChannels.currentFavouriteList(), [&](Favourites* favourites) -> Code {
        if (!found) return kNotFound;
        const auto place = placeOf(*favourites, *found);
        if (place == favourites->end()) return kNotFound;
        favourites->erase(place);
        return kOk;
    });
}

/** Every change is stored when it is made. */
Return<int32_t> Service::a_hidl_qeltvapi_favoritelist_fs_store() {
    return kOk;
}

Return<int32_t> Service::a_hidl_qeltvapi_favoritelist_swap_favoritelist_by_index(uint32_t one,
                                                                                 uint32_t other) {
    return changeFavourites(mChannels.currentFavouriteList(), [&](Favourites* favourites) -> Code {
        if (one >= favourites->size() || other >= favourites->size()) {
            return kNotFound;
        }
        std::swap((*favourites)[one], (*favourites)[other]);
        return kOk;
    });
}

// The indexed favourite lists

Return<void> Service::a_hidl_qeltvapi_favorite_list_get_svl_handle_by_favorite_list_idx(
        uint32_t favouriteList, uint32_t list,
        a_hidl_qeltvapi_favorite_list_get_svl_handle_by_favorite_list_idx_cb reply) {
    const bool known =
            favouriteList < kFavouriteLists && list != 0 && list <= channel_ids::kMaximumList;
    reply(known ? CHANNEL_HANDLE_FAVOURITE << 16 | favouriteList << 8 | list : 0,
          known ? kOk : kNotFound);
    return Void();
}

/** Adds a channel of a service list; a channel that is in the favourite list moves. */
Return<int32_t> Service::a_hidl_qeltvapi_favorite_list_add_tail(uint32_t favouriteList,
                                                                uint32_t list, uint32_t channelId) {
    return changeFavourites(favouriteList, [&](Favourites* favourites) -> Code {
        const auto found = mChannels.channel(list, channelId);
        if (!found) return kNotFound;
        const auto place = placeOf(*favourites, *found);
        if (place != favourites->end()) favourites->erase(place);
        favourites->push_back({found->list, found->recordId});
        return kOk;
    });
}

/** The channels of a favourite list or a service list whose flags under the mask have the value. */
Return<int32_t> Service::a_hidl_qeltvapi_favorite_list_add_all(uint32_t favouriteList,
                                                               uint32_t list, uint32_t mask,
                                                               uint32_t value) {
    if (list > channel_ids::kMaximumList) return kNotFound;
    return changeFavourites(favouriteList, [&](Favourites* favourites) {
        for (const Channel& each :
             mChannels.find(static_cast<uint16_t>(list), ChannelQuery::masked(mask, value))) {
            if (placeOf(*favourites, each) == favourites->end()) {
                favourites->push_back({each.list, each.recordId});
            }
        }
        return kOk;
    });
}

Return<int32_t> Service::a_hidl_qeltvapi_favorite_list_delete(uint32_t favouriteList, uint32_t list,
                                                              uint32_t channelId) {
    return changeFavourites(favouriteList, [&](Favourites* favourites) -> Code {
        const auto found = mChannels.channel(list, channelId);
        if (!found) return kNotFound;
        const auto place = placeOf(*favourites, *found);
        if (place == favourites->end()) return kNotFound;
        favourites->erase(place);
        return kOk;
    });
}

/**
 * As add_all. Clients' requests to swap two channels of a list arrive here too; their channel ids
 * make no mask, so that they are refused and delete nothing.
 */
Return<int32_t> Service::a_hidl_qeltvapi_favorite_list_del_all(uint32_t favouriteList,
                                                               uint32_t list, uint32_t mask,
                                                               uint32_t value) {
    if ((mask & ~kFlags) != 0 || (value & ~mask) != 0) return kBadValue;
    return changeFavourites(favouriteList, [&](Favourites* all) {
        for (const Channel& each : favourites(favouriteList, list, mask, value)) {
            all->erase(placeOf(*all, each));
        }
        return kOk;
    });
}

Return<int32_t> Service::a_hidl_qeltvapi_favorite_list_swap_by_channel_id(uint32_t favouriteList,
                                                                          uint32_t list,
                                                                          uint32_t one,
                                                                          uint32_t other) {
    return a_hidl_qeltvapi_channellist_swap_favorites(favouriteList, list, one, other);
}

Return<uint32_t> Service::a_hidl_qeltvapi_favorite_list_number_by_mask(uint32_t favouriteList,
                                                                       uint32_t list, uint32_t mask,
                                                                       uint32_t value) {
    return static_cast<uint32_t>(favourites(favouriteList, list, mask, value).size());
}

Return<void> Service::a_hidl_qeltvapi_favorite_list_get_svl_rec_by_index(
        uint32_t favouriteList, uint32_t list, uint32_t mask, uint32_t value, uint32_t index,
        a_hidl_qeltvapi_favorite_list_get_svl_rec_by_index_cb reply) {
    return a_hidl_qeltvapi_favorite_list_get_svl_tsl_rec_by_index(
            favouriteList, list, mask, value, index,
            [&](const Bytes& svl, const Bytes&, int32_t code) { reply(svl, code); });
}

Return<void> Service::a_hidl_qeltvapi_favorite_list_get_svl_tsl_rec_by_index(
        uint32_t favouriteList, uint32_t list, uint32_t mask, uint32_t value, uint32_t index,
        a_hidl_qeltvapi_favorite_list_get_svl_tsl_rec_by_index_cb reply) {
    const auto all = favourites(favouriteList, list, mask, value);
    const auto pair = index < all.size() ? mChannels.pair(all[index].channelId) : std::nullopt;
    if (pair) {
        reply(bytesOf(pack(pair->first, pair->second)), bytesOf(pack(pair->second)), kOk);
    } else {
        reply(Bytes(), Bytes(), kNotFound);
    }
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_favorite_list_get_index_by_channel(
        uint32_t favouriteList, uint32_t list, uint32_t mask, uint32_t value, uint32_t channelId,
        a_hidl_qeltvapi_favorite_list_get_index_by_channel_cb reply) {
    const auto wanted = mChannels.channel(list, channelId);
    const auto all = favourites(favouriteList, list, mask, value);
    const auto found = std::find_if(all.begin(), all.end(), [&](const Channel& each) {
        return wanted && each.channelId == wanted->channelId;
    });
    const bool there = found != all.end();
    reply(there ? static_cast<uint32_t>(found - all.begin()) : 0, there ? kOk : kNotFound);
    return Void();
}

/** Among those of a list whose flags match, from one index to another one. */
Return<int32_t> Service::a_hidl_qeltvapi_favorite_list_insert_move(uint32_t favouriteList,
                                                                   uint32_t list, uint32_t mask,
                                                                   uint32_t value, uint32_t from,
                                                                   uint32_t to) {
    return changeFavourites(favouriteList, [&](Favourites* all) -> Code {
        const auto shown = favourites(favouriteList, list, mask, value);
        if (from >= shown.size() || to >= shown.size()) return kNotFound;
        const auto source = placeOf(*all, shown[from]);
        const auto target = placeOf(*all, shown[to]);
        if (source < target) {
            std::rotate(source, source + 1, target + 1);
        } else {
            std::rotate(target, source, source + 1);
        }
        return kOk;
    });
}

}  // namespace qeltvd
