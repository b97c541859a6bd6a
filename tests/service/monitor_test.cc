/** Monitors of a television, and the replay of what they have recorded. */
#include <gtest/gtest.h>
#include <hidlhost/raw_service.h>
#include <hidlhost/runtime_directory.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <fstream>
#include <memory>
#include <thread>

#include "daemon.h"
#include "eventually.h"
#include "transactions.h"
#include "wire.h"

using namespace wire;
using transactions::Json;

namespace {

std::string contents(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/** A connection to the television's socket. */
class Connection {
  public:
    Connection() : mFd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        strcpy(address.sun_path, path().c_str());
        EXPECT_EQ(0, connect(mFd, reinterpret_cast<sockaddr*>(&address), sizeof(address)));
    }
    ~Connection() { close(mFd); }
    Connection(const Connection&) = delete;

    static std::string path() { return hidlhost::runtimeDirectory() + "/qeltvd-monitor"; }

    /** The next line; null at the end. */
    Json next() {
        for (;;) {
            const size_t end = mUnread.find('\n');
            if (end != std::string::npos) {
                const std::string line = mUnread.substr(0, end);
                mUnread.erase(0, end + 1);
                return Json::parse(line);
            }
            char bytes[65536];
            const ssize_t size = read(mFd, bytes, sizeof(bytes));
            if (size <= 0) return nullptr;
            mUnread.append(bytes, static_cast<size_t>(size));
        }
    }
    /** The next line of a method. */
    Json next(const std::string& method) {
        for (;;) {
            const Json line = next();
            if (line.is_null() || line.value("method", "") == method) return line;
        }
    }

  private:
    const int mFd;
    std::string mUnread;
};

/** qeltvctl in the background, until end(). */
class Background {
  public:
    Background(std::vector<std::string> words, const std::string& err) {
        words.insert(words.begin(), QELTV_BUILD_DIR "/tools/qeltvctl");
        mPid = fork();
        if (mPid != 0) return;
        if (freopen(err.c_str(), "w", stderr) == nullptr) _exit(127);
        dup2(STDERR_FILENO, STDOUT_FILENO);
        std::vector<char*> arguments;
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    ~Background() {
        if (mPid > 0) end();
    }
    pid_t pid() const { return mPid; }
    int end() {
        kill(mPid, SIGTERM);
        int status = 0;
        waitpid(mPid, &status, 0);
        mPid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    pid_t mPid;
};

class Monitor : public testing::Test {
  protected:
    void SetUp() override { television.start(); }

    /** Records what the commands do. */
    void record(const std::vector<std::vector<std::string>>& commands,
                std::vector<std::string> options = {}) {
        options.insert(options.begin(), {"monitor", "--record", mFile});
        const std::string log = mDirectory.path() + "/log";
        Background monitor(options, log);
        ASSERT_TRUE(
                eventually([&] { return contents(log).find("monitoring") != std::string::npos; }));
        for (const auto& command : commands) {
            const Ended ended = qeltvctl(command);
            EXPECT_EQ(0, ended.status) << ended.err;
        }
        // A call that ends the recording is written before the next one is made.
        ASSERT_EQ(0, qeltvctl({"config", "get", "system.items"}).status);
        ASSERT_TRUE(eventually(
                [&] { return contents(mFile).find("system.items") != std::string::npos; }));
        EXPECT_EQ(0, monitor.end());
    }

    TemporaryDirectory mDirectory;
    const std::string mFile = mDirectory.path() + "/calls";
    Daemon television;
};

TEST_F(Monitor, SeesCallsOfOtherProcessesWithWhatTheyTakeAndReturn) {
    struct stat file {};
    ASSERT_EQ(0, stat(Connection::path().c_str(), &file));
    EXPECT_EQ(0600u, file.st_mode & 0777);

    Connection connection;
    EXPECT_EQ(television.pid(), connection.next().at("television"));
    ASSERT_EQ(0, qeltvctl({"config", "set", "picture.contrast", "12"}).status);
    Json line = connection.next("a_hidl_qeltvapi_config_set_value");
    EXPECT_EQ("IQelTvApiConfig", line.at("interface"));
    EXPECT_EQ(1, std::count(line.at("arguments").begin(), line.at("arguments").end(),
                            Json("picture.contrast")))
            << line;
    EXPECT_EQ(1, std::count(line.at("arguments").begin(), line.at("arguments").end(), Json(12)))
            << line;
    EXPECT_EQ(Json(0), line.at("results").back()) << line;

    // An answer that is lost has none.
    ASSERT_EQ(0, qeltvctl({"service", "fault", "qeltvapi_config_get_value", "lose"}).status);
    EXPECT_NE(0, qeltvctl({"config", "get", "picture.contrast"}).status);
    line = connection.next("a_hidl_qeltvapi_config_get_value");
    EXPECT_EQ("FAILED_TRANSACTION", line.at("status")) << line;
    EXPECT_FALSE(line.contains("results"));
}

TEST_F(Monitor, EndsWithTheTelevisionAndLeavesNoSocket) {
    Connection connection;
    connection.next();
    EXPECT_EQ(0, television.end(SIGTERM));
    while (!connection.next().is_null()) {
    }
    EXPECT_NE(0, access(Connection::path().c_str(), F_OK));
}

TEST_F(Monitor, RefusesMoreThanEightAndTakesAnotherAfterOneHasLeft) {
    std::vector<std::unique_ptr<Connection>> all;
    for (int i = 0; i < 8; ++i) {
        all.push_back(std::make_unique<Connection>());
        EXPECT_TRUE(all.back()->next().contains("television"));
    }
    {
        Connection refused;
        EXPECT_TRUE(refused.next().contains("error"));
        EXPECT_TRUE(refused.next().is_null());
    }
    EXPECT_EQ(1, qeltvctl({"monitor", "--count", "1"}).status);
    all.pop_back();
    EXPECT_TRUE(eventually([] { return Connection().next().contains("television"); }));
}

TEST_F(Monitor, LosesWholeLinesWhenItIsSlowAndReportsHowMany) {
    Connection slow;
    slow.next();
    // More bytes than the queue and the socket hold; the television goes on.
    constexpr uint64_t kCalls = 400;
    const auto service =
            hidlhost::findRaw("vendor.qelnova.tv.qeltvapi@1.0::IQelTvApiConfig", "default");
    ASSERT_NE(nullptr, service);
    for (uint64_t i = 0; i < kCalls; ++i) {
        android::hardware::Parcel reply;
        const transactions::Interface* config = transactions::findInterface("IQelTvApiConfig");
        uint32_t code = 0;
        while (strcmp(config->methods[code].name, "a_hidl_qeltvapi_config_set_str_value") != 0) {
            ++code;
        }
        Json arguments = Json::object();
        for (const auto& value : config->methods[code].parameters) {
            if (value.type->kind == transactions::Kind::kString) {
                arguments[value.name] = std::string(60000, 'x');
            } else {
                arguments[value.name] = 0;
            }
        }
        transactions::Files files;
        ASSERT_EQ(android::OK,
                  hidlhost::rawCall(
                          service, "vendor.qelnova.tv.qeltvapi@1.0::IQelTvApiConfig", code + 1,
                          [&](android::hardware::Parcel* parcel) {
                              transactions::write(config->methods[code].parameters, arguments,
                                                  parcel, &files);
                          },
                          &reply));
    }
    uint64_t seen = 0, lost = 0;
    while (seen + lost < kCalls) {
        const Json line = slow.next();
        ASSERT_FALSE(line.is_null());
        lost += line.value("lost", uint64_t{0});
        seen += line.value("method", "") == "a_hidl_qeltvapi_config_set_str_value" ? 1 : 0;
    }
    EXPECT_EQ(kCalls, seen + lost);
    EXPECT_GT(lost, 0u);
    EXPECT_GT(seen, 0u);
}

TEST_F(Monitor, SeesNotificationsOfEachClientAndNamesThemForPeople) {
    const Background client({"watch", "config"}, mDirectory.path() + "/watched");
    ASSERT_TRUE(eventually([] {
        return qeltvctl({"service", "dump"}).out.find("registrations") != std::string::npos;
    }));
    const auto raise = [] {
        return qeltvctl({"service", "raise", "config", "[1,0,7,\"some.item\",0,0]"}).status;
    };
    Connection connection;
    connection.next();
    ASSERT_EQ(0, raise());
    const Json line = connection.next("a_hidl_config_update_nfy_fct");
    EXPECT_EQ(client.pid(), line.at("pid"));
    EXPECT_EQ("some.item", line.at("arguments").at("name")) << line;
    EXPECT_EQ(7, line.at("arguments").at("arg1")) << line;
    EXPECT_EQ(true, line.at("taken"));

    // Again and again, until the tool has connected.
    std::atomic<bool> seen{false};
    std::thread raising([&] {
        while (!seen) raise();
    });
    const Ended shown =
            qeltvctl({"monitor", "--match", "^notify config ", "--count", "1", "--timeout", "20"});
    seen = true;
    raising.join();
    EXPECT_EQ(0, shown.status) << shown.err;
    EXPECT_NE(std::string::npos, shown.out.find("notify config ")) << shown.out;
    EXPECT_NE(std::string::npos, shown.out.find("some.item")) << shown.out;
}

TEST_F(Monitor, ReplaysWithoutDifferencesAndShowsThoseThatThereAre) {
    record({{"config", "set", "picture.contrast", "12"},
            {"config", "get", "picture.contrast"},
            {"channel", "list"}},
           {"--match", "IQelTvApiConfig|IQelTvApiChannelList"});
    // As it was when the recording began.
    ASSERT_EQ(0, qeltvctl({"config", "reset"}).status);
    const Ended same = qeltvctl({"replay", mFile});
    EXPECT_EQ(0, same.status) << same.out << same.err;
    EXPECT_NE(std::string::npos, same.out.find(" 0 with differences")) << same.out;

    // The value that is read differs where it is not set before.
    ASSERT_EQ(0, qeltvctl({"config", "set", "picture.contrast", "13"}).status);
    const Ended other = qeltvctl({"replay", mFile, "--match", "config_get_value"});
    EXPECT_EQ(1, other.status) << other.err;
    EXPECT_NE(std::string::npos, other.out.find("recorded 12, replayed 13")) << other.out;
}

TEST_F(Monitor, RefusesToReplayWhatIsNoRecording) {
    for (const char* line :
         {"nonsense", "[]", "{\"interface\":7}",
          "{\"interface\":\"IQelTvApiConfig\",\"method\":\"a_hidl_qeltvapi_config_get_value\","
          "\"arguments\":{}}",
          "{\"interface\":\"IQelTvApiConfig\",\"method\":\"a_hidl_qeltvapi_config_get_value\","
          "\"arguments\":7}"}) {
        std::ofstream(mFile) << line << "\n";
        const Ended ended = qeltvctl({"replay", mFile});
        EXPECT_EQ(2, ended.status) << line << ended.out;
        EXPECT_NE(std::string::npos, ended.err.find(mFile + ":1: ")) << ended.err;
    }
    EXPECT_EQ(2, qeltvctl({"replay", "/nonexistent"}).status);
}

/** A value of every type, different for each place. */
Json sample(const transactions::Type& type, int* next) {
    using transactions::Kind;
    const int number = ++*next % 100;
    switch (type.kind) {
        case Kind::kBool:
            return number % 2 == 0;
        case Kind::kInt8:
        case Kind::kInt16:
        case Kind::kInt32:
        case Kind::kInt64:
            return -number;
        case Kind::kString:
            return number % 3 == 0 ? Json{{"hex", "ff41"}} : Json("text " + std::to_string(number));
        case Kind::kVector:
            if (type.element->kind == Kind::kUint8) return "00ff10";
            return Json::array({sample(*type.element, next), sample(*type.element, next)});
        case Kind::kStruct: {
            Json json = Json::object();
            for (const auto& field : type.fields) {
                if (field.count == 0) {
                    json[field.name] = sample(*field.type, next);
                } else if (field.type->kind == Kind::kUint8) {
                    json[field.name] = std::string(field.count * 2, '7');
                } else {
                    json[field.name] = Json::array();
                    for (size_t i = 0; i < field.count; ++i) {
                        json[field.name].push_back(sample(*field.type, next));
                    }
                }
            }
            return json;
        }
        case Kind::kHandle:
            return {{"fds", Json::array({number})}, {"ints", Json::array({-number, 5})}};
        default:
            return number;
    }
}

TEST(Transactions, ComeBackFromAParcelAsTheyWereWritten) {
    size_t methods = 0;
    for (const auto& interface : transactions::interfaces()) {
        for (const auto& method : interface.methods) {
            for (const auto* values : {&method.parameters, &method.results}) {
                int next = 0;
                Json json = Json::object();
                bool object = false;
                for (const auto& value : *values) {
                    object |= value.type->kind == transactions::Kind::kObject;
                    json[value.name] = sample(*value.type, &next);
                }
                if (object) continue;
                android::hardware::Parcel sent, received;
                transactions::Files files;
                transactions::write(*values, json, &sent, &files);
                ASSERT_TRUE(transactions::copySent(sent, &received));
                EXPECT_EQ(json, transactions::read(*values, received)) << method.name;
                // As the stub of the service reads it afterwards.
                received.setDataPosition(0);
                EXPECT_EQ(json, transactions::read(*values, received)) << method.name;
                ++methods;
            }
        }
    }
    EXPECT_GT(methods, 1400u);
}

TEST(Transactions, RefuseValuesOfAnotherType) {
    const auto& config = *transactions::findInterface("IQelTvApiConfig");
    for (const auto& method : config.methods) {
        for (const Json& wrong : {Json(1.5), Json(nullptr), Json::array({Json()}), Json(-1e30)}) {
            if (method.parameters.empty()) continue;
            Json json = Json::object();
            for (const auto& value : method.parameters) json[value.name] = wrong;
            android::hardware::Parcel parcel;
            transactions::Files files;
            EXPECT_THROW(transactions::write(method.parameters, json, &parcel, &files),
                         transactions::Malformed)
                    << method.name << wrong;
            android::hardware::Parcel empty;
            EXPECT_THROW(transactions::read(method.parameters, empty), transactions::Malformed);
        }
    }
}

}  // namespace
