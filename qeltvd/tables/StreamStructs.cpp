#include "StreamStructs.h"

namespace qeltvd::stream {

const char* nameOf(Codec codec) {
    switch (codec) {
        case Codec::kMpeg1Video:
            return "MPEG-1";
        case Codec::kMpeg2Video:
            return "MPEG-2";
        case Codec::kMpeg4Video:
            return "MPEG-4";
        case Codec::kH264:
            return "H.264";
        case Codec::kH265:
            return "H.265";
        case Codec::kMpegAudio:
            return "MPEG audio";
        case Codec::kAac:
        case Codec::kAacLatm:
            return "AAC";
        case Codec::kAc3:
            return "AC-3";
        case Codec::kEac3:
            return "E-AC-3";
        case Codec::kAc4:
            return "AC-4";
        case Codec::kDts:
            return "DTS";
        case Codec::kUnknown:
            break;
    }
    return "unknown";
}

const EventText* Event::text(const std::string& language) const {
    for (const EventText& each : texts) {
        if (each.language == language) return &each;
    }
    return texts.empty() ? nullptr : &texts.front();
}

}  // namespace qeltvd::stream
