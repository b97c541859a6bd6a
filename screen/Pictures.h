#pragma once

#include <chrono>

#include "Canvas.h"
#include "Television.h"

namespace screen {

/**
 * Draws the whole screen: the pictures where multi-view places them. With a decoder those of
 * streamed services, for the first of which it waits some seconds; otherwise test cards.
 */
void drawPictures(Canvas* canvas, const Shown& shown, std::chrono::milliseconds time);

/** Where the picture of a path is, in pixels of a screen. */
Box placeOf(const ShownPath& path, double width, double height);

/** Whether a path shows what a decoder may have the pictures of. */
bool mayBeDecoded(const ShownPath& path);

}  // namespace screen
