#include "Rules.h"

#include <hw_qeltvapi_channel_records.h>
#include <hw_qeltvapi_rating.h>
#include <hw_qeltvapi_record.h>
#include <hw_svctx.h>

#include <cstring>
#include <stdexcept>

#include "layouts/event.h"
#include "layouts/presentation.h"
#include "layouts/record.h"
#include "layouts/teletext.h"

namespace conformance {
namespace {

using transactions::Kind;

constexpr char kMain[] = "IQelTvApi";
constexpr char kCi[] = "IQelTvApiCI";
constexpr char kLists[] = "IQelTvApiChannelList";
constexpr char kConfig[] = "IQelTvApiConfig";
constexpr char kEvent[] = "IQelTvApiEvent";
constexpr char kBrowser[] = "IQelTvApiPvrbrowser";
constexpr char kScan[] = "IQelTvApiScan";

constexpr auto kRecord = Rule::Kind::kRecord;
constexpr auto kLayout = Rule::Kind::kLayout;
constexpr auto kAsRequested = Rule::Kind::kAsRequested;
constexpr auto kAlwaysAsRequested = Rule::Kind::kAlwaysAsRequested;
constexpr auto kAtMost = Rule::Kind::kAtMost;
constexpr auto kCounted = Rule::Kind::kCounted;

#define SVL(method) \
    { kLists, method, "svl", kRecord, QELTVAPI_SVL_REC_SIZE, "" }
#define TSL(method) \
    { kLists, method, "tsl", kRecord, QELTVAPI_TSL_REC_SIZE, "" }
#define LIST_RECORD(method, size) \
    { kLists, method, "rec", kRecord, size, "" }
#define BLOCK(method) \
    { kEvent, method, "block", kAlwaysAsRequested, 0, "room" }

const Rule kRules[] = {
        {kMain, "c_svctx_get_64", "data", kAtMost, 1, "buf"},
        {kMain, "c_svctx_get_video_src_resolution", "data", kRecord,
         QELTVAPI_SVCTX_VIDEO_SRC_RESOLUTION_SIZE, ""},
        {kMain, "c_svctx_get_conn_attr", "data", kAsRequested, 0, "len"},
        {kMain, "c_svctx_set_conn_attr", "back", kAsRequested, 0, "data"},
        {kMain, "c_svctx_get_audio_info", "data", kRecord, QELTVAPI_SVCTX_AUDIO_INFO_SIZE, ""},
        {kMain, "c_svctx_generic_get_info", "data", kAtMost, 1, "len"},
        {kMain, "c_svctx_generic_set_info", "back", kAtMost, 1, "data"},
        {kMain, "qeltvapi_screenmode_get_all_screen_mode", "modes", kAtMost, 1, "capacity"},
        {kMain, "qeltvapi_screenmode_get_all_screen_mode", "modes", kCounted, 0, "count"},
        {kMain, "qeltvapi_screenmode_get_crnt_overscan", "four", kRecord, 4 * sizeof(int32_t), ""},
        {kMain, "qeltvapi_av_mode_get_all_picture_mode", "modes", kAtMost, 1, "capacity"},
        {kMain, "qeltvapi_av_mode_get_all_sound_effect", "modes", kAtMost, 1, "capacity"},
        {kMain, "qeltvapi_banner_get_item_content", "content", kAtMost, 1, "room"},
        {kMain, "qeltvapi_subtitle_get_loop", "loop", kAtMost, 1, "data"},
        {kMain, "qeltvapi_event_atsc_get_detail_info_by_index", "details", kAtMost, 1, "len"},
        {kMain, "qeltvapi_event_atsc_check_EIT_status", "list", kCounted, 0, "n"},
        {kMain, "qeltvapi_audio_info_get_available_record", "records", kAtMost,
         QELTVAPI_SVCTX_AUDIO_INFO_SIZE, "num"},
        {kMain, "qeltvapi_audio_info_get_inputsource_available_record", "records", kAtMost,
         QELTVAPI_SVCTX_AUDIO_INFO_SIZE, "num"},
        {kMain, "qeltvapi_get_audio_apd_text", "text", kCounted, 0, "len"},
        {kMain, "qeltvapi_audio_info_get_data", "data", kAtMost, 1, "request"},
        {kMain, "qeltvapi_ewspa_get", "answer", kAtMost, 1, "data"},
        {kMain, "qeltvapi_videoinfo_get_data", "data", kAtMost, 1, "request"},
        {kMain, "qeltvapi_get_current_audio_info", "data", kLayout, sizeof(QELTV_AUDIO_TRACK_T),
         ""},
        {kMain, "qeltvapi_get_current_ad_info", "data", kLayout, sizeof(QELTV_AUDIO_TRACK_T), ""},
        {kMain, "qeltvapi_get_inputsource_current_audio_info", "data", kLayout,
         sizeof(QELTV_AUDIO_TRACK_T), ""},
        {kMain, "qeltvapi_teletext_get_cur_page", "page", kLayout, sizeof(QELTV_TELETEXT_PAGE_T),
         ""},

        {kCi, "qeltvapi_ci_get", "answer", kAtMost, 1, "len"},
        {kCi, "qeltvapi_ci_get", "answer", Rule::Kind::kCountedByType, 0, "answerLen"},
        {kCi, "qeltvapi_ci_key_get_host_id", "id", kAtMost, 1, "len"},
        {kCi, "qeltvapi_ci_key_get_host_id", "id", kCounted, 0, "idLen"},

        SVL("qeltvapi_channellist_get_channel_by_id"),
        TSL("qeltvapi_channellist_get_channel_by_id"),
        SVL("qeltvapi_channellist_get_svl_rec_by_channel_id"),
        SVL("qeltvapi_channellist_get_current_channel"),
        TSL("qeltvapi_channellist_get_current_channel"),
        SVL("qeltvapi_channellist_get_current_channel_from_nav"),
        TSL("qeltvapi_channellist_get_current_channel_from_nav"),
        SVL("qeltvapi_channellist_get_svl_tsl_rec_by_handle"),
        TSL("qeltvapi_channellist_get_svl_tsl_rec_by_handle"),
        {kLists, "qeltvapi_favoritelist_get_crnt_fav_lst_by_filter", "list", kRecord,
         QELTVAPI_FAVORITE_LIST_REC_SIZE, ""},
        SVL("qeltvapi_channellist_get_channellist_by_query_info"),
        TSL("qeltvapi_channellist_get_channellist_by_query_info"),
        SVL("qeltvapi_channellist_get_svl_rec_by_index"),
        SVL("qeltvapi_channellist_get_svl_rec_by_index_and_name"),
        SVL("qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id"),
        TSL("qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id"),
        SVL("qeltvapi_favorite_list_get_svl_rec_by_index"),
        SVL("qeltvapi_favorite_list_get_svl_tsl_rec_by_index"),
        TSL("qeltvapi_favorite_list_get_svl_tsl_rec_by_index"),
        SVL("qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst"),
        {kLists, "c_svl_get_rec", "data", kRecord, QELTVAPI_SVL_REC_SIZE, ""},
        {kLists, "c_tsl_get_rec", "data", kRecord, QELTVAPI_TSL_REC_SIZE, ""},
        LIST_RECORD("qeltvapi_satllist_get_rec", QELTVAPI_SATL_REC_SIZE),
        LIST_RECORD("qeltvapi_satllist_get_rec_by_rec_idx", QELTVAPI_SATL_REC_SIZE),
        LIST_RECORD("qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id", QELTVAPI_BSL_REC_SIZE),
        LIST_RECORD("qeltvapi_bisskey_get_bsl_rec_by_idx", QELTVAPI_BSL_REC_SIZE),
        LIST_RECORD("qeltvapi_bisskey_get_bsl_rec_by_header", QELTVAPI_BSL_REC_SIZE),
        LIST_RECORD("qeltvapi_bisskey_get_default_record", QELTVAPI_BSL_REC_SIZE),
        LIST_RECORD("qeltvapi_tsl_get_rec", QELTVAPI_TSL_REC_SIZE),
        LIST_RECORD("qeltvapi_tsl_get_rec_by_rec_idx", QELTVAPI_TSL_REC_SIZE),
        LIST_RECORD("qeltvapi_nwl_get_rec", QELTVAPI_NWL_REC_SIZE),
        LIST_RECORD("qeltvapi_nwl_get_rec_by_rec_idx", QELTVAPI_NWL_REC_SIZE),
        {kLists, "qeltvapi_channellist_get_svl_tsl_recs_by_mask", "svl", kLayout,
         QELTVAPI_SVL_REC_SIZE, ""},
        {kLists, "qeltvapi_channellist_get_svl_tsl_recs_by_mask", "tsl", kLayout,
         QELTVAPI_TSL_REC_SIZE, ""},
        {kLists, "qeltvapi_tsl_get_tsl_recs_by_satl_rec_id", "recs", kLayout, QELTVAPI_TSL_REC_SIZE,
         ""},
        {kLists, "qeltvapi_nwl_get_nwl_recs_by_satl_rec_id", "recs", kLayout, QELTVAPI_NWL_REC_SIZE,
         ""},

        {kConfig, "qeltvapi_config_get_str_value", "value", kCounted, 0, "n"},
        {kConfig, "qeltvapi_config_get_items_enabled", "items", kCounted, 0, "n"},
        {kConfig, "qeltvapi_config_get_video_resolution", "record", kLayout, 4 * sizeof(uint32_t),
         ""},

        {kEvent, "qeltvapi_event_query_event_id_by_range", "ids", kAtMost, 1, "capacity"},
        {kEvent, "qeltvapi_event_query_event_id_by_range", "ids", kCounted, 0, "count"},
        {kEvent, "qeltvapi_event_query_event_id_by_filter", "ids", kAtMost, 1, "capacity"},
        {kEvent, "qeltvapi_event_query_event_id_by_filter", "ids", kCounted, 0, "count"},
        {kEvent, "qeltvapi_event_query_event_id_by_filter", "channels", kCounted, 0, "count"},
        {kEvent, "qeltvapi_event_get_active_win_list", "channels", kAtMost, 1, "count"},
        BLOCK("qeltvapi_event_get_details_info"),
        BLOCK("qeltvapi_event_get_guidance_info"),
        BLOCK("qeltvapi_event_get_details_extend_info"),
        BLOCK("qeltvapi_event_get_group_info"),
        BLOCK("qeltvapi_event_get_series_info"),
        BLOCK("qeltvapi_event_get_rating_list"),
        BLOCK("qeltvapi_event_get_content_identifier"),
        BLOCK("qeltvapi_event_get_audio_comp_info"),
        {kEvent, "qeltvapi_event_get_general_info", "block", kLayout, sizeof(QELTV_EVENT_GENERAL_T),
         ""},

        {kBrowser, "qeltvapi_mmp_get_pvr_browser_item_by_path", "item", kLayout,
         sizeof(QELTV_BROWSER_ITEM_T), ""},
        {kBrowser, "qeltvapi_mmp_get_pvr_browser_item_by_index", "item", kLayout,
         sizeof(QELTV_BROWSER_ITEM_T), ""},
        {kBrowser, "qeltvapi_mmp_get_pvr_browser_recording_file_info", "info", kLayout,
         sizeof(QELTV_BROWSER_INFO_T), ""},

        {"IQelTvApiRating", "qeltvapi_rating_get_op_vchip_info", "table", kRecord,
         QELTVAPI_RATING_OPEN_VCHIP_TABLE_SIZE, ""},
        {"IQelTvApiRecord", "qeltvapi_record_pvr_get_recording_file_name", "name", kAtMost, 1,
         "room"},
        {"IQelTvApiRecord", "qeltvapi_get_schedule_record", "record", kRecord,
         QELTVAPI_SCHEDULE_RECORD_SIZE, ""},

        {kScan, "qeltvapi_get_user_message", "reply", kAtMost, 1, "room"},
        {kScan, "qeltvapi_get_user_message", "reply", kCounted, 0, "length"},
        {kScan, "qeltvapi_scan_dvbc_get_str_data", "reply", kAtMost, 1, "room"},
        {kScan, "qeltvapi_scan_dvbc_get_str_data", "reply", kCounted, 0, "length"},
};

const transactions::Value* find(const std::vector<transactions::Value>& values,
                                const std::string& name) {
    for (const transactions::Value& value : values) {
        if (name == value.name) return &value;
    }
    return nullptr;
}

/** How much a parameter allows: its value, or its elements. */
int64_t allowed(const Rule& rule, const transactions::Method& method, const Json& arguments) {
    const transactions::Value* parameter = find(method.parameters, rule.other);
    const Json& value = arguments.at(rule.other);
    if (parameter->type->kind == Kind::kVector || parameter->type->kind == Kind::kString) {
        return static_cast<int64_t>(elementsOf(*parameter->type, value));
    }
    return value.get<int64_t>();
}

}  // namespace

std::vector<const Rule*> rulesOf(const Target& target, const transactions::Method& method) {
    std::vector<const Rule*> rules;
    for (const Rule& rule : kRules) {
        if (strcmp(rule.interface, target.interface->name) == 0 &&
            std::string("a_hidl_") + rule.method == method.name) {
            rules.push_back(&rule);
        }
    }
    return rules;
}

bool bounds(const std::vector<const Rule*>& rules, const std::string& parameter) {
    for (const Rule* rule : rules) {
        const bool names = rule->kind == Rule::Kind::kAtMost ||
                           rule->kind == Rule::Kind::kAsRequested ||
                           rule->kind == Rule::Kind::kAlwaysAsRequested;
        if (names && parameter == rule->other) return true;
    }
    return false;
}

size_t elementsOf(const transactions::Type& type, const Json& value) {
    if (type.kind == Kind::kVector && type.element->kind != Kind::kUint8) return value.size();
    if (type.kind == Kind::kVector) return value.get_ref<const std::string&>().size() / 2;
    if (value.is_object()) return value.at("hex").get_ref<const std::string&>().size() / 2;
    return value.get_ref<const std::string&>().size();
}

Verdict judge(const Rule& rule, const transactions::Method& method, const Json& arguments,
              const Reply& reply) {
    Verdict verdict;
    const bool done = succeeded(method, reply);
    const size_t received =
            elementsOf(*find(method.results, rule.result)->type, reply.results.at(rule.result));
    int64_t expected = 0;
    bool kept = true;
    std::string words, says;
    switch (rule.kind) {
        case Rule::Kind::kRecord:
            verdict.applies = done;
            expected = static_cast<int64_t>(rule.size);
            kept = received == rule.size;
            break;
        case Rule::Kind::kLayout:
            // A television without such a thing sends none.
            verdict.applies = done && received != 0;
            expected = static_cast<int64_t>(rule.size);
            kept = received % rule.size == 0;
            words = "a multiple of ";
            break;
        case Rule::Kind::kAsRequested:
        case Rule::Kind::kAlwaysAsRequested:
            expected = allowed(rule, method, arguments);
            verdict.applies =
                    expected >= 0 && (done || rule.kind == Rule::Kind::kAlwaysAsRequested);
            kept = static_cast<int64_t>(received) == expected;
            break;
        case Rule::Kind::kAtMost:
            expected = allowed(rule, method, arguments);
            verdict.applies = expected >= 0;
            expected *= static_cast<int64_t>(rule.size);
            kept = static_cast<int64_t>(received) <= expected;
            words = "at most ";
            break;
        case Rule::Kind::kCountedByType:
        case Rule::Kind::kCounted:
            verdict.applies = true;
            expected = reply.results.at(rule.other).get<int64_t>();
            if (rule.kind == Rule::Kind::kCountedByType && arguments.at("type") == 15) {
                expected *= 2;
            }
            kept = static_cast<int64_t>(received) == expected;
            says = std::string(", as ") + rule.other + " says";
            break;
    }
    if (verdict.applies && !kept) {
        const bool bytes = find(method.results, rule.result)->type->kind == Kind::kString ||
                           find(method.results, rule.result)->type->element->kind == Kind::kUint8;
        const std::string unit = bytes ? " bytes" : " elements";
        verdict.expected = words + std::to_string(expected) + unit + " of " + rule.result + says;
        verdict.received = std::to_string(received);
    }
    return verdict;
}

void verifyRules() {
    for (const Rule& rule : kRules) {
        const auto* interface = transactions::findInterface(rule.interface);
        if (interface == nullptr) throw std::logic_error(rule.interface);
        const auto& method = methodOf(*interface, std::string("a_hidl_") + rule.method);
        const bool result =
                rule.kind == Rule::Kind::kCounted || rule.kind == Rule::Kind::kCountedByType;
        if (find(method.results, rule.result) == nullptr ||
            (*rule.other != '\0' &&
             find(result ? method.results : method.parameters, rule.other) == nullptr)) {
            throw std::logic_error(std::string("a rule of ") + rule.method +
                                   " names what is not there");
        }
    }
}

}  // namespace conformance
