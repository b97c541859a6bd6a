// What a transaction may rely on: its target lives, its caller's thread serves what comes back, and
// neither memory nor threads of a process are one client's alone.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <hidl/HidlTransportSupport.h>
#include <hidlhost/raw_service.h>
#include <hidlhost/test/kit/1.0/IServiceChild.h>

#include "Node.h"
#include "Registry.h"
#include "Services.h"
#include "Socket.h"
#include "Wire.h"
#include "kit_process.h"

namespace {

using namespace std::chrono_literals;
using ::android::FAILED_TRANSACTION;
using ::android::OK;
using ::android::sp;
using ::android::status_t;
using ::android::hardware::hidl_string;
using ::android::hardware::hidl_vec;
using ::android::hardware::IBinder;
using ::android::hardware::Parcel;
using ::android::hardware::Return;
using ::android::hardware::Void;
using namespace ::hidlhost;
using namespace ::hidlhost::test::kit::V1_0;
using Clock = std::chrono::steady_clock;

/** Positions among the methods of IService.hal. */
constexpr uint32_t kPid = 1;
constexpr uint32_t kFill = 20;
constexpr char kRaw[] = "transactions@1.0::IRaw";

class Listener : public IListener {
  public:
    Return<int32_t> onValue(int32_t value) override {
        note();
        return value;
    }
    Return<void> onText(const hidl_string& text, onText_cb result) override {
        result(text, static_cast<int32_t>(text.size()));
        return Void();
    }
    Return<void> onEvent(uint32_t) override {
        note();
        return Void();
    }
    std::set<std::thread::id> threads() {
        std::lock_guard<std::mutex> lock(mMutex);
        return mThreads;
    }
    size_t calls() {
        std::lock_guard<std::mutex> lock(mMutex);
        return mCalls;
    }

  private:
    void note() {
        std::lock_guard<std::mutex> lock(mMutex);
        mThreads.insert(std::this_thread::get_id());
        ++mCalls;
    }

    std::mutex mMutex;
    std::set<std::thread::id> mThreads;
    size_t mCalls = 0;
};

/** A client that sends bytes of its own and reads what it likes. */
class Stranger {
  public:
    explicit Stranger(const std::string& node, pid_t speaksFor = getpid()) {
        EXPECT_EQ(connectTo(registry::socketPath(node), 20000, &mSocket), OK);
        MessageHeader header = {};
        header.kind = kHello;
        header.code = kCalls;
        std::string names = std::to_string(speaksFor) + "-feedfacecafebeef";
        names += '\0' + node + '\0';
        send(header, names);
    }
    bool call(uint64_t object, uint32_t code, const std::vector<uint32_t>& arguments = {}) {
        MessageHeader header = {};
        header.kind = kCall;
        header.object = object;
        header.code = code;
        std::string stream = IService::descriptor;
        stream.resize((stream.size() + 4) / 4 * 4);
        stream.append(reinterpret_cast<const char*>(arguments.data()), arguments.size() * 4);
        return send(header, stream);
    }
    /** Sends so much of a call of as many bytes as announced. */
    void begin(uint32_t announced, size_t sent) {
        MessageHeader header = {};
        header.magic = kMagic;
        header.kind = kCall;
        header.payloadSize = announced;
        std::vector<uint8_t> packet(kPacketSize);
        memcpy(packet.data(), &header, sizeof(header));
        for (size_t done = 0; done < sent; done += packet.size()) {
            if (::send(mSocket, packet.data(), packet.size(), MSG_NOSIGNAL) < 0) return;
        }
    }
    bool answered() {
        MessageHeader header;
        return recv(mSocket, &header, sizeof(header), 0) == sizeof(header) && header.code == 0;
    }

