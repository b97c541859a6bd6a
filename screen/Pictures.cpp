#include "Pictures.h"

#include <cmath>

#include "TestCard.h"
#ifdef QELTV_DECODER
#include "Decoder.h"
#endif

namespace screen {
namespace {

using std::chrono::milliseconds;

#ifdef QELTV_DECODER
/** Longer than a broadcast takes from one random access point to the next. */
constexpr milliseconds kFirstPicture{5000};

/** @return whether the path shows a stream that has a picture */
bool drawStream(Canvas* canvas, const ShownPath& path, uint32_t number) {
    if (!mayBeDecoded(path)) return false;
    const auto decoder = Decoder::of(number);
    Decoder::Reader reader;
    return decoder->waitForPicture(kFirstPicture) &&
           reader.next(*decoder, canvas, milliseconds(0)) == Decoder::Reader::kNew;
}
#else
bool drawStream(Canvas*, const ShownPath&, uint32_t) {
    return false;
}
#endif

}  // namespace

Box placeOf(const ShownPath& path, double width, double height) {
    const auto part = [](uint32_t value) { return static_cast<double>(value) / QELTV_REGION_FULL; };
    return {part(path.screen.x) * width, part(path.screen.y) * height,
            part(path.screen.width) * width, part(path.screen.height) * height};
}

bool mayBeDecoded(const ShownPath& path) {
    return path.plays() && !path.muted && path.channel && path.video.codec != QELTV_VIDEO_NONE;
}

void drawPictures(Canvas* canvas, const Shown& shown, milliseconds time) {
    for (uint32_t number = 0; number < QELTV_PATHS; ++number) {
        const ShownPath& path = shown.paths[number];
        if (!shown.reachable || !path.running()) continue;
        const Box place = placeOf(path, canvas->width(), canvas->height());
        const int width = static_cast<int>(std::lround(place.width));
        const int height = static_cast<int>(std::lround(place.height));
        if (width < 1 || height < 1) continue;
        Canvas picture(width, height);
        if (!drawStream(&picture, path, number)) {
            TestCard(width, height).draw(&picture, shown, number, time);
        }
        canvas->picture(picture, place);
    }
}

}  // namespace screen
