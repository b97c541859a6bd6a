#include "scenario.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>

#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_time.h"
#include "layouts/channel_records.h"
#include "layouts/time.h"
#include "local_time.h"
#include "suggestion.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;
using Words = std::vector<std::string>;

/** Runs a command of the tool, whose messages a user knows. */
void command(const Words& words) {
    if (!runCommand(words)) throw Failure(kUsage, "this is no value for it");
}

/** A value of the file with its place there. */
class Node {
  public:
    Node(const std::string& file, std::string path, const Json& json)
            : mFile(file), mPath(std::move(path)), mJson(json) {}

    const std::string& path() const { return mPath; }
    const Json& json() const { return mJson; }

    [[noreturn]] void refuse(const std::string& why) const {
        throw Failure(kUsage, mFile + ": " + (mPath.empty() ? "/" : mPath) + ": " + why);
    }
    /** Calls `use` with each key and its value; any key if `known` is empty. */
    template <class Use>
    void each(const Words& known, const Use& use) const {
        if (!mJson.is_object()) refuse("takes an object");
        for (const auto& [key, value] : mJson.items()) {
            const Node node(mFile, mPath + "/" + key, value);
            bool found = known.empty();
            for (const std::string& one : known) found |= one == key;
            if (!found) node.refuse("there is no such key" + suggestion(key, known));
            use(key, node);
        }
    }
    template <class Use>
    void elements(const Use& use) const {
        if (!mJson.is_array()) refuse("takes an array");
        for (size_t i = 0; i < mJson.size(); ++i) {
            use(Node(mFile, mPath + "/" + std::to_string(i), mJson[i]));
        }
    }
    int64_t number(int64_t lowest, int64_t highest) const {
        if (!mJson.is_number_integer() || mJson.get<int64_t>() < lowest ||
            mJson.get<int64_t>() > highest) {
            refuse("takes an integer from " + std::to_string(lowest) + " to " +
                   std::to_string(highest));
        }
        return mJson.get<int64_t>();
    }
    bool truth() const {
        if (!mJson.is_boolean()) refuse("takes true or false");
        return mJson.get<bool>();
    }
    std::string text() const {
        if (!mJson.is_string()) refuse("takes a text");
        return mJson.get<std::string>();
    }
    /** A text, or a number as one. */
    std::string word() const {
        if (mJson.is_number_integer()) return mJson.dump();
        if (!mJson.is_string()) refuse("takes a text or an integer");
        return mJson.get<std::string>();
    }

  private:
    const std::string& mFile;
    const std::string mPath;
    const Json& mJson;
};

using Add = std::function<void(const Node&, std::function<void()>)>;

void addWords(const Add& add, const Node& node, const Words& words) {
    add(node, [words] { command(words); });
}

void reloadChannels() {
    const channel_request_t block{};
    const uint32_t word = 0;
    check(a_qeltvapi_channellist_interface(CHANNEL_REQUEST_RELOAD, &block, 0, 0, &word),
          "the channels of the region");
}

void setClock(int64_t utc) {
    a_qeltvapi_time_set_sync_source(QELTV_SYNC_MANUAL);
    const QELTV_DTG_T local = localFields(utc);
    command({"time", "set", "--", dateText(local), clockText(local)});
}

void readClock(const Add& add, const Node& clock) {
    if (clock.json().is_object() && clock.json().contains("local") &&
        clock.json().contains("offset")) {
        clock.refuse("is fixed with \"local\" or moved with \"offset\", not both");
    }
    // The local time depends on the zone.
    clock.each({"zone", "local", "offset"}, [&](const std::string& key, const Node& value) {
        if (key != "zone") return;
        const std::string zone = value.text();
        add(value, [zone] {
            a_qeltvapi_time_set_sync_source(QELTV_SYNC_MANUAL);
            command({"time", "zone", "--", zone});
        });
    });
    clock.each({"zone", "local", "offset"}, [&](const std::string& key, const Node& value) {
        if (key == "zone") return;
        if (key == "local") {
            const std::string text = value.text();
            const size_t space = text.find(' ');
            if (space == std::string::npos) value.refuse("takes a time as 2026-03-29 01:59:30");
            add(value, [text, space] {
                a_qeltvapi_time_set_sync_source(QELTV_SYNC_MANUAL);
                command({"time", "set", "--", text.substr(0, space), text.substr(space + 1)});
            });
        } else {
            const int64_t offset = value.number(-1'000'000'000, 1'000'000'000);
            add(value, [offset] { setClock(time(nullptr) + offset); });
        }
    });
}

void readInputs(const Add& add, const Node& inputs) {
    inputs.each({"plugged", "unplugged", "blocked", "selected"}, [&](const std::string& key,
                                                                     const Node& value) {
        if (key == "selected") {
            addWords(add, value, {"input", "select", "--", value.word()});
            return;
        }
        value.elements([&](const Node& input) {
            if (key == "blocked") {
                addWords(add, input, {"input", "block", "--", input.word(), "on"});
            } else {
                const std::string number = std::to_string(input.number(0, INT32_MAX));
                addWords(add, input,
                         {"service", "plug", "--", number, key == "plugged" ? "on" : "off"});
            }
        });
    });
}

