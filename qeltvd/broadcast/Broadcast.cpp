#include "Broadcast.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "Guarded.h"

namespace qeltvd {

namespace {

std::vector<std::string> checked(std::vector<std::string> files) {
    for (std::string& file : files) {
        file = std::filesystem::absolute(file).string();
        std::ifstream table;
        if (std::filesystem::is_regular_file(file)) table.open(file);
        if (!table.is_open()) {
            throw std::runtime_error("the scan table " + file +
                                     " cannot be read; name a file that exists");
        }
        if (readRegion(file, table).multiplexes.empty()) {
            throw std::runtime_error("the scan table " + file +
                                     " has no transponder; each needs a line [NAME], a "
                                     "DELIVERY_SYSTEM and a FREQUENCY");
        }
    }
    return files;
}

/** Whether a dish at the satellite of the first one receives the second one. */
bool shadows(const Multiplex& stream, const Multiplex& multiplex, int32_t position) {
    return sameFrequency(stream, multiplex) &&
           (mediumOf(stream.system) != Medium::kSatellite || stream.position == position);
}

/** Leaves out what has the frequency of a stream before it, which would be received instead. */
std::vector<Region> withoutShadowed(std::vector<Region> all) {
    std::vector<Multiplex> streams;
    for (Region& region : all) {
        std::vector<Multiplex> kept;
        for (Multiplex& multiplex : region.multiplexes) {
            if (std::any_of(streams.begin(), streams.end(), [&](const Multiplex& stream) {
                    return shadows(stream, multiplex, multiplex.position);
                })) {
                continue;
            }
            if (!multiplex.stream.empty()) streams.push_back(multiplex);
            kept.push_back(std::move(multiplex));
        }
        region.multiplexes = std::move(kept);
    }
    all.erase(std::remove_if(all.begin(), all.end(),
                             [](const Region& each) { return each.multiplexes.empty(); }),
              all.end());
    return all;
}

}  // namespace

Broadcast::Broadcast(Timers& timers, std::vector<std::string> files)
        : mFiles(checked(std::move(files))), mAlarm(timers, "the broadcast", [this] { ring(); }) {}

std::vector<Region> Broadcast::regions(const std::string& configured) {
    std::vector<Region> all = withoutShadowed(qeltvd::regions(configured, mFiles));
    std::lock_guard<std::mutex> guard(mLock);
    const auto language = mLanguage;
    std::vector<Stream> streams;
    for (const Region& region : all) {
        for (const Multiplex& multiplex : region.multiplexes) {
            if (multiplex.stream.empty()) continue;
            const auto known =
                    std::find_if(mStreams.begin(), mStreams.end(), [&](const Stream& each) {
                        return shadows(each.multiplex, multiplex, multiplex.position) &&
                               each.multiplex.stream == multiplex.stream &&
                               each.directory == region.directory &&
                               each.today == region.streamsToday;
                    });
            if (known != mStreams.end()) {
                streams.push_back(*known);
                continue;
            }
            auto received = std::make_shared<StreamMultiplex>(
                    multiplex.stream, region.directory,
                    region.streamsToday ? StreamTime::kNow : StreamTime::kBroadcast,
                    [this](uint32_t changes) { changed(changes); });
            streams.push_back({multiplex, region.directory, region.streamsToday,
                               std::make_shared<StreamSignals>(std::move(received), [language] {
                                   std::lock_guard<std::mutex> read(language->lock);
                                   return language->code;
                               })});
        }
    }
    mStreams = std::move(streams);
    return all;
}

std::string Broadcast::nameOf(const std::string& configured) const {
    std::string name = configured;
    for (const std::string& file : mFiles) name += " " + file;
    return name;
}

std::shared_ptr<StreamSignals> Broadcast::streamOf(const Multiplex& multiplex) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto satellite = mPositions.find(multiplex.satellite);
    const int32_t position = satellite == mPositions.end() ? multiplex.position : satellite->second;
    for (const Stream& each : mStreams) {
        if (shadows(each.multiplex, multiplex, position)) return each.signals;
    }
    return nullptr;
}

std::shared_ptr<Signals> Broadcast::of(const Multiplex& multiplex) const {
    if (std::shared_ptr<StreamSignals> stream = streamOf(multiplex)) return stream;
    return mSimulated;
}

void Broadcast::setSatellites(const std::vector<Satellite>& satellites) {
    std::lock_guard<std::mutex> guard(mLock);
    mPositions.clear();
    for (const Satellite& each : satellites) mPositions[each.recordId] = each.position;
}

void Broadcast::setLanguage(const std::string& language) {
    {
        std::lock_guard<std::mutex> guard(mLanguage->lock);
        mLanguage->code = language;
    }
    changed(stream::kEventsChanged);
}

std::vector<std::shared_ptr<Signals>> Broadcast::received() const {
    std::lock_guard<std::mutex> guard(mLock);
    std::vector<std::shared_ptr<Signals>> received;
    for (const Stream& each : mStreams) {
        if (each.signals->multiplex().receiver()) received.push_back(each.signals);
    }
    return received;
}

void Broadcast::addListener(Listener listener) {
    mListeners.push_back(std::move(listener));
}

void Broadcast::changed(uint32_t changes) {
    // Tables come in bursts.
    constexpr std::chrono::milliseconds kTogether{50};
    if (mChanges.fetch_or(changes) == 0) mAlarm.in(kTogether);
}

void Broadcast::ring() {
    callAll("a listener of the broadcast", mListeners, mChanges.exchange(0));
}

}  // namespace qeltvd
