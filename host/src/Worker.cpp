#include "Worker.h"

#include "Threads.h"

namespace hidlhost {

bool Worker::add(std::unique_ptr<Task> task) {
    std::lock_guard<std::mutex> lock(mMutex);
    if (!mRunning) {
        if (!startThread(mName, [self = shared_from_this()] { self->work(); })) return false;
        mRunning = true;
    }
    mTasks.push_back(std::move(task));
    if (mThread == Thread::kKept) mAdded.notify_one();
    return true;
}

void Worker::work() {
    std::unique_lock<std::mutex> lock(mMutex);
    for (;;) {
        if (mThread == Thread::kKept) mAdded.wait(lock, [this] { return !mTasks.empty(); });
        if (mTasks.empty()) break;
        std::unique_ptr<Task> task = std::move(mTasks.front());
        mTasks.pop_front();
        lock.unlock();
        task->run();
        task.reset();
        lock.lock();
    }
    mRunning = false;
}

}  // namespace hidlhost
