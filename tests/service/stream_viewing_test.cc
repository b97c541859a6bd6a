/** Viewing and recording of services that the television receives as transport streams. */
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#ifdef QELTV_DVBCSA
#include <dvbcsa/dvbcsa.h>
#endif

#include <cstring>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "daemon.h"
#include "eventually.h"
#include "hw_qeltvapi_audioinfo.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_record.h"
#include "hw_qeltvapi_timeshift.h"
#include "hw_svctx.h"
#include "inbox.h"
#include "layouts/presentation.h"
#include "layouts/record.h"
#include "packet_check.h"
#include "stream_composer.h"

using namespace wire;
using Json = nlohmann::json;

namespace {

constexpr uint64_t kFileHz = 842000000, kPipeHz = 850000000, kScrambledHz = 858000000,
                   kSatelliteKHz = 11914000;

/** Marks the pictures and sound of both services as scrambled. */
composed::Octets scrambled(composed::Octets bytes) {
    constexpr uint8_t kEvenKey = 0x80;
    for (size_t at = 0; at < bytes.size(); at += 188) {
        const auto pid = static_cast<uint16_t>((bytes[at + 1] & 0x1f) << 8 | bytes[at + 2]);
        const bool shown = pid == composed::kFirstVideo || pid == composed::kFirstAudio ||
                           pid == composed::kSecondAudio;
        if (shown) bytes[at + 3] |= kEvenKey;
    }
    return bytes;
}

constexpr char kKeyWithSums[] = "1234569C789ABCCE", kKeyWithoutSums[] = "12345600789ABC00",
               kWrongKey[] = "111111333333";
#ifdef QELTV_DVBCSA
constexpr bool kDescrambles = true;

/** Scrambles what scrambled() marks, with the key above. */
composed::Octets encrypted(composed::Octets bytes) {
    constexpr uint8_t kWord[] = {0x12, 0x34, 0x56, 0x9c, 0x78, 0x9a, 0xbc, 0xce};
    dvbcsa_key_t* const key = dvbcsa_key_alloc();
    dvbcsa_key_set(kWord, key);
    for (size_t at = 0; at < bytes.size(); at += 188) {
        uint8_t* const packet = bytes.data() + at;
        if ((packet[3] & 0x80) == 0 || (packet[3] & 0x10) == 0) continue;
        const size_t header = 4 + ((packet[3] & 0x20) != 0 ? 1u + packet[4] : 0u);
        dvbcsa_encrypt(key, packet + header, static_cast<unsigned>(188 - header));
    }
    dvbcsa_key_free(key);
    return bytes;
}
#else
constexpr bool kDescrambles = false;

composed::Octets encrypted(composed::Octets bytes) {
    return bytes;
}
#endif

/** One television for all: a process of the library stays with the first one that it meets. */
class StreamViewing : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        directory = new TemporaryDirectory;
        const std::string& path = directory->path();
        composed::writeFile(path + "/a.ts", composed::dvb());
        composed::Options live;
        live.seconds = 1;
        composed::writeFile(path + "/live.ts", composed::dvb(live));
        composed::writeFile(path + "/c.ts", scrambled(composed::dvb()));
        // A killed television leaves it behind, so it ends with the files.
        std::ofstream(path + "/feed")
                << "while [ -e " << path << "/feed ]; do if [ -e " << path << "/on ]; then cat "
                << path << "/live.ts; sleep 0.3; else sleep 0.1; fi; done\n";
        switchPipe(true);
        std::ofstream table(path + "/region");
        const auto transponder = [&](uint64_t frequency, const std::string& stream) {
            table << "[Own]\nDELIVERY_SYSTEM = DVBT\nBANDWIDTH_HZ = 8000000\nFREQUENCY = "
                  << frequency << "\nSTREAM = " << stream << "\n";
        };
        transponder(kFileHz, "a.ts");
        transponder(kPipeHz, "pipe:exec sh " + path + "/feed");
        transponder(kScrambledHz, "c.ts");
        table.close();
        television = new Daemon;
        // A key goes by the position of a satellite.
        composed::writeFile(path + "/d.ts", encrypted(scrambled(composed::dvb())));
        std::ofstream(path + "/Own-19.2E")
                << "[Own]\nDELIVERY_SYSTEM = DVBS\nFREQUENCY = " << kSatelliteKHz
                << "\nPOLARIZATION = HORIZONTAL\nSYMBOL_RATE = 27500000\nSTREAM = d.ts\n";
        television->start({"--region", path + "/region", "--region", path + "/Own-19.2E"});
        registerCallbackHandler();
        // What is live is found by a scan.
        const Ended scan = qeltvctl({"scan", "start"});
        ASSERT_EQ(0, scan.status) << scan.err;
        all = Json::parse(qeltvctl({"channel", "list", "--all", "--json"}).out);
    }
    static void TearDownTestSuite() {
        delete television;
        delete directory;
    }

    static void switchPipe(bool on) {
        const std::string file = directory->path() + "/on";
        on ? (void)std::ofstream(file) : (void)unlink(file.c_str());
    }
    /** The id of a service of a stream. */
    static int32_t channel(uint64_t frequency, uint16_t service) {
        for (const Json& each : all) {
            if (each["service"] == service && each["multiplex"]["frequency_hz"] == frequency) {
                return static_cast<int32_t>(std::stoul(each["id"].get<std::string>(), nullptr, 0));
            }
        }
        ADD_FAILURE() << "no service " << service << " at " << frequency;
        return 0;
    }
    /** A simulated one. */
    static int32_t simulated() {
        for (const Json& each : all) {
            if (each["multiplex"]["frequency_hz"] < 800000000 && each["type"] == "television" &&
                each["flags"].dump().find("scrambled") == std::string::npos) {
                return static_cast<int32_t>(std::stoul(each["id"].get<std::string>(), nullptr, 0));
            }
        }
        ADD_FAILURE() << "no simulated service";
        return 0;
    }

    static QELTV_CONNECTION_T connection() {
        QELTV_CONNECTION_T now{};
        EXPECT_EQ(0, c_svctx_get_conn_attr(QELTV_CONTEXT_OF_MAIN, 0, QELTV_CONNECTION_ALL, &now));
        return now;
    }
    static bool becomes(int32_t id, QELTV_TUNING_STATUS status, QELTV_TUNING_ERROR error) {
        return eventually([&] {
            const QELTV_CONNECTION_T now = connection();
            return now.channel == static_cast<uint32_t>(id) &&
                   now.status == static_cast<uint32_t>(status) &&
                   now.error == static_cast<uint32_t>(error);
        });
    }
    static bool plays(int32_t id) { return becomes(id, QELTV_TUNING_PLAYS, QELTV_TUNING_NO_ERROR); }
    static void select(int32_t id) {
        ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_id(id, 0));
    }
    static std::vector<QELTV_AUDIO_TRACK_T> tracks() {
        uint32_t count = 0;
        EXPECT_EQ(0, a_qeltvapi_audio_info_get_available_record(nullptr, &count));
        std::vector<QELTV_AUDIO_TRACK_T> found(count);
        EXPECT_EQ(0, a_qeltvapi_audio_info_get_available_record(found.data(), &count));
        return found;
    }

    static std::string content(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static TemporaryDirectory* directory;
    static Daemon* television;
    static Json all;
};

