// How calls, callbacks, references and deaths behave between processes.

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <numeric>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <hidl/HidlTransportSupport.h>
#include <hidlhost/test/kit/1.0/IEcho.h>
#include <hidlhost/test/kit/1.0/IServiceChild.h>

#include "kit_process.h"

namespace {

using ::android::DEAD_OBJECT;
using ::android::sp;
using ::android::wp;
using ::android::hardware::getOrCreateCachedBinder;
using ::android::hardware::hidl_death_recipient;
using ::android::hardware::hidl_handle;
using ::android::hardware::hidl_string;
using ::android::hardware::hidl_vec;
using ::android::hardware::interfacesEqual;
using ::android::hardware::Return;
using ::android::hardware::Void;
using ::android::hidl::base::V1_0::IBase;
using namespace ::hidlhost::test::kit::V1_0;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// "At once" beside waits that would be endless or many seconds.
constexpr auto kAtOnce = 2s;

class Listener : public IListener {
  public:
    using Answer = std::function<int32_t(int32_t)>;

    explicit Listener(
            Answer answer = [](int32_t value) { return 2 * value; },
            std::atomic<int>* alive = nullptr)
            : mAnswer(std::move(answer)), mAlive(alive) {
        if (mAlive != nullptr) ++*mAlive;
    }
    ~Listener() override {
        if (mAlive != nullptr) --*mAlive;
    }

    Return<int32_t> onValue(int32_t value) override { return mAnswer(value); }
    Return<void> onText(const hidl_string& text, onText_cb result) override {
        result(text, static_cast<int32_t>(text.size()));
        return Void();
    }
    Return<void> onEvent(uint32_t sequence) override {
        std::lock_guard<std::mutex> lock(mMutex);
        mEvents.push_back(sequence);
        return Void();
    }

    std::vector<uint32_t> events() {
        std::lock_guard<std::mutex> lock(mMutex);
        return mEvents;
    }

  private:
    const Answer mAnswer;
    std::atomic<int>* const mAlive;
    std::mutex mMutex;
    std::vector<uint32_t> mEvents;
};

class Recipient : public hidl_death_recipient {
  public:
    struct Notice {
        uint64_t cookie;
        wp<IBase> who;
    };

    void serviceDied(uint64_t cookie, const wp<IBase>& who) override {
        std::lock_guard<std::mutex> lock(mMutex);
        mNotices.push_back({cookie, who});
    }
    std::vector<Notice> notices() {
        std::lock_guard<std::mutex> lock(mMutex);
        return mNotices;
    }

  private:
    std::mutex mMutex;
    std::vector<Notice> mNotices;
};

class RuntimeTest : public ::testing::Test {
  protected:
    void start(const kit::Process::Options& options = {}) {
        mProcess = std::make_unique<kit::Process>(options);
        ASSERT_TRUE(mProcess->ready()) << mProcess->errors();
        mService = IServiceChild::getService("kit");
        ASSERT_NE(mService, nullptr);
    }

    // Returns with a call in flight that is never answered, its outcome in the future.
    std::future<bool> hang() {
        sp<Listener> listener = new Listener;
        EXPECT_TRUE(mService->setListener(listener).isOk());
        auto outcome = std::async(std::launch::async,
                                  [service = mService] { return service->hang().isDeadObject(); });
        EXPECT_TRUE(eventually([&] { return !listener->events().empty(); }));
        return outcome;
    }

