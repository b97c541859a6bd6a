#include "hw_qeltvapi_common.h"

#include <unistd.h>

#include <thread>

#include "QelTvApiCallbackImpl.h"
#include "TvApiDeathRecipient.h"

using android::sp;
using android::wp;
using android::hardware::Return;
using android::hidl::base::V1_0::IBase;
using namespace vendor::qelnova::tv::qeltvapi::V1_0;

std::atomic<unsigned char> mTvApiDebug{0};

namespace {

constexpr char kTag[] = "hw_qeltvapi_common";
constexpr char kInstance[] = "default";
constexpr char kDebugMarker[] = "/data/tvapi_a_hidl_client_debug";
constexpr uint64_t kDeathCookie = 12345;
constexpr uint16_t kMaxPolls = 10000;
constexpr unsigned int kPollSeconds = 10;

/**
 * The cached proxy of one interface. Read without a lock; written only under the singleton's
 * mutex. A reader announces itself before it looks at the pointer and leaves once it holds its
 * own reference; a writer swaps the pointer and waits for the readers of that moment before it
 * drops the old reference, so none of them can meet a released proxy.
 */
template <class I>
class ProxyCell {
  public:
    ~ProxyCell() { set(nullptr); }

    sp<I> get() {
        mReaders.fetch_add(1);
        sp<I> proxy(mProxy.load());
        mReaders.fetch_sub(1);
        return proxy;
    }

    void set(const sp<I>& proxy) {
        if (proxy != nullptr) proxy->incStrong(this);
        I* old = mProxy.exchange(proxy.get());
        while (mReaders.load() != 0) std::this_thread::yield();
        if (old != nullptr) old->decStrong(this);
    }

  private:
    std::atomic<I*> mProxy{nullptr};
    std::atomic<uint32_t> mReaders{0};
};

// The order is that of release at unload, backwards.
ProxyCell<IQelTvApi> sMain;
ProxyCell<IQelTvApiConfig> sConfig;
ProxyCell<IQelTvApiScan> sScan;
ProxyCell<IQelTvApiBroadcast> sBroadcast;
ProxyCell<IQelTvApiRating> sRating;
ProxyCell<IQelTvApiTimeshift> sTimeshift;
ProxyCell<IQelTvApiTime> sTime;
ProxyCell<IQelTvApiEvent> sEvent;
ProxyCell<IQelTvApiPvrbrowser> sPvrbrowser;
ProxyCell<IQelTvApiInputSrc> sInputSrc;
ProxyCell<IQelTvApiRecord> sRecord;
ProxyCell<IQelTvApiMultiview> sMultiview;
ProxyCell<IQelTvApiChannelList> sChannelList;
ProxyCell<IQelTvApiCI> sCI;
ProxyCell<IQelTvApiCec> sCec;

template <class I>
sp<I> fetch() {
    return I::getService(kInstance, false);
}

void watch(const sp<IQelTvApi>& service) {
    if (service == nullptr) return;
    // The singleton exists here, and its creation lock must not be taken inside its mutex.
    // A service that is dead already is found out by the calls themselves.
    const sp<TvApiDeathRecipient>& recipient = TvApiDeathRecipient::mRecipient;
    (void)service->linkToDeath(recipient, recipient->cookie()).isOk();
}

template <class I>
void watch(const sp<I>&) {}

/**
 * The proxy of one interface. The cache is not looked at again under the lock: of two threads
 * that missed it both fetch, and the later store stays, a null included.
 */
template <class I>
sp<I> cached(ProxyCell<I>& cell) {
    if (sp<I> proxy = cell.get(); proxy != nullptr) return proxy;

    std::unique_lock<std::mutex> lock(TvApiDeathRecipient::getInstance()->lock());
    sp<I> fetched = fetch<I>();
    cell.set(fetched);
    watch(fetched);
    lock.unlock();
    return cell.get();
}

}  // namespace

sp<TvApiDeathRecipient> TvApiDeathRecipient::mRecipient;

sp<IQelTvApi> getQelTvApiService() {
    return cached(sMain);
}

sp<IQelTvApiConfig> getQelTvApiConfigService() {
    return cached(sConfig);
}

sp<IQelTvApiScan> getQelTvApiScanService() {
    return cached(sScan);
}

sp<IQelTvApiBroadcast> getQelTvApiBroadcastService() {
    return cached(sBroadcast);
}

sp<IQelTvApiRating> getQelTvApiRatingService() {
    return cached(sRating);
}

sp<IQelTvApiTimeshift> getQelTvApiTimeshiftService() {
    return cached(sTimeshift);
}

sp<IQelTvApiTime> getQelTvApiTimeService() {
    return cached(sTime);
}

