#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

#include "daemon.h"
#include "eventually.h"
#include "hw_hbbtv.h"
#include "hw_mm_svctx.h"
#include "hw_pcl.h"
#include "hw_qeltvapi_apptv.h"
#include "hw_qeltvapi_audioinfo.h"
#include "hw_qeltvapi_av_mode.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_freeze.h"
#include "hw_qeltvapi_inputsource.h"
#include "hw_qeltvapi_multiview.h"
#include "hw_qeltvapi_screenmode.h"
#include "hw_qeltvapi_util.h"
#include "hw_qeltvapi_videoinfo.h"
#include "hw_qeltvapi_volctrl.h"
#include "hw_sm.h"
#include "hw_svctx.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/presentation.h"
#include "wire.h"

using namespace wire;
using Json = nlohmann::json;

namespace {

/** A notification: its kind and its values in order, the tag left out. */
struct Event {
    std::string kind;
    std::vector<uint64_t> values;
    bool operator==(const Event& o) const { return kind == o.kind && values == o.values; }
};

/** The notifications in the order of their arrival. */
class Events : public Inbox<Event> {
  public:
    /** Waits for a notification that begins with these values, and drops it and all before it. */
    bool wait(const std::string& kind, const std::vector<uint64_t>& values) {
        return takeUntil([&](const Event& event) {
                   return event.kind == kind && event.values.size() >= values.size() &&
                          std::equal(values.begin(), values.end(), event.values.begin());
               })
                .has_value();
    }
};

Events sEvents;

int onBroadcast(int32_t type, uintptr_t, uintptr_t a, uintptr_t b, uintptr_t c, uintptr_t d) {
    sEvents.put({"broadcast", {static_cast<uint64_t>(type), a, b, c, d}});
    return 0;
}
int onContext(uint32_t context, uint16_t event, uint16_t error, uint16_t path, uintptr_t tag) {
    sEvents.put({"svctx", {context, event, error, path, tag}});
    return 0;
}
int onAudio(int32_t type, uintptr_t, uintptr_t a, uintptr_t b, uintptr_t, uintptr_t) {
    sEvents.put({"audio", {static_cast<uint64_t>(type), a, b}});
    return 0;
}
int onVideo(int32_t type, uintptr_t, uintptr_t a, uintptr_t b, uintptr_t c, uintptr_t d,
            uintptr_t e, uintptr_t) {
    sEvents.put({"video", {static_cast<uint64_t>(type), a, b, c, d, e}});
    return 0;
}
int onPower(uint32_t cond, uintptr_t, uint32_t a, uint32_t b) {
    sEvents.put({"power", {cond, a, b}});
    return 0;
}
int onUnusedKey(int32_t key, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    sEvents.put({"key", {static_cast<uint64_t>(key)}});
    return 0;
}
int onSource(uint32_t component, uint32_t cond, uintptr_t tag, uint32_t width, uint32_t height) {
    sEvents.put({"source", {component, cond, tag, width, height}});
    return 0;
}

Json json(const std::vector<std::string>& arguments) {
    const Ended ended = qeltvctl(arguments);
    EXPECT_EQ(0, ended.status) << ended.err;
    return Json::parse(ended.out);
}

void done(const std::vector<std::string>& arguments) {
    const Ended ended = qeltvctl(arguments);
    EXPECT_EQ(0, ended.status) << ended.err;
}

/** A television with the line-up of Berlin; the library of this process listens to all of it. */
class Presentation : public testing::Test {
  protected:
    void SetUp() override {
        television.start();
        a_qeltvapi_broadcast_register_callback(onBroadcast);
        c_svctx_set_listener(0, onContext);
        a_qeltvapi_audio_info_register_callback(onAudio);
        a_qeltvapi_videoinfo_reg_common_nfy(onVideo);
        c_pcl_reg_nfy_fct(0, onPower);
        a_qeltvapi_util_register_nousedkey_callback(onUnusedKey);
        registerCallbackHandler();
        // A library that has met a television before comes back to the next one by itself.
        ASSERT_TRUE(eventually(isRegistered));
        sEvents.clear();
        ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(0));
        ASSERT_TRUE(sEvents.wait("key", {0}));
        findChannels();
        sEvents.clear();
    }

    static bool isRegistered() {
        using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;
        const auto tv = IQelTvApi::getService("default", false);
        return tv != nullptr &&
               controlTelevision(tv, {"dump"}).find("\"registrations\": ") != std::string::npos;
    }

