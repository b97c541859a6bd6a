#include <chrono>
#include <cstring>
#include <nlohmann/json.hpp>
#include <thread>

#include "daemon.h"
#include "hw_qeltvapi_common.h"
#include "inbox.h"
#include "layouts/alert.h"
#include "layouts/ci.h"
#include "layouts/codes.h"
#include "layouts/teletext.h"
#include "qeltvapi.h"
#include "wire.h"

using namespace wire;
using namespace std::chrono_literals;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

std::string ascii(const uint16_t* text) {
    std::string out;
    while (text != nullptr && *text != 0) out += static_cast<char>(*text++);
    return out;
}

/** Notifications as texts, in the order that they came. */
class Notices : public Inbox<std::string> {
  public:
    std::string next() { return take().value_or("(nothing)"); }
};

Notices sNotices;

template <class... T>
std::string joined(const char* name, T... values) {
    std::string text = name;
    ((text += " " + std::to_string(values)), ...);
    return text;
}

int onCi(uint32_t nfy, uint32_t tag, int32_t cond, const void* data) {
    std::string text = joined("ci", nfy, tag, cond);
    if (cond == QELTV_CI_ENQUIRY) {
        const auto* enquiry = static_cast<const QELTVAPI_CI_MMI_ENQ_T*>(data);
        text += joined(" ", int{enquiry->b_blind}, int{enquiry->ui1_ans_len}) + " " +
                ascii(enquiry->w2s_text);
    } else if (cond == QELTV_CI_MENU || cond == QELTV_CI_LIST) {
        const auto* menu = static_cast<const QELTVAPI_CI_MMI_MENU_T*>(data);
        text += " " + ascii(menu->w2s_title) + "/" + ascii(menu->w2s_sub_title);
        for (uint32_t i = 0; i < menu->ui4_choices; ++i) text += "/" + ascii(menu->pw2s_choice[i]);
    } else if (cond == QELTV_CI_PIN_REPLY || cond == QELTV_CI_KEY_CHANGED) {
        text += " " + std::to_string(*static_cast<const uint8_t*>(data));
    }
    sNotices.put(text);
    return 0;
}

int onEas(int32_t type, uintptr_t, uintptr_t a, uintptr_t b, uintptr_t c, uintptr_t d) {
    sNotices.put(joined("eas", type, a, b, c, d));
    return 0;
}
int onEws(int32_t type, uintptr_t) {
    sNotices.put(joined("ews", type));
    return 0;
}
int onEwspa(int32_t type, uintptr_t) {
    sNotices.put(joined("ewspa", type));
    return 0;
}
int onTeletext(int32_t type, uintptr_t, uintptr_t page, uintptr_t subpages, uintptr_t) {
    sNotices.put(joined("teletext", type, page, subpages));
    return 0;
}
int onSubtitle(int32_t type, uintptr_t, uintptr_t number, uintptr_t, uintptr_t kind, uintptr_t) {
    sNotices.put(joined("subtitle", type, number, kind));
    return 0;
}
int onMetadata(uintptr_t, const char* text, uint32_t length) {
    sNotices.put("mds " + std::string(text, length));
    return 0;
}
int onHtml(int32_t type, uintptr_t, const void* data) {
    sNotices.put(joined("html", type, *static_cast<const int32_t*>(data)));
    return 0;
}

class Interactive : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        television = new Daemon;
        television->start();
        a_qeltvapi_eas_reg_callback(onEas);
        a_qeltvapi_ews_reg_msg_callback(onEws);
        a_qeltvapi_ewspa_reg_msg_callback(onEwspa);
        a_qeltvapi_teletext_register_msg_callback(onTeletext);
        a_qeltvapi_subtitle_reg_callback(onSubtitle);
        a_qeltvapi_mds_reg_msg_callback(onMetadata);
        a_qeltvapi_html_agent_reg_callback(onHtml);
        registerCallbackHandler();
        // Once it comes, everything does.
        while (sNotices.empty()) {
            a_qeltvapi_mds_fvpMtdtOperator("first");
            std::this_thread::sleep_for(20ms);
        }
        a_qeltvapi_mds_fvpMtdtOperator("last");
        while (sNotices.next() != "mds operator=last") continue;
    }
    static void TearDownTestSuite() { delete television; }
    void TearDown() override { EXPECT_TRUE(sNotices.empty()) << sNotices.next(); }

    static std::string metadata(const char* key) {
        char text[128] = "";
        return a_qeltvapi_mds_getValue(key, text, 127) == 0 ? text : "(refused)";
    }

    static Daemon* television;
};

