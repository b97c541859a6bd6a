#include "Threads.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

#include <pthread.h>

#include "Fork.h"

namespace hidlhost {
namespace {

// There may be a thousand threads, in the address space of a 32-bit process too.
constexpr size_t kStackSize = sizeof(void*) == 8 ? 2 * 1024 * 1024 : 512 * 1024;

/** Threads that are through stay for a while: the next client need not wait for one to be made. */
constexpr size_t kMaxParked = 4;
constexpr std::chrono::seconds kParkedFor{10};

FAST_THREAD_LOCAL ThreadState tState;

struct Job {
    const char* name;
    std::function<void()> body;
};

class Threads {
  public:
    static Threads& get() {
        return onePerProcess<Threads>([] { return new Threads; });
    }

    bool start(Job job) {
        {
            std::lock_guard<std::mutex> lock(mMutex);
            if (mParked > mJobs.size()) {
                mJobs.push_back(std::move(job));
                mArrived.notify_one();
                return true;
            }
        }
        First* first = spare();
        first->job = std::move(job);
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
        pthread_attr_setstacksize(&attributes, kStackSize);
        pthread_t thread;
        const int error = pthread_create(&thread, &attributes, enter, first);
        pthread_attr_destroy(&attributes);
        if (error == 0) return true;
        std::lock_guard<std::mutex> lock(mMutex);
        keep(first);
        return false;
    }

  private:
    /**
     * What a new thread is given. It is kept for the next one: a thread that frees memory as its
     * first act sets up an arena of its own first.
     */
    struct First {
        Threads* threads;
        Job job;
        First* next;
    };

    First* spare() {
        {
            std::lock_guard<std::mutex> lock(mMutex);
            if (First* first = mSpare; first != nullptr) {
                mSpare = first->next;
                return first;
            }
        }
        return new First{this, {}, nullptr};
    }

    /** With the mutex held. */
    void keep(First* first) {
        first->job.body = nullptr;
        first->next = mSpare;
        mSpare = first;
    }

    static void* enter(void* argument) {
        auto* first = static_cast<First*>(argument);
        Threads& threads = *first->threads;
        Job job = std::move(first->job);
        {
            std::lock_guard<std::mutex> lock(threads.mMutex);
            threads.keep(first);
        }
        do {
            pthread_setname_np(pthread_self(), job.name);
            tState = ThreadState();
            job.body();
            job.body = nullptr;
        } while (threads.park(&job));
        return nullptr;
    }

    /** Waits for the next job; false when the thread is not needed any more. */
    bool park(Job* job) {
        std::unique_lock<std::mutex> lock(mMutex);
        if (mParked == kMaxParked) return false;
        ++mParked;
        mArrived.wait_for(lock, kParkedFor, [this] { return !mJobs.empty(); });
        --mParked;
        if (mJobs.empty()) return false;
        *job = std::move(mJobs.front());
        mJobs.pop_front();
        return true;
    }

    std::mutex mMutex;
    std::condition_variable mArrived;
    size_t mParked = 0;
    std::deque<Job> mJobs;  // never more than are parked
    First* mSpare = nullptr;
};

}  // namespace

bool startThread(const char* name, std::function<void()> body) {
    return Threads::get().start({name, std::move(body)});
}

ThreadState& threadState() {
    return tState;
}

}  // namespace hidlhost