    /** Channel numbers of the line-up, as the viewer dials them: two that are free to see. */
    void findChannels() {
        for (int32_t number = 1; number < 1000 && channels.size() < 3; ++number) {
            const int id = a_qeltvapi_apptv_get_matched_channel(number, 1, 0, 0);
            if (id <= 0) continue;
            ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_id(id, 0));
            const auto channel = static_cast<uint64_t>(static_cast<uint32_t>(id));
            ASSERT_TRUE(sEvents.wait("broadcast", {QELTV_BROADCAST_LOCKED, channel}));
            int32_t status = 0;
            ASSERT_TRUE(eventually([&] {
                return a_qeltvapi_broadcast_get_tuning_status(&status) == 0 &&
                       (status == QELTV_TUNING_PLAYS || status == QELTV_TUNING_FAILED);
            }));
            const bool plays = status == QELTV_TUNING_PLAYS;
            ASSERT_TRUE(sEvents.wait("broadcast", {plays ? uint64_t{QELTV_BROADCAST_PLAYS}
                                                         : uint64_t{QELTV_BROADCAST_FAILED},
                                                   channel}));
            if (plays && !tracks().empty()) {
                channels.push_back(static_cast<uint32_t>(id));
                numbers.push_back(number);
            }
        }
        ASSERT_EQ(3u, channels.size());
    }

    static std::vector<QELTV_AUDIO_TRACK_T> tracks() {
        uint32_t count = 0;
        EXPECT_EQ(0, a_qeltvapi_audio_info_get_available_record(nullptr, &count));
        std::vector<QELTV_AUDIO_TRACK_T> all(count);
        EXPECT_EQ(0, a_qeltvapi_audio_info_get_available_record(all.data(), &count));
        EXPECT_EQ(all.size(), count);
        return all;
    }

    static QELTV_CONNECTION_T connection(uint32_t path) {
        QELTV_CONNECTION_T all{};
        EXPECT_EQ(0, c_svctx_get_conn_attr(QELTV_CONTEXT_OF_MAIN + path, 0, QELTV_CONNECTION_ALL,
                                           &all));
        return all;
    }

    static bool plays(uint32_t channel) {
        return sEvents.wait("broadcast", {QELTV_BROADCAST_PLAYS, channel, 0, 0});
    }

    Daemon television;
    std::vector<uint32_t> channels;
    std::vector<int32_t> numbers;
};

TEST_F(Presentation, SelectsByEveryKeyAndTellsEveryStep) {
    uint32_t context = 0;
    ASSERT_EQ(0, c_svctx_open("main", &context));
    ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel(0, static_cast<int32_t>(channels[0]), 0, 1));
    const uint64_t channel = channels[0];
    EXPECT_TRUE(sEvents.wait("broadcast", {QELTV_BROADCAST_SELECTING, channel, 0, 0, 1}));
    EXPECT_TRUE(sEvents.wait("broadcast", {QELTV_BROADCAST_LOCKED, channel, 0, 0, 1}));
    EXPECT_TRUE(sEvents.wait("svctx", {context, QELTV_BROADCAST_LOCKED, 0, 0}));
    EXPECT_TRUE(sEvents.wait("broadcast", {QELTV_BROADCAST_PLAYS, channel, 0, 0, 1}));
    EXPECT_TRUE(sEvents.wait("video", {QELTV_VIDEO_FORMAT, 0}));
    int32_t status = 0, error = -1;
    EXPECT_EQ(0, a_qeltvapi_broadcast_get_tuning_status(&status));
    EXPECT_EQ(0, a_qeltvapi_broadcast_get_tuning_error(&error));
    EXPECT_EQ(QELTV_TUNING_PLAYS, status);
    EXPECT_EQ(QELTV_TUNING_NO_ERROR, error);
    EXPECT_EQ(0, c_svctx_close(context));
    EXPECT_EQ(QELTV_NOT_FOUND, c_svctx_close(context));

    ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_num(numbers[1], 0, 0));
    EXPECT_TRUE(plays(channels[1]));
    ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_focusid(
                         0, 0, static_cast<int32_t>(channels[2]), 0, 0));
    EXPECT_TRUE(plays(channels[2]));
    ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_silently(0, static_cast<int32_t>(channels[0]),
                                                              0, 1, 0));
    EXPECT_TRUE(plays(channels[0]));
    ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(QELTV_KEY_LAST_CHANNEL));
    EXPECT_TRUE(plays(channels[2]));

    // Digits: the last one is followed by nothing but the OK key.
    for (const char digit : std::to_string(numbers[1])) {
        ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(QELTV_KEY_DIGIT_0 + (digit - '0')));
    }
    ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(QELTV_KEY_OK));
    EXPECT_TRUE(
            sEvents.wait("broadcast", {QELTV_BROADCAST_DIGITS, static_cast<uint64_t>(numbers[1]),
                                       std::to_string(numbers[1]).size(), 1}));
    EXPECT_TRUE(plays(channels[1]));

    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_broadcast_select_channel_by_chan_num(31999, 0, 0));
    EXPECT_EQ(QELTV_NOT_FOUND,
              a_qeltvapi_broadcast_select_channel_by_chan_num(65536, numbers[2], 0))
            << "a major number that leaves the minor one alone";
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_broadcast_select_channel_by_chan_id(0, 0));
    EXPECT_EQ(QELTV_BAD_VALUE,
              a_qeltvapi_broadcast_select_channel(0, static_cast<int32_t>(channels[0]), 2, 0));
    EXPECT_EQ(channels[1], connection(0).channel) << "a refusal changes nothing";
}

