// How names are registered, found, listed and waited for.

#include <dlfcn.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <android/hidl/manager/1.0/IServiceManager.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <hidl/HidlTransportSupport.h>
#include <hidl/LegacySupport.h>
#include <hidlhost/test/kit/1.0/IEcho.h>
#include <hidlhost/test/kit/1.0/IServiceChild.h>

#include "kit_objects.h"
#include "kit_process.h"

namespace {

using ::android::OK;
using ::android::sp;
using ::android::hardware::defaultServiceManager;
using ::android::hardware::hidl_string;
using ::android::hardware::hidl_vec;
using ::android::hardware::registerPassthroughServiceImplementation;
using ::android::hardware::Return;
using ::android::hardware::Void;
using ::android::hardware::details::waitForHwService;
using ::android::hidl::manager::V1_0::IServiceManager;
using ::android::hidl::manager::V1_0::IServiceNotification;
using namespace ::hidlhost::test::kit::V1_0;
using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

std::string runtimeFile(const std::string& name) {
    return std::string(getenv("QELTV_RUNTIME_DIR")) + "/" + name;
}

// Registers objects over and over on a thread of its own.
class Registering {
  public:
    Registering()
            : mThread([this] {
                  const sp<IListener> object = new kit::Successor;
                  while (!mStop) mCount += object->registerAsService("again") == OK;
              }) {}
    ~Registering() {
        mStop = true;
        mThread.join();
    }
    int count() const { return mCount; }

