#pragma once

#include <cstddef>

#include <utils/Errors.h>
#include <utils/RefBase.h>

namespace android {
namespace hardware {

/** The process as a place where calls arrive. */
class ProcessState : public virtual RefBase {
  public:
    static sp<ProcessState> self();

    /** Callbacks and death notices arrive from here on; registering a service implies it. */
    void startThreadPool();

    /** See configureRpcThreadpool(). */
    status_t setThreadPoolConfiguration(size_t maxThreads, bool callerJoinsPool);
    size_t getMaxThreads();

  private:
    ProcessState();
    ~ProcessState() override;
};

}  // namespace hardware
}  // namespace android
