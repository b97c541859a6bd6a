#include <pthread.h>
#include <signal.h>
#include <time.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>
#include <thread>
#include <type_traits>

#include "hw_qeltvapi_common.h"
#include "qeltvapi.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

/** Prints notifications as they come, one line each, from whatever thread brings them. */
class Printer {
  public:
    void configure(bool json, uint64_t limit) {
        mJson = json;
        mLimit = limit;
    }

    void print(const std::string& kind, const Json& values) {
        std::lock_guard<std::mutex> guard(mLock);
        if (mLimit != 0 && mPrinted == mLimit) return;
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        if (mJson) {
            const Json line{{"time", static_cast<double>(now.tv_sec) +
                                             static_cast<double>(now.tv_nsec) / 1e9},
                            {"kind", kind},
                            {"values", values}};
            printf("%s\n", line.dump().c_str());
        } else {
            tm local{};
            localtime_r(&now.tv_sec, &local);
            std::string text;
            for (const Json& value : values) text += " " + value.dump();
            printf("%02d:%02d:%02d.%03ld  %-16s%s\n", local.tm_hour, local.tm_min, local.tm_sec,
                   now.tv_nsec / 1000000, kind.c_str(), text.c_str());
        }
        fflush(stdout);
        // The main thread waits for the signal that ends the command.
        if (++mPrinted == mLimit) kill(getpid(), SIGTERM);
    }

  private:
    std::mutex mLock;
    bool mJson = false;
    uint64_t mLimit = 0;
    uint64_t mPrinted = 0;
};

// Never destroyed, as the names below: notifications arrive until the very end of the process.
Printer& sPrinter = *new Printer;

/** A value of a notification. Blocks come without their length, so only that there is one shows. */
template <class T>
Json shown(T value) {
    if constexpr (std::is_same_v<T, const char*>) {
        return value != nullptr ? Json(value) : Json(nullptr);
    } else if constexpr (std::is_pointer_v<T>) {
        return value != nullptr ? Json("(data)") : Json(nullptr);
    } else {
        return value;
    }
}

struct Kind {
    std::string name;
    std::function<void()> listen;
};

std::map<int, std::string>& sNames = *new std::map<int, std::string>;

/** One C function for each kind, told apart by its number. */
template <int K, class... A>
int onNotification(A... values) {
    Json all = Json::array();
    (all.push_back(shown(values)), ...);
    sPrinter.print(sNames[K], all);
    return 0;
}

template <int K, class... A>
Kind kind(const char* name, int (*registration)(int (*)(A...))) {
    sNames[K] = name;
    return {name, [registration] { registration(onNotification<K, A...>); }};
}

/** The same where the function stands behind an argument that is not used. */
template <int K, class First, class... A>
Kind kind(const char* name, int (*registration)(First, int (*)(A...))) {
    sNames[K] = name;
    return {name, [registration] { registration(First{}, onNotification<K, A...>); }};
}

int listenToCi(int (*fn)(uint32_t, uint32_t, int32_t, const void*)) {
    // Held for the life of the process, as the function is.
    static int32_t handle = 0;
    return a_qeltvapi_ci_reg_cb(&handle, 0, 0, fn);
}

