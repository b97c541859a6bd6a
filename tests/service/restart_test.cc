#include <atomic>
#include <chrono>
#include <thread>

#include "QelTvApiCallbackImpl.h"
#include "daemon.h"
#include "eventually.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_highlevel.h"
#include "inbox.h"
#include "platform_calls.h"
#include "wire.h"

using namespace wire;
using namespace std::chrono_literals;

namespace {

constexpr char kItem[] = "picture.contrast";

std::atomic<int64_t> sSeen{-1};

int onConfig(int32_t, uintptr_t, uintptr_t, const char* name, uintptr_t value, uintptr_t) {
    if (strcmp(name, kItem) == 0) sSeen = static_cast<int64_t>(value);
    return 0;
}

/**
 * A change of the setting reaches the application. Asked for again and again: the television that
 * has just come up knows neither what is watched nor, for a moment, whom to notify.
 */
bool notified(int32_t value) {
    return eventually([&] {
        if (sSeen == value) return true;
        a_qeltvapi_config_add_value_changed_callback(kItem);
        a_qeltvapi_config_set_value(0, kItem, 100 - value, 1);
        a_qeltvapi_config_set_value(0, kItem, value, 0);
        return false;
    });
}

/** How often the television that serves now has been given the callback object. */
size_t registrations() {
    using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;
    const auto tv = IQelTvApi::getService("default", false);
    if (tv == nullptr) return 0;
    const std::string dump = controlTelevision(tv, {"dump"});
    static const std::string kKey = "\"registrations\": ";
    const size_t at = dump.find(kKey);
    return at == std::string::npos ? 0 : std::stoul(dump.substr(at + kKey.size()));
}

/** Reconnect threads since the last call. */
size_t reconnections() {
    size_t count = 0;
    for (const LogLine& line : takeLog()) count += line.text == "<reconnectService:60> .";
    return count;
}

TEST(Restart, NotificationsComeBackAfterEachOfManyDeaths) {
    captureLog();
    Sleeps::instance().letAllGo(true);
    constexpr int kDeaths = 100;
    Daemon television;
    television.start();
    a_qeltvapi_config_reg_callback(onConfig);
    registerCallbackHandler();
    // The first registration is that of the task runner.
    size_t threads = 1;
    for (int i = 0; i < kDeaths; ++i) {
        ASSERT_TRUE(notified(i % 49)) << "after " << i << " deaths";
        // A death that is noticed twice is followed by two registrations; each resets the proxies
        // before, so the new service is only watched for good once both are done.
        ASSERT_TRUE(eventually([&] {
            threads += reconnections();
            return registrations() == threads;
        })) << registrations()
            << " registrations, " << threads << " threads";
        // As any call of the main interface: has the new service watched.
        ASSERT_NE(nullptr, getQelTvApiService());
        threads = 0;
        television.kill();
        television.launch();
    }
    EXPECT_TRUE(notified(49));
    // A thread that polls at the end of the process must do so asleep.
    Sleeps::instance().letAllGo(false);
}

Inbox<int32_t> sHighlevel;

int onHighlevel(int32_t type, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    sHighlevel.put(type);
    return 0;
}

// As two threads of the library do that have noticed the same death.
TEST(Restart, ACallbackObjectThatIsRegisteredTwiceIsToldOnce) {
    Daemon television;
    television.start();
    const auto tv = vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi::getService("default", false);
    ASSERT_NE(nullptr, tv);
    QelTvApiCallbackImpl::pf_highlevel_cb.set(onHighlevel);
    const android::sp<QelTvApiCallbackImpl> callback = new QelTvApiCallbackImpl;
    for (int time = 0; time < 2; ++time) {
        ASSERT_TRUE(tv->a_hidl_registerCallbackHandler(callback).isOk());
    }
    EXPECT_EQ(2u, registrations());
    for (const char* values : {"[5,0,0,0,0,0]", "[6,0,0,0,0,0]"}) {
        controlTelevision(tv, {"raise", "a_hidl_qeltvapi_highlevel_callback_fct", values});
    }
    EXPECT_TRUE(sHighlevel.find([](int32_t type) { return type == 6; }));
    EXPECT_EQ((std::vector<int32_t>{5, 6}), sHighlevel.takeAll());
}

}  // namespace
