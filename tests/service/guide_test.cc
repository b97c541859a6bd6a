#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>

#include "hw_qeltvapi_banner.h"
#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_event.h"
#include "hw_qeltvapi_event_atsc.h"
#include "hw_qeltvapi_pwddlg.h"
#include "hw_qeltvapi_rating.h"
#include "hw_qeltvapi_time.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/event.h"
#include "layouts/rating.h"
#include "layouts/time.h"
#include "with_television.h"

using namespace wire;

namespace {

Inbox<Notified> sEvents, sAtsc, sPin, sVchip;

template <Inbox<Notified>* inbox>
int on(int32_t type, uintptr_t, uintptr_t a1, uintptr_t a2, uintptr_t a3, uintptr_t a4) {
    inbox->put({type, {a1, a2, a3, a4}});
    return 0;
}

class ProgrammeGuide : public WithTelevision {
  protected:
    void SetUp() override {
        WithTelevision::SetUp();
        QELTVAPI_EVENT_FILTER_T filter{};
        filter.word = 1;
        std::vector<uint16_t> ids(UINT16_MAX);
        std::vector<uint32_t> channels(UINT16_MAX);
        uint16_t count = UINT16_MAX;
        ASSERT_EQ(0, a_qeltvapi_event_query_event_id_by_filter(0, &filter, &count, ids.data(),
                                                               channels.data()));
        ASSERT_GT(count, 0);
        channel = static_cast<int>(channels[0]);
    }

    static void join() {
        a_qeltvapi_event_register_callback(on<&sEvents>);
        a_qeltvapi_event_atsc_register_callback(on<&sAtsc>);
        a_qeltvapi_pwddlg_register_msg_callback(on<&sPin>);
        a_qeltvapi_rating_op_vchip_reg_callback(on<&sVchip>);
        for (auto* inbox : {&sEvents, &sAtsc, &sPin, &sVchip}) inbox->clear();
    }

    static int64_t now() { return a_qeltvapi_time_get_utc_time(nullptr); }

    QELTV_EVENT_GENERAL_T general(uint16_t id) const {
        QELTV_EVENT_GENERAL_T general{};
        EXPECT_EQ(0, a_qeltvapi_event_get_general_info(channel, id, &general)) << id;
        return general;
    }

    std::vector<uint16_t> range(int64_t from, int64_t to) const {
        std::vector<uint16_t> ids(1000);
        uint16_t count = 1000;
        EXPECT_EQ(0,
                  a_qeltvapi_event_query_event_id_by_range(channel, from, to, &count, ids.data()));
        ids.resize(count);
        return ids;
    }

    uint16_t event(bool present) const {
        uint16_t id = 0;
        EXPECT_EQ(0, a_qeltvapi_event_get_pf_event_id(channel, &id, present));
        return id;
    }

    /** An event to come, or on air, of an age rating from a minimum on. */
    QELTV_EVENT_GENERAL_T rated(uint8_t age) const {
        for (const uint16_t id : range(now(), now() + 7 * 86400)) {
            const QELTV_EVENT_GENERAL_T found = general(id);
            if (found.age != QELTV_AGE_UNRATED && found.age >= age) return found;
        }
        ADD_FAILURE() << "no event from " << int{age} << " years";
        return {};
    }

    static void turnTo(int64_t utc) {
        a_qeltvapi_time_set_sync_source(QELTV_SYNC_MANUAL);
        a_qeltvapi_time_set_utc_time(utc);
    }

