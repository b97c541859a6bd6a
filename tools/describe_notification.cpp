#include <cstdio>

#include "notifications.h"
#include "output.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

const Json& find(const Json& list, const std::string& name) {
    // Never destroyed: notifications arrive until the very end of the process.
    static const Json& sNone = *new Json(Json::object());
    for (const Json& one : list) {
        if (one.at("name") == name) return one;
    }
    return sNone;
}

/** The enumerator of a value; null if there is none. */
const Json* enumeratorOf(const Json& enumerators, const Json& value) {
    for (const Json& one : enumerators) {
        if (one.at("value") == value) return &one;
    }
    return nullptr;
}

/** A value that the callback has as an unsigned number of its type's width. */
Json extended(const Json& value, const std::string& type) {
    if (!value.is_number_unsigned()) return value;
    const size_t size = type == "uint8_t"    ? 1
                        : type == "uint16_t" ? 2
                        : type == "uint32_t" ? 4
                        : type == "uint64_t" ? 8
                                             : sizeof(uintptr_t);
    const auto unused = static_cast<unsigned>(64 - size * 8);
    return static_cast<int64_t>(value.get<uint64_t>() << unused) >> unused;
}

Described::Value named(const std::string& name, const Json& value, const Json& enumeration) {
    Described::Value shown{name, value, ""};
    const Json& all = notificationNames().at("enumerations");
    if (enumeration.is_string() && all.contains(enumeration.get<std::string>()) &&
        value.is_number_integer()) {
        const Json& known = all.at(enumeration.get<std::string>());
        if (const Json* one = enumeratorOf(known.at("values"), value)) {
            shown.value = one->at("name");
            shown.text = one->at("short");
            return shown;
        }
        if (known.at("bits").get<bool>()) {
            shown.value = Json::array();
            auto rest = value.get<uint64_t>();
            for (const Json& one : known.at("values")) {
                const auto bit = one.at("value").get<uint64_t>();
                if (bit == 0 || (rest & bit) != bit) continue;
                rest &= ~bit;
                shown.value.push_back(one.at("name"));
                shown.text += (shown.text.empty() ? "" : "|") + one.at("short").get<std::string>();
            }
            if (rest != 0 || shown.value.empty()) {
                shown.value.push_back(rest);
                shown.text += (shown.text.empty() ? "" : "|") + std::to_string(rest);
            }
            return shown;
        }
    }
    // Smaller values are channel numbers or the absence of a channel.
    const bool isChannel = name == "channel" && value.is_number_unsigned() &&
                           value.get<uint64_t>() > UINT16_MAX &&
                           value.get<uint64_t>() <= UINT32_MAX;
    if (isChannel) {
        char id[16];
        snprintf(id, sizeof(id), "0x%08x", value.get<uint32_t>());
        shown.text = id;
    } else {
        shown.text = jsonText(value);
    }
    return shown;
}

}  // namespace

const Json& notificationNames() {
    // Never destroyed either.
    static const Json& sNames = *new Json(Json::parse(notificationDescription()));
    return sNames;
}

Described describe(const std::string& kind, const Json& values) {
    Described described;
    const Json& notification = find(notificationNames().at("notifications"), kind);
    const Json parameters = notification.value("parameters", Json::array());
    const Json selector = notification.value("selector", Json());
    const Json* fields = notification.contains("fields") ? &notification.at("fields") : nullptr;
    for (size_t i = 0; i < parameters.size() && i < values.size(); ++i) {
        if (parameters[i].at("name") != selector) continue;
        const Json* event = enumeratorOf(notification.at("events"), values[i]);
        if (event == nullptr) continue;
        described.event = event->at("name");
        described.eventShort = event->at("short");
        if (!event->at("fields").is_null()) fields = &event->at("fields");
    }
    for (size_t i = 0; i < values.size(); ++i) {
        if (i >= parameters.size()) {
            described.values.push_back(named(std::to_string(i + 1), values[i], Json()));
            continue;
        }
        const Json& parameter = parameters[i];
        const std::string name = parameter.at("name");
        if (parameter.at("name") == selector && !described.event.empty()) continue;
        size_t place = 0;
        const bool isField = sscanf(name.c_str(), "arg%zu", &place) == 1 && fields != nullptr &&
                             place >= 1 && place <= fields->size();
        if (!isField) {
            described.values.push_back(named(name, values[i], parameter.at("enumeration")));
            continue;
        }
        const Json& field = (*fields)[place - 1];
        const std::string fieldName = field.at("name");
        const Json value = field.at("signed").get<bool>()
                                   ? extended(values[i], parameter.at("type").get<std::string>())
                                   : values[i];
        // A value without meaning has no name.
        if (fieldName.empty() && value == 0) continue;
        described.values.push_back(
                named(fieldName.empty() ? name : fieldName, value, field.at("enumeration")));
    }
    return described;
}

}  // namespace tool
