#include "InputSignals.h"

namespace qeltvd {

VideoFormat videoOf(const Inputs::Socket& socket) {
    const bool analogue = socket.type != QELTV_INPUT_HDMI && socket.type != QELTV_INPUT_VGA;
    VideoFormat format;
    format.width = socket.width != 0 ? socket.width : analogue ? 720 : 1920;
    format.height = socket.height != 0 ? socket.height : analogue ? 576 : 1080;
    format.frameRate = socket.frameRate != 0 ? socket.frameRate : analogue ? 25000 : 60000;
    format.interlaced = analogue;
    format.codec = QELTV_VIDEO_RAW;
    if (analogue) {
        format.aspectWidth = 4;
        format.aspectHeight = 3;
    }
    return format;
}

std::vector<SoundTrack> inputTracks() {
    return {{0, "und", QELTV_AUDIO_PCM, 2, QELTV_AUDIO_MAIN, 1536}};
}

}  // namespace qeltvd
