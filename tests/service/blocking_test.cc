/** What the rating lock and the input lock do to the picture and the sound. */
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <set>

#include "hw_qeltvapi_apptv.h"
#include "hw_qeltvapi_audioinfo.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_event.h"
#include "hw_qeltvapi_inputsource.h"
#include "hw_qeltvapi_pwddlg.h"
#include "hw_qeltvapi_rating.h"
#include "hw_qeltvapi_time.h"
#include "hw_qeltvapi_videoinfo.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/event.h"
#include "layouts/presentation.h"
#include "layouts/rating.h"
#include "layouts/time.h"
#include "with_television.h"

using namespace wire;

namespace {

constexpr int64_t kDay = 86400;

Inbox<Notified> sBroadcasts, sVideo, sGuide;

int onBroadcast(int32_t type, uintptr_t, uintptr_t channel, uintptr_t path, uintptr_t error,
                uintptr_t) {
    sBroadcasts.put({type, {channel, path, error}});
    return 0;
}
int onVideo(int32_t type, uintptr_t, uintptr_t path, uintptr_t width, uintptr_t height, uintptr_t,
            uintptr_t, uintptr_t) {
    sVideo.put({type, {path, width, height}});
    return 0;
}
int onGuide(int32_t type, uintptr_t, uintptr_t a, uintptr_t b, uintptr_t c, uintptr_t d) {
    sGuide.put({type, {a, b, c, d}});
    return 0;
}

/** A programme with what the lock goes by. */
struct Programme {
    QELTV_EVENT_GENERAL_T general;
    QELTV_EVENT_RATING_T rating;
    std::string label;
    std::string system;

    int64_t end() const { return general.start + general.duration; }
    bool rated() const { return general.age != QELTV_AGE_UNRATED; }
    int age() const { return rated() ? general.age : 0; }
    bool labelled(const std::string& wanted) const {
        return (" " + label + " ").find(" " + wanted + " ") != std::string::npos;
    }
};

class Blocking : public WithTelevision {
  protected:
    void SetUp() override {
        WithTelevision::SetUp();
        a_qeltvapi_broadcast_register_callback(onBroadcast);
        a_qeltvapi_videoinfo_reg_common_nfy(onVideo);
        a_qeltvapi_event_register_callback(onGuide);
        for (auto* inbox : {&sBroadcasts, &sVideo, &sGuide}) inbox->clear();
        findChannel();
    }

    /** The first channel that has a picture. */
    void findChannel() {
        for (int16_t number = 1; channel == 0; ++number) {
            const int id = a_qeltvapi_apptv_get_matched_channel(number, 0, 0, 0);
            ASSERT_GT(id, 0) << "no channel has a picture";
            ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_id(id, 0));
            if (outcome(id) == QELTV_TUNING_NO_ERROR && shownWidth() != 0) channel = id;
        }
    }

    /** How the selection of a channel ends. */
    static int32_t outcome(int id) {
        const auto notified = sBroadcasts.takeUntil([id](const Notified& t) {
            return t.values[0] == static_cast<uint32_t>(id) &&
                   (t.type == QELTV_BROADCAST_PLAYS || t.type == QELTV_BROADCAST_FAILED);
        });
        EXPECT_TRUE(notified);
        return notified ? static_cast<int32_t>(notified->values[2]) : -1;
    }

    /** Waits for the next change between picture and none, which is notified with the video. */
    void expectBlocked(bool blocked) const {
        EXPECT_EQ(blocked ? QELTV_TUNING_BLOCKED : QELTV_TUNING_NO_ERROR, outcome(channel));
        EXPECT_TRUE(sVideo.takeUntil([blocked](const Notified& t) {
            return t.type == QELTV_VIDEO_FORMAT && (t.values[1] == 0) == blocked;
        }));
        expectState(blocked);
    }

    static void expectState(bool blocked) {
        int32_t status = -1, error = -1;
        ASSERT_TRUE(eventually([&] {
            EXPECT_EQ(0, a_qeltvapi_broadcast_get_tuning_status(&status));
            return status == (blocked ? QELTV_TUNING_FAILED : QELTV_TUNING_PLAYS);
        }));
        EXPECT_EQ(0, a_qeltvapi_broadcast_get_tuning_error(&error));
        EXPECT_EQ(blocked ? QELTV_TUNING_BLOCKED : QELTV_TUNING_NO_ERROR, error);
        EXPECT_EQ(blocked, shownWidth() == 0);
        uint32_t tracks = 99;
        EXPECT_EQ(0, a_qeltvapi_audio_info_get_available_record(nullptr, &tracks));
        EXPECT_EQ(blocked, tracks == 0) << tracks << " sound tracks";
    }

    static uint32_t shownWidth() {
        uint32_t words[4] = {7, 7, 7, 7};
        EXPECT_EQ(0, a_qeltvapi_config_get_video_resolution(words));
        return words[0];
    }

