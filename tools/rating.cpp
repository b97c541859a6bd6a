#include "hw_qeltvapi_rating.h"

#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_pwddlg.h"
#include "layouts/rating.h"
#include "local_time.h"
#include "suggestion.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

struct Setting {
    const char* name;
    int (*get)(uint8_t*);
    int (*set)(int);
};

constexpr Setting kSettings[] = {
        {"lock", a_qeltvapi_rating_get_enable, a_qeltvapi_rating_set_enable},
        {"unrated", a_qeltvapi_rating_get_block_unrated, a_qeltvapi_rating_set_block_unrated},
        {"dvb-age", a_qeltvapi_rating_get_dvb_age_setting_info,
         a_qeltvapi_rating_set_dvb_age_setting_info},
        {"us-movie", a_qeltvapi_rating_get_us_movie_setting_info,
         a_qeltvapi_rating_set_us_movie_setting_info},
        {"canada-english", a_qeltvapi_rating_get_can_eng_setting_info,
         a_qeltvapi_rating_set_can_eng_setting_info},
        {"canada-french", a_qeltvapi_rating_get_can_fre_setting_info,
         a_qeltvapi_rating_set_can_fre_setting_info},
        {"isdb-age", a_qeltvapi_rating_get_isdb_age_setting_info,
         a_qeltvapi_rating_set_isdb_age_setting_info},
        {"isdb-content", a_qeltvapi_rating_get_isdb_content_setting_info,
         a_qeltvapi_rating_set_isdb_content_setting_info},
};

constexpr const char* kUsTvNames[QELTV_US_TV_FLAGS] = {
        "TV-Y",    "TV-Y7",   "TV-G",    "TV-PG",   "TV-14",   "TV-MA",   "TV-Y7-FV",
        "TV-PG-D", "TV-PG-L", "TV-PG-S", "TV-PG-V", "TV-14-D", "TV-14-L", "TV-14-S",
        "TV-14-V", "TV-MA-L", "TV-MA-S", "TV-MA-V", "none",    "upwards"};
static_assert(sizeof(QELTVAPI_RATING_US_TV_SETTING_T) == QELTV_US_TV_FLAGS, "a byte for each flag");