Daemon* Interactive::television = nullptr;

class Ci : public Interactive {
  protected:
    void SetUp() override { ASSERT_EQ(0, a_qeltvapi_ci_reg_cb(&registration, 7, 9, onCi)); }
    void TearDown() override {
        EXPECT_EQ(0, a_qeltvapi_ci_unreg_cb(registration));
        Interactive::TearDown();
    }

    static uint32_t dialogue() {
        uint32_t words[2] = {}, length = sizeof(words);
        EXPECT_EQ(0, a_qeltvapi_ci_get(QELTV_CI_GET_DIALOGUE, 0, words, &length));
        return words[1];
    }
    static int choose(uint32_t choice) {
        uint32_t words[] = {dialogue(), choice};
        return a_qeltvapi_ci_set(QELTV_CI_SET_MENU_ANSWER, 0, words);
    }
    static int type(const char* text) {
        uint16_t units[16] = {};
        for (size_t i = 0; text[i] != 0; ++i) units[i] = static_cast<uint8_t>(text[i]);
        QELTVAPI_CI_MMI_ENQ_ANS_T answer{QELTV_CI_ANSWERED, dialogue(), units};
        return a_qeltvapi_ci_set(QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS, 0, &answer);
    }

    static constexpr char kMain[] =
            "ci 7 9 4 Qelnova Conditional Access/Main menu/Subscription/Change PIN/"
            "Parental rating/Module information";
    int32_t registration = 0;
};

TEST_F(Ci, TheMenuAsksForThePinAndChangesIt) {
    ASSERT_EQ(0, a_qeltvapi_ci_set(QELTV_CI_SET_OPEN_MENU, 0, nullptr));
    EXPECT_EQ(kMain, sNotices.next());
    EXPECT_EQ(QELTV_BAD_VALUE, choose(5));
    EXPECT_EQ(QELTV_REFUSED, type("1234")) << "a menu takes no text";
    ASSERT_EQ(0, choose(2));
    EXPECT_EQ("ci 7 9 3  1 4 Enter the PIN", sNotices.next());
    ASSERT_EQ(0, type("9999"));
    EXPECT_EQ("ci 7 9 5 Qelnova Conditional Access/Wrong PIN", sNotices.next());
    ASSERT_EQ(0, choose(0));
    EXPECT_EQ(kMain, sNotices.next());
    ASSERT_EQ(0, choose(2));
    sNotices.next();
    ASSERT_EQ(0, type("1234"));
    EXPECT_EQ("ci 7 9 3  1 4 Enter the new PIN", sNotices.next());
    ASSERT_EQ(0, type("4321"));
    sNotices.next();
    ASSERT_EQ(0, type("4321"));
    EXPECT_EQ("ci 7 9 5 Qelnova Conditional Access/PIN changed", sNotices.next());
    uint32_t stale[] = {dialogue() - 1, 0};
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_ci_set(QELTV_CI_SET_MENU_ANSWER, 0, stale));
    ASSERT_EQ(0, a_qeltvapi_ci_set(QELTV_CI_SET_CLOSE, 0, nullptr));
    EXPECT_EQ("ci 7 9 6", sNotices.next());

    // What the television hands over is judged by the CAM.
    uint8_t valid = 7;
    uint16_t pin[9] = {};
    uint32_t length = 0;
    QELTVAPI_CI_CAM_PIN_CODE_T record{&valid, pin};
    char wrong[] = "1234", right[] = "4321", none[] = "12x4";
    ASSERT_EQ(0, a_qeltvapi_ci_set(QELTV_CI_SET_PIN, 0, wrong));
    EXPECT_EQ("ci 7 9 7 0", sNotices.next());
    ASSERT_EQ(0, a_qeltvapi_ci_get(QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE, 0, &record, &length));
    EXPECT_EQ(0, valid);
    ASSERT_EQ(0, a_qeltvapi_ci_set(QELTV_CI_SET_PIN, 0, right));
    EXPECT_EQ("ci 7 9 7 1", sNotices.next());
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_ci_set(QELTV_CI_SET_PIN, 0, none));
    ASSERT_EQ(0, a_qeltvapi_ci_get(QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE, 0, &record, &length));
    EXPECT_EQ(1, valid);
    EXPECT_EQ("4321", ascii(pin));
    record.pw2s_pin_code = nullptr;
    EXPECT_EQ(0, a_qeltvapi_ci_get(QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE, 0, &record, &length));
}

