#include "Decoder.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

namespace screen {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPause{200};
constexpr int kPollTime = 100;
/** Bytes of a packet of a transport stream, as MPEG fixes it; the television sends whole ones. */
constexpr size_t kPacketSize = 188;
constexpr int kBuffer = 64 * static_cast<int>(kPacketSize);
/** First byte of a packet. */
constexpr uint8_t kSync = 0x47;
/** Bytes in which the demuxer looks for the program map before it begins. */
constexpr int64_t kProbed = 32768;
/** A broadcast has no larger picture. */
constexpr int kLargestSide = 4096;
/** Pixels that the scaler writes at a time, even beyond the end of a line. */
constexpr int kScalerStep = 16;
/** Limits of aspect ratios; a picture beyond them fills the canvas. */
constexpr double kNarrowest = 0.5, kWidest = 4;

template <auto Free>
struct Freed {
    template <class T>
    void operator()(T* object) const {
        Free(&object);
    }
};
using Codec = std::unique_ptr<AVCodecContext, Freed<avcodec_free_context>>;
using Packet = std::unique_ptr<AVPacket, Freed<av_packet_free>>;
using Frame = std::unique_ptr<AVFrame, Freed<av_frame_free>>;
using Format = std::unique_ptr<AVFormatContext, Freed<avformat_close_input>>;

std::string runtimeDirectory() {
    if (const char* set = getenv("QELTV_RUNTIME_DIR"); set != nullptr && *set != '\0') return set;
    if (const char* run = getenv("XDG_RUNTIME_DIR"); run != nullptr && *run != '\0') {
        return std::string(run) + "/hidl";
    }
    return "/tmp/hidl-" + std::to_string(geteuid());
}

/** Finds the packets behind which nothing fits what was before. */
class Continuity {
  public:
    /** @return whether one of the bytes' packets says so, or follows on packets that are lost */
    bool breaks(const uint8_t* bytes, size_t size) {
        bool found = false;
        for (size_t i = 0; i < size; ++i) {
            if (mFilled == 0 && bytes[i] != kSync) continue;
            mPacket[mFilled++] = bytes[i];
            if (mFilled < kPacketSize) continue;
            mFilled = 0;
            found = breaksAt() || found;
        }
        return found;
    }

  private:
    bool breaksAt() {
        const unsigned pid = (mPacket[1] & 0x1fU) << 8 | mPacket[2];
        const bool adaptation = (mPacket[3] & 0x20) != 0, payload = (mPacket[3] & 0x10) != 0;
        const bool announced = adaptation && mPacket[4] != 0 && (mPacket[5] & 0x80) != 0;
        const unsigned counter = mPacket[3] & 0xfU;
        const auto last = mCounters.find(pid);
        bool lost = false;
        if (payload && last != mCounters.end()) {
            // A packet may come twice.
            lost = counter != last->second && counter != ((last->second + 1) & 0xfU);
        }
        if (payload) mCounters[pid] = counter;
        return announced || (lost && pid != 0x1fff);
    }

    uint8_t mPacket[kPacketSize];
    size_t mFilled = 0;
    std::map<unsigned, unsigned> mCounters;
};

/** Where a picture is in a canvas, as large as it fits. */
Box placeOf(const AVFrame& frame, const Canvas& canvas) {
    const double width = canvas.width(), height = canvas.height();
    const AVRational pixel = frame.sample_aspect_ratio;
    double ratio = static_cast<double>(frame.width) / frame.height;
    if (pixel.num > 0 && pixel.den > 0) ratio *= av_q2d(pixel);
    // Smaller differences come from rounding.
    constexpr double kSame = 0.02;
    if (ratio < kNarrowest || ratio > kWidest || std::abs(ratio * height / width - 1) < kSame) {
        return {0, 0, width, height};
    }
    if (ratio < width / height) {
        const double taken = std::round(height * ratio);
        return {std::floor((width - taken) / 2), 0, taken, height};
    }
    const double taken = std::round(width / ratio);
    return {0, std::floor((height - taken) / 2), width, taken};
}

}  // namespace

/** One connection, from its first packet to its end. */
class Decoder::Session {
  public:
    Session(Decoder& decoder, int socket) : mDecoder(decoder), mSocket(socket) {}

