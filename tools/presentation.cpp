#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "hw_pcl.h"
#include "hw_qeltvapi_audioinfo.h"
#include "hw_qeltvapi_av_mode.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_freeze.h"
#include "hw_qeltvapi_screenmode.h"
#include "hw_qeltvapi_volctrl.h"
#include "layouts/codes.h"
#include "layouts/presentation.h"
#include "suggestion.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kVolumeNames[QELTV_VOLUME_TYPES] = {"speaker", "headphone", "digital",
                                                          "description", "bluetooth"};
constexpr const char* kPictureModes[] = {"",      "standard", "vivid", "film",
                                         "sport", "game",     "photo", "user"};
constexpr const char* kSoundEffects[] = {"",       "standard", "music", "film",
                                         "speech", "sport",    "night"};
constexpr const char* kScreenModes[] = {"",          "automatic", "16:9", "4:3",
                                        "zoom 14:9", "zoom 16:9", "wide", "pixel by pixel"};
constexpr const char* kWakeNames[QELTV_WAKE_REASONS] = {
        "unknown", "mains", "remote control", "timer", "CEC", "network", "front panel"};
constexpr const char* kDownNames[QELTV_DOWN_REASONS] = {
        "unknown", "remote control", "sleep timer", "no signal", "idle", "upgrade"};

struct Key {
    const char* name;
    int32_t code;
};
constexpr Key kKeys[] = {
        {"0", QELTV_KEY_DIGIT_0},
        {"1", QELTV_KEY_DIGIT_0 + 1},
        {"2", QELTV_KEY_DIGIT_0 + 2},
        {"3", QELTV_KEY_DIGIT_0 + 3},
        {"4", QELTV_KEY_DIGIT_0 + 4},
        {"5", QELTV_KEY_DIGIT_0 + 5},
        {"6", QELTV_KEY_DIGIT_0 + 6},
        {"7", QELTV_KEY_DIGIT_0 + 7},
        {"8", QELTV_KEY_DIGIT_0 + 8},
        {"9", QELTV_KEY_DIGIT_9},
        {"audio-track", QELTV_KEY_AUDIO_TRACK},
        {"channel-down", QELTV_KEY_CHANNEL_DOWN},
        {"channel-up", QELTV_KEY_CHANNEL_UP},
        {"info", QELTV_KEY_INFO},
        {"input", QELTV_KEY_INPUT},
        {"last-channel", QELTV_KEY_LAST_CHANNEL},
        {"mute", QELTV_KEY_MUTE},
        {"ok", QELTV_KEY_OK},
        {"period", QELTV_KEY_PERIOD},
        {"power", QELTV_KEY_POWER},
        {"volume-down", QELTV_KEY_VOLUME_DOWN},
        {"volume-up", QELTV_KEY_VOLUME_UP},
};

std::vector<std::string> keyNames() {
    std::vector<std::string> names;
    for (const Key& key : kKeys) names.push_back(key.name);
    return names;
}

/** The names of a table that are one word. */
template <size_t N>
std::vector<std::string> wordsIn(const char* const (&names)[N]) {
    std::vector<std::string> words;
    for (const std::string name : names) {
        if (!name.empty() && name.find(' ') == std::string::npos) words.push_back(name);
    }
    return words;
}

void press(const std::vector<std::string>& names) {
    std::vector<int32_t> codes;
    for (const std::string& name : names) {
        const auto key = std::find_if(std::begin(kKeys), std::end(kKeys),
                                      [&](const Key& each) { return name == each.name; });
        if (key == std::end(kKeys)) {
            throw Failure(kUsage, "there is no key " + name + suggestion(name, keyNames()));
        }
        codes.push_back(key->code);
    }
    requireService();
    for (size_t i = 0; i < codes.size(); ++i) {
        check(a_qeltvapi_broadcast_key_handler(codes[i]), "key " + names[i]);
    }
}