TEST_F(Ci, AnswersThatDoNotFitAreNotSent) {
    uint16_t name[64] = {};
    uint32_t length = sizeof(name);
    ASSERT_EQ(0, a_qeltvapi_ci_get(QELTV_CI_GET_CAM_NAME_UTF16, 0, name, &length));
    EXPECT_EQ("Qelnova Conditional Access", ascii(name));
    EXPECT_EQ(26u, length);
    name[0] = 0x5555;
    length = 4;
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_ci_get(QELTV_CI_GET_CAM_NAME, 0, name, &length));
    EXPECT_EQ(0x5555, name[0]);
    EXPECT_EQ(0u, length);
    length = 4;
    EXPECT_EQ(QELTV_UNSUPPORTED, a_qeltvapi_ci_get(32, 0, name, &length));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_ci_set(99, 0, nullptr));
}

TEST_F(Ci, TheCamComesAndGoes) {
    ASSERT_EQ(0, qeltvctl({"ci", "remove"}).status);
    EXPECT_EQ("ci 7 9 1", sNotices.next());
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_ci_set(QELTV_CI_SET_OPEN_MENU, 0, nullptr));
    const Ended menu = qeltvctl({"ci", "menu", "--answer", "1"});
    EXPECT_EQ(1, menu.status);
    EXPECT_EQ("qeltvctl: there is no CAM that is ready\n", menu.err);
    ASSERT_EQ(0, qeltvctl({"ci", "insert"}).status);
    EXPECT_EQ("ci 7 9 0", sNotices.next());
    EXPECT_EQ("ci 7 9 2", sNotices.next());
    ASSERT_EQ(0, a_qeltvapi_ci_set(QELTV_CI_SET_POWER, 0, nullptr));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_ci_set(QELTV_CI_SET_RESET, 0, nullptr));
    ASSERT_EQ(0, a_qeltvapi_ci_set(QELTV_CI_SET_POWER, 0, reinterpret_cast<void*>(uintptr_t{257})));
    EXPECT_EQ("ci 7 9 2", sNotices.next());
}

