/** Pictures that libavcodec encodes, for tests of what decodes them. */
#ifndef TESTS_SCREEN_VIDEO_ENCODER_H
#define TESTS_SCREEN_VIDEO_ENCODER_H

#include <cstdint>
#include <functional>
#include <vector>

namespace encoded {

/** Luma and chroma of a pixel. */
struct Yuv {
    uint8_t y, u, v;
};
constexpr Yuv kRed{81, 90, 240}, kBlue{41, 240, 110}, kGreen{145, 54, 34};

enum class Codec { kMpeg2, kH264 };

/** Whether libavcodec has an encoder for it. */
bool available(Codec codec);

struct Settings {
    Codec codec = Codec::kMpeg2;
    int width = 320;
    int height = 240;
    /** Aspect ratio of the screen. */
    int aspectWidth = 16;
    int aspectHeight = 9;
    bool interlaced = false;
    /** Pictures from one intra picture to the next. */
    int group = 12;
    /** 0 for the encoder's default. */
    int64_t bitsPerSecond = 0;
};

/** An access unit. */
struct Unit {
    std::vector<uint8_t> bytes;
    /** Whether it is an intra picture, which is decoded without another one. */
    bool whole = false;
};

/**
 * Encodes pictures of 25 frames a second, in the order in which they are shown.
 *
 * @param colour of a pixel of a frame
 * @throws std::runtime_error if libavcodec refuses
 */
std::vector<Unit> encode(const Settings& settings, uint32_t frames,
                         const std::function<Yuv(uint32_t frame, int x, int y)>& colour);

}  // namespace encoded

#endif  // TESTS_SCREEN_VIDEO_ENCODER_H
