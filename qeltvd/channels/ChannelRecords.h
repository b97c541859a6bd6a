#pragma once

#include "ChannelDatabase.h"
#include "layouts/channel_records.h"

namespace qeltvd {

/** Between the television's own form of the channel data and the records that cross. */

channel_record_t pack(const Channel& channel, const Multiplex& multiplex);
multiplex_record_t pack(const Multiplex& multiplex);
satellite_record_t pack(const Satellite& satellite);
network_record_t pack(const Network& network);
biss_record_t pack(const BissKey& key);

Channel unpack(const channel_record_t& record);
Multiplex unpack(const multiplex_record_t& record);
Satellite unpack(const satellite_record_t& record);
Network unpack(const network_record_t& record);
BissKey unpack(const biss_record_t& record);

}  // namespace qeltvd