/** The power key wakes the television, and puts one that is on into standby. */
void powerUp() {
    requireService();
    if (!inStandby()) {
        printf("the television is on already\n");
        return;
    }
    const int code = a_qeltvapi_broadcast_key_handler(QELTV_KEY_POWER);
    if (code == QELTV_REFUSED) {
        throw Failure(kRefused,
                      "power: not now or not allowed (" + std::to_string(code) +
                              "): the remote control may not wake it; see qeltvctl power setup");
    }
    check(code, "power");
}

template <size_t N>
std::string nameOf(const char* const (&names)[N], uint32_t number) {
    return number < N ? names[number] : std::to_string(number);
}

/** A number by its name in a table, or as a number. */
template <size_t N>
int32_t numberOf(const char* const (&names)[N], const std::string& word, const char* what) {
    for (size_t i = 0; i < N; ++i) {
        if (!word.empty() && (word == names[i] || word == std::to_string(i))) {
            return static_cast<int32_t>(i);
        }
    }
    throw Failure(kUsage, std::string("there is no ") + what + " " + word +
                                  suggestion(word, {std::begin(names), std::end(names)}));
}

/** A 16-bit mode; 65535 stands for no answer. */
uint16_t mode(uint16_t value, const char* what) {
    if (value == 65535) {
        throw Failure(kUnreachable, std::string(what) + ": the television did not answer");
    }
    return value;
}

