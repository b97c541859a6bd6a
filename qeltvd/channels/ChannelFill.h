#pragma once

#include <string>

namespace qeltvd {

class ChannelEdit;

namespace channel_editing {

/** Replaces all lists by the line-ups of the regions that a configuration text names. */
void fill(ChannelEdit& edit, const std::string& configured);

}  // namespace channel_editing

}  // namespace qeltvd
