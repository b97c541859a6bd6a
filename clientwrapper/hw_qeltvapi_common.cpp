#include "hw_qeltvapi_common.h"

#include <mutex>

#include "TvApiDeathRecipient.h"
#include "hw_qeltvapi_state.h"

using android::sp;
using android::hardware::Return;
using namespace qeltvapi;
using namespace vendor::qelnova::tv::qeltvapi::V1_0;

namespace {

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
    return TvApiDeathRecipient::getInstance()->aysncRegisterCallbackHandler() ? 0 : -1;
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