TemporaryDirectory* StreamViewing::directory = nullptr;
Daemon* StreamViewing::television = nullptr;
Json StreamViewing::all;

TEST_F(StreamViewing, AServicePlaysWithThePictureAndTheTracksThatItHas) {
    const int32_t id = channel(kFileHz, composed::kFirstService);
    select(id);
    ASSERT_TRUE(plays(id));
    EXPECT_EQ(100u, connection().level);
    EXPECT_EQ(kFileHz / 1000, connection().frequencyKHz);
    QELTV_VIDEO_SOURCE_T video{};
    ASSERT_EQ(0, c_svctx_get_video_src_resolution(QELTV_CONTEXT_OF_MAIN, &video));
    EXPECT_STREQ("352x288p 25", video.text);
    EXPECT_EQ(uint32_t{QELTV_VIDEO_MPEG2}, video.codec);
    EXPECT_EQ(4u, video.aspectWidth);
    const auto found = tracks();
    ASSERT_EQ(1u, found.size());
    EXPECT_EQ(composed::kFirstAudio, found[0].pid);
    EXPECT_STREQ("deu", found[0].language);
    EXPECT_EQ(QELTV_AUDIO_MPEG, found[0].codec);
    // The averages come near 51 and 38 kbit/s, which are those of the file.
    const auto near = [](uint32_t rate, uint32_t expected) {
        return rate > expected * 3 / 4 && rate < expected * 5 / 4;
    };
    EXPECT_TRUE(eventually([&] {
        QELTV_VIDEO_SOURCE_T later{};
        c_svctx_get_video_src_resolution(QELTV_CONTEXT_OF_MAIN, &later);
        return near(later.kbitPerSecond, 51) && near(tracks().at(0).kbitPerSecond, 38);
    }));

    const int32_t radio = channel(kFileHz, composed::kSecondService);
    select(radio);
    ASSERT_TRUE(plays(radio));
    memset(&video, 0xee, sizeof(video));
    ASSERT_EQ(0, c_svctx_get_video_src_resolution(QELTV_CONTEXT_OF_MAIN, &video));
    EXPECT_EQ(0u, video.width);
}