    static int64_t now() { return a_qeltvapi_time_get_utc_time(nullptr); }
    static void turnTo(int64_t utc) {
        a_qeltvapi_time_set_sync_source(QELTV_SYNC_MANUAL);
        a_qeltvapi_time_set_utc_time(utc);
    }

    static std::vector<Programme> programmes(int channel, int64_t from, int64_t to) {
        std::vector<uint16_t> ids(1000);
        uint16_t count = 1000;
        EXPECT_EQ(0,
                  a_qeltvapi_event_query_event_id_by_range(channel, from, to, &count, ids.data()));
        std::vector<Programme> all;
        for (size_t i = 0; i < count; ++i) {
            Programme one{};
            EXPECT_EQ(0, a_qeltvapi_event_get_general_info(channel, ids[i], &one.general));
            EXPECT_EQ(0, a_qeltvapi_event_get_rating_list(channel, ids[i], &one.rating,
                                                          sizeof(one.rating)));
            QELTVAPI_RATING_MAP_T map{};
            EXPECT_EQ(0, a_qeltvapi_event_get_rating_map(channel, ids[i], &map));
            one.label = map.first;
            one.system = map.second;
            all.push_back(one);
        }
        return all;
    }

    /** In the next days, the nth programme of an age between two that are free for it. */
    Programme between(int age, int nth = 0) const {
        const auto all = programmes(channel, now() + 60, now() + 6 * kDay);
        for (size_t i = 1; i + 1 < all.size(); ++i) {
            const bool fits =
                    all[i].age() >= age && all[i - 1].age() < age && all[i + 1].age() < age;
            if (fits && nth-- == 0) return all[i];
        }
        ADD_FAILURE() << "no such programme";
        return {};
    }

    /** What is blocked of the coming days is what the test says of each programme. */
    static void expectBlocks(const std::function<bool(const Programme&)>& expected,
                             const char* what, bool some = true) {
        size_t blocked = 0;
        // So many channels that every kind of programme is among them on any day.
        for (int16_t number = 1; number <= 8; ++number) {
            const int each = a_qeltvapi_apptv_get_matched_channel(number, 0, 0, 0);
            for (const Programme& one : programmes(each, now(), now() + 6 * kDay)) {
                const bool is = a_qeltvapi_event_check_block(each, one.general.eventId) != 0;
                EXPECT_EQ(expected(one), is) << what << ": " << one.general.title << ", "
                                             << one.label << ", " << one.age();
                blocked += is;
            }
        }
        EXPECT_EQ(some, blocked != 0) << what;
    }

    int channel = 0;
};

TEST_F(Blocking, APictureGoesWithTheProgrammeAndComesBackWithTheNextOne) {
    const Programme film = between(12);
    ASSERT_EQ(0, a_qeltvapi_rating_set_dvb_age_setting_info(12));
    turnTo(film.general.start - 2);
    ASSERT_EQ(0, a_qeltvapi_rating_set_enable(1));
    expectState(false);
    sBroadcasts.clear();
    sVideo.clear();
    // By itself, as it begins; and again as it ends.
    expectBlocked(true);
    EXPECT_GE(now(), film.general.start);
    turnTo(film.end() - 2);
    expectState(true);
    expectBlocked(false);
    EXPECT_GE(now(), film.end());

    // A channel that is selected while its programme is blocked shows nothing either.
    turnTo(film.general.start + 5);
    expectBlocked(true);
    ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_id(channel, 0));
    EXPECT_EQ(QELTV_TUNING_BLOCKED, outcome(channel));
    expectState(true);
    const Ended tuned = qeltvctl({"status"});
    EXPECT_NE(std::string::npos, tuned.out.find("blocked")) << tuned.out;
}

TEST_F(Blocking, EverySettingOfTheLockCountsAtOnce) {
    const Programme film = between(12);
    turnTo(film.general.start + 5);
    sBroadcasts.clear();
    sVideo.clear();
    sGuide.clear();
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, "parental.age", film.general.age, 0));
    expectState(false);
    ASSERT_EQ(0, a_qeltvapi_rating_set_enable(1));
    expectBlocked(true);
    ASSERT_TRUE(sGuide.takeUntil(
            [](const Notified& t) { return t.type == QELTV_EVENT_BLOCKING_CHANGED; }));
    ASSERT_EQ(0, a_qeltvapi_rating_set_dvb_age_setting_info(0));
    expectBlocked(false);
    // Also when nobody is to be notified of the setting itself.
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, "parental.age", 4, 1));
    expectBlocked(true);
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, "parental.rating_lock", 0, 0));
    expectBlocked(false);
    ASSERT_EQ(0, a_qeltvapi_rating_set_enable(1));
    expectBlocked(true);
    ASSERT_EQ(0, a_qeltvapi_config_reset_values(4));
    expectBlocked(false);

    // The limits of another standard, and its region.
    ASSERT_EQ(0, a_qeltvapi_rating_set_enable(1));
    ASSERT_EQ(0, a_qeltvapi_rating_set_isdb_age_setting_info(10));
    expectState(false);
    ASSERT_EQ(0, a_qeltvapi_config_set_str_value("channels.region", "isdb-t/br-Brasil"));
    expectBlocked(true);
    ASSERT_EQ(0, a_qeltvapi_rating_set_isdb_age_setting_info(18));
    if (film.age() < 18) expectBlocked(false);
}

