#pragma once

#include <chrono>

#include "Canvas.h"
#include "Television.h"

namespace screen {

/**
 * The picture of what has no picture: a simulated service, an input, or a streamed service without
 * a decoder. It has the name, colour bars, the facts of the stream, the television's clock and a
 * mark that moves, so that a picture that stands still shows.
 */
class TestCard {
  public:
    TestCard(int width, int height) : mStill(width, height) {}

    /** Draws the picture of a path; black unless it plays. */
    void draw(Canvas* canvas, const Shown& shown, uint32_t path, std::chrono::milliseconds time);

  private:
    void drawStill(const ShownPath& path, const std::string& title);

    Canvas mStill;
    std::string mStillOf;
};

}  // namespace screen