  private:
    bool send(MessageHeader header, const std::string& stream) {
        header.magic = kMagic;
        header.dataSize = static_cast<uint32_t>(stream.size());
        std::vector<uint8_t> bytes(sizeof(header) + static_cast<size_t>(padded(stream.size())));
        memcpy(bytes.data(), &header, sizeof(header));
        memcpy(bytes.data() + sizeof(header), stream.data(), stream.size());
        return ::send(mSocket, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
               static_cast<ssize_t>(bytes.size());
    }
    android::base::unique_fd mSocket;
};

class Transaction : public testing::Test {
  protected:
    void start(const kit::Process::Options& options = {}) {
        mProcess = std::make_unique<kit::Process>(options);
        ASSERT_TRUE(mProcess->ready()) << mProcess->errors();
        mService = IServiceChild::getService("kit");
        ASSERT_NE(mService, nullptr);
        ASSERT_TRUE(registry::find(IServiceChild::descriptor, "kit", &mEntry));
    }
    bool serving() { return mService->pid().withDefault(0) == mProcess->pid(); }
    size_t pushed() {
        size_t count = 0;
        EXPECT_TRUE(mService->pushed([&](const auto& all) { count = all.size(); }).isOk());
        return count;
    }
    size_t residentBytes() const {
        std::ifstream file("/proc/" + std::to_string(mProcess->pid()) + "/statm");
        size_t pages = 0;
        file >> pages >> pages;
        return pages * static_cast<size_t>(sysconf(_SC_PAGESIZE));
    }

    std::unique_ptr<kit::Process> mProcess;
    sp<IServiceChild> mService;
    registry::Entry mEntry;
};

TEST_F(Transaction, OnewayReachesAnObjectWhoseLastProxyIsDroppedAtOnce) {
    start();
    for (int32_t i = 0; i < 200; ++i) {
        sp<IListener> child = mService->makeChild(i);
        ASSERT_TRUE(child->onEvent(static_cast<uint32_t>(i)).isOk());
    }
    EXPECT_TRUE(eventually([&] { return pushed() == 200; })) << pushed();
    EXPECT_TRUE(eventually([&] { return mService->liveChildren().withDefault(-1) == 0; }));
}

TEST_F(Transaction, OnewayReachesItsObjectThoughTheSenderEndsAtOnce) {
    if (QELTV_EMULATOR[0] != '\0') GTEST_SKIP() << "the emulator allows a child no threads";
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
    GTEST_SKIP() << "the race detector allows a child no threads";
#endif
#endif
    start();
    const pid_t sender = fork();
    if (sender == 0) {
        sp<IServiceChild> service = IServiceChild::getService("kit");
        if (service == nullptr) _exit(1);
        sp<IListener> child = service->makeChild(-2);  // takes so many ms for each
        bool good = child != nullptr;
        for (uint32_t i = 0; i < 100 && good; ++i) good = child->onEvent(i).isOk();
        _exit(good ? 0 : 2);
    }
    int status = 0;
    ASSERT_EQ(waitpid(sender, &status, 0), sender);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(eventually([&] { return pushed() == 100; })) << pushed();
    EXPECT_TRUE(eventually([&] { return mService->liveChildren().withDefault(-1) == 0; }));
}

TEST_F(Transaction, OfAClientThatReadsNoReplyTakesNoPlaceInThePool) {
    start({2});
    ASSERT_TRUE(serving());
    std::vector<std::unique_ptr<Stranger>> idle;
    for (int i = 0; i < 20; ++i) {
        idle.push_back(std::make_unique<Stranger>(mEntry.node));
        ASSERT_TRUE(idle.back()->call(mEntry.object, kFill, {1000000, 1}));
    }
    const auto begin = Clock::now();
    for (int i = 0; i < 20; ++i) EXPECT_TRUE(serving());
    EXPECT_LT(Clock::now() - begin, 5s);
}

TEST_F(Transaction, AHelloInTheNameOfAnotherProcessIsRefused) {
    start();
    Stranger honest(mEntry.node);
    ASSERT_TRUE(honest.call(mEntry.object, kPid));
    EXPECT_TRUE(honest.answered());
    Stranger forger(mEntry.node, 1);
    forger.call(mEntry.object, kPid);
    EXPECT_FALSE(forger.answered());
    EXPECT_TRUE(eventually([&] {
        return mProcess->errors().find("speaks for process 1; closed") != std::string::npos;
    }));
    EXPECT_TRUE(serving());
}

TEST_F(Transaction, ADeathThatCannotBeNoticedIsNotLinkedTo) {
#ifdef QELTV_SANITIZED
    GTEST_SKIP() << "a sanitizer needs descriptors of the service to check its objects";
#endif
    start();
    ASSERT_TRUE(serving());  // over the connection that is used below
    sp<Listener> listener = new Listener;
    rlimit before;
    ASSERT_EQ(prlimit(mProcess->pid(), RLIMIT_NOFILE, nullptr, &before), 0);
    const rlimit none{0, before.rlim_max};
    ASSERT_EQ(prlimit(mProcess->pid(), RLIMIT_NOFILE, &none, nullptr), 0);
    EXPECT_FALSE(mService->watches(listener).withDefault(true));
    ASSERT_EQ(prlimit(mProcess->pid(), RLIMIT_NOFILE, &before, nullptr), 0);
    EXPECT_TRUE(mService->watches(listener).withDefault(false));
}

TEST_F(Transaction, PartialMessagesOfAllConnectionsShareABound) {
    constexpr uint32_t kAnnounced = 31u << 20;
    constexpr size_t kSent = 16u << 20;
    start({8, {"QELTV_TRANSACTION_BYTES=0"}});
    ASSERT_TRUE(serving());
    const size_t before = residentBytes();
    std::vector<std::unique_ptr<Stranger>> half;
    for (int i = 0; i < 20; ++i) {
        half.push_back(std::make_unique<Stranger>(mEntry.node));
        half.back()->begin(kAnnounced, kSent);
    }
#ifndef QELTV_SANITIZED
    EXPECT_LT(residentBytes() - before, size_t{80} << 20);
#else
    (void)before;  // a sanitizer keeps a record of every byte beside it
#endif
    // Nobody is kept from a message of some packets.
    EXPECT_EQ(mService->sum(std::vector<uint8_t>(1000000, 1)).withDefault(0), 1000000u);
    // None of them is waited for without end.
    EXPECT_TRUE(eventually(
            [&] {
                const std::string errors = mProcess->errors();
                size_t found = 0;
                for (size_t at = 0;
                     (at = errors.find("stopped within a message", at)) != std::string::npos; ++at)
                    ++found;
                return found == half.size();
            },
            60s));
}

TEST_F(Transaction, OfMoreThanAMegabyteFails) {
    start();
    EXPECT_EQ(mService->sum(std::vector<uint8_t>(1000000, 1)).withDefault(0), 1000000u);
    const auto sum = mService->sum(std::vector<uint8_t>(1100000, 1));
    EXPECT_FALSE(sum.isOk());
    EXPECT_FALSE(sum.isDeadObject());
    const auto fill = mService->fill(1100000, 1, [](const auto&) { ADD_FAILURE(); });
    EXPECT_FALSE(fill.isOk());
    EXPECT_FALSE(fill.isDeadObject());
    EXPECT_TRUE(serving());
}

/** A service of this process whose calls stay in progress until it is opened. */
class Space : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(mHost.add(kRaw, "default",
                            [this](const RawCall& call, Parcel* reply) {
                                std::unique_lock<std::mutex> lock(mMutex);
                                ++mInside;
                                mChanged.notify_all();
                                if (call.code == 1) mChanged.wait(lock, [this] { return mOpen; });
                                writeOk(reply);
                                return OK;
                            }),
                  OK);
        mRaw = findRaw(kRaw, "default");
        ASSERT_NE(mRaw, nullptr);
    }
    void TearDown() override { open(); }