TEST_F(Blocking, APinOrAnUnlockedServiceShowsItUntilTheProgrammeEnds) {
    const Programme film = between(12), later = between(12, 1);
    ASSERT_EQ(0, a_qeltvapi_rating_set_dvb_age_setting_info(12));
    turnTo(film.general.start + 5);
    sBroadcasts.clear();
    sVideo.clear();
    ASSERT_EQ(0, a_qeltvapi_rating_set_enable(1));
    expectBlocked(true);
    ASSERT_EQ(QELTV_PIN_WRONG, a_qeltvapi_PWDDLG_checkPWD("4321"));
    expectState(true);
    ASSERT_EQ(QELTV_PIN_RIGHT, a_qeltvapi_PWDDLG_checkPWD(QELTV_PIN_FACTORY));
    expectBlocked(false);
    // It holds for the programme, also on the way back to the channel.
    ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_id(channel, 0));
    EXPECT_EQ(QELTV_TUNING_NO_ERROR, outcome(channel));
    sVideo.clear();
    turnTo(later.general.start + 5);
    expectBlocked(true);

    ASSERT_EQ(0, a_qeltvapi_apptv_unlock_service("main"));
    expectBlocked(false);
    EXPECT_EQ(1, a_qeltvapi_event_check_block(channel, later.general.eventId))
            << "only what is shown, and only here";
    ASSERT_EQ(0, a_qeltvapi_apptv_unblock_svc("main", 0));
    expectBlocked(true);
    ASSERT_EQ(0, a_qeltvapi_apptv_unblock_svc("main", 1));
    expectBlocked(false);
    // Neither the next programme nor the next selection has it.
    const Programme third = between(12, 0);
    ASSERT_GT(third.general.start, later.general.start);
    turnTo(third.general.start + 5);
    expectBlocked(true);
    ASSERT_EQ(0, a_qeltvapi_apptv_unlock_service("main"));
    expectBlocked(false);
    ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_id(channel, 0));
    EXPECT_EQ(QELTV_TUNING_BLOCKED, outcome(channel));
}

TEST_F(Blocking, TheInputLockBlocksAnInputThatIsShown) {
    ASSERT_EQ(0, a_qeltvapi_inputsource_set_source_blockstatus_bysourceid(5, 1));
    ASSERT_EQ(0, a_qeltvapi_inputsource_changesource_bysourceid(5));
    ASSERT_TRUE(eventually([] { return shownWidth() == 1920; }));
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, "parental.input_lock", 1, 0));
    EXPECT_TRUE(eventually([] { return shownWidth() == 0; }));
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, "parental.input_lock", 0, 0));
    EXPECT_TRUE(eventually([] { return shownWidth() == 1920; }));
}

