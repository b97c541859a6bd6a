#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <functional>
#include <random>
#include <thread>
#include <vector>

extern "C" {
#include <libavformat/avformat.h>
}

#include "Decoder.h"
#include "daemon.h"
#include "eventually.h"
#include "video_encoder.h"

using encoded::kBlue;
using encoded::kRed;
using screen::Canvas;
using screen::Decoder;

namespace {

using Bytes = std::vector<uint8_t>;

/** A transport stream of MPEG-2 pictures of one colour. */
Bytes streamOf(const encoded::Yuv& colour, uint32_t pictures, int group = 12, int aspect = 16) {
    encoded::Settings settings;
    settings.group = group;
    settings.aspectWidth = aspect;
    AVFormatContext* format = nullptr;
    avformat_alloc_output_context2(&format, nullptr, "mpegts", nullptr);
    AVStream* stream = avformat_new_stream(format, nullptr);
    stream->codecpar->codec_type = AVMEDIA_TYPE_VIDEO;
    stream->codecpar->codec_id = AV_CODEC_ID_MPEG2VIDEO;
    stream->codecpar->width = settings.width;
    stream->codecpar->height = settings.height;
    avio_open_dyn_buf(&format->pb);
    EXPECT_GE(avformat_write_header(format, nullptr), 0);
    AVPacket* packet = av_packet_alloc();
    int64_t frame = 0;
    for (encoded::Unit& unit :
         encoded::encode(settings, pictures, [&](uint32_t, int, int) { return colour; })) {
        packet->data = unit.bytes.data();
        packet->size = static_cast<int>(unit.bytes.size());
        packet->flags = unit.whole ? AV_PKT_FLAG_KEY : 0;
        packet->pts = packet->dts = frame++;
        av_packet_rescale_ts(packet, {1, 25}, stream->time_base);
        av_write_frame(format, packet);
        av_packet_unref(packet);
    }
    av_write_trailer(format);
    uint8_t* data = nullptr;
    const int size = avio_close_dyn_buf(format->pb, &data);
    Bytes bytes(data, data + size);
    av_free(data);
    av_packet_free(&packet);
    avformat_free_context(format);
    return bytes;
}

/** A socket as the television's, that does with each connection what the test wants. */
class PacketServer {
  public:
    explicit PacketServer(std::function<void(int)> serve) : mServe(std::move(serve)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().copy(address.sun_path, sizeof(address.sun_path) - 1);
        mListener = socket(AF_UNIX, SOCK_STREAM, 0);
        EXPECT_EQ(0, bind(mListener, reinterpret_cast<sockaddr*>(&address), sizeof(address)));
        EXPECT_EQ(0, listen(mListener, 4));
        mThread = std::thread([this] {
            for (int fd; (fd = accept(mListener, nullptr, nullptr)) >= 0; close(fd)) {
                ++mConnections;
                mServe(fd);
            }
        });
    }
    ~PacketServer() {
        shutdown(mListener, SHUT_RDWR);
        mThread.join();
        close(mListener);
    }
    std::string path() const { return mDirectory.path() + "/ts"; }
    int connections() const { return mConnections; }

  private:
    wire::TemporaryDirectory mDirectory;
    std::function<void(int)> mServe;
    std::atomic<int> mConnections{0};
    int mListener;
    std::thread mThread;
};

/** Sends bytes a bit at a time, in pieces that are no packets; false when the reader is gone. */
bool sendAll(int fd, const Bytes& bytes) {
    constexpr size_t kPiece = 1000;
    for (size_t i = 0; i < bytes.size(); i += kPiece) {
        const size_t size = std::min(kPiece, bytes.size() - i);
        if (send(fd, bytes.data() + i, size, MSG_NOSIGNAL) != static_cast<ssize_t>(size)) {
            return false;
        }
    }
    return true;
}

/** The colour of a pixel: 'r', 'b', '0' for black, or another. */
char colourOf(Canvas& canvas, int x, int y) {
    const uint8_t* pixel =
            canvas.pixels() + canvas.stride() * static_cast<size_t>(y) + static_cast<size_t>(x) * 4;
    if (pixel[0] > 200 && pixel[1] < 60 && pixel[2] < 60) return 'r';
    if (pixel[0] < 60 && pixel[1] < 60 && pixel[2] > 200) return 'b';
    return pixel[0] + pixel[1] + pixel[2] == 0 ? '0' : '?';
}

/** The colour of the middle pixel. */
char colourOf(Canvas& canvas) {
    return colourOf(canvas, canvas.width() / 2, canvas.height() / 2);
}

class DecoderTest : public ::testing::Test {
  protected:
    Decoder::Reader::Result next(Decoder& decoder) {
        return mReader.next(decoder, &mCanvas, std::chrono::milliseconds(50));
    }
    bool shows(Decoder& decoder, char colour) {
        return eventually([&] {
            return next(decoder) == Decoder::Reader::kNew && colourOf(mCanvas) == colour;
        });
    }

