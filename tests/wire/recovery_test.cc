#include <dlfcn.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BnHwQelTvApiCallback.h>

#include <atomic>
#include <mutex>
#include <set>
#include <thread>

#include "eventually.h"
#include "hw_qeltvapi_apptv.h"
#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_highlevel.h"
#include "hw_qeltvapi_scan.h"
#include "platform_calls.h"
#include "wire.h"

using namespace wire;
using namespace std::chrono_literals;

namespace {

using android::sp;
using android::hidl::base::V1_0::IBase;
using vendor::qelnova::tv::qeltvapi::V1_0::BnHwQelTvApiCallback;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCallback;

std::mutex sSentLock;
/** The callback objects that the library has sent, held so that no address is used twice. */
std::set<sp<IQelTvApiCallback>>& sSent = *new std::set<sp<IQelTvApiCallback>>;

}  // namespace

namespace android::hardware {

/** Stands before the runtime's, to see the object itself and not what arrives of it. */
__attribute__((visibility("default"))) status_t Parcel::writeStrongBinder(
        const sp<IBinder>& value) {
    using Write = status_t (*)(Parcel*, const sp<IBinder>&);
    static const Write write = reinterpret_cast<Write>(
            dlsym(RTLD_NEXT,
                  "_ZN7android8hardware6Parcel17writeStrongBinderERKNS_2spINS0_7"
                  "IBinderEEE"));
    if (auto* stub = dynamic_cast<BnHwQelTvApiCallback*>(value.get()); stub != nullptr) {
        std::lock_guard<std::mutex> guard(sSentLock);
        sSent.insert(stub->getImpl());
    }
    return write(this, value);
}

}  // namespace android::hardware

namespace {

constexpr char kTag[] = "hw_qeltvapi_common";
constexpr uint32_t kScan = 13;

size_t countLines(const std::vector<LogLine>& lines, const std::string& pattern) {
    size_t count = 0;
    for (const LogLine& line : lines) {
        if (line.tag != kTag || !matches(pattern, line.text)) continue;
        EXPECT_EQ(ANDROID_LOG_DEBUG, line.priority) << line.text;
        ++count;
    }
    return count;
}

std::atomic<int> sLastScan{0};

int onScan(int32_t type, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    sLastScan = type;
    return 0;
}

/** Raises a scan notification and waits until the application has it. */
bool scanArrives(int32_t type) {
    const std::string difference = ScriptedService::instance().notify(
            kScan, {i32(type), u64(0), u64(0), u64(0), u64(0), u64(0)});
    EXPECT_EQ("", difference);
    return eventually([&] { return sLastScan == type; });
}

/**
 * Makes a request for a registration and returns when the worker is at it: none is left in the
 * queue for later steps.
 */
template <class Request>
bool workerTakes(const Request& request) {
    takeLog();
    mTvApiDebug = 1;
    request();
    const bool taken = waitForLog(kTag, "<registerCallbackHandler:81> .");
    mTvApiDebug = 0;
    return taken;
}

Values scanTable() {
    return {u32(1)};
}

/**
 * One process through its life: it starts without a service, the service comes, dies, returns. Each
 * step needs the state that those before it leave.
 */
class Recovery : public testing::Test {
  public:
    void looksForTheDebugMarkerOnceAtTheFirstAccess();
    void forgetsAMissingService();
    void pollsEveryTenSecondsWhenItRegistersWithoutAService();
    void makesNoTransactionWhenItRegistersASecondTime();
    void servesCallsAndRegistrationsFromANotification();
    void registersTheSameObjectWhenTheServiceIsBack();
    void watchesTheServiceAgainWhenTheMainProxyIsFetched();
    void triesAgainWhenARegistrationFails();
    void endsACallThatIsUnderWayWhenTheServiceDies();
    void refusesARequestWhileAnotherWaits();

  protected:
    static void SetUpTestSuite() { captureLog(); }

    void run(const char* name, void (Recovery::*step)()) {
        if (HasFatalFailure()) return;
        SCOPED_TRACE(name);
        mBefore = service.registrations();
        (this->*step)();
        service.settle();
    }

