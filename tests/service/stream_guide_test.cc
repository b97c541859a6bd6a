// Channels, guide and clock of multiplexes that come from streams, through the library's functions.

#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>

#include "eventually.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_dvbsconfig.h"
#include "hw_qeltvapi_eas.h"
#include "hw_qeltvapi_event.h"
#include "hw_qeltvapi_event_atsc.h"
#include "hw_qeltvapi_mds.h"
#include "hw_qeltvapi_rating.h"
#include "hw_qeltvapi_scan.h"
#include "hw_qeltvapi_time.h"
#include "hw_svl.h"
#include "hw_tsl.h"
#include "layouts/alert.h"
#include "layouts/channel_records.h"
#include "layouts/codes.h"
#include "layouts/event.h"
#include "layouts/rating.h"
#include "layouts/scan.h"
#include "stream_composer.h"
#include "with_television.h"

using namespace wire;

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr uint32_t kAir = CHANNEL_LIST_AIR;

Inbox<Notified> sAlerts, sScan;

template <Inbox<Notified>* inbox>
int on(int32_t type, uintptr_t, uintptr_t a1, uintptr_t a2, uintptr_t a3, uintptr_t a4) {
    inbox->put({type, {a1, a2, a3, a4}});
    return 0;
}

class Streams : public testing::Test {
  protected:
    void SetUp() override {
        Sleeps::instance().letAllGo(true);
        composed::writeFile(files.path() + "/dvb.ts", composed::dvb());
        composed::writeFile(files.path() + "/atsc.ts", composed::atsc());
    }

    void TearDown() override {
        getQelTvApiService();
        Sleeps::instance().letAllGo(false);
    }

    /** A scan table: a stream of each kind, one without a file, one that is simulated. */
    std::string table(const std::string& head = "") const {
        const std::string path = files.path() + "/own";
        std::ofstream(path) << head << R"(
[FIRST]
  DELIVERY_SYSTEM = DVBT
  FREQUENCY = 474000000
  BANDWIDTH_HZ = 8000000
  STREAM = dvb.ts
[SECOND]
  DELIVERY_SYSTEM = ATSC
  FREQUENCY = 473028615
  STREAM = atsc.ts
[MISSING]
  DELIVERY_SYSTEM = DVBT
  FREQUENCY = 482000000
  STREAM = missing.ts
[SIMULATED]
  DELIVERY_SYSTEM = DVBT
  FREQUENCY = 490000000
)";
        return path;
    }

    void start(const std::string& head = "") {
        television.start({"--region", table(head)});
        ASSERT_TRUE(joinTelevision());
    }

    static std::vector<channel_record_t> channels() {
        std::vector<channel_record_t> all;
        const int count = a_qeltvapi_channellist_get_number_by_mask(kAir, 0, 0);
        for (int i = 0; i < count; ++i) {
            channel_record_t record{};
            EXPECT_EQ(0, a_qeltvapi_channellist_get_svl_rec_by_index(
                                 kAir, 0, 0, static_cast<uint32_t>(i), &record));
            all.push_back(record);
        }
        return all;
    }

    /** By service id and type of broadcast; an empty record with a failure if there is none. */
    static channel_record_t channel(uint16_t service, uint8_t broadcast) {
        for (const channel_record_t& each : channels()) {
            if (each.service_id == service && each.broadcast_type == broadcast) return each;
        }
        ADD_FAILURE() << "no service " << service;
        return {};
    }
    static channel_record_t first() {
        return channel(composed::kFirstService, CHANNEL_BROADCAST_DVB);
    }

    static QELTV_EVENT_GENERAL_T general(uint32_t channelId, uint16_t id) {
        QELTV_EVENT_GENERAL_T general{};
        EXPECT_EQ(0, a_qeltvapi_event_get_general_info(static_cast<int>(channelId), id, &general));
        return general;
    }

    static std::vector<uint16_t> range(uint32_t channelId, int64_t from, int64_t to) {
        std::vector<uint16_t> ids(100);
        uint16_t count = 100;
        EXPECT_EQ(0, a_qeltvapi_event_query_event_id_by_range(static_cast<int>(channelId), from, to,
                                                              &count, ids.data()));
        ids.resize(count);
        return ids;
    }

    static void tune(const channel_record_t& channel) {
        EXPECT_EQ(0, a_qeltvapi_broadcast_select_channel(
                             kAir, static_cast<int32_t>(channel.channel_id), 0, 0));
    }

    using Text = int (*)(int, int, void*, int);
    static std::string text(uint32_t channelId, uint16_t id, Text function) {
        char text[512] = "";
        EXPECT_EQ(0, function(static_cast<int>(channelId), id, text, sizeof(text)));
        return text;
    }

    TemporaryDirectory files;
    Daemon television;
};