    int channel = 0;
};

TEST_F(ProgrammeGuide, HasEventsWithoutGapsAndTellsThePresentOne) {
    const int64_t from = now(), to = from + 3 * 86400;
    const auto ids = range(from, to);
    ASSERT_GT(ids.size(), 30u);
    QELTV_EVENT_GENERAL_T last = general(ids[0]);
    EXPECT_LE(last.start, from);
    EXPECT_EQ(static_cast<uint32_t>(channel), last.channelId);
    for (size_t i = 1; i < ids.size(); ++i) {
        const QELTV_EVENT_GENERAL_T next = general(ids[i]);
        ASSERT_EQ(last.start + last.duration, next.start);
        ASSERT_EQ(ids[i], next.eventId);
        ASSERT_NE(0, next.title[0]);
        last = next;
    }
    EXPECT_GE(last.start + last.duration, to);
    EXPECT_EQ(1u, range(last.start, last.start).size() + 1) << "nothing lasts no time";
    EXPECT_EQ(1u, range(last.start, last.start + 1).size()) << "an event ends where one begins";

    const QELTV_EVENT_GENERAL_T present = general(event(true));
    EXPECT_LE(present.start, now());
    EXPECT_GT(present.start + present.duration, from);
    EXPECT_NE(0, present.flags & QELTV_EVENT_PRESENT);
    EXPECT_EQ(present.start + present.duration, general(event(false)).start);

    uint16_t few = 2;
    std::vector<uint16_t> room(3, 0xffff);
    EXPECT_EQ(0, a_qeltvapi_event_query_event_id_by_range(channel, from, to, &few, room.data()));
    EXPECT_EQ(2, few);
    EXPECT_EQ(0xffff, room[2]);
    EXPECT_EQ(QELTV_BAD_VALUE,
              a_qeltvapi_event_query_event_id_by_range(channel, to, from, &few, room.data()));
    EXPECT_EQ(QELTV_NOT_FOUND,
              a_qeltvapi_event_query_event_id_by_range(0x7fff, from, to, &few, room.data()));

    // Another television of the same region has the same programme.
    Daemon other;
    watch();
    television.kill();
    other.start();
    ASSERT_TRUE(joinTelevision());
    EXPECT_EQ(ids, range(from, to));
}

TEST_F(ProgrammeGuide, BlocksAreFilledToTheLengthThatTheCallerCopies) {
    const auto ids = range(now(), now() + 7 * 86400);
    bool guidance = false, series = false;
    for (const uint16_t id : ids) {
        const QELTV_EVENT_GENERAL_T found = general(id);
        char text[512];
        memset(text, 'x', sizeof(text));
        ASSERT_EQ(0, a_qeltvapi_event_get_details_info(channel, id, text, sizeof(text)));
        ASSERT_EQ(found.detailsLength, strlen(text));
        ASSERT_EQ(0, text[sizeof(text) - 1]);
        const std::string whole = text;
        ASSERT_EQ(0, a_qeltvapi_event_get_details_info(channel, id, text, 8));
        ASSERT_EQ(whole.substr(0, 7), text);
        ASSERT_EQ(0, a_qeltvapi_event_get_guidance_info(channel, id, text, sizeof(text)));
        ASSERT_EQ(found.guidanceLength, strlen(text));
        guidance |= text[0] != 0;

        QELTV_EVENT_COMMON_T group[3];
        memset(group, 0xff, sizeof(group));
        ASSERT_EQ(0, a_qeltvapi_event_get_group_info(channel, id, group, sizeof(group)));
        series |= found.series != 0;
        ASSERT_EQ(found.series != 0 ? static_cast<uint32_t>(channel) : 0u, group[0].channelId);
        if (found.series != 0) ASSERT_EQ(found.series, general(group[0].eventId).series);

        QELTV_EVENT_RATING_T rating{};
        ASSERT_EQ(0, a_qeltvapi_event_get_rating_list(channel, id, &rating, sizeof(rating)));
        ASSERT_STREQ(found.age == QELTV_AGE_UNRATED ? "" : "DEU", rating.country);
    }
    EXPECT_TRUE(guidance);
    EXPECT_TRUE(series);
    char none[32];
    memset(none, 'x', sizeof(none));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_event_get_details_info(channel, 0, none, sizeof(none)));
    EXPECT_EQ(std::string(sizeof(none), 0), std::string(none, sizeof(none)));
    QELTV_CONTENT_IDENTIFIER_T crid[2]{};
    EXPECT_EQ(0, a_qeltvapi_event_get_content_identifier(channel, ids[0], crid, sizeof(crid)));
    EXPECT_EQ(0u, std::string(crid[0].crid).find("crid://"));
    QELTV_AUDIO_COMPONENT_T sound{};
    EXPECT_EQ(0, a_qeltvapi_event_get_audio_comp_info(channel, ids[0], &sound, sizeof(sound)));
    EXPECT_STREQ("eng", sound.language);
}

