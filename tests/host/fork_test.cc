// What a child that a process makes with fork() has of the runtime, and leaves to its parent.

#include <dlfcn.h>
#include <pthread.h>
#include <sys/epoll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <hidl/HidlTransportSupport.h>
#include <hidl/TaskRunner.h>
#include <hidlhost/test/kit/1.0/IServiceChild.h>

#include "kit_objects.h"
#include "kit_process.h"

// Sanitizers interpose functions of the C library themselves.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define FINDS_RACES 1
#elif __has_feature(address_sanitizer)
#define CHECKS_ADDRESSES 1
#else
#define CAN_INTERPOSE 1
#endif
#endif

namespace {

using ::android::OK;
using ::android::sp;
using ::android::wp;
using ::android::hardware::hidl_death_recipient;
using ::android::hardware::Return;
using ::android::hardware::details::TaskRunner;
using ::android::hidl::base::V1_0::IBase;
using namespace ::hidlhost::test::kit::V1_0;
using namespace std::chrono_literals;

/** Whether pthread_create() fails. */
[[maybe_unused]] std::atomic<bool> gNoThreads{false};
/** Whether the next epoll_ctl() waits for a second before it begins, and whether it has come. */
enum class Entering { kAtOnce, kWaits, kBegun };
[[maybe_unused]] std::atomic<Entering> gEntering{Entering::kAtOnce};

class Recipient : public hidl_death_recipient {
  public:
    void serviceDied(uint64_t, const wp<IBase>&) override { ++mDeaths; }
    int deaths() const { return mDeaths; }

  private:
    std::atomic<int> mDeaths{0};
};

// A child that runs `body` and ends with what it returns; a signal ends one that hangs.
pid_t startChild(const std::function<int()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        alarm(60);
        _exit(body());
    }
    return child;
}

int endOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

size_t openSockets() {
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const auto target = std::filesystem::read_symlink(entry.path(), error);
        count += target.string().rfind("socket:", 0) == 0;
    }
    return count;
}

class ForkTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (QELTV_EMULATOR[0] != '\0') GTEST_SKIP() << "the emulator allows a child no threads";
#ifdef FINDS_RACES
        GTEST_SKIP() << "the race detector allows a child no threads";
#endif
    }

    void start() {
        mProcess = std::make_unique<kit::Process>();
        ASSERT_TRUE(mProcess->ready()) << mProcess->errors();
        mService = IServiceChild::getService("kit");
        ASSERT_NE(mService, nullptr);
    }

    std::unique_ptr<kit::Process> mProcess;
    sp<IServiceChild> mService;
};

TEST_F(ForkTest, AnInheritedProxyWorksInTheChild) {
    start();
    const sp<IListener> object = mService->makeChild(10);
    const sp<IListener> own = new kit::Successor;
    ASSERT_TRUE(mService->setListener(own).isOk());
    const pid_t service = mProcess->pid();
    EXPECT_EQ(endOf(startChild([&] {
                  if (mService->pid().withDefault(-1) != service) return 1;
                  if (object->onValue(5).withDefault(-1) != 15) return 2;
                  if (IServiceChild::getService("kit") == nullptr) return 3;
                  // As an argument of its own, and beside an object of the child.
                  if (mService->callBack(object, 1).withDefault(-1) != 11) return 4;
                  if (mService->callBack(new kit::Successor, 1).withDefault(-1) != 2) return 5;
                  if (own->registerAsService("a child's") != OK) return 6;
                  return mService->push(7).isOk() ? 0 : 7;
              })),
              0);
    // The parent's own references have stayed.
    EXPECT_EQ(object->onValue(6).withDefault(-1), 16);
    EXPECT_EQ(mService->liveChildren().withDefault(-1), 1);
    EXPECT_EQ(sp<IListener>(mService->getListener()), own);
}

TEST_F(ForkTest, ADeathReachesTheRecipientsOfTheChild) {
    start();
    const sp<IListener> object = mService->makeChild(10);
    const sp<Recipient> linked = new Recipient;
    const sp<Recipient> later = new Recipient;
    ASSERT_TRUE(mService->linkToDeath(linked, 1).withDefault(false));
    int called[2];
    ASSERT_EQ(pipe(called), 0);
    const pid_t child = startChild([&] {
        if (!mService->ping().isOk()) return 1;
        if (!object->linkToDeath(later, 2).withDefault(false)) return 2;
        if (write(called[1], "", 1) != 1) return 3;
        return eventually([&] { return linked->deaths() == 1 && later->deaths() == 1; }, 10s) ? 0
                                                                                              : 4;
    });
    close(called[1]);
    char byte;
    EXPECT_EQ(read(called[0], &byte, 1), 1);
    close(called[0]);
    mProcess->kill();
    EXPECT_EQ(endOf(child), 0);
    EXPECT_TRUE(eventually([&] { return linked->deaths() == 1; }));
    EXPECT_EQ(later->deaths(), 0);
    // A child that is made now learns of the death with its first call.
    EXPECT_EQ(endOf(startChild([&] { return mService->ping().isDeadObject() ? 0 : 1; })), 0);
}

