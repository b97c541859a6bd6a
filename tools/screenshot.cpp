#include <chrono>
#include <memory>

#include "Canvas.h"
#include "ImageFile.h"
#include "Osd.h"
#include "Pictures.h"
#include "Television.h"
#include "hw_qeltvapi_record.h"
#include "tool.h"

namespace tool {
namespace {

struct Options {
    std::string file;
    int32_t width = 1280;
    bool osd = false;
};

void take(const Options& options) {
    requireService();
    screen::Shown shown = screen::Television().read();
    shown.passing.recording = a_qeltvapi_record_pvr_get_current_handle() != 0;
    screen::Canvas canvas(options.width, options.width * 9 / 16);
    try {
        screen::drawPictures(&canvas, shown, std::chrono::seconds(shown.time));
        if (options.osd) screen::draw(&canvas, screen::sceneOf(shown));
        screen::writeImage(canvas, options.file);
    } catch (const std::runtime_error& error) {
        throw Failure(kRefused, error.what());
    }
}

}  // namespace

void addScreenshot(Command& app) {
    auto options = std::make_shared<Options>();
    Command* command = app.addCommand("screenshot", "Write what is on the screen to a file");
    command->addOption("file", options->file, "A .png or .jpg file, which is replaced")->required();
    command->addOption("--width", options->width, "Pixels of a line")
            ->between(160, 3840)
            ->showDefault();
    command->addFlag("--osd", options->osd, "With the banner and what else is on top");
    command->callback([options] { take(*options); });
}

}  // namespace tool
