#include <pthread.h>
#include <signal.h>
#include <time.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <regex>
#include <set>
#include <thread>

#include "notification_kinds.h"
#include "notifications.h"
#include "suggestion.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

/** How a watch ends. */
struct Limits {
    /** After so many notifications; 0 for no such limit. */
    uint64_t count = 0;
    /** After a line that matches. */
    std::string expected;
    /** After this time; 0 for no such limit. */
    double seconds = 0;
};

/** Prints notifications as they arrive, one line each, from the threads that bring them. */
class Printer {
  public:
    void configure(bool json, const Limits& limits) {
        mJson = json;
        mCount = limits.count;
        if (limits.expected.empty()) return;
        try {
            mExpected = std::regex(limits.expected, std::regex::extended);
        } catch (const std::regex_error&) {
            throw Failure(kUsage, "\"" + limits.expected + "\" is no regular expression");
        }
    }

    void print(const std::string& kind, const Json& values) {
        const Described described = describe(kind, values);
        std::lock_guard<std::mutex> guard(mLock);
        if (mComplete) return;
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        const std::string line = mJson ? jsonLine(now, kind, described) : text(kind, described);
        if (mJson) {
            printf("%s\n", line.c_str());
        } else {
            tm local{};
            localtime_r(&now.tv_sec, &local);
            printf("%02d:%02d:%02d.%03ld  %s\n", local.tm_hour, local.tm_min, local.tm_sec,
                   now.tv_nsec / 1000000, line.c_str());
        }
        const bool failed = fflush(stdout) != 0;
        ++mPrinted;
        mComplete =
                mExpected ? std::regex_search(line, *mExpected) : mCount != 0 && mPrinted == mCount;
        // The main thread waits for the signal that ends the command.
        if (mComplete || failed) kill(getpid(), SIGTERM);
    }

    /** Whether all that was waited for has arrived. */
    bool complete() {
        std::lock_guard<std::mutex> guard(mLock);
        return mComplete || (mCount == 0 && !mExpected);
    }

    uint64_t printed() {
        std::lock_guard<std::mutex> guard(mLock);
        return mPrinted;
    }

  private:
    static std::string jsonLine(const timespec& now, const std::string& kind,
                                const Described& described) {
        Json line{
                {"time", static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9},
                {"kind", kind}};
        if (!described.event.empty()) line["event"] = described.event;
        line["values"] = Json::object();
        for (const auto& value : described.values) line["values"][value.name] = value.value;
        return jsonText(line);
    }

    static std::string text(const std::string& kind, const Described& described) {
        std::string line = kind;
        if (line.size() < 16) line.resize(16, ' ');
        if (!described.eventShort.empty()) line += " " + described.eventShort;
        for (const auto& value : described.values) {
            // The tag of a registration without one.
            if (value.name == "tag" && value.value == 0) continue;
            line += " " + value.name + "=" + printable(value.text);
        }
        return line;
    }

    std::mutex mLock;
    bool mJson = false;
    uint64_t mCount = 0;
    std::optional<std::regex> mExpected;
    uint64_t mPrinted = 0;
    bool mComplete = false;
};

// Never destroyed: notifications arrive until the very end of the process.
Printer& sPrinter = *new Printer;

void watch(const std::vector<std::string>& wanted, bool json, const Limits& limits) {
    sPrinter.configure(json, limits);

    // Before anything makes a thread, which must not take the signals.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);

    std::vector<NotificationKind> chosen;
    std::vector<std::string> names;
    std::set<std::string> missing(wanted.begin(), wanted.end());
    for (const NotificationKind& kind : notificationKinds()) {
        names.emplace_back(kind.name);
        if (wanted.empty() || missing.erase(kind.name) != 0) chosen.push_back(kind);
    }
    if (!missing.empty()) {
        const std::string& name = *missing.begin();
        throw Failure(kUsage, "there is no kind " + name + suggestion(name, names) +
                                      "; qeltvctl watch --list shows them");
    }
    requireService();
    listen(chosen, [](const char* kind, const Json& values) { sPrinter.print(kind, values); });

    if (limits.seconds <= 0) {
        int signal = 0;
        sigwait(&signals, &signal);
    } else {
        const auto whole = static_cast<time_t>(limits.seconds);
        const timespec limit{
                whole, static_cast<long>((limits.seconds - static_cast<double>(whole)) * 1e9)};
        sigtimedwait(&signals, nullptr, &limit);
    }
    if (sPrinter.complete()) return;
    const std::string seen = std::to_string(sPrinter.printed());
    if (!limits.expected.empty()) {
        throw Failure(kRefused,
                      "none of " + seen + " notifications matches \"" + limits.expected + "\"");
    }
    throw Failure(kRefused,
                  seen + " of " + std::to_string(limits.count) + " notifications arrived");
}

void listKinds() {
    std::vector<std::vector<std::string>> rows{{"KIND", "REGISTERED BY"}};
    const Json& known = notificationNames().at("notifications");
    for (const NotificationKind& kind : notificationKinds()) {
        std::string functions;
        for (const Json& one : known) {
            if (one.at("name") != kind.name) continue;
            for (const Json& function : one.at("registeredBy")) {
                functions += (functions.empty() ? "" : ", ") + function.get<std::string>();
            }
        }
        rows.push_back({kind.name, functions});
    }
    printTable(rows);
}

}  // namespace

void addWatch(Command& app) {
    struct Options {
        std::vector<std::string> kinds;
        bool json = false, list = false;
        Limits limits;
    };
    auto options = std::make_shared<Options>();
    Command* command = app.addCommand("watch", "Print notifications as they arrive");
    command->addOption("kind", options->kinds, "Only these kinds; see --list")
            ->offerFrom("watch --list");
    command->addFlag("--list", options->list, "List the kinds");
    Option* count = command->addOption("--count", options->limits.count,
                                       "End after this many; fewer are a failure (exit status 1)")
                            ->notNegative();
    command->addOption("--expect", options->limits.expected,
                       "End after a line that this extended regular expression matches; a failure "
                       "(exit status 1) without one")
            ->excludes(count);
    command->addOption("--seconds,--timeout", options->limits.seconds, "End after this time")
            ->notNegative();
    addJson(command, &options->json);
    command->callback([options] {
        if (options->list) {
            listKinds();
        } else {
            watch(options->kinds, options->json, options->limits);
        }
    });
}

}  // namespace tool
