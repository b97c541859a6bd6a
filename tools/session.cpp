#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>

#include "scenario.h"
#include "tool.h"

namespace tool {
namespace {

using std::chrono::duration_cast;
using std::chrono::nanoseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

/** Limits of the start of the television, and of an end that was asked for. */
constexpr seconds kStartLimit{30};
constexpr seconds kEndLimit{5};
/** What shells return for a command that they do not find. */
constexpr int kNotFound = 127;

std::string ownPath() {
    std::array<char, 4096> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    return length > 0 ? std::string(path.data(), static_cast<size_t>(length)) : "";
}

/** The television of the same installation or build tree, else the one of PATH. */
std::string televisionPath() {
    const auto directory = std::filesystem::path(ownPath()).parent_path();
    for (const auto& path : {directory / "qeltvd", directory / "../qeltvd/qeltvd"}) {
        if (access(path.c_str(), X_OK) == 0) return path;
    }
    return "qeltvd";
}

/** A directory of its own for the television, which goes with the object. */
class Directory {
  public:
    Directory() {
        const char* parent = getenv("TMPDIR");
        mPath = std::string(parent != nullptr && *parent != '\0' ? parent : "/tmp") +
                "/qeltv-session.XXXXXX";
        if (mkdtemp(mPath.data()) == nullptr) {
            throw Failure(kRefused, mPath + " cannot be created: " + strerror(errno));
        }
        for (const std::string& name : {runtime(), state()}) {
            if (mkdir(name.c_str(), 0700) != 0) {
                throw Failure(kRefused, name + " cannot be created: " + strerror(errno));
            }
        }
    }
    ~Directory() {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    std::string runtime() const { return mPath + "/runtime"; }
    std::string state() const { return mPath + "/state"; }
    std::string log() const { return mPath + "/qeltvd.log"; }

  private:
    std::string mPath;
};

/** Signals that end the session, and the end of a child; blocked for as long as the object lives.
 */
class Signals {
  public:
    Signals() {
        sigemptyset(&mWaited);
        for (const int each : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) sigaddset(&mWaited, each);
        sigprocmask(SIG_BLOCK, &mWaited, &mBefore);
    }
    ~Signals() { sigprocmask(SIG_SETMASK, &mBefore, nullptr); }
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

