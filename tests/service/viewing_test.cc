/** Two pictures, inputs, and what the television answers about tuning. */
#include <gtest/gtest.h>

#include <cstring>

#include "hw_pcl.h"
#include "hw_qeltvapi_apptv.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_inputsource.h"
#include "hw_qeltvapi_multiview.h"
#include "hw_qeltvapi_scan.h"
#include "hw_svctx.h"
#include "layouts/codes.h"
#include "layouts/presentation.h"
#include "with_television.h"

using namespace wire;

namespace {

class Viewing : public WithTelevision {
  protected:
    void SetUp() override {
        WithTelevision::SetUp();
        ASSERT_TRUE(becomes(0, QELTV_TUNING_PLAYS));
    }

    static QELTV_CONNECTION_T connection(uint32_t path) {
        QELTV_CONNECTION_T all{};
        EXPECT_EQ(0, c_svctx_get_conn_attr(QELTV_CONTEXT_OF_MAIN + path, 0, QELTV_CONNECTION_ALL,
                                           &all));
        return all;
    }
    static bool becomes(uint32_t path, QELTV_TUNING_STATUS status) {
        return eventually([&] { return connection(path).status == static_cast<uint32_t>(status); });
    }
    /** What a question with an output of a byte is answered, or its code. */
    template <class Get, class... A>
    static int flag(Get get, A... arguments) {
        uint8_t value = 0xee;
        const int code = get(arguments..., &value);
        return code == 0 ? value : code;
    }
};

TEST_F(Viewing, PicturesStartStopAndTakeTheSound) {
    const QELTVAPI_MULTIVIEW_REGION_T anywhere{0, 0, 0, 0};
    ASSERT_EQ(0, a_qeltvapi_multiview_startSubVideo(5, &anywhere));
    ASSERT_TRUE(becomes(1, QELTV_TUNING_PLAYS));
    EXPECT_EQ(0, a_qeltvapi_multiview_getAudioFocus());
    ASSERT_EQ(0, a_qeltvapi_multiview_setAudioFocus("sub"));
    EXPECT_EQ(1, a_qeltvapi_multiview_getAudioFocus());
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_multiview_setAudioFocus("third"));
    ASSERT_EQ(0, a_qeltvapi_multiview_stopSubVideo());
    EXPECT_TRUE(becomes(1, QELTV_TUNING_STOPPED));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_multiview_setAudioFocus("sub")) << "it shows nothing";
    EXPECT_EQ(0, a_qeltvapi_multiview_only_chg_focus("sub")) << "but may be forced";
    EXPECT_EQ(1, a_qeltvapi_multiview_getAudioFocus());
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_multiview_only_chg_focus("third"));

    // The tuner moves to the second picture once the first one lets go of it.
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_multiview_startSubVideo(0, &anywhere));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_multiview_startMainVideo(9, &anywhere));
    ASSERT_EQ(0, a_qeltvapi_multiview_startMainVideo(7, &anywhere));
    ASSERT_TRUE(becomes(0, QELTV_TUNING_PLAYS));
    EXPECT_EQ(7u, connection(0).source);
    ASSERT_EQ(0, a_qeltvapi_multiview_startSubVideo(0, &anywhere));
    ASSERT_TRUE(becomes(1, QELTV_TUNING_PLAYS));
    EXPECT_EQ(1, a_qeltvapi_multiview_getPOPTunerFocus());
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_broadcast_switch_input_to_tv());
    EXPECT_EQ(7u, connection(0).source) << "a refusal changes nothing";
    ASSERT_EQ(0, a_qeltvapi_multiview_stopMainVideo());
    EXPECT_TRUE(becomes(0, QELTV_TUNING_STOPPED));

    ASSERT_EQ(0, a_qeltvapi_multiview_set_video_state("sub", 0));
    EXPECT_EQ(0, a_qeltvapi_multiview_get_video_state("sub"));
    ASSERT_EQ(0, a_qeltvapi_multiview_set_video_state("sub", 1));
    EXPECT_EQ(1, a_qeltvapi_multiview_get_video_state("sub"));
    EXPECT_EQ(0, a_qeltvapi_multiview_get_video_state("main")) << "stopped";
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_multiview_get_video_state("third"));
    ASSERT_EQ(0, a_qeltvapi_multiview_setChgSource(1));
    EXPECT_EQ(1, a_qeltvapi_multiview_getChgSource());

    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_multiview_stopVideoWithoutVideoPath("main"));
    ASSERT_EQ(0, a_qeltvapi_multiview_startVideoWithoutVideoPath(5, "main"));
    EXPECT_EQ(QELTV_RESOURCE_WITHOUT_PATH, a_qeltvapi_multiview_getVideoResource("main"));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_multiview_stopVideoWithoutVideoPath("sub")) << "has a path";
    ASSERT_EQ(0, a_qeltvapi_multiview_stopVideoWithoutVideoPath("main"));
    EXPECT_EQ(QELTV_RESOURCE_NONE, a_qeltvapi_multiview_getVideoResource("main"));
    ASSERT_EQ(0, a_qeltvapi_apptv_stop_all());
    EXPECT_TRUE(becomes(1, QELTV_TUNING_STOPPED));
    ASSERT_EQ(0, a_qeltvapi_apptv_start_tv());
    EXPECT_TRUE(becomes(0, QELTV_TUNING_PLAYS));
}

