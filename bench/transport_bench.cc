// The cost of a call beside a bare ping-pong over the same kind of socket in the same run. The
// answering side of both is a process of its own, on the same CPU or on the next one.
//
//   transport_bench [Google Benchmark options]
//
// Every line reports the median and the 99th percentile of single round trips beside the mean.

#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>
#include <hidl/HidlTransportSupport.h>
#include <hidlhost/bench/1.0/ITransport.h>

namespace {

using ::android::sp;
using ::android::hardware::hidl_vec;
using ::android::hardware::Return;
using ::android::hardware::Void;
using ::hidlhost::bench::V1_0::ITransport;

constexpr size_t kPacket = 64 * 1024;
constexpr int kClientCpu = 0;
constexpr int kAnyCpu = -1;
constexpr int kMostCallers = 8;

[[noreturn]] void fail(const char* what) {
    perror(what);
    exit(1);
}

void runOn(int cpu) {
    cpu_set_t set;
    CPU_ZERO(&set);
    for (int each = 0; each < static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN)); ++each) {
        if (cpu == kAnyCpu || cpu == each) CPU_SET(static_cast<size_t>(each), &set);
    }
    if (sched_setaffinity(0, sizeof(set), &set) != 0) fail("sched_setaffinity");
}

const char* instanceOn(int cpu) {
    return cpu == kAnyCpu ? "any" : cpu == kClientCpu ? "same" : "other";
}

// The bare socket

void sendAll(int socket, const uint8_t* bytes, size_t size) {
    do {
        size_t part = std::min(size, kPacket);
        if (send(socket, bytes, part, MSG_NOSIGNAL) != static_cast<ssize_t>(part)) fail("send");
        bytes += part;
        size -= part;
    } while (size > 0);
}

bool receiveAll(int socket, uint8_t* bytes, size_t size) {
    while (size > 0) {
        ssize_t part = recv(socket, bytes, size, 0);
        if (part <= 0) return false;
        bytes += part;
        size -= static_cast<size_t>(part);
    }
    return true;
}

// Answers every message of the size with 32 bytes, each of the connections on a thread of its own.
std::vector<int> startPingPong(int cpu, size_t size, size_t connections) {
    std::vector<int> here, there;
    for (size_t i = 0; i < connections; ++i) {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) fail("socketpair");
        here.push_back(ends[0]);
        there.push_back(ends[1]);
    }
    pid_t pid = fork();
    if (pid < 0) fail("fork");
    if (pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (int socket : here) close(socket);
        runOn(cpu);
        std::vector<std::thread> threads;
        for (int socket : there) {
            threads.emplace_back([socket, size] {
                std::vector<uint8_t> buffer(size);
                while (receiveAll(socket, buffer.data(), size)) sendAll(socket, buffer.data(), 32);
            });
        }
        for (std::thread& thread : threads) thread.join();
        _exit(0);
    }
    for (int socket : there) close(socket);
    return here;
}

void pingPong(int socket, const std::vector<uint8_t>& bytes) {
    uint8_t answer[32];
    sendAll(socket, bytes.data(), bytes.size());
    if (!receiveAll(socket, answer, sizeof(answer))) fail("ping-pong");
}

// The service

struct Service : public ITransport {
    Return<int32_t> add(int32_t a, int32_t b) override { return a + b; }
    Return<uint32_t> send(const hidl_vec<uint8_t>& bytes) override {
        return static_cast<uint32_t>(bytes.size());
    }
    Return<void> fetch(uint32_t size, fetch_cb answer) override {
        if (mBytes.size() != size) mBytes.resize(size);
        answer(mBytes);
        return Void();
    }
    Return<void> push(uint32_t) override {
        ++mPushed;
        return Void();
    }
    Return<uint32_t> pushed() override { return mPushed.load(); }

  private:
    hidl_vec<uint8_t> mBytes;
    std::atomic<uint32_t> mPushed{0};
};

[[noreturn]] void serve(const char* cpu) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    runOn(atoi(cpu));
    android::hardware::configureRpcThreadpool(8, true);
    sp<Service> service = new Service;
    if (service->registerAsService(instanceOn(atoi(cpu))) != android::OK) exit(1);
    (void)!write(STDOUT_FILENO, ".", 1);
    android::hardware::joinRpcThreadpool();
    abort();
}

void startService(int cpu) {
    int ends[2];
    if (pipe(ends) != 0) fail("pipe");
    pid_t pid = fork();
    if (pid < 0) fail("fork");
    if (pid == 0) {
        dup2(ends[1], STDOUT_FILENO);
        execl("/proc/self/exe", "transport_bench", "--serve", std::to_string(cpu).c_str(), nullptr);
        _exit(127);
    }
    char ready;
    if (read(ends[0], &ready, 1) != 1) fail("service");
    close(ends[0]);
    close(ends[1]);
}

sp<ITransport> serviceOn(int cpu) {
    sp<ITransport> service = ITransport::getService(instanceOn(cpu));
    if (service == nullptr) fail("getService");
    return service;
}

// Measuring

