#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "LineUp.h"
#include "Result.h"

namespace qeltvd {

class ChannelEdit;

/** What a scan has found on one multiplex. Ids and numbers 0: the database gives them. */
struct Found {
    Multiplex multiplex;
    std::vector<Channel> services;
    bool signal = true;
    /** The name of the network; empty if none is broadcast. */
    std::string network = {};
    /** From where on services without a number are numbered; 1 behind all others. */
    uint32_t firstNumber = 1;
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
Result<Merged> merge(ChannelEdit& edit, uint16_t list, const std::vector<Found>& found,
                     Unfound unfound);

}  // namespace channel_editing

}  // namespace qeltvd
