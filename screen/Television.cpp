#include "Television.h"

#include <algorithm>
#include <cstring>

#include "hw_mm_svctx.h"
#include "hw_qeltvapi_analog_cc.h"
#include "hw_qeltvapi_apptv.h"
#include "hw_qeltvapi_atsc_cc.h"
#include "hw_qeltvapi_audioinfo.h"
#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_eas.h"
#include "hw_qeltvapi_event.h"
#include "hw_qeltvapi_freeze.h"
#include "hw_qeltvapi_inputsource.h"
#include "hw_qeltvapi_isdb_cc.h"
#include "hw_qeltvapi_pvr_browser.h"
#include "hw_qeltvapi_scan.h"
#include "hw_qeltvapi_subtitle.h"
#include "hw_qeltvapi_teletext.h"
#include "hw_qeltvapi_time.h"
#include "hw_qeltvapi_volctrl.h"
#include "hw_svctx.h"
#include "layouts/alert.h"
#include "layouts/channel_ids.h"
#include "layouts/channel_records.h"
#include "layouts/record.h"
#include "layouts/scan.h"
#include "layouts/time.h"

namespace screen {
namespace {

using Json = Television::Json;

constexpr const char* kPaths[QELTV_PATHS] = {"main", "sub"};
constexpr const char* kGenres[] = {"",      "film", "news",    "show",    "sport",  "children",
                                   "music", "arts", "society", "science", "leisure"};

/** A buffer for an answer that is stored whole: larger than any, and zeroed so that texts end. */
using Answer = std::vector<char>;
Answer answer() {
    return Answer(1 << 16);
}

template <size_t N>
std::string textOf(const char (&field)[N]) {
    return std::string(field, strnlen(field, N));
}

/** A record out of an answer, of which later televisions may send more. */
template <class T>
T recordOf(const Answer& bytes) {
    T record;
    memcpy(&record, bytes.data(), sizeof(record));
    return record;
}

template <size_t N>
std::string nameIn(const char* const (&names)[N], size_t index) {
    return index < N ? names[index] : "";
}

uint32_t listOf(uint32_t channel) {
    return channel >> QELTV_CHANNEL_ID_LIST_SHIFT & QELTV_CHANNEL_ID_LIST_MASK;
}

ShownChannel channelOf(const channel_record_t& record) {
    ShownChannel channel;
    channel.id = record.channel_id;
    channel.number = numberText(record.number);
    channel.name = textOf(record.name);
    channel.provider = textOf(record.provider);
    channel.language = textOf(record.language);
    channel.highDefinition = (record.flags & CHANNEL_FLAG_HD) != 0;
    channel.scrambled = (record.flags & CHANNEL_FLAG_SCRAMBLED) != 0;
    channel.locked = (record.flags & CHANNEL_FLAG_LOCKED) != 0;
    channel.favourite = (record.flags & CHANNEL_FLAGS_FAVOURITE) != 0;
    channel.radio = record.service_type == CHANNEL_SERVICE_RADIO;
    channel.serviceId = record.service_id;
    channel.pmtPid = record.pmt_pid;
    channel.videoPid = record.video_pid;
    channel.audioPid = record.audio_pid;
    return channel;
}

/** Local time minus UTC, at a time. */
int64_t offsetAt(int64_t utc) {
    QELTVAPI_DTG_T record{};
    if (c_dt_utc_sec_to_loc_dtg(utc, &record) != 0) return 0;
    QELTV_DTG_T local;
    memcpy(&local, record.head, sizeof(record.head));
    const int64_t seconds = local.hour * 3600 + local.minute * 60 + local.second;
    const int64_t day = 24 * 3600;
    const int64_t difference = ((seconds - utc) % day + day) % day;
    return difference > day * 7 / 12 ? difference - day : difference;
}

Json jsonOf(const Programme& programme) {
    return {{"event", programme.event},     {"start", programme.start},
            {"seconds", programme.seconds}, {"title", programme.title},
            {"rating", programme.rating},   {"genre", programme.genre},
            {"locked", programme.locked}};
}

}  // namespace

std::string numberText(uint32_t number) {
    return number <= 0xffff ? std::to_string(number)
                            : std::to_string(number >> QELTV_CHANNEL_DIALLED_MAJOR_SHIFT) + "." +
                                      std::to_string(number & 0xffff);
}

std::string clockText(int64_t localSeconds) {
    const int64_t minutes = (localSeconds % 86400 + 86400) % 86400 / 60;
    char text[32];
    snprintf(text, sizeof(text), "%02d:%02d", static_cast<int>(minutes / 60),
             static_cast<int>(minutes % 60));
    return text;
}

ShownPath Television::path(uint32_t number) const {
    ShownPath path;
    const uint32_t context = QELTV_CONTEXT_OF_MAIN + number;
    Answer bytes = answer();
    if (c_svctx_generic_get_info(context, 0, QELTV_INFO_SCREEN, bytes.data(),
                                 sizeof(QELTV_SCREEN_T)) == 0) {
        path.screen = recordOf<QELTV_SCREEN_T>(bytes);
        path.screen.digits[sizeof(path.screen.digits) - 1] = 0;
    } else {
        path.screen.width = path.screen.height = QELTV_REGION_FULL;
    }
    if (c_svctx_get_conn_attr(context, 0, QELTV_CONNECTION_ALL, &path.connection) != 0 ||
        !path.running()) {
        return path;
    }
    bytes = answer();
    if (c_svctx_get_video_src_resolution(context, bytes.data()) == 0) {
        path.video = recordOf<QELTV_VIDEO_SOURCE_T>(bytes);
        path.video.text[sizeof(path.video.text) - 1] = 0;
    }
    bytes = answer();
    if (path.plays() && c_svctx_get_audio_info(context, bytes.data()) == 0) {
        path.audio = recordOf<QELTV_AUDIO_TRACK_T>(bytes);
    }
    bytes = answer();
    if (a_qeltvapi_inputsource_get_currentsourcename_bypath(bytes.data(), QELTV_NAME_SHOWN,
                                                            kPaths[number]) == 0) {
        path.source = bytes.data();
    }
    path.muted = a_qeltvapi_apptv_get_video_mute(kPaths[number]) == 1;
    path.frozen = a_qeltvapi_freeze_is_freeze(kPaths[number]) == 1;
    if (path.connection.channel != 0) {
        channel_record_t record{};
        if (a_qeltvapi_channellist_get_svl_rec_by_channel_id(
                    listOf(path.connection.channel), path.connection.channel, &record) == 0) {
            path.channel = channelOf(record);
        }
    }
    return path;
}

std::optional<Programme> Television::programmeOf(uint32_t channel, uint16_t event) const {
    Answer bytes = answer();
    const auto id = static_cast<int>(channel);
    if (a_qeltvapi_event_get_general_info(id, event, bytes.data()) != 0) return std::nullopt;
    const auto general = recordOf<QELTV_EVENT_GENERAL_T>(bytes);
    if (general.duration == 0) return std::nullopt;
    Programme programme;
    programme.event = event;
    programme.start = general.start;
    programme.seconds = general.duration;
    programme.locked = (general.flags & QELTV_EVENT_BLOCKED) != 0;
    // The title of a locked programme is as locked as its picture.
    programme.title = programme.locked ? "Locked programme" : textOf(general.title);
    programme.genre = nameIn(kGenres, general.genre);
    programme.subtitles = (general.flags & QELTV_EVENT_SUBTITLES) != 0;
    programme.description = (general.flags & QELTV_EVENT_AUDIO_DESCRIPTION) != 0;
    QELTVAPI_RATING_MAP_T map{};
    if (a_qeltvapi_event_get_rating_map(id, event, &map) == 0) programme.rating = textOf(map.first);
    return programme;
}

Shown Television::read() const {
    Shown shown;
    shown.reachable = getQelTvApiService() != nullptr;
    if (!shown.reachable) return shown;
    uint16_t milliseconds = 0;
    shown.time = a_qeltvapi_time_get_utc_time(&milliseconds);
    shown.offset = offsetAt(shown.time);
    for (uint32_t i = 0; i < QELTV_PATHS; ++i) shown.paths[i] = path(i);
    shown.volume = a_qeltvapi_volctrl_getVolume();
    shown.muted = a_qeltvapi_volctrl_getMute() == 1;

    const ShownPath& main = shown.paths[0];
    if (main.channel) {
        const auto channel = static_cast<int>(main.channel->id);
        uint16_t event = 0;
        if (a_qeltvapi_event_get_pf_event_id(channel, &event, 1) == 0) {
            shown.present = programmeOf(main.channel->id, event);
        }
        if (a_qeltvapi_event_get_pf_event_id(channel, &event, 0) == 0) {
            shown.following = programmeOf(main.channel->id, event);
        }
    }
    if (main.audio.track != 0) {
        Answer text = answer();
        int32_t length = 0;
        if (a_qeltvapi_get_audio_apd_text(static_cast<int32_t>(main.audio.track), text.data(),
                                          &length) == 0) {
            shown.sound = text.data();
        }
    }

    int32_t change = 0, channel = 0;
    a_qeltvapi_eas_get_status(&shown.alert, &change, &channel, &shown.alertArea);
    if (a_qeltvapi_is_scan_active() == 1) {
        int32_t data[QELTV_SCAN_EXCHANGE_CAPACITY] = {QELTV_EXCHANGE_STATUS};
        shown.scans = true;
        if (a_scan_ce_exchange_data(data, 1) == 0) {
            shown.scanPercent = data[2];
            shown.scanServices = data[6] + data[7];
        }
    }
    for (const auto captions : {a_qeltvapi_analogcc_get_CCString, a_qeltvapi_atsccc_get_CCString,
                                a_qeltvapi_isdbcc_get_CCString}) {
        shown.captions = std::max(shown.captions, captions());
    }
    std::vector<int32_t> words(2 + 64 * 3);
    if (a_qeltvapi_subtitle_get_loop(words.data(), static_cast<uint32_t>(words.size())) == 0) {
        for (int32_t i = 0; i < std::clamp(words[0], 0, 64); ++i) {
            const int32_t* entry = &words[2 + static_cast<size_t>(i) * 3];
            if (words[1] == 0 || entry[0] != words[1]) continue;
            for (const int shift : {16, 8, 0}) {
                shown.subtitle += static_cast<char>(entry[1] >> shift & 0x7f);
            }
        }
    }
    return shown;
}

std::optional<QELTV_TELETEXT_PAGE_T> Television::teletext() const {
    Answer bytes = answer();
    if (a_qeltvapi_teletext_get_cur_page(bytes.data()) != 0) return std::nullopt;
    const auto page = recordOf<QELTV_TELETEXT_PAGE_T>(bytes);
    // Success and a missing television share their number.
    if (page.page == 0) return std::nullopt;
    return page;
}

void Television::setTeletextPage(uint32_t page) const {
    char shown[16];
    snprintf(shown, sizeof(shown), "%03x", page);
    call("a_qeltvapi_teletext_set_page", a_qeltvapi_teletext_set_page, shown, &page);
}

Json Television::channels() const {
    constexpr uint32_t kBatch = 500;
    Json all = Json::array();
    const int count = a_qeltvapi_tvprovider_get_all_svlid_count();
    if (count <= 0) return all;
    std::vector<uint16_t> lists(static_cast<size_t>(count) + 16);
    auto room = static_cast<uint16_t>(count);
    if (a_qeltvapi_tvprovider_get_all_svlid(lists.data(), &room) < 0) return all;
    lists.resize(std::min<size_t>(room, static_cast<size_t>(count)));
    constexpr const char* kNames[] = {"", "air", "cable", "satellite"};
    std::vector<channel_record_t> channels(kBatch);
    std::vector<multiplex_record_t> multiplexes(kBatch);
    for (const uint16_t list : lists) {
        for (uint32_t index = 0;; index += kBatch) {
            const auto shown = std::to_string(list) + ", " + std::to_string(index);
            if (call("a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex",
                     a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex, shown, uint32_t{list},
                     index, 0u, 0u, 0u, 0u, 0u, kBatch, 0u, channels.data(),
                     multiplexes.data()) != 0) {
                break;
            }
            uint32_t stored = 0;
            for (; stored < kBatch && channels[stored].record_id != 0; ++stored) {
                const ShownChannel channel = channelOf(channels[stored]);
                all.push_back({{"id", channel.id},
                               {"list", nameIn(kNames, list)},
                               {"number", channel.number},
                               {"name", channel.name},
                               {"radio", channel.radio},
                               {"hd", channel.highDefinition},
                               {"scrambled", channel.scrambled},
                               {"locked", channel.locked}});
            }
            if (stored < kBatch) break;
        }
    }
    return all;
}

Json Television::guide(const std::vector<uint32_t>& channels, int64_t from, int64_t to) const {
    Json all = Json::array();
    for (const uint32_t channel : channels) {
        Json row{{"channel", channel}, {"programmes", Json::array()}};
        std::vector<uint16_t> ids(UINT16_MAX);
        auto count = static_cast<uint16_t>(ids.size());
        if (call("a_qeltvapi_event_query_event_id_by_range",
                 a_qeltvapi_event_query_event_id_by_range,
                 std::to_string(channel) + ", " + std::to_string(from) + ", " + std::to_string(to),
                 static_cast<int>(channel), from, to, &count, ids.data()) == 0 &&
            count < ids.size()) {
            for (uint16_t i = 0; i < count; ++i) {
                if (const auto programme = programmeOf(channel, ids[i])) {
                    row["programmes"].push_back(jsonOf(*programme));
                }
            }
        }
        all.push_back(row);
    }
    return all;
}

Json Television::programme(uint32_t channel, uint16_t event) const {
    const auto programme = programmeOf(channel, event);
    if (!programme) return nullptr;
    Json json = jsonOf(*programme);
    constexpr int kLength = 4096;
    Answer details = answer();
    if (!programme->locked &&
        call("a_qeltvapi_event_get_details_extend_info", a_qeltvapi_event_get_details_extend_info,
             std::to_string(channel) + ", " + std::to_string(event), static_cast<int>(channel),
             int{event}, static_cast<void*>(details.data()), kLength) == 0) {
        json["details"] = details.data();
    }
    return json;
}

Json Television::recordings() const {
    Json all = Json::array();
    uint32_t count = 0;
    if (call("a_qeltvapi_mmp_get_pvr_browser_recording_file_num",
             a_qeltvapi_mmp_get_pvr_browser_recording_file_num, "", &count) != 0) {
        return all;
    }
    constexpr uint32_t kMost = 500;
    constexpr const char* kReasons[] = {"",     "stopped",    "complete", "disk full",
                                        "disk", "power lost", "standby"};
    for (uint32_t i = count > kMost ? count - kMost : 0; i < count; ++i) {
        Answer bytes = answer();
        if (a_qeltvapi_mmp_get_pvr_browser_item_by_index(i, bytes.data()) < 0) break;
        const auto item = recordOf<QELTV_BROWSER_ITEM_T>(bytes);
        all.push_back({{"index", i},
                       {"channel", textOf(item.channelName)},
                       {"programme", textOf(item.programme)},
                       {"start", item.start},
                       {"seconds", item.seconds},
                       {"bytes", item.bytes},
                       {"ended", nameIn(kReasons, item.stopReason)}});
    }
    std::reverse(all.begin(), all.end());
    return all;
}

Json Television::inputs() const {
    Json all = Json::array();
    const uint8_t count = a_qeltvapi_inputsource_get_sourcetotalnum();
    if (count == UINT8_MAX) return all;
    for (int32_t id = 0; id < count; ++id) {
        QELTVAPI_INPUT_SOURCE_RECORD_T record{};
        if (a_qeltvapi_inputsource_get_sourcerec_byidx(id, &record) != 0) continue;
        Answer name = answer();
        a_qeltvapi_inputsource_get_sourcename_bysourceid(id, name.data(), QELTV_NAME_SHOWN);
        all.push_back({{"id", id},
                       {"name", name.data()},
                       {"signal", (record.tail & QELTV_INPUT_HAS_SIGNAL) != 0}});
    }
    return all;
}

}  // namespace screen