template <typename RoundTrip>
void measure(benchmark::State& state, RoundTrip roundTrip) {
    using Clock = std::chrono::steady_clock;
    std::vector<double> samples;
    samples.reserve(1 << 20);
    for (int i = 0; i < 100; ++i) roundTrip();
    for (auto _ : state) {
        auto start = Clock::now();
        roundTrip();
        samples.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    std::sort(samples.begin(), samples.end());
    state.counters["median_us"] = samples[samples.size() / 2];
    state.counters["p99_us"] = samples[samples.size() * 99 / 100];
}

void bareSocket(benchmark::State& state, int cpu) {
    auto size = static_cast<size_t>(state.range(0));
    int socket = startPingPong(cpu, size, 1)[0];
    std::vector<uint8_t> bytes(size);
    measure(state, [&] { pingPong(socket, bytes); });
    close(socket);
    wait(nullptr);
}

void tinyCall(benchmark::State& state, int cpu) {
    sp<ITransport> service = serviceOn(cpu);
    measure(state, [&] { benchmark::DoNotOptimize(static_cast<int32_t>(service->add(1, 2))); });
}

void callWithBytes(benchmark::State& state, int cpu) {
    sp<ITransport> service = serviceOn(cpu);
    hidl_vec<uint8_t> bytes;
    bytes.resize(static_cast<size_t>(state.range(0)));
    measure(state, [&] {
        if (static_cast<uint32_t>(service->send(bytes)) != bytes.size()) fail("send");
    });
}

void answerWithBytes(benchmark::State& state, int cpu) {
    sp<ITransport> service = serviceOn(cpu);
    auto size = static_cast<uint32_t>(state.range(0));
    measure(state, [&] {
        auto fetched = service->fetch(size, [&](const hidl_vec<uint8_t>& bytes) {
            if (bytes.size() != size) fail("fetch");
        });
        if (!fetched.isOk()) fail("fetch");
    });
}

void onewayCalls(benchmark::State& state, int cpu) {
    sp<ITransport> service = serviceOn(cpu);
    uint32_t target = service->pushed();
    for (auto _ : state) {
        if (!service->push(1).isOk()) fail("push");
        ++target;
    }
    while (static_cast<uint32_t>(service->pushed()) != target) std::this_thread::yield();
    state.SetItemsProcessed(state.iterations());
}

/** Calls from all threads, each of them on the client's CPU or, as the answering side, on any. */
template <typename RoundTrip>
void callFromAll(benchmark::State& state, int cpu, RoundTrip roundTrip) {
    if (cpu == kAnyCpu) runOn(kAnyCpu);
    for (auto _ : state) roundTrip();
    state.SetItemsProcessed(state.iterations());
    runOn(kClientCpu);
}

void bareCallers(benchmark::State& state, int cpu, const std::vector<int>& sockets) {
    const int socket = sockets[static_cast<size_t>(state.thread_index())];
    const std::vector<uint8_t> bytes(32);
    callFromAll(state, cpu, [&] { pingPong(socket, bytes); });
}

void callers(benchmark::State& state, int cpu) {
    const sp<ITransport> service = serviceOn(cpu);
    callFromAll(state, cpu,
                [&] { benchmark::DoNotOptimize(static_cast<int32_t>(service->add(1, 2))); });
}

void registerAll() {
    bool several = sysconf(_SC_NPROCESSORS_ONLN) > 1;
    for (int cpu : {kClientCpu, kClientCpu + 1}) {
        if (cpu != kClientCpu && !several) continue;
        std::string where = cpu == kClientCpu ? "/one_cpu" : "/two_cpus";
        auto named = [&](const char* name) { return name + where; };
        benchmark::RegisterBenchmark(named("bare_socket").c_str(), bareSocket, cpu)
                ->Arg(32)
                ->Arg(1024)
                ->Arg(64 * 1024)
                ->Arg(1024 * 1024)
                ->UseRealTime();
        benchmark::RegisterBenchmark(named("tiny_call").c_str(), tinyCall, cpu)->UseRealTime();
        benchmark::RegisterBenchmark(named("call_with_bytes").c_str(), callWithBytes, cpu)
                ->Arg(32)
                ->Arg(1024)
                ->Arg(64 * 1024)
                ->Arg(1024 * 1024)
                ->UseRealTime();
        benchmark::RegisterBenchmark(named("answer_with_bytes").c_str(), answerWithBytes, cpu)
                ->Arg(32)
                ->Arg(1024)
                ->Arg(64 * 1024)
                ->Arg(1024 * 1024)
                ->UseRealTime();
        benchmark::RegisterBenchmark(named("oneway").c_str(), onewayCalls, cpu)->UseRealTime();
    }
    if (several) {
        for (int cpu : {kClientCpu + 1, kAnyCpu}) {
            const std::string where = cpu == kAnyCpu ? "/any_cpu" : "/two_cpus";
            const std::vector<int> sockets = startPingPong(cpu, 32, kMostCallers);
            benchmark::RegisterBenchmark(("bare_callers" + where).c_str(), bareCallers, cpu,
                                         sockets)
                    ->ThreadRange(1, kMostCallers)
                    ->UseRealTime();
            benchmark::RegisterBenchmark(("callers" + where).c_str(), callers, cpu)
                    ->ThreadRange(1, kMostCallers)
                    ->UseRealTime();
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && strcmp(argv[1], "--serve") == 0) serve(argv[2]);
    char directory[] = "/tmp/transport-bench.XXXXXX";
    if (mkdtemp(directory) == nullptr) fail("mkdtemp");
    setenv("QELTV_RUNTIME_DIR", directory, 1);
    setenv("QELTV_TRANSACTION_BYTES", "0", 1);  // a message of 1 MiB is more than a device takes
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    runOn(kClientCpu);
    startService(kClientCpu);
    if (sysconf(_SC_NPROCESSORS_ONLN) > 1) {
        startService(kClientCpu + 1);
        startService(kAnyCpu);
    }
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
    std::string remove = std::string("rm -rf ") + directory;
    return system(remove.c_str());
}
