#define LOG_TAG "hidlhost"

#include <hwbinder/IPCThreadState.h>
#include <hwbinder/ProcessState.h>

#include <atomic>

#include <log/log.h>
#include <unistd.h>

#include "Node.h"
#include "Threads.h"

namespace android {
namespace hardware {

sp<ProcessState> ProcessState::self() {
    // Never destroyed: libraries use it from their destructors.
    static sp<ProcessState>& state = *new sp<ProcessState>(new ProcessState);
    return state;
}

ProcessState::ProcessState() = default;
ProcessState::~ProcessState() = default;

// Connections are served from the moment at which the first object is given out.
void ProcessState::startThreadPool() {}

status_t ProcessState::setThreadPoolConfiguration(size_t maxThreads, bool callerJoinsPool) {
    if (maxThreads == 0 && callerJoinsPool) return BAD_VALUE;
    hidlhost::Node::process().gate().configure(maxThreads, callerJoinsPool);
    return OK;
}

size_t ProcessState::getMaxThreads() {
    return hidlhost::Node::process().gate().capacity();
}

namespace {
thread_local bool tUsed = false;
std::atomic<bool> gShutDown{false};
}  // namespace

IPCThreadState* IPCThreadState::self() {
    static IPCThreadState state;  // what differs between threads is kept with them
    if (gShutDown) {
        ALOGW("IPCThreadState::self() is null after shutdown(); the device's callers crash on it");
        return nullptr;
    }
    tUsed = true;
    return &state;
}

IPCThreadState* IPCThreadState::selfOrNull() {
    return tUsed && !gShutDown ? self() : nullptr;
}

void IPCThreadState::shutdown() {
    gShutDown = true;
}

pid_t IPCThreadState::getCallingPid() const {
    const hidlhost::ThreadState& thread = hidlhost::threadState();
    return thread.serving ? thread.callerPid : getpid();
}

uid_t IPCThreadState::getCallingUid() const {
    const hidlhost::ThreadState& thread = hidlhost::threadState();
    return thread.serving ? thread.callerUid : getuid();
}

bool IPCThreadState::isServingCall() const {
    return hidlhost::threadState().serving;
}

bool IPCThreadState::isOnlyBinderThread() const {
    return isServingCall() && hidlhost::Node::process().gate().capacity() == 1;
}

void IPCThreadState::joinThreadPool(bool) {
    hidlhost::Node::process().gate().join();
    // Calls run on the threads of their connections; the caller's part is to stay.
    for (;;) pause();
}

}  // namespace hardware
}  // namespace android
