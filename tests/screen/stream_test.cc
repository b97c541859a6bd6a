/**
 * From a transport stream to the picture of the page: the television receives the stream, the
 * screen reads it from the packet sockets and decodes it.
 */
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <turbojpeg.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>

#include "daemon.h"
#include "eventually.h"
#include "stream_composer.h"
#include "video_encoder.h"

using namespace wire;
using Json = nlohmann::json;

namespace {

using std::chrono::steady_clock;

/** The frequencies of the streams, in Hz. */
constexpr uint64_t kRedHz = 842000000, kBlueHz = 850000000, kBrokenHz = 858000000;
/** Length of each stream, which is looped. */
constexpr uint32_t kSeconds = 2, kFrames = kSeconds * 25;

/** A picture that the page has received. */
struct Received {
    int width = 0, height = 0;
    /** 'r', 'g' or 'b', 't' for a test card, '0' for black, '?' for none of these. */
    char colour = '?';
};

char colourOf(const uint8_t* pixel) {
    const auto is = [&](int red, int green, int blue) {
        return abs(pixel[0] - red) < 50 && abs(pixel[1] - green) < 50 && abs(pixel[2] - blue) < 50;
    };
    if (is(255, 0, 0)) return 'r';
    if (is(0, 255, 0)) return 'g';
    if (is(0, 0, 255)) return 'b';
    if (is(191, 0, 191)) return 't';
    return is(0, 0, 0) ? '0' : '?';
}

/** Decodes a JPEG file. Looks at the middle, right of which a test card has a bar of its own. */
Received decoded(const std::string& jpeg) {
    Received received;
    tjhandle handle = tjInitDecompress();
    int sampling = 0, space = 0;
    const auto* bytes = reinterpret_cast<const unsigned char*>(jpeg.data());
    if (tjDecompressHeader3(handle, bytes, jpeg.size(), &received.width, &received.height,
                            &sampling, &space) == 0) {
        std::vector<uint8_t> pixels(static_cast<size_t>(received.width * received.height) * 3);
        EXPECT_EQ(0, tjDecompress2(handle, bytes, jpeg.size(), pixels.data(), received.width, 0,
                                   received.height, TJPF_RGB, 0));
        const auto middle =
                static_cast<size_t>(received.height / 2 * received.width + received.width * 9 / 16);
        received.colour = colourOf(&pixels[middle * 3]);
    }
    tjDestroy(handle);
    return received;
}

/** The stream of pictures that a page shows, from the server on a port. */
class Page {
  public:
    Page(int port, int width) : mSocket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<uint16_t>(port));
        EXPECT_EQ(0, connect(mSocket, reinterpret_cast<sockaddr*>(&address), sizeof(address)));
        const std::string request = "GET /picture/main?width=" + std::to_string(width) +
                                    " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) +
                                    "\r\n\r\n";
        EXPECT_EQ(static_cast<ssize_t>(request.size()),
                  send(mSocket, request.data(), request.size(), MSG_NOSIGNAL));
    }
    ~Page() { close(mSocket); }
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;

    /** Waits for the next picture. */
    Received next() {
        do {
            if (const auto received = first()) return *received;
        } while (read());
        ADD_FAILURE() << "no picture";
        return {};
    }
    /** Waits for a picture of the colour; `others` receives the colours before it. */
    bool shows(char colour, std::string* others = nullptr) {
        const auto end = steady_clock::now() + std::chrono::seconds(60);
        while (steady_clock::now() < end) {
            const Received received = next();
            if (received.colour == colour) return true;
            if (others != nullptr) *others += received.colour;
            if (testing::Test::HasFailure()) return false;
        }
        return false;
    }

  private:
    /** Takes the first picture, once all of it is there. */
    std::optional<Received> first() {
        const std::string length = "Content-Length: ", empty = "\r\n\r\n";
        const size_t at = mBytes.find(length);
        if (at == std::string::npos) return std::nullopt;
        const size_t begin = mBytes.find(empty, at);
        if (begin == std::string::npos) return std::nullopt;
        const size_t size = std::stoul(mBytes.substr(at + length.size()));
        // A chunk of the transfer is a whole part, so that no chunk begins in a picture.
        const size_t end = begin + empty.size() + size;
        if (mBytes.size() < end) return std::nullopt;
        const Received received = decoded(mBytes.substr(begin + empty.size(), size));
        mBytes.erase(0, end);
        return received;
    }
    bool read() {
        pollfd ready{mSocket, POLLIN, 0};
        if (poll(&ready, 1, 60000) <= 0) return false;
        char bytes[1 << 16];
        const ssize_t size = recv(mSocket, bytes, sizeof(bytes), 0);
        if (size <= 0) return false;
        mBytes.append(bytes, static_cast<size_t>(size));
        return true;
    }

    const int mSocket;
    std::string mBytes;
};

