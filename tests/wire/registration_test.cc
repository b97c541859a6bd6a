// What a register function does beside filling its slot: trace, result, and whether it asks for the
// callback object to be registered. That each fills the right slot shows in the notifications.

#include <atomic>
#include <map>

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
#include "hw_qeltvapi_feature_misc.h"
#include "hw_qeltvapi_ginga.h"
#include "hw_qeltvapi_hbbtv.h"
#include "hw_qeltvapi_highlevel.h"
#include "hw_qeltvapi_html_agent.h"
#include "hw_qeltvapi_mds.h"
#include "hw_qeltvapi_mheg5.h"
#include "hw_qeltvapi_oad.h"
#include "hw_qeltvapi_pop.h"
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
#include "hw_qeltvapi_volctrl.h"
#include "hw_qeltvapi_warning.h"
#include "hw_svctx.h"
#include "wire.h"

using namespace wire;

namespace {
std::atomic<int> gRequests{0};
}

/** Stands in for the library's own in this program, and is always refused. */
__attribute__((visibility("default"))) int registerCallbackHandler() {
    ++gRequests;
    return -1;
}

namespace {

struct Registration {
    std::string function;
    /** Makes the registration, with no function. */
    std::function<int()> call;
    /** Module in the tag: "(hw_<module>)(client)". */
    std::string module;
    bool registers = false;
    /** Lines while tracing, "{f}" the function's name. */
    std::vector<std::string> trace = {};
    /** Line written regardless of the debug switch. */
    std::string always = "";
    int result = 0;
};

template <class F>
F typeOf(int (*)(F));

template <auto kRegister>
int none() {
    return kRegister(decltype(typeOf(kRegister)){});
}

#define NONE(function) #function, none < function>

std::vector<std::string> name(int line) {
    return {"<{f}:" + std::to_string(line) + "> {f}"};
}

int ciRegister() {
    int32_t handle = 0;
    return a_qeltvapi_ci_reg_cb(&handle, 1, 2, nullptr);
}

const std::vector<Registration>& registrations() {
    static const std::vector<Registration> all = {
            {"c_svctx_set_listener", [] { return c_svctx_set_listener(1, nullptr); }, "svctx",
             false, name(55)},
            {"c_pcl_reg_nfy_fct", [] { return c_pcl_reg_nfy_fct(1, nullptr); }, "pcl", false,
             name(444)},
            {"c_pcl_dereg_nfy_fct", [] { return c_pcl_dereg_nfy_fct(); }, "pcl", false, name(453)},
            {NONE(a_qeltvapi_3dmode_register_callback), "qeltvapi_3dmode"},
            {NONE(a_qeltvapi_apptv_register_callback), "qeltvapi_apptv", true, name(431)},
            {NONE(a_qeltvapi_audio_info_register_callback), "qeltvapi_audioinfo", true},
            {NONE(a_qeltvapi_banner_register_callback), "qeltvapi_banner", false, name(171)},
            {NONE(a_qeltvapi_bisskey_register_callback), "qeltvapi_bisskey", true, name(91)},
            {NONE(a_qeltvapi_broadcast_register_callback), "qeltvapi_broadcast", false, name(946)},
            {NONE(a_qeltvapi_channellist_register_callback), "qeltvapi_channellist", true},
            {NONE(a_qeltvapi_tvprovider_channellist_register_callback), "qeltvapi_channellist",
             true},
            {NONE(a_qeltvapi_concerncolumn_channellist_register_callback), "qeltvapi_channellist",
             true},
            {NONE(a_qeltvapi_svlid_update_register_callback), "qeltvapi_channellist", true},
            {NONE(a_qeltvapi_tslid_update_register_callback), "qeltvapi_channellist", true},
            {NONE(a_qeltvapi_listMode_update_register_callback), "qeltvapi_channellist", true},
            {NONE(a_qeltvapi_ocl_scanInfo_register_callback), "qeltvapi_channellist", true},
            {"a_qeltvapi_ci_reg_cb",
             ciRegister,
             "qeltvapi_ci",
             true,
             {"<{f}:142> {f}, pv_nfy addr:(nil)"},
             "<{f}:{n}> {{f}} Get ci service fail.\n",
             -1},
            {"a_qeltvapi_ci_unreg_cb", [] { return a_qeltvapi_ci_unreg_cb(1); }, "qeltvapi_ci",
             true, name(196), "<{f}:{n}> {{f}} Get ci service fail.\n", -1},
            {NONE(a_qeltvapi_config_reg_callback), "qeltvapi_config", false, name(93)},
            {NONE(a_qeltvapi_ch_logo_reg_callback), "qeltvapi_ch_logo", false, name(90)},
            {NONE(a_qeltvapi_satllist_register_callback), "qeltvapi_dvbsconfig", true, name(317)},
            {NONE(a_qeltvapi_eas_reg_callback), "qeltvapi_eas", true, name(92)},
            {NONE(a_qeltvapi_event_atsc_register_callback), "qeltvapi_event_atsc", false,
             name(373)},
            {NONE(a_qeltvapi_event_register_callback), "qeltvapi_event", false, name(547)},
            {NONE(a_qeltvapi_ewspa_reg_msg_callback), "qeltvapi_ews_pa"},
            {NONE(a_qeltvapi_ews_reg_msg_callback),
             "qeltvapi_ews",
             false,
             {"<{f}:21> {f}", "<{f}:22> "}},
            {NONE(a_qeltvapi_ginga_register_callback), "qeltvapi_ginga", false, name(127)},
            {NONE(a_qeltvapi_ginga_volume_register_callback), "qeltvapi_ginga", false, name(136)},
            {NONE(a_qeltvapi_ginga_update_register_callback), "qeltvapi_ginga", false, name(146)},
            {NONE(a_qeltvapi_hbbtv_reg_msg_callback), "qeltvapi_hbbtv"},
            {NONE(a_qeltvapi_highlevel_register_callback), "qeltvapi_highlevel", true},
            {NONE(a_qeltvapi_highlevel_register_android_responser), "qeltvapi_highlevel"},
            {NONE(a_qeltvapi_mheg5_register_msg_callback), "qeltvapi_mheg5"},
            {NONE(a_qeltvapi_mheg5_reg_launch_hbbtv_nfy), "qeltvapi_mheg5"},
            {"a_qeltvapi_mheg5_reg_is_mime_type_support_fct",
             [] { return a_qeltvapi_mheg5_reg_is_mime_type_support_fct(1, nullptr); },
             "qeltvapi_mheg5"},
            {NONE(a_qeltvapi_oad_register_callback), "qeltvapi_oad"},
            {NONE(a_qeltvapi_pwddlg_register_msg_callback), "qeltvapi_pwddlg", false, name(93)},
            {NONE(a_qeltvapi_rating_op_vchip_reg_callback), "qeltvapi_rating", false, name(108)},
            {NONE(a_qeltvapi_record_pvr_register_callback), "qeltvapi_record", false, name(191)},
            {NONE(a_qeltvapi_scan_reg_callback), "qeltvapi_scan", false, name(103)},
            {NONE(a_qeltvapi_screensaver_register_msg_callback),
             "qeltvapi_screensaver",
             false,
             {"<{f}:93> {f}", "<{f}:94> "}},
            {NONE(a_qeltvapi_subtitle_reg_callback), "qeltvapi_subtitle", false, name(92)},
            {NONE(a_qeltvapi_teletext_register_msg_callback), "qeltvapi_teletext", false, name(20)},
            {NONE(a_qeltvapi_time_register_dt_event_callback), "qeltvapi_time", false, name(846)},
            {NONE(a_qeltvapi_time_register_sync_source_callback), "qeltvapi_time", false,
             name(854)},
            {NONE(a_qeltvapi_time_register_sleep_timer_callback), "qeltvapi_time", false,
             name(862)},
            {NONE(a_qeltvapi_timeshift_register_callback), "qeltvapi_timeshift", false, name(272)},
            {NONE(a_qeltvapi_upgrade_register_callback), "qeltvapi_upgrade", true},
            {NONE(a_qeltvapi_upgrade_unregister_callback), "qeltvapi_upgrade", true},
            {NONE(a_qeltvapi_util_register_nousedkey_callback), "qeltvapi_util"},
            {NONE(a_qeltvapi_warning_register_msg_callback), "qeltvapi_warning", false, name(92)},
            {NONE(a_qeltvapi_bml_reg_msg_callback), "qeltvapi_bml"},
            {NONE(a_qeltvapi_html_agent_reg_callback), "qeltvapi_html_agent"},
            {NONE(a_qeltvapi_videoinfo_reg_common_nfy), "qeltvapi_videoinfo", true, {"<{f}:187> "}},
            {NONE(a_qeltvapi_tts_reg_msg_callback), "qeltvapi_tts", false, name(97)},
            {NONE(a_qeltvapi_mds_reg_msg_callback), "qeltvapi_mds", false, name(134)},
    };
    return all;
}

TEST(Registration, TracesReturnsItsResultAndRegistersTheCallbackObjectIfItShould) {
    captureLog();
    for (const Registration& registration : registrations()) {
        for (bool on : {false, true}) {
            SCOPED_TRACE(registration.function + (on ? ", debugging" : ""));
            takeLog();
            gRequests = 0;
            {
                Debug debug(on);
                EXPECT_EQ(registration.result, registration.call());
            }
            EXPECT_EQ(registration.registers ? 1 : 0, gRequests);
            std::vector<std::string> expected;
            if (on) expected = registration.trace;
            if (!registration.always.empty()) expected.push_back(registration.always);
            for (std::string& line : expected) {
                for (size_t at; (at = line.find("{f}")) != std::string::npos;) {
                    line.replace(at, 3, registration.function);
                }
            }
            expectLog("(hw_" + registration.module + ")(client)", expected);
        }
    }
}

Row inert(const std::string& function, int (*call)(), int line) {
    return Row(function, Row::kNoCall)
            .call([=](Outputs&) { return call(); })
            .returns(0)
            .entry({"<{f}:" + std::to_string(line) + "> {f}"});
}

#define INERT(function, line) inert(#function, function, line)

TEST(Registration, OnlyTracesTheEntryPointsOfTheRpcClient) {
    std::map<std::string, std::vector<Row>> rows;
    rows["qeltvapi_ci"] = {INERT(c_rpc_reg_qeltvapi_ci_cb_hndlrs, 772)};
    rows["qeltvapi_ews_pa"] = {INERT(c_rpc_reg_qeltvapi_ews_pa_cb_hndlrs, 119)};
    // The second line is written without debugging too.
    rows["qeltvapi_ews"] = {INERT(c_rpc_reg_qeltvapi_ews_cb_hndlrs, 32).replyAlways({"<{f}:33> "})};
    rows["qeltvapi_upgrade"] = {INERT(c_rpc_reg_qeltvapi_upgrade_cb_hndlrs, 302)};
    rows["qeltvapi_timeshift"] = {INERT(a_qeltvapi_timeshift_unregister_callback, 282)};
    rows["qeltvapi_volctrl"] = {
            INERT(a_qeltvapi_volctrl_reg_callback, 85),
            INERT(a_qeltvapi_volctrl_audio_event_callback_unregister, 90),
            INERT(a_qeltvapi_volctrl_audio_event_register_callback, 97),
    };
    rows["qeltvapi_pop"] = {INERT(a_qeltvapi_pop_register_callback, 126)};
    rows["qeltvapi_feature_misc"] = {INERT(a_qeltvapi_feature_misc_register_callback, 86)};
    gRequests = 0;
    for (const auto& [module, ofModule] : rows) {
        Table table;
        table.tag = "(hw_" + module + ")(client)";
        table.rows = ofModule;
        runMissing(table);
    }
    EXPECT_EQ(0, gRequests);
}

TEST(Registration, ReturnsTheLogCallsResultWhenTheRpcClientIsClosed) {
    captureLog();
    const int written = __android_log_print(ANDROID_LOG_DEBUG, "hw_qeltvapi_common", "%s", "line");
    Table table;
    table.tag = "(hw_qeltvapi_util)(client)";
    table.rows = {Row("a_rpc_close_client", Row::kNoCall)
                          .call([](Outputs&) { return a_rpc_close_client(); })
                          .returns(written)
                          .replyAlways({"<{f}:{n}> {f}"})};
    runMissing(table);
}

}  // namespace
