#include "hw_qeltvapi_upgrade.h"

#include <unistd.h>

#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>

#include "hw_qeltvapi_oad.h"
#include "layouts/upgrade.h"
#include "local_time.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kStates[] = {"idle",        "checking",   "available",  "up to date",
                                   "downloading", "downloaded", "installing", "installed",
                                   "rebooting",   "done",       "cancelled",  "failed"};
constexpr const char* kOadStates[] = {"idle",        "detecting",  "found",    "scheduled",
                                      "downloading", "downloaded", "flashing", "flashed",
                                      "restarting",  "stopped",    "reminder", "nothing new"};

/** A notification of either family: its type and the number that goes with it. */
struct Event {
    int32_t type;
    int32_t value;
};

// Never destroyed: notifications arrive until the very end of the process.
std::mutex& sLock = *new std::mutex;
std::condition_variable& sArrived = *new std::condition_variable;
std::deque<Event>& sEvents = *new std::deque<Event>;

void push(Event event) {
    std::lock_guard<std::mutex> guard(sLock);
    sEvents.push_back(event);
    sArrived.notify_one();
}

int onUpgrade(int32_t type, int32_t, int32_t value, uintptr_t) {
    push({type, value});
    return 0;
}

int onOad(int32_t type, uintptr_t, const char*, int32_t percent, bool, int32_t) {
    push({type, percent});
    return 0;
}

Event next() {
    std::unique_lock<std::mutex> guard(sLock);
    if (!sArrived.wait_for(guard, std::chrono::seconds(15), [] { return !sEvents.empty(); })) {
        throw Failure(kUnreachable,
                      "no notification for 15 seconds; qeltvctl upgrade info shows the state");
    }
    const Event event = sEvents.front();
    sEvents.pop_front();
    return event;
}

/** Prints the progress until one of the types comes; each state, and with a bar each step. */
template <size_t N>
int32_t follow(const char* const (&names)[N], std::initializer_list<int32_t> last) {
    const bool bar = isatty(STDOUT_FILENO) != 0;
    int32_t state = -1;
    bool open = false;
    for (;;) {
        const Event event = next();
        if (event.type < 0 || static_cast<size_t>(event.type) >= N) continue;
        const bool begins = event.type != state;
        state = event.type;
        if (bar && begins && open) printf("\n");
        open = bar;
        const char* name = names[static_cast<size_t>(event.type)];
        if (bar) {
            printf("\r%-12s %3d %%\033[K", name, event.value);
        } else if (begins) {
            printf("%s\n", name);
        }
        fflush(stdout);
        for (const int32_t end : last) {
            if (event.type != end) continue;
            if (bar) printf("\n");
            return state;
        }
    }
}

template <size_t N>
std::string text(const char (&field)[N]) {
    return std::string(field, strnlen(field, N));
}

std::string nameOf(uint32_t state) {
    return state < sizeof(kStates) / sizeof(kStates[0]) ? kStates[state] : std::to_string(state);
}

void info(bool json) {
    requireService();
    QELTVAPI_UPGRADE_FW_INFO_T firmware{};
    check(a_qeltvapi_upgrade_get_firmware_info(&firmware), "firmware");
    std::vector<std::vector<std::string>> rows{
            {"INDEX", "KIND", "NAME", "VERSION", "DATE", "KIB", "STATE", "CHECKSUM"}};
    Json all{{"model", text(firmware.s_at_0)},       {"version", text(firmware.s_at_32)},
             {"date", text(firmware.s_at_64)},       {"hardware", text(firmware.s_at_96)},
             {"country", text(firmware.s_at_128)},   {"serial", text(firmware.s_at_160)},
             {"bootloader", text(firmware.s_at_192)}};
    all["items"] = Json::array();
    for (uint32_t i = 0; i < firmware.ui4_at_224; ++i) {
        QELTVAPI_UPGRADE_ITEM_T item{};
        check(a_qeltvapi_upgrade_get_item_info(&item, i), "item");
        rows.push_back({std::to_string(i), text(item.s_at_0), text(item.s_at_140),
                        text(item.s_at_76), text(item.s_at_108), std::to_string(item.ui4_at_72),
                        nameOf(item.ui4_at_204), text(item.s_at_172)});
        all["items"].push_back({{"kind", text(item.s_at_0)},
                                {"version", text(item.s_at_76)},
                                {"state", nameOf(item.ui4_at_204)},
                                {"result", a_qeltvapi_upgrade_query_upgrade_result(i)}});
    }
    if (json) {
        printJson(all);
        return;
    }
    printf("%s, version %s, boot loader %s\n\n", printable(text(firmware.s_at_0)).c_str(),
           printable(text(firmware.s_at_32)).c_str(), printable(text(firmware.s_at_192)).c_str());
    printTable(rows);
}

void listen() {
    // Asks for the callback object itself.
    a_qeltvapi_upgrade_register_callback(onUpgrade);
    a_qeltvapi_oad_register_callback(onOad);
    requireNotifications();
}