    std::unique_ptr<kit::Process> mProcess;
    sp<IServiceChild> mService;
};

TEST_F(RuntimeTest, NobodyRegisteredIsNullAtOnce) {
    auto begin = Clock::now();
    EXPECT_EQ(IServiceChild::getService("kit"), nullptr);
    EXPECT_EQ(IEcho::getService(), nullptr);
    start();
    EXPECT_EQ(IServiceChild::getService("another name"), nullptr);
    EXPECT_EQ(IListener::getService("kit"), nullptr);
    EXPECT_LT(Clock::now() - begin, kAtOnce);
}

TEST_F(RuntimeTest, ARegistrationWhoseProcessDiedIsFoundDead) {
    start();
    mProcess->kill();
    auto begin = Clock::now();
    EXPECT_EQ(IServiceChild::getService("kit"), nullptr);
    EXPECT_EQ(IEcho::tryGetService("kit"), nullptr);
    EXPECT_LT(Clock::now() - begin, kAtOnce);
    sp<IServiceChild> old = mService;
    start();
    EXPECT_EQ(mService->pid().withDefault(0), mProcess->pid());
    EXPECT_TRUE(old->pid().isDeadObject());
}

TEST_F(RuntimeTest, ALaterRegistrationReplacesTheEarlierOne) {
    start();
    kit::Process second;
    ASSERT_TRUE(second.ready());
    sp<IServiceChild> service = IServiceChild::getService("kit");
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->pid().withDefault(0), second.pid());
    EXPECT_EQ(mService->pid().withDefault(0), mProcess->pid());
    EXPECT_FALSE(interfacesEqual(service, mService));
}

TEST_F(RuntimeTest, ADerivedInterfaceServesItsParentsMethodsAndItsOwn) {
    start();
    std::vector<std::string> texts;
    EXPECT_TRUE(mService->base([&](const auto& text) { texts.push_back(text); }).isOk());
    EXPECT_TRUE(mService->child([&](const auto& text) { texts.push_back(text); }).isOk());
    EXPECT_EQ(texts, (std::vector<std::string>{"base", "child"}));

    // Found under its parent's name too, with the child still to be seen.
    sp<IService> parent = IService::getService("kit");
    ASSERT_NE(parent, nullptr);
    sp<IServiceChild> child = IServiceChild::castFrom(parent);
    ASSERT_NE(child, nullptr);
    EXPECT_TRUE(interfacesEqual(child, mService));
    EXPECT_EQ(sp<IEcho>(IEcho::castFrom(sp<IBase>(parent))), nullptr);

    std::vector<std::string> chain;
    EXPECT_TRUE(parent->interfaceChain([&](const auto& names) {
                          for (const auto& name : names) chain.push_back(name);
                      }).isOk());
    EXPECT_EQ(chain, (std::vector<std::string>{IServiceChild::descriptor, IService::descriptor,
                                               IBase::descriptor}));
    EXPECT_TRUE(parent->ping().isOk());
}

TEST_F(RuntimeTest, OneRemoteObjectHasOneProxy) {
    start();
    auto proxy = [](const sp<IBase>& object) { return getOrCreateCachedBinder(object.get()); };
    EXPECT_EQ(proxy(IServiceChild::getService("kit")), proxy(mService));
    EXPECT_EQ(proxy(IService::getService("kit")), proxy(mService));
    sp<IListener> child = mService->sameChild();
    EXPECT_EQ(proxy(sp<IListener>(mService->sameChild())), proxy(child));
    sp<IListener> other = mService->makeChild(3);
    EXPECT_NE(proxy(other), proxy(child));
    EXPECT_FALSE(interfacesEqual(other, child));

    std::vector<std::future<sp<IListener>>> racing;
    racing.reserve(8);
    for (int i = 0; i < 8; ++i) {
        racing.push_back(std::async(std::launch::async, [&] {
            return mService->makeChild(9).isOk() ? mService->sameChild().withDefault(nullptr)
                                                 : nullptr;
        }));
    }
    for (auto& racer : racing) EXPECT_EQ(proxy(racer.get()), proxy(child));
}

