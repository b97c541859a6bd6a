/** Teletext, subtitles and captions of services that the television receives as transport streams.
 */
#include <gmock/gmock.h>

#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <thread>

#include "daemon.h"
#include "eventually.h"
#include "hw_qeltvapi_analog_cc.h"
#include "hw_qeltvapi_atsc_cc.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_isdb_cc.h"
#include "hw_qeltvapi_mds.h"
#include "hw_qeltvapi_subtitle.h"
#include "hw_qeltvapi_teletext.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/teletext.h"
#include "stream_composer.h"

using namespace wire;
using namespace std::chrono_literals;
using Json = nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr uint64_t kDvbHz = 842000000, kAtscHz = 473000000;
constexpr int32_t kGerman = 'd' << 16 | 'e' << 8 | 'u';

/** A notification of teletext or subtitles: its type and values. */
using Notice = std::vector<uint64_t>;
Inbox<Notice> sTeletext, sSubtitles;
Inbox<std::string> sMetadata;

int onTeletext(int32_t type, uintptr_t, uintptr_t page, uintptr_t subpages, uintptr_t) {
    sTeletext.put({static_cast<uint64_t>(type), page, subpages});
    return 0;
}
int onSubtitle(int32_t type, uintptr_t, uintptr_t number, uintptr_t language, uintptr_t kind,
               uintptr_t page) {
    sSubtitles.put({static_cast<uint64_t>(type), number, language, kind, page});
    return 0;
}
int onMetadata(uintptr_t, const char* text, uint32_t length) {
    sMetadata.put({text, length});
    return 0;
}

template <class T>
bool comes(Inbox<T>& inbox, const T& wanted) {
    return inbox.takeUntil([&](const T& value) { return value == wanted; }).has_value();
}

/** One television for all: a process of the library stays with the first one that it meets. */
class StreamText : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        directory = new TemporaryDirectory;
        const std::string& path = directory->path();
        // Long enough for a look at what comes in the second half before it comes.
        composed::Options longer;
        longer.seconds = 8;
        composed::writeFile(path + "/dvb.ts", composed::dvb(longer));
        composed::writeFile(path + "/atsc.ts", composed::atsc());
        std::ofstream(path + "/region")
                << "[One]\nDELIVERY_SYSTEM = DVBT\nBANDWIDTH_HZ = 8000000\nFREQUENCY = " << kDvbHz
                << "\nSTREAM = dvb.ts\n[Two]\nDELIVERY_SYSTEM = ATSC\nFREQUENCY = " << kAtscHz
                << "\nSTREAM = atsc.ts\n";
        television = new Daemon;
        television->start({"--region", path + "/region"});
        all = Json::parse(qeltvctl({"channel", "list", "--all", "--json"}).out);
        a_qeltvapi_teletext_register_msg_callback(onTeletext);
        a_qeltvapi_subtitle_reg_callback(onSubtitle);
        a_qeltvapi_mds_reg_msg_callback(onMetadata);
        registerCallbackHandler();
        // Once it comes, everything does.
        ASSERT_TRUE(eventually([] {
            a_qeltvapi_mds_fvpMtdtOperator("first");
            return !sMetadata.empty();
        }));
    }
    static void TearDownTestSuite() {
        delete television;
        delete directory;
    }
    void SetUp() override {
        // Nothing is received any more, so that the file begins anew.
        select(simulated());
        a_qeltvapi_subtitle_play(0);
        sTeletext.clear();
        sSubtitles.clear();
        sMetadata.clear();
    }

    static int32_t idOf(const Json& channel) {
        return static_cast<int32_t>(std::stoul(channel["id"].get<std::string>(), nullptr, 0));
    }
    static int32_t channel(uint64_t frequency, uint16_t service) {
        for (const Json& each : all) {
            if (each["service"] == service && each["multiplex"]["frequency_hz"] == frequency) {
                return idOf(each);
            }
        }
        ADD_FAILURE() << "no service " << service << " at " << frequency;
        return 0;
    }
    static int32_t simulated() {
        for (const Json& each : all) {
            const uint64_t frequency = each["multiplex"]["frequency_hz"];
            if (frequency != kDvbHz && frequency != kAtscHz && each["type"] == "television") {
                return idOf(each);
            }
        }
        ADD_FAILURE() << "no simulated service";
        return 0;
    }
    static void select(int32_t id) {
        ASSERT_EQ(0, a_qeltvapi_broadcast_select_channel_by_chan_id(id, 0));
    }
    static void selectDvb() { select(channel(kDvbHz, composed::kFirstService)); }

    static void choose(uint32_t page, uint32_t subpage = 0) {
        const uint32_t record = page | subpage << QELTV_TELETEXT_SUBPAGE_SHIFT;
        a_qeltvapi_teletext_set_page(&record);
    }
    static QELTV_TELETEXT_PAGE_T page() {
        QELTV_TELETEXT_PAGE_T now{};
        EXPECT_EQ(0, a_qeltvapi_teletext_get_cur_page(&now));
        return now;
    }
    static bool becomes(uint32_t state) {
        return eventually([&] { return page().state == state; });
    }
    /** A row as it is to be read, without blanks at its end. */
    static std::string row(const QELTV_TELETEXT_PAGE_T& page, size_t number) {
        std::string text;
        for (const uint16_t c : page.characters[number]) {
            if (c < 0x80) {
                text += static_cast<char>(c);
            } else {
                text += static_cast<char>(0xc0 | c >> 6);
                text += static_cast<char>(0x80 | (c & 0x3f));
            }
        }
        return text.substr(0, text.find_last_not_of(' ') + 1);
    }
    static std::vector<int32_t> subtitles() {
        std::vector<int32_t> words(2 + 16 * 3);
        EXPECT_EQ(0,
                  a_qeltvapi_subtitle_get_loop(words.data(), static_cast<uint32_t>(words.size())));
        words.resize(2 + static_cast<size_t>(words[0]) * 3);
        return words;
    }
    /** A value of the metadata service; the code in place of one that there is not. */
    static std::string value(const char* key) {
        char text[256] = {};
        const int code = a_qeltvapi_mds_getValue(key, text, sizeof(text) - 1);
        return code == 0 ? text : std::to_string(code);
    }

    static TemporaryDirectory* directory;
    static Daemon* television;
    static Json all;
};

