#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace screen {

/** A colour of 8 bits each; an alpha of 255 covers what is below. */
struct Colour {
    uint8_t red = 0, green = 0, blue = 0, alpha = 255;
};

/** A rectangle. The unit is that of the drawing: pixels of a Canvas, or units of a Scene. */
struct Box {
    double x = 0, y = 0, width = 0, height = 0;
};

/** The faces of the font. */
enum class Face { kPlain, kBold, kFixed };

/**
 * Width of a text.
 *
 * @param text UTF-8; bytes that are not UTF-8 count as one replacement character each
 * @param size height of the font
 * @return the width, in the unit of the size
 * @throws std::runtime_error when the font is not installed
 */
double textWidth(const std::string& text, double size, Face face);

/** The text, or as much of its beginning as fits, with an ellipsis. */
std::string fitted(const std::string& text, double size, Face face, double width);

/** An opaque picture in memory: four bytes a pixel, red, green, blue and one without a meaning. */
class Canvas {
  public:
    /** @param width, height in pixels, at least 1; the picture is black */
    Canvas(int width, int height);

    int width() const { return mWidth; }
    int height() const { return mHeight; }
    const uint8_t* pixels() const { return mPixels.data(); }
    uint8_t* pixels() { return mPixels.data(); }
    size_t stride() const { return static_cast<size_t>(mWidth) * 4; }

    /** Fills what a box covers of the picture. */
    void fill(const Box& box, Colour colour);
    /**
     * Draws a text.
     *
     * @param x, y  start of the text on its baseline
     * @param width what the text is stretched or squeezed to; 0 for its own width
     * @throws std::runtime_error when the font is not installed
     */
    void text(const std::string& text, double x, double y, double size, Face face, Colour colour,
              double width = 0);
    /** Draws another picture into a box, scaled to its size. */
    void picture(const Canvas& other, const Box& box);

  private:
    void blend(int x, int y, Colour colour, uint32_t alpha);

    int mWidth, mHeight;
    std::vector<uint8_t> mPixels;
};

}  // namespace screen
