#include "Threads.h"

#include <atomic>
#include <memory>

#include <pthread.h>

namespace hidlhost {
namespace {

// There may be a thousand threads, in the address space of a 32-bit process too.
constexpr size_t kStackSize = sizeof(void*) == 8 ? 2 * 1024 * 1024 : 512 * 1024;

struct Start {
    const char* name;
    std::function<void()> body;
};

void* enter(void* argument) {
    std::unique_ptr<Start> start(static_cast<Start*>(argument));
    pthread_setname_np(pthread_self(), start->name);
    start->body();
    return nullptr;
}

}  // namespace

bool startThread(const char* name, std::function<void()> body) {
    auto start = std::make_unique<Start>(Start{name, std::move(body)});
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_attr_setstacksize(&attributes, kStackSize);
    pthread_t thread;
    int error = pthread_create(&thread, &attributes, enter, start.get());
    pthread_attr_destroy(&attributes);
    if (error != 0) return false;
    (void)start.release();
    return true;
}

namespace {
std::atomic<uint32_t> gGeneration{0};
FAST_THREAD_LOCAL ThreadState tState;
}  // namespace

uint32_t generation() {
    return gGeneration.load(std::memory_order_relaxed);
}

void onFork(void (*task)()) {
    static const bool counting = [] {
        return pthread_atfork(nullptr, nullptr, [] { ++gGeneration; }) == 0;
    }();
    (void)counting;
    pthread_atfork(nullptr, nullptr, task);
}

ThreadState& threadState() {
    return tState;
}

}  // namespace hidlhost
