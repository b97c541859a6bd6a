#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>

#include <hidl/SynchronizedQueue.h>

namespace android {
namespace hardware {
namespace details {

/**
 * Runs tasks one after the other on a thread of its own. The thread outlives the runner until the
 * tasks already taken are done, so that a task may drop the last reference to the runner's owner.
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
    static void run(const std::shared_ptr<SynchronizedQueue<Task>>& queue);

    std::shared_ptr<SynchronizedQueue<Task>> mQueue;
    std::once_flag mRunning;
};

}  // namespace details
}  // namespace hardware
}  // namespace android