  private:
    std::atomic<bool> mStop{false};
    std::atomic<int> mCount{0};
    std::thread mThread;
};

TEST(Lock, AChildThatLivesOnDoesNotKeepIt) {
    std::vector<pid_t> children;
    {
        Registering registering;
        ASSERT_TRUE(eventually([&] { return registering.count() > 0; }));
        for (int i = 0; i < 300; ++i) {
            const pid_t child = fork();
            if (child == 0) {
                prctl(PR_SET_PDEATHSIG, SIGKILL);
                for (;;) pause();
            }
            children.push_back(child);
        }
        const int before = registering.count();
        EXPECT_TRUE(eventually([&] { return registering.count() > before + 1; }, 10s));
        for (const pid_t child : children) kill(child, SIGKILL);
    }
    for (const pid_t child : children) waitpid(child, nullptr, 0);
}

TEST(Lock, AnotherHolderDelaysNobodyForLong) {
    kit::Process dead;
    ASSERT_TRUE(dead.ready());
    dead.kill();
    const int file = open(runtimeFile("lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(flock(file, LOCK_EX), 0);
    auto registered = std::async(std::launch::async, [] {
        const sp<IListener> object = new kit::Successor;
        return object->registerAsService("beside a lock");
    });
    auto found = std::async(std::launch::async,
                            [] { return IServiceChild::getService("kit") != nullptr; });
    EXPECT_EQ(registered.wait_for(10s), std::future_status::ready);
    EXPECT_EQ(found.wait_for(10s), std::future_status::ready);
    close(file);
    EXPECT_EQ(registered.get(), OK);
    EXPECT_NE(IListener::getService("beside a lock"), nullptr);
    EXPECT_FALSE(found.get());
}

// Notes what it is notified of.
class Notices : public IServiceNotification {
  public:
    Return<void> onRegistration(const hidl_string& interface, const hidl_string& instance,
                                bool preexisting) override {
        std::lock_guard<std::mutex> lock(mMutex);
        mTexts.push_back(std::string(interface) + "/" + std::string(instance) +
                         (preexisting ? " before" : ""));
        return Void();
    }
    std::vector<std::string> texts() {
        std::lock_guard<std::mutex> lock(mMutex);
        return mTexts;
    }

  private:
    std::mutex mMutex;
    std::vector<std::string> mTexts;
};

TEST(Notifications, EveryRegistrationIsNotified) {
    const std::string name = std::string(IListener::descriptor) + "/noticed";
    sp<Notices> first = new Notices;
    sp<Notices> second = new Notices;
    const auto add = [](const sp<Notices>& notices) {
        return defaultServiceManager()
                ->registerForNotifications(IListener::descriptor, "noticed", notices)
                .withDefault(false);
    };
    ASSERT_TRUE(add(first));
    const sp<IListener> object = new kit::Successor;
    for (int i = 0; i < 20; ++i) ASSERT_EQ(object->registerAsService("noticed"), OK);
    ASSERT_TRUE(add(second));
    ASSERT_EQ(object->registerAsService("unnoticed"), OK);
    ASSERT_EQ(sp<IListener>(new kit::Successor)->registerAsService("noticed"), OK);

    EXPECT_TRUE(eventually([&] { return second->texts().size() >= 2; }));
    EXPECT_THAT(second->texts(), ElementsAre(name + " before", name));
    EXPECT_TRUE(eventually([&] { return first->texts().size() >= 21; }));
    EXPECT_EQ(first->texts(), std::vector<std::string>(21, name));
}

TEST(Manager, IsAServiceAmongTheOthers) {
    const sp<IListener> object = new kit::Successor;
    ASSERT_EQ(object->registerAsService("managed"), OK);
    const sp<IServiceManager> manager = IServiceManager::getService();
    ASSERT_NE(manager, nullptr);
    EXPECT_EQ(manager, defaultServiceManager());

    const std::string own = std::string(IServiceManager::descriptor) + "/default";
    const std::string other = std::string(IListener::descriptor) + "/managed";
    std::vector<std::string> names;
    const auto take = [&](const hidl_vec<hidl_string>& all) {
        names.assign(all.begin(), all.end());
    };
    EXPECT_TRUE(manager->list(take).isOk());
    EXPECT_THAT(names, Contains(own));
    EXPECT_THAT(names, Contains(other));
    EXPECT_TRUE(manager->listByInterface(IServiceManager::descriptor, take).isOk());
    EXPECT_THAT(names, ElementsAre("default"));
    EXPECT_EQ(manager->getTransport(IServiceManager::descriptor, "default")
                      .withDefault(IServiceManager::Transport::EMPTY),
              IServiceManager::Transport::HWBINDER);

    std::vector<std::string> dumped;
    EXPECT_TRUE(manager->debugDump([&](const auto& infos) {
                           for (const auto& info : infos) {
                               if (info.pid != getpid()) continue;
                               dumped.push_back(std::string(info.interfaceName) + "/" +
                                                std::string(info.instanceName));
                           }
                       })
                        .isOk());
    EXPECT_THAT(dumped, Contains(own));
    EXPECT_THAT(dumped, Contains(other));
    EXPECT_TRUE(manager->registerPassthroughClient(IListener::descriptor, "managed").isOk());
}

TEST(Waiting, EndsWithTheRegistration) {
    std::atomic<bool> over{false};
    auto waited = std::async(std::launch::async, [&] {
        waitForHwService(IListener::descriptor, "awaited");
        return over.load();
    });
    EXPECT_EQ(waited.wait_for(50ms), std::future_status::timeout);
    over = true;
    const sp<IListener> object = new kit::Successor;
    ASSERT_EQ(object->registerAsService("awaited"), OK);
    ASSERT_EQ(waited.wait_for(10s), std::future_status::ready);
    EXPECT_TRUE(waited.get());
    waitForHwService(IServiceManager::descriptor, "default");
}

// A process with a manifest; a line stands for each of those given.
class ManifestTest : public ::testing::Test {
  protected:
    void start(const std::string& lines) {
        const std::string path = runtimeFile("manifest");
        std::ofstream(path) << lines;
        startWith(path);
    }
    void startWith(const std::string& path) {
        mProcess = std::make_unique<kit::Process>(
                kit::Process::Options{4, {"QELTV_MANIFEST=" + path}});
        ASSERT_TRUE(mProcess->ready()) << mProcess->errors();
        mService = IServiceChild::getService("kit");
        ASSERT_NE(mService, nullptr);
    }
    std::future<bool> find(const std::string& instance) {
        return std::async(std::launch::async, [service = mService, instance] {
            return service->finds(instance).withDefault(false);
        });
    }

    std::unique_ptr<kit::Process> mProcess;
    sp<IServiceChild> mService;
};

TEST_F(ManifestTest, AServiceThatItListsIsWaitedFor) {
    start("# what the device has\n"
          "\n"
          "  hidlhost.test.kit@1.3::IListener/listed  # a later minor version\n"
          "hidlhost.test.kit@2.0::IListener/too new\n"
          "hidlhost.test.kit@2.0::IListener/new\n");
    EXPECT_FALSE(find("unlisted").get());
    EXPECT_FALSE(find("new").get());
    auto found = find("listed");
    EXPECT_TRUE(eventually([&] {
        const std::string errors = mProcess->errors();
        return errors.find("IListener/listed") != std::string::npos &&
               errors.find("2 s") != std::string::npos;
    })) << mProcess->errors();
    EXPECT_EQ(found.wait_for(0s), std::future_status::timeout);
    const sp<IListener> object = new kit::Successor;
    ASSERT_EQ(object->registerAsService("listed"), OK);
    ASSERT_EQ(found.wait_for(10s), std::future_status::ready);
    EXPECT_TRUE(found.get());
    EXPECT_THAT(mProcess->errors(), HasSubstr("line 4 of "));
    EXPECT_THAT(mProcess->errors(), HasSubstr("IListener/too new'"));
    EXPECT_THAT(mProcess->errors(), Not(HasSubstr("line 3")));
}

TEST_F(ManifestTest, AFileThatCannotBeReadIsNamedOnce) {
    for (const std::string& path : {runtimeFile("nowhere"), runtimeFile("")}) {
        startWith(path);
        EXPECT_FALSE(find("absent").get());
        EXPECT_FALSE(find("absent").get());
        const std::string errors = mProcess->errors();
        const size_t at = errors.find("QELTV_MANIFEST: " + path);
        EXPECT_NE(at, std::string::npos) << errors;
        EXPECT_EQ(errors.find("QELTV_MANIFEST", at + 1), std::string::npos) << errors;
    }
}

TEST(Implementation, IsLoadedAndRegisteredWhereItIsTheExpectedInterface) {
    // CMake ends the run path in a build tree with an empty element, the working directory.
    std::filesystem::current_path("/");
    EXPECT_NE((registerPassthroughServiceImplementation<IListener>("loaded")), OK);
    // Found by its name once it is there, as on the linker's search path.
    void* library = dlopen(QELTV_BUILD_DIR "/tests/host/hidlhost.test.kit@1.0-impl.so", RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
    const sp<IListener> local = IListener::getService("local", true);
    ASSERT_NE(local, nullptr);
    EXPECT_FALSE(local->isRemote());
    EXPECT_EQ(IListener::getService("local"), nullptr);
    EXPECT_EQ(IEcho::getService("local", true), nullptr);

    EXPECT_EQ((registerPassthroughServiceImplementation<IListener>("loaded")), OK);
    const sp<IListener> loaded = IListener::getService("loaded");
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(loaded->onValue(1).withDefault(0), 2);
    EXPECT_NE((registerPassthroughServiceImplementation<IListener, IEcho>("other")), OK);
    EXPECT_EQ(IListener::getService("other"), nullptr);
}

}  // namespace