TEST_F(Presentation, LosesAndFindsTheSignalAndMeasuresIt) {
    ASSERT_EQ(0,
              a_qeltvapi_broadcast_select_channel_by_chan_id(static_cast<int32_t>(channels[0]), 0));
    ASSERT_TRUE(plays(channels[0]));
    const int level = a_qeltvapi_broadcast_get_signal_level();
    EXPECT_GE(level, 55);
    EXPECT_GE(a_qeltvapi_broadcast_get_signal_quality(), 60);
    EXPECT_EQ(0, a_qeltvapi_broadcast_is_signal_loss());

    done({"service", "reception", "10"});
    EXPECT_TRUE(sEvents.wait(
            "broadcast", {QELTV_BROADCAST_SIGNAL_LOST, channels[0], 0, QELTV_TUNING_NO_SIGNAL}));
    EXPECT_EQ(1, a_qeltvapi_broadcast_is_signal_loss());
    EXPECT_EQ(level / 10, a_qeltvapi_broadcast_get_signal_level());
    int32_t errors = 0;
    EXPECT_EQ(0, a_qeltvapi_broadcast_get_connect_attr("main", QELTV_CONNECT_BIT_ERRORS, &errors));
    EXPECT_GT(errors, 0);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_broadcast_get_connect_attr("main", 99, &errors));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_broadcast_get_connect_attr("third", 1, &errors));
    const Ended failed = qeltvctl({"tune", std::to_string(numbers[1])});
    EXPECT_EQ(1, failed.status);
    EXPECT_NE(std::string::npos, failed.err.find("no signal")) << failed.err;

    done({"service", "reception", "100"});
    EXPECT_TRUE(plays(channels[1]));

    // A frequency alone locks, and carries no service.
    const uint32_t kHz = connection(0).frequencyKHz;
    QELTVAPI_CHANGE_FREQ_T frequency{};
    frequency.word1 = kHz;
    ASSERT_EQ(0, a_qeltvapi_broadcast_change_freq("main", &frequency));
    EXPECT_TRUE(sEvents.wait("broadcast", {QELTV_BROADCAST_LOCKED, 0}));
    EXPECT_EQ(kHz, connection(0).frequencyKHz);
    frequency.word1 = 1;
    ASSERT_EQ(0, a_qeltvapi_broadcast_change_freq("main", &frequency));
    EXPECT_TRUE(sEvents.wait("broadcast", {QELTV_BROADCAST_FAILED, 0, 0, QELTV_TUNING_NO_SIGNAL}));
}

TEST_F(Presentation, HasInputsWithLabelsBlocksAndSignals) {
    EXPECT_EQ(9, a_qeltvapi_inputsource_get_sourcetotalnum());
    QELTVAPI_INPUT_SOURCE_RECORD_T record{};
    ASSERT_EQ(0, a_qeltvapi_inputsource_get_sourcerec_byidx(5, &record));
    EXPECT_EQ(5, record.byte0);
    EXPECT_EQ(QELTV_INPUT_HDMI, record.byte1);
    EXPECT_EQ(1, record.byte2);
    EXPECT_STREQ("HDMI 1", record.name);
    EXPECT_EQ(QELTV_INPUT_HAS_SIGNAL, record.tail);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_inputsource_get_sourcerec_byidx(9, &record));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_inputsource_get_sourcerec_byidx(-1, &record));

    done({"input", "name", "HDMI 1", "Console"});
    char name[64] = "";
    ASSERT_EQ(0, a_qeltvapi_inputsource_get_sourcename_bysourceid(5, name, QELTV_NAME_SHOWN));
    EXPECT_STREQ("Console", name);
    EXPECT_EQ(QELTV_BAD_VALUE,
              a_qeltvapi_inputsource_set_userdefname_bysourceid(5, std::string(33, 'x').c_str()));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid(5, 9));

    // Blocked only while the parental lock is on, and until somebody unblocks what is shown.
    ASSERT_EQ(0, a_qeltvapi_inputsource_set_source_blockstatus_bysourceid(5, 1));
    uint8_t blocked = 1;
    ASSERT_EQ(0, a_qeltvapi_inputsource_is_block_bysourceid(5, &blocked));
    EXPECT_EQ(0, blocked);
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, "parental.input_lock", 1, 0));
    ASSERT_EQ(0, a_qeltvapi_inputsource_changesource_bysourceid(5));
    EXPECT_TRUE(sEvents.wait("svctx", {1, QELTV_BROADCAST_FAILED, QELTV_TUNING_BLOCKED, 0}));
    ASSERT_EQ(0, a_qeltvapi_apptv_unblock_svc("main", 1));
    EXPECT_TRUE(sEvents.wait("svctx", {1, QELTV_BROADCAST_PLAYS, 0, 0}));
    EXPECT_TRUE(sEvents.wait("video", {QELTV_VIDEO_FORMAT, 0, 1920, 1080, 60000, 0}));
    ASSERT_EQ(0, a_qeltvapi_apptv_unblock_svc("main", 0));
    EXPECT_TRUE(sEvents.wait("svctx", {1, QELTV_BROADCAST_FAILED, QELTV_TUNING_BLOCKED, 0}));

    // HDMI 2 has nothing in it. Plugging something in changes to it, where that is allowed.
    uint8_t signal = 1;
    ASSERT_EQ(0, a_qeltvapi_inputsource_get_external_device_has_signal(6, 0, &signal));
    EXPECT_EQ(0, signal);
    done({"service", "plug", "6", "on"});
    EXPECT_TRUE(sEvents.wait("svctx", {1, QELTV_BROADCAST_PLAYS, 0, 0}));
    EXPECT_EQ(6u, connection(0).source);
    ASSERT_EQ(0, a_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid(8, 0));
    done({"service", "plug", "8", "on"});
    EXPECT_EQ(6u, connection(0).source);
    done({"service", "plug", "6", "off"});
    EXPECT_TRUE(sEvents.wait("svctx", {1, QELTV_BROADCAST_SIGNAL_LOST, QELTV_TUNING_NO_SIGNAL, 0}));

    // What the user has set is there again afterwards.
    television.kill();
    television.start();
    const Json inputs = json({"input", "list", "--json"});
    ASSERT_EQ(9u, inputs.size());
    EXPECT_EQ("Console", inputs[5].at("shown"));
    EXPECT_TRUE(inputs[5].at("blocked").get<bool>());
    EXPECT_FALSE(inputs[8].at("auto_detect").get<bool>());
    EXPECT_FALSE(inputs[6].at("signal").get<bool>());
}

