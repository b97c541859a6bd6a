#pragma once

#include <cstdint>
#include <vector>

#include "TeletextDecoder.h"
#include "TeletextView.h"

namespace qeltvd {

/** Simulated teletext: the same pages on every channel, with TOP navigation. */
class SimulatedTeletext {
  public:
    /** For how many seconds each subpage is on air. */
    static constexpr int64_t kTurn = 5;
    static constexpr uint16_t kSubtitlePage = 0x888;

    /** @param subpage from 1; 0 for the one that is on air */
    static TeletextView view(uint16_t number, uint32_t subpage, const TeletextTopics& topics);
    /** All pages, in order. */
    static std::vector<stream::TopPage> top();
};

}  // namespace qeltvd
