#include "Trace.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <hwbinder/Parcel.h>
#include <time.h>
#include <unistd.h>
#include <utils/Errors.h>

#include "Codec.h"
#include "Threads.h"

namespace hidlhost {
namespace {

/** From QELTV_TRACE: what to trace; empty names mean everything. */
struct Wanted {
    bool any = false;
    std::vector<std::string> names;

    Wanted() {
        const char* text = getenv("QELTV_TRACE");
        if (text == nullptr || *text == '\0' || strcmp(text, "0") == 0) return;
        any = true;
        if (strcmp(text, "1") == 0) return;
        std::string rest = text;
        while (!rest.empty()) {
            size_t comma = rest.find(',');
            std::string name = rest.substr(0, comma);
            if (!name.empty()) names.push_back(name);
            rest = comma == std::string::npos ? "" : rest.substr(comma + 1);
        }
    }

    bool wants(const char* interface) const {
        if (names.empty()) return any;
        for (const std::string& name : names) {
            if (name == interface) return true;
        }
        return false;
    }
};

const Wanted& wanted() {
    static const Wanted& what = *new Wanted;
    return what;
}

uint64_t now(clockid_t clock) {
    timespec time;
    clock_gettime(clock, &time);
    return static_cast<uint64_t>(time.tv_sec) * 1000000000 + static_cast<uint64_t>(time.tv_nsec);
}

size_t bytesOf(const android::hardware::Parcel& parcel) {
    return parcel.dataSize() + parcel.payloadSize();
}

/** The method in "HIDL::IFoo::method::client", if it is one of the interface. */
std::string methodIn(const char* point, const char* interface) {
    std::string prefix = std::string("HIDL::") + interface + "::";
    if (point == nullptr || strncmp(point, prefix.c_str(), prefix.size()) != 0) return "";
    const char* method = point + prefix.size();
    const char* end = strstr(method, "::");
    return end == nullptr ? "" : std::string(method, end);
}

}  // namespace

const bool Trace::sEnabled = wanted().any;

Trace::Trace(bool incoming, const android::hardware::Parcel& arguments, uint32_t code, bool oneway)
        : mIncoming(incoming), mOneway(oneway), mCode(code) {
    if (__builtin_expect(!sEnabled, 1)) return;
    const char* name = Codec::interfaceOf(arguments);
    const char* last = strrchr(name, ':');
    snprintf(mInterface, sizeof(mInterface), "%s", last == nullptr ? name : last + 1);
    mWanted = wanted().wants(mInterface);
    if (!mWanted) return;
    mArgumentBytes = bytesOf(arguments);
    mStart = now(CLOCK_MONOTONIC);
}

void Trace::finish(const android::hardware::Parcel* result, android::status_t status) {
    if (__builtin_expect(!mWanted, 1)) return;
    uint64_t took = now(CLOCK_MONOTONIC) - mStart;
    uint64_t wall = now(CLOCK_REALTIME);
    const ThreadState& thread = threadState();
    const char* point = mIncoming ? thread.serverMethod : thread.clientMethod;
    // Methods of IBase go out under the name of the interface that inherits them.
    std::string method = methodIn(point, mInterface);
    if (method.empty()) method = methodIn(point, "IBase");

    time_t seconds = static_cast<time_t>(wall / 1000000000);
    tm local;
    localtime_r(&seconds, &local);
    char line[512];
    int size = snprintf(line, sizeof(line),
                        "hidl %02d:%02d:%02d.%06" PRIu64
                        " %s %s %s(%u) args %zu result %zu %s%s %" PRIu64 ".%" PRIu64 " us\n",
                        local.tm_hour, local.tm_min, local.tm_sec, wall % 1000000000 / 1000,
                        mIncoming ? "<-" : "->", mInterface, method.c_str(), mCode, mArgumentBytes,
                        result == nullptr ? 0 : bytesOf(*result),
                        android::statusToString(status).c_str(), mOneway ? " oneway" : "",
                        took / 1000, took % 1000 / 100);
    // One write, so that lines of several threads and processes do not mix.
    if (size > 0)
        (void)!write(STDERR_FILENO, line, std::min(sizeof(line), static_cast<size_t>(size)));
}

}  // namespace hidlhost

/**
 * Generated code marks every call with a trace point that names it. libcutils ignores the points on
 * this platform; these take their place in every program that has this library before it.
 */
extern "C" {

uint64_t atrace_get_enabled_tags();
void atrace_begin_body(const char* name);
void atrace_end_body();

uint64_t atrace_get_enabled_tags() {
    return hidlhost::Trace::enabled() ? ~uint64_t{0} : 0;
}

void atrace_begin_body(const char* name) {
    hidlhost::ThreadState& thread = hidlhost::threadState();
    const char* side = strrchr(name, ':');
    if (side == nullptr) return;
    if (strcmp(side, ":client") == 0) thread.clientMethod = name;
    if (strcmp(side, ":server") == 0) thread.serverMethod = name;
}

void atrace_end_body() {}
}
