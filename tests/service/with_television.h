/** A television for each test, and its notifications to the test. */
#ifndef TESTS_SERVICE_WITH_TELEVISION_H
#define TESTS_SERVICE_WITH_TELEVISION_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "daemon.h"
#include "eventually.h"
#include "hw_qeltvapi_common.h"
#include "inbox.h"
#include "log_capture.h"
#include "platform_calls.h"

namespace wire {

/**
 * Asks for notifications the first time, and returns when the television that runs now sends them
 * here and is watched. A death that is noticed twice is followed by two registrations, and each
 * drops the watched proxy before, so both have to be over.
 */
inline bool joinTelevision() {
    using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;
    static bool sAsked = false;
    size_t expected = 0;
    captureLog();
    if (!sAsked) {
        sAsked = true;
        expected = 1;
        registerCallbackHandler();
    }
    return eventually([&] {
        for (const LogLine& line : takeLog()) expected += line.text == "<reconnectService:60> .";
        const auto tv = IQelTvApi::getService("default", false);
        if (tv == nullptr) return false;
        const auto dump = controlTelevision(tv, {"dump"});
        const size_t end = dump.rfind('}');
        if (end == std::string::npos) return false;
        const auto all = nlohmann::json::parse(dump.substr(0, end + 1));
        for (const auto& client : all.at("clients")) {
            if (client.at("pid") != getpid() || client.at("registrations") != expected) continue;
            // As any call of the main interface: has the television watched.
            return getQelTvApiService() != nullptr;
        }
        return false;
    });
}

/**
 * A television for each test. The library keeps its proxies over the tests and only lets go of
 * them when it sees the television die, so that a new one is of use once it has the library as its
 * client.
 */
class WithTelevision : public testing::Test {
  protected:
    void SetUp() override {
        Sleeps::instance().letAllGo(true);
        television.start();
        ASSERT_TRUE(joinTelevision());
    }

    void TearDown() override {
        watch();
        // A thread that polls at the end of the process must do so asleep.
        Sleeps::instance().letAllGo(false);
    }

    /** Before a death: the library may have let go of the proxy that watches since the start. */
    static void watch() { getQelTvApiService(); }

    void restart() {
        watch();
        television.kill();
        television.start();
        ASSERT_TRUE(joinTelevision());
    }

    Daemon television;
};

/** A notification of the usual shape: its type and four values. */
struct Notified {
    int32_t type;
    uint64_t values[4];
};

}  // namespace wire

#endif  // TESTS_SERVICE_WITH_TELEVISION_H
