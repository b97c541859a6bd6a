#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "EventStore.h"
#include "StreamFacts.h"

namespace qeltvd::stream {

/** Counts what passed on one PID of a file. */
struct PidFacts {
    uint16_t pid = 0;
    uint64_t packets = 0;
    /** 0 for a file without clock references. */
    uint64_t bitsPerSecond = 0;
    uint32_t continuityErrors = 0;
    uint32_t transportErrors = 0;
    uint32_t sectionErrors = 0;
    uint64_t scrambled = 0;
};

/** Everything that is in a file. */
struct Inspection {
    StreamFacts facts;
    EventStore events;
    std::vector<PidFacts> pids;
    uint64_t packets = 0;
    /** By its clock references. */
    double seconds = 0;
};

/**
 * Reads a file to its end, or up to a limit.
 *
 * @param path absolute, or relative to the current directory; a link is followed
 * @throws std::runtime_error for what is no file or no transport stream
 */
Inspection inspect(const std::string& path, uint64_t packets = UINT64_MAX);

}  // namespace qeltvd::stream
