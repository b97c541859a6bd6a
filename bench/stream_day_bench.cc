// A day of a multiplex with two services in fast time: tables, guide, teletext, captions, a
// recording of each service and a timeshift. The memory has to stay as it is after the first hours.
//
//   stream_day_bench [HOURS]
//
// Every line reports an hour of the stream; the status is 1 if memory grows.

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "PacketRing.h"
#include "ServiceStream.h"
#include "StreamCollector.h"
#include "stream_composer.h"

namespace {

using namespace qeltvd;

constexpr int64_t kHour = 3600;
constexpr uint32_t kSeconds = 4;
constexpr int64_t kRingSize = int64_t{64} << 20;
/** Hours after which memory may not grow any more, and how far it may. */
constexpr int64_t kSettled = 4;
constexpr double kMiB = 1 << 20, kMostGrowthMiB = 1;

double residentMiB() {
    std::ifstream file("/proc/self/statm");
    long total = 0, resident = 0;
    file >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / kMiB;
}

/** A service as it is recorded. */
struct Recorded {
    uint16_t id;
    std::unique_ptr<stream::ServiceStream> service;
    std::vector<uint8_t> packets;
    uint64_t bytes = 0;
};

}  // namespace

int main(int count, char** arguments) {
    const int64_t hours = count > 1 ? atoll(arguments[1]) : 24;
    char path[] = "/tmp/stream-day-XXXXXX";
    Descriptor file(mkstemp(path));
    unlink(path);
    if (!file || ftruncate(file.get(), static_cast<off_t>(kRingSize)) != 0) {
        perror(path);
        return 2;
    }
    PacketRing ring(std::move(file), kRingSize);
    stream::StreamCollector collector;
    collector.watch({composed::kFirstService, composed::kSecondService});
    Recorded recorded[] = {{composed::kFirstService, nullptr, {}},
                           {composed::kSecondService, nullptr, {}}};
    const auto began = std::chrono::steady_clock::now();
    double settled = 0, last = 0;
    for (int64_t hour = 0; hour < hours; ++hour) {
        // The guide and the clock go on; the first service changes its tracks in every hour.
        composed::Options options;
        options.time = composed::kTime + hour * kHour;
        options.seconds = kSeconds;
        options.changeMap = true;
        std::vector<uint8_t> bytes = composed::dvb(options);
        for (int64_t second = 0; second < kHour; second += kSeconds) {
            constexpr size_t kBatch = 256;
            const size_t packets = bytes.size() / stream::kPacketSize;
            for (size_t at = 0; at < packets; at += kBatch) {
                const stream::Batch batch{bytes.data() + at * stream::kPacketSize,
                                          std::min(kBatch, packets - at), at == 0};
                const uint32_t changes = collector.push(batch);
                for (Recorded& each : recorded) {
                    if (!each.service || (changes & stream::kServicesChanged) != 0) {
                        const stream::StreamFacts facts = collector.facts();
                        const auto service = facts.services.find(each.id);
                        const auto map = collector.mapSection(each.id);
                        if (service == facts.services.end() || map.empty()) continue;
                        if (each.service) {
                            each.service->update(service->second, map);
                        } else {
                            each.service = std::make_unique<stream::ServiceStream>(
                                    facts.streamId, facts.originalNetworkId, service->second, map);
                        }
                    }
                    each.packets.clear();
                    each.service->push(batch, &each.packets);
                    each.bytes += each.packets.size();
                }
                const std::vector<uint8_t>& shifted = recorded[0].packets;
                if (!shifted.empty() && ring.write(shifted.data(), shifted.size(), {}) != 0) {
                    perror(path);
                    return 2;
                }
            }
        }
        last = residentMiB();
        if (hour + 1 == kSettled) settled = last;
        printf("hour %2lld: %.1f MiB resident, %zu events, %.0f s and %.0f s recorded, timeshift "
               "%.0f s to %.0f s\n",
               static_cast<long long>(hour + 1), last,
               collector.events().events(collector.keyOf(composed::kFirstService)).size(),
               recorded[0].service->seconds(), recorded[1].service->seconds(),
               static_cast<double>(ring.oldest().count()) / 1000,
               static_cast<double>(ring.newest().count()) / 1000);
        fflush(stdout);
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
    printf("%.1f s for %lld hours, %.1f MiB and %.1f MiB recorded\n", took.count(),
           static_cast<long long>(hours), static_cast<double>(recorded[0].bytes) / kMiB,
           static_cast<double>(recorded[1].bytes) / kMiB);
    return hours > kSettled && last - settled > kMostGrowthMiB ? 1 : 0;
}