std::vector<Kind> kinds() {
    return {
            kind<1>("3dmode", a_qeltvapi_3dmode_register_callback),
            kind<2>("apptv", a_qeltvapi_apptv_register_callback),
            kind<3>("audio", a_qeltvapi_audio_info_register_callback),
            kind<4>("banner", a_qeltvapi_banner_register_callback),
            kind<5>("bisskey", a_qeltvapi_bisskey_register_callback),
            kind<6>("bml", a_qeltvapi_bml_reg_msg_callback),
            kind<7>("broadcast", a_qeltvapi_broadcast_register_callback),
            kind<8>("ch_logo", a_qeltvapi_ch_logo_reg_callback),
            kind<9>("channellist", a_qeltvapi_channellist_register_callback),
            kind<10>("ci", listenToCi),
            kind<11>("concern_column", a_qeltvapi_concerncolumn_channellist_register_callback),
            kind<12>("config", a_qeltvapi_config_reg_callback),
            kind<13>("dt", a_qeltvapi_time_register_dt_event_callback),
            kind<14>("eas", a_qeltvapi_eas_reg_callback),
            kind<15>("event", a_qeltvapi_event_register_callback),
            kind<16>("event_atsc", a_qeltvapi_event_atsc_register_callback),
            kind<17>("ews", a_qeltvapi_ews_reg_msg_callback),
            kind<18>("ewspa", a_qeltvapi_ewspa_reg_msg_callback),
            kind<19>("ginga", a_qeltvapi_ginga_register_callback),
            kind<20>("ginga_update", a_qeltvapi_ginga_update_register_callback),
            kind<21>("ginga_volume", a_qeltvapi_ginga_volume_register_callback),
            kind<22>("hbbtv", a_qeltvapi_hbbtv_reg_msg_callback),
            kind<23>("highlevel", a_qeltvapi_highlevel_register_callback),
            kind<24>("html_agent", a_qeltvapi_html_agent_reg_callback),
            kind<25>("listmode", a_qeltvapi_listMode_update_register_callback),
            kind<26>("mds", a_qeltvapi_mds_reg_msg_callback),
            kind<27>("mheg5", a_qeltvapi_mheg5_register_msg_callback),
            kind<28>("mheg5_hbbtv", a_qeltvapi_mheg5_reg_launch_hbbtv_nfy),
            kind<29>("nousedkey", a_qeltvapi_util_register_nousedkey_callback),
            kind<30>("oad", a_qeltvapi_oad_register_callback),
            kind<31>("ocl_scaninfo", a_qeltvapi_ocl_scanInfo_register_callback),
            kind<32>("pcl", c_pcl_reg_nfy_fct),
            kind<33>("pvr_status", a_qeltvapi_record_pvr_register_callback),
            kind<34>("pwddlg", a_qeltvapi_pwddlg_register_msg_callback),
            kind<35>("rating", a_qeltvapi_rating_op_vchip_reg_callback),
            kind<36>("satllist", a_qeltvapi_satllist_register_callback),
            kind<37>("scan", a_qeltvapi_scan_reg_callback),
            kind<38>("screensaver", a_qeltvapi_screensaver_register_msg_callback),
            kind<39>("sleep_timer", a_qeltvapi_time_register_sleep_timer_callback),
            kind<40>("subtitle", a_qeltvapi_subtitle_reg_callback),
            kind<41>("svctx", c_svctx_set_listener),
            kind<42>("svlid", a_qeltvapi_svlid_update_register_callback),
            kind<43>("sync_source", a_qeltvapi_time_register_sync_source_callback),
            kind<44>("teletext", a_qeltvapi_teletext_register_msg_callback),
            kind<45>("timeshift", a_qeltvapi_timeshift_register_callback),
            kind<46>("tslid", a_qeltvapi_tslid_update_register_callback),
            kind<47>("tts", a_qeltvapi_tts_reg_msg_callback),
            kind<48>("tvprovider", a_qeltvapi_tvprovider_channellist_register_callback),
            kind<49>("upgrade", a_qeltvapi_upgrade_register_callback),
            kind<50>("videoinfo", a_qeltvapi_videoinfo_reg_common_nfy),
            kind<51>("warning", a_qeltvapi_warning_register_msg_callback),
    };
}

void watch(const std::vector<std::string>& wanted, bool json, uint64_t count, double seconds) {
    sPrinter.configure(json, count);

    // Before anything makes a thread, which must not take the signals.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);

    requireService();
    std::set<std::string> missing(wanted.begin(), wanted.end());
    for (const Kind& kind : kinds()) {
        if (!wanted.empty() && missing.erase(kind.name) == 0) continue;
        kind.listen();
    }
    if (!missing.empty()) throw Failure(kUsage, "there is no kind " + *missing.begin());
    // Not all of the functions above ask for it. A request that waits already serves as well.
    registerCallbackHandler();

    if (seconds <= 0) {
        int signal = 0;
        sigwait(&signals, &signal);
        return;
    }
    timespec limit{
            static_cast<time_t>(seconds),
            static_cast<long>((seconds - static_cast<double>(static_cast<time_t>(seconds))) * 1e9)};
    sigtimedwait(&signals, nullptr, &limit);
}

}  // namespace

void addWatch(Command& app) {
    struct Options {
        std::vector<std::string> kinds;
        bool json = false, list = false;
        uint64_t count = 0;
        double seconds = 0;
    };
    auto options = std::make_shared<Options>();
    Command* command = app.addCommand("watch", "Print notifications as they come");
    command->addOption("kind", options->kinds, "Only these kinds; see --list");
    command->addFlag("--list", options->list, "List the kinds");
    command->addOption("--count", options->count, "End after this many");
    command->addOption("--seconds", options->seconds, "End after this time");
    addJson(command, &options->json);
    command->callback([options] {
        if (options->list) {
            for (const Kind& kind : kinds()) printf("%s\n", kind.name.c_str());
            return;
        }
        watch(options->kinds, options->json, options->count, options->seconds);
    });
}

}  // namespace tool
