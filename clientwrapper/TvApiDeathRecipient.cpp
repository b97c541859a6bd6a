#include "TvApiDeathRecipient.h"

#include <unistd.h>

#include "QelTvApiCallbackImpl.h"
#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_state.h"

using android::sp;
using android::wp;
using android::hidl::base::V1_0::IBase;
using namespace qeltvapi;
using namespace vendor::qelnova::tv::qeltvapi::V1_0;

namespace {

// The lines are the common module's.
constexpr char kTag[] = "hw_qeltvapi_common";
constexpr char kDebugMarker[] = "/data/tvapi_a_hidl_client_debug";
constexpr uint64_t kDeathCookie = 12345;
constexpr uint16_t kMaxPolls = 10000;
constexpr unsigned int kPollSeconds = 10;

}  // namespace

Cell<TvApiDeathRecipient> TvApiDeathRecipient::mRecipient;

TvApiDeathRecipient::TvApiDeathRecipient(unsigned long long cookie)
        : mThread(0), mCookie(cookie), mRegistered(false) {
    if (access(kDebugMarker, F_OK) == 0) mTvApiDebug = 1;
}

sp<TvApiDeathRecipient> TvApiDeathRecipient::getInstance() {
    // Never destroyed: a thread may be in it while the process ends.
    static std::mutex& lmutex = *new std::mutex;
    std::lock_guard<std::mutex> guard(lmutex);
    if (sp<TvApiDeathRecipient> made = mRecipient.get(); made != nullptr) return made;
    if (mRecipient.closed()) return nullptr;
    const sp<TvApiDeathRecipient> recipient = new TvApiDeathRecipient(kDeathCookie);
    recipient->mTaskRunner.start(1);
    mRecipient.set(recipient);
    return mRecipient.get();
}

bool TvApiDeathRecipient::aysncRegisterCallbackHandler() {
    return mTaskRunner.push(
            [self = sp<TvApiDeathRecipient>(this)] { self->registerCallbackHandler(); });
}

int TvApiDeathRecipient::registerCallbackHandler() {
    QELTVAPI_TRACE_AT(kTag, 81, ".");
    std::lock_guard<std::mutex> guard(mLock);
    if (mRegistered) return -1;
    if (mCallback == nullptr) mCallback = new QelTvApiCallbackImpl();

    // The first proxy only shows that the service is there.
    if (fetch<IQelTvApi>() == nullptr) {
        QELTVAPI_LOG_AT(kTag, 101, "pthread_create");
        startReconnect();
        return -1;
    }
    sp<IQelTvApi> service = fetch<IQelTvApi>();
    if (service == nullptr || !service->a_hidl_registerCallbackHandler(mCallback).isOk()) {
        QELTVAPI_LOG_AT(kTag, 97, ".");
        return -1;
    }
    mRegistered = true;
    return 0;
}

void TvApiDeathRecipient::startReconnect() {
    // The thread holds its own reference, because the end of the process releases the singleton.
    incStrong(this);
    const auto run = [](void* self) -> void* {
        reconnectService(self);
        static_cast<TvApiDeathRecipient*>(self)->decStrong(self);
        return nullptr;
    };
    pthread_t thread{};
    // Neither joined nor detached, and a failure is ignored.
    pthread_create(&thread, nullptr, run, this);
    mThread = thread;
}

void* TvApiDeathRecipient::reconnectService(void* self) {
    auto* recipient = static_cast<TvApiDeathRecipient*>(self);
    QELTVAPI_LOG_AT(kTag, 60, ".");
    // One bound for the life of the thread; a failed pass does not reset it.
    uint16_t count = 0;
    do {
        recipient->reset();
        while (fetch<IQelTvApi>() == nullptr && count < kMaxPolls) {
            sleep(kPollSeconds);
            ++count;
            QELTVAPI_LOG_AT(kTag, 71, "reconnectService, count=%d", count);
        }
    } while (recipient->registerCallbackHandler() != 0);
    return nullptr;
}

void TvApiDeathRecipient::reset() {
    std::lock_guard<std::mutex> guard(mLock);
    mRegistered = false;
    proxies.main.set(nullptr);
    proxies.config.set(nullptr);
    proxies.scan.set(nullptr);
    proxies.broadcast.set(nullptr);
    proxies.rating.set(nullptr);
    proxies.timeshift.set(nullptr);
    proxies.time.set(nullptr);
    proxies.event.set(nullptr);
    proxies.pvrbrowser.set(nullptr);
    proxies.inputSrc.set(nullptr);
    proxies.record.set(nullptr);
    proxies.multiview.set(nullptr);
    proxies.ci.set(nullptr);
    proxies.cec.set(nullptr);
    // The channel list's proxy is kept on purpose.
}

void TvApiDeathRecipient::serviceDied(uint64_t cookie, const wp<IBase>& /* who */) {
    QELTVAPI_LOG_AT(kTag, 46, "serviceDied %llu", static_cast<unsigned long long>(cookie));
    if (cookie == kDeathCookie) startReconnect();
}
