/**
 * The service of this process at the wire: hosts the interfaces under their real names, keeps the
 * client's callback object, notifies it, and dies and returns. What is answered is its owner's.
 * It is always reached over the socket, from its own process, too.
 */
#ifndef QELTVAPI_TESTING_ENGINE_H
#define QELTVAPI_TESTING_ENGINE_H

#include <hidlhost/raw_service.h>
#include <hwbinder/IBinder.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "values.h"

namespace qeltvapi::testing::wire {

inline constexpr char kPackage[] = "vendor.qelnova.tv.qeltvapi@1.0::";

class Engine {
  public:
    /**
     * Answers one call, on a thread of the service. `interface` is the one that the object was
     * registered under.
     */
    using Handler = std::function<android::status_t(const std::string& interface, uint32_t ordinal,
                                                    const hidlhost::RawCall& call,
                                                    android::hardware::Parcel* reply)>;

    /** The one of this process. Not started yet. */
    static Engine& instance();

    /** Sets the handler of all calls but the registration of the callback object; null for none. */
    void setHandler(Handler handler);

    /**
     * Registers all fifteen interfaces (or the named ones), instance "default", in the runtime
     * directory of this process. Has no effect while the service runs.
     */
    void start(const std::vector<std::string>& interfaces = {});
    bool started() const;

    /** All interfaces at once: peers see the death of this service. It can be started again. */
    void die();

    /** The client's callback object as registered last; null before. */
    android::sp<android::hardware::IBinder> callback() const;
    /** Waits for one; null after `limit`. */
    android::sp<android::hardware::IBinder> awaitCallback(std::chrono::milliseconds limit) const;
    /** How often the callback object has been registered. */
    int registrations() const;
    /** Registrations are answered only once this is set; null for at once. */
    void holdRegistrations(const std::atomic<bool>* release);
    /** How many registrations have been held so far. */
    int registrationsHeld() const;
    /** The next registrations of the callback object fail in transport. */
    void refuseRegistrations(int count);

    /**
     * Calls a method of the callback object as the service does.
     *
     * @return the transport's status; the reply begins with the status that writeOk() writes
     */
    android::status_t notify(const android::sp<android::hardware::IBinder>& object,
                             uint32_t ordinal,
                             const std::function<void(android::hardware::Parcel*)>& write,
                             android::hardware::Parcel* reply) const;

  private:
    Engine() = default;

    android::status_t handle(const std::string& interface, const hidlhost::RawCall& call,
                             android::hardware::Parcel* reply);
    android::status_t registered(const hidlhost::RawCall& call, android::hardware::Parcel* reply);

    /** One beginning or end of the service at a time. */
    std::mutex mLife;
    mutable std::mutex mLock;
    mutable std::condition_variable mRegistered;
    Handler mHandler;
    std::unique_ptr<hidlhost::RawHost> mHost;
    /** Killed from one of its own threads, which must not destroy it. */
    std::vector<std::unique_ptr<hidlhost::RawHost>> mDead;
    android::sp<android::hardware::IBinder> mCallback;
    int mRegistrations = 0;
    int mRefusals = 0;
    const std::atomic<bool>* mHold = nullptr;
    int mHeld = 0;
};

}  // namespace qeltvapi::testing::wire

#endif  // QELTVAPI_TESTING_ENGINE_H
