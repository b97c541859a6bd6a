#pragma once

#include <chrono>

#include "Canvas.h"
#include "Television.h"

namespace screen {

/**
 * Draws the whole screen: the pictures where multi-view places them. A build with the decoder
 * waits up to five seconds for the picture of a streamed service. Everything else has a test card.
 */
void drawPictures(Canvas* canvas, const Shown& shown, std::chrono::milliseconds time);

/** Where the picture of a path is, in pixels of a screen. */
Box placeOf(const ShownPath& path, double width, double height);

/** Whether a path plays a service with video, which is a stream's or simulated. */
bool mayBeDecoded(const ShownPath& path);

}  // namespace screen
