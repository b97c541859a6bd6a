#define LOG_TAG "hidlhost"

#include "Settings.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <log/log.h>

namespace hidlhost {
namespace {

/** Without a limit of its own a process is bounded all the same. */
constexpr size_t kMostTransactionBytes = 256 * 1024 * 1024;

}  // namespace

const Settings& Settings::get() {
    // Never destroyed: threads read it while the process ends.
    static const Settings& settings = *new Settings([] {
        Settings read;
        if (const char* text = getenv("QELTV_CALL_TIMEOUT_MS"); text != nullptr && *text != '\0') {
            char* end;
            unsigned long value = strtoul(text, &end, 10);
            if (*end != '\0' || value == 0 || value > 86400000) {
                ALOGW("QELTV_CALL_TIMEOUT_MS: '%s' is no number of milliseconds", text);
            } else {
                read.callTimeoutMs = static_cast<uint32_t>(value);
                read.firstWaitMs = std::min(read.firstWaitMs, read.callTimeoutMs);
            }
        }
        if (const char* text = getenv("QELTV_TRANSACTION_BYTES");
            text != nullptr && *text != '\0') {
            char* end;
            unsigned long long value = strtoull(text, &end, 10);
            if (*end != '\0' || *text == '-') {
                ALOGW("QELTV_TRANSACTION_BYTES: '%s' is no number of bytes", text);
            } else if (value == 0 || value > kMostTransactionBytes) {
                read.transactionBytes = kMostTransactionBytes;
            } else {
                read.transactionBytes = static_cast<size_t>(value);
            }
        }
        const char* any = getenv("QELTV_ANY_THREAD");
        read.anyThread = any != nullptr && *any != '\0' && strcmp(any, "0") != 0;
        return read;
    }());
    return settings;
}

}  // namespace hidlhost
