#include "hw_qeltvapi_scan.h"

#include <unistd.h>

#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>

#include "hw_qeltvapi_common.h"
#include "layouts/scan.h"
#include "tool.h"

namespace tool {
namespace {

constexpr int kBarWidth = 24;

/** A scan notification: its type and values. */
struct Progress {
    int32_t type;
    uint64_t values[4];
};

// Never destroyed: notifications arrive until the very end of the process.
std::mutex& sLock = *new std::mutex;
std::condition_variable& sArrived = *new std::condition_variable;
std::deque<Progress>& sProgress = *new std::deque<Progress>;

int onScan(int32_t type, uintptr_t, uintptr_t a1, uintptr_t a2, uintptr_t a3, uintptr_t a4) {
    std::lock_guard<std::mutex> guard(sLock);
    sProgress.push_back({type, {a1, a2, a3, a4}});
    sArrived.notify_one();
    return 0;
}

/** The next notification; ends the command when the scan is gone without one. */
Progress next() {
    std::unique_lock<std::mutex> guard(sLock);
    for (;;) {
        if (sArrived.wait_for(guard, std::chrono::seconds(1), [] { return !sProgress.empty(); })) {
            const Progress progress = sProgress.front();
            sProgress.pop_front();
            return progress;
        }
        guard.unlock();
        const bool active = a_qeltvapi_is_scan_active() != 0;
        guard.lock();
        if (!active && sProgress.empty()) {
            throw Failure(kUnreachable, "the scan has ended without a result");
        }
    }
}

class Display {
  public:
    explicit Display(bool json) : mJson(json), mBar(!json && isatty(STDOUT_FILENO) != 0) {}

    void show(const Progress& progress) {
        const uint64_t percent = progress.values[0];
        const double mhz = static_cast<double>(progress.values[1]) / 1000;
        const uint64_t services = progress.values[2] + progress.values[3];
        if (mJson) {
            const nlohmann::ordered_json line{{"percent", percent},
                                              {"khz", progress.values[1]},
                                              {"television", progress.values[2]},
                                              {"radio", progress.values[3]}};
            printJson(line, -1);
        } else if (mBar) {
            const int filled = static_cast<int>(percent) * kBarWidth / 100;
            const std::string bar = std::string(static_cast<size_t>(filled), '#') +
                                    std::string(static_cast<size_t>(kBarWidth - filled), '.');
            printf("\r[%s] %3u %%  %9.3f MHz  %u services\033[K", bar.c_str(),
                   static_cast<unsigned>(percent), mhz, static_cast<unsigned>(services));
            mOpen = true;
        } else {
            printf("%3u %%  %9.3f MHz  %u services\n", static_cast<unsigned>(percent), mhz,
                   static_cast<unsigned>(services));
        }
        fflush(stdout);
    }

    void finish(const char* how, const Progress& progress) {
        if (mOpen) printf("\n");
        if (mJson) {
            const nlohmann::ordered_json line{{"scan", how},
                                              {"television", progress.values[0]},
                                              {"radio", progress.values[1]},
                                              {"new", progress.values[2]},
                                              {"removed", progress.values[3]}};
            printJson(line, -1);
        } else {
            printf("%s: %u television, %u radio, %u new, %u removed\n", how,
                   static_cast<unsigned>(progress.values[0]),
                   static_cast<unsigned>(progress.values[1]),
                   static_cast<unsigned>(progress.values[2]),
                   static_cast<unsigned>(progress.values[3]));
        }
    }