    void open() {
        std::lock_guard<std::mutex> lock(mMutex);
        mOpen = true;
        mChanged.notify_all();
    }
    status_t call(uint32_t code, size_t bytes, uint32_t flags = 0) {
        Parcel reply;
        return rawCall(
                mRaw, kRaw, code,
                [&](Parcel* arguments) { writeVector(arguments, std::vector<uint8_t>(bytes)); },
                &reply, flags);
    }
    bool inside(size_t count) {
        std::unique_lock<std::mutex> lock(mMutex);
        return mChanged.wait_for(lock, 20s, [&] { return mInside == count; });
    }

    RawHost mHost;
    sp<IBinder> mRaw;
    std::mutex mMutex;
    std::condition_variable mChanged;
    size_t mInside = 0;
    bool mOpen = false;
};

TEST_F(Space, OfOneMegabyteIsSharedByAllCallsInProgress) {
    std::vector<std::future<status_t>> calls;
    for (size_t i = 1; i <= 2; ++i) {
        calls.push_back(std::async(std::launch::async, [&] { return call(1, 400000); }));
        ASSERT_TRUE(inside(i));
    }
    EXPECT_EQ(call(2, 400000), FAILED_TRANSACTION);
    EXPECT_EQ(call(2, 200000), OK) << "there is space for this one";
    open();
    for (auto& done : calls) EXPECT_EQ(done.get(), OK);
    EXPECT_EQ(call(2, 1000000), OK) << "everything has been given back";
}