TEST_F(StreamViewing, TheSignalGoesAndComesWithTheStream) {
    const int32_t id = channel(kPipeHz, composed::kFirstService);
    select(id);
    ASSERT_TRUE(plays(id));
    switchPipe(false);
    ASSERT_TRUE(becomes(id, QELTV_TUNING_FAILED, QELTV_TUNING_NO_SIGNAL));
    EXPECT_EQ(0u, connection().level);
    switchPipe(true);
    EXPECT_TRUE(plays(id));
}

TEST_F(StreamViewing, AScrambledServiceIsNotShown) {
    const int32_t id = channel(kScrambledHz, composed::kFirstService);
    select(id);
    EXPECT_TRUE(becomes(id, QELTV_TUNING_FAILED, QELTV_TUNING_SCRAMBLED));
}

TEST_F(StreamViewing, AKeyOfTheListDescramblesIfTheBuildCan) {
    const int32_t id = channel(kSatelliteKHz * 1000, composed::kFirstService);
    select(id);
    EXPECT_TRUE(becomes(id, QELTV_TUNING_FAILED, QELTV_TUNING_SCRAMBLED));
    const Ended added =
            qeltvctl({"biss", "set", "--frequency", std::to_string(kSatelliteKHz), "--position",
                      "19.2E", "--polarisation", "H", "--key", kKeyWithSums});
    ASSERT_EQ(0, added.status) << added.err;
    const std::string record = added.out.substr(0, added.out.find('\n'));
    if (!kDescrambles) {
        select(id);
        EXPECT_TRUE(becomes(id, QELTV_TUNING_FAILED, QELTV_TUNING_SCRAMBLED));
        return;
    }
    ASSERT_TRUE(plays(id));
    const auto handle =
            static_cast<uint32_t>(a_qeltvapi_record_pvr_open_ex(static_cast<uint32_t>(id), 1));
    ASSERT_TRUE(eventually([&] { return a_qeltvapi_get_recording_position(handle) >= 2; }));
    char name[512] = "";
    ASSERT_EQ(0, a_qeltvapi_record_pvr_get_recording_file_name(handle, name, 511));
    ASSERT_EQ(0, a_qeltvapi_record_pvr_stop(handle));
    const std::string data = content(television->statePath() + "/recordings/" + name);
    const composed::PacketCheck check(data);
    EXPECT_EQ(0u, check.breaks);
    size_t pictures = 0;
    for (size_t at = 0; at + 188 <= data.size(); at += 188) {
        const auto* packet = reinterpret_cast<const uint8_t*>(data.data()) + at;
        EXPECT_EQ(0, packet[3] & 0xc0);
        const auto pid = static_cast<uint16_t>((packet[1] & 0x1f) << 8 | packet[2]);
        if (pid != composed::kFirstVideo || (packet[1] & 0x40) == 0) continue;
        const size_t header = 4 + ((packet[3] & 0x20) != 0 ? 1u + packet[4] : 0u);
        ++pictures;
        EXPECT_EQ(0, memcmp(packet + header, "\0\0\1\xe0", 4));
    }
    EXPECT_GE(pictures, 40u);
    EXPECT_EQ(0, a_qeltvapi_record_pvr_close(handle));
    ASSERT_EQ(0, qeltvctl({"biss", "set", record, "--key", kWrongKey}).status);
    EXPECT_EQ(0, qeltvctl({"biss", "set", record, "--key", kKeyWithoutSums}).status);
    EXPECT_TRUE(plays(id));
    ASSERT_EQ(0, qeltvctl({"biss", "clear", record}).status);
    EXPECT_TRUE(becomes(id, QELTV_TUNING_FAILED, QELTV_TUNING_SCRAMBLED));
}

