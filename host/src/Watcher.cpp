#define LOG_TAG "hidlhost"

#include "Watcher.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <unordered_map>

#include <android-base/unique_fd.h>
#include <log/log.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "Fork.h"
#include "Threads.h"

using android::base::unique_fd;

namespace hidlhost {
namespace {
using Clock = std::chrono::steady_clock;
constexpr uint64_t kWakeUp = 0;

/** The descriptors of the watcher in use, for the children to close. */
std::atomic<int> gEpoll{-1};
std::atomic<int> gWakeUp{-1};

[[maybe_unused]] const bool sCloses = [] {
    onFork([] {
        for (std::atomic<int>* file : {&gEpoll, &gWakeUp}) {
            const int inherited = file->exchange(-1);
            if (inherited >= 0) close(inherited);
        }
    });
    return true;
}();

}  // namespace

struct Watcher::State {
    struct Entry {
        int socket;
        std::function<bool()> ready;
    };
    struct Once {
        int socket;
        std::function<void(bool)> ready;
    };

    std::mutex mutex;
    unique_fd epoll;
    unique_fd wakeUp;
    uint64_t nextKey = kWakeUp + 1;
    std::unordered_map<uint64_t, Entry> entries;  // functions are only called by the watcher
    std::unordered_map<uint64_t, Once> waits;
    std::multimap<Clock::time_point, std::function<void()>> timers;
    bool watching = false;

    std::mutex taskMutex;
    std::condition_variable taskAdded;
    std::deque<std::function<void()>> tasks;
    bool running = false;

    /** With the mutex held, as enter(). */
    void start();
    void enter(uint64_t key, int socket);
    void closeInChildren();
    bool finish(uint64_t key, bool arrived);
    void watch();
    int runTimers();
    void run();
};

Watcher& Watcher::get() {
    return onePerProcess<Watcher>([] { return new Watcher; });
}

Watcher::~Watcher() {
    delete mState;
}

Watcher::Watcher() : mState(new State) {
    mState->epoll.reset(epoll_create1(EPOLL_CLOEXEC));
    mState->wakeUp.reset(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    LOG_ALWAYS_FATAL_IF(!mState->epoll.ok() || !mState->wakeUp.ok(), "no descriptors left: %s",
                        strerror(errno));
    epoll_event event = {};
    event.events = EPOLLIN;
    event.data.u64 = kWakeUp;
    epoll_ctl(mState->epoll, EPOLL_CTL_ADD, mState->wakeUp, &event);
}

void Watcher::add(int socket, std::function<bool()> ready) {
    addDeferred(socket, std::move(ready));
    startDeferred();
}

void Watcher::addDeferred(int socket, std::function<bool()> ready) {
    std::lock_guard<std::mutex> lock(mState->mutex);
    uint64_t key = mState->nextKey++;
    mState->entries[key] = {socket, std::move(ready)};
    mState->enter(key, socket);
    if (!mState->watching) mDeferred = true;
}

void Watcher::start() {
    std::lock_guard<std::mutex> lock(mState->mutex);
    mState->start();
    mDeferred = !mState->watching;
}

void Watcher::once(int socket, uint32_t milliseconds, std::function<void(bool)> ready) {
    uint64_t key;
    {
        std::lock_guard<std::mutex> lock(mState->mutex);
        key = mState->nextKey++;
        mState->waits[key] = {socket, std::move(ready)};
        mState->enter(key, socket);
        mState->start();
    }
    after(milliseconds, [state = mState, key] { state->finish(key, false); });
}

void Watcher::after(uint32_t milliseconds, std::function<void()> task) {
    std::lock_guard<std::mutex> lock(mState->mutex);
    const auto when = Clock::now() + std::chrono::milliseconds(milliseconds);
    const bool first = mState->timers.empty() || when < mState->timers.begin()->first;
    mState->timers.emplace(when, std::move(task));
    mState->start();
    if (!first) return;
    uint64_t one = 1;
    (void)!write(mState->wakeUp, &one, sizeof(one));
}

void Watcher::post(std::function<void()> task) {
    std::lock_guard<std::mutex> lock(mState->taskMutex);
    mState->tasks.push_back(std::move(task));
    if (!mState->running) {
        mState->running = startThread("hidl-notices", [state = mState] { state->run(); });
    }
    mState->taskAdded.notify_one();
}

void Watcher::State::closeInChildren() {
    gEpoll = epoll.get();
    gWakeUp = wakeUp.get();
}

void Watcher::State::start() {
    if (watching) return;
    closeInChildren();
    watching = startThread("hidl-watch", [this] { watch(); });
}

void Watcher::State::enter(uint64_t key, int socket) {
    closeInChildren();
    epoll_event event = {};
    event.events = EPOLLIN | EPOLLRDHUP;
    event.data.u64 = key;
    epoll_ctl(epoll, EPOLL_CTL_ADD, socket, &event);
}

/** Ends a wait; false if the key stands for none. The socket is left before it is used again. */
bool Watcher::State::finish(uint64_t key, bool arrived) {
    std::function<void(bool)> ready;
    {
        std::lock_guard<std::mutex> lock(mutex);
        auto found = waits.find(key);
        if (found == waits.end()) return false;
        epoll_ctl(epoll, EPOLL_CTL_DEL, found->second.socket, nullptr);
        ready = std::move(found->second.ready);
        waits.erase(found);
    }
    ready(arrived);
    return true;
}

/** @return milliseconds until the next timer, -1 without one */
int Watcher::State::runTimers() {
    for (;;) {
        std::function<void()> task;
        {
            std::lock_guard<std::mutex> lock(mutex);
            if (timers.empty()) return -1;
            auto wait = timers.begin()->first - Clock::now();
            if (wait > Clock::duration::zero()) {
                auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(wait).count() + 1;
                return static_cast<int>(rest);
            }
            task = std::move(timers.begin()->second);
            timers.erase(timers.begin());
        }
        task();
    }
}

void Watcher::State::watch() {
    for (;;) {
        epoll_event events[16];
        int count = epoll_wait(epoll, events, 16, runTimers());
        for (int i = 0; i < count; ++i) {
            uint64_t key = events[i].data.u64;
            if (key == kWakeUp) {
                uint64_t ignored;
                (void)!read(wakeUp, &ignored, sizeof(ignored));
                continue;
            }
            if (finish(key, true)) continue;
            Entry* entry;
            {
                std::lock_guard<std::mutex> lock(mutex);
                entry = &entries.at(key);  // stays in place; only this thread removes
            }
            if (entry->ready()) continue;
            std::function<bool()> ended;  // after the lock, with what it keeps
            std::lock_guard<std::mutex> lock(mutex);
            epoll_ctl(epoll, EPOLL_CTL_DEL, entry->socket, nullptr);
            ended = std::move(entry->ready);
            entries.erase(key);
        }
    }
}

void Watcher::State::run() {
    const uint32_t own = generation();
    std::unique_lock<std::mutex> lock(taskMutex);
    for (;;) {
        taskAdded.wait(lock, [this] { return !tasks.empty(); });
        std::function<void()> task = std::move(tasks.front());
        tasks.pop_front();
        lock.unlock();
        task();
        if (generation() != own) endStrayChild();
        task = nullptr;
        lock.lock();
    }
}

}  // namespace hidlhost