TEST_F(RuntimeTest, TheLastProxyReferenceReleasesTheRemoteObject) {
    start();
    auto live = [&] { return mService->liveChildren().withDefault(-1); };
    {
        sp<IListener> child = mService->makeChild(1);
        sp<IListener> copy = child;
        child.clear();
        EXPECT_EQ(copy->onValue(1).withDefault(0), 2);
        EXPECT_EQ(live(), 1);
    }
    EXPECT_TRUE(eventually([&] { return live() == 0; }));
    for (int i = 0; i < 200; ++i) ASSERT_TRUE(mService->makeChild(i).isOk());
    EXPECT_TRUE(eventually([&] { return live() == 0; }));
    // Dropped and fetched again meanwhile, an object that stays must not be lost.
    std::atomic<bool> stop{false};
    std::thread other([&] {
        while (!stop) (void)mService->sameChild().isOk();
    });
    for (int i = 0; i < 300; ++i) {
        sp<IListener> child = mService->sameChild();
        ASSERT_NE(child, nullptr);
        ASSERT_EQ(child->onValue(i).withDefault(-1), i + 1);
    }
    stop = true;
    other.join();
}

TEST_F(RuntimeTest, ALocalObjectLivesAsLongAsAPeerHoldsIt) {
    start();
    std::atomic<int> alive{0};
    auto give = [&] {
        EXPECT_TRUE(
                mService->setListener(new Listener([](int32_t v) { return v; }, &alive)).isOk());
    };
    give();
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(sp<IListener>(mService->getListener())->onValue(4).withDefault(0), 4);
    EXPECT_EQ(alive, 1);
    EXPECT_TRUE(mService->setListener(nullptr).isOk());
    EXPECT_TRUE(eventually([&] { return alive == 0; }));

    give();
    mProcess->kill();
    EXPECT_TRUE(eventually([&] { return alive == 0; }));
}

TEST_F(RuntimeTest, AServiceCallsBackWhileItsClientWaits) {
    start({1});
    sp<Listener> listener = new Listener([](int32_t value) { return value + 100; });
    EXPECT_EQ(mService->callBack(listener, 5).withDefault(0), 105);

    // Even a service with one thread serves the calls that its own calls lead to.
    sp<IServiceChild> service = mService;
    sp<Listener> bouncer;
    bouncer = new Listener(
            [&](int32_t depth) { return service->bounce(bouncer, depth).withDefault(-1000); });
    EXPECT_EQ(service->bounce(bouncer, 6).withDefault(0), 6);
}

TEST_F(RuntimeTest, NotificationsReachAClientThatGivesNoThread) {
    start();
    sp<Listener> listener = new Listener;
    ASSERT_TRUE(mService->setListener(listener).isOk());
    ASSERT_TRUE(mService->notify(500).isOk());
    ASSERT_TRUE(eventually([&] { return listener->events().size() == 500; }));
    std::vector<uint32_t> expected(500);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(listener->events(), expected);
}

TEST_F(RuntimeTest, AnObjectOfOneProcessIsPassedOnToAnother) {
    start();
    kit::Process second;
    ASSERT_TRUE(second.ready());
    sp<IServiceChild> other = IServiceChild::getService("kit");
    ASSERT_NE(other, nullptr);
    {
        sp<IListener> child = mService->makeChild(1000);
        EXPECT_EQ(other->callBack(child, 7).withDefault(0), 1007);
        ASSERT_TRUE(other->setListener(child).isOk());
        EXPECT_TRUE(interfacesEqual(sp<IListener>(other->getListener()), child));
    }
    EXPECT_EQ(mService->liveChildren().withDefault(0), 1);
    ASSERT_TRUE(other->setListener(nullptr).isOk());
    EXPECT_TRUE(eventually([&] { return mService->liveChildren().withDefault(-1) == 0; }));
}

