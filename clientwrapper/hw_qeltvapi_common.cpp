#include "hw_qeltvapi_common.h"

#include <mutex>

#include "TvApiDeathRecipient.h"
#include "hw_qeltvapi_state.h"

using android::sp;
using android::hardware::Return;
using namespace qeltvapi;
using namespace vendor::qelnova::tv::qeltvapi::V1_0;

namespace {

/**
 * Releases the singleton and the proxies when the library is unloaded, which is at the end of the
 * process: from then on the getters return null and no registration is taken. A thread in the
 * middle of a call holds references of its own.
 */
struct Release {
    ~Release() {
        TvApiDeathRecipient::mRecipient.close();
        proxies.cec.close();
        proxies.ci.close();
        proxies.channelList.close();
        proxies.multiview.close();
        proxies.record.close();
        proxies.inputSrc.close();
        proxies.pvrbrowser.close();
        proxies.event.close();
        proxies.time.close();
        proxies.timeshift.close();
        proxies.rating.close();
        proxies.broadcast.close();
        proxies.scan.close();
        proxies.config.close();
        proxies.main.close();
    }
};
const Release sRelease;

void watch(const sp<IQelTvApi>& service, const sp<TvApiDeathRecipient>& recipient) {
    if (service == nullptr) return;
    // The calls themselves find out about a service that is dead already.
    (void)service->linkToDeath(recipient, recipient->cookie()).isOk();
}

template <class I>
void watch(const sp<I>&, const sp<TvApiDeathRecipient>&) {}

/**
 * The proxy of one interface. The cache is not read again under the lock: of two threads that
 * missed it both fetch, and the later store stays, a null included.
 */
template <class I>
sp<I> cached(Cell<I>& cell) {
    if (sp<I> proxy = cell.get(); proxy != nullptr) return proxy;

    // Keeps the mutex until it is unlocked.
    const sp<TvApiDeathRecipient> recipient = TvApiDeathRecipient::getInstance();
    if (recipient == nullptr) return nullptr;
    std::unique_lock<std::mutex> lock(recipient->lock());
    sp<I> fetched = fetch<I>();
    cell.set(fetched);
    watch(fetched, recipient);
    lock.unlock();
    return cell.get();
}

}  // namespace

sp<IQelTvApi> getQelTvApiService() {
    return cached(proxies.main);
}

sp<IQelTvApiConfig> getQelTvApiConfigService() {
    return cached(proxies.config);
}

sp<IQelTvApiScan> getQelTvApiScanService() {
    return cached(proxies.scan);
}

sp<IQelTvApiBroadcast> getQelTvApiBroadcastService() {
    return cached(proxies.broadcast);
}

sp<IQelTvApiRating> getQelTvApiRatingService() {
    return cached(proxies.rating);
}

sp<IQelTvApiTimeshift> getQelTvApiTimeshiftService() {
    return cached(proxies.timeshift);
}

sp<IQelTvApiTime> getQelTvApiTimeService() {
    return cached(proxies.time);
}

sp<IQelTvApiEvent> getQelTvApiEventService() {
    return cached(proxies.event);
}

sp<IQelTvApiPvrbrowser> getQelTvApiPvrbrowserService() {
    return cached(proxies.pvrbrowser);
}

sp<IQelTvApiInputSrc> getQelTvApiInputSrcService() {
    return cached(proxies.inputSrc);
}

sp<IQelTvApiRecord> getQelTvApiRecordService() {
    return cached(proxies.record);
}

sp<IQelTvApiMultiview> getQelTvApiMultiviewService() {
    return cached(proxies.multiview);
}

sp<IQelTvApiChannelList> getQelTvApiChannelListService() {
    return cached(proxies.channelList);
}

sp<IQelTvApiCI> getQelTvApiCIService() {
    return cached(proxies.ci);
}

sp<IQelTvApiCec> getQelTvApiCecService() {
    return cached(proxies.cec);
}

int registerCallbackHandler() {
    const sp<TvApiDeathRecipient> recipient = TvApiDeathRecipient::getInstance();
    return recipient != nullptr && recipient->aysncRegisterCallbackHandler() ? 0 : -1;
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