  private:
    const bool mJson;
    const bool mBar;
    bool mOpen = false;
};

void scan(uint64_t argument, bool clear, bool json) {
    a_qeltvapi_scan_reg_callback(onScan);
    requireNotifications();
    check(a_qeltvapi_start_scan(argument, clear), "scan");
    Display display(json);
    for (;;) {
        const Progress progress = next();
        switch (progress.type) {
            case QELTV_SCAN_PROGRESS:
                display.show(progress);
                break;
            case QELTV_SCAN_COMPLETE:
                display.finish("complete", progress);
                check(a_qeltvapi_scan_select_crnt_or_first_channel(1), "first channel");
                return;
            case QELTV_SCAN_CANCELLED:
                display.finish("cancelled", progress);
                throw Failure(kRefused, "the scan was cancelled");
            case QELTV_SCAN_FAILED:
                throw Failure(kRefused,
                              "the scan failed with code " +
                                      std::to_string(static_cast<int32_t>(progress.values[0])));
            default:
                break;
        }
    }
}

void status(bool json) {
    requireService();
    int32_t data[QELTV_SCAN_EXCHANGE_CAPACITY] = {QELTV_EXCHANGE_STATUS};
    check(a_scan_ce_exchange_data(data, 1), "scan status");
    AnswerBuffer answer(256);
    check(static_cast<int32_t>(a_qeltvapi_get_user_message(answer.text(), 255)), "scan message");
    if (!json) {
        printf("%s\n", printable(answer.text()).c_str());
        return;
    }
    const nlohmann::ordered_json all{{"active", data[1] == QELTV_SCAN_STATE_RUNNING},
                                     {"percent", data[2]},
                                     {"khz", data[3]},
                                     {"index", data[4]},
                                     {"transponders", data[5]},
                                     {"television", data[6]},
                                     {"radio", data[7]},
                                     {"new", data[8]}};
    printJson(all);
}

void list(bool json) {
    requireService();
    int32_t count[QELTV_SCAN_EXCHANGE_CAPACITY] = {QELTV_EXCHANGE_COUNT};
    check(a_scan_ce_exchange_data(count, 1), "transponders");
    std::vector<std::vector<std::string>> rows{{"INDEX", "MHZ", "SYSTEM"}};
    constexpr const char* kSystems[] = {"?",      "DVB-T", "DVB-T2", "DVB-C", "DVB-S",
                                        "DVB-S2", "ATSC",  "QAM",    "ISDB-T"};
    nlohmann::ordered_json all = nlohmann::json::array();
    for (int32_t i = 0; i < count[1]; ++i) {
        int32_t data[QELTV_SCAN_EXCHANGE_CAPACITY] = {QELTV_EXCHANGE_TRANSPONDER, i};
        check(a_scan_ce_exchange_data(data, 2), "transponder");
        const char* system = data[5] >= 0 && data[5] <= 8 ? kSystems[data[5]] : "?";
        char mhz[32];
        snprintf(mhz, sizeof(mhz), "%.3f", data[2] / 1000.0);
        rows.push_back({std::to_string(i), mhz, system});
        all.push_back({{"index", i}, {"khz", data[2]}, {"system", system}});
    }
    if (json) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

}  // namespace

void addScan(Command& app) {
    struct Options {
        std::string mode = "full";
        double mhz = 0;
        bool clear = false, json = false;
    };
    auto options = std::make_shared<Options>();
    Command* group = app.addCommand("scan", "Look for channels");
    group->requireCommand();

    Command* command = group->addCommand("start", "Scan, and show the progress until the end");
    command->addOption("mode", options->mode, "full, air, cable or satellite")
            ->among({"full", "air", "cable", "satellite"})
            ->showDefault();
    command->addOption("--mhz", options->mhz, "Only the transponders at this frequency")
            ->between(1.0, 4.0e6);
    command->addFlag("--clear", options->clear, "Remove channels that are not found again");
    addJson(command, &options->json);
    command->callback([options] {
        uint64_t argument = options->mode == "air"         ? QELTV_SCAN_AIR
                            : options->mode == "cable"     ? QELTV_SCAN_CABLE
                            : options->mode == "satellite" ? QELTV_SCAN_SATELLITE
                                                           : QELTV_SCAN_FULL;
        if (options->mhz > 0) {
            argument =
                    QELTV_SCAN_FREQUENCY | static_cast<uint64_t>(std::llround(options->mhz * 1000))
                                                   << QELTV_SCAN_FREQUENCY_SHIFT;
        }
        scan(argument, options->clear, options->json);
    });

    group->addCommand("cancel", "End the scan that runs")->callback([] {
        requireService();
        check(a_qeltvapi_cancel_scan(), "cancel");
    });

    command = group->addCommand("status", "Show the state of the scan that runs, or of the last");
    addJson(command, &options->json);
    command->callback([options] { status(options->json); });

    command = group->addCommand("transponders", "List the transponders of a scan");
    addJson(command, &options->json);
    command->callback([options] { list(options->json); });
}

}  // namespace tool
