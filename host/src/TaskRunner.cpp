#include <hidl/TaskRunner.h>

#include <thread>

namespace android {
namespace hardware {
namespace details {

TaskRunner::TaskRunner() = default;

TaskRunner::~TaskRunner() {
    if (mQueue) mQueue->close();
}

void TaskRunner::start(size_t limit) {
    if (!mQueue) mQueue = std::make_shared<SynchronizedQueue<Task>>(limit);
}

bool TaskRunner::push(const Task& task) {
    if (mQueue == nullptr || !task) return false;
    // Many runners never get a task, and a thread takes time to make.
    std::call_once(mRunning, [this] { std::thread(run, mQueue).detach(); });
    return mQueue->push(task);
}

void TaskRunner::run(const std::shared_ptr<SynchronizedQueue<Task>>& queue) {
    Task task;
    while (queue->pop(&task)) {
        task();
        // Drops what the task holds before the next wait, which may be long.
        task = nullptr;
    }
}

}  // namespace details
}  // namespace hardware
}  // namespace android
