/** A command with a television of its own. */
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "daemon.h"
#include "eventually.h"

using namespace wire;

namespace {

constexpr char kTool[] = QELTV_BUILD_DIR "/tools/qeltvctl";

/** Sessions make their directories in one that is empty before and has to be afterwards. */
class Session : public testing::Test {
  protected:
    void SetUp() override { setenv("TMPDIR", mDirectory.path().c_str(), 1); }
    void TearDown() override {
        EXPECT_TRUE(std::filesystem::is_empty(mDirectory.path()));
        unsetenv("TMPDIR");
    }

    static Ended session(const std::string& script) {
        return runProgram({kTool, "session", "--", "sh", "-c", script, kTool});
    }

    /** Whether a television has its state in the directory of the sessions. */
    bool runs() const {
        for (const auto& process : std::filesystem::directory_iterator("/proc")) {
            std::ifstream file(process.path() / "cmdline");
            const std::string words{std::istreambuf_iterator<char>(file), {}};
            if (words.find("qeltvd") != std::string::npos &&
                words.find(mDirectory.path()) != std::string::npos) {
                return true;
            }
        }
        return false;
    }

    TemporaryDirectory mDirectory;
};

TEST_F(Session, GivesTheCommandATelevisionOfItsOwn) {
    const Ended ended =
            session("\"$0\" config set picture.contrast 7 && \"$0\" config get "
                    "picture.contrast; exit 7");
    EXPECT_EQ(7, ended.status) << ended.err;
    EXPECT_EQ("7\n", ended.out);
    EXPECT_EQ("", ended.err);
    EXPECT_FALSE(runs());
    // The next one starts anew.
    EXPECT_EQ("85\n", session("\"$0\" config get picture.contrast").out);
}

TEST_F(Session, ReportsACommandThatCannotBeRunOrIsKilled) {
    EXPECT_EQ(127, runProgram({kTool, "session", "/nonexistent/command"}).status);
    EXPECT_EQ(128 + SIGKILL, session("kill -9 $$").status);
    // The exit status of the command counts, regardless of the television.
    EXPECT_EQ(0, session("\"$0\" service die").status);
    EXPECT_FALSE(runs());
}

TEST_F(Session, TakesAllAwayWhenItIsEndedBySignals) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const std::string begun = mDirectory.path() + "/begun";
        const pid_t pid = fork();
        if (pid == 0) {
            execl(kTool, kTool, "session", "--", "sh", "-c", "touch \"$0\"; exec sleep 60",
                  begun.c_str(), nullptr);
            _exit(127);
        }
        ASSERT_TRUE(eventually([&] { return std::filesystem::exists(begun); }));
        EXPECT_TRUE(runs());
        kill(pid, number);
        int status = 0;
        waitpid(pid, &status, 0);
        EXPECT_TRUE(WIFEXITED(status));
        EXPECT_EQ(128 + number, WEXITSTATUS(status));
        EXPECT_FALSE(runs());
        std::filesystem::remove(begun);
        EXPECT_TRUE(std::filesystem::is_empty(mDirectory.path()));
    }
}

TEST_F(Session, BeginsAsAScenarioDescribesIt) {
    const TemporaryDirectory files;
    const std::string file = files.path() + "/scenario.json";
    std::ofstream(file) << R"({
        "faults": [{"method": "a_qeltvapi_config_get_minmaxvalue", "kind": "code", "value": -5}],
        "config": {"picture.contrast": 7, "channels.country": "NOR", "picture.hue": -5},
        "clock": {"zone": "+01:00", "local": "2031-03-04 05:06:07"},
        "channels": {"locked": [2], "favourites": {"2": [3, 1]}, "current": 3},
        "inputs": {"plugged": [6], "unplugged": [5], "blocked": [7]},
        "volume": {"speaker": 33, "headphone": 4}, "mute": true,
        "reception": {"percent": 90}
    })";
    const Ended ended = runProgram({kTool, "session", "--scenario", file, "--", "sh", "-c",
                                    R"(
        "$0" config get channels.country
        "$0" config get picture.contrast 2>/dev/null || echo refused
        "$0" service fault a_qeltvapi_config_get_minmaxvalue none
        "$0" config get picture.contrast; "$0" config get picture.hue
        "$0" time show | sed -n '/^local/s/  */ /gp' | cut -c 1-22
        "$0" channel show 2 --json | grep -o '"locked"'
        "$0" channel show current --json | grep '"number"'
        "$0" channel favourite list --favourites 2 | sed -n 's/^\(air *[0-9]*\).*/\1/p'
        "$0" volume | grep -o '^[sh].* [0-9]*' | tr -s ' '
        "$0" input list | grep HDMI | grep -o 'HDMI . *yes\|set' | tr -s ' ')",
                                    kTool});
    EXPECT_EQ(0, ended.status) << ended.err;
    EXPECT_EQ(
            "NOR\nrefused\n7\n-5\nlocal 2031-03-04 05:06\n\"locked\"\n  \"number\": \"3\",\n"
            "air   3\nair   1\nspeaker 33 \nheadphone 4 \nHDMI 2 yes\nHDMI 3 yes\nset\n",
            ended.out);
}

TEST_F(Session, RefusesAScenarioWithThePlaceOfWhatIsWrong) {
    const TemporaryDirectory files;
    const std::string file = files.path() + "/scenario.json";
    const std::vector<std::pair<std::string, std::string>> wrong{
            {"{", ""},
            {"[]", "/: "},
            {R"({"colour": 1})", "/colour: "},
            {R"({"clock": {"locale": "x"}})", "/clock/locale: "},
            {R"({"clock": {"local": "2031-03-04 00:00", "offset": 1}})", "/clock: "},
            {R"({"config": {"picture.contrast": [1]}})", "/config/picture.contrast: "},
            {R"({"config": {"picture.nonsense": 1}})", "/config/picture.nonsense: "},
            {R"({"channels": {"locked": [1, {}]}})", "/channels/locked/1: "},
            {R"({"channels": {"favourites": {"5": []}}})", "/channels/favourites/5: "},
            {R"({"volume": {"speaker": 101}})", "/volume/speaker: "},
            {R"({"inputs": {"plugged": [99]}})", "/inputs/plugged/0: "},
            {R"({"reception": {"frequencies": {"x": 3}}})", "/reception/frequencies/x: "},
            {R"({"faults": [{"method": "config_get_value"}]})", "/faults/0: "},
    };
    for (const auto& [text, place] : wrong) {
        std::ofstream(file) << text;
        const Ended ended =
                runProgram({kTool, "session", "--scenario", file, "--", "echo", "runs"});
        EXPECT_TRUE(ended.status == 1 || ended.status == 2) << text << ended.status;
        EXPECT_EQ("", ended.out) << text;
        EXPECT_NE(std::string::npos, ended.err.find(file + ": " + place)) << ended.err;
    }
    EXPECT_FALSE(runs());
}

}  // namespace