TEST_F(Presentation, ShowsTwoPicturesFromOneTuner) {
    const auto channel = static_cast<int32_t>(channels[0]);
    ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_id(channel, 0));
    ASSERT_TRUE(plays(channels[0]));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_broadcast_select_channel(0, channel, 1, 0))
            << "the main path has the tuner";
    QELTVAPI_MULTIVIEW_REGION_T region{8000, 8000, 3000, 1000};
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_multiview_startSubVideo(5, &region))
            << "beyond the screen";
    region.x = 0xffffffff;
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_multiview_startSubVideo(5, &region));
    region.x = 7000;
    ASSERT_EQ(0, a_qeltvapi_multiview_startSubVideo(5, &region));
    EXPECT_TRUE(sEvents.wait("svctx", {2, QELTV_BROADCAST_PLAYS, 0, 1}));
    EXPECT_EQ(0, a_qeltvapi_multiview_getPOPTunerFocus());
    EXPECT_EQ(0, a_qeltvapi_multiview_getAudioFocus());
    ASSERT_EQ(0, a_qeltvapi_multiview_setAudioFocusbySourceid(5));
    EXPECT_EQ(1, a_qeltvapi_multiview_getAudioFocus());
    EXPECT_EQ(QELTV_RESOURCE_PATH, a_qeltvapi_multiview_getVideoResource("sub"));
    uint8_t available = 1;
    ASSERT_EQ(0, a_qeltvapi_multiview_is_source_available_bysourceidandpath(5, "main", &available));
    EXPECT_EQ(0, available);

    ASSERT_EQ(0, a_qeltvapi_multiview_setNewTvMode(QELTV_TV_NORMAL));
    EXPECT_TRUE(sEvents.wait("svctx", {2, QELTV_BROADCAST_STOPPED, 0, 1}));
    EXPECT_EQ(0, a_qeltvapi_multiview_getAudioFocus());
    EXPECT_EQ(QELTV_RESOURCE_NONE, a_qeltvapi_multiview_getVideoResource("sub"));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_multiview_getVideoResource("nowhere"));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_multiview_setNewTvMode(3));
}

TEST_F(Presentation, KeepsVolumesAndTellsThem) {
    EXPECT_EQ(20, a_qeltvapi_volctrl_getVolume());
    EXPECT_EQ(21, a_qeltvapi_volctrl_incrVolume());
    EXPECT_TRUE(sEvents.wait("audio", {QELTV_AUDIO_VOLUME, QELTV_VOLUME_SPEAKER, 21}));
    ASSERT_EQ(0, a_qeltvapi_volctrl_setMute(1));
    EXPECT_EQ(20, a_qeltvapi_volctrl_decrVolume());
    EXPECT_EQ(1, a_qeltvapi_volctrl_getMute()) << "down does not unmute";
    a_qeltvapi_volctrl_incrVolume();
    EXPECT_TRUE(sEvents.wait("audio", {QELTV_AUDIO_MUTE, QELTV_VOLUME_SPEAKER, 0}));
    EXPECT_EQ(0, a_qeltvapi_volctrl_getMute());
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_volctrl_setVolume(101));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_volctrl_setVolume(-1));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_volctrl_getVolume_by_type(5));
    ASSERT_EQ(0, a_qeltvapi_volctrl_setVolume_by_type(QELTV_VOLUME_HEADPHONE, 100));
    EXPECT_EQ(100, a_qeltvapi_volctrl_incrVolume_by_type(QELTV_VOLUME_HEADPHONE));
    ASSERT_EQ(0, a_qeltvapi_volctrl_setMute_by_type(QELTV_VOLUME_BLUETOOTH, 1));
    EXPECT_EQ(0, a_qeltvapi_volctrl_getMute());

    television.kill();
    television.start();
    const Json volumes = json({"volume", "--json"});
    EXPECT_EQ(21, volumes[QELTV_VOLUME_SPEAKER].at("volume"));
    EXPECT_EQ(100, volumes[QELTV_VOLUME_HEADPHONE].at("volume"));
    EXPECT_FALSE(volumes[QELTV_VOLUME_BLUETOOTH].at("muted").get<bool>());
}

TEST_F(Presentation, SelectsTracksAndLanguages) {
    const auto all = tracks();
    ASSERT_FALSE(all.empty());
    const uint32_t absent = static_cast<uint32_t>(all.size()) + 1;
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_select_audio(&absent));
    uint32_t count = 0;
    ASSERT_EQ(0, c_hbbtv_stm_get_audio_num(&count));
    EXPECT_EQ(all.size(), count);
    uint32_t room = 1;
    QELTV_AUDIO_TRACK_T two[2]{};
    ASSERT_EQ(0, a_qeltvapi_audio_info_get_available_record(two, &room));
    EXPECT_EQ(all.size(), room) << "the number that there are";
    EXPECT_EQ(0u, two[1].track) << "sends no more than there is room for";

    for (const QELTV_AUDIO_TRACK_T& track : all) {
        ASSERT_EQ(0, c_opera_hbbtv_stm_set_audio(track.track));
        uint32_t now = 0;
        ASSERT_EQ(0, c_hbbtv_stm_get_audio(&now));
        EXPECT_EQ(track.track, now);
        char language[4] = "";
        ASSERT_EQ(0, c_hbbtv_stm_get_audio_lang(track.track, language));
        EXPECT_EQ(0, memcmp(track.language, language, 4));
        QELTV_AUDIO_TRACK_T current{};
        ASSERT_EQ(0, a_qeltvapi_get_current_audio_info(&current));
        EXPECT_EQ(track.pid, current.pid);
        ASSERT_EQ(0, c_svctx_get_audio_info(1, &current));
        EXPECT_EQ(track.track, current.track);
    }
    char language[64] = "";
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_audio_info_get_current_lanuage("nowhere", language));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_select_default_audio("xyz"));
    EXPECT_EQ(QELTV_BAD_VALUE, c_hbbtv_set_default_audio_lang("English"));

    // The description is preferred where it is switched on.
    if (all.size() >= 3) {
        ASSERT_EQ(0, c_hbbtv_set_audio_desc(1));
        ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_id(
                             static_cast<int32_t>(channels[2]), 0));
        ASSERT_TRUE(plays(channels[2]));
        QELTV_AUDIO_TRACK_T current{};
        ASSERT_EQ(0, a_qeltvapi_get_current_audio_info(&current));
        EXPECT_EQ(QELTV_AUDIO_DESCRIPTION, current.purpose);
    }
    uint8_t bands[5] = {12, 0xf4, 0, 1, 2}, back[5] = {};
    ASSERT_EQ(0, a_qeltvapi_audio_info_set_data(QELTV_AUDIO_EQUALISER, bands, 5));
    ASSERT_EQ(0, a_qeltvapi_audio_info_get_data(QELTV_AUDIO_EQUALISER, back, 5));
    EXPECT_EQ(0, memcmp(bands, back, 5));
    bands[0] = 13;
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_audio_info_set_data(QELTV_AUDIO_EQUALISER, bands, 5));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_audio_info_get_data(QELTV_AUDIO_EQUALISER, back, 4))
            << "would be longer than the room";
}

