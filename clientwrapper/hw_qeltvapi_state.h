/**
 * What the library keeps for the life of the process: the cached proxies, and in its source the
 * debug switch. It needs no other part of the library.
 *
 * Threads may use it until the very end of the process, so it is never destroyed. At unload its
 * cells are closed instead, which releases what they hold.
 */
#ifndef CLIENTWRAPPER_HW_QELTVAPI_STATE_H
#define CLIENTWRAPPER_HW_QELTVAPI_STATE_H

#include <atomic>
#include <chrono>
#include <thread>
#include <type_traits>

#include "hw_qeltvapi_common.h"

namespace qeltvapi {

/**
 * A strong reference that is read without a lock. A reader announces itself before it reads the
 * pointer and leaves once it holds its own reference; a writer swaps the pointer and waits for the
 * readers of that moment before it drops the old reference, so no reader meets a released object.
 */
template <class T>
class Cell {
  public:
    android::sp<T> get() {
        mReaders.fetch_add(1);
        android::sp<T> object(mObject.load());
        mReaders.fetch_sub(1);
        return object;
    }

    /** Replaces the reference; a closed cell stays null. */
    void set(const android::sp<T>& object) {
        if (object != nullptr) object->incStrong(this);
        T* old = mObject.exchange(object.get());
        while (mReaders.load() != 0) std::this_thread::yield();
        if (old != nullptr) old->decStrong(this);
        // close() marks the cell before it swaps, so one of the two swaps finds the object.
        if (mClosed.load()) close();
    }

    /**
     * Drops the reference for good. The end of the process does not depend on its other threads: a
     * reader that does not leave in time, such as one that a fork has cut off, keeps the object.
     */
    void close() {
        mClosed.store(true);
        T* old = mObject.exchange(nullptr);
        for (int i = 0; i < 100 && mReaders.load() != 0; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        if (old != nullptr && mReaders.load() == 0) old->decStrong(this);
    }

    bool closed() const { return mClosed.load(); }

  private:
    std::atomic<T*> mObject{nullptr};
    std::atomic<uint32_t> mReaders{0};
    std::atomic<bool> mClosed{false};
};

/** The fifteen cached proxies. Written under the mutex of the death recipient. */
struct Proxies {
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi> main;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiConfig> config;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiScan> scan;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiBroadcast> broadcast;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiRating> rating;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiTimeshift> timeshift;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiTime> time;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiEvent> event;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiPvrbrowser> pvrbrowser;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiInputSrc> inputSrc;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiRecord> record;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiMultiview> multiview;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiChannelList> channelList;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCI> ci;
    Cell<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCec> cec;
};
static_assert(std::is_trivially_destructible_v<Proxies>, "threads use it while the process ends");
extern Proxies proxies;

/** Asks the service manager for the proxy of the instance "default"; null when it is missing. */
template <class I>
android::sp<I> fetch() {
    return I::getService("default", false);
}

}  // namespace qeltvapi

#endif  // CLIENTWRAPPER_HW_QELTVAPI_STATE_H
