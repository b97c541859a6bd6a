#include <pthread.h>
#include <signal.h>
#include <time.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <regex>
#include <set>
#include <thread>
#include <type_traits>

#include "hw_qeltvapi_common.h"
#include "notifications.h"
#include "qeltvapi.h"
#include "suggestion.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

/** How a watch ends. */
struct Limits {
    /** After so many notifications; 0 for no such limit. */
    uint64_t count = 0;
    /** After a line that matches. */
    std::string expected;
    /** After this time; 0 for no such limit. */
    double seconds = 0;
};

/** Prints notifications as they arrive, one line each, from the threads that bring them. */
class Printer {
  public:
    void configure(bool json, const Limits& limits) {
        mJson = json;
        mCount = limits.count;
        if (limits.expected.empty()) return;
        try {
            mExpected = std::regex(limits.expected, std::regex::extended);
        } catch (const std::regex_error&) {
            throw Failure(kUsage, "\"" + limits.expected + "\" is no regular expression");
        }
    }

    void print(const std::string& kind, const Json& values) {
        const Described described = describe(kind, values);
        std::lock_guard<std::mutex> guard(mLock);
        if (mComplete) return;
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        const std::string line = mJson ? jsonLine(now, kind, described) : text(kind, described);
        if (mJson) {
            printf("%s\n", line.c_str());
        } else {
            tm local{};
            localtime_r(&now.tv_sec, &local);
            printf("%02d:%02d:%02d.%03ld  %s\n", local.tm_hour, local.tm_min, local.tm_sec,
                   now.tv_nsec / 1000000, line.c_str());
        }
        const bool failed = fflush(stdout) != 0;
        ++mPrinted;
        mComplete =
                mExpected ? std::regex_search(line, *mExpected) : mCount != 0 && mPrinted == mCount;
        // The main thread waits for the signal that ends the command.
        if (mComplete || failed) kill(getpid(), SIGTERM);
    }

    /** Whether all that was waited for has arrived. */
    bool complete() {
        std::lock_guard<std::mutex> guard(mLock);
        return mComplete || (mCount == 0 && !mExpected);
    }

    uint64_t printed() {
        std::lock_guard<std::mutex> guard(mLock);
        return mPrinted;
    }

  private:
    static std::string jsonLine(const timespec& now, const std::string& kind,
                                const Described& described) {
        Json line{
                {"time", static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9},
                {"kind", kind}};
        if (!described.event.empty()) line["event"] = described.event;
        line["values"] = Json::object();
        for (const auto& value : described.values) line["values"][value.name] = value.value;
        return jsonText(line);
    }

    static std::string text(const std::string& kind, const Described& described) {
        std::string line = kind;
        if (line.size() < 16) line.resize(16, ' ');
        if (!described.eventShort.empty()) line += " " + described.eventShort;
        for (const auto& value : described.values) {
            // The tag of a registration without one.
            if (value.name == "tag" && value.value == 0) continue;
            line += " " + value.name + "=" + printable(value.text);
        }
        return line;
    }

    std::mutex mLock;
    bool mJson = false;
    uint64_t mCount = 0;
    std::optional<std::regex> mExpected;
    uint64_t mPrinted = 0;
    bool mComplete = false;
};

// Never destroyed: notifications arrive until the very end of the process.
Printer& sPrinter = *new Printer;

/** A value of a notification. Blocks arrive without their size, so only their presence is shown. */
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

/** The name of the kind that a function of the library registers for. */
template <auto Registration>
const char* sName = nullptr;

/** One C function for each kind. */
template <auto Registration, class... A>
int onNotification(A... values) {
    Json all = Json::array();
    (all.push_back(shown(values)), ...);
    sPrinter.print(sName<Registration>, all);
    return 0;
}

template <auto Registration, class... A>
void listen(int (*registration)(int (*)(A...))) {
    registration(onNotification<Registration, A...>);
}

