#include "transaction_text.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "notifications.h"
#include "output.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr char kCallbackInterface[] = "IQelTvApiCallback";
/** Characters of a value. */
constexpr size_t kLongest = 120;

std::string valueText(const Json& value) {
    std::string text = jsonText(value);
    if (text.size() > kLongest) {
        size_t end = kLongest;
        // Not within a character.
        while (end > 0 && (text[end] & 0xc0) == 0x80) --end;
        text = text.substr(0, end) + "... (" + std::to_string(text.size()) + " characters)";
    }
    return printable(text);
}

/** A notification in the words of "watch"; "" if its method has no kind. */
std::string notificationText(const Json& line) {
    const std::string method = line.value("method", "");
    for (const Json& one : notificationNames().at("notifications")) {
        const Json& methods = one.at("methods");
        if (std::find(methods.begin(), methods.end(), method) == methods.end()) continue;
        Json values = Json::array();
        for (const auto& argument : line.value("arguments", Json::object())) {
            values.push_back(argument);
        }
        if (values.size() != one.at("parameters").size()) return "";
        const std::string kind = one.at("name");
        const Described described = describe(kind, values);
        std::string text = kind;
        if (!described.eventShort.empty()) text += " " + described.eventShort;
        for (const auto& value : described.values) {
            text += " " + value.name + "=" + printable(value.text);
        }
        return text;
    }
    return "";
}

}  // namespace

std::string methodText(const Json& line) {
    std::string method = line.value("method", "?");
    if (method.compare(0, 7, "a_hidl_") == 0) method.erase(0, 7);
    return line.value("interface", "?") + "." + method;
}

std::string valuesText(const Json& values) {
    std::string text;
    if (values.is_object()) {
        for (const auto& [name, value] : values.items()) {
            text += (text.empty() ? "" : ", ") + name + "=" + valueText(value);
        }
    }
    return "(" + text + ")";
}

std::string transactionText(const Json& line) {
    const bool notifies = line.value("interface", "") == kCallbackInterface;
    std::string text = notifies ? notificationText(line) : "";
    if (text.empty()) {
        text = methodText(line) + valuesText(line.value("arguments", Json::object()));
    }
    if (notifies) {
        text = "notify " + text;
        if (!line.value("taken", true)) text += " (not taken)";
    }
    if (line.contains("results")) text += " -> " + valuesText(line["results"]);
    if (line.contains("status")) text += " -> " + line.value("status", "?");
    if (line.contains("malformed")) text += " malformed: " + line.value("malformed", "?");
    if (line.contains("microseconds")) {
        text += " " + std::to_string(line.value("microseconds", int64_t{0})) + " us";
    }
    return text;
}

}  // namespace tool