    void run() {
        auto* buffer = static_cast<uint8_t*>(av_malloc(kBuffer));
        AVIOContext* io = avio_alloc_context(
                buffer, kBuffer, 0, this,
                [](void* session, uint8_t* bytes, int size) {
                    return static_cast<Session*>(session)->read(bytes, size);
                },
                nullptr, nullptr);
        if (io == nullptr) {
            av_free(buffer);
            return;
        }
        if (AVFormatContext* format = avformat_alloc_context(); format != nullptr) {
            format->pb = io;
            format->probesize = kProbed;
            // The program map names the streams; looking into them first would take seconds.
            if (avformat_open_input(&format, nullptr, av_find_input_format("mpegts"), nullptr) ==
                0) {
                mFormat.reset(format);
                decode();
                mFormat.reset();
            }
        }
        av_free(io->buffer);
        avio_context_free(&io);
    }

  private:
    int read(uint8_t* bytes, int size) {
        while (!mDecoder.mEnds) {
            pollfd ready{mSocket, POLLIN, 0};
            const int events = poll(&ready, 1, kPollTime);
            if (events < 0 && errno != EINTR) return AVERROR_EOF;
            if (events <= 0) continue;
            const ssize_t read = ::read(mSocket, bytes, static_cast<size_t>(size));
            if (read <= 0) return AVERROR_EOF;
            if (mContinuity.breaks(bytes, static_cast<size_t>(read))) mBroken = true;
            return static_cast<int>(read);
        }
        return AVERROR_EOF;
    }

    void decode() {
        Packet packet(av_packet_alloc());
        Frame frame(av_frame_alloc());
        while (packet && frame && av_read_frame(mFormat.get(), packet.get()) >= 0) {
            if (mBroken) {
                mBroken = false;
                // Neither parser nor decoder may join what is before to what is behind.
                avformat_flush(mFormat.get());
                if (mCodec) avcodec_flush_buffers(mCodec.get());
                av_packet_unref(packet.get());
                continue;
            }
            if (isVideo(packet->stream_index) &&
                avcodec_send_packet(mCodec.get(), packet.get()) >= 0) {
                while (avcodec_receive_frame(mCodec.get(), frame.get()) >= 0) {
                    mDecoder.show(frame.get());
                    av_frame_unref(frame.get());
                }
            }
            av_packet_unref(packet.get());
        }
    }

    /** Whether the stream is the one that is shown; the first one with a picture is. */
    bool isVideo(int index) {
        if (mStream >= 0) return index == mStream;
        const AVCodecParameters* parameters = mFormat->streams[index]->codecpar;
        if (parameters->codec_type != AVMEDIA_TYPE_VIDEO) return false;
        const AVCodec* codec = avcodec_find_decoder(parameters->codec_id);
        if (codec == nullptr) return false;
        mCodec.reset(avcodec_alloc_context3(codec));
        if (!mCodec) return false;
        mCodec->thread_count = 1;
        if (avcodec_parameters_to_context(mCodec.get(), parameters) < 0 ||
            avcodec_open2(mCodec.get(), codec, nullptr) < 0) {
            mCodec.reset();
            return false;
        }
        mStream = index;
        return true;
    }

    Decoder& mDecoder;
    const int mSocket;
    Format mFormat;
    Codec mCodec;
    int mStream = -1;
    bool mBroken = false;
    Continuity mContinuity;
};

Decoder::Decoder(std::string socket) : mSocket(std::move(socket)) {
    // What a broadcast does wrong is not worth a line.
    av_log_set_level(AV_LOG_QUIET);
    mThread = std::thread([this] { run(); });
}

Decoder::~Decoder() {
    {
        std::lock_guard<std::mutex> guard(mLock);
        mEnds = true;
        mNews.notify_all();
    }
    mThread.join();
}

std::shared_ptr<Decoder> Decoder::of(uint32_t path) {
    // Never destroyed: threads may outlive main().
    static auto& lock = *new std::mutex;
    static auto& decoders = *new std::map<uint32_t, std::weak_ptr<Decoder>>;
    std::lock_guard<std::mutex> guard(lock);
    auto decoder = decoders[path].lock();
    if (decoder == nullptr) {
        decoder = std::make_shared<Decoder>(runtimeDirectory() +
                                            (path == 0 ? "/qeltvd-main.ts" : "/qeltvd-sub.ts"));
        decoders[path] = decoder;
    }
    return decoder;
}

