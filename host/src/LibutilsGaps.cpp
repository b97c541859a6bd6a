// Functions that the headers of libutils declare and its packaged library leaves out.

#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include <utils/Errors.h>
#include <utils/misc.h>

#include "Fork.h"

namespace android {

std::string statusToString(status_t status) {
    switch (status) {
        case OK:
            return "OK";
        case UNKNOWN_ERROR:
            return "UNKNOWN_ERROR";
        case NO_MEMORY:
            return "NO_MEMORY";
        case INVALID_OPERATION:
            return "INVALID_OPERATION";
        case BAD_VALUE:
            return "BAD_VALUE";
        case BAD_TYPE:
            return "BAD_TYPE";
        case NAME_NOT_FOUND:
            return "NAME_NOT_FOUND";
        case PERMISSION_DENIED:
            return "PERMISSION_DENIED";
        case NO_INIT:
            return "NO_INIT";
        case ALREADY_EXISTS:
            return "ALREADY_EXISTS";
        case DEAD_OBJECT:
            return "DEAD_OBJECT";
        case FAILED_TRANSACTION:
            return "FAILED_TRANSACTION";
        case BAD_INDEX:
            return "BAD_INDEX";
        case NOT_ENOUGH_DATA:
            return "NOT_ENOUGH_DATA";
        case WOULD_BLOCK:
            return "WOULD_BLOCK";
        case TIMED_OUT:
            return "TIMED_OUT";
        case UNKNOWN_TRANSACTION:
            return "UNKNOWN_TRANSACTION";
        case FDS_NOT_ALLOWED:
            return "FDS_NOT_ALLOWED";
        case UNEXPECTED_NULL:
            return "UNEXPECTED_NULL";
        default:
            return std::to_string(status) + " (" + strerror(-status) + ")";
    }
}

namespace {

// Never destroyed: libraries may report while the process ends.
struct SyspropCallbacks {
    std::multimap<int, sysprop_change_callback, std::greater<int>> byPriority;
};

SyspropCallbacks& syspropCallbacks() {
    static auto* callbacks = new SyspropCallbacks;
    return *callbacks;
}

}  // namespace

void add_sysprop_change_callback(sysprop_change_callback callback, int priority) {
    SyspropCallbacks& callbacks = syspropCallbacks();
    std::lock_guard<std::mutex> lock(
            hidlhost::processMutex(hidlhost::ProcessLock::kSystemProperties));
    callbacks.byPriority.emplace(priority, callback);
}

void report_sysprop_change() {
    SyspropCallbacks& callbacks = syspropCallbacks();
    std::vector<sysprop_change_callback> toCall;
    {
        std::lock_guard<std::mutex> lock(
                hidlhost::processMutex(hidlhost::ProcessLock::kSystemProperties));
        for (const auto& [priority, callback] : callbacks.byPriority) toCall.push_back(callback);
    }
    for (sysprop_change_callback callback : toCall) callback();
}

}  // namespace android