TEST_F(ForkTest, AChildHoldsNoneOfItsParentsConnections) {
    start();
    ASSERT_EQ(mService->callBack(new kit::Successor, 1).withDefault(0), 2);
    ASSERT_TRUE(mService->push(1).isOk());
    ASSERT_TRUE(eventually([] { return openSockets() > 3; }));  // the service connects, too
    int own[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, own), 0);
    EXPECT_EQ(endOf(startChild([] { return static_cast<int>(openSockets()); })), 2);
    close(own[0]);
    close(own[1]);
}

TEST_F(ForkTest, AProcessIsDeadThoughItsChildLives) {
    start();
    // What the two processes say to each other.
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair), 0);
    char byte = 0;
    const pid_t parent = startChild([&] {
        const sp<IServiceChild> service = IServiceChild::getService("kit");
        if (service == nullptr || !service->setListener(new kit::Successor).isOk()) return 1;
        if (write(pair[1], &byte, 1) != 1 || read(pair[1], &byte, 1) != 1) return 2;
        const pid_t living = fork();
        if (living == 0) {
            alarm(60);
            for (;;) pause();
        }
        if (write(pair[1], &living, sizeof(living)) != sizeof(living)) return 3;
        for (;;) pause();
    });
    ASSERT_EQ(read(pair[0], &byte, 1), 1);
    const sp<IListener> remote = mService->getListener();
    ASSERT_NE(remote, nullptr);
    EXPECT_EQ(remote->onValue(1).withDefault(0), 2);
    const sp<Recipient> recipient = new Recipient;
    ASSERT_TRUE(remote->linkToDeath(recipient, 1).withDefault(false));
    ASSERT_EQ(write(pair[0], &byte, 1), 1);
    pid_t living = 0;
    ASSERT_EQ(read(pair[0], &living, sizeof(living)), ssize_t{sizeof(living)});
    kill(parent, SIGKILL);
    waitpid(parent, nullptr, 0);
    EXPECT_TRUE(eventually([&] { return recipient->deaths() == 1; }, 10s));
    kill(living, SIGKILL);
    close(pair[0]);
    close(pair[1]);
}

TEST_F(ForkTest, NothingHangsInAChildOfABusyProcess) {
#ifdef CHECKS_ADDRESSES
    GTEST_SKIP() << "the sanitizer's allocator can be locked by another thread at the fork";
#endif
    start();
    const sp<Recipient> recipient = new Recipient;
    const sp<IListener> registered = new kit::Successor;
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    // The pauses leave the machine to others, and a fork is in the middle of something all the
    // same.
    const auto keepDoing = [&](const std::function<void()>& something) {
        threads.emplace_back([&stop, something] {
            for (int i = 0; !stop; ++i) {
                something();
                if (i % 10 == 0) std::this_thread::sleep_for(1ms);
            }
        });
    };
    keepDoing([&] { (void)mService->pid().isOk(); });
    keepDoing([] { (void)IServiceChild::getService("kit"); });
    keepDoing([&] { (void)registered->registerAsService("busy"); });
    keepDoing([&] {
        const sp<IServiceChild> own = IServiceChild::getService("kit");
        (void)own->linkToDeath(recipient, 1).isOk();
        (void)own->callBack(new kit::Successor, 1).isOk();
        (void)own->unlinkToDeath(recipient).isOk();
    });
    const pid_t service = mProcess->pid();
    std::vector<int> ends;
    for (int i = 0; i < 50; ++i) {
        ends.push_back(endOf(startChild([&] {
            if (mService->pid().withDefault(-1) != service) return 1;
            if (!mService->linkToDeath(recipient, 2).withDefault(false)) return 2;
            if (sp<IListener>(new kit::Successor)->registerAsService("a child's") != OK) return 3;
            if (IServiceChild::getService("kit") == nullptr) return 4;
            return mService->callBack(new kit::Successor, 3).withDefault(-1) == 4 ? 0 : 5;
        })));
    }
    stop = true;
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(ends, std::vector<int>(50, 0));
}