TEST_F(Streams, FillTheListsBesideWhatIsSimulated) {
    start();
    const channel_record_t first = this->first();
    EXPECT_STREQ(composed::kFirstName, first.name);
    EXPECT_STREQ("Küstenprogramme", first.provider);
    EXPECT_STREQ("deu", first.language);
    EXPECT_EQ(composed::kFirstHdNumber, first.number) << "that of receivers of HD";
    EXPECT_EQ(CHANNEL_FLAG_VISIBLE | CHANNEL_FLAG_LCN, first.flags);
    EXPECT_EQ(CHANNEL_SERVICE_TELEVISION, first.service_type);
    EXPECT_EQ(composed::kNetwork, first.original_network_id);
    EXPECT_EQ(composed::kStream, first.stream_id);
    EXPECT_EQ(composed::kFirstPmt, first.pmt_pid);
    EXPECT_EQ(composed::kFirstVideo, first.video_pid);
    EXPECT_EQ(composed::kFirstVideo, first.pcr_pid);
    EXPECT_EQ(composed::kFirstAudio, first.audio_pid);
    const channel_record_t second = channel(composed::kSecondService, CHANNEL_BROADCAST_DVB);
    EXPECT_STREQ(composed::kSecondName, second.name);
    EXPECT_EQ(composed::kSecondNumber, second.number);
    EXPECT_EQ(CHANNEL_FLAG_LCN, second.flags) << "hidden";
    EXPECT_EQ(CHANNEL_SERVICE_RADIO, second.service_type);
    const channel_record_t atsc = channel(composed::kAtscFirst, CHANNEL_BROADCAST_ATSC);
    EXPECT_EQ(8u << 16 | 1, atsc.number);

    network_record_t network{};
    multiplex_record_t multiplex{};
    EXPECT_EQ(0, a_qeltvapi_tsl_get_rec(kAir, first.tsl_record_id, &multiplex));
    EXPECT_EQ(0, a_qeltvapi_nwl_get_rec(kAir, multiplex.network_record_id, &network));
    EXPECT_STREQ(composed::kNetworkName, network.name);

    // Simulated services are numbered from 1 on, around the numbers taken.
    std::set<uint32_t> numbers;
    size_t simulated = 0;
    for (const channel_record_t& each : channels()) {
        EXPECT_TRUE(numbers.insert(each.number).second) << each.number << " is taken twice";
        multiplex_record_t of{};
        EXPECT_EQ(0, a_qeltvapi_tsl_get_rec(kAir, each.tsl_record_id, &of));
        if (of.frequency_low == 490000000) ++simulated;
    }
    EXPECT_GT(simulated, 0u);
    EXPECT_TRUE(numbers.count(1) != 0 && numbers.count(2) != 0);
    // Another start knows the same channel and its guide.
    getQelTvApiService();
    television.kill();
    start();
    EXPECT_STREQ("Film", general(first.channel_id, 101).title);
}

