#include <qeltvapi/service/interfaces.h>
#include <qeltvapi/service/overlay.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_config.h"
#include "layouts/channel_records.h"
#include "layouts/codes.h"
#include "with_television.h"

using namespace wire;
using namespace qeltvapi::service;
using namespace std::chrono_literals;
using android::sp;
using android::hardware::hidl_string;
using android::hardware::Return;

namespace {

constexpr char kItem[] = "picture.contrast";
constexpr char kTelevision[] = "reference";

/** The television's, except that nothing is set beyond 60. */
class Config : public Forward<IQelTvApiConfig> {
  public:
    using Forward::Forward;

    Return<int32_t> a_hidl_qeltvapi_config_set_value(uint32_t selector, const hidl_string& name,
                                                     int32_t value, int32_t flags) override {
        if (value > 60) return -77;
        return Forward::a_hidl_qeltvapi_config_set_value(selector, name, value, flags);
    }
};

class WithOverlay : public testing::Test {
  protected:
    void SetUp() override {
        Sleeps::instance().letAllGo(true);
        start();
        ASSERT_TRUE(joinTelevision());
    }

    void TearDown() override {
        getQelTvApiService();
        Sleeps::instance().letAllGo(false);
    }

    void start() {
        television.launch({"--instance", kTelevision});
        overlay = std::make_unique<Overlay>(kTelevision, 60s);
        overlay->replace<IQelTvApiConfig>(new Config(overlay->television<IQelTvApiConfig>()));
        overlay->start();
    }

    int32_t contrast() {
        int32_t value = -1;
        EXPECT_EQ(0, a_qeltvapi_config_get_value(0, kItem, &value));
        return value;
    }

    Daemon television;
    std::unique_ptr<Overlay> overlay;
};

Inbox<int32_t> sChanges;

int onConfig(int32_t, uintptr_t, uintptr_t, const char* name, uintptr_t value, uintptr_t) {
    if (strcmp(name, kItem) == 0) sChanges.put(static_cast<int32_t>(value));
    return 0;
}

TEST_F(WithOverlay, ReplacesOneMethodAndPassesOnAllOthers) {
    EXPECT_EQ(-77, a_qeltvapi_config_set_value(0, kItem, 61, 0));
    EXPECT_EQ(85, contrast());
    EXPECT_EQ(0, a_qeltvapi_config_set_value(0, kItem, 60, 0));
    EXPECT_EQ(60, contrast());
    EXPECT_EQ(1, a_qeltvapi_config_is_visible(0, kItem));
    char country[64] = {};
    uint32_t length = 0;
    EXPECT_EQ(0, a_qeltvapi_config_get_str_value("channels.country", country, &length));
    EXPECT_EQ("DEU", std::string(country, length));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_config_set_value(0, "no.such", 1, 0));
}

TEST_F(WithOverlay, PassesOnSharedMemory) {
    channel_record_t channels[4] = {};
    multiplex_record_t multiplexes[4] = {};
    ASSERT_EQ(0, a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(CHANNEL_LIST_AIR, 0, 0, 0, 0,
                                                                    CHANNEL_BROADCAST_ANY, 0, 4, 0,
                                                                    channels, multiplexes));
    for (const channel_record_t& channel : channels) EXPECT_NE(0u, channel.record_id);
}

TEST_F(WithOverlay, LetsNotificationsReachTheClientDirectly) {
    sChanges.clear();
    a_qeltvapi_config_reg_callback(onConfig);
    ASSERT_EQ(0, a_qeltvapi_config_add_value_changed_callback(kItem));
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, kItem, 17, 0));
    EXPECT_TRUE(sChanges.takeUntil([](int32_t value) { return value == 17; }));
    a_qeltvapi_config_reg_callback(nullptr);
}

TEST_F(WithOverlay, FailsOnlyTheCallThatTheTelevisionDoesNotAnswer) {
    for (const char* method : {"config_get_value", "config_set_value"}) {
        ASSERT_EQ(0, qeltvctl({"service", "fault", std::string("a_hidl_qeltvapi_") + method, "lose",
                               "--times", "1"})
                             .status);
    }
    int32_t value = 4711;
    EXPECT_EQ(-1, a_qeltvapi_config_get_value(0, kItem, &value));
    EXPECT_EQ(4711, value);
    EXPECT_EQ(85, contrast());
    EXPECT_EQ(-1, a_qeltvapi_config_set_value(0, kItem, 20, 0));
    EXPECT_EQ(20, contrast());
}

TEST_F(WithOverlay, DiesWithTheTelevisionAndIsFoundAgain) {
    class Recipient : public android::hardware::hidl_death_recipient {
      public:
        void serviceDied(uint64_t, const android::wp<android::hidl::base::V1_0::IBase>&) override {
            deaths.put(1);
        }
        Inbox<int> deaths;
    };
    const sp<Recipient> recipient = new Recipient;
    const auto scan = IQelTvApiScan::getService("default", false);
    ASSERT_NE(nullptr, scan);
    ASSERT_TRUE(scan->linkToDeath(recipient, 0));
    getQelTvApiService();

    television.kill();
    overlay->wait();
    EXPECT_TRUE(recipient->deaths.take());
    int32_t value = 0;
    EXPECT_EQ(-1, a_qeltvapi_config_get_value(0, kItem, &value));
    EXPECT_EQ(nullptr, IQelTvApi::getService("default", false));

    start();
    ASSERT_TRUE(joinTelevision());
    EXPECT_EQ(85, contrast());
}

TEST_F(WithOverlay, EndsWithItsObject) {
    const auto config = IQelTvApiConfig::getService("default", false);
    ASSERT_NE(nullptr, config);
    overlay.reset();
    EXPECT_TRUE(config->a_hidl_qeltvapi_config_is_visible(0, kItem).isDeadObject());
    EXPECT_EQ(nullptr, IQelTvApiConfig::getService("default", false));

    // The television runs on, for another overlay.
    overlay = std::make_unique<Overlay>(kTelevision);
    overlay->start();
    const auto again = IQelTvApiConfig::getService("default", false);
    ASSERT_NE(nullptr, again);
    EXPECT_EQ(1, again->a_hidl_qeltvapi_config_is_visible(0, kItem));
}

TEST(Overlay, RefusesToStartWithoutATelevisionOrTwice) {
    EXPECT_THROW(Overlay("nobody", 0ms), std::runtime_error);
    Daemon television;
    television.launch({"--instance", kTelevision});
    Overlay overlay(kTelevision, 60s);
    EXPECT_THROW(overlay.start(kTelevision), std::logic_error);
    EXPECT_THROW(overlay.replace(overlay.television<IQelTvApiTime>()), std::invalid_argument);
    EXPECT_EQ(nullptr, IQelTvApi::getService("default", false));
    overlay.start("other");
    EXPECT_THROW(overlay.start("other"), std::logic_error);
    EXPECT_NE(nullptr, IQelTvApi::getService("other", false));
}

TEST(Overlay, WaitsForATelevisionThatComesLater) {
    Daemon television;
    std::thread waiting([] { EXPECT_NO_THROW(Overlay(kTelevision, 60s)); });
    std::this_thread::sleep_for(100ms);
    // Here, because the television ends with the thread that has started it.
    television.launch({"--instance", kTelevision});
    waiting.join();
}

}  // namespace
