/** Settings of every kind: who is notified of a change, and what a television keeps over a restart.
 */
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "hw_hbbtv.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_inputsource.h"
#include "hw_qeltvapi_rating.h"
#include "hw_qeltvapi_time.h"
#include "hw_svctx.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/config.h"
#include "layouts/presentation.h"
#include "layouts/time.h"
#include "with_television.h"

using namespace wire;

namespace {

struct Change {
    int32_t type;
    std::string name;
    uint64_t group;
    int64_t value;
    bool operator==(const Change& o) const {
        return type == o.type && name == o.name && group == o.group && value == o.value;
    }
};
void PrintTo(const Change& change, std::ostream* out) {
    *out << change.name << " of group " << change.group << " = " << change.value;
}

Inbox<Change> sChanges;
Inbox<Notified> sDate;

int onConfig(int32_t type, uintptr_t, uintptr_t group, const char* name, uintptr_t value,
             uintptr_t) {
    sChanges.put({type, name, group, static_cast<int64_t>(value)});
    return 0;
}
int onDate(int32_t type, uintptr_t, uintptr_t value) {
    sDate.put({type, {value}});
    return 0;
}

class Settings : public WithTelevision {
  protected:
    void SetUp() override {
        WithTelevision::SetUp();
        a_qeltvapi_config_reg_callback(onConfig);
        sChanges.clear();
    }

    static void watchItems(std::initializer_list<const char*> names) {
        for (const char* name : names) {
            ASSERT_EQ(0, a_qeltvapi_config_add_value_changed_callback(name)) << name;
        }
    }

    /** The next change that is notified is this one. */
    static void expectTold(const char* name, uint64_t group, int64_t value) {
        const auto notified = sChanges.take();
        ASSERT_TRUE(notified) << name;
        EXPECT_EQ((Change{1, name, group, value}), *notified);
    }

    static std::string text(const char* name) {
        char text[QELTV_CONFIG_TEXT_MAXIMUM + 1] = "";
        uint32_t length = sizeof(text);
        EXPECT_EQ(0, a_qeltvapi_config_get_str_value(name, text, &length)) << name;
        return text;
    }
};

TEST_F(Settings, AChangeIsToldWhateverFunctionMakesIt) {
    watchItems({"sound.audio_language", "sound.subtitle_language", "parental.age",
                "parental.rating_lock", "picture.contrast"});
    ASSERT_EQ(0, c_hbbtv_set_default_audio_lang("fra"));
    expectTold("sound.audio_language", 2, 0);
    EXPECT_EQ("fra", text("sound.audio_language"));
    ASSERT_EQ(0, c_opera_hbbtv_set_default_audio_lang("deu"));
    expectTold("sound.audio_language", 2, 0);
    ASSERT_EQ(0, c_hbbtv_set_default_subtitle_lang("ita", 0));
    expectTold("sound.subtitle_language", 2, 0);
    ASSERT_EQ(0, c_opera_hbbtv_set_default_subtitle_lang("nor", 0));
    expectTold("sound.subtitle_language", 2, 0);
    ASSERT_EQ(0, a_qeltvapi_rating_set_dvb_age_setting_info(16));
    expectTold("parental.age", 4, 16);
    ASSERT_EQ(0, a_qeltvapi_rating_set_enable(1));
    expectTold("parental.rating_lock", 4, 1);
    ASSERT_EQ(0, a_qeltvapi_config_set_value_for_all_elems(0, "picture.contrast", 11, 0));
    expectTold("picture.contrast", 1, 11);

    // Not notified: what is refused, what stays as it was, what is asked to be quiet, what nobody
    // watches.
    EXPECT_EQ(QELTV_BAD_VALUE, c_hbbtv_set_default_audio_lang("fr"));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_rating_set_dvb_age_setting_info(2));
    ASSERT_EQ(0, a_qeltvapi_rating_set_dvb_age_setting_info(16));
    ASSERT_EQ(0, c_hbbtv_set_default_audio_lang("deu"));
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, "picture.contrast", 12, 1));
    ASSERT_EQ(0, a_qeltvapi_config_set_str_value_ex("sound.audio_language", "swe", 1));
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, "picture.brightness", 12, 0));
    ASSERT_EQ(0, a_qeltvapi_config_remove_value_changed_callback("parental.rating_lock"));
    EXPECT_EQ(QELTV_NOT_FOUND,
              a_qeltvapi_config_remove_value_changed_callback("parental.rating_lock"));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_config_add_value_changed_callback("no.such"));
    ASSERT_EQ(0, a_qeltvapi_rating_set_enable(0));
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, "picture.contrast", 13, 0));
    expectTold("picture.contrast", 1, 13);
    EXPECT_EQ("swe", text("sound.audio_language"));

    // A reset notifies what was different, with the value that it has then.
    ASSERT_EQ(0, a_qeltvapi_config_reset_values(1));
    expectTold("picture.contrast", 1, 85);
    ASSERT_EQ(0, a_qeltvapi_config_reset_values(0));
    expectTold("sound.audio_language", 2, 0);
    expectTold("sound.subtitle_language", 2, 0);
    expectTold("parental.age", 4, 0);
    EXPECT_EQ("eng", text("sound.audio_language"));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_config_reset_values(7));
}