    /** The next signal; none when the limit has passed. */
    std::optional<siginfo_t> next(const std::optional<steady_clock::time_point>& deadline) const {
        for (;;) {
            siginfo_t info{};
            int signal = 0;
            if (deadline) {
                const auto left =
                        std::max(nanoseconds(0),
                                 duration_cast<nanoseconds>(*deadline - steady_clock::now()));
                const timespec limit{static_cast<time_t>(left.count() / 1'000'000'000),
                                     static_cast<long>(left.count() % 1'000'000'000)};
                signal = sigtimedwait(&mWaited, &info, &limit);
            } else {
                signal = sigwaitinfo(&mWaited, &info);
            }
            if (signal > 0) return info;
            if (errno != EINTR) return std::nullopt;
        }
    }
    const sigset_t& before() const { return mBefore; }

  private:
    sigset_t mWaited{};
    sigset_t mBefore{};
};

/** A child process, which does not outlive the object. */
class Child {
  public:
    /** @param log file for its output, with a session of its own; "" for a child of the terminal */
    Child(const std::vector<std::string>& words, const std::string& log, const Signals& signals) {
        const pid_t parent = getpid();
        mPid = fork();
        if (mPid < 0) throw Failure(kRefused, std::string("fork: ") + strerror(errno));
        if (mPid == 0) become(words, log, signals, parent);
    }
    ~Child() { end(); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /** Its exit status, or 128 and the signal that has ended it; none while it runs. */
    std::optional<int> status() {
        int status = 0;
        if (mPid > 0 && waitpid(mPid, &status, WNOHANG) == mPid) {
            mPid = -1;
            mStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        return mStatus;
    }
    void send(int signal) const {
        if (mPid > 0) kill(mPid, signal);
    }
    /** SIGTERM, and SIGKILL if that does not end it in time. */
    void end() {
        send(SIGTERM);
        const auto deadline = steady_clock::now() + kEndLimit;
        while (!status() && steady_clock::now() < deadline) usleep(5000);
        if (status()) return;
        send(SIGKILL);
        waitpid(mPid, nullptr, 0);
        mPid = -1;
    }

  private:
    [[noreturn]] static void become(const std::vector<std::string>& words, const std::string& log,
                                    const Signals& signals, pid_t parent) {
        if (!log.empty()) {
            // Ctrl-C on the terminal ends the command, which may need the television to the end.
            setsid();
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (getppid() != parent) _exit(kNotFound);
            const int fd = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
            const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
            dup2(null, STDIN_FILENO);
            dup2(fd, STDOUT_FILENO);
            dup2(fd, STDERR_FILENO);
        }
        sigprocmask(SIG_SETMASK, &signals.before(), nullptr);
        std::vector<char*> arguments;
        for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        execvp(arguments[0], arguments.data());
        fprintf(stderr, "qeltvctl: %s cannot be run: %s\n", arguments[0], strerror(errno));
        _exit(errno == ENOENT ? kNotFound : kNotFound - 1);
    }

    pid_t mPid = -1;
    std::optional<int> mStatus;
};

void printLog(const std::string& path) {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(path.c_str(), "r"), fclose);
    char line[1024];
    while (file != nullptr && fgets(line, sizeof(line), file.get()) != nullptr) fputs(line, stderr);
}

/** Waits for a child that prepares the session; its status, none if it takes too long. */
std::optional<int> finished(Child& child, Child& television, const Signals& signals) {
    const auto deadline = steady_clock::now() + kStartLimit;
    while (!child.status() && !television.status()) {
        const auto info = signals.next(deadline);
        if (info && info->si_signo != SIGCHLD) throw Failure(128 + info->si_signo, "");
        if (!info) break;
    }
    return child.status();
}

/** @param scenario file that describes the television; "" for factory settings */
void session(const std::vector<std::string>& words, const std::string& scenario) {
    // What is wrong with the file shows before anything starts.
    if (!scenario.empty()) (void)Scenario(scenario);
    // Before anything makes a thread, which must not take the signals.
    const Signals signals;
    const Directory directory;
    setenv("QELTV_RUNTIME_DIR", directory.runtime().c_str(), 1);

    Child television({televisionPath(), "--state", directory.state()}, directory.log(), signals);
    {
        // In a process of its own, because this one has no connection that a death could disturb.
        const std::string limit = std::to_string(kStartLimit.count());
        Child wait({ownPath(), "service", "wait", "--timeout", limit}, directory.log(), signals);
        if (finished(wait, television, signals) != std::optional<int>(kDone)) {
            printLog(directory.log());
            throw Failure(kUnreachable, "the television of the session does not start");
        }
    }

    if (!scenario.empty()) {
        Child apply({ownPath(), "scenario", "--", scenario}, "", signals);
        const auto status = finished(apply, television, signals);
        if (!status) {
            throw Failure(kUnreachable,
                          scenario + " cannot be applied: the television does not answer");
        }
        if (*status != kDone) throw Failure(*status, "");
    }

    Child command(words, "", signals);
    std::optional<steady_clock::time_point> deadline;
    int ended = 0;
    while (!command.status()) {
        const auto info = signals.next(deadline);
        if (!info) {
            command.send(SIGKILL);
            deadline.reset();
            continue;
        }
        if (info->si_signo == SIGCHLD) continue;
        // The terminal sends its signals to the command, too.
        if (info->si_code != SI_KERNEL) command.send(info->si_signo);
        ended = info->si_signo;
        if (ended != SIGINT) deadline = steady_clock::now() + kEndLimit;
    }
    const int status = *command.status();
    if (ended != 0 && ended != SIGINT) throw Failure(128 + ended, "");
    if (status != 0) throw Failure(status, "");
}

}  // namespace

void addSession(Command& app) {
    struct Options {
        std::vector<std::string> words;
        std::string scenario;
    };
    auto options = std::make_shared<Options>();
    Command* command = app.addCommand(
            "session",
            "Run a command with a television of its own, which ends with it; the exit status is "
            "that of the command");
    command->addOption("command", options->words,
                       "The command and its arguments. Write -- before it if one of them begins "
                       "with \"-\"")
            ->required();
    command->addOption("--scenario", options->scenario,
                       "A JSON file that describes the television at the start, see docs/ci.md");
    command->callback([options] { session(options->words, options->scenario); });
}

}  // namespace tool
