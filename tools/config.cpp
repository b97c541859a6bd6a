#include <cstdio>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_config.h"
#include "layouts/codes.h"
#include "suggestion.h"
#include "tool.h"

namespace tool {
namespace {

/** The selector that covers items of every group, and the item that lists them all. */
constexpr uint32_t kAnyGroup = 0;
constexpr char kItems[] = "system.items";

struct Item {
    std::string name;
    bool isText;
    std::string text;
    int32_t value;
    int32_t minimum;
    int32_t maximum;
    bool visible;

    std::string shown() const { return isText ? text : std::to_string(value); }
    std::string range() const {
        return isText ? "text" : std::to_string(minimum) + ".." + std::to_string(maximum);
    }
    nlohmann::ordered_json json() const {
        nlohmann::ordered_json json{{"name", name}};
        if (isText) {
            json["value"] = text;
        } else {
            json["value"] = value;
            json["minimum"] = minimum;
            json["maximum"] = maximum;
        }
        json["visible"] = visible;
        return json;
    }
};

/** The other interfaces may be missing. */
void requireConfig() {
    require(getQelTvApiConfigService() != nullptr);
}

/** A text item, or the code that it is refused with. The library copies the whole text. */
int readText(const std::string& name, std::string* text) {
    AnswerBuffer buffer;
    uint32_t length = 0;
    const int code = a_qeltvapi_config_get_str_value(name.c_str(), buffer.text(), &length);
    *text = buffer.text();
    return code;
}

std::vector<std::string> itemNames() {
    std::string all;
    check(readText(kItems, &all), kItems);
    std::istringstream words(all);
    return {std::istream_iterator<std::string>(words), {}};
}

/** Whether the item is an integer; ends the command when there is none. */
bool isInteger(const std::string& name) {
    int32_t value = 0;
    const int code = a_qeltvapi_config_get_value(kAnyGroup, name.c_str(), &value);
    if (code != QELTV_NOT_FOUND) {
        check(code, name);
        return true;
    }
    std::string text;
    if (readText(name, &text) == QELTV_NOT_FOUND) {
        throw Failure(kRefused, "there is no item " + name + suggestion(name, itemNames()));
    }
    return false;
}

Item read(const std::string& name) {
    Item item{name, !isInteger(name), "", 0, 0, 0, false};
    if (item.isText) {
        check(readText(name, &item.text), name);
    } else {
        uint32_t range = 0;
        check(a_qeltvapi_config_get_value(kAnyGroup, name.c_str(), &item.value), name);
        check(a_qeltvapi_config_get_minmaxvalue(kAnyGroup, name.c_str(), &range), name);
        item.minimum = static_cast<int16_t>(range & 0xffff);
        item.maximum = static_cast<int16_t>(range >> 16);
    }
    item.visible = check(a_qeltvapi_config_is_visible(kAnyGroup, name.c_str()), name) != 0;
    return item;
}

void list(const std::string& prefix, bool all, bool json) {
    requireConfig();
    std::vector<std::vector<std::string>> rows{{"ITEM", "VALUE", "RANGE"}};
    nlohmann::ordered_json items = nlohmann::json::array();
    for (const std::string& name : itemNames()) {
        if (name.compare(0, prefix.size(), prefix) != 0) continue;
        const Item item = read(name);
        if (!item.visible && !all) continue;
        rows.push_back({item.name, item.shown(), item.range()});
        items.push_back(item.json());
    }
    if (json) {
        printJson(items);
    } else {
        printTable(rows);
    }
}

void get(const std::string& name, bool json) {
    requireConfig();
    const Item item = read(name);
    if (json) {
        printJson(item.json());
    } else {
        printf("%s\n", shownText(item.shown()).c_str());
    }
}

void set(const std::string& name, const std::string& value) {
    requireConfig();
    if (!isInteger(name)) {
        check(a_qeltvapi_config_set_str_value(name.c_str(), value.c_str()), name);
        return;
    }
    size_t used = 0;
    int32_t number = 0;
    try {
        number = std::stoi(value, &used, 0);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != value.size()) {
        throw Failure(kUsage, name + " takes an integer, not \"" + value + "\"");
    }
    check(a_qeltvapi_config_set_value(kAnyGroup, name.c_str(), number, 0), name);
}

}  // namespace

void addConfig(Command& app) {
    Command* config = app.addCommand("config", "Settings of the television");
    config->requireCommand();

    struct Options {
        std::string name, value, prefix;
        uint32_t group = kAnyGroup;
        bool json = false, all = false;
    };
    auto options = std::make_shared<Options>();
    constexpr char kOffered[] = "config list --all \"$word\"";

    Command* command = config->addCommand("list", "List the items with their values");
    command->addOption("prefix", options->prefix,
                       "Only items whose names begin with it, as \"picture.\"")
            ->offerFrom(kOffered);
    command->addFlag("--all", options->all, "Hidden items too");
    addJson(command, &options->json);
    command->callback([options] { list(options->prefix, options->all, options->json); });

    command = config->addCommand("get", "Print the value of an item");
    command->addOption("name", options->name, "The item")->required()->offerFrom(kOffered);
    addJson(command, &options->json);
    command->callback([options] { get(options->name, options->json); });

    command = config->addCommand("set", "Store the value of an item");
    command->addOption("name", options->name, "The item")->required()->offerFrom(kOffered);
    command->addOption("value", options->value, "Its new value")->required();
    command->callback([options] { set(options->name, options->value); });

    command = config->addCommand("reset", "Set items back to their defaults");
    command->addOption("group", options->group,
                       "1 picture, 2 sound, 3 channels, 4 parental, 5 system, 6 network, 0 all")
            ->showDefault();
    command->callback([options] {
        requireConfig();
        check(a_qeltvapi_config_reset_values(options->group), "reset");
    });
}

}  // namespace tool
