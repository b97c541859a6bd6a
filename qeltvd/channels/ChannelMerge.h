#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "LineUp.h"

namespace qeltvd {

class ChannelEdit;

/** What a scan has found on one multiplex. Ids and numbers 0: the database gives them. */
struct Found {
    Multiplex multiplex;
    std::vector<Channel> services;
};

/** What becomes of multiplexes (not of satellites) and channels that a scan has not found. */
enum class Unfound { kKeep, kRemove };

/** What became of the findings of a scan. */
struct Merged {
    size_t added = 0;
    size_t updated = 0;
    size_t removed = 0;
    /** Record ids of the added channels, in the order found. */
    std::vector<uint32_t> addedRecords = {};
};

namespace channel_editing {

/** See ChannelDatabase::merge(). */
int32_t merge(ChannelEdit& edit, uint16_t list, const std::vector<Found>& found, Unfound unfound,
              Merged* merged);

}  // namespace channel_editing

}  // namespace qeltvd
