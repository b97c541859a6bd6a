#include "interfaces.h"

#include <qeltvapi/testing/testing.h>

namespace qeltvapi::testing {
namespace {

constexpr char kCallback[] = "IQelTvApiCallback";

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

const Interface& findInterface(const std::string& name) {
    std::string known;
    for (const Interface& interface : allInterfaces()) {
        if (interface.name == name) return interface;
        if (interface.name != kCallback) known += " " + interface.name;
    }
    throw ScriptError("There is no interface " + name + ". The interfaces are:" + known);
}

size_t findMethod(const Interface& interface, const std::string& name) {
    std::vector<size_t> found;
    for (size_t i = 0; i < interface.methods.size(); ++i) {
        if (interface.methods[i].name == name) return i;
        if (!name.empty() && endsWith(interface.methods[i].name, "_" + name)) found.push_back(i);
    }
    if (found.size() == 1) return found[0];
    if (found.empty()) {
        throw ScriptError(interface.name + " has no method " + name + ". Its methods are in " +
                          interface.name + ".hal.");
    }
    std::string candidates;
    for (const size_t i : found) candidates += " " + interface.methods[i].name;
    throw ScriptError(name + " is the end of several methods of " + interface.name +
                      ". Write one of them in full:" + candidates);
}

size_t findNotification(const std::string& name) {
    const Interface& callback = findInterface(kCallback);
    for (const Notification& notification : allNotifications()) {
        if (notification.name == name) return findMethod(callback, notification.methods.at(0));
    }
    return findMethod(callback, name);
}

}  // namespace qeltvapi::testing
