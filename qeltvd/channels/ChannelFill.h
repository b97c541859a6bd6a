#pragma once

#include <string>

#include "ChannelEdit.h"

namespace qeltvd::channel_editing {

/** Replaces all lists by the line-ups of the regions that a configuration text names. */
void fill(ChannelEdit& edit, const std::string& configured);

}  // namespace qeltvd::channel_editing
