#include "StreamInspection.h"

#include <filesystem>
#include <stdexcept>

#include "Source.h"
#include "StreamCollector.h"

namespace qeltvd::stream {

Inspection inspect(const std::string& path, uint64_t packets) {
    std::error_code error;
    const std::string whole = std::filesystem::canonical(path, error);
    if (error) throw std::runtime_error(path + ": " + error.message());
    SourceOptions options;
    options.loop = false;
    options.paced = false;
    const auto source = openSource(whole, "/", options);
    StreamCollector collector;
    Inspection inspection;
    while (inspection.packets < packets) {
        Batch batch;
        const Source::State state = source->read(&batch, std::chrono::seconds(1));
        if (state == Source::State::kError) throw std::runtime_error(source->reason());
        if (state == Source::State::kEnd) break;
        if (state != Source::State::kPackets) continue;
        collector.push(batch);
        inspection.packets += batch.count;
    }
    inspection.facts = collector.facts();
    inspection.events = collector.events();
    inspection.seconds = collector.demux().seconds();
    for (uint16_t pid = 0; pid < kPids; ++pid) {
        const PidCounters& counters = collector.demux().counters(pid);
        if (counters.packets == 0) continue;
        PidFacts facts;
        facts.pid = pid;
        facts.packets = counters.packets;
        facts.bitsPerSecond = collector.demux().bitsPerSecond(pid);
        facts.continuityErrors = counters.continuityErrors;
        facts.transportErrors = counters.transportErrors;
        facts.sectionErrors = counters.sectionErrors;
        facts.scrambled = counters.scrambled;
        inspection.pids.push_back(facts);
    }
    return inspection;
}

}  // namespace qeltvd::stream