TEST_F(Blocking, UnitedStatesRatingsBlockByLevelContentAndFilm) {
    ASSERT_EQ(0, a_qeltvapi_config_set_str_value("channels.region", "atsc/us-ATSC"));
    ASSERT_EQ(0, a_qeltvapi_rating_set_enable(1));
    const auto isTv = [](const Programme& p) { return p.system == "US television"; };
    const auto starts = [](const Programme& p, const char* begin) {
        return p.label.compare(0, strlen(begin), begin) == 0;
    };
    expectBlocks([](const Programme&) { return false; }, "no limits", false);

    const auto block = [](std::initializer_list<QELTV_US_TV_FLAG> wanted) {
        QELTVAPI_RATING_US_TV_SETTING_T flags{};
        for (const QELTV_US_TV_FLAG flag : wanted) {
            (flag < 16 ? flags.block[flag] : flags.extra[flag - 16]) = 1;
        }
        ASSERT_EQ(0, a_qeltvapi_rating_set_us_tv_setting_info(&flags));
    };
    block({QELTV_US_TV_PG});
    expectBlocks([&](const Programme& p) { return isTv(p) && starts(p, "TV-PG"); }, "TV-PG alone");
    block({QELTV_US_TV_PG, QELTV_US_TV_UPWARDS});
    expectBlocks(
            [&](const Programme& p) {
                return isTv(p) && (starts(p, "TV-PG") || starts(p, "TV-14") || starts(p, "TV-MA"));
            },
            "TV-PG upwards");
    block({QELTV_US_TV_Y7, QELTV_US_TV_UPWARDS});
    expectBlocks([&](const Programme& p) { return isTv(p) && starts(p, "TV-Y7"); },
                 "for children is apart");
    block({QELTV_US_TV_PG_V});
    expectBlocks(
            [&](const Programme& p) {
                return isTv(p) && starts(p, "TV-PG-") && p.label.find('V', 6) != std::string::npos;
            },
            "violence of TV-PG");
    block({QELTV_US_TV_Y7_FV});
    expectBlocks([&](const Programme& p) { return p.label == "TV-Y7-FV"; }, "fantasy violence");
    block({QELTV_US_TV_NONE});
    expectBlocks([](const Programme& p) { return !p.rated(); }, "said to have none");

    block({});
    ASSERT_EQ(0, a_qeltvapi_rating_set_us_movie_setting_info(QELTV_US_MOVIE_R));
    expectBlocks(
            [](const Programme& p) {
                return p.system == "US films" &&
                       (p.label == "R" || p.label == "NC-17" || p.label == "X");
            },
            "films from R");
    ASSERT_EQ(0, a_qeltvapi_rating_set_us_movie_setting_info(QELTV_US_MOVIE_X));
    expectBlocks([](const Programme&) { return false; }, "nothing is rated X", false);
    ASSERT_EQ(0, a_qeltvapi_rating_set_block_unrated(1));
    expectBlocks([](const Programme& p) { return !p.rated(); }, "unrated");

    // What blocks here counts for nothing elsewhere.
    ASSERT_EQ(0, a_qeltvapi_rating_set_block_unrated(0));
    ASSERT_EQ(0, a_qeltvapi_rating_set_us_movie_setting_info(QELTV_US_MOVIE_G));
    block({QELTV_US_TV_G, QELTV_US_TV_UPWARDS});
    ASSERT_EQ(0, a_qeltvapi_config_set_str_value("channels.region", "dvb-t/de-Berlin"));
    expectBlocks([](const Programme&) { return false; }, "limits of another standard", false);
}

TEST_F(Blocking, CanadianAndIsdbRatingsBlockFromTheirLimit) {
    ASSERT_EQ(0, a_qeltvapi_config_set_str_value("channels.region", "atsc/ca-Canada"));
    ASSERT_EQ(0, a_qeltvapi_rating_set_enable(1));
    ASSERT_EQ(0, a_qeltvapi_rating_set_can_eng_setting_info(QELTV_CANADA_ENGLISH_PG));
    expectBlocks(
            [](const Programme& p) {
                return p.labelled("PG") || p.labelled("14+") || p.labelled("18+");
            },
            "English, from PG");
    ASSERT_EQ(0, a_qeltvapi_rating_set_can_eng_setting_info(0));
    ASSERT_EQ(0, a_qeltvapi_rating_set_can_fre_setting_info(QELTV_CANADA_FRENCH_16));
    expectBlocks(
            [](const Programme& p) {
                return p.label.find("16 ans") != std::string::npos ||
                       p.label.find("18 ans") != std::string::npos;
            },
            "French, from 16");
    ASSERT_EQ(0, a_qeltvapi_rating_set_can_eng_setting_info(QELTV_CANADA_ENGLISH_18));
    expectBlocks(
            [](const Programme& p) {
                return p.labelled("18+") || p.label.find("16 ans") != std::string::npos ||
                       p.label.find("18 ans") != std::string::npos;
            },
            "either");

    ASSERT_EQ(0, a_qeltvapi_config_set_str_value("channels.region", "isdb-t/br-Brasil"));
    expectBlocks([](const Programme&) { return false; }, "limits of another standard", false);
    ASSERT_EQ(0, a_qeltvapi_rating_set_isdb_age_setting_info(12));
    expectBlocks([](const Programme& p) { return p.age() >= 12; }, "from 12 years");
    ASSERT_EQ(0, a_qeltvapi_rating_set_isdb_age_setting_info(0));
    // Bits of the content: dialogue, language, sex, violence; of the setting: drugs, violence, sex.
    for (const auto& [setting, content] : {std::pair{1, 2}, {2, 8}, {4, 4}, {6, 12}}) {
        ASSERT_EQ(0,
                  a_qeltvapi_rating_set_isdb_content_setting_info(static_cast<uint8_t>(setting)));
        expectBlocks(
                [bits = content](const Programme& p) {
                    return p.rated() && (p.rating.content & bits) != 0;
                },
                ("content " + std::to_string(setting)).c_str());
    }
    EXPECT_EQ(QELTV_BAD_VALUE,
              a_qeltvapi_rating_set_isdb_content_setting_info(QELTV_ISDB_CONTENT_MASK + 1));
}

}  // namespace
