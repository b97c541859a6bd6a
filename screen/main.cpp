#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "Hub.h"
#include "Model.h"
#include "Server.h"
#include "command_line.h"

namespace {

/** Status of a server that wants to be started anew. */
constexpr int kAgain = 75;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

struct Options {
    int port = 8130;
    bool open = false;
};

/** What the servers, one after the other, share with their parent. */
struct Common {
    std::atomic<int> port;
};

void openBrowser(const std::string& address) {
    if (fork() != 0) return;
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execlp("xdg-open", "xdg-open", address.c_str(), nullptr);
    fprintf(stderr, "qeltvscreen: xdg-open cannot be started; open %s in a browser\n",
            address.c_str());
    _exit(kFailed);
}

/** Serves until the process is ended; SIGTERM and SIGINT are blocked. */
[[noreturn]] void serve(Common* common, bool first, bool open) {
    // A server without its parent would keep the port for ever.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    try {
        // Never destroyed: notifications arrive until the very end of the process.
        auto& hub = *new screen::Hub;
        // The library keeps its proxy of the channel list of a dead television for the life of the
        // process, so a television that has come back wants a new process.
        auto& model = *new screen::Model(hub, [] { _exit(kAgain); });
        auto& server = *new screen::Server(model, hub, common->port);
        common->port = server.port();
        const std::string address = "http://127.0.0.1:" + std::to_string(server.port()) + "/";
        if (first) {
            printf("%s\n", address.c_str());
            fflush(stdout);
            if (open) openBrowser(address);
        }
        std::thread([] {
            sigset_t ends;
            sigemptyset(&ends);
            sigaddset(&ends, SIGINT);
            sigaddset(&ends, SIGTERM);
            int signal = 0;
            sigwait(&ends, &signal);
            _exit(0);
        }).detach();
        server.run();
    } catch (const std::exception& error) {
        fprintf(stderr, "qeltvscreen: %s\n", error.what());
    }
    _exit(kFailed);
}

/** Starts servers, one after the other, until it is ended itself. */
int watch(const Options& options) {
    void* const memory = mmap(nullptr, sizeof(Common), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        perror("qeltvscreen: no shared memory");
        return kFailed;
    }
    auto* const common = new (memory) Common{};
    common->port = options.port;

    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGCHLD}) sigaddset(&signals, signal);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    for (bool first = true;; first = false) {
        const pid_t server = fork();
        if (server < 0) {
            perror("qeltvscreen: no process");
            return kFailed;
        }
        if (server == 0) serve(common, first, options.open);
        int status = 0;
        bool ends = false;
        while (waitpid(server, &status, ends ? 0 : WNOHANG) != server) {
            int signal = 0;
            if (sigwait(&signals, &signal) == 0 && signal != SIGCHLD) {
                ends = true;
                kill(server, SIGTERM);
            }
        }
        if (ends) return 0;
        const bool again = WIFEXITED(status) && WEXITSTATUS(status) == kAgain;
        // Some functions of the library end the process when a reply is lost.
        const bool aborted = WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
        if (!again && !aborted) {
            if (WIFSIGNALED(status)) {
                fprintf(stderr, "qeltvscreen: the server was ended by signal %d\n",
                        WTERMSIG(status));
            }
            return WIFEXITED(status) ? WEXITSTATUS(status) : kFailed;
        }
        if (aborted) usleep(200'000);
    }
}

}  // namespace

int main(int argc, char** argv) {
    tool::CommandLine line(
            "qeltvscreen", "Shows the television in a web browser. Prints the address of the page.",
            "Exit status: 0 ended by SIGTERM or SIGINT, 1 failed, 2 wrong usage.", QELTV_VERSION);
    Options options;
    line.addOption("--port", options.port, "Port on 127.0.0.1; 0 for a free one")
            ->between(0, 65535)
            ->showDefault();
    line.addFlag("--open", options.open, "Open the page in the browser of the desktop");
    bool usable = false;
    line.callback([&] { usable = true; });
    if (!line.run(argc, argv)) return kWrongUsage;
    return usable ? watch(options) : 0;
}
