#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Descrambler.h"
#include "Reception.h"
#include "ServiceStream.h"
#include "StreamCollector.h"

namespace qeltvd::stream {

/** What has been received for the number of a page of teletext. */
struct TeletextReception {
    /** Whether the service has teletext. */
    bool carried = false;
    /** TOP says that the page is not sent. */
    bool absent = false;
    /** Subpages so far. */
    uint32_t subpages = 0;
    /** The subpage, if it has come, and its number. */
    std::optional<TeletextPage> page = {};
    uint16_t subpage = 0;
    std::optional<TeletextHeader> header = {};
};

/**
 * Receives one multiplex: a source that is open, what its tables say, and the packets of its
 * services. All functions may be called on any thread. The functions of the listener and of the
 * outputs are called on the thread of the source, without a lock; they may call the receiver but
 * not destroy it.
 */
class StreamReceiver {
  public:
    enum class State {
        /** No packet yet. */
        kWaiting,
        kReceiving,
        /** There were packets, or nothing came for a while. */
        kSilent,
        /** The source is at its end or cannot be read; see reason(). */
        kEnded,
    };
    struct Listener {
        /** Bits of Change. */
        std::function<void(uint32_t changes)> changed;
        std::function<void(State state)> state;
    };

    /** @throws std::runtime_error as openSource() does */
    StreamReceiver(const std::string& source, const std::string& directory,
                   const SourceOptions& options, Listener listener);
    ~StreamReceiver();
    StreamReceiver(const StreamReceiver&) = delete;
    StreamReceiver& operator=(const StreamReceiver&) = delete;

    State state() const;
    std::string reason() const;

    StreamFacts facts() const;
    std::optional<Service> service(uint16_t serviceId) const;
    std::vector<Event> events(const ServiceKey& service) const;
    std::optional<Event> present(const ServiceKey& service) const;
    std::optional<Event> following(const ServiceKey& service) const;
    std::vector<ServiceKey> guideServices() const;
    /** The key of the events of a service of this stream. */
    ServiceKey keyOf(uint16_t serviceId) const;
    std::optional<Time> time() const;

    /** The services whose teletext and captions are decoded. */
    void watch(const std::set<uint16_t>& services);
    /** What has come of a page. @param subpage its number, from 1; 0 for the one on air */
    TeletextReception teletext(uint16_t serviceId, uint16_t page, uint16_t subpage = 0) const;
    std::vector<TopPage> teletextTop(uint16_t serviceId) const;
    /** The rows that a channel of captions (1 to 8) shows. */
    std::vector<std::string> captions(uint16_t serviceId, uint8_t channel) const;
    /** Bit 0 for channel 1: which channels have had text. */
    uint8_t captionChannels(uint16_t serviceId) const;

    /** Descrambles a service, or ends that, where the build can (Descrambler::available()). */
    void setKey(uint16_t serviceId, const std::optional<ControlWord>& word);

    /** Gets packets of a service as ServiceStream makes them; `seconds` is the length so far. */
    using Output = std::function<void(const std::vector<uint8_t>& packets, double seconds)>;
    /** @return a number for removeOutput(); nothing for a service without a programme map */
    std::optional<uint32_t> addOutput(uint16_t serviceId, Output output);
    /**
     * Waits for a call of the output that is under way, unless it is made by that call; none
     * begins after it. To be called without a lock that the output takes.
     */
    void removeOutput(uint32_t number);

    PidCounters counters(uint16_t pid) const;
    /** Bits per second of a PID, the average since the begin; 0 before clock references came. */
    uint64_t bitsPerSecond(uint16_t pid) const;

  private:
    struct Tap {
        uint16_t serviceId = 0;
        std::unique_ptr<ServiceStream> stream;
        /** Held during a call of the output. */
        std::recursive_mutex lock;
        Output output;
        bool removed = false;
        /** Whether packets are on their way to the output. */
        std::atomic<bool> busy{false};
        std::vector<uint8_t> packets;
    };

    void receive(const Batch& batch);
    void setState(State state);
    void applyKeys(const StreamFacts& facts);
    void updateTaps(const StreamFacts& facts);

    const Listener mListener;
    mutable std::mutex mLock;
    // Guarded by mLock.
    StreamCollector mCollector;
    Descrambler mDescrambler;
    std::map<uint16_t, ControlWord> mKeys;
    std::map<uint32_t, std::shared_ptr<Tap>> mTaps;
    uint32_t mNextTap = 1;
    State mState = State::kWaiting;
    std::string mReason;
    /** Last, so that it ends first. */
    std::unique_ptr<Reception> mReception;
};

}  // namespace qeltvd::stream
