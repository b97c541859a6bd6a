#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <iostream>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>

#include "hw_qeltvapi_ci.h"
#include "hw_qeltvapi_common.h"
#include "layouts/ci.h"
#include "layouts/codes.h"
#include "tool.h"
#include "unicode.h"

namespace tool {
namespace {

using namespace std::chrono_literals;
using Json = nlohmann::ordered_json;

/** A display of the CAM, copied from the notification. */
struct Shown {
    int32_t cond;
    std::string title, subTitle, bottom;
    std::vector<std::string> choices;
    bool blind = false;
    int length = 0;
};

// Never destroyed: notifications arrive until the very end of the process.
std::mutex& sLock = *new std::mutex;
std::condition_variable& sArrived = *new std::condition_variable;
std::deque<Shown>& sShown = *new std::deque<Shown>;

int onCi(uint32_t, uint32_t, int32_t cond, const void* data) {
    Shown shown{cond, {}, {}, {}, {}, false, 0};
    if (cond == QELTV_CI_ENQUIRY) {
        const auto* enquiry = static_cast<const QELTVAPI_CI_MMI_ENQ_T*>(data);
        shown.title = utf8Of(enquiry->w2s_text);
        shown.blind = enquiry->b_blind != 0;
        shown.length = enquiry->ui1_ans_len;
    } else if (cond == QELTV_CI_MENU || cond == QELTV_CI_LIST) {
        const auto* menu = static_cast<const QELTVAPI_CI_MMI_MENU_T*>(data);
        shown.title = utf8Of(menu->w2s_title);
        shown.subTitle = utf8Of(menu->w2s_sub_title);
        shown.bottom = utf8Of(menu->w2s_bottom);
        for (uint32_t i = 0; i < menu->ui4_choices; ++i) {
            shown.choices.push_back(utf8Of(menu->pw2s_choice[i]));
        }
    } else if (cond != QELTV_CI_CLOSED) {
        return 0;
    }
    std::lock_guard<std::mutex> guard(sLock);
    sShown.push_back(shown);
    sArrived.notify_one();
    return 0;
}

bool wait(Shown* shown, std::chrono::milliseconds limit) {
    std::unique_lock<std::mutex> guard(sLock);
    if (!sArrived.wait_for(guard, limit, [] { return !sShown.empty(); })) return false;
    *shown = sShown.front();
    sShown.pop_front();
    return true;
}

template <class T, size_t N>
void read(int type, T (&values)[N]) {
    uint32_t length = sizeof(values);
    memset(values, 0, sizeof(values));
    check(a_qeltvapi_ci_get(type, 0, values, &length), "CI");
}

/** Reads a line without showing it. */
bool readBlind(std::string* line) {
    termios before{};
    const bool terminal = isatty(STDIN_FILENO) != 0 && tcgetattr(STDIN_FILENO, &before) == 0;
    if (terminal) {
        termios silent = before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    const bool got = static_cast<bool>(std::getline(std::cin, *line));
    if (terminal) {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
        printf("\n");
    }
    return got;
}

/** The answers of the user: those given with the command, otherwise what is typed. */
class Answers {
  public:
    explicit Answers(const std::vector<std::string>& given)
            : mGiven(given.begin(), given.end()), mScripted(!given.empty()) {}

    bool next(bool blind, std::string* answer) {
        if (mScripted) {
            if (mGiven.empty()) return false;
            *answer = mGiven.front();
            mGiven.pop_front();
            printf("> %s\n", blind ? std::string(answer->size(), '*').c_str() : answer->c_str());
            return true;
        }
        printf("> ");
        fflush(stdout);
        return blind ? readBlind(answer) : static_cast<bool>(std::getline(std::cin, *answer));
    }

  private:
    std::deque<std::string> mGiven;
    bool mScripted;
};

void print(const Shown& shown) {
    printf("\n%s\n", printable(shown.title).c_str());
    if (!shown.subTitle.empty()) printf("%s\n", printable(shown.subTitle).c_str());
    for (size_t i = 0; i < shown.choices.size(); ++i) {
        if (shown.cond == QELTV_CI_MENU) {
            printf("  %zu  %s\n", i + 1, printable(shown.choices[i]).c_str());
        } else {
            printf("  %s\n", printable(shown.choices[i]).c_str());
        }
    }
    if (!shown.bottom.empty()) printf("%s\n", printable(shown.bottom).c_str());
    if (shown.cond == QELTV_CI_ENQUIRY) printf("%d characters, nothing to cancel\n", shown.length);
}

int answerMenu(uint32_t dialogue, const std::string& text) {
    char* end = nullptr;
    const unsigned long choice = strtoul(text.c_str(), &end, 10);
    if (text.empty() || *end != 0 || choice > 255) return QELTV_BAD_VALUE;
    uint32_t words[] = {dialogue, static_cast<uint32_t>(choice)};
    return a_qeltvapi_ci_set(QELTV_CI_SET_MENU_ANSWER, 0, words);
}

int answerEnquiry(uint32_t dialogue, const std::string& text) {
    std::vector<uint16_t> units;
    for (const char c : text) units.push_back(static_cast<unsigned char>(c));
    units.push_back(0);
    QELTVAPI_CI_MMI_ENQ_ANS_T answer{text.empty() ? QELTV_CI_CANCELLED : QELTV_CI_ANSWERED,
                                     dialogue, units.data()};
    return a_qeltvapi_ci_set(QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS, 0, &answer);
}

void menu(const std::vector<std::string>& given) {
    requireService();
    int32_t registration = 0;
    check(a_qeltvapi_ci_reg_cb(&registration, 0, 0, onCi), "CI");
    // The registration may take a moment: open the menu again until a notification arrives.
    Shown shown{};
    bool arrived = false;
    for (int i = 0; i < 50 && !arrived; ++i) {
        const int code = a_qeltvapi_ci_set(QELTV_CI_SET_OPEN_MENU, 0, nullptr);
        if (code == QELTV_REFUSED) throw Failure(kRefused, "there is no CAM that is ready");
        check(code, "menu");
        arrived = wait(&shown, 200ms);
    }
    if (!arrived) throw Failure(kUnreachable, "the CAM does not answer");
    // Of several requests the last one counts.
    for (Shown later{}; wait(&later, given.empty() ? 50ms : 250ms);) shown = later;

    Answers answers(given);
    while (shown.cond != QELTV_CI_CLOSED) {
        print(shown);
        std::string text;
        if (!answers.next(shown.blind, &text)) {
            a_qeltvapi_ci_set(QELTV_CI_SET_CLOSE, 0, nullptr);
            break;
        }
        uint32_t dialogue[2];
        read(QELTV_CI_GET_DIALOGUE, dialogue);
        const int code = shown.cond == QELTV_CI_ENQUIRY ? answerEnquiry(dialogue[1], text)
                                                        : answerMenu(dialogue[1], text);
        if (code == QELTV_BAD_VALUE) {
            printf("That cannot be chosen.\n");
            continue;
        }
        check(code, "answer");
        if (!wait(&shown, 5000ms)) throw Failure(kUnreachable, "the CAM does not answer");
    }
    a_qeltvapi_ci_unreg_cb(registration);
}

void status(bool asJson) {
    requireService();
    constexpr const char* kStates[] = {"empty", "off", "ready"};
    uint32_t state[1];
    uint32_t dialogue[2];
    uint16_t systems[16];
    uint16_t name[128];
    char language[4];
    read(QELTV_CI_GET_SLOT_STATE, state);
    read(QELTV_CI_GET_DIALOGUE, dialogue);
    read(QELTV_CI_GET_CA_SYSTEMS, systems);
    read(QELTV_CI_GET_CAM_NAME_UTF16, name);
    read(QELTV_CI_GET_LANGUAGE, language);
    uint8_t valid = 0;
    uint16_t pin[16] = {};
    uint32_t length = 0;
    QELTVAPI_CI_CAM_PIN_CODE_T record{&valid, pin};
    check(a_qeltvapi_ci_get(QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE, 0, &record, &length), "PIN");
    AnswerBuffer keys;
    const int code = a_qeltvapi_ci_key_query(static_cast<uint16_t*>(keys.data()));
    const std::string described =
            code < 0 ? "none" : utf8Of(static_cast<const uint16_t*>(keys.data()));
    uint8_t host[32];
    uint8_t hostLength = sizeof(host);
    check(a_qeltvapi_ci_key_get_host_id(host, &hostLength), "host id");
    std::string hostId;
    for (uint8_t i = 0; i < hostLength; ++i) {
        char digits[3];
        snprintf(digits, sizeof(digits), "%02x", host[i]);
        hostId += digits;
    }
    std::vector<std::string> ids;
    for (const uint16_t system : systems) {
        char digits[8];
        snprintf(digits, sizeof(digits), "0x%04x", system);
        if (system != 0) ids.push_back(digits);
    }
    const char* const held = pin[0] == 0 ? "none" : valid != 0 ? "right" : "wrong";
    const Json json{{"slot", state[0] < 3 ? kStates[state[0]] : "unknown"},
                    {"cam", utf8Of(name, 128)},
                    {"ca_systems", ids},
                    {"language", std::string(language, strnlen(language, 4))},
                    {"dialogue", dialogue[0] != 0},
                    {"pin", held},
                    {"keys", described},
                    {"host_id", hostId}};
    if (asJson) {
        printJson(json);
        return;
    }
    std::string all;
    for (const auto& id : ids) all += (all.empty() ? "" : " ") + id;
    printf("slot      %s\n", json["slot"].get<std::string>().c_str());
    printf("CAM       %s\n", printable(json["cam"].get<std::string>()).c_str());
    printf("systems   %s\n", all.c_str());
    printf("PIN held  %s\n", held);
    printf("keys      %s\n", printable(described).c_str());
    printf("host id   %s\n", hostId.c_str());
}

}  // namespace

void addCi(Command& app) {
    Command* ci = app.addCommand("ci", "Common Interface slot and its CAM");
    ci->requireCommand();
    struct Options {
        std::vector<std::string> answers;
        std::string text;
        uint32_t kind = 0;
        bool json = false;
    };
    auto options = std::make_shared<Options>();

    Command* command = ci->addCommand("status", "Slot, CAM, PIN and keys");
    addJson(command, &options->json);
    command->callback([options] { status(options->json); });

    command = ci->addCommand("menu", "Open the CAM's menu and answer it");
    command->addOption("--answer", options->answers,
                       "An answer in place of typing it, again for each; then the menu is closed");
    command->callback([options] { menu(options->answers); });

    command = ci->addCommand("pin", "Set the PIN that the television sends to the CAM");
    command->addOption("digits", options->text, "4 to 8 digits; none to forget it");
    command->callback([options] {
        requireService();
        check(a_qeltvapi_ci_set(QELTV_CI_SET_PIN, 0, options->text.data()), "PIN");
    });

    const auto simple = [&](const char* name, const char* text, int type) {
        ci->addCommand(name, text)->callback([name, type] {
            requireService();
            check(a_qeltvapi_ci_set(type, 0, nullptr), name);
        });
    };
    simple("insert", "Put the CAM into the slot", QELTV_CI_SET_INSERT);
    simple("remove", "Take the CAM out of the slot", QELTV_CI_SET_REMOVE);
    simple("reset", "Reset the CAM", QELTV_CI_SET_RESET);

    Command* key = ci->addCommand("key", "Key data of the host");
    key->requireCommand();
    command = key->addCommand("load", "Take key data from a file");
    command->addOption("path", options->text, "The file, as the television sees it")->required();
    command->addOption("--kind", options->kind, "Kind of the key data, 0 to 3")->showDefault();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_ci_key_update_with_path_ex(options->text.c_str(), options->kind),
              options->text);
    });
    key->addCommand("activate", "Use what was loaded")->callback([] {
        requireService();
        check(a_qeltvapi_ci_key_activate(), "activate");
    });
    key->addCommand("erase", "Erase all key data")->callback([] {
        requireService();
        check(a_qeltvapi_ci_key_erase(), "erase");
    });
}

}  // namespace tool
