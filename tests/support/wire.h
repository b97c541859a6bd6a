/** Everything that a test of the library at the wire needs. */
#ifndef TESTS_SUPPORT_WIRE_H
#define TESTS_SUPPORT_WIRE_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "hw_qeltvapi_common.h"
#include "log_capture.h"
#include "scripted_service.h"
#include "table.h"
#include "values.h"

namespace wire {

/** The debug switch for the length of a scope. */
class Debug {
  public:
    explicit Debug(bool on) : mBefore(mTvApiDebug) { mTvApiDebug = on ? 1 : 0; }
    ~Debug() { mTvApiDebug = mBefore; }

  private:
    unsigned char mBefore;
};

/** The service, there, with the log captured and nothing left of earlier tests. */
inline ScriptedService& ready() {
    captureLog();
    ScriptedService& service = ScriptedService::instance();
    service.start();
    service.settle();
    takeLog();
    return service;
}

#ifdef QELTV_EMULATOR
/** Lets death tests start their process anew through the emulator, if there is one. */
inline void startDeathTestsThroughTheEmulator() {
    static const bool done = [] {
        std::istringstream words(QELTV_EMULATOR);
        std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
        if (arguments.empty()) return false;
        arguments.insert(arguments.begin(), "/usr/bin/env");  // which searches the path
        for (const std::string& own : testing::internal::GetInjectableArgvs()) {
            arguments.push_back(own);
        }
        testing::internal::SetInjectableArgvs(arguments);
        return true;
    }();
    (void)done;
}

/**
 * A call whose reply is lost must end the process. It runs in a process that is started anew, with
 * a service of its own.
 */
template <class F>
void expectLostReplyEndsTheProcess(const Values& sent, const F& call) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    startDeathTestsThroughTheEmulator();
    const auto lose = [&] {
        ScriptedService& service = ScriptedService::instance();
        service.start();
        service.expectAndLose(sent);
        // The parent only sees how this process ends.
        service.beforeAnswer([&service] {
            for (const std::string& difference : service.takeDifferences()) {
                fprintf(stderr, "%s\n", difference.c_str());
                _exit(EXIT_FAILURE);
            }
        });
        call();
    };
    EXPECT_DEATH(lose(), "failed HIDL call.*FAILED_TRANSACTION");
}
#endif

}  // namespace wire

#endif  // TESTS_SUPPORT_WIRE_H