TEST_F(Viewing, UnlockingGoesWithThePictureThatIsSwapped) {
    ASSERT_EQ(0, a_qeltvapi_inputsource_set_source_blockstatus_bysourceid(5, 1));
    ASSERT_EQ(0, a_qeltvapi_inputsource_set_source_blockstatus_bysourceid(7, 1));
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, "parental.input_lock", 1, 0));
    const QELTVAPI_MULTIVIEW_REGION_T anywhere{0, 0, 0, 0};
    ASSERT_EQ(0, a_qeltvapi_multiview_startMainVideo(5, &anywhere));
    ASSERT_EQ(0, a_qeltvapi_multiview_startSubVideo(7, &anywhere));
    ASSERT_TRUE(becomes(0, QELTV_TUNING_FAILED));
    ASSERT_TRUE(becomes(1, QELTV_TUNING_FAILED));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_apptv_unlock_service("third"));
    ASSERT_EQ(0, a_qeltvapi_apptv_unlock_service("main"));
    EXPECT_TRUE(becomes(0, QELTV_TUNING_PLAYS));
    EXPECT_EQ(static_cast<uint32_t>(QELTV_TUNING_FAILED), connection(1).status);
    ASSERT_EQ(0, a_qeltvapi_apptv_swap_tmp_unlock_info(0));
    EXPECT_TRUE(becomes(1, QELTV_TUNING_PLAYS));
    EXPECT_TRUE(becomes(0, QELTV_TUNING_FAILED));
    ASSERT_EQ(0, a_qeltvapi_multiview_stopMainVideo());
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_apptv_unlock_service("main")) << "nothing to unlock";
}

