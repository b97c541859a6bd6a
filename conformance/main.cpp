#include <hidlhost/runtime_directory.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "Run.h"
#include "command_line.h"
#include "printable.h"
#include "suggestion.h"

namespace conformance {
namespace {

enum ExitStatus { kPassed = 0, kFailed = 1, kWrongUsage = 2, kNoService = 3 };

/** Methods that do not answer in time, beyond which nothing more is called. */
constexpr size_t kMostHanging = 12;

constexpr char kAbout[] =
        "Examines the service of the television in the current runtime directory: does it keep to "
        "what the library relies on?";
constexpr char kFooter[] =
        "It calls every method, with arguments that a client might send and with hostile ones. "
        "That changes settings, channel lists, recordings and all else that the service keeps, so "
        "run it against a service with a state that is thrown away. With --read-only it calls only "
        "methods that read, by their names, and leaves out the checks of notifications.\n\n"
        "A line of the report is a check that has passed, has failed (with the first faults: what, "
        "expected, received) or is skipped (with the reason). A check that has met nothing to "
        "examine is skipped. A call may take 10 seconds, or QELTV_CALL_TIMEOUT_MS.\n\n"
        "Exit status: 0 no check failed, 1 a check failed, 2 wrong usage, 3 no service.";

std::vector<std::string> interfaceNames() {
    std::vector<std::string> names;
    for (const auto& interface : transactions::interfaces()) {
        if (strcmp(interface.name, "IQelTvApiCallback") != 0) names.emplace_back(interface.name);
    }
    return names;
}

/** Runs what calls the service, and books the time on its checks. */
template <class Work>
void timed(Run& run, std::initializer_list<const char*> checks, const Work& work) {
    if (!run.wants(checks)) return;
    if (run.gone()) return run.skip(checks, "the service has ended, or hangs");
    const auto begin = std::chrono::steady_clock::now();
    work();
    const auto time = std::chrono::duration_cast<std::chrono::microseconds>(
            std::chrono::steady_clock::now() - begin);
    run.check(*checks.begin()).took(time);
}

void runAll(Run& run) {
    timed(run, {"interfaces.registered", "interfaces.chain", "interfaces.descriptor"},
          [&] { checkInterfaces(run); });
    const std::initializer_list<const char*> methods = {
            "methods.answer", "methods.shape",    "results.records", "results.layouts",
            "results.counts", "results.capacity", "results.texts",   "results.codes"};
    Methods sweep(run);
    timed(run, methods, [&] { sweep.read(); });
    if (!run.options().layouts) run.skip({"results.layouts"}, "not asked for (--layouts)");
    timed(run, {"methods.beyond"}, [&] { checkOrdinals(run); });
    timed(run, {"memory.bounds", "memory.counts", "memory.handles", "memory.released"},
          [&] { checkMemory(run); });
    timed(run,
          {"callbacks.notified", "callbacks.shape", "callbacks.once", "callbacks.processes",
           "callbacks.hanging", "callbacks.death"},
          [&] { checkCallbacks(run); });
    timed(run, methods, [&] {
        sweep.change();
        sweep.finish();
    });
    timed(run, {"hostile.values", "hostile.malformed", "hostile.identity"},
          [&] { checkHostile(run); });
}

int report(Run& run, double seconds) {
    size_t counts[3] = {};
    const std::vector<const Check*> checks = run.reported();
    for (const Check* check : checks) {
        printf("%s", lineOf(*check).c_str());
        ++counts[static_cast<int>(check->outcome())];
    }
    printf("%zu checks: %zu passed, %zu failed, %zu skipped; %llu calls in %.1f s\n", checks.size(),
           counts[0], counts[1], counts[2], static_cast<unsigned long long>(run.service().calls()),
           seconds);
    return counts[1] != 0 ? kFailed : kPassed;
}

int examine(const Options& options) {
    verifyRules();
    Service service(options.interfaces.empty() ? interfaceNames() : options.interfaces);
    size_t found = 0;
    for (const Target& target : service.targets()) found += target.object != nullptr ? 1 : 0;
    if (found == 0) {
        fprintf(stderr,
                "qeltv-conformance: no service of the package is registered in %s; start one, or "
                "name its directory with QELTV_RUNTIME_DIR\n",
                tool::printable(hidlhost::runtimeDirectory()).c_str());
        return kNoService;
    }
    // Opened first, so that a long run is not for nothing.
    std::ofstream junit;
    if (!options.junit.empty()) {
        junit.open(options.junit, std::ios::trunc);
        if (!junit) {
            fprintf(stderr, "qeltv-conformance: %s cannot be written: %s\n",
                    tool::printable(options.junit).c_str(), strerror(errno));
            return kWrongUsage;
        }
    }
    printf("%zu of %zu interfaces in %s, process %s, seed %u\n", found, service.targets().size(),
           tool::printable(hidlhost::runtimeDirectory()).c_str(),
           service.process() != 0 ? std::to_string(service.process()).c_str() : "unknown",
           options.seed);
    fflush(stdout);
    const auto begin = std::chrono::steady_clock::now();
    Run run(service, options);
    runAll(run);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    int status = report(run, time.count());
    if (junit.is_open()) {
        junit << junitOf(run.reported());
        junit.close();
        if (!junit) {
            fprintf(stderr, "qeltv-conformance: %s cannot be written\n",
                    tool::printable(options.junit).c_str());
            status = kFailed;
        }
    }
    return status;
}

/** Prints what is wrong with the names; whether all are known. */
bool namesAreKnown(const Options& options) {
    std::vector<std::string> names = interfaceNames();
    for (const std::string& interface : options.interfaces) {
        if (std::find(names.begin(), names.end(), interface) != names.end()) continue;
        fprintf(stderr, "qeltv-conformance: no interface %s%s\n",
                tool::printable(interface).c_str(), tool::suggestion(interface, names).c_str());
        return false;
    }
    names.clear();
    for (const CheckInfo& info : allChecks()) names.emplace_back(info.name);
    for (const std::string& word : options.checks) {
        bool known = false;
        for (const CheckInfo& info : allChecks()) known = known || selects(word, info);
        if (known) continue;
        fprintf(stderr, "qeltv-conformance: no check %s%s; --list shows them\n",
                tool::printable(word).c_str(), tool::suggestion(word, names).c_str());
        return false;
    }
    return true;
}

int run(int argc, char** argv) {
    tool::CommandLine line("qeltv-conformance", kAbout, kFooter, QELTV_VERSION);
    Options options;
    line.addOption("--interface", options.interfaces,
                   "Only these interfaces, such as IQelTvApiConfig; the service need not have the "
                   "others")
            ->expected(1, 15);
    line.addOption("--check", options.checks, "Only these checks or groups of checks")
            ->expected(1, 100);
    line.addFlag("--list", options.list, "List the checks, and exit");
    line.addOption("--seed", options.seed, "Begins the random arguments")->showDefault();
    line.addOption("--seconds", options.seconds, "How long the hostile calls go on")->showDefault();
    line.addFlag("--read-only", options.readOnly, "Call only methods that read");
    line.addFlag("--layouts", options.layouts,
                 "Also compare records with those of the reference television");
    line.addOption("--item", options.item,
                   "The item of the configuration that is changed to be notified")
            ->showDefault();
    line.addOption("--junit", options.junit, "Also write the report to this file, as JUnit XML");
    int status = kPassed;
    line.callback([&] {
        if (!namesAreKnown(options)) {
            status = kWrongUsage;
        } else if (options.list) {
            for (const CheckInfo& info : allChecks()) printf("%-24s%s\n", info.name, info.text);
        } else {
            status = examine(options);
        }
    });
    return line.run(argc, argv) ? status : kWrongUsage;
}

}  // namespace

bool selects(const std::string& word, const CheckInfo& info) {
    const std::string name = info.name;
    return word == name || word == name.substr(0, name.find('.'));
}

Run::Run(Service& service, const Options& options)
        : mService(service), mOptions(options), mPlausible(options.seed, options.item) {
    for (const CheckInfo& info : allChecks()) mChecks.emplace_back(info);
}

Check& Run::check(const std::string& name) {
    for (Check& check : mChecks) {
        if (name == check.info().name) return check;
    }
    throw std::logic_error("no check " + name);
}

std::vector<const Check*> Run::reported() const {
    std::vector<const Check*> checks;
    for (const Check& check : mChecks) {
        bool wanted = mOptions.checks.empty();
        for (const std::string& word : mOptions.checks) {
            wanted = wanted || selects(word, check.info());
        }
        if (wanted) checks.push_back(&check);
    }
    return checks;
}

bool Run::wants(std::initializer_list<const char*> names) const {
    for (const Check* check : reported()) {
        for (const char* name : names) {
            if (strcmp(name, check->info().name) == 0) return true;
        }
    }
    return false;
}

void Run::skip(std::initializer_list<const char*> names, const std::string& reason) {
    for (const char* name : names) check(name).skip(reason);
}

bool Run::mayCall(const transactions::Method& method) const {
    if (mOptions.readOnly && !onlyReads(method)) return false;
    std::lock_guard<std::mutex> guard(mLock);
    return mHanging.count(&method) == 0;
}

void Run::lookAfter(const Target& target, const transactions::Method* method,
                    android::status_t status) {
    if (status != android::DEAD_OBJECT && status != android::TIMED_OUT) return;
    if (!Service::alive(target)) mGone = true;
    if (status != android::TIMED_OUT) return;
    std::lock_guard<std::mutex> guard(mLock);
    mHanging.insert(method);
    if (mHanging.size() > kMostHanging) mGone = true;
}

}  // namespace conformance

int main(int argc, char** argv) {
    signal(SIGPIPE, SIG_IGN);
    // Read by the runtime with the first call.
    setenv("QELTV_CALL_TIMEOUT_MS", std::to_string(conformance::kCallLimitMilliseconds).c_str(), 0);
    try {
        const int status = conformance::run(argc, argv);
        if (fflush(stdout) == 0) return status;
        fprintf(stderr, "qeltv-conformance: the report cannot be written: %s\n", strerror(errno));
    } catch (const std::exception& e) {
        fprintf(stderr, "qeltv-conformance: %s\n", tool::printable(e.what()).c_str());
    }
    return conformance::kFailed;
}
