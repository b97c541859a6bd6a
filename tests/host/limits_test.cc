// Peers that overdo it: the largest messages, silence, crowds. Each ends in a clear error, and
// whoever else uses the same process does not notice.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <future>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <hidlhost/raw_service.h>
#include <hidlhost/test/kit/1.0/IServiceChild.h>

#include "Registry.h"
#include "Socket.h"
#include "Wire.h"
#include "kit_process.h"

namespace {

using namespace std::chrono_literals;
using ::android::OK;
using ::android::sp;
using ::android::status_t;
using ::android::hardware::hidl_handle;
using ::android::hardware::hidl_vec;
using ::android::hardware::IBinder;
using ::android::hardware::Parcel;
using ::android::hardware::Return;
using ::android::hardware::Void;
using namespace ::hidlhost;
using namespace ::hidlhost::test::kit::V1_0;

constexpr char kRaw[] = "limits@1.0::IRaw";
const std::string kStranger = std::to_string(getpid()) + "-feedfacecafebeef";
/** Positions among the methods of IService.hal. */
constexpr uint32_t kPid = 1;
constexpr uint32_t kFill = 20;

std::vector<uint8_t> message(MessageHeader header, const std::string& stream) {
    header.magic = kMagic;
    header.dataSize = static_cast<uint32_t>(stream.size());
    std::vector<uint8_t> bytes(sizeof(header) + static_cast<size_t>(padded(stream.size())));
    memcpy(bytes.data(), &header, sizeof(header));
    memcpy(bytes.data() + sizeof(header), stream.data(), stream.size());
    return bytes;
}

/** A client that does only what the test says. */
class Stranger {
  public:
    enum class Manners { kSaysHello, kSaysNothing };
    explicit Stranger(const std::string& node, Manners manners = Manners::kSaysHello) {
        mConnected = connectTo(registry::socketPath(node), 20000, &mSocket) == android::OK;
        if (manners == Manners::kSaysNothing) return;
        MessageHeader header = {};
        header.kind = kHello;
        header.code = kCalls;
        send(message(header, kStranger + std::string(1, '\0') + node + '\0'));
    }

    bool call(uint64_t object, uint32_t code, const std::vector<uint32_t>& arguments = {}) {
        MessageHeader header = {};
        header.kind = kCall;
        header.object = object;
        header.code = code;
        std::string stream = IService::descriptor;
        stream.resize((stream.size() + 4) / 4 * 4);
        stream.append(reinterpret_cast<const char*>(arguments.data()), arguments.size() * 4);
        return send(message(header, stream));
    }
    /** Whether an answer comes, before the end. */
    bool answered() {
        MessageHeader header;
        return recv(mSocket, &header, sizeof(header), 0) == sizeof(header) &&
               header.kind == kReply && header.code == 0;
    }
    bool connected() const { return mConnected; }
    /** Without waiting: whether the other side has ended it. */
    bool ended() const { return hasHungUp(mSocket); }
    /** Whether something has come that is not read yet. */
    bool hasSomething() const {
        char byte;
        return recv(mSocket, &byte, sizeof(byte), MSG_PEEK | MSG_DONTWAIT) > 0;
    }

  private:
    bool send(const std::vector<uint8_t>& bytes) {
        return ::send(mSocket, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
               static_cast<ssize_t>(bytes.size());
    }

    android::base::unique_fd mSocket;
    bool mConnected;
};

size_t count(const std::string& text, const std::string& part) {
    size_t found = 0;
    for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++found;
    return found;
}

class Limits : public testing::Test {
  protected:
    void start(size_t threads = 8) {
        mProcess = std::make_unique<kit::Process>(kit::Process::Options{threads});
        ASSERT_TRUE(mProcess->ready()) << mProcess->errors();
        mService = IServiceChild::getService("kit");
        ASSERT_NE(mService, nullptr);
        ASSERT_TRUE(registry::find(IServiceChild::descriptor, "kit", &mEntry));
    }
    bool serving() { return mService->pid().withDefault(0) == mProcess->pid(); }