TEST_F(ProgrammeGuide, FindsWhatPassesTheFilterAndTheParameters) {
    const auto find = [&](const QELTVAPI_EVENT_FILTER_T& filter) {
        std::vector<uint16_t> ids(500);
        std::vector<uint32_t> channels(500);
        uint16_t count = 500;
        EXPECT_EQ(0, a_qeltvapi_event_query_event_id_by_filter(channel, &filter, &count, ids.data(),
                                                               channels.data()));
        ids.resize(count);
        return ids;
    };
    QELTVAPI_EVENT_FILTER_T filter{};
    const size_t all = find(filter).size();
    memcpy(filter.block, "HARBOUR", 7);
    const auto named = find(filter);
    ASSERT_FALSE(named.empty());
    for (const uint16_t id : named) EXPECT_STREQ("Harbour Street", general(id).title);
    filter = {};
    filter.count = 2;
    filter.list[0] = QELTV_GENRE_NEWS;
    filter.list[1] = QELTV_GENRE_SPORT;
    const auto genres = find(filter);
    ASSERT_FALSE(genres.empty());
    EXPECT_LT(genres.size(), all);
    for (const uint16_t id : genres) {
        EXPECT_TRUE(general(id).genre == QELTV_GENRE_NEWS ||
                    general(id).genre == QELTV_GENRE_SPORT);
    }
    filter = {};
    filter.last = 7;
    filter.word = 24;
    filter.value = static_cast<uint32_t>(now() + 86400);
    for (const uint16_t id : find(filter)) {
        EXPECT_LE(general(id).age, 7);
        EXPECT_LT(general(id).start, now() + 2 * 86400 + 60);
    }
    const QELTVAPI_EVENT_QUERY_PARAM_T halfHours{1800, 1800, 0, {1, 0, 1, 0}};
    ASSERT_EQ(0, a_qeltvapi_event_set_query_parameter(&halfHours));
    const auto parameters = range(now() - 86400, now() + 2 * 86400);
    ASSERT_FALSE(parameters.empty());
    for (const uint16_t id : parameters) {
        EXPECT_EQ(1800u, general(id).duration);
        EXPECT_NE(0, general(id).flags & QELTV_EVENT_SUBTITLES);
        EXPECT_GT(general(id).start + 1800, now() - 60);
    }
    const QELTVAPI_EVENT_QUERY_PARAM_T backwards{2, 1, 0, {}};
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_event_set_query_parameter(&backwards));
}

TEST_F(ProgrammeGuide, TellsWhenTheNextEventBegins) {
    join();
    auto id = static_cast<uint32_t>(channel);
    ASSERT_EQ(0, a_qeltvapi_event_setCurrentActiveWindow_Ex(&id, now(), now() + 7200, 1));
    ASSERT_TRUE(sEvents.takeUntil(
            [](const Notified& t) { return t.type == QELTV_EVENT_WINDOW_CHANGED; }));
    uint16_t number = 0;
    EXPECT_EQ(0, a_qeltvapi_event_get_active_win_channel_num(&number));
    EXPECT_EQ(1, number);
    uint32_t listed = 0;
    int64_t start = 0, end = 0;
    EXPECT_EQ(0, a_qeltvapi_event_get_active_win_list(&listed, 1, &start, &end));
    EXPECT_EQ(id, listed);
    EXPECT_EQ(7200, end - start);

    const uint16_t next = event(false);
    turnTo(general(next).start - 1);
    const auto notified = sEvents.takeUntil(
            [](const Notified& t) { return t.type == QELTV_EVENT_PRESENT_CHANGED; });
    ASSERT_TRUE(notified);
    EXPECT_EQ(id, notified->values[0]);
    EXPECT_EQ(next, notified->values[1]);
    EXPECT_EQ(event(false), notified->values[2]);
    EXPECT_EQ(next, event(true));

    uint32_t unknown = 7;
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_event_setCurrentActiveWindow(&unknown, now(), 1));
    EXPECT_EQ(0, a_qeltvapi_event_clear_active_win());
    EXPECT_EQ(0, a_qeltvapi_event_get_active_win_channel_num(&number));
    EXPECT_EQ(0, number);
}