void readChannels(const Add& add, const Node& channels) {
    channels.each({"locked", "hidden", "skipped", "favourites", "current"},
                  [&](const std::string& key, const Node& value) {
                      const auto change = [&](const Node& channel, const char* option) {
                          addWords(add, channel, {"channel", "set", option, "--", channel.word()});
                      };
                      if (key == "current") {
                          change(value, "--current");
                      } else if (key == "favourites") {
                          value.each({"1", "2", "3", "4"},
                                     [&](const std::string& list, const Node& members) {
                                         members.elements([&](const Node& channel) {
                                             addWords(add, channel,
                                                      {"channel", "favourite", "add",
                                                       "--favourites", list, "--", channel.word()});
                                         });
                                     });
                      } else {
                          const char* option = key == "locked"   ? "--lock"
                                               : key == "hidden" ? "--hide"
                                                                 : "--skip";
                          value.elements([&](const Node& channel) { change(channel, option); });
                      }
                  });
}

void readReception(const Add& add, const Node& reception) {
    reception.each({"percent", "frequencies"}, [&](const std::string& key, const Node& value) {
        const auto percent = [](const Node& node) { return std::to_string(node.number(0, 100)); };
        if (key == "percent") {
            addWords(add, value, {"service", "reception", percent(value)});
            return;
        }
        value.each({}, [&](const std::string& kHz, const Node& one) {
            addWords(add, one, {"service", "reception", "--", percent(one), kHz});
        });
    });
}

void readFault(const Add& add, const Node& fault) {
    Words words{"service", "fault"};
    std::string method, kind, value;
    fault.each({"method", "kind", "value", "times"}, [&](const std::string& key, const Node& one) {
        if (key == "method") method = one.text();
        if (key == "kind") kind = one.text();
        if (key == "value") value = std::to_string(one.number(INT32_MIN, INT32_MAX));
        if (key == "times") {
            words.insert(words.end(), {"--times", std::to_string(one.number(0, UINT32_MAX))});
        }
    });
    if (method.empty() || kind.empty()) fault.refuse("takes a \"method\" and a \"kind\"");
    words.insert(words.end(), {"--", method, kind});
    if (!value.empty()) words.push_back(value);
    addWords(add, fault, words);
}

}  // namespace

Scenario::Scenario(const std::string& file) : mFile(file) {
    std::ifstream stream(file);
    if (!stream) throw Failure(kUsage, file + " cannot be read: " + strerror(errno));
    Json json;
    try {
        json = Json::parse(stream);
    } catch (const Json::exception& e) {
        throw Failure(kUsage, file + ": " + e.what());
    }
    const Add add = [this](const Node& node, std::function<void()> run) {
        mSteps.push_back({node.path(), std::move(run)});
    };
    // In this order, regardless of that of the file: channels come with the region, and a fault
    // must not meet what prepares the television.
    const std::vector<std::pair<std::string, std::function<void(const Node&)>>> parts{
            {"region",
             [&](const Node& node) {
                 const std::string region = node.text();
                 add(node, [region] {
                     command({"config", "set", "--", "channels.region", region});
                     reloadChannels();
                 });
             }},
            {"config",
             [&](const Node& node) {
                 node.each({}, [&](const std::string& name, const Node& value) {
                     addWords(add, value, {"config", "set", "--", name, value.word()});
                 });
             }},
            {"clock", [&](const Node& node) { readClock(add, node); }},
            {"channels", [&](const Node& node) { readChannels(add, node); }},
            {"inputs", [&](const Node& node) { readInputs(add, node); }},
            {"volume",
             [&](const Node& node) {
                 node.each({}, [&](const std::string& type, const Node& value) {
                     addWords(add, value,
                              {"volume", "--type", type, std::to_string(value.number(0, 100))});
                 });
             }},
            {"mute",
             [&](const Node& node) {
                 addWords(add, node, {"mute", node.truth() ? "on" : "off"});
             }},
            {"reception", [&](const Node& node) { readReception(add, node); }},
            {"faults",
             [&](const Node& node) {
                 node.elements([&](const Node& fault) { readFault(add, fault); });
             }},
    };
    Words keys;
    for (const auto& part : parts) keys.push_back(part.first);
    const Node root(mFile, "", json);
    root.each(keys, [](const std::string&, const Node&) {});
    for (const auto& [key, read] : parts) {
        if (json.contains(key)) read(Node(mFile, "/" + key, json[key]));
    }
}

void Scenario::apply() const {
    requireService();
    for (const Step& step : mSteps) {
        try {
            step.run();
        } catch (const Failure& failure) {
            throw Failure(failure.exit(), mFile + ": " + step.path + ": " + failure.what());
        }
    }
}

void addScenario(Command& app) {
    auto file = std::make_shared<std::string>();
    Command* command =
            app.addCommand("scenario", "Bring the television into the state that a file describes");
    command->addOption("file", *file, "A JSON file, see docs/ci.md")->required();
    command->callback([file] { Scenario(*file).apply(); });
}

}  // namespace tool