TEST_F(StreamViewing, TwoServicesOfAStreamAreRecordedAtOnce) {
    const uint16_t services[] = {composed::kFirstService, composed::kSecondService};
    uint32_t handles[2];
    for (size_t i = 0; i < 2; ++i) {
        const auto id = static_cast<uint32_t>(channel(kFileHz, services[i]));
        handles[i] = static_cast<uint32_t>(a_qeltvapi_record_pvr_open(id));
        ASSERT_EQ(0, a_qeltvapi_record_pvr_set_recording_file_name(
                             handles[i], ("stream" + std::to_string(i) + ".ts").c_str()));
        ASSERT_EQ(0, a_qeltvapi_record_pvr_start(handles[i]));
    }
    // Beyond the end of the file, which begins anew.
    for (const uint32_t handle : handles) {
        ASSERT_TRUE(eventually([&] { return a_qeltvapi_get_recording_position(handle) >= 5; }));
    }
    for (size_t i = 0; i < 2; ++i) {
        ASSERT_EQ(0, a_qeltvapi_record_pvr_stop(handles[i]));
        const std::string path =
                television->statePath() + "/recordings/stream" + std::to_string(i) + ".ts";
        const std::string data = content(path);
        EXPECT_EQ(static_cast<int64_t>(data.size()),
                  a_qeltvapi_record_pvr_get_recording_file_size(handles[i]));
        const composed::PacketCheck check(data);
        EXPECT_TRUE(check.synchronous);
        EXPECT_EQ(0u, check.breaks);
        const uint16_t map = i == 0 ? composed::kFirstPmt : composed::kSecondPmt;
        EXPECT_EQ((std::map<uint16_t, uint16_t>{{services[i], map}}), check.programmes);
        for (const auto& [pid, count] : check.packets) {
            EXPECT_TRUE(pid == 0 || pid == 0x11 || pid == map || check.components.count(pid) == 1)
                    << "PID " << pid << " is of another service";
        }
        EXPECT_EQ(0, memcmp(data.data(), "\x47\x40\x00", 3)) << "begins with its association";
        const Json info = Json::parse(qeltvctl({"stream", "info", "--json", path}).out);
        ASSERT_EQ(1u, info["services"].size());
        EXPECT_EQ(i == 0 ? composed::kFirstName : composed::kSecondName,
                  info["services"][0]["name"]);
        EXPECT_EQ(0, a_qeltvapi_record_pvr_close(handles[i]));
    }
}

TEST_F(StreamViewing, ARecordingWithoutASignalLeavesNothing) {
    switchPipe(false);
    const auto id = static_cast<uint32_t>(channel(kPipeHz, composed::kFirstService));
    const auto handle = static_cast<uint32_t>(a_qeltvapi_record_pvr_open_ex(id, 1));
    ASSERT_GT(handle, 0u);
    EXPECT_EQ(0, a_qeltvapi_get_recording_position(handle));
    EXPECT_EQ(0, a_qeltvapi_record_pvr_stop(handle));
    EXPECT_EQ(0, a_qeltvapi_record_pvr_get_recording_file_size(handle));
    EXPECT_EQ(0, a_qeltvapi_record_pvr_close(handle));
    switchPipe(true);
}

/** A program that reads what the main path shows. */
class Viewer {
  public:
    Viewer() : mSocket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        strncpy(address.sun_path, path().c_str(), sizeof(address.sun_path) - 1);
        mConnected = connect(mSocket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
    }
    ~Viewer() { close(mSocket); }
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    static std::string path() {
        return std::string(getenv("QELTV_RUNTIME_DIR")) + "/qeltvd-main.ts";
    }
    bool connected() const { return mConnected; }
    /** Reads on until there are so many bytes, or to the end. @return whether there are */
    bool reads(size_t size) {
        while (received.size() < size) {
            pollfd polled{mSocket, POLLIN, 0};
            constexpr int kPatienceMs = 30000;
            if (poll(&polled, 1, kPatienceMs) <= 0) return false;
            char bytes[4096];
            const ssize_t count = recv(mSocket, bytes, sizeof(bytes), 0);
            if (count == 0) ended = true;
            if (count <= 0) return false;
            received.append(bytes, static_cast<size_t>(count));
        }
        return true;
    }