/** The screen as a process. */
class ScreenProcess {
  public:
    ScreenProcess() {
        int output[2];
        EXPECT_EQ(0, pipe(output));
        mPid = fork();
        if (mPid == 0) {
            dup2(output[1], STDOUT_FILENO);
            close(output[0]);
            close(output[1]);
            const std::string program = QELTV_BUILD_DIR "/screen/qeltvscreen";
            execl(program.c_str(), program.c_str(), "--port", "0", nullptr);
            _exit(127);
        }
        close(output[1]);
        FILE* lines = fdopen(output[0], "r");
        char line[128] = "";
        EXPECT_NE(nullptr, fgets(line, sizeof(line), lines));
        EXPECT_EQ(1, sscanf(line, "http://127.0.0.1:%d/", &mPort)) << line;
        fclose(lines);
    }
    ~ScreenProcess() {
        kill(mPid, SIGTERM);
        waitpid(mPid, nullptr, 0);
    }
    ScreenProcess(const ScreenProcess&) = delete;
    ScreenProcess& operator=(const ScreenProcess&) = delete;
    int port() const { return mPort; }

  private:
    pid_t mPid = -1;
    int mPort = 0;
};

/** A multiplex whose first service has pictures. */
composed::Octets multiplex(encoded::Codec codec, int group,
                           const std::function<encoded::Yuv(uint32_t frame, int x, int y)>& colour,
                           size_t without = 0) {
    encoded::Settings settings;
    settings.codec = codec;
    settings.group = group;
    auto units = encoded::encode(settings, kFrames + static_cast<uint32_t>(without), colour);
    units.erase(units.begin(), units.begin() + static_cast<std::ptrdiff_t>(without));
    composed::Options options;
    options.seconds = kSeconds;
    options.pictureType = codec == encoded::Codec::kMpeg2 ? 0x02 : 0x1b;
    options.picture = [units](uint32_t frame) {
        return frame < units.size() ? composed::Picture{units[frame].bytes, units[frame].whole}
                                    : composed::Picture{};
    };
    return composed::dvb(options);
}

class StreamedPicture : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        using encoded::Codec;
        directory = new TemporaryDirectory;
        const std::string& path = directory->path();
        const auto one = [](const encoded::Yuv& colour) {
            return [colour](uint32_t, int, int) { return colour; };
        };
        composed::writeFile(path + "/red.ts", multiplex(Codec::kMpeg2, 12, one(encoded::kRed)));
        second = encoded::available(Codec::kH264) ? Codec::kH264 : Codec::kMpeg2;
        composed::writeFile(path + "/blue.ts", multiplex(second, 12, one(encoded::kBlue)));
        // Begins with predicted pictures of green whose intra picture is missing; blue ones with
        // theirs follow. When the file is looped, the green ones come after the blue ones.
        constexpr int kGroup = 20;
        composed::writeFile(path + "/broken.ts", multiplex(
                                                         Codec::kMpeg2, kGroup,
                                                         [](uint32_t frame, int x, int) {
                                                             if (frame >= kGroup)
                                                                 return encoded::kBlue;
                                                             // Moves, so that each picture changes
                                                             // something.
                                                             return static_cast<uint32_t>(x) <
                                                                                    100 + frame * 4
                                                                            ? encoded::kGreen
                                                                            : encoded::kRed;
                                                         },
                                                         1));
        std::ofstream table(path + "/region");
        const auto transponder = [&](uint64_t frequency, const std::string& stream) {
            table << "[Own]\nDELIVERY_SYSTEM = DVBT\nFREQUENCY = " << frequency
                  << "\nSTREAM = " << stream << "\n";
        };
        transponder(kRedHz, "red.ts");
        transponder(kBlueHz, "blue.ts");
        transponder(kBrokenHz, "broken.ts");
        table.close();
        television = new Daemon;
        television->start({"--region", path + "/region"});
        server = new ScreenProcess;
    }
    static void TearDownTestSuite() {
        delete server;
        delete television;
        delete directory;
    }

    /** Selects the first service of a stream, or a simulated one for no frequency. */
    static void tune(uint64_t frequency) {
        static const Json channels =
                Json::parse(qeltvctl({"channel", "list", "--tv", "--free", "--all", "--json"}).out);
        for (const Json& each : channels) {
            const uint64_t at = each["multiplex"]["frequency_hz"];
            const bool wanted =
                    frequency == 0 ? at < kRedHz
                                   : at == frequency && each["service"] == composed::kFirstService;
            if (!wanted) continue;
            const Ended tuned = qeltvctl({"tune", each["id"].get<std::string>()});
            ASSERT_EQ(0, tuned.status) << tuned.err;
            return;
        }
        FAIL() << "no service at " << frequency;
    }
    /** Programs that read the packets of the main path. */
    static int readers() {
        const std::string path = std::string(getenv("QELTV_RUNTIME_DIR")) + "/qeltvd-main.ts";
        std::ifstream table("/proc/net/unix");
        int found = -1;  // The television listens there.
        for (std::string line; std::getline(table, line);) {
            found += line.size() > path.size() &&
                     line.compare(line.size() - path.size(), path.size(), path) == 0;
        }
        return found;
    }

    static TemporaryDirectory* directory;
    static Daemon* television;
    static ScreenProcess* server;
    static encoded::Codec second;
};