    std::unique_ptr<kit::Process> mProcess;
    sp<IServiceChild> mService;
    registry::Entry mEntry;
};

TEST_F(Limits, AMessageMayBe32MiBAndNotMore) {
    // What a vector's message holds besides its elements: header, stream, two records, the vector.
    constexpr size_t kAnswerFrame = 48 + 16 + 2 * 24 + 16;
    constexpr size_t kLargest = (32u << 20) - kAnswerFrame;
    std::atomic<size_t> wanted{0};
    std::atomic<size_t> arrived{0};
    RawHost host;
    ASSERT_EQ(host.add(kRaw, "default",
                       [&](const RawCall& call, Parcel* reply) {
                           std::vector<uint8_t> bytes;
                           if (!readVector(call.arguments, &bytes)) return android::BAD_VALUE;
                           arrived = bytes.size();
                           bytes.assign(wanted, 0x5a);
                           writeOk(reply);
                           writeVector(reply, bytes);
                           return OK;
                       }),
              OK);
    const sp<IBinder> raw = findRaw(kRaw, "default");
    ASSERT_NE(raw, nullptr);
    // The size and the last byte of a result are looked at.
    using Outcome = std::pair<status_t, size_t>;
    auto ask = [&](size_t send, size_t receive) -> Outcome {
        wanted = receive;
        arrived = 0;
        Parcel reply;
        const status_t status = rawCall(
                raw, kRaw, 1,
                [&](Parcel* arguments) { writeVector(arguments, std::vector<uint8_t>(send)); },
                &reply);
        std::vector<uint8_t> bytes;
        if (status != OK) return {status, 0};
        EXPECT_EQ(reply.readInt32(), 0);
        EXPECT_TRUE(readVector(reply, &bytes));
        if (!bytes.empty()) EXPECT_EQ(bytes.back(), 0x5a);
        return {status, bytes.size()};
    };

    EXPECT_EQ(ask(3, kLargest), Outcome(OK, kLargest));
    EXPECT_EQ(arrived, 3u);
    EXPECT_EQ(ask(3, kLargest + 1), Outcome(android::NO_MEMORY, 0));
    EXPECT_EQ(arrived, 3u) << "the call itself was carried out";
    EXPECT_EQ(ask(32u << 20, 5), Outcome(android::NO_MEMORY, 0));
    EXPECT_EQ(arrived, 0u);
    EXPECT_EQ(ask(4, 5), Outcome(OK, 5)) << "and nothing has suffered";
}

TEST_F(Limits, SilenceIsReportedAtDoubledIntervals) {
    class Waiting : public IListener {
      public:
        Return<int32_t> onValue(int32_t value) override {
            mReleased.get_future().wait();
            return value;
        }
        Return<void> onText(const ::android::hardware::hidl_string&, onText_cb) override {
            return Void();
        }
        Return<void> onEvent(uint32_t) override { return Void(); }
        std::promise<void> mReleased;
    };
    start();
    sp<Waiting> listener = new Waiting;
    auto outcome = std::async(std::launch::async,
                              [&] { return mService->callBack(listener, 21).withDefault(0); });
    auto lines = [&] { return count(mProcess->errors(), "IListener has not answered call 1 for"); };
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(eventually([&] { return lines() == 1; }));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 900ms);
    EXPECT_TRUE(eventually([&] { return lines() == 2; }));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 2900ms) << mProcess->errors();
    EXPECT_TRUE(serving());
    listener->mReleased.set_value();
    EXPECT_EQ(outcome.get(), 21) << "without a limit, however late";
}

TEST_F(Limits, AClientThatDoesNotReadLosesItsConnectionOnly) {
    start();
    // What the service opens once and for all is open before descriptors are counted.
    std::make_unique<Stranger>(mEntry.node)->call(mEntry.object, kPid);
    std::this_thread::sleep_for(200ms);
    const size_t before = static_cast<size_t>(mService->openDescriptors().withDefault(0));
    Stranger idle(mEntry.node);
    ASSERT_TRUE(idle.call(mEntry.object, kFill, {24u << 20, 1}));
    // The service is stuck in the middle of an answer; nobody else waits for it.
    EXPECT_TRUE(eventually([&] { return idle.hasSomething(); }));
    const auto begin = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - begin < 1s) ASSERT_TRUE(serving());
    EXPECT_TRUE(eventually(
            [&] {
                return static_cast<size_t>(mService->openDescriptors().withDefault(0)) <= before;
            },
            60s))
            << "the connection is still there";
}

/** Ten thousand connections to one process. */
class Crowd : public Limits {
  protected:
    static constexpr size_t kCrowd = 10000;

    void SetUp() override {
        rlimit files;
        ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &files), 0);
        // The service keeps a quarter of its descriptors for other things.
        if (files.rlim_max < kCrowd * 3 / 2) GTEST_SKIP() << "too few descriptors for a crowd";
        mBefore = files;
        files.rlim_cur = files.rlim_max;
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &files), 0);
        start();
        ASSERT_TRUE(serving());
    }
    void TearDown() override {
        if (mBefore.rlim_max != 0) setrlimit(RLIMIT_NOFILE, &mBefore);
    }

    void gather(Stranger::Manners manners) {
        for (size_t i = 0; i < kCrowd; ++i) {
            mCrowd.push_back(std::make_unique<Stranger>(mEntry.node, manners));
            ASSERT_TRUE(mCrowd.back()->connected()) << i;
            if (manners == Stranger::Manners::kSaysHello) mCrowd.back()->call(mEntry.object, kPid);
        }
    }
    bool takesNewOnes() {
        Stranger late(mEntry.node);
        return late.call(mEntry.object, kPid) && late.answered();
    }

    std::vector<std::unique_ptr<Stranger>> mCrowd;

  private:
    rlimit mBefore = {};
};