template <size_t N>
void printModes(const char* const (&names)[N], const std::vector<uint16_t>& modes, uint16_t current,
                bool json) {
    std::vector<std::vector<std::string>> rows{{"MODE", "NAME", ""}};
    Json all = Json::array();
    for (const uint16_t one : modes) {
        rows.push_back({std::to_string(one), nameOf(names, one), one == current ? "*" : ""});
        all.push_back({{"mode", one}, {"name", nameOf(names, one)}, {"current", one == current}});
    }
    if (json) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

using CountModes = int (*)(uint32_t*);
using GetModes = int (*)(uint16_t*, uint32_t*);

std::vector<uint16_t> allModes(CountModes countOf, GetModes get, const char* what) {
    uint32_t count = 0;
    check(countOf(&count), what);
    std::vector<uint16_t> modes(count + 64);
    uint32_t stored = count;
    check(get(modes.data(), &stored), what);
    modes.resize(std::min<size_t>(stored, modes.size()));
    return modes;
}

void printVolumes(bool json) {
    std::vector<std::vector<std::string>> rows{{"TYPE", "VOLUME", ""}};
    Json all = Json::array();
    for (int32_t type = 0; type < QELTV_VOLUME_TYPES; ++type) {
        const auto volume = check(a_qeltvapi_volctrl_getVolume_by_type(type), kVolumeNames[type]);
        const bool muted = a_qeltvapi_volctrl_getMute_by_type(type) != 0;
        rows.push_back({kVolumeNames[type], std::to_string(volume), muted ? "muted" : ""});
        all.push_back({{"type", kVolumeNames[type]}, {"volume", volume}, {"muted", muted}});
    }
    if (json) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

void volume(const std::string& word, const std::string& typeName, bool json) {
    requireService();
    const int32_t type = numberOf(kVolumeNames, typeName, "volume");
    if (word.empty()) {
        printVolumes(json);
        return;
    }
    if (word == "up" || word == "down") {
        const int16_t now = word == "up" ? a_qeltvapi_volctrl_incrVolume_by_type(type)
                                         : a_qeltvapi_volctrl_decrVolume_by_type(type);
        printf("%lld\n", static_cast<long long>(check(now, "volume")));
        return;
    }
    int change = 0;
    char rest = 0;
    if (sscanf(word.c_str(), "%9d%c", &change, &rest) != 1) {
        throw Failure(kUsage, "volume takes 0 to 100, +5, -5, up or down, not \"" + word + "\"");
    }
    if (word[0] != '+' && word[0] != '-') {
        check(a_qeltvapi_volctrl_setVolume_by_type(type, change), "volume");
        return;
    }
    const auto before = check(a_qeltvapi_volctrl_getVolume_by_type(type), "volume");
    const int64_t level = std::clamp<int64_t>(before + change, 0, int64_t{QELTV_VOLUME_MAXIMUM});
    check(a_qeltvapi_volctrl_setVolume_by_type(type, static_cast<int>(level)), "volume");
    printf("%lld\n", static_cast<long long>(level));
}

void printTracks(bool json) {
    // Either the tuner plays or another input: only one of the two has tracks.
    std::vector<QELTV_AUDIO_TRACK_T> tracks;
    for (const auto get : {a_qeltvapi_audio_info_get_available_record,
                           a_qeltvapi_audio_info_get_inputsource_available_record}) {
        uint32_t count = 0;
        check(get(nullptr, &count), "audio");
        std::vector<QELTV_AUDIO_TRACK_T> some(count + 64);
        uint32_t stored = count;
        check(get(some.data(), &stored), "audio");
        some.resize(std::min(count, stored));
        tracks.insert(tracks.end(), some.begin(), some.end());
    }
    std::vector<std::vector<std::string>> rows{{"TRACK", "ABOUT", "KBIT/S", ""}};
    Json all = Json::array();
    for (const QELTV_AUDIO_TRACK_T& track : tracks) {
        AnswerBuffer about;
        int32_t length = 0;
        check(a_qeltvapi_get_audio_apd_text(static_cast<int32_t>(track.track), about.data(),
                                            &length),
              "audio");
        rows.push_back({std::to_string(track.track), about.text(),
                        std::to_string(track.kbitPerSecond), track.current != 0 ? "*" : ""});
        all.push_back({{"track", track.track},
                       {"language", std::string(track.language, 3)},
                       {"channels", track.channels},
                       {"purpose", track.purpose},
                       {"about", about.text()},
                       {"current", track.current != 0}});
    }
    if (json) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

void printPower(bool json) {
    requireService();
    uint32_t wake = 0, down = 0, setup = 0;
    AnswerBuffer wakeData, downData;
    qeltvapi_pcl_wakeup_key_t key{};
    check(c_pcl_get_wakeup_reason(&wake, wakeData.data()), "power");
    check(c_pcl_get_power_down_reason(&down, downData.data()), "power");
    check(c_pcl_get_wakeup_setup(&setup), "power");
    check(c_pcl_get_wakeup_irkey(&key), "power");
    const bool standby = inStandby();
    std::string allowed;
    for (uint32_t reason = 0; reason < QELTV_WAKE_REASONS; ++reason) {
        if ((setup & 1u << reason) == 0) continue;
        if (!allowed.empty()) allowed += ", ";
        allowed += kWakeNames[reason];
    }
    if (json) {
        const Json all{{"standby", standby},
                       {"wake_reason", wake},
                       {"wake_name", nameOf(kWakeNames, wake)},
                       {"wake_key", key.second},
                       {"down_reason", down},
                       {"down_name", nameOf(kDownNames, down)},
                       {"wake_setup", setup}};
        printJson(all);
        return;
    }
    printTable({{"state", standby ? "standby" : "on"},
                {"woken by", nameOf(kWakeNames, wake)},
                {"powered down by", nameOf(kDownNames, down)},
                {"can be woken by", allowed}});
}

}  // namespace

void addSound(Command& app) {
    struct Options {
        std::string word, type = kVolumeNames[0];
        uint32_t track = 0;
        bool on = false, json = false;
    };
    auto options = std::make_shared<Options>();

    Command* command = app.addCommand("volume", "Show or set the volumes");
    command->addOption("volume", options->word, "0 to 100, +5 or -5 for a change, up or down")
            ->offer({"up", "down"});
    command->addOption("--type", options->type,
                       "speaker, headphone, digital, description or bluetooth")
            ->showDefault()
            ->offer(wordsIn(kVolumeNames));
    addJson(command, &options->json);
    command->callback([options] { volume(options->word, options->type, options->json); });

    command = app.addCommand("mute", "Mute or unmute the sound");
    command->addOption("on", options->on, "on or off")->required();
    command->addOption("--type", options->type, "As in volume")
            ->showDefault()
            ->offer(wordsIn(kVolumeNames));
    command->callback([options] {
        requireService();
        check(a_qeltvapi_volctrl_setMute_by_type(numberOf(kVolumeNames, options->type, "volume"),
                                                 options->on),
              "mute");
    });

    Command* audio = app.addCommand("audio", "Sound tracks and effects");
    audio->requireCommand();
    command = audio->addCommand("list", "List the tracks of what is shown");
    addJson(command, &options->json);
    command->callback([options] {
        requireService();
        printTracks(options->json);
    });
    command = audio->addCommand("select", "Select a track");
    command->addOption("track", options->track, "Its number")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_select_audio(&options->track), "audio");
    });
    command = audio->addCommand("language", "Select a track by language");
    command->addOption("language", options->word, "As in \"eng\", or next")->required();
    command->callback([options] {
        requireService();
        check(options->word == "next" ? a_qeltvapi_audio_info_set_next_lanuage()
                                      : a_qeltvapi_select_default_audio(options->word.c_str()),
              options->word);
    });
    command = audio->addCommand("effect", "Show or set the sound effect");
    command->addOption("effect", options->word, "Its name or number")
            ->offer(wordsIn(kSoundEffects));
    addJson(command, &options->json);
    command->callback([options] {
        requireService();
        if (options->word.empty()) {
            printModes(kSoundEffects,
                       allModes(a_qeltvapi_av_mode_get_number_sound_effect,
                                a_qeltvapi_av_mode_get_all_sound_effect, "audio"),
                       mode(a_qeltvapi_av_mode_get_sound_effect(), "audio"), options->json);
            return;
        }
        check(a_qeltvapi_av_mode_set_sound_effect(
                      numberOf(kSoundEffects, options->word, "sound effect")),
              options->word);
    });
}

