#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace hidlhost {

/** Runs tasks one after the other on one thread. */
class Worker : public std::enable_shared_from_this<Worker> {
  public:
    /** kKept is one and the same thread for good; kBorrowed exists while there are tasks. */
    enum class Thread { kKept, kBorrowed };

    Worker(const char* name, Thread thread) : mName(name), mThread(thread) {}

    /** Runs `body` later; false if there is no thread to be had. */
    template <class Body>
    bool post(Body body) {
        return add(std::make_unique<TaskOf<Body>>(std::move(body)));
    }

    /** Runs `body` and returns when it has ended; false if there is no thread to be had. */
    template <class Body>
    bool run(Body body) {
        std::mutex mutex;
        std::condition_variable ended;
        bool done = false;
        const bool posted = post([&] {
            body();
            std::lock_guard<std::mutex> lock(mutex);
            done = true;
            ended.notify_one();
        });
        if (!posted) return false;
        std::unique_lock<std::mutex> lock(mutex);
        ended.wait(lock, [&] { return done; });
        return true;
    }

  private:
    struct Task {
        virtual ~Task() = default;
        virtual void run() = 0;
    };
    template <class Body>
    struct TaskOf final : Task {
        explicit TaskOf(Body what) : body(std::move(what)) {}
        void run() override { body(); }
        Body body;
    };

    bool add(std::unique_ptr<Task> task);
    void work();

    const char* const mName;
    const Thread mThread;
    std::mutex mMutex;
    std::condition_variable mAdded;
    std::deque<std::unique_ptr<Task>> mTasks;
    bool mRunning = false;
};

}  // namespace hidlhost
