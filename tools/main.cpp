#include <log/log.h>

#include <cstdio>
#include <cstring>

#include "hw_qeltvapi_common.h"
#include "tool.h"

namespace tool {

#define GROUP(name) void add##name(Command& app);
#include "groups.inc"
#undef GROUP

namespace {

constexpr void (*kGroups[])(Command&) = {
#define GROUP(name) add##name,
#include "groups.inc"
#undef GROUP
};

}  // namespace
}  // namespace tool

int main(int argc, char** argv) {
    tool::CommandLine app(
            "qeltvctl", "Drives the television through the client library.",
            "Exit status: 0 done, 1 refused by the television, 2 wrong usage, 3 television not "
            "reachable.");
    app.requireCommand();
    bool trace = false;
    app.addFlag("--trace", trace, "Show the library's trace lines on stderr");
    app.beforeCommand([&] {
        if (!trace) return;
        mTvApiDebug = 1;
        __android_log_set_minimum_priority(ANDROID_LOG_DEBUG);
    });

    for (const auto add : tool::kGroups) {
        add(app);
    }

    if (argc == 2 && strcmp(argv[1], "--print-commands") == 0) {
        tool::printCommands(app);
        return tool::kDone;
    }

    try {
        return app.run(argc, argv) ? tool::kDone : tool::kUsage;
    } catch (const tool::Failure& e) {
        fprintf(stderr, "qeltvctl: %s\n", e.what());
        return e.exit();
    }
}