TEST_F(ProgrammeGuide, TheRatingLockBlocksUntilThePinIsRight) {
    join();
    const QELTV_EVENT_GENERAL_T found = rated(12);
    const int id = found.eventId;
    EXPECT_EQ(0, a_qeltvapi_event_check_block(channel, id));
    ASSERT_EQ(0, a_qeltvapi_rating_set_dvb_age_setting_info(12));
    EXPECT_EQ(0, a_qeltvapi_event_check_block(channel, id)) << "the lock is off";
    ASSERT_EQ(0, a_qeltvapi_rating_set_enable(1));
    EXPECT_EQ(1, a_qeltvapi_event_check_block(channel, id));
    EXPECT_NE(0, general(found.eventId).flags & QELTV_EVENT_BLOCKED);
    ASSERT_EQ(0, a_qeltvapi_rating_set_dvb_age_setting_info(18));
    EXPECT_EQ(found.age >= 18, a_qeltvapi_event_check_block(channel, id) != 0);
    ASSERT_EQ(0, a_qeltvapi_rating_set_dvb_age_setting_info(12));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_rating_set_dvb_age_setting_info(3));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_rating_set_dvb_age_setting_info(19));
    QELTVAPI_RATING_MAP_T map{};
    EXPECT_EQ(0, a_qeltvapi_event_get_rating_map(channel, id, &map));
    EXPECT_EQ(std::to_string(found.age) + "+", map.first);
    EXPECT_STREQ("DVB age", map.second);

    // While it is on air, a right PIN lets it through; the next such event is blocked again.
    turnTo(found.start + 10);
    EXPECT_EQ(1, a_qeltvapi_event_check_block(channel, id));
    EXPECT_EQ(QELTV_PIN_RIGHT, a_qeltvapi_PWDDLG_checkPWD(QELTV_PIN_FACTORY));
    EXPECT_EQ(0, a_qeltvapi_event_check_block(channel, id));
    ASSERT_TRUE(sEvents.takeUntil(
            [](const Notified& t) { return t.type == QELTV_EVENT_BLOCKING_CHANGED; }));
    turnTo(found.start + found.duration + 10);
    const QELTV_EVENT_GENERAL_T later = rated(12);
    EXPECT_EQ(1, a_qeltvapi_event_check_block(channel, later.eventId));

    restart();
    uint8_t age = 0;
    EXPECT_EQ(0, a_qeltvapi_rating_get_dvb_age_setting_info(&age));
    EXPECT_EQ(12, age);
    EXPECT_EQ(1, a_qeltvapi_event_check_block(channel, later.eventId));
}

