#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ChannelChange.h"
#include "ChannelLists.h"
#include "ChannelQuery.h"

namespace qeltvd {

class ChannelEdit;

/** Whether multiplexes go with the channels on them. */
enum class Streams { kKeep, kRemove };

/** What clients change; see ChannelDatabase's functions of the same names. */
namespace channel_editing {

int32_t setFlags(ChannelEdit& edit, uint16_t list, uint32_t recordId, uint32_t mask,
                 uint32_t flags);
int32_t setFlagsOfAll(ChannelEdit& edit, uint16_t list, const ChannelQuery& query, uint32_t mask,
                      uint32_t flags);
int32_t rename(ChannelEdit& edit, uint16_t list, uint32_t recordId, const std::string& name);
int32_t put(ChannelEdit& edit, const Channel& channel, Audience audience);
int32_t put(ChannelEdit& edit, const Channel& channel, const Multiplex& stream, Audience audience);
int32_t remove(ChannelEdit& edit, uint16_t list, const std::vector<uint32_t>& recordIds);
int32_t removeAll(ChannelEdit& edit, uint16_t list, const ChannelQuery& query, Streams streams);
int32_t removeMultiplexes(ChannelEdit& edit, uint16_t list, const std::vector<uint32_t>& recordIds);
int32_t swap(ChannelEdit& edit, uint32_t channelId, uint32_t otherId);
int32_t moveBefore(ChannelEdit& edit, uint32_t channelId, uint32_t beforeId);
int32_t moveToEnd(ChannelEdit& edit, uint32_t channelId);
int32_t slide(ChannelEdit& edit, uint16_t list, uint32_t fromNumber, int32_t offset);
/** `current`: which of the current channels. */
int32_t setCurrent(ChannelEdit& edit, uint32_t channelId,
                   ChannelLists::Reference ChannelLists::*current);
int32_t setFavourites(ChannelEdit& edit, uint32_t favouriteList, const Favourites& favourites);
int32_t setCurrentFavouriteList(ChannelEdit& edit, uint32_t favouriteList);
int32_t clear(ChannelEdit& edit, uint16_t list, Streams streams);
int32_t restore(ChannelEdit& edit, const ChannelSnapshot& snapshot);
int32_t setListMode(ChannelEdit& edit, uint32_t mode);

}  // namespace channel_editing

}  // namespace qeltvd