sp<IQelTvApiEvent> getQelTvApiEventService() {
    return cached(sEvent);
}

sp<IQelTvApiPvrbrowser> getQelTvApiPvrbrowserService() {
    return cached(sPvrbrowser);
}

sp<IQelTvApiInputSrc> getQelTvApiInputSrcService() {
    return cached(sInputSrc);
}

sp<IQelTvApiRecord> getQelTvApiRecordService() {
    return cached(sRecord);
}

sp<IQelTvApiMultiview> getQelTvApiMultiviewService() {
    return cached(sMultiview);
}

sp<IQelTvApiChannelList> getQelTvApiChannelListService() {
    return cached(sChannelList);
}

sp<IQelTvApiCI> getQelTvApiCIService() {
    return cached(sCI);
}

sp<IQelTvApiCec> getQelTvApiCecService() {
    return cached(sCec);
}

int registerCallbackHandler() {
    return TvApiDeathRecipient::getInstance()->aysncRegisterCallbackHandler() ? 0 : -1;
}

TvApiDeathRecipient::TvApiDeathRecipient(unsigned long long cookie)
        : mThread(0), mCookie(cookie), mRegistered(false) {
    if (access(kDebugMarker, F_OK) == 0) mTvApiDebug = 1;
}

sp<TvApiDeathRecipient> TvApiDeathRecipient::getInstance() {
    static std::mutex lmutex;
    std::lock_guard<std::mutex> guard(lmutex);
    if (mRecipient == nullptr) {
        mRecipient = new TvApiDeathRecipient(kDeathCookie);
        mRecipient->mTaskRunner.start(1);
    }
    return mRecipient;
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

    // The first look only tells whether the service is there.
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
    // The thread keeps the singleton, which the end of the process may meanwhile let go of.
    incStrong(this);
    const auto run = [](void* self) -> void* {
        reconnectService(self);
        static_cast<TvApiDeathRecipient*>(self)->decStrong(self);
        return nullptr;
    };
    pthread_t thread{};
    // Neither joined nor detached, and a failure is not looked at.
    pthread_create(&thread, nullptr, run, this);
    mThread = thread;
}

void* TvApiDeathRecipient::reconnectService(void* self) {
    auto* recipient = static_cast<TvApiDeathRecipient*>(self);
    QELTVAPI_LOG_AT(kTag, 60, ".");
    // One bound for the life of the thread; a failed pass does not set it back.
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
    sMain.set(nullptr);
    sConfig.set(nullptr);
    sScan.set(nullptr);
    sBroadcast.set(nullptr);
    sRating.set(nullptr);
    sTimeshift.set(nullptr);
    sTime.set(nullptr);
    sEvent.set(nullptr);
    sPvrbrowser.set(nullptr);
    sInputSrc.set(nullptr);
    sRecord.set(nullptr);
    sMultiview.set(nullptr);
    sCI.set(nullptr);
    sCec.set(nullptr);
    // The channel list's proxy is kept on purpose.
}

void TvApiDeathRecipient::serviceDied(uint64_t cookie, const wp<IBase>& /* who */) {
    QELTVAPI_LOG_AT(kTag, 46, "serviceDied %llu", static_cast<unsigned long long>(cookie));
    if (cookie == kDeathCookie) startReconnect();
}

namespace {

// Each type's failures are reported under one module's tag, whoever calls.
template <class T>
constexpr const char* kTypeTag = nullptr;
template <>
constexpr const char* kTypeTag<int> = "(hw_iom)(client)";
template <>
constexpr const char* kTypeTag<bool> = "(hw_qeltvapi_apptv)(client)";
template <>
constexpr const char* kTypeTag<unsigned short> = "(hw_qeltvapi_av_mode)(client)";
template <>
constexpr const char* kTypeTag<unsigned int> = "(hw_qeltvapi_channellist)(client)";
template <>
constexpr const char* kTypeTag<unsigned char> = "(hw_qeltvapi_inputsource)(client)";
template <>
constexpr const char* kTypeTag<short> = "(hw_qeltvapi_volctrl)(client)";

}  // namespace

template <class T>
void STATUS_CHECK(Return<T> ret, T& out) {
    if (ret.isOk()) {
        out = ret;
    } else {
        QELTVAPI_LOG_AT(kTypeTag<T>, 50, ".");
    }
}

template void STATUS_CHECK(Return<int>, int&);
template void STATUS_CHECK(Return<bool>, bool&);
template void STATUS_CHECK(Return<unsigned short>, unsigned short&);
template void STATUS_CHECK(Return<unsigned int>, unsigned int&);
template void STATUS_CHECK(Return<unsigned char>, unsigned char&);
template void STATUS_CHECK(Return<short>, short&);
