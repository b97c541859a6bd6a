/** Clients that hand over what nobody reads, what does not answer, and what is no file. */
#include <fcntl.h>
#include <hidl/Static.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BnHwQelTvApiCallback.h>

#include <condition_variable>
#include <fstream>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "QelTvApiCallbackImpl.h"
#include "daemon.h"
#include "eventually.h"
#include "wire.h"

using namespace wire;
using namespace std::chrono_literals;
using android::hardware::hidl_handle;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using vendor::qelnova::tv::qeltvapi::V1_0::BnHwQelTvApiCallback;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCallback;

namespace {

/** One more than the television serves at a time. */
constexpr int kMany = 17;

/** The tool is a client of its own; status 124 means that no answer came in time. */
Ended timedTool(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(),
                     {"/usr/bin/timeout", "20", QELTV_BUILD_DIR "/tools/qeltvctl"});
    return runProgram(arguments);
}

bool serves() {
    return timedTool({"config", "get", "picture.contrast"}).status == 0;
}

/** Threads that are done in the end, or the process ends. */
class Crowd {
  public:
    void add(std::function<void()> work) { mThreads.emplace_back(std::move(work)); }
    void join() {
        for (auto& thread : mThreads) thread.join();
        mThreads.clear();
    }
    ~Crowd() { join(); }

  private:
    std::vector<std::thread> mThreads;
};

/** The two ends of a pipe or of a pair of sockets. */
struct Ends {
    int read = -1, write = -1;

    static Ends pipe() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) abort();
        return {ends[0], ends[1]};
    }
    static Ends sockets() {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) abort();
        return {ends[0], ends[1]};
    }
    /** Until not one more byte fits. */
    void fill() const {
        const int before = fcntl(write, F_GETFL);
        fcntl(write, F_SETFL, before | O_NONBLOCK);
        const std::vector<char> block(4096);
        for (const size_t size : {block.size(), size_t{1}}) {
            while (::write(write, block.data(), size) > 0) {
            }
        }
        fcntl(write, F_SETFL, before);
    }
};

class HostileClient : public testing::Test {
  protected:
    void SetUp() override {
        television.start();
        tv = IQelTvApi::getService("default", false);
        ASSERT_NE(nullptr, tv);
    }

    /** Has the television write its answer to a descriptor, and closes that here. */
    void debug(int descriptor, const std::vector<std::string>& words) const {
        native_handle_t* native = native_handle_create(1, 0);
        native->data[0] = descriptor;
        hidl_handle handle;
        handle.setTo(native, true);
        hidl_vec<hidl_string> options(words.size());
        for (size_t i = 0; i < words.size(); ++i) options[i] = words[i];
        (void)tv->debug(handle, options).isOk();
    }

    Daemon television;
    android::sp<IQelTvApi> tv;
};

TEST_F(HostileClient, DescriptorsThatNobodyReadsHoldUpNobody) {
    for (const auto& make : {Ends::pipe, Ends::sockets}) {
        const Ends closed = make();
        close(closed.read);
        debug(closed.write, {"dump"});
        ASSERT_TRUE(serves()) << "a descriptor whose reader is gone";

        std::vector<Ends> full(kMany);
        Crowd crowd;
        for (Ends& ends : full) {
            ends = make();
            ends.fill();
            // Before the other one is closed, however late the thread starts.
            crowd.add([this, end = dup(ends.write)] { debug(end, {"dump"}); });
        }
        EXPECT_TRUE(serves()) << "descriptors that are full";
        // Those that wait for a reader give up, or this ends with the test's own limit.
        for (const Ends& ends : full) close(ends.write);
        crowd.join();
        for (const Ends& ends : full) close(ends.read);
        EXPECT_TRUE(serves());
    }
}

TEST_F(HostileClient, AnAnswerThatIsReadArrivesWhole) {
    // More than a pipe holds.
    ASSERT_EQ("ok\n", controlTelevision(tv, {"fault", "*", "delay", "0"}));
    const std::string whole = controlTelevision(tv, {"dump"});
    ASSERT_GT(whole.size(), size_t{65536});
    for (const auto& make : {Ends::pipe, Ends::sockets}) {
        const Ends ends = make();
        Crowd crowd;
        crowd.add([&] { debug(ends.write, {"dump"}); });
        std::string read;
        char buffer[4096];
        for (ssize_t n; (n = ::read(ends.read, buffer, sizeof(buffer))) > 0;) {
            read.append(buffer, static_cast<size_t>(n));
        }
        close(ends.read);
        EXPECT_EQ(whole.size(), read.size());
        EXPECT_EQ("ok\n", read.substr(read.size() - std::min<size_t>(3, read.size())));
    }
}