int Decoder::connected() const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (mSocket.size() >= sizeof(address.sun_path)) return -1;
    memcpy(address.sun_path, mSocket.c_str(), mSocket.size() + 1);
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return -1;
    if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) return fd;
    close(fd);
    return -1;
}

void Decoder::run() {
    while (!mEnds) {
        const int fd = connected();
        if (fd >= 0) {
            Session(*this, fd).run();
            close(fd);
            clear();
        }
        std::unique_lock<std::mutex> guard(mLock);
        ++mAttempts;
        mNews.notify_all();
        mNews.wait_for(guard, kPause, [this] { return mEnds.load(); });
    }
}

void Decoder::show(const AVFrame* frame) {
    if (frame->width <= 0 || frame->height <= 0 || frame->width > kLargestSide ||
        frame->height > kLargestSide) {
        return;
    }
    std::shared_ptr<AVFrame> kept(av_frame_clone(frame), Freed<av_frame_free>());
    if (kept == nullptr) return;
    std::lock_guard<std::mutex> guard(mLock);
    mFrame = std::move(kept);
    ++mNumber;
    mNews.notify_all();
}

void Decoder::clear() {
    std::lock_guard<std::mutex> guard(mLock);
    if (mFrame == nullptr) return;
    mFrame.reset();
    ++mNumber;
    mNews.notify_all();
}

bool Decoder::waitForPicture(milliseconds timeout) {
    std::unique_lock<std::mutex> guard(mLock);
    const uint64_t before = mAttempts;
    mNews.wait_for(guard, timeout, [&] { return mFrame != nullptr || mAttempts != before; });
    return mFrame != nullptr;
}

Decoder::Reader::~Reader() {
    sws_freeContext(mScaler);
}

Decoder::Reader::Result Decoder::Reader::next(Decoder& decoder, Canvas* canvas,
                                              milliseconds timeout) {
    std::shared_ptr<AVFrame> frame;
    {
        std::unique_lock<std::mutex> guard(decoder.mLock);
        if (decoder.mFrame == nullptr) return kNone;
        decoder.mNews.wait_for(guard, timeout, [&] { return decoder.mNumber != mNumber; });
        if (decoder.mFrame == nullptr) return kNone;
        if (decoder.mNumber == mNumber) return kSame;
        frame = decoder.mFrame;
        mNumber = decoder.mNumber;
    }
    return scale(*frame, canvas) ? kNew : kNone;
}

bool Decoder::Reader::scale(const AVFrame& frame, Canvas* canvas) {
    const Box place = placeOf(frame, *canvas);
    const bool whole = place.width == canvas->width() && place.height == canvas->height() &&
                       canvas->width() % kScalerStep == 0;
    Canvas* target = canvas;
    if (!whole) {
        const auto fitting = static_cast<int>(place.width) / kScalerStep * kScalerStep;
        const int width = std::max(fitting, kScalerStep);
        const int height = std::max(static_cast<int>(place.height), 1);
        if (!mScaled || mScaled->width() != width || mScaled->height() != height) {
            mScaled = std::make_unique<Canvas>(width, height);
        }
        target = mScaled.get();
    }
    mScaler = sws_getCachedContext(mScaler, frame.width, frame.height,
                                   static_cast<AVPixelFormat>(frame.format), target->width(),
                                   target->height(), AV_PIX_FMT_RGB0, SWS_FAST_BILINEAR, nullptr,
                                   nullptr, nullptr);
    if (mScaler == nullptr) return false;
    uint8_t* const planes[] = {target->pixels()};
    const int strides[] = {static_cast<int>(target->stride())};
    sws_scale(mScaler, frame.data, frame.linesize, 0, frame.height, planes, strides);
    if (!whole) {
        canvas->fill(
                {0, 0, static_cast<double>(canvas->width()), static_cast<double>(canvas->height())},
                {0, 0, 0});
        canvas->picture(*target, place);
    }
    return true;
}

}  // namespace screen
