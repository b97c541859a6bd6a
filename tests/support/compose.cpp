/**
 * qeltv-compose: writes a transport stream of stream_composer.h, and the scan table that names it.
 */
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "command_line.h"
#include "stream_composer.h"

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr uint32_t kSeconds = 4;
/** Null packets per frame, which make 2 Mbit/s of it. */
constexpr size_t kNulls = 40;

struct Arguments {
    std::string file, region;
    bool atsc = false;
    uint32_t frequencyKHz = 842000;
};

void compose(const Arguments& arguments) {
    composed::Options options;
    options.seconds = kSeconds;
    options.nulls = kNulls;
    // The guide is that of this hour, and the clock that of this machine.
    options.time = time(nullptr);
    options.offsets = false;
    composed::writeFile(arguments.file,
                        arguments.atsc ? composed::atsc(options) : composed::dvb(options));
    if (arguments.region.empty()) return;
    std::ofstream table(arguments.region);
    table << "[COMPOSED]\n"
          << "  DELIVERY_SYSTEM = " << (arguments.atsc ? "ATSC" : "DVBT") << "\n"
          << "  FREQUENCY = " << arguments.frequencyKHz << "000\n"
          << "  STREAM = " << std::filesystem::absolute(arguments.file).string() << "\n";
    table.close();
    if (!table) throw std::runtime_error(arguments.region + ": cannot be written");
}

}  // namespace

int main(int argc, char** argv) {
    tool::CommandLine line("qeltv-compose",
                           "Composes a small transport stream of two services with every table "
                           "that the television reads.",
                           "Exit status: 0 written, 1 failed, 2 wrong usage.", QELTV_VERSION);
    Arguments arguments;
    line.addOption("file", arguments.file, "The stream, which is replaced")->required();
    line.addOption("--region", arguments.region,
                   "Also write the scan table that names it, for qeltvd --region");
    line.addOption("--frequency", arguments.frequencyKHz, "Its frequency there, in kHz")
            ->between(1000u, 4000000u)
            ->showDefault();
    line.addFlag("--atsc", arguments.atsc, "A multiplex of ATSC, not of DVB");
    bool usable = false;
    line.callback([&] { usable = true; });
    if (!line.run(argc, argv)) return kWrongUsage;
    if (!usable) return 0;
    try {
        compose(arguments);
    } catch (const std::exception& error) {
        fprintf(stderr, "qeltv-compose: %s\n", error.what());
        return kFailed;
    }
    return 0;
}
