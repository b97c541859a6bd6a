#include <cstdio>
#include <nlohmann/json.hpp>

#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

Json described(const CLI::Option& option) {
    return {{"names", option.get_name(false, true)},
            {"positional", option.get_positional()},
            {"takesValue", option.get_items_expected_max() > 0},
            {"many", option.get_items_expected_max() > 1},
            {"required", option.get_required()},
            {"default", option.get_default_str()},
            {"text", option.get_description()}};
}

Json described(const CLI::App& app) {
    Json json{{"name", app.get_name()},
              {"text", app.get_description()},
              {"footer", app.get_footer()},
              {"options", Json::array()},
              {"commands", Json::array()}};
    for (const CLI::Option* option : app.get_options()) {
        // Without a group an option is hidden.
        if (!option->get_group().empty()) json["options"].push_back(described(*option));
    }
    for (const CLI::App* command : app.get_subcommands(nullptr)) {
        if (!command->get_group().empty()) json["commands"].push_back(described(*command));
    }
    return json;
}

}  // namespace

void printCommands(const CLI::App& app) {
    printf("%s\n", described(app).dump(2).c_str());
}

}  // namespace tool