TEST_F(Space, ForOnewayCallsIsHalfAndTheirSenderLearnsWhenItIsUsed) {
    constexpr size_t kEach = 10000;
    size_t accepted = 0;
    status_t status = OK;
    const auto begin = Clock::now();
    while (accepted < 1000 && (status = call(1, kEach, IBinder::FLAG_ONEWAY)) == OK) ++accepted;
    EXPECT_EQ(status, FAILED_TRANSACTION);
    // A little more than half at most: not every call is asked about.
    EXPECT_GE(accepted * kEach, 480000u);
    EXPECT_LE(accepted * kEach, 560000u);
    EXPECT_LT(Clock::now() - begin, 5s) << "nobody waits for space";
    EXPECT_EQ(call(2, 400000), OK) << "the other half";
    open();
    ASSERT_TRUE(inside(accepted + 1)) << "and everything accepted arrives";
    EXPECT_TRUE(eventually([&] { return call(2, kEach, IBinder::FLAG_ONEWAY) == OK; }));
}

/** A process that takes its time over every packet and never answers. */
class SlowReader {
  public:
    SlowReader(const std::string& interface, std::chrono::milliseconds pause) : mPause(pause) {
        EXPECT_EQ(listenAt(registry::socketPath(mNode), &mListener), OK);
        EXPECT_EQ(fcntl(mListener, F_SETFL, O_NONBLOCK), 0);
        EXPECT_EQ(registry::publish(interface, "slow", {mNode, 1}), OK);
        mThread = std::thread([this] { read(); });
    }
    ~SlowReader() {
        mEnd.set_value();
        mThread.join();
        registry::withdrawNode(mNode);
    }
    SlowReader(const SlowReader&) = delete;
    SlowReader& operator=(const SlowReader&) = delete;