TEST_F(Viewing, InputsSharePinsSignalsAndPriorities) {
    EXPECT_EQ(1, flag(a_qeltvapi_inputsource_query_conflict, 1, 2)) << "the same pins";
    EXPECT_EQ(0, flag(a_qeltvapi_inputsource_query_conflict, 5, 6));
    EXPECT_EQ(1, flag(a_qeltvapi_inputsource_isVideoSignalAvailable, "main"));
    EXPECT_EQ(QELTV_NOT_FOUND, flag(a_qeltvapi_inputsource_isVideoSignalAvailable, "third"));
    EXPECT_EQ(QELTV_NOT_FOUND, flag(a_qeltvapi_inputsource_isAudioSignalAvailable, "third"));
    ASSERT_EQ(0, a_qeltvapi_inputsource_changesource_bysourceid(8));
    ASSERT_TRUE(becomes(0, QELTV_TUNING_FAILED));
    EXPECT_EQ(0, flag(a_qeltvapi_inputsource_isVideoSignalAvailable, "main"));
    EXPECT_EQ(0, flag(a_qeltvapi_inputsource_isAudioSignalAvailable, "main"));

    // Priority 0 takes only a picture that shows nothing.
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_inputsource_cs_bysourceidandpathandpriority(5, "main", 0));
    EXPECT_EQ(0, a_qeltvapi_inputsource_cs_bysourceidandpathandpriority(5, "main", 1));
    ASSERT_TRUE(becomes(0, QELTV_TUNING_PLAYS));
    EXPECT_EQ(0, a_qeltvapi_inputsource_cs_bysourceidandpathandpriority(7, "sub", 0));
    EXPECT_TRUE(becomes(1, QELTV_TUNING_PLAYS));
    EXPECT_EQ(0, flag(a_qeltvapi_inputsource_is_source_available_bysourceidandpath, 7, "main"));
    EXPECT_EQ(1, flag(a_qeltvapi_inputsource_is_source_available_bysourceidandpath, 6, "main"));
    ASSERT_EQ(0, a_qeltvapi_inputsource_sync_stop("sub", 0));
    EXPECT_TRUE(becomes(1, QELTV_TUNING_STOPPED));
    EXPECT_EQ(1, flag(a_qeltvapi_inputsource_is_source_available_bysourceidandpath, 7, "main"));
}

TEST_F(Viewing, DigitsAreValidatedAndForgotten) {
    const uint32_t first = connection(0).channel;
    ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(QELTV_KEY_DIGIT_0 + 2));
    ASSERT_EQ(0, a_qeltvapi_broadcast_reset_digits_key_handled());
    ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(QELTV_KEY_OK));
    EXPECT_EQ(first, connection(0).channel) << "the digit is forgotten";
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_broadcast_key_handler(QELTV_KEY_PERIOD))
            << "no number begins so";

    int32_t value = 0;
    ASSERT_EQ(0, a_qeltvapi_broadcast_get_max_possible_major_chan_no(0, &value));
    int32_t digits = 0;
    ASSERT_EQ(0, a_qeltvapi_broadcast_get_max_possible_major_digits(0, &digits));
    EXPECT_EQ(static_cast<size_t>(digits), std::to_string(value).size());
    ASSERT_EQ(0, a_qeltvapi_broadcast_get_max_possible_minor_chan_no(0, &value));
    EXPECT_EQ(0, value) << "no minor numbers in this line-up";
    EXPECT_EQ(1, flag(a_qeltvapi_broadcast_is_support_4_digits_chan_no));
    EXPECT_EQ(1, flag(a_qeltvapi_broadcast_is_channel_number_valid, 1, 0, 1));
    EXPECT_EQ(0, flag(a_qeltvapi_broadcast_is_channel_number_valid, 31999, 0, 1));

    // The number of a programme selects within the list that is being watched.
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_broadcast_select_channel_by_prog_no(1, 0));
    EXPECT_EQ(0, flag(a_qeltvapi_broadcast_strm_is_orig_scramble, "main", 0));
    EXPECT_EQ(QELTV_NOT_FOUND, flag(a_qeltvapi_broadcast_strm_is_orig_scramble, "third", 0));
    ASSERT_EQ(0, a_qeltvapi_broadcast_sync_stop("main", 0));
    EXPECT_TRUE(becomes(0, QELTV_TUNING_STOPPED));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_broadcast_sync_stop("third", 0));
}

