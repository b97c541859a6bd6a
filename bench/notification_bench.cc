// Notifications a second to one client and to eight, and the time from the death of the
// television to the first notification of the one that is there in its place.
//
//   notification_bench

#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

#include "daemon.h"
#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_highlevel.h"

namespace {

using Clock = std::chrono::steady_clock;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

// Below the limit of a client's queue in the television.
constexpr uint64_t kNotifications = 4000;
constexpr int kRounds = 10;
constexpr int kMaxClients = 8;

/** Memory that the processes share: each client's count. */
struct Shared {
    std::atomic<uint64_t> arrived[kMaxClients];
};

Shared* sShared = nullptr;
int sClient = 0;

int onHighlevel(int32_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    sShared->arrived[sClient].fetch_add(1, std::memory_order_relaxed);
    return 0;
}

[[noreturn]] void becomeClient(int client) {
    sClient = client;
    a_qeltvapi_highlevel_register_callback(onHighlevel);
    for (;;) pause();
}

void raise(uint64_t times) {
    wire::controlTelevision(IQelTvApi::getService("default", false),
                            {"raise", "a_hidl_qeltvapi_highlevel_callback_fct", "[1,2,3,4,5,6]",
                             std::to_string(times)});
}

bool allHave(int clients, uint64_t count) {
    return std::all_of(sShared->arrived, sShared->arrived + clients,
                       [&](const auto& arrived) { return arrived >= count; });
}

template <class F>
void waitFor(const F& condition, std::chrono::microseconds pace) {
    const auto deadline = Clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (Clock::now() > deadline) {
            fprintf(stderr, "notification_bench: nothing has come for a minute\n");
            _exit(1);
        }
        std::this_thread::sleep_for(pace);
    }
}

void measureRate(int clients) {
    wire::Daemon television;
    television.start();
    for (auto& arrived : sShared->arrived) arrived = 0;
    std::vector<pid_t> pids;
    for (int i = 0; i < clients; ++i) {
        pids.push_back(fork());
        if (pids.back() == 0) becomeClient(i);
    }
    // Registered once a notification comes.
    waitFor(
            [&] {
                raise(1);
                return allHave(clients, 1);
            },
            std::chrono::milliseconds(20));
    std::vector<double> rates;
    for (int round = 0; round < kRounds; ++round) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        for (auto& arrived : sShared->arrived) arrived = 0;
        const auto start = Clock::now();
        raise(kNotifications);
        waitFor([&] { return allHave(clients, kNotifications); }, std::chrono::microseconds(200));
        const std::chrono::duration<double> time = Clock::now() - start;
        rates.push_back(static_cast<double>(kNotifications) / time.count());
    }
    std::sort(rates.begin(), rates.end());
    printf("%d client%s: %.0f notifications a second to each, %.0f in all (median of %d rounds)\n",
           clients, clients == 1 ? "" : "s", rates[kRounds / 2], rates[kRounds / 2] * clients,
           kRounds);
    for (const pid_t pid : pids) {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
}

void measureRecovery() {
    std::vector<double> times;
    for (auto& arrived : sShared->arrived) arrived = 0;
    wire::Daemon televisions[2];
    televisions[0].start();
    const pid_t client = fork();
    if (client == 0) {
        a_qeltvapi_highlevel_register_callback(onHighlevel);
        for (;;) {
            // As an application does: has the television watched that is there now.
            getQelTvApiService();
            usleep(1000);
        }
    }
    waitFor(
            [] {
                raise(1);
                return allHave(1, 1);
            },
            std::chrono::milliseconds(20));
    for (int round = 0; round < kRounds; ++round) {
        wire::Daemon& old = televisions[round % 2];
        // Registers in the place of the one that is to die, which the client still uses.
        const auto before = IQelTvApi::getService("default", false);
        televisions[(round + 1) % 2].launch({"--replace"});
        waitFor([&] { return IQelTvApi::getService("default", false) != before; },
                std::chrono::milliseconds(5));
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        const uint64_t arrived = sShared->arrived[0];
        const auto start = Clock::now();
        old.kill();
        waitFor(
                [&] {
                    raise(1);
                    return sShared->arrived[0] > arrived;
                },
                std::chrono::microseconds(100));
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    std::sort(times.begin(), times.end());
    printf("from kill -9 to the first notification: %.1f ms (median of %d; slowest %.1f ms)\n",
           times[kRounds / 2], kRounds, times.back());
    kill(client, SIGKILL);
    waitpid(client, nullptr, 0);
}

}  // namespace

int main() {
    void* memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS,
                        -1, 0);
    if (memory == MAP_FAILED) return 1;
    sShared = new (memory) Shared;
    // A process each, before this one has used the library: forked processes share none of it.
    for (const auto& measure :
         {+[] { measureRate(1); }, +[] { measureRate(kMaxClients); }, +[] { measureRecovery(); }}) {
        const pid_t pid = fork();
        if (pid == 0) {
            wire::TemporaryDirectory runtime;
            setenv("QELTV_RUNTIME_DIR", runtime.path().c_str(), 1);
            measure();
            fflush(stdout);
            return 0;
        }
        int status = 0;
        waitpid(pid, &status, 0);
        if (status != 0) return 1;
    }
    return 0;
}