  private:
    void read() {
        const auto ends = mEnd.get_future();
        std::vector<android::base::unique_fd> sockets;
        std::vector<uint8_t> packet(kPacketSize);
        do {
            const int accepted = accept4(mListener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
            if (accepted >= 0) sockets.emplace_back(accepted);
            for (const auto& socket : sockets) {
                (void)!recv(socket, packet.data(), packet.size(), 0);
            }
        } while (ends.wait_for(mPause) == std::future_status::timeout);
    }

    const std::chrono::milliseconds mPause;
    const std::string mNode = std::to_string(getpid()) + "-feedfacecafebee5";
    android::base::unique_fd mListener;
    std::promise<void> mEnd;
    std::thread mThread;
};

TEST(SlowReader, HoldsTheSenderOfAOnewayCallForTenSecondsHoweverManyPacketsItHas) {
    const SlowReader reader(kRaw, 3s);
    const sp<IBinder> raw = findRaw(kRaw, "slow");
    ASSERT_NE(raw, nullptr);
    const auto begin = Clock::now();
    Parcel reply;
    EXPECT_EQ(
            rawCall(
                    raw, kRaw, 1,
                    [](Parcel* arguments) { writeVector(arguments, std::vector<uint8_t>(500000)); },
                    &reply, IBinder::FLAG_ONEWAY),
            FAILED_TRANSACTION);
    EXPECT_LT(Clock::now() - begin, 14s);
}

TEST(Pool, ConfiguredBetweenOnewayCallsLeavesThemInTheirOrder) {
    // More than are sent before the receiver has to accept one, and so has received all.
    constexpr uint32_t kBefore = kMaxUnaskedCalls + 1;
    constexpr uint32_t kAll = kBefore + 20;
    std::promise<void> opened;
    std::mutex mutex;
    std::vector<uint32_t> arrived;
    const std::shared_ptr<Node> node = Node::create();
    const sp<RawService> service =
            new RawService(std::vector<std::string>{kRaw}, [&](const RawCall& call, Parcel*) {
                if (call.code == 1) opened.get_future().wait();
                std::lock_guard<std::mutex> lock(mutex);
                arrived.push_back(call.code);
                return OK;
            });
    ASSERT_EQ(registerService(*node, kRaw, "pool", service), OK);
    const sp<IBinder> raw = findRaw(kRaw, "pool");
    ASSERT_NE(raw, nullptr);
    for (uint32_t code = 1; code <= kAll; ++code) {
        if (code == kBefore + 1) node->gate().configure(4, false);
        Parcel reply;
        EXPECT_EQ(rawCall(raw, kRaw, code, nullptr, &reply, IBinder::FLAG_ONEWAY), OK);
    }
    opened.set_value();
    EXPECT_TRUE(eventually([&] {
        std::lock_guard<std::mutex> lock(mutex);
        return arrived.size() == kAll;
    }));
    node->kill();
    std::lock_guard<std::mutex> lock(mutex);
    EXPECT_TRUE(std::is_sorted(arrived.begin(), arrived.end()));
    registry::withdrawNode(node->name());
}

TEST_F(Transaction, ACallBackRunsOnTheThreadThatWaits) {
    start({1});
    sp<Listener> listener = new Listener;
    EXPECT_EQ(mService->callBack(listener, 5).withDefault(0), 5);
    std::thread([&] {
        EXPECT_EQ(mService->callBack(listener, 6).withDefault(0), 6);
        EXPECT_EQ(listener->threads().count(std::this_thread::get_id()), 1u);
    }).join();
    EXPECT_EQ(listener->threads().count(std::this_thread::get_id()), 1u);
    EXPECT_EQ(listener->threads().size(), 2u);
}

TEST_F(Transaction, ALoopOfCallsBackEndsInAFailure) {
    class Looping : public Listener {
      public:
        explicit Looping(sp<IServiceChild> service) : mService(std::move(service)) {}
        Return<int32_t> onValue(int32_t value) override {
            ++depth;
            return mService->callBack(this, value).withDefault(-2);
        }
        int depth = 0;

      private:
        const sp<IServiceChild> mService;
    };
    start({1});
    sp<Looping> looping = new Looping(mService);
    EXPECT_EQ(mService->callBack(looping, 1).withDefault(0), -2);
    EXPECT_GT(looping->depth, 5);
    EXPECT_TRUE(serving());
}

TEST_F(Transaction, CallsToAProcessThatNamesNoThreadsRunOnOneThread) {
    start();
    kit::Process second;
    ASSERT_TRUE(second.ready());
    sp<IServiceChild> other = IServiceChild::getService("kit");
    ASSERT_NE(other, nullptr);
    sp<Listener> listener = new Listener;
    for (const sp<IServiceChild>& service : {sp<IServiceChild>(mService), other}) {
        ASSERT_TRUE(service->setListener(listener).isOk());
    }
    ASSERT_TRUE(mService->notify(50).isOk());
    ASSERT_TRUE(other->notify(50).isOk());
    // Outside of any call of this process, so that no thread of it waits.
    ASSERT_TRUE(mService->callFromThread(7).isOk());
    EXPECT_TRUE(eventually([&] { return listener->calls() == 101; })) << listener->calls();
    EXPECT_EQ(listener->threads().size(), 1u);
    EXPECT_EQ(listener->threads().count(std::this_thread::get_id()), 0u);
}

// A device's process without a pool has one thread; to leave that out saves two switches of it.
TEST_F(Transaction, AnyThreadServesAProcessWithoutAPoolIfItsVariableSaysSo) {
    const auto hasMain = [&] {
        const std::string tasks = "/proc/" + std::to_string(mProcess->pid()) + "/task";
        for (const auto& task : std::filesystem::directory_iterator(tasks)) {
            std::string name;
            std::getline(std::ifstream(task.path() / "comm"), name);
            if (name == "hidl-main") return true;
        }
        return false;
    };
    for (const bool any : {false, true}) {
        start({0, {any ? "QELTV_ANY_THREAD=1" : "QELTV_ANY_THREAD=0"}});
        ASSERT_TRUE(serving());
        EXPECT_EQ(hasMain(), !any);
        // Still no two at a time.
        const auto slow = [&] { return mService->slow(50).withDefault(0); };
        auto other = std::async(std::launch::async, slow);
        EXPECT_EQ(slow(), 1u);
        EXPECT_EQ(other.get(), 1u);
        mService = nullptr;
    }
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    char directory[] = "/tmp/transaction-XXXXXX";
    if (mkdtemp(directory) == nullptr || setenv("QELTV_RUNTIME_DIR", directory, 1) != 0) return 1;
    const int result = RUN_ALL_TESTS();
    std::filesystem::remove_all(directory);
    return result;
}
