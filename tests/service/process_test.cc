/** The television as a process: its command line, its end, and a second one beside it. */
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include "daemon.h"
#include "eventually.h"
#include "hw_qeltvapi_highlevel.h"
#include "inbox.h"
#include "platform_calls.h"
#include "with_television.h"

using namespace wire;

namespace {

constexpr char kTelevision[] = QELTV_HOST_BUILD_DIR "/qeltvd/qeltvd";
constexpr char kChannel[] = "67108865";

Ended runTelevision(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"/usr/bin/timeout", "20", kTelevision});
    return runProgram(arguments);
}

/** The names that services are found by, and the socket of a process. */
std::vector<std::string> namesOf(pid_t pid) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(getenv("QELTV_RUNTIME_DIR"))) {
        const std::string name = entry.path().filename();
        if (name.rfind("service.vendor", 0) == 0 ||
            name.rfind("node." + std::to_string(pid) + "-", 0) == 0) {
            names.push_back(name);
        }
    }
    return names;
}

nlohmann::json json(std::vector<std::string> arguments) {
    arguments.push_back("--json");
    const Ended ended = qeltvctl(arguments);
    EXPECT_EQ(0, ended.status) << ended.err;
    return nlohmann::json::parse(ended.out);
}

TEST(Process, ReportsUsageAndVersion) {
    for (const std::vector<std::string>& wrong :
         {std::vector<std::string>{"--nonsense"}, {"word"}, {"--state"}}) {
        const Ended ended = runTelevision(wrong);
        EXPECT_EQ(2, ended.status) << wrong[0];
        EXPECT_NE("", ended.err) << wrong[0];
    }
    const Ended help = runTelevision({"--help"});
    EXPECT_EQ(0, help.status);
    EXPECT_NE(std::string::npos, help.out.find("--replace"));
    const Ended version = runTelevision({"--version"});
    EXPECT_EQ(0, version.status);
    EXPECT_EQ("qeltvd 1.0.0\n", version.out);
}

TEST(Process, FinishesRecordingsWhenASignalEndsIt) {
    Daemon television;
    for (const int signal : {SIGTERM, SIGINT}) {
        television.start();
        const pid_t pid = television.pid();
        ASSERT_EQ(0, qeltvctl({"record", "start", kChannel, "--programme", "Now"}).status);
        ASSERT_EQ(0, qeltvctl({"record", "schedule", kChannel, "+1", "60", "--programme", "Booked",
                               "--force"})
                             .status);
        ASSERT_TRUE(eventually([] {
            const auto bookings = json({"record", "schedule"});
            return bookings.size() == 1 && bookings[0]["state"] == "runs";
        }));
        // Both have begun to write.
        const std::string recordings = television.statePath() + "/recordings";
        ASSERT_TRUE(eventually([&] {
            size_t written = 0;
            for (const auto& entry : std::filesystem::directory_iterator(recordings)) {
                written += entry.file_size() > 0;
            }
            return written == (signal == SIGTERM ? 2u : 4u);
        }));
        EXPECT_EQ(0, television.end(signal)) << signal;
        EXPECT_EQ(std::vector<std::string>(), namesOf(pid));
    }
    television.start();
    const auto list = json({"record", "list"});
    EXPECT_EQ(4u, list.size());
    for (const auto& item : list) EXPECT_EQ("standby", item["stop_reason"]) << item;
    EXPECT_EQ(0u, json({"record", "schedule"}).size());
}

TEST(Process, AnswersTheCallsThatRunWhenASignalEndsIt) {
    Daemon television;
    television.start();
    ASSERT_EQ(0, qeltvctl({"service", "fault", "a_hidl_qeltvapi_config_get_value", "delay", "1000"})
                         .status);
    Ended answer{};
    std::thread client([&] {
        answer = qeltvctl({"call", "a_qeltvapi_config_get_value", "0", "picture.contrast"});
    });
    ASSERT_TRUE(eventually([&] {
        const std::string dump = qeltvctl({"service", "dump"}).out;
        return dump.find("config_get_value\",\n      \"calls\": 1,") != std::string::npos;
    }));
    EXPECT_EQ(0, television.end(SIGTERM));
    client.join();
    EXPECT_EQ(0, answer.status) << answer.err;
    EXPECT_NE(std::string::npos, answer.out.find("85")) << answer.out;
}

