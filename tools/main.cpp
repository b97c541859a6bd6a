#include <log/log.h>

#include <cstdio>
#include <cstring>

#include "hw_qeltvapi_common.h"
#include "tool.h"

int main(int argc, char** argv) {
    CLI::App app("Drives the television through the client library.", "qeltvctl");
    app.require_subcommand(1);
    app.footer(
            "Exit status: 0 done, 1 refused by the television, 2 wrong usage, 3 television not "
            "reachable.");
    bool trace = false;
    app.add_flag("--trace", trace, "Show the library's trace lines on stderr");
    // Before the command itself runs.
    app.parse_complete_callback([&] {
        if (!trace) return;
        mTvApiDebug = 1;
        __android_log_set_minimum_priority(ANDROID_LOG_DEBUG);
    });

    tool::addAlert(app);
    tool::addBiss(app);
    tool::addCall(app);
    tool::addChannel(app);
    tool::addCi(app);
    tool::addConfig(app);
    tool::addEpg(app);
    tool::addRecord(app);
    tool::addRating(app);
    tool::addScan(app);
    tool::addSatellite(app);
    tool::addService(app);
    tool::addTime(app);
    tool::addUpgrade(app);
    tool::addSubtitle(app);
    tool::addTeletext(app);
    tool::addTimeshift(app);
    tool::addTune(app);
    tool::addInput(app);
    tool::addSound(app);
    tool::addPicture(app);
    tool::addPower(app);
    tool::addWatch(app);

    if (argc == 2 && strcmp(argv[1], "--print-commands") == 0) {
        tool::printCommands(app);
        return tool::kDone;
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e) == 0 ? tool::kDone : tool::kUsage;
    } catch (const tool::Failure& e) {
        fprintf(stderr, "qeltvctl: %s\n", e.what());
        return e.exit();
    }
    return tool::kDone;
}