void addPicture(Command& app) {
    struct Options {
        std::string word, path = "main";
        std::vector<int32_t> sides;
        bool on = false, json = false;
    };
    auto options = std::make_shared<Options>();

    Command* picture = app.addCommand("picture", "Picture modes and freezing");
    picture->requireCommand();
    Command* command = picture->addCommand("mode", "Show or set the picture mode");
    command->addOption("mode", options->word, "Its name or number")->offer(wordsIn(kPictureModes));
    addJson(command, &options->json);
    command->callback([options] {
        requireService();
        if (options->word.empty()) {
            printModes(kPictureModes,
                       allModes(a_qeltvapi_av_mode_get_number_picture_mode,
                                a_qeltvapi_av_mode_get_all_picture_mode, "picture"),
                       mode(a_qeltvapi_av_mode_get_picture_mode(), "picture"), options->json);
            return;
        }
        check(a_qeltvapi_av_mode_set_picture_mode(
                      numberOf(kPictureModes, options->word, "picture mode")),
              options->word);
    });
    command = picture->addCommand("freeze", "Freeze or unfreeze a picture");
    command->addOption("on", options->on, "on or off")->required();
    command->addOption("--path", options->path, "main or sub")
            ->showDefault()
            ->offer({"main", "sub"});
    command->callback([options] {
        requireService();
        check(a_qeltvapi_freeze_set_freeze(options->path.c_str(), options->on), "freeze");
    });

    Command* screen = app.addCommand("screen", "Screen modes and overscan");
    screen->requireCommand();
    command = screen->addCommand("mode", "Show or set the screen mode");
    command->addOption("mode", options->word, "Its name or number")->offer(wordsIn(kScreenModes));
    addJson(command, &options->json);
    command->callback([options] {
        requireService();
        if (options->word.empty()) {
            printModes(kScreenModes,
                       allModes(a_qeltvapi_screenmode_get_number_screen_mode,
                                a_qeltvapi_screenmode_get_all_screen_mode, "screen"),
                       mode(a_qeltvapi_screenmode_get_screen_mode(), "screen"), options->json);
            return;
        }
        check(a_qeltvapi_screenmode_set_screen_mode(
                      numberOf(kScreenModes, options->word, "screen mode")),
              options->word);
    });
    command = screen->addCommand("overscan", "Show or set the overscan, in thousandths");
    command->addOption("sides", options->sides, "Top, bottom, left and right")->expected(4, 4);
    command->addFlag("--keep", options->on, "Keep it over restarts");
    command->callback([options] {
        requireService();
        if (!options->sides.empty()) {
            check(a_qeltvapi_screenmode_set_crnt_overscan(options->sides[0], options->sides[1],
                                                          options->sides[2], options->sides[3]),
                  "overscan");
        }
        if (options->on) check(a_qeltvapi_screenmode_update_overscan_ini(), "overscan");
        if (!options->sides.empty() || options->on) return;
        int32_t four[64] = {};
        check(a_qeltvapi_screenmode_get_crnt_overscan(four), "overscan");
        printf("top %d, bottom %d, left %d, right %d\n", four[0], four[1], four[2], four[3]);
    });
}

