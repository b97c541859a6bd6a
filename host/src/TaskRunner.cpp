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
    if (mQueue) return;
    mQueue = std::make_shared<SynchronizedQueue<Task>>(limit);
    std::thread([queue = mQueue] {
        Task task;
        while (queue->pop(&task)) {
            task();
            // Drops what the task holds before the next wait, which may be long.
            task = nullptr;
        }
    }).detach();
}

bool TaskRunner::push(const Task& task) {
    return mQueue != nullptr && task && mQueue->push(task);
}

}  // namespace details
}  // namespace hardware
}  // namespace android
