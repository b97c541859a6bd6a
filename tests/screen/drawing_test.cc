#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "Canvas.h"
#include "ImageFile.h"
#include "Osd.h"
#include "Pictures.h"
#include "TestCard.h"
#include "daemon.h"

using namespace screen;

namespace {

Colour at(const Canvas& canvas, int x, int y) {
    const uint8_t* pixel = canvas.pixels() + canvas.stride() * static_cast<size_t>(y) + x * 4;
    return {pixel[0], pixel[1], pixel[2]};
}

/** A main path that plays a channel, with its banner. */
Shown playing(const std::string& name) {
    Shown shown;
    shown.reachable = true;
    ShownPath& path = shown.paths[0];
    path.connection.status = QELTV_TUNING_PLAYS;
    path.screen.width = path.screen.height = QELTV_REGION_FULL;
    path.screen.banner = 1;
    path.channel.emplace();
    path.channel->number = "7";
    path.channel->name = name;
    shown.present.emplace();
    shown.present->title = name;
    shown.present->seconds = 60;
    return shown;
}

const Group* find(const Scene& scene, const std::string& part) {
    for (const Group& group : scene) {
        if (group.part == part) return &group;
    }
    return nullptr;
}

std::string textsOf(const Group* group) {
    std::string all;
    if (group == nullptr) return all;
    for (const Shape& shape : group->shapes) {
        if (!shape.text.empty()) all += shape.text + "|";
    }
    return all;
}

}  // namespace

TEST(Canvas, BlendsAndClips) {
    Canvas canvas(20, 10);
    canvas.fill({-100, -100, 110, 1e9}, {200, 100, 0, 255});
    canvas.fill({5, 0, 1e9, 5}, {0, 0, 0, 128});
    EXPECT_EQ(200, at(canvas, 0, 0).red);
    EXPECT_NEAR(100, at(canvas, 7, 2).red, 1);
    EXPECT_EQ(200, at(canvas, 7, 7).red);
    EXPECT_EQ(0, at(canvas, 15, 9).red);
    canvas.text("outside", -30, 3, 40, Face::kBold, {255, 255, 255});
    canvas.text("outside", 15, 300, 40, Face::kBold, {255, 255, 255});
    Canvas small(3, 3);
    small.picture(canvas, {-5, -5, 100, 100});
    small.picture(canvas, {50, 50, 10, 10});
}

TEST(Canvas, CutsTextsBetweenCharacters) {
    const std::string name = "\xc3\x9c\xc3\x9c\xc3\x9c\xc3\x9c\xc3\x9c\xc3\x9c";
    const double width = textWidth(name, 20, Face::kPlain);
    EXPECT_EQ(name, fitted(name, 20, Face::kPlain, width));
    EXPECT_EQ("\xc3\x9c\xc3\x9c\xe2\x80\xa6", fitted(name, 20, Face::kPlain, width * 0.6));
    EXPECT_EQ("", fitted(name, 20, Face::kPlain, 1));
    EXPECT_GT(textWidth("\xff\xc3\xf0\x9f", 20, Face::kFixed), 0) << "no UTF-8";
}

TEST(Osd, SurvivesAnyBytes) {
    std::mt19937 random(3);
    for (int round = 0; round < 20; ++round) {
        std::string name(random() % 128, ' ');
        for (char& c : name) c = static_cast<char>(random());
        Shown shown = playing(name);
        shown.passing.volume = shown.passing.pin = shown.passing.source = true;
        shown.volume = static_cast<int>(random());
        shown.alert = static_cast<int>(random());
        shown.passing.teletext.emplace();
        for (auto& row : shown.passing.teletext->rows) {
            for (uint8_t& byte : row) byte = static_cast<uint8_t>(random());
        }
        for (auto& row : shown.passing.teletext->characters) {
            for (uint16_t& unit : row) unit = static_cast<uint16_t>(random());
        }
        Canvas canvas(320, 180);
        drawPictures(&canvas, shown, std::chrono::milliseconds(round));
        draw(&canvas, sceneOf(shown));
    }
}

TEST(Osd, ShowsTeletextInItsCharacterSet) {
    Shown shown = playing("One");
    shown.passing.teletext.emplace();
    memcpy(shown.passing.teletext->rows[1], "  K}ste", 7);
    const char16_t characters[] = u"  K\u00fcste";
    for (size_t i = 0; i < 7; ++i) shown.passing.teletext->characters[1][i] = characters[i];
    EXPECT_EQ("K\u00fcste|", textsOf(find(sceneOf(shown), "teletext")));
}

TEST(Osd, HasOneMessageForEachState) {
    Shown shown;
    EXPECT_NE("", textsOf(find(sceneOf(shown), "message"))) << "no television";
    shown = playing("One");
    EXPECT_EQ(nullptr, find(sceneOf(shown), "message"));
    EXPECT_NE(std::string::npos, textsOf(find(sceneOf(shown), "banner")).find("One|"));
    shown.paths[0].connection.status = QELTV_TUNING_FAILED;
    for (const auto& [error, title] : {std::pair{QELTV_TUNING_NO_SIGNAL, "No signal"},
                                       {QELTV_TUNING_SCRAMBLED, "Scrambled"},
                                       {QELTV_TUNING_BLOCKED, "Locked"},
                                       {QELTV_TUNING_NO_SERVICE, "No service"}}) {
        shown.paths[0].connection.error = error;
        EXPECT_EQ(0u, textsOf(find(sceneOf(shown), "message")).find(title));
    }
    shown.paths[0].screen.standby = 1;
    EXPECT_EQ(1u, sceneOf(shown).size()) << "standby shows nothing else";
}

TEST(ImageFile, SaysWhyItCannotBeWritten) {
    const wire::TemporaryDirectory directory;
    const Canvas canvas(16, 16);
    for (const std::string name : {"/none/shot.png", "/shot.gif", "/shot"}) {
        try {
            writeImage(canvas, directory.path() + name);
            ADD_FAILURE() << name << " was written";
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string::npos, std::string(error.what()).find(name)) << error.what();
        }
    }
    writeImage(canvas, directory.path() + "/shot.jpg");
    std::ifstream file(directory.path() + "/shot.jpg", std::ios::binary);
    EXPECT_EQ(0xff, file.get());
    EXPECT_EQ(0xd8, file.get());
}
