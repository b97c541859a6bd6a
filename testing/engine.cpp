#include "engine.h"

#include <thread>
#include <utility>

#include "private_runtime.h"

using android::status_t;
using android::hardware::IBinder;
using android::hardware::Parcel;
using hidlhost::RawCall;
using hidlhost::RawHost;

namespace qeltvapi::testing::wire {
namespace {

constexpr char kInstance[] = "default";
constexpr char kCallback[] = "vendor.qelnova.tv.qeltvapi@1.0::IQelTvApiCallback";

const bool sPrivate = usePrivateRuntime();

}  // namespace

Engine& Engine::instance() {
    // Never destroyed: that would be a death for the library to follow while the process ends.
    static Engine& sInstance = *new Engine;
    return sInstance;
}

void Engine::setHandler(Handler handler) {
    std::lock_guard<std::mutex> guard(mLock);
    mHandler = std::move(handler);
}

status_t Engine::handle(const std::string& interface, const RawCall& call, Parcel* reply) {
    const uint32_t ordinal = call.code - IBinder::FIRST_CALL_TRANSACTION;
    if (interface == "IQelTvApi" && ordinal == 0) return registered(call, reply);
    Handler handler;
    {
        std::lock_guard<std::mutex> guard(mLock);
        handler = mHandler;
    }
    return handler ? handler(interface, ordinal, call, reply) : android::FAILED_TRANSACTION;
}

status_t Engine::registered(const RawCall& call, Parcel* reply) {
    android::sp<IBinder> binder;
    if (call.arguments.readNullableStrongBinder(&binder) != android::OK) {
        return android::BAD_VALUE;
    }
    std::unique_lock<std::mutex> guard(mLock);
    if (mHold != nullptr) {
        ++mHeld;
        const std::atomic<bool>* release = mHold;
        guard.unlock();
        while (!*release) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        guard.lock();
        mHold = nullptr;
    }
    if (mRefusals > 0) {
        --mRefusals;
        return android::FAILED_TRANSACTION;
    }
    mCallback = binder;
    ++mRegistrations;
    mRegistered.notify_all();
    hidlhost::writeOk(reply);
    return android::OK;
}

void Engine::start(const std::vector<std::string>& interfaces) {
    static const std::vector<std::string> kAll = {
            "IQelTvApiConfig",    "IQelTvApiScan",   "IQelTvApiBroadcast", "IQelTvApiRating",
            "IQelTvApiTimeshift", "IQelTvApiTime",   "IQelTvApiEvent",     "IQelTvApiPvrbrowser",
            "IQelTvApiInputSrc",  "IQelTvApiRecord", "IQelTvApiMultiview", "IQelTvApiChannelList",
            "IQelTvApiCI",        "IQelTvApiCec",    "IQelTvApi"};
    // A client that has seen the end may get here while die() still runs.
    std::lock_guard<std::mutex> life(mLife);
    if (started()) return;
    auto host = std::make_unique<RawHost>();
    for (const std::string& interface : interfaces.empty() ? kAll : interfaces) {
        const status_t status = host->add(kPackage + interface, kInstance,
                                          [this, interface](const RawCall& call, Parcel* reply) {
                                              return handle(interface, call, reply);
                                          });
        if (status != android::OK) {
            fprintf(stderr, "%s cannot be registered: status %d. Look at the runtime directory.\n",
                    interface.c_str(), status);
            abort();
        }
    }
    std::lock_guard<std::mutex> guard(mLock);
    mHost = std::move(host);
}

bool Engine::started() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mHost != nullptr;
}

void Engine::die() {
    std::lock_guard<std::mutex> life(mLife);
    RawHost* host = nullptr;
    {
        std::lock_guard<std::mutex> guard(mLock);
        host = mHost.get();
    }
    // First of all, so that who sees it gone sees it dead too.
    if (host != nullptr) host->kill();
    std::lock_guard<std::mutex> guard(mLock);
    if (mHost != nullptr) mDead.push_back(std::move(mHost));
    mCallback = nullptr;
}

android::sp<IBinder> Engine::callback() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mCallback;
}

android::sp<IBinder> Engine::awaitCallback(std::chrono::milliseconds limit) const {
    std::unique_lock<std::mutex> guard(mLock);
    mRegistered.wait_for(guard, limit, [this] { return mCallback != nullptr; });
    return mCallback;
}

int Engine::registrations() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mRegistrations;
}

void Engine::holdRegistrations(const std::atomic<bool>* release) {
    std::lock_guard<std::mutex> guard(mLock);
    mHold = release;
}

int Engine::registrationsHeld() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mHeld;
}

void Engine::refuseRegistrations(int count) {
    std::lock_guard<std::mutex> guard(mLock);
    mRefusals = count;
}

status_t Engine::notify(const android::sp<IBinder>& object, uint32_t ordinal,
                        const std::function<void(Parcel*)>& write, Parcel* reply) const {
    return hidlhost::rawCall(object, kCallback, ordinal + IBinder::FIRST_CALL_TRANSACTION, write,
                             reply);
}

}  // namespace qeltvapi::testing::wire