TEST_F(Ci, KeysAreWrittenActivatedAndErased) {
    uint8_t key[1024], exists = 7;
    memset(key, 0xa5, sizeof(key));
    EXPECT_EQ(0, a_qeltvapi_ci_key_query_exist(&exists));
    EXPECT_EQ(0, exists);
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_ci_key_activate());
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_ci_key_write(key, 3));
    ASSERT_EQ(0, a_qeltvapi_ci_key_write(key, sizeof(key)));
    EXPECT_EQ("ci 7 9 8 1", sNotices.next());
    const std::string path = television->statePath() + "/key";
    FILE* file = fopen(path.c_str(), "w");
    fwrite(key, 1, 100, file);
    fclose(file);
    ASSERT_EQ(0, a_qeltvapi_ci_key_update_with_path_ex(path.c_str(), 2));
    EXPECT_EQ("ci 7 9 8 1", sNotices.next());
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_ci_key_update_with_path("/no/such/file"));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_ci_key_update_with_path("/dev/zero"));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_ci_key_update());
    ASSERT_EQ(0, a_qeltvapi_ci_key_activate());
    EXPECT_EQ("ci 7 9 8 2", sNotices.next());
    uint16_t text[256] = {};
    ASSERT_EQ(0, a_qeltvapi_ci_key_query(text));
    EXPECT_EQ("0: 1024 bytes, active; 2: 100 bytes, active", ascii(text));
    EXPECT_EQ(0, a_qeltvapi_ci_key_query_exist_ex(2, &exists));
    EXPECT_EQ(1, exists);
    ASSERT_EQ(0, a_qeltvapi_ci_key_erase());
    EXPECT_EQ("ci 7 9 8 0", sNotices.next());
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_ci_key_query(text));

    uint8_t host[8] = {}, again[8] = {}, length = 4;
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_ci_key_get_host_id(host, &length));
    EXPECT_EQ(0, length);
    length = sizeof(host);
    ASSERT_EQ(0, a_qeltvapi_ci_key_get_host_id(host, &length));
    EXPECT_EQ(0, a_qeltvapi_ci_key_get_host_id(again, &length));
    EXPECT_EQ(0, memcmp(host, again, sizeof(host)));
    uint32_t channel = 1;
    EXPECT_EQ(0, a_qeltvapi_ci_get_virtual_channel_info(0, &channel));
    EXPECT_NE(1u, channel);
}

TEST_F(Interactive, TheToolAnswersTheMenuOfTheCam) {
    const Ended ended = qeltvctl(
            {"ci", "menu", "--answer", "4", "--answer", "0", "--answer", "x", "--answer", "0"});
    EXPECT_EQ(0, ended.status) << ended.err;
    EXPECT_NE(std::string::npos, ended.out.find("Serial number 00417-3302")) << ended.out;
    EXPECT_NE(std::string::npos, ended.out.find("That cannot be chosen."));
}

TEST_F(Interactive, AnAlertGoesToItsChannelAndBack) {
    const std::string first = metadata("channel.id");
    ASSERT_NE("(refused)", first);
    const int32_t details = std::stoi(first) + 1;
    int32_t words[] = {QELTV_ALERT_NATIONAL, 1, details, 12, 600};
    ASSERT_EQ(0, a_qeltvapi_ewspa_set(QELTV_ALERT_RAISE, 0, words, 5));
    const std::string state = joined("", 4, 1, details, 12);
    EXPECT_EQ("eas 1" + state, sNotices.next());
    EXPECT_EQ(std::to_string(details), metadata("channel.id"));
    int32_t type, change, channel, area;
    ASSERT_EQ(0, a_qeltvapi_eas_get_status(&type, &change, &channel, &area));
    EXPECT_EQ(state, joined("", type, change, channel, area));
    ASSERT_EQ(0, qeltvctl({"alert", "end"}).status);
    EXPECT_EQ("eas 2" + state, sNotices.next());
    EXPECT_EQ(first, metadata("channel.id"));

    ASSERT_EQ(0, a_qeltvapi_ewspa_set(QELTV_ALERT_RAISE, 0, words, 5));
    sNotices.next();
    ASSERT_EQ(0, a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(1));
    EXPECT_EQ("eas 3" + state, sNotices.next());
    EXPECT_EQ(std::to_string(details), metadata("channel.id"));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(1));

    int32_t brief[] = {QELTV_ALERT_TEST, 0, 0, 0, 1};
    ASSERT_EQ(0, a_qeltvapi_ewspa_set(QELTV_ALERT_RAISE, 0, brief, 5));
    EXPECT_EQ("eas 1 1 0 0 0", sNotices.next());
    EXPECT_EQ("eas 2 1 0 0 0", sNotices.next()) << "it ends by itself";
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_ewspa_set(QELTV_ALERT_RAISE, 0, brief, 2));
    EXPECT_EQ(0, a_qeltvapi_eas_set_android_launch_status(1));
    EXPECT_EQ(1, a_qeltvapi_eas_get_android_launch_status());
    EXPECT_EQ(0, a_qeltvapi_eas_set_android_launch_status(0));
    EXPECT_EQ(0, a_qeltvapi_eas_get_android_launch_status());
}

