#include "daemon.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <thread>

#include "private_runtime.h"

namespace wire {

using namespace qeltvapi::testing::wire;

namespace {

const bool sPrivate = usePrivateRuntime();

constexpr std::chrono::seconds kStartLimit{60};
constexpr unsigned int kProgramLimit = 60;
constexpr unsigned int kDaemonLimit = 600;

/** The words that run a program of the tests' own ABI. */
std::vector<std::string> emulated(std::vector<std::string> arguments) {
    std::istringstream words(QELTV_EMULATOR);
    std::vector<std::string> all;
    for (std::string word; words >> word;) all.push_back(word);
    all.insert(all.end(), arguments.begin(), arguments.end());
    return all;
}

/** Replaces this process; only between fork() and exec. */
[[noreturn]] void become(const std::vector<std::string>& arguments) {
    std::vector<char*> words;
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    execvp(words[0], words.data());
    perror(words[0]);
    _exit(127);
}

}  // namespace

Ended runProgram(const std::vector<std::string>& arguments) {
    int out[2], err[2];
    if (pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) abort();
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(out[1], STDOUT_FILENO);
        dup2(err[1], STDERR_FILENO);
        // Goes over to the program: one that hangs ends with a signal.
        alarm(kProgramLimit);
        become(arguments);
    }
    close(out[1]);
    close(err[1]);
    Ended ended{};
    pollfd ends[] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    std::string* texts[] = {&ended.out, &ended.err};
    for (int open = 2; open > 0;) {
        poll(ends, 2, -1);
        for (int i = 0; i < 2; ++i) {
            if (ends[i].revents == 0) continue;
            char buffer[4096];
            const ssize_t n = read(ends[i].fd, buffer, sizeof(buffer));
            if (n > 0) {
                texts[i]->append(buffer, static_cast<size_t>(n));
                continue;
            }
            close(ends[i].fd);
            ends[i].fd = -1;
            --open;
        }
    }
    int status = 0;
    waitpid(pid, &status, 0);
    ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return ended;
}

Ended runBuilt(std::vector<std::string> arguments) {
    arguments.front() = QELTV_BUILD_DIR "/" + arguments.front();
    return runProgram(emulated(std::move(arguments)));
}

Ended qeltvctl(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "tools/qeltvctl");
    return runBuilt(std::move(arguments));
}

std::string controlTelevision(const android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi>& tv,
                              const std::vector<std::string>& words) {
    using namespace android::hardware;
    FILE* file = tmpfile();
    if (file == nullptr) abort();
    native_handle_t* native = native_handle_create(1, 0);
    native->data[0] = dup(fileno(file));
    hidl_handle handle;
    handle.setTo(native, true);
    hidl_vec<hidl_string> options(words.size());
    for (size_t i = 0; i < words.size(); ++i) options[i] = words[i];
    std::string answer;
    if (tv->debug(handle, options).isOk()) {
        rewind(file);
        char buffer[4096];
        for (size_t n; (n = fread(buffer, 1, sizeof(buffer), file)) > 0;) answer.append(buffer, n);
    }
    fclose(file);
    return answer;
}

TemporaryDirectory::TemporaryDirectory() {
    char path[] = "/tmp/qeltvd-test-XXXXXX";
    if (mkdtemp(path) == nullptr) abort();
    mPath = path;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
}

void Daemon::launch(const std::vector<std::string>& options) {
    mPid = fork();
    if (mPid == 0) {
        // Killed by the test, with the calling thread if that ends, and in any case some time.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        alarm(kDaemonLimit);
        if (mControl != nullptr) {
            setenv("LD_PRELOAD", QELTV_HOST_BUILD_DIR "/tests/support/libshortage_preload.so", 1);
            setenv(kShortageVariable, (mControl->path() + "/state").c_str(), 1);
        }
        if (!mLog.empty()) {
            const int log = open(mLog.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
            dup2(log, STDERR_FILENO);
        }
        // Built for this machine also when the tests are not.
        std::vector<std::string> words{QELTV_HOST_BUILD_DIR "/qeltvd/qeltvd", "--state",
                                       mState.path()};
        words.insert(words.end(), options.begin(), options.end());
        become(words);
    }
}

void Daemon::start(const std::vector<std::string>& options) {
    using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;
    launch(options);
    const auto deadline = std::chrono::steady_clock::now() + kStartLimit;
    while (IQelTvApi::getService("default", false) == nullptr) {
        if (std::chrono::steady_clock::now() > deadline || waitpid(mPid, nullptr, WNOHANG) != 0) {
            fprintf(stderr, "qeltvd does not come up\n");
            abort();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

ShortageState& Daemon::useShortage() {
    mControl = std::make_unique<TemporaryDirectory>();
    const int fd = open((mControl->path() + "/state").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0 || ftruncate(fd, sizeof(ShortageState)) != 0) abort();
    void* memory = mmap(nullptr, sizeof(ShortageState), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (memory == MAP_FAILED) abort();
    close(fd);
    mShortage = static_cast<ShortageState*>(memory);
    return *mShortage;
}

bool Daemon::alive() const {
    siginfo_t ended{};
    return mPid > 0 &&
           waitid(P_PID, static_cast<id_t>(mPid), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == 0;
}

Daemon::~Daemon() {
    kill();
    if (mShortage != nullptr) munmap(mShortage, sizeof(ShortageState));
}

void Daemon::kill() {
    if (mPid <= 0) return;
    ::kill(mPid, SIGKILL);
    waitpid(mPid, nullptr, 0);
    mPid = -1;
}

int Daemon::end(int signal) {
    ::kill(mPid, signal);
    int status = 0;
    waitpid(mPid, &status, 0);
    mPid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace wire
