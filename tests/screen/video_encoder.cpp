#include "video_encoder.h"

#include <memory>
#include <stdexcept>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/opt.h>
}

namespace encoded {

namespace {

AVCodecID idOf(Codec codec) {
    return codec == Codec::kMpeg2 ? AV_CODEC_ID_MPEG2VIDEO : AV_CODEC_ID_H264;
}

template <auto Free>
struct Freed {
    template <class T>
    void operator()(T* object) const {
        Free(&object);
    }
};

void check(int result, const char* what) {
    if (result < 0) throw std::runtime_error(std::string("libavcodec: ") + what);
}

void paint(AVFrame* frame, uint32_t number,
           const std::function<Yuv(uint32_t frame, int x, int y)>& colour) {
    for (int y = 0; y < frame->height; ++y) {
        for (int x = 0; x < frame->width; ++x) {
            const Yuv pixel = colour(number, x, y);
            frame->data[0][y * frame->linesize[0] + x] = pixel.y;
            if (x % 2 != 0 || y % 2 != 0) continue;
            frame->data[1][y / 2 * frame->linesize[1] + x / 2] = pixel.u;
            frame->data[2][y / 2 * frame->linesize[2] + x / 2] = pixel.v;
        }
    }
}

}  // namespace

bool available(Codec codec) {
    return avcodec_find_encoder(idOf(codec)) != nullptr;
}

std::vector<Unit> encode(const Settings& settings, uint32_t frames,
                         const std::function<Yuv(uint32_t frame, int x, int y)>& colour) {
    av_log_set_level(AV_LOG_ERROR);
    const AVCodec* codec = avcodec_find_encoder(idOf(settings.codec));
    if (codec == nullptr) throw std::runtime_error("libavcodec has no such encoder");
    std::unique_ptr<AVCodecContext, Freed<avcodec_free_context>> encoder(
            avcodec_alloc_context3(codec));
    encoder->width = settings.width;
    encoder->height = settings.height;
    av_reduce(&encoder->sample_aspect_ratio.num, &encoder->sample_aspect_ratio.den,
              int64_t{settings.aspectWidth} * settings.height,
              int64_t{settings.aspectHeight} * settings.width, 255);
    encoder->time_base = {1, 25};
    encoder->framerate = {25, 1};
    encoder->pix_fmt = AV_PIX_FMT_YUV420P;
    encoder->gop_size = settings.group;
    encoder->max_b_frames = 0;
    encoder->thread_count = 1;
    if (settings.bitsPerSecond != 0) encoder->bit_rate = settings.bitsPerSecond;
    if (settings.interlaced) {
        encoder->flags |= AV_CODEC_FLAG_INTERLACED_DCT | AV_CODEC_FLAG_INTERLACED_ME;
    }
    if (settings.codec == Codec::kH264) {
        // Each picture at once, as the frames of the streams come in the order of their times.
        av_opt_set(encoder->priv_data, "preset", "veryfast", 0);
        av_opt_set(encoder->priv_data, "tune", "zerolatency", 0);
        // An access unit delimiter, as broadcasts have it.
        av_opt_set(encoder->priv_data, "aud", "1", 0);
    }
    check(avcodec_open2(encoder.get(), codec, nullptr), "the encoder cannot be opened");
    std::unique_ptr<AVFrame, Freed<av_frame_free>> frame(av_frame_alloc());
    std::unique_ptr<AVPacket, Freed<av_packet_free>> packet(av_packet_alloc());
    frame->width = settings.width;
    frame->height = settings.height;
    frame->format = encoder->pix_fmt;
    frame->interlaced_frame = settings.interlaced ? 1 : 0;
    frame->top_field_first = frame->interlaced_frame;
    check(av_frame_get_buffer(frame.get(), 0), "no memory for a picture");
    std::vector<Unit> units;
    for (uint32_t i = 0; i <= frames; ++i) {
        if (i < frames) {
            check(av_frame_make_writable(frame.get()), "no memory for a picture");
            paint(frame.get(), i, colour);
            frame->pts = i;
        }
        check(avcodec_send_frame(encoder.get(), i < frames ? frame.get() : nullptr),
              "a picture is refused");
        while (avcodec_receive_packet(encoder.get(), packet.get()) >= 0) {
            units.push_back({{packet->data, packet->data + packet->size},
                             (packet->flags & AV_PKT_FLAG_KEY) != 0});
            av_packet_unref(packet.get());
        }
    }
    return units;
}

}  // namespace encoded
