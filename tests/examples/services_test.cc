#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>
#include <vector>

#include "daemon.h"
#include "eventually.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_freeze.h"
#include "hw_qeltvapi_rating.h"
#include "layouts/codes.h"

using namespace wire;

namespace {

constexpr char kItem[] = "picture.contrast";

/** A program of examples/ that runs until the test ends. */
class Service {
  public:
    explicit Service(const std::string& name) {
        std::istringstream words(QELTV_EMULATOR);
        std::vector<std::string> all;
        for (std::string word; words >> word;) all.push_back(word);
        all.push_back(QELTV_BUILD_DIR "/examples/" + name);
        mPid = fork();
        if (mPid != 0) return;
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::vector<char*> arguments;
        for (std::string& word : all) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    ~Service() {
        if (mPid <= 0) return;
        kill(mPid, SIGKILL);
        waitpid(mPid, nullptr, 0);
    }

    static bool serves() {
        return eventually([] {
            return vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi::getService("default", false) !=
                   nullptr;
        });
    }

    /** Its exit status once it has ended by itself. */
    int end() {
        int status = -1;
        const bool ended = eventually([&] { return waitpid(mPid, &status, WNOHANG) == mPid; });
        if (ended) mPid = -1;
        return ended && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    pid_t mPid;
};

TEST(ServiceExample, ServesTwoFunctionsAndRefusesAllOthers) {
    Service service("service");
    ASSERT_TRUE(Service::serves());
    int32_t value = 0;
    EXPECT_EQ(0, a_qeltvapi_config_get_value(0, kItem, &value));
    EXPECT_EQ(50, value);
    EXPECT_EQ(0, a_qeltvapi_config_set_value(0, kItem, 51, 0));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_config_set_value(0, kItem, 101, 0));
    EXPECT_EQ(0, a_qeltvapi_config_get_value(0, kItem, &value));
    EXPECT_EQ(51, value);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_config_get_value(0, "picture.hue", &value));

    // Each in its own shape: a code, a number and a code, a text with its length and a code.
    EXPECT_EQ(QELTV_UNSUPPORTED, a_qeltvapi_config_reset_values(0));
    uint32_t range = 7;
    EXPECT_EQ(QELTV_UNSUPPORTED, a_qeltvapi_config_get_minmaxvalue(0, kItem, &range));
    char text[8] = "#";
    uint32_t length = 7;
    EXPECT_EQ(QELTV_UNSUPPORTED, a_qeltvapi_config_get_str_value("x", text, &length));
    // Another interface, and one that nobody serves.
    EXPECT_EQ(QELTV_UNSUPPORTED, a_qeltvapi_freeze_set_freeze("main", 1));
    EXPECT_EQ(-1, a_qeltvapi_rating_set_block_unrated(1));
}

TEST(OverlayExample, ServesOneFunctionItselfAndTheTelevisionAllOthers) {
    Daemon television;
    television.launch({"--instance", "reference"});
    Service overlay("overlay");
    ASSERT_TRUE(Service::serves());
    EXPECT_EQ("picture.contrast is 85\n", runBuilt({"examples/call"}).out);
    EXPECT_NE("", runBuilt({"examples/channel_list"}).out);
    EXPECT_EQ(1, qeltvctl({"config", "set", kItem, "61"}).status);
    EXPECT_EQ(0, qeltvctl({"config", "set", kItem, "60"}).status);
    EXPECT_EQ("60\n", qeltvctl({"config", "get", kItem}).out);
    // The tool waits until the television lists its callback object as that of its process.
    EXPECT_EQ("qeltvctl: scan: no such thing (-3)\n",
              qeltvctl({"scan", "start", "--mhz", "1"}).err);

    television.kill();
    EXPECT_EQ(1, overlay.end());
    EXPECT_EQ("picture.contrast cannot be read: -1\n", runBuilt({"examples/call"}).err);
}

}  // namespace
