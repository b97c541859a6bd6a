// Channels a second that batch reads through shared memory give, beside a memcpy of the same bytes
// in the same run and beside one call for each channel.
//
//   batch_bench
//
// The television runs as a process of its own with more than 10,000 channels. Every line reports
// the median of its rounds.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <vector>

#include "daemon.h"
#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_config.h"
#include "layouts/channel_records.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr uint32_t kList = CHANNEL_LIST_SATELLITE;
constexpr uint32_t kMost = 10000;
constexpr std::chrono::milliseconds kTime{700};

[[noreturn]] void fail(const char* what) {
    fprintf(stderr, "batch_bench: %s\n", what);
    exit(1);
}

std::vector<channel_record_t> sChannels(kMost);
std::vector<multiplex_record_t> sStreams(kMost);

/** Median of the seconds that a round takes. */
double measure(const std::function<void()>& round) {
    std::vector<double> samples;
    for (int i = 0; i < 3; ++i) round();
    const auto end = Clock::now() + kTime;
    while (Clock::now() < end || samples.size() < 5) {
        const auto begin = Clock::now();
        round();
        samples.push_back(std::chrono::duration<double>(Clock::now() - begin).count());
    }
    std::nth_element(samples.begin(), samples.begin() + static_cast<ptrdiff_t>(samples.size() / 2),
                     samples.end());
    return samples[samples.size() / 2];
}

void readBatch(uint32_t n) {
    if (a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(kList, 0, 0, 0, CHANNEL_FILTER_HIDDEN, 0,
                                                           0, n, 0, sChannels.data(),
                                                           sStreams.data()) != 0 ||
        sChannels[n - 1].record_id == 0) {
        fail("a batch was refused");
    }
}

}  // namespace

int main() {
    // Ends with exit() too.
    static wire::Daemon television;
    television.start();
    const channel_request_t none{};
    const uint32_t zero = 0;
    if (a_qeltvapi_config_set_str_value("channels.region", "dvb-s/E*") != 0 ||
        a_qeltvapi_channellist_interface(CHANNEL_REQUEST_RELOAD, &none, 0, 0, &zero) != 0) {
        fail("the channels were refused");
    }
    const int count = a_qeltvapi_channellist_get_number_by_mask(kList, 0, 0);
    if (count < static_cast<int>(kMost)) fail("the scan tables (dtv-scan-tables) are missing");
    readBatch(kMost);
    std::vector<uint32_t> records;
    for (const auto& channel : sChannels) records.push_back(channel.record_id);

    constexpr size_t kSize = sizeof(channel_record_t) + sizeof(multiplex_record_t);
    printf("%d channels, %zu bytes each\n\n", count, kSize);
    printf("%8s %12s %14s %14s %14s %8s %8s\n", "batch", "us/batch", "batch ch/s", "one call ch/s",
           "memcpy ch/s", "x calls", "x memcpy");
    for (const uint32_t n : {1u, 2u, 3u, 4u, 6u, 100u, kMost}) {
        const double batch = measure([n] { readBatch(n); });
        // Single calls cost the same each; a thousand of them are enough of a round.
        const uint32_t calls = std::min(n, 1000u);
        const double single = measure([&] {
            channel_record_t svl;
            multiplex_record_t tsl;
            for (uint32_t i = 0; i < calls; ++i) {
                if (a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(kList, records[i], &svl,
                                                                         &tsl) != 0) {
                    fail("a call was refused");
                }
            }
        });
        std::vector<char> from(n * kSize, 1), to(n * kSize, 2);
        const uint32_t copies = std::max(1u, 10000 / n);
        const double copy = measure([&] {
            for (uint32_t i = 0; i < copies; ++i) {
                memcpy(to.data(), from.data(), from.size());
                asm volatile("" : : "r"(to.data()) : "memory");
            }
        });
        const double perBatch = n / batch, perCall = calls / single, perCopy = n * copies / copy;
        printf("%8u %12.1f %14.0f %14.0f %14.0f %8.1f %8.2f\n", n, batch * 1e6, perBatch, perCall,
               perCopy, perBatch / perCall, perCopy / perBatch);
    }
    return 0;
}
