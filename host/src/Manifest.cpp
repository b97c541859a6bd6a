#define LOG_TAG "hidlhost"

#include "Manifest.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <regex>

#include <log/log.h>

namespace hidlhost {

const Manifest& Manifest::get() {
    static const Manifest& manifest = *new Manifest([] {
        const char* path = getenv("QELTV_MANIFEST");
        return path == nullptr || *path == '\0' ? Manifest() : fromFile(path);
    }());
    return manifest;
}

bool Manifest::lists(const std::string& interface, const std::string& instance) const {
    Service wanted;
    if (mServices.empty() || !parse(interface, instance, &wanted)) return false;
    const auto [package, name, of, minor] = wanted;
    // The first of the same service whose minor version is at least the wanted one.
    const auto found = mServices.lower_bound(wanted);
    return found != mServices.end() && std::get<0>(*found) == package &&
           std::get<1>(*found) == name && std::get<2>(*found) == of && std::get<3>(*found) >= minor;
}

Manifest Manifest::fromFile(const std::string& path) {
    Manifest manifest;
    std::ifstream file(path);
    if (!file) {
        ALOGE("QELTV_MANIFEST: %s cannot be read: %s; getService() waits for no service",
              path.c_str(), strerror(errno));
        return manifest;
    }
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        line.erase(std::min(line.find('#'), line.size()));
        const size_t begin = line.find_first_not_of(" \t\r");
        if (begin == std::string::npos) continue;
        line = line.substr(begin, line.find_last_not_of(" \t\r") + 1 - begin);
        const size_t slash = line.find('/');
        Service service;
        if (slash != std::string::npos &&
            parse(line.substr(0, slash), line.substr(slash + 1), &service)) {
            manifest.mServices.insert(std::move(service));
        } else {
            ALOGE("QELTV_MANIFEST: line %d of %s, '%s', is no package@version::IName/instance; "
                  "ignored",
                  number, path.c_str(), line.c_str());
        }
    }
    if (file.bad()) {
        ALOGE("QELTV_MANIFEST: %s cannot be read: %s; the services named so far count",
              path.c_str(), strerror(errno));
    }
    return manifest;
}

bool Manifest::parse(const std::string& interface, const std::string& instance, Service* service) {
    static const std::regex& pattern = *new std::regex(
            R"(([A-Za-z_][A-Za-z0-9_]*(?:\.[A-Za-z_][A-Za-z0-9_]*)*@[0-9]{1,5})\.([0-9]{1,5})::(I\w+))");
    std::smatch parts;
    if (!std::regex_match(interface, parts, pattern)) return false;
    if (instance.empty() || instance.find_first_of("/ \t") != std::string::npos) return false;
    *service = {parts[1], parts[3], instance, static_cast<unsigned>(std::stoul(parts[2]))};
    return true;
}

}  // namespace hidlhost
