#include <hidl/HidlBinderSupport.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BpHwQelTvApiCallback.h>

#include <atomic>
#include <thread>

#include "eventually.h"
#include "hw_iom.h"
#include "hw_pcl.h"
#include "hw_qeltvapi_3dmode.h"
#include "hw_qeltvapi_apptv.h"
#include "hw_qeltvapi_audioinfo.h"
#include "hw_qeltvapi_banner.h"
#include "hw_qeltvapi_bisskey.h"
#include "hw_qeltvapi_bml.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_ch_logo.h"
#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_ci.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_dvbsconfig.h"
#include "hw_qeltvapi_eas.h"
#include "hw_qeltvapi_event.h"
#include "hw_qeltvapi_event_atsc.h"
#include "hw_qeltvapi_ews.h"
#include "hw_qeltvapi_ews_pa.h"
#include "hw_qeltvapi_ginga.h"
#include "hw_qeltvapi_hbbtv.h"
#include "hw_qeltvapi_highlevel.h"
#include "hw_qeltvapi_html_agent.h"
#include "hw_qeltvapi_mds.h"
#include "hw_qeltvapi_mheg5.h"
#include "hw_qeltvapi_oad.h"
#include "hw_qeltvapi_pwddlg.h"
#include "hw_qeltvapi_rating.h"
#include "hw_qeltvapi_record.h"
#include "hw_qeltvapi_scan.h"
#include "hw_qeltvapi_screensaver.h"
#include "hw_qeltvapi_subtitle.h"
#include "hw_qeltvapi_teletext.h"
#include "hw_qeltvapi_time.h"
#include "hw_qeltvapi_timeshift.h"
#include "hw_qeltvapi_tts.h"
#include "hw_qeltvapi_upgrade.h"
#include "hw_qeltvapi_util.h"
#include "hw_qeltvapi_videoinfo.h"
#include "hw_qeltvapi_warning.h"
#include "hw_sm.h"
#include "hw_svctx.h"
#include "inbox.h"
#include "wire.h"

using namespace wire;
using namespace vendor::qelnova::tv::qeltvapi::V1_0;
using android::sp;
using android::hardware::IBinder;
using android::hardware::Parcel;