void addPower(Command& app) {
    struct Options {
        uint32_t line = 0, level = 0, setup = 0;
        std::string reason;
        std::vector<std::string> keys;
        bool json = false;
    };
    auto options = std::make_shared<Options>();

    Command* key = app.addCommand("key", "Press keys of the remote control");
    key->addOption("key", options->keys, "0 to 9, channel-up, volume-down, ok, power and others")
            ->required()
            ->offer(keyNames());
    key->callback([options] { press(options->keys); });

    Command* power = app.addCommand("power", "Standby, wake-up and GPIO lines");
    power->requireCommand();
    Command* command =
            power->addCommand("status", "On or in standby, and why it woke up and powered down");
    addJson(command, &options->json);
    command->callback([options] { printPower(options->json); });
    command = power->addCommand("down", "Go to standby");
    command->addOption("--reason", options->reason, "Name or number of the reason to record")
            ->offer(wordsIn(kDownNames));
    command->callback([options] {
        requireService();
        if (!options->reason.empty()) {
            const auto reason = static_cast<uint32_t>(
                    numberOf(kDownNames, options->reason, "power-down reason"));
            check(c_pcl_set_power_down_reason(reason, nullptr), "power");
        }
        check(c_pcl_set_power_down(), "power");
    });
    power->addCommand("up", "Come back from standby, as with the remote control")
            ->callback(powerUp);
    power->addCommand("suspend", "Go to suspend, a standby too")->callback([] {
        requireService();
        check(c_pcl_set_request_suspend(), "power");
    });
    command = power->addCommand("setup", "Set what may wake it");
    command->addOption("mask", options->setup, "Bit n for wake-up reason n")->required();
    command->callback([options] {
        requireService();
        check(c_pcl_set_wakeup_setup(options->setup), "power");
    });
    command = power->addCommand("gpio", "Read or set a GPIO line");
    command->addOption("line", options->line, "0 to 63; those below 16 are inputs")->required();
    Option* level = command->addOption("level", options->level, "0 or 1");
    command->callback([options, level] {
        requireService();
        if (level->given()) {
            check(c_pcl_set_gpio(options->line, options->level), "gpio");
            return;
        }
        uint32_t value = 0;
        check(c_pcl_get_gpio(options->line, QELTV_GPIO_LEVEL, &value), "gpio");
        printf("%u\n", value);
    });
}

}  // namespace tool