TEST_F(ProgrammeGuide, WrongPinsDelayTheNextTryLongerAndLonger) {
    join();
    EXPECT_EQ(0, a_qeltvapi_PWDDLG_show());
    ASSERT_TRUE(sPin.takeUntil([](const Notified& t) { return t.type == QELTV_PIN_EVENT_SHOW; }));
    EXPECT_EQ(QELTV_PIN_MALFORMED, a_qeltvapi_PWDDLG_checkPWD("12a4"));
    EXPECT_EQ(QELTV_PIN_MALFORMED, a_qeltvapi_PWDDLG_checkPWD(""));

    const auto rejected = [](uint64_t tries) {
        return [tries](const Notified& t) {
            return t.type == QELTV_PIN_EVENT_REJECTED && t.values[0] == tries;
        };
    };
    EXPECT_EQ(QELTV_PIN_WRONG, a_qeltvapi_PWDDLG_checkPWD("1111"));
    EXPECT_EQ(QELTV_PIN_WRONG, a_qeltvapi_PWDDLG_checkPWD("2222"));
    EXPECT_EQ(QELTV_PIN_WRONG, a_qeltvapi_PWDDLG_checkPWD("3333"));
    auto notified = sPin.takeUntil(rejected(2));
    ASSERT_TRUE(notified);
    EXPECT_EQ(0u, notified->values[1]) << "two are free";
    notified = sPin.takeUntil(rejected(3));
    ASSERT_TRUE(notified);
    EXPECT_GT(notified->values[1], 900u);
    EXPECT_LE(notified->values[1], 1000u);
    EXPECT_EQ(QELTV_PIN_LOCKED, a_qeltvapi_PWDDLG_checkPWD(QELTV_PIN_FACTORY))
            << "even the right one";
    ASSERT_TRUE(
            sPin.takeUntil([](const Notified& t) { return t.type == QELTV_PIN_EVENT_REFUSED; }));

    int answer = QELTV_PIN_LOCKED;
    ASSERT_TRUE(eventually(
            [&] { return (answer = a_qeltvapi_PWDDLG_checkPWD("4444")) != QELTV_PIN_LOCKED; }));
    EXPECT_EQ(QELTV_PIN_WRONG, answer);
    notified = sPin.takeUntil(rejected(4));
    ASSERT_TRUE(notified);
    EXPECT_GT(notified->values[1], 1900u);

    // Switching off and on does not help.
    restart();
    EXPECT_EQ(QELTV_PIN_LOCKED, a_qeltvapi_PWDDLG_checkPWD(QELTV_PIN_FACTORY));
    ASSERT_TRUE(eventually([&] {
        return (answer = a_qeltvapi_PWDDLG_checkPWD(QELTV_PIN_FACTORY)) != QELTV_PIN_LOCKED;
    }));
    EXPECT_EQ(QELTV_PIN_RIGHT, answer);
    EXPECT_EQ(QELTV_PIN_WRONG, a_qeltvapi_PWDDLG_checkPWD("1111")) << "the count began anew";
}

TEST_F(ProgrammeGuide, ThePinIsChangedAfterARightOneAndKeptAsAHashOnly) {
    constexpr char kNew[] = "86420975";
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_config_set_str_value("parental.pin", kNew));
    EXPECT_EQ(QELTV_PIN_RIGHT, a_qeltvapi_PWDDLG_checkPWD(QELTV_PIN_FACTORY));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_config_set_str_value("parental.pin", "12"));
    EXPECT_EQ(0, a_qeltvapi_config_set_str_value("parental.pin", kNew));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_config_set_str_value("parental.pin", kNew)) << "once";
    EXPECT_EQ(QELTV_PIN_WRONG, a_qeltvapi_PWDDLG_checkPWD(QELTV_PIN_FACTORY));
    EXPECT_EQ(QELTV_PIN_RIGHT, a_qeltvapi_PWDDLG_checkPWD(kNew));
    char text[256] = "";
    uint32_t length = 0;
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_config_get_str_value("parental.pin", text, &length));

    watch();
    television.kill();
    std::string all;
    for (const char* name : {"/television.db", "/television.db-wal"}) {
        std::ifstream file(television.statePath() + name, std::ios::binary);
        all.append(std::istreambuf_iterator<char>(file), {});
    }
    EXPECT_NE(std::string::npos, all.find("$argon2id$"));
    EXPECT_EQ(std::string::npos, all.find(kNew));
    television.start();
    ASSERT_TRUE(joinTelevision());
    EXPECT_EQ(QELTV_PIN_RIGHT, a_qeltvapi_PWDDLG_checkPWD(kNew));
}

