#include <android-base/unique_fd.h>
#include <hidlhost/runtime_directory.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <regex>

#include "tool.h"
#include "transaction_text.h"

namespace tool {
namespace {

using android::base::unique_fd;
using Json = nlohmann::ordered_json;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

struct MonitorOptions {
    bool json = false;
    std::string match;
    std::string record;
    /** 0 for no such limit. */
    uint64_t count = 0;
    double seconds = 0;
};

/** The television's socket for monitors. */
unique_fd connectToTelevision() {
    requireService();
    const std::string path = hidlhost::runtimeDirectory() + "/qeltvd-monitor";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path)) {
        throw Failure(kUnreachable, path + " is too long for a socket");
    }
    memcpy(address.sun_path, path.c_str(), path.size() + 1);
    unique_fd fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!fd.ok() ||
        connect(fd.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
        throw Failure(kUnreachable, "the service that runs has no monitor socket (" + path + ": " +
                                            strerror(errno) + "); qeltvd has one");
    }
    return fd;
}

std::optional<std::regex> regularExpression(const std::string& text) {
    if (text.empty()) return std::nullopt;
    try {
        return std::regex(text, std::regex::extended);
    } catch (const std::regex_error&) {
        throw Failure(kUsage, "\"" + text + "\" is no regular expression");
    }
}

/** Prints lines of the television, or writes them to a file. */
class Lines {
  public:
    explicit Lines(const MonitorOptions& options)
            : mJson(options.json || !options.record.empty()),
              mMatch(regularExpression(options.match)) {
        if (options.record.empty()) return;
        mFile.reset(fopen(options.record.c_str(), "we"));
        if (mFile == nullptr) {
            throw Failure(kRefused, options.record + " cannot be written: " + strerror(errno));
        }
    }

    void take(const std::string& text) {
        const Json line = Json::parse(text, nullptr, false);
        if (!line.is_object()) throw Failure(kRefused, "the television sends no lines of JSON");
        if (line.contains("error")) throw Failure(kRefused, line.value("error", ""));
        if (line.contains("television")) {
            fprintf(stderr, "qeltvctl: monitoring the television, process %lld\n",
                    static_cast<long long>(line.value("television", int64_t{0})));
            return;
        }
        if (line.contains("lost")) {
            const auto lost = line.value("lost", uint64_t{0});
            print(mJson ? text : std::to_string(lost) + " lost");
            return;
        }
        const std::string shown = mJson ? text : transactionText(line);
        if (mMatch && !std::regex_search(shown, *mMatch)) return;
        print(mJson ? shown : head(line) + shown);
        ++mPrinted;
    }

    uint64_t printed() const { return mPrinted; }

  private:
    static std::string head(const Json& line) {
        const double time = line.value("time", 0.0);
        const auto seconds = static_cast<time_t>(time);
        tm local{};
        localtime_r(&seconds, &local);
        char text[64];
        snprintf(text, sizeof(text), "%02d:%02d:%02d.%03d  %lld  ", local.tm_hour, local.tm_min,
                 local.tm_sec, static_cast<int>((time - static_cast<double>(seconds)) * 1000),
                 static_cast<long long>(line.value("pid", int64_t{0})));
        return text;
    }

    void print(const std::string& line) {
        FILE* file = mFile != nullptr ? mFile.get() : stdout;
        if (fprintf(file, "%s\n", line.c_str()) < 0 || fflush(file) != 0) {
            throw Failure(kRefused, std::string("a line cannot be written: ") + strerror(errno));
        }
    }

    struct Close {
        void operator()(FILE* file) const { fclose(file); }
    };
    const bool mJson;
    const std::optional<std::regex> mMatch;
    std::unique_ptr<FILE, Close> mFile;
    uint64_t mPrinted = 0;
};

void monitor(const MonitorOptions& options) {
    // Before anything makes a thread, which must not take the signals.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    const unique_fd ends(signalfd(-1, &signals, SFD_CLOEXEC));

    Lines lines(options);
    const unique_fd television = connectToTelevision();
    const auto deadline =
            steady_clock::now() + std::chrono::duration_cast<steady_clock::duration>(
                                          std::chrono::duration<double>(options.seconds));
    std::string unread;
    for (bool ended = false; !ended;) {
        int wait = -1;
        if (options.seconds > 0) {
            const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
            if (left <= milliseconds(0)) break;
            wait = static_cast<int>(std::min<int64_t>(left.count(), 3'600'000));
        }
        pollfd watched[] = {{television.get(), POLLIN, 0}, {ends.get(), POLLIN, 0}};
        if (poll(watched, 2, wait) <= 0) continue;
        if (watched[0].revents != 0) {
            char bytes[65536];
            const ssize_t size = read(television.get(), bytes, sizeof(bytes));
            if (size <= 0) throw Failure(kUnreachable, "the television has ended");
            unread.append(bytes, static_cast<size_t>(size));
            size_t begin = 0;
            for (size_t end; !ended && (end = unread.find('\n', begin)) != std::string::npos;
                 begin = end + 1) {
                lines.take(unread.substr(begin, end - begin));
                ended = options.count != 0 && lines.printed() >= options.count;
            }
            unread.erase(0, begin);
        } else if (watched[1].revents != 0) {
            break;
        }
    }
    if (lines.printed() < options.count) {
        throw Failure(kRefused, std::to_string(lines.printed()) + " of " +
                                        std::to_string(options.count) +
                                        " calls and notifications "
                                        "arrived");
    }
}

}  // namespace

void addMonitor(Command& app) {
    auto options = std::make_shared<MonitorOptions>();
    Command* command = app.addCommand(
            "monitor", "Print the calls of all clients and the notifications to them");
    addJson(command, &options->json);
    command->addOption("--match", options->match,
                       "Only lines that this extended regular expression matches");
    command->addOption("--record", options->record,
                       "Write the lines of --json to this file, for \"replay\"");
    command->addOption("--count", options->count,
                       "End after this many; fewer are a failure (exit status 1)")
            ->notNegative();
    command->addOption("--timeout", options->seconds, "End after this time in seconds")
            ->notNegative();
    command->callback([options] { monitor(*options); });
}

}  // namespace tool