TemporaryDirectory* StreamedPicture::directory = nullptr;
Daemon* StreamedPicture::television = nullptr;
ScreenProcess* StreamedPicture::server = nullptr;
encoded::Codec StreamedPicture::second = encoded::Codec::kMpeg2;

TEST_F(StreamedPicture, ArrivesInItsColoursAndAsLargeAsItIsSeen) {
    tune(kRedHz);
    for (const int width : {160, 640}) {
        Page page(server->port(), width);
        ASSERT_TRUE(page.shows('r'));
        for (int i = 0; i < 2 * static_cast<int>(kFrames); ++i) {
            const Received received = page.next();
            ASSERT_EQ('r', received.colour) << i << ", also where the file begins anew";
            ASSERT_EQ(width, received.width);
            ASSERT_EQ(width * 9 / 16, received.height);
        }
    }
}

TEST_F(StreamedPicture, IsAnotherOneAfterAChannelChange) {
    if (second != encoded::Codec::kH264) printf("no encoder of H.264: MPEG-2 alone\n");
    tune(kRedHz);
    Page page(server->port(), 160);
    ASSERT_TRUE(page.shows('r'));
    for (const auto& [frequency, colour] :
         {std::pair{kBlueHz, 'b'}, {kRedHz, 'r'}, {kBlueHz, 'b'}}) {
        tune(frequency);
        std::string others;
        ASSERT_TRUE(page.shows(colour, &others));
        EXPECT_EQ(std::string::npos, others.find('?')) << others << ": pictures are mixed";
        // The former channel does not come back.
        others.clear();
        for (int i = 0; i < 25; ++i) others += page.next().colour;
        EXPECT_EQ(std::string(25, colour), others);
    }
    tune(0);
    ASSERT_TRUE(page.shows('t')) << "a simulated service has the test card";
}

TEST_F(StreamedPicture, JoinsNothingAcrossADiscontinuity) {
    tune(kBrokenHz);
    Page page(server->port(), 160);
    ASSERT_TRUE(page.shows('b'));
    // The file is looped three times.
    const auto end = steady_clock::now() + std::chrono::seconds(3 * kSeconds);
    while (steady_clock::now() < end) ASSERT_EQ('b', page.next().colour);
}

TEST_F(StreamedPicture, IsDecodedOnlyWhileSomebodyLooks) {
    tune(kRedHz);
    ASSERT_TRUE(eventually([&] { return readers() == 0; }));
    {
        Page first(server->port(), 160), second(server->port(), 320);
        ASSERT_TRUE(first.shows('r'));
        ASSERT_TRUE(second.shows('r'));
        EXPECT_EQ(1, readers()) << "two pages share a decoder";
    }
    EXPECT_TRUE(eventually([&] { return readers() == 0; }));
}

TEST_F(StreamedPicture, IsInAScreenshot) {
    const std::string path = directory->path() + "/shot.jpg";
    const auto taken = [&] {
        const Ended shot = qeltvctl({"screenshot", path, "--width", "320"});
        EXPECT_EQ(0, shot.status) << shot.err;
        std::ifstream file(path, std::ios::binary);
        return decoded({std::istreambuf_iterator<char>(file), {}}).colour;
    };
    const auto plays = [] {
        return qeltvctl({"status", "--json"}).out.find("\"status\": \"playing\"") !=
               std::string::npos;
    };
    for (const auto& [frequency, colour] :
         {std::pair{kRedHz, 'r'}, {kBlueHz, 'b'}, {uint64_t{0}, 't'}}) {
        tune(frequency);
        ASSERT_TRUE(eventually(plays));
        EXPECT_EQ(colour, taken()) << frequency;
    }
}

}  // namespace
