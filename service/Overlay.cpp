#define LOG_TAG "qeltvapi_service"

#include <hidl/HidlBinderSupport.h>
#include <hidlhost/raw_service.h>
#include <log/log.h>
#include <qeltvapi/service/interfaces.h>
#include <qeltvapi/service/overlay.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace qeltvapi::service {

using android::sp;
using android::status_t;
using android::hardware::BHwBinder;
using android::hardware::Parcel;
using android::hidl::base::V1_0::IBase;

namespace {

/** How long it takes until a television that has come up is noticed. */
constexpr std::chrono::milliseconds kPause{20};

/** Turns a missing answer of the television into a transport failure of the client's call. */
class Line : public BHwBinder {
  public:
    explicit Line(const sp<IBase>& service)
            : mService(service),
              mStub(android::hardware::getOrCreateCachedBinder(service.get())->localBinder()) {}

    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags,
                        TransactCallback callback) override {
        bool sent = false;
        try {
            return mStub->onTransact(code, data, reply, flags, [&](Parcel& results) {
                sent = true;
                callback(results);
            });
        } catch (const TransportFailure& e) {
            if (sent) return android::OK;
            return e.dead() ? android::DEAD_OBJECT : android::FAILED_TRANSACTION;
        }
    }

  private:
    // The stub's, which is forgotten with the last reference to it.
    const sp<IBase> mService;
    const sp<BHwBinder> mStub;
};

}  // namespace

/** What outlives the overlay while the notice of a death is on its way. */
class Overlay::Service : public android::hardware::hidl_death_recipient {
  public:
    explicit Service(size_t threads) : host(threads) {}

    void serviceDied(uint64_t, const android::wp<IBase>&) override {
        ALOGW("the television has died");
        std::lock_guard<std::mutex> guard(lock);
        dead = true;
        host.kill();
        changed.notify_all();
    }

    std::mutex lock;
    std::condition_variable changed;
    // Guarded by lock.
    bool dead = false;
    bool started = false;
    std::map<std::string, sp<IBase>> replaced;
    hidlhost::RawHost host;

    /** The television's main interface, whose death is watched. */
    sp<IQelTvApi> watched;
};

Overlay::Overlay(const std::string& television, std::chrono::milliseconds patience, size_t threads)
        : mTelevision(television), mService(new Service(threads)) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        mService->watched = IQelTvApi::tryGetService(mTelevision);
        if (mService->watched != nullptr) {
            const auto linked = mService->watched->linkToDeath(mService, 0);
            if (linked.isOk() && linked) return;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            throw std::runtime_error(missing(IQelTvApi::descriptor));
        }
        std::this_thread::sleep_for(kPause);
    }
}

Overlay::~Overlay() {
    mService->watched->unlinkToDeath(mService).isOk();
    std::lock_guard<std::mutex> guard(mService->lock);
    mService->host.kill();
}

std::string Overlay::missing(const std::string& interface) const {
    return "no television serves " + interface + " as \"" + mTelevision +
           "\" in this runtime directory; start one with qeltvd --instance " + mTelevision;
}

void Overlay::put(const std::string& interface, const sp<IBase>& service) {
    if (service != nullptr && service->isRemote()) {
        throw std::invalid_argument(interface + " of another process needs a Forward");
    }
    std::lock_guard<std::mutex> guard(mService->lock);
    mService->replaced[interface] = service;
}

void Overlay::start(const std::string& instance) {
    if (instance == mTelevision) {
        throw std::logic_error("the television itself is \"" + instance + "\"");
    }
    std::lock_guard<std::mutex> guard(mService->lock);
    if (mService->started) throw std::logic_error("the overlay has been started");
    mService->started = true;
    const auto add = [&](const std::string& interface, const auto& forward) {
        if (mService->dead) throw std::runtime_error(missing(interface));
        sp<IBase> service = mService->replaced[interface];
        if (service == nullptr) service = forward();
        if (mService->host.add(interface, instance, new Line(service)) != android::OK) {
            throw std::runtime_error(interface + "/" + instance + " cannot be registered");
        }
    };
#define ADD(interface) \
    add(interface::descriptor, [&] { return new Forward<interface>(television<interface>()); });
    QELTVAPI_SERVICE_INTERFACES(ADD)
#undef ADD
}

void Overlay::wait() const {
    std::unique_lock<std::mutex> guard(mService->lock);
    mService->changed.wait(guard, [&] { return mService->dead; });
}

}  // namespace qeltvapi::service