TEST_F(RuntimeTest, ADeathIsToldOnceWithCookieAndProxy) {
    start();
    sp<IListener> child = mService->makeChild(1);
    sp<Recipient> recipient = new Recipient;
    sp<Recipient> unlinked = new Recipient;
    const uint64_t cookie = 0xfedcba9876543210;
    EXPECT_TRUE(mService->linkToDeath(recipient, cookie).withDefault(false));
    EXPECT_TRUE(child->linkToDeath(recipient, 2).withDefault(false));
    EXPECT_TRUE(mService->linkToDeath(unlinked, 3).withDefault(false));
    EXPECT_TRUE(mService->unlinkToDeath(unlinked).withDefault(false));
    EXPECT_FALSE(mService->unlinkToDeath(unlinked).withDefault(true));

    mProcess->kill();
    ASSERT_TRUE(eventually([&] { return recipient->notices().size() == 2; }));
    auto notices = recipient->notices();
    std::sort(notices.begin(), notices.end(),
              [](const auto& a, const auto& b) { return a.cookie < b.cookie; });
    EXPECT_EQ(notices[0].cookie, 2u);
    EXPECT_EQ(notices[0].who.promote(), child);
    EXPECT_EQ(notices[1].cookie, cookie);
    EXPECT_EQ(notices[1].who.promote(), mService);

    EXPECT_TRUE(mService->ping().isDeadObject());
    EXPECT_FALSE(mService->linkToDeath(recipient, 4).withDefault(false));
    start();
    EXPECT_TRUE(mService->ping().isOk());
    EXPECT_EQ(recipient->notices().size(), 2u);
    EXPECT_TRUE(unlinked->notices().empty());
}

TEST_F(RuntimeTest, EveryKindOfEndIsADeath) {
    for (int signal : {SIGKILL, SIGTERM, SIGABRT}) {
        start();
        sp<Recipient> recipient = new Recipient;
        ASSERT_TRUE(mService->linkToDeath(recipient, 1).withDefault(false));
        ::kill(mProcess->pid(), signal);
        EXPECT_TRUE(eventually([&] { return recipient->notices().size() == 1; })) << signal;
    }
    start();
    EXPECT_TRUE(mService->die().isDeadObject());
}

TEST_F(RuntimeTest, CallsInFlightFailAtOnceWhenThePeerDies) {
    start();
    std::vector<std::future<bool>> calls;
    calls.reserve(3);
    for (int i = 0; i < 3; ++i) calls.push_back(hang());
    auto begin = Clock::now();
    mProcess->kill();
    for (auto& call : calls) EXPECT_TRUE(call.get());
    EXPECT_LT(Clock::now() - begin, kAtOnce);
}

TEST_F(RuntimeTest, OnewayCallsKeepTheirOrderAndDoNotWait) {
    start();
    auto begin = Clock::now();
    ASSERT_TRUE(mService->slowPush(0, 300).isOk());
    for (uint32_t i = 1; i < 100; ++i) ASSERT_TRUE(mService->push(i).isOk());
    ASSERT_TRUE(mService->childPush(100).isOk());
    EXPECT_LT(Clock::now() - begin, 250ms);
    // A call that is answered does not queue behind them.
    EXPECT_EQ(mService->pid().withDefault(0), mProcess->pid());

    std::vector<uint32_t> pushed;
    EXPECT_TRUE(eventually([&] {
        EXPECT_TRUE(mService->pushed([&](const auto& all) { pushed = all; }).isOk());
        return pushed.size() == 101;
    }));
    std::vector<uint32_t> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    expected.push_back(1100);
    EXPECT_EQ(pushed, expected);
}

TEST_F(RuntimeTest, AOnewayCallMayCallBackForALargeAnswer) {
    class Asking : public Listener {
      public:
        explicit Asking(sp<IServiceChild> service) : mService(std::move(service)) {}
        Return<void> onEvent(uint32_t sequence) override {
            mService->fill(60000 + sequence, 1,
                           [this](const hidl_vec<uint8_t>& bytes) { mBytes += bytes.size(); })
                    .isOk();
            return Void();
        }
        size_t bytes() const { return mBytes; }

      private:
        const sp<IServiceChild> mService;
        std::atomic<size_t> mBytes{0};
    };
    start();
    sp<Asking> listener = new Asking(mService);
    ASSERT_TRUE(mService->setListener(listener).isOk());
    ASSERT_TRUE(mService->notify(4).isOk());
    EXPECT_TRUE(eventually([&] { return listener->bytes() == 4 * 60000 + 6; }));
    ASSERT_TRUE(mService->setListener(nullptr).isOk());
}

