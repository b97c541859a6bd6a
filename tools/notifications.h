#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

/** The names of notifications and of their values, from the description at build time. */
namespace tool {

/** JSON: the notifications with their parameters and events, and the enumerations that they use. */
const char* notificationDescription();

/** The same, parsed. */
const nlohmann::ordered_json& notificationNames();

/** A notification in words. */
struct Described {
    /** Enumerator of the event, and the same without the prefix of its enumeration; may be "". */
    std::string event, eventShort;
    struct Value {
        std::string name;
        /** A number, a text, the name of an enumerator, or an array of such names. */
        nlohmann::ordered_json value;
        /** For people: enumerators without the prefix, channel ids as every command takes them. */
        std::string text;
    };
    std::vector<Value> values;
};

/**
 * Names the values of a notification.
 *
 * @param kind   its name in the description
 * @param values the values in the order of the callback's parameters
 */
Described describe(const std::string& kind, const nlohmann::ordered_json& values);

}  // namespace tool