TEST_F(Streams, AreScannedAndOneWithoutASignalHasNoServices) {
    start();
    const auto before = channels();
    a_qeltvapi_scan_reg_callback(on<&sScan>);
    sScan.clear();
    // The file is there by the time of the scan, and another one is gone.
    composed::Options options;
    options.changeMap = true;
    composed::writeFile(files.path() + "/dvb.ts", composed::dvb(options));
    std::filesystem::remove(files.path() + "/atsc.ts");
    ASSERT_EQ(0, a_qeltvapi_start_scan(
                         QELTV_SCAN_FREQUENCY | uint64_t{473028} << QELTV_SCAN_FREQUENCY_SHIFT, 0));
    auto end = sScan.takeUntil([](const Notified& t) { return t.type >= QELTV_SCAN_COMPLETE; });
    ASSERT_TRUE(end);
    EXPECT_EQ(QELTV_SCAN_COMPLETE, end->type);
    EXPECT_EQ(0u, end->values[0] + end->values[1]);
    char message[128] = "";
    a_qeltvapi_get_user_message(message, sizeof(message));
    EXPECT_THAT(message, HasSubstr("1 transponders without a signal"));
    EXPECT_EQ(before.size(), channels().size()) << "what is known stays";

    ASSERT_EQ(0, a_qeltvapi_start_scan(QELTV_SCAN_AIR, 1));
    end = sScan.takeUntil([](const Notified& t) { return t.type >= QELTV_SCAN_COMPLETE; });
    ASSERT_TRUE(end);
    EXPECT_EQ(QELTV_SCAN_COMPLETE, end->type);
    EXPECT_EQ(2u, end->values[3]) << "a whole scan removes what it does not find";
    EXPECT_EQ(composed::kFirstHdNumber, first().number);
}

TEST_F(Streams, GiveTheirOwnGuide) {
    start();
    const uint32_t id = first().channel_id;
    const int64_t begin = composed::kTime;
    EXPECT_THAT(range(id, begin, begin + 86400), ElementsAre(100, 101, 102))
            << "without the one that has no time";
    EXPECT_THAT(range(id, begin + 6000, begin + 9000), IsEmpty()) << "a gap stays one";
    const QELTV_EVENT_GENERAL_T rich = general(id, 100);
    EXPECT_STREQ("Nachrichten im Café", rich.title);
    EXPECT_STREQ("deu", rich.language);
    EXPECT_EQ(begin, rich.start);
    EXPECT_EQ(1800u, rich.duration);
    EXPECT_EQ(QELTV_GENRE_NEWS, rich.genre);
    EXPECT_EQ(12, rich.age);
    EXPECT_NE(0, rich.series);
    EXPECT_EQ("Das Wetter\nund mehr", text(id, 100, a_qeltvapi_event_get_details_info));
    EXPECT_EQ("Regie: Änne Öhm und Co\nErster Teil, zweiter Teil €",
              text(id, 100, a_qeltvapi_event_get_details_extend_info));
    EXPECT_STREQ("Spät", general(id, 102).title);
    EXPECT_EQ(QELTV_AGE_UNRATED, general(id, 102).age);
    EXPECT_EQ(0, general(id, 102).series);

    ASSERT_EQ(0, qeltvctl({"config", "set", "channels.guide_language", "eng"}).status);
    EXPECT_STREQ("News at the café", general(id, 100).title);
    EXPECT_STREQ("eng", general(id, 100).language);
    EXPECT_EQ("The weather", text(id, 100, a_qeltvapi_event_get_details_info));
    EXPECT_STREQ("Spät", general(id, 102).title) << "there is no other";
    ASSERT_EQ(0, qeltvctl({"config", "set", "channels.guide_language", "ger"}).status);
    EXPECT_STREQ("Nachrichten im Café", general(id, 100).title);

    uint16_t present = 0;
    EXPECT_EQ(0, a_qeltvapi_event_get_pf_event_id(static_cast<int>(id), &present, true));
    EXPECT_EQ(100, present);

    // A filter finds what is received as it finds what is simulated.
    QELTVAPI_EVENT_FILTER_T filter{};
    filter.value = static_cast<uint32_t>(begin);
    memcpy(filter.block, "CAF", 3);
    uint16_t found[8]{}, count = 8;
    uint32_t on[8]{};
    EXPECT_EQ(0, a_qeltvapi_event_query_event_id_by_filter(0, &filter, &count, found, on));
    ASSERT_EQ(1, count);
    EXPECT_EQ(100, found[0]);
    EXPECT_EQ(id, on[0]);
    EXPECT_EQ(0, a_qeltvapi_config_set_value(0, "parental.rating_lock", 1, 0));
    EXPECT_EQ(0, a_qeltvapi_config_set_value(0, "parental.age", 12, 0));
    EXPECT_TRUE(a_qeltvapi_event_check_block(static_cast<int>(id), 100));
    EXPECT_FALSE(a_qeltvapi_event_check_block(static_cast<int>(id), 101));

    // ATSC has a title and one text.
    const uint32_t atsc = channel(composed::kAtscFirst, CHANNEL_BROADCAST_ATSC).channel_id;
    EXPECT_STREQ("Evening Report", general(atsc, 7).title);
    EXPECT_EQ("All the news.", text(atsc, 7, a_qeltvapi_event_get_details_info));
}