TEST_F(RuntimeTest, TheThreadPoolBoundsWhatRunsAtATime) {
    start({3});
    std::vector<std::future<uint32_t>> callers;
    callers.reserve(10);
    for (int i = 0; i < 10; ++i) {
        callers.push_back(std::async(std::launch::async, [&] {
            uint32_t most = 0;
            for (int k = 0; k < 3; ++k) most = std::max(most, mService->slow(20).withDefault(99));
            return most;
        }));
    }
    uint32_t most = 0;
    for (auto& caller : callers) most = std::max(most, caller.get());
    EXPECT_EQ(most, 3u);
}

TEST_F(RuntimeTest, DescriptorsAreOwnedByTheReceiverAndClosed) {
    start();
    auto exchange = [&] {
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
        ASSERT_EQ(write(ends[1], "through", 7), 7);
        close(ends[1]);
        native_handle_t* native = native_handle_create(1, 0);
        native->data[0] = ends[0];
        hidl_handle handle;
        handle.setTo(native, true);
        std::string text;
        ASSERT_TRUE(mService->readAll(handle,
                                      [&](const auto& bytes) {
                                          text.assign(bytes.begin(), bytes.end());
                                      })
                            .isOk());
        ASSERT_EQ(text, "through");

        hidl_handle kept;
        ASSERT_TRUE(mService->pipeWith("back", [&](const hidl_handle& end) { kept = end; }).isOk());
        char bytes[8] = {};
        ASSERT_EQ(read(kept->data[0], bytes, sizeof(bytes)), 4);
        ASSERT_STREQ(bytes, "back");
        // The service has closed its copy of both ends.
        ASSERT_EQ(read(kept->data[0], bytes, sizeof(bytes)), 0);
    };
    ASSERT_EQ(mService->callBack(new Listener, 1).withDefault(0), 2);
    exchange();
    size_t own = kit::openDescriptors();
    int32_t service = mService->openDescriptors().withDefault(-1);
    for (int i = 0; i < 100; ++i) ASSERT_NO_FATAL_FAILURE(exchange());
    // An answer may be under way a moment before its sender has closed what came with the call.
    EXPECT_TRUE(eventually([&] { return kit::openDescriptors() <= own; })) << own;
    EXPECT_TRUE(eventually([&] { return mService->openDescriptors().withDefault(-1) <= service; }))
            << service;
}

TEST_F(RuntimeTest, NothingStaysOpenOfAPeerThatDied) {
    start();
    mService.clear();
    mProcess->kill();
    size_t before = 0;
    ASSERT_TRUE(eventually([&, last = size_t{0}]() mutable {
        before = kit::openDescriptors();
        return std::exchange(last, before) == before;
    }));
    for (int i = 0; i < 10; ++i) {
        start();
        ASSERT_TRUE(mService->setListener(new Listener).isOk());
        ASSERT_TRUE(mService->notify(1).isOk());
        mService.clear();
        mProcess->kill();
    }
    mProcess.reset();
    EXPECT_TRUE(eventually([&] { return kit::openDescriptors() <= before; }))
            << kit::openDescriptors() << " descriptors, before " << before;
}

TEST_F(RuntimeTest, LargeArgumentsAndManyThreadsDoNotMix) {
    start();
    std::vector<std::future<void>> callers;
    for (uint8_t seed = 1; seed <= 4; ++seed) {
        callers.push_back(std::async(std::launch::async, [&, seed] {
            for (uint32_t size : {10u, 66000u, 300000u, 5u}) {
                hidl_vec<uint8_t> bytes(size);
                std::fill(bytes.begin(), bytes.end(), seed);
                ASSERT_EQ(mService->sum(bytes).withDefault(0), uint64_t{seed} * size);
                ASSERT_TRUE(mService->fill(size, seed,
                                           [&](const auto& filled) { EXPECT_EQ(filled, bytes); })
                                    .isOk());
            }
        }));
    }
    for (auto& caller : callers) caller.get();
}

