#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace hidlhost {

/** One megabyte less two pages, of which a guard page is one. */
constexpr size_t kDeviceTransactionBytes = 1024 * 1024 - 2 * 4096;

/** From the environment, read once. */
struct Settings {
    /** 0 without a limit. */
    uint32_t callTimeoutMs = 0;
    /** The most bytes of transactions in progress towards this process. */
    size_t transactionBytes = kDeviceTransactionBytes;
    /** Whether calls to a process without a pool may run on any thread, one at a time. */
    bool anyThread = false;
    /** How long a socket waits before patience is asked. */
    uint32_t firstWaitMs = 1000;

    static const Settings& get();
};

}  // namespace hidlhost
