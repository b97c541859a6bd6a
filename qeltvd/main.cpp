#define LOG_TAG "qeltvd"

#include <hidl/HidlTransportSupport.h>
#include <log/log.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "BroadcastService.h"
#include "BrowserService.h"
#include "CecService.h"
#include "ChannelListService.h"
#include "CiService.h"
#include "Code.h"
#include "ConfigService.h"
#include "EventService.h"
#include "InputSrcService.h"
#include "MainService.h"
#include "Methods.h"
#include "MultiviewService.h"
#include "RatingService.h"
#include "RecordService.h"
#include "ScanService.h"
#include "StateLock.h"
#include "TimeService.h"
#include "TimeshiftService.h"

namespace qeltvd {
namespace {

using android::sp;

/** Where the television keeps its state when it is not told; "" where this user has no home. */
std::string defaultState() {
    if (const char* state = getenv("XDG_STATE_HOME"); state != nullptr && *state == '/') {
        return std::string(state) + "/qeltvd";
    }
    const char* home = getenv("HOME");
    return home != nullptr && *home == '/' ? std::string(home) + "/.local/state/qeltvd" : "";
}

/** Publishes a service with what the switchboard needs to know of its interface. */
template <class I, class Default, size_t N>
void publish(Switchboard& switchboard, const char* interface, const char* const (&methods)[N],
             const sp<I>& service) {
    const auto withCode = [](int32_t code, bool everywhere) -> I* {
        return new Default(code, everywhere);
    };
    if (!switchboard.publish<I>(interface, {methods, methods + N}, service, withCode)) {
        throw std::runtime_error(std::string(interface) + " cannot be registered");
    }
}

#define PUBLISH(interface, service) \
    publish<interface, interface##Default>(switchboard, #interface, k##interface##Methods, service)

/** Every client takes some; what a shell gives is enough for a few hundred. */
void raiseDescriptorLimit() {
    rlimit files;
    if (getrlimit(RLIMIT_NOFILE, &files) != 0 || files.rlim_cur == files.rlim_max) return;
    files.rlim_cur = files.rlim_max;
    if (setrlimit(RLIMIT_NOFILE, &files) != 0) {
        ALOGW("the limit of descriptors stays as it is: %s", strerror(errno));
    }
}

/** A reader that is gone and a file that may not grow are errors of a write, not of the process. */
void ignoreSignalsOfWrites() {
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);
}

void serve(const std::string& state) {
    raiseDescriptorLimit();
    const StateLock lock(state);
    Television tv(state);
    try {
        tv.store.probe();
    } catch (const StoreError& e) {
        ALOGW("changes will be refused until there is room: %s", e.what());
    }
    Switchboard switchboard;

    android::hardware::configureRpcThreadpool(16, true);
    PUBLISH(IQelTvApiBroadcast, new BroadcastService(tv));
    PUBLISH(IQelTvApiCI, new CiService(tv));
    PUBLISH(IQelTvApiCec, new CecService(tv));
    PUBLISH(IQelTvApiChannelList, new ChannelListService(tv));
    PUBLISH(IQelTvApiConfig, new ConfigService(tv));
    PUBLISH(IQelTvApiEvent, new EventService(tv));
    PUBLISH(IQelTvApiInputSrc, new InputSrcService(tv));
    PUBLISH(IQelTvApiMultiview, new MultiviewService(tv));
    PUBLISH(IQelTvApiPvrbrowser, new BrowserService(tv));
    PUBLISH(IQelTvApiRating, new RatingService(tv));
    PUBLISH(IQelTvApiRecord, new RecordService(tv));
    PUBLISH(IQelTvApiScan, new ScanService(tv));
    PUBLISH(IQelTvApiTime, new TimeService(tv));
    PUBLISH(IQelTvApiTimeshift, new TimeshiftService(tv));
    // Last: clients take the main interface for the sign that the television is there.
    PUBLISH(IQelTvApi, new MainService(tv, switchboard));
    ALOGI("serving, state in %s", state.c_str());
    android::hardware::joinRpcThreadpool();
}

}  // namespace
}  // namespace qeltvd

int main(int argc, char** argv) {
    CLI::App app("The reference television: serves the fifteen interfaces of the TV middleware.");
    std::string state = qeltvd::defaultState();
    bool verbose = false;
    app.add_option("--state", state, "Directory for what the television keeps")
            ->capture_default_str();
    app.add_flag("--verbose", verbose, "Log debug lines too");
    CLI11_PARSE(app, argc, argv);

    if (state.empty()) {
        fprintf(stderr,
                "qeltvd: neither XDG_STATE_HOME nor HOME names a directory for what the television"
                " keeps; name one with --state\n");
        return 2;
    }
    umask(077);
    qeltvd::ignoreSignalsOfWrites();
    __android_log_set_minimum_priority(verbose ? ANDROID_LOG_DEBUG : ANDROID_LOG_INFO);
    try {
        qeltvd::serve(state);
    } catch (const std::exception& e) {
        fprintf(stderr, "qeltvd: %s\n", e.what());
        return 1;
    }
    return 0;
}