TEST_F(ProgrammeGuide, RatingSettingsOfEveryStandardAreKept) {
    join();
    QELTVAPI_RATING_US_TV_SETTING_T flags{};
    flags.block[QELTV_US_TV_14] = 7;
    flags.extra[3] = 1;
    EXPECT_EQ(0, a_qeltvapi_rating_set_us_tv_setting_info(&flags));
    EXPECT_EQ(0, a_qeltvapi_rating_set_us_movie_setting_info(QELTV_US_MOVIE_R));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_rating_set_us_movie_setting_info(QELTV_US_MOVIE_X + 1));
    EXPECT_EQ(0, a_qeltvapi_rating_set_can_eng_setting_info(QELTV_CANADA_ENGLISH_14));
    EXPECT_EQ(0, a_qeltvapi_rating_set_can_fre_setting_info(QELTV_CANADA_FRENCH_16));
    EXPECT_EQ(0, a_qeltvapi_rating_set_isdb_content_setting_info(5));
    EXPECT_EQ(0, a_qeltvapi_rating_set_isdb_age_setting_info(14));
    EXPECT_EQ(0, a_qeltvapi_rating_set_block_unrated(1));

    QELTVAPI_RATING_OPEN_VCHIP_SETTING_T vchip{};
    vchip.first = QELTV_OPEN_VCHIP_REGION;
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_rating_get_op_vchip_setting_info(&vchip))
            << "no table yet";
    EXPECT_EQ(0, a_qeltvapi_rating_atsc_storage(1));
    ASSERT_TRUE(sVchip.takeUntil([](const Notified& t) {
        return t.type == QELTV_OPEN_VCHIP_RECEIVED && t.values[0] == QELTV_OPEN_VCHIP_REGION;
    }));
    QELTV_OPEN_VCHIP_TABLE_T table{};
    EXPECT_EQ(0, a_qeltvapi_rating_get_op_vchip_info(&table));
    EXPECT_EQ(QELTV_OPEN_VCHIP_DIMENSIONS, table.dimensions);
    EXPECT_EQ(0, a_qeltvapi_rating_get_op_vchip_setting_info(&vchip));
    EXPECT_EQ(table.dimension[0].levels, vchip.third);
    vchip.block[3] = 1;
    EXPECT_EQ(0, a_qeltvapi_rating_set_op_vchip_setting_info(&vchip));
    vchip.block[100] = 1;
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_rating_set_op_vchip_setting_info(&vchip));

    restart();
    flags = {};
    EXPECT_EQ(0, a_qeltvapi_rating_get_us_tv_setting_info(&flags));
    EXPECT_EQ(1, flags.block[QELTV_US_TV_14]);
    EXPECT_EQ(0, flags.block[QELTV_US_TV_MA]);
    EXPECT_EQ(1, flags.extra[3]);
    const auto value = [](int (*get)(uint8_t*)) {
        uint8_t value = 0xff;
        EXPECT_EQ(0, get(&value));
        return int{value};
    };
    EXPECT_EQ(QELTV_US_MOVIE_R, value(a_qeltvapi_rating_get_us_movie_setting_info));
    EXPECT_EQ(QELTV_CANADA_ENGLISH_14, value(a_qeltvapi_rating_get_can_eng_setting_info));
    EXPECT_EQ(QELTV_CANADA_FRENCH_16, value(a_qeltvapi_rating_get_can_fre_setting_info));
    EXPECT_EQ(5, value(a_qeltvapi_rating_get_isdb_content_setting_info));
    EXPECT_EQ(14, value(a_qeltvapi_rating_get_isdb_age_setting_info));
    EXPECT_EQ(1, value(a_qeltvapi_rating_get_block_unrated));
    EXPECT_EQ(1, value(a_qeltvapi_rating_get_op_vchip_avail));
    EXPECT_EQ(QELTV_CHILD_NONE, value(a_qeltvapi_rating_get_us_tv_group_by_child));
    vchip = {};
    vchip.first = QELTV_OPEN_VCHIP_REGION;
    EXPECT_EQ(0, a_qeltvapi_rating_get_op_vchip_setting_info(&vchip));
    EXPECT_EQ(1, vchip.block[3]);
}

