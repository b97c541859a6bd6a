#include "TestCard.h"

#include <cmath>

namespace screen {
namespace {

constexpr Colour kBars[] = {{191, 191, 191}, {191, 191, 0}, {0, 191, 191}, {0, 191, 0},
                            {191, 0, 191},   {191, 0, 0},   {0, 0, 191},   {16, 16, 16}};
constexpr Colour kWhite{255, 255, 255};
constexpr Colour kGrey{200, 205, 212};
constexpr Colour kPlate{12, 16, 24};
constexpr double kMarkSeconds = 4;

std::string codecOf(uint32_t codec) {
    constexpr const char* kNames[] = {"no video", "MPEG-2", "H.264", "H.265", "uncompressed"};
    return codec < std::size(kNames) ? kNames[codec] : "unknown codec";
}

/** A bit rate behind what has it; empty if it is unknown. */
std::string rateOf(uint32_t kbitPerSecond) {
    return kbitPerSecond == 0 ? "" : " " + std::to_string(kbitPerSecond) + " kbit/s";
}

/** The facts that a viewer of a test card looks for. */
std::string factsOf(const ShownPath& path) {
    std::string facts = path.video.text;
    if (!facts.empty()) {
        facts += ", " + codecOf(path.video.codec) + rateOf(path.video.kbitPerSecond);
    }
    if (path.audio.track != 0) {
        if (!facts.empty()) facts += ", ";
        facts += "sound " + std::string(path.audio.language, 3) + " " +
                 std::to_string(path.audio.channels) + " channels" +
                 rateOf(path.audio.kbitPerSecond);
    }
    return facts;
}

std::string idsOf(const ShownPath& path) {
    if (!path.channel) return "";
    const ShownChannel& channel = *path.channel;
    return "service " + std::to_string(channel.serviceId) + ", PMT " +
           std::to_string(channel.pmtPid) + ", video " + std::to_string(channel.videoPid) +
           ", sound " + std::to_string(channel.audioPid) + ", " +
           std::to_string(path.connection.frequencyKHz / 1000) + " MHz";
}

}  // namespace

void TestCard::drawStill(const ShownPath& path, const std::string& title) {
    const double width = mStill.width(), height = mStill.height();
    const bool radio = path.channel && path.channel->radio;
    mStill.fill({0, 0, width, height}, kPlate);
    if (!radio) {
        const double bar = width / static_cast<double>(std::size(kBars));
        for (size_t i = 0; i < std::size(kBars); ++i) {
            mStill.fill({static_cast<double>(i) * bar, 0, bar, height * 0.62}, kBars[i]);
        }
        constexpr int kSteps = 16;
        for (int i = 0; i < kSteps; ++i) {
            const auto grey = static_cast<uint8_t>(255 * i / (kSteps - 1));
            mStill.fill({width * i / kSteps, height * 0.62, width / kSteps, height * 0.08},
                        {grey, grey, grey});
        }
    }
    const double size = height / 12, small = height / 26, margin = width * 0.04;
    mStill.text(fitted(title, size, Face::kBold, width - 2 * margin), margin, height * 0.82, size,
                Face::kBold, kWhite);
    mStill.text(fitted(factsOf(path), small, Face::kPlain, width - 2 * margin), margin,
                height * 0.89, small, Face::kPlain, kGrey);
    mStill.text(fitted(idsOf(path), small, Face::kPlain, width - 2 * margin), margin, height * 0.95,
                small, Face::kPlain, kGrey);
}

void TestCard::draw(Canvas* canvas, const Shown& shown, uint32_t number,
                    std::chrono::milliseconds time) {
    const ShownPath& path = shown.paths[number];
    const double width = canvas->width(), height = canvas->height();
    if (!shown.reachable || !path.plays() || path.muted) {
        canvas->fill({0, 0, width, height}, {0, 0, 0});
        return;
    }
    const std::string title =
            path.channel ? path.channel->number + "  " + path.channel->name : path.source;
    const std::string key = title + '\n' + factsOf(path) + '\n' + idsOf(path);
    if (key != mStillOf) {
        drawStill(path, title);
        mStillOf = key;
    }
    canvas->picture(mStill, {0, 0, width, height});

    const double size = height / 14;
    const std::string clock = clockText(shown.time + shown.offset) + ":" +
                              (shown.time % 60 < 10 ? "0" : "") + std::to_string(shown.time % 60);
    const double taken = textWidth("00:00:00", size, Face::kFixed);
    const Box plate{width * 0.96 - taken, height * 0.04, taken + size * 0.5, size * 1.3};
    canvas->fill({plate.x - size * 0.5, plate.y, plate.width, plate.height}, kPlate);
    canvas->text(clock, plate.x - size * 0.25, plate.y + size, size, Face::kFixed, kWhite);

    const double phase = std::fmod(static_cast<double>(time.count()) / 1000, kMarkSeconds);
    const double mark = width / 24;
    const double x = (width - mark) * phase / kMarkSeconds;
    canvas->fill({x, height * 0.97, mark, height * 0.02}, kWhite);
}

}  // namespace screen
