/**
 * Shared C++ declarations of the library: the service getters, the registration of the callback
 * object, the debug switch, the log macros and the transport check of a direct result.
 *
 * Everything here may be called from any thread. Applications that only call the flat functions
 * need none of it; the family headers beside this one are plain C.
 *
 * The library is never unloaded: dlclose() leaves it mapped, because its threads are in it. It
 * releases its proxies and its death recipient while the process ends, after main() and the
 * application's own handlers. Other threads may go on calling until the end. Calls under way
 * complete; later ones find no service. Notifications can arrive until the end too, so what their
 * functions use must not be destroyed before.
 */
#ifndef HW_QELTVAPI_COMMON_H
#define HW_QELTVAPI_COMMON_H

#include <hidl/Status.h>
#include <log/log.h>
#include <utils/StrongPointer.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApi.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiBroadcast.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiCI.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiCec.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiChannelList.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiConfig.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiEvent.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiInputSrc.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiMultiview.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiPvrbrowser.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiRating.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiRecord.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiScan.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiTime.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiTimeshift.h>

#include <atomic>

#pragma GCC visibility push(default)

/**
 * The debug switch, one byte. While it is not 0, the functions write their trace lines. The library
 * sets it once per process, if the file "/data/tvapi_a_hidl_client_debug" exists at the first
 * access to the service, and never clears it.
 */
extern std::atomic<unsigned char> mTvApiDebug;

/**
 * Returns the cached proxy of an interface, instance "default".
 *
 * The first call, and the first after the service has died, fetches the proxy from the service
 * manager and may block until it answers. A missing service is looked up again by the next call.
 * The main interface's proxy is also linked to the death recipient: a death is noticed only if
 * getQelTvApiService() was called, by the process itself or in any function of the main interface,
 * since that service started. After a death that was noticed the fourteen other proxies are fetched
 * anew; getQelTvApiChannelListService() keeps the one that it has.
 *
 * @return a strong reference; null if the service or this interface is missing, and once the
 *         library has released its proxies at the end of the process
 */
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi> getQelTvApiService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiConfig> getQelTvApiConfigService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiScan> getQelTvApiScanService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiBroadcast> getQelTvApiBroadcastService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiRating> getQelTvApiRatingService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiTimeshift> getQelTvApiTimeshiftService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiTime> getQelTvApiTimeService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiEvent> getQelTvApiEventService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiPvrbrowser>
getQelTvApiPvrbrowserService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiInputSrc> getQelTvApiInputSrcService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiRecord> getQelTvApiRecordService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiMultiview> getQelTvApiMultiviewService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiChannelList>
getQelTvApiChannelListService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCI> getQelTvApiCIService();
android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCec> getQelTvApiCecService();

/**
 * Queues the registration of the library's callback object with the service. Returns at once: a
 * worker thread registers. One call per process suffices: after a death of the service that is
 * noticed (see above; a registration does not link the death recipient) the library registers the
 * object again.
 *
 * @return 0 if the request is queued; -1 if one is waiting already, which then serves this
 *         call too, and once the library has released its death recipient at the end of the process
 */
int registerCallbackHandler();

#pragma GCC visibility pop

/**
 * Writes one line to the log at debug priority, in the form "<function:line> text". The second
 * form carries a fixed line number instead of the place of the statement.
 */
#define QELTVAPI_LOG(tag, format, ...) QELTVAPI_LOG_AT(tag, __LINE__, format, ##__VA_ARGS__)
#define QELTVAPI_LOG_AT(tag, line, format, ...)                                           \
    __android_log_print(ANDROID_LOG_DEBUG, tag, "<%s:%d> " format, __func__, int{(line)}, \
                        ##__VA_ARGS__)

/** Like QELTVAPI_LOG and QELTVAPI_LOG_AT, only while the debug switch is on. */
#define QELTVAPI_TRACE(tag, format, ...) QELTVAPI_TRACE_AT(tag, __LINE__, format, ##__VA_ARGS__)
#define QELTVAPI_TRACE_AT(tag, line, format, ...)               \
    do {                                                        \
        if (mTvApiDebug.load(std::memory_order_relaxed) != 0) { \
            QELTVAPI_LOG_AT(tag, line, format, ##__VA_ARGS__);  \
        }                                                       \
    } while (false)

/**
 * Stores the value of a direct result. A transport failure leaves `out` untouched and is logged
 * regardless of the debug switch, under the one tag that belongs to the type (not to the caller).
 *
 * Instances: int, bool, unsigned short, unsigned int, unsigned char, short.
 *
 * @param ret what the proxy's method returned
 * @param out [out] the value; untouched after a transport failure
 */
template <class T>
void STATUS_CHECK(android::hardware::Return<T> ret, T& out);

#endif  // HW_QELTVAPI_COMMON_H