TEST_F(ProgrammeGuide, AtscRatingsBecomeTexts) {
    // TV-14 with language and violence, and PG-13; 14+ in Canada.
    const uint8_t us[] = {0, 4, 2, 1, 4, 1, 7, 4}, canada[] = {0, 5, 1, 3};
    QELTVAPI_ATSC_RATING_LIST_T second{2, sizeof(canada), "Canada table", canada, nullptr};
    const QELTVAPI_ATSC_RATING_LIST_T first{1, sizeof(us), "US table", us, &second};
    QELTVAPI_RATING_MAP_T map{};
    EXPECT_EQ(0, a_qeltvapi_rating_convert_rating_info(&first, &map));
    EXPECT_STREQ("PG-13 TV-14-LV, 14+ 13 ans +", map.first);
    EXPECT_STREQ("US, Canada", map.second);
    second.id = 9;
    map = {};
    EXPECT_EQ(0, a_qeltvapi_rating_convert_rating_info(&second, &map));
    EXPECT_STREQ("Canada table", map.first);
    EXPECT_STREQ("region 9", map.second);
}

TEST_F(ProgrammeGuide, AtscEventsAreLoadedByTimeAndByTable) {
    join();
    int32_t ids[QELTV_ATSC_LIST_MAXIMUM];
    ASSERT_EQ(0, a_qeltvapi_event_atsc_load_events(channel, now(), 7200, ids));
    const auto notified =
            sAtsc.takeUntil([](const Notified& t) { return t.type == QELTV_ATSC_LOADED; });
    ASSERT_TRUE(notified);
    ASSERT_GE(notified->values[1], 1u);
    QELTVAPI_EVENT_ATSC_INFO_T info{};
    char rating[20] = "";
    info.ps_at_292 = rating;
    ASSERT_EQ(0, a_qeltvapi_event_atsc_getEvent_general(ids[0], &info));
    const QELTV_EVENT_GENERAL_T present = general(event(true));
    EXPECT_EQ(present.eventId, info.ui2_at_0);
    // Copies: the record's 64-bit fields are not aligned.
    EXPECT_EQ(static_cast<uint64_t>(present.start), uint64_t{info.ui8_at_12});
    EXPECT_EQ(present.duration, uint64_t{info.ui8_at_20});
    EXPECT_STREQ(present.title, info.s_at_32);
    EXPECT_STREQ("eng", info.s_at_296);
    char details[512] = "";
    EXPECT_EQ(0, a_qeltvapi_event_atsc_get_details_info(ids[0], details, 511));
    EXPECT_EQ(info.ui2_at_288, strlen(details));
    EXPECT_EQ(0, a_qeltvapi_event_atsc_freeEvent(ids[0]));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_event_atsc_freeEvent(ids[0]));

    uint32_t count = 0;
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_event_atsc_get_event_number_in_EIT(1, &count));
    ASSERT_EQ(0, a_qeltvapi_event_atsc_load_events_by_EIT(channel, 1, &count));
    ASSERT_GT(count, 0u);
    uint32_t states[3] = {};
    int32_t status = -1;
    EXPECT_EQ(0, a_qeltvapi_event_atsc_check_EIT_status(channel, states, 3, &status));
    EXPECT_EQ(QELTV_EIT_PART, status);
    EXPECT_EQ(count | QELTV_EIT_LOADED, states[1]);
    EXPECT_EQ(0u, states[0] & QELTV_EIT_LOADED);
    const int64_t begin = (now() / QELTV_EIT_SECONDS + 1) * QELTV_EIT_SECONDS;
    for (uint32_t i = 0; i < count; ++i) {
        ASSERT_EQ(0,
                  a_qeltvapi_event_atsc_getEvent_general_by_index(1, static_cast<int>(i), &info));
        EXPECT_GE(static_cast<int64_t>(info.ui8_at_12), begin);
        EXPECT_LT(static_cast<int64_t>(info.ui8_at_12), begin + QELTV_EIT_SECONDS);
        uint32_t length = 0;
        ASSERT_EQ(0, a_qeltvapi_event_atsc_getEvent_detail_len_by_index(1, static_cast<int>(i),
                                                                        &length));
        EXPECT_EQ(info.ui2_at_288, length);
    }
    EXPECT_EQ(QELTV_NOT_FOUND,
              a_qeltvapi_event_atsc_getEvent_general_by_index(1, static_cast<int>(count), &info));
    EXPECT_EQ(QELTV_BAD_VALUE,
              a_qeltvapi_event_atsc_load_events_by_EIT(channel, QELTV_EIT_TABLES, &count));
}