TemporaryDirectory* StreamText::directory = nullptr;
Daemon* StreamText::television = nullptr;
Json StreamText::all;

TEST_F(StreamText, PagesAreShownWithTheirCharacters) {
    selectDvb();
    choose(0x100);
    ASSERT_TRUE(becomes(QELTV_TELETEXT_SHOWN));
    const QELTV_TELETEXT_PAGE_T now = page();
    EXPECT_EQ(0x100u | 1u << QELTV_TELETEXT_SUBPAGE_SHIFT, now.page);
    EXPECT_EQ(1u, now.subpages);
    EXPECT_EQ("Startseite", row(now, 1));
    EXPECT_THAT(row(now, 0), StartsWith(" P100   Küstentext              00:30:0"));
    EXPECT_EQ(0, memcmp(&now.rows[0][8], "K}stentext", 10)) << "seven bits";
    EXPECT_EQ("", row(now, 24));
    const Ended ended = qeltvctl({"teletext", "100", "--plain"});
    EXPECT_EQ(0, ended.status) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("Küstentext"));
    EXPECT_THAT(ended.out, HasSubstr("\nStartseite"));
}

TEST_F(StreamText, APageThatIsAwaitedComesWithANotification) {
    selectDvb();
    choose(composed::kLatePage);
    EXPECT_TRUE(comes(sTeletext, Notice{QELTV_TELETEXT_PAGE_CHANGED, composed::kLatePage, 0}));
    EXPECT_TRUE(eventually([] {
        const QELTV_TELETEXT_PAGE_T now = page();
        return now.state == QELTV_TELETEXT_AWAITED && row(now, 0).rfind(" P150   Küste", 0) == 0;
    })) << "headers pass by";
    EXPECT_TRUE(comes(sTeletext, Notice{QELTV_TELETEXT_PAGE_CHANGED, composed::kLatePage, 1}));
    EXPECT_EQ("Spät", row(page(), 24));
    EXPECT_EQ(uint32_t{QELTV_TELETEXT_SHOWN}, page().state);
    // With the service the page goes.
    select(channel(kDvbHz, composed::kSecondService));
    EXPECT_TRUE(comes(sTeletext, Notice{QELTV_TELETEXT_PAGE_CHANGED, composed::kLatePage, 0}));
    EXPECT_EQ(uint32_t{QELTV_TELETEXT_ABSENT}, page().state);
    EXPECT_EQ(0, a_qeltvapi_teletext_is_top_stream());
}

TEST_F(StreamText, SubpagesTurnOrStay) {
    selectDvb();
    choose(0x101, 2);
    const auto record = [](uint32_t subpage) {
        return 0x101u | subpage << QELTV_TELETEXT_SUBPAGE_SHIFT;
    };
    ASSERT_TRUE(becomes(QELTV_TELETEXT_SHOWN));
    EXPECT_EQ(record(2), page().page);
    EXPECT_EQ(2u, page().subpages);
    EXPECT_EQ("Zweite Unterseite", row(page(), 1));
    choose(0x101, 3);
    EXPECT_EQ(record(3), page().page);
    EXPECT_EQ(uint32_t{QELTV_TELETEXT_AWAITED}, page().state);
    EXPECT_EQ("", row(page(), 1));
    choose(0x101);
    for (const uint32_t subpage : {1u, 2u, 1u}) {
        EXPECT_TRUE(comes(sTeletext, Notice{QELTV_TELETEXT_PAGE_UPDATED, record(subpage), 2}));
    }
    const Ended ended = qeltvctl({"teletext", "101", "--subpage", "3", "--wait", "0"});
    EXPECT_EQ(
            "qeltvctl: page 101 has not been received within 0 s; try again, or wait longer with "
            "--wait\n",
            ended.err);
}