TEST_F(RuntimeTest, ACallBeyondTheLargestMessageFailsAndHarmsNothing) {
    start();
    const size_t size = 300u << 20;
    void* zeros =
            mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(zeros, MAP_FAILED);
    hidl_vec<uint8_t> bytes;
    bytes.setToExternal(static_cast<uint8_t*>(zeros), size);
    Return<uint64_t> result = mService->sum(bytes);
    EXPECT_FALSE(result.isOk());
    EXPECT_FALSE(result.isDeadObject());
    munmap(zeros, size);

    bool answered = false;
    EXPECT_FALSE(mService->fill(300u << 20, 1, [&](const auto&) { answered = true; }).isOk());
    EXPECT_FALSE(answered);
    EXPECT_EQ(mService->pid().withDefault(0), mProcess->pid());
}

TEST_F(RuntimeTest, TheTraceTellsCallsAndNotificationsInOneLineEach) {
    start({4, {"QELTV_TRACE=1"}});
    EXPECT_EQ(mService->sum({1, 2, 3}).withDefault(0), 6u);
    sp<Listener> listener = new Listener;
    EXPECT_EQ(mService->callBack(listener, 21).withDefault(0), 42);
    std::string errors = mProcess->errors();
    auto lines = [&](const std::string& pattern) {
        std::regex line(pattern);
        return std::distance(std::sregex_iterator(errors.begin(), errors.end(), line), {});
    };
    EXPECT_EQ(lines("<- .*IService[^\n]*(sum|\\b24\\b)[^\n]*\n"), 1) << errors;
    EXPECT_EQ(lines("-> .*IListener[^\n]*(onValue|\\b1\\b)[^\n]*\n"), 1) << errors;

    start({4, {"QELTV_TRACE=IListener"}});
    EXPECT_EQ(mService->callBack(listener, 21).withDefault(0), 42);
    errors = mProcess->errors();
    EXPECT_EQ(lines("-> .*IListener"), 1) << errors;
    EXPECT_EQ(lines("<- "), 0) << errors;
    start();
    EXPECT_EQ(mService->callBack(listener, 21).withDefault(0), 42);
    EXPECT_EQ(mProcess->errors(), "");
}

TEST_F(RuntimeTest, ACallThatHangsIsNamedAndMayBeBounded) {
    start({4, {"QELTV_CALL_TIMEOUT_MS=1500"}});
    std::promise<void> release;
    std::shared_future<void> released = release.get_future();
    sp<Listener> listener = new Listener([released](int32_t value) {
        released.wait();
        return value;
    });
    auto begin = Clock::now();
    auto outcome = std::async(std::launch::async,
                              [&] { return mService->callBack(listener, 21).withDefault(0); });
    EXPECT_TRUE(
            eventually([&] { return mProcess->errors().find("IListener") != std::string::npos; }));
    // The service has given up and its thread is free again, although the caller's is not.
    EXPECT_TRUE(eventually([&] { return mService->pid().withDefault(0) == mProcess->pid(); }));
    EXPECT_TRUE(eventually([&] { return Clock::now() - begin > 2s; }));
    release.set_value();
    EXPECT_EQ(outcome.get(), 0) << "its connection was closed";
    EXPECT_EQ(mService->callBack(new Listener, 21).withDefault(0), 42);
}

TEST_F(RuntimeTest, ADirectoryThatOthersMayEnterIsRefused) {
    std::string directory = std::string(getenv("QELTV_RUNTIME_DIR")) + "/open";
    ASSERT_EQ(mkdir(directory.c_str(), 0700), 0);
    ASSERT_EQ(chmod(directory.c_str(), 0777), 0);
    kit::Process process({4, {"QELTV_RUNTIME_DIR=" + directory}});
    ASSERT_FALSE(process.ready());
    EXPECT_EQ(process.wait(), 3);
    std::string errors = process.errors();
    EXPECT_NE(errors.find(directory), std::string::npos) << errors;
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    rmdir(directory.c_str());
}

}  // namespace