TEST_F(Presentation, SetsPictureAndScreen) {
    uint32_t number = 0;
    ASSERT_EQ(0, a_qeltvapi_av_mode_get_number_picture_mode(&number));
    std::vector<uint16_t> modes(number + 1, 0xaaaa);
    uint32_t room = number - 1;
    ASSERT_EQ(0, a_qeltvapi_av_mode_get_all_picture_mode(modes.data(), &room));
    EXPECT_EQ(number - 1, room);
    EXPECT_EQ(0xaaaa, modes[number - 1]);
    uint32_t screens = 2;
    ASSERT_EQ(0, a_qeltvapi_screenmode_get_all_screen_mode(modes.data(), &screens));
    EXPECT_EQ(2u, screens) << "as many as there are behind the pointer";
    ASSERT_EQ(0, a_qeltvapi_av_mode_set_picture_mode(3));
    EXPECT_TRUE(sEvents.wait("video", {QELTV_VIDEO_PICTURE_MODE, 3}));
    EXPECT_EQ(3, a_qeltvapi_av_mode_get_picture_mode());
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_av_mode_set_picture_mode(3 + 65536));

    // Inputs have a mode of their own, and one more to choose from.
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_screenmode_set_screen_mode(7));
    ASSERT_EQ(0, a_qeltvapi_screenmode_set_screen_mode(2));
    done({"input", "select", "HDMI 1"});
    ASSERT_EQ(0, a_qeltvapi_screenmode_set_screen_mode(7));
    EXPECT_EQ(0, a_qeltvapi_zoom_is_enable());
    uint32_t word = 0;
    ASSERT_EQ(0, a_qeltvapi_videoinfo_get_value(QELTV_VIDEO_WIDTH, &word));
    EXPECT_EQ(1920u, word);
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_videoinfo_set_value(QELTV_VIDEO_WIDTH, 1));
    QELTV_DATA_RANGE_T range{};
    ASSERT_EQ(0, a_qeltvapi_videoinfo_get_data(QELTV_VIDEO_DATA_RANGE, &range, sizeof(range)));
    EXPECT_EQ(255u, range.maximum);
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_videoinfo_get_data(QELTV_VIDEO_DATA_RANGE, &range, 15));
    ASSERT_EQ(0, a_qeltvapi_freeze_set_freeze("main", 1));
    EXPECT_TRUE(sEvents.wait("video", {QELTV_VIDEO_FREEZE, 0, 1}));
    ASSERT_EQ(0, a_qeltvapi_broadcast_switch_input_to_tv());
    EXPECT_EQ(0, a_qeltvapi_freeze_is_freeze("main")) << "a new picture moves";
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_freeze_set_freeze("sub", 1)) << "nothing to freeze";
    EXPECT_EQ(2, a_qeltvapi_screenmode_get_screen_mode());

    // The overscan is kept only if the call says so.
    int32_t sides[4] = {};
    ASSERT_EQ(0, a_qeltvapi_screenmode_set_crnt_overscan(1, 2, 3, 4));
    ASSERT_EQ(0, a_qeltvapi_screenmode_update_overscan_ini());
    ASSERT_EQ(0, a_qeltvapi_screenmode_set_crnt_overscan(5, 6, 7, 8));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_screenmode_set_crnt_overscan(101, 0, 0, 0));
    ASSERT_EQ(0, a_qeltvapi_screenmode_get_crnt_overscan(sides));
    EXPECT_EQ(8, sides[3]);
    television.kill();
    television.start();
    EXPECT_EQ("top 1, bottom 2, left 3, right 4\n", qeltvctl({"screen", "overscan"}).out);
    EXPECT_EQ(0, qeltvctl({"picture", "mode"}).status);
}