TEST_F(StreamText, NavigationIsThatOfTheBroadcast) {
    selectDvb();
    ASSERT_TRUE(eventually([] { return a_qeltvapi_teletext_is_top_stream() == 1; }));
    struct {
        uint32_t count;
        QELTV_TOP_ENTRY_T entries[QELTV_TOP_ENTRIES];
    } table{};
    ASSERT_TRUE(eventually([&] {
        EXPECT_EQ(0, a_qeltvapi_teletext_top_get_block_content(&table));
        return table.count == 2 && strcmp("Küste", table.entries[0].title) == 0;
    }));
    EXPECT_EQ(0x100, table.entries[0].page);
    EXPECT_EQ(0x200, table.entries[1].page);
    uint16_t key = 0x101;
    ASSERT_EQ(0, a_qeltvapi_teletext_top_get_group_content(&key, &table));
    ASSERT_EQ(1u, table.count);
    EXPECT_STREQ("Wetter", table.entries[0].title);
    key = 0x110;
    ASSERT_EQ(0, a_qeltvapi_teletext_top_get_page_content(&key, &table));
    ASSERT_EQ(2u, table.count);
    EXPECT_EQ(0x111, table.entries[0].page);
    EXPECT_EQ(composed::kLatePage, table.entries[1].page);
    // It says which pages there are, so nobody waits for others.
    EXPECT_EQ("qeltvctl: page 555 is not broadcast\n", qeltvctl({"teletext", "555"}).err);
}

TEST_F(StreamText, SubtitlesAreThoseOfTheProgrammeMap) {
    selectDvb();
    const int32_t hearing = QELTV_SUBTITLE_HEARING, pictures = QELTV_SUBTITLE_DVB;
    EXPECT_THAT(subtitles(),
                ElementsAre(3, 0, 1, kGerman, hearing, 2, kGerman, pictures, 3, kGerman, hearing));
    ASSERT_EQ(0, a_qeltvapi_subtitle_play(1));
    const Notice plays{QELTV_SUBTITLE_CHANGED, 1, kGerman, QELTV_SUBTITLE_HEARING,
                       composed::kSubtitlePage};
    EXPECT_TRUE(comes(sSubtitles, plays));
    EXPECT_TRUE(comes(sMetadata, std::string("subtitle.text=") + composed::kSubtitleText));
    EXPECT_EQ(composed::kSubtitleText, value("subtitle.text"));
    // A service without subtitles, and back.
    select(channel(kDvbHz, composed::kSecondService));
    EXPECT_TRUE(comes(sSubtitles, Notice{QELTV_SUBTITLE_CHANGED, 0, 0, 0, 0}));
    EXPECT_EQ(std::to_string(QELTV_NOT_FOUND), value("subtitle.text"));
    EXPECT_THAT(subtitles(), ElementsAre(0, 0));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_subtitle_play(1));
    selectDvb();
    EXPECT_TRUE(comes(sSubtitles, plays));
    ASSERT_EQ(0, a_qeltvapi_subtitle_set_next());
    EXPECT_EQ(2, subtitles()[1]);
    EXPECT_EQ(std::to_string(QELTV_NOT_FOUND), value("subtitle.text")) << "pictures";
    EXPECT_THAT(qeltvctl({"subtitle", "list"}).out, HasSubstr("deu"));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_subtitle_play(4));
}

TEST_F(StreamText, CaptionsOfLine21AreRead) {
    select(channel(kAtscHz, composed::kAtscFirst));
    ASSERT_EQ(0, a_qeltvapi_analogcc_enable(1));
    EXPECT_TRUE(comes(sMetadata, std::string("captions.text=") + composed::kCaption));
    EXPECT_EQ(1, a_qeltvapi_analogcc_get_CCString());
    EXPECT_EQ(composed::kCaption, value("captions.text"));
    EXPECT_EQ(2, a_qeltvapi_analogcc_next_stream());
    EXPECT_EQ(0, a_qeltvapi_analogcc_get_CCString()) << "no text comes on the second channel";
    EXPECT_EQ(std::to_string(QELTV_NOT_FOUND), value("captions.text"));
    ASSERT_EQ(0, a_qeltvapi_analogcc_enable(0));
    ASSERT_EQ(0, a_qeltvapi_atsccc_enable(1));
    EXPECT_EQ(1, a_qeltvapi_atsccc_get_CCString()) << "the programme map has service 1";
    EXPECT_EQ(composed::kCaption, value("captions.text"));
    EXPECT_EQ(2, a_qeltvapi_atsccc_next_stream());
    EXPECT_EQ(0, a_qeltvapi_atsccc_get_CCString());
    ASSERT_EQ(0, a_qeltvapi_atsccc_enable(0));
    ASSERT_EQ(0, a_qeltvapi_isdbcc_enable(1));
    EXPECT_EQ(0, a_qeltvapi_isdbcc_get_CCString());
    select(simulated());
    EXPECT_EQ(1, a_qeltvapi_isdbcc_get_CCString());
    ASSERT_EQ(0, a_qeltvapi_isdbcc_enable(0));
}

}  // namespace