    /** Reads what comes until nothing does for a moment. @return its size */
    size_t drain() {
        const size_t before = received.size();
        pollfd polled{mSocket, POLLIN, 0};
        constexpr int kMomentMs = 300;
        while (poll(&polled, 1, kMomentMs) > 0 && reads(received.size() + 1)) {
        }
        return received.size() - before;
    }

    std::string received;
    bool ended = false;

  private:
    const int mSocket;
    bool mConnected;
};

TEST_F(StreamViewing, ViewersReceiveWhatThePathPlaysUntilItPlaysSomethingElse) {
    struct stat info {};
    ASSERT_EQ(0, stat(Viewer::path().c_str(), &info));
    EXPECT_EQ(0600u, info.st_mode & 07777);
    const int32_t id = channel(kFileHz, composed::kFirstService);
    select(id);
    ASSERT_TRUE(plays(id));
    {
        Viewer viewer;
        ASSERT_TRUE(viewer.connected());
        ASSERT_TRUE(viewer.reads(100 * 188));
        const composed::PacketCheck check(viewer.received.substr(0, 100 * 188));
        EXPECT_TRUE(check.synchronous);
        EXPECT_EQ(0u, check.breaks);
        EXPECT_EQ((std::map<uint16_t, uint16_t>{{composed::kFirstService, composed::kFirstPmt}}),
                  check.programmes);
        const int32_t radio = channel(kFileHz, composed::kSecondService);
        select(radio);
        EXPECT_FALSE(viewer.reads(SIZE_MAX));
        EXPECT_TRUE(viewer.ended);
        ASSERT_TRUE(plays(radio));
        Viewer next;
        ASSERT_TRUE(next.reads(10 * 188));
        const composed::PacketCheck other(next.received.substr(0, 10 * 188));
        EXPECT_EQ(1u, other.programmes.count(composed::kSecondService));
        select(simulated());
        EXPECT_FALSE(next.reads(SIZE_MAX));
        EXPECT_TRUE(next.ended);
    }
    ASSERT_TRUE(plays(simulated()));
    Viewer viewer;
    EXPECT_TRUE(viewer.connected());
    EXPECT_FALSE(viewer.reads(1));
    EXPECT_TRUE(viewer.ended);
    EXPECT_EQ("", viewer.received);
}

TEST_F(StreamViewing, ViewersThatDoNotReadHoldNobodyUp) {
    const int32_t id = channel(kFileHz, composed::kFirstService);
    select(id);
    ASSERT_TRUE(plays(id));
    {
        Viewer idle[7];
        Viewer reader;
        ASSERT_TRUE(reader.reads(188));
        Viewer ninth;
        EXPECT_FALSE(ninth.reads(1)) << "eight at a time";
        EXPECT_TRUE(ninth.ended);
        EXPECT_TRUE(reader.reads(reader.received.size() + 100 * 188));
    }
    EXPECT_TRUE(eventually([] {
        Viewer again;
        return again.reads(188);
    })) << "those that are gone have left their place";
}

struct Shifted {
    int32_t type;
    uint64_t first;
};
Inbox<Shifted> sShifted;

int onTimeshift(int32_t type, uintptr_t, uintptr_t first, uintptr_t) {
    sShifted.put({type, first});
    return 0;
}

/** A timeshift that is ready to start, and is dropped at the end. */
class ReadyTimeshift {
  public:
    ReadyTimeshift() {
        a_qeltvapi_timeshift_register_callback(onTimeshift);
        EXPECT_EQ(0, a_qeltvapi_timeshift_registerDevice(mBuffer.path().c_str(), 4 << 20));
        EXPECT_TRUE(eventually(
                [] { return a_qeltvapi_timeshift_get_device_status() == QELTV_DEVICE_READY; }));
        sShifted.clear();
    }
    ~ReadyTimeshift() {
        a_qeltvapi_timeshift_stop();
        EXPECT_EQ(0, blocks()) << "what is dropped takes no room";
    }
    ReadyTimeshift(const ReadyTimeshift&) = delete;
    ReadyTimeshift& operator=(const ReadyTimeshift&) = delete;

