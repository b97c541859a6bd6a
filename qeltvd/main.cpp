#define LOG_TAG "qeltvd"

#include <android/hidl/manager/1.0/IServiceManager.h>
#include <hidl/HidlTransportSupport.h>
#include <hidl/ServiceManagement.h>
#include <hidlhost/runtime_directory.h>
#include <log/log.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

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
#include "Monitor.h"
#include "MultiviewService.h"
#include "Process.h"
#include "RatingService.h"
#include "RecordService.h"
#include "ScanService.h"
#include "StateLock.h"
#include "Television.h"
#include "TimeService.h"
#include "TimeshiftService.h"
#include "command_line.h"

namespace qeltvd {
namespace {

using android::sp;

constexpr size_t kCallThreads = 16;
/** How long calls that run may go on when the television ends. */
constexpr std::chrono::seconds kLastCalls{5};

enum ExitStatus { kEnded = 0, kFailed = 1, kWrongUsage = 2 };

struct Options {
    std::string state;
    std::string instance = "default";
    std::vector<std::string> regions;
    bool verbose = false;
    bool replace = false;
};

/** The state directory if none is named; "" if this user has no home. */
std::string defaultState() {
    if (const char* state = getenv("XDG_STATE_HOME"); state != nullptr && *state == '/') {
        return std::string(state) + "/qeltvd";
    }
    const char* home = getenv("HOME");
    return home != nullptr && *home == '/' ? std::string(home) + "/.local/state/qeltvd" : "";
}

/** Publishes a service with what the switchboard needs to know of its interface. */
template <class I, size_t N>
void publish(Switchboard& switchboard, const std::string& instance, const char* interface,
             const char* const (&methods)[N], const sp<I>& service) {
    const auto withCode = [](int32_t code, bool everywhere) -> I* {
        return new Default<I>(code, everywhere);
    };
    if (!switchboard.publish<I>(interface, instance, {methods, methods + N}, service, withCode)) {
        throw std::runtime_error(std::string(interface) + " cannot be registered");
    }
}

// The service is a list of macro arguments where its constructor has several.
#define PUBLISH(interface, ...)                                                          \
    publish<interface>(switchboard, options.instance, #interface, k##interface##Methods, \
                       __VA_ARGS__)

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

/** Blocks the signals that end the television, for this thread and those that it starts. */
sigset_t blockEndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT}) {
        struct sigaction action {};
        // Shells have background processes ignore the interrupts of the terminal.
        if (sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            sigaddset(&signals, number);
        }
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

/** The process of another television with this instance name in this runtime directory, or 0. */
pid_t otherTelevision(const std::string& instance) {
    pid_t process = 0;
    const auto manager = android::hardware::defaultServiceManager();
    if (manager == nullptr) return 0;
    const auto dumped = manager->debugDump([&](const auto& services) {
        for (const auto& service : services) {
            if (service.interfaceName == IQelTvApi::descriptor &&
                service.instanceName == instance) {
                process = service.pid;
            }
        }
    });
    // A killed one leaves its names behind.
    if (!dumped.isOk() || process <= 0 || !isAlive(process)) return 0;
    return IQelTvApi::getService(instance, false) != nullptr ? process : 0;
}

/** @throws std::runtime_error if another television serves */
void refuseToReplace(const std::string& instance) {
    const pid_t other = otherTelevision(instance);
    if (other == 0) return;
    throw std::runtime_error("another television (process " + std::to_string(other) +
                             ") serves in this runtime directory; end it, name another directory "
                             "with QELTV_RUNTIME_DIR, or take its place with --replace");
}

/** Serves until a signal ends it. @throws std::exception if it cannot serve */
void serve(const Options& options) {
    const sigset_t ends = blockEndSignals();
    raiseDescriptorLimit();
    // Held to the very end of the process: its names are withdrawn after main() has returned.
    static const StateLock& lock = *new StateLock(options.state);
    (void)lock;
    if (!options.replace) refuseToReplace(options.instance);
    // Calls arrive to the very end of the process.
    static Monitor& monitor = *new Monitor(hidlhost::runtimeDirectory());
    const struct Closing {
        ~Closing() { monitor.close(); }
    } closing;
    auto television = std::make_unique<Television>(options.state, monitor, options.regions);
    Television& tv = *television;
    try {
        tv.store.probe();
    } catch (const StoreError& e) {
        ALOGW("changes will be refused until the disk has space again: %s", e.what());
    }
    static Switchboard& switchboard = *new Switchboard(
            options.verbose ? Switchboard::CallLog::kOn : Switchboard::CallLog::kOff, monitor);

    android::hardware::configureRpcThreadpool(kCallThreads, false);
    PUBLISH(IQelTvApiBroadcast,
            new BroadcastService(tv.channels, tv.broadcast, tv.notifier, tv.presentation));
    PUBLISH(IQelTvApiCI, new CiService(tv.cam, tv.presentation));
    PUBLISH(IQelTvApiCec, new CecService(tv.settings));
    PUBLISH(IQelTvApiChannelList, new ChannelListService(tv.channels, tv.config, tv.notifier));
    PUBLISH(IQelTvApiConfig, new ConfigService(tv.config, tv.notifier, tv.pin, tv.presentation));
    PUBLISH(IQelTvApiEvent,
            new EventService(tv.channels, tv.clock, tv.config, tv.guide, tv.ratings));
    PUBLISH(IQelTvApiInputSrc, new InputSrcService(tv.inputs, tv.presentation));
    PUBLISH(IQelTvApiMultiview, new MultiviewService(tv.presentation));
    PUBLISH(IQelTvApiPvrbrowser, new BrowserService(tv.clock, tv.recorder));
    PUBLISH(IQelTvApiRating, new RatingService(tv.channels, tv.guide, tv.ratings));
    PUBLISH(IQelTvApiRecord, new RecordService(tv.channels, tv.recorder));
    PUBLISH(IQelTvApiScan,
            new ScanService(tv.channels, tv.config, tv.ratings, tv.scanner,
                            [&tv](uint32_t channelId) { return tv.goTo(channelId); }));
    PUBLISH(IQelTvApiTime, new TimeService(tv.clock, tv.sleepTimer));
    PUBLISH(IQelTvApiTimeshift, new TimeshiftService(tv.timeshift));
    // Last: clients take the main interface for the sign that the television is there.
    PUBLISH(IQelTvApi,
            new MainService({tv.agent,   tv.alerts,  tv.atsc,     tv.captions, tv.channels,
                             tv.clock,   tv.config,  tv.guide,    tv.inputs,   tv.notifier,
                             tv.overAir, tv.picture, tv.pin,      tv.power,    tv.presentation,
                             tv.ratings, tv.sound,   tv.teletext, tv.uart,     tv.upgrade},
                            switchboard));
    ALOGI("serving, state in %s", options.state.c_str());

    int signal = 0;
    while (sigwait(&ends, &signal) != 0) {
    }
    ALOGI("ends: %s", strsignal(signal));
    // A second signal ends it at once.
    pthread_sigmask(SIG_UNBLOCK, &ends, nullptr);
    if (!switchboard.close(kLastCalls)) {
        // They use it.
        (void)television.release();
        throw std::runtime_error("calls still run; the next start finishes the recordings");
    }
    television.reset();
}

int run(const Options& options) {
    if (options.instance.empty()) {
        fprintf(stderr, "qeltvd: --instance needs a name\n");
        return kWrongUsage;
    }
    if (options.state.empty()) {
        fprintf(stderr,
                "qeltvd: neither XDG_STATE_HOME nor HOME names a directory for what the television"
                " keeps; name one with --state\n");
        return kWrongUsage;
    }
    umask(077);
    ignoreSignalsOfWrites();
    __android_log_set_minimum_priority(options.verbose ? ANDROID_LOG_DEBUG : ANDROID_LOG_INFO);
    try {
        serve(options);
        return kEnded;
    } catch (const std::exception& e) {
        fprintf(stderr, "qeltvd: %s\n", e.what());
        return kFailed;
    }
}

}  // namespace
}  // namespace qeltvd

int main(int argc, char** argv) {
    tool::CommandLine line(
            "qeltvd",
            "The reference television: serves the fifteen interfaces of the TV middleware.",
            "Exit status: 0 ended by SIGTERM or SIGINT, 1 failed, 2 wrong usage.", QELTVD_VERSION);
    qeltvd::Options options;
    options.state = qeltvd::defaultState();
    line.addOption("--state", options.state, "Directory for what the television keeps")
            ->showDefault();
    line.addOption("--region", options.regions,
                   "Scan table whose transponders are received beside those of channels.region; "
                   "may be given several times");
    line.addOption(
                "--instance", options.instance,
                "Name under which the interfaces are registered; an overlay finds the television "
                "behind it under another one than \"default\"")
            ->showDefault();
    line.addFlag("--replace", options.replace,
                 "Serve in place of a television that serves in this runtime directory");
    line.addFlag("--verbose", options.verbose, "Log debug lines too, and the method of each call");
    int status = qeltvd::kEnded;
    line.callback([&] { status = qeltvd::run(options); });
    return line.run(argc, argv) ? status : qeltvd::kWrongUsage;
}
