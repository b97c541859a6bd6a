#ifndef CLIENTWRAPPER_TVAPIDEATHRECIPIENT_H
#define CLIENTWRAPPER_TVAPIDEATHRECIPIENT_H

#include <hidl/HidlSupport.h>
#include <hidl/TaskRunner.h>
#include <pthread.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiCallback.h>

#include <atomic>
#include <cstdint>
#include <mutex>

#include "hw_qeltvapi_state.h"

/**
 * Watches the service, keeps the callback object registered with it and registers it again after
 * a restart. One instance per process, created by getInstance(); whoever uses it holds a reference
 * of its own, so it outlives its release at the end of the process as long as a thread is in it.
 */
class TvApiDeathRecipient : public android::hardware::hidl_death_recipient {
  public:
    explicit TvApiDeathRecipient(unsigned long long cookie);

    /** The one instance, created on the first call; null after the library has released it. */
    static android::sp<TvApiDeathRecipient> getInstance();

    void serviceDied(uint64_t cookie,
                     const android::wp<android::hidl::base::V1_0::IBase>& who) override;

    /** Queues a registration; false when one is waiting already. */
    bool aysncRegisterCallbackHandler();

    /** Registers the callback object; 0, or -1 also when it is registered already. */
    int registerCallbackHandler();

    /** Body of a reconnect thread: waits for the service and registers again. */
    static void* reconnectService(void* self);

    /** Forgets the registration and every proxy but the channel list's. */
    void reset();

    /** Guards the registration and every write of the proxy cache. Held across service calls. */
    std::mutex& lock() { return mLock; }

    uint64_t cookie() const { return mCookie; }

    static qeltvapi::Cell<TvApiDeathRecipient> mRecipient;

  private:
    void startReconnect();

    // The latest reconnect thread; several may run, none is ever joined.
    std::atomic<pthread_t> mThread;
    const uint64_t mCookie;
    android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCallback> mCallback;
    android::hardware::details::TaskRunner mTaskRunner;
    bool mRegistered;
    std::mutex mLock;
};

#endif  // CLIENTWRAPPER_TVAPIDEATHRECIPIENT_H