    /**
     * Waits for a registration since the step began. There may be two: a worker that an earlier
     * step left at its task, and the reconnecting thread, which finds that done and starts again.
     */
    bool registeredAgain() {
        return eventually([this] { return service.registrations() > mBefore; });
    }

    ScriptedService& service = ScriptedService::instance();
    Sleeps& sleeps = Sleeps::instance();

  private:
    int mBefore = 0;
};

void Recovery::looksForTheDebugMarkerOnceAtTheFirstAccess() {
    sDebugMarker = true;
    EXPECT_EQ(0, mTvApiDebug);
    // The entry trace comes before the first access, so it is not written yet.
    int32_t value = 7;
    EXPECT_EQ(-1, a_qeltvapi_config_get_value(1, "x", &value));
    EXPECT_EQ(1, mTvApiDebug);
    std::vector<LogLine> lines = takeLog();
    ASSERT_EQ(1u, lines.size());
    EXPECT_EQ("<a_qeltvapi_config_get_value:140> 7, -1", lines[0].text);

    sDebugMarker = false;
    a_qeltvapi_config_get_value(1, "x", &value);
    EXPECT_EQ(1, mTvApiDebug) << "the marker's removal is not noticed";
    EXPECT_EQ(2u, takeLog().size());
    mTvApiDebug = 0;
    sDebugMarker = true;
    a_qeltvapi_config_get_value(1, "x", &value);
    EXPECT_EQ(0, mTvApiDebug) << "nor its return";
}

void Recovery::forgetsAMissingService() {
    EXPECT_EQ(nullptr, getQelTvApiConfigService());
    service.start({"IQelTvApiConfig"});
    EXPECT_NE(nullptr, getQelTvApiConfigService());
    EXPECT_EQ(getQelTvApiConfigService(), getQelTvApiConfigService());
    // Only the main interface's proxy is watched, and that has not been fetched.
    service.die();
    int32_t value = 7;
    takeLog();
    EXPECT_EQ(-1, a_qeltvapi_config_get_value(1, "x", &value));
    const std::vector<LogLine> lines = takeLog();
    ASSERT_EQ(1u, lines.size()) << "the dead proxy is still the cached one";
    EXPECT_EQ("<STATUS_CHECK:60> .", lines[0].text);
    EXPECT_EQ("(hw_qeltvapi_config)(client)", lines[0].tag);
}

void Recovery::pollsEveryTenSecondsWhenItRegistersWithoutAService() {
    takeLog();
    mTvApiDebug = 1;
    a_qeltvapi_scan_reg_callback(onScan);
    EXPECT_EQ(0, registerCallbackHandler());
    ASSERT_TRUE(waitForLog(kTag, "<reconnectService:60> ."));
    ASSERT_TRUE(sleeps.waitBegun(1));
    mTvApiDebug = 0;
    EXPECT_EQ(10u, sleeps.lastSeconds());
    std::vector<LogLine> lines = takeLog();
    EXPECT_EQ(1u, countLines(lines, "<reconnectService:60> ."));
    EXPECT_EQ(1u, countLines(lines, "<registerCallbackHandler:81> ."));
    EXPECT_EQ(1u, countLines(lines, "<registerCallbackHandler:101> pthread_create"));
    EXPECT_EQ(0u, countLines(lines, "<reconnectService:71> {*}")) << "only after the sleep";

    sleeps.letGo(2);
    ASSERT_TRUE(sleeps.waitBegun(3));
    lines = takeLog();
    EXPECT_EQ(1u, countLines(lines, "<reconnectService:71> reconnectService, count=1"));
    EXPECT_EQ(1u, countLines(lines, "<reconnectService:71> reconnectService, count=2"));

    service.start();
    sleeps.letGo(1);
    EXPECT_TRUE(eventually([&] { return service.registrations() == 1; }));
    EXPECT_TRUE(waitForLog(kTag, "<reconnectService:71> reconnectService, count=3"));
    EXPECT_TRUE(scanArrives(101));
}

void Recovery::makesNoTransactionWhenItRegistersASecondTime() {
    service.take();
    EXPECT_TRUE(workerTakes([] { EXPECT_EQ(0, registerCallbackHandler()); }));
    // The second is taken when the first is done.
    EXPECT_TRUE(workerTakes([] { EXPECT_EQ(0, registerCallbackHandler()); }));
    EXPECT_EQ(1, service.registrations());
    EXPECT_TRUE(service.take().empty());
}

int onHighlevel(int32_t type, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    // A call back into the library, and a registration, from the notification's own thread.
    int32_t value = 0;
    a_qeltvapi_config_get_value(9, "nested", &value);
    a_qeltvapi_highlevel_register_callback(onHighlevel);
    sLastScan = type + value;
    return 0;
}

void Recovery::servesCallsAndRegistrationsFromANotification() {
    EXPECT_TRUE(workerTakes([] { a_qeltvapi_highlevel_register_callback(onHighlevel); }));
    service.take();
    service.expect({u32(9), str("nested")}, {i32(1000), i32(0)});
    EXPECT_TRUE(workerTakes([&] {
        EXPECT_EQ("", service.notify(3, {i32(7), u64(0), u64(0), u64(0), u64(0), u64(0)}));
    }));
    EXPECT_TRUE(eventually([] { return sLastScan == 1007; }));
    const std::vector<Seen> seen = service.take();
    ASSERT_EQ(1u, seen.size());
}

/** The proxies that a death has fetched anew. */
std::vector<sp<IBase>> dropped() {
    return {getQelTvApiService(),           getQelTvApiConfigService(),
            getQelTvApiScanService(),       getQelTvApiBroadcastService(),
            getQelTvApiRatingService(),     getQelTvApiTimeshiftService(),
            getQelTvApiTimeService(),       getQelTvApiEventService(),
            getQelTvApiPvrbrowserService(), getQelTvApiInputSrcService(),
            getQelTvApiRecordService(),     getQelTvApiMultiviewService(),
            getQelTvApiCIService(),         getQelTvApiCecService()};
}

void Recovery::registersTheSameObjectWhenTheServiceIsBack() {
    takeLog();
    // The registration itself watches nothing, so this death is not noticed: the next fetch of the
    // main proxy begins to watch.
    service.die();
    service.start();
    ASSERT_NE(nullptr, getQelTvApiService());
    const auto kept = getQelTvApiChannelListService();
    const std::vector<sp<IBase>> before = dropped();
    ASSERT_NE(nullptr, kept);
    service.expect(scanTable(), {u32(55)});
    EXPECT_EQ(55, a_qeltvapi_channellist_get_channel_number(1));

    service.die();
    ASSERT_TRUE(waitForLog(kTag, "<serviceDied:46> serviceDied 12345"));
    service.start();
    sleeps.letAllGo(true);
    EXPECT_TRUE(registeredAgain());
    EXPECT_TRUE(scanArrives(102));
    sleeps.letAllGo(false);

    const std::vector<LogLine> recovered = takeLog();
    EXPECT_EQ(1u, countLines(recovered, "<serviceDied:46> serviceDied {n}"));
    EXPECT_EQ(1u, countLines(recovered, "<reconnectService:60> ."));
    EXPECT_EQ(0u, countLines(recovered, "<registerCallbackHandler:{n}> {*}")) << "not debugging";
    {
        std::lock_guard<std::mutex> guard(sSentLock);
        EXPECT_EQ(1u, sSent.size()) << "callback objects";
    }
    const std::vector<sp<IBase>> after = dropped();
    for (size_t i = 0; i < before.size(); ++i) EXPECT_NE(before[i], after[i]) << i;
    EXPECT_EQ(kept, getQelTvApiChannelListService()) << "kept on purpose";
    takeLog();
    // A call through the proxy that is kept is a lost reply, although the service is back.
    EXPECT_EQ(-1, a_qeltvapi_channellist_unlock_database(1, 2));
    const std::vector<LogLine> lines = takeLog();
    ASSERT_EQ(1u, lines.size());
    EXPECT_EQ("<STATUS_CHECK:50> .", lines[0].text);
}

void Recovery::watchesTheServiceAgainWhenTheMainProxyIsFetched() {
    service.take();
    takeLog();
    ASSERT_NE(nullptr, getQelTvApiService());
    service.die();
    EXPECT_TRUE(waitForLog(kTag, "<serviceDied:46> serviceDied 12345"));
    service.start();
    sleeps.letAllGo(true);
    EXPECT_TRUE(registeredAgain());
    sleeps.letAllGo(false);
}

void Recovery::triesAgainWhenARegistrationFails() {
    ASSERT_NE(nullptr, getQelTvApiService());
    takeLog();
    service.die();
    ASSERT_TRUE(waitForLog(kTag, "<serviceDied:46> serviceDied 12345"));
    service.refuseRegistrations(3);
    service.start();
    sleeps.letAllGo(true);
    EXPECT_TRUE(registeredAgain());
    sleeps.letAllGo(false);
    EXPECT_EQ(3u, countLines(takeLog(), "<registerCallbackHandler:97> ."));
}

void Recovery::endsACallThatIsUnderWayWhenTheServiceDies() {
    ASSERT_NE(nullptr, getQelTvApiService());
    takeLog();
    // The service's thread may outlive this step.
    static std::atomic<bool> sArrived{false};
    std::thread killer([] {
        eventually([] { return sArrived.load(); });
        ScriptedService::instance().die();
    });
    service.expect({str("start")}, {i32(0)});
    service.beforeAnswer([] {
        sArrived = true;
        eventually([] { return !ScriptedService::instance().started(); });
    });
    EXPECT_EQ(-1, a_qeltvapi_apptv_save_timestamp("start"));
    killer.join();
    EXPECT_TRUE(waitForLog("(hw_iom)(client)", "<STATUS_CHECK:50> ."));
    service.start();
    sleeps.letAllGo(true);
    EXPECT_TRUE(registeredAgain());
    sleeps.letAllGo(false);
    EXPECT_TRUE(scanArrives(105));
}

void Recovery::refusesARequestWhileAnotherWaits() {
    // The worker is held up inside a registration, as after a death, by a service that is slow.
    ASSERT_NE(nullptr, getQelTvApiService());
    service.die();
    takeLog();
    ASSERT_TRUE(eventually([&] { return getQelTvApiConfigService() == nullptr; }));
    std::atomic<bool> release{false};
    service.holdRegistrations(&release);
    service.start();
    sleeps.letAllGo(true);
    ASSERT_TRUE(eventually([&] { return service.registrationsHeld() == 1; }));
    // The reconnecting thread is held up, and behind it the worker with its task; one more waits.
    EXPECT_TRUE(workerTakes([] { EXPECT_EQ(0, registerCallbackHandler()); }));
    EXPECT_EQ(0, registerCallbackHandler());
    EXPECT_EQ(-1, registerCallbackHandler());
    release = true;
    EXPECT_TRUE(registeredAgain());
    const int registered = service.registrations();
    EXPECT_TRUE(scanArrives(106));
    for (int request = 0; request < 2; ++request) {
        EXPECT_TRUE(eventually([] { return registerCallbackHandler() == 0; }));
    }
    EXPECT_EQ(registered, service.registrations()) << "what waited found it done";
    sleeps.letAllGo(false);
}

#define STEP(name) run(#name, &Recovery::name)

TEST_F(Recovery, RegistersAgainAfterEveryDeathOfTheService) {
    STEP(looksForTheDebugMarkerOnceAtTheFirstAccess);
    STEP(forgetsAMissingService);
    STEP(pollsEveryTenSecondsWhenItRegistersWithoutAService);
    STEP(makesNoTransactionWhenItRegistersASecondTime);
    STEP(servesCallsAndRegistrationsFromANotification);
    STEP(registersTheSameObjectWhenTheServiceIsBack);
    STEP(watchesTheServiceAgainWhenTheMainProxyIsFetched);
    STEP(triesAgainWhenARegistrationFails);
    STEP(endsACallThatIsUnderWayWhenTheServiceDies);
    STEP(refusesARequestWhileAnotherWaits);
}

}  // namespace