/** The same where the function stands behind an argument that is not used. */
template <auto Registration, class First, class... A>
void listen(int (*registration)(First, int (*)(A...))) {
    registration(First{}, onNotification<Registration, A...>);
}

template <auto Registration>
Kind kind(const char* name) {
    sName<Registration> = name;
    return {name, [] { listen<Registration>(Registration); }};
}

int listenToCi(int (*fn)(uint32_t, uint32_t, int32_t, const void*)) {
    // Held for the life of the process, as the function is.
    static int32_t handle = 0;
    return a_qeltvapi_ci_reg_cb(&handle, 0, 0, fn);
}

std::vector<Kind> kinds() {
    return {
            kind<a_qeltvapi_3dmode_register_callback>("3dmode"),
            kind<a_qeltvapi_apptv_register_callback>("apptv"),
            kind<a_qeltvapi_audio_info_register_callback>("audio"),
            kind<a_qeltvapi_banner_register_callback>("banner"),
            kind<a_qeltvapi_bisskey_register_callback>("bisskey"),
            kind<a_qeltvapi_bml_reg_msg_callback>("bml"),
            kind<a_qeltvapi_broadcast_register_callback>("broadcast"),
            kind<a_qeltvapi_ch_logo_reg_callback>("ch_logo"),
            kind<a_qeltvapi_channellist_register_callback>("channellist"),
            kind<listenToCi>("ci"),
            kind<a_qeltvapi_concerncolumn_channellist_register_callback>("concern_column"),
            kind<a_qeltvapi_config_reg_callback>("config"),
            kind<a_qeltvapi_time_register_dt_event_callback>("dt"),
            kind<a_qeltvapi_eas_reg_callback>("eas"),
            kind<a_qeltvapi_event_register_callback>("event"),
            kind<a_qeltvapi_event_atsc_register_callback>("event_atsc"),
            kind<a_qeltvapi_ews_reg_msg_callback>("ews"),
            kind<a_qeltvapi_ewspa_reg_msg_callback>("ewspa"),
            kind<a_qeltvapi_ginga_register_callback>("ginga"),
            kind<a_qeltvapi_ginga_update_register_callback>("ginga_update"),
            kind<a_qeltvapi_ginga_volume_register_callback>("ginga_volume"),
            kind<a_qeltvapi_hbbtv_reg_msg_callback>("hbbtv"),
            kind<a_qeltvapi_highlevel_register_callback>("highlevel"),
            kind<a_qeltvapi_html_agent_reg_callback>("html_agent"),
            kind<a_qeltvapi_listMode_update_register_callback>("listmode"),
            kind<a_qeltvapi_mds_reg_msg_callback>("mds"),
            kind<a_qeltvapi_mheg5_register_msg_callback>("mheg5"),
            kind<a_qeltvapi_mheg5_reg_launch_hbbtv_nfy>("mheg5_hbbtv"),
            kind<a_qeltvapi_util_register_nousedkey_callback>("nousedkey"),
            kind<a_qeltvapi_oad_register_callback>("oad"),
            kind<a_qeltvapi_ocl_scanInfo_register_callback>("ocl_scaninfo"),
            kind<c_pcl_reg_nfy_fct>("pcl"),
            kind<a_qeltvapi_record_pvr_register_callback>("pvr_status"),
            kind<a_qeltvapi_pwddlg_register_msg_callback>("pwddlg"),
            kind<a_qeltvapi_rating_op_vchip_reg_callback>("rating"),
            kind<a_qeltvapi_satllist_register_callback>("satllist"),
            kind<a_qeltvapi_scan_reg_callback>("scan"),
            kind<a_qeltvapi_screensaver_register_msg_callback>("screensaver"),
            kind<a_qeltvapi_time_register_sleep_timer_callback>("sleep_timer"),
            kind<a_qeltvapi_subtitle_reg_callback>("subtitle"),
            kind<c_svctx_set_listener>("svctx"),
            kind<a_qeltvapi_svlid_update_register_callback>("svlid"),
            kind<a_qeltvapi_time_register_sync_source_callback>("sync_source"),
            kind<a_qeltvapi_teletext_register_msg_callback>("teletext"),
            kind<a_qeltvapi_timeshift_register_callback>("timeshift"),
            kind<a_qeltvapi_tslid_update_register_callback>("tslid"),
            kind<a_qeltvapi_tts_reg_msg_callback>("tts"),
            kind<a_qeltvapi_tvprovider_channellist_register_callback>("tvprovider"),
            kind<a_qeltvapi_upgrade_register_callback>("upgrade"),
            kind<a_qeltvapi_videoinfo_reg_common_nfy>("videoinfo"),
            kind<a_qeltvapi_warning_register_msg_callback>("warning"),
    };
}