TEST_F(ProgrammeGuide, TheBannerShowsTheCurrentChannel) {
    ASSERT_EQ(0, a_qeltvapi_channellist_set_current_channel(static_cast<uint32_t>(channel)));
    uint32_t length = 0;
    ASSERT_EQ(0, a_qeltvapi_banner_get_item_content_len(QELTV_BANNER_SIMPLE, QELTV_BANNER_TITLE,
                                                        &length));
    std::string title(length + 1, 0);
    uint32_t room = length;
    ASSERT_EQ(0, a_qeltvapi_banner_get_item_content(QELTV_BANNER_SIMPLE, QELTV_BANNER_TITLE,
                                                    title.data(), &room));
    EXPECT_STREQ(general(event(true)).title, title.c_str());
    uint8_t state = 9;
    EXPECT_EQ(0,
              a_qeltvapi_banner_get_item_state(QELTV_BANNER_DETAILED, QELTV_BANNER_LOCK, &state));
    EXPECT_EQ(QELTV_BANNER_HIDDEN, state);
    uint32_t first = 0, second = 0;
    EXPECT_EQ(0, a_qeltvapi_banner_get_item_id(QELTV_BANNER_SIMPLE, QELTV_BANNER_CLOCK, &first));
    EXPECT_EQ(0, a_qeltvapi_banner_get_item_id(QELTV_BANNER_DETAILED, QELTV_BANNER_CLOCK, &second));
    EXPECT_NE(first, second);
    EXPECT_EQ(QELTV_NOT_FOUND,
              a_qeltvapi_banner_get_item_state(QELTV_BANNER_SIMPLE, QELTV_BANNER_DETAILS, &state));
}

TEST_F(ProgrammeGuide, TheToolPrintsTheGuideAndKeepsTheLock) {
    const auto guide = nlohmann::json::parse(qeltvctl({"epg", "now", "--json"}).out);
    ASSERT_FALSE(guide.empty());
    const auto& first = guide.at(0);
    const std::string number = first.at("number"), title = first.at("now").at("title");
    const Ended day = qeltvctl({"epg", "day", number});
    EXPECT_EQ(0, day.status) << day.err;
    EXPECT_EQ(0u, day.out.find("TIME"));
    EXPECT_NE(std::string::npos, day.out.find(title));
    const auto found = nlohmann::json::parse(
            qeltvctl({"epg", "search", "harbour", "--limit", "5", "--json"}).out);
    ASSERT_EQ(5u, found.size());
    EXPECT_EQ("Harbour Street", found.at(0).at("title"));
    EXPECT_EQ(1, qeltvctl({"epg", "day", "98765"}).status);
    EXPECT_EQ(2, qeltvctl({"epg", "search", "x", "--genre", "nonsense"}).status);

    EXPECT_EQ(0, qeltvctl({"rating", "set", "dvb-age", "4"}).status);
    EXPECT_EQ(0, qeltvctl({"rating", "set", "lock", "1"}).status);
    EXPECT_EQ(1, qeltvctl({"rating", "set", "dvb-age", "77"}).status);
    const Ended locked = qeltvctl({"epg", "search", "harbour", "--limit", "1"});
    EXPECT_NE(std::string::npos, locked.out.find("(locked)")) << locked.out;
    EXPECT_EQ(0, qeltvctl({"rating", "us-tv", "TV-MA", "TV-14-V"}).status);
    const auto shown = nlohmann::json::parse(qeltvctl({"rating", "show", "--json"}).out);
    EXPECT_EQ(4, shown.at("dvb-age"));
    EXPECT_EQ("TV-MA", shown.at("us-tv").at(0));
}

}  // namespace