TEST_F(Settings, AnotherPlaceMovesTheLocalTimeAndIsTold) {
    a_qeltvapi_time_register_dt_event_callback(onDate);
    sDate.clear();
    ASSERT_EQ(0, a_qeltvapi_config_set_str_value("system.time_zone", "Asia/Tokyo"));
    const auto notified =
            sDate.takeUntil([](const Notified& t) { return t.type == QELTV_TIME_ZONE_CHANGED; });
    ASSERT_TRUE(notified);
    EXPECT_EQ(9u * 3600, notified->values[0]);
    EXPECT_EQ(9 * 3600, a_qeltvapi_time_get_time_zone());
}

TEST_F(Settings, RefusesATimeZoneThatDoesNotExist) {
    for (const char* zone : {"Europe/Nowhere", "", "europe/berlin", "../zoneinfo/Asia/Tokyo"}) {
        EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_config_set_str_value("system.time_zone", zone))
                << zone;
    }
    EXPECT_EQ("Europe/Berlin", text("system.time_zone"));
    EXPECT_EQ(0, a_qeltvapi_config_set_str_value_ex("system.time_zone", "America/St_Johns", 1));
    EXPECT_EQ(-(3 * 3600 + 1800), a_qeltvapi_time_get_time_zone());
}

TEST_F(Settings, RefusesTextsThatAreTooLongForTheirReaders) {
    constexpr char kName[] = "network.name";
    const std::string longest(QELTV_CONFIG_TEXT_MAXIMUM, 'x');
    ASSERT_EQ(0, a_qeltvapi_config_set_str_value(kName, longest.c_str()));
    EXPECT_EQ(longest, text(kName));
    for (const size_t size : {longest.size() + 1, size_t{70000}, size_t{500000}}) {
        const std::string value(size, 'y');
        EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_config_set_str_value(kName, value.c_str())) << size;
        EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_config_set_str_value_ex(kName, value.c_str(), 1))
                << size;
    }
    EXPECT_EQ(longest, text(kName));
}

TEST_F(Settings, TheVideoResolutionIsThatOfThePicture) {
    const auto resolution = [] {
        std::vector<uint32_t> words(4, 7);
        EXPECT_EQ(0, a_qeltvapi_config_get_video_resolution(words.data()));
        return words;
    };
    const std::vector<uint32_t> none(4, 0);
    ASSERT_EQ(0, a_qeltvapi_inputsource_changesource_bysourceid(5));
    EXPECT_TRUE(eventually([&] {
        return resolution() == std::vector<uint32_t>{1920, 1080, 60000, 0};
    }));
    ASSERT_EQ(0, a_qeltvapi_broadcast_switch_input_to_tv());
    QELTV_VIDEO_SOURCE_T video{};
    ASSERT_TRUE(eventually([&] {
        int32_t status = 0;
        a_qeltvapi_broadcast_get_tuning_status(&status);
        return status == QELTV_TUNING_PLAYS;
    }));
    ASSERT_EQ(0, c_svctx_get_video_src_resolution(1, &video));
    const std::vector<uint32_t> shown{video.width, video.height, video.frameRate, video.interlaced};
    EXPECT_EQ(shown, resolution());
    // Nothing to see: no signal, and a socket with nothing in it.
    ASSERT_EQ(0, qeltvctl({"service", "reception", "5"}).status);
    EXPECT_TRUE(eventually([&] { return resolution() == none; }));
    ASSERT_EQ(0, a_qeltvapi_inputsource_changesource_bysourceid(8));
    EXPECT_EQ(none, resolution());
}

TEST_F(Settings, SelectorsNamesAndRangesAreChecked) {
    int32_t value = 77;
    EXPECT_EQ(0, a_qeltvapi_config_get_value(1, "picture.hue", &value));
    EXPECT_EQ(0, value);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_config_get_value(2, "picture.hue", &value))
            << "not of that group";
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_config_get_value(0, "system.model", &value)) << "a text";
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_config_set_value(2, "picture.hue", 1, 0));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_config_set_str_value("picture.hue", "1"));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_config_set_value(0, "picture.gamma", 1, 0)) << "disabled";
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_config_set_value(0, "picture.hue", -51, 0));
    EXPECT_EQ(0, a_qeltvapi_config_set_value(0, "picture.hue", -50, 0));
    EXPECT_EQ(0, a_qeltvapi_config_is_visible(0, "system.serial"));
    EXPECT_EQ(1, a_qeltvapi_config_is_visible(0, "system.model"));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_config_is_enabled(0, "no.such"));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_config_set_str_value("system.items", "mine"))
            << "read only";
    EXPECT_NE(std::string::npos, (" " + text("system.items") + " ").find(" picture.hue "));
}

}  // namespace
