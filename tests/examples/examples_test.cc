#include <poll.h>
#include <stdio.h>

#include <chrono>
#include <fstream>
#include <regex>
#include <sstream>

#include "daemon.h"
#include "hw_qeltvapi_config.h"
#include "wire.h"

using namespace wire;
using namespace std::chrono_literals;

namespace {

constexpr char kItem[] = "picture.contrast";

/** A program of examples/ at work. */
class Example {
  public:
    explicit Example(const std::string& command) {
        mOutput =
                popen((QELTV_EMULATOR " " QELTV_BUILD_DIR "/examples/" + command + " 2>&1").c_str(),
                      "re");
        if (mOutput == nullptr) abort();
    }
    ~Example() { end(); }

    /** Whether it has something to read, its end included. */
    bool ready(std::chrono::milliseconds wait) {
        pollfd one{fileno(mOutput), POLLIN, 0};
        return poll(&one, 1, static_cast<int>(wait.count())) > 0;
    }

    /** Its next line; "" at its end, and when none comes. */
    std::string line() {
        std::string text;
        for (char c = 0; c != '\n' && ready(30s); text += c) {
            if (read(fileno(mOutput), &c, 1) != 1) break;
        }
        return text;
    }

    std::string rest() {
        std::string all;
        for (std::string next = line(); !next.empty(); next = line()) all += next;
        return all;
    }

    int end() {
        if (mOutput == nullptr) return -1;
        const int status = pclose(mOutput);
        mOutput = nullptr;
        return WEXITSTATUS(status);
    }

  private:
    FILE* mOutput;
};

std::string contents(const std::string& path) {
    std::ifstream file(QELTV_SOURCE_DIR "/" + path);
    std::ostringstream text;
    text << file.rdbuf();
    EXPECT_NE("", text.str()) << path;
    return text.str();
}

TEST(CallExample, DistinguishesAnAnswerFromAMissingTelevision) {
    Daemon television;
    television.start();
    Example answered("call");
    EXPECT_EQ("picture.contrast is 85\n", answered.rest());
    EXPECT_EQ(0, answered.end());

    television.kill();
    Example missing("call");
    EXPECT_EQ("picture.contrast cannot be read: -1\n", missing.rest());
    EXPECT_EQ(1, missing.end());
}

TEST(NotificationsExample, PrintsAChangeThatAnotherProcessMakes) {
    Daemon television;
    television.start();
    Example example("notifications 3");
    ASSERT_EQ("watching picture.contrast\n", example.line());
    // The callback object is registered behind the program's back: the first changes may be early.
    int32_t value = 30;
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    for (int seen = 0; seen < 3;) {
        ASSERT_LT(std::chrono::steady_clock::now(), deadline);
        value = 70 - value;
        ASSERT_EQ(0, a_qeltvapi_config_set_value(0, kItem, value, 0));
        if (!example.ready(200ms)) continue;
        EXPECT_EQ("picture.contrast is now " + std::to_string(value) + "\n", example.line());
        ++seen;
    }
    EXPECT_EQ("", example.rest());
    EXPECT_EQ(0, example.end());
}

TEST(RecoveryExample, OutlivesTheTelevision) {
    Daemon television;
    television.start();
    Example example("recovery");
    EXPECT_EQ("the television answers\n", example.line());
    television.kill();
    EXPECT_EQ("the television is gone\n", example.line());
    television.start();
    EXPECT_EQ("the television is back\n", example.rest());
    EXPECT_EQ(0, example.end());
}

TEST(ChannelListExample, ReadsTheWholeListThroughSharedMemory) {
    Daemon television;
    television.start();
    Example example("channel_list");
    const std::regex channel(
            " *[1-9][0-9]*  .*[^ ] +(television|radio|data) +[0-9]+\\.[0-9]{3} MHz\n");
    size_t channels = 0;
    std::string line = example.line();
    for (; std::regex_match(line, channel); line = example.line()) ++channels;
    EXPECT_EQ(std::to_string(channels) + " channels\n", line);
    // More than one batch.
    EXPECT_GT(channels, 16u);
    EXPECT_EQ(0, example.end());
}

/** The quotes of a page are lines of files: a comment before each names its file. */
size_t expectQuotes(const std::string& page) {
    const std::string text = contents(page);
    const std::regex quote("<!-- ([a-z_/]+\\.(?:c|cc|cpp|h|py)) -->\\s*```[a-z]*\n([^`]*)```");
    size_t quotes = 0;
    for (std::sregex_iterator it(text.begin(), text.end(), quote), end; it != end; ++it) {
        ++quotes;
        EXPECT_NE(std::string::npos, contents((*it)[1]).find((*it)[2])) << page << (*it)[2];
    }
    EXPECT_GT(quotes, 0u) << page;
    return quotes;
}

TEST(Examples, AreWhatThePagesQuote) {
    const std::regex block("```[a-z]");
    for (const char* page : {"README.md", "docs/services.md", "docs/testing.md"}) {
        const std::string text = contents(page);
        const std::sregex_iterator blocks(text.begin(), text.end(), block);
        EXPECT_EQ(expectQuotes(page),
                  static_cast<size_t>(std::distance(blocks, std::sregex_iterator())))
                << page << " has a block that names no file";
    }
    // Its other blocks are run by the tests of the package.
    expectQuotes("docs/python.md");
}

}  // namespace
