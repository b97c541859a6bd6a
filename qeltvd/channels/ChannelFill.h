#pragma once

#include <string>
#include <vector>

#include "Broadcast.h"

namespace qeltvd {

class ChannelEdit;

namespace channel_editing {

/** What is on the multiplexes of a region, in their order. */
struct Surveyed {
    Region region;
    std::vector<Survey> surveys;
};

/**
 * Surveys the regions of a configuration text. Live streams are left to a scan: they have no
 * services here, because a survey of one that is silent takes long.
 */
std::vector<Surveyed> survey(Broadcast& broadcast, const std::string& configured);

/** Replaces all lists by the line-ups of regions. @param name of the regions together */
void fill(ChannelEdit& edit, const std::string& name, const std::vector<Surveyed>& all);

}  // namespace channel_editing

}  // namespace qeltvd