class Gate {
  public:
    void open() {
        std::lock_guard<std::mutex> guard(mLock);
        mOpen = true;
        mChanged.notify_all();
    }
    void pass() {
        std::unique_lock<std::mutex> guard(mLock);
        mChanged.wait(guard, [&] { return mOpen; });
    }

  private:
    std::mutex mLock;
    std::condition_variable mChanged;
    bool mOpen = false;
};

/** The stub of a callback object that serves no transaction before a gate is open. */
class SilentStub : public BnHwQelTvApiCallback {
  public:
    SilentStub(const android::sp<IQelTvApiCallback>& object, Gate& gate)
            : BnHwQelTvApiCallback(object), mGate(gate) {}

    android::status_t onTransact(uint32_t code, const android::hardware::Parcel& data,
                                 android::hardware::Parcel* reply, uint32_t flags,
                                 TransactCallback callback) override {
        mGate.pass();
        return BnHwQelTvApiCallback::onTransact(code, data, reply, flags, std::move(callback));
    }

  private:
    Gate& mGate;
};

TEST_F(HostileClient, CallbackObjectsThatDoNotAnswerHoldUpNobody) {
    // Never destroyed: calls may be in it at the end of the process.
    static auto& gate = *new Gate;
    auto& constructors = android::hardware::details::getBnConstructorMap();
    const auto usual = constructors.get(IQelTvApiCallback::descriptor, nullptr);
    constructors.set(IQelTvApiCallback::descriptor,
                     [](void* object) -> android::sp<android::hardware::IBinder> {
                         return new SilentStub(static_cast<IQelTvApiCallback*>(object), gate);
                     });
    std::vector<android::sp<QelTvApiCallbackImpl>> objects;
    for (int i = 0; i < kMany; ++i) objects.push_back(new QelTvApiCallbackImpl);
    Crowd crowd;
    for (const auto& object : objects) {
        crowd.add([this, object] { (void)tv->a_hidl_registerCallbackHandler(object).isOk(); });
    }
    EXPECT_TRUE(serves());
    gate.open();
    crowd.join();
    constructors.set(IQelTvApiCallback::descriptor, usual);
    EXPECT_NE(std::string::npos,
              controlTelevision(tv, {"dump"}).find("\"pid\": " + std::to_string(getpid())));
}

TEST_F(HostileClient, PipesAndLinksInPlaceOfFilesAreRefused) {
    const TemporaryDirectory directory;
    const std::string elsewhere = directory.path() + "/elsewhere";
    std::ofstream(elsewhere) << "another's";
    const struct {
        const char* file;
        std::vector<std::string> call;
    } kCases[] = {
            {"/.qeltv-disk", {"a_qeltvapi_record_check_register_file", directory.path(), "0"}},
            {"/.qeltv-disk", {"a_qeltvapi_record_check_register_file", directory.path(), "1"}},
            {"/.qeltv-disk", {"a_qeltvapi_record_create_register_file", directory.path()}},
            {"/timeshift.buffer",
             {"a_qeltvapi_timeshift_registerDevice", directory.path(), std::to_string(2 << 20)}},
            {"/key", {"a_qeltvapi_ci_key_update_with_path", directory.path() + "/key"}},
            {"/key", {"a_qeltvapi_ci_key_update_with_path_ex", directory.path() + "/key", "1"}},
    };
    for (const auto& each : kCases) {
        const std::string path = directory.path() + each.file;
        const std::function<int()> kinds[] = {
                [&] { return mkfifo(path.c_str(), 0600); },
                [&] { return mkdir(path.c_str(), 0700); },
                [&] { return symlink("/dev/zero", path.c_str()); },
                [&] { return symlink(elsewhere.c_str(), path.c_str()); },
                [&] { return link(elsewhere.c_str(), path.c_str()); },
        };
        // Any television's register file counts here, under how many names it may be.
        const size_t count = std::size(kinds) - (each.call.back() == "0" ? 1 : 0);
        for (size_t kind = 0; kind < count; ++kind) {
            ASSERT_EQ(0, kinds[kind]()) << path;
            std::vector<std::string> words = each.call;
            words.insert(words.begin(), "call");
            const Ended ended = timedTool(words);
            EXPECT_EQ(1, ended.status)
                    << words[1] << ", " << kind << ": " << ended.out << ended.err;
            EXPECT_EQ(0, remove(path.c_str())) << words[1] << ", " << kind << ": it is gone";
        }
    }
    std::string content;
    std::getline(std::ifstream(elsewhere), content);
    EXPECT_EQ("another's", content);
    EXPECT_TRUE(serves());
}

}  // namespace