TEST_F(Presentation, ContextsSelectReadAndKeepBlocks) {
    uint32_t context = 0;
    EXPECT_EQ(QELTV_NOT_FOUND, c_svctx_open("nowhere", &context));
    ASSERT_EQ(0, c_svctx_open("main", &context));
    QELTV_SELECT_CHANNEL_T wanted{};
    wanted.channel = channels[1];
    qeltvapi_svctx_select_t request{};
    request.specific = &wanted;
    ASSERT_EQ(0, c_svctx_select_svc(context, 0, &request, nullptr, 0,
                                    reinterpret_cast<void*>(uintptr_t{0x1234})));
    EXPECT_TRUE(sEvents.wait("svctx", {context, QELTV_BROADCAST_PLAYS, 0, 0, 0x1234}));
    uint32_t channel = 0, length = sizeof(channel);
    ASSERT_EQ(0, c_svctx_get(context, QELTV_CONTEXT_CHANNEL, &channel, &length));
    EXPECT_EQ(channels[1], channel);
    length = sizeof(channel) - 1;
    EXPECT_EQ(QELTV_BAD_VALUE, c_svctx_get(context, QELTV_CONTEXT_CHANNEL, &channel, &length))
            << "would not fit";
    QELTV_VIDEO_SOURCE_T video{};
    ASSERT_EQ(0, c_svctx_get_video_src_resolution(context, &video));
    EXPECT_GT(video.height, 0u);
    uint32_t locked = 0;
    ASSERT_EQ(0, c_svctx_get_conn_attr(context, 0, QELTV_CONNECTION_LOCKED, &locked));
    EXPECT_EQ(1u, locked);

    request.type = 7;
    request.first = "HDMI 3";
    ASSERT_EQ(0, c_svctx_select_svc(context, 0, &request, nullptr, 0, nullptr));
    EXPECT_TRUE(sEvents.wait("svctx", {context, QELTV_BROADCAST_PLAYS, 0, 0, 0}));
    EXPECT_EQ(7u, connection(0).source);
    request.first = "12x";
    EXPECT_EQ(QELTV_NOT_FOUND, c_svctx_select_svc(context, 0, &request, nullptr, 0, nullptr));

    const char note[] = "kept";
    ASSERT_EQ(0, c_svctx_set_stream_attr(context, QELTV_STREAM_SUBTITLE, 9, note, sizeof(note)));
    char back[16] = "";
    length = sizeof(back);
    ASSERT_EQ(0,
              c_svctx_get(context, QELTV_CONTEXT_STREAM_ATTRIBUTE | QELTV_STREAM_SUBTITLE << 8 | 9,
                          back, &length));
    EXPECT_STREQ(note, back);
    EXPECT_EQ(QELTV_BAD_VALUE, c_svctx_set_stream_attr(context, 3, 9, note, sizeof(note)));
    uint8_t block[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    ASSERT_EQ(0, c_svctx_generic_set_info(context, 0, QELTV_INFO_USER, block, sizeof(block)));
    uint8_t three[4] = {9, 9, 9, 9};
    ASSERT_EQ(0, c_svctx_generic_get_info(context, 0, QELTV_INFO_USER, three, 3));
    EXPECT_EQ(3, three[2]);
    EXPECT_EQ(9, three[3]) << "no more than was asked for";
    EXPECT_EQ(QELTV_NOT_FOUND, c_svctx_generic_get_info(context, 0, 5000, three, 3));

    std::vector<uint32_t> open;
    int code = 0;
    for (uint32_t one = 0; (code = c_svctx_open("sub", &one)) == 0;) {
        open.push_back(one);
        ASSERT_LT(open.size(), 100u);
    }
    EXPECT_EQ(QELTV_REFUSED, code);
    for (const uint32_t one : open) EXPECT_EQ(0, c_svctx_close(one));
}

TEST_F(Presentation, TheScreenBlockHasWhatIsShownBesideThePictures) {
    const auto screen = [](uint32_t path) {
        QELTV_SCREEN_T block{};
        EXPECT_EQ(0, c_svctx_generic_get_info(QELTV_CONTEXT_OF_MAIN + path, 0, QELTV_INFO_SCREEN,
                                              &block, sizeof(block)));
        return block;
    };
    ASSERT_EQ(0, a_qeltvapi_broadcast_set_banner_visibility(1));
    ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(QELTV_KEY_DIGIT_0 + 7));
    EXPECT_EQ(1u, screen(0).banner);
    EXPECT_STREQ("7", screen(0).digits);
    ASSERT_EQ(0, a_qeltvapi_multiview_setNewTvMode(QELTV_TV_SIDE_BY_SIDE));
    EXPECT_EQ(uint32_t{QELTV_TV_SIDE_BY_SIDE}, screen(1).mode);
    EXPECT_EQ(QELTV_REGION_FULL / 2, screen(1).x);
    EXPECT_EQ(QELTV_REGION_FULL / 2, screen(1).width);
    EXPECT_EQ(0u, screen(0).x);

    ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(QELTV_KEY_POWER));
    EXPECT_EQ(1u, screen(0).standby);
    EXPECT_EQ(0u, screen(0).banner) << "standby shows none";
    ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(QELTV_KEY_POWER));
    ASSERT_EQ(0, a_qeltvapi_multiview_setNewTvMode(QELTV_TV_NORMAL));
    EXPECT_EQ(0u, screen(0).standby);
    EXPECT_EQ(QELTV_REGION_FULL, screen(0).width);
}

