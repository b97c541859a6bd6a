#pragma once

#include <string>
#include <vector>

#include "Canvas.h"

namespace screen {

/** What lies over the picture, in units of a screen of kSceneWidth by kSceneHeight. */
constexpr double kSceneWidth = 1280;
constexpr double kSceneHeight = 720;

/** A filled box, or with a text the text: its box begins at the start of the baseline. */
struct Shape {
    Box box;
    Colour colour;
    std::string text;
    double size = 0;
    Face face = Face::kPlain;
};

/** The shapes of one element, from the lowest to the uppermost. */
struct Group {
    std::string part;  /**< name of the element, as in "banner" */
    std::string label; /**< what a screen reader says first */
    std::vector<Shape> shapes;

    void box(const Box& box, Colour colour) { shapes.push_back({box, colour, "", 0, {}}); }
    /** A text cut to a width; gives the width that it takes. */
    double text(const std::string& text, double x, double y, double size, Face face, Colour colour,
                double width = kSceneWidth);
};

using Scene = std::vector<Group>;

/** Draws a scene over the whole of a picture. */
void draw(Canvas* canvas, const Scene& scene);

}  // namespace screen