    Canvas mCanvas{160, 90};
    Decoder::Reader mReader;
};

}  // namespace

TEST_F(DecoderTest, ShowsTheStreamAndNothingWhenItEnds) {
    const Bytes red = streamOf(kRed, 50);
    std::atomic<bool> ends{false};
    PacketServer server([&](int fd) {
        while (!ends && sendAll(fd, red)) continue;
    });
    {
        Decoder decoder(server.path());
        EXPECT_TRUE(shows(decoder, 'r'));
        ends = true;
        EXPECT_TRUE(eventually([&] { return next(decoder) == Decoder::Reader::kNone; }));
        ends = false;
        EXPECT_TRUE(shows(decoder, 'r')) << "it connects again";
        ends = true;
    }
}

TEST_F(DecoderTest, KeepsTheAspectRatioInAnyCanvas) {
    const Bytes red = streamOf(kRed, 50, 12, 12);
    std::atomic<bool> ends{false};
    PacketServer server([&](int fd) {
        while (!ends && sendAll(fd, red)) continue;
    });
    Decoder decoder(server.path());
    ASSERT_TRUE(decoder.waitForPicture(std::chrono::seconds(60)));
    // 4:3 in 16:9, in 4:3 and in 1:2, of widths that a scaler does not like.
    for (const auto& [width, height] : {std::pair{161, 91}, {121, 91}, {45, 91}, {3, 2}}) {
        Canvas canvas(width, height);
        canvas.fill({0, 0, 1000, 1000}, {255, 255, 255});
        Decoder::Reader reader;
        ASSERT_EQ(Decoder::Reader::kNew,
                  reader.next(decoder, &canvas, std::chrono::milliseconds(0)));
        EXPECT_EQ('r', colourOf(canvas)) << width;
        const bool wide = width * 3 > height * 4 + 10, high = width * 3 < height * 4 - 10;
        EXPECT_EQ(wide ? '0' : 'r', colourOf(canvas, 0, height / 2)) << width;
        EXPECT_EQ(wide ? '0' : 'r', colourOf(canvas, width - 1, height / 2)) << width;
        EXPECT_EQ(high ? '0' : 'r', colourOf(canvas, width / 2, 0)) << width;
        EXPECT_EQ(high ? '0' : 'r', colourOf(canvas, width / 2, height - 1)) << width;
    }
    ends = true;
}

TEST_F(DecoderTest, JoinsNothingAcrossADiscontinuity) {
    constexpr uint32_t kBefore = 40;
    Bytes cut = streamOf(kRed, kBefore);
    cut.resize(cut.size() / 188 * 3 / 4 * 188);
    // Begins behind the only picture that is whole: the others change what was before.
    Bytes changes = streamOf(kBlue, 200, 1000);
    changes.erase(changes.begin(),
                  changes.begin() + static_cast<std::ptrdiff_t>(changes.size() / 188 / 5 * 188));
    const Bytes blue = streamOf(kBlue, 100);
    PacketServer server([&](int fd) {
        sendAll(fd, cut);
        for (size_t i = 0; i < changes.size(); i += 188) {
            // Slow enough that the reader sees each picture.
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            sendAll(fd, Bytes(changes.data() + i, changes.data() + i + 188));
        }
        while (sendAll(fd, blue)) continue;
    });
    Decoder decoder(server.path());
    int before = 0, mixed = 0;
    EXPECT_TRUE(eventually([&] {
        if (next(decoder) != Decoder::Reader::kNew) return false;
        const char colour = colourOf(mCanvas);
        before += colour == 'r';
        mixed += colour == '?';
        return colour == 'b';
    }));
    EXPECT_EQ(0, mixed);
    EXPECT_LE(before, static_cast<int>(kBefore)) << "changes were applied to what was before them";
}

TEST_F(DecoderTest, ASimulatedServiceHasNoPicture) {
    PacketServer server([](int) {});
    Decoder decoder(server.path());
    EXPECT_TRUE(eventually([&] { return server.connections() > 2; })) << "it looks again";
    EXPECT_EQ(Decoder::Reader::kNone, next(decoder));
    Decoder nowhere("/nonexistent/ts");
    EXPECT_EQ(Decoder::Reader::kNone, next(nowhere));
}

TEST_F(DecoderTest, BytesThatAreNoStreamDoNoHarm) {
    const Bytes red = streamOf(kRed, 50);
    std::mt19937 random(17);
    std::atomic<int> round{0};
    PacketServer server([&](int fd) {
        Bytes bytes = red;
        const int kind = round++ % 3;
        for (auto& byte : bytes) {
            if (kind == 0 || (kind == 1 && random() % 300 == 0))
                byte = static_cast<uint8_t>(random());
        }
        sendAll(fd, bytes);
    });
    Decoder decoder(server.path());
    EXPECT_TRUE(eventually([&] { return server.connections() > 6; }));
    EXPECT_TRUE(shows(decoder, 'r')) << "an intact stream afterwards";
}
