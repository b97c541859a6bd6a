#pragma once

#include <vector>

#include "LineUp.h"

namespace qeltvd {

/**
 * Names services for a transport stream of which only the reception is known, as in the scan
 * tables. The same region and multiplex always carry the same services, on every machine: all
 * choices come from a hash of the region's name, frequency and polarisation, by an own generator
 * (splitmix64), never from the clock or the C++ library's distributions.
 *
 * - how many: 3 to 6 for DVB-T, 5 to 9 for DVB-T2, 6 to 12 for DVB-C, 4 to 9 for DVB-S, 6 to 12 for
 *   DVB-S2, 2 to 5 for ATSC, 3 to 7 for clear QAM, 1 to 3 for ISDB-T;
 * - kinds: about one in six is radio, one in forty data; DVB-T2, DVB-S2 and the first service of an
 *   ATSC multiplex are in high definition;
 * - about one in five of cable and satellite is scrambled;
 * - service ids from a base that differs between multiplexes, PIDs from 0x100 in steps of 0x10;
 * - names of two or three words, unique within a multiplex, in ASCII and UTF-8; languages by the
 *   country of the region.
 *
 * Channels have no list, record or multiplex ids; numbers are set for ATSC only (major << 16 |
 * minor, the major number that of the RF channel) and 0 elsewhere.
 */
std::vector<Channel> generateServices(const Region& region, const Multiplex& multiplex);

}  // namespace qeltvd
