#include "Osd.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Pictures.h"
#include "layouts/alert.h"
#include "unicode.h"

namespace screen {
namespace {

constexpr Colour kPanel{14, 20, 32, 245};
constexpr Colour kBlack{0, 0, 0};
constexpr Colour kWhite{255, 255, 255};
constexpr Colour kSoft{190, 200, 215};
constexpr Colour kAccent{255, 196, 61};
constexpr Colour kTrack{70, 80, 98};
constexpr Colour kRed{214, 40, 57};

/** A message in the middle of a box, two lines at most. */
Group message(const char* part, const Box& box, const std::string& title, const std::string& text) {
    Group group{part, title, {}};
    const double size = std::max(22.0, 44 * box.width / kSceneWidth);
    const double middle = box.x + box.width / 2;
    const auto centred = [&](const std::string& line, double y, double height, Face face,
                             Colour colour) {
        const std::string shown = fitted(line, height, face, box.width - 20);
        group.text(shown, middle - textWidth(shown, height, face) / 2, y, height, face, colour);
    };
    group.box(box, kBlack);
    centred(title, box.y + box.height / 2, size, Face::kBold, kWhite);
    centred(text, box.y + box.height / 2 + size, size * 0.55, Face::kPlain, kSoft);
    return group;
}

/** What stands in the place of a picture. */
void addPathMessage(Scene* scene, const ShownPath& path, const char* part) {
    const Box place = placeOf(path, kSceneWidth, kSceneHeight);
    const std::string name = path.channel ? path.channel->name : path.source;
    if (path.connection.status == QELTV_TUNING_SEARCHES &&
        path.connection.error == QELTV_TUNING_NO_SIGNAL) {
        scene->push_back(message(part, place, "No signal", name));
    } else if (path.connection.status == QELTV_TUNING_FAILED) {
        switch (path.connection.error) {
            case QELTV_TUNING_NO_SIGNAL:
                scene->push_back(message(part, place, "No signal",
                                         path.channel ? "Check the aerial cable"
                                                      : "Nothing is connected to " + name));
                break;
            case QELTV_TUNING_SCRAMBLED:
                scene->push_back(
                        message(part, place, "Scrambled", "This channel needs a CAM or a key"));
                break;
            case QELTV_TUNING_BLOCKED:
                scene->push_back(message(part, place, "Locked", "Enter the PIN to watch"));
                break;
            default:
                scene->push_back(message(part, place, "No service", name + " is not on air"));
        }
    }
}

/** A small label with a text; gives the x coordinate to its left. */
double badge(Group* group, const std::string& text, double right, double y, Colour background,
             Colour colour) {
    constexpr double kSize = 20, kSpace = 10;
    const double width = textWidth(text, kSize, Face::kBold) + 2 * kSpace;
    group->box({right - width, y - 22, width, 30}, background);
    group->text(text, right - width + kSpace, y, kSize, Face::kBold, colour);
    return right - width - 8;
}

void addBanner(Scene* scene, const Shown& shown) {
    const ShownPath& path = shown.paths[0];
    if (path.screen.banner == 0 || !path.channel) return;
    const ShownChannel& channel = *path.channel;
    Group group{"banner", "Channel banner", {}};
    constexpr double kLeft = 60, kTop = 520, kWidth = 1160, kHeight = 160;
    group.box({kLeft, kTop, kWidth, kHeight}, kPanel);
    group.box({kLeft, kTop, 8, kHeight}, kAccent);
    const double number =
            group.text(channel.number, kLeft + 30, kTop + 52, 44, Face::kBold, kAccent, 150);
    group.text(channel.name, kLeft + 50 + number, kTop + 52, 36, Face::kBold, kWhite, 460);
    group.text(clockText(shown.time + shown.offset), kLeft + kWidth - 110, kTop + 50, 34,
               Face::kPlain, kWhite);

    double right = kLeft + kWidth - 130;
    const auto icon = [&](const std::string& text) {
        if (!text.empty()) right = badge(&group, text, right, kTop + 46, kTrack, kWhite);
    };
    icon(channel.highDefinition ? "HD" : channel.radio ? "RADIO" : "SD");
    if (path.audio.track != 0) icon(std::string(path.audio.language, 3));
    if (shown.present && shown.present->subtitles) icon("SUB");
    if (shown.present && shown.present->description) icon("AD");
    if (channel.scrambled) icon("CA");
    if (channel.favourite) icon("\u2665");

    if (shown.present) {
        const Programme& now = *shown.present;
        const double size = 26;
        const double times = group.text(clockText(now.start + shown.offset) + " \u2013 " +
                                                clockText(now.start + now.seconds + shown.offset),
                                        kLeft + 30, kTop + 95, size, Face::kPlain, kSoft);
        if (!now.rating.empty()) {
            badge(&group, now.rating, kLeft + kWidth - 20, kTop + 94, kTrack, kWhite);
        }
        group.text(now.title, kLeft + 50 + times, kTop + 95, size, Face::kBold, kWhite,
                   kWidth - times - 200);
        const Box bar{kLeft + 30, kTop + 108, kWidth - 60, 6};
        const double done = std::clamp(
                static_cast<double>(shown.time - now.start) / static_cast<double>(now.seconds), 0.0,
                1.0);
        group.box(bar, kTrack);
        group.box({bar.x, bar.y, bar.width * done, bar.height}, kAccent);
    }
    if (shown.following) {
        group.text(clockText(shown.following->start + shown.offset) + "  " + shown.following->title,
                   kLeft + 30, kTop + 145, 22, Face::kPlain, kSoft, kWidth - 60);
    }
    scene->push_back(std::move(group));
}

void addVolume(Scene* scene, const Shown& shown) {
    if (shown.muted) {
        Group group{"mute", "Sound", {}};
        group.box({1110, 120, 110, 44}, kPanel);
        group.text("MUTE", 1128, 151, 26, Face::kBold, kAccent);
        scene->push_back(std::move(group));
    }
    if (!shown.passing.volume) return;
    Group group{"volume", "Volume", {}};
    group.box({1160, 200, 60, 290}, kPanel);
    const std::string number = std::to_string(shown.volume);
    group.text(number, 1190 - textWidth(number, 26, Face::kBold) / 2, 232, 26, Face::kBold, kWhite);
    const double height =
            220.0 * std::clamp(shown.volume, 0, QELTV_VOLUME_MAXIMUM) / QELTV_VOLUME_MAXIMUM;
    group.box({1180, 250, 20, 220}, kTrack);
    group.box({1180, 470 - height, 20, height}, kAccent);
    scene->push_back(std::move(group));
}

void addCorners(Scene* scene, const Shown& shown) {
    const ShownPath& path = shown.paths[0];
    if (path.screen.digits[0] != '\0') {
        Group group{"digits", "Channel number", {}};
        const std::string digits = std::string(path.screen.digits) + "_";
        const double width = textWidth(digits, 52, Face::kBold) + 40;
        group.box({1220 - width, 36, width, 72}, kPanel);
        group.text(digits, 1240 - width, 90, 52, Face::kBold, kAccent);
        scene->push_back(std::move(group));
    }
    if (shown.passing.source && path.running()) {
        Group group{"source", "Input", {}};
        const double width = textWidth(path.source, 40, Face::kBold) + 40;
        group.box({60, 36, width, 64}, kPanel);
        group.text(path.source, 80, 82, 40, Face::kBold, kWhite);
        scene->push_back(std::move(group));
    }
    double x = 60;
    const auto label = [&](const char* part, const std::string& name, const std::string& text,
                           Colour colour) {
        Group group{part, name, {}};
        const double width = textWidth(text, 24, Face::kBold) + 56;
        group.box({x, 120, width, 44}, kPanel);
        group.box({x + 14, 134, 16, 16}, colour);
        group.text(text, x + 42, 151, 24, Face::kBold, kWhite);
        x += width + 12;
        scene->push_back(std::move(group));
    };
    if (shown.passing.recording) label("recording", "Recording", "REC", kRed);
    if (shown.scans) {
        label("scan", "Scan",
              "Scan " + std::to_string(shown.scanPercent) + " %, " +
                      std::to_string(shown.scanServices) + " services",
              kAccent);
    }
}

void addAlert(Scene* scene, const Shown& shown) {
    if (shown.alert == QELTV_ALERT_NONE) return;
    constexpr const char* kTitles[] = {"", "Test of the alert system", "Message of the authorities",
                                       "Warning", "National emergency"};
    const std::string title =
            shown.alert > 0 && static_cast<size_t>(shown.alert) < std::size(kTitles)
                    ? kTitles[shown.alert]
                    : "Emergency alert";
    Group group{"alert", "Emergency alert", {}};
    group.box({0, 0, kSceneWidth, 110}, {170, 20, 34});
    group.text(title, 40, 56, 44, Face::kBold, kWhite, kSceneWidth - 80);
    group.text(shown.alertArea == 0 ? "Everywhere. Follow the instructions that are broadcast."
                                    : "Area " + std::to_string(shown.alertArea) +
                                              ". Follow the instructions that are broadcast.",
               40, 94, 26, Face::kPlain, kWhite, kSceneWidth - 80);
    scene->push_back(std::move(group));
}

/** The interface says which captions are shown, not their text. */
void addCaptions(Scene* scene, const Shown& shown) {
    std::string text;
    if (!shown.subtitle.empty()) text = "[subtitles " + shown.subtitle + "]";
    if (shown.captions > 0) text = "[captions, stream " + std::to_string(shown.captions) + "]";
    if (text.empty() || !shown.paths[0].plays()) return;
    Group group{"captions", "Captions", {}};
    const double width = textWidth(text, 32, Face::kPlain);
    const double y = shown.paths[0].screen.banner != 0 ? 490 : 650;
    group.box({kSceneWidth / 2 - width / 2 - 16, y - 38, width + 32, 54}, {0, 0, 0, 200});
    group.text(text, kSceneWidth / 2 - width / 2, y, 32, Face::kPlain, kWhite);
    scene->push_back(std::move(group));
}

void addPin(Scene* scene, const Shown& shown) {
    if (!shown.passing.pin) return;
    Group group{"pin", "PIN", {}};
    group.box({400, 230, 480, 250}, kPanel);
    group.text("Enter the PIN", 440, 290, 36, Face::kBold, kWhite);
    group.text(shown.passing.pinWrong ? "The PIN was not accepted. Try again." : "4 to 8 digits",
               440, 330, 22, Face::kPlain, shown.passing.pinWrong ? kAccent : kSoft);
    group.box({440, 360, 400, 70}, kTrack);
    scene->push_back(std::move(group));
}

constexpr double kCellWidth = 24, kCellHeight = 27;
constexpr double kPageLeft = (kSceneWidth - kCellWidth * QELTV_TELETEXT_COLUMNS) / 2;
constexpr double kPageTop = (kSceneHeight - kCellHeight * QELTV_TELETEXT_ROWS) / 2;

Colour teletextColour(uint32_t number) {
    const auto part = [&](uint32_t bit) {
        return static_cast<uint8_t>((number & bit) != 0 ? 255 : 0);
    };
    return {part(1), part(2), part(4)};
}

/** The cells of a mosaic character, two columns by three rows. */
void addMosaic(Group* group, uint8_t code, double x, double y, Colour colour) {
    const uint32_t cells = (code & 0x1fU) | (code & 0x40U) >> 1;
    for (uint32_t cell = 0; cell < 6; ++cell) {
        if ((cells & 1u << cell) == 0) continue;
        group->box({x + (cell % 2) * kCellWidth / 2, y + (cell / 2) * kCellHeight / 3,
                    kCellWidth / 2, kCellHeight / 3},
                   colour);
    }
}

/** A row: control codes change what follows and show as blanks. */
void addTeletextRow(Group* group, const uint8_t* row, const uint16_t* characters, double y) {
    uint32_t foreground = 7, background = 0;
    bool mosaics = false;
    std::u16string run;
    double start = 0;
    const auto flush = [&] {
        const size_t last = run.find_last_not_of(u' ');
        if (last != std::u16string::npos) {
            run.resize(last + 1);
            std::string text;
            for (const char16_t c : run) tool::appendUtf8(&text, c);
            group->shapes.push_back({{start, y + kCellHeight * 0.8,
                                      kCellWidth * static_cast<double>(run.size()), 0},
                                     teletextColour(foreground),
                                     text,
                                     kCellHeight * 0.95,
                                     Face::kFixed});
        }
        run.clear();
    };
    for (int column = 0; column < QELTV_TELETEXT_COLUMNS; ++column) {
        const double x = kPageLeft + kCellWidth * column;
        const uint8_t code = row[column] & 0x7f;
        if (background != 0) {
            group->box({x, y, kCellWidth, kCellHeight}, teletextColour(background));
        }
        if (code < 0x20) {
            flush();
            if (code < 8 || (code >= 0x10 && code < 0x18)) {
                foreground = code & 7;
                mosaics = code >= 0x10;
            } else if (code == 0x1c) {
                background = 0;
            } else if (code == 0x1d) {
                background = foreground;
            }
        } else if (mosaics && (code < 0x40 || code >= 0x60)) {
            flush();
            addMosaic(group, code, x, y, teletextColour(foreground));
        } else if (code == ' ' && run.empty()) {
            continue;
        } else {
            if (run.empty()) start = x;
            run += static_cast<char16_t>(characters[column]);
        }
    }
    flush();
}

void addTeletext(Scene* scene, const Shown& shown) {
    if (!shown.passing.teletext) return;
    Group group{"teletext", "Teletext", {}};
    group.box({0, 0, kSceneWidth, kSceneHeight}, kBlack);
    const QELTV_TELETEXT_PAGE_T& page = *shown.passing.teletext;
    for (int row = 0; row < QELTV_TELETEXT_ROWS; ++row) {
        addTeletextRow(&group, page.rows[row], page.characters[row], kPageTop + kCellHeight * row);
    }
    scene->push_back(std::move(group));
}

}  // namespace

Scene sceneOf(const Shown& shown) {
    Scene scene;
    const Box all{0, 0, kSceneWidth, kSceneHeight};
    if (!shown.reachable) {
        scene.push_back(message("message", all, "The television does not answer",
                                "Waiting for it to come back"));
        return scene;
    }
    if (shown.standby()) {
        scene.push_back(message("message", all, "Standby", "The power key switches on"));
        return scene;
    }
    if (!shown.paths[0].running() && !shown.paths[1].running()) {
        scene.push_back(
                message("message", all, "Nothing is shown", "Select a channel or an input"));
    }
    if (shown.paths[0].running()) addPathMessage(&scene, shown.paths[0], "message");
    if (shown.paths[1].running()) addPathMessage(&scene, shown.paths[1], "sub-message");
    addTeletext(&scene, shown);
    addCaptions(&scene, shown);
    addBanner(&scene, shown);
    addVolume(&scene, shown);
    addCorners(&scene, shown);
    addPin(&scene, shown);
    addAlert(&scene, shown);
    return scene;
}

}  // namespace screen