TEST_F(Streams, SetTheClockWhileTheyAreReceived) {
    start();
    const auto machine = time(nullptr);
    EXPECT_LE(machine, a_qeltvapi_time_get_utc_time(nullptr));
    tune(first());
    const auto follows = [] {
        const int64_t now = a_qeltvapi_time_get_utc_time(nullptr);
        return now >= composed::kTime && now < composed::kTime + 1000;
    };
    ASSERT_TRUE(eventually(follows));
    EXPECT_EQ(1, a_qeltvapi_time_has_received_tot());
    EXPECT_EQ(3600, a_qeltvapi_time_get_time_zone());
    QELTVAPI_DTG_T local{};
    EXPECT_EQ(0, c_dt_utc_sec_to_loc_dtg(composed::kChange, &local));
    EXPECT_EQ(3, local.head[5]) << "the clocks of Europe have changed";
    EXPECT_EQ(composed::kChange, a_qeltvapi_dtg_to_sec(&local));
    // The file is four seconds long: it begins anew while this waits.
    int64_t last = 0;
    const auto later = [&] {
        const int64_t now = a_qeltvapi_time_get_utc_time(nullptr);
        EXPECT_GE(now, last) << "the clock goes back";
        last = now;
        return now >= composed::kTime + 9;
    };
    EXPECT_TRUE(eventually(later));

    // A simulated channel brings the time of this machine back.
    for (const channel_record_t& each : channels()) {
        if (each.number == 1) tune(each);
    }
    EXPECT_TRUE(eventually([&] { return a_qeltvapi_time_get_utc_time(nullptr) >= machine; }));
}

TEST_F(Streams, RaiseTheirAlertOnceAndNameTheirApplication) {
    start();
    a_qeltvapi_eas_reg_callback(on<&sAlerts>);
    sAlerts.clear();
    tune(channel(composed::kAtscFirst, CHANNEL_BROADCAST_ATSC));
    const auto alert = sAlerts.take();
    ASSERT_TRUE(alert);
    EXPECT_EQ(QELTV_ALERT_BEGINS, alert->type);
    EXPECT_EQ(uint64_t{QELTV_ALERT_WARNING}, alert->values[0]);
    EXPECT_EQ(1u, alert->values[1]) << "it is urgent";
    EXPECT_EQ(6037u, alert->values[3]);

    EXPECT_EQ(0, a_qeltvapi_rating_atsc_storage(1));
    QELTV_OPEN_VCHIP_TABLE_T table{};
    const auto received = [&] {
        EXPECT_EQ(0, a_qeltvapi_rating_get_op_vchip_info(&table));
        return std::string(table.name) == "Region Five";
    };
    ASSERT_TRUE(eventually(received));
    EXPECT_EQ(1, table.dimensions);
    EXPECT_STREQ("Age", table.dimension[0].name);
    EXPECT_EQ(2, table.dimension[0].levels);
    EXPECT_EQ(1, table.dimension[0].graduated);

    // Its sequence stays what it was while the file comes again, and with another tuning.
    EXPECT_EQ(0, a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(1));
    tune(first());
    char url[128] = "";
    const auto named = [&] {
        return a_qeltvapi_mds_getValue("application.url", url, sizeof(url) - 1) == 0;
    };
    EXPECT_TRUE(eventually(named));
    EXPECT_STREQ(composed::kUrl, url);
    tune(channel(composed::kAtscFirst, CHANNEL_BROADCAST_ATSC));
    const auto again =
            sAlerts.takeUntil([](const Notified& t) { return t.type == QELTV_ALERT_BEGINS; },
                              std::chrono::seconds(6));
    EXPECT_FALSE(again);
}

TEST_F(Streams, AreOnTodayIfTheirTableSaysSo) {
    start("TIME = now\n");
    const uint32_t id = first().channel_id;
    const int64_t today = time(nullptr) / 86400 * 86400;
    EXPECT_EQ(today + composed::kTime % 86400, general(id, 100).start);
}

}  // namespace