void watch(const std::vector<std::string>& wanted, bool json, const Limits& limits) {
    sPrinter.configure(json, limits);

    // Before anything makes a thread, which must not take the signals.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);

    std::vector<Kind> chosen;
    std::vector<std::string> names;
    std::set<std::string> missing(wanted.begin(), wanted.end());
    for (const Kind& kind : kinds()) {
        names.push_back(kind.name);
        if (wanted.empty() || missing.erase(kind.name) != 0) chosen.push_back(kind);
    }
    if (!missing.empty()) {
        const std::string& name = *missing.begin();
        throw Failure(kUsage, "there is no kind " + name + suggestion(name, names) +
                                      "; qeltvctl watch --list shows them");
    }
    requireService();
    for (const Kind& kind : chosen) kind.listen();
    // Not all of the functions above ask for it. A request that waits already serves as well.
    registerCallbackHandler();

    if (limits.seconds <= 0) {
        int signal = 0;
        sigwait(&signals, &signal);
    } else {
        const auto whole = static_cast<time_t>(limits.seconds);
        const timespec limit{
                whole, static_cast<long>((limits.seconds - static_cast<double>(whole)) * 1e9)};
        sigtimedwait(&signals, nullptr, &limit);
    }
    if (sPrinter.complete()) return;
    const std::string seen = std::to_string(sPrinter.printed());
    if (!limits.expected.empty()) {
        throw Failure(kRefused,
                      "none of " + seen + " notifications matches \"" + limits.expected + "\"");
    }
    throw Failure(kRefused,
                  seen + " of " + std::to_string(limits.count) + " notifications arrived");
}

void listKinds() {
    std::vector<std::vector<std::string>> rows{{"KIND", "REGISTERED BY"}};
    const Json& known = notificationNames().at("notifications");
    for (const Kind& kind : kinds()) {
        std::string functions;
        for (const Json& one : known) {
            if (one.at("name") != kind.name) continue;
            for (const Json& function : one.at("registeredBy")) {
                functions += (functions.empty() ? "" : ", ") + function.get<std::string>();
            }
        }
        rows.push_back({kind.name, functions});
    }
    printTable(rows);
}

}  // namespace

void addWatch(Command& app) {
    struct Options {
        std::vector<std::string> kinds;
        bool json = false, list = false;
        Limits limits;
    };
    auto options = std::make_shared<Options>();
    Command* command = app.addCommand("watch", "Print notifications as they arrive");
    command->addOption("kind", options->kinds, "Only these kinds; see --list")
            ->offerFrom("watch --list");
    command->addFlag("--list", options->list, "List the kinds");
    Option* count = command->addOption("--count", options->limits.count,
                                       "End after this many; fewer are a failure (exit status 1)")
                            ->notNegative();
    command->addOption("--expect", options->limits.expected,
                       "End after a line that this extended regular expression matches; a failure "
                       "(exit status 1) without one")
            ->excludes(count);
    command->addOption("--seconds,--timeout", options->limits.seconds, "End after this time")
            ->notNegative();
    addJson(command, &options->json);
    command->callback([options] {
        if (options->list) {
            listKinds();
        } else {
            watch(options->kinds, options->json, options->limits);
        }
    });
}

}  // namespace tool