namespace {

constexpr char kTag[] = "QelTvApiCallbackImpl(client)";
const Bytes kData("\x81\0\x02\xfe\x7f", 5);

/** The client's callback object, registered when first asked for. */
sp<IBinder> callback() {
    ScriptedService& service = ScriptedService::instance();
    // The Common Interface's service stays missing: its slot does not need it.
    service.start({"IQelTvApi", "IQelTvApiConfig"});
    if (service.callback() == nullptr) registerCallbackHandler();
    eventually([&] { return service.callback() != nullptr; });
    return service.callback();
}

/** Sends a notification; "" when it was answered OK with these values. */
std::string notify(uint32_t ordinal, const Values& values, const Values& answer = {}) {
    const sp<IBinder> object = callback();
    if (object == nullptr) return "no callback object";
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(IQelTvApiCallback::descriptor);
    for (const Value& value : values) value.write(&data);
    if (object->transact(IBinder::FIRST_CALL_TRANSACTION + ordinal, data, &reply) != android::OK) {
        return "not delivered";
    }
    android::hardware::Status status;
    if (android::hardware::readFromParcel(&status, reply) != android::OK || !status.isOk()) {
        return "not answered OK";
    }
    return compareAll(answer, reply);
}

// What the application's function has received, as text; nothing when it was not called.
Inbox<std::vector<std::string>> gSeen;

template <class T, class = std::enable_if_t<std::is_arithmetic_v<T>>>
std::string shown(T value) {
    return std::to_string(value);
}
std::string shown(const char* value) {
    return value;
}
/** All data of these tests is kData. */
std::string shown(const void* value) {
    return Bytes(static_cast<const char*>(value), kData.size());
}

/** A function of any slot's type that notes its arguments. */
template <class F>
struct Recorder;
template <class R, class... A>
struct Recorder<R (*)(A...)> {
    static R call(A... args) {
        gSeen.put({shown(args)...});
        return R{77};
    }
};

template <class F>
F recorder(bool on) {
    return on ? Recorder<F>::call : nullptr;
}

template <class F>
F typeOf(int (*)(F));

/** Fills or clears the slot of a register function. */
template <auto kRegister>
void slot(bool on) {
    EXPECT_EQ(0, kRegister(recorder<decltype(typeOf(kRegister))>(on)));
}

void listenerSlot(bool on) {
    EXPECT_EQ(0, c_svctx_set_listener(5, recorder<qeltvapi_svctx_listener_t>(on)));
}

void sourceDetectSlot(bool on) {
    ScriptedService::instance().expect({u32(7), u64(0)}, {i32(0)});
    EXPECT_EQ(0,
              c_scc_vid_set_src_detect_nfy(7, recorder<qeltvapi_src_detect_nfy_cb_t>(on), nullptr));
}

void pclSlot(bool on) {
    EXPECT_EQ(0,
              on ? c_pcl_reg_nfy_fct(3, recorder<qeltvapi_pcl_cb_t>(true)) : c_pcl_dereg_nfy_fct());
}

void uartSlot(bool on) {
    ScriptedService::instance().expect({u32(8), u32(1), str("uart"), memory(16), u64(0)},
                                       {u32(2), i32(0)});
    const qeltvapi_iom_uart_setting_t setting{};
    uint32_t handle = 0;
    EXPECT_EQ(0, c_iom_open_uart(8, 1, "uart", &setting, nullptr,
                                 recorder<qeltvapi_iom_notify_cb_t>(on), &handle));
}

void ciSlot(bool on) {
    int32_t handle = 0;
    EXPECT_EQ(-1, on ? a_qeltvapi_ci_reg_cb(&handle, 1, 2, recorder<qeltvapi_ci_cb_t>(true))
                     : a_qeltvapi_ci_unreg_cb(9));
}

/** One value of a notification: as it crosses, as the function sees it, as it is traced. */
struct Arg {
    Value wire;
    std::string seen;
    std::string traced;
};

/**
 * A value of a kind at a place, different at every place: i, u 32-bit with and without sign, h
 * 16-bit, b and f the truth values, T tag above 2^32, L tag of which every process sees the low
 * half, s text, v data.
 */
Arg makeArg(char kind, size_t place) {
    const auto k = static_cast<uint32_t>(place);
    const uint64_t tag = (uint64_t{k} + 1) << 32 | (0xf0000000 + k);
    const std::string name = "text " + std::to_string(k);
    switch (kind) {
        case 'i': {
            const int32_t value = -1000 - static_cast<int32_t>(k);
            return {i32(value), shown(value), shown(value)};
        }
        case 'u': {
            const uint32_t value = 0x80000000 + k;
            return {u32(value), shown(value), shown(static_cast<int32_t>(value))};
        }
        case 'h': {
            const auto value = static_cast<uint16_t>(0xf000 + k);
            return {u16(value), shown(value), shown(value)};
        }
        case 'b':
            return {boolean(true), "1", "1"};
        case 'f':
            return {boolean(false), "0", "0"};
        case 'T':
            return {u64(tag), shown(static_cast<uintptr_t>(tag)), shown(tag)};
        case 'L':
            return {u64(tag), shown(static_cast<uint32_t>(tag)), shown(tag)};
        case 's':
            return {str(name), name, name};
        default:
            return {bytes(kData), kData, ""};
    }
}

struct Notification {
    uint32_t ordinal;
    const char* method;
    /** Fills or clears the slot; null when no function of the library fills one. */
    void (*slot)(bool);
    /** Kinds of the values, see makeArg(). */
    const char* kinds;
    /** The trace, "{k}" the k-th value; "" for none. */
    std::string trace = "";
    /** Traced beside it when the slot is empty. */
    std::string traceWhenEmpty = "";
    /** What the function sees behind the values. */
    std::vector<std::string> more = {};
};

const std::vector<Notification>& notifications() {
    // The queries, and the enquiry and menu of the Common Interface, have tests of their own.
    static const std::vector<Notification> all = {
            {0, "x_svctx_listener_nfy_fct", listenerSlot, "uhhhT", "121> {0} {1}"},
            {1, "x_svctx_select_nfy_fct", nullptr, "uuuuT", "140> {0} {1} {2} {3}"},
            {2, "x_scc_vid_src_detect_nfy_fct", sourceDetectSlot, "uuTuu", "160> {0}"},
            {3, "qeltvapi_highlevel_callback_fct", slot<a_qeltvapi_highlevel_register_callback>,
             "iTTTTT", "181> {0}"},
            {4, "qeltvapi_3dmode_callback_fct", slot<a_qeltvapi_3dmode_register_callback>, "iTTTTT",
             "201> {0}"},
            {5, "qeltvapi_osdmessage_callback_fct", nullptr, "bTTTTT", "221> {0}"},
            {5, "qeltvapi_osdmessage_callback_fct", nullptr, "fTTTTT", "221> {0}"},
            {6, "qeltvapi_special_mode_callback", nullptr, "iTT", "227> {0}"},
            {7, "qeltvapi_util_nousedkey_callback",
             slot<a_qeltvapi_util_register_nousedkey_callback>, "iTTTTT", "239> {0}"},
            {9, "qeltvapi_eas_callback_fct", slot<a_qeltvapi_eas_reg_callback>, "iTTTTT"},
            {10, "qeltvapi_ginga_callback_fct", slot<a_qeltvapi_ginga_register_callback>, "iTvTT",
             "319> {0}"},
            {11, "qeltvapi_ginga_volume_callback_fct",
             slot<a_qeltvapi_ginga_volume_register_callback>, "iTTTT", "337> {0}"},
            {12, "qeltvapi_ginga_update_callback_fct",
             slot<a_qeltvapi_ginga_update_register_callback>, "iTTTT", "355> {0}"},
            {13, "qeltvapi_scan_callback_fct", slot<a_qeltvapi_scan_reg_callback>, "iTTTTT"},
            {14, "qeltvapi_broadcast_callback_fct", slot<a_qeltvapi_broadcast_register_callback>,
             "iTTTTT"},
            {15, "qeltvapi_screensaver_msg_callback_fct",
             slot<a_qeltvapi_screensaver_register_msg_callback>, "iTTTT", "411> {0}"},
            {16, "qeltvapi_warning_msg_callback", slot<a_qeltvapi_warning_register_msg_callback>,
             "iTTTTT"},
            {17, "qeltvapi_banner_callback", slot<a_qeltvapi_banner_register_callback>, "iTTTTT"},
            {18, "qeltvapi_rating_op_vchip_callback_fct",
             slot<a_qeltvapi_rating_op_vchip_reg_callback>, "iTTTTT"},
            {19, "qeltvapi_channel_logo_data_update_callback_fct",
             slot<a_qeltvapi_ch_logo_reg_callback>, "iTiiii", "503> {0}"},
            {20, "qeltvapi_subtitle_callback", slot<a_qeltvapi_subtitle_reg_callback>, "iTTTTT"},
            {21, "qeltvapi_pwddlg_callback_fct", slot<a_qeltvapi_pwddlg_register_msg_callback>,
             "iTTTTT", "543> {0}"},
            {22, "event_update_nfy_fct", slot<a_qeltvapi_event_register_callback>, "iTTTTT",
             "583> {0}"},
            {23, "timeshift_jni_callback_fct", slot<a_qeltvapi_timeshift_register_callback>,
             "iTTT"},
            {24, "qeltvapi_dt_callback_fct", slot<a_qeltvapi_time_register_dt_event_callback>,
             "iTT"},
            {25, "qeltvapi_sleep_timer_callback_fct",
             slot<a_qeltvapi_time_register_sleep_timer_callback>, "iTT"},
            {26, "qeltvapi_sync_source_callback_fct",
             slot<a_qeltvapi_time_register_sync_source_callback>, "iTT"},
            {27, "x_pcl_nfy_fct", pclSlot, "uTuu"},
            {28, "event_event_atsc_nfy_fct", slot<a_qeltvapi_event_atsc_register_callback>,
             "iTTTTT", "672> {0}"},
            {29, "config_update_nfy_fct", slot<a_qeltvapi_config_reg_callback>, "iTTsTT",
             "522> {0}"},
            {30, "iom_uart_nfy_fct", uartSlot, "TTv", "", "", {std::to_string(kData.size())}},
            {31, "qeltvapi_apptv_register_callback_fct", slot<a_qeltvapi_apptv_register_callback>,
             "iTTTTT", "707> {0}"},
            {32, "qeltvapi_hbbtv_msg_callback", slot<a_qeltvapi_hbbtv_reg_msg_callback>, "iTv"},
            {33, "qeltvapi_oad_callback_fct", slot<a_qeltvapi_oad_register_callback>, "iTsibi"},
            {33, "qeltvapi_oad_callback_fct", slot<a_qeltvapi_oad_register_callback>, "iTsifi"},
            {34, "qeltvapi_mheg5_msg_callback", slot<a_qeltvapi_mheg5_register_msg_callback>,
             "iTiii",
             "762> {MHEG5} i4_type:{0}, pv_tag:{1}, i4_arg1:{2}, i4_arg2:{3}, i4_arg3:{4}."},
            {35, "qeltvapi_mheg5_lanuch_hbbtv_nfy_fct", slot<a_qeltvapi_mheg5_reg_launch_hbbtv_nfy>,
             "sTi", "783> {MHEG5} ps_location:{0}, pv_tag:{1}, i4_arg1:{2}."},
            {37, "record_pvr_status_nfy_fct", slot<a_qeltvapi_record_pvr_register_callback>, "iTTT",
             "833> {0}"},
            {38, "qeltvapi_audio_update_nfy_fct", slot<a_qeltvapi_audio_info_register_callback>,
             "iTTTTT"},
            {39, "qeltvapi_upgrade_callback_fct", slot<a_qeltvapi_upgrade_register_callback>,
             "iiiT"},
            {40, "qeltvapi_channellist_update_callback_fct",
             slot<a_qeltvapi_channellist_register_callback>, "iTTTTT"},
            {41, "qeltvapi_tvprovider_channellist_update_callback_fct",
             slot<a_qeltvapi_tvprovider_channellist_register_callback>, "iTTTvT"},
            {42, "qeltvapi_svlid_update_callback_fct",
             slot<a_qeltvapi_svlid_update_register_callback>, "iTTTTT"},
            {43, "qeltvapi_tslid_update_callback_fct",
             slot<a_qeltvapi_tslid_update_register_callback>, "iTTTTT"},
            {44, "qeltvapi_listMode_update_callback_fct",
             slot<a_qeltvapi_listMode_update_register_callback>, "iTTT"},
            {45, "qeltvapi_ocl_scanInfo_callback_fct",
             slot<a_qeltvapi_ocl_scanInfo_register_callback>, "iTTT"},
            {46, "qeltvapi_ewspa_msg_callback", slot<a_qeltvapi_ewspa_reg_msg_callback>, "iT",
             "1006> {EWSPA} i4_type:{0}, pv_tag:{1}."},
            {47, "qeltvapi_teletext_register_msg_callback",
             slot<a_qeltvapi_teletext_register_msg_callback>, "iTTTT"},
            {48, "qeltvapi_bisskey_update_callback_fct", slot<a_qeltvapi_bisskey_register_callback>,
             "iTTTTT"},
            {49, "qeltvapi_satllist_update_callback_fct",
             slot<a_qeltvapi_satllist_register_callback>, "iTTTTT"},
            {50, "qeltvapi_ci_nfy_fct", ciSlot, "LLiv",
             "1079> {ci} e_nfy_cond:{2}, ui1_out_data.size():5, sizeof(UINT32):4\n"},
            {53, "qeltvapi_concern_column_update_callback_fct",
             slot<a_qeltvapi_concerncolumn_channellist_register_callback>, "iTTTvT"},
            {54, "qeltvapi_bml_msg_callback", slot<a_qeltvapi_bml_reg_msg_callback>, "iTv"},
            {55, "qeltvapi_html_agent_callback", slot<a_qeltvapi_html_agent_reg_callback>, "iTv"},
            {56, "qeltvapi_videoinfo_common_callback_fct",
             slot<a_qeltvapi_videoinfo_reg_common_nfy>, "iTTTTTTT", "1323> {0}",
             "1336> pf_video_common_nfy_fct is NULL\n"},
            {57, "x_dai_tvapi_update_fct", nullptr, "sT"},
            {58, "qeltvapi_tts_msg_callback", slot<a_qeltvapi_tts_reg_msg_callback>, "Tsu",
             "1368> {tts} pc_nfy_data:{1}, pv_tag:{0}, ui4_data_len:{2}."},
            {59, "qeltvapi_mds_msg_callback", slot<a_qeltvapi_mds_reg_msg_callback>, "Tsu",
             "1388> {mds} pc_nfy_data:{1}, pv_tag:{0}, ui4_data_len:{2}."},
            {60, "qeltvapi_ews_msg_callback", slot<a_qeltvapi_ews_reg_msg_callback>, "iT",
             "1406> {EWS} i4_type:{0}, pv_tag:{1}."},
    };
    return all;
}

/** The lines of the callback object since the last look. */
std::vector<std::string> lines() {
    std::vector<std::string> texts;
    for (const LogLine& line : takeLog()) {
        if (line.tag != kTag) continue;
        EXPECT_EQ(ANDROID_LOG_DEBUG, line.priority);
        texts.push_back(line.text);
    }
    return texts;
}

std::string traceOf(const Notification& n, std::string text, const std::vector<Arg>& args) {
    for (size_t k = 0; k < args.size(); ++k) {
        const std::string mark = "{" + std::to_string(k) + "}";
        if (const size_t at = text.find(mark); at != std::string::npos) {
            text.replace(at, mark.size(), args[k].traced);
        }
    }
    return std::string("<a_hidl_") + n.method + ":" + text;
}

void run(const Notification& n, bool debug, bool full) {
    SCOPED_TRACE(std::string(n.method) + (debug ? ", debugging" : "") +
                 (full ? "" : ", empty slot"));
    std::vector<Arg> args;
    Values values;
    std::vector<std::string> expected;
    for (const char* kind = n.kinds; *kind != '\0'; ++kind) {
        args.push_back(makeArg(*kind, args.size()));
        values.push_back(args.back().wire);
        expected.push_back(args.back().seen);
    }
    expected.insert(expected.end(), n.more.begin(), n.more.end());
    std::vector<std::string> traces;
    if (debug && !n.trace.empty()) traces.push_back(traceOf(n, n.trace, args));
    if (debug && !full && !n.traceWhenEmpty.empty()) {
        traces.push_back(traceOf(n, n.traceWhenEmpty, args));
    }

    takeLog();
    gSeen.clear();
    {
        Debug on(debug);
        EXPECT_EQ("", notify(n.ordinal, values));
    }
    EXPECT_EQ(traces, lines());
    const auto seen = gSeen.takeNow();
    ASSERT_EQ(full, seen.has_value()) << "the function was " << (full ? "not " : "") << "called";
    if (full) EXPECT_EQ(expected, *seen);
}

TEST(Notifications, NeedTheServiceWhenASourceDetectionIsRegistered) {
    ASSERT_FALSE(ScriptedService::instance().started());
    EXPECT_EQ(-1, c_scc_vid_set_src_detect_nfy(7, recorder<qeltvapi_src_detect_nfy_cb_t>(true),
                                               nullptr));
    EXPECT_EQ("", notify(2, {u32(1), u32(2), u64(3), u32(4), u32(5)}));
    EXPECT_FALSE(gSeen.takeNow().has_value());
}

TEST(Notifications, ReachTheFunctionOfTheirSlotWithTheValuesConverted) {
    captureLog();
    ASSERT_NE(nullptr, callback());
    for (const Notification& n : notifications()) {
        if (n.slot == nullptr) continue;
        n.slot(true);
        for (bool debug : {false, true}) run(n, debug, true);
        n.slot(false);
    }
}

// Runs after the one above: every slot has been filled and cleared.
TEST(Notifications, AreDroppedWithoutAFunction) {
    captureLog();
    ASSERT_NE(nullptr, callback());
    for (const Notification& n : notifications()) {
        for (bool debug : {false, true}) run(n, debug, false);
    }
}

TEST(Notifications, OfTheRecordingReachItsFunctionWhenTheUpgradeUnregisters) {
    ASSERT_NE(nullptr, callback());
    slot<a_qeltvapi_upgrade_register_callback>(true);
    EXPECT_EQ(0, a_qeltvapi_upgrade_unregister_callback(Recorder<qeltvapi_pvr_status_cb_t>::call));
    gSeen.clear();
    EXPECT_EQ("", notify(37, {i32(1), u64(2), u64(3), u64(4)}));
    EXPECT_EQ((std::vector<std::string>{"1", "2", "3", "4"}), gSeen.takeNow());
    EXPECT_EQ("", notify(39, {i32(5), i32(6), i32(7), u64(8)}));
    EXPECT_EQ((std::vector<std::string>{"5", "6", "7", "8"}), gSeen.takeNow());

    EXPECT_EQ(0, a_qeltvapi_upgrade_unregister_callback(nullptr));
    EXPECT_EQ("", notify(37, {i32(1), u64(2), u64(3), u64(4)}));
    EXPECT_FALSE(gSeen.takeNow().has_value());
    slot<a_qeltvapi_upgrade_register_callback>(false);
}

uint32_t answerQuery(uint32_t query, void* data, uint32_t size, uintptr_t tag) {
    auto* block = static_cast<unsigned char*>(data);
    const bool clear = std::all_of(block, block + size, [](unsigned char b) { return b == 0; });
    gSeen.put({shown(query), shown(size), shown(tag), clear ? "clear" : "not clear"});
    if (size > 1) block[1] = 0xee;
    return 0xfedc0001;
}

TEST(Notifications, AlwaysAnswerAQuestionToTheAndroidSide) {
    captureLog();
    ASSERT_NE(nullptr, callback());
    takeLog();
    Debug on(true);
    const Values question = {u32(0x80000011), u64(0x1122334455), u32(3), u64(0xf000000012345678)};
    EXPECT_EQ("", notify(8, question, {u32(0), bytes("")}));

    a_qeltvapi_highlevel_register_android_responser(answerQuery);
    EXPECT_EQ("", notify(8, question, {u32(0xfedc0001), bytes(Bytes("\0\xee\0", 3))}));
    EXPECT_EQ(
            (std::vector<std::string>{"2147483665", "3",
                                      shown(static_cast<uintptr_t>(0xf000000012345678)), "clear"}),
            gSeen.takeNow());
    EXPECT_EQ("", notify(8, {u32(1), u64(0), u32(0), u64(0)}, {u32(0xfedc0001), bytes("")}));
    EXPECT_TRUE(lines().empty()) << "it has no trace";
    a_qeltvapi_highlevel_register_android_responser(nullptr);
    gSeen.clear();
}

int answerMimeType(const char* mime, uint8_t* pb_supported, uintptr_t tag, int32_t arg1) {
    gSeen.put({mime, shown(tag), shown(arg1), shown(*pb_supported)});
    *pb_supported = strcmp(mime, "audio/ac3") == 0 ? 2 : 0;
    return -31;
}

TEST(Notifications, AnswerAQuestionAboutAMimeTypeAndThenTraceIt) {
    captureLog();
    ASSERT_NE(nullptr, callback());
    takeLog();
    const auto ask = [](const char* mime) { return Values{str(mime), u64(0x300000004), i32(-9)}; };
    const auto trace = [](const std::string& mime, int supported) {
        return std::vector<std::string>{
                "<a_hidl_qeltvapi_mheg5_is_mime_type_support_fct:817> {MHEG5} ps_mime_type:" +
                mime + ", b_supported:" + std::to_string(supported) +
                ", pv_tag:12884901892, i4_arg1:-9."};
    };
    {
        Debug on(true);
        EXPECT_EQ("", notify(36, ask("audio/ac3"), {boolean(false), i32(-1)}));
        EXPECT_EQ(trace("audio/ac3", 0), lines());

        a_qeltvapi_mheg5_reg_is_mime_type_support_fct(1, answerMimeType);
        EXPECT_EQ("", notify(36, ask("audio/ac3"), {boolean(true), i32(-31)}));
        EXPECT_EQ(trace("audio/ac3", 2), lines());
    }
    EXPECT_EQ((std::vector<std::string>{"audio/ac3", shown(static_cast<uintptr_t>(0x300000004)),
                                        "-9", "0"}),
              gSeen.takeNow());
    EXPECT_EQ("", notify(36, ask("text/plain"), {boolean(false), i32(-31)}));
    EXPECT_TRUE(lines().empty());
    a_qeltvapi_mheg5_reg_is_mime_type_support_fct(1, nullptr);
    gSeen.clear();
}

TEST(Notifications, TraceACardInsertionWithItsSlot) {
    captureLog();
    ASSERT_NE(nullptr, callback());
    takeLog();
    Debug on(true);
    const std::string function = "a_hidl_qeltvapi_ci_nfy_fct";
    const auto traces = [&](int size, int slot) {
        const std::string place = "<" + function + ":";
        return std::vector<std::string>{
                place + "1079> {ci} e_nfy_cond:0, ui1_out_data.size():" + std::to_string(size) +
                        ", sizeof(UINT32):4\n",
                place + "1090> " + function + " QELTVAPI_CI_NFY_COND_CARD_INSERT",
                place + "1092> " + function +
                        " no CI_IGNORE_CAM_INSERT_BOOTUP, slotId:" + std::to_string(slot)};
    };
    EXPECT_EQ("", notify(50, {u64(1), u64(2), i32(QELTVAPI_CI_NFY_COND_CARD_INSERT),
                              bytes(bytesOf(uint32_t{258}))}));
    EXPECT_EQ(traces(4, 258), lines());
    EXPECT_EQ("",
              notify(50, {u64(1), u64(2), i32(QELTVAPI_CI_NFY_COND_CARD_INSERT), bytes("\x03")}));
    EXPECT_EQ(traces(1, 3), lines());
    // Another condition is not traced like that, and without debugging nothing is.
    EXPECT_EQ("", notify(50, {u64(1), u64(2), i32(QELTVAPI_CI_NFY_COND_CARD_INSERT + 1),
                              bytes("\x03")}));
    EXPECT_EQ(1u, lines().size());
    Debug off(false);
    EXPECT_EQ("",
              notify(50, {u64(1), u64(2), i32(QELTVAPI_CI_NFY_COND_CARD_INSERT), bytes("\x03")}));
    EXPECT_TRUE(lines().empty());
}

std::string narrow(const uint16_t* text) {
    std::string all;
    for (; *text != 0; ++text) all += static_cast<char>(*text);
    return all;
}

void seeCi(uint32_t nfy, uint32_t tag, int32_t cond, std::vector<std::string> more) {
    std::vector<std::string> all{shown(nfy), shown(tag), shown(cond)};
    all.insert(all.end(), more.begin(), more.end());
    gSeen.put(all);
}

int seeEnquiry(uint32_t nfy, uint32_t tag, int32_t cond, const void* data) {
    const auto* enq = static_cast<const QELTVAPI_CI_MMI_ENQ_T*>(data);
    seeCi(nfy, tag, cond, {shown(enq->b_blind), shown(enq->ui1_ans_len), narrow(enq->w2s_text)});
    return 0;
}

int seeMenu(uint32_t nfy, uint32_t tag, int32_t cond, const void* data) {
    const auto* menu = static_cast<const QELTVAPI_CI_MMI_MENU_T*>(data);
    std::vector<std::string> texts = {narrow(menu->w2s_title), narrow(menu->w2s_sub_title),
                                      narrow(menu->w2s_bottom)};
    for (uint32_t i = 0; i < menu->ui4_choices; ++i) {
        texts.push_back(narrow(menu->pw2s_choice[i]));
    }
    seeCi(nfy, tag, cond, texts);
    return 0;
}

/** The Common Interface's slot with a function of the test's, for a scope. */
struct CiFunction {
    explicit CiFunction(qeltvapi_ci_cb_t function) {
        int32_t handle = 0;
        a_qeltvapi_ci_reg_cb(&handle, 1, 2, function);
    }
    ~CiFunction() { a_qeltvapi_ci_unreg_cb(9); }
};

TEST(Notifications, PassAnEnquiryOfTheCamAsARecordWithATerminatedText) {
    ASSERT_NE(nullptr, callback());
    takeLog();
    Debug on(true);
    const Value enquiry = record(Bytes("\1\4", 2) + Bytes(22, '\0'))
                                  .vec(8, bytesOf<uint16_t>({'P', 'I', 'N'}), sizeof(uint16_t));
    const Values values = {u64(0x500000006), u64(0x700000008), i32(-12), enquiry};
    EXPECT_EQ("", notify(51, values));
    CiFunction function(seeEnquiry);
    EXPECT_EQ("", notify(51, values));
    EXPECT_EQ((std::vector<std::string>{"6", "8", "-12", "1", "4", "PIN"}), gSeen.takeNow());
    EXPECT_TRUE(lines().empty()) << "it has no trace";
}

TEST(Notifications, PassAMenuOfTheCamAsARecordWithItsChoices) {
    ASSERT_NE(nullptr, callback());
    takeLog();
    Debug on(true);
    CiFunction function(seeMenu);
    HIDL_CI_MMI_MENU_T menu;
    menu.title = {'C', 'A', 'M'};
    menu.sub_title = {'S'};
    menu.choices.resize(2);
    menu.choices[0] = {'o', 'n', 'e'};
    menu.choices[1] = {'t', 'w', 'o'};
    const sp<IQelTvApiCallback> proxy = new BpHwQelTvApiCallback(callback());
    EXPECT_TRUE(proxy->a_hidl_qeltvapi_ci_nfy_fct_menu(0x500000006, 0x700000008, 13, menu).isOk());
    EXPECT_EQ((std::vector<std::string>{"6", "8", "13", "CAM", "S", "", "one", "two"}),
              gSeen.takeNow());
    EXPECT_TRUE(proxy->a_hidl_qeltvapi_ci_nfy_fct_menu(6, 8, 13, HIDL_CI_MMI_MENU_T()).isOk());
    EXPECT_EQ((std::vector<std::string>{"6", "8", "13", "", "", ""}), gSeen.takeNow());
    EXPECT_TRUE(lines().empty()) << "it has no trace";
}

int reregister(int32_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    a_qeltvapi_banner_register_callback(Recorder<qeltvapi_banner_cb_t>::call);
    const int result = a_qeltvapi_config_set_value(1, "from inside", 2, 3);
    gSeen.put({"the service answered " + std::to_string(result)});
    return 0;
}

TEST(Notifications, LetAFunctionCallTheServiceAndReplaceItself) {
    ASSERT_NE(nullptr, callback());
    const Values event = {i32(1), u64(2), u64(3), u64(4), u64(5), u64(6)};
    a_qeltvapi_banner_register_callback(reregister);
    ScriptedService::instance().expect({u32(1), str("from inside"), i32(2), i32(3)}, {i32(44)});
    EXPECT_EQ("", notify(17, event));
    EXPECT_EQ(std::vector<std::string>{"the service answered 44"}, gSeen.takeNow());
    EXPECT_EQ("", notify(17, event));
    EXPECT_EQ((std::vector<std::string>{"1", "2", "3", "4", "5", "6"}), gSeen.takeNow());
    a_qeltvapi_banner_register_callback(nullptr);
}

std::atomic<int> gFirst{0};
std::atomic<int> gSecond{0};
int countFirst(int32_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    return ++gFirst;
}
int countSecond(int32_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    return ++gSecond;
}

TEST(Notifications, MeetOneFunctionOrTheOtherWhileTheSlotChanges) {
    constexpr int kEach = 200;
    ASSERT_NE(nullptr, callback());
    a_qeltvapi_banner_register_callback(countFirst);
    std::atomic<bool> done{false};
    std::thread changer([&] {
        while (!done) {
            a_qeltvapi_banner_register_callback(countSecond);
            a_qeltvapi_banner_register_callback(countFirst);
        }
    });
    const auto raise = [] {
        for (int i = 0; i < kEach; ++i) {
            EXPECT_EQ("", notify(17, {i32(i), u64(2), u64(3), u64(4), u64(5), u64(6)}));
        }
    };
    std::thread one(raise);
    std::thread two(raise);
    one.join();
    two.join();
    done = true;
    changer.join();
    EXPECT_EQ(2 * kEach, gFirst + gSecond);
    a_qeltvapi_banner_register_callback(nullptr);
}

}  // namespace
