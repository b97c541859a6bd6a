#pragma once

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "eventually.h"

namespace kit {

/** Width of the service's process, seen from the tests. */
enum class Width { kOwn, kOther };

inline std::string serviceProgram(Width width) {
    const char* trees[] = {QELTV_BUILD_DIR, QELTV_HOST_BUILD_DIR};
    return trees[width == Width::kOther] + std::string("/tests/host/kit_service");
}

/** The tests run emulated and a service for this machine is there: two widths can meet. */
inline bool hasOtherWidth() {
    return *QELTV_EMULATOR != '\0' && access(serviceProgram(Width::kOther).c_str(), X_OK) == 0;
}

inline size_t openDescriptors() {
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        count += entry.is_symlink();
    }
    return count;
}

/** A kit_service, killed at the end of its scope or of the test program. */
class Process {
  public:
    struct Options {
        size_t threads = 8;
        std::vector<std::string> environment = {};
        Width width = Width::kOwn;
    };

    Process() : Process(Options()) {}
    explicit Process(const Options& options) {
        int out[2];
        char path[] = "/tmp/kit-stderr-XXXXXX";
        int errors = mkostemp(path, O_CLOEXEC);
        if (errors < 0 || pipe2(out, O_CLOEXEC) != 0) abort();
        mErrorPath = path;

        std::vector<std::string> words;
        if (options.width == Width::kOwn) {
            std::istringstream emulator(QELTV_EMULATOR);
            for (std::string word; emulator >> word;) words.push_back(word);
        }
        words.push_back(serviceProgram(options.width));
        words.push_back(std::to_string(options.threads));
        std::vector<std::string> variables = options.environment;
        for (char** variable = environ; *variable != nullptr; ++variable) {
            std::string name(*variable, strcspn(*variable, "=") + 1);
            if (std::none_of(options.environment.begin(), options.environment.end(),
                             [&](const std::string& set) { return set.rfind(name, 0) == 0; })) {
                variables.push_back(*variable);
            }
        }
        std::vector<char*> argv = pointers(&words);
        std::vector<char*> envp = pointers(&variables);

        mPid = fork();
        if (mPid == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            dup2(out[1], STDOUT_FILENO);
            dup2(errors, STDERR_FILENO);
            execvpe(argv[0], argv.data(), envp.data());
            _exit(127);
        }
        close(out[1]);
        close(errors);
        char word[6] = {};
        mReady = read(out[0], word, sizeof(word)) == 6;
        close(out[0]);
    }

    ~Process() {
        kill();
        // It ends by a signal, so that a sanitizer's findings show in no exit status.
        std::string output = errors();
        EXPECT_EQ(output.find("Sanitizer"), std::string::npos) << output;
        EXPECT_EQ(output.find("runtime error:"), std::string::npos) << output;
        unlink(mErrorPath.c_str());
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    bool ready() const { return mReady; }
    pid_t pid() const { return mPid; }

    void kill() {
        if (mPid <= 0) return;
        ::kill(mPid, SIGKILL);
        wait();
    }
    /** The exit status, or -1 for a death by signal. */
    int wait() {
        int status = 0;
        waitpid(mPid, &status, 0);
        mPid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    /** Alive and not a zombie. */
    bool running() const { return mPid > 0 && waitpid(mPid, nullptr, WNOHANG) == 0; }

    size_t threads() const {
        const std::string tasks = "/proc/" + std::to_string(mPid) + "/task";
        return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(tasks),
                                                 std::filesystem::directory_iterator()));
    }
    /** What it has used so far. */
    std::chrono::milliseconds processorTime() const {
        std::ifstream file("/proc/" + std::to_string(mPid) + "/stat");
        std::string text;
        std::getline(file, text);
        // Behind the name, which may hold anything: state, ten numbers, user and system time.
        std::istringstream words(text.substr(text.rfind(')') + 1));
        std::string skipped;
        for (int i = 0; i < 11; ++i) words >> skipped;
        long user = 0, system = 0;
        words >> user >> system;
        return std::chrono::milliseconds((user + system) * 1000 / sysconf(_SC_CLK_TCK));
    }

    std::string errors() const {
        std::ifstream file(mErrorPath);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

  private:
    static std::vector<char*> pointers(std::vector<std::string>* words) {
        std::vector<char*> result;
        for (std::string& word : *words) result.push_back(word.data());
        result.push_back(nullptr);
        return result;
    }

    pid_t mPid = -1;
    bool mReady = false;
    std::string mErrorPath;
};

}  // namespace kit
