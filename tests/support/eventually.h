/** Waits for what other threads and processes bring about. */
#ifndef TESTS_SUPPORT_EVENTUALLY_H
#define TESTS_SUPPORT_EVENTUALLY_H

#include <chrono>
#include <thread>

/** How long a test waits before it gives up: far more than a loaded machine takes. */
constexpr std::chrono::seconds kPatience{30};

/** Whether the condition holds, now or within the limit. */
template <class Condition>
bool eventually(Condition condition, std::chrono::milliseconds limit = kPatience) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

#endif  // TESTS_SUPPORT_EVENTUALLY_H
