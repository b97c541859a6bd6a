// The time from the start of a program to its first answer: the exec of a process that links the
// library, up to main(), and there the first call and the ones after it. The television runs beside
// it.
//
//   cold_start_bench [ROUNDS]     medians of 200 without

#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "daemon.h"

namespace {

double now() {
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

/** As cold_start_client writes it. */
struct Times {
    double main;
    double first;
    double second;
};

Times measure(const char* client) {
    int ends[2];
    if (pipe(ends) != 0) abort();
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(ends[1], STDOUT_FILENO);
        char start[32];
        snprintf(start, sizeof(start), "%.3f", now());
        execl(client, client, start, nullptr);
        _exit(127);
    }
    close(ends[1]);
    Times times;
    const bool whole = read(ends[0], &times, sizeof(times)) == sizeof(times);
    close(ends[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    if (!whole || status != 0) {
        fprintf(stderr, "cold_start_bench: the call has failed\n");
        exit(1);
    }
    return times;
}

void print(const char* what, std::vector<double> values) {
    std::sort(values.begin(), values.end());
    printf("%-22s %8.1f us (99th percentile %.1f)\n", what, values[values.size() / 2],
           values[values.size() * 99 / 100]);
}

}  // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? atoi(argv[1]) : 200;
    const std::string client =
            std::filesystem::canonical("/proc/self/exe").parent_path() / "cold_start_client";
    wire::TemporaryDirectory runtime;
    setenv("QELTV_RUNTIME_DIR", runtime.path().c_str(), 1);
    wire::Daemon television;
    television.start();
    std::vector<double> mains, firsts, seconds;
    for (int i = 0; i < rounds; ++i) {
        const Times times = measure(client.c_str());
        mains.push_back(times.main);
        firsts.push_back(times.first);
        seconds.push_back(times.second);
    }
    print("exec to main()", mains);
    print("first call in main()", firsts);
    print("second call", seconds);
    return 0;
}