TEST_F(Viewing, TheChannelThatIsShownFollowsItsRecord) {
    const uint32_t first = connection(0).channel;
    // Gone from the list, it is gone from the screen; the end of a scan shows another one.
    ASSERT_EQ(0, qeltvctl({"config", "set", "channels.region", "dvb-s/Astra-19.2E"}).status);
    ASSERT_EQ(0, qeltvctl({"call", "a_qeltvapi_channellist_delete_by_brdcst", "1", "0"}).status);
    ASSERT_TRUE(becomes(0, QELTV_TUNING_FAILED));
    EXPECT_EQ(static_cast<uint32_t>(QELTV_TUNING_NO_SERVICE), connection(0).error);
    EXPECT_EQ(QELTV_NOT_FOUND,
              a_qeltvapi_broadcast_select_channel_by_chan_id(static_cast<int32_t>(first), 0));
    ASSERT_EQ(0, a_qeltvapi_scan_select_crnt_or_first_channel(1));
    EXPECT_TRUE(becomes(0, QELTV_TUNING_PLAYS) || connection(0).error == QELTV_TUNING_SCRAMBLED);
    EXPECT_NE(first, connection(0).channel);
    EXPECT_NE(0u, connection(0).channel);
}

TEST_F(Viewing, AnAmericanLineUpIsDialledByMajorAndMinor) {
    ASSERT_EQ(0,
              qeltvctl({"config", "set", "channels.region", "atsc/us-ATSC-center-frequencies-8VSB"})
                      .status);
    restart();
    ASSERT_TRUE(becomes(0, QELTV_TUNING_PLAYS));
    const uint32_t first = connection(0).channel;
    const auto number =
            nlohmann::json::parse(qeltvctl({"channel", "show", "current", "--json"}).out)
                    .at("number")
                    .get<std::string>();
    const int major = std::stoi(number);
    EXPECT_EQ(std::to_string(major) + ".1", number);
    const auto id = a_qeltvapi_apptv_get_matched_channel(static_cast<int16_t>(major), 1, 0, 2);
    ASSERT_GT(id, 0) << major << ".2";
    for (const char digit : std::to_string(major) + ".2") {
        ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(
                             digit == '.' ? QELTV_KEY_PERIOD : QELTV_KEY_DIGIT_0 + (digit - '0')));
    }
    EXPECT_EQ(first, connection(0).channel) << "more digits may come";
    ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(QELTV_KEY_OK));
    EXPECT_EQ(static_cast<uint32_t>(id), connection(0).channel);
    ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_num(major, 1, 0));
    ASSERT_TRUE(becomes(0, QELTV_TUNING_PLAYS));
    EXPECT_EQ(first, connection(0).channel);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_broadcast_select_channel_by_chan_num(major, 900, 0));
    uint32_t words[4] = {};
    ASSERT_EQ(0, a_qeltvapi_config_get_video_resolution(words));
    EXPECT_EQ(29970u, words[2]);
    int32_t value = 0;
    ASSERT_EQ(0, a_qeltvapi_broadcast_get_max_possible_minor_chan_no(0, &value));
    EXPECT_EQ(999, value);
}

TEST_F(Viewing, WhyItWokeUpHoldsForThisRunOnly) {
    const uint32_t data = 0x0a0b0c0d;
    ASSERT_EQ(0, c_pcl_set_wakeup_reason(QELTV_WAKE_CEC, &data));
    uint32_t reason = 0, back = 0;
    ASSERT_EQ(0, a_qeltvapi_pcl_get_wakeup_reason(&reason, &back));
    EXPECT_EQ(static_cast<uint32_t>(QELTV_WAKE_CEC), reason);
    EXPECT_EQ(data, back);
    EXPECT_EQ(QELTV_BAD_VALUE, c_pcl_set_wakeup_reason(QELTV_WAKE_REASONS, nullptr));
    ASSERT_EQ(0, c_pcl_set_request_powerdown_envent()) << "only asks";
    EXPECT_TRUE(becomes(0, QELTV_TUNING_PLAYS));
    ASSERT_EQ(0, c_pcl_set_power_down());
    EXPECT_EQ(QELTV_REFUSED, c_pcl_set_request_powerdown_envent()) << "is in standby";
    restart();
    ASSERT_EQ(0, c_pcl_get_wakeup_reason(&reason, nullptr));
    EXPECT_EQ(static_cast<uint32_t>(QELTV_WAKE_MAINS), reason);
    EXPECT_TRUE(becomes(0, QELTV_TUNING_PLAYS)) << "the mains wake it";
}

}  // namespace