std::atomic<bool> sHeld{false};
std::atomic<bool> sRelease{false};

int onHighlevel(int32_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    sHeld = true;
    while (!sRelease) usleep(1000);
    return 0;
}

TEST(Process, AClientThatTakesNoNotificationDoesNotHoldUpItsEnd) {
    Sleeps::instance().letAllGo(true);
    Daemon television;
    television.start();
    a_qeltvapi_highlevel_register_callback(onHighlevel);
    ASSERT_TRUE(joinTelevision());
    ASSERT_EQ(0, qeltvctl({"service", "raise", "a_hidl_qeltvapi_highlevel_callback_fct",
                           "[1,0,0,0,0,0]"})
                         .status);
    ASSERT_TRUE(eventually([] { return sHeld.load(); }));
    EXPECT_EQ(0, television.end(SIGTERM));
    sRelease = true;
    a_qeltvapi_highlevel_register_callback(nullptr);
    Sleeps::instance().letAllGo(false);
}

TEST(Process, LeavesTheNamesToATelevisionThatServesUnlessItIsToReplaceIt) {
    Daemon first, second;
    const auto serving = [] {
        const std::string dump = qeltvctl({"service", "dump"}).out;
        const size_t end = dump.rfind('}');
        if (end == std::string::npos) return pid_t{-1};
        return nlohmann::json::parse(dump.substr(0, end + 1))["pid"].get<pid_t>();
    };
    first.start();
    const Ended refused = runTelevision({"--state", second.statePath()});
    EXPECT_EQ(1, refused.status);
    EXPECT_EQ(0u, refused.err.find("qeltvd: another television (process " +
                                   std::to_string(first.pid()) + ") serves"))
            << refused.err;
    EXPECT_NE(std::string::npos, refused.err.find("--replace")) << refused.err;
    EXPECT_EQ(first.pid(), serving());

    second.launch({"--replace"});
    EXPECT_TRUE(eventually([&] { return serving() == second.pid(); }));
    // The first one leaves the names that are not its own.
    EXPECT_EQ(0, first.end(SIGTERM));
    EXPECT_EQ(second.pid(), serving());

    // What a killed television leaves behind stands in nobody's way.
    second.kill();
    first.start();
    EXPECT_EQ(first.pid(), serving());
}

TEST(Process, ServesUnderAnotherInstanceName) {
    using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;
    Daemon television;
    television.launch({"--instance", "reference"});
    EXPECT_TRUE(eventually([] { return IQelTvApi::getService("reference", false) != nullptr; }));
    EXPECT_EQ(nullptr, IQelTvApi::getService("default", false));

    const TemporaryDirectory state;
    const Ended refused = runTelevision({"--state", state.path(), "--instance", "reference"});
    EXPECT_EQ(1, refused.status);
    EXPECT_EQ(0u, refused.err.find("qeltvd: another television")) << refused.err;
    const Ended nameless = runTelevision({"--state", state.path(), "--instance", ""});
    EXPECT_EQ(2, nameless.status);
    // One with another name serves beside it.
    Daemon second;
    second.start();
}

TEST(Process, LogsTheNamesOfMethodsOnRequest) {
    const TemporaryDirectory place;
    Daemon television;
    television.logTo(place.path() + "/log");
    television.start({"--verbose"});
    ASSERT_EQ(0, qeltvctl({"config", "get", "picture.contrast"}).status);
    ASSERT_EQ(0, television.end(SIGTERM));
    std::ifstream file(place.path() + "/log");
    const std::string log{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(std::string::npos,
              log.find(" call IQelTvApiConfig a_hidl_qeltvapi_config_get_value\n"))
            << log;
}

}  // namespace
