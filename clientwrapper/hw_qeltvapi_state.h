/**
 * What the library keeps for the life of the process: the cached proxies, and in its source the
 * debug switch. Nothing here needs another part of the library.
 */
#ifndef CLIENTWRAPPER_HW_QELTVAPI_STATE_H
#define CLIENTWRAPPER_HW_QELTVAPI_STATE_H

#include <atomic>
#include <thread>

#include "hw_qeltvapi_common.h"

namespace qeltvapi {

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

    android::sp<I> get() {
        mReaders.fetch_add(1);
        android::sp<I> proxy(mProxy.load());
        mReaders.fetch_sub(1);
        return proxy;
    }

    void set(const android::sp<I>& proxy) {
        if (proxy != nullptr) proxy->incStrong(this);
        I* old = mProxy.exchange(proxy.get());
        while (mReaders.load() != 0) std::this_thread::yield();
        if (old != nullptr) old->decStrong(this);
    }

  private:
    std::atomic<I*> mProxy{nullptr};
    std::atomic<uint32_t> mReaders{0};
};

/** The fifteen cached proxies. Members are released in the reverse order at unload. */
struct Proxies {
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi> main;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiConfig> config;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiScan> scan;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiBroadcast> broadcast;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiRating> rating;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiTimeshift> timeshift;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiTime> time;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiEvent> event;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiPvrbrowser> pvrbrowser;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiInputSrc> inputSrc;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiRecord> record;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiMultiview> multiview;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiChannelList> channelList;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCI> ci;
    ProxyCell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCec> cec;
};
extern Proxies proxies;

/** Asks the service manager for the proxy of the instance "default"; null when it is missing. */
template <class I>
android::sp<I> fetch() {
    return I::getService("default", false);
}

}  // namespace qeltvapi

#endif  // CLIENTWRAPPER_HW_QELTVAPI_STATE_H