TEST_F(Interactive, MonitorsHearOfWarningsInTheirArea) {
    ASSERT_EQ(0, a_qeltvapi_ewspa_create_monitor_inst(31));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_ewspa_create_monitor_inst(31));
    int32_t elsewhere[] = {0, 3, 32, 600}, here[] = {0, 2, 31, 600};
    ASSERT_EQ(0, a_qeltvapi_ewspa_set(QELTV_WARNING_RAISE, 0, elsewhere, 4));
    EXPECT_EQ("ews 1", sNotices.next());
    ASSERT_EQ(0, a_qeltvapi_ewspa_set(QELTV_WARNING_RAISE, 0, here, 4));
    EXPECT_EQ("ews 1", sNotices.next());
    EXPECT_EQ("ewspa 1", sNotices.next());
    int32_t list[5] = {};
    ASSERT_EQ(0, a_qeltvapi_ewspa_get(QELTV_WARNING_LIST, 31, list, 5));
    EXPECT_EQ(1, list[0]);
    EXPECT_EQ(here[0], list[1]);
    list[2] = -77;
    ASSERT_EQ(0, a_qeltvapi_ewspa_get(QELTV_WARNING_LIST, 0, list, 2));
    EXPECT_EQ(2, list[0]);
    EXPECT_EQ(-77, list[2]) << "more than the caller has room for";
    const auto json = nlohmann::json::parse(qeltvctl({"alert", "status", "--json"}).out);
    EXPECT_EQ(2u, json["warnings"].size());
    EXPECT_EQ(31, json["monitors"][0]);
    for (const int32_t number : {elsewhere[0], here[0]}) {
        ASSERT_EQ(0, qeltvctl({"alert", "cancel", std::to_string(number)}).status);
    }
    EXPECT_EQ("ews 2", sNotices.next());
    EXPECT_EQ("ews 2", sNotices.next());
    EXPECT_EQ("ewspa 2", sNotices.next());
    ASSERT_EQ(0, a_qeltvapi_ewspa_delete_monitor_inst(31));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_ewspa_delete_monitor_inst(31));
}

TEST_F(Interactive, TeletextShowsPagesAndTheirTree) {
    uint32_t record = 0x102u | 2u << QELTV_TELETEXT_SUBPAGE_SHIFT;
    a_qeltvapi_teletext_set_page(&record);
    EXPECT_EQ(joined("teletext", 1, record, 3), sNotices.next());
    QELTV_TELETEXT_PAGE_T page{};
    ASSERT_EQ(0, a_qeltvapi_teletext_get_cur_page(&page));
    EXPECT_EQ(record, page.page);
    EXPECT_EQ(3u, page.subpages);
    EXPECT_EQ(0, memcmp(page.rows[0], " P102", 5));
    // Neither a page that cannot be dialled nor a subpage that there is not changes anything.
    for (const uint32_t none : {0x1aau, 0x99u, 0x102u | 4u << QELTV_TELETEXT_SUBPAGE_SHIFT}) {
        a_qeltvapi_teletext_set_page(&none);
    }
    ASSERT_EQ(0, a_qeltvapi_teletext_get_cur_page(&page));
    EXPECT_EQ(record, page.page);

    ASSERT_EQ(1, a_qeltvapi_teletext_is_top_stream());
    struct {
        uint32_t count;
        QELTV_TOP_ENTRY_T entries[64];
    } table{};
    ASSERT_EQ(0, a_qeltvapi_teletext_top_get_block_content(&table));
    EXPECT_EQ(5u, table.count);
    EXPECT_EQ(0x100, table.entries[0].page);
    uint16_t key = 0x103;
    ASSERT_EQ(0, a_qeltvapi_teletext_top_get_group_content(&key, &table));
    EXPECT_EQ(2u, table.count);
    EXPECT_STREQ("News", table.entries[0].title);
    ASSERT_EQ(0, a_qeltvapi_teletext_top_get_page_content(&key, &table));
    EXPECT_EQ(2u, table.count);
    key = 0x555;
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_teletext_top_get_page_content(&key, &table));

    const Ended ended = qeltvctl({"teletext", "400", "--plain"});
    EXPECT_EQ(0, ended.status) << ended.err;
    EXPECT_EQ(25, std::count(ended.out.begin(), ended.out.end(), '\n'));
    EXPECT_NE(std::string::npos, ended.out.find("401 Forecast"));
    EXPECT_EQ(joined("teletext", 1, 0x400, 1), sNotices.next());
    EXPECT_EQ("qeltvctl: page 555 is not broadcast\n", qeltvctl({"teletext", "555"}).err);
    EXPECT_EQ(joined("teletext", 1, 0x555, 0), sNotices.next());
    EXPECT_EQ(2, qeltvctl({"teletext", "1000"}).status);
}

