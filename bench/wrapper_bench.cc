// The cost of a function of the library over the bare call of the proxy, with the service in the
// same process, so that no transport stands between: nanoseconds, and heap allocations a call.

#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <new>

#include <benchmark/benchmark.h>
#include <qeltvapi/service/IQelTvApiConfig.h>

#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_config.h"

namespace {

uint64_t sAllocations = 0;

}  // namespace

// One thread runs here, so the count needs no care.
void* operator new(size_t size) {
    ++sAllocations;
    if (void* memory = malloc(size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    free(memory);
}

namespace {

using android::sp;
using android::hardware::hidl_string;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiConfig;

/** Registers a service in this process, which getService() then hands out as it is. */
const sp<IQelTvApiConfig>& service() {
    static const sp<IQelTvApiConfig> sService = [] {
        static char sDirectory[] = "/tmp/wrapper-bench-XXXXXX";
        if (mkdtemp(sDirectory) == nullptr) abort();
        setenv("QELTV_RUNTIME_DIR", sDirectory, 1);
        atexit([] { std::filesystem::remove_all(sDirectory); });
        const sp<IQelTvApiConfig> service = new qeltvapi::service::Default<IQelTvApiConfig>(0);
        if (service->registerAsService("default") != android::OK) abort();
        if (getQelTvApiConfigService() != service) abort();
        return service;
    }();
    return sService;
}

void countAllocations(benchmark::State& state, uint64_t before) {
    state.counters["allocs"] = benchmark::Counter(static_cast<double>(sAllocations - before),
                                                  benchmark::Counter::kAvgIterations);
}

void bareDirect(benchmark::State& state) {
    const auto& config = service();
    const uint64_t before = sAllocations;
    for (auto _ : state) {
        int32_t code = config->a_hidl_qeltvapi_config_reset_values(1);
        benchmark::DoNotOptimize(code);
    }
    countAllocations(state, before);
}

void wrapperDirect(benchmark::State& state) {
    service();
    const uint64_t before = sAllocations;
    for (auto _ : state) benchmark::DoNotOptimize(a_qeltvapi_config_reset_values(1));
    countAllocations(state, before);
}

void bareCallback(benchmark::State& state) {
    const auto& config = service();
    const uint64_t before = sAllocations;
    int32_t value = 0;
    for (auto _ : state) {
        const auto reply = [&value](int32_t read, int32_t) { value = read; };
        config->a_hidl_qeltvapi_config_get_value(1, hidl_string("picture.contrast"), reply).isOk();
        benchmark::DoNotOptimize(value);
    }
    countAllocations(state, before);
}

void wrapperCallback(benchmark::State& state) {
    service();
    const uint64_t before = sAllocations;
    int32_t value = 0;
    for (auto _ : state) {
        a_qeltvapi_config_get_value(1, "picture.contrast", &value);
        benchmark::DoNotOptimize(value);
    }
    countAllocations(state, before);
}

BENCHMARK(bareDirect);
BENCHMARK(wrapperDirect);
BENCHMARK(bareCallback);
BENCHMARK(wrapperCallback);

}  // namespace

BENCHMARK_MAIN();