TEST_F(Presentation, ComponentsSeeTheVideoSourceComeAndGo) {
    const qeltvapi_scc_cmd_t commands[] = {{QELTVAPI_SCC_CMD_TYPE, {0}},
                                           {QELTVAPI_SCC_CMD_END, {0}}};
    uint32_t component = 0;
    ASSERT_EQ(0, c_scc_comp_open(commands, &component));
    done({"input", "select", "HDMI 1"});
    ASSERT_EQ(0, c_scc_vid_set_src_detect_nfy(component, onSource,
                                              reinterpret_cast<void*>(uintptr_t{77})));
    EXPECT_TRUE(sEvents.wait("source", {component, QELTV_SOURCE_DETECTED, 77, 1920, 1080}));
    done({"service", "plug", "5", "off"});
    EXPECT_TRUE(sEvents.wait("source", {component, QELTV_SOURCE_LOST, 77, 0, 0}));
    EXPECT_EQ(0, c_scc_comp_close(component));
    EXPECT_EQ(QELTV_NOT_FOUND, c_scc_comp_close(component));
    EXPECT_EQ(QELTV_NOT_FOUND, c_scc_vid_set_src_detect_nfy(component, onSource, nullptr));
}

TEST_F(Presentation, GoesToStandbyAndWakesByTheRemoteControl) {
    uint32_t reason = 99;
    ASSERT_EQ(0, c_pcl_get_wakeup_reason(&reason, nullptr));
    EXPECT_EQ(QELTV_WAKE_MAINS, reason);
    const uint32_t data = 0x01020304;
    ASSERT_EQ(0, c_pcl_set_power_down_reason(QELTV_DOWN_IDLE, &data));
    EXPECT_EQ(QELTV_BAD_VALUE, c_pcl_set_power_down_reason(QELTV_DOWN_REASONS, nullptr));
    ASSERT_EQ(0, c_pcl_set_power_down());
    EXPECT_TRUE(sEvents.wait("power", {QELTV_POWER_DOWN, QELTV_DOWN_IDLE}));
    EXPECT_TRUE(sEvents.wait("broadcast", {QELTV_BROADCAST_STOPPED}));
    EXPECT_EQ(QELTV_REFUSED, c_pcl_set_power_down());
    EXPECT_EQ(QELTV_REFUSED,
              a_qeltvapi_broadcast_select_channel_by_chan_id(static_cast<int32_t>(channels[0]), 0));

    ASSERT_EQ(0, c_pcl_set_wakeup_setup(1u << QELTV_WAKE_TIMER));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_broadcast_key_handler(QELTV_KEY_POWER))
            << "not in the setup";
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_pcl_set_wakeup_setup(1u << QELTV_WAKE_REASONS));
    ASSERT_EQ(0, c_pcl_set_wakeup_setup(1u << QELTV_WAKE_REMOTE));
    ASSERT_EQ(0, a_qeltvapi_broadcast_key_handler(QELTV_KEY_POWER));
    EXPECT_TRUE(sEvents.wait("power", {QELTV_POWER_WAKE, QELTV_WAKE_REMOTE}));
    EXPECT_TRUE(sEvents.wait("broadcast", {QELTV_BROADCAST_PLAYS}));
    qeltvapi_pcl_wakeup_key_t key{};
    ASSERT_EQ(0, c_pcl_get_wakeup_irkey(&key));
    EXPECT_EQ(static_cast<uint32_t>(QELTV_KEY_POWER), key.second);

    // A plug moves its line; only monitored lines are notified.
    const qeltvapi_pcl_gpio_monitor_ctrl_t monitor{12, 5};
    ASSERT_EQ(0, c_pcl_set_gpio_monitor_ctrl_ex(&monitor));
    done({"service", "plug", "6", "on"});
    EXPECT_TRUE(sEvents.wait("power", {QELTV_POWER_GPIO, 12, 1}));
    EXPECT_EQ(QELTV_REFUSED, c_pcl_set_gpio(12, 0)) << "an input";
    ASSERT_EQ(0, c_pcl_set_gpio(20, 1));
    EXPECT_EQ("1\n", qeltvctl({"power", "gpio", "20"}).out);
    uint32_t value = 0;
    EXPECT_EQ(QELTV_NOT_FOUND, c_pcl_get_gpio(64, 0, &value));

    television.kill();
    television.start();
    const Json down = json({"call", "--json", "c_pcl_get_power_down_reason"});
    EXPECT_EQ(static_cast<uint32_t>(QELTV_DOWN_IDLE), down.at("outputs").at("reason"));
    EXPECT_EQ("04030201", down.at("outputs").at("data").at("hex"));
}

TEST_F(Presentation, TheToolTunesAndTells) {
    const Ended tuned = qeltvctl({"tune", std::to_string(numbers[2])});
    EXPECT_EQ(0, tuned.status) << tuned.err;
    EXPECT_NE(std::string::npos, tuned.out.find(", playing\n")) << tuned.out;
    const Json status = json({"status", "--json"});
    EXPECT_EQ(channels[2], status.at("paths")[0].at("channel"));
    EXPECT_EQ("playing", status.at("paths")[0].at("status"));
    EXPECT_EQ("stopped", status.at("paths")[1].at("status"));
    EXPECT_EQ(0u, status.at("service").get<std::string>().find(std::to_string(numbers[2]) + " "));
    EXPECT_EQ(1, qeltvctl({"tune", "12x"}).status);
    EXPECT_EQ(2, qeltvctl({"tune"}).status);
    EXPECT_EQ("qeltvctl: there is no channel 31999\n", qeltvctl({"tune", "31999"}).err);
    EXPECT_EQ("qeltvctl: volume: not a value that the television takes (-4)\n",
              qeltvctl({"volume", "101"}).err);
    EXPECT_EQ(0, qeltvctl({"mute", "on"}).status);
    EXPECT_EQ(1, a_qeltvapi_volctrl_getMute());
    EXPECT_EQ(0, qeltvctl({"audio", "list"}).status);
}

