#pragma once

#include <vector>

#include "Inputs.h"
#include "Signals.h"

namespace qeltvd {

/** The simulated picture of what is connected to an input. */
VideoFormat videoOf(const Inputs::Socket& socket);
/** The simulated sound tracks of an input. */
std::vector<SoundTrack> inputTracks();

}  // namespace qeltvd