TEST_F(Crowd, OfCallersIsTurnedAwayAndTheGuestsStay) {
    gather(Stranger::Manners::kSaysHello);
    size_t answered = 0;
    for (const auto& one : mCrowd) answered += one->answered();
    // Some of the thousand are the connections of this process.
    EXPECT_LE(answered, 1000u);
    EXPECT_GE(answered, 980u);
    EXPECT_TRUE(serving());
    EXPECT_EQ(count(mProcess->errors(), "connections are enough"), 1u) << mProcess->errors();

    mCrowd.clear();
    EXPECT_TRUE(eventually([&] { return takesNewOnes(); }));
    EXPECT_TRUE(serving());
}

TEST_F(Crowd, OfSilentOnesCostsDescriptorsOnlyAndIsGoneAfterAWhile) {
    const size_t threads = mProcess->threads();
    gather(Stranger::Manners::kSaysNothing);
    EXPECT_TRUE(serving());
    EXPECT_TRUE(takesNewOnes()) << "among ten thousand that say nothing";
    EXPECT_LT(mProcess->threads(), threads + 20);
    EXPECT_FALSE(mCrowd.back()->ended());

    EXPECT_TRUE(eventually(
            [&] {
                return std::all_of(mCrowd.begin(), mCrowd.end(),
                                   [](const auto& one) { return one->ended(); });
            },
            60s))
            << "nobody may keep a connection that is used for nothing";
    EXPECT_TRUE(serving());
    EXPECT_TRUE(takesNewOnes());
}

TEST_F(Limits, WithoutDescriptorsClientsAreTurnedAwayAtOnce) {
    start();
    ASSERT_TRUE(serving());
    ASSERT_TRUE(Stranger(mEntry.node).connected());
    // So few that they run out before the service's own limit of connections is reached.
    const auto inUse = static_cast<rlim_t>(mService->openDescriptors().withDefault(0));
    const rlimit few{inUse + 8, inUse + 8};
    ASSERT_EQ(prlimit(mProcess->pid(), RLIMIT_NOFILE, &few, nullptr), 0) << strerror(errno);

    std::vector<std::unique_ptr<Stranger>> crowd;
    for (int i = 0; i < 200; ++i) {
        crowd.push_back(std::make_unique<Stranger>(mEntry.node));
        crowd.back()->call(mEntry.object, kPid);
    }
    size_t answered = 0;
    for (const auto& one : crowd) answered += one->answered();
    EXPECT_GT(answered, 0u);
    EXPECT_LT(answered, 20u);
    EXPECT_TRUE(serving());
    const std::string errors = mProcess->errors();
    EXPECT_EQ(count(errors, "refused a connection: Too many open files"), 1u) << errors;

    // Nor is there one for what a call brings along.
    const auto pass = [&] {
        native_handle_t* native = native_handle_create(1, 0);
        native->data[0] = open("/dev/null", O_RDONLY | O_CLOEXEC);
        hidl_handle file;
        file.setTo(native, true);
        return mService->readAll(file, [](const auto&) {}).isOk();
    };
    // One may be free by now: some are only used in passing.
    const rlimit none{0, few.rlim_max};
    ASSERT_EQ(prlimit(mProcess->pid(), RLIMIT_NOFILE, &none, nullptr), 0) << strerror(errno);
    EXPECT_FALSE(pass());
    ASSERT_EQ(prlimit(mProcess->pid(), RLIMIT_NOFILE, &few, nullptr), 0) << strerror(errno);
    EXPECT_EQ(count(mProcess->errors(), "no descriptors left for what call"), 1u);
    EXPECT_TRUE(serving());

    // It waits for the next client, and for nothing else.
    const auto before = mProcess->processorTime();
    std::this_thread::sleep_for(1s);
    EXPECT_LT(mProcess->processorTime() - before, 200ms);

    crowd.clear();
    EXPECT_TRUE(eventually([&] {
        Stranger late(mEntry.node);
        return late.call(mEntry.object, kPid) && late.answered();
    }));
    EXPECT_TRUE(serving());
    EXPECT_TRUE(pass());
}

}  // namespace
