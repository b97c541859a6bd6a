#include <log/log.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

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

bool run(int argc, char** argv) {
    CommandLine app("qeltvctl", "Drives the television through the client library.",
                    "Exit status: 0 done, 1 refused by the television, 2 wrong usage, 3 television "
                    "not reachable.",
                    QELTV_VERSION);
    app.requireCommand();
    bool trace = false;
    app.addFlag("--trace", trace, "Show the library's trace lines on stderr");
    app.beforeCommand([&] {
        if (!trace) return;
        mTvApiDebug = 1;
        __android_log_set_minimum_priority(ANDROID_LOG_DEBUG);
    });

    for (const auto add : kGroups) add(app);

    if (argc == 2 && strcmp(argv[1], "--print-commands") == 0) {
        printCommands(app);
        return true;
    }
    return app.run(argc, argv);
}

}  // namespace

bool runCommand(const std::vector<std::string>& words) {
    std::vector<std::string> copies{"qeltvctl"};
    copies.insert(copies.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : copies) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    return run(static_cast<int>(copies.size()), arguments.data());
}

}  // namespace tool

int main(int argc, char** argv) {
    tool::openStandardFiles();
    int status = tool::kRefused;
    try {
        status = tool::runCommand({argv + std::min(argc, 1), argv + argc}) ? tool::kDone
                                                                           : tool::kUsage;
    } catch (const tool::Failure& e) {
        status = e.exit();
        if (*e.what() != '\0') {
            fprintf(stderr, "qeltvctl: %s\n", tool::printable(e.what()).c_str());
        }
    } catch (const std::exception& e) {
        fprintf(stderr, "qeltvctl: unexpected failure: %s\n", tool::printable(e.what()).c_str());
    }
    return tool::finishOutput() || status != tool::kDone ? status : int{tool::kRefused};
}
