#include <hidl/TaskRunner.h>

#include <mutex>
#include <system_error>
#include <thread>

#include "Fork.h"

namespace android {
namespace hardware {
namespace details {

TaskRunner::TaskRunner() = default;

TaskRunner::~TaskRunner() {
    // A parent's queue has its reader in the parent, and may be locked for ever in this process.
    if (mQueue && mGeneration == hidlhost::generation()) mQueue->close();
}

void TaskRunner::start(size_t limit) {
    if (mQueue) return;
    mLimit = limit;
    mQueue = std::make_shared<Queue>(limit);
    mGeneration = hidlhost::generation();
}

bool TaskRunner::push(const Task& task) {
    if (!task) return false;
    std::shared_ptr<Queue> queue;
    {
        std::lock_guard<std::mutex> lock(
                hidlhost::processMutex(hidlhost::ProcessLock::kTaskRunners));
        if (mQueue == nullptr) return false;
        if (mGeneration != hidlhost::generation()) {
            mQueue = std::make_shared<Queue>(mLimit);
            mGeneration = hidlhost::generation();
            mRunning = false;
        }
        queue = mQueue;
        // Many runners never get a task, and a thread takes time to make.
        if (!mRunning) {
            try {
                std::thread(run, queue).detach();
            } catch (const std::system_error&) {
                return false;
            }
            mRunning = true;
        }
    }
    return queue->push(task);
}

void TaskRunner::run(const std::shared_ptr<Queue>& queue) {
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