void fail(int32_t state, std::initializer_list<int32_t> bad) {
    for (const int32_t each : bad) {
        if (state == each)
            throw Failure(kRefused, "the upgrade has " + nameOf(static_cast<uint32_t>(state)));
    }
}

void run(uint32_t item, bool reboot) {
    requireService();
    listen();
    check(a_qeltvapi_upgrade_start(item, reboot), "upgrade");
    const int32_t last = reboot ? QELTV_UPGRADE_DONE : QELTV_UPGRADE_INSTALLED;
    fail(follow(kStates,
                {last, QELTV_UPGRADE_UP_TO_DATE, QELTV_UPGRADE_CANCELLED, QELTV_UPGRADE_FAILED}),
         {QELTV_UPGRADE_CANCELLED, QELTV_UPGRADE_FAILED});
}

void checkForUpdate(uint32_t item) {
    requireService();
    listen();
    check(a_qeltvapi_upgrade_check_update(item), "check");
    follow(kStates, {QELTV_UPGRADE_AVAILABLE, QELTV_UPGRADE_UP_TO_DATE, QELTV_UPGRADE_FAILED});
}

void download(uint32_t item, const std::string& source, const std::string& target) {
    requireService();
    listen();
    check(a_qeltvapi_upgrade_start_download_firmware(item, source.c_str(), target.c_str()),
          "download");
    fail(follow(kStates, {QELTV_UPGRADE_DOWNLOADED, QELTV_UPGRADE_CANCELLED, QELTV_UPGRADE_FAILED}),
         {QELTV_UPGRADE_CANCELLED, QELTV_UPGRADE_FAILED});
}

/** One step of the over-air download, up to its last notification. */
void overAir(int (*function)(), const char* what, std::initializer_list<int32_t> last) {
    requireService();
    listen();
    check(function(), what);
    if (last.size() != 0) follow(kOadStates, last);
}

void schedule() {
    requireService();
    AnswerBuffer answer(256);
    check(a_qeltvapi_oad_get_scheduleinfo(answer.text(), 255), "schedule");
    printf("%s\n", printable(answer.text()).c_str());
}

}  // namespace

void addUpgrade(Command& app) {
    struct Options {
        uint32_t item = QELTV_UPGRADE_ITEM_FIRMWARE;
        std::string source = "https://updates.example/firmware", target = "/data/firmware";
        bool json = false, reboot = false;
    };
    auto options = std::make_shared<Options>();
    Command* upgrade = app.addCommand("upgrade", "Software of the television");
    upgrade->requireCommand();
    const auto addItem = [&](Command* command) {
        command->addOption("--item", options->item, "Index of the item")->showDefault();
    };

    Command* command = upgrade->addCommand("info", "Versions, and what can be upgraded");
    addJson(command, &options->json);
    command->callback([options] { info(options->json); });

    command = upgrade->addCommand("check", "Look for a newer version");
    addItem(command);
    command->callback([options] { checkForUpdate(options->item); });

    command = upgrade->addCommand("run", "Check, download and install");
    addItem(command);
    command->addFlag("--reboot", options->reboot, "Reboot into it too");
    command->callback([options] { run(options->item, options->reboot); });

    command = upgrade->addCommand("download", "Only download");
    addItem(command);
    command->addOption("--from", options->source, "Where from")->showDefault();
    command->addOption("--to", options->target, "File on the television")->showDefault();
    command->callback([options] { download(options->item, options->source, options->target); });

    command = upgrade->addCommand("cancel", "End a download that runs");
    addItem(command);
    command->callback([options] {
        requireService();
        check(a_qeltvapi_upgrade_cancel_download_firmware(options->item), "cancel");
    });

    Command* oad = upgrade->addCommand("air", "The download that a channel carries");
    oad->requireCommand();
    oad->addCommand("schedule", "When and where it is broadcast")->callback(schedule);
    oad->addCommand("detect", "Jump to the channel and look")->callback([] {
        overAir(a_qeltvapi_oad_start_jump_channel, "detection",
                {QELTV_OAD_FOUND, QELTV_OAD_NOTHING_NEW, QELTV_OAD_STOPPED, QELTV_OAD_DOWNLOADING});
    });
    oad->addCommand("download", "Download what was found")->callback([] {
        overAir(a_qeltvapi_oad_start_download, "download",
                {QELTV_OAD_DOWNLOADED, QELTV_OAD_STOPPED});
    });
    oad->addCommand("flash", "Write it")->callback([] {
        overAir(a_qeltvapi_oad_start_flash, "flash", {QELTV_OAD_FLASHED, QELTV_OAD_STOPPED});
    });
    oad->addCommand("restart", "Restart into it")->callback([] {
        overAir(a_qeltvapi_oad_accept_restart, "restart", {QELTV_OAD_IDLE, QELTV_OAD_STOPPED});
    });
}

}  // namespace tool
