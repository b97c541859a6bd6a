// Files that programs read: any bytes as a scan table of the television or as an entry of the
// runtime directory, which every client reads to find a service. The first line is the file's name.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "LineUp.h"
#include "Registry.h"

namespace {

void readTable(const std::string& name, const std::string& text) {
    std::istringstream table(text);
    const qeltvd::Region region = qeltvd::readRegion(name, table);
    for (const qeltvd::Multiplex& multiplex : region.multiplexes) {
        if (multiplex.frequencyHz == 0 || multiplex.list < 1 || multiplex.list > 3) abort();
    }
    if (region.position < -1800 || region.position > 1800) abort();
}

/** The runtime directory of this process; gone with it. */
const std::filesystem::path& directory() {
    static const std::filesystem::path& sPath = *new std::filesystem::path([] {
        char path[] = "/tmp/file_fuzz-XXXXXX";
        if (mkdtemp(path) == nullptr || setenv("QELTV_RUNTIME_DIR", path, 1) != 0) abort();
        atexit([] { std::filesystem::remove_all(getenv("QELTV_RUNTIME_DIR")); });
        return std::string(path);
    }());
    return sPath;
}

void readEntry(std::string name, const std::string& text) {
    for (char& c : name) {
        if (c == '/' || c == '\0') c = '_';
    }
    const std::filesystem::path file = directory() / ("service." + name.substr(0, 200));
    std::ofstream(file, std::ios::binary) << text;
    for (const auto& [interface, instance] : hidlhost::registry::list()) {
        hidlhost::registry::Entry entry;
        if (!hidlhost::registry::find(interface, instance, &entry)) continue;
        if (!hidlhost::registry::isNodeName(entry.node)) abort();
    }
    std::filesystem::remove(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The last byte selects the kind of file.
    if (size == 0) return 0;
    const std::string all(reinterpret_cast<const char*>(data), size - 1);
    const size_t line = std::min(all.find('\n'), all.size());
    const std::string text = line < all.size() ? all.substr(line + 1) : "";
    if (data[size - 1] % 2 == 0) {
        readTable(all.substr(0, line), text);
    } else {
        readEntry(all.substr(0, line), text);
    }
    return 0;
}