void show(bool json) {
    requireService();
    std::vector<std::vector<std::string>> rows{{"SETTING", "VALUE"}};
    Json all;
    for (const Setting& setting : kSettings) {
        uint8_t value = 0;
        check(setting.get(&value), setting.name);
        rows.push_back({setting.name, std::to_string(value)});
        all[setting.name] = value;
    }
    QELTVAPI_RATING_US_TV_SETTING_T flags{};
    check(a_qeltvapi_rating_get_us_tv_setting_info(&flags), "us-tv");
    uint8_t bytes[QELTV_US_TV_FLAGS];
    memcpy(bytes, &flags, sizeof(bytes));
    std::string names;
    all["us-tv"] = Json::array();
    for (size_t i = 0; i < QELTV_US_TV_FLAGS; ++i) {
        if (bytes[i] == 0) continue;
        names += (names.empty() ? "" : " ") + std::string(kUsTvNames[i]);
        all["us-tv"].push_back(kUsTvNames[i]);
    }
    rows.push_back({"us-tv", names.empty() ? "-" : names});
    uint8_t available = 0;
    check(a_qeltvapi_rating_get_op_vchip_avail(&available), "open V-chip");
    rows.push_back({"open-vchip", available != 0 ? "received" : "-"});
    all["open-vchip"] = available != 0;
    if (json) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

void set(const std::string& name, const std::string& text) {
    requireService();
    for (const Setting& setting : kSettings) {
        if (name != setting.name) continue;
        check(setting.set(static_cast<int>(parseNumber(text, name, 0, 255))), name);
        return;
    }
    if (name == "open-vchip") {
        check(a_qeltvapi_rating_atsc_storage(parseNumber(text, name, 0, 1) != 0), name);
        return;
    }
    std::vector<std::string> names{"open-vchip"};
    for (const Setting& setting : kSettings) names.push_back(setting.name);
    throw Failure(kUsage, "there is no rating setting " + name + suggestion(name, names));
}

void setUsTv(const std::vector<std::string>& names) {
    requireService();
    uint8_t bytes[QELTV_US_TV_FLAGS] = {};
    for (const std::string& name : names) {
        size_t index = 0;
        while (index < QELTV_US_TV_FLAGS && name != kUsTvNames[index]) ++index;
        if (index == QELTV_US_TV_FLAGS) throw Failure(kUsage, "there is no US rating " + name);
        bytes[index] = 1;
    }
    QELTVAPI_RATING_US_TV_SETTING_T flags;
    memcpy(&flags, bytes, sizeof(flags));
    check(a_qeltvapi_rating_set_us_tv_setting_info(&flags), "us-tv");
}

void current(bool json) {
    requireService();
    QELTVAPI_RATING_MAP_T map{};
    check(a_qeltvapi_rating_get_crnt_rating_info(&map), "rating");
    if (json) {
        const Json all{{"label", map.first}, {"system", map.second}, {"description", map.third}};
        printJson(all);
        return;
    }
    printTable({{"label", map.first}, {"system", map.second}, {"description", map.third}});
}

/** Never an argument: those can be seen by everybody. */
std::string readPin(const char* prompt) {
    termios before{};
    const bool terminal = tcgetattr(STDIN_FILENO, &before) == 0;
    if (terminal) {
        fprintf(stderr, "%s: ", prompt);
        termios quiet = before;
        quiet.c_lflag &= static_cast<tcflag_t>(~ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
    std::string pin;
    std::getline(std::cin, pin);
    if (terminal) {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
        fprintf(stderr, "\n");
    }
    return pin;
}

void checkPin() {
    requireService();
    switch (a_qeltvapi_PWDDLG_checkPWD(readPin("PIN").c_str())) {
        case QELTV_PIN_RIGHT:
            printf("right\n");
            return;
        case QELTV_PIN_WRONG:
            throw Failure(kRefused, "the PIN is wrong");
        case QELTV_PIN_LOCKED:
            throw Failure(kRefused, "too many wrong tries, wait before the next one");
        case QELTV_PIN_MALFORMED:
            throw Failure(kUsage, "a PIN has 4 to 8 digits");
        case QELTV_PIN_FAILED:
            throw Failure(kRefused, "the PIN cannot be judged");
        default:
            throw Failure(kUnreachable, "the television did not answer");
    }
}

void changePin() {
    checkPin();
    check(a_qeltvapi_config_set_str_value("parental.pin", readPin("New PIN").c_str()), "new PIN");
}

}  // namespace

void addRating(Command& app) {
    struct Options {
        std::string name, value;
        std::vector<std::string> flags;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    Command* rating = app.addCommand("rating", "The rating lock and its PIN");
    rating->requireCommand();

    Command* command = rating->addCommand("show", "Print all settings");
    addJson(command, &options->json);
    command->callback([options] { show(options->json); });

    command = rating->addCommand("set", "Change a setting");
    command->addOption("setting", options->name, "As \"rating show\" prints it")->required();
    command->addOption("value", options->value, "Its number; 0 blocks nothing")->required();
    command->callback([options] { set(options->name, options->value); });

    command = rating->addCommand("us-tv", "Block these US television ratings, and no others");
    command->addOption("ratings", options->flags, "As TV-14, TV-PG-V, none");
    command->callback([options] { setUsTv(options->flags); });

    command = rating->addCommand("current", "The rating of what is on");
    addJson(command, &options->json);
    command->callback([options] { current(options->json); });

    Command* pin = rating->addCommand("pin", "The PIN, which is read from the input");
    pin->requireCommand();
    pin->addCommand("check", "Have a PIN judged; a right one unlocks what is on")
            ->callback(checkPin);
    pin->addCommand("change", "Read the old and the new PIN")->callback(changePin);
    pin->addCommand("ask", "Have the applications show the dialog")->callback([] {
        requireService();
        check(a_qeltvapi_PWDDLG_show(), "dialog");
    });
}

}  // namespace tool