/** Waits until the television has come to the end of a selection; "playing", or why not. */
std::string outcome() {
    std::string state;
    eventually([&] {
        const Json path = json({"status", "--json"}).at("paths")[0];
        state = path.at("status").get<std::string>();
        if (state == "failed") state = path.at("error").get<std::string>();
        return state != "searching" && state != "locked";
    });
    return state;
}

TEST(Blocks, ScrambledChannelsPlayWithACamAndLockedOnesUnlocked) {
    Daemon television;
    television.start();
    done({"config", "set", "channels.region", "dvb-s/Astra-19.2E"});
    television.kill();
    television.start();
    std::string scrambled, free;
    for (const Json& channel : json({"channel", "list", "--json"})) {
        const Json& flags = channel.at("flags");
        const bool needsCam = std::find(flags.begin(), flags.end(), "scrambled") != flags.end();
        (needsCam ? scrambled : free) = channel.at("number").get<std::string>();
    }
    ASSERT_FALSE(scrambled.empty());
    done({"tune", scrambled});
    done({"ci", "remove"});
    EXPECT_EQ("scrambled", outcome());
    EXPECT_EQ(1, qeltvctl({"tune", scrambled}).status);
    EXPECT_EQ(0, json({"call", "--json", "a_qeltvapi_broadcast_is_cam_installed"})
                         .at("outputs")
                         .at("val"));
    done({"ci", "insert"});
    EXPECT_EQ("playing", outcome());

    done({"tune", free});
    done({"channel", "set", "current", "--lock"});
    EXPECT_EQ("blocked", outcome());
    done({"call", "a_qeltvapi_apptv_unlock_service", "main"});
    EXPECT_EQ("playing", outcome());
    done({"tune", scrambled});
    EXPECT_EQ(1, qeltvctl({"tune", free}).status) << "unlocked until something else is selected";
    done({"channel", "set", "current", "--unlock"});
    EXPECT_EQ("playing", outcome());
}

TEST(Calls, CoverEveryFunctionWithItsContract) {
    const Json all = json({"list", "--json"});
    std::set<std::string> listed, exported;
    for (const Json& function : all) {
        listed.insert(function.at("name"));
        EXPECT_EQ(function.at("callable").get<bool>(), !function.contains("why"));
    }
    FILE* file = fopen(QELTV_SOURCE_DIR "/tests/exports.tsv", "r");
    ASSERT_NE(nullptr, file);
    char line[256];
    ASSERT_NE(nullptr, fgets(line, sizeof(line), file));
    while (fgets(line, sizeof(line), file) != nullptr) {
        const std::string name = std::string(line).substr(0, strcspn(line, "\t\n"));
        if (!name.empty()) exported.insert(name);
    }
    fclose(file);
    EXPECT_EQ(exported, listed);
    EXPECT_EQ(exported.size(), all.size());
    const std::string text = qeltvctl({"describe", "a_qeltvapi_broadcast_get_connect_attr"}).out;
    EXPECT_EQ(0u, text.find("int a_qeltvapi_broadcast_get_connect_attr(const char* name, "
                            "int32_t p2, int32_t* val);\n"));
    EXPECT_NE(std::string::npos, text.find("video path; not null")) << text;
    EXPECT_NE(
            std::string::npos,
            text.find(
                    "\nMethods\n  IQelTvApiBroadcast a_hidl_qeltvapi_broadcast_get_connect_attr\n"))
            << text;
}

TEST(Calls, PassArgumentsAndPrintOutputs) {
    Daemon television;
    television.start();
    EXPECT_EQ("result: 0\nout: 85 (0x55)\n",
              qeltvctl({"call", "a_qeltvapi_config_get_value", "0", "picture.contrast"}).out);
    Json answer =
            json({"call", "--json", "a_qeltvapi_inputsource_get_sourcename_bysourceid", "5", "0"});
    EXPECT_EQ("HDMI 1", answer.at("outputs").at("name").at("text"));
    EXPECT_EQ("48444d492031", answer.at("outputs").at("name").at("hex"));
    // Pointers to values, data in hex, values in and out, records.
    answer = json({"call", "--json", "c_svctx_get", "1", "5", "", "256"});
    EXPECT_GT(answer.at("outputs").at("len").get<uint32_t>(), 0u);
    answer = json({"call", "--json", "c_svctx_generic_set_info", "1", "0", "0x100", "01ff", "2"});
    EXPECT_EQ("01ff", answer.at("outputs").at("buf").at("hex"));
    answer = json({"call", "--json", "a_qeltvapi_inputsource_get_sourcerec_byidx", "7"});
    EXPECT_EQ(41u, answer.at("outputs").at("out").at("length"));

    const Ended refused = qeltvctl({"call", "a_qeltvapi_volctrl_setVolume", "--", "-1"});
    EXPECT_EQ(1, refused.status);
    EXPECT_EQ("result: -4\n", refused.out);
    EXPECT_EQ(2, qeltvctl({"call", "a_qeltvapi_volctrl_setVolume"}).status);
    EXPECT_EQ(2, qeltvctl({"call", "a_qeltvapi_volctrl_setVolume", "0x1ffffffff"}).status);
    EXPECT_EQ(2, qeltvctl({"call", "a_qeltvapi_volctrl_setVolume", "1x"}).status);
    EXPECT_EQ(2, qeltvctl({"call", "no_such_function"}).status);
    const Ended other = qeltvctl({"call", "c_svctx_set_listener", "0", "0"});
    EXPECT_EQ(2, other.status);
    EXPECT_NE(std::string::npos, other.err.find("takes a function")) << other.err;
    television.kill();
    EXPECT_EQ(3, qeltvctl({"call", "a_qeltvapi_volctrl_getVolume"}).status);
}

}  // namespace
