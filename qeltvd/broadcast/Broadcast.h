#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Alarm.h"
#include "LineUp.h"
#include "Signals.h"
#include "SimulatedSignals.h"
#include "StreamSignals.h"

namespace qeltvd {

/**
 * Where the signals of all multiplexes come from: a stream if the scan table of the multiplex names
 * one, and simulation otherwise. The models see no difference. All functions may be called on any
 * thread.
 */
class Broadcast {
  public:
    /**
     * @param files scan tables that the user of this machine has named
     * @throws std::runtime_error for one that cannot be read or has no transponder
     */
    explicit Broadcast(Timers& timers, std::vector<std::string> files = {});

    /** The regions of a configuration text, after the user's own; see LineUp.h. */
    std::vector<Region> regions(const std::string& configured);
    /** What names these regions: another text is another line-up. */
    std::string nameOf(const std::string& configured) const;

    /** The signals of a multiplex of a region or of the channel data. */
    std::shared_ptr<Signals> of(const Multiplex& multiplex) const;
    /** The stream of a multiplex; nothing while it is simulated. */
    std::shared_ptr<StreamSignals> streamOf(const Multiplex& multiplex) const;
    /** The satellites of the channel data, whose multiplexes name them by their records. */
    void setSatellites(const std::vector<Satellite>& satellites);
    /** The language that texts of events come in if they are broadcast in several. */
    void setLanguage(const std::string& language);

    /** The multiplexes that are received now. */
    std::vector<std::shared_ptr<Signals>> received() const;
    SimulatedSignals& simulated() { return *mSimulated; }

    /**
     * Called when what is received has changed, with bits of stream::Change, on the thread of the
     * timers. Added before serving only.
     */
    using Listener = std::function<void(uint32_t changes)>;
    void addListener(Listener listener);

  private:
    /** On the thread of a receiver. */
    void changed(uint32_t changes);
    void ring();

    const std::vector<std::string> mFiles;
    /** The language of texts, which signals that outlive this object may read. */
    struct Language {
        std::mutex lock;
        std::string code;
    };
    const std::shared_ptr<Language> mLanguage = std::make_shared<Language>();
    const std::shared_ptr<SimulatedSignals> mSimulated = std::make_shared<SimulatedSignals>();
    std::vector<Listener> mListeners;

    struct Stream {
        Multiplex multiplex;
        std::string directory;
        bool today;
        std::shared_ptr<StreamSignals> signals;
    };
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::vector<Stream> mStreams;
    /** By the records of satellites. */
    std::map<uint32_t, int32_t> mPositions;
    std::atomic<uint32_t> mChanges{0};
    Alarm mAlarm;
};

}  // namespace qeltvd