    static bool notified(int32_t type) {
        return sShifted.takeUntil([type](const Shifted& each) { return each.type == type; })
                .has_value();
    }
    static bool lasts(int64_t milliseconds) {
        return eventually([&] { return a_qeltvapi_timeshift_get_duration() >= milliseconds; });
    }
    int64_t blocks() const {
        struct stat info {};
        EXPECT_EQ(0, stat((mBuffer.path() + "/timeshift.buffer").c_str(), &info));
        return info.st_blocks;
    }

  private:
    const TemporaryDirectory mBuffer;
};

TEST_F(StreamViewing, ViewersReceiveThePositionOfTheTimeshift) {
    const ReadyTimeshift shift;
    const int32_t id = channel(kFileHz, composed::kFirstService);
    select(id);
    ASSERT_TRUE(plays(id));
    ASSERT_EQ(0, a_qeltvapi_timeshift_start());
    Viewer viewer;
    ASSERT_TRUE(viewer.reads(20 * 188));
    ASSERT_EQ(0, a_qeltvapi_timeshift_pause());
    const int64_t paused = a_qeltvapi_timeshift_get_current_position();
    // Beyond the end of the file, which begins anew.
    ASSERT_TRUE(shift.lasts(5000));
    EXPECT_EQ(paused, a_qeltvapi_timeshift_get_current_position());
    EXPECT_GT(shift.blocks(), 0);
    viewer.drain();
    EXPECT_EQ(0u, viewer.drain()) << "paused";

    ASSERT_EQ(0, a_qeltvapi_timeshift_seek(1000));
    const auto began = std::chrono::steady_clock::now();
    ASSERT_EQ(0, a_qeltvapi_timeshift_play());
    const size_t before = viewer.received.size();
    ASSERT_TRUE(viewer.reads(before + 100 * 188));
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - began);
    const int64_t position = a_qeltvapi_timeshift_get_current_position();
    EXPECT_GE(position, 1000 + took.count() / 2);
    EXPECT_LE(position, 1500 + took.count());
    EXPECT_EQ(position, a_qeltvapi_timeshift_get_position()) << "all is still held";

    sShifted.clear();
    ASSERT_EQ(0, a_qeltvapi_timeshift_trickplay(1600));
    ASSERT_TRUE(shift.notified(QELTV_TIMESHIFT_LIVE_EVENT));
    EXPECT_GE(a_qeltvapi_timeshift_get_current_position(), 5000);
    ASSERT_TRUE(viewer.reads(viewer.received.size() + 100 * 188));
    viewer.received.resize(viewer.received.size() / 188 * 188);
    const composed::PacketCheck check(viewer.received);
    EXPECT_TRUE(check.synchronous);
    EXPECT_EQ(0u, check.breaks);
    EXPECT_GE(check.discontinuities, 4u);
    EXPECT_EQ((std::map<uint16_t, uint16_t>{{composed::kFirstService, composed::kFirstPmt}}),
              check.programmes);
}

TEST_F(StreamViewing, AnotherServiceStartsTheTimeshiftAnew) {
    const ReadyTimeshift shift;
    const int32_t id = channel(kFileHz, composed::kFirstService);
    select(id);
    ASSERT_TRUE(plays(id));
    ASSERT_EQ(0, a_qeltvapi_timeshift_start());
    ASSERT_TRUE(shift.lasts(1500));
    ASSERT_EQ(0, a_qeltvapi_timeshift_pause());
    sShifted.clear();
    const int32_t radio = channel(kFileHz, composed::kSecondService);
    select(radio);
    ASSERT_TRUE(shift.notified(QELTV_TIMESHIFT_STATUS_EVENT));
    EXPECT_EQ(QELTV_TIMESHIFT_RECORDS, a_qeltvapi_timeshift_get_record_status());
    EXPECT_LT(a_qeltvapi_timeshift_get_duration(), 1500);
    ASSERT_TRUE(plays(radio));
    ASSERT_TRUE(shift.lasts(1000));
    Viewer viewer;
    ASSERT_TRUE(viewer.reads(10 * 188));
    ASSERT_EQ(0, a_qeltvapi_timeshift_seek(0));
    ASSERT_TRUE(viewer.reads(viewer.received.size() + 30 * 188));
    viewer.received.resize(viewer.received.size() / 188 * 188);
    const composed::PacketCheck check(viewer.received);
    EXPECT_EQ((std::map<uint16_t, uint16_t>{{composed::kSecondService, composed::kSecondPmt}}),
              check.programmes);
    EXPECT_EQ(0u, check.packets.count(composed::kFirstVideo));
    EXPECT_EQ(0u, check.breaks);
}

