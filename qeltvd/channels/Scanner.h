#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Broadcast.h"
#include "ChannelDatabase.h"
#include "Code.h"
#include "ConfigItems.h"
#include "LineUp.h"
#include "Notifier.h"
#include "layouts/scan.h"

namespace qeltvd {

/**
 * The channel scan. It goes through the transponders of the configured regions one after the other
 * as a tuner would, adds the services of each as it finds them, and reports its progress.
 */
class Scanner {
  public:
    Scanner(ChannelDatabase& channels, Broadcast& broadcast, const ConfigItems& config,
            Notifier& notifier);
    ~Scanner();

    /** What the next scan leaves out. */
    struct Range {
        /** Transponders of a region, counted from 0. */
        uint32_t first = 0;
        uint32_t last = UINT32_MAX;
        /** As layouts/scan.h has them. */
        uint32_t modulations = 0;
        uint32_t plan = 0;
        bool noRadio = false;
    };
    /** Each returns a code. */
    Code setRange(const Range& range);
    Code start(uint64_t argument, bool exclusive);
    Code cancel();
    /** Ends a scan that runs; none starts any more. Waits until it has ended. */
    void stop();
    bool active() const;

    struct Status {
        QELTV_SCAN_STATE state = QELTV_SCAN_STATE_IDLE;
        int32_t percent = 0;
        uint32_t kHz = 0;
        int32_t index = 0;
        int32_t count = 0;
        int32_t television = 0;
        int32_t radio = 0;
        int32_t added = 0;
        int32_t removed = 0;
        /** Transponders without a signal. */
        int32_t silent = 0;
        std::string transponder;
    };
    Status status() const;

    /** The transponders of the configured regions, with the region of each. */
    struct Stop {
        Region region;
        Multiplex multiplex;
    };
    std::vector<Stop> stops() const;

  private:
    struct Job {
        std::vector<Stop> stops;
        Range range;
        bool exclusive;
        bool whole;
    };

    void run();
    void scan(const Job& job);
    /** Goes through the transponders. @throws StoreError */
    Code search(const Job& job, std::vector<Found>* found);
    /** Waits as a tuner does for its lock; false when the scan is to end. */
    bool tune();
    /** Whether the scan is to go on. */
    bool wanted() const;
    /** Nothing if the scan has ended before the tables were read. */
    std::optional<Found> survey(const Stop& stop, bool noRadio);
    Code take(const Stop& stop, Found found, std::vector<Found>* all);
    Code removeOthers(const std::vector<Stop>& stops, const std::vector<Found>& found);
    uint32_t satelliteOf(const Region& region);
    void notify(int32_t type, int64_t a1, int64_t a2 = 0, int64_t a3 = 0, int64_t a4 = 0) const;

    ChannelDatabase& mChannels;
    Broadcast& mBroadcast;
    const ConfigItems& mConfig;
    Notifier& mNotifier;

    mutable std::mutex mLock;
    std::condition_variable mChanged;
    // Guarded by mLock.
    Range mRange;
    Status mStatus;
    bool mStop = false;
    bool mRunning = false;
    std::optional<Job> mJob;
    std::thread mThread;
};

}  // namespace qeltvd
