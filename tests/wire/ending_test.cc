// The end of a process, and dlclose(), while threads are inside the library.

#include <hidlhost/raw_service.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <random>
#include <thread>

#include "daemon.h"
#include "eventually.h"
#include "private_runtime.h"
#include "wire.h"

using namespace wire;
using android::sp;
using android::hardware::IBinder;
using android::hardware::Parcel;

namespace {

const bool sPrivate = usePrivateRuntime();

constexpr char kMain[] = "vendor.qelnova.tv.qeltvapi@1.0::IQelTvApi";
constexpr char kConfig[] = "vendor.qelnova.tv.qeltvapi@1.0::IQelTvApiConfig";
constexpr char kCallback[] = "vendor.qelnova.tv.qeltvapi@1.0::IQelTvApiCallback";
constexpr uint32_t kRegister = IBinder::FIRST_CALL_TRANSACTION;
constexpr uint32_t kGetMute = IBinder::FIRST_CALL_TRANSACTION + 111;
constexpr uint32_t kApptv = IBinder::FIRST_CALL_TRANSACTION + 31;

/**
 * Answers the calls of any number of clients. A client that registers its callback object is
 * notified without a pause for as long as it lives.
 */
class Notifier {
  public:
    explicit Notifier(int32_t type) : mType(type) {
        mHost.add(kMain, "default", [this](const hidlhost::RawCall& call, Parcel* reply) {
            return answer(call, reply);
        });
        mHost.add(kConfig, "default", [](const hidlhost::RawCall&, Parcel* reply) {
            hidlhost::writeOk(reply);
            reply->writeInt32(42);
            reply->writeInt32(0);
            return android::OK;
        });
    }

    ~Notifier() {
        mHost.kill();
        for (std::thread& thread : mThreads) thread.join();
    }

  private:
    android::status_t answer(const hidlhost::RawCall& call, Parcel* reply) {
        hidlhost::writeOk(reply);
        if (call.code == kGetMute) return reply->writeBool(true);
        if (call.code != kRegister) return android::UNKNOWN_TRANSACTION;
        sp<IBinder> callback;
        const android::status_t status = call.arguments.readNullableStrongBinder(&callback);
        if (status != android::OK || callback == nullptr) return android::BAD_VALUE;
        std::lock_guard<std::mutex> guard(mLock);
        mThreads.emplace_back([this, callback] { notify(callback); });
        return android::OK;
    }

    void notify(const sp<IBinder>& callback) const {
        android::status_t status = android::OK;
        while (status == android::OK) {
            Parcel reply;
            status = hidlhost::rawCall(
                    callback, kCallback, kApptv,
                    [this](Parcel* parcel) {
                        parcel->writeInt32(mType);
                        for (uint64_t value = 0; value < 5; ++value) parcel->writeUint64(value);
                    },
                    &reply);
        }
    }

    const int32_t mType;
    std::mutex mLock;
    std::vector<std::thread> mThreads;
    // Destroyed first: nothing arrives any more.
    hidlhost::RawHost mHost;
};

/** How often each kind of process ends; QELTV_EXITS=500 for a thorough run. */
int exits() {
    const char* text = getenv("QELTV_EXITS");
    return text == nullptr ? 15 : std::max(1, atoi(text));
}

/** Ends exits() processes after 5 to 45 ms each, several at a time. None fails, hangs or crashes.
 */
void expectCleanEnds(const char* how, const char* threads, std::vector<std::string> options = {}) {
    constexpr int kAtATime = 3;
    std::atomic<int> left{exits()};
    std::atomic<int> failed{0};
    std::mutex lock;
    std::string first;
    const auto run = [&](unsigned int seed) {
        std::minstd_rand random(seed);
        std::uniform_int_distribution<int> delay(5, 45);
        while (left-- > 0) {
            std::vector<std::string> words{"tests/wire/exiting_client", how, threads,
                                           std::to_string(delay(random))};
            words.insert(words.end(), options.begin(), options.end());
            const Ended ended = runBuilt(words);
            if (ended.status == 0) continue;
            if (failed++ > 0) continue;
            std::lock_guard<std::mutex> guard(lock);
            first = "status " + std::to_string(ended.status) + "\n" + ended.err.substr(0, 20000);
        }
    };
    std::vector<std::thread> runners;
    for (unsigned int i = 1; i <= kAtATime; ++i) runners.emplace_back(run, i);
    for (std::thread& runner : runners) runner.join();
    EXPECT_EQ(0, failed) << "of " << exits() << " processes; the first: " << first;
}

TEST(Process, ExitsWhileItsThreadsCall) {
    Notifier service(1);
    expectCleanEnds("exit", "8");
    expectCleanEnds("exit", "1");
    expectCleanEnds("thread", "7");
}

TEST(Process, ReturnsFromMainWhileItsThreadsCall) {
    Notifier service(1);
    expectCleanEnds("return", "8");
    expectCleanEnds("return", "1");
}

TEST(Process, ExitsWhileANotificationsFunctionCalls) {
    Notifier service(1);
    expectCleanEnds("exit", "0", {"notified"});
    expectCleanEnds("return", "8", {"notified"});
    expectCleanEnds("notification", "8", {"notified"});
}

TEST(Process, ExitsWhileItsThreadsLog) {
    Notifier service(1);
    expectCleanEnds("exit", "8", {"notified", "traced"});
}

// Every call is a cache miss.
TEST(Process, ExitsWhileItsThreadsLookForTheService) {
    expectCleanEnds("exit", "8");
}

TEST(UnloadedLibrary, StaysMapped) {
    for (const char* library :
         {"/host/libhidlhost.so", "/interface/libvendor.qelnova.tv.qeltvapi@1.0.so",
          "/clientwrapper/libqeltvapi_client.so"}) {
        const Ended ended =
                runBuilt({"tests/wire/unloading_client", QELTV_BUILD_DIR + std::string(library)});
        EXPECT_EQ(0, ended.status) << library << ": " << ended.err;
    }
}

TEST(UnloadedLibrary, StaysForItsThreadsAndReleasesItsStateWhenTheProcessEnds) {
    auto service = std::make_unique<Notifier>(1);
    TemporaryDirectory directory;
    const std::string closed = directory.path() + "/closed";
    std::atomic<bool> done{false};
    std::thread restart([&] {
        eventually([&] { return done || access(closed.c_str(), F_OK) == 0; });
        service = nullptr;
        service = std::make_unique<Notifier>(2);
    });
    const Ended ended = runBuilt({"tests/wire/unloading_client",
                                  QELTV_BUILD_DIR "/clientwrapper/libqeltvapi_client.so", closed});
    EXPECT_EQ(0, ended.status) << ended.err;
    done = true;
    restart.join();
}

}  // namespace
