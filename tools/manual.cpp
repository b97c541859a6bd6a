#include <cstdio>
#include <nlohmann/json.hpp>

#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

Json json(const CommandDescription& command) {
    Json all{{"name", command.name},
             {"text", command.text},
             {"footer", command.footer},
             {"options", Json::array()},
             {"commands", Json::array()}};
    for (const OptionDescription& option : command.options) {
        all["options"].push_back({{"names", option.names},
                                  {"positional", option.positional},
                                  {"takesValue", option.takesValue},
                                  {"many", option.many},
                                  {"required", option.required},
                                  {"default", option.defaultValue},
                                  {"offered", option.offered},
                                  {"offeredFrom", option.offeredFrom},
                                  {"text", option.text}});
    }
    for (const CommandDescription& below : command.commands) {
        all["commands"].push_back(json(below));
    }
    return all;
}

}  // namespace

void printCommands(const CommandLine& app) {
    printJson(json(app.describe()));
}

}  // namespace tool
