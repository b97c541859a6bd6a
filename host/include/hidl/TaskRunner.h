#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include <hidl/SynchronizedQueue.h>

namespace android {
namespace hardware {
namespace details {

/**
 * Runs tasks one after the other on a thread of its own. The thread outlives the runner until the
 * tasks already taken are done, so that a task may drop the last reference to the runner's owner. A
 * child that fork() makes has a thread of its own and none of its parent's tasks.
 */
class TaskRunner {
  public:
    using Task = std::function<void(void)>;

    TaskRunner();
    ~TaskRunner();
    TaskRunner(const TaskRunner&) = delete;
    TaskRunner& operator=(const TaskRunner&) = delete;

    /** Before the first push(): at most `limit` tasks wait at a time, besides the running one. */
    void start(size_t limit);

    /** False when the task was not taken: empty, not started, or too many waiting. */
    bool push(const Task& task);

  private:
    using Queue = SynchronizedQueue<Task>;

    static void run(const std::shared_ptr<Queue>& queue);

    size_t mLimit = 0;
    // What follows is guarded by a lock of the process.
    std::shared_ptr<Queue> mQueue;
    bool mRunning = false;
    uint32_t mGeneration = 0;
};

}  // namespace details
}  // namespace hardware
}  // namespace android
