/** qeltvctl stream info: what is in a file, without a television. */
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "daemon.h"
#include "stream_composer.h"

using namespace wire;
using Json = nlohmann::json;

namespace {

class StreamTool : public testing::Test {
  protected:
    StreamTool() {
        char path[] = "/tmp/stream-tool-XXXXXX";
        if (mkdtemp(path) != nullptr) mDirectory = path;
    }
    ~StreamTool() override { std::filesystem::remove_all(mDirectory); }

    std::string write(const std::string& name, const composed::Octets& bytes) const {
        composed::writeFile(mDirectory + "/" + name, bytes);
        return mDirectory + "/" + name;
    }

    std::string mDirectory;
};

TEST_F(StreamTool, InfoHasServicesNumbersEventsAndRates) {
    const std::string file = write("a.ts", composed::dvb());
    const Json all = Json::parse(qeltvctl({"stream", "info", "--json", file}).out);
    EXPECT_EQ("DVB", all["standard"]);
    EXPECT_EQ(composed::kTime + 3, all["time"]);
    ASSERT_EQ(2u, all["services"].size());
    const Json& first = all["services"][0];
    EXPECT_EQ(composed::kFirstName, first["name"]);
    EXPECT_EQ(std::to_string(composed::kFirstNumber), first["number"]);
    EXPECT_EQ("MPEG-2 352x288p 25/s", first["format"]);
    EXPECT_EQ("Nachrichten im Café", first["present"]["title"]);
    EXPECT_EQ(3, first["events"]);
    EXPECT_EQ(composed::kUrl, first["applications"][0]["url"]);
    for (const Json& pid : all["pids"]) {
        EXPECT_EQ(0, pid["continuityErrors"]) << pid;
        EXPECT_LT(0, pid["bitsPerSecond"]) << pid;
    }
    const Ended text = qeltvctl({"stream", "info", file});
    EXPECT_EQ(0, text.status) << text.err;
    EXPECT_NE(std::string::npos, text.out.find(composed::kSecondName)) << text.out;
    EXPECT_NE(std::string::npos, text.out.find("time 2026-03-29 00:30:03 UTC")) << text.out;
    const Json atsc = Json::parse(
            qeltvctl({"stream", "info", "--json", write("b.ts", composed::atsc())}).out);
    EXPECT_EQ("8-1", atsc["services"][0]["number"]);
}

TEST_F(StreamTool, AFileThatIsNoStreamIsRefused) {
    const std::string file = write("a.ts", composed::Octets(5000, 0x11));
    const Ended ended = qeltvctl({"stream", "info", file});
    EXPECT_EQ(1, ended.status);
    EXPECT_EQ("qeltvctl: " + file + ": is no transport stream\n", ended.err);
    EXPECT_EQ(1, qeltvctl({"stream", "info", mDirectory + "/missing.ts"}).status);
    EXPECT_EQ(2, qeltvctl({"stream", "info"}).status);
}

}  // namespace
