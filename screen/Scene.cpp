#include "Scene.h"

namespace screen {

double Group::text(const std::string& text, double x, double y, double size, Face face,
                   Colour colour, double width) {
    const std::string shown = fitted(text, size, face, width);
    const double taken = textWidth(shown, size, face);
    if (!shown.empty()) shapes.push_back({{x, y, taken, 0}, colour, shown, size, face});
    return taken;
}

void draw(Canvas* canvas, const Scene& scene) {
    const double right = canvas->width() / kSceneWidth, down = canvas->height() / kSceneHeight;
    for (const Group& group : scene) {
        for (const Shape& shape : group.shapes) {
            const Box box{shape.box.x * right, shape.box.y * down, shape.box.width * right,
                          shape.box.height * down};
            if (shape.text.empty()) {
                canvas->fill(box, shape.colour);
            } else {
                canvas->text(shape.text, box.x, box.y, shape.size * down, shape.face, shape.colour,
                             box.width);
            }
        }
    }
}

}  // namespace screen