TEST_F(StreamViewing, WhatTheTimeshiftHoldsPlaysWithoutASignal) {
    const ReadyTimeshift shift;
    const int32_t id = channel(kPipeHz, composed::kFirstService);
    select(id);
    ASSERT_TRUE(plays(id));
    ASSERT_EQ(0, a_qeltvapi_timeshift_start());
    ASSERT_TRUE(shift.lasts(3000));
    ASSERT_EQ(0, a_qeltvapi_timeshift_seek(0));
    ASSERT_EQ(0, a_qeltvapi_timeshift_pause());
    Viewer viewer;
    switchPipe(false);
    ASSERT_TRUE(becomes(id, QELTV_TUNING_FAILED, QELTV_TUNING_NO_SIGNAL));
    const int64_t held = a_qeltvapi_timeshift_get_duration();
    EXPECT_GE(held, 3000);
    sShifted.clear();
    ASSERT_EQ(0, a_qeltvapi_timeshift_play());
    EXPECT_TRUE(viewer.reads(100 * 188));
    EXPECT_TRUE(shift.notified(QELTV_TIMESHIFT_LIVE_EVENT)) << "the end of what is held";
    EXPECT_EQ(held, a_qeltvapi_timeshift_get_duration());
    switchPipe(true);
    EXPECT_TRUE(plays(id));
    EXPECT_TRUE(shift.lasts(held + 500)) << "the clock of the packets goes on";
}

TEST_F(StreamViewing, TheSocketsGoWithTheTelevision) {
    EXPECT_EQ(0, television->end(SIGTERM));
    struct stat info {};
    EXPECT_NE(0, stat(Viewer::path().c_str(), &info));
}

TEST(StreamStoreAfterACrash, LengthsAreThoseOfThePacketsAndTheBufferIsEmpty) {
    const TemporaryDirectory directory;
    composed::writeFile(directory.path() + "/a.ts", composed::dvb());
    std::ofstream(directory.path() + "/region")
            << "[Own]\nDELIVERY_SYSTEM = DVBT\nBANDWIDTH_HZ = 8000000\nFREQUENCY = " << kFileHz
            << "\nSTREAM = a.ts\n";
    Daemon television;
    television.start({"--region", directory.path() + "/region"});
    const auto json = [](std::vector<std::string> words) {
        words.push_back("--json");
        const Ended ended = qeltvctl(words);
        EXPECT_EQ(0, ended.status) << ended.err;
        return Json::parse(ended.out);
    };
    std::string id;
    for (const Json& each : json({"channel", "list", "--all"})) {
        if (each["multiplex"]["frequency_hz"] == kFileHz && id.empty()) id = each["id"];
    }
    ASSERT_EQ(0, qeltvctl({"tune", id}).status);
    ASSERT_EQ(0, qeltvctl({"timeshift", "device", directory.path(), "4"}).status);
    ASSERT_TRUE(eventually([&] { return json({"timeshift", "status"})["device"] == "ready"; }));
    ASSERT_EQ(0, qeltvctl({"timeshift", "start"}).status);
    const std::string channel = std::to_string(std::stoul(id, nullptr, 0));
    ASSERT_EQ(0, qeltvctl({"record", "start", channel}).status);
    ASSERT_TRUE(eventually([&] {
        return json({"timeshift", "status"})["duration_ms"].get<int>() > 4000;
    }));
    const auto blocks = [&] {
        struct stat info {};
        EXPECT_EQ(0, stat((directory.path() + "/timeshift.buffer").c_str(), &info));
        return info.st_blocks;
    };
    EXPECT_GT(blocks(), 0);
    television.kill();
    television.start({"--region", directory.path() + "/region"});
    const Json list = json({"record", "list"});
    ASSERT_EQ(1u, list.size());
    EXPECT_EQ("power lost", list[0]["stop_reason"]);
    EXPECT_GE(list[0]["seconds"], 3);
    EXPECT_LE(list[0]["seconds"], 60);
    EXPECT_LT(list[0]["bytes"], 3 << 20) << "less than a second at the set rate holds";
    EXPECT_EQ(0, blocks());
}

}  // namespace
