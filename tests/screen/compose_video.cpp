/**
 * compose_video 576i|1080i FILE.ts: a multiplex whose first service has moving pictures as
 * broadcasts have them, for figures.py.
 */
#include <cstdio>
#include <stdexcept>
#include <string>

#include "stream_composer.h"
#include "video_encoder.h"

namespace {

constexpr uint32_t kSeconds = 4, kFrames = kSeconds * 25;

encoded::Settings settingsOf(const std::string& format) {
    encoded::Settings settings;
    settings.interlaced = true;
    if (format == "576i") {
        settings.codec = encoded::Codec::kMpeg2;
        settings.width = 720;
        settings.height = 576;
        settings.bitsPerSecond = 4'000'000;
    } else if (format == "1080i") {
        settings.codec = encoded::Codec::kH264;
        settings.width = 1920;
        settings.height = 1080;
        settings.bitsPerSecond = 8'000'000;
    } else {
        throw std::runtime_error(format + " is none of 576i and 1080i");
    }
    return settings;
}

/** Gradients and a texture that move at speeds of their own. */
encoded::Yuv moving(uint32_t frame, int x, int y) {
    const auto at = static_cast<unsigned>(x) + frame * 6, down = static_cast<unsigned>(y) + frame;
    const unsigned texture = (at * 7 ^ down * 13) & 31;
    return {static_cast<uint8_t>(48 + (at / 8 + down / 4) % 128 + texture),
            static_cast<uint8_t>(64 + at / 16 % 128), static_cast<uint8_t>(64 + down / 16 % 128)};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: compose_video 576i|1080i FILE.ts\n");
        return 2;
    }
    try {
        const encoded::Settings settings = settingsOf(argv[1]);
        const auto units = encoded::encode(settings, kFrames, moving);
        composed::Options options;
        options.seconds = kSeconds;
        options.pictureType = settings.codec == encoded::Codec::kMpeg2 ? 0x02 : 0x1b;
        options.picture = [&units](uint32_t frame) {
            return composed::Picture{units.at(frame).bytes, units.at(frame).whole};
        };
        composed::writeFile(argv[2], composed::dvb(options));
    } catch (const std::exception& error) {
        fprintf(stderr, "compose_video: %s\n", error.what());
        return 1;
    }
    return 0;
}
