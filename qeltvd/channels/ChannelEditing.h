#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ChannelChange.h"
#include "ChannelLists.h"
#include "ChannelQuery.h"
#include "Code.h"

namespace qeltvd {

class ChannelEdit;

/** Whether multiplexes go with the channels on them. */
enum class Streams { kKeep, kRemove };

/** What clients change; see ChannelDatabase's functions of the same names. */
namespace channel_editing {

Code setFlags(ChannelEdit& edit, uint16_t list, uint32_t recordId, uint32_t mask, uint32_t flags);
Code setFlagsOfAll(ChannelEdit& edit, uint16_t list, const ChannelQuery& query, uint32_t mask,
                   uint32_t flags);
Code rename(ChannelEdit& edit, uint16_t list, uint32_t recordId, const std::string& name);
Code put(ChannelEdit& edit, const Channel& channel, Audience audience);
Code put(ChannelEdit& edit, const Channel& channel, const Multiplex& stream, Audience audience);
Code remove(ChannelEdit& edit, uint16_t list, const std::vector<uint32_t>& recordIds);
Code removeAll(ChannelEdit& edit, uint16_t list, const ChannelQuery& query, Streams streams);
Code removeMultiplexes(ChannelEdit& edit, uint16_t list, const std::vector<uint32_t>& recordIds);
Code swap(ChannelEdit& edit, uint32_t channelId, uint32_t otherId);
Code moveBefore(ChannelEdit& edit, uint32_t channelId, uint32_t beforeId);
Code moveToEnd(ChannelEdit& edit, uint32_t channelId);
Code slide(ChannelEdit& edit, uint16_t list, uint32_t fromNumber, int32_t offset);
/** `current`: which of the current channels. */
Code setCurrent(ChannelEdit& edit, uint32_t channelId,
                ChannelLists::Reference ChannelLists::*current);
Code setFavourites(ChannelEdit& edit, uint32_t favouriteList, const Favourites& favourites);
Code setCurrentFavouriteList(ChannelEdit& edit, uint32_t favouriteList);
Code clear(ChannelEdit& edit, uint16_t list, Streams streams);
Code restore(ChannelEdit& edit, const ChannelSnapshot& snapshot);
Code setListMode(ChannelEdit& edit, uint32_t mode);

}  // namespace channel_editing

}  // namespace qeltvd
