#include <gtest/gtest.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApi.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiBroadcast.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiChannelList.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiEvent.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiRating.h>

#include <cstring>

#include "daemon.h"
#include "every_call.h"
#include "layouts/channel_records.h"
#include "layouts/codes.h"

using namespace wire;
using namespace vendor::qelnova::tv::qeltvapi::V1_0;
using android::hardware::hidl_vec;

namespace {

class HostileValues : public testing::Test {
  protected:
    void SetUp() override { television.start(); }

    template <class I>
    static android::sp<I> service() {
        return I::getService("default", false);
    }

    Daemon television;
};

/** What a HIDL record arrives as when a client has set one of its truth values to 2. */
void spoil(bool* truth) {
    memset(static_cast<void*>(truth), 2, 1);
}

TEST_F(HostileValues, ATruthValueOfARecordThatIsNeither0Nor1IsRefused) {
    HIDL_QELTVAPI_EXTERNAL_UI_STATUS_T status{};
    EXPECT_EQ(QELTV_OK,
              service<IQelTvApiBroadcast>()->a_hidl_qeltvapi_broadcast_transfer_external_ui_status(
                      status));
    spoil(&status.on);
    EXPECT_EQ(QELTV_BAD_VALUE,
              service<IQelTvApiBroadcast>()->a_hidl_qeltvapi_broadcast_transfer_external_ui_status(
                      status));

    const auto events = service<IQelTvApiEvent>();
    HIDL_EVENT_QUERY_PARAM_T parameters{};
    EXPECT_EQ(QELTV_OK, events->a_hidl_qeltvapi_event_set_query_parameter(parameters));
    for (bool* truth : {&parameters.a1, &parameters.a2, &parameters.b1, &parameters.b2}) {
        parameters = {};
        spoil(truth);
        EXPECT_EQ(QELTV_BAD_VALUE, events->a_hidl_qeltvapi_event_set_query_parameter(parameters));
    }
    HIDL_EVENT_FILTER_T filter{};
    const auto search = [&] {
        int32_t result = 0;
        EXPECT_TRUE(events->a_hidl_qeltvapi_event_query_event_id_by_filter(
                                  0, filter, 1,
                                  [&](uint16_t, const auto&, const auto&, int32_t code) {
                                      result = code;
                                  })
                            .isOk());
        return result;
    };
    EXPECT_EQ(QELTV_OK, search());
    spoil(&filter.flag);
    EXPECT_EQ(QELTV_BAD_VALUE, search());

    const auto rating = service<IQelTvApiRating>();
    HIDL_RATING_US_TV_SETTING_T setting{};
    EXPECT_EQ(QELTV_OK, rating->a_hidl_qeltvapi_rating_set_us_tv_setting_info(setting));
    for (bool* truth : {&setting.block[0], &setting.block[15], &setting.extra1, &setting.extra4}) {
        setting = {};
        spoil(truth);
        EXPECT_EQ(QELTV_BAD_VALUE, rating->a_hidl_qeltvapi_rating_set_us_tv_setting_info(setting));
    }
}

TEST_F(HostileValues, ABlockIsARecordOfItsSizeAndOfTruthValuesOnly) {
    const auto lists = service<IQelTvApiChannelList>();
    satellite_record_t record{};
    record.position = 192;
    strcpy(record.name, "A satellite");
    const auto put = [&](size_t size) {
        hidl_vec<uint8_t> bytes(size);
        memcpy(bytes.data(), &record, std::min(size, sizeof(record)));
        return static_cast<int32_t>(
                lists->a_hidl_qeltvapi_satllist_update_rec(CHANNEL_LIST_SATELLITE, bytes, true));
    };
    record.enabled = 1;
    EXPECT_EQ(QELTV_OK, put(sizeof(record)));
    for (const size_t size : {size_t{0}, sizeof(record) - 1, sizeof(record) + 1}) {
        EXPECT_EQ(QELTV_BAD_VALUE, put(size)) << size;
    }
    record.enabled = 2;
    EXPECT_EQ(QELTV_BAD_VALUE, put(sizeof(record)));
}

TEST_F(HostileValues, EveryMethodAnswersWhateverItsArgumentsAre) {
    size_t calls = 0;
    for (uint32_t seed = 1; seed <= 12; ++seed) {
        Values values(seed);
        callEverything(values, [&](const char* method, bool answered) {
            if (HasFatalFailure()) return;
            ++calls;
            ASSERT_TRUE(television.alive()) << "ended by " << method << ", seed " << seed;
            ASSERT_TRUE(answered) << method << ", seed " << seed;
        });
        ASSERT_FALSE(HasFatalFailure());
    }
    EXPECT_GT(calls, 12u * 600);
}

}  // namespace