TEST_F(Interactive, SubtitlesAndCaptionsAreSteppedThrough) {
    int32_t loop[3] = {0, 0, -77};
    ASSERT_EQ(0, a_qeltvapi_subtitle_play(4));
    EXPECT_EQ("subtitle 1 4 2", sNotices.next());
    ASSERT_EQ(0, a_qeltvapi_subtitle_get_loop(loop, 2));
    EXPECT_EQ(4, loop[0]);
    EXPECT_EQ(4, loop[1]);
    EXPECT_EQ(-77, loop[2]);
    ASSERT_EQ(0, qeltvctl({"subtitle", "next"}).status);
    EXPECT_EQ("subtitle 1 0 0", sNotices.next());
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_subtitle_play(5));

    EXPECT_EQ(0, a_qeltvapi_isdbcc_get_CCString());
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_isdbcc_next_stream());
    ASSERT_EQ(0, a_qeltvapi_isdbcc_enable(1));
    EXPECT_EQ(1, a_qeltvapi_isdbcc_get_CCString());
    EXPECT_EQ(2, a_qeltvapi_isdbcc_next_stream());
    EXPECT_EQ(1, a_qeltvapi_isdbcc_next_stream());
    ASSERT_EQ(0, a_qeltvapi_atsccc_enable(1));
    ASSERT_EQ(0, a_qeltvapi_atsccc_set_visible(2));
    EXPECT_EQ(0, a_qeltvapi_atsccc_get_CCString()) << "hidden";
    EXPECT_EQ(0, a_qeltvapi_analogcc_get_CCString()) << "each standard for itself";
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_atsccc_demo_set(1, 8));
}

TEST_F(Interactive, TheHtmlAgentKeepsAndPostsWords) {
    int32_t words[] = {QELTV_HTML_STORE, 5, 11, 22};
    ASSERT_EQ(0, a_qeltvapi_html_agent_exchange_data(words, 4));
    int32_t load[] = {QELTV_HTML_LOAD, 5, 0};
    ASSERT_EQ(0, a_qeltvapi_html_agent_exchange_data(load, 3));
    EXPECT_EQ(2, load[1]);
    EXPECT_EQ(11, load[2]);
    int32_t post[] = {QELTV_HTML_POST, 8, 99};
    ASSERT_EQ(0, a_qeltvapi_html_agent_exchange_data(post, 3));
    EXPECT_EQ("html 8 99", sNotices.next());
    int32_t none[] = {QELTV_HTML_LOAD, 6};
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_html_agent_exchange_data(none, 2));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_html_agent_exchange_data(none, 1));

    EXPECT_EQ("last", metadata("operator"));
    EXPECT_EQ("(refused)", metadata("nothing"));
    char small[4] = "abc";
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_mds_getValue("operator", small, 3));
    EXPECT_STREQ("abc", small);

    EXPECT_EQ(1, a_qeltvapi_get_earc_caps());
    EXPECT_EQ(0, a_qeltvapi_get_earc_status(QELTV_EARC_CONNECTED));
    ASSERT_EQ(0, a_qeltvapi_set_earc_enable(2));
    EXPECT_EQ(1, a_qeltvapi_get_earc_status(QELTV_EARC_CONNECTED));
    EXPECT_EQ(0, a_qeltvapi_get_earc_status(2));
}

}  // namespace
