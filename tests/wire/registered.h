/** For tests that raise notifications: the callback object must be there first. */
#ifndef TESTS_WIRE_REGISTERED_H
#define TESTS_WIRE_REGISTERED_H

#include <chrono>
#include <thread>

#include "wire.h"

namespace wire {

/** Starts the scripted service and has the callback object registered; false after a deadline. */
inline bool registered() {
    using std::chrono::steady_clock;
    ScriptedService& service = ScriptedService::instance();
    service.start();
    if (service.callback() == nullptr) registerCallbackHandler();
    const auto deadline = steady_clock::now() + std::chrono::seconds(20);
    while (service.callback() == nullptr) {
        if (steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

}  // namespace wire

#endif  // TESTS_WIRE_REGISTERED_H