// Libraries fetch proxies under locks of their own.
TEST_F(ForkTest, AForkWaitsUntilNoServiceIsBeingFetched) {
    constexpr int kForks = 30;
    start();
    std::mutex fetching;
    std::atomic<bool> inside{false};
    std::atomic<bool> stop{false};
    std::thread thread([&] {
        while (!stop) {
            {
                std::lock_guard<std::mutex> lock(fetching);
                for (int i = 0; i < 20; ++i) {
                    (void)IServiceChild::getService("kit");
                    inside = true;
                }
                inside = false;
            }
            std::this_thread::sleep_for(5ms);
        }
    });
    int held = 0;
    for (int i = 0; i < kForks; ++i) {
        EXPECT_TRUE(eventually([&] { return inside.load(); }));
        held += endOf(startChild([&] { return fetching.try_lock() ? 0 : 1; })) != 0;
    }
    stop = true;
    thread.join();
    // A machine under load may hold the thread up for longer than the fork waits.
    EXPECT_LE(held, kForks / 3);
}

TEST_F(ForkTest, AChildThatReturnsFromAServedCallEnds) {
    class Forking : public kit::Successor {
      public:
        Return<int32_t> onValue(int32_t value) override {
            const pid_t child = fork();
            if (child == 0) return -1;
            mChild = child;
            return value + 100;
        }
        pid_t child() const { return mChild; }

      private:
        std::atomic<pid_t> mChild{0};
    };
    start();
    const sp<Forking> forking = new Forking;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(mService->callBack(forking, i).withDefault(0), i + 100);
        const pid_t child = forking->child();
        int status = 0;
        EXPECT_TRUE(eventually([&] { return waitpid(child, &status, WNOHANG) == child; }));
        EXPECT_TRUE(WIFEXITED(status));
    }
}

TEST_F(ForkTest, ATaskRunnerWorksInAChild) {
    TaskRunner runner;
    runner.start(1);
    std::atomic<int> done{0};
    ASSERT_TRUE(runner.push([&] { ++done; }));
    ASSERT_TRUE(eventually([&] { return done == 1; }));
    EXPECT_EQ(endOf(startChild([&] {
                  if (!runner.push([&] { ++done; })) return 1;
                  return eventually([&] { return done == 2; }, 10s) ? 0 : 2;
              })),
              0);
}

TEST_F(ForkTest, AChildHasNoDescriptorsOfAParentThatHasOnlyFetchedAService) {
    start();
    EXPECT_EQ(
            endOf(startChild([] {
                const size_t before = kit::openDescriptors();
                if (IServiceChild::getService("kit") == nullptr) return 1;
                return endOf(startChild([&] { return kit::openDescriptors() == before ? 0 : 2; }));
            })),
            0);
}

#ifdef CAN_INTERPOSE
TEST_F(ForkTest, OnewayCallsAreAcceptedWhileAnotherThreadFetchesTheService) {
    start();
    EXPECT_EQ(endOf(startChild([] {
                  gEntering = Entering::kWaits;
                  std::thread other([] { IServiceChild::getService("kit"); });
                  if (!eventually([] { return gEntering == Entering::kBegun; })) return 1;
                  const sp<IServiceChild> service = IServiceChild::getService("kit");
                  if (service == nullptr) return 2;
                  int result = 0;
                  // More than are sent before the service has to accept one.
                  for (int call = 0; result == 0 && call < 200; ++call) {
                      if (!service->childPush(0).isOk()) result = 3;
                  }
                  other.join();
                  return result;
              })),
              0);
}

TEST_F(ForkTest, ADeathIsNoticedWhenTheFirstCallFoundNoThread) {
    start();
    int called[2];
    ASSERT_EQ(pipe(called), 0);
    const pid_t child = startChild([&] {
        gNoThreads = true;
        const sp<IServiceChild> service = IServiceChild::getService("kit");
        if (service == nullptr || !service->ping().isOk()) return 1;
        gNoThreads = false;
        const sp<Recipient> recipient = new Recipient;
        if (!service->linkToDeath(recipient, 1).withDefault(false)) return 2;
        if (write(called[1], "", 1) != 1) return 3;
        return eventually([&] { return recipient->deaths() == 1; }, 10s) ? 0 : 4;
    });
    close(called[1]);
    char byte;
    EXPECT_EQ(read(called[0], &byte, 1), 1);
    close(called[0]);
    mProcess->kill();
    EXPECT_EQ(endOf(child), 0);
}
#endif

}  // namespace

#ifdef CAN_INTERPOSE
extern "C" __attribute__((visibility("default"))) int pthread_create(
        pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*), void* argument) {
    static const auto sNext =
            reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return gNoThreads ? EAGAIN : sNext(thread, attributes, body, argument);
}

extern "C" __attribute__((visibility("default"))) int epoll_ctl(int epoll, int operation, int file,
                                                                epoll_event* event) {
    static const auto sNext = reinterpret_cast<decltype(&epoll_ctl)>(dlsym(RTLD_NEXT, "epoll_ctl"));
    Entering waits = Entering::kWaits;
    if (event != nullptr && event->data.u64 != 0 &&
        gEntering.compare_exchange_strong(waits, Entering::kBegun)) {
        std::this_thread::sleep_for(1s);
    }
    return sNext(epoll, operation, file, event);
}
#endif
